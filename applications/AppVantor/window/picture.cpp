#include "picture.h"

#include <QImageWriter>
#include <QSaveFile>

Picture::Picture()
    : m_window(&m_control)
{
    m_control.initialize(nullptr);
}

Picture::~Picture()
{
    if (m_content != nullptr) {
        m_content->setParentItem(nullptr);
    }
    m_control.invalidate(); // what was drawn goes before the window
}

void Picture::setContent(QQuickItem* content, const QSize& size)
{
    m_content = content;
    m_window.resize(size);
    m_window.contentItem()->setSize(size);
    content->setParentItem(m_window.contentItem());
    content->setSize(size);
}

QImage Picture::draw()
{
    m_control.polishItems();
    m_control.sync();
    return m_control.grab();
}

QString Picture::write(const QString& file, const QSize& size)
{
    const QImage image = draw().copy(QRect(QPoint(0, 0), size)).convertToFormat(QImage::Format_RGB32);
    QSaveFile target(file);
    bool written = target.open(QIODevice::WriteOnly);
    QString problem = target.errorString();
    if (written) {
        QImageWriter writer(&target, "png");
        written = writer.write(image);
        problem = writer.errorString();
    }
    if (written) {
        written = target.commit();
        problem = target.errorString();
    }
    return written ? QString() : QStringLiteral("cannot write the picture %1: %2").arg(file, problem);
}
