#include "d_cmd_listenToAll.h"
#include "recorded_command.h"

using Recorded = RecordedCommand<DCmdListenToAll>;
using Executed = ExecutedCommand<DCmdListenToAll>;

class TestListenToAll : public QuietTest
{
    Q_OBJECT

private Q_SLOTS:
    void requestHasNoArguments()
    {
        Recorded bench;
        QVERIFY(bench.command.commandExecute());
        QCOMPARE(bench.record.calls, QStringList({"commandExecute"_s, "addInstruction listenToAll"_s}));
        COMPARE_REQUESTS(bench.record, {{"listenToAll"_s, QVariantMap()}});
    }

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

    void identifierOfTheInstructionIsNotLookedAt()
    {
        Executed bench;
        QVERIFY(bench.replyAs(0, 0, {{"value"_s, 37}}));
    }

    void replyWithoutValueIsRejected_data()
    {
        QTest::addColumn<QVariantMap>("reply");
        QTest::newRow("empty") << QVariantMap();
        QTest::newRow("values") << QVariantMap({{"values"_s, 37}});
        QTest::newRow("another case") << QVariantMap({{"Value"_s, 37}});
    }
    void replyWithoutValueIsRejected()
    {
        QFETCH(QVariantMap, reply);
        Executed bench;
        QVERIFY(!bench.reply(0, reply));
        COMPARE_ONE_REPORT(bench.command, "d_cmd_listenToAll"_s, "ERROR: reply does not contain values"_s);
        COMPARE_RESULTS(bench.record, {});
        QVERIFY2(bench.reply(0, {{"value"_s, 1}}), "later replies are handled normally");
    }

    void instancesOfOnePrototypeStopOnlyTheirOwnRequest()
    {
        TwoInstances<DCmdListenToAll> two({}, {});
        QVERIFY(two.first->commandExecute());
        QVERIFY(two.second->commandExecute());
        bool ok = true;
        two.second->finishTheCommand(ok);
        QCOMPARE(two.firstRecord.stoppedInstructions, QVector<quint64>());
        QCOMPARE(two.secondRecord.stoppedInstructions, QVector<quint64>({7}));
        two.first->finishTheCommand(ok);
        QCOMPARE(two.firstRecord.stoppedInstructions, QVector<quint64>({1}));
    }
};

QTEST_GUILESS_MAIN(TestListenToAll)
#include "test_d_cmd_listenToAll.moc"
