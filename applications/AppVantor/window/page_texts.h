#pragma once

#include <QColor>
#include <QFont>
#include <QPointer>
#include <QQmlParserStatus>
#include <QQuickItem>
#include <QSet>
#include <QTimer>

/// Gives the texts of a page, which knows nothing of the bench's theme, the look of it. What a text sets of
/// its font and how it is cut, and a colour other than black, which is that of Qt Quick's texts, it keeps; a
/// text that is not cut anywhere loses its middle, and where it stands in a column, without shrinking before.
class PageTexts : public QObject, public QQmlParserStatus
{
    Q_OBJECT
    Q_INTERFACES(QQmlParserStatus)
    /// The item below which the texts stand, now and later; null for none. The texts of the item before keep
    /// the look that they have then.
    Q_PROPERTY(QQuickItem* root READ root WRITE setRoot NOTIFY rootChanged)
    /// The colour of the black texts. A text that has taken it follows its changes, until it changes colour
    /// by itself.
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged)
    /// The font of the texts that come from now on.
    Q_PROPERTY(QFont font MEMBER m_font NOTIFY fontChanged)
    /// True while a text of the page has no room for a single letter: nothing shows that it is there.
    Q_PROPERTY(bool hidden READ isHidden NOTIFY hiddenChanged)

public:
    PageTexts();

    QQuickItem* root() const { return m_root; }
    void setRoot(QQuickItem* root);
    QColor color() const { return m_color; }
    void setColor(const QColor& color);
    bool isHidden() const { return m_hidden; }

    void classBegin() override {}
    void componentComplete() override;

Q_SIGNALS:
    void rootChanged();
    void colorChanged();
    void fontChanged();
    void hiddenChanged();

private:
    void adoptRoot();
    void adopt(QQuickItem* item);
    void giveLook(QQuickItem* text);
    void forget(QObject* item);
    void release();
    void lookForHidden();

    QPointer<QQuickItem> m_root;
    QColor m_color = Qt::black;
    QFont m_font;
    bool m_isComplete = false;
    bool m_hidden = false;
    QTimer m_look;          ///< when the texts have their widths
    QSet<QObject*> m_items; // that are watched, all of them items until they are destroyed
    QSet<QObject*> m_texts;
    QSet<QObject*> m_coloured; // texts that have taken the colour
};
