#include <devices/gpio_chip_device.h>

#include "gpio_lookup.h"
#include "held_lines.h"

#include <devices/gpio_messages.h>

#include <algorithm>
#include <cerrno>

namespace {
constexpr qint64 c_retryUs = 500000;
}

/// Lines of one chip that are wanted.
struct GpioChipDevice::Group
{
    std::shared_ptr<GpioChip> chip;
    QVector<HeldLines::Line> lines;
};

QVector<DLine> GpioChipDevice::linesOf(const GpioChipSetup& setup)
{
    QVector<DLine> lines;
    for (const GpioChipSetup::Line& line : setup.lines) {
        const auto direction = line.settings.output ? DLine::Direction::Out : DLine::Direction::In;
        lines.append({line.name, DLine::Kind::Digital, direction, false});
    }
    return lines;
}

GpioChipDevice::GpioChipDevice(const GpioChipSetup& setup, DScheduler* scheduler, LineListener* listener)
    : LineEngine(linesOf(setup), scheduler, listener)
    , m_setup(setup)
    , m_places(setup.lines.size())
{}

GpioChipDevice::~GpioChipDevice()
{
    awaitRelease(nullptr);
}

void GpioChipDevice::open()
{
    m_returning = false;
    m_toldMissing = false;
    m_presence = std::make_unique<GpioPresence>();
    connect(m_presence.get(), &GpioPresence::changed, this, &GpioChipDevice::lookForChips);
    connectLines();
}

void GpioChipDevice::close()
{
    m_presence.reset();
    awaitRelease(nullptr);
    release([](const HeldLines&) { return true; });
    LineEngine::close();
}

DWording GpioChipDevice::textOf(int line) const
{
    const Place& place = m_places.at(line);
    return GpioMessages::lineText(lines().at(line).name, place.lines->lines().at(place.position).wish.offset,
                                  place.lines->chip().name());
}

/// How a line is requested now.
GpioLineSettings GpioChipDevice::settingsOf(int line) const
{
    const GpioChipSetup::Line& configured = m_setup.lines.at(line);
    GpioLineSettings settings = configured.settings;
    if (m_returning && configured.onReturn == GpioChipSetup::OnReturn::Restore) {
        settings.level = level(line);
    } else if (m_returning && configured.onReturn == GpioChipSetup::OnReturn::Leave) {
        settings.level.reset();
    }
    return settings;
}

/// Finds the lines that are not held, those of each chip together.
std::vector<GpioChipDevice::Group> GpioChipDevice::findLines(GpioLookup* lookup, DWording* problem) const
{
    std::vector<Group> groups;
    for (int line = 0; line < m_setup.lines.size(); ++line) {
        if (m_places.at(line).lines != nullptr) {
            continue;
        }
        const GpioChipSetup::Line& wanted = m_setup.lines.at(line);
        const GpioLookup::Place place = lookup->find(wanted.name, wanted.chip, wanted.line, problem);
        if (place.chip == nullptr) {
            return {};
        }
        auto group = std::find_if(groups.begin(), groups.end(),
                                  [&place](const Group& one) { return one.chip == place.chip; });
        if (group == groups.end()) {
            group = groups.insert(group, {place.chip, {}});
        }
        for (const HeldLines::Line& other : qAsConst(group->lines)) {
            if (other.wish.offset == place.offset) {
                *problem = GpioMessages::sameLine(wanted.name, lines().at(other.number).name,
                                                  GpioMessages::placeText(place.offset, place.chip->name()));
                return {};
            }
        }
        group->lines.append({line, {place.offset, settingsOf(line)}});
    }
    return groups;
}

/// Requests the lines of a chip, all or none. Returns nothing, or why they cannot be had.
DWording GpioChipDevice::hold(const Group& group, std::vector<std::unique_ptr<HeldLines>>* held)
{
    Group left = group;
    while (!left.lines.isEmpty()) {
        QVector<GpioWish> wishes;
        for (const HeldLines::Line& line : qAsConst(left.lines)) {
            wishes.append(line.wish);
        }
        int error = 0;
        std::unique_ptr<GpioRequest> request = group.chip->request(wishes, &error);
        if (request == nullptr) {
            return error == ENODEV ? GpioMessages::chipGone(group.chip->name()) : whyRefused(left, error);
        }
        const int count = request->lineCount();
        held->push_back(std::make_unique<HeldLines>(group.chip, std::move(request), left.lines.mid(0, count),
                                                    scheduler()));
        left.lines = left.lines.mid(count);
    }
    return {};
}

/// The kernel does not tell which one of the lines it refuses: the first that it refuses alone.
DWording GpioChipDevice::whyRefused(const Group& group, int error)
{
    const auto& [chip, refused] = group;
    const auto culprit = std::find_if(
        refused.cbegin(), refused.cend(), [chip = chip.get(), &error](const HeldLines::Line& line) {
            int errorAlone = 0;
            const bool isRefused = chip->request({line.wish}, &errorAlone) == nullptr;
            error = isRefused ? errorAlone : error;
            return isRefused;
        });
    const HeldLines::Line& line = culprit != refused.cend() ? *culprit : refused.constFirst();
    const DWording text =
        GpioMessages::lineText(lines().at(line.number).name, line.wish.offset, chip->name());
    if (error != EBUSY) {
        return GpioMessages::lineRefused(text, line.wish.settings.output, error);
    }
    const std::optional<GpioLineInfo> info = chip->watchLine(line.wish.offset);
    awaitRelease(chip);
    if (culprit == refused.cend() || (info && !info->used)) { // it was let go meanwhile
        m_retry = scheduler()->at(scheduler()->now() + c_retryUs, [this] { lookForChips(); });
    }
    return GpioMessages::lineBusy(text, info ? info->consumer : QString());
}

/// Tries again when a watched line of chip is let go; without a chip no more.
void GpioChipDevice::awaitRelease(const std::shared_ptr<GpioChip>& chip)
{
    scheduler()->cancel(m_retry);
    m_awaited.reset();
    m_awaitedChip = chip;
    if (chip != nullptr) {
        m_awaited = std::make_unique<QSocketNotifier>(chip->descriptor(), QSocketNotifier::Read);
        connect(m_awaited.get(), &QSocketNotifier::activated, this, &GpioChipDevice::lookForChipsSoon);
    }
}

void GpioChipDevice::connectLines()
{
    awaitRelease(nullptr);
    DWording problem;
    GpioLookup lookup;
    std::vector<std::unique_ptr<HeldLines>> fresh;
    for (const Group& group : findLines(&lookup, &problem)) {
        problem = hold(group, &fresh);
        if (!problem.isEmpty()) {
            break;
        }
    }
    if (problem.isEmpty()) {
        for (std::unique_ptr<HeldLines>& held : fresh) {
            take(std::move(held));
        }
        begin();
    } else if (!(lookup.isMissing() && m_toldMissing)) {
        m_toldMissing = lookup.isMissing();
        setUnreachable(problem);
    }
}

void GpioChipDevice::take(std::unique_ptr<HeldLines> held)
{
    auto notifier = std::make_unique<QSocketNotifier>(held->descriptor(), QSocketNotifier::Read);
    connect(notifier.get(), &QSocketNotifier::activated, this, &GpioChipDevice::readCourses);
    for (int position = 0; position < held->lines().size(); ++position) {
        const HeldLines::Line& line = held->lines().at(position);
        m_places[line.number] = {held.get(), position};
        if (line.wish.settings.output && line.wish.settings.level) {
            setLevel(line.number, *line.wish.settings.level, scheduler()->now());
        }
    }
    m_held.push_back({std::move(held), std::move(notifier)});
}

/// All lines are held: their levels are read, and what comes after that is told.
void GpioChipDevice::begin()
{
    const qint64 timeUs = scheduler()->now();
    std::vector<HeldLines::Change> levels;
    for (const Held& held : m_held) {
        const int error = held.lines->begin(&levels);
        if (error != 0) {
            const DFailure failure = failed(held.lines->lines().constFirst().number, error);
            release([](const HeldLines&) { return true; });
            setUnreachable(failure.text);
            return;
        }
    }
    for (const HeldLines::Change& change : levels) {
        setLevel(change.number, change.level, timeUs);
    }
    m_returning = true;
    m_toldMissing = false;
    setConnected(timeUs);
    readCourses();
}

void GpioChipDevice::release(const std::function<bool(const HeldLines&)>& isOver)
{
    for (Place& place : m_places) {
        if (place.lines != nullptr && isOver(*place.lines)) {
            place = Place();
        }
    }
    m_held.erase(std::remove_if(m_held.begin(), m_held.end(),
                                [&isOver](const Held& held) { return isOver(*held.lines); }),
                 m_held.end());
}

/// The chips of the machine have changed, or who holds their lines: one may have gone, or come back.
void GpioChipDevice::lookForChips()
{
    QString gone;
    release([&gone](const HeldLines& held) {
        const bool isGone = !held.chip().isThere();
        gone = isGone ? held.chip().name() : gone;
        return isGone;
    });
    if (isConnected() && !gone.isEmpty()) {
        m_toldMissing = true;
        setUnreachable(GpioMessages::chipGone(gone));
    }
    if (!isConnected()) {
        connectLines(); // it may be back before its loss was seen
    }
}

/// Whoever calls still works with the lines.
void GpioChipDevice::lookForChipsSoon()
{
    QMetaObject::invokeMethod(this, &GpioChipDevice::lookForChips, Qt::QueuedConnection);
}

DFailure GpioChipDevice::failed(int line, int error)
{
    if (error != ENODEV) {
        return {DFailure::Kind::RefusedByDevice, GpioMessages::lineFailed(textOf(line), error)};
    }
    lookForChipsSoon();
    return {DFailure::Kind::DeviceUnreachable,
            GpioMessages::chipGone(m_places.at(line).lines->chip().name())};
}

DFailure GpioChipDevice::drive(int line, int level, qint64 timeUs)
{
    const Place& place = m_places.at(line);
    const int error = place.lines->drive(place.position, level);
    if (error != 0) {
        return failed(line, error);
    }
    setLevel(line, level, timeUs);
    return DFailure();
}

void GpioChipDevice::request(quint64 id, const QString& instruction, const QVariantMap& arguments)
{
    if (!isConnected()) {
        LineEngine::request(id, instruction, arguments);
        return;
    }
    const int line = lineNamed(arguments.value(QStringLiteral("channel")).toString());
    const bool isInput = line >= 0 && !m_setup.lines.at(line).settings.output;
    const bool reads = instruction == QLatin1String("getValue");
    if (!reads || isListenedTo()) {
        readCourses(); // what has happened before the request is told before its answer
    }
    if (isInput && reads) {
        readInput(id, line);
    } else if (isInput &&
               (instruction == QLatin1String("setValues") || instruction == QLatin1String("setBlink"))) {
        refuse(id, GpioMessages::lineIsInput(textOf(line)));
    } else {
        LineEngine::request(id, instruction, arguments);
    }
}

/// Answers with the kernel's own reading. A change that it shows is told when its edge arrives.
void GpioChipDevice::readInput(quint64 id, int line)
{
    const Place& place = m_places.at(line);
    int level = 0;
    const int error = place.lines->read(place.position, &level);
    if (error != 0) {
        listener().requestRefused(id, failed(line, error));
    } else {
        listener().requestAnswered(id, {{QStringLiteral("value"), level}}, scheduler()->now());
    }
}

/// Tells what has happened on all lines: those of one request as the kernel has numbered it, those of several
/// by their times.
void GpioChipDevice::readCourses()
{
    std::vector<HeldLines::Change> changes;
    std::vector<HeldLines::Course> losing;
    std::vector<std::pair<int, DFailure>> unreadable;
    qint64 fromUs = scheduler()->now();
    for (const Held& held : m_held) {
        HeldLines::Course course = held.lines->readCourse();
        fromUs = std::min(fromUs, course.fromUs);
        changes.insert(changes.end(), course.changes.cbegin(), course.changes.cend());
        tellLosses(held.lines->chip().name(), course.lost, course.lostOfStill);
        if (course.error != 0) {
            endCourse(held, course.error, &unreadable);
        }
        if (course.lostOfStill > 0) {
            losing.push_back(std::move(course));
        }
    }
    if (m_held.size() > 1) {
        std::stable_sort(changes.begin(), changes.end(),
                         [](const HeldLines::Change& first, const HeldLines::Change& second) {
                             return first.orderUs < second.orderUs;
                         });
    }
    for (const HeldLines::Change& change : changes) {
        if (change.lost > 0) {
            setLevelsAfterLoss(change.lost, fromUs, {{change.number, {change.level, change.timeUs, true}}});
        } else {
            setLevel(change.number, change.level, change.timeUs);
        }
    }
    for (const HeldLines::Course& course : losing) {
        setLevelsAfterLoss(course.lostOfStill, fromUs, course.still);
    }
    for (const auto& [line, failure] : unreadable) {
        setUnreadable(line, failure);
    }
}

void GpioChipDevice::tellLosses(const QString& chip, const QMap<int, quint32>& lost, quint32 lostOfStill)
{
    for (auto count = lost.cbegin(); count != lost.cend(); ++count) {
        listener().failureTold(GpioMessages::edgesLost(textOf(count.key()), *count));
    }
    if (lostOfStill > 0) {
        listener().failureTold(GpioMessages::edgesLostElsewhere(chip, lostOfStill));
    }
}

/// The edges of some lines cannot be read any more: appends why.
void GpioChipDevice::endCourse(const Held& held, int error, std::vector<std::pair<int, DFailure>>* unreadable)
{
    held.notifier->setEnabled(false); // or it would call again and again
    if (error == ENODEV) {
        lookForChipsSoon();
        return;
    }
    for (const HeldLines::Line& line : held.lines->lines()) {
        if (!line.wish.settings.output) {
            unreadable->emplace_back(line.number, failed(line.number, error));
        }
    }
}

std::unique_ptr<LineDevice> makeGpioChipDevice(const GpioChipSetup& setup, DScheduler* scheduler,
                                               DevicePlace place)
{
    return std::make_unique<LineDevice>(
        QStringLiteral("GPIO lines"), GpioChipDevice::linesOf(setup), scheduler, place,
        [setup](DScheduler* clock, LineListener* listener) {
            return std::make_unique<GpioChipDevice>(setup, clock, listener);
        },
        OutputsAtEnd::Released);
}
