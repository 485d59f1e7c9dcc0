#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>
#include <QStringList>

#include <map>
#include <memory>

/// A simulated GPIO chip of the kernel, and the far side of its lines.
class SimChip
{
public:
    /// Plugs in a chip with lines of these names (or without names). Several chips may have one label.
    SimChip(const QString& label, int lineCount, const QStringList& names = QStringList());
    ~SimChip();
    Q_DISABLE_COPY(SimChip)

    void plugIn();
    void unplug();

    QString label() const { return m_label; }
    /// "gpiochip0", for example.
    QString name() const;

    /// Pulls a line from outside to level.
    void pull(int line, int level) const;
    /// Where the far side pulls a line: "pull-up" or "pull-down".
    QByteArray pullOf(int line) const;
    /// The level of the line on the wire.
    int level(int line) const;
    /// The file that level() reads.
    QString levelFile(int line) const;

private:
    QString lineFile(int line, const char* name) const;

    QString m_label;
    QString m_folder;
    int m_lineCount;
    QStringList m_names;
    QString m_lines;
    mutable std::map<int, std::unique_ptr<QFile>> m_pulls; ///< by their lines, once they were pulled
};

QByteArray readFile(const QString& file);
void writeFile(const QString& file, const QByteArray& text);
