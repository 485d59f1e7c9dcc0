#include "channel_value.h"
#include "completion.h"
#include "invocation.h"
#include "list_channels.h"
#include "list_commands.h"
#include "shell.h"

#include <plugin_management/d_device.h>
#include <plugin_management/d_tool.h>
#include <process/did_you_mean.h>
#include <process/failure_status.h>

#include <algorithm>
#include <climits>

// What each line does: an order, or a word of the shell's own.

namespace {

constexpr int c_longestSleepMs = 86400000;
constexpr qint64 c_usPerMs = 1000;
constexpr int c_usageWidth = -32;

DWording unknownCommand(const QString& name, const QStringList& known)
{
    const DWording meant = didYouMean(name, known);
    return wording(R"(unknown command "%1"%2)")
        .arg(name, meant.isEmpty() ? wording(R"(; "help" lists what there is)") : meant);
}

} // namespace

/// A word of the shell's own.
struct Shell::Word
{
    QString name;
    QString arguments;
    QString meaning;
    int fewest; ///< words that it takes
    int most;
    /// Carries out the words after it; null where the script itself does.
    void (Shell::*run)(const QStringList& arguments);

    QString usage() const { return (name + QLatin1Char(' ') + arguments).trimmed(); }
};

const std::vector<Shell::Word>& Shell::words()
{
    static const std::vector<Word> all = {
        {QStringLiteral("channels"),
         {},
         QStringLiteral("lists the tool's channels"),
         0,
         0,
         &Shell::listTheChannels},
        {QStringLiteral("commands"),
         {},
         QStringLiteral("lists the tool's commands"),
         0,
         0,
         &Shell::listTheCommands},
        {QStringLiteral("expect"), QStringLiteral("CHANNEL=VALUE [within MS]"),
         QStringLiteral("fails unless the channel has this level, or comes to it in time"), 1, 3,
         &Shell::expect},
        {QStringLiteral("get"), QStringLiteral("CHANNEL…"), QStringLiteral("reads channels"), 1, INT_MAX,
         &Shell::getChannels},
        {QStringLiteral("help"), {}, QStringLiteral("shows this"), 0, 0, &Shell::writeHelp},
        {QStringLiteral("let"), QStringLiteral("NAME = CHANNEL"),
         QStringLiteral("lets NAME stand for the channel from here on"), 1, INT_MAX, &Shell::nameChannel},
        {QStringLiteral("off"),
         {},
         QStringLiteral("switches off everything that the tool drives"),
         0,
         0,
         &Shell::switchOff},
        {QStringLiteral("quit"), {}, QStringLiteral("stops what runs, and ends"), 0, 0, &Shell::quit},
        {QStringLiteral("repeat"), QStringLiteral("N … end"),
         QStringLiteral("carries out the lines up to \"end\" N times"), 0, 0, nullptr},
        {QStringLiteral("set"), QStringLiteral("CHANNEL=VALUE…"),
         QStringLiteral("sets channels: ON, OFF, PULSE:MS, BLINK:MS:PERCENT, or a number"), 1, INT_MAX,
         &Shell::setChannels},
        {QStringLiteral("sleep"), QStringLiteral("MS"), QStringLiteral("waits MS milliseconds"), 1, 1,
         &Shell::sleep},
        {QStringLiteral("stop"), QStringLiteral("N"), QStringLiteral("stops the order N"), 1, 1,
         &Shell::stopOrder},
        {QStringLiteral("wait"), QStringLiteral("N"), QStringLiteral("waits for the end of the order N"), 1,
         1, &Shell::waitFor},
    };
    return all;
}

QStringList Shell::completions(const QStringList& before, const QString& word) const
{
    QStringList own = {QStringLiteral("end")};
    for (const Word& known : words()) {
        own.append(known.name);
    }
    return completionsOf(before, word, own, *m_tool, m_names);
}

bool Shell::runWord(const QStringList& line)
{
    const auto word = std::find_if(words().cbegin(), words().cend(),
                                   [&line](const Word& known) { return known.name == line.first(); });
    if (word == words().cend()) {
        return false;
    }
    const QStringList arguments = line.mid(1);
    if (arguments.size() >= word->fewest && arguments.size() <= word->most) {
        (this->*word->run)(arguments);
    } else {
        refuseThis(word->most == 0 ? wording(R"(expected nothing after "%1")").arg(word->name)
                                   : wording(R"(expected "%1")").arg(word->usage()));
    }
    return true;
}

void Shell::startOrder(const QStringList& words)
{
    DWording problem;
    Invocation invocation = readInvocation(words, &problem);
    if (!problem.isEmpty()) {
        const QStringList known = completions({}, {});
        refuseThis(known.contains(words.first()) ? problem : unknownCommand(words.first(), known));
        return;
    }
    const auto channel = invocation.arguments.find(QStringLiteral("channel"));
    if (channel != invocation.arguments.end() && channel->type() == QVariant::String) {
        *channel = m_names.channel(channel->toString());
    }
    noteStart(m_orders.start(invocation, m_line));
}

/// The order that was started last is waited for, or goes on beside.
void Shell::noteStart(const DFailure& refusal)
{
    if (refusal) {
        Q_EMIT lineFailed(m_line, refusal.text);
        noteFailure(ExitWrongUsage);
        return;
    }
    const int number = m_orders.last();
    if (!m_orders.isRunning(number)) {
        return;
    }
    if (m_inBackground || m_orders.isListening(number)) {
        m_output->text(
            QStringLiteral("[%1] %2 runs; \"stop %1\" ends it").arg(number).arg(m_orders.command(number)));
    } else {
        m_awaited.push_back(number);
    }
}

void Shell::startAll(const std::vector<Invocation>& invocations)
{
    for (const Invocation& invocation : invocations) {
        noteStart(m_orders.start(invocation, m_line));
    }
}

void Shell::getChannels(const QStringList& arguments)
{
    QVector<DToolChannel> channels;
    for (const QString& name : arguments) {
        DWording problem;
        const DToolChannel* channel = m_names.find(name, &problem);
        if (channel == nullptr) {
            refuseThis(problem);
            return;
        }
        channels.append(*channel);
    }
    for (const DToolChannel& channel : qAsConst(channels)) {
        noteStart(m_orders.read(channel, m_line));
    }
}

void Shell::setChannels(const QStringList& arguments)
{
    std::vector<Invocation> settings;
    for (const QString& word : arguments) {
        const int equals = word.lastIndexOf(QLatin1Char('='));
        const QString resolved = equals > 0 ? m_names.channel(word.left(equals)) + word.mid(equals) : word;
        DWording problem;
        settings.push_back(readSetting(m_tool->channels(), resolved, &problem));
        if (!problem.isEmpty()) {
            refuseThis(problem);
            return;
        }
    }
    startAll(settings);
}

void Shell::switchOff(const QStringList& arguments)
{
    Q_UNUSED(arguments)
    startAll(switchingOff(m_tool->channels()));
}

void Shell::listTheChannels(const QStringList& arguments)
{
    Q_UNUSED(arguments)
    const int status = listChannels(m_tool, m_output);
    if (status != ExitSuccess) {
        Q_EMIT lineFailed(m_line, wording("a channel cannot be read"));
        noteFailure(status);
    }
}

void Shell::listTheCommands(const QStringList& arguments)
{
    Q_UNUSED(arguments)
    listCommands(*m_tool, m_output);
}

void Shell::expect(const QStringList& arguments)
{
    DWording problem;
    const ExpectedLevel expected = readExpectedLevel(arguments, m_names, &problem);
    if (!problem.isEmpty()) {
        refuseThis(problem);
        return;
    }
    m_expectation = std::make_unique<Expectation>(m_tool, expected);
    connect(m_expectation.get(), &Expectation::ended, this, &Shell::endExpectation);
    m_expectation->start();
}

void Shell::nameChannel(const QStringList& arguments)
{
    const DWording problem = m_names.define(arguments);
    if (!problem.isEmpty()) {
        refuseThis(problem);
    }
}

void Shell::quit(const QStringList& arguments)
{
    Q_UNUSED(arguments)
    abandon();
}

void Shell::stopOrder(const QStringList& arguments)
{
    const int number = readNumber(arguments.first());
    if (m_orders.isRunning(number)) {
        m_orders.stop(number);
    } else if (number > 0) {
        m_output->text(QStringLiteral("[%1] has ended already").arg(number));
    }
}

void Shell::waitFor(const QStringList& arguments)
{
    m_awaited = {readNumber(arguments.first())};
}

void Shell::sleep(const QStringList& arguments)
{
    bool ok = false;
    const int milliseconds = arguments.first().toInt(&ok);
    if (!ok || milliseconds < 0 || milliseconds > c_longestSleepMs) {
        refuseThis(wording(R"(expected milliseconds from 0 to %1, found "%2")")
                       .arg(c_longestSleepMs, arguments.first()));
        return;
    }
    DScheduler* clock = m_tool->device()->scheduler();
    m_sleep = clock->at(clock->now() + milliseconds * c_usPerMs, [this] {
        m_sleep = {};
        next();
    });
}

void Shell::writeHelp(const QStringList& arguments)
{
    Q_UNUSED(arguments)
    const auto row = [](const QString& usage, const QString& meaning) {
        return QStringLiteral("%1 %2").arg(usage, c_usageWidth).arg(meaning);
    };
    QStringList rows = {row(QStringLiteral("COMMAND NAME=VALUE …"),
                            QStringLiteral("runs an order; with \"&\" at the end, in the background"))};
    for (const Word& word : words()) {
        rows.append(row(word.usage(), word.meaning));
    }
    rows.append(row(QStringLiteral("# …"), QStringLiteral("a remark")));
    const QVector<DCommandDescription> stops = m_tool->stops();
    for (const DCommandDescription& stop : stops) {
        rows.append(row(stop.name, stop.description));
    }
    m_output->text(rows.join(QLatin1Char('\n')));
}

int Shell::readNumber(const QString& text)
{
    bool ok = false;
    const int number = text.toInt(&ok);
    if (ok && number >= 1 && number <= m_orders.last()) {
        return number;
    }
    const DWording range =
        m_orders.last() > 0 ? wording("1 to %1").arg(m_orders.last()) : wording("of which there is none yet");
    refuseThis(wording(R"(expected the number of an order, %1, found "%2")").arg(range, text));
    return 0;
}
