#include "sim_chip.h"

#include <QDir>
#include <QFile>

#include <stdexcept>

QByteArray readFile(const QString& name)
{
    QFile file(name);
    if (!file.open(QIODevice::ReadOnly)) {
        throw std::runtime_error((name + QStringLiteral(" cannot be read")).toStdString());
    }
    return file.readAll().trimmed();
}

void writeFile(const QString& name, const QByteArray& text)
{
    QFile file(name);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) || file.write(text) != text.size()) {
        throw std::runtime_error((name + QStringLiteral(" cannot be written")).toStdString());
    }
}

SimChip::SimChip(const QString& label, int lineCount, const QStringList& names)
    : m_label(label)
    , m_folder(QStringLiteral("/sys/kernel/config/gpio-sim/") + label)
    , m_lineCount(lineCount)
    , m_names(names)
{
    QDir().mkpath(m_folder + QStringLiteral("/bank"));
    writeFile(m_folder + QStringLiteral("/bank/num_lines"), QByteArray::number(m_lineCount));
    writeFile(m_folder + QStringLiteral("/bank/label"), m_label.toUtf8());
    for (int line = 0; line < m_names.size(); ++line) {
        const QString folder = QStringLiteral("%1/bank/line%2").arg(m_folder).arg(line);
        QDir().mkdir(folder);
        writeFile(folder + QStringLiteral("/name"), m_names.at(line).toUtf8());
    }
    plugIn();
}

SimChip::~SimChip()
{
    try {
        unplug();
    } catch (const std::runtime_error&) {
        qWarning("a simulated chip could not be unplugged");
    }
    for (int line = 0; line < m_names.size(); ++line) {
        QDir().rmdir(QStringLiteral("%1/bank/line%2").arg(m_folder).arg(line));
    }
    QDir().rmdir(m_folder + QStringLiteral("/bank"));
    QDir().rmdir(m_folder);
}

void SimChip::plugIn()
{
    writeFile(m_folder + QStringLiteral("/live"), "1");
    m_lines = QStringLiteral("/sys/devices/platform/%1/%2")
                  .arg(QString::fromUtf8(readFile(m_folder + QStringLiteral("/dev_name"))), name());
}

void SimChip::unplug()
{
    writeFile(m_folder + QStringLiteral("/live"), "0");
}

QString SimChip::name() const
{
    return QString::fromUtf8(readFile(m_folder + QStringLiteral("/bank/chip_name")));
}

QString SimChip::lineFile(int line, const char* name) const
{
    return QStringLiteral("%1/sim_gpio%2/%3").arg(m_lines).arg(line).arg(QLatin1String(name));
}

void SimChip::pull(int line, int level) const
{
    writeFile(lineFile(line, "pull"), level != 0 ? "pull-up" : "pull-down");
}

QByteArray SimChip::pullOf(int line) const
{
    return readFile(lineFile(line, "pull"));
}

int SimChip::level(int line) const
{
    return readFile(levelFile(line)).toInt();
}

QString SimChip::levelFile(int line) const
{
    return lineFile(line, "value");
}
