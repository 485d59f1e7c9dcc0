#include "support/captured_descriptor.h"
#include "support/fuzzer_process.h"
#include "support/require.h"

#include <channel_entry.h>
#include <command_line/invocation.h>
#include <command_line/shell.h>
#include <devices/simulated_board.h>
#include <literals.h>
#include <plugin_management/d_tool.h>

#include <QAbstractEventDispatcher>
#include <QCoreApplication>

#include <algorithm>
#include <set>
#include <sstream>
#include <unistd.h>

// Any bytes as the lines of a shell script, on a board that has lines of all kinds and defects.

namespace {

/// Each line has a channel called like it in capitals.
QVariantMap toolConfiguration()
{
    return {{"name"_s, "T"_s},
            {"channels"_s, QVariantList{channelEntry("LAMP"_s, "digitalInput"_s, "out"_s, "lamp"_s),
                                        channelEntry("ECHO"_s, "digitalOutput"_s, "in"_s, "echo"_s),
                                        channelEntry("DIAL"_s, "analogInput"_s, "out"_s, "dial"_s),
                                        channelEntry("WAVE"_s, "analogOutput"_s, "in"_s, "wave"_s),
                                        channelEntry("DEAD"_s, "digitalInput"_s, "out"_s, "dead"_s),
                                        channelEntry("LATE"_s, "digitalInput"_s, "out"_s, "late"_s),
                                        channelEntry("BARE"_s, "digitalInput"_s, "out"_s, QString())}}};
}

SimulatedBoardSetup boardSetup()
{
    using Setup = SimulatedBoardSetup;
    Waveform sine;
    sine.shape = Waveform::Shape::Sine;
    sine.high = 65535;
    sine.periodUs = 4000000;
    sine.intervalUs = 500000;
    const auto digital = DLine::Kind::Digital;
    const auto analog = DLine::Kind::Analog;
    Setup setup;
    setup.lines = {{{"lamp"_s, digital, DLine::Direction::Out}, 0, {}},
                   {{"echo"_s, digital, DLine::Direction::In}, 0, {}},
                   {{"dial"_s, analog, DLine::Direction::Out}, 7, {}},
                   {{"wave"_s, analog, DLine::Direction::In}, 0, sine},
                   {{"dead"_s, digital, DLine::Direction::Out}, 0, {}},
                   {{"late"_s, digital, DLine::Direction::Out}, 0, {}}};
    setup.wires = {{0, 1, 20000, true}};
    setup.faults = {{Setup::Fault::Kind::Silent, "dead"_s, {}, 0},
                    {Setup::Fault::Kind::Late, "late"_s, {}, 300000}};
    return setup;
}

struct Outcome
{
    int status;
    std::string output;
    std::string diagnostics;
};

/// Waits as long as a line takes, and interrupts one that takes too long; leaves out the rest of a script
/// that repeats itself for too long.
void runLines(Shell* shell, const QStringList& lines)
{
    constexpr int longestWait = 40;
    constexpr int mostPasses = 2000;
    bool ended = false;
    QObject::connect(shell, &Shell::ended, shell, [&ended] {
        require(!ended, "a shell ends once");
        ended = true;
    });
    int number = 0;
    for (const QString& line : lines) {
        shell->addLine({"f"_s, ++number, line});
    }
    shell->endInput();
    shell->close();
    QAbstractEventDispatcher* dispatcher = QAbstractEventDispatcher::instance();
    int waits = 0;
    int pass = 0;
    while (!ended) {
        if (++pass == mostPasses) {
            shell->abandon();
        }
        if (dispatcher->hasPendingEvents()) {
            dispatcher->processEvents(QEventLoop::AllEvents);
        } else if (shell->isBusy() && ++waits % longestWait != 0) {
            dispatcher->processEvents(QEventLoop::WaitForMoreEvents);
        } else {
            shell->interrupt();
        }
    }
    settle();
}

Outcome run(const QStringList& lines, bool json, bool keepsGoing)
{
    const CapturedDescriptor out(STDOUT_FILENO);
    const CapturedDescriptor diagnostics(STDERR_FILENO);
    const std::unique_ptr<LineDevice> board =
        makeSimulatedBoard(boardSetup(), &fuzzerTime(), DevicePlace::SameThread);
    board->open();
    DTool tool(toolConfiguration(), watchedPlugin(), board.get());
    Output output(json);
    Shell shell(&tool, &output, {!json, keepsGoing});
    runLines(&shell, lines);
    require(board->pendingRequests() == 0, "no request outlives the shell's orders");
    return {shell.exitStatus(), out.text(), diagnostics.text()};
}

/// The order that every script begins with, so that there is always something to tell.
constexpr char c_firstLine[] = "getValue channel=LAMP\n";

bool beginsWith(const std::string& text, const std::string& beginning)
{
    return text.compare(0, beginning.size(), beginning) == 0;
}

/// The numbers of the orders that the lines of text tell about, in this form.
std::set<int> ordersTold(const std::string& text, const char* form)
{
    std::istringstream lines(text);
    std::set<int> orders;
    for (std::string line; std::getline(lines, line);) {
        int number = 0;
        if (std::sscanf(line.c_str(), form, &number) == 1) {
            orders.insert(number);
        }
    }
    return orders;
}

/// True when text tells of more than what goes on by itself at the end, which is no failure.
bool tellsOfFailures(const std::string& text)
{
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        if (!beginsWith(line, "appvantor: still driven at the end: ")) {
            return true;
        }
    }
    return false;
}

/// A JSON object a line; of each order its events, if any, and then its end. Gives the orders.
std::set<int> checkJson(const std::string& output)
{
    std::istringstream lines(output);
    std::set<int> told;
    std::set<int> ended;
    for (std::string line; std::getline(lines, line);) {
        const Json json = Json::parse(line, nullptr, false);
        require(json.is_object(), "each line of output is a JSON object");
        if (json.contains("order") && json.at("order").is_number()) {
            const int number = json.at("order").get<int>();
            require(ended.count(number) == 0, "an order tells nothing after its end");
            told.insert(number);
            if (json.at("type") == "result" || json.at("type") == "failure") {
                ended.insert(number);
            }
        }
    }
    require(told == ended, "every order tells its end");
    return ended;
}

/// Both forms tell about the same orders; the first is that of the first line.
void checkOutput(const Outcome& text, const Outcome& json)
{
    require(beginsWith(text.output, std::string("> ") + c_firstLine + "[1] getValue: value=0\n"),
            "the first line is told as text");
    require(beginsWith(json.output, R"({"type":"result","order":1,)"), "the first line is told as JSON");
    std::set<int> orders = ordersTold(text.output, "[%d] ");
    orders.merge(ordersTold(text.diagnostics, "appvantor: f:%*d: [%d] "));
    const std::set<int> all = checkJson(json.output); // text tells of some by their channels only
    require(std::includes(all.cbegin(), all.cend(), orders.cbegin(), orders.cend()),
            "text tells about no order that JSON does not tell about");
    require(*all.rbegin() == static_cast<int>(all.size()), "orders are numbered one by one");
}

void checkQuoting(const QStringList& words)
{
    QString line;
    for (const QString& word : words) {
        line += "''"_s; // makes a word of nothing, too
        for (const QChar character : word) {
            line += QLatin1Char('\\');
            line += character;
        }
        line += QLatin1Char(' ');
    }
    DWording problem;
    require(splitLine(line, &problem) == words && problem.isEmpty(), "words that are quoted come back");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const quint8* bytes, std::size_t size)
{
    beginInput();
    constexpr int mostLines = 12;
    const QString script = QLatin1String(c_firstLine) +
                           QString::fromUtf8(reinterpret_cast<const char*>(bytes), static_cast<int>(size));
    const QStringList lines = script.split(QLatin1Char('\n')).mid(0, mostLines);
    for (const QString& line : lines) {
        DWording problem;
        checkQuoting(splitLine(line, &problem));
    }
    const bool keepsGoing = size % 2 == 0;
    const Outcome text = run(lines, false, keepsGoing);
    const Outcome json = run(lines, true, keepsGoing);
    checkOutput(text, json);
    require(text.status >= 0 && text.status <= 3, "a shell ends with a known status");
    require(!tellsOfFailures(text.diagnostics) || text.status != 0,
            "what was refused or failed shows in the status");
    require(text.status == json.status && text.diagnostics == json.diagnostics,
            "the form of the output changes nothing else");
    return 0;
}
