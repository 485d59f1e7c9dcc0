#pragma once

#include <plugin_management/d_tool.h>

#include <QFont>
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
    /// The font that the page's texts have.
    Q_PROPERTY(QFont font MEMBER m_font)
    /// The width at which the page shows all that its rows can hold; 0 for none.
    Q_PROPERTY(double rowsWidth READ rowsWidth NOTIFY pageChanged)
    /// Which channel the last click on the page was for, and why it failed; empty when it did not.
    Q_PROPERTY(QString clickProblem READ clickProblem NOTIFY clickProblemChanged)

public:
    explicit PagePanel(QQuickItem* parent = nullptr);
    ~PagePanel() override;

    QObject* tool() const;
    void setTool(QObject* tool);
    QQuickItem* page() const { return m_page; }
    QString problem() const { return m_problem; }
    double rowsWidth() const;
    QString clickProblem() const { return m_clickProblem; }
    /// Forgets that a click failed.
    Q_INVOKABLE void dismissClickProblem() { setClickProblem(QString()); }

    /// True when all rows of the page are there: of a long list, the first come at once and the rest while
    /// the window answers.
    bool hasRows() const;
    /// True while the page is without all of its rows, or waits for values that it has requested.
    bool isBusy() const;
    /// True when the page shows what it can: it has its rows, has requested values and has them, or there are
    /// none to be had.
    bool hasValues() const;
    /// Makes the page request fresh values.
    Q_INVOKABLE void refresh();

Q_SIGNALS:
    void toolChanged();
    void pageChanged();
    void clickProblemChanged();
    /// Something that the page asked of its tool is over: a click, or a read when asks is true.
    void treatmentEnded(bool asks, const QString& command, const QVariantMap& arguments,
                        const QVariantMap& results, const DFailure& failure);

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
    void setClickProblem(const QString& problem);
    void noteTreatment(const QString& command, const QVariantMap& arguments, const QVariantMap& results,
                       const DFailure& failure);

    QPointer<DTool> m_tool;
    QPointer<QQuickItem> m_page;
    QFont m_font;
    QString m_problem;
    QString m_clickProblem;
    bool m_valuesRequested = false;
};
