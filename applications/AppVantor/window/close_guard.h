#pragma once

#include <QObject>

class BenchScene;
class QWindow;

/// Asks before the window of a bench is closed while something runs in it.
class CloseGuard : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(CloseGuard)

public:
    /// scene and window must outlive the guard.
    CloseGuard(const BenchScene& scene, QWindow* window);

    bool eventFilter(QObject* watched, QEvent* event) override;

Q_SIGNALS:
    /// The window may be closed.
    void confirmed();

private:
    const BenchScene& m_scene;
};
