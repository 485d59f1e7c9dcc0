#include "board_bench.h"

#include <QTest>

#include <limits>

namespace {

SimulatedBoardSetup board()
{
    return boardOf({output("out"_s), input("in"_s, 1), analogOutput("dac"_s), analogInput("adc"_s, 40000)});
}

QVariantMap failure(const QString& reason)
{
    return {{"failure"_s, reason}};
}

QString malformed(const QString& instruction, const QString& key, const QString& value)
{
    return "\"%1\" of channel \"out\": malformed argument \"%2\": \"%3\", expected a whole number from 0 to 65535"_s
        .arg(instruction, key, value);
}

} // namespace

class TestLineRequests : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theBoardTellsItsLines()
    {
        const BoardBench bench(board());
        const QVector<DLine> lines = bench.board->lines();
        QCOMPARE(lines.size(), 4);
        QCOMPARE(lines.at(0).name, "out"_s);
        QVERIFY(lines.at(0).kind == DLine::Kind::Digital);
        QVERIFY(lines.at(0).direction == DLine::Direction::Out);
        QVERIFY(lines.at(3).kind == DLine::Kind::Analog);
        QVERIFY(lines.at(3).direction == DLine::Direction::In);
        QCOMPARE(bench.level(1), 1);
        QCOMPARE(bench.level(3), 40000);
        QCOMPARE(bench.level(-1), -1);
        QCOMPARE(bench.level(4), -1);
    }

    void levelsAtTheStartAreKeptWithinTheirLines()
    {
        const BoardBench bench(
            boardOf({input("a"_s, 5), input("b"_s, -3), analogInput("c"_s, 70000), analogInput("d"_s, -1)}));
        QCOMPARE(bench.level(0), 1);
        QCOMPARE(bench.level(1), 0);
        QCOMPARE(bench.level(2), 65535);
        QCOMPARE(bench.level(3), 0);
    }

    void getValueReadsTheLevel_data()
    {
        QTest::addColumn<QString>("channel");
        QTest::addColumn<int>("level");
        QTest::newRow("output") << "out"_s << 0;
        QTest::newRow("input") << "in"_s << 1;
        QTest::newRow("analogue output") << "dac"_s << 0;
        QTest::newRow("analogue input") << "adc"_s << 40000;
    }

    void getValueReadsTheLevel()
    {
        QFETCH(QString, channel);
        QFETCH(int, level);
        BoardBench bench(board());
        QCOMPARE(bench.ask("getValue"_s, {{"channel"_s, channel}}), (QVariantMap{{"value"_s, level}}));
    }

    void setValuesDrivesTheLineAndRepliesWhatItTook_data()
    {
        QTest::addColumn<QString>("channel");
        QTest::addColumn<QVariant>("values");
        QTest::addColumn<int>("taken");
        QTest::newRow("digital 0") << "out"_s << QVariant(0) << 0;
        QTest::newRow("digital 1") << "out"_s << QVariant(1) << 1;
        QTest::newRow("digital 2") << "out"_s << QVariant(2) << 1;
        QTest::newRow("digital 65535") << "out"_s << QVariant(65535) << 1;
        QTest::newRow("digital true") << "out"_s << QVariant(true) << 1;
        QTest::newRow("digital text") << "out"_s << QVariant("1"_s) << 1;
        QTest::newRow("analogue 0") << "dac"_s << QVariant(0) << 0;
        QTest::newRow("analogue 1") << "dac"_s << QVariant(1) << 1;
        QTest::newRow("analogue 65535") << "dac"_s << QVariant(65535) << 65535;
        QTest::newRow("analogue whole double") << "dac"_s << QVariant(300.0) << 300;
    }

    void setValuesDrivesTheLineAndRepliesWhatItTook()
    {
        QFETCH(QString, channel);
        QFETCH(QVariant, values);
        QFETCH(int, taken);
        BoardBench bench(board());
        QCOMPARE(bench.ask("setValues"_s, {{"channel"_s, channel}, {"values"_s, values}}),
                 (QVariantMap{{"channel"_s, channel}, {"values"_s, taken}}));
        QCOMPARE(bench.ask("getValue"_s, {{"channel"_s, channel}}), (QVariantMap{{"value"_s, taken}}));
    }

    void setValuesTakesTheWholeMapOfTheWritingCommand()
    {
        BoardBench bench(board());
        const QVariantMap arguments{{"channel"_s, "out"_s}, {"values"_s, 1},       {"pulseOnWidth"_s, 65535},
                                    {"pulseOffWidth"_s, 0}, {"interval"_s, 65535}, {"dutyCycle"_s, 1.0F}};
        QCOMPARE(bench.ask("setValues"_s, arguments), (QVariantMap{{"channel"_s, "out"_s}, {"values"_s, 1}}));
        QCOMPARE(bench.level(0), 1);
    }

    void onlyARealChangeIsAnnounced()
    {
        BoardBench bench(board());
        bench.advanceMs(3);
        bench.write("out"_s, 1);
        bench.write("out"_s, 1);
        bench.advanceMs(2);
        bench.write("out"_s, 0);
        QCOMPARE(bench.changes, (QVector<BoardBench::Change>{{0, 1, 3000}, {0, 0, 5000}}));
    }

    void aRequestThatNamesNoLineFails_data()
    {
        QTest::addColumn<QString>("instruction");
        for (const char* instruction : {"getValue", "setValues", "setBlink", "listenEvents"}) {
            QTest::newRow(instruction) << QString::fromLatin1(instruction);
        }
    }

    void aRequestThatNamesNoLineFails()
    {
        QFETCH(QString, instruction);
        BoardBench bench(board());
        const QVariantMap nothing = failure("\"%1\" names no channel"_s.arg(instruction));
        QCOMPARE(bench.ask(instruction, {{"values"_s, 1}}), nothing);
        QCOMPARE(bench.ask(instruction, {{"channel"_s, QString()}, {"values"_s, 1}}), nothing);
        QCOMPARE(bench.ask(instruction, {{"channel"_s, QVariantList{1}}, {"values"_s, 1}}), nothing);
        QCOMPARE(bench.ask(instruction, {{"channel"_s, "Out"_s}, {"values"_s, 1}}),
                 failure("unknown channel \"Out\""_s));
        QCOMPARE(bench.ask(instruction, {{"channel"_s, "%1"_s}, {"values"_s, 1}}),
                 failure("unknown channel \"%1\""_s));
        QCOMPARE(bench.board->pendingRequests(), 0);
    }

    void anUnknownInstructionFails_data()
    {
        QTest::addColumn<QString>("instruction");
        QTest::newRow("another") << "explode"_s;
        QTest::newRow("another case") << "getvalue"_s;
        QTest::newRow("empty") << QString();
    }

    void anUnknownInstructionFails()
    {
        QFETCH(QString, instruction);
        BoardBench bench(board());
        QCOMPARE(bench.ask(instruction, {{"channel"_s, "out"_s}}),
                 failure("unknown instruction \"%1\""_s.arg(instruction)));
    }

    void anInputCannotBeWritten_data()
    {
        QTest::addColumn<QString>("instruction");
        QTest::addColumn<QString>("channel");
        QTest::newRow("setValues") << "setValues"_s
                                   << "in"_s;
        QTest::newRow("setBlink") << "setBlink"_s
                                  << "in"_s;
        QTest::newRow("setValues analogue") << "setValues"_s
                                            << "adc"_s;
    }

    void anInputCannotBeWritten()
    {
        QFETCH(QString, instruction);
        QFETCH(QString, channel);
        BoardBench bench(board());
        QCOMPARE(bench.ask(instruction, {{"channel"_s, channel}, {"values"_s, 0}}),
                 failure("channel \"%1\" is an input and cannot be written"_s.arg(channel)));
        QVERIFY(bench.changes.isEmpty());
    }

    void aMalformedLevelFailsNamingIt_data()
    {
        QTest::addColumn<QVariant>("values");
        QTest::addColumn<QString>("shown");
        QTest::newRow("negative") << QVariant(-1) << "-1"_s;
        QTest::newRow("too high") << QVariant(65536) << "65536"_s;
        QTest::newRow("huge") << QVariant(std::numeric_limits<quint64>::max()) << "18446744073709551615"_s;
        QTest::newRow("beyond the signed numbers") << QVariant(quint64{1} << 63U) << "9223372036854775808"_s;
        QTest::newRow("word") << QVariant("high"_s) << "high"_s;
        QTest::newRow("empty text") << QVariant(QString(""_s)) << QString();
        QTest::newRow("percent sign") << QVariant("%1"_s) << "%1"_s;
        QTest::newRow("half") << QVariant(0.5) << "0.5"_s;
        QTest::newRow("broken") << QVariant(1.25) << "1.25"_s;
        QTest::newRow("huge double") << QVariant(1e300) << "1e+300"_s;
        QTest::newRow("NaN") << QVariant(std::numeric_limits<double>::quiet_NaN()) << "nan"_s;
        QTest::newRow("infinity") << QVariant(std::numeric_limits<double>::infinity()) << "inf"_s;
        QTest::newRow("list") << QVariant(QVariantList{1}) << QString();
    }

    void aMalformedLevelFailsNamingIt()
    {
        QFETCH(QVariant, values);
        QFETCH(QString, shown);
        BoardBench bench(board());
        QCOMPARE(bench.ask("setValues"_s, {{"channel"_s, "out"_s}, {"values"_s, values}}),
                 failure(malformed("setValues"_s, "values"_s, shown)));
        QVERIFY(bench.changes.isEmpty());
    }

    void aMissingArgumentFailsNamingIt_data()
    {
        QTest::addColumn<QString>("instruction");
        QTest::addColumn<QString>("missing");
        QTest::newRow("setValues without values") << "setValues"_s
                                                  << "values"_s;
        QTest::newRow("setBlink without values") << "setBlink"_s
                                                 << "values"_s;
        QTest::newRow("setBlink without on width") << "setBlink"_s
                                                   << "pulseOnWidth"_s;
        QTest::newRow("setBlink without off width") << "setBlink"_s
                                                    << "pulseOffWidth"_s;
    }

    void aMissingArgumentFailsNamingIt()
    {
        QFETCH(QString, instruction);
        QFETCH(QString, missing);
        BoardBench bench(board());
        QVariantMap arguments{
            {"channel"_s, "out"_s}, {"values"_s, 1}, {"pulseOnWidth"_s, 10}, {"pulseOffWidth"_s, 10}};
        arguments.remove(missing);
        QCOMPARE(bench.ask(instruction, arguments),
                 failure("\"%1\" of channel \"out\": missing argument \"%2\""_s.arg(instruction, missing)));
        QVERIFY(bench.changes.isEmpty());
    }

    void aMalformedWidthFailsNamingIt_data()
    {
        QTest::addColumn<QString>("key");
        QTest::newRow("on") << "pulseOnWidth"_s;
        QTest::newRow("off") << "pulseOffWidth"_s;
    }

    void aMalformedWidthFailsNamingIt()
    {
        QFETCH(QString, key);
        BoardBench bench(board());
        QVariantMap arguments{
            {"channel"_s, "out"_s}, {"values"_s, 1}, {"pulseOnWidth"_s, 10}, {"pulseOffWidth"_s, 10}};
        arguments.insert(key, -7);
        QCOMPARE(bench.ask("setBlink"_s, arguments), failure(malformed("setBlink"_s, key, "-7"_s)));
        QVERIFY(bench.changes.isEmpty());
    }

    void aFailedRequestLeavesTheLineBlinking()
    {
        BoardBench bench(board());
        bench.blink("out"_s, 10, 10);
        bench.write("out"_s, -1);
        bench.advanceMs(10);
        QCOMPARE(bench.level(0), 0);
        bench.advanceMs(10);
        QCOMPARE(bench.level(0), 1);
    }

    void inputsAreSetFromOutsideWithinTheirLine_data()
    {
        QTest::addColumn<int>("line");
        QTest::addColumn<int>("set");
        QTest::addColumn<int>("level");
        QTest::newRow("digital low") << 1 << 0 << 0;
        QTest::newRow("digital above") << 1 << 7 << 1;
        QTest::newRow("digital below") << 1 << -1 << 0;
        QTest::newRow("analogue") << 3 << 123 << 123;
        QTest::newRow("analogue above") << 3 << 70000 << 65535;
        QTest::newRow("analogue below") << 3 << -5 << 0;
        QTest::newRow("an output stays") << 0 << 1 << 0;
        QTest::newRow("no line") << 4 << 1 << -1;
        QTest::newRow("a negative line") << -1 << 1 << -1;
    }

    void inputsAreSetFromOutsideWithinTheirLine()
    {
        QFETCH(int, line);
        QFETCH(int, set);
        QFETCH(int, level);
        BoardBench bench(board());
        bench.board->setInput(line, set);
        QCOMPARE(bench.level(line), level);
    }

    void onlyInputsThatNothingFeedsCanBeSet()
    {
        BoardBench bench(boardOf({output("out"_s), input("free"_s), input("wired"_s), wave("wave"_s, {})},
                                 {{0, 2, 0, false}}));
        QVector<bool> settable;
        for (int line = 0; line < bench.board->lines().size(); ++line) {
            settable.append(bench.board->lines().at(line).settable);
            bench.board->setInput(line, 1);
        }
        QCOMPARE(settable, (QVector<bool>{false, true, false, false}));
        QCOMPARE(bench.changes, (QVector<BoardBench::Change>{{1, 1, 0}}));
    }

    void instructionsToListenRecur_data()
    {
        QTest::addColumn<bool>("recurs");
        QTest::newRow("listenEvents") << true;
        QTest::newRow("listenToAll") << true;
        QTest::newRow("getValue") << false;
        QTest::newRow("setValues") << false;
        QTest::newRow("setBlink") << false;
        QTest::newRow("listenevents") << false;
        QTest::newRow("") << false;
    }

    void instructionsToListenRecur()
    {
        QFETCH(bool, recurs);
        const BoardBench bench(board());
        QCOMPARE(bench.board->isRecurring(QString::fromLatin1(QTest::currentDataTag())), recurs);
    }

    void aRequestIsDescribedByInstructionAndChannel_data()
    {
        QTest::addColumn<QVariantMap>("arguments");
        QTest::addColumn<QString>("described");
        QTest::newRow("none") << QVariantMap() << "\"get%1\""_s;
        QTest::newRow("empty") << QVariantMap{{"channel"_s, QString()}} << "\"get%1\""_s;
        QTest::newRow("channel") << QVariantMap{{"channel"_s, "50%1"_s}} << "\"get%1\" of channel \"50%1\""_s;
    }

    void aRequestIsDescribedByInstructionAndChannel()
    {
        QFETCH(QVariantMap, arguments);
        QFETCH(QString, described);
        const BoardBench bench(board());
        QCOMPARE(bench.board->describe("get%1"_s, arguments), described);
    }
};

QTEST_GUILESS_MAIN(TestLineRequests)

#include "test_line_requests.moc"
