#pragma once

#include <plugin_management/d_tool.h>

#include <QPointer>
#include <QQuickItem>

class QQmlComponent;

/// Shows the maintenance page of a tool: takes it from the plugin's resources, makes it and fills itself with
/// it. What goes wrong stands in problem.
class PagePanel : public QQuickItem
{
    Q_OBJECT
    Q_DISABLE_COPY(PagePanel)
    /// The DTool whose page is shown; null for none.
    Q_PROPERTY(QObject* tool READ tool WRITE setTool NOTIFY toolChanged)
    Q_PROPERTY(QQuickItem* page READ page NOTIFY pageChanged)
    /// Why there is no page, for people; empty when it is shown.
    Q_PROPERTY(QString problem READ problem NOTIFY pageChanged)

public:
    explicit PagePanel(QQuickItem* parent = nullptr);
    ~PagePanel() override;

    QObject* tool() const;
    void setTool(QObject* tool);
    QQuickItem* page() const { return m_page; }
    QString problem() const { return m_problem; }

    /// True while the page waits for values that it has requested.
    bool isBusy() const;
    /// True when the page shows what it can: it has requested values and has them, or there are none to be
    /// had.
    bool hasValues() const;
    /// Makes the page request fresh values.
    Q_INVOKABLE void refresh();

Q_SIGNALS:
    void toolChanged();
    void pageChanged();

protected:
    void geometryChanged(const QRectF& newGeometry, const QRectF& oldGeometry) override;
    void componentComplete() override;

private Q_SLOTS:
    void valuesRequested();

private:
    void reload();
    void removePage();
    QQuickItem* makePage(const QByteArray& source);
    void fitPage();
    void tellConnection();
    void showProblem(const QString& problem);

    QPointer<DTool> m_tool;
    QPointer<QQuickItem> m_page;
    QString m_problem;
    bool m_valuesRequested = false;
};
