#pragma once

#include "bench_source.h"

#include <QObject>

/// The configuration that a window shows, and what may take its place.
class ConfigurationChoice : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(ConfigurationChoice)
    Q_PROPERTY(QString folder READ folder CONSTANT)
    Q_PROPERTY(bool reloadable READ isReloadable CONSTANT)
    Q_PROPERTY(QString chosen READ chosen NOTIFY mistakesChanged)
    Q_PROPERTY(QStringList mistakes READ mistakes NOTIFY mistakesChanged)

public:
    /// current is the file that is shown, empty for the built-in configuration; what came from no
    /// configuration cannot be reloaded. source must outlive this.
    ConfigurationChoice(BenchSource* source, const QString& current, bool reloadable,
                        QObject* parent = nullptr);

    /// Where the file is, or the user's documents; with "/" at its end.
    QString folder() const;
    bool isReloadable() const { return m_reloadable; }
    /// The files that were shown last, the latest first, without the one that is shown now.
    Q_INVOKABLE QStringList recent() const;
    /// The file that was to be opened last.
    QString chosen() const { return m_chosen; }
    /// What is wrong with it.
    QStringList mistakes() const { return m_mistakes; }

    /// Reads file and makes its bench; "~/" at its begin is the home folder.
    Q_INVOKABLE void open(const QString& file);
    /// The same with the file that is shown.
    Q_INVOKABLE void reload();
    /// The same with the file that was to be opened last.
    Q_INVOKABLE void retry() { make(m_chosen); }

    /// The bench of the chosen file, once; null after mistakes.
    std::unique_ptr<Bench> takeBench() { return std::move(m_bench); }

Q_SIGNALS:
    void mistakesChanged();
    /// There are mistakes; nothing is to be opened.
    void failed();
    /// There is a bench.
    void ready();

private:
    void make(const QString& file);

    BenchSource* const m_source;
    const QString m_current;
    const bool m_reloadable;
    QString m_chosen;
    QStringList m_mistakes;
    std::unique_ptr<Bench> m_bench;
};
