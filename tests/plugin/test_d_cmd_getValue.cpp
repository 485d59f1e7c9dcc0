#include "command_checks.h"
#include "d_cmd_getValue.h"
#include "report_check.h"

#include <limits>

using namespace command_checks;

class TestGetValue : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void addsNothingToTheMetaObjectOfItsBase()
    {
        metaObjectHasNothingOfItsOwn<DCmdGetValue>("DCmdGetValue"_q);
    }

    void constructionDeclaresInOrder()
    {
        constructionMakesTheCalls<DCmdGetValue>({"construct getValue"_q, "setDescription"_q,
                                                 "declareAParameter channel"_q, "declareAResult value"_q});
    }

    void declaresNameDescriptionParameterAndResult()
    {
        const RecordedCommand<DCmdGetValue> bench;
        QCOMPARE(bench.record.name, "getValue"_q);
        QVERIFY(!bench.record.isStoppable);
        QCOMPARE(bench.record.description, "Get the value of a GPIO pin"_q);
        compareDeclarations(bench.record.parameters, {{"channel"_q, "strg"_q, "Channel"_q, QVariant()}});
        compareDeclarations(bench.record.results, {{"value"_q, "ui16"_q, "Value"_q, QVariant()}});
    }

    void createCommandMakesAWorkingInstance()
    {
        command_checks::createCommandMakesAWorkingInstance<DCmdGetValue>();
    }

    void workingInstanceDiesWithItsSharedPointer() { sharedPointerOfCreateCommandIsTheOwner<DCmdGetValue>(); }

    void refusalOfTheBaseIsSilent() { baseRefusalIsSilent<DCmdGetValue>(onChannel("START"_q)); }

    void requestNamesTheLinkedDeviceChannel()
    {
        RecordedCommand<DCmdGetValue> bench(onChannel("START"_q));
        bench.linkChannel();
        const MessageLog log;
        QVERIFY(bench.command.commandExecute());
        QCOMPARE(bench.record.calls, QStringList({"commandExecute"_q, "getParameterValue channel"_q,
                                                  "getLinkedChannel START"_q, "addInstruction getValue"_q}));
        const CommandRecord::Instruction& request = bench.record.instructions.first();
        QCOMPARE(request.target, "device"_q);
        QCOMPARE(request.timeoutMs, 4000);
        COMPARE_EXACTLY(request.arguments, QVariantMap({{"channel"_q, "line0"_q}}));
        QCOMPARE(log.texts(), QStringList());
    }

    void directionIsNotLookedAt_data()
    {
        QTest::addColumn<QString>("direction");
        QTest::newRow("in") << "in"_q;
        QTest::newRow("out") << "out"_q;
    }
    void directionIsNotLookedAt()
    {
        QFETCH(QString, direction);
        RecordedCommand<DCmdGetValue> bench(onChannel("START"_q));
        bench.linkChannel(direction);
        QVERIFY(bench.command.commandExecute());
        QCOMPARE(bench.record.instructions.size(), 1);
        QVERIFY(bench.record.calls.filter("getInfoFromChannel"_q).isEmpty());
    }

    void invocationWithoutAChannelIsOnlyReported_data() { addRowsWithoutAChannel(); }
    void invocationWithoutAChannelIsOnlyReported()
    {
        QFETCH(QVariantMap, arguments);
        RecordedCommand<DCmdGetValue> bench(arguments);
        const MessageLog log;
        QVERIFY(bench.command.commandExecute());
        COMPARE_ONE_REPORT(log, bench.command, "d_cmd_getValue"_q, "ERROR: Tool channel is empty"_q);
        QCOMPARE(bench.record.calls, QStringList({"commandExecute"_q, "getParameterValue channel"_q}));
    }

    void unlinkedChannelIsOnlyReported()
    {
        RecordedCommand<DCmdGetValue> bench(onChannel("NOWHERE"_q));
        const MessageLog log;
        QVERIFY(bench.command.commandExecute());
        COMPARE_ONE_REPORT(log, bench.command, "d_cmd_getValue"_q,
                           "ERROR: Tool channel:  \"NOWHERE\"  is not linked to device"_q);
        QCOMPARE(bench.record.calls, QStringList({"commandExecute"_q, "getParameterValue channel"_q,
                                                  "getLinkedChannel NOWHERE"_q}));
    }

    void replyStoresTheLow16Bits_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<int>("stored");
        QTest::newRow("one") << QVariant(1) << 1;
        QTest::newRow("zero") << QVariant(0) << 0;
        QTest::newRow("a text") << QVariant("7"_q) << 7;
        QTest::newRow("a text that is no number") << QVariant("high"_q) << 0;
        QTest::newRow("a bool") << QVariant(true) << 1;
        QTest::newRow("the highest") << QVariant(65535) << 65535;
        QTest::newRow("65536") << QVariant(65536) << 0;
        QTest::newRow("65537") << QVariant(65537) << 1;
        QTest::newRow("70000") << QVariant(70000) << 4464;
        QTest::newRow("minus one") << QVariant(-1) << 65535;
        QTest::newRow("the lowest int") << QVariant(std::numeric_limits<int>::min()) << 0;
        QTest::newRow("the highest unsigned") << QVariant(std::numeric_limits<uint>::max()) << 65535;
        QTest::newRow("an invalid value") << QVariant() << 0;
    }
    void replyStoresTheLow16Bits()
    {
        QFETCH(QVariant, value);
        QFETCH(int, stored);
        RecordedCommand<DCmdGetValue> bench(onChannel("START"_q));
        bench.linkChannel();
        bench.command.commandExecute();
        const MessageLog log;
        QVERIFY(bench.reply(0, {{"value"_q, value}}));
        QCOMPARE(bench.record.updatedResults.size(), 1);
        QCOMPARE(bench.record.updatedResults.first().name, "value"_q);
        COMPARE_EXACTLY(bench.record.updatedResults.first().value, QVariant(stored));
        QCOMPARE(log.texts(), QStringList());
    }

    void replyIsAcceptedAsTheUpdateOfTheResultIs()
    {
        RecordedCommand<DCmdGetValue> bench(onChannel("START"_q));
        bench.linkChannel();
        bench.command.commandExecute();
        bench.record.updateAnswer = false;
        QVERIFY(!bench.reply(0, {{"value"_q, 1}}));
        bench.record.updateAnswer = true;
        QVERIFY(bench.reply(0, {{"value"_q, 1}}));
    }

    void identifierOfTheInstructionIsNotLookedAt()
    {
        RecordedCommand<DCmdGetValue> bench(onChannel("START"_q));
        bench.linkChannel();
        bench.command.commandExecute();
        QVERIFY(bench.replyAs(0, 0, {{"value"_q, 1}}));
        QCOMPARE(bench.record.updatedResults.size(), 1);
    }

    void replyWithoutValueIsRejected_data()
    {
        QTest::addColumn<QVariantMap>("reply");
        QTest::newRow("empty") << QVariantMap();
        QTest::newRow("another case") << QVariantMap({{"Value"_q, 1}});
        QTest::newRow("another key") << QVariantMap({{"values"_q, QVariantList({1})}});
    }
    void replyWithoutValueIsRejected()
    {
        QFETCH(QVariantMap, reply);
        RecordedCommand<DCmdGetValue> bench(onChannel("START"_q));
        bench.linkChannel();
        bench.command.commandExecute();
        const MessageLog log;
        QVERIFY(!bench.reply(0, reply));
        COMPARE_ONE_REPORT(log, bench.command, "d_cmd_getValue"_q, "ERROR: Invalid reply format"_q);
        QVERIFY(bench.record.updatedResults.isEmpty());
    }

    void endingIsLeftToTheBase()
    {
        RecordedCommand<DCmdGetValue> bench;
        bool ok = false;
        bench.command.finishTheCommand(ok);
        QCOMPARE(bench.record.calls, QStringList({"finishTheCommand"_q, "commandFinish"_q}));
    }

    void instancesOfOnePrototypeShareNothing()
    {
        DCmdGetValue prototype(nullptr);
        const QSharedPointer<ICommand> first = prototype.createCommand(onChannel("START"_q));
        const QSharedPointer<ICommand> second = prototype.createCommand(onChannel("STOP"_q));
        CommandRecord& firstRecord = recordOf(dynamic_cast<DCmdGetValue&>(*first));
        CommandRecord& secondRecord = recordOf(dynamic_cast<DCmdGetValue&>(*second));
        firstRecord.channels.insert("START"_q, {"line0"_q, {}});
        secondRecord.channels.insert("STOP"_q, {"line1"_q, {}});
        QVERIFY(first->commandExecute());
        QVERIFY(second->commandExecute());
        QVERIFY(first->setReply(firstRecord.instructions.first().id, {{"value"_q, 1}}));
        QCOMPARE(firstRecord.updatedResults.size(), 1);
        QVERIFY(secondRecord.updatedResults.isEmpty());
        QCOMPARE(secondRecord.instructions.first().arguments, QVariantMap({{"channel"_q, "line1"_q}}));
        QVERIFY(recordOf(prototype).instructions.isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestGetValue)
#include "test_d_cmd_getValue.moc"
