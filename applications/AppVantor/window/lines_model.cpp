#include "lines_model.h"

#include <plugin_management/d_tool.h>

LinesModel::LinesModel(LineDevice* device, const QVector<DTool*>& tools, DeviceClock* clock, QObject* parent)
    : QAbstractListModel(parent)
    , m_device(device)
    , m_clock(clock)
    , m_lines(device->lines())
    , m_channels(m_lines.size())
    , m_changed([this](int first, int last) { Q_EMIT dataChanged(index(first), index(last), {LevelRole}); })
{
    for (int line = 0; line < m_lines.size(); ++line) {
        m_histories.emplace_back(device->level(line));
    }
    linkChannels(tools);
    connect(device, &DDevice::levelChanged, this, [this](int line, int level, qint64 timeUs) {
        m_clock->observe(timeUs);
        m_histories.at(static_cast<std::size_t>(line)).append(timeUs, level);
        m_changed.add(line);
    });
    connect(device, &DDevice::connectedChanged, this, &LinesModel::connectionChanged);
    connect(device, &QObject::destroyed, this, &LinesModel::connectionChanged);
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
        return line.direction == DLine::Direction::In && !m_device.isNull() && m_device->hasSettableInputs();
    case LevelRole:
        return m_device.isNull() ? 0 : m_device->level(row);
    case HighestRole:
        return LineDevice::highestLevel(line);
    case ChannelsRole:
        return m_channels.at(row).join(QStringLiteral(", "));
    case LineRole:
        return row;
    default:
        return QVariant();
    }
}

QHash<int, QByteArray> LinesModel::roleNames() const
{
    return {{NameRole, "name"},         {AnalogRole, "analog"}, {OutputRole, "output"},
            {SettableRole, "settable"}, {LevelRole, "level"},   {HighestRole, "highest"},
            {ChannelsRole, "channels"}, {LineRole, "line"}};
}

bool LinesModel::isConnected() const
{
    return !m_device.isNull() && m_device->isConnected();
}

QString LinesModel::connectionProblem() const
{
    return m_device.isNull() ? QString() : m_device->connectionProblem();
}

QString LinesModel::deviceName() const
{
    return m_device.isNull() ? QString() : m_device->objectName();
}

const LineHistory* LinesModel::history(int line) const
{
    return line >= 0 && line < m_lines.size() ? &m_histories.at(static_cast<std::size_t>(line)) : nullptr;
}

int LinesModel::highestLevel(int line) const
{
    return line >= 0 && line < m_lines.size() ? LineDevice::highestLevel(m_lines.at(line)) : 0;
}

void LinesModel::setLevel(int line, int level)
{
    if (!m_device.isNull() && line >= 0 && line < m_lines.size()) {
        m_device->setInput(line, qBound(0, level, LineDevice::highestLevel(m_lines.at(line))));
    }
}

int LinesModel::levelAt(int line, double timeUs) const
{
    const LineHistory* lineHistory = history(line);
    return lineHistory != nullptr ? lineHistory->levelAt(static_cast<qint64>(timeUs)) : 0;
}

void LinesModel::linkChannels(const QVector<DTool*>& tools)
{
    QHash<QString, int> numbers;
    for (int line = 0; line < m_lines.size(); ++line) {
        numbers.insert(m_lines.at(line).name, line);
    }
    for (const DTool* tool : tools) {
        const QVariantList channels = tool->toolConfiguration.value(QStringLiteral("channels")).toList();
        for (const QVariant& entry : channels) {
            const QString channel = entry.toMap().value(QStringLiteral("id")).toString();
            const int line = numbers.value(tool->getLinkedChannel(channel), -1);
            if (line >= 0 && !m_channels.at(line).contains(channel)) {
                m_channels[line].append(channel);
            }
        }
    }
}
