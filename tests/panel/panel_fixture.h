#pragma once

#include "channel_entry.h"
#include "literals.h"
#include "message_log.h"
#include "rows.h"

#include <window/page_panel.h>

#include <devices/simulated_board.h>
#include <plugin_management/d_abstract_plugin_backend.h>
#include <plugin_management/d_scheduler.h>
#include <plugin_management/d_tool.h>

#include <QQmlEngine>
#include <QQuickWindow>

#include <functional>
#include <memory>
#include <optional>

class IPlugin;

/// Prototype of the plugin as it was built, loaded as an application loads it.
IPlugin& builtPlugin();

/// A tool's configuration.
QVariantMap toolEntry(const QVariantList& channels, const QString& name = "Tool under test"_s);

/// A board with an output and an input line for each kind: "dout", "din", "aout", "ain".
SimulatedBoardSetup smallBoard();

/// The first item below root with this object name; null when there is none.
QQuickItem* itemNamed(QQuickItem* root, const QString& name);
/// All items below root with this object name, in the order of the tree.
QVector<QQuickItem*> itemsNamed(QQuickItem* root, const QString& name);

/// True when PANEL_HOST is "bare" in the environment: pages then find not the bench's frame, widgets and
/// style but those of a host that has nothing more than a page may ask of it.
bool isBareHost();

/// Runs the event loop until condition holds. False when that takes too long.
bool waitUntil(const std::function<bool()>& condition);

/// A tool on a simulated board with its page in a window.
class PanelFixture
{
public:
    explicit PanelFixture(const QVariantMap& tool, const SimulatedBoardSetup& setup = smallBoard());
    /// The page of somebody else's tool, on whatever device; the tool must outlive this.
    explicit PanelFixture(DTool& tool);

    LineDevice& board() { return *m_board; }
    DTool& tool() { return *m_tool; }
    QQmlEngine& engine() { return m_engine; }
    QQuickWindow& window() { return m_window; }
    PagePanel& panel() { return *m_panel; }
    QQuickItem* page() { return m_panel->page(); }
    DAbstractPluginBackend* backend();
    /// The row of the page that shows the channel id; null when there is none.
    QQuickItem* row(const QString& channelId);
    /// A part of that row: ".idIndicator.idDigitalOutput", for example.
    QQuickItem* part(const QString& channelId, const QString& name);

    /// A member of the Style that the page finds; or what another expression with "Style." before it gives.
    QVariant style(const char* expression);

    /// Switches the periodical refresh of the bench's frame on or off.
    void setLive(bool live);
    /// Waits until the page has what it has asked for. False when it takes too long.
    bool settle();
    /// Clicks the middle of item with the left mouse button.
    static void click(QQuickItem* item);

private:
    void show(DTool* tool);

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
    void init();
    void cleanup();

protected:
    /// What a test needs, and what it leaves.
    virtual void setUp() {}
    virtual void tearDown() {}
    /// Shows the page of a tool with these channels, at rest, as the fixture of the test.
    void showChannels(const QVariantList& channels);

    std::optional<MessageLog> m_log;
    std::unique_ptr<PanelFixture> m_fixture;
};
