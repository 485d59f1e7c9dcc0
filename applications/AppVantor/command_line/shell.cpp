#include "shell.h"

#include "failure_report.h"
#include "invocation.h"
#include "list_channels.h"
#include "list_commands.h"
#include "order_report.h"

#include <plugin_management/d_device.h>
#include <plugin_management/d_order.h>
#include <plugin_management/d_tool.h>
#include <process/failure_status.h>

#include <algorithm>
#include <utility>

namespace {

constexpr int c_longestSleepMs = 86400000;
constexpr qint64 c_usPerMs = 1000;

QStringList builtins()
{
    return {QStringLiteral("channels"), QStringLiteral("commands"), QStringLiteral("help"),
            QStringLiteral("quit"),     QStringLiteral("sleep"),    QStringLiteral("stop"),
            QStringLiteral("wait")};
}

QStringList channelIds(const DTool& tool)
{
    QStringList ids;
    for (const DToolChannel& channel : tool.channels()) {
        ids.append(channel.id);
    }
    return ids;
}

/// What a parameter is usually given.
QStringList usualValues(const DTool& tool, const QString& parameter)
{
    if (parameter == QLatin1String("channel")) {
        return channelIds(tool);
    }
    if (parameter == QLatin1String("state")) {
        return {QStringLiteral("ON"), QStringLiteral("OFF"), QStringLiteral("BLINK"),
                QStringLiteral("PULSE")};
    }
    if (parameter == QLatin1String("edge")) {
        return {QStringLiteral("RE"), QStringLiteral("FE"), QStringLiteral("HL"), QStringLiteral("LL")};
    }
    return {};
}

} // namespace

Shell::Shell(DTool* tool, Output* output, bool echo)
    : m_tool(tool)
    , m_output(output)
    , m_echo(echo)
{
    connect(output, &Output::roomAgain, this, &Shell::resume);
    connect(output, &Output::failed, this, &Shell::resume);
}

Shell::~Shell()
{
    endSleep();
}

void Shell::addLine(const QString& line)
{
    m_lines.push(line);
    resume();
}

void Shell::close()
{
    m_closed = true;
    resume();
}

void Shell::abandon()
{
    m_lines = {};
    close();
}

void Shell::interrupt()
{
    endSleep();
    const auto awaited = m_orders.find(m_awaited);
    if (awaited != m_orders.end()) {
        awaited->second->stop();
    }
    resume();
}

bool Shell::isBusy() const
{
    return m_inLine || m_sleep != DScheduler::Appointment() || m_orders.count(m_awaited) > 0;
}

QStringList Shell::completions(const QStringList& before, const QString& word) const
{
    QStringList candidates;
    const QVector<DCommandDescription> commands = m_tool->orderables();
    if (before.isEmpty()) {
        candidates = builtins();
        for (const DCommandDescription& command : commands) {
            candidates.append(command.name);
        }
    }
    for (const DCommandDescription& command : commands) {
        if (before.isEmpty() || command.name != before.first()) {
            continue;
        }
        for (const DDeclaration& parameter : command.parameters) {
            const QString prefix = parameter.name + QLatin1Char('=');
            if (!word.startsWith(prefix)) {
                candidates.append(prefix);
                continue;
            }
            const QStringList values = usualValues(*m_tool, parameter.name);
            for (const QString& value : values) {
                candidates.append(prefix + value);
            }
        }
    }
    QStringList matching;
    std::copy_if(candidates.cbegin(), candidates.cend(), std::back_inserter(matching),
                 [&word](const QString& candidate) { return candidate.startsWith(word); });
    return matching;
}

/// Goes on with the next line, from the event loop: a line never runs within another.
void Shell::resume()
{
    if (!m_resuming) {
        m_resuming = true;
        QMetaObject::invokeMethod(this, &Shell::next, Qt::QueuedConnection);
    }
}

void Shell::next()
{
    m_resuming = false;
    if (isBusy() || m_ending) {
        return;
    }
    if (!m_output->hasRoom() && !m_lines.empty()) {
        return; // results are never left out: the reader is given time
    }
    const bool goesOn = !m_output->hasFailed();
    if (goesOn && !m_lines.empty()) {
        const QString line = m_lines.front();
        m_lines.pop();
        m_inLine = true; // some lines wait in an event loop of their own
        runLine(line);
        m_inLine = false;
        if (!isBusy()) {
            resume();
        }
    } else if (m_closed || !goesOn) {
        end();
    } else {
        Q_EMIT ready();
    }
}

void Shell::runLine(const QString& line)
{
    if (m_echo) {
        m_output->text(QStringLiteral("> ") + line);
    }
    if (line.trimmed().startsWith(QLatin1Char('#'))) {
        return;
    }
    QString problem;
    QStringList words = splitLine(line, &problem);
    if (!problem.isEmpty()) {
        refuse(problem);
        return;
    }
    const bool background = words.size() > 1 && words.last() == QLatin1String("&");
    if (background) {
        words.removeLast();
    }
    if (!words.isEmpty() && !runBuiltin(words)) {
        startOrder(words, background);
    }
}

bool Shell::runBuiltin(const QStringList& words)
{
    const QString& word = words.first();
    if (!builtins().contains(word)) {
        return false;
    }
    const bool takesValue =
        word == QLatin1String("stop") || word == QLatin1String("wait") || word == QLatin1String("sleep");
    if (words.size() != (takesValue ? 2 : 1)) {
        refuse(takesValue ? QStringLiteral("expected \"%1\" and one number").arg(word)
                          : QStringLiteral("expected nothing after \"%1\"").arg(word));
    } else if (word == QLatin1String("stop")) {
        stopOrder(words.at(1));
    } else if (word == QLatin1String("wait")) {
        waitFor(words.at(1));
    } else if (word == QLatin1String("sleep")) {
        sleep(words.at(1));
    } else if (word == QLatin1String("help")) {
        writeHelp();
    } else if (word == QLatin1String("channels")) {
        raiseExitStatus(listChannels(m_tool, m_output));
    } else if (word == QLatin1String("commands")) {
        listCommands(*m_tool, m_output);
    } else {
        abandon();
    }
    return true;
}

void Shell::startOrder(const QStringList& words, bool background)
{
    QString problem;
    const Invocation invocation = readInvocation(words, &problem);
    if (!problem.isEmpty()) {
        refuse(problem);
        return;
    }
    auto order = std::make_unique<DOrder>(m_tool, invocation.command, invocation.arguments);
    order->start();
    if (order->failure().kind == DFailure::Kind::WrongInvocation) {
        reportRefusal(*order, m_output);
        raiseExitStatus(ExitWrongUsage);
        return;
    }
    const int number = ++m_lastNumber;
    reportOrder(order.get(), number, m_output);
    if (order->state() == DOrder::State::Finished) {
        raiseExitStatus(exitStatusOf(order->failure()));
    } else {
        orderRuns(number, std::move(order), invocation.command, background);
    }
}

void Shell::orderRuns(int number, std::unique_ptr<DOrder> running, const QString& command, bool background)
{
    const DOrder* order = running.get();
    connect(order, &DOrder::finished, this, [this, number] { orderEnded(number); });
    m_orders.emplace(number, std::move(running));
    if (background || order->isListening()) {
        m_output->text(QStringLiteral("[%1] %2 runs; \"stop %1\" ends it").arg(number).arg(command));
    } else {
        m_awaited = number;
    }
}

void Shell::stopOrder(const QString& text)
{
    const auto order = m_orders.find(readNumber(text));
    if (order != m_orders.end()) {
        order->second->stop();
    }
}

void Shell::waitFor(const QString& text)
{
    m_awaited = readNumber(text);
}

void Shell::sleep(const QString& text)
{
    bool ok = false;
    const int milliseconds = text.toInt(&ok);
    if (!ok || milliseconds < 0 || milliseconds > c_longestSleepMs) {
        refuse(QStringLiteral("expected milliseconds from 0 to %1, found \"%2\"")
                   .arg(c_longestSleepMs)
                   .arg(text));
        return;
    }
    DScheduler* clock = m_tool->device()->scheduler();
    m_sleep = clock->at(clock->now() + milliseconds * c_usPerMs, [this] {
        m_sleep = {};
        next();
    });
}

void Shell::endSleep()
{
    if (m_tool->device() != nullptr) {
        m_tool->device()->scheduler()->cancel(std::exchange(m_sleep, {}));
    }
}

void Shell::writeHelp()
{
    QString text =
        QStringLiteral("COMMAND NAME=VALUE …   runs an order; with \"&\" at the end, in the background\n"
                       "stop N                 stops the order N\n"
                       "wait N                 waits for the end of the order N\n"
                       "sleep MS               waits MS milliseconds\n"
                       "commands, channels     list what the tool has\n"
                       "help                   shows this\n"
                       "quit                   stops what runs, and ends\n"
                       "# …                    a remark");
    const QVector<DCommandDescription> stops = m_tool->stops();
    for (const DCommandDescription& stop : stops) {
        text += QStringLiteral("\n%1 %2").arg(stop.name, -22).arg(stop.description);
    }
    m_output->text(text);
}

void Shell::orderEnded(int number)
{
    const auto ended = m_orders.find(number);
    raiseExitStatus(exitStatusOf(ended->second->failure()));
    ended->second.release()->deleteLater(); // its signal is still on the stack
    m_orders.erase(ended);
    next(); // the next line needs no further pass of the event loop
}

int Shell::readNumber(const QString& text)
{
    bool ok = false;
    const int number = text.toInt(&ok);
    if (ok && number >= 1 && number <= m_lastNumber) {
        return number;
    }
    refuse(
        QStringLiteral("expected the number of an order, 1 to %1, found \"%2\"").arg(m_lastNumber).arg(text));
    return 0;
}

void Shell::refuse(const QString& problem)
{
    reportFailure("syntax", {problem}, m_output);
    raiseExitStatus(ExitWrongUsage);
}

void Shell::end()
{
    m_ending = true;
    while (!m_orders.empty()) {
        m_orders.begin()->second->stop(); // its end takes it out
    }
    if (m_output->hasFailed()) {
        raiseExitStatus(ExitOrderFailed);
    }
    Q_EMIT ended();
}

void Shell::raiseExitStatus(int status)
{
    m_exitStatus = std::max(m_exitStatus, status);
}
