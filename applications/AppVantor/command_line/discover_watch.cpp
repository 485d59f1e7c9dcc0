#include "discover_watch.h"

#include "failure_report.h"

#include <process/time_text.h>

#include <devices/gpio_messages.h>

namespace {

/// How many changes the kernel keeps for a chip; it drops others silently.
constexpr std::size_t c_keptChanges = 32;
constexpr qint64 c_nsPerUs = 1000;

const char* nameOf(GpioLineChange::Kind kind)
{
    switch (kind) {
    case GpioLineChange::Kind::Taken:
        return "taken";
    case GpioLineChange::Kind::Released:
        return "released";
    case GpioLineChange::Kind::Configured:
        break;
    }
    return "configured";
}

} // namespace

DiscoverWatch::DiscoverWatch(Output* output)
    : m_output(output)
{
    connect(&m_presence, &GpioPresence::changed, this, [this] { lookForChips(true); });
    lookForChips(false);
}

void DiscoverWatch::lookForChips(bool tells)
{
    for (auto watched = m_chips.begin(); watched != m_chips.end();) {
        if (watched->second.chip->isThere()) {
            ++watched;
        } else {
            tellChip("gone", *watched->second.chip);
            watched = m_chips.erase(watched);
        }
    }
    const QStringList files = GpioChip::files();
    m_refused.intersect(QSet<QString>(files.cbegin(), files.cend()));
    for (const QString& file : files) {
        if (m_chips.count(file) == 0) {
            watch(file, tells);
        }
    }
}

void DiscoverWatch::watch(const QString& file, bool tells)
{
    int error = 0;
    std::unique_ptr<GpioChip> chip = GpioChip::open(file, &error);
    if (chip == nullptr) {
        if (tells && !m_refused.contains(file)) {
            reportFailure("deviceUnreachable", {GpioMessages::chipRefused(file, error)}, m_output);
        }
        m_refused.insert(file);
        return;
    }
    m_refused.remove(file);
    Watched& watched = m_chips[file];
    watched.notifier = std::make_unique<QSocketNotifier>(chip->descriptor(), QSocketNotifier::Read);
    connect(watched.notifier.get(), &QSocketNotifier::activated, this,
            [this, &watched] { readChanges(&watched); });
    for (int offset = 0; offset < chip->lineCount(); ++offset) {
        watched.lines.push_back(chip->watchLine(offset).value_or(GpioLineInfo()));
        watched.lines.back().offset = offset;
    }
    watched.chip = std::move(chip);
    if (tells) {
        tellChip("came", *watched.chip);
    }
}

void DiscoverWatch::readChanges(Watched* watched)
{
    const std::vector<GpioLineChange> changes = watched->chip->readChanges();
    for (const GpioLineChange& change : changes) {
        tellLine(change.kind, change.line, watched, change.timeNs / c_nsPerUs);
    }
    if (changes.empty()) { // it has gone: the notifier would call again and again
        watched->notifier->setEnabled(false);
        QMetaObject::invokeMethod(
            this, [this] { lookForChips(true); }, Qt::QueuedConnection);
    } else if (changes.size() >= c_keptChanges) {
        askAgain(watched);
    }
}

/// Tells what the kernel may have dropped.
void DiscoverWatch::askAgain(Watched* watched)
{
    for (const GpioLineInfo& known : std::vector<GpioLineInfo>(watched->lines)) {
        const std::optional<GpioLineInfo> line = watched->chip->line(known.offset);
        if (line && (line->used != known.used || line->consumer != known.consumer)) {
            tellLine(line->used ? GpioLineChange::Kind::Taken : GpioLineChange::Kind::Released, *line,
                     watched, m_clock.now());
        }
    }
}

void DiscoverWatch::tellChip(const char* change, const GpioChip& chip)
{
    const qint64 timeUs = m_clock.wallClock(m_clock.now());
    m_output->write(
        [&] {
            return Json{{"type", "notice"},
                        {"time", toJson(fullTime(timeUs))},
                        {"change", change},
                        {"chip", toJson(chip.name())},
                        {"label", toJson(chip.label())}};
        },
        [&] {
            return QStringLiteral("%1 %2 \"%3\": %4")
                .arg(timeOfDay(timeUs), chip.name(), chip.label(), QLatin1String(change));
        });
}

void DiscoverWatch::tellLine(GpioLineChange::Kind kind, const GpioLineInfo& line, Watched* watched,
                             qint64 timeUs)
{
    GpioLineInfo& known = watched->lines.at(static_cast<std::size_t>(line.offset));
    const QString consumer = kind == GpioLineChange::Kind::Released ? known.consumer : line.consumer;
    known = line;
    const qint64 wallClockUs = m_clock.wallClock(timeUs);
    const QString chip = watched->chip->name();
    m_output->write(
        [&] {
            return Json{{"type", "notice"},
                        {"time", toJson(fullTime(wallClockUs))},
                        {"change", nameOf(kind)},
                        {"chip", toJson(chip)},
                        {"label", toJson(watched->chip->label())},
                        {"line", line.offset},
                        {"name", toJson(line.name)},
                        {"consumer", toJson(consumer)},
                        {"flags", toJson(QVariant(line.flags))}};
        },
        [&] {
            return QStringLiteral("%1 %2 by \"%3\": %4")
                .arg(timeOfDay(wallClockUs),
                     line.name.isEmpty() ? GpioMessages::placeText(line.offset, chip).english()
                                         : GpioMessages::lineText(line.name, line.offset, chip).english(),
                     consumer, QLatin1String(nameOf(kind)));
        });
}
