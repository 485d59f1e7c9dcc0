#include "common_scripts.h"
#include "workbench.h"

#include <QSignalSpy>
#include <QTest>

class TestOrderArguments : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aRefusedInvocationMakesNoCommand_data()
    {
        QTest::addColumn<QVariantMap>("arguments");
        QTest::addColumn<QString>("reason");
        QTest::newRow("unknown parameter")
            << QVariantMap{{"zone"_s, 1}}
            << "unknown parameter \"zone\" of command \"work\"; it takes: \"channel\", \"value\""_s;
        QTest::newRow("value of the wrong type")
            << QVariantMap{{"value"_s, 65536}}
            << "parameter \"value\" of command \"work\" cannot hold \"65536\"; expected a whole number "
               "from 0 to 65535"_s;
    }

    void aRefusedInvocationMakesNoCommand()
    {
        QFETCH(QVariantMap, arguments);
        QFETCH(QString, reason);
        Workbench bench(fillDeclared);
        const auto order = bench.order(arguments);
        QSignalSpy finished(order.get(), &DOrder::finished);
        order->start();
        QCOMPARE(finished.count(), 1);
        QCOMPARE(order->reason(), reason);
        QCOMPARE(bench.workingCommands(), 0);
        QCOMPARE(bench.script->finishes, 0);
    }

    void anUnknownCommandFailsTheOrder()
    {
        Workbench bench(fillDeclared);
        DOrder order(bench.tool.get(), "play"_s, {});
        order.start();
        QCOMPARE(order.reason(), "unknown command \"play\"; the tool has: work"_s);
    }

    void anOrderOfNoToolFails()
    {
        DOrder order(nullptr, "work"_s, {});
        order.start();
        QCOMPARE(order.reason(), "the tool was closed"_s);
        QVERIFY(order.tool() == nullptr);
    }

    void thePluginThatMakesNoCommandFailsTheOrder()
    {
        class Barren : public ScriptedCommand
        {
        public:
            using ScriptedCommand::ScriptedCommand;
            QSharedPointer<ICommand> createCommand(const QVariantMap&) override { return {}; }
        };
        Workbench bench;
        auto& plugin = dynamic_cast<ScriptedPlugin&>(*bench.tool->plugin());
        plugin.declareInstructionCommand(new Barren(bench.script, {}, &plugin));
        const auto order = bench.order();
        order->start();
        QCOMPARE(order->reason(), "the plugin made no command \"work\""_s);
    }

    void theCommandReadsArgumentsConvertedAndDefaultsWhereTheyAreMissing()
    {
        Workbench bench(fillDeclared);
        const auto order = bench.order({{"channel"_s, 5}});
        order->start();
        QCOMPARE(m_channel, QVariant("5"_s));
        QCOMPARE(m_value, QVariant(1));
    }

    void aBoolIsAWholeNumber_data()
    {
        QTest::addColumn<bool>("given");
        QTest::newRow("true") << true;
        QTest::newRow("false") << false;
    }

    void aBoolIsAWholeNumber()
    {
        QFETCH(bool, given);
        Workbench bench(fillDeclared);
        bench.order({{"value"_s, given}})->start();
        QCOMPARE(m_value, QVariant(given ? 1 : 0));
    }

    void sectionsReachTheCommandUndeclared_data()
    {
        QTest::addColumn<QVariant>("channels");
        QTest::newRow("a list") << QVariant(QVariantList{QVariantMap{{"direction"_s, "out"_s}}});
        QTest::newRow("a list of texts") << QVariant(QStringList{"A"_s, "B"_s});
        QTest::newRow("a text") << QVariant("x"_s);
    }

    void sectionsReachTheCommandUndeclared()
    {
        QFETCH(QVariant, channels);
        QVariant section;
        Workbench bench([&](CommandScript& script) {
            script.execute = [&](ScriptedCommand& command) {
                section = command.getParametersSection("channels"_s);
                return false;
            };
        });
        bench.order({{"channels"_s, channels}})->start();
        QCOMPARE(section.type(), channels.type());
        QCOMPARE(section, channels);
    }

    void theResultsBeginWithTheirDeclaredValues()
    {
        Workbench bench([](CommandScript& script) {
            fillReader(script);
            script.results = {{"doneOk"_s, "bool"_s, "Job done"_s, false}, {"value"_s, "ui16"_s, "V"_s, 5}};
        });
        const auto order = bench.order();
        QVERIFY(order->results().isEmpty());
        order->start();
        QCOMPARE(order->results(), (QVariantMap{{"doneOk"_s, false}, {"value"_s, 5}}));
    }

private:
    std::function<void(CommandScript&)> fillDeclared = [this](CommandScript& script) {
        script.parameters = {{"channel"_s, "strg"_s, "Channel"_s, QVariant()},
                             {"value"_s, "ui16"_s, "Value"_s, 1}};
        script.execute = [this](ScriptedCommand& command) {
            m_channel = command.getParameterValue("channel"_s, QVariant());
            m_value = command.getParameterValue("value"_s, QVariant());
            return false;
        };
    };
    QVariant m_channel;
    QVariant m_value;
};

QTEST_GUILESS_MAIN(TestOrderArguments)

#include "tst_order_arguments.moc"
