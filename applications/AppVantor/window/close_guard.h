#pragma once

#include <QObject>

class BenchScene;
class QWindow;

/// Asks before a bench is left while something runs in it or is on, because its window is closed or because
/// another bench takes its place. What is said then stays true while it is asked.
class CloseGuard : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(CloseGuard)

public:
    /// scene and window must outlive the guard.
    CloseGuard(BenchScene& scene, QWindow* window);

    /// Asks, where something runs, whether another bench may take the place of this one.
    void askToReplace();

    bool eventFilter(QObject* watched, QEvent* event) override;

Q_SIGNALS:
    /// The window may be closed.
    void confirmed();
    /// Another bench may take the place of this one.
    void replacementConfirmed();

private:
    void ask(const char* deed, const QString& reason);
    void tellAnew();

    const BenchScene& m_scene;
};
