#include "support/fuzzer_process.h"
#include "support/lifecycle_rules.h"
#include "support/memory_file.h"
#include "support/require.h"

#include <configuration/bench_configuration.h>
#include <devices/simulated_board.h>
#include <literals.h>
#include <plugin_management/d_tool.h>

#include <limits>
#include <memory>
#include <vector>

// Any bytes as a configuration file. One that is refused is refused with messages; of one that is taken, the
// board and the tools are made, and every channel is worked with.

namespace {

void checkRefusal(const QVector<Problem>& problems, const QString& file)
{
    require(!problems.isEmpty(), "a refusal says why");
    for (const Problem& problem : problems) {
        require(problem.file == file, "each mistake names the file");
        require(problem.line > 0 && problem.column > 0, "each mistake has a place");
        require(!problem.text.isEmpty() && !problem.toString().contains(QLatin1Char('\n')),
                "each mistake is told in one line");
    }
}

/// What the board relies on: one wire at most to a line, which is an input, and no loops.
void checkWires(const SimulatedBoardSetup& setup)
{
    QVector<int> sources(setup.lines.size(), -1);
    for (const SimulatedBoardSetup::Wire& wire : setup.wires) {
        require(sources.at(wire.to) < 0, "one wire at most leads to a line");
        require(setup.lines.at(wire.to).line.direction == DLine::Direction::In, "a wire leads to an input");
        sources[wire.to] = wire.from;
    }
    for (const int first : qAsConst(sources)) {
        int wires = 0;
        for (int line = first; line >= 0; line = sources.at(line)) {
            require(++wires <= setup.wires.size(), "wires form no loop");
        }
    }
}

void checkLevels(const LineDevice& board)
{
    for (int line = 0; line < board.lines().size(); ++line) {
        const LineLevel level = board.level(line);
        require(level.known == board.isConnected(), "levels are known while the board is there");
        require(level.level >= 0 && level.level <= board.lines().at(line).highestLevel(),
                "levels stay in their range");
        require(level.sinceUs <= fuzzerTime().now(), "no level comes from the future");
    }
}

/// Orders of all kinds on every channel, at the same time.
std::vector<std::unique_ptr<DOrder>> startOrders(DTool* tool)
{
    std::vector<std::unique_ptr<DOrder>> orders;
    const auto start = [tool, &orders](const QString& command, const QVariantMap& arguments) {
        orders.push_back(std::make_unique<DOrder>(tool, command, arguments));
        watchOrder(orders.back().get());
        orders.back()->start();
    };
    for (const DToolChannel& channel : tool->channels()) {
        const QString id = channel.id;
        QVariantMap arguments = {{"channel"_s, id}};
        start("startListening"_s, arguments);
        start("getValue"_s, arguments);
        start("switchValue"_s, arguments);
        arguments.insert("state"_s, "PULSE"_s);
        start("setValue"_s, arguments);
        arguments = {{"channel"_s, id}, {"state"_s, "BLINK"_s}, {"duration"_s, 20}, {"dutyCycle"_s, 50}};
        start("setValue"_s, arguments);
        require(tool->getLinkedChannel(id) ==
                    tool->getInfoFromChannel(id, "link"_s, QMetaType::QString, QString()),
                "a channel is linked to its item \"link\"");
    }
    start("listenToAll"_s, {});
    return orders;
}

void workWith(const std::vector<std::unique_ptr<DTool>>& tools, const std::function<void()>& passBoardTime)
{
    constexpr int longerThanAnyReply = 5000;
    std::vector<std::unique_ptr<DOrder>> orders;
    for (const auto& tool : tools) {
        auto more = startOrders(tool.get());
        std::move(more.begin(), more.end(), std::back_inserter(orders));
    }
    settle();
    passBoardTime();
    settle();
    passTime(longerThanAnyReply);
    settle();
    passTime(longerThanAnyReply); // what a pulse sent at its end may have stayed without a reply
    settle();
    for (const auto& order : orders) {
        require(order->isListening() || order->state() == DOrder::State::Finished,
                "an order that does not listen has ended when its time is over");
        order->stop();
        require(order->state() == DOrder::State::Finished, "an order that was stopped has ended");
    }
}

std::vector<std::unique_ptr<DTool>> makeTools(const BenchConfiguration& configuration, DDevice* device)
{
    std::vector<std::unique_ptr<DTool>> tools;
    for (const BenchConfiguration::Tool& tool : configuration.tools) {
        require(!tool.pluginFile.isEmpty(), "each tool has a plugin");
        tools.push_back(std::make_unique<DTool>(tool.entry, watchedPlugin(), device));
    }
    require(!tools.empty(), "there is a tool");
    return tools;
}

void workWithBoard(const BenchConfiguration& configuration, const SimulatedBoardSetup& setup)
{
    constexpr qint64 someTimeUs = 50000;
    checkWires(setup);
    const std::unique_ptr<LineDevice> board =
        makeSimulatedBoard(setup, &fuzzerTime(), DevicePlace::SameThread);
    board->open();
    checkLevels(*board);
    workWith(makeTools(configuration, board.get()), [&] {
        for (int line = 0; line < board->lines().size(); ++line) {
            board->setInput(line, std::numeric_limits<int>::max());
        }
        fuzzerTime().advance(someTimeUs);
        checkLevels(*board);
    });
    settle();
    require(board->pendingRequests() == 0, "no request outlives its order");
    board->setPluggedIn(false);
    checkLevels(*board);
    board->setPluggedIn(true);
    checkLevels(*board);
}

/// The lines of chips are left alone: on a machine that has some, they are somebody's.
void workWithoutChips(const BenchConfiguration& configuration, const GpioChipSetup& setup)
{
    constexpr int longestDebounceUs = 1000000;
    for (const GpioChipSetup::Line& line : setup.lines) {
        bool isOffset = false;
        line.line.toInt(&isOffset);
        require(!line.name.isEmpty() && !line.line.isEmpty(), "a line can be found");
        require(!isOffset || !line.chip.isEmpty(), "an offset is one of a chip");
        require(line.settings.debounceUs >= 0 && line.settings.debounceUs <= longestDebounceUs,
                "a debounce time stays in its range");
    }
    workWith(makeTools(configuration, nullptr), [] {});
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const quint8* bytes, std::size_t size)
{
    beginInput();
    static MemoryFile file;
    file.write(bytes, size);
    QVector<Problem> problems;
    const std::optional<BenchConfiguration> configuration = readConfiguration(file.name(), &problems);
    if (!configuration) {
        checkRefusal(problems, file.name());
        return 0;
    }
    require(problems.isEmpty(), "what is taken has no mistake");
    if (const auto* board = std::get_if<SimulatedBoardSetup>(&configuration->device)) {
        workWithBoard(*configuration, *board);
    } else if (const auto* chips = std::get_if<GpioChipSetup>(&configuration->device)) {
        workWithoutChips(*configuration, *chips);
    }
    return 0;
}
