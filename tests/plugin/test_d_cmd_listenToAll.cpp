#include "command_checks.h"
#include "d_cmd_listenToAll.h"
#include "report_check.h"

using namespace command_checks;

class TestListenToAll : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void addsNothingToTheMetaObjectOfItsBase()
    {
        metaObjectHasNothingOfItsOwn<DCmdListenToAll>("DCmdListenToAll"_q);
    }

    void constructionDeclaresInOrder()
    {
        constructionMakesTheCalls<DCmdListenToAll>(
            {"construct listenToAll"_q, "setDescription"_q, "declareAResult value"_q});
    }

    void declaresNameDescriptionAndResultButNoParameter()
    {
        const RecordedCommand<DCmdListenToAll> bench;
        QCOMPARE(bench.record.name, "listenToAll"_q);
        QVERIFY(bench.record.isStoppable);
        QCOMPARE(bench.record.stopName, "stopListening"_q);
        QCOMPARE(bench.record.description, "Listen events from the gpio channel"_q);
        compareDeclarations(bench.record.parameters, {});
        compareDeclarations(bench.record.results,
                            {{"value"_q, "vart"_q, "All gpio value in decimal"_q, QVariant()}});
    }

    void createCommandMakesAWorkingInstance()
    {
        command_checks::createCommandMakesAWorkingInstance<DCmdListenToAll>();
    }

    void workingInstanceDiesWithItsSharedPointer()
    {
        sharedPointerOfCreateCommandIsTheOwner<DCmdListenToAll>();
    }

    void refusalOfTheBaseIsSilent() { baseRefusalIsSilent<DCmdListenToAll>({}); }

    void requestHasNoArguments()
    {
        RecordedCommand<DCmdListenToAll> bench;
        const MessageLog log;
        QVERIFY(bench.command.commandExecute());
        QCOMPARE(bench.record.calls, QStringList({"commandExecute"_q, "addInstruction listenToAll"_q}));
        const CommandRecord::Instruction& sent = bench.record.instructions.first();
        QCOMPARE(sent.target, "device"_q);
        QCOMPARE(sent.timeoutMs, 4000);
        QCOMPARE(sent.arguments, QVariantMap());
        QCOMPARE(log.texts(), QStringList());
    }

    void replyStoresItsValueAsItCame_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::newRow("a number") << QVariant(37);
        QTest::newRow("a long number") << QVariant(std::numeric_limits<qulonglong>::max());
        QTest::newRow("a text") << QVariant("thirty-seven"_q);
        QTest::newRow("an empty text") << QVariant(""_q);
        QTest::newRow("a list") << QVariant(QVariantList({1, 0}));
        QTest::newRow("an invalid value") << QVariant();
        QTest::newRow("a null number") << QVariant(QVariant::Int);
    }
    void replyStoresItsValueAsItCame()
    {
        QFETCH(QVariant, value);
        RecordedCommand<DCmdListenToAll> bench;
        bench.command.commandExecute();
        const MessageLog log;
        QVERIFY(bench.reply(0, {{"value"_q, 1}}));
        QVERIFY(bench.reply(0, {{"value"_q, value}}));
        QCOMPARE(bench.record.updatedResults.size(), 2);
        QCOMPARE(bench.record.updatedResults.last().name, "value"_q);
        COMPARE_EXACTLY(bench.record.updatedResults.last().value, value);
        QCOMPARE(bench.record.updatedResults.last().value.isNull(), value.isNull());
        QVERIFY(bench.record.replies.isEmpty());
        QVERIFY(bench.record.finishes.isEmpty());
        QCOMPARE(log.texts(), QStringList());
    }

    void replyIsAcceptedEvenWhenTheUpdateIsNot()
    {
        RecordedCommand<DCmdListenToAll> bench;
        bench.command.commandExecute();
        bench.record.updateAnswer = false;
        QVERIFY(bench.reply(0, {{"value"_q, 37}}));
    }

    void identifierOfTheInstructionIsNotLookedAt()
    {
        RecordedCommand<DCmdListenToAll> bench;
        bench.command.commandExecute();
        QVERIFY(bench.replyAs(0, 0, {{"value"_q, 37}}));
    }

    void replyWithoutValueIsRejected_data()
    {
        QTest::addColumn<QVariantMap>("reply");
        QTest::newRow("empty") << QVariantMap();
        QTest::newRow("values") << QVariantMap({{"values"_q, 37}});
        QTest::newRow("another case") << QVariantMap({{"Value"_q, 37}});
    }
    void replyWithoutValueIsRejected()
    {
        QFETCH(QVariantMap, reply);
        RecordedCommand<DCmdListenToAll> bench;
        bench.command.commandExecute();
        const MessageLog log;
        QVERIFY(!bench.reply(0, reply));
        COMPARE_ONE_REPORT(log, bench.command, "d_cmd_listenToAll"_q,
                           "ERROR: reply does not contain values"_q);
        QVERIFY(bench.record.updatedResults.isEmpty());
        QVERIFY2(bench.reply(0, {{"value"_q, 1}}), "later replies are handled normally");
    }

    void stopEndsTheRequestAndFinishesWithTrueWhateverItIsTold_data()
    {
        QTest::addColumn<bool>("told");
        QTest::newRow("true") << true;
        QTest::newRow("false") << false;
    }
    void stopEndsTheRequestAndFinishesWithTrueWhateverItIsTold()
    {
        QFETCH(bool, told);
        RecordedCommand<DCmdListenToAll> bench;
        bench.record.nextInstructionId = 42;
        bench.command.commandExecute();
        bench.record.calls.clear();
        bool ok = told;
        bench.command.finishTheCommand(ok);
        QCOMPARE(bench.record.calls, QStringList({"stopTheInstruction 42"_q, "commandFinish"_q}));
        QCOMPARE(bench.record.finishes, QVector<bool>({true}));
        QVERIFY(bench.record.finishFlags.first() != &ok);
        QCOMPARE(ok, told);
        bench.command.finishTheCommand(ok);
        QCOMPARE(bench.record.stoppedInstructions, QVector<quint64>({42, 42}));
    }

    void stopBeforeAnyRequestOnlyFinishes()
    {
        RecordedCommand<DCmdListenToAll> bench;
        bool ok = false;
        bench.command.finishTheCommand(ok);
        QCOMPARE(bench.record.calls, QStringList({"commandFinish"_q}));
        QCOMPARE(bench.record.finishes, QVector<bool>({true}));
    }

    void instancesOfOnePrototypeStopOnlyTheirOwnRequest()
    {
        DCmdListenToAll prototype(nullptr);
        const QSharedPointer<ICommand> first = prototype.createCommand({});
        const QSharedPointer<ICommand> second = prototype.createCommand({});
        CommandRecord& firstRecord = recordOf(dynamic_cast<DCmdListenToAll&>(*first));
        CommandRecord& secondRecord = recordOf(dynamic_cast<DCmdListenToAll&>(*second));
        firstRecord.nextInstructionId = 3;
        secondRecord.nextInstructionId = 7;
        QVERIFY(first->commandExecute());
        QVERIFY(second->commandExecute());
        bool ok = true;
        second->finishTheCommand(ok);
        QVERIFY(firstRecord.stoppedInstructions.isEmpty());
        QCOMPARE(secondRecord.stoppedInstructions, QVector<quint64>({7}));
        first->finishTheCommand(ok);
        QCOMPARE(firstRecord.stoppedInstructions, QVector<quint64>({3}));
    }
};

QTEST_GUILESS_MAIN(TestListenToAll)
#include "test_d_cmd_listenToAll.moc"
