#pragma once

#include <plugin_management/d_scheduler.h>
#include <process/output.h>

#include <QStringList>

#include <map>
#include <memory>
#include <queue>

class DOrder;
class DTool;

/// Runs lines: orders and built-in words. Lines wait their turn: an order that does not listen,
/// a wait and a sleep hold the next line back. Listening orders, and those whose line ends with "&", run in
/// the background. While so much waits for the reader of the output that results would have to be left out,
/// lines wait too.
class Shell : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(Shell)

public:
    Shell(DTool* tool, Output* output, bool echo);
    ~Shell() override;

    /// Adds a line.
    void addLine(const QString& line);
    /// Says what is wrong with the input; the exit status tells it too.
    void refuse(const QString& problem);
    /// No line will come any more: once the lines are done, everything that runs is stopped, and ended is
    /// emitted.
    void close();
    /// Forgets the lines that wait, and takes no more.
    void abandon();
    /// Stops what holds the next line back.
    void interrupt();

    /// True while a line is being carried out.
    bool isBusy() const;
    /// The worst of what happened so far.
    int exitStatus() const { return m_exitStatus; }

    /// What word may be completed to, after the words before it.
    QStringList completions(const QStringList& before, const QString& word) const;

Q_SIGNALS:
    /// The shell waits for the next line.
    void ready();
    void ended();

private:
    void next();
    void runLine(const QString& line);
    bool runBuiltin(const QStringList& words);
    void startOrder(const QStringList& words, bool background);
    void orderRuns(int number, std::unique_ptr<DOrder> running, const QString& command, bool background);
    void stopOrder(const QString& text);
    void waitFor(const QString& text);
    void sleep(const QString& text);
    void endSleep();
    void writeHelp();
    void orderEnded(int number);
    /// Reads the number of an order that was started; 0, after a refusal, when it is none.
    int readNumber(const QString& text);
    void resume();
    void end();
    void raiseExitStatus(int status);

    DTool* m_tool;
    Output* m_output;
    bool m_echo;
    std::queue<QString> m_lines;
    std::map<int, std::unique_ptr<DOrder>> m_orders;
    int m_lastNumber = 0;
    int m_awaited = 0;               ///< number of the order that holds the next line back
    DScheduler::Appointment m_sleep; ///< the end of a sleep; none without one
    bool m_resuming = false;
    bool m_inLine = false;
    bool m_closed = false;
    bool m_ending = false;
    int m_exitStatus = 0;
};
