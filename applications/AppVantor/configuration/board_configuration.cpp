#include "board_configuration.h"

#include <QHash>

#include <algorithm>
#include <limits>

namespace {

constexpr int c_longestMs = 3600000;
constexpr qint64 c_usPerMs = 1000;

using Setup = SimulatedBoardSetup;
using LineNumbers = QHash<QString, int>;

Waveform readWaveform(const ConfigObject& entry)
{
    entry.allowOnly({QStringLiteral("shape"), QStringLiteral("low"), QStringLiteral("high"),
                     QStringLiteral("periodMs"), QStringLiteral("intervalMs"), QStringLiteral("seed")});
    constexpr int highest = std::numeric_limits<quint16>::max();
    Waveform waveform;
    waveform.shape = static_cast<Waveform::Shape>(entry.choiceOr(
        QStringLiteral("shape"),
        {QStringLiteral("constant"), QStringLiteral("ramp"), QStringLiteral("sine"), QStringLiteral("noise")},
        0));
    waveform.low = entry.numberOr(QStringLiteral("low"), 0, highest, 0);
    waveform.high = entry.numberOr(QStringLiteral("high"), 0, highest, highest);
    waveform.periodUs = entry.numberOr(QStringLiteral("periodMs"), 1, c_longestMs, 1000) * c_usPerMs;
    waveform.intervalUs = entry.numberOr(QStringLiteral("intervalMs"), 1, c_longestMs, 100) * c_usPerMs;
    waveform.seed =
        static_cast<quint32>(entry.numberOr(QStringLiteral("seed"), 0, std::numeric_limits<int>::max(), 0));
    if (waveform.high < waveform.low) {
        entry.addProblem(QStringLiteral("high"), wording(R"(expected at least "low", %1)").arg(waveform.low));
    }
    return waveform;
}

Setup::Line readLine(const ConfigObject& entry)
{
    entry.allowOnly({QStringLiteral("name"), QStringLiteral("kind"), QStringLiteral("direction"),
                     QStringLiteral("level"), QStringLiteral("waveform")});
    Setup::Line line;
    line.line.name = entry.text(QStringLiteral("name"));
    line.line.kind = static_cast<DLine::Kind>(
        entry.choiceOr(QStringLiteral("kind"), {QStringLiteral("digital"), QStringLiteral("analog")}, 0));
    const bool analog = line.line.kind == DLine::Kind::Analog;
    const auto usual = analog ? DLine::Direction::In : DLine::Direction::Out;
    line.line.direction = static_cast<DLine::Direction>(entry.choiceOr(
        QStringLiteral("direction"), {QStringLiteral("in"), QStringLiteral("out")}, static_cast<int>(usual)));
    if (!entry.isSound()) {
        return line;
    }
    line.level = entry.numberOr(QStringLiteral("level"), 0, line.line.highestLevel(), 0);
    if (entry.has(QStringLiteral("waveform"))) {
        line.waveform = readWaveform(entry.object(QStringLiteral("waveform")));
        if (!analog || line.line.direction == DLine::Direction::Out) {
            entry.addProblem(QStringLiteral("waveform"), wording("expected on an analogue input only"));
        }
    }
    return line;
}

/// The number of the line that an entry names; nothing, and a problem, when there is none.
std::optional<int> readLineName(const ConfigObject& entry, const QString& key, const LineNumbers& numbers)
{
    const QString name = entry.text(key);
    const auto number = numbers.constFind(name);
    if (number != numbers.constEnd()) {
        return *number;
    }
    const bool allHaveNames = !numbers.contains(QString());
    if (!name.isEmpty() && allHaveNames) {
        entry.addProblem(key, wording(R"(expected the name of a line, found "%1")").arg(name));
    }
    return std::nullopt;
}

void readLines(const ConfigObject& device, const std::vector<ConfigObject>& entries, Setup* setup,
               LineNumbers* numbers)
{
    for (const ConfigObject& entry : entries) {
        const Setup::Line line = readLine(entry);
        if (!line.line.name.isEmpty() && numbers->contains(line.line.name)) {
            entry.addProblem(QStringLiteral("name"),
                             wording(R"(expected a name of its own, "%1" is taken)").arg(line.line.name));
        }
        numbers->insert(line.line.name, setup->lines.size());
        setup->lines.append(line);
    }
    if (setup->lines.isEmpty()) {
        device.addProblem(QStringLiteral("lines"), wording("expected at least one line"));
    }
}

/// A line upstream of each, at first the one that its wire comes from; -1 for a line without a wire.
using Upstream = QVector<int>;

/// True when a wire from one line to another, which has none yet, would close a loop. Shortens the way that
/// it goes, so that long chains are quickly read.
bool closesLoop(Upstream* upstream, int from, int to)
{
    int line = from;
    while (line != to && upstream->at(line) >= 0) {
        const int next = upstream->at(line);
        if (upstream->at(next) >= 0) {
            (*upstream)[line] = upstream->at(next);
        }
        line = next;
    }
    return line == to;
}

Setup::Wire readWire(const ConfigObject& entry, int from, int to)
{
    Setup::Wire wire;
    wire.from = from;
    wire.to = to;
    wire.delayUs = entry.numberOr(QStringLiteral("delayMs"), 0, c_longestMs, 0) * c_usPerMs;
    wire.inverted = entry.flagOr(QStringLiteral("inverted"), false);
    return wire;
}

void readWires(const ConfigObject& device, const LineNumbers& numbers, Setup* setup)
{
    const QString from = QStringLiteral("from");
    const QString to = QStringLiteral("to");
    Upstream upstream(setup->lines.size(), -1);
    for (const ConfigObject& entry : device.objects(QStringLiteral("wires"))) {
        entry.allowOnly({from, to, QStringLiteral("delayMs"), QStringLiteral("inverted")});
        const std::optional<int> source = readLineName(entry, from, numbers);
        const std::optional<int> target = readLineName(entry, to, numbers);
        if (!source || !target) {
            continue;
        }
        const QString name = setup->lines.at(*target).line.name;
        if (setup->lines.at(*target).waveform) {
            entry.addProblem(to, wording(R"("%1" follows a waveform, expected a free input)").arg(name));
        } else if (upstream.at(*target) >= 0) {
            entry.addProblem(to, wording(R"("%1" has a wire already, expected a free input)").arg(name));
        } else if (closesLoop(&upstream, *source, *target)) {
            entry.addProblem(to, wording(R"(the wires of "%1" form a loop)").arg(name));
        } else {
            upstream[*target] = *source;
            setup->wires.append(readWire(entry, *source, *target));
        }
    }
}

/// A line that a wire leads to is an input, whether its entry says so or not.
void makeWiredLinesInputs(const std::vector<ConfigObject>& entries, Setup* setup)
{
    for (const Setup::Wire& wire : qAsConst(setup->wires)) {
        const ConfigObject& entry = entries.at(static_cast<std::size_t>(wire.to));
        const QString direction = QStringLiteral("direction");
        if (entry.value(direction).toString() == QLatin1String("out")) {
            entry.addProblem(
                direction,
                wording(R"(a wire leads to "%1", expected "in")").arg(setup->lines.at(wire.to).line.name));
        }
        setup->lines[wire.to].line.direction = DLine::Direction::In;
    }
}

Setup::Fault readFault(const ConfigObject& entry, const Setup& setup, const LineNumbers& numbers)
{
    const QString line = QStringLiteral("line");
    entry.allowOnly({QStringLiteral("kind"), line, QStringLiteral("instruction"), QStringLiteral("delayMs")});
    Setup::Fault fault;
    fault.kind = static_cast<Setup::Fault::Kind>(
        entry.choice(QStringLiteral("kind"), {QStringLiteral("silent"), QStringLiteral("late"),
                                              QStringLiteral("wrong"), QStringLiteral("refused")}));
    if (entry.has(line)) {
        if (const std::optional<int> number = readLineName(entry, line, numbers)) {
            fault.line = setup.lines.at(*number).line.name;
        }
    }
    const QStringList instructions = {QStringLiteral("getValue"), QStringLiteral("setValues"),
                                      QStringLiteral("setBlink"), QStringLiteral("listenEvents"),
                                      QStringLiteral("listenToAll")};
    fault.instruction = instructions.value(entry.choiceOr(QStringLiteral("instruction"), instructions, -1));
    fault.delayUs = entry.numberOr(QStringLiteral("delayMs"), 0, c_longestMs, 1000) * c_usPerMs;
    return fault;
}

} // namespace

SimulatedBoardSetup readBoard(const ConfigObject& device)
{
    device.allowOnly({QStringLiteral("type"), QStringLiteral("connected"), QStringLiteral("lines"),
                      QStringLiteral("wires"), QStringLiteral("faults")});
    Setup setup;
    LineNumbers numbers;
    setup.connected = device.flagOr(QStringLiteral("connected"), true);
    const std::vector<ConfigObject> lines = device.objects(QStringLiteral("lines"));
    readLines(device, lines, &setup, &numbers);
    readWires(device, numbers, &setup);
    makeWiredLinesInputs(lines, &setup);
    for (const ConfigObject& entry : device.objects(QStringLiteral("faults"))) {
        setup.faults.append(readFault(entry, setup, numbers));
    }
    return setup;
}
