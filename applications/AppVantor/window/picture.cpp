#include "picture.h"

#include <QBuffer>
#include <QFileInfo>
#include <QImageWriter>
#include <QSaveFile>

namespace {

/// A disk that fills up takes a part first, and only then tells why it takes no more.
bool writeAll(const QByteArray& data, QIODevice* target)
{
    qint64 done = 0;
    qint64 written = 1;
    while (done < data.size() && written > 0) {
        written = target->write(data.constData() + done, data.size() - done);
        done += written;
    }
    return written > 0;
}

} // namespace

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
    const QString failure = QStringLiteral("cannot write the picture %1: %2");
    // A picture takes the place of what has its name, which must not be a device or a pipe.
    const QFileInfo present(file);
    if (present.exists() && !present.isFile()) {
        return failure.arg(file, QStringLiteral("not a regular file"));
    }
    const QImage image = draw().copy(QRect(QPoint(0, 0), size)).convertToFormat(QImage::Format_RGB32);
    QBuffer png;
    QImageWriter writer(&png, "png");
    if (!writer.write(image)) {
        return failure.arg(file, writer.errorString());
    }
    QSaveFile target(file);
    const bool written = target.open(QIODevice::WriteOnly | QIODevice::Unbuffered) &&
                         writeAll(png.data(), &target) && target.commit();
    return written ? QString() : failure.arg(file, target.errorString());
}
