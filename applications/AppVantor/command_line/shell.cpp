#include "shell.h"

#include "failure_report.h"
#include "invocation.h"

#include <plugin_management/d_device.h>
#include <plugin_management/d_order.h>
#include <plugin_management/d_tool.h>
#include <process/diagnostics.h>
#include <process/failure_status.h>

#include <QCoreApplication>

#include <algorithm>
#include <utility>

Shell::Shell(DTool* tool, Output* output, ShellManner manner)
    : m_tool(tool)
    , m_output(output)
    , m_manner(manner)
    , m_names(*tool)
    , m_orders(tool, output)
{
    connect(output, &Output::roomAgain, this, &Shell::resume);
    connect(output, &Output::failed, this, &Shell::resume);
    connect(&m_orders, &ShellOrders::ended, this, &Shell::orderEnded);
}

Shell::~Shell()
{
    endSleep();
}

void Shell::addLine(const ScriptLine& line)
{
    if (!m_brokenOff) {
        m_script.add(line);
        resume();
    }
}

void Shell::endInput()
{
    m_script.endInput();
    resume();
}

void Shell::close()
{
    m_closed = true;
    resume();
}

void Shell::abandon()
{
    m_script.clear();
    close();
}

void Shell::breakOff(const DWording& reason)
{
    if (m_expectation == nullptr && (!m_script.isEmpty() || isBusy())) { // an expectation tells of itself
        Q_EMIT lineFailed(m_line, reason);
    }
    abandon();
}

void Shell::interrupt()
{
    endSleep();
    m_script.dropOpenBlock();
    if (m_expectation != nullptr) {
        m_expectation->stop();
    }
    const std::vector<int> awaited = m_awaited; // the next line comes with the end of the last one
    for (const int number : awaited) {
        if (m_orders.isRunning(number)) {
            m_orders.stop(number);
        }
    }
    resume();
}

bool Shell::isBusy() const
{
    return m_inLine || m_sleep != DScheduler::Appointment() || m_expectation != nullptr || isAwaiting();
}

bool Shell::isAwaiting() const
{
    return std::any_of(m_awaited.cbegin(), m_awaited.cend(),
                       [this](int number) { return m_orders.isRunning(number); });
}

/// Goes on with the next line, from the event loop: a line never runs within another.
void Shell::resume()
{
    if (!m_resuming) {
        m_resuming = true;
        QMetaObject::invokeMethod(this, &Shell::next, Qt::QueuedConnection);
    }
}

/// Some lines at a time: the event loop has more to do.
void Shell::next()
{
    constexpr int linesAtATime = 16;
    m_resuming = false;
    for (int line = 0; line < linesAtATime; ++line) {
        if (isBusy() || m_ending) {
            return;
        }
        if (m_script.isEmpty() || m_output->hasFailed()) {
            endOrWait();
            return;
        }
        if (!m_output->hasRoom()) {
            return; // results are never left out: the reader is given time
        }
        m_line = m_script.next();
        m_awaited.clear();
        Q_EMIT lineBegun(m_line);
        m_inLine = true; // some lines wait in an event loop of their own
        runLine();
        takeAnswers();
        m_inLine = false;
    }
    if (!isBusy()) {
        resume();
    }
}

void Shell::endOrWait()
{
    if (m_closed || m_output->hasFailed()) {
        end();
    } else {
        Q_EMIT ready();
    }
}

/// What the device has answered at once needs no pass of the event loop.
void Shell::takeAnswers()
{
    if (m_tool->device() != nullptr) {
        QCoreApplication::sendPostedEvents(m_tool->device());
    }
}

void Shell::runLine()
{
    if (m_manner.echo) {
        m_output->text(QStringLiteral("> ") + m_line.text);
    }
    if (m_line.text.trimmed().startsWith(QLatin1Char('#'))) {
        return;
    }
    DWording problem;
    QStringList words = splitLine(m_line.text, &problem);
    problem = m_line.problem.isEmpty() ? problem : m_line.problem;
    if (!problem.isEmpty()) {
        refuseThis(problem);
        return;
    }
    m_inBackground = words.size() > 1 && words.last() == QLatin1String("&");
    if (m_inBackground) {
        words.removeLast();
    }
    if (!words.isEmpty() && !runWord(words)) {
        startOrder(words);
    }
}

/// What a script has stopped itself is no reason to end it.
void Shell::orderEnded(const ScriptLine& line, const DFailure& failure)
{
    const int status = exitStatusOf(failure);
    if (failure.kind == DFailure::Kind::Stopped) {
        raiseExitStatus(status);
    } else if (failure) {
        Q_EMIT lineFailed(line, failure.text);
        noteFailure(status);
    }
    next(); // the next line needs no further pass of the event loop
}

void Shell::endExpectation()
{
    Expectation* done = m_expectation.release();
    done->deleteLater(); // its signal is on the stack
    done->report(m_line.told(), m_output);
    Q_EMIT expectationEnded(m_line, done->seconds(), done->isMet() ? DWording() : done->complaint());
    if (!done->isMet()) {
        noteFailure(done->failure() ? exitStatusOf(done->failure()) : ExitOrderFailed);
    }
    resume();
}

void Shell::endSleep()
{
    if (m_tool->device() != nullptr) {
        m_tool->device()->scheduler()->cancel(std::exchange(m_sleep, {}));
    }
}

void Shell::refuse(const ScriptLine& line, const DWording& problem)
{
    reportFailure("syntax", line.told(problem), m_output);
    Q_EMIT lineFailed(line, problem);
    noteFailure(ExitWrongUsage);
}

/// A script ends at its first failure, whatever it waits for.
void Shell::noteFailure(int status)
{
    raiseExitStatus(status);
    if (m_manner.keepsGoing || m_brokenOff || m_ending) {
        return;
    }
    m_brokenOff = true;
    m_script.clear();
    m_awaited.clear();
    m_expectation.reset();
    endSleep();
    resume();
    Q_EMIT brokenOff();
}

void Shell::end()
{
    m_ending = true;
    if (!m_line.place().isEmpty()) { // who types knows
        m_orders.reportDriven();
    }
    m_orders.stopAll();
    Q_EMIT ended();
}

void Shell::raiseExitStatus(int status)
{
    m_exitStatus = std::max(m_exitStatus, status);
}
