#include "d_cmd_switchValue.h"
#include "recorded_command.h"
#include "rows.h"

class TestSwitchValue : public QuietTest
{
    Q_OBJECT

    /// Opens the operation that the command's own flow does not use.
    class OpenedSwitchValue : public DCmdSwitchValue
    {
    public:
        using DCmdSwitchValue::DCmdSwitchValue;
        using DCmdSwitchValue::sendValue;
    };

    using Recorded = RecordedCommand<DCmdSwitchValue>;
    using Executed = ExecutedCommand<DCmdSwitchValue>;

    static Request reading(const QString& channel) { return {"getValue"_s, {{"channel"_s, channel}}}; }

    static Request writing(const QString& channel, int value)
    {
        return {"setValues"_s, {{"channel"_s, channel}, {"values"_s, value}}};
    }

private Q_SLOTS:
    void unlinkedOutputIsReadAndWrittenWithAnEmptyChannel()
    {
        Recorded bench;
        linkStart(bench.record, ""_s, "out"_s);
        QVERIFY(bench.command.commandExecute());
        QVERIFY(bench.reply(0, {{"value"_s, 0}}));
        COMPARE_REQUESTS(bench.record, {reading(""_s), writing(""_s, 1)});
    }

    void readReplyWritesTheInverse_data()
    {
        const Rows<QVariant, int> row("read", "written");
        row("the number 0", 0, 1);
        row("the boolean false", false, 1);
        row("an empty text", ""_s, 1);
        row("the text 0", "0"_s, 1);
        row("the text false", "false"_s, 1);
        row("the text FALSE", "FALSE"_s, 1);
        row("an invalid value", QVariant(), 1);
        row("the number 1", 1, 0);
        row("the number 5", 5, 0);
        row("a negative number", -1, 0);
        row("the boolean true", true, 0);
        row("the text 1", "1"_s, 0);
        row("any other text", "off"_s, 0);
    }
    void readReplyWritesTheInverse()
    {
        const auto [read, written] = Rows<QVariant, int>::values();
        Executed bench;
        QVERIFY(bench.reply(0, {{"value"_s, read}}));
        COMPARE_REQUESTS(bench.record, {reading("line0"_s), writing("line0"_s, written)});
        COMPARE_RESULTS(bench.record, {});
    }

    void writeReplyReportsDoneUnlessItHasNoIdentifier()
    {
        Executed bench;
        bench.reply(0, {{"value"_s, 1}});
        QVERIFY(!bench.replyAs(0, 1, {{"values"_s, 0}}));
        COMPARE_RESULTS(bench.record, {});
        QVERIFY(bench.reply(1, {}));
        COMPARE_RESULTS(bench.record, {{"doneOk"_s, true}});
        bench.record.updateAnswer = false;
        QVERIFY2(!bench.reply(1, {}), "the answer is that of the update");
    }

    void valueCanBeSentOnItsOwn()
    {
        for (const int value : {1, 65535}) {
            ExecutedCommand<OpenedSwitchValue> bench;
            bench.command.sendValue(static_cast<quint16>(value));
            COMPARE_REQUESTS(bench.record, {reading("line0"_s), writing("line0"_s, value)});
            QVERIFY(bench.reply(1, {}));
            COMPARE_RESULTS(bench.record, {{"doneOk"_s, true}});
        }
    }
};

QTEST_GUILESS_MAIN(TestSwitchValue)
#include "test_d_cmd_switchValue.moc"
