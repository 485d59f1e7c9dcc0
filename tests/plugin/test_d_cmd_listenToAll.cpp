#include "d_cmd_listenToAll.h"
#include "recorded_command.h"
#include "rows.h"

using Executed = ExecutedCommand<DCmdListenToAll>;

class TestListenToAll : public QuietTest
{
    Q_OBJECT

private Q_SLOTS:
    void replyStoresItsValueAsItCame_data()
    {
        const Rows<QVariant> row("value");
        row("a number", 37);
        row("a long number", std::numeric_limits<qulonglong>::max());
        row("a text", "thirty-seven"_s);
        row("an empty text", ""_s);
        row("a list", QVariantList({1, 0}));
        row("an invalid value", QVariant());
        row("a null number", QVariant(QVariant::Int));
    }
    void replyStoresItsValueAsItCame()
    {
        QFETCH(QVariant, value);
        Executed bench;
        QVERIFY(bench.reply(0, {{"value"_s, 37}}));
        QVERIFY(bench.reply(0, {{"value"_s, value}}));
        COMPARE_RESULTS(bench.record, {{"value"_s, 37}, {"value"_s, value}});
        QVERIFY(bench.record.replies.isEmpty());
        QVERIFY(bench.record.finishes.isEmpty());
    }

    void replyIsAcceptedEvenWhenTheUpdateIsNot()
    {
        Executed bench;
        bench.record.updateAnswer = false;
        QVERIFY(bench.reply(0, {{"value"_s, 37}}));
    }
};

QTEST_GUILESS_MAIN(TestListenToAll)
#include "test_d_cmd_listenToAll.moc"
