#include "d_cmd_getValue.h"
#include "recorded_command.h"

using Recorded = RecordedCommand<DCmdGetValue>;
using Executed = ExecutedCommand<DCmdGetValue>;

class TestGetValue : public QuietTest
{
    Q_OBJECT

private Q_SLOTS:
    void directionIsNotLookedAt()
    {
        for (const QVariant& direction : {QVariant("in"_s), QVariant("out"_s), QVariant()}) {
            Recorded bench;
            linkStart(bench.record, "line0"_s, direction);
            QVERIFY(bench.command.commandExecute());
            COMPARE_REQUESTS(bench.record, {{"getValue"_s, onChannel("line0"_s)}});
        }
    }

    void unlinkedChannelIsOnlyReported()
    {
        Recorded bench(onChannel("NOWHERE"_s));
        QVERIFY(bench.command.commandExecute());
        COMPARE_ONE_REPORT(bench.command, "d_cmd_getValue"_s,
                           "ERROR: Tool channel:  \"NOWHERE\"  is not linked to device"_s);
        QCOMPARE(bench.record.calls, QStringList({"commandExecute"_s, "getParameterValue channel"_s,
                                                  "getLinkedChannel NOWHERE"_s}));
    }

    void replyStoresTheLow16Bits_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<int>("stored");
        QTest::newRow("one") << QVariant(1) << 1;
        QTest::newRow("zero") << QVariant(0) << 0;
        QTest::newRow("a text") << QVariant("7"_s) << 7;
        QTest::newRow("a text that is no number") << QVariant("high"_s) << 0;
        QTest::newRow("a bool") << QVariant(true) << 1;
        QTest::newRow("the highest") << QVariant(65535) << 65535;
        QTest::newRow("65536") << QVariant(65536) << 0;
        QTest::newRow("65537") << QVariant(65537) << 1;
        QTest::newRow("70000") << QVariant(70000) << 4464;
        QTest::newRow("minus one") << QVariant(-1) << 65535;
        QTest::newRow("the lowest int") << QVariant(c_lowestInt) << 0;
        QTest::newRow("the highest unsigned") << QVariant(std::numeric_limits<uint>::max()) << 65535;
        QTest::newRow("an invalid value") << QVariant() << 0;
    }
    void replyStoresTheLow16Bits()
    {
        QFETCH(QVariant, value);
        QFETCH(int, stored);
        Executed bench;
        QVERIFY(bench.reply(0, {{"value"_s, value}}));
        COMPARE_RESULTS(bench.record, {{"value"_s, stored}});
    }

    void replyIsAcceptedAsTheUpdateOfTheResultIs()
    {
        Executed bench;
        bench.record.updateAnswer = false;
        QVERIFY(!bench.reply(0, {{"value"_s, 1}}));
        bench.record.updateAnswer = true;
        QVERIFY(bench.reply(0, {{"value"_s, 1}}));
    }
};

QTEST_GUILESS_MAIN(TestGetValue)
#include "test_d_cmd_getValue.moc"
