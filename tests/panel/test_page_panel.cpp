#include "panel_fixture.h"
#include "warning_guard.h"

#include <window/page_source.h>
#include <window/qml_types.h>
#include <window/texts.h>

#include <plugin_management/d_abstract_plugin.h>
#include <plugin_management/i_plugin.h>

#include <QElapsedTimer>
#include <QQmlComponent>
#include <QResource>
#include <QtTest>

namespace {

const QString c_root = QStringLiteral("maintenance_panel_tool_gpio");
const QString c_led = QStringLiteral(".idIndicator.idDigitalInput");

/// A plugin without commands that carries the page of whoever owns its uuid, if any.
class OtherPlugin : public DAbstractPlugin
{
public:
    explicit OtherPlugin(const QUuid& uuid)
        : DAbstractPlugin(uuid, QStringLiteral("Other"), IPlugin::CeTpTool, 0, QUuid(), nullptr, false)
    {}

    void initPluginCommands() override {}
    IPlugin* createInstance(const QUuid& objectUuid) const override
    {
        Q_UNUSED(objectUuid)
        return new OtherPlugin(pluginUuid());
    }
    const char* pluginSubTypeName() const override { return "other"; }
};

QVariantList manyChannels(int count)
{
    QVariantList channels;
    for (int number = 0; number < count; ++number) {
        const bool output = number % 2 == 0;
        channels.append(
            channelEntry(QStringLiteral("C%1").arg(number),
                         output ? QStringLiteral("digitalInput") : QStringLiteral("digitalOutput"),
                         output ? QStringLiteral("out") : QStringLiteral("in"),
                         output ? QStringLiteral("dout") : QStringLiteral("din")));
    }
    return channels;
}

QString evaluated(QQmlEngine& engine, const QByteArray& expression)
{
    QQmlComponent component(&engine);
    component.setData("import QtQuick 2.15\nimport PlgLibToolGpio 1.0\nQtObject { property string result: " +
                          expression + " }",
                      QUrl());
    const std::unique_ptr<QObject> object(component.create());
    return object ? object->property("result").toString() : component.errorString();
}

} // namespace

/// How a tool's page comes onto the screen, and what is told when it does not.
class PagePanelTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_guard = std::make_unique<WarningGuard>(); }

    void cleanup()
    {
        const QString messages = WarningGuard::takeMessages();
        m_guard.reset();
        QVERIFY2(messages.isEmpty(), qPrintable(messages));
    }

    void placeholdersAreReplacedWhereverTheyStand()
    {
        QCOMPARE(filledPage("{OBJECT_NAME} {OBJECT_ID} {OBJECT_NAME} {other} {", QStringLiteral("tool"),
                            QStringLiteral("id")),
                 QByteArray("tool id tool {other} {"));
    }

    void aNameThatHoldsAPlaceholderStaysAsItIs()
    {
        QCOMPARE(filledPage("{OBJECT_NAME}", QStringLiteral("{OBJECT_ID}"), QStringLiteral("id")),
                 QByteArray("{OBJECT_ID}"));
    }

    void anyNameReachesThePage_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("quotes") << QStringLiteral("the \"best\" tool's");
        QTest::newRow("backslash") << QStringLiteral("C:\\tools\\n");
        QTest::newRow("line break") << QStringLiteral("two\nlines\r\tand a tab");
        QTest::newRow("line separator") << QStringLiteral("one\u2028two\u2029three");
        QTest::newRow("accents") << QStringLiteral("Façade électrique 前面板 \U0001F50C");
        QTest::newRow("code") << QStringLiteral(
            "\"; Component.onCompleted: Qt.quit(); property string x: \"");
        QTest::newRow("placeholder") << QStringLiteral("{OBJECT_ID}");
        QTest::newRow("markup") << QStringLiteral("<b>bold</b>&amp;");
    }

    void anyNameReachesThePage()
    {
        QFETCH(QString, name);
        PanelFixture fixture(toolEntry({}, name));
        QVERIFY2(fixture.page() != nullptr, qPrintable(fixture.panel().problem()));
        QCOMPARE(fixture.page()->property("name").toString(), name);
        QTRY_VERIFY(fixture.page()->property("connected").toBool());
    }

    void aToolWithoutPublicChannelsSaysSo()
    {
        PanelFixture fixture(toolEntry(
            {channelEntry(QStringLiteral("SECRET"), QStringLiteral("digitalInput"), QStringLiteral("out"),
                          QStringLiteral("dout"), QStringLiteral("private"))}));
        QQuickItem* notice = itemNamed(fixture.page(), QStringLiteral("panelNotice"));
        QTRY_VERIFY(notice->property("text").toString().startsWith(
            QLatin1String("This tool has no public channels.")));
        QVERIFY(notice->isVisible());
    }

    void aPluginWithoutAPageIsNamed()
    {
        PanelFixture fixture(toolEntry({}));
        const OtherPlugin other(QUuid::createUuid());
        DTool tool(toolEntry({}), other, &fixture.board());
        fixture.panel().setTool(&tool);
        QVERIFY(fixture.page() == nullptr);
        QCOMPARE(fixture.panel().problem(), QStringLiteral("The plugin \"Other\" has no maintenance page."));
        fixture.panel().setTool(nullptr);
    }

    void thePageOfAPluginWithErrorsIsNotShown_data()
    {
        QTest::addColumn<QString>("uuid");
        QTest::addColumn<QString>("problem");
        QTest::newRow("not QML") << QStringLiteral("{11111111-0000-4000-8000-000000000000}")
                                 << QStringLiteral("maintenance_panel.qml:1");
        QTest::newRow("unknown type") << QStringLiteral("{22222222-0000-4000-8000-000000000000}")
                                      << QStringLiteral("NoSuchType is not a type");
        QTest::newRow("not an item") << QStringLiteral("{33333333-0000-4000-8000-000000000000}")
                                     << QStringLiteral("its root is not an item");
    }

    void thePageOfAPluginWithErrorsIsNotShown()
    {
        QFETCH(QString, uuid);
        QFETCH(QString, problem);
        PanelFixture fixture(toolEntry({}));
        const OtherPlugin other{QUuid(uuid)};
        DTool tool(toolEntry({}), other, &fixture.board());
        fixture.panel().setTool(&tool);
        QVERIFY(fixture.page() == nullptr);
        QVERIFY(fixture.panel().problem().startsWith(
            QLatin1String("The maintenance page of the plugin \"Other\" has errors:\n")));
        QVERIFY2(fixture.panel().problem().contains(problem), qPrintable(fixture.panel().problem()));
        fixture.panel().setTool(nullptr);
    }

    void aToolThatGoesTakesItsPageAlong()
    {
        PanelFixture fixture(toolEntry({}));
        {
            DTool tool(toolEntry(manyChannels(4), QStringLiteral("passing")), builtPlugin(),
                       &fixture.board());
            fixture.panel().setTool(&tool);
            QVERIFY(fixture.page() != nullptr);
            QVERIFY(fixture.settle());
        }
        QVERIFY(fixture.page() == nullptr);
        QVERIFY(fixture.panel().problem().startsWith(QLatin1String("This tool does not exist.")));
        QVERIFY(fixture.panel().tool() == nullptr);
    }

    void thePagesOfTwoToolsAreTwo()
    {
        PanelFixture fixture(toolEntry(manyChannels(2), QStringLiteral("first")));
        DTool second(
            [] {
                QVariantMap entry = toolEntry(manyChannels(6), QStringLiteral("second"));
                entry.insert(QStringLiteral("id"), QStringLiteral("{4b7a2f10-0000-4000-8000-000000000002}"));
                return entry;
            }(),
            builtPlugin(), &fixture.board());
        QVERIFY(fixture.settle());
        QCOMPARE(itemsNamed(fixture.page(), QStringLiteral("idChannelRow")).size(), 2);
        fixture.panel().setTool(&second);
        QTRY_COMPARE(itemsNamed(fixture.page(), QStringLiteral("idChannelRow")).size(), 6);
        QCOMPARE(fixture.page()->property("name").toString(), QStringLiteral("second"));
        fixture.panel().setTool(nullptr);
    }

    void theTextsSpeakTheLanguage_data()
    {
        QTest::addColumn<QLocale>("locale");
        QTest::addColumn<QString>("inputs");
        QTest::addColumn<QString>("outputs");
        QTest::newRow("English") << QLocale(QLocale::English) << QStringLiteral("Inputs")
                                 << QStringLiteral("Outputs");
        QTest::newRow("French") << QLocale(QLocale::French, QLocale::Canada) << QStringLiteral("Entrées")
                                << QStringLiteral("Sorties");
        QTest::newRow("a language without texts")
            << QLocale(QLocale::Japanese) << QStringLiteral("Inputs") << QStringLiteral("Outputs");
    }

    void theTextsSpeakTheLanguage()
    {
        QFETCH(QLocale, locale);
        QFETCH(QString, inputs);
        QFETCH(QString, outputs);
        PanelFixture fixture(toolEntry({}));
        installTexts(locale);
        fixture.panel().setTool(nullptr);
        fixture.panel().setTool(&fixture.tool());
        const QString columns = c_root + QStringLiteral(".idColumn.idColumnsRow");
        const auto title = [&](const char* column) {
            return itemNamed(fixture.page(), columns + QLatin1String(column))
                ->childItems()
                .constFirst()
                ->property("text")
                .toString();
        };
        QCOMPARE(title(".idInputsColumn"), inputs);
        QCOMPARE(title(".idOutputsColumn"), outputs);
    }

    void theTypesServeAfterSeveralInstances()
    {
        std::vector<std::unique_ptr<IPlugin>> instances;
        for (int number = 0; number < 5; ++number) {
            instances.emplace_back(builtPlugin().createInstance(QUuid::createUuid()));
        }
        QQmlEngine engine;
        QCOMPARE(evaluated(engine,
                           "[DGpioChannel.CeCtUnknown, DGpioChannel.CeCtAnaIn, DGpioChannel.CeCtAnaOut, "
                           "DGpioChannel.CeCtBinIn, DGpioChannel.CeCtBinOut].join()"),
                 QStringLiteral("0,1,2,3,4"));
        instances.clear();
        PanelFixture fixture(toolEntry(manyChannels(3)));
        QVERIFY(fixture.settle());
        QCOMPARE(itemsNamed(fixture.page(), QStringLiteral("idChannelRow")).size(), 3);
    }

    void theGarbageCollectorLeavesTheChannelsAlone()
    {
        PanelFixture fixture(toolEntry(manyChannels(8)));
        fixture.engine().collectGarbage();
        QVERIFY(fixture.settle());
        fixture.engine().collectGarbage();
        QVector<QPointer<QObject>> channels;
        for (QQuickItem* row : itemsNamed(fixture.page(), QStringLiteral("idChannelRow"))) {
            channels.append(row->property("currentChannel").value<QObject*>());
        }
        QCOMPARE(channels.size(), 8);
        for (const int level : {1, 0}) {
            fixture.board().setInput(1, level);
            fixture.panel().refresh();
            fixture.engine().collectGarbage();
            QVERIFY(fixture.settle());
            fixture.engine().collectGarbage();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            QCOMPARE(fixture.part(QStringLiteral("C1"), c_led)->property("lit").toBool(), level == 1);
        }
        for (const QPointer<QObject>& channel : qAsConst(channels)) {
            QVERIFY(!channel.isNull());
        }
    }

    void aThousandChannelsAreShownAndRefreshed()
    {
        QElapsedTimer timer;
        timer.start();
        PanelFixture fixture(toolEntry(manyChannels(1000)));
        fixture.setLive(false);
        QVERIFY(fixture.settle());
        QCOMPARE(itemsNamed(fixture.page(), QStringLiteral("idChannelRow")).size(), 1000);
        const qint64 loadedMs = timer.restart();
        fixture.board().setInput(1, 1);
        fixture.panel().refresh();
        QVERIFY(fixture.settle());
        for (const QString& channel : {QStringLiteral("C1"), QStringLiteral("C999")}) {
            QVERIFY(fixture.part(channel, c_led)->property("lit").toBool());
        }
        qInfo("1000 channels: shown in %lld ms, refreshed in %lld ms", loadedMs, timer.elapsed());
    }

private:
    std::unique_ptr<WarningGuard> m_guard;
};

QTEST_MAIN(PagePanelTest)

#include "test_page_panel.moc"
