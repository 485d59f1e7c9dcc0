#include "foreign_plugin.h"
#include "workbench.h"

#include <QTest>

namespace {

QVariantMap configurationOf(const QVariantList& channels)
{
    return {{"name"_s, "Bench"_s}, {"id"_s, "7"_s}, {"channels"_s, channels}};
}

void fillCatalogue(CommandScript& script)
{
    script.parameters = {{"channel"_s, "strg"_s, "Channel"_s, QVariant()},
                         {"value"_s, "ui16"_s, "Value"_s, 1}};
}

/// Makes no instance that this host can use: none, or one of another host.
class ElsewherePlugin : public ScriptedPlugin
{
public:
    ElsewherePlugin(bool makesOne, bool* isGone)
        : ScriptedPlugin({std::make_shared<CommandScript>()})
        , m_makesOne(makesOne)
        , m_isGone(isGone)
    {}

    IPlugin* createInstance(const QUuid&) const override
    {
        return m_makesOne ? new ForeignPlugin(m_isGone) : nullptr;
    }

private:
    bool m_makesOne;
    bool* m_isGone;
};

} // namespace

class TestTool : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aToolKeepsItsConfigurationExactlyAsItWasRead()
    {
        const Workbench bench;
        QCOMPARE(bench.tool->toolConfiguration, Workbench::configuration());
        QCOMPARE(bench.tool->objectName(), "Bench"_s);
        QCOMPARE(bench.tool->id(), "{11111111-2222-3333-4444-555555555555}"_s);
        QCOMPARE(bench.tool->device(), bench.device.get());
    }

    void theWorkingInstanceServesTheToolsObject()
    {
        const Workbench bench;
        QCOMPARE(bench.tool->plugin()->objectUuid(), QUuid(bench.tool->id()));
        QCOMPARE(bench.tool->plugin()->getMainConfig(), Workbench::configuration());
        QCOMPARE(bench.tool->plugin()->getFunctions(), QStringList{"work"_s});
    }

    void theCommandsAreListedAsDeclared()
    {
        const Workbench bench(fillCatalogue);
        const QVector<DCommandDescription> commands = bench.tool->commands();
        QCOMPARE(commands.size(), 1);
        QCOMPARE(commands.at(0).name, "work"_s);
        QCOMPARE(commands.at(0).parameters.at(1).name, "value"_s);
    }

    void itsChannelsAreListedInTheOrderOfTheConfiguration()
    {
        const QVariantList entries{
            channelEntry("B"_s, {{"link"_s, "line1"_s}, {"gain"_s, 12}}, "expert"_s),
            channelEntry("A"_s, {{"direction"_s, "in"_s}}),
            QVariantMap{{"id"_s, "BARE"_s}},
        };
        const DTool tool(configurationOf(entries), ScriptedPlugin({}), nullptr);
        const QVector<DToolChannel>& channels = tool.channels();
        QCOMPARE(channels.size(), 3);
        QCOMPARE(channels.at(0).id, "B"_s);
        QCOMPARE(channels.at(0).name, "Name of B"_s);
        QCOMPARE(channels.at(0).visibility, "expert"_s);
        QCOMPARE(channels.at(0).link, "line1"_s);
        QCOMPARE(channels.at(0).items, (QVariantMap{{"link"_s, "line1"_s}, {"gain"_s, 12}}));
        QCOMPARE(channels.at(1).id, "A"_s);
        QCOMPARE(channels.at(1).link, QString());
        QCOMPARE(channels.at(2).id, "BARE"_s);
        QVERIFY(channels.at(2).items.isEmpty());
    }

    void aCommandAsksWhenAResultHasNoValueBeforeItRuns_data()
    {
        QTest::addColumn<QVector<QVariant>>("defaults");
        QTest::addColumn<bool>("asks");
        QTest::newRow("no result") << QVector<QVariant>() << false;
        QTest::newRow("with a value") << QVector<QVariant>{false} << false;
        QTest::newRow("without one") << QVector<QVariant>{QVariant()} << true;
        QTest::newRow("one of two") << QVector<QVariant>{false, QVariant()} << true;
    }

    void aCommandAsksWhenAResultHasNoValueBeforeItRuns()
    {
        QFETCH(QVector<QVariant>, defaults);
        QFETCH(bool, asks);
        const Workbench bench([&](CommandScript& script) {
            for (const QVariant& value : qAsConst(defaults)) {
                script.results.push_back({QString::number(script.results.size()), "vart"_s, {}, value});
            }
        });
        QCOMPARE(bench.tool->asks("work"_s), asks);
        QCOMPARE(bench.tool->asks("play"_s), false);
    }

    void aToolWithoutAnInstanceForThisHostRefusesEveryOrder_data()
    {
        QTest::addColumn<bool>("makesOne");
        QTest::newRow("none at all") << false;
        QTest::newRow("one of another host") << true;
    }

    void aToolWithoutAnInstanceForThisHostRefusesEveryOrder()
    {
        QFETCH(bool, makesOne);
        bool isGone = false;
        DTool tool(Workbench::configuration(), ElsewherePlugin(makesOne, &isGone), nullptr);
        QCOMPARE(isGone, makesOne);
        QVERIFY(tool.plugin() == nullptr);
        QVERIFY(tool.commands().isEmpty());
        QVERIFY(tool.stops().isEmpty());
        DOrder order(&tool, "work"_s, {});
        order.start();
        QCOMPARE(order.failure().text, "the plugin made no instance that this host can use"_s);
    }

    void aToolForgetsADeviceThatIsGone()
    {
        Workbench bench;
        bench.device.reset();
        QVERIFY(bench.tool->device() == nullptr);
    }

    void aChannelIsLookedUpByItsIdentifier()
    {
        const QVariantList channels{
            channelEntry("A"_s, {{"link"_s, "line0"_s}, {"gain"_s, "12"_s}}),
            channelEntry("B"_s, {{"link"_s, "line1"_s}}),
            channelEntry("LOOSE"_s, {{"direction"_s, "in"_s}}),
        };
        const DTool tool(configurationOf(channels), ScriptedPlugin({}), nullptr);
        QCOMPARE(tool.getLinkedChannel("A"_s), "line0"_s);
        QCOMPARE(tool.getLinkedChannel("B"_s), "line1"_s);
        QCOMPARE(tool.getLinkedChannel("LOOSE"_s), QString());
        QCOMPARE(tool.getLinkedChannel("a"_s), QString());
        QCOMPARE(tool.getLinkedChannel(QString()), QString());
    }

    void channelItemsAreConvertedOrTheFallbackIsGiven()
    {
        const DTool tool(configurationOf({channelEntry("A"_s, {{"gain"_s, "12"_s}, {"name"_s, "twelve"_s}})}),
                         ScriptedPlugin({}), nullptr);
        const auto info = [&tool](const char* key, QMetaType::Type type) {
            return tool.getInfoFromChannel("A"_s, QString::fromLatin1(key), type, -1);
        };
        QCOMPARE(info("gain", QMetaType::Int), QVariant(12));
        QCOMPARE(info("gain", QMetaType::QString), QVariant("12"_s));
        QCOMPARE(info("gain", QMetaType::Double), QVariant(12.0));
        QCOMPARE(info("name", QMetaType::Int), QVariant(-1));
        QCOMPARE(info("gain", QMetaType::QUrl), QVariant(QUrl("12"_s)));
        QCOMPARE(info("gain", QMetaType::QObjectStar), QVariant(-1));
        QCOMPARE(info("size", QMetaType::Int), QVariant(-1));
        QCOMPARE(tool.getInfoFromChannel("B"_s, "gain"_s, QMetaType::Int, -1), QVariant(-1));
    }

    void oddConfigurationsHaveNoChannels_data()
    {
        QTest::addColumn<QVariant>("channels");
        QTest::newRow("none") << QVariant();
        QTest::newRow("a text") << QVariant("A"_s);
        QTest::newRow("a map") << QVariant(QVariantMap{{"id"_s, "A"_s}});
        QTest::newRow("a list of texts") << QVariant(QVariantList{"A"_s, 3});
        QTest::newRow("without items") << QVariant(QVariantList{QVariantMap{{"id"_s, "A"_s}}});
        QTest::newRow("items are no list")
            << QVariant(QVariantList{QVariantMap{{"id"_s, "A"_s}, {"value"_s, "line0"_s}}});
        QTest::newRow("items are no maps")
            << QVariant(QVariantList{QVariantMap{{"id"_s, "A"_s}, {"value"_s, QVariantList{"link"_s}}}});
    }

    void oddConfigurationsHaveNoChannels()
    {
        QFETCH(QVariant, channels);
        const DTool tool({{"channels"_s, channels}}, ScriptedPlugin({}), nullptr);
        QCOMPARE(tool.getLinkedChannel("A"_s), QString());
        QCOMPARE(tool.getInfoFromChannel("A"_s, "link"_s, QMetaType::QString, "none"_s), QVariant("none"_s));
    }

    void anUnknownCommandIsRefusedWithTheListOfKnownOnes()
    {
        const Workbench bench(fillCatalogue);
        QVariantMap arguments;
        QCOMPARE(bench.tool->checkInvocation("play"_s, &arguments).text,
                 "unknown command \"play\"; the tool has: work"_s);
    }

    void anUnknownParameterIsRefusedWithTheListOfKnownOnes()
    {
        const Workbench bench(fillCatalogue);
        QVariantMap arguments{{"value"_s, "5"_s}, {"zone"_s, 1}};
        QCOMPARE(bench.tool->checkInvocation("work"_s, &arguments).text,
                 "unknown parameter \"zone\" of command \"work\"; it takes: \"channel\", \"value\""_s);
        QCOMPARE(arguments, (QVariantMap{{"value"_s, "5"_s}, {"zone"_s, 1}}));
    }

    void everythingIsASectionWhereNothingIsDeclared()
    {
        const Workbench bench;
        const QVariantMap sections{{"number"_s, 1}, {"text"_s, "x"_s}, {"nothing"_s, QVariant()}};
        QVariantMap arguments = sections;
        QCOMPARE(bench.tool->checkInvocation("work"_s, &arguments).kind, DFailure::Kind::None);
        QCOMPARE(arguments, sections);
    }

    void aValueOfTheWrongTypeIsRefusedAndNothingIsConverted()
    {
        const Workbench bench(fillCatalogue);
        QVariantMap arguments{{"channel"_s, 5}, {"value"_s, "many"_s}};
        QCOMPARE(bench.tool->checkInvocation("work"_s, &arguments).text,
                 "parameter \"value\" of command \"work\" cannot hold \"many\"; expected a whole number "
                 "from 0 to 65535"_s);
        QCOMPARE(arguments.value("channel"_s), QVariant(5));
    }

    void acceptedArgumentsAreConvertedToTheirDeclaredTypes()
    {
        const Workbench bench(fillCatalogue);
        QVariantMap arguments{{"channel"_s, 5}, {"value"_s, true}};
        QCOMPARE(bench.tool->checkInvocation("work"_s, &arguments).kind, DFailure::Kind::None);
        QCOMPARE(arguments, (QVariantMap{{"channel"_s, "5"_s}, {"value"_s, 1}}));
    }

    void sectionsNeedNoDeclaration()
    {
        const Workbench bench(fillCatalogue);
        const QVariantMap sections{{"channels"_s, QVariantList{1, 2}},
                                   {"names"_s, QStringList{"a"_s, "b"_s}},
                                   {"options"_s, QVariantMap{{"fast"_s, true}}}};
        QVariantMap arguments = sections;
        QCOMPARE(bench.tool->checkInvocation("work"_s, &arguments).kind, DFailure::Kind::None);
        QCOMPARE(arguments, sections);
    }

    void aDeclaredParameterIsNoSection_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<QString>("shown");
        QTest::newRow("a list") << QVariant(QVariantList{1, "a"_s}) << "[1,\"a\"]"_s;
        QTest::newRow("a list of texts") << QVariant(QStringList{"a"_s, "b"_s}) << "[\"a\",\"b\"]"_s;
        QTest::newRow("a map") << QVariant(QVariantMap{{"a"_s, 1}}) << "{\"a\":1}"_s;
    }

    void aDeclaredParameterIsNoSection()
    {
        QFETCH(QVariant, value);
        QFETCH(QString, shown);
        const Workbench bench(fillCatalogue);
        QVariantMap arguments{{"value"_s, value}};
        QCOMPARE(bench.tool->checkInvocation("work"_s, &arguments).text,
                 "parameter \"value\" of command \"work\" cannot hold \"%1\"; expected a whole number "
                 "from 0 to 65535"_s.arg(shown));
    }

    void namesWithPercentSignsAppearAsTheyAre()
    {
        const Workbench bench(fillCatalogue);
        QVariantMap arguments{{"%3%1"_s, 1}};
        QCOMPARE(bench.tool->checkInvocation("work"_s, &arguments).text,
                 "unknown parameter \"%3%1\" of command \"work\"; it takes: \"channel\", \"value\""_s);
    }
};

QTEST_GUILESS_MAIN(TestTool)

#include "test_tool.moc"
