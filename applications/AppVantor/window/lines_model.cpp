#include "lines_model.h"

#include "texts.h"

#include <algorithm>

namespace {

std::size_t shareOfChanges(int lines)
{
    const auto share = LinesModel::c_mostChanges / static_cast<std::size_t>(std::max(1, lines));
    return std::clamp<std::size_t>(share, 1, LineHistory::c_mostChanges);
}

QString groupOf(const QString& name)
{
    int length = name.size();
    while (length > 0 && name.at(length - 1).isDigit()) {
        --length;
    }
    return length > 0 ? name.left(length) : name;
}

} // namespace

LinesModel::LinesModel(LineDevice* device, const QVector<DTool*>& tools, DeviceClock* clock, QObject* parent)
    : QAbstractListModel(parent)
    , m_device(device)
    , m_clock(clock)
    , m_lines(device->lines())
    , m_channels(m_lines.size())
    , m_histories(static_cast<std::size_t>(m_lines.size()), LineHistory(shareOfChanges(m_lines.size())))
    , m_changed(clock, [this](int first, int last) {
        Q_EMIT dataChanged(index(first), index(last), {KnownRole, StatusRole, BlinkingRole, LevelRole});
    })
{
    for (int line = 0; line < m_lines.size(); ++line) {
        record(line, device->level(line));
    }
    linkChannels(tools);
    connect(device, &LineDevice::lineChanged, this, [this](int line, const LineLevel& level) {
        noteTime(level.sinceUs);
        record(line, level);
    });
    connect(device, &LineDevice::changesLost, this, [this](quint64, qint64 fromUs, qint64 untilUs) {
        m_asked.clear();
        m_lostFromUs = fromUs;
        m_lostUntilUs = untilUs;
    });
    connect(device, &LineDevice::blinkingChanged, &m_changed, &ChangedRows::add);
    connect(device, &DDevice::stateChanged, this, [this] {
        m_asked.clear(); // of a device that is away, only the levels afterwards are told
        for (int line = 0; line < m_lines.size(); ++line) {
            m_changed.add(line); // what is not known is so for another reason
        }
        Q_EMIT stateChanged();
    });
    connect(device, &QObject::destroyed, this, &LinesModel::stateChanged);
    connect(clock, &DeviceClock::runningChanged, this, [this] {
        if (m_clock->isRunning()) {
            joinLater();
        } else {
            hold();
        }
    });
    connect(clock, &DeviceClock::ticked, this, [this] {
        if (awaitsMore()) {
            m_clock->want();
        }
    });
}

int LinesModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_lines.size();
}

QVariant LinesModel::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid)) {
        return QVariant();
    }
    const int row = index.row();
    const DLine& line = m_lines.at(row);
    switch (role) {
    case Qt::DisplayRole:
    case NameRole:
        return line.name;
    case AnalogRole:
        return line.kind == DLine::Kind::Analog;
    case OutputRole:
        return line.direction == DLine::Direction::Out;
    case SettableRole:
        return line.settable;
    case DrivableRole:
        return isDrivable(row);
    case KnownRole:
        return present(row).known;
    case StatusRole:
        return status(row);
    case BlinkingRole:
        return !m_device.isNull() && m_device->blinks(row);
    case LevelRole:
        return status(row) == QLatin1String("old") ? lastLevel(row) : levelOf(row);
    case HighestRole:
        return line.highestLevel();
    case ChannelsRole:
        return m_channels.at(row).join(QStringLiteral(", "));
    case GroupRole:
        return groupOf(line.name);
    case LineRole:
        return row;
    default:
        return QVariant();
    }
}

QHash<int, QByteArray> LinesModel::roleNames() const
{
    return {{NameRole, "name"},         {AnalogRole, "analog"},     {OutputRole, "output"},
            {SettableRole, "settable"}, {DrivableRole, "drivable"}, {StatusRole, "status"},
            {BlinkingRole, "blinking"}, {KnownRole, "known"},       {LevelRole, "level"},
            {HighestRole, "highest"},   {ChannelsRole, "channels"}, {GroupRole, "group"},
            {LineRole, "line"}};
}

QString LinesModel::state() const
{
    return QVariant::fromValue(m_device.isNull() ? DDevice::State::Closed : m_device->state()).toString();
}

QString LinesModel::problem() const
{
    return m_device.isNull() ? QString() : worded(m_device->connectionProblem());
}

QString LinesModel::deviceName() const
{
    return m_device.isNull() ? QString() : worded(DWording::told(m_device->objectName()));
}

OutputsAtEnd LinesModel::outputsAtEnd() const
{
    return m_device.isNull() ? OutputsAtEnd::Vanish : m_device->outputsAtEnd();
}

const LineHistory* LinesModel::history(int line) const
{
    return line >= 0 && line < m_lines.size() ? &m_histories.at(static_cast<std::size_t>(line)) : nullptr;
}

qint64 LinesModel::toldUntilUs() const
{
    const auto nowUs = static_cast<qint64>(m_clock->now());
    return awaitsMore() ? std::min(nowUs, m_toldUs) : nowUs;
}

int LinesModel::highestLevel(int line) const
{
    return line >= 0 && line < m_lines.size() ? m_lines.at(line).highestLevel() : 0;
}

void LinesModel::setLevel(int line, int level)
{
    if (line < 0 || line >= m_lines.size() || !present(line).known) {
        return;
    }
    const int wanted = std::clamp(level, 0, m_lines.at(line).highestLevel());
    if (wanted == levelOf(line)) {
        return; // the device would not tell of it
    }
    if (isDrivable(line)) {
        const Driver& driver = m_drivers[line];
        Q_EMIT orderWanted(driver.tool, settingLevel(driver.channel, wanted));
        return;
    }
    if (!m_lines.at(line).settable) {
        return;
    }
    m_asked.insert(line, {wanted, m_asked.value(line).untold + 1});
    m_changed.add(line);
    m_device->setInput(line, wanted);
}

int LinesModel::levelOf(int line) const
{
    const auto asked = m_asked.constFind(line);
    return asked != m_asked.constEnd() ? asked->level : m_device.isNull() ? 0 : m_device->level(line).level;
}

bool LinesModel::isDrivable(int line) const
{
    const auto driver = m_drivers.constFind(line);
    return driver != m_drivers.constEnd() && !driver->tool.isNull();
}

QString LinesModel::status(int line) const
{
    if (m_device.isNull()) {
        return QStringLiteral("unknown");
    }
    if (m_device->level(line).known) {
        return m_asked.contains(line) ? QStringLiteral("waiting") : QStringLiteral("known");
    }
    switch (m_device->state()) {
    case DDevice::State::Connected:
        return QStringLiteral("failed");
    case DDevice::State::Connecting:
        return QStringLiteral("waiting");
    default:
        return lastLevel(line) >= 0 ? QStringLiteral("old") : QStringLiteral("unknown");
    }
}

/// The level before it was no longer known; -1 where it never was.
int LinesModel::lastLevel(int line) const
{
    for (const std::vector<LineHistory>* histories : {&m_laterHistories, &m_histories}) {
        if (!histories->empty()) {
            const std::deque<LineLevel>& changes = histories->at(static_cast<std::size_t>(line)).changes();
            const auto last = std::find_if(changes.crbegin(), changes.crend(),
                                           [](const LineLevel& change) { return change.known; });
            if (last != changes.crend()) {
                return last->level;
            }
        }
    }
    return -1;
}

QVariant LinesModel::levelAt(int line, double timeUs) const
{
    const LineHistory* lineHistory = history(line);
    const auto atUs = static_cast<qint64>(timeUs);
    const bool isTold = lineHistory != nullptr && (atUs <= m_toldUs || !awaitsMore());
    const LineLevel level = isTold ? lineHistory->at(atUs) : LineLevel();
    return level.known ? level.level : QVariant();
}

/// What was known of the level of line until something else is told.
LineLevel LinesModel::before(int line) const
{
    const auto place = static_cast<std::size_t>(line);
    for (const std::vector<LineHistory>* histories : {&m_laterHistories, &m_histories}) {
        if (!histories->empty() && !histories->at(place).changes().empty()) {
            return histories->at(place).changes().back();
        }
    }
    return LineLevel();
}

/// What happened before the clock stopped belongs to the courses that are held, whenever it is told.
void LinesModel::append(int line, const LineLevel& level)
{
    const bool isLater = !m_laterHistories.empty() && level.sinceUs >= static_cast<qint64>(m_clock->now());
    (isLater ? m_laterHistories : m_histories).at(static_cast<std::size_t>(line)).append(level);
}

void LinesModel::record(int line, const LineLevel& level)
{
    LineLevel last = before(line);
    if (last.known && level.sinceUs <= m_lostUntilUs) {
        const qint64 fromUs = std::min(std::max(last.sinceUs + 1, m_lostFromUs), level.sinceUs);
        last = {0, fromUs, false}; // what it did in between nobody knows
        append(line, last);
    }
    append(line, level);
    Q_EMIT lineRecorded(line, last, level);
    const auto asked = m_asked.find(line);
    if (asked != m_asked.end() && (--asked->untold <= 0 || !level.known)) {
        m_asked.erase(asked);
    }
    m_changed.add(line);
}

void LinesModel::noteTime(qint64 toldUs)
{
    m_toldUs = std::max(m_toldUs, toldUs);
    const qint64 nowUs = m_clock->scheduler().now();
    m_lateUs = nowUs - toldUs > c_lateUs ? std::optional(nowUs) : std::nullopt;
}

bool LinesModel::awaitsMore() const
{
    return m_lateUs && m_clock->scheduler().now() - *m_lateUs < c_awaitedUs;
}

void LinesModel::hold()
{
    const auto lines = static_cast<std::size_t>(m_lines.size());
    m_laterHistories.assign(lines, LineHistory(shareOfChanges(m_lines.size())));
}

/// Where some of it is forgotten already, the rest takes all the room: no course is joined across that.
void LinesModel::joinLater()
{
    for (std::size_t line = 0; line < m_laterHistories.size(); ++line) {
        for (const LineLevel& change : m_laterHistories.at(line).changes()) {
            m_histories.at(line).append(change);
        }
    }
    m_laterHistories.clear();
}

void LinesModel::linkChannels(const QVector<DTool*>& tools)
{
    QHash<QString, int> numbers;
    for (int line = 0; line < m_lines.size(); ++line) {
        numbers.insert(m_lines.at(line).name, line);
    }
    for (DTool* tool : tools) {
        for (const DToolChannel& channel : tool->channels()) {
            const int line = numbers.value(channel.link, -1);
            if (line >= 0 && !m_channels.at(line).contains(channel.id)) {
                m_channels[line].append(channel.id);
                if (m_lines.at(line).direction == DLine::Direction::Out &&
                    m_lines.at(line).kind == DLine::Kind::Analog && drivesLine(channel) &&
                    !m_drivers.contains(line)) {
                    m_drivers.insert(line, {tool, channel});
                }
            }
        }
    }
}
