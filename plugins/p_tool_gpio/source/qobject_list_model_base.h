#pragma once

#include <QAbstractListModel>
#include <QList>
#include <QQmlEngine>
#include <QSharedPointer>

namespace __qobjectsqmllist { // NOLINT(clang-diagnostic-reserved-identifier): it is part of the interface

/// The item-model side of a list of objects for QML: each row's object stands under the role "modelData". The
/// concrete class adds what a template cannot carry, the meta-object.
template <typename T>
class QObjectListModelBase : public QAbstractListModel
{
public:
    explicit QObjectListModelBase(QObject* parent = nullptr)
        : QAbstractListModel(parent)
    {}

    /// The rows in order.
    const QList<QSharedPointer<T>>& items() const { return m_items; }

    /// Adds item as the last row. From here on it is C++'s own, whatever way it comes to QML.
    void append(const QSharedPointer<T>& item)
    {
        QQmlEngine::setObjectOwnership(item.data(), QQmlEngine::CppOwnership);
        const int row = m_items.size();
        beginInsertRows(QModelIndex(), row, row);
        m_items.append(item);
        endInsertRows();
        emitChanged();
    }

    /// Number of rows; the model is flat and does not look at parent.
    int rowCount(const QModelIndex& parent = QModelIndex()) const override
    {
        Q_UNUSED(parent)
        return m_items.size();
    }

    /// The row's object under the role "modelData"; an invalid variant for any other role or row.
    QVariant data(const QModelIndex& index, int role) const override
    {
        const int row = index.row();
        if (row < 0 || row >= m_items.size() || role != Qt::UserRole) {
            return QVariant();
        }
        return QVariant::fromValue<QObject*>(m_items.at(row).data());
    }

    /// There are no header texts: always an invalid variant.
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override
    {
        Q_UNUSED(section)
        Q_UNUSED(orientation)
        Q_UNUSED(role)
        return QVariant();
    }

    QHash<int, QByteArray> roleNames() const override
    {
        QHash<int, QByteArray> names = QAbstractListModel::roleNames();
        names.insert(Qt::UserRole, QByteArrayLiteral("modelData"));
        return names;
    }

protected:
    /// Called after each change of the list; the concrete class emits its signal changed().
    virtual void emitChanged() = 0;

private:
    QList<QSharedPointer<T>> m_items;
};

} // namespace __qobjectsqmllist
