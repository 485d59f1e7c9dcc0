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
    if (!component.isReady()) {
        qFatal("%s", qPrintable(component.errorString())); // part of the program: cannot be missing
    }
    m_root.reset(qobject_cast<QQuickItem*>(component.createWithInitialProperties(properties)));
}

void Scene::unload()
{
    m_root.reset();
}

BenchScene::BenchScene(LineDevice* device, const QVector<DTool*>& tools, WindowOptions::Theme theme)
    : m_clock(device->scheduler())
    , m_tools(tools)
    , m_lines(device, tools, &m_clock)
    , m_courses(&m_lines)
    , m_trigger(&m_lines, &m_courses)
    , m_orders(&m_clock)
    , m_orderEvents(&m_orders, &m_clock)
    , m_pageReads(&m_clock)
    , m_form(&m_orders)
{
    m_filter.setSourceModel(&m_lines);
    QObject::connect(device, &DDevice::problemTold, &m_orders, [this, device](const QString& problem) {
        m_orders.addProblem(device->objectName(), problem);
    });
    const auto object = [](QObject* part) {
        QQmlEngine::setObjectOwnership(part, QQmlEngine::CppOwnership);
        return QVariant::fromValue(part);
    };
    load(QStringLiteral("BenchWindow.qml"),
         {{QStringLiteral("tools"), object(&m_tools)},
          {QStringLiteral("lines"), object(&m_lines)},
          {QStringLiteral("lineFilter"), object(&m_filter)},
          {QStringLiteral("clock"), object(&m_clock)},
          {QStringLiteral("courses"), object(&m_courses)},
          {QStringLiteral("trigger"), object(&m_trigger)},
          {QStringLiteral("form"), object(&m_form)},
          {QStringLiteral("orders"), object(&m_orders)},
          {QStringLiteral("orderEvents"), object(&m_orderEvents)},
          {QStringLiteral("pageReads"), object(&m_pageReads)}},
         theme);
    QObject::connect(
        &m_lines, &LinesModel::orderWanted, &m_orders,
        [this](DTool* tool, const Invocation& order) { m_orders.run(tool, order.command, order.arguments); });
    QObject::connect(&panel(), &PagePanel::treatmentEnded, &m_orders,
                     [this](bool asks, const QString& command, const QVariantMap& arguments,
                            const QVariantMap& results, const DFailure& failure) {
                         if (asks) {
                             m_pageReads.add(command, arguments, results, failure);
                         } else {
                             m_orders.addClick(command, arguments, results, failure);
                         }
                     });
}

BenchScene::~BenchScene()
{
    unload();
}

PanelScene::PanelScene(DTool* tool, WindowOptions::Theme theme)
{
    QQmlEngine::setObjectOwnership(tool, QQmlEngine::CppOwnership);
    load(QStringLiteral("PanelWindow.qml"), {{QStringLiteral("tool"), QVariant::fromValue<QObject*>(tool)}},
         theme);
}

PanelScene::~PanelScene()
{
    unload();
}
