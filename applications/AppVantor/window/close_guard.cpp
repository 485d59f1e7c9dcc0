#include "close_guard.h"

#include "scene.h"

#include <QEvent>
#include <QWindow>

CloseGuard::CloseGuard(const BenchScene& scene, QWindow* window)
    : m_scene(scene)
{
    window->installEventFilter(this);
    connect(&scene.root(), SIGNAL(closeConfirmed()), this, SIGNAL(confirmed()));
}

bool CloseGuard::eventFilter(QObject* watched, QEvent* event)
{
    const QString reason = event->type() == QEvent::Close ? m_scene.reasonToStay() : QString();
    if (reason.isEmpty()) {
        return QObject::eventFilter(watched, event);
    }
    event->ignore();
    QMetaObject::invokeMethod(&m_scene.root(), "askToClose", Q_ARG(QVariant, reason));
    return true;
}
