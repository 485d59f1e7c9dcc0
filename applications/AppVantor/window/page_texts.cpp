#include "page_texts.h"

#include <utility>

namespace {

bool isText(const QQuickItem* item)
{
    return item->inherits("QQuickText");
}

} // namespace

void PageTexts::setRoot(QQuickItem* root)
{
    if (root != m_root) {
        m_root = root;
        adoptRoot();
        Q_EMIT rootChanged();
    }
}

void PageTexts::setColor(const QColor& color)
{
    if (color != m_color) {
        const QColor before = std::exchange(m_color, color);
        if (!m_root.isNull()) {
            recolor(m_root, before);
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
    if (isText(item)) {
        item->setProperty("font", item->property("font").value<QFont>().resolve(m_font));
        if (item->property("color") == QColor(Qt::black)) {
            item->setProperty("color", m_color);
        }
    }
    const QList<QQuickItem*> children = item->childItems();
    for (QQuickItem* child : children) {
        adopt(child);
    }
    // A new child comes last.
    connect(item, &QQuickItem::childrenChanged, this, [this, item, known = children.size()]() mutable {
        const QList<QQuickItem*> now = item->childItems();
        if (now.size() > known) {
            adopt(now.constLast());
        }
        known = now.size();
    });
}

void PageTexts::recolor(QQuickItem* item, const QColor& from)
{
    if (isText(item) && item->property("color") == from) {
        item->setProperty("color", m_color);
    }
    for (QQuickItem* child : item->childItems()) {
        recolor(child, from);
    }
}
