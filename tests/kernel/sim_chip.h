#pragma once

#include "literals.h"

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QString>
#include <QStringList>

#include <map>
#include <memory>
#include <stdexcept>

inline QByteArray readFile(const QString& name)
{
    QFile file(name);
    if (!file.open(QIODevice::ReadOnly)) {
        throw std::runtime_error((name + " cannot be read"_s).toStdString());
    }
    return file.readAll().trimmed();
}

inline void writeFile(const QString& name, const QByteArray& text)
{
    QFile file(name);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) || file.write(text) != text.size()) {
        throw std::runtime_error((name + " cannot be written"_s).toStdString());
    }
}

/// A simulated GPIO chip of the kernel, and the far side of its lines.
class SimChip
{
public:
    /// Plugs in a chip with lines of these names (or without names). Several chips may have one label.
    SimChip(const QString& label, int lineCount, const QStringList& names = QStringList())
        : m_label(label)
        , m_folder("/sys/kernel/config/gpio-sim/%1-%2"_s.arg(label).arg(++s_chips))
        , m_lineCount(lineCount)
        , m_names(names)
    {
        QDir().mkpath(m_folder + "/bank"_s);
        writeFile(m_folder + "/bank/num_lines"_s, QByteArray::number(m_lineCount));
        writeFile(m_folder + "/bank/label"_s, m_label.toUtf8());
        for (int line = 0; line < m_names.size(); ++line) {
            const QString folder = "%1/bank/line%2"_s.arg(m_folder).arg(line);
            QDir().mkdir(folder);
            writeFile(folder + "/name"_s, m_names.at(line).toUtf8());
        }
        plugIn();
    }

    ~SimChip()
    {
        try {
            unplug();
        } catch (const std::runtime_error&) {
            qWarning("a simulated chip could not be unplugged");
        }
        for (int line = 0; line < m_names.size(); ++line) {
            QDir().rmdir("%1/bank/line%2"_s.arg(m_folder).arg(line));
        }
        QDir().rmdir(m_folder + "/bank"_s);
        QDir().rmdir(m_folder);
    }

    Q_DISABLE_COPY(SimChip)

    void plugIn()
    {
        writeFile(m_folder + "/live"_s, "1");
        m_lines = "/sys/devices/platform/%1/%2"_s.arg(QString::fromUtf8(readFile(m_folder + "/dev_name"_s)),
                                                      name());
    }

    void unplug()
    {
        m_pulls.clear();
        writeFile(m_folder + "/live"_s, "0");
    }

    QString label() const { return m_label; }
    /// "gpiochip0", for example.
    QString name() const { return QString::fromUtf8(readFile(m_folder + "/bank/chip_name"_s)); }

    /// Pulls a line from outside to level.
    void pull(int line, int level) const
    {
        std::unique_ptr<QFile>& file = m_pulls[line];
        if (file == nullptr) {
            file = std::make_unique<QFile>(lineFile(line, "pull"));
            file->open(QIODevice::WriteOnly | QIODevice::Unbuffered);
        }
        const QByteArray text = level != 0 ? "pull-up" : "pull-down";
        if (!file->seek(0) || file->write(text) != text.size()) {
            throw std::runtime_error((file->fileName() + " cannot be written"_s).toStdString());
        }
    }

    /// Where the far side pulls a line: "pull-up" or "pull-down".
    QByteArray pullOf(int line) const { return readFile(lineFile(line, "pull")); }
    /// The level of the line on the wire.
    int level(int line) const { return readFile(levelFile(line)).toInt(); }
    /// The file that level() reads.
    QString levelFile(int line) const { return lineFile(line, "value"); }

private:
    QString lineFile(int line, const char* name) const
    {
        return "%1/sim_gpio%2/%3"_s.arg(m_lines).arg(line).arg(QLatin1String(name));
    }

    static inline int s_chips = 0;

    QString m_label;
    QString m_folder;
    int m_lineCount;
    QStringList m_names;
    QString m_lines;
    mutable std::map<int, std::unique_ptr<QFile>> m_pulls; ///< by their lines, once they were pulled
};
