#pragma once

#include "close_guard.h"
#include "configuration_choice.h"
#include "scene.h"
#include "script_run.h"
#include "window_memory.h"

#include <QQuickWindow>

/// Gives window the size that options asks for.
void fitWindow(QQuickWindow& window, const WindowOptions& options);

/// The bench window on the screen. It shows one bench after the other, as the user opens configurations, each
/// arranged as it was left.
class BenchWindow : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(BenchWindow)

public:
    /// Of the bench that source has in operation; source must outlive the window.
    BenchWindow(BenchSource* source, const WindowOptions& options);
    /// Remembers what the window looks like.
    ~BenchWindow() override;

    /// Opens the window as it was left: where it filled the screen, it does so again.
    void show();

    QQuickWindow& window() { return m_window; }
    BenchScene& scene() { return *m_scene; }

Q_SIGNALS:
    /// The user closes the window, though something runs.
    void closeConfirmed();

private:
    WindowMemory memory() const;
    void showBench(const QVariantMap& remembered);
    void leaveBench();
    void exchange();

    BenchSource* const m_source;
    const WindowOptions m_options;
    QString m_configuration;
    QString m_rig;    ///< whose bench it is; empty for a configuration's
    QRect m_geometry; ///< when it is not maximised
    QQuickWindow m_window;
    std::unique_ptr<ConfigurationChoice> m_choice;
    std::unique_ptr<ScriptRun> m_script;
    std::unique_ptr<BenchScene> m_scene;
    std::unique_ptr<CloseGuard> m_guard;
};
