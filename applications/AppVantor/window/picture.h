#pragma once

#include <QImage>
#include <QQuickItem>
#include <QQuickRenderControl>
#include <QQuickWindow>

/// Draws an item into a picture by the software renderer, without any window on a screen.
class Picture
{
public:
    Picture();
    ~Picture();
    Q_DISABLE_COPY(Picture)

    QQuickWindow& window() { return m_window; }
    /// Gives content this size and makes it what is drawn; it must outlive the picture or be taken away
    /// again.
    void setContent(QQuickItem* content, const QSize& size);
    /// Draws the content as it is now.
    QImage draw();
    /// Draws the content into a PNG file of this size in pixels. Returns an empty text, or why it cannot be
    /// written.
    QString write(const QString& file, const QSize& size);

private:
    QQuickRenderControl m_control;
    QQuickWindow m_window;
    QQuickItem* m_content = nullptr;
};
