#include "common_scripts.h"
#include "workbench.h"

#include <QSignalSpy>
#include <QTest>

class TestOrderArguments : public QObject
{
    Q_OBJECT

private Q_SLOTS:
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

#include "test_order_arguments.moc"
