#pragma once

#include <QCollator>
#include <QSet>
#include <QSortFilterProxyModel>
#include <QVector>

/// The lines whose name or channels hold a text, but those that were hidden, in an order of the user's own or
/// grouped by name.
class LineFilter : public QSortFilterProxyModel
{
    Q_OBJECT
    Q_DISABLE_COPY(LineFilter)
    Q_PROPERTY(QString text READ text WRITE setText NOTIFY textChanged)
    /// True while lines whose names differ in their number only stand together, in its order.
    Q_PROPERTY(bool grouped READ isGrouped WRITE setGrouped NOTIFY orderChanged)
    /// Number of lines that were hidden.
    Q_PROPERTY(int hiddenCount READ hiddenCount NOTIFY hiddenChanged)

public:
    explicit LineFilter(QObject* parent = nullptr);

    QString text() const { return m_text; }
    void setText(const QString& text);
    bool isGrouped() const { return m_grouped; }
    void setGrouped(bool grouped);
    int hiddenCount() const { return m_hidden.size(); }

    void setSourceModel(QAbstractItemModel* model) override;

    /// The row of a line of the source; -1 where it is not shown.
    Q_INVOKABLE int rowOf(int line) const;
    /// Hides these lines of the source; those that are not there are passed over.
    Q_INVOKABLE void hide(const QList<int>& lines);
    /// Shows all lines that were hidden.
    Q_INVOKABLE void showHidden();
    /// Lets a row and the next one, or the one before where by is -1, change places. Answers whether there
    /// was one; the lines are no longer grouped then.
    Q_INVOKABLE bool move(int row, int by);

    /// The names of all lines in the order of the user, and of those that are hidden. Names that are not
    /// known are passed over; lines that are not named come last.
    QStringList order() const;
    QStringList hidden() const;
    void arrange(const QStringList& order, const QStringList& hidden);

Q_SIGNALS:
    void textChanged();
    void hiddenChanged();
    void orderChanged();

protected:
    bool filterAcceptsRow(int sourceRow, const QModelIndex& sourceParent) const override;
    bool lessThan(const QModelIndex& left, const QModelIndex& right) const override;

private:
    QString nameOf(int sourceRow) const;
    void sortAnew();

    QString m_text;
    QSet<int> m_hidden;    ///< rows of the lines
    QVector<int> m_places; ///< of the lines, by their rows
    bool m_grouped = false;
    QCollator m_collator;
};
