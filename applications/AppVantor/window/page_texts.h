#pragma once

#include <QColor>
#include <QFont>
#include <QPointer>
#include <QQmlParserStatus>
#include <QQuickItem>

/// Gives the texts of a page, which knows nothing of the bench's theme, the colour and the font of it. A text
/// that has a colour of its own, or sets something of its font, keeps that.
class PageTexts : public QObject, public QQmlParserStatus
{
    Q_OBJECT
    Q_INTERFACES(QQmlParserStatus)
    /// The item below which the texts stand, now and later; null for none.
    Q_PROPERTY(QQuickItem* root READ root WRITE setRoot NOTIFY rootChanged)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged)
    /// The font of the texts that come from now on.
    Q_PROPERTY(QFont font MEMBER m_font NOTIFY fontChanged)

public:
    QQuickItem* root() const { return m_root; }
    void setRoot(QQuickItem* root);
    QColor color() const { return m_color; }
    void setColor(const QColor& color);

    void classBegin() override {}
    void componentComplete() override;

Q_SIGNALS:
    void rootChanged();
    void colorChanged();
    void fontChanged();

private:
    void adoptRoot();
    void adopt(QQuickItem* item);
    void recolor(QQuickItem* item, const QColor& from);

    QPointer<QQuickItem> m_root;
    QColor m_color = Qt::black; // that of Qt Quick's texts
    QFont m_font;
    bool m_isComplete = false;
};
