#pragma once

#include "window_options.h"

#include <QQmlEngine>
#include <QQuickItem>

#include <memory>

class PagePanel;

/// What a window shows: a root item with a panel somewhere in it, in an engine of its own.
class Scene
{
public:
    virtual ~Scene();
    Q_DISABLE_COPY(Scene)

    QQmlEngine& engine() { return m_engine; }
    /// The root item; it takes the size of its window.
    QQuickItem& root() { return *m_root; }
    /// The panel with the plugin's page.
    PagePanel& panel();

protected:
    Scene() = default;

    /// Makes the root item from a file of the window's QML folder.
    void load(const QString& file, QVariantMap properties, WindowOptions::Theme theme);
    /// Takes the root item away; what it shows may go then.
    void unload();

private:
    QQmlEngine m_engine;
    std::unique_ptr<QQuickItem> m_root;
};
