#pragma once

#include <QAbstractListModel>
#include <QVector>

class DTool;

/// The tools of the bench.
class ToolsModel : public QAbstractListModel
{
    Q_OBJECT
    Q_DISABLE_COPY(ToolsModel)
    Q_PROPERTY(int count READ count NOTIFY countChanged)

public:
    enum Role
    {
        NameRole = Qt::UserRole,
        IdRole,
        PluginRole,
        ChannelCountRole,
        StateRole ///< of the device: "Closed", "Connecting", "Connected" or "Unreachable"
    };

    explicit ToolsModel(const QVector<DTool*>& tools, QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    int count() const { return m_tools.size(); }
    /// The DTool of a row; null when there is none.
    Q_INVOKABLE QObject* toolAt(int row) const;

Q_SIGNALS:
    void countChanged();

private:
    void removeTool(DTool* tool);

    QVector<DTool*> m_tools;
};
