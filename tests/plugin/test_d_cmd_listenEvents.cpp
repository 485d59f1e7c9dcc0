#include "d_cmd_listenEvents.h"
#include "recorded_command.h"
#include "rows.h"

class TestListenEvents : public QuietTest
{
    Q_OBJECT

    /// Opens the detection.
    class OpenedListenEvents : public DCmdListenEvents
    {
    public:
        using DCmdListenEvents::DCmdListenEvents;
        using DCmdListenEvents::isEventDetected;
    };

    static QVariantMap listening(const QString& edge) { return {{"channel"_s, "START"_s}, {"edge"_s, edge}}; }
    static QVariantMap oneReading(const QVariant& reading) { return {{"values"_s, QVariantList({reading})}}; }

    static QVariantMap report(const QVariant& value, int lastValue)
    {
        return {{"value"_s, value}, {"lastValue"_s, lastValue}};
    }

    using Recorded = RecordedCommand<DCmdListenEvents>;
    using Executed = ExecutedCommand<DCmdListenEvents>;

private Q_SLOTS:
    void unlinkedChannelIsListenedToAsItIs()
    {
        Recorded bench(onChannel("NOWHERE"_s));
        QVERIFY(bench.command.commandExecute());
        COMPARE_REQUESTS(bench.record, {{"listenEvents"_s, {{"channel"_s, QString()}}}});
    }

    void edgeModeReportsItsEventsBesideTheReadings_data()
    {
        using Readings = QVector<int>;
        using Events = QVector<bool>;
        const Rows<QString, Readings, Events> row("edge", "readings", "events");
        row("rising edge", "RE", {0, 1, 1, 0, 1}, {false, true, false, false, true});
        row("falling edge", "FE", {1, 0, 0, 1, 0}, {false, true, false, false, true});
        row("high level", "HL", {1, 2, 0}, {true, false, false});
        row("low level", "LL", {1, 2, 0}, {false, false, true});
        row("high level again and again", "HL", {1, 1, 1}, {true, true, true});
        row("negative levels", "LL", {-1, -65536}, {false, false});
        row("rising by much", "RE", {10, 40000, 65534, 65535}, {false, true, true, true});
        row("falling by much", "FE", {65534, 40000, 10, 9}, {false, true, true, true});
        row("a rise after 65535 is a first reading", "RE", {65535, 65536, 65537}, {false, false, true});
        row("a fall after 65535 is a first reading", "FE", {65535, 0, 70000, 0}, {false, false, false, true});
        row("the mark keeps 16 bits", "RE", {65536, 0, 1}, {false, false, true});
        row("a rise to the highest", "RE", {5, c_highestInt, 0}, {false, true, false});
        row("no fall to the highest", "FE", {5, c_highestInt, 0}, {false, false, false});
        row("a fall to the lowest", "FE", {5, c_lowestInt, 0}, {false, true, false});
        row("a first reading below 0 is no fall", "FE", {-5}, {false});
        row("a fall below 0", "FE", {0, -5}, {false, true});
        row("after the lowest as after 0", "RE", {c_lowestInt, 0, 1}, {false, false, true});
        row("minus one is no reading before", "RE", {-1, 1, 2}, {false, false, true});
    }
    void edgeModeReportsItsEventsBesideTheReadings()
    {
        const auto [edge, readings, events] = Rows<QString, QVector<int>, QVector<bool>>::values();
        Executed bench(listening(edge));
        for (int i = 0; i < readings.size(); ++i) {
            QVERIFY(bench.reply(0, oneReading(readings.at(i))));
            QCOMPARE(bench.record.replies.size(), i + 1);
            COMPARE_EXACTLY(bench.record.replies.last(), report(events.at(i), readings.at(i)));
        }
        COMPARE_RESULTS(bench.record, {});
        QVERIFY(bench.record.finishes.isEmpty());
    }

    void edgeModeTakesWhatAReadingCanBeMadeOf_data()
    {
        const Rows<QVariant, int> row("values", "reading");
        row("a number", 5, 5);
        row("an unsigned number", 5U, 5);
        row("a text", "7"_s, 7);
        row("a bool", true, 1);
        row("65537", 65537, 1);
        row("minus one", -1, 65535);
        row("a list of 65535", QVariantList({65535}), 65535);
        row("a list of 65537", QVariantList({65537}), 65537);
        row("a list of minus one", QVariantList({-1}), -1);
        row("a list of a text", QVariantList({"12"_s}), 12);
        row("a list of no number", QVariantList({"high"_s}), 0);
        row("a list of the highest", QVariantList({c_highestInt}), c_highestInt);
        row("a list of the lowest", QVariantList({c_lowestInt}), c_lowestInt);
    }
    void edgeModeTakesWhatAReadingCanBeMadeOf()
    {
        const auto [values, reading] = Rows<QVariant, int>::values();
        Executed bench(listening("HL"_s));
        QVERIFY(bench.reply(0, {{"values"_s, values}}));
        COMPARE_EXACTLY(bench.record.replies.value(0), report(reading == 1, reading));
    }

    void otherEdgeTextReportsTheReadingItself_data()
    {
        const Rows<QVariantMap> row("arguments");
        row("none", onChannel("START"_s));
        row("empty", listening(""_s));
        row("re", listening("re"_s));
        row("padded", listening(" RE"_s));
        row("a code", listening("3"_s));
        row("unknown", listening("BOTH"_s));
    }
    void otherEdgeTextReportsTheReadingItself()
    {
        QFETCH(QVariantMap, arguments);
        Executed bench(arguments);
        for (const int reading : {0, 1, 1}) {
            QVERIFY(bench.reply(0, oneReading(reading)));
            COMPARE_EXACTLY(bench.record.replies.last(), report(reading, reading));
        }
        QCOMPARE(bench.record.replies.size(), 3);
        COMPARE_RESULTS(bench.record, {});
    }

    void readingWithoutAnEdgeModeIsASigned16BitNumber_data()
    {
        const Rows<QVariant, int> row("value", "reading");
        row("0", 0, 0);
        row("32767", 32767, 32767);
        row("32768", 32768, -32768);
        row("65535", 65535, -1);
        row("65536", 65536, 0);
        row("minus one", -1, -1);
        row("a text", "7"_s, 7);
        row("no number", "high"_s, 0);
        row("the highest", c_highestInt, -1);
        row("the lowest", c_lowestInt, 0);
        row("the highest unsigned", std::numeric_limits<uint>::max(), -1);
    }
    void readingWithoutAnEdgeModeIsASigned16BitNumber()
    {
        const auto [value, reading] = Rows<QVariant, int>::values();
        Executed bench(listening(""_s));
        QVERIFY(bench.reply(0, oneReading(value)));
        COMPARE_EXACTLY(bench.record.replies.value(0), report(reading, reading));
    }

    void malformedReplyIsRejected_data()
    {
        const Rows<QString, QVariantMap, QString> row("edge", "reply", "text");
        const QString missing = "ERROR: reply does not contain values"_s;
        const QString size = "ERROR: reply does not have the correct size"_s;
        const QString format = "ERROR: reply does not have the correct format"_s;
        const auto values = [](const QVariant& value) { return QVariantMap({{"values"_s, value}}); };
        for (const QString& edge : {""_s, "RE"_s}) {
            const QByteArray mode = edge.isEmpty() ? "plain: " : "edge: ";
            row(mode + "empty", edge, {}, missing);
            row(mode + "another key", edge, {{"value"_s, 1}}, missing);
            row(mode + "no element", edge, values(QVariantList()), size);
            row(mode + "two elements", edge, values(QVariantList({1, 0})), size);
            row(mode + "a map", edge, values(QVariantMap({{"0"_s, 1}})), format);
            row(mode + "texts", edge, values(QStringList({"1"_s})), format);
            row(mode + "an invalid value", edge, values(QVariant()), format);
        }
        row("plain: a single number", "", values(5), format);
        row("plain: a single text", "", values("5"_s), format);
    }
    void malformedReplyIsRejected()
    {
        const auto [edge, reply, text] = Rows<QString, QVariantMap, QString>::values();
        Executed bench(listening(edge));
        QVERIFY(!bench.reply(0, reply));
        COMPARE_ONE_REPORT(bench.command, "d_cmd_listenEvents"_s, text);
        QVERIFY(bench.record.replies.isEmpty());
        QVERIFY2(bench.reply(0, oneReading(1)), "later replies are handled normally");
    }

    void rejectedReplyLeavesTheReadingBeforeAsItWas()
    {
        Executed bench(listening("RE"_s));
        QVERIFY(bench.reply(0, oneReading(0)));
        QVERIFY(!bench.reply(0, {{"values"_s, QVariantList({5, 5})}}));
        COMPARE_ONE_REPORT(bench.command, "d_cmd_listenEvents"_s,
                           "ERROR: reply does not have the correct size"_s);
        QVERIFY(bench.reply(0, oneReading(1)));
        COMPARE_EXACTLY(bench.record.replies.last(), report(true, 1));
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
        Executed bench(listening("RE"_s));
        QVERIFY(bench.reply(0, oneReading(0)));
        QVERIFY(bench.command.commandExecute());
        QVERIFY(bench.reply(1, oneReading(1)));
        COMPARE_EXACTLY(bench.record.replies.last(), report(true, 1));
    }
};

QTEST_GUILESS_MAIN(TestListenEvents)
#include "test_d_cmd_listenEvents.moc"
