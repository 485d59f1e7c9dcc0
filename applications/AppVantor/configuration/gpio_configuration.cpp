#include "gpio_configuration.h"

#include <QRegularExpression>
#include <QSet>

namespace {

using Settings = GpioLineSettings;

const QString& lineKey()
{
    static const QString key = QStringLiteral("line");
    return key;
}

/// The kernel's name of the line or its offset; the name in the configuration without either.
QString readLineKey(const ConfigObject& entry, const QString& name)
{
    constexpr int highestOffset = 65535;
    const QVariant line = entry.value(lineKey());
    if (line.isValid() && line.type() != QVariant::String && line.type() != QVariant::Bool) {
        return QString::number(entry.numberOr(lineKey(), 0, highestOffset, 0));
    }
    return entry.textOr(lineKey(), name);
}

/// Entries that suit lines of the other direction only.
void refuse(const ConfigObject& entry, const QStringList& keys, const DWording& wanted)
{
    for (const QString& key : keys) {
        if (entry.has(key)) {
            entry.addProblem(key, wording("expected on %1 only").arg(wanted));
        }
    }
}

Settings readSettings(const ConfigObject& entry)
{
    constexpr int longestDebounceUs = 1000000;
    Settings settings;
    const QString direction = QStringLiteral("direction");
    const int output = entry.choiceOr(direction, {QStringLiteral("in"), QStringLiteral("out")},
                                      entry.has(direction) ? -1 : 0);
    settings.output = output == 1;
    settings.activeLow = entry.flagOr(QStringLiteral("activeLow"), false);
    settings.bias =
        static_cast<Settings::Bias>(entry.choiceOr(QStringLiteral("bias"),
                                                   {QStringLiteral("as-is"), QStringLiteral("pull-up"),
                                                    QStringLiteral("pull-down"), QStringLiteral("none")},
                                                   0));
    settings.drive = static_cast<Settings::Drive>(entry.choiceOr(
        QStringLiteral("drive"),
        {QStringLiteral("push-pull"), QStringLiteral("open-drain"), QStringLiteral("open-source")}, 0));
    settings.level = entry.numberOr(QStringLiteral("level"), 0, 1, 0);
    settings.clock = static_cast<Settings::Clock>(
        entry.choiceOr(QStringLiteral("clock"),
                       {QStringLiteral("monotonic"), QStringLiteral("realtime"), QStringLiteral("hte")}, 0));
    settings.debounceUs = entry.numberOr(QStringLiteral("debounceUs"), 0, longestDebounceUs, 0);
    if (output == 1) {
        refuse(entry, {QStringLiteral("debounceUs"), QStringLiteral("clock")}, wording("an input"));
    } else if (output == 0) {
        refuse(entry, {QStringLiteral("drive"), QStringLiteral("level"), QStringLiteral("onReturn")},
               wording("an output"));
    }
    return settings;
}

GpioChipSetup::Line readGpioLine(const ConfigObject& entry)
{
    const QString kind = QStringLiteral("kind");
    entry.allowOnly({QStringLiteral("name"), QStringLiteral("chip"), lineKey(), QStringLiteral("direction"),
                     QStringLiteral("activeLow"), QStringLiteral("bias"), QStringLiteral("drive"),
                     QStringLiteral("level"), QStringLiteral("onReturn"), QStringLiteral("debounceUs"),
                     QStringLiteral("clock"), kind});
    GpioChipSetup::Line line;
    line.name = entry.text(QStringLiteral("name"));
    line.chip = entry.textOr(QStringLiteral("chip"), QString());
    line.line = readLineKey(entry, line.name);
    static const QRegularExpression offset(QStringLiteral("^\\s*[+-]?[0-9]+\\s*$"));
    if (entry.isSound() && line.chip.isEmpty() && line.line.contains(offset)) {
        entry.addProblem(QStringLiteral("chip"), wording("expected the chip of line %1").arg(line.line));
    }
    line.settings = readSettings(entry);
    line.onReturn = static_cast<GpioChipSetup::OnReturn>(entry.choiceOr(
        QStringLiteral("onReturn"),
        {QStringLiteral("configured"), QStringLiteral("restore"), QStringLiteral("leave")}, 0));
    if (entry.value(kind).toString() == QLatin1String("analog")) {
        entry.addProblem(kind,
                         wording(R"(line "%1" of the chip "%2": a GPIO line is digital, expected "digital")")
                             .arg(line.line, line.chip));
    } else {
        entry.choiceOr(kind, {QStringLiteral("digital")}, 0);
    }
    return line;
}

} // namespace

GpioChipSetup readGpioLines(const ConfigObject& device)
{
    device.allowOnly({QStringLiteral("type"), QStringLiteral("lines")});
    GpioChipSetup setup;
    QSet<QString> names;
    QSet<QString> places;
    for (const ConfigObject& entry : device.objects(QStringLiteral("lines"))) {
        const GpioChipSetup::Line line = readGpioLine(entry);
        setup.lines.append(line);
        if (!entry.isSound()) {
            continue;
        }
        const QString place = line.chip + QLatin1Char('\n') + line.line;
        if (names.contains(line.name)) {
            entry.addProblem(QStringLiteral("name"),
                             wording(R"(expected a name of its own, "%1" is taken)").arg(line.name));
        }
        if (places.contains(place)) {
            entry.addProblem(lineKey(),
                             wording(R"(line "%1" of the chip "%2" is used already, expected another)")
                                 .arg(line.line, line.chip));
        }
        names.insert(line.name);
        places.insert(place);
    }
    if (setup.lines.isEmpty()) {
        device.addProblem(QStringLiteral("lines"), wording("expected at least one line"));
    }
    return setup;
}
