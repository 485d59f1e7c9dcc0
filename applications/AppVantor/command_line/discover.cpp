#include "discover.h"

#include "discover_watch.h"
#include "failure_report.h"
#include "table.h"

#include <process/diagnostics.h>
#include <process/exit_status.h>
#include <process/unix_signals.h>

#include <devices/gpio_chip.h>
#include <devices/gpio_messages.h>

#include <QEventLoop>
#include <QSet>
#include <QTimer>
#include <QUuid>

#include <algorithm>
#include <vector>

namespace {

struct Chip
{
    QString file;
    QString name;
    QString label;
    std::vector<GpioLineInfo> lines;
};

Chip describe(const QString& file, const GpioChip& chip)
{
    Chip described = {file, chip.name(), chip.label(), {}};
    for (int offset = 0; offset < chip.lineCount(); ++offset) {
        if (const std::optional<GpioLineInfo> line = chip.line(offset)) {
            described.lines.push_back(*line);
        }
    }
    return described;
}

void tell(const QString& reason, Output* output)
{
    reportFailure("deviceUnreachable", {reason}, output);
}

/// The chips that can be opened; each of the others is told.
std::vector<Chip> chipsOfThisMachine(Output* output)
{
    std::vector<Chip> chips;
    const QStringList files = GpioChip::files();
    for (const QString& file : files) {
        int error = 0;
        const std::unique_ptr<GpioChip> chip = GpioChip::open(file, &error);
        if (chip != nullptr) {
            chips.push_back(describe(file, *chip));
        } else {
            tell(GpioMessages::chipRefused(file, error).english(), output);
        }
    }
    if (files.isEmpty()) {
        tell(GpioMessages::noChips().english(), output);
    }
    return chips;
}

QString directionOf(const GpioLineInfo& line)
{
    return line.output ? QStringLiteral("out") : QStringLiteral("in");
}

QString holderOf(const GpioLineInfo& line)
{
    return line.used && line.consumer.isEmpty() ? QStringLiteral("(unknown)") : line.consumer;
}

void write(const Chip& chip, Output* output)
{
    constexpr int offsetWidth = 6;
    Json lines = Json::array();
    Table table({offsetWidth + 1, 20, 9, 16});
    table.add({QStringLiteral("LINE").rightJustified(offsetWidth), QStringLiteral("NAME"),
               QStringLiteral("DIRECTION"), QStringLiteral("CONSUMER"), QStringLiteral("FLAGS")});
    for (const GpioLineInfo& line : chip.lines) {
        table.add({QString::number(line.offset).rightJustified(offsetWidth), line.name, directionOf(line),
                   holderOf(line), line.flags.join(QLatin1Char(' '))});
        lines.push_back({{"line", line.offset},
                         {"name", toJson(line.name)},
                         {"direction", toJson(directionOf(line))},
                         {"used", line.used},
                         {"consumer", toJson(line.consumer)},
                         {"flags", toJson(QVariant(line.flags))}});
    }
    output->write(
        [&] {
            return Json{{"type", "chip"},
                        {"chip", toJson(chip.name)},
                        {"label", toJson(chip.label)},
                        {"file", toJson(chip.file)},
                        {"lines", lines}};
        },
        [&] {
            return QStringLiteral("%1 \"%2\", %3 lines\n").arg(chip.name, chip.label).arg(chip.lines.size()) +
                   table.text();
        });
}

Json channelItem(const char* id, const QString& value)
{
    return {{"id", id}, {"value", toJson(value)}};
}

/// A bench of the free lines of a chip, as inputs: these change nothing on the board.
Json configurationOf(const Chip& chip, const QString& wanted)
{
    Json lines = Json::array();
    Json channels = Json::array();
    QSet<QString> names;
    for (const GpioLineInfo& line : chip.lines) {
        if (line.used) {
            continue;
        }
        const bool isNamed = !line.name.isEmpty() && !names.contains(line.name);
        const QString name = isNamed ? line.name : QStringLiteral("line%1").arg(line.offset);
        names.insert(name);
        lines.push_back(
            {{"name", toJson(name)}, {"chip", toJson(wanted)}, {"line", line.offset}, {"direction", "in"}});
        channels.push_back({{"id", toJson(name)},
                            {"name", toJson(name)},
                            {"visibility", "public"},
                            {"value",
                             {channelItem("type", QStringLiteral("digitalOutput")),
                              channelItem("direction", QStringLiteral("in")), channelItem("link", name)}}});
    }
    const QUuid id = QUuid::createUuidV5(QUuid(), wanted);
    return {{"device", {{"type", "gpiochip"}, {"lines", lines}}},
            {"tools", Json::array({{{"name", toJson(chip.label)},
                                    {"id", toJson(id.toString())},
                                    {"plugin", "p_tool_gpio"},
                                    {"channels", channels}}})}};
}

int writeConfiguration(const std::vector<Chip>& chips, const QString& wanted, Output* output)
{
    const auto chip = std::find_if(chips.cbegin(), chips.cend(), [&wanted](const Chip& candidate) {
        return candidate.file == wanted || candidate.name == wanted || candidate.label == wanted;
    });
    if (chip == chips.cend()) {
        tell(GpioMessages::noSuchChip(wanted).english(), output);
        return ExitDeviceUnreachable;
    }
    Json leftOut = Json::array();
    for (const GpioLineInfo& line : chip->lines) {
        if (line.used) {
            leftOut.push_back({{"line", line.offset}, {"consumer", toJson(line.consumer)}});
            diagnostic(QStringLiteral("line %1 of %2 is held by \"%3\" and left out")
                           .arg(QString::number(line.offset), chip->name, holderOf(line)));
        }
    }
    constexpr int indent = 2;
    const Json configuration = configurationOf(*chip, wanted);
    output->write(
        [&] {
            return Json{{"type", "configuration"},
                        {"chip", toJson(chip->name)},
                        {"leftOut", leftOut},
                        {"configuration", configuration}};
        },
        [&] { return QString::fromStdString(configuration.dump(indent)); });
    return ExitSuccess;
}

/// Tells what changes until a signal, the end of the time, or that of the reader.
void watchChips(const Options& options, Output* output)
{
    constexpr double msPerSecond = 1000.0;
    UnixSignals unixSignals;
    QEventLoop loop;
    QObject::connect(&unixSignals, &UnixSignals::interrupted, &loop, &QEventLoop::quit);
    QObject::connect(output, &Output::failed, &loop, &QEventLoop::quit);
    if (options.seconds) {
        QTimer::singleShot(static_cast<int>(*options.seconds * msPerSecond), Qt::PreciseTimer, &loop,
                           &QEventLoop::quit);
    }
    loop.exec();
}

} // namespace

int discover(const Options& options, Output* output)
{
    const std::unique_ptr<DiscoverWatch> watch =
        options.watch ? std::make_unique<DiscoverWatch>(output) : nullptr;
    const std::vector<Chip> chips = chipsOfThisMachine(output);
    if (chips.empty() && watch == nullptr) {
        return ExitDeviceUnreachable;
    }
    if (!options.configurationFor.isEmpty()) {
        return writeConfiguration(chips, options.configurationFor, output);
    }
    for (const Chip& chip : chips) {
        write(chip, output);
    }
    if (watch != nullptr) {
        watchChips(options, output);
    }
    return ExitSuccess;
}
