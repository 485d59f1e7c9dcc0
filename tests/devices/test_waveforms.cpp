#include "board_bench.h"

#include <QtTest>

class TestWaveforms : public QObject
{
    Q_OBJECT

    static Waveform form(Waveform::Shape shape, int low, int high, quint32 seed = 0)
    {
        Waveform waveform;
        waveform.shape = shape;
        waveform.low = low;
        waveform.high = high;
        waveform.periodUs = 1000;
        waveform.intervalUs = 100;
        waveform.seed = seed;
        return waveform;
    }

    static QVector<int> course(const Waveform& waveform, int samples)
    {
        QVector<int> levels;
        for (int sample = 0; sample < samples; ++sample) {
            levels.append(waveform.level(sample * waveform.intervalUs));
        }
        return levels;
    }

private Q_SLOTS:
    void aConstantIsAlwaysHigh()
    {
        QCOMPARE(course(form(Waveform::Shape::Constant, 10, 500), 3), (QVector<int>{500, 500, 500}));
    }

    void aRampClimbsFromLowToHighInEachPeriod()
    {
        const Waveform ramp = form(Waveform::Shape::Ramp, 100, 1100);
        QCOMPARE(course(ramp, 12),
                 (QVector<int>{100, 200, 300, 400, 500, 600, 700, 800, 900, 1000, 100, 200}));
        QCOMPARE(ramp.level(999), 1099);
    }

    void aSineBeginsInTheMiddleUpwards()
    {
        const Waveform sine = form(Waveform::Shape::Sine, 1000, 3000);
        QCOMPARE(sine.level(0), 2000);
        QCOMPARE(sine.level(250), 3000);
        QCOMPARE(sine.level(500), 2000);
        QCOMPARE(sine.level(750), 1000);
        QCOMPARE(sine.level(1250), 3000);
        const Waveform whole = form(Waveform::Shape::Sine, 0, 65535);
        QCOMPARE(whole.level(250), 65535);
        QCOMPARE(whole.level(750), 0);
    }

    void noiseOfOneSeedIsAlwaysTheSame()
    {
        const QVector<int> first = course(form(Waveform::Shape::Noise, 100, 60000, 7), 200);
        QCOMPARE(course(form(Waveform::Shape::Noise, 100, 60000, 7), 200), first);
        QVERIFY(course(form(Waveform::Shape::Noise, 100, 60000, 8), 200) != first);
    }

    void noiseStaysBetweenItsLevelsAndSpreads()
    {
        const QVector<int> levels = course(form(Waveform::Shape::Noise, 100, 199, 7), 2000);
        QCOMPARE(*std::min_element(levels.cbegin(), levels.cend()), 100);
        QCOMPARE(*std::max_element(levels.cbegin(), levels.cend()), 199);
        QCOMPARE(QSet<int>(levels.cbegin(), levels.cend()).size(), 100);
    }

    void noiseHoldsItsLevelBetweenSamples()
    {
        const Waveform noise = form(Waveform::Shape::Noise, 0, 65535, 7);
        QCOMPARE(noise.level(199), noise.level(100));
        QVERIFY(noise.level(200) != noise.level(100));
    }

    void aLevelDependsOnTheTimeOnlyHoweverLate()
    {
        const Waveform ramp = form(Waveform::Shape::Ramp, 0, 1000);
        constexpr qint64 yearUs = qint64{365} * 24 * 3600 * 1000000;
        QCOMPARE(ramp.level(100 * yearUs + 300), ramp.level(300));
    }

    void aBoardSamplesItsWaveforms()
    {
        BoardBench bench(boardOf({wave("adc"_s, form(Waveform::Shape::Ramp, 0, 1000))}));
        bench.scheduler.advance(350);
        QCOMPARE(bench.changes, (QVector<BoardBench::Change>{{0, 100, 100}, {0, 200, 200}, {0, 300, 300}}));
        QCOMPARE(bench.ask("getValue"_s, {{"channel"_s, "adc"_s}}), (QVariantMap{{"value"_s, 300}}));
    }

    void aConstantIsThereFromTheStartAndNeverAnnounced()
    {
        BoardBench bench(boardOf({wave("adc"_s, form(Waveform::Shape::Constant, 0, 4321)),
                                  wave("high"_s, form(Waveform::Shape::Constant, 0, 100000))}));
        QCOMPARE(bench.level(0), 4321);
        QCOMPARE(bench.level(1), 65535); // cut to what a line can have
        bench.advanceMs(1000);
        QVERIFY(bench.changes.isEmpty());
    }

    void twoRunsOfABoardSeeTheSameNoise()
    {
        const SimulatedBoardSetup setup =
            boardOf({wave("adc"_s, form(Waveform::Shape::Noise, 0, 65535, 99))});
        BoardBench first(setup);
        BoardBench second(setup);
        first.scheduler.advance(10000);
        for (int step = 0; step < 100; ++step) {
            second.scheduler.advance(100);
        }
        QVERIFY(first.changes.size() >= 99);
        QCOMPARE(second.changes, first.changes);
    }

    void aWaveformDrivesTheWiresOfItsLine()
    {
        SimulatedBoardSetup setup =
            boardOf({wave("adc"_s, form(Waveform::Shape::Ramp, 0, 65535)), input("in"_s)});
        setup.wires = {{0, 1, 0, false}};
        BoardBench bench(setup);
        bench.scheduler.advance(400);
        QCOMPARE(bench.level(1), 0);
        bench.scheduler.advance(100);
        QCOMPARE(bench.level(1), 1);
    }
};

QTEST_GUILESS_MAIN(TestWaveforms)
#include "test_waveforms.moc"
