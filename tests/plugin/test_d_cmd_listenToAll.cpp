#include "d_cmd_listenToAll.h"
#include "recorded_command.h"

using Executed = ExecutedCommand<DCmdListenToAll>;

class TestListenToAll : public QuietTest
{
    Q_OBJECT

private Q_SLOTS:
    void replyStoresItsValueAsItCame_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::newRow("a number") << QVariant(37);
        QTest::newRow("a long number") << QVariant(std::numeric_limits<qulonglong>::max());
        QTest::newRow("a text") << QVariant("thirty-seven"_s);
        QTest::newRow("an empty text") << QVariant(""_s);
        QTest::newRow("a list") << QVariant(QVariantList({1, 0}));
        QTest::newRow("an invalid value") << QVariant();
        QTest::newRow("a null number") << QVariant(QVariant::Int);
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
