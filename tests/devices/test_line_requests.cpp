#include "board_bench.h"
#include "rows.h"

#include <limits>

class TestLineRequests : public QObject
{
    Q_OBJECT

    static SimulatedBoardSetup board()
    {
        return boardOf(
            {output("out"_s), input("in"_s, 1), analogOutput("dac"_s), analogInput("adc"_s, 40000)});
    }

private Q_SLOTS:
    void theBoardTellsItsLinesAndTheirLevels()
    {
        BoardBench bench(board());
        const QVector<DLine> lines = bench.board->lines();
        QCOMPARE(lines.size(), 4);
        QCOMPARE(lines.at(0).name, "out"_s);
        QVERIFY(lines.at(0).kind == DLine::Kind::Digital);
        QVERIFY(lines.at(0).direction == DLine::Direction::Out);
        QVERIFY(lines.at(3).kind == DLine::Kind::Analog);
        QVERIFY(lines.at(3).direction == DLine::Direction::In);
        const QVector<int> levels = {0, 1, 0, 40000};
        for (int line = 0; line < lines.size(); ++line) {
            QCOMPARE(bench.level(line), levels.at(line));
            QCOMPARE(bench.ask("getValue"_s, {{"channel"_s, lines.at(line).name}}),
                     (QVariantMap{{"value"_s, levels.at(line)}}));
        }
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

    void setValuesDrivesTheLineAndRepliesWhatItTook_data()
    {
        const Rows<QString, QVariant, int> row("channel", "values", "taken");
        row("digital 0", "out", 0, 0);
        row("digital 1", "out", 1, 1);
        row("digital 2", "out", 2, 1);
        row("digital 65535", "out", 65535, 1);
        row("digital true", "out", true, 1);
        row("digital text", "out", "1"_s, 1);
        row("analogue 0", "dac", 0, 0);
        row("analogue 1", "dac", 1, 1);
        row("analogue 65535", "dac", 65535, 65535);
        row("analogue whole double", "dac", 300.0, 300);
    }
    void setValuesDrivesTheLineAndRepliesWhatItTook()
    {
        const auto [channel, values, taken] = Rows<QString, QVariant, int>::values();
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

    void aRequestThatCannotBeCarriedOutFailsSayingWhy_data()
    {
        const Rows<QString, QVariantMap, QString> columns("instruction", "arguments", "reason");
        // One argument of a sound request is another one, or is left out.
        const auto row = [](const QString& instruction, const QString& key, const QVariant& value,
                            const QString& reason) {
            QVariantMap arguments{
                {"channel"_s, "out"_s}, {"values"_s, 1}, {"pulseOnWidth"_s, 10}, {"pulseOffWidth"_s, 10}};
            arguments.remove(key);
            if (value.isValid()) {
                arguments.insert(key, value);
            }
            QTest::addRow("%s, %s: %s %s", qPrintable(instruction), qPrintable(key), value.typeName(),
                          qPrintable(value.toString()))
                << instruction << arguments << reason;
        };
        for (const QString& instruction : {"getValue"_s, "setValues"_s, "setBlink"_s, "listenEvents"_s}) {
            for (const QVariant& nothing : {QVariant(), QVariant(QString(""_s)), QVariant(QVariantList{1})}) {
                row(instruction, "channel"_s, nothing, "\"%1\" names no channel"_s.arg(instruction));
            }
            row(instruction, "channel"_s, "Out"_s, "unknown channel \"Out\""_s);
            row(instruction, "channel"_s, "%1"_s, "unknown channel \"%1\""_s);
        }
        for (const QString& instruction : {"explode"_s, "getvalue"_s, QString()}) {
            row(instruction, "channel"_s, "out"_s, "unknown instruction \"%1\""_s.arg(instruction));
        }
        row("setValues"_s, "channel"_s, "in"_s, "channel \"in\" is an input and cannot be written"_s);
        row("setBlink"_s, "channel"_s, "in"_s, "channel \"in\" is an input and cannot be written"_s);
        row("setValues"_s, "channel"_s, "adc"_s, "channel \"adc\" is an input and cannot be written"_s);

        const auto ofOut = [&row](const QString& instruction, const QString& key, const QVariant& value,
                                  const QString& problem) {
            row(instruction, key, value, "\"%1\" of channel \"out\": "_s.arg(instruction) + problem);
        };
        const auto malformed = [&ofOut](const QString& instruction, const QString& key, const QVariant& value,
                                        const QString& shown) {
            ofOut(instruction, key, value,
                  "malformed argument \"%1\": \"%2\", expected a whole number from 0 to 65535"_s.arg(key,
                                                                                                     shown));
        };
        const auto level = [&malformed](const QVariant& value, const QString& shown) {
            malformed("setValues"_s, "values"_s, value, shown);
        };
        level(-1, "-1"_s);
        level(65536, "65536"_s);
        level(std::numeric_limits<quint64>::max(), "18446744073709551615"_s);
        level(quint64{1} << 63U, "9223372036854775808"_s);
        level("high"_s, "high"_s);
        level(QString(""_s), QString());
        level("%1"_s, "%1"_s);
        level(0.5, "0.5"_s);
        level(1.25, "1.25"_s);
        level(1e300, "1e+300"_s);
        level(std::numeric_limits<double>::quiet_NaN(), "nan"_s);
        level(std::numeric_limits<double>::infinity(), "inf"_s);
        level(QVariantList{1}, QString());
        ofOut("setValues"_s, "values"_s, {}, "missing argument \"values\""_s);
        ofOut("setBlink"_s, "values"_s, {}, "missing argument \"values\""_s);
        for (const QString& width : {"pulseOnWidth"_s, "pulseOffWidth"_s}) {
            ofOut("setBlink"_s, width, {}, "missing argument \"%1\""_s.arg(width));
            malformed("setBlink"_s, width, -7, "-7"_s);
        }
    }
    void aRequestThatCannotBeCarriedOutFailsSayingWhy()
    {
        const auto [instruction, arguments, reason] = Rows<QString, QVariantMap, QString>::values();
        BoardBench bench(board());
        QCOMPARE(bench.ask(instruction, arguments), (QVariantMap{{"failure"_s, reason}}));
        QVERIFY(bench.changes.isEmpty());
        QCOMPARE(bench.board->pendingRequests(), 0);
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
        const Rows<int, int, int> row("line", "set", "level");
        row("digital low", 1, 0, 0);
        row("digital above", 1, 7, 1);
        row("digital below", 1, -1, 0);
        row("analogue", 3, 123, 123);
        row("analogue above", 3, 70000, 65535);
        row("analogue below", 3, -5, 0);
        row("an output stays", 0, 1, 0);
        row("no line", 4, 1, -1);
        row("a negative line", -1, 1, -1);
    }
    void inputsAreSetFromOutsideWithinTheirLine()
    {
        const auto [line, set, level] = Rows<int, int, int>::values();
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

    void instructionsToListenRecur()
    {
        const BoardBench bench(board());
        QStringList recurring = {"listenEvents"_s, "listenToAll"_s,  "getValue"_s, "setValues"_s,
                                 "setBlink"_s,     "listenevents"_s, QString()};
        const auto end = std::remove_if(recurring.begin(), recurring.end(), [&](const QString& instruction) {
            return !bench.board->isRecurring(instruction);
        });
        QCOMPARE(QStringList(recurring.begin(), end), (QStringList{"listenEvents"_s, "listenToAll"_s}));
    }

    void aRequestIsDescribedByInstructionAndChannel()
    {
        const BoardBench bench(board());
        QCOMPARE(bench.board->describe("get%1"_s, {}).english(), "\"get%1\""_s);
        QCOMPARE(bench.board->describe("get%1"_s, {{"channel"_s, QString()}}).english(), "\"get%1\""_s);
        QCOMPARE(bench.board->describe("get%1"_s, {{"channel"_s, "50%1"_s}}).english(),
                 "\"get%1\" of channel \"50%1\""_s);
    }
};

QTEST_GUILESS_MAIN(TestLineRequests)
#include "test_line_requests.moc"
