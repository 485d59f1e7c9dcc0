#include "lines_model.h"

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
        Q_EMIT dataChanged(index(first), index(last), {StatusRole, BlinkingRole, LevelRole});
    })
{
    for (int line = 0; line < m_lines.size(); ++line) {
        record(line, device->level(line));
    }
    linkChannels(tools);
    connect(device, &LineDevice::lineChanged, this, &LinesModel::record);
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
    connect(clock, &DeviceClock::runningChanged, this,
            [this] { m_heldHistories = m_clock->isRunning() ? std::vector<LineHistory>() : m_histories; });
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
            {BlinkingRole, "blinking"}, {LevelRole, "level"},       {HighestRole, "highest"},
            {ChannelsRole, "channels"}, {GroupRole, "group"},       {LineRole, "line"}};
}

QString LinesModel::state() const
{
    return QVariant::fromValue(m_device.isNull() ? DDevice::State::Closed : m_device->state()).toString();
}

QString LinesModel::problem() const
{
    return m_device.isNull() ? QString() : m_device->connectionProblem();
}

QString LinesModel::deviceName() const
{
    return m_device.isNull() ? QString() : m_device->objectName();
}

const LineHistory* LinesModel::history(int line) const
{
    const std::vector<LineHistory>& histories = m_clock->isRunning() ? m_histories : m_heldHistories;
    return line >= 0 && line < m_lines.size() ? &histories.at(static_cast<std::size_t>(line)) : nullptr;
}

int LinesModel::highestLevel(int line) const
{
    return line >= 0 && line < m_lines.size() ? m_lines.at(line).highestLevel() : 0;
}

void LinesModel::setLevel(int line, int level)
{
    if (m_device.isNull() || line < 0 || line >= m_lines.size()) {
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
    const std::deque<LineLevel>& changes = m_histories.at(static_cast<std::size_t>(line)).changes();
    const auto last = std::find_if(changes.crbegin(), changes.crend(),
                                   [](const LineLevel& change) { return change.known; });
    return last != changes.crend() ? last->level : -1;
}

QVariant LinesModel::levelAt(int line, double timeUs) const
{
    const LineHistory* lineHistory = history(line);
    const LineLevel level =
        lineHistory != nullptr ? lineHistory->at(static_cast<qint64>(timeUs)) : LineLevel();
    return level.known ? level.level : QVariant();
}

/// Returns what was known of the level until then.
LineLevel LinesModel::append(LineHistory* history, const LineLevel& level) const
{
    LineLevel before = history->changes().empty() ? LineLevel() : history->changes().back();
    if (before.known && level.sinceUs <= m_lostUntilUs) {
        const qint64 fromUs = std::min(std::max(before.sinceUs + 1, m_lostFromUs), level.sinceUs);
        before = {0, fromUs, false}; // what it did in between nobody knows
        history->append(before);
    }
    history->append(level);
    return before;
}

void LinesModel::record(int line, const LineLevel& level)
{
    const auto place = static_cast<std::size_t>(line);
    const LineLevel before = append(&m_histories.at(place), level);
    if (!m_clock->isRunning() && level.sinceUs < static_cast<qint64>(m_clock->now())) {
        append(&m_heldHistories.at(place), level); // told late
    }
    Q_EMIT lineRecorded(line, before, level);
    const auto asked = m_asked.find(line);
    if (asked != m_asked.end() && (--asked->untold <= 0 || !level.known)) {
        m_asked.erase(asked);
    }
    m_changed.add(line);
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
