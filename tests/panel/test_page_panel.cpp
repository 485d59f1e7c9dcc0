#include "panel_fixture.h"

#include <window/gradual_rows.h>
#include <window/page_source.h>
#include <window/qml_types.h>
#include <window/rows_in_view.h>
#include <window/texts.h>

#include <plugin_management/d_abstract_plugin.h>
#include <plugin_management/i_plugin.h>

#include <QQmlComponent>

/// How a tool's page comes onto the screen, and what is told when it does not.
class TestPagePanel : public QuietTest
{
    Q_OBJECT

    static inline const QString c_root = "maintenance_panel_tool_gpio"_s;
    static inline const QString c_led = ".idIndicator.idDigitalInput"_s;

    /// A plugin without commands that carries the page of whoever owns its uuid, if any.
    class OtherPlugin : public DAbstractPlugin
    {
    public:
        explicit OtherPlugin(const QUuid& uuid)
            : DAbstractPlugin(uuid, "Other"_s, IPlugin::CeTpTool, 0, QUuid(), nullptr, false)
        {}

        void initPluginCommands() override {}
        IPlugin* createInstance(const QUuid& objectUuid) const override
        {
            Q_UNUSED(objectUuid)
            return new OtherPlugin(pluginUuid());
        }
        const char* pluginSubTypeName() const override { return "other"; }
    };

    static QVariantList manyChannels(int count)
    {
        QVariantList channels;
        for (int number = 0; number < count; ++number) {
            const bool output = number % 2 == 0;
            channels.append(channelEntry("C%1"_s.arg(number), output ? "digitalInput"_s : "digitalOutput"_s,
                                         output ? "out"_s : "in"_s, output ? "dout"_s : "din"_s));
        }
        return channels;
    }

    static QString evaluated(QQmlEngine& engine, const QByteArray& expression)
    {
        QQmlComponent component(&engine);
        component.setData(
            "import QtQuick 2.15\nimport PlgLibToolGpio 1.0\nQtObject { property string result: " +
                expression + " }",
            QUrl());
        const std::unique_ptr<QObject> object(component.create());
        return object ? object->property("result").toString() : component.errorString();
    }

    /// Scrolls the page to a share of its way; one that does not scroll shows all.
    static void scrollTo(PanelFixture& fixture, double share)
    {
        QQuickItem* view = itemNamed(fixture.page(), "panelFlickable"_s);
        if (view != nullptr) {
            const double way = view->property("contentHeight").toDouble() - view->height();
            view->setProperty("contentY", share * way);
        }
    }

    /// Whether a row of inputs is there, so far below the upper edge of the view.
    static bool showsRowAt(PanelFixture& fixture, double y)
    {
        const QQuickItem* view = itemNamed(fixture.page(), "panelFlickable"_s);
        const QVector<QQuickItem*> rows = itemsNamed(fixture.page(), "idChannelRow"_s);
        return std::any_of(rows.cbegin(), rows.cend(), [&](const QQuickItem* row) {
            return row->mapRectToItem(view, row->boundingRect()).contains(QPointF(row->width() / 2, y)) ||
                   row->mapRectToItem(view, row->boundingRect())
                       .contains(QPointF(row->width() / 2, y + row->height() / 2));
        });
    }

private Q_SLOTS:
    void placeholdersAreReplacedWhereverTheyStand()
    {
        QCOMPARE(filledPage("{OBJECT_NAME} {OBJECT_ID} {OBJECT_NAME} {other} {", "tool"_s, "id"_s),
                 QByteArray("tool id tool {other} {"));
    }

    void anyNameReachesThePage_data()
    {
        const Rows<QString> row("name");
        row("quotes", "the \"best\" tool's");
        row("backslash", "C:\\tools\\n");
        row("line break", "two\nlines\r\tand a tab");
        row("line separator", "one\u2028two\u2029three");
        row("accents", "Façade électrique 前面板 \U0001F50C");
        row("code", "\"; Component.onCompleted: Qt.quit(); property string x: \"");
        row("placeholder", "{OBJECT_ID}");
        row("markup", "<b>bold</b>&amp;");
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
        PanelFixture fixture(
            toolEntry({channelEntry("SECRET"_s, "digitalInput"_s, "out"_s, "dout"_s, "private"_s)}));
        QQuickItem* notice = itemNamed(fixture.page(), "panelNotice"_s);
        QTRY_VERIFY(notice->property("text").toString().startsWith(
            QLatin1String("This tool has no public channels.")));
        QVERIFY(notice->isVisible());
    }

    void thePageOfAPluginWithErrorsIsNotShown_data()
    {
        const Rows<QString, QString> row("uuid", "problem");
        const QString errors = "The maintenance page of the plugin \"Other\" has errors:\n*"_s;
        row("no page", "{00000000-0000-4000-8000-000000000000}",
            "The plugin \"Other\" has no maintenance page.");
        row("not QML", "{11111111-0000-4000-8000-000000000000}", errors + "maintenance_panel.qml:1*"_s);
        row("unknown type", "{22222222-0000-4000-8000-000000000000}", errors + "NoSuchType is not a type*"_s);
        row("not an item", "{33333333-0000-4000-8000-000000000000}", errors + "its root is not an item*"_s);
    }
    void thePageOfAPluginWithErrorsIsNotShown()
    {
        const auto [uuid, problem] = Rows<QString, QString>::values();
        PanelFixture fixture(toolEntry({}));
        const OtherPlugin other{QUuid(uuid)};
        DTool tool(toolEntry({}), other, &fixture.board());
        fixture.panel().setTool(&tool);
        QVERIFY(fixture.page() == nullptr);
        const QRegularExpression expected(
            QRegularExpression::anchoredPattern(QRegularExpression::escape(problem).replace("\\*"_s, ".*"_s)),
            QRegularExpression::DotMatchesEverythingOption);
        QVERIFY2(expected.match(fixture.panel().problem()).hasMatch(), qPrintable(fixture.panel().problem()));
        fixture.panel().setTool(nullptr);
    }

    void aToolThatGoesTakesItsPageAlong()
    {
        PanelFixture fixture(toolEntry({}));
        {
            DTool tool(toolEntry(manyChannels(4), "passing"_s), builtPlugin(), &fixture.board());
            fixture.panel().setTool(&tool);
            QVERIFY(fixture.page() != nullptr);
            QVERIFY(fixture.settle());
        }
        QVERIFY(fixture.page() == nullptr);
        QVERIFY(fixture.panel().problem().startsWith(QLatin1String("This tool does not exist.")));
        QVERIFY(fixture.panel().tool() == nullptr);
    }

    void aPageHasItsValuesOnlyWhenTheDeviceIsThere()
    {
        DSteadyScheduler scheduler;
        const auto board = makeSimulatedBoard(smallBoard(), &scheduler, DevicePlace::OwnThread);
        board->open();
        DTool tool(toolEntry(manyChannels(2)), builtPlugin(), board.get());
        PanelFixture fixture(tool);
        QVERIFY(fixture.page() != nullptr);
        QCOMPARE(board->state(), DDevice::State::Connecting);
        QVERIFY(!fixture.panel().hasValues());
        QVERIFY(waitUntil([&] { return fixture.panel().hasValues(); }));
        QVERIFY(board->isConnected());
        board->setPluggedIn(false);
        QVERIFY(waitUntil([&] { return board->state() == DDevice::State::Unreachable; }));
        QVERIFY(fixture.panel().hasValues());
    }

    void thePagesOfTwoToolsAreTwo()
    {
        PanelFixture fixture(toolEntry(manyChannels(2), "first"_s));
        QVariantMap entry = toolEntry(manyChannels(6), "second"_s);
        entry.insert("id"_s, "{4b7a2f10-0000-4000-8000-000000000002}"_s);
        DTool second(entry, builtPlugin(), &fixture.board());
        QVERIFY(fixture.settle());
        QCOMPARE(itemsNamed(fixture.page(), "idChannelRow"_s).size(), 2);
        fixture.panel().setTool(&second);
        QTRY_COMPARE(itemsNamed(fixture.page(), "idChannelRow"_s).size(), 6);
        QCOMPARE(fixture.page()->property("name").toString(), "second"_s);
        fixture.panel().setTool(nullptr);
    }

    void theTextsSpeakTheLanguage_data()
    {
        const Rows<QLocale, QString, QString> row("locale", "inputs", "outputs");
        row("French", QLocale(QLocale::French, QLocale::Canada), "Entrées", "Sorties");
        row("a language without texts", QLocale(QLocale::Japanese), "Inputs", "Outputs");
    }
    void theTextsSpeakTheLanguage()
    {
        const auto [locale, inputs, outputs] = Rows<QLocale, QString, QString>::values();
        PanelFixture fixture(toolEntry({}));
        installTexts(locale);
        fixture.panel().setTool(nullptr);
        fixture.panel().setTool(&fixture.tool());
        const QString columns = c_root + ".idColumn.idColumnsRow"_s;
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

    /// Where the page is narrow, its middle goes.
    void theStateStaysBesideTheSwitch()
    {
        PanelFixture fixture(toolEntry({}));
        const QQuickItem* state = itemNamed(fixture.page(), "panelState"_s);
        const QQuickItem* live = itemNamed(fixture.page(), "panelLive"_s);
        const auto right = [&] {
            return state->mapRectToItem(fixture.page(), state->boundingRect()).right();
        };
        const auto left = [&] { return live->mapToItem(fixture.page(), {}).x(); };
        QVERIFY(!state->property("truncated").toBool());
        fixture.page()->setWidth(fixture.page()->width() - left() + right() - 20);
        QTRY_VERIFY(state->property("truncated").toBool());
        QVERIFY2(right() <= left(), qPrintable("%1 %2"_s.arg(right()).arg(left())));
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
                 "0,1,2,3,4"_s);
        instances.clear();
        PanelFixture fixture(toolEntry(manyChannels(3)));
        QVERIFY(fixture.settle());
        QCOMPARE(itemsNamed(fixture.page(), "idChannelRow"_s).size(), 3);
    }

    void theGarbageCollectorLeavesTheChannelsAlone()
    {
        PanelFixture fixture(toolEntry(manyChannels(8)));
        fixture.engine().collectGarbage();
        QVERIFY(fixture.settle());
        fixture.engine().collectGarbage();
        QVector<QPointer<QObject>> channels;
        for (QQuickItem* row : itemsNamed(fixture.page(), "idChannelRow"_s)) {
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
            QCOMPARE(fixture.part("C1"_s, c_led)->property("lit").toBool(), level == 1);
        }
        for (const QPointer<QObject>& channel : qAsConst(channels)) {
            QVERIFY(!channel.isNull());
        }
    }

    void theRowsOfManyChannelsComeFromTheFirstOn()
    {
        PanelFixture fixture(toolEntry(manyChannels(1000)));
        const auto rows = [&fixture] { return itemsNamed(fixture.page(), "idChannelRow"_s).size(); };
        QVERIFY(fixture.page() != nullptr);
        QVERIFY(!fixture.panel().hasValues());
        while (rows() == 0) {
            QCoreApplication::sendPostedEvents();
        }
        QCOMPARE(rows(), GradualRows::c_first);
        QVERIFY(fixture.row("C0"_s) != nullptr);
        QVERIFY(fixture.row("C63"_s) != nullptr);
        QVERIFY(!fixture.panel().hasRows());
        QVERIFY(!fixture.panel().hasValues());
        QVERIFY(waitUntil([&fixture] { return fixture.panel().hasValues(); }));
    }

    void aThousandChannelsAreShownAndRefreshed()
    {
        PanelFixture fixture(toolEntry(manyChannels(1000)));
        fixture.setLive(false);
        QVERIFY(fixture.settle());
        fixture.board().setInput(1, 1);
        fixture.panel().refresh();
        QVERIFY(fixture.settle());
        scrollTo(fixture, 1);
        QTRY_VERIFY(fixture.row("C999"_s) != nullptr);
        for (const QString& channel : {"C1"_s, "C999"_s}) {
            QVERIFY(fixture.part(channel, c_led)->property("lit").toBool());
        }
        QCOMPARE(fixture.row("C999"_s)->property("channelIndex").toInt(), 999);
    }

    void rowsOutOfSightAreTheirPlacesOnly()
    {
        if (isBareHost()) {
            QSKIP("its pages do not scroll");
        }
        PanelFixture fixture(toolEntry(manyChannels(1000)));
        fixture.setLive(false);
        QVERIFY(waitUntil([&fixture] { return fixture.panel().hasValues(); }));
        const auto rows = [&fixture] { return itemsNamed(fixture.page(), "idChannelRow"_s).size(); };
        QTRY_VERIFY(rows() < 2 * GradualRows::c_first);
        const QQuickItem* view = itemNamed(fixture.page(), "panelFlickable"_s);
        const double height = view->property("contentHeight").toDouble();
        const double row = fixture.row("C0"_s)->height();
        QVERIFY(height > 500 * row);
        for (const double share : {0.5, 1.0, 0.0, 0.3}) {
            scrollTo(fixture, share);
            QCoreApplication::processEvents();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            QCOMPARE(view->property("contentHeight").toDouble(), height);
            QVERIFY(rows() < 2 * GradualRows::c_first);
            for (double y = row; y < view->height() - row; y += row) {
                QVERIFY2(showsRowAt(fixture, y), qPrintable(QString::number(y)));
            }
        }
    }

    void rowsOutOfSightAreNeverMade()
    {
        QQmlEngine engine;
        QQmlComponent component(&engine);
        component.setData("import QtQuick 2.15\n"
                          "Flickable {\n"
                          "    property int made: 0\n"
                          "    height: 100; contentHeight: column.height\n"
                          "    Column {\n"
                          "        id: column\n"
                          "        Repeater {\n"
                          "            objectName: 'rows'\n"
                          "            Loader { sourceComponent: row }\n"
                          "        }\n"
                          "    }\n"
                          "    Component {\n"
                          "        id: row\n"
                          "        Item { width: 10; height: 20; Component.onCompleted: ++made }\n"
                          "    }\n"
                          "}",
                          QUrl());
        const std::unique_ptr<QObject> view(component.create());
        QVERIFY2(view != nullptr, qPrintable(component.errorString()));
        auto* repeater = view->findChild<QQuickItem*>("rows"_s);
        RowsInView::watch(repeater);
        repeater->setProperty("model", 1000);
        QTRY_COMPARE(repeater->property("count").toInt(), 1000);
        QCOMPARE(view->property("made").toInt(), GradualRows::c_first + 1); // which tells how high they are
    }

    void aRowWithTheKeyboardStays()
    {
        if (isBareHost()) {
            QSKIP("its pages do not scroll");
        }
        PanelFixture fixture(toolEntry(manyChannels(1000)));
        fixture.setLive(false);
        QVERIFY(waitUntil([&fixture] { return fixture.panel().hasValues(); }));
        scrollTo(fixture, 1);
        QTRY_VERIFY(fixture.row("C998"_s) != nullptr);
        fixture.part("C998"_s, ".idIndicator.idDigitalOutput"_s)->forceActiveFocus(Qt::TabFocusReason);
        scrollTo(fixture, 0);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(fixture.row("C998"_s) != nullptr);
        QVERIFY(fixture.row("C996"_s) == nullptr);
    }
};

QTEST_MAIN(TestPagePanel)
#include "test_page_panel.moc"
