#include "panel_fixture.h"

#include <window/qml_types.h>
#include <window/texts.h>

#include <plugin_management/d_plugin_loader.h>
#include <plugin_management/i_plugin.h>

#include <QDeadlineTimer>
#include <QQmlAbstractUrlInterceptor>
#include <QQmlComponent>
#include <QQmlExpression>
#include <QTimer>
#include <QtTest>

namespace {

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

BareHost bareHost;

} // namespace

bool isBareHost()
{
    return qgetenv("PANEL_HOST") == "bare";
}

IPlugin& builtPlugin()
{
    static const DPluginLoader loader(QStringLiteral(PLUGIN_FILE));
    if (loader.prototype() == nullptr) {
        qFatal("%s", qPrintable(loader.error()));
    }
    return *loader.prototype();
}

QVariantMap toolEntry(const QVariantList& channels, const QString& name)
{
    return {
        {"name"_s, name},
        {"id"_s, "{4b7a2f10-0000-4000-8000-000000000001}"_s},
        {"channels"_s, channels},
    };
}

SimulatedBoardSetup smallBoard()
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

QVector<QQuickItem*> itemsNamed(QQuickItem* root, const QString& name)
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

QQuickItem* itemNamed(QQuickItem* root, const QString& name)
{
    return itemsNamed(root, name).value(0);
}

void PanelFixture::click(QQuickItem* item)
{
    const QPointF middle = item->mapToScene(QPointF(item->width() / 2, item->height() / 2));
    QTest::mouseClick(item->window(), Qt::LeftButton, Qt::NoModifier, middle.toPoint());
}

bool waitUntil(const std::function<bool()>& condition)
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

PanelFixture::PanelFixture(const QVariantMap& tool, const SimulatedBoardSetup& setup)
    : m_board(makeSimulatedBoard(setup, &m_scheduler, DevicePlace::SameThread))
    , m_tool(std::make_unique<DTool>(tool, builtPlugin(), m_board.get()))
{
    m_board->open();
    show(m_tool.get());
}

PanelFixture::PanelFixture(DTool& tool)
{
    show(&tool);
}

void PanelFixture::show(DTool* tool)
{
    initializeGuiResources();
    registerQmlTypes();
    installTexts(QLocale(QLocale::English));
    if (isBareHost()) {
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

DAbstractPluginBackend* PanelFixture::backend()
{
    return page()->findChild<DAbstractPluginBackend*>();
}

QQuickItem* PanelFixture::row(const QString& channelId)
{
    for (QQuickItem* row : itemsNamed(page(), "idChannelRow"_s)) {
        auto* channel = row->property("currentChannel").value<QObject*>();
        if (channel != nullptr && channel->property("id") == channelId) {
            return row;
        }
    }
    return nullptr;
}

QQuickItem* PanelFixture::part(const QString& channelId, const QString& name)
{
    QQuickItem* found = row(channelId);
    return found != nullptr ? itemNamed(found, "idChannelRow"_s + name) : nullptr;
}

QVariant PanelFixture::style(const char* expression)
{
    return QQmlExpression(qmlContext(page()), page(), "Style."_s + QLatin1String(expression)).evaluate();
}

void PanelFixture::setLive(bool live)
{
    if (!isBareHost()) {
        page()->setProperty("live", live);
    }
}

bool PanelFixture::settle()
{
    return waitUntil([this] { return !m_panel->isBusy(); });
}

void QuietTest::init()
{
    m_log.emplace();
    setUp();
}

void QuietTest::cleanup()
{
    tearDown();
    m_fixture.reset();
    QCOMPARE(m_log->takeProblems(), QString());
}

void QuietTest::showChannels(const QVariantList& channels)
{
    m_fixture.reset(); // one tool of a name at a time
    m_fixture = std::make_unique<PanelFixture>(toolEntry(channels));
    QVERIFY2(m_fixture->page() != nullptr, qPrintable(m_fixture->panel().problem()));
    QVERIFY(m_fixture->settle());
    m_fixture->setLive(false);
    QVERIFY(m_fixture->settle());
    QVERIFY(QTest::qWaitForWindowActive(&m_fixture->window()));
}
