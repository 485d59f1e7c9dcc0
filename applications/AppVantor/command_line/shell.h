#pragma once

#include "channel_names.h"
#include "expectation.h"
#include "script.h"
#include "shell_orders.h"

#include <plugin_management/d_scheduler.h>
#include <process/output.h>

#include <QStringList>

#include <memory>
#include <vector>

class DTool;

/// How a shell does its work.
struct ShellManner
{
    bool echo = false;      ///< it writes each line before it carries it out
    bool keepsGoing = true; ///< after a failure
};

/// Runs lines: orders and words of its own. Lines wait their turn: an order that does not listen, an
/// expectation, a wait and a sleep hold the next line back. Listening orders, and those whose line ends with
/// "&", run in the background. While so much waits for the reader of the output that results would have to be
/// left out, lines wait too.
class Shell : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(Shell)

public:
    Shell(DTool* tool, Output* output, ShellManner manner);
    ~Shell() override;

    /// Adds a line.
    void addLine(const ScriptLine& line);
    /// The lines of one input end here.
    void endInput();
    /// Says what is wrong with line, or with the input as a whole; it counts as a failure.
    void refuse(const ScriptLine& line, const DWording& problem);
    /// No line will come any more: once the lines are done, everything that runs is stopped, and ended is
    /// emitted.
    void close();
    /// Forgets the lines that wait, and takes no more.
    void abandon();
    /// The same, from outside: what is left out counts as a failure of the line that is being carried out.
    void breakOff(const DWording& reason);
    /// Stops what holds the next line back, and forgets a block that is still open.
    void interrupt();

    /// True while a line is being carried out.
    bool isBusy() const;
    /// True while the lines of a block are awaited.
    bool isInBlock() const { return m_script.isInBlock(); }
    /// Number of orders that have not ended.
    int runningOrders() const { return m_orders.running(); }
    /// The worst of what happened so far.
    int exitStatus() const { return m_exitStatus; }

    /// What word may be completed to, after the words before it.
    QStringList completions(const QStringList& before, const QString& word) const;

Q_SIGNALS:
    /// The shell waits for the next line.
    void ready();
    /// The next line is carried out.
    void lineBegun(const ScriptLine& line);
    /// A line "expect" is done, after so many seconds; complaint is empty when it was met.
    void expectationEnded(const ScriptLine& line, double seconds, const DWording& complaint);
    /// Another line has failed.
    void lineFailed(const ScriptLine& line, const DWording& reason);
    /// Because of a failure, all further lines are left out.
    void brokenOff();
    void ended();

private:
    struct Word;
    static const std::vector<Word>& words();

    void next();
    void endOrWait();
    void takeAnswers();
    void runLine();
    bool isAwaiting() const;
    bool runWord(const QStringList& line);
    void startOrder(const QStringList& words);
    void noteStart(const DFailure& refusal);
    void startAll(const std::vector<Invocation>& invocations);
    void orderEnded(const ScriptLine& line, const DFailure& failure);
    void getChannels(const QStringList& arguments);
    void setChannels(const QStringList& arguments);
    void switchOff(const QStringList& arguments);
    void listTheChannels(const QStringList& arguments);
    void listTheCommands(const QStringList& arguments);
    void expect(const QStringList& arguments);
    void endExpectation();
    void nameChannel(const QStringList& arguments);
    void quit(const QStringList& arguments);
    void sleep(const QStringList& arguments);
    void stopOrder(const QStringList& arguments);
    void waitFor(const QStringList& arguments);
    void writeHelp(const QStringList& arguments);
    void endSleep();
    /// Reads the number of an order that was started; 0, after a refusal, when it is none.
    int readNumber(const QString& text);
    void refuseThis(const DWording& problem) { refuse(m_line, problem); }
    void noteFailure(int status);
    void resume();
    void end();
    void raiseExitStatus(int status);

    DTool* m_tool;
    Output* m_output;
    const ShellManner m_manner;
    Script m_script;
    ScriptLine m_line;           ///< the one that is being carried out, or was last
    bool m_inBackground = false; ///< what it starts is not waited for
    ChannelNames m_names;
    ShellOrders m_orders;
    std::vector<int> m_awaited;      ///< numbers of the orders that hold the next line back
    DScheduler::Appointment m_sleep; ///< the end of a sleep; none without one
    std::unique_ptr<Expectation> m_expectation;
    bool m_resuming = false;
    bool m_inLine = false;
    bool m_closed = false;
    bool m_brokenOff = false;
    bool m_ending = false;
    int m_exitStatus = 0;
};
