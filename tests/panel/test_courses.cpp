#include "literals.h"
#include "manual_scheduler.h"
#include "panel_fixture.h"
#include "rows.h"

#include <window/course.h>
#include <window/waveform_item.h>

#include <QPainter>
#include <QQuickWindow>

namespace {

constexpr qint64 c_second = 1000000;
constexpr int c_line = 1; // an input that nothing feeds

LineLevel known(qint64 timeUs, int level)
{
    return {level, timeUs, true};
}

LineLevel unknown(qint64 timeUs)
{
    return {0, timeUs, false};
}

/// "0-2: 1..5" for each step, with " gap" where it has one.
QStringList textOf(const std::vector<CourseStep>& course)
{
    QStringList steps;
    for (const CourseStep& step : course) {
        steps.append("%1-%2: %3..%4%5"_s.arg(step.column)
                         .arg(step.column + step.columns - 1)
                         .arg(step.levels.lowest)
                         .arg(step.levels.highest)
                         .arg(step.levels.gap ? " gap"_s : QString()));
    }
    return steps;
}

/// A course in a window.
struct Shown
{
    explicit Shown(LineDevice* board)
        : clock(board->scheduler())
        , lines(board, {}, &clock)
        , view(&lines)
    {
        frame.setParentItem(window.contentItem());
        frame.setClip(true);
        frame.setSize({200, 60});
        item.setParentItem(&frame);
        item.setSize({200, 48});
        item.setColor(Qt::black);
        item.setLine(c_line);
        view.setWidth(200);
        item.setView(&view);
        item.setLines(&lines);
        window.resize(300, 200);
        window.show();
        (void)QTest::qWaitForWindowExposed(&window); // it has its size then
    }

    /// Where the line is drawn in each quarter of the picture.
    QString drawn()
    {
        QImage picture(200, 48, QImage::Format_RGB32);
        picture.fill(Qt::white);
        QPainter painter(&picture);
        item.paint(&painter);
        QStringList quarters;
        for (const int x : {25, 75, 125, 175}) {
            const bool high = picture.pixelColor(x, 11) == Qt::black;
            const bool low = picture.pixelColor(x, 36) == Qt::black || picture.pixelColor(x, 35) == Qt::black;
            quarters.append(high && low ? "both"_s : (high ? "high"_s : (low ? "low"_s : "nothing"_s)));
        }
        return quarters.join(QLatin1Char(' '));
    }

    DeviceClock clock;
    LinesModel lines;
    CourseView view;
    QQuickWindow window;
    QQuickItem frame;
    WaveformItem item;
};

/// Hides a course, or shows it again.
using Hiding = void (*)(Shown&, bool);

} // namespace

Q_DECLARE_METATYPE(QVector<LineLevel>)
Q_DECLARE_METATYPE(Hiding)

/// What is remembered of a line, how it is drawn, and when not.
class TestCourses : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_scheduler = std::make_unique<ManualScheduler>();
        m_board = makeSimulatedBoard(smallBoard(), m_scheduler.get(), DevicePlace::SameThread);
        m_board->open();
    }
    void cleanup()
    {
        m_board.reset();
        m_scheduler.reset();
    }

    void aLineKeepsItsLevelUntilItChanges()
    {
        LineHistory history;
        history.append(known(100, 7));
        history.append(unknown(200));
        QVERIFY(!history.at(99).known);
        QCOMPARE(history.at(100), known(100, 7));
        QCOMPARE(history.at(199), known(100, 7));
        QVERIFY(!history.at(1000).known);
        QVERIFY(history.hasChangedSince(200));
        QVERIFY(!history.hasChangedSince(201));
    }

    void timesNeverGoBack()
    {
        LineHistory history;
        history.append(unknown(200));
        history.append(known(150, 7));
        QVERIFY(!history.at(199).known);
        QCOMPARE(history.at(200), known(200, 7));
    }

    void changesThatAreTooOldAreForgotten()
    {
        LineHistory history;
        history.append(known(0, 1));
        history.append(known(10, 2));
        history.append(known(LineHistory::c_longestUs + 9, 3));
        QCOMPARE(history.at(9), known(0, 1));
        history.append(known(LineHistory::c_longestUs + 10, 4));
        QCOMPARE(history.changes().size(), std::size_t{3});
        QVERIFY(!history.at(9).known);
        QCOMPARE(history.at(10), known(10, 2));
    }

    void changesThatAreTooManyAreForgotten()
    {
        constexpr int most = 5000;
        LineHistory history(most);
        for (int number = 1; number <= most + 100; ++number) {
            history.append(known(number, number));
        }
        QCOMPARE(history.changes().size(), std::size_t{most});
        QCOMPARE(history.changeCount(), quint64{most} + 100);
        QVERIFY(!history.at(100).known);
        QCOMPARE(history.at(101), known(101, 101));
        // The range is that of the changes themselves, wherever it begins and ends.
        for (const int first : {0, 1, 27, 28, 29, 91, 92, 93, 1000}) {
            for (const int count : {1, 2, 63, 64, 65, 128, 200, 1000}) {
                const LevelRange range = history.range(std::size_t(first), std::size_t(first + count));
                QCOMPARE(range.lowest, 101 + first);
                QCOMPARE(range.highest, 100 + first + count);
                QVERIFY(!range.gap);
            }
        }
    }

    void aCourseHasOneStepForWhatHappensInAColumn_data()
    {
        const Rows<QVector<LineLevel>, QStringList> row("changes", "course");
        using Changes = QVector<LineLevel>;
        // Ten columns of 10 µs from 1000 on.
        row("nothing is known", Changes{}, QStringList{});
        row("one level", Changes{known(0, 4)}, QStringList{"0-9: 4..4"_s});
        row("an edge", Changes{known(0, 4), known(1035, 9)},
            QStringList{"0-2: 4..4"_s, "3-3: 4..9"_s, "4-9: 9..9"_s});
        row("an edge at the border of a column", Changes{known(0, 4), known(1040, 9)},
            QStringList{"0-3: 4..4"_s, "4-4: 4..9"_s, "5-9: 9..9"_s});
        row("edges in columns side by side", Changes{known(0, 4), known(1035, 9), known(1040, 2)},
            QStringList{"0-2: 4..4"_s, "3-3: 4..9"_s, "4-4: 2..9"_s, "5-9: 2..2"_s});
        row("a narrow pulse", Changes{known(0, 0), known(1051, 1), known(1052, 0)},
            QStringList{"0-4: 0..0"_s, "5-5: 0..1"_s, "6-9: 0..0"_s});
        row("a gap", Changes{known(0, 4), unknown(1030), known(1061, 9)},
            QStringList{"0-2: 4..4"_s, "3-3: 4..4 gap"_s, "6-6: 9..9 gap"_s, "7-9: 9..9"_s});
        row("a gap in a column", Changes{known(0, 4), unknown(1032), known(1035, 4)},
            QStringList{"0-2: 4..4"_s, "3-3: 4..4 gap"_s, "4-9: 4..4"_s});
        row("known in a part of a column", Changes{known(1031, 4), unknown(1035)},
            QStringList{"3-3: 4..4 gap"_s});
        row("an edge in the last column", Changes{known(0, 4), known(1095, 9)},
            QStringList{"0-8: 4..4"_s, "9-9: 4..9"_s});
        row("what is still to come", Changes{known(0, 4), known(1100, 9)}, QStringList{"0-9: 4..4"_s});
    }
    void aCourseHasOneStepForWhatHappensInAColumn()
    {
        QFETCH(QVector<LineLevel>, changes);
        LineHistory history;
        for (const LineLevel& change : qAsConst(changes)) {
            history.append(change);
        }
        QTEST(textOf(courseOf(history, {100, 10}, 100, 1099)), "course");
    }

    /// Its time would grow with the samples otherwise.
    void aCourseHasNoMoreStepsThanColumns()
    {
        LineHistory history;
        for (int number = 0; number < 10000; ++number) {
            history.append(known(number * 100, number % 7));
        }
        const std::vector<CourseStep> course = courseOf(history, {1000000, 100}, 0, 999999);
        QCOMPARE(course.size(), std::size_t{100});
        QVERIFY(std::all_of(course.cbegin(), course.cend(), [](const CourseStep& step) {
            return step.levels.lowest == 0 && step.levels.highest == 6;
        }));
    }

    void theClockTicksTwentyTimesASecondAtMost()
    {
        DeviceClock clock(&scheduler());
        LinesModel lines(m_board.get(), {}, &clock);
        QSignalSpy ticks(&clock, &DeviceClock::ticked);
        for (int ms = 0; ms < 1000; ++ms) {
            lines.setLevel(c_line, 1 - ms % 2);
            scheduler().advance(1000);
        }
        QVERIFY2(ticks.count() >= 19 && ticks.count() <= 21, qPrintable(QString::number(ticks.count())));
    }

    void aClockThatNobodyWantsRests()
    {
        DeviceClock clock(&scheduler());
        QSignalSpy ticks(&clock, &DeviceClock::ticked);
        scheduler().advance(c_second);
        QCOMPARE(ticks.count(), 0);
        clock.want();
        QCOMPARE(ticks.count(), 0);
        scheduler().advance(c_second);
        QCOMPARE(ticks.count(), 1);
        QCOMPARE(clock.now(), double(c_second));
    }

    void aClockThatStopsHoldsThePresent()
    {
        DeviceClock clock(&scheduler());
        scheduler().advance(c_second);
        clock.setRunning(false);
        QCOMPARE(clock.now(), double(c_second));
        scheduler().advance(c_second);
        clock.tick();
        QCOMPARE(clock.now(), double(c_second));
        clock.setRunning(true);
        QCOMPARE(clock.now(), 2.0 * c_second);
    }

    void aCourseMovesAsLongAsAChangeIsInIt()
    {
        Shown shown(m_board.get());
        scheduler().advance(20 * c_second);
        QSignalSpy ticks(&shown.clock, &DeviceClock::ticked);
        scheduler().advance(20 * c_second);
        QCOMPARE(ticks.count(), 0);
        shown.lines.setLevel(c_line, 1);
        scheduler().advance(20 * c_second);
        QVERIFY2(qAbs(ticks.count() - 200) < 3, qPrintable(QString::number(ticks.count())));
    }

    void aCourseThatCannotBeSeenDoesNotMove_data()
    {
        const Rows<Hiding> row("hide");
        row("invisible", [](Shown& shown, bool hides) { shown.item.setVisible(!hides); });
        row("scrolled out", [](Shown& shown, bool hides) { shown.item.setY(hides ? -200 : 0); });
        row("outside the window", [](Shown& shown, bool hides) { shown.frame.setX(hides ? 10000 : 0); });
        row("folded", [](Shown& shown, bool hides) { shown.frame.setWidth(hides ? 0 : 200); });
        row("minimised", [](Shown& shown, bool hides) {
            hides ? shown.window.showMinimized() : shown.window.showNormal();
        });
    }
    void aCourseThatCannotBeSeenDoesNotMove()
    {
        QFETCH(Hiding, hide);
        Shown shown(m_board.get());
        scheduler().advance(20 * c_second);
        hide(shown, true);
        const bool minimised = QByteArray("minimised") == QTest::currentDataTag();
        QTRY_COMPARE(shown.window.visibility() == QWindow::Minimized, minimised);
        scheduler().advance(c_second);
        QSignalSpy ticks(&shown.clock, &DeviceClock::ticked);
        shown.lines.setLevel(c_line, 1);
        scheduler().advance(5 * c_second);
        QCOMPARE(ticks.count(), 1);
        hide(shown, false);
        QTRY_COMPARE(shown.window.visibility(), QWindow::Windowed);
        QTRY_VERIFY(shown.window.isExposed());
        shown.clock.want();
        scheduler().advance(c_second);
        QVERIFY(ticks.count() > 10);
    }

    void theCourseShowsWhatTheLineDid()
    {
        Shown shown(m_board.get());
        scheduler().advance(15 * c_second);
        shown.lines.setLevel(c_line, 1);
        scheduler().advance(3 * c_second);
        m_board->setPluggedIn(false);
        scheduler().advance(2 * c_second);
        shown.clock.tick();
        // Low for five seconds, high for three, and then nobody knows.
        QCOMPARE(shown.drawn(), "low low high nothing"_s);
        m_board->setPluggedIn(true);
        scheduler().advance(2 * c_second);
        shown.clock.tick();
        QCOMPARE(shown.drawn(), "low high nothing high"_s);
    }

    void aHeldCourseStaysHoweverLong()
    {
        Shown shown(m_board.get());
        scheduler().advance(15 * c_second);
        shown.lines.setLevel(c_line, 1);
        scheduler().advance(5 * c_second);
        shown.clock.setRunning(false);
        QCOMPARE(shown.drawn(), "low low high high"_s);
        const double held = shown.clock.now();
        for (int number = 0; number < 30000; ++number) {
            shown.lines.setLevel(c_line, number % 2);
            scheduler().advance(10000);
        }
        QCOMPARE(shown.drawn(), "low low high high"_s);
        QCOMPARE(shown.lines.levelAt(c_line, held - 6e6), QVariant(0));
        shown.lines.setLevel(c_line, 0);
        scheduler().advance(60 * c_second);
        shown.clock.setRunning(true);
        QCOMPARE(shown.drawn(), "low low low low"_s);
    }

    /// However many columns it is narrower than.
    void aGapIsSeen()
    {
        Shown shown(m_board.get());
        scheduler().advance(11310000); // in the middle of the first quarter, in the end
        const qint64 now = scheduler().now();
        Q_EMIT m_board->lineChanged(c_line, unknown(now));
        Q_EMIT m_board->lineChanged(c_line, known(now + 1, 0));
        scheduler().advance(8690000);
        shown.clock.tick();
        QCOMPARE(shown.drawn(), "nothing low low low"_s);
    }

    void whatIsToldLateIsInAHeldCourse()
    {
        Shown shown(m_board.get());
        scheduler().advance(20 * c_second);
        shown.clock.setRunning(false);
        QCOMPARE(shown.drawn(), "low low low low"_s);
        QSignalSpy ticks(&shown.clock, &DeviceClock::ticked);
        Q_EMIT m_board->lineChanged(c_line, known(15 * c_second, 1));
        Q_EMIT m_board->lineChanged(c_line, known(20 * c_second, 0)); // after it
        QCOMPARE(shown.drawn(), "low low high high"_s);
        QCOMPARE(shown.lines.history(c_line)->changes().back(), known(15 * c_second, 1));
        scheduler().advance(c_second);
        QCOMPARE(ticks.count(), 1); // and then it rests
    }

    void aCourseEndsWhereWhatIsToldLateEnds()
    {
        Shown shown(m_board.get());
        scheduler().advance(20 * c_second);
        QCOMPARE(shown.drawn(), "low low low low"_s);
        Q_EMIT m_board->lineChanged(c_line, known(13 * c_second, 1));
        Q_EMIT m_board->lineChanged(0, known(16 * c_second, 1));
        shown.clock.tick();
        QCOMPARE(shown.lines.toldUntilUs(), 16 * c_second);
        QCOMPARE(shown.drawn(), "low high nothing nothing"_s);
        QCOMPARE(shown.lines.levelAt(c_line, 15e6), QVariant(1));
        QCOMPARE(shown.lines.levelAt(c_line, 17e6), QVariant());
        scheduler().advance(LinesModel::c_awaitedUs + DeviceClock::c_intervalUs); // nothing more is told
        QCOMPARE(shown.lines.toldUntilUs(), static_cast<qint64>(shown.clock.now()));
        QCOMPARE(shown.drawn(), "low high high high"_s);
        Q_EMIT m_board->lineChanged(c_line, known(18 * c_second, 0));
        shown.clock.tick();
        QCOMPARE(shown.lines.toldUntilUs(), 18 * c_second);
        Q_EMIT m_board->lineChanged(c_line, known(scheduler().now(), 1)); // that is all
        QCOMPARE(shown.lines.toldUntilUs(), scheduler().now());
    }

    void aHeldCourseGoesOnAsItWent()
    {
        Shown shown(m_board.get());
        scheduler().advance(20 * c_second);
        shown.clock.setRunning(false);
        scheduler().advance(c_second);
        m_board->setInput(c_line, 1);
        scheduler().advance(c_second);
        m_board->setInput(c_line, 0);
        scheduler().advance(c_second);
        QCOMPARE(shown.lines.history(c_line)->changes().size(), std::size_t{1});
        shown.clock.setRunning(true);
        const std::deque<LineLevel> expected = {known(0, 0), known(21 * c_second, 1),
                                                known(22 * c_second, 0)};
        QCOMPARE(shown.lines.history(c_line)->changes(), expected);
        QCOMPARE(shown.lines.history(c_line)->at(21 * c_second - 1), known(0, 0));
    }

private:
    ManualScheduler& scheduler() { return *m_scheduler; }

    std::unique_ptr<ManualScheduler> m_scheduler;
    std::unique_ptr<LineDevice> m_board;
};

QTEST_MAIN(TestCourses)
#include "test_courses.moc"
