#pragma once

#include <plugin_management/plugin_management_global.h>

#include <utilities/d_object.h>

#include <QVariant>
#include <QVector>

#include <optional>

class DTool;

/// The tools of this process. Tools add and remove themselves.
class PLUGIN_MANAGEMENT_EXPORT DToolRegistry : public DObject
{
    Q_OBJECT
    Q_DISABLE_COPY(DToolRegistry)

public:
    static DToolRegistry& instance();

    /// The tools, in the order of their making.
    QVector<DTool*> tools() const;
    /// The first tool with this name and identifier, and with this configuration where one is given; an empty
    /// text matches every tool, two empty ones none. Null when there is none.
    DTool* find(const QString& name, const QString& id,
                const std::optional<QVariantMap>& configuration = std::nullopt) const;

Q_SIGNALS:
    void toolAdded(DTool* tool);
    /// The tool is about to go; it is no longer listed.
    void toolRemoved(DTool* tool);

private:
    friend class DTool;

    DToolRegistry();
    void add(DTool* tool);
    void remove(DTool* tool);

    QVector<DTool*> m_tools;
};
