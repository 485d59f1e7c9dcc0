#include "tools_model.h"

#include <plugin_management/d_device.h>
#include <plugin_management/d_tool.h>
#include <plugin_management/d_tool_registry.h>
#include <plugin_management/i_plugin.h>

#include <QQmlEngine>

ToolsModel::ToolsModel(const QVector<DTool*>& tools, QObject* parent)
    : QAbstractListModel(parent)
    , m_tools(tools)
{
    connect(&DToolRegistry::instance(), &DToolRegistry::toolRemoved, this, &ToolsModel::removeTool);
    for (DTool* tool : tools) {
        QQmlEngine::setObjectOwnership(tool, QQmlEngine::CppOwnership);
        if (const DDevice* device = tool->device()) {
            connect(device, &DDevice::stateChanged, this, [this, tool] {
                const QModelIndex row = index(m_tools.indexOf(tool));
                if (row.isValid()) {
                    Q_EMIT dataChanged(row, row, {StateRole});
                }
            });
        }
    }
}

int ToolsModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_tools.size();
}

QVariant ToolsModel::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid)) {
        return QVariant();
    }
    const DTool& tool = *m_tools.at(index.row());
    switch (role) {
    case Qt::DisplayRole:
    case NameRole:
        return tool.objectName();
    case IdRole:
        return tool.id();
    case PluginRole:
        return tool.plugin() != nullptr ? tool.plugin()->pluginName() : QString();
    case ChannelCountRole:
        return tool.channels().size();
    case StateRole:
        return QVariant::fromValue(tool.device() != nullptr ? tool.device()->state() : DDevice::State::Closed)
            .toString();
    default:
        return QVariant();
    }
}

QHash<int, QByteArray> ToolsModel::roleNames() const
{
    return {{NameRole, "name"},
            {IdRole, "toolId"},
            {PluginRole, "plugin"},
            {ChannelCountRole, "channelCount"},
            {StateRole, "state"}};
}

QObject* ToolsModel::toolAt(int row) const
{
    return m_tools.value(row);
}

void ToolsModel::removeTool(DTool* tool)
{
    const int row = m_tools.indexOf(tool);
    if (row >= 0) {
        beginRemoveRows(QModelIndex(), row, row);
        m_tools.removeAt(row);
        endRemoveRows();
        Q_EMIT countChanged();
    }
}
