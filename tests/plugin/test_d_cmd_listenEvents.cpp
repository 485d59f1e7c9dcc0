#include "d_cmd_listenEvents.h"
#include "recorded_command.h"

namespace {

/// Opens the detection.
class OpenedListenEvents : public DCmdListenEvents
{
public:
    using DCmdListenEvents::DCmdListenEvents;
    using DCmdListenEvents::isEventDetected;
};

QVariantMap listening(const QString& edge)
{
    return {{"channel"_s, "START"_s}, {"edge"_s, edge}};
}

QVariantMap oneReading(const QVariant& reading)
{
    return {{"values"_s, QVariantList({reading})}};
}

QVariantMap report(const QVariant& value, int lastValue)
{
    return {{"value"_s, value}, {"lastValue"_s, lastValue}};
}

using Recorded = RecordedCommand<DCmdListenEvents>;
using Executed = ExecutedCommand<DCmdListenEvents>;

} // namespace

class TestListenEvents : public QuietTest
{
    Q_OBJECT

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
        QTest::addColumn<QString>("edge");
        QTest::addColumn<Readings>("readings");
        QTest::addColumn<Events>("events");
        QTest::newRow("rising edge") << "RE"_s << Readings{0, 1, 1, 0, 1}
                                     << Events{false, true, false, false, true};
        QTest::newRow("falling edge")
            << "FE"_s << Readings{1, 0, 0, 1, 0} << Events{false, true, false, false, true};
        QTest::newRow("high level") << "HL"_s << Readings{1, 2, 0} << Events{true, false, false};
        QTest::newRow("low level") << "LL"_s << Readings{1, 2, 0} << Events{false, false, true};
        QTest::newRow("high level again and again")
            << "HL"_s << Readings{1, 1, 1} << Events{true, true, true};
        QTest::newRow("negative levels") << "LL"_s << Readings{-1, -65536} << Events{false, false};
        QTest::newRow("rising by much")
            << "RE"_s << Readings{10, 40000, 65534, 65535} << Events{false, true, true, true};
        QTest::newRow("falling by much")
            << "FE"_s << Readings{65534, 40000, 10, 9} << Events{false, true, true, true};
        QTest::newRow("a rise after 65535 is a first reading")
            << "RE"_s << Readings{65535, 65536, 65537} << Events{false, false, true};
        QTest::newRow("a fall after 65535 is a first reading")
            << "FE"_s << Readings{65535, 0, 70000, 0} << Events{false, false, false, true};
        QTest::newRow("the mark keeps 16 bits")
            << "RE"_s << Readings{65536, 0, 1} << Events{false, false, true};
        QTest::newRow("a rise to the highest")
            << "RE"_s << Readings{5, c_highestInt, 0} << Events{false, true, false};
        QTest::newRow("no fall to the highest")
            << "FE"_s << Readings{5, c_highestInt, 0} << Events{false, false, false};
        QTest::newRow("a fall to the lowest")
            << "FE"_s << Readings{5, c_lowestInt, 0} << Events{false, true, false};
        QTest::newRow("a first reading below 0 is no fall") << "FE"_s << Readings{-5} << Events{false};
        QTest::newRow("a fall below 0") << "FE"_s << Readings{0, -5} << Events{false, true};
        QTest::newRow("after the lowest as after 0")
            << "RE"_s << Readings{c_lowestInt, 0, 1} << Events{false, false, true};
        QTest::newRow("minus one is no reading before")
            << "RE"_s << Readings{-1, 1, 2} << Events{false, false, true};
    }
    void edgeModeReportsItsEventsBesideTheReadings()
    {
        QFETCH(QString, edge);
        QFETCH(QVector<int>, readings);
        QFETCH(QVector<bool>, events);
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
        QTest::addColumn<QVariant>("values");
        QTest::addColumn<int>("reading");
        QTest::newRow("a number") << QVariant(5) << 5;
        QTest::newRow("an unsigned number") << QVariant(5U) << 5;
        QTest::newRow("a text") << QVariant("7"_s) << 7;
        QTest::newRow("a bool") << QVariant(true) << 1;
        QTest::newRow("65537") << QVariant(65537) << 1;
        QTest::newRow("minus one") << QVariant(-1) << 65535;
        QTest::newRow("a list of 65535") << QVariant(QVariantList({65535})) << 65535;
        QTest::newRow("a list of 65537") << QVariant(QVariantList({65537})) << 65537;
        QTest::newRow("a list of minus one") << QVariant(QVariantList({-1})) << -1;
        QTest::newRow("a list of a text") << QVariant(QVariantList({"12"_s})) << 12;
        QTest::newRow("a list of no number") << QVariant(QVariantList({"high"_s})) << 0;
        QTest::newRow("a list of the highest") << QVariant(QVariantList({c_highestInt})) << c_highestInt;
        QTest::newRow("a list of the lowest") << QVariant(QVariantList({c_lowestInt})) << c_lowestInt;
    }
    void edgeModeTakesWhatAReadingCanBeMadeOf()
    {
        QFETCH(QVariant, values);
        QFETCH(int, reading);
        Executed bench(listening("HL"_s));
        QVERIFY(bench.reply(0, {{"values"_s, values}}));
        COMPARE_EXACTLY(bench.record.replies.value(0), report(reading == 1, reading));
    }

    void otherEdgeTextReportsTheReadingItself_data()
    {
        QTest::addColumn<QVariantMap>("arguments");
        QTest::newRow("none") << onChannel("START"_s);
        QTest::newRow("empty") << listening(""_s);
        QTest::newRow("re") << listening("re"_s);
        QTest::newRow("padded") << listening(" RE"_s);
        QTest::newRow("a code") << listening("3"_s);
        QTest::newRow("unknown") << listening("BOTH"_s);
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
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<int>("reading");
        QTest::newRow("0") << QVariant(0) << 0;
        QTest::newRow("32767") << QVariant(32767) << 32767;
        QTest::newRow("32768") << QVariant(32768) << -32768;
        QTest::newRow("65535") << QVariant(65535) << -1;
        QTest::newRow("65536") << QVariant(65536) << 0;
        QTest::newRow("minus one") << QVariant(-1) << -1;
        QTest::newRow("a text") << QVariant("7"_s) << 7;
        QTest::newRow("no number") << QVariant("high"_s) << 0;
        QTest::newRow("the highest") << QVariant(c_highestInt) << -1;
        QTest::newRow("the lowest") << QVariant(c_lowestInt) << 0;
        QTest::newRow("the highest unsigned") << QVariant(std::numeric_limits<uint>::max()) << -1;
    }
    void readingWithoutAnEdgeModeIsASigned16BitNumber()
    {
        QFETCH(QVariant, value);
        QFETCH(int, reading);
        Executed bench(listening(""_s));
        QVERIFY(bench.reply(0, oneReading(value)));
        COMPARE_EXACTLY(bench.record.replies.value(0), report(reading, reading));
    }

    void malformedReplyIsRejected_data()
    {
        QTest::addColumn<QString>("edge");
        QTest::addColumn<QVariantMap>("reply");
        QTest::addColumn<QString>("text");
        const QString missing = "ERROR: reply does not contain values"_s;
        const QString size = "ERROR: reply does not have the correct size"_s;
        const QString format = "ERROR: reply does not have the correct format"_s;
        const auto values = [](const QVariant& value) { return QVariantMap({{"values"_s, value}}); };
        for (const QString& edge : {""_s, "RE"_s}) {
            const QByteArray mode = edge.isEmpty() ? "plain: " : "edge: ";
            QTest::newRow((mode + "empty").constData()) << edge << QVariantMap() << missing;
            QTest::newRow((mode + "another key").constData())
                << edge << QVariantMap({{"value"_s, 1}}) << missing;
            QTest::newRow((mode + "no element").constData()) << edge << values(QVariantList()) << size;
            QTest::newRow((mode + "two elements").constData())
                << edge << values(QVariantList({1, 0})) << size;
            QTest::newRow((mode + "a map").constData())
                << edge << values(QVariantMap({{"0"_s, 1}})) << format;
            QTest::newRow((mode + "texts").constData()) << edge << values(QStringList({"1"_s})) << format;
            QTest::newRow((mode + "an invalid value").constData()) << edge << values(QVariant()) << format;
        }
        QTest::newRow("plain: a single number") << ""_s << values(5) << format;
        QTest::newRow("plain: a single text") << ""_s << values("5"_s) << format;
    }
    void malformedReplyIsRejected()
    {
        QFETCH(QString, edge);
        QFETCH(QVariantMap, reply);
        QFETCH(QString, text);
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
