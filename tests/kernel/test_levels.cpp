#include "line_bench.h"
#include "literals.h"
#include "rows.h"
#include "sim_chip.h"

#include <trace/vcd_trace.h>

#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

/// Levels of kernel lines, both ways.
class TestLevels : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void anOutputIsSeenOnTheFarSide()
    {
        const SimChip chip("levels"_s, 8);
        LineBench bench({output("lamp"_s, chip.name(), 3)});
        for (const int level : {1, 0, 1}) {
            QVERIFY(bench.set("lamp"_s, level != 0 ? "ON"_s : "OFF"_s).success);
            QCOMPARE(chip.level(3), level);
            QCOMPARE(bench.get("lamp"_s).results.value("value"_s).toInt(), level);
        }
    }

    void anInputFollowsTheFarSide()
    {
        const SimChip chip("levels"_s, 8);
        LineBench bench({input("button"_s, chip.name(), 2)});
        for (const int level : {1, 0, 1}) {
            chip.pull(2, level);
            QCOMPARE(bench.get("button"_s).results.value("value"_s).toInt(), level);
            QTRY_COMPARE(bench.device().level(0).level, level);
        }
    }

    void activeLowTurnsLevelsRound()
    {
        const QJsonObject activeLow = {{"activeLow"_s, true}};
        const SimChip chip("levels"_s, 8);
        LineBench bench(
            {output("lamp"_s, chip.name(), 0, activeLow), input("button"_s, chip.name(), 1, activeLow)});
        QCOMPARE(chip.level(0), 1);
        QVERIFY(bench.set("lamp"_s, "ON"_s).success);
        QCOMPARE(chip.level(0), 0);
        QCOMPARE(bench.get("button"_s).results.value("value"_s).toInt(), 1);
        chip.pull(1, 1);
        QCOMPARE(bench.get("button"_s).results.value("value"_s).toInt(), 0);
        QTRY_COMPARE(bench.device().level(1).level, 0);
    }

    void biasReachesTheLine()
    {
        const SimChip chip("levels"_s, 8);
        chip.pull(1, 1);
        LineBench bench({input("up"_s, chip.name(), 0, {{"bias"_s, "pull-up"_s}}),
                         input("down"_s, chip.name(), 1, {{"bias"_s, "pull-down"_s}})});
        QCOMPARE(chip.pullOf(0), QByteArray("pull-up"));
        QCOMPARE(chip.pullOf(1), QByteArray("pull-down"));
        QCOMPARE(bench.get("up"_s).results.value("value"_s).toInt(), 1);
        QCOMPARE(bench.get("down"_s).results.value("value"_s).toInt(), 0);
    }

    void everySettingReachesTheKernel_data()
    {
        QTest::addColumn<bool>("isOutput");
        QTest::addColumn<QJsonObject>("settings");
        QTest::addColumn<QStringList>("flags");
        const auto row = [](const char* name, bool isOutput, const QJsonObject& settings,
                            const QStringList& flags) {
            QTest::newRow(name) << isOutput << settings << flags;
        };
        const QJsonObject up = {{"bias"_s, "pull-up"_s}};
        const QJsonObject down = {{"bias"_s, "pull-down"_s}};
        const QJsonObject none = {{"bias"_s, "none"_s}};
        const QJsonObject low = {{"activeLow"_s, true}};
        row("input as it is", false, {}, {});
        row("input pulled up", false, up, {"pull-up"_s});
        row("input pulled down", false, down, {"pull-down"_s});
        row("input without bias", false, none, {"no-bias"_s});
        row("input active low", false, low, {"active-low"_s});
        row("input debounced", false, {{"debounceUs"_s, 1500}}, {"debounce=1500us"_s});
        row("input on the wall clock", false, {{"clock"_s, "realtime"_s}}, {"clock-realtime"_s});
        row("output as it is", true, {}, {});
        row("output pulled up", true, up, {"pull-up"_s});
        row("output pulled down", true, down, {"pull-down"_s});
        row("output without bias", true, none, {"no-bias"_s});
        row("output active low", true, low, {"active-low"_s});
        row("output with an open drain", true, {{"drive"_s, "open-drain"_s}}, {"open-drain"_s});
        row("output with an open source", true, {{"drive"_s, "open-source"_s}}, {"open-source"_s});
    }

    void everySettingReachesTheKernel()
    {
        QFETCH(bool, isOutput);
        QFETCH(QJsonObject, settings);
        QFETCH(QStringList, flags);
        const SimChip chip("levels"_s, 4);
        // The line stands between two plain ones: what is special about it is its own.
        const LineBench bench({input("before"_s, chip.name(), 0),
                               isOutput ? output("line"_s, chip.name(), 1, settings)
                                        : input("line"_s, chip.name(), 1, settings),
                               output("after"_s, chip.name(), 2)});
        int error = 0;
        const auto kernel = GpioChip::open("/dev/"_s + chip.name(), &error);
        QCOMPARE(kernel->line(1)->flags, flags);
        QCOMPARE(kernel->line(1)->output, isOutput);
        QCOMPARE(kernel->line(0)->flags + kernel->line(2)->flags, QStringList());
    }

    void anOutputStartsAtItsLevel()
    {
        const SimChip chip("levels"_s, 8);
        LineBench bench({output("lamp"_s, chip.name(), 5, {{"level"_s, 1}})});
        QCOMPARE(chip.level(5), 1);
        QCOMPARE(bench.get("lamp"_s).results.value("value"_s).toInt(), 1);
    }

    void switchingInvertsAnOutput()
    {
        const SimChip chip("levels"_s, 8);
        LineBench bench({output("lamp"_s, chip.name(), 5)});
        for (const int level : {1, 0}) {
            QVERIFY(bench.run("switchValue"_s, {{"channel"_s, "lamp"_s}}).success);
            QCOMPARE(chip.level(5), level);
        }
    }

    void aChipIsFoundByFileNameAndLabel()
    {
        const SimChip other("others"_s, 8);
        const SimChip chip("by name"_s, 8);
        const QStringList ways = {"/dev/"_s + chip.name(), chip.name(), chip.label()};
        for (const QString& way : ways) {
            LineBench bench({output("lamp"_s, way, 5)});
            QVERIFY2(bench.device().isConnected(), qPrintable(bench.device().connectionProblem().english()));
            QVERIFY(bench.set("lamp"_s, "ON"_s).success);
            QCOMPARE(chip.level(5), 1);
            QCOMPARE(other.level(5), 0);
        }
    }

    void aLineIsFoundByItsName()
    {
        const SimChip chip("levels"_s, 4, {"FIRST"_s, "SECOND"_s, "THIRD"_s});
        LineBench bench({output("lamp"_s, chip.name(), "THIRD"_s)});
        QVERIFY(bench.set("lamp"_s, "ON"_s).success);
        QCOMPARE(chip.level(2), 1);
        QCOMPARE(chip.level(0), 0);
    }

    void aLineIsFoundByItsNameAlone()
    {
        const SimChip other("others"_s, 4, {"FIRST"_s});
        const SimChip chip("levels"_s, 4, {"SECOND"_s, "THIRD"_s});
        LineBench bench({output("THIRD"_s, QString(), "THIRD"_s)});
        QVERIFY(bench.set("THIRD"_s, "ON"_s).success);
        QCOMPARE(chip.level(1), 1);
    }

    void aLineThatIsThereTwiceIsTold()
    {
        const SimChip one("twin"_s, 4, {"FIRST"_s, "SECOND"_s});
        const SimChip two("twin"_s, 4, {"SECOND"_s});
        const QString told =
            "line \"lamp\": there is more than one \"%1\": line %2 of %3, line %4 of %5; \"chip\" and "
            "\"line\" tell which is meant, by the name of the chip and the offset"_s;
        QCOMPARE(LineBench({output("lamp"_s, QString(), "SECOND"_s)}).device().connectionProblem().english(),
                 told.arg("SECOND"_s, "1"_s, one.name(), "0"_s, two.name()));
        QCOMPARE(LineBench({output("lamp"_s, "twin"_s, 3)}).device().connectionProblem().english(),
                 told.arg("3"_s, "3"_s, one.name(), "3"_s, two.name()));
        QVERIFY(LineBench({output("lamp"_s, one.name(), "SECOND"_s)}).device().isConnected());
        QCOMPARE(LineBench({output("a"_s, one.name(), 1), output("b"_s, one.name(), "SECOND"_s)})
                     .device()
                     .connectionProblem()
                     .english(),
                 "line \"b\": line 1 of %1 is \"a\" already; expected another"_s.arg(one.name()));
    }

    void twoChipsWorkAtOnce()
    {
        const SimChip first("one"_s, 8);
        const SimChip second("two"_s, 8);
        LineBench bench({output("a"_s, "one"_s, 0), input("b"_s, "two"_s, 0)});
        QVERIFY(bench.set("a"_s, "ON"_s).success);
        QCOMPARE(first.level(0), 1);
        QCOMPARE(bench.get("b"_s).results.value("value"_s).toInt(), 0);
        second.pull(0, 1);
        QCOMPARE(bench.get("b"_s).results.value("value"_s).toInt(), 1);
    }

    void sixtyFourLinesAreOneNumber()
    {
        constexpr int count = 64;
        const SimChip chip("wide"_s, count);
        QVector<QJsonObject> lines;
        for (int line = 0; line < count; ++line) {
            lines.append(input(QString::number(line) + "th"_s, chip.name(), line));
        }
        LineBench bench(lines);
        Listening listening(&bench, "listenToAll"_s, {});
        quint64 expected = 0;
        for (const int line : {0, 7, 31, 32, 63}) {
            chip.pull(line, 1);
            expected |= quint64{1} << static_cast<unsigned>(line);
            QTRY_COMPARE(listening.lastValue().toULongLong(), expected);
        }
        QCOMPARE(listening.events().size(), 6);
    }

    void linesBeyondOneRequestWorkAsWell_data()
    {
        const Rows<int, bool> row("count", "differ");
        row("more lines than a request holds", 65, false);
        row("more differences than a request holds", 24, true);
    }

    void linesBeyondOneRequestWorkAsWell()
    {
        QFETCH(int, count);
        QFETCH(bool, differ);
        const SimChip chip("wide"_s, 2 * count);
        QVector<QJsonObject> lines;
        for (int line = 0; line < count; ++line) {
            const QJsonObject debounced = {{"debounceUs"_s, line + 1}};
            lines.append(input("in%1"_s.arg(line), chip.name(), line, differ ? debounced : QJsonObject()));
            lines.append(output("out%1"_s.arg(line), chip.name(), count + line));
        }
        LineBench bench(lines);
        QVERIFY2(bench.device().isConnected(), qPrintable(bench.device().connectionProblem().english()));
        for (const int line : {0, count / 2, count - 1}) {
            chip.pull(line, 1);
            QTRY_COMPARE(bench.device().level(2 * line).level, 1);
            QVERIFY(bench.set("out%1"_s.arg(line), "ON"_s).success);
            QCOMPARE(chip.level(count + line), 1);
        }
    }

    void linesAreFreeAfterwards()
    {
        const SimChip chip("levels"_s, 8);
        for (int round = 0; round < 3; ++round) {
            LineBench bench({output("lamp"_s, chip.name(), 0), input("button"_s, chip.name(), 1)});
            QVERIFY2(bench.device().isConnected(), qPrintable(bench.device().connectionProblem().english()));
        }
    }

    void initDrivesNothing()
    {
        const SimChip chip("levels"_s, 8);
        LineBench bench({output("lamp"_s, chip.name(), 3, {{"level"_s, 1}})});
        const QVariantList channels = {QVariantMap{{"id"_s, "lamp"_s}, {"direction"_s, "out"_s}}};
        const Outcome outcome = bench.run("init"_s, {{"channels"_s, channels}});
        QVERIFY2(outcome.success, qPrintable(outcome.failure.text.english()));
        QCOMPARE(outcome.results.value("doneOk"_s).toBool(), true);
        QCOMPARE(chip.level(3), 1);
    }

    void aTraceHoldsTheKernelsTimes()
    {
        const SimChip chip("levels"_s, 8);
        LineBench bench({input("button"_s, chip.name(), 2)});
        const QTemporaryDir folder;
        const QString file = folder.filePath("t.vcd"_s);
        VcdTrace trace(bench.device());
        const qint64 beforeUs = bench.device().scheduler()->now();
        QCOMPARE(trace.begin(file), DWording());
        const qint64 afterUs = bench.device().scheduler()->now();
        QVector<qint64> times;
        connect(&bench.device(), &LineDevice::lineChanged, this,
                [&times](int, const LineLevel& level) { times.append(level.sinceUs); });
        for (const int level : {1, 0}) {
            chip.pull(2, level);
            QTRY_COMPARE(bench.device().level(0).level, level);
        }
        QCOMPARE(trace.end().english(), QString());
        QCOMPARE(times.size(), 2);
        const QRegularExpressionMatch traced =
            QRegularExpression("#(\\d+)\n1!\n#(\\d+)\n0!\n"_s).match(QString::fromUtf8(readFile(file)));
        QVERIFY2(traced.hasMatch(), readFile(file).constData());
        const qint64 startUs = times.at(0) - traced.captured(1).toLongLong();
        QVERIFY(startUs >= beforeUs && startUs <= afterUs);
        QCOMPARE(times.at(1) - traced.captured(2).toLongLong(), startUs);
    }
};

QTEST_GUILESS_MAIN(TestLevels)
#include "test_levels.moc"
