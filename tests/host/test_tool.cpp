#include "foreign_plugin.h"
#include "rows.h"
#include "workbench.h"

class TestTool : public QObject
{
    Q_OBJECT

    static QVariantMap configurationOf(const QVariantList& channels)
    {
        return {{"name"_s, "Bench"_s}, {"id"_s, "7"_s}, {"channels"_s, channels}};
    }

    static void fillCatalogue(CommandScript& script)
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

private Q_SLOTS:
    void aToolKeepsItsConfigurationExactlyAsItWasRead()
    {
        const Workbench bench;
        QCOMPARE(bench.tool->toolConfiguration, Workbench::configuration());
        QCOMPARE(bench.tool->objectName(), "Bench"_s);
        QCOMPARE(bench.tool->id(), "{11111111-2222-3333-4444-555555555555}"_s);
        QCOMPARE(bench.tool->device(), bench.device.get());
        QCOMPARE(bench.tool->plugin()->objectUuid(), QUuid(bench.tool->id()));
        QCOMPARE(bench.tool->plugin()->getMainConfig(), Workbench::configuration());
    }

    void theCommandsAreListedAsDeclared()
    {
        const Workbench bench(fillCatalogue);
        QCOMPARE(bench.tool->plugin()->getFunctions(), QStringList{"work"_s});
        const QVector<DCommandDescription> commands = bench.tool->commands();
        QCOMPARE(commands.size(), 1);
        QCOMPARE(commands.at(0).name, "work"_s);
        QCOMPARE(commands.at(0).parameters.at(1).name, "value"_s);
    }

    void itsChannelsAreListedInTheOrderOfTheConfigurationAndLookedUpById()
    {
        const QVariantList entries{
            channelEntry("B"_s, {{"link"_s, "line1"_s}, {"gain"_s, 12}}, "expert"_s),
            channelEntry("A"_s, {{"direction"_s, "in"_s}}),
            channelEntry("C"_s, {{"link"_s, "line0"_s}}),
            QVariantMap{{"id"_s, "BARE"_s}},
        };
        const DTool tool(configurationOf(entries), ScriptedPlugin(), nullptr);
        QStringList listed;
        for (const DToolChannel& channel : tool.channels()) {
            listed.append("%1 %2 %3 %4"_s.arg(channel.id, channel.name, channel.visibility, channel.link));
            QCOMPARE(tool.getLinkedChannel(channel.id), channel.link);
        }
        QCOMPARE(listed, (QStringList{"B Name of B expert line1"_s, "A Name of A public "_s,
                                      "C Name of C public line0"_s, "BARE   "_s}));
        QCOMPARE(tool.channels().at(0).items, (QVariantMap{{"link"_s, "line1"_s}, {"gain"_s, 12}}));
        QVERIFY(tool.channels().at(3).items.isEmpty());
        QCOMPARE(tool.getLinkedChannel("b"_s), QString());
        QCOMPARE(tool.getLinkedChannel(QString()), QString());
    }

    void aCommandAsksWhenAResultHasNoValueBeforeItRuns_data()
    {
        const Rows<QVector<QVariant>, bool> row("defaults", "asks");
        row("no result", QVector<QVariant>(), false);
        row("with a value", {false}, false);
        row("without one", {QVariant()}, true);
        row("one of two", {false, QVariant()}, true);
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

    void aToolWithoutAnInstanceForThisHostRefusesEveryOrder()
    {
        for (const bool makesOne : {false, true}) {
            bool isGone = false;
            DTool tool(Workbench::configuration(), ElsewherePlugin(makesOne, &isGone), nullptr);
            QCOMPARE(isGone, makesOne);
            QVERIFY(tool.plugin() == nullptr);
            QVERIFY(tool.commands().isEmpty());
            QVERIFY(tool.stops().isEmpty());
            DOrder order(&tool, "work"_s, {});
            order.start();
            QCOMPARE(order.failure().kind, DFailure::Kind::WrongInvocation);
            QCOMPARE(order.failure().text.english(), "the plugin made no instance that this host can use"_s);
        }
    }

    void aToolForgetsADeviceThatIsGone()
    {
        Workbench bench;
        bench.device.reset();
        QVERIFY(bench.tool->device() == nullptr);
    }

    void channelItemsAreConvertedOrTheFallbackIsGiven()
    {
        const DTool tool(configurationOf({channelEntry("A"_s, {{"gain"_s, "12"_s}, {"name"_s, "twelve"_s}})}),
                         ScriptedPlugin(), nullptr);
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
        const Rows<QVariant> row("channels");
        row("none", QVariant());
        row("a text", "A"_s);
        row("a map", QVariantMap{{"id"_s, "A"_s}});
        row("a list of texts", QVariantList{"A"_s, 3});
        row("without items", QVariantList{QVariantMap{{"id"_s, "A"_s}}});
        row("items are no list", QVariantList{QVariantMap{{"id"_s, "A"_s}, {"value"_s, "line0"_s}}});
        row("items are no maps",
            QVariantList{QVariantMap{{"id"_s, "A"_s}, {"value"_s, QVariantList{"link"_s}}}});
    }
    void oddConfigurationsHaveNoChannels()
    {
        QFETCH(QVariant, channels);
        const DTool tool({{"channels"_s, channels}}, ScriptedPlugin(), nullptr);
        QCOMPARE(tool.getLinkedChannel("A"_s), QString());
        QCOMPARE(tool.getInfoFromChannel("A"_s, "link"_s, QMetaType::QString, "none"_s), QVariant("none"_s));
    }

    void anInvocationIsCheckedAgainstTheDeclaration_data()
    {
        const Rows<QString, QVariantMap, QVariantMap, QString> row("command", "arguments", "converted",
                                                                   "refusal");
        const auto refused = [&row](const char* name, const QVariantMap& arguments, const QString& refusal) {
            row(name, "work", arguments, arguments, refusal);
        };
        const auto accepted = [&row](const char* name, const QVariantMap& arguments,
                                     const QVariantMap& converted) {
            row(name, "work", arguments, converted, QString());
        };
        const auto wrongValue = [](const QString& shown) {
            return "parameter \"value\" of command \"work\" cannot hold \"%1\"; expected a whole number "
                   "from 0 to 65535"_s.arg(shown);
        };
        row("unknown command", "play", {}, {}, "unknown command \"play\"; the tool has: work");
        refused("unknown parameter", {{"value"_s, "5"_s}, {"zone"_s, 1}},
                "unknown parameter \"zone\" of command \"work\"; it takes: \"channel\", \"value\""_s);
        refused("unknown parameter with percent signs", {{"%3%1"_s, 1}},
                "unknown parameter \"%3%1\" of command \"work\"; it takes: \"channel\", \"value\""_s);
        refused("one value of the wrong type", {{"channel"_s, 5}, {"value"_s, "many"_s}},
                wrongValue("many"_s));
        refused("a list for a parameter", {{"value"_s, QVariantList{1, "a"_s}}}, wrongValue("[1,\"a\"]"_s));
        refused("texts for a parameter", {{"value"_s, QStringList{"a"_s, "b"_s}}},
                wrongValue("[\"a\",\"b\"]"_s));
        refused("a map for a parameter", {{"value"_s, QVariantMap{{"a"_s, 1}}}}, wrongValue("{\"a\":1}"_s));
        accepted("values of other types", {{"channel"_s, 5}, {"value"_s, true}},
                 {{"channel"_s, "5"_s}, {"value"_s, 1}});
        const QVariantMap sections{{"channels"_s, QVariantList{1, 2}},
                                   {"names"_s, QStringList{"a"_s, "b"_s}},
                                   {"options"_s, QVariantMap{{"fast"_s, true}}}};
        accepted("sections", sections, sections);
    }
    void anInvocationIsCheckedAgainstTheDeclaration()
    {
        auto [command, arguments, converted, refusal] =
            Rows<QString, QVariantMap, QVariantMap, QString>::values();
        const Workbench bench(fillCatalogue);
        const DFailure failure = bench.tool->checkInvocation(command, &arguments);
        QCOMPARE(failure.text.english(), refusal);
        QCOMPARE(static_cast<bool>(failure), !refusal.isEmpty());
        QCOMPARE(arguments, converted);
    }

    void everythingIsASectionWhereNothingIsDeclared()
    {
        const Workbench bench;
        const QVariantMap sections{{"number"_s, 1}, {"text"_s, "x"_s}, {"nothing"_s, QVariant()}};
        QVariantMap arguments = sections;
        QCOMPARE(bench.tool->checkInvocation("work"_s, &arguments).kind, DFailure::Kind::None);
        QCOMPARE(arguments, sections);
    }
};

QTEST_GUILESS_MAIN(TestTool)
#include "test_tool.moc"
