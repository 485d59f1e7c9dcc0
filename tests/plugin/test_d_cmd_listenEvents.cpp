#include "command_checks.h"
#include "d_cmd_listenEvents.h"
#include "report_check.h"

#include <limits>

using namespace command_checks;

namespace {

constexpr int c_highestInt = std::numeric_limits<int>::max();
constexpr int c_lowestInt = std::numeric_limits<int>::min();

/// Opens the detection.
class OpenedListenEvents : public DCmdListenEvents
{
public:
    using DCmdListenEvents::DCmdListenEvents;
    using DCmdListenEvents::isEventDetected;
};

QVariantMap listening(const QString& edge)
{
    return {{"channel"_q, "START"_q}, {"edge"_q, edge}};
}

QVariantMap oneReading(const QVariant& reading)
{
    return {{"values"_q, QVariantList({reading})}};
}

/// A startListening command that has sent its request.
class ListeningBench : public RecordedCommand<DCmdListenEvents>
{
public:
    explicit ListeningBench(const QString& edge)
        : RecordedCommand(listening(edge))
    {
        linkChannel();
        command.commandExecute();
    }

    QVariantMap lastReply() const { return record.replies.value(record.replies.size() - 1); }
};

} // namespace

class TestListenEvents : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void addsNothingToTheMetaObjectOfItsBase()
    {
        metaObjectHasNothingOfItsOwn<DCmdListenEvents>("DCmdListenEvents"_q);
    }

    void constructionDeclaresInOrder()
    {
        constructionMakesTheCalls<DCmdListenEvents>(
            {"construct startListening"_q, "setDescription"_q, "declareAParameter channel"_q,
             "declareAParameter edge"_q, "declareAResult value"_q, "declareAResult lastValue"_q});
    }

    void declaresNameDescriptionParametersAndResults()
    {
        const RecordedCommand<DCmdListenEvents> bench;
        QCOMPARE(bench.record.name, "startListening"_q);
        QVERIFY(bench.record.isStoppable);
        QCOMPARE(bench.record.stopName, "stopListening"_q);
        QCOMPARE(bench.record.description, "Listen events from the gpio channel"_q);
        compareDeclarations(bench.record.parameters,
                            {{"channel"_q, "strg"_q, "Channel"_q, QVariant()},
                             {"edge"_q, "strg"_q,
                              "Edge detection mode: RE: Rising Edge, FE: falling Edge, HL: hight level, "
                              "LL: low level, default: déactivated"_q,
                              QVariant(""_q)}});
        compareDeclarations(bench.record.results, {{"value"_q, "ui16"_q, "Value"_q, QVariant()},
                                                   {"lastValue"_q, "ui16"_q, "Last value"_q, QVariant()}});
    }

    void createCommandMakesAWorkingInstance()
    {
        command_checks::createCommandMakesAWorkingInstance<DCmdListenEvents>();
    }

    void workingInstanceDiesWithItsSharedPointer()
    {
        sharedPointerOfCreateCommandIsTheOwner<DCmdListenEvents>();
    }

    void refusalOfTheBaseIsSilent() { baseRefusalIsSilent<DCmdListenEvents>(listening("RE"_q)); }

    void invocationWithoutAChannelIsRefused_data() { addRowsWithoutAChannel(); }
    void invocationWithoutAChannelIsRefused()
    {
        QFETCH(QVariantMap, arguments);
        RecordedCommand<DCmdListenEvents> bench(arguments);
        const MessageLog log;
        QVERIFY(!bench.command.commandExecute());
        COMPARE_ONE_REPORT(log, bench.command, "d_cmd_listenEvents"_q, "ERROR: Channel not managed"_q);
        QCOMPARE(bench.record.calls, QStringList({"commandExecute"_q, "getParameterValue channel"_q}));
    }

    void requestNamesTheLinkedDeviceChannelOnly_data()
    {
        QTest::addColumn<QString>("edge");
        QTest::newRow("no edge mode") << ""_q;
        QTest::newRow("rising edge") << "RE"_q;
    }
    void requestNamesTheLinkedDeviceChannelOnly()
    {
        QFETCH(QString, edge);
        const MessageLog log;
        RecordedCommand<DCmdListenEvents> bench(listening(edge));
        bench.linkChannel("in"_q);
        QVERIFY(bench.command.commandExecute());
        QCOMPARE(bench.record.calls,
                 QStringList({"commandExecute"_q, "getParameterValue channel"_q, "getParameterValue edge"_q,
                              "getLinkedChannel START"_q, "addInstruction listenEvents"_q}));
        const CommandRecord::Instruction& sent = bench.record.instructions.first();
        QCOMPARE(sent.target, "device"_q);
        QCOMPARE(sent.timeoutMs, 4000);
        COMPARE_EXACTLY(sent.arguments, QVariantMap({{"channel"_q, "line0"_q}}));
        QCOMPARE(log.texts(), QStringList());
    }

    void unlinkedChannelIsListenedToAsItIs()
    {
        RecordedCommand<DCmdListenEvents> bench(listening("RE"_q));
        const MessageLog log;
        QVERIFY(bench.command.commandExecute());
        COMPARE_EXACTLY(bench.record.instructions.first().arguments, QVariantMap({{"channel"_q, QString()}}));
        QCOMPARE(log.texts(), QStringList());
    }

    void edgeModeReportsItsEventsBesideTheReadings_data()
    {
        using Readings = QVector<int>;
        using Events = QVector<bool>;
        QTest::addColumn<QString>("edge");
        QTest::addColumn<Readings>("readings");
        QTest::addColumn<Events>("events");
        QTest::newRow("rising edge") << "RE"_q << Readings{0, 1, 1, 0, 1}
                                     << Events{false, true, false, false, true};
        QTest::newRow("falling edge")
            << "FE"_q << Readings{1, 0, 0, 1, 0} << Events{false, true, false, false, true};
        QTest::newRow("high level") << "HL"_q << Readings{1, 2, 0} << Events{true, false, false};
        QTest::newRow("low level") << "LL"_q << Readings{1, 2, 0} << Events{false, false, true};
        QTest::newRow("high level again and again")
            << "HL"_q << Readings{1, 1, 1} << Events{true, true, true};
        QTest::newRow("negative levels") << "LL"_q << Readings{-1, -65536} << Events{false, false};
        QTest::newRow("rising by much")
            << "RE"_q << Readings{10, 40000, 65534, 65535} << Events{false, true, true, true};
        QTest::newRow("falling by much")
            << "FE"_q << Readings{65534, 40000, 10, 9} << Events{false, true, true, true};
        QTest::newRow("a rise after 65535 is a first reading")
            << "RE"_q << Readings{65535, 65536, 65537} << Events{false, false, true};
        QTest::newRow("a fall after 65535 is a first reading")
            << "FE"_q << Readings{65535, 0, 70000, 0} << Events{false, false, false, true};
        QTest::newRow("the mark keeps 16 bits")
            << "RE"_q << Readings{65536, 0, 1} << Events{false, false, true};
        QTest::newRow("a rise to the highest")
            << "RE"_q << Readings{5, c_highestInt, 0} << Events{false, true, false};
        QTest::newRow("no fall to the highest")
            << "FE"_q << Readings{5, c_highestInt, 0} << Events{false, false, false};
        QTest::newRow("a fall to the lowest")
            << "FE"_q << Readings{5, c_lowestInt, 0} << Events{false, true, false};
        QTest::newRow("a first reading below 0 is no fall") << "FE"_q << Readings{-5} << Events{false};
        QTest::newRow("a fall below 0") << "FE"_q << Readings{0, -5} << Events{false, true};
        QTest::newRow("after the lowest as after 0")
            << "RE"_q << Readings{c_lowestInt, 0, 1} << Events{false, false, true};
        QTest::newRow("minus one is no reading before")
            << "RE"_q << Readings{-1, 1, 2} << Events{false, false, true};
    }
    void edgeModeReportsItsEventsBesideTheReadings()
    {
        QFETCH(QString, edge);
        QFETCH(QVector<int>, readings);
        QFETCH(QVector<bool>, events);
        ListeningBench bench(edge);
        const MessageLog log;
        for (int i = 0; i < readings.size(); ++i) {
            QVERIFY(bench.reply(0, oneReading(readings.at(i))));
            QCOMPARE(bench.record.replies.size(), i + 1);
            COMPARE_EXACTLY(bench.lastReply(), QVariantMap({{"value"_q, QVariant(events.at(i))},
                                                            {"lastValue"_q, readings.at(i)}}));
        }
        QVERIFY(bench.record.updatedResults.isEmpty());
        QVERIFY(bench.record.finishes.isEmpty());
        QCOMPARE(log.texts(), QStringList());
    }

    void edgeModeTakesWhatAReadingCanBeMadeOf_data()
    {
        QTest::addColumn<QVariant>("values");
        QTest::addColumn<int>("reading");
        QTest::newRow("a number") << QVariant(5) << 5;
        QTest::newRow("an unsigned number") << QVariant(5U) << 5;
        QTest::newRow("a text") << QVariant("7"_q) << 7;
        QTest::newRow("a bool") << QVariant(true) << 1;
        QTest::newRow("65537") << QVariant(65537) << 1;
        QTest::newRow("minus one") << QVariant(-1) << 65535;
        QTest::newRow("a list of 65535") << QVariant(QVariantList({65535})) << 65535;
        QTest::newRow("a list of 65537") << QVariant(QVariantList({65537})) << 65537;
        QTest::newRow("a list of minus one") << QVariant(QVariantList({-1})) << -1;
        QTest::newRow("a list of a text") << QVariant(QVariantList({"12"_q})) << 12;
        QTest::newRow("a list of no number") << QVariant(QVariantList({"high"_q})) << 0;
        QTest::newRow("a list of the highest") << QVariant(QVariantList({c_highestInt})) << c_highestInt;
        QTest::newRow("a list of the lowest") << QVariant(QVariantList({c_lowestInt})) << c_lowestInt;
    }
    void edgeModeTakesWhatAReadingCanBeMadeOf()
    {
        QFETCH(QVariant, values);
        QFETCH(int, reading);
        ListeningBench bench("HL"_q);
        QVERIFY(bench.reply(0, {{"values"_q, values}}));
        COMPARE_EXACTLY(bench.lastReply().value("lastValue"_q), QVariant(reading));
        COMPARE_EXACTLY(bench.lastReply().value("value"_q), QVariant(reading == 1));
    }

    void otherEdgeTextReportsTheReadingItself_data()
    {
        QTest::addColumn<QVariantMap>("arguments");
        QTest::newRow("none") << onChannel("START"_q);
        QTest::newRow("empty") << listening(""_q);
        QTest::newRow("re") << listening("re"_q);
        QTest::newRow("padded") << listening(" RE"_q);
        QTest::newRow("a code") << listening("3"_q);
        QTest::newRow("unknown") << listening("BOTH"_q);
    }
    void otherEdgeTextReportsTheReadingItself()
    {
        QFETCH(QVariantMap, arguments);
        RecordedCommand<DCmdListenEvents> bench(arguments);
        bench.linkChannel();
        const MessageLog log;
        QVERIFY(bench.command.commandExecute());
        for (const int reading : {0, 1, 1}) {
            QVERIFY(bench.reply(0, oneReading(reading)));
            COMPARE_EXACTLY(bench.record.replies.last(),
                            QVariantMap({{"value"_q, reading}, {"lastValue"_q, reading}}));
        }
        QCOMPARE(bench.record.replies.size(), 3);
        QVERIFY(bench.record.updatedResults.isEmpty());
        QCOMPARE(log.texts(), QStringList());
    }

    void readingWithoutAnEdgeModeIsASigned16BitNumber_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<int>("reading");
        QTest::newRow("0") << QVariant(0) << 0;
        QTest::newRow("32767") << QVariant(32767) << 32767;
        QTest::newRow("32768") << QVariant(32768) << -32768;
        QTest::newRow("65535") << QVariant(65535) << -1;
        QTest::newRow("65536") << QVariant(65536) << 0;
        QTest::newRow("minus one") << QVariant(-1) << -1;
        QTest::newRow("a text") << QVariant("7"_q) << 7;
        QTest::newRow("no number") << QVariant("high"_q) << 0;
        QTest::newRow("the highest") << QVariant(c_highestInt) << -1;
        QTest::newRow("the lowest") << QVariant(c_lowestInt) << 0;
        QTest::newRow("the highest unsigned") << QVariant(std::numeric_limits<uint>::max()) << -1;
    }
    void readingWithoutAnEdgeModeIsASigned16BitNumber()
    {
        QFETCH(QVariant, value);
        QFETCH(int, reading);
        ListeningBench bench(""_q);
        QVERIFY(bench.reply(0, oneReading(value)));
        COMPARE_EXACTLY(bench.lastReply(), QVariantMap({{"value"_q, reading}, {"lastValue"_q, reading}}));
    }

    void malformedReplyIsRejected_data()
    {
        QTest::addColumn<QString>("edge");
        QTest::addColumn<QVariantMap>("reply");
        QTest::addColumn<QString>("text");
        const QString missing = "ERROR: reply does not contain values"_q;
        const QString size = "ERROR: reply does not have the correct size"_q;
        const QString format = "ERROR: reply does not have the correct format"_q;
        const auto values = [](const QVariant& value) { return QVariantMap({{"values"_q, value}}); };
        for (const QString& edge : {""_q, "RE"_q}) {
            const QByteArray mode = edge.isEmpty() ? "plain: " : "edge: ";
            QTest::newRow((mode + "empty").constData()) << edge << QVariantMap() << missing;
            QTest::newRow((mode + "another key").constData())
                << edge << QVariantMap({{"value"_q, 1}}) << missing;
            QTest::newRow((mode + "no element").constData()) << edge << values(QVariantList()) << size;
            QTest::newRow((mode + "two elements").constData())
                << edge << values(QVariantList({1, 0})) << size;
            QTest::newRow((mode + "a map").constData())
                << edge << values(QVariantMap({{"0"_q, 1}})) << format;
            QTest::newRow((mode + "texts").constData()) << edge << values(QStringList({"1"_q})) << format;
            QTest::newRow((mode + "an invalid value").constData()) << edge << values(QVariant()) << format;
        }
        QTest::newRow("plain: a single number") << ""_q << values(5) << format;
        QTest::newRow("plain: a single text") << ""_q << values("5"_q) << format;
    }
    void malformedReplyIsRejected()
    {
        QFETCH(QString, edge);
        QFETCH(QVariantMap, reply);
        QFETCH(QString, text);
        ListeningBench bench(edge);
        const MessageLog log;
        QVERIFY(!bench.reply(0, reply));
        COMPARE_ONE_REPORT(log, bench.command, "d_cmd_listenEvents"_q, text);
        QVERIFY(bench.record.replies.isEmpty());
        QVERIFY2(bench.reply(0, oneReading(1)), "later replies are handled normally");
    }

    void rejectedReplyLeavesTheReadingBeforeAsItWas()
    {
        ListeningBench bench("RE"_q);
        const MessageLog log;
        QVERIFY(bench.reply(0, oneReading(0)));
        QVERIFY(!bench.reply(0, {{"values"_q, QVariantList({5, 5})}}));
        QVERIFY(bench.reply(0, oneReading(1)));
        QCOMPARE(bench.lastReply().value("value"_q), QVariant(true));
    }

    void identifierOfTheInstructionIsNotLookedAt_data()
    {
        QTest::addColumn<QString>("edge");
        QTest::newRow("no edge mode") << ""_q;
        QTest::newRow("high level") << "HL"_q;
    }
    void identifierOfTheInstructionIsNotLookedAt()
    {
        QFETCH(QString, edge);
        ListeningBench bench(edge);
        QVERIFY(bench.replyAs(0, 0, oneReading(1)));
        QCOMPARE(bench.record.replies.size(), 1);
    }

    void detectionWithoutAnEdgeModeTellsChanges()
    {
        RecordedCommand<OpenedListenEvents> bench;
        QVERIFY2(bench.command.isEventDetected(0), "the first reading counts as a change");
        QVERIFY(!bench.command.isEventDetected(0));
        QVERIFY(bench.command.isEventDetected(1));
        QVERIFY(!bench.command.isEventDetected(1));
        QVERIFY(bench.command.isEventDetected(c_highestInt));
        QVERIFY(bench.command.isEventDetected(c_lowestInt));
        QVERIFY(!bench.command.isEventDetected(-1 + 1));
    }

    void detectionKeepsItsMarkOverASecondExecute()
    {
        ListeningBench bench("RE"_q);
        QVERIFY(bench.reply(0, oneReading(0)));
        QVERIFY(bench.command.commandExecute());
        QVERIFY(bench.reply(1, oneReading(1)));
        QCOMPARE(bench.lastReply().value("value"_q), QVariant(true));
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
        RecordedCommand<DCmdListenEvents> bench(listening("RE"_q));
        bench.linkChannel();
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
        RecordedCommand<DCmdListenEvents> bench(listening("RE"_q));
        bool ok = false;
        bench.command.finishTheCommand(ok);
        QCOMPARE(bench.record.calls, QStringList({"commandFinish"_q}));
        QCOMPARE(bench.record.finishes, QVector<bool>({true}));
        QCOMPARE(ok, false);
    }

    void instancesOfOnePrototypeShareNothing()
    {
        DCmdListenEvents prototype(nullptr);
        const QSharedPointer<ICommand> first = prototype.createCommand(listening("RE"_q));
        const QSharedPointer<ICommand> second = prototype.createCommand(listening("RE"_q));
        CommandRecord& firstRecord = recordOf(dynamic_cast<DCmdListenEvents&>(*first));
        CommandRecord& secondRecord = recordOf(dynamic_cast<DCmdListenEvents&>(*second));
        secondRecord.nextInstructionId = 7;
        QVERIFY(first->commandExecute());
        QVERIFY(second->commandExecute());
        QVERIFY(first->setReply(1, oneReading(0)));
        QVERIFY(second->setReply(7, oneReading(1)));
        QCOMPARE(secondRecord.replies.first().value("value"_q), QVariant(false));
        bool ok = true;
        second->finishTheCommand(ok);
        QVERIFY(firstRecord.stoppedInstructions.isEmpty());
        QCOMPARE(secondRecord.stoppedInstructions, QVector<quint64>({7}));
    }
};

QTEST_GUILESS_MAIN(TestListenEvents)
#include "test_d_cmd_listenEvents.moc"
