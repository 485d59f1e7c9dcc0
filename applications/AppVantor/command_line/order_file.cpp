#include "order_file.h"

#include <QEventLoop>
#include <QFile>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

OrderFile::OrderFile(DTool* tool, Output* output)
    : m_shell(tool, output, false)
{
    QObject::connect(&m_shell, &Shell::ended, &m_shell, [this] { m_ended = true; });
}

OrderFile::~OrderFile()
{
    m_reader.reset();
    if (m_descriptor >= 0) {
        close(m_descriptor);
    }
}

QString OrderFile::begin(const QString& file)
{
    m_descriptor = open(QFile::encodeName(file).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    struct stat status = {};
    if (m_descriptor < 0 || fstat(m_descriptor, &status) != 0) {
        return QStringLiteral("%1: the orders cannot be read: %2").arg(file, qt_error_string(errno));
    }
    if (S_ISDIR(status.st_mode)) {
        return QStringLiteral("%1: the orders cannot be read: expected a file, found a folder").arg(file);
    }
    m_reader = std::make_unique<LineReader>(m_descriptor, file);
    QObject::connect(m_reader.get(), &LineReader::lineRead, &m_shell, &Shell::addLine);
    QObject::connect(m_reader.get(), &LineReader::ended, &m_shell, [this](const QString& problem) {
        if (!problem.isEmpty()) {
            m_shell.refuse(problem);
        }
    });
    QObject::connect(&m_shell, &Shell::ready, m_reader.get(), &LineReader::resume);
    return QString();
}

int OrderFile::end()
{
    if (!m_ended) {
        QEventLoop loop;
        QObject::connect(&m_shell, &Shell::ended, &loop, &QEventLoop::quit);
        m_shell.abandon();
        m_shell.interrupt();
        if (!m_ended) {
            loop.exec();
        }
    }
    return m_shell.exitStatus();
}
