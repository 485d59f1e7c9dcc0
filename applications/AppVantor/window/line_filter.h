#pragma once

#include <QSortFilterProxyModel>

/// The lines whose name or channels hold a text.
class LineFilter : public QSortFilterProxyModel
{
    Q_OBJECT
    Q_DISABLE_COPY(LineFilter)
    Q_PROPERTY(QString text READ text WRITE setText NOTIFY textChanged)

public:
    explicit LineFilter(QObject* parent = nullptr);

    QString text() const { return m_text; }
    void setText(const QString& text);

Q_SIGNALS:
    void textChanged();

protected:
    bool filterAcceptsRow(int sourceRow, const QModelIndex& sourceParent) const override;

private:
    QString m_text;
};
