#include "scene.h"

#include "page_panel.h"
#include "qml_types.h"
#include "texts.h"

#include <QQmlComponent>

Scene::~Scene() = default;

PagePanel& Scene::panel()
{
    return *m_root->findChild<PagePanel*>();
}

void Scene::load(const QString& file, QVariantMap properties, WindowOptions::Theme theme)
{
    initializeGuiResources();
    registerQmlTypes();
    if (theme != WindowOptions::Theme::System) {
        properties.insert(QStringLiteral("theme"), theme == WindowOptions::Theme::Dark
                                                       ? QStringLiteral("dark")
                                                       : QStringLiteral("light"));
    }
    const QUrl url(QStringLiteral("qrc:/applications/AppVantor/window/qml/") + file);
    QQmlComponent component(&m_engine, url);
    m_root.reset(qobject_cast<QQuickItem*>(component.createWithInitialProperties(properties)));
    if (!m_root) {
        qFatal("%s", qPrintable(component.errorString())); // part of the program: cannot be missing
    }
}

void Scene::unload()
{
    m_root.reset();
}
