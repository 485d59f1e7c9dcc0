#include "page_texts.h"

#include <QFontMetricsF>

#include <algorithm>
#include <utility>

PageTexts::PageTexts()
{
    m_look.setSingleShot(true);
    connect(&m_look, &QTimer::timeout, this, &PageTexts::lookForHidden);
}

void PageTexts::setRoot(QQuickItem* root)
{
    if (root != m_root) {
        release();
        m_root = root;
        adoptRoot();
        Q_EMIT rootChanged();
    }
}

void PageTexts::setColor(const QColor& color)
{
    if (color != m_color) {
        const QColor before = std::exchange(m_color, color);
        for (QObject* text : qAsConst(m_coloured)) {
            if (text->property("color") == before) {
                text->setProperty("color", m_color);
            }
        }
        Q_EMIT colorChanged();
    }
}

void PageTexts::componentComplete()
{
    m_isComplete = true;
    adoptRoot();
}

/// Not before colour and font are there as well.
void PageTexts::adoptRoot()
{
    if (m_isComplete && !m_root.isNull()) {
        adopt(m_root);
    }
}

void PageTexts::adopt(QQuickItem* item)
{
    if (m_items.contains(item)) {
        return;
    }
    m_items.insert(item);
    connect(item, &QObject::destroyed, this, &PageTexts::forget);
    if (item->inherits("QQuickText")) {
        giveLook(item);
        m_texts.insert(item);
        connect(item, &QQuickItem::widthChanged, this, [this] { m_look.start(0); });
        m_look.start(0);
    }
    const QList<QQuickItem*> children = item->childItems();
    for (QQuickItem* child : children) {
        adopt(child);
    }
    connect(item, &QQuickItem::childrenChanged, this, [this, item] {
        const QList<QQuickItem*> now = item->childItems();
        if (!now.isEmpty()) {
            adopt(now.constLast()); // a new child comes last
        }
    });
}

void PageTexts::giveLook(QQuickItem* text)
{
    text->setProperty("font", text->property("font").value<QFont>().resolve(m_font));
    if (text->property("elide").toInt() == Qt::ElideNone) {
        text->setProperty("elide", Qt::ElideMiddle);
        if (text->property("horizontalAlignment").toInt() == Qt::AlignLeft) {
            text->setProperty("minimumPixelSize", m_font.pixelSize());
        }
    }
    if (text->property("color") == QColor(Qt::black)) {
        text->setProperty("color", m_color);
        m_coloured.insert(text);
    }
}

void PageTexts::forget(QObject* item)
{
    m_items.remove(item);
    m_coloured.remove(item);
    m_texts.remove(item);
    m_look.start(0);
}

void PageTexts::release()
{
    for (QObject* item : qAsConst(m_items)) {
        disconnect(item, nullptr, this, nullptr);
    }
    m_items.clear();
    m_coloured.clear();
    m_texts.clear();
    m_look.start(0);
}

void PageTexts::lookForHidden()
{
    const double letter = QFontMetricsF(m_font).averageCharWidth();
    const bool hidden = std::any_of(m_texts.cbegin(), m_texts.cend(), [letter](const QObject* object) {
        const auto* text = static_cast<const QQuickItem*>(object);
        return text->width() < letter && text->isVisible() && !text->property("text").toString().isEmpty();
    });
    if (hidden != m_hidden) {
        m_hidden = hidden;
        Q_EMIT hiddenChanged();
    }
}
