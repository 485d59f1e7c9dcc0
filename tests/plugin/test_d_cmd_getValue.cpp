#include "d_cmd_getValue.h"
#include "recorded_command.h"
#include "rows.h"

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
        const Rows<QVariant, int> row("value", "stored");
        row("one", 1, 1);
        row("zero", 0, 0);
        row("a text", "7"_s, 7);
        row("a text that is no number", "high"_s, 0);
        row("a bool", true, 1);
        row("the highest", 65535, 65535);
        row("65536", 65536, 0);
        row("65537", 65537, 1);
        row("70000", 70000, 4464);
        row("minus one", -1, 65535);
        row("the lowest int", c_lowestInt, 0);
        row("the highest unsigned", std::numeric_limits<uint>::max(), 65535);
        row("an invalid value", QVariant(), 0);
    }
    void replyStoresTheLow16Bits()
    {
        const auto [value, stored] = Rows<QVariant, int>::values();
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
