#include "board_bench.h"
#include "rows.h"

using Changes = QVector<BoardBench::Change>;

class TestBlinking : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_bench = std::make_unique<BoardBench>(
            boardOf({output("out"_s), analogOutput("dac"_s), output("other"_s)}));
    }

    void theReplyTellsTheLevelTaken()
    {
        QCOMPARE(
            m_bench->ask(
                "setBlink"_s,
                {{"channel"_s, "out"_s}, {"values"_s, 5}, {"pulseOnWidth"_s, 300}, {"pulseOffWidth"_s, 700}}),
            (QVariantMap{{"channel"_s, "out"_s}, {"values"_s, 1}}));
    }

    void theLineIsOnAndOffForItsWidths()
    {
        m_bench->advanceMs(50);
        m_bench->blink("out"_s, 300, 700);
        m_bench->advanceMs(2299);
        QCOMPARE(m_bench->changes,
                 (Changes{{0, 1, 50000}, {0, 0, 350000}, {0, 1, 1050000}, {0, 0, 1350000}, {0, 1, 2050000}}));
        QCOMPARE(m_bench->ask("getValue"_s, {{"channel"_s, "out"_s}}), (QVariantMap{{"value"_s, 1}}));
    }

    void theDeviceSaysWhichLinesBlink()
    {
        const auto blinks = [this] { return m_bench->board->blinks(0); };
        QVERIFY(!blinks());
        m_bench->blink("out"_s, 300, 700);
        QVERIFY(blinks());
        QVERIFY(!m_bench->board->blinks(2));
        m_bench->blink("out"_s, 300, 0);
        QVERIFY(!blinks());
        m_bench->blink("out"_s, 300, 700);
        m_bench->board->setPluggedIn(false);
        QVERIFY(!blinks());
        m_bench->board->setPluggedIn(true);
        QVERIFY(!blinks());
    }

    void anAnalogueLineBlinksWithItsLevel()
    {
        m_bench->blink("dac"_s, 10, 20, 1234);
        m_bench->advanceMs(30);
        QCOMPARE(m_bench->changes, (Changes{{1, 1234, 0}, {1, 0, 10000}, {1, 1234, 30000}}));
    }

    void tenThousandCyclesDoNotDrift()
    {
        constexpr int cycles = 10000;
        m_bench->advanceMs(17);
        m_bench->blink("out"_s, 3, 4);
        m_bench->advanceMs(cycles * 7 - 1);
        QCOMPARE(m_bench->changes.size(), 2 * cycles);
        for (int cycle = 0; cycle < cycles; ++cycle) {
            const qint64 start = 17000 + cycle * qint64{7000};
            QCOMPARE(m_bench->changes.at(2 * cycle), (BoardBench::Change{0, 1, start}));
            QCOMPARE(m_bench->changes.at(2 * cycle + 1), (BoardBench::Change{0, 0, start + 3000}));
        }
    }

    void lateCallsDoNotAddUp()
    {
        constexpr qint64 lateUs = 900;
        m_bench->blink("out"_s, 3, 4);
        for (int phase = 1; phase < 20000; ++phase) {
            const qint64 dueUs = phase / 2 * qint64{7000} + phase % 2 * 3000;
            passBusyUntil(dueUs + lateUs);
            QCOMPARE(m_bench->changes.constLast(), (BoardBench::Change{0, 1 - phase % 2, dueUs + lateUs}));
        }
    }

    void phasesThatWereMissedAreLeftOut()
    {
        m_bench->blink("out"_s, 3, 4);
        passBusyUntil(17500); // in the third cycle, which is on from 14 to 17 ms
        QCOMPARE(m_bench->level(0), 0);
        passBusyUntil(35500); // in the sixth cycle, which is on from 35 to 38 ms
        QCOMPARE(m_bench->level(0), 1);
        QCOMPARE(m_bench->changes.size(), 3);
    }

    void aWidthOfZeroIsSteady_data()
    {
        const Rows<int, int, int, int> row("on", "off", "values", "level");
        row("never off", 1000, 0, 1, 1);
        row("never on", 0, 1000, 1, 0);
        row("neither", 0, 0, 1, 1);
        row("level 0", 500, 500, 0, 0);
    }
    void aWidthOfZeroIsSteady()
    {
        const auto [on, off, values, level] = Rows<int, int, int, int>::values();
        m_bench->write("out"_s, level == 0 ? 1 : 0);
        m_bench->changes.clear();
        m_bench->blink("out"_s, on, off, values);
        QVERIFY(!m_bench->scheduler.advanceToNext());
        m_bench->advanceMs(5000);
        QCOMPARE(m_bench->changes, (Changes{{0, level, 0}}));
    }

    void writingTheLineEndsItsBlinking()
    {
        for (const int level : {1, 0}) {
            m_bench->blink("out"_s, 10, 10);
            m_bench->advanceMs(25);
            m_bench->write("out"_s, level);
            m_bench->changes.clear();
            m_bench->advanceMs(1000);
            QVERIFY(m_bench->changes.isEmpty());
            QCOMPARE(m_bench->level(0), level);
        }
    }

    void aNewBlinkingReplacesTheOldOne()
    {
        m_bench->blink("out"_s, 10, 10);
        m_bench->advanceMs(15);
        m_bench->blink("out"_s, 20, 30);
        m_bench->changes.clear();
        m_bench->advanceMs(70);
        QCOMPARE(m_bench->changes, (Changes{{0, 0, 35000}, {0, 1, 65000}, {0, 0, 85000}}));
    }

    void aSteadyBlinkingReplacesTheOldOne()
    {
        m_bench->blink("out"_s, 10, 10);
        m_bench->advanceMs(5);
        m_bench->blink("out"_s, 1000, 0);
        m_bench->changes.clear();
        m_bench->advanceMs(1000);
        QVERIFY(m_bench->changes.isEmpty());
    }

    void linesBlinkApart()
    {
        m_bench->blink("out"_s, 10, 10);
        m_bench->blink("other"_s, 15, 15);
        m_bench->write("out"_s, 0);
        m_bench->changes.clear();
        m_bench->advanceMs(30);
        QCOMPARE(m_bench->changes, (Changes{{2, 0, 15000}, {2, 1, 30000}}));
    }

    void cancellingTheAnsweredRequestLeavesTheBlinking()
    {
        m_bench->blink("out"_s, 10, 10);
        deliver();
        m_bench->board->cancel(1);
        m_bench->advanceMs(10);
        QCOMPARE(m_bench->level(0), 0);
        m_bench->advanceMs(10);
        QCOMPARE(m_bench->level(0), 1);
    }

    void aBoardThatGoesLeavesNoAppointment()
    {
        m_bench->blink("out"_s, 10, 10);
        m_bench->board.reset();
        QVERIFY(!m_bench->scheduler.advanceToNext());
    }

    void aLineMayBeWrittenWhereItsChangeIsHeard()
    {
        connect(m_bench->board.get(), &LineDevice::lineChanged, this,
                [this](int line, const LineLevel& level) {
                    if (line == 0 && level.level == 0) {
                        m_bench->write("out"_s, 1);
                    }
                });
        m_bench->blink("out"_s, 10, 10);
        m_bench->advanceMs(100);
        QCOMPARE(m_bench->changes, (Changes{{0, 1, 0}, {0, 0, 10000}, {0, 1, 10000}}));
    }

private:
    /// The time passes while the thread is busy; what fell due is carried out late, at the end.
    void passBusyUntil(qint64 timeUs)
    {
        m_bench->scheduler.elapse(timeUs - m_bench->scheduler.now());
        m_bench->scheduler.advance(0);
    }

    std::unique_ptr<BoardBench> m_bench;
};

QTEST_GUILESS_MAIN(TestBlinking)
#include "test_blinking.moc"
