#include <plugin_management/d_tool_registry.h>

#include <plugin_management/d_tool.h>

DToolRegistry::DToolRegistry()
    : DObject(QStringLiteral("DToolRegistry"))
{}

DToolRegistry& DToolRegistry::instance()
{
    static DToolRegistry registry;
    return registry;
}

QVector<DTool*> DToolRegistry::tools() const
{
    return m_tools;
}

DTool* DToolRegistry::find(const QString& name, const QString& id,
                           const std::optional<QVariantMap>& configuration) const
{
    if (name.isEmpty() && id.isEmpty()) {
        return nullptr;
    }
    for (DTool* tool : m_tools) {
        if ((name.isEmpty() || tool->objectName() == name) && (id.isEmpty() || tool->id() == id) &&
            (!configuration || tool->toolConfiguration == *configuration)) {
            return tool;
        }
    }
    return nullptr;
}

void DToolRegistry::add(DTool* tool)
{
    m_tools.append(tool);
    Q_EMIT toolAdded(tool);
}

void DToolRegistry::remove(DTool* tool)
{
    m_tools.removeOne(tool);
    Q_EMIT toolRemoved(tool);
}
