#include <devices/gpio_chip_device.h>

#include "gpio_input.h"

#include <devices/gpio_messages.h>

#include <QFileInfo>
#include <QSocketNotifier>

#include <algorithm>
#include <cerrno>
#include <poll.h>
#include <sys/stat.h>

namespace {

constexpr qint64 c_nsPerUs = 1000;
/// What tells a file from a later one of the same name.
using FileMark = std::pair<quint64, quint64>;

FileMark markOf(const QString& file)
{
    struct stat status = {};
    if (stat(QFile::encodeName(file).constData(), &status) != 0) {
        return {};
    }
    return {status.st_ino, status.st_rdev};
}

/// A line by its offset, or by the kernel's name of it.
std::optional<int> offsetOf(const GpioChip& chip, const QString& wanted)
{
    bool isNumber = false;
    const int number = wanted.toInt(&isNumber);
    if (isNumber) {
        return number >= 0 && number < chip.lineCount() ? std::optional<int>(number) : std::nullopt;
    }
    for (int offset = 0; offset < chip.lineCount(); ++offset) {
        const std::optional<GpioLineInfo> info = chip.line(offset);
        if (info && info->name == wanted) {
            return offset;
        }
    }
    return std::nullopt;
}

} // namespace

struct GpioChipDevice::HeldChip
{
    QString file;
    FileMark mark;
    std::unique_ptr<GpioChip> chip;
};

struct GpioChipDevice::HeldLine
{
    QString text;
    QString chip;
    std::unique_ptr<GpioOutput> output;
    std::unique_ptr<GpioInput> input;
    std::unique_ptr<QSocketNotifier> notifier;
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
{}

GpioChipDevice::~GpioChipDevice() = default;

void GpioChipDevice::open()
{
    m_watcher = std::make_unique<QFileSystemWatcher>(QStringList{QStringLiteral("/dev")});
    connect(m_watcher.get(), &QFileSystemWatcher::directoryChanged, this, &GpioChipDevice::lookForChips);
    connectLines();
}

void GpioChipDevice::close()
{
    m_watcher.reset();
    releaseAll();
    LineEngine::close();
}

/// Finds the chip that a line asks for among those that are open, or opens it.
GpioChipDevice::HeldChip* GpioChipDevice::chipFor(const GpioChipSetup::Line& line, QString* problem)
{
    const QStringList files = GpioChip::files();
    const QString named =
        line.chip.contains(QLatin1Char('/')) ? line.chip : QStringLiteral("/dev/") + line.chip;
    const bool isFile = named == line.chip || files.contains(named);
    const QStringList candidates = isFile ? QStringList{named} : files;
    m_chipMissing = false;
    for (const QString& file : candidates) {
        const auto open = std::find_if(m_chips.cbegin(), m_chips.cend(),
                                       [&file](const auto& chip) { return chip->file == file; });
        HeldChip* chip = open != m_chips.cend() ? open->get() : openChip(file, problem);
        if (chip != nullptr && (isFile || chip->chip->label() == line.chip)) {
            return chip;
        }
    }
    if (problem->isEmpty()) {
        m_chipMissing = true;
        *problem = QStringLiteral("line \"%1\": %2").arg(line.name, GpioMessages::noSuchChip(line.chip));
    }
    return nullptr;
}

/// Null when the file cannot be opened; without a problem when there is no such chip.
GpioChipDevice::HeldChip* GpioChipDevice::openChip(const QString& file, QString* problem)
{
    int error = 0;
    const FileMark mark = markOf(file);
    std::unique_ptr<GpioChip> chip = GpioChip::open(file, &error);
    if (chip != nullptr) {
        m_chips.push_back(std::make_unique<HeldChip>(HeldChip{file, mark, std::move(chip)}));
        return m_chips.back().get();
    }
    if (error == EACCES || error == EPERM) {
        *problem = GpioMessages::permissionDenied(file, QFileInfo(file).group());
    } else if (error != ENOENT && error != ENODEV && error != ENXIO) {
        *problem = GpioMessages::chipFailed(file, error);
    }
    return nullptr;
}

/// Requests a line and takes its level. Returns an empty text, or why it cannot be had.
QString GpioChipDevice::hold(int line)
{
    const GpioChipSetup::Line& wanted = m_setup.lines.at(line);
    QString problem;
    const HeldChip* chip = chipFor(wanted, &problem);
    if (chip == nullptr) {
        return problem;
    }
    const std::optional<int> offset = offsetOf(*chip->chip, wanted.line);
    if (!offset) {
        return GpioMessages::noSuchLine(wanted.name, chip->chip->name(), wanted.line);
    }
    HeldLine held;
    held.chip = chip->chip->name();
    held.text = GpioMessages::lineText(wanted.name, *offset, held.chip);
    int error = 0;
    int level = wanted.settings.level;
    if (wanted.settings.output) {
        held.output = chip->chip->requestOutput(*offset, wanted.settings, &error);
    } else {
        held.input = GpioInput::request(chip->file, *offset, wanted.settings, &error);
        level = held.input != nullptr ? held.input->level() : 0;
        error = level < 0 ? errno : error;
    }
    if (error == EBUSY) {
        const std::optional<GpioLineInfo> info = chip->chip->line(*offset);
        return GpioMessages::lineBusy(held.text, info ? info->consumer : QString());
    }
    if (error != 0) {
        return GpioMessages::lineRefused(held.text, wanted.settings.output, error);
    }
    if (held.input != nullptr) {
        held.notifier = std::make_unique<QSocketNotifier>(held.input->descriptor(), QSocketNotifier::Read);
        connect(held.notifier.get(), &QSocketNotifier::activated, this, &GpioChipDevice::readInputs);
    }
    m_held.push_back(std::move(held));
    setLevel(line, level, scheduler()->now());
    return QString();
}

void GpioChipDevice::connectLines()
{
    QString problem;
    for (int line = 0; line < m_setup.lines.size() && problem.isEmpty(); ++line) {
        problem = hold(line);
    }
    if (problem.isEmpty()) {
        setConnected();
        return;
    }
    releaseAll();
    const bool stillAway = m_chipMissing && state() == DDevice::State::Unreachable;
    if (!stillAway) { // else its loss has been told already
        setUnreachable(problem);
    }
}

void GpioChipDevice::releaseAll()
{
    m_held.clear();
    m_chips.clear();
}

/// The files of the chips have changed: one may have gone, or come back.
void GpioChipDevice::lookForChips()
{
    if (isConnected()) {
        const auto gone = std::find_if(m_chips.cbegin(), m_chips.cend(),
                                       [](const auto& chip) { return markOf(chip->file) != chip->mark; });
        if (gone != m_chips.cend()) {
            lose((*gone)->chip->name());
        }
    } else {
        connectLines();
    }
}

void GpioChipDevice::lose(const QString& chip)
{
    if (!isConnected()) {
        return;
    }
    releaseAll();
    setUnreachable(GpioMessages::chipGone(chip));
    connectLines(); // it may be back before its loss was seen
}

/// The text of a failure. A lost chip is dealt with afterwards: whoever calls still works with its lines.
DFailure GpioChipDevice::failed(int line, int error)
{
    const HeldLine& held = m_held.at(static_cast<std::size_t>(line));
    if (error != ENODEV) {
        return {DFailure::Kind::RefusedByDevice, GpioMessages::lineFailed(held.text, error)};
    }
    const QString chip = held.chip;
    QMetaObject::invokeMethod(
        this, [this, chip] { lose(chip); }, Qt::QueuedConnection);
    return {DFailure::Kind::DeviceUnreachable, GpioMessages::chipGone(chip)};
}

DFailure GpioChipDevice::drive(int line, int level)
{
    const qint64 timeUs = scheduler()->now();
    const int error = m_held.at(static_cast<std::size_t>(line)).output->setLevel(level);
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
    readInputs(); // what has happened before the request is told before its answer
    if (isInput && instruction == QLatin1String("getValue")) {
        readInput(id, line);
    } else if (isInput &&
               (instruction == QLatin1String("setValues") || instruction == QLatin1String("setBlink"))) {
        refuse(id, GpioMessages::lineIsInput(m_held.at(static_cast<std::size_t>(line)).text));
    } else {
        LineEngine::request(id, instruction, arguments);
    }
}

/// Answers with the kernel's own reading. A change that it shows is told when its edge arrives.
void GpioChipDevice::readInput(quint64 id, int line)
{
    const int level = m_held.at(static_cast<std::size_t>(line)).input->level();
    if (level < 0) {
        listener().requestRefused(id, failed(line, errno));
    } else {
        listener().requestAnswered(id, {{QStringLiteral("value"), level}}, scheduler()->now());
    }
}

/// Tells the edges of all lines in the order of their times.
void GpioChipDevice::readInputs()
{
    struct Change
    {
        int line = 0;
        GpioEdge edge;
    };
    std::vector<Change> changes;
    const std::vector<int> ready = readyInputs();
    for (const int line : ready) {
        HeldLine& held = m_held.at(static_cast<std::size_t>(line));
        QVector<GpioEdge> edges;
        quint32 lost = 0;
        const int error = held.input->readEdges(&edges, &lost);
        if (lost > 0) {
            listener().failureTold(GpioMessages::edgesLost(held.text, lost));
        }
        if (error != 0) {
            held.notifier->setEnabled(false); // or it would call again and again
            setUnreadable(line, failed(line, error));
        }
        for (const GpioEdge& edge : qAsConst(edges)) {
            changes.push_back({line, edge});
        }
    }
    std::stable_sort(changes.begin(), changes.end(), [](const Change& first, const Change& second) {
        return first.edge.timeNs < second.edge.timeNs;
    });
    for (const Change& change : changes) {
        setLevel(change.line, change.edge.level,
                 change.edge.timeNs / c_nsPerUs); // the kernel's clock is ours
    }
}

/// The input lines that have edges to read.
std::vector<int> GpioChipDevice::readyInputs() const
{
    std::vector<pollfd> descriptors;
    for (const HeldLine& held : m_held) {
        descriptors.push_back({held.input != nullptr ? held.input->descriptor() : -1, POLLIN, 0});
    }
    std::vector<int> ready;
    if (poll(descriptors.data(), descriptors.size(), 0) > 0) {
        for (std::size_t line = 0; line < descriptors.size(); ++line) {
            if (descriptors.at(line).revents != 0) {
                ready.push_back(static_cast<int>(line));
            }
        }
    }
    return ready;
}

std::unique_ptr<LineDevice> makeGpioChipDevice(const GpioChipSetup& setup, DScheduler* scheduler,
                                               DevicePlace place)
{
    return std::make_unique<LineDevice>(QStringLiteral("GPIO lines"), GpioChipDevice::linesOf(setup),
                                        scheduler, place, [setup](DScheduler* clock, LineListener* listener) {
                                            return std::make_unique<GpioChipDevice>(setup, clock, listener);
                                        });
}
