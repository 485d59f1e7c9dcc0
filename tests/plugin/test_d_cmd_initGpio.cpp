#include "command_checks.h"
#include "d_cmd_initGpio.h"

using namespace command_checks;

namespace {

/// What was read of the two values below, in order.
QStringList readings;

/// An entry of the section, and the direction in it, which note that they are read.
struct NotingEntry
{
    QString id;
};
struct NotingDirection
{
    QString id;
};

} // namespace

Q_DECLARE_METATYPE(NotingEntry)
Q_DECLARE_METATYPE(NotingDirection)

namespace {

/// Opens what the command's own flow does not call, and its count.
class OpenedInitGpio : public DCmdInitGpio
{
public:
    using DCmdInitGpio::DCmdInitGpio;
    using DCmdInitGpio::m_pendingReplies;
    using DCmdInitGpio::onSetValuesReply;
    using DCmdInitGpio::sendChannelValues;
};

QVariant channelsWithDirections()
{
    return QVariantList({QVariantMap({{"id"_q, "A"_q}, {"direction"_q, "out"_q}}),
                         QVariantMap({{"id"_q, "B"_q}, {"direction"_q, "in"_q}}),
                         QVariantMap({{"id"_q, "C"_q}})});
}

} // namespace

class TestInitGpio : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void addsNothingToTheMetaObjectOfItsBase()
    {
        metaObjectHasNothingOfItsOwn<DCmdInitGpio>("DCmdInitGpio"_q);
    }

    void constructionDeclaresInOrder()
    {
        constructionMakesTheCalls<DCmdInitGpio>(
            {"construct init"_q, "setDescription"_q, "declareAResult doneOk"_q});
    }

    void declaresNameDescriptionAndResultButNoParameter()
    {
        const RecordedCommand<OpenedInitGpio> bench;
        QCOMPARE(bench.record.name, "init"_q);
        QVERIFY(!bench.record.isStoppable);
        QCOMPARE(bench.record.description, "Set initia values of a GPIO pin"_q);
        compareDeclarations(bench.record.parameters, {});
        compareDeclarations(bench.record.results, {{"doneOk"_q, "bool"_q, "Job done"_q, QVariant(false)}});
        QCOMPARE(bench.command.m_pendingReplies, 0);
    }

    void createCommandMakesAWorkingInstance()
    {
        command_checks::createCommandMakesAWorkingInstance<DCmdInitGpio>();
    }

    void workingInstanceDiesWithItsSharedPointer() { sharedPointerOfCreateCommandIsTheOwner<DCmdInitGpio>(); }

    void executeReportsDoneThenCountsTheChannels_data()
    {
        QTest::addColumn<QVariant>("section");
        QTest::addColumn<bool>("baseAnswer");
        QTest::addColumn<int>("count");
        const QVariant three = channelsWithDirections();
        QTest::newRow("three channels") << three << true << 3;
        QTest::newRow("a refusal of the base stops nothing") << three << false << 3;
        QTest::newRow("no section") << QVariant() << true << 0;
        QTest::newRow("no section and a refusal") << QVariant() << false << 0;
        QTest::newRow("an empty list") << QVariant(QVariantList()) << true << 0;
        QTest::newRow("entries that are no maps") << QVariant(QVariantList({1, "out"_q})) << true << 2;
        QTest::newRow("a list of texts") << QVariant(QStringList({"A"_q, "B"_q})) << true << 2;
        QTest::newRow("a map") << QVariant(QVariantMap({{"id"_q, "A"_q}})) << true << 0;
        QTest::newRow("a number") << QVariant(3) << true << 0;
    }
    void executeReportsDoneThenCountsTheChannels()
    {
        QFETCH(QVariant, section);
        QFETCH(bool, baseAnswer);
        QFETCH(int, count);
        RecordedCommand<OpenedInitGpio> bench;
        bench.record.sections.insert("channels"_q, section);
        bench.record.executeAnswer = baseAnswer;
        const MessageLog log;
        QCOMPARE(bench.command.commandExecute(), baseAnswer);
        QCOMPARE(bench.record.calls, QStringList({"commandExecute"_q, "commandUpdateResult doneOk"_q,
                                                  "getParametersSection channels"_q}));
        QCOMPARE(bench.record.updatedResults.size(), 1);
        COMPARE_EXACTLY(bench.record.updatedResults.first().value, QVariant(true));
        QCOMPARE(bench.command.m_pendingReplies, count);
        QCOMPARE(log.texts(), QStringList());
    }

    void executeReadsTheDirectionsInTheOrderOfTheList()
    {
        QMetaType::registerConverter<NotingEntry, QVariantMap>([](const NotingEntry& entry) {
            readings.append("map of "_q + entry.id);
            return QVariantMap({{"direction"_q, QVariant::fromValue(NotingDirection{entry.id})}});
        });
        QMetaType::registerConverter<NotingDirection, QString>([](const NotingDirection& direction) {
            readings.append("direction of "_q + direction.id);
            return direction.id == "B"_q ? "out"_q : "in"_q;
        });
        RecordedCommand<OpenedInitGpio> bench;
        bench.record.sections.insert("channels"_q, QVariantList({
                                                       QVariant::fromValue(NotingEntry{"A"_q}),
                                                       QVariant::fromValue(NotingEntry{"B"_q}),
                                                       QVariantMap({{"id"_q, "without a direction"_q}}),
                                                       QVariant::fromValue(NotingEntry{"C"_q}),
                                                   }));
        QVERIFY(bench.command.commandExecute());
        QCOMPARE(readings, QStringList({"map of A"_q, "direction of A"_q, "map of B"_q, "direction of B"_q,
                                        "map of C"_q, "direction of C"_q}));
        QCOMPARE(bench.command.m_pendingReplies, 4);
        QVERIFY(bench.record.instructions.isEmpty());
    }

    void executeDoesNotLookAtTheAnswerOfTheUpdate()
    {
        RecordedCommand<OpenedInitGpio> bench;
        bench.record.updateAnswer = false;
        QVERIFY(bench.command.commandExecute());
    }

    void requestFunctionSendsTheValue_data()
    {
        QTest::addColumn<int>("value");
        QTest::addColumn<QString>("deviceChannel");
        QTest::addColumn<bool>("expectReply");
        QTest::newRow("with its reply") << 1 << "line0"_q << true;
        QTest::newRow("without its reply") << 65535 << "line0"_q << false;
        QTest::newRow("no channel") << 0 << ""_q << true;
    }
    void requestFunctionSendsTheValue()
    {
        QFETCH(int, value);
        QFETCH(QString, deviceChannel);
        QFETCH(bool, expectReply);
        RecordedCommand<OpenedInitGpio> bench;
        bench.command.sendChannelValues(static_cast<quint16>(value), deviceChannel, expectReply);
        QCOMPARE(bench.record.calls, QStringList({"addInstruction setValues"_q}));
        const CommandRecord::Instruction& sent = bench.record.instructions.first();
        QCOMPARE(sent.target, "device"_q);
        QCOMPARE(sent.timeoutMs, 4000);
        COMPARE_EXACTLY(sent.arguments, QVariantMap({{"channel"_q, deviceChannel}, {"values"_q, value}}));
        QCOMPARE(sent.onReply.empty(), !expectReply);
    }

    void replyOfTheRequestFunctionIsCounted()
    {
        RecordedCommand<OpenedInitGpio> bench;
        bench.command.m_pendingReplies = 1;
        bench.command.sendChannelValues(1, "line0"_q, true);
        QVERIFY(bench.reply(0, {}));
        QCOMPARE(bench.command.m_pendingReplies, 0);
        QCOMPARE(bench.record.updatedResults.size(), 1);
    }

    void lastCountedReplyReportsDone_data()
    {
        QTest::addColumn<bool>("updateAnswer");
        QTest::newRow("accepted") << true;
        QTest::newRow("not accepted") << false;
    }
    void lastCountedReplyReportsDone()
    {
        QFETCH(bool, updateAnswer);
        RecordedCommand<OpenedInitGpio> bench;
        bench.record.updateAnswer = updateAnswer;
        bench.command.m_pendingReplies = 2;
        const MessageLog log;
        QVERIFY(bench.command.onSetValuesReply(1, {{"anything"_q, 1}}));
        QCOMPARE(bench.command.m_pendingReplies, 1);
        QVERIFY(bench.record.updatedResults.isEmpty());
        QCOMPARE(bench.command.onSetValuesReply(2, {}), updateAnswer);
        QCOMPARE(bench.command.m_pendingReplies, 0);
        QCOMPARE(bench.record.updatedResults.size(), 1);
        QCOMPARE(bench.record.updatedResults.first().name, "doneOk"_q);
        COMPARE_EXACTLY(bench.record.updatedResults.first().value, QVariant(true));
        QCOMPARE(log.texts(), QStringList());
    }

    void replyWithoutAnIdentifierIsNotCounted()
    {
        RecordedCommand<OpenedInitGpio> bench;
        bench.command.m_pendingReplies = 2;
        QVERIFY(!bench.command.onSetValuesReply(0, {}));
        QCOMPARE(bench.command.m_pendingReplies, 2);
        QVERIFY(bench.record.updatedResults.isEmpty());
    }

    void replyWithoutAnIdentifierReportsDoneWhenNoneIsAwaited()
    {
        RecordedCommand<OpenedInitGpio> bench;
        QVERIFY(bench.command.onSetValuesReply(0, {}));
        QCOMPARE(bench.command.m_pendingReplies, 0);
        QCOMPARE(bench.record.updatedResults.size(), 1);
    }

    void replyThatNobodyAwaitsTakesTheCountBelowZero()
    {
        RecordedCommand<OpenedInitGpio> bench;
        QVERIFY(bench.command.onSetValuesReply(1, {}));
        QCOMPARE(bench.command.m_pendingReplies, -1);
        QVERIFY(bench.record.updatedResults.isEmpty());
    }

    void endingIsLeftToTheBase()
    {
        RecordedCommand<OpenedInitGpio> bench;
        bool ok = false;
        bench.command.finishTheCommand(ok);
        QCOMPARE(bench.record.calls, QStringList({"finishTheCommand"_q, "commandFinish"_q}));
    }

    void instancesOfOnePrototypeShareNothing()
    {
        DCmdInitGpio prototype(nullptr);
        const QSharedPointer<ICommand> first = prototype.createCommand({});
        const QSharedPointer<ICommand> second = prototype.createCommand({});
        QVERIFY(first->commandExecute());
        QCOMPARE(recordOf(dynamic_cast<DCmdInitGpio&>(*first)).updatedResults.size(), 1);
        QVERIFY(recordOf(dynamic_cast<DCmdInitGpio&>(*second)).updatedResults.isEmpty());
        QVERIFY(recordOf(prototype).updatedResults.isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestInitGpio)
#include "test_d_cmd_initGpio.moc"
