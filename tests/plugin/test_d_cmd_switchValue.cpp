#include "command_checks.h"
#include "d_cmd_switchValue.h"
#include "report_check.h"

using namespace command_checks;

namespace {

/// Opens the operation that the command's own flow does not use.
class OpenedSwitchValue : public DCmdSwitchValue
{
public:
    using DCmdSwitchValue::DCmdSwitchValue;
    using DCmdSwitchValue::sendValue;
};

} // namespace

class TestSwitchValue : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void addsNothingToTheMetaObjectOfItsBase()
    {
        metaObjectHasNothingOfItsOwn<DCmdSwitchValue>("DCmdSwitchValue"_q);
    }

    void constructionDeclaresInOrder()
    {
        constructionMakesTheCalls<DCmdSwitchValue>({"construct switchValue"_q, "setDescription"_q,
                                                    "declareAParameter channel"_q,
                                                    "declareAResult doneOk"_q});
    }

    void declaresNameDescriptionParameterAndResult()
    {
        const RecordedCommand<DCmdSwitchValue> bench;
        QCOMPARE(bench.record.name, "switchValue"_q);
        QVERIFY(!bench.record.isStoppable);
        QCOMPARE(bench.record.description, "Set the value of a GPIO pin"_q);
        compareDeclarations(bench.record.parameters, {{"channel"_q, "strg"_q, "Channel"_q, QVariant()}});
        compareDeclarations(bench.record.results, {{"doneOk"_q, "bool"_q, "Job done"_q, QVariant(false)}});
    }

    void createCommandMakesAWorkingInstance()
    {
        command_checks::createCommandMakesAWorkingInstance<DCmdSwitchValue>();
    }

    void workingInstanceDiesWithItsSharedPointer()
    {
        sharedPointerOfCreateCommandIsTheOwner<DCmdSwitchValue>();
    }

    void refusalOfTheBaseIsSilent() { baseRefusalIsSilent<DCmdSwitchValue>(onChannel("START"_q)); }

    void invocationWithoutAChannelIsRefused_data() { addRowsWithoutAChannel(); }
    void invocationWithoutAChannelIsRefused()
    {
        QFETCH(QVariantMap, arguments);
        RecordedCommand<DCmdSwitchValue> bench(arguments);
        const MessageLog log;
        QVERIFY(!bench.command.commandExecute());
        COMPARE_ONE_REPORT(log, bench.command, "d_cmd_switchValue"_q, "ERROR: Channel not managed"_q);
        QCOMPARE(bench.record.calls, QStringList({"commandExecute"_q, "getParameterValue channel"_q}));
    }

    void channelThatIsNoOutputIsRefusedBeforeAnythingIsRead_data() { addRowsOfOtherDirections(); }
    void channelThatIsNoOutputIsRefusedBeforeAnythingIsRead()
    {
        QFETCH(QVariant, direction);
        RecordedCommand<DCmdSwitchValue> bench(onChannel("START"_q));
        const MessageLog log;
        otherDirectionIsRefused(bench, direction);
        COMPARE_ONE_REPORT(log, bench.command, "d_cmd_switchValue"_q,
                           "ERROR: Trying to write on an non output io"_q);
    }

    void executeReadsTheLinkedDeviceChannel()
    {
        RecordedCommand<DCmdSwitchValue> bench(onChannel("START"_q));
        bench.linkChannel("out"_q);
        const MessageLog log;
        QVERIFY(bench.command.commandExecute());
        QCOMPARE(bench.record.calls, QStringList({"commandExecute"_q, "getParameterValue channel"_q,
                                                  "getInfoFromChannel START direction as QString"_q,
                                                  "getLinkedChannel START"_q, "addInstruction getValue"_q}));
        const CommandRecord::Instruction& sent = bench.record.instructions.first();
        QCOMPARE(sent.target, "device"_q);
        QCOMPARE(sent.timeoutMs, 4000);
        COMPARE_EXACTLY(sent.arguments, QVariantMap({{"channel"_q, "line0"_q}}));
        QCOMPARE(log.texts(), QStringList());
    }

    void unlinkedOutputIsReadAndWrittenWithAnEmptyChannel()
    {
        RecordedCommand<DCmdSwitchValue> bench(onChannel("START"_q));
        bench.record.channels.insert("START"_q, {""_q, {{"direction"_q, "out"_q}}});
        const MessageLog log;
        QVERIFY(bench.command.commandExecute());
        QVERIFY(bench.reply(0, {{"value"_q, 0}}));
        COMPARE_EXACTLY(bench.record.instructions.at(0).arguments, QVariantMap({{"channel"_q, ""_q}}));
        COMPARE_EXACTLY(bench.record.instructions.at(1).arguments,
                        QVariantMap({{"channel"_q, ""_q}, {"values"_q, 1}}));
        QCOMPARE(log.texts(), QStringList());
    }

    void readReplyWritesTheInverse_data()
    {
        QTest::addColumn<QVariant>("read");
        QTest::addColumn<int>("written");
        QTest::newRow("the number 0") << QVariant(0) << 1;
        QTest::newRow("the boolean false") << QVariant(false) << 1;
        QTest::newRow("an empty text") << QVariant(""_q) << 1;
        QTest::newRow("the text 0") << QVariant("0"_q) << 1;
        QTest::newRow("the text false") << QVariant("false"_q) << 1;
        QTest::newRow("the text FALSE") << QVariant("FALSE"_q) << 1;
        QTest::newRow("an invalid value") << QVariant() << 1;
        QTest::newRow("the number 1") << QVariant(1) << 0;
        QTest::newRow("the number 5") << QVariant(5) << 0;
        QTest::newRow("a negative number") << QVariant(-1) << 0;
        QTest::newRow("the boolean true") << QVariant(true) << 0;
        QTest::newRow("the text 1") << QVariant("1"_q) << 0;
        QTest::newRow("any other text") << QVariant("off"_q) << 0;
    }
    void readReplyWritesTheInverse()
    {
        QFETCH(QVariant, read);
        QFETCH(int, written);
        RecordedCommand<DCmdSwitchValue> bench(onChannel("START"_q));
        bench.linkChannel("out"_q);
        bench.command.commandExecute();
        const MessageLog log;
        QVERIFY(bench.reply(0, {{"value"_q, read}}));
        QCOMPARE(bench.record.instructions.size(), 2);
        const CommandRecord::Instruction& sent = bench.record.instructions.at(1);
        QCOMPARE(sent.target, "device"_q);
        QCOMPARE(sent.name, "setValues"_q);
        QCOMPARE(sent.timeoutMs, 4000);
        COMPARE_EXACTLY(sent.arguments, QVariantMap({{"channel"_q, "line0"_q}, {"values"_q, written}}));
        QVERIFY(bench.record.updatedResults.isEmpty());
        QCOMPARE(log.texts(), QStringList());
    }

    void readReplyIsTakenUnderAnyIdentifier()
    {
        RecordedCommand<DCmdSwitchValue> bench(onChannel("START"_q));
        bench.linkChannel("out"_q);
        bench.command.commandExecute();
        QVERIFY(bench.replyAs(0, 0, {{"value"_q, 0}}));
        QCOMPARE(bench.record.instructions.size(), 2);
    }

    void readReplyWithoutValueIsRejectedAndWritesNothing_data()
    {
        QTest::addColumn<QVariantMap>("reply");
        QTest::newRow("empty") << QVariantMap();
        QTest::newRow("another case") << QVariantMap({{"VALUE"_q, 1}});
        QTest::newRow("another key") << QVariantMap({{"values"_q, 1}});
    }
    void readReplyWithoutValueIsRejectedAndWritesNothing()
    {
        QFETCH(QVariantMap, reply);
        RecordedCommand<DCmdSwitchValue> bench(onChannel("START"_q));
        bench.linkChannel("out"_q);
        bench.command.commandExecute();
        const MessageLog log;
        QVERIFY(!bench.reply(0, reply));
        COMPARE_ONE_REPORT(log, bench.command, "d_cmd_switchValue"_q, "ERROR: Invalid reply format"_q);
        QCOMPARE(bench.record.instructions.size(), 1);
        QVERIFY(bench.record.updatedResults.isEmpty());
    }

    void writeReplyReportsDone()
    {
        RecordedCommand<DCmdSwitchValue> bench(onChannel("START"_q));
        bench.linkChannel("out"_q);
        bench.command.commandExecute();
        bench.reply(0, {{"value"_q, 1}});
        QVERIFY(bench.reply(1, {}));
        QCOMPARE(bench.record.updatedResults.size(), 1);
        QCOMPARE(bench.record.updatedResults.first().name, "doneOk"_q);
        COMPARE_EXACTLY(bench.record.updatedResults.first().value, QVariant(true));
        bench.record.updateAnswer = false;
        QVERIFY2(!bench.reply(1, {}), "the answer is that of the update");
    }

    void writeReplyWithoutAnIdentifierIsRejected()
    {
        RecordedCommand<DCmdSwitchValue> bench(onChannel("START"_q));
        bench.linkChannel("out"_q);
        bench.command.commandExecute();
        bench.reply(0, {{"value"_q, 1}});
        const MessageLog log;
        QVERIFY(!bench.replyAs(0, 1, {{"values"_q, 0}}));
        QVERIFY(bench.record.updatedResults.isEmpty());
        QCOMPARE(log.texts(), QStringList());
    }

    void valueCanBeSentOnItsOwn_data()
    {
        QTest::addColumn<int>("value");
        QTest::newRow("1") << 1;
        QTest::newRow("the highest") << 65535;
    }
    void valueCanBeSentOnItsOwn()
    {
        QFETCH(int, value);
        RecordedCommand<OpenedSwitchValue> bench(onChannel("START"_q));
        bench.linkChannel("out"_q);
        bench.command.commandExecute();
        bench.command.sendValue(static_cast<quint16>(value));
        QCOMPARE(bench.record.instructions.size(), 2);
        const CommandRecord::Instruction& sent = bench.record.instructions.at(1);
        QCOMPARE(sent.target, "device"_q);
        QCOMPARE(sent.name, "setValues"_q);
        QCOMPARE(sent.timeoutMs, 4000);
        COMPARE_EXACTLY(sent.arguments, QVariantMap({{"channel"_q, "line0"_q}, {"values"_q, value}}));
        QVERIFY(bench.reply(1, {}));
        QCOMPARE(bench.record.updatedResults.first().name, "doneOk"_q);
    }

    void finishPassesItsArgumentOn_data()
    {
        QTest::addColumn<bool>("ok");
        QTest::newRow("true") << true;
        QTest::newRow("false") << false;
    }
    void finishPassesItsArgumentOn()
    {
        QFETCH(bool, ok);
        RecordedCommand<DCmdSwitchValue> bench;
        bench.command.finishTheCommand(ok);
        QCOMPARE(bench.record.calls, QStringList({"commandFinish"_q}));
        QCOMPARE(bench.record.finishes, QVector<bool>({ok}));
        QCOMPARE(bench.record.finishFlags, QVector<const bool*>({&ok}));
    }

    void instancesOfOnePrototypeShareNothing()
    {
        DCmdSwitchValue prototype(nullptr);
        const QSharedPointer<ICommand> first = prototype.createCommand(onChannel("START"_q));
        const QSharedPointer<ICommand> second = prototype.createCommand(onChannel("START"_q));
        CommandRecord& firstRecord = recordOf(dynamic_cast<DCmdSwitchValue&>(*first));
        CommandRecord& secondRecord = recordOf(dynamic_cast<DCmdSwitchValue&>(*second));
        firstRecord.channels.insert("START"_q, {"line0"_q, {{"direction"_q, "out"_q}}});
        secondRecord.channels.insert("START"_q, {"line1"_q, {{"direction"_q, "out"_q}}});
        QVERIFY(first->commandExecute());
        QVERIFY(second->commandExecute());
        QVERIFY(first->setReply(firstRecord.instructions.first().id, {{"value"_q, 0}}));
        QCOMPARE(firstRecord.instructions.last().arguments.value("channel"_q), QVariant("line0"_q));
        QCOMPARE(secondRecord.instructions.size(), 1);
        QVERIFY(recordOf(prototype).instructions.isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestSwitchValue)
#include "test_d_cmd_switchValue.moc"
