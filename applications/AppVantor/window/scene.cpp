#include "scene.h"

#include "configuration_choice.h"
#include "page_panel.h"
#include "qml_types.h"
#include "script_run.h"
#include "texts.h"

#include <configuration/channel_orders.h>
#include <plugin_management/i_plugin.h>

#include <QCoreApplication>
#include <QQmlComponent>
#include <QQuickWindow>

#include <array>

namespace {

/// What the user arranges of the window's root item.
constexpr std::array<const char*, 9> c_arranged = {
    "wantedToolsWidth", "wantedPageWidth", "wantedCommandWidth", "wantedLowerShare", "toolsFolded",
    "pageFolded",       "lowerFolded",     "rowHeight",          "chosenTheme"};

QVector<DTool*> toolsOf(const Bench& bench)
{
    QVector<DTool*> tools;
    for (const std::unique_ptr<DTool>& tool : bench.tools()) {
        tools.append(tool.get());
    }
    return tools;
}

/// Two numbers, or all four.
QString versionText(unsigned long long version)
{
    const auto number = [version](int place) { return version >> (16 * place) & 0xffff; };
    const QString text = QStringLiteral("%1.%2").arg(number(3)).arg(number(2));
    const bool isShort = number(1) == 0 && number(0) == 0;
    return isShort ? text : text + QStringLiteral(".%1.%2").arg(number(1)).arg(number(0));
}

QString versionsOf(const QVector<DTool*>& tools)
{
    QStringList parts = {QStringLiteral("AppVantor ") + QCoreApplication::applicationVersion(),
                         QStringLiteral("Qt ") + QLatin1String(qVersion())};
    for (const DTool* tool : tools) {
        if (tool->plugin() != nullptr) {
            parts += tool->plugin()->pluginName() + QLatin1Char(' ') +
                     versionText(tool->plugin()->pluginVersion());
        }
    }
    parts.removeDuplicates();
    return parts.join(QStringLiteral(" \u00b7 "));
}

/// So many names that a dialog holds them, for people.
QString someOf(const QStringList& names)
{
    constexpr int most = 10;
    const QString some = names.mid(0, most).join(QStringLiteral(", "));
    return names.size() > most ? qtTrId("close_more", names.size() - most).arg(some) : some;
}

} // namespace

Scene::~Scene() = default;

PagePanel& Scene::panel()
{
    return *m_root->findChild<PagePanel*>();
}

void Scene::putInto(QQuickWindow& window)
{
    m_root->setParentItem(window.contentItem());
    const auto fit = [root = m_root.get(), &window] { root->setSize(window.size()); };
    QObject::connect(&window, &QWindow::widthChanged, m_root.get(), fit);
    QObject::connect(&window, &QWindow::heightChanged, m_root.get(), fit);
    fit();
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

BenchScene::BenchScene(LineDevice* device, const QVector<DTool*>& tools, WindowOptions::Theme theme,
                       ConfigurationChoice* choice, ScriptRun* script)
    : m_clock(device->scheduler())
    , m_tools(tools)
    , m_lines(device, tools, &m_clock)
    , m_courses(&m_lines)
    , m_trigger(&m_lines, &m_courses)
    , m_export(&m_lines, &m_courses, &m_filter)
    , m_recorder(device, {tools.cbegin(), tools.cend()})
    , m_orders(&m_clock)
    , m_orderEvents(&m_orders, &m_clock)
    , m_pageReads(&m_clock)
    , m_form(&m_orders)
    , m_script(script)
{
    m_filter.setSourceModel(&m_lines);
    QObject::connect(device, &DDevice::problemTold, &m_orders,
                     [this](const DWording& problem) { m_orders.addProblem(m_lines.deviceName(), problem); });
    const auto object = [](QObject* part) {
        if (part != nullptr) {
            QQmlEngine::setObjectOwnership(part, QQmlEngine::CppOwnership);
        }
        return QVariant::fromValue(part);
    };
    load(QStringLiteral("BenchWindow.qml"),
         {{QStringLiteral("tools"), object(&m_tools)},
          {QStringLiteral("lines"), object(&m_lines)},
          {QStringLiteral("lineFilter"), object(&m_filter)},
          {QStringLiteral("clock"), object(&m_clock)},
          {QStringLiteral("courses"), object(&m_courses)},
          {QStringLiteral("trigger"), object(&m_trigger)},
          {QStringLiteral("versions"), versionsOf(tools)},
          {QStringLiteral("exporter"), object(&m_export)},
          {QStringLiteral("recorder"), object(&m_recorder)},
          {QStringLiteral("form"), object(&m_form)},
          {QStringLiteral("orders"), object(&m_orders)},
          {QStringLiteral("orderEvents"), object(&m_orderEvents)},
          {QStringLiteral("pageReads"), object(&m_pageReads)},
          {QStringLiteral("choice"), object(choice)},
          {QStringLiteral("script"), object(script)}},
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

BenchScene::BenchScene(const Bench& bench, WindowOptions::Theme theme, ConfigurationChoice* choice,
                       ScriptRun* script)
    : BenchScene(&bench.device(), toolsOf(bench), theme, choice, script)
{}

QVariantMap BenchScene::arrangement() const
{
    QVariantMap values;
    for (const char* name : c_arranged) {
        values.insert(QLatin1String(name), root().property(name));
    }
    values.insert(QStringLiteral("order"), m_filter.order());
    values.insert(QStringLiteral("hidden"), m_filter.hidden());
    values.insert(QStringLiteral("grouped"), m_filter.isGrouped());
    return values;
}

void BenchScene::arrange(const QVariantMap& arrangement)
{
    for (const char* name : c_arranged) {
        QVariant value = arrangement.value(QLatin1String(name));
        if (value.isValid() && value.convert(static_cast<int>(root().property(name).type()))) {
            root().setProperty(name, value);
        }
    }
    if (arrangement.contains(QStringLiteral("order"))) {
        m_filter.arrange(arrangement.value(QStringLiteral("order")).toStringList(),
                         arrangement.value(QStringLiteral("hidden")).toStringList());
        m_filter.setGrouped(arrangement.value(QStringLiteral("grouped")).toBool());
    }
}

/// The lines that the tools drive, by their names.
QSet<QString> BenchScene::drivenLines() const
{
    QSet<QString> lines;
    for (int row = 0; row < m_tools.count(); ++row) {
        const auto* tool = qobject_cast<const DTool*>(m_tools.toolAt(row));
        for (const DToolChannel& channel : tool->channels()) {
            if (drivesLine(channel)) {
                lines.insert(channel.link);
            }
        }
    }
    return lines;
}

QString BenchScene::nothingStaysOn() const
{
    return qtTrId(m_lines.outputsAtEnd() == OutputsAtEnd::Vanish ? "close_simulated" : "close_nothing_on");
}

/// What becomes of the outputs when the bench is left, for people; empty where none is on and none blinks.
QString BenchScene::outputsAtEnd() const
{
    const OutputsAtEnd atEnd = m_lines.outputsAtEnd();
    const QSet<QString> switchedOff = m_offAtEnd ? drivenLines() : QSet<QString>();
    QStringList blinking;
    QStringList stayingOn;
    QStringList goingOff;
    for (int line = 0; line < m_lines.count(); ++line) {
        const QModelIndex index = m_lines.index(line);
        const QString name = index.data(LinesModel::NameRole).toString();
        const bool blinks = index.data(LinesModel::BlinkingRole).toBool();
        const bool isOn =
            index.data(LinesModel::OutputRole).toBool() && index.data(LinesModel::LevelRole).toInt() > 0;
        if (blinks || isOn) {
            (switchedOff.contains(name) ? goingOff : blinks ? blinking : stayingOn).append(name);
        }
    }
    QStringList parts;
    if (atEnd == OutputsAtEnd::Vanish) {
        return blinking.isEmpty() ? QString()
                                  : qtTrId("close_blinking_ends").arg(someOf(blinking)) + QLatin1Char(' ') +
                                        nothingStaysOn();
    }
    if (!blinking.isEmpty()) {
        parts += qtTrId("close_blinking").arg(someOf(blinking));
    }
    if (!stayingOn.isEmpty()) {
        parts += qtTrId("close_stays_on").arg(someOf(stayingOn));
    }
    if (atEnd == OutputsAtEnd::Released && !parts.isEmpty()) {
        parts += qtTrId("close_released");
    }
    if (!goingOff.isEmpty()) {
        parts += qtTrId("close_goes_off").arg(someOf(goingOff));
    }
    return parts.join(QLatin1Char(' '));
}

QString BenchScene::reasonToStay() const
{
    QStringList parts;
    if (m_script != nullptr && m_script->isRunning()) {
        parts += qtTrId("close_script");
    }
    const int running = m_orders.running() + (m_script != nullptr ? m_script->ordersLeft() : 0);
    if (running > 0) {
        parts += qtTrId("close_running", running);
    }
    if (m_recorder.isRecording()) {
        parts += qtTrId("close_recording");
    }
    const QString outputs = outputsAtEnd();
    if (!outputs.isEmpty()) {
        parts += outputs;
    } else if (!parts.isEmpty()) {
        parts += nothingStaysOn();
    }
    return parts.join(QLatin1Char(' '));
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
