#include "d_cmd_getValue.h"
#include "recorded_command.h"

using Recorded = RecordedCommand<DCmdGetValue>;
using Executed = ExecutedCommand<DCmdGetValue>;

class TestGetValue : public QuietTest
{
    Q_OBJECT

private Q_SLOTS:
    void requestNamesTheLinkedDeviceChannelWhateverItsDirection_data()
    {
        QTest::addColumn<QVariant>("direction");
        QTest::newRow("in") << QVariant("in"_s);
        QTest::newRow("out") << QVariant("out"_s);
        QTest::newRow("none") << QVariant();
    }
    void requestNamesTheLinkedDeviceChannelWhateverItsDirection()
    {
        QFETCH(QVariant, direction);
        Recorded bench;
        linkStart(bench.record, "line0"_s, direction);
        QVERIFY(bench.command.commandExecute());
        QCOMPARE(bench.record.calls, QStringList({"commandExecute"_s, "getParameterValue channel"_s,
                                                  "getLinkedChannel START"_s, "addInstruction getValue"_s}));
        COMPARE_REQUESTS(bench.record, {{"getValue"_s, {{"channel"_s, "line0"_s}}}});
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

    void identifierOfTheInstructionIsNotLookedAt()
    {
        Executed bench;
        QVERIFY(bench.replyAs(0, 0, {{"value"_s, 1}}));
        COMPARE_RESULTS(bench.record, {{"value"_s, 1}});
    }

    void replyWithoutValueIsRejected_data()
    {
        QTest::addColumn<QVariantMap>("reply");
        QTest::newRow("empty") << QVariantMap();
        QTest::newRow("another case") << QVariantMap({{"Value"_s, 1}});
        QTest::newRow("another key") << QVariantMap({{"values"_s, QVariantList({1})}});
    }
    void replyWithoutValueIsRejected()
    {
        QFETCH(QVariantMap, reply);
        Executed bench;
        QVERIFY(!bench.reply(0, reply));
        COMPARE_ONE_REPORT(bench.command, "d_cmd_getValue"_s, "ERROR: Invalid reply format"_s);
        COMPARE_RESULTS(bench.record, {});
    }

    void instancesOfOnePrototypeShareNothing()
    {
        TwoInstances<DCmdGetValue> two(onChannel("START"_s), onChannel("START"_s));
        QVERIFY(two.first->commandExecute());
        QVERIFY(two.second->commandExecute());
        QVERIFY(two.first->setReply(1, {{"value"_s, 1}}));
        COMPARE_RESULTS(two.firstRecord, {{"value"_s, 1}});
        COMPARE_RESULTS(two.secondRecord, {});
        COMPARE_REQUESTS(two.secondRecord, {{"getValue"_s, {{"channel"_s, "line1"_s}}}});
        COMPARE_REQUESTS(recordOf(two.prototype), {});
    }
};

QTEST_GUILESS_MAIN(TestGetValue)
#include "test_d_cmd_getValue.moc"
