#pragma once

#include "bench_source.h"

#include <QObject>
#include <QTimer>

/// The script that is carried out on the bench of a window: the line that it has come to, and what became of
/// it.
class ScriptRun : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(ScriptRun)
    Q_PROPERTY(bool running READ isRunning NOTIFY changed)
    Q_PROPERTY(QString file READ file NOTIFY changed)
    Q_PROPERTY(int number READ number NOTIFY changed)
    Q_PROPERTY(QString text READ text NOTIFY changed)
    Q_PROPERTY(QString outcome READ outcome NOTIFY changed)
    Q_PROPERTY(bool failed READ hasFailed NOTIFY changed)

public:
    /// source must outlive this.
    explicit ScriptRun(BenchSource* source, QObject* parent = nullptr);
    ~ScriptRun() override;

    bool isRunning() const { return m_running; }
    /// The line that is carried out, or was last.
    QString file() const { return m_line.file; }
    int number() const { return m_line.number; }
    QString text() const { return m_line.text; }
    /// What became of the script, for people; empty while it runs, and where there was none.
    QString outcome() const { return m_outcome; }
    bool hasFailed() const { return m_failed; }

    /// Number of orders that the script has left running after its last line.
    int ordersLeft() const { return m_running ? 0 : m_source->ordersOfScript(); }

    /// Begins to carry file out on tool; "~/" at its begin is the home folder. What a script before it left
    /// running is stopped.
    Q_INVOKABLE void begin(QObject* tool, const QString& file);
    /// Leaves out the lines that are left and stops what the script has running.
    Q_INVOKABLE void stop();
    /// Forgets the outcome.
    Q_INVOKABLE void dismiss();

Q_SIGNALS:
    void changed();

private:
    void showLine(const ScriptPlace& line);
    void showEnd(const Problem& complaint);

    BenchSource* const m_source;
    bool m_running = false;
    ScriptPlace m_line;
    QString m_outcome;
    bool m_failed = false;
    QTimer m_showing; ///< lines may follow each other faster than anybody reads
};
