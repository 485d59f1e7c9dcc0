#pragma once

#include "channel_entry.h"
#include "literals.h"
#include "message_log.h"
#include "rows.h"

#include <devices/simulated_board.h>
#include <plugin_management/d_abstract_plugin_backend.h>
#include <plugin_management/d_plugin_loader.h>
#include <plugin_management/d_scheduler.h>
#include <plugin_management/d_tool.h>
#include <plugin_management/i_plugin.h>
#include <window/page_panel.h>
#include <window/qml_types.h>
#include <window/texts.h>

#include <QDeadlineTimer>
#include <QQmlAbstractUrlInterceptor>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQmlExpression>
#include <QQuickWindow>
#include <QTimer>
#include <QtTest>

#include <functional>
#include <memory>
#include <optional>

/// Prototype of the plugin as it was built, loaded as an application loads it.
inline IPlugin& builtPlugin()
{
    static const DPluginLoader loader(QStringLiteral(PLUGIN_FILE));
    if (loader.prototype() == nullptr) {
        qFatal("%s", qPrintable(loader.error().english()));
    }
    return *loader.prototype();
}

/// A tool's configuration.
inline QVariantMap toolEntry(const QVariantList& channels, const QString& name = "Tool under test"_s)
{
    return {
        {"name"_s, name},
        {"id"_s, "{4b7a2f10-0000-4000-8000-000000000001}"_s},
        {"channels"_s, channels},
    };
}

/// A board with an output and an input line for each kind: "dout", "din", "aout", "ain".
inline SimulatedBoardSetup smallBoard()
{
    const auto line = [](const QString& name, DLine::Kind kind, DLine::Direction direction) {
        SimulatedBoardSetup::Line made;
        made.line = {name, kind, direction};
        return made;
    };
    SimulatedBoardSetup setup;
    setup.lines = {
        line("dout"_s, DLine::Kind::Digital, DLine::Direction::Out),
        line("din"_s, DLine::Kind::Digital, DLine::Direction::In),
        line("aout"_s, DLine::Kind::Analog, DLine::Direction::Out),
        line("ain"_s, DLine::Kind::Analog, DLine::Direction::In),
    };
    return setup;
}

/// All items below root with this object name, in the order of the tree.
inline QVector<QQuickItem*> itemsNamed(QQuickItem* root, const QString& name)
{
    QVector<QQuickItem*> found;
    if (root->objectName() == name) {
        found.append(root);
    }
    for (QQuickItem* child : root->childItems()) {
        found += itemsNamed(child, name);
    }
    return found;
}

/// The first item below root with this object name; null when there is none.
inline QQuickItem* itemNamed(QQuickItem* root, const QString& name)
{
    return itemsNamed(root, name).value(0);
}

/// True when PANEL_HOST is "bare" in the environment: pages then find not the bench's frame, widgets and
/// style but those of a host that has nothing more than a page may ask of it.
inline bool isBareHost()
{
    return qgetenv("PANEL_HOST") == "bare";
}

/// Runs the event loop until condition holds. False when that takes too long.
inline bool waitUntil(const std::function<bool()>& condition)
{
    const QDeadlineTimer deadline(20000);
    QTimer wakeUp; // should nothing else happen
    wakeUp.start(10);
    QCoreApplication::processEvents();
    while (!condition() && !deadline.hasExpired()) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return condition();
}

/// Leads whatever looks for the bench's frame and widgets to those of the bare host.
class BareHost : public QQmlAbstractUrlInterceptor
{
public:
    QUrl intercept(const QUrl& url, DataType type) override
    {
        Q_UNUSED(type)
        const QString gui = "qrc:/applications/AppVantor/gui/"_s;
        const QString text = url.toString();
        return text.startsWith(gui)
                   ? QUrl::fromLocalFile(QStringLiteral(BARE_HOST_DIR "/gui/") + text.mid(gui.size()))
                   : url;
    }
};

/// A tool on a simulated board with its page in a window.
class PanelFixture
{
public:
    explicit PanelFixture(const QVariantMap& tool, const SimulatedBoardSetup& setup = smallBoard())
        : m_board(makeSimulatedBoard(setup, &m_scheduler, DevicePlace::SameThread))
        , m_tool(std::make_unique<DTool>(tool, builtPlugin(), m_board.get()))
    {
        m_board->open();
        show(m_tool.get());
    }

    /// The page of somebody else's tool, on whatever device; the tool must outlive this.
    explicit PanelFixture(DTool& tool) { show(&tool); }

    LineDevice& board() { return *m_board; }
    DTool& tool() { return *m_tool; }
    QQmlEngine& engine() { return m_engine; }
    QQuickWindow& window() { return m_window; }
    PagePanel& panel() { return *m_panel; }
    QQuickItem* page() { return m_panel->page(); }
    DAbstractPluginBackend* backend() { return page()->findChild<DAbstractPluginBackend*>(); }
    /// The row of the page that shows the channel id; null when there is none.
    QQuickItem* row(const QString& channelId)
    {
        for (QQuickItem* row : itemsNamed(page(), "idChannelRow"_s)) {
            auto* channel = row->property("currentChannel").value<QObject*>();
            if (channel != nullptr && channel->property("id") == channelId) {
                return row;
            }
        }
        return nullptr;
    }

    /// A part of that row: ".idIndicator.idDigitalOutput", for example.
    QQuickItem* part(const QString& channelId, const QString& name)
    {
        QQuickItem* found = row(channelId);
        return found != nullptr ? itemNamed(found, "idChannelRow"_s + name) : nullptr;
    }

    /// A member of the Style that the page finds; or what another expression with "Style." before it gives.
    QVariant style(const char* expression)
    {
        return QQmlExpression(qmlContext(page()), page(), "Style."_s + QLatin1String(expression)).evaluate();
    }

    /// Switches the periodical refresh of the bench's frame on or off.
    void setLive(bool live)
    {
        if (!isBareHost()) {
            page()->setProperty("live", live);
        }
    }

    /// Waits until the page has what it has asked for. False when it takes too long.
    bool settle()
    {
        return waitUntil([this] { return !m_panel->isBusy(); });
    }
    /// Clicks the middle of item with the left mouse button.
    static void click(QQuickItem* item)
    {
        const QPointF middle = item->mapToScene(QPointF(item->width() / 2, item->height() / 2));
        QTest::mouseClick(item->window(), Qt::LeftButton, Qt::NoModifier, middle.toPoint());
    }

private:
    void show(DTool* tool)
    {
        initializeGuiResources();
        registerQmlTypes();
        installTexts(QLocale(QLocale::English));
        if (isBareHost()) {
            static BareHost bareHost;
            m_engine.setUrlInterceptor(&bareHost);
        }
        m_window.resize(720, 480);
        QQmlComponent component(&m_engine);
        component.setData("import AppVantor 1.0\nPagePanel {}", QUrl());
        m_panel.reset(qobject_cast<PagePanel*>(component.create()));
        m_panel->setParentItem(m_window.contentItem());
        m_panel->setSize(m_window.size());
        m_panel->setTool(tool);
        m_window.show();
        m_window.requestActivate();
    }

    DSteadyScheduler m_scheduler;
    std::unique_ptr<LineDevice> m_board;
    std::unique_ptr<DTool> m_tool;
    QQmlEngine m_engine;
    QQuickWindow m_window;
    std::unique_ptr<PagePanel> m_panel;
};

/// The base of tests of which nothing may be complained in Qt's log. A test that takes the complaints is not
/// blamed for them.
class QuietTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_log.emplace();
        setUp();
    }

    void cleanup()
    {
        tearDown();
        m_fixture.reset();
        QCOMPARE(m_log->takeProblems(), QString());
    }

protected:
    /// What a test needs, and what it leaves.
    virtual void setUp() {}
    virtual void tearDown() {}
    /// Shows the page of a tool with these channels, at rest, as the fixture of the test.
    void showChannels(const QVariantList& channels)
    {
        m_fixture.reset(); // one tool of a name at a time
        m_fixture = std::make_unique<PanelFixture>(toolEntry(channels));
        QVERIFY2(m_fixture->page() != nullptr, qPrintable(m_fixture->panel().problem()));
        QVERIFY(m_fixture->settle());
        m_fixture->setLive(false);
        QVERIFY(m_fixture->settle());
        QVERIFY(QTest::qWaitForWindowActive(&m_fixture->window()));
    }

    std::optional<MessageLog> m_log;
    std::unique_ptr<PanelFixture> m_fixture;
};
