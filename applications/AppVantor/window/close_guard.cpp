#include "close_guard.h"

#include "scene.h"

#include <QEvent>
#include <QWindow>

CloseGuard::CloseGuard(BenchScene& scene, QWindow* window)
    : m_scene(scene)
{
    window->installEventFilter(this);
    connect(&scene.root(), SIGNAL(closeConfirmed()), this, SIGNAL(confirmed()));
    connect(&scene.root(), SIGNAL(replacementConfirmed()), this, SIGNAL(replacementConfirmed()));
    connect(&scene.clock(), &DeviceClock::ticked, this, &CloseGuard::tellAnew);
}

void CloseGuard::askToReplace()
{
    const QString reason = m_scene.reasonToStay();
    if (reason.isEmpty()) {
        Q_EMIT replacementConfirmed();
    } else {
        ask("replace", reason);
    }
}

bool CloseGuard::eventFilter(QObject* watched, QEvent* event)
{
    const QString reason = event->type() == QEvent::Close ? m_scene.reasonToStay() : QString();
    if (reason.isEmpty()) {
        return QObject::eventFilter(watched, event);
    }
    event->ignore();
    ask("close", reason);
    return true;
}

void CloseGuard::ask(const char* deed, const QString& reason)
{
    QMetaObject::invokeMethod(&m_scene.root(), "askToLeave", Q_ARG(QVariant, QLatin1String(deed)),
                              Q_ARG(QVariant, reason));
}

void CloseGuard::tellAnew()
{
    if (m_scene.root().property("asksToLeave").toBool()) {
        const QString reason = m_scene.reasonToStay();
        m_scene.root().setProperty("reasonToStay", reason.isEmpty() ? m_scene.nothingStaysOn() : reason);
    }
}
