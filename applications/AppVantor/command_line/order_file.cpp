#include "order_file.h"

#include <QEventLoop>

OrderFile::OrderFile(DTool* tool, Output* output)
    : m_shell(tool, output, {false, false})
    , m_reader(&m_shell)
{
    QObject::connect(&m_shell, &Shell::ended, &m_shell, [this] { m_ended = true; });
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
