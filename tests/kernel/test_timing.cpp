#include "far_side.h"
#include "line_bench.h"
#include "literals.h"
#include "sim_chip.h"

#include <QtTest>

#include <algorithm>

namespace {

/// The least delay of five rises against their times in a row of periods.
double leastDelay(const QVector<double>& rises, double periodMs, int first)
{
    double least = rises.at(first) - first * periodMs;
    for (int rise = first; rise < first + 5; ++rise) {
        least = std::min(least, rises.at(rise) - rise * periodMs);
    }
    return least;
}

} // namespace

/// Blinking and pulses, measured from the far side.
class TestTiming : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void blinkingHasItsWidthsAndDoesNotDrift()
    {
        constexpr double periodMs = 100.0;
        constexpr double onMs = 30.0;
        constexpr double toleranceMs = 8.0;
        const SimChip chip("timing"_s, 8);
        LineBench bench({output("lamp"_s, chip.name(), 0)});
        FarSide farSide(chip.levelFile(0));
        QVERIFY(bench
                    .run("setValue"_s, {{"channel"_s, "lamp"_s},
                                        {"state"_s, "BLINK"_s},
                                        {"duration"_s, 100},
                                        {"dutyCycle"_s, 30},
                                        {"value"_s, 1}})
                    .success);
        QTest::qWait(2050);
        QVERIFY(bench.set("lamp"_s, "OFF"_s).success);
        const QVector<FarSide::Change> changes = farSide.end();
        QVector<double> rises;
        QVector<double> widths;
        for (int index = 1; index + 1 < changes.size(); ++index) {
            if (changes.at(index).level == 1) {
                rises.append(changes.at(index).ms);
                widths.append(changes.at(index + 1).ms - changes.at(index).ms);
            }
        }
        QVERIFY2(rises.size() >= 20 && rises.size() <= 21, qPrintable(QString::number(rises.size())));
        std::sort(widths.begin(), widths.end());
        const double width = widths.at(widths.size() / 2);
        QVERIFY2(qAbs(width - onMs) <= toleranceMs, qPrintable(QString::number(width)));
        // A rise may be late on a busy machine; were there a drift, all of the later ones would be.
        const double drift = leastDelay(rises, periodMs, 15) - leastDelay(rises, periodMs, 0);
        QVERIFY2(qAbs(drift) <= toleranceMs, qPrintable(QString::number(drift)));
    }

    void aPulseHasItsLength()
    {
        constexpr double toleranceMs = 15.0;
        const SimChip chip("timing"_s, 8);
        LineBench bench({output("lamp"_s, chip.name(), 0)});
        FarSide farSide(chip.levelFile(0));
        QVERIFY(bench.set("lamp"_s, "PULSE"_s, 200).success);
        QTRY_COMPARE(chip.level(0), 0);
        QTest::qWait(20);
        const QVector<FarSide::Change> changes = farSide.end();
        QCOMPARE(changes.size(), 3);
        const double length = changes.at(2).ms - changes.at(1).ms;
        QVERIFY2(qAbs(length - 200.0) <= toleranceMs, qPrintable(QString::number(length)));
    }

    void debouncingSwallowsShortPulses()
    {
        const SimChip chip("timing"_s, 8);
        LineBench bench(
            {input("raw"_s, chip.name(), 0), input("calm"_s, chip.name(), 1, {{"debounceUs"_s, 50000}})});
        Listening raw(&bench, "startListening"_s, {{"channel"_s, "raw"_s}});
        Listening calm(&bench, "startListening"_s, {{"channel"_s, "calm"_s}});
        for (const int level : {1, 0}) {
            chip.pull(0, level);
            chip.pull(1, level);
            QTRY_COMPARE(raw.lastValue().toInt(), level);
        }
        chip.pull(1, 1);
        QTRY_COMPARE(calm.lastValue().toInt(), 1);
        QCOMPARE(raw.events().size(), 3);
        QCOMPARE(calm.events().size(), 2);
    }
};

QTEST_GUILESS_MAIN(TestTiming)
#include "test_timing.moc"
