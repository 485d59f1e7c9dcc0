#include "literals.h"
#include "manual_scheduler.h"
#include "panel_fixture.h"
#include "rows.h"

#include <process/time_text.h>
#include <window/course.h>
#include <window/course_export.h>
#include <window/course_measure.h>
#include <window/course_trigger.h>
#include <window/course_view.h>
#include <window/texts.h>

#include <QFontMetrics>
#include <QXmlStreamReader>

#include <random>

namespace {

constexpr qint64 c_second = 1000000;
constexpr int c_line = 1; // a digital input that nothing feeds

/// A line by its levels and their times: "?" is unknown.
LineHistory historyOf(const QString& levels)
{
    LineHistory history;
    const QStringList changes = levels.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    for (const QString& change : changes) {
        const QStringList parts = change.split(QLatin1Char('@'));
        history.append({parts.at(0).toInt(), parts.at(1).toLongLong(), parts.at(0) != QLatin1String("?")});
    }
    return history;
}

QString textOf(const std::optional<qint64>& time)
{
    return time ? QString::number(*time) : "none"_s;
}

/// A line as slow and plain as can be: its level in each microsecond; nothing where nobody knows it.
class PlainLine
{
public:
    static constexpr qint64 c_endUs = 400;

    explicit PlainLine(std::mt19937* random)
    {
        const auto below = [random](int limit) {
            return static_cast<int>((*random)() % static_cast<unsigned>(limit));
        };
        std::optional<int> level;
        int leftUs = below(30);
        for (qint64 us = 0; us < c_endUs; ++us) {
            if (leftUs-- == 0) {
                const std::optional<int> before = level;
                while (level == before) {
                    level = below(4) != 0 ? std::optional(below(3)) : std::nullopt;
                }
                m_history.append({level.value_or(0), us, level.has_value()});
                leftUs = below(20);
            }
            m_levels.push_back(level);
        }
    }

    const LineHistory& history() const { return m_history; }
    std::optional<int> level(qint64 us) const
    {
        return us < 0 ? std::nullopt : m_levels.at(static_cast<std::size_t>(us));
    }
    bool isEdge(qint64 us) const { return level(us) && level(us - 1) && level(us) != level(us - 1); }
    /// The first change after us, or the last one until us; none beyond both ends.
    std::optional<qint64> changeAfter(qint64 us) const
    {
        do {
            ++us;
        } while (us < c_endUs && level(us) == level(us - 1));
        return us < c_endUs ? std::optional(us) : std::nullopt;
    }
    std::optional<qint64> changeUntil(qint64 us) const
    {
        while (us >= 0 && level(us) == level(us - 1)) {
            --us;
        }
        return us >= 0 ? std::optional(us) : std::nullopt;
    }
    bool isEdge(std::optional<qint64> us) const { return us && isEdge(*us); }

    /// Level, width and period at us.
    QString measure(qint64 us) const
    {
        if (!level(us)) {
            return "unknown"_s;
        }
        const std::optional<qint64> begin = changeUntil(us);
        const std::optional<qint64> end = changeAfter(us);
        std::optional<qint64> width;
        std::optional<qint64> period;
        if (isEdge(begin) && isEdge(end)) {
            width = *end - *begin;
            const std::optional<qint64> after = changeAfter(*end);
            const std::optional<qint64> before = changeUntil(*begin - 1);
            if (isEdge(after) && level(*after) == level(us)) {
                period = *after - *begin;
            } else if (isEdge(before) && level(*before) == level(*end)) {
                period = *end - *before;
            }
        }
        return "%1 %2 %3"_s.arg(*level(us)).arg(textOf(width), textOf(period));
    }

private:
    std::vector<std::optional<int>> m_levels;
    LineHistory m_history;
};

/// A view of the courses of a small board.
struct Shown
{
    explicit Shown(const SimulatedBoardSetup& setup = smallBoard())
        : board(makeSimulatedBoard(setup, &scheduler, DevicePlace::SameThread))
        , clock(&scheduler)
        , lines(board.get(), {}, &clock)
        , view(&lines)
    {
        board->open();
        view.setWidth(200);
    }

    void pass(qint64 us)
    {
        scheduler.advance(us);
        clock.tick();
    }

    /// Changes the line after five and after eight of ten seconds.
    void makeEdges()
    {
        pass(5 * c_second);
        lines.setLevel(c_line, 1);
        pass(3 * c_second);
        lines.setLevel(c_line, 0);
        pass(2 * c_second);
    }

    /// Sets a cursor where timeUs is drawn.
    void setCursor(int number, qint64 timeUs, int line = -1)
    {
        view.setCursor(number, view.placeOf(timeUs), line);
    }

    /// As a share of the time: the present is in the last column.
    double shareOfCursor() const
    {
        return view.cursors().value(0).toMap().value("share"_s).toDouble() + 1 / view.width();
    }

    ManualScheduler scheduler;
    std::unique_ptr<LineDevice> board;
    DeviceClock clock;
    LinesModel lines;
    CourseView view;
};

struct Chosen
{
    LineFilter filter;
};

/// An export of the lines whose names contain text.
struct ExportOf : private Chosen, public CourseExport
{
    explicit ExportOf(Shown& shown, const QString& text = QString())
        : CourseExport(&shown.lines, &shown.view, &filter)
    {
        filter.setSourceModel(&shown.lines);
        filter.setText(text);
    }
};

} // namespace

/// The arithmetic of the courses: what is shown, measured and found in them.
class TestCourseView : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { installTexts(QLocale(QLocale::English)); }

    void zoomingKeepsTheTimeAtThePointer_data()
    {
        const Rows<qint64, qint64, double, double, qint64, qint64> row("from", "length", "factor", "share",
                                                                       "newFrom", "newLength");
        row("at the left edge", 1000, 10000, 2.0, 0.0, 1000, 5000);
        row("in the middle", 1000, 10000, 2.0, 0.5, 3500, 5000);
        row("at the right edge", 1000, 10000, 2.0, 1.0, 6000, 5000);
        row("less detail", 1000, 10000, 0.5, 0.5, -4000, 20000);
        row("no change", 1000, 10000, 1.0, 0.3, 1000, 10000);
        row("as much detail as there is", 1000, 1000, 1000.0, 0.5, 1450, 100);
        row("as little", 0, 400000000, 0.1, 1.0, -200000000, 600000000);
    }
    void zoomingKeepsTheTimeAtThePointer()
    {
        QFETCH(qint64, from);
        QFETCH(qint64, length);
        QFETCH(double, factor);
        QFETCH(double, share);
        const TimeSpan span = zoomed({from, length}, factor, share);
        QTEST(span.fromUs, "newFrom");
        QTEST(span.lengthUs, "newLength");
    }

    void theAxisIsMarkedAtRoundTimes_data()
    {
        const Rows<qint64, qint64, double, QString> row("from", "length", "width", "marks");
        row("ten seconds", -10000000, 10000000, 400.0, "-10 -8 -6 -4 -2 0");
        row("ten seconds in little room", -10000000, 10000000, 130.0, "-10 -5 0");
        row("between the marks", -9500000, 10000000, 400.0, "-8 -6 -4 -2 0");
        row("after the present", 500000, 3000000, 200.0, "1 2 3");
        row("tenths", -1000000, 1000000, 400.0, "-1.0 -0.8 -0.6 -0.4 -0.2 0.0");
        row("microseconds", -100, 100, 220.0, "-0.00010 -0.00005 0.00000");
        row("no room", -10000000, 10000000, 20.0, "");
    }
    void theAxisIsMarkedAtRoundTimes()
    {
        QFETCH(qint64, from);
        QFETCH(qint64, length);
        QFETCH(double, width);
        const QVector<qint64> marks = axisMarks({from, length}, width);
        QStringList texts;
        for (const qint64 mark : marks) {
            texts.append(offsetText(mark, marks.at(1) - marks.at(0)).chopped(2));
        }
        QTEST(texts.join(QLatin1Char(' ')).replace(QChar(0x2212), QLatin1Char('-')), "marks");
    }

    void lengthsAndFrequenciesHaveFittingUnits_data()
    {
        const Rows<qint64, QString, QString> row("us", "length", "frequency");
        row("1", 1, "1\u00a0\u00b5s", "1,000\u00a0kHz");
        row("999", 999, "999\u00a0\u00b5s", "1.001\u00a0kHz");
        row("1000", 1000, "1\u00a0ms", "1\u00a0kHz");
        row("12345", 12345, "12.345\u00a0ms", "81\u00a0Hz");
        row("12500", 12500, "12.5\u00a0ms", "80\u00a0Hz");
        row("1000000", 1000000, "1\u00a0s", "1\u00a0Hz");
        row("2500001", 2500001, "2.500001\u00a0s", "0.4\u00a0Hz");
        row("600000000", 600000000, "600\u00a0s", "0.001667\u00a0Hz");
    }
    void lengthsAndFrequenciesHaveFittingUnits()
    {
        QFETCH(qint64, us);
        QTEST(lengthText(us), "length");
        QTEST(frequencyText(us), "frequency");
    }

    void edgesAreFound_data()
    {
        const Rows<QString, qint64, QString, QString> row("line", "time", "before", "after");
        const QString pulses = "0@100 1@200 0@250 1@400"_s;
        row("before all", pulses, 50, "none", "200");
        row("where the line becomes known is none", pulses, 150, "none", "200");
        row("between", pulses, 220, "200", "250");
        row("on an edge", pulses, 250, "200", "400");
        row("after all", pulses, 500, "400", "none");
        row("nothing is known", "", 500, "none", "none");
        row("an unknown level has no edges", "0@100 ?@200 1@300 0@400", 250, "none", "400");
    }
    void edgesAreFound()
    {
        QFETCH(QString, line);
        QFETCH(qint64, time);
        const LineHistory history = historyOf(line);
        QTEST(textOf(edgeBefore(history, time)), "before");
        QTEST(textOf(edgeAfter(history, time)), "after");
    }

    void theNearestEdgeIsTakenWhenItIsNear_data()
    {
        const Rows<qint64, QString> row("time", "edge");
        row("too far before", 169, "none");
        row("just near enough", 170, "200");
        row("on it", 200, "200");
        row("nearer to the one before", 224, "200");
        row("nearer to the one after", 226, "250");
        row("too far after", 281, "none");
    }
    void theNearestEdgeIsTakenWhenItIsNear()
    {
        QFETCH(qint64, time);
        QTEST(textOf(nearestEdge(historyOf("0@100 1@200 0@250"_s), time, 30)), "edge");
    }

    void aLevelIsMeasured_data()
    {
        const Rows<QString, qint64, QString> row("line", "time", "measure");
        const QString pulses = "0@100 1@200 0@250 1@400 0@480"_s;
        row("before all", pulses, 50, "unknown");
        row("a level whose begin nobody saw", pulses, 150, "0 none none");
        row("a level with one of its kind after it", pulses, 220, "1 50 200 0.25");
        row("its other half", pulses, 300, "0 150 230 0.652174");
        row("the last whole level", pulses, 450, "1 80 230 0.347826");
        row("a level that has not ended", pulses, 500, "0 none none");
        row("a level with nothing around it", "0@100 1@200 0@250", 210, "1 50 none");
        row("beside a gap", "0@100 1@200 ?@250 1@300 0@400", 210, "1 none none");
        row("in a gap", "0@100 ?@250 1@300", 260, "unknown");
        row("steps without a period", "0@100 5@200 9@300 7@400", 250, "5 100 none");
    }
    void aLevelIsMeasured()
    {
        QFETCH(QString, line);
        QFETCH(qint64, time);
        const std::optional<LevelMeasure> measure = measureAt(historyOf(line), time);
        QString text = "unknown"_s;
        if (measure) {
            text = "%1 %2 %3"_s.arg(measure->level).arg(textOf(measure->widthUs), textOf(measure->periodUs));
            text += measure->periodUs ? " %1"_s.arg(measure->share) : QString();
        }
        QTEST(text, "measure");
    }

    void aSelectionIsMeasured_data()
    {
        const Rows<QString, int, int, QString> row("levels", "from", "to", "measure");
        row("a pulse", "0@0 1@10 0@20", 0, 40, "2 edges, 0 to 1, mean 0.25");
        row("its middle", "0@0 1@10 0@20", 12, 16, "0 edges, 1 to 1, mean 1");
        row("edges at its ends", "0@0 1@10 0@20", 10, 20, "2 edges, 1 to 1, mean 1");
        row("a gap counts for nothing", "0@0 1@10 ?@20 0@30", 0, 40, "1 edges, 0 to 1, mean 0.333333");
        row("analogue", "100@0 300@30", 0, 40, "1 edges, 100 to 300, mean 150");
        row("before all", "0@50", 0, 40, "none");
        row("a gap alone", "0@0 ?@10", 20, 40, "none");
        row("no time", "0@0", 5, 5, "none");
    }
    void aSelectionIsMeasured()
    {
        const auto [levels, from, to, expected] = Rows<QString, int, int, QString>::values();
        const auto measure = measureBetween(historyOf(levels), from, to);
        QCOMPARE(measure ? "%1 edges, %2 to %3, mean %4"_s.arg(measure->edges)
                               .arg(measure->levels.lowest)
                               .arg(measure->levels.highest)
                               .arg(measure->mean)
                         : "none"_s,
                 expected);
    }

    void whatALineDidBetweenTheCursorsIsTold()
    {
        Shown shown;
        shown.makeEdges();
        QCOMPARE(shown.view.selectionText(c_line), QString());
        shown.setCursor(1, 4 * c_second);
        shown.setCursor(2, 9 * c_second);
        QCOMPARE(shown.view.selectionText(c_line), "2 edges \u00b7 0 to 1 \u00b7 mean 0.6"_s);
        QCOMPARE(shown.view.selectionText(99), QString());
        Q_EMIT shown.board->lineChanged(c_line, {1, 8500000, true});                              // told late
        QCOMPARE(shown.view.selectionText(c_line), "3 edges \u00b7 0 to 1 \u00b7 mean 0.6667"_s); // so far
        shown.pass(c_second);
        QCOMPARE(shown.view.selectionText(c_line), "3 edges \u00b7 0 to 1 \u00b7 mean 0.7"_s);
        shown.view.pan(0.1);
        shown.setCursor(2, 7 * c_second);
        QCOMPARE(shown.view.selectionText(c_line), "1 edge \u00b7 0 to 1 \u00b7 mean 0.6667"_s);
        QCOMPARE(shown.view.selectionText(0), "0 edges \u00b7 0 to 0 \u00b7 mean 0"_s);
    }

    void theCoursesAreExported()
    {
        Shown shown;
        shown.makeEdges();
        const ExportOf exporter(shown, "in"_s); // a digital line and an analogue one
        const auto time = [](qint64 us) {
            return fullTime(ManualScheduler::c_wallClockOffsetUs + us).toUtf8();
        };
        QCOMPARE(exporter.csv(), "time,line,level\n" + time(0) + ",din,0\n" + time(0) + ",ain,0\n" +
                                     time(5 * c_second) + ",din,1\n" + time(8 * c_second) + ",din,0\n");
        shown.setCursor(1, 4 * c_second);
        shown.setCursor(2, 7 * c_second); // the selection alone
        QCOMPARE(exporter.vcd(), "$date " + time(4 * c_second) +
                                     " $end\n$timescale 1 us $end\n$scope module device $end\n"
                                     "$var wire 1 ! din $end\n$var real 64 \" ain $end\n"
                                     "$upscope $end\n$enddefinitions $end\n"
                                     "#0\n0!\nr0 \"\n#1000000\n1!\n#3000000\n");
        const QByteArray svg = exporter.sheet().svg();
        QXmlStreamReader xml(svg);
        int texts = 0;
        while (!xml.atEnd()) {
            texts += xml.readNext() == QXmlStreamReader::StartElement && xml.name() == QLatin1String("text");
        }
        QVERIFY2(!xml.hasError(), qPrintable(xml.errorString()));
        QVERIFY(texts > 3); // both names, and the marks of the axis
        QVERIFY(svg.contains(">din</text>"));
    }

    void nothingIsExportedThatIsNotTold()
    {
        Shown shown;
        shown.makeEdges();
        Q_EMIT shown.board->lineChanged(c_line, {1, 8500000, true}); // told late: more of it is awaited
        const ExportOf exporter(shown, "din"_s);
        QVERIFY(exporter.vcd().endsWith("#8000000\n0!\n#8500000\n1!\n"));
        shown.setCursor(1, 9 * c_second); // from after that on
        shown.setCursor(2, 9500000);
        QVERIFY(exporter.vcd().endsWith("#0\n1!\n"));
        QCOMPARE(exporter.csv().count('\n'), 2);
        const QImage picture = QImage::fromData(exporter.sheet().png());
        QVERIFY(picture.pixelColor(120 + 510, 50) == QColor(Qt::white));
        QCOMPARE(shown.view.selectionText(c_line), QString());
    }

    void nothingIsExportedOfNoTime()
    {
        Shown shown;
        shown.makeEdges();
        const ExportOf exporter(shown, "din"_s);
        shown.view.setCursor(1, 0.6, -1);
        shown.view.setCursor(2, 0.6, -1);
        QVERIFY(exporter.sheet().svg().contains(">din</text>"));
        QVERIFY(exporter.vcd().endsWith("#0\n1!\n"));
    }

    void aLevelThatNobodyKnowsIsExportedAsSuch()
    {
        Shown shown;
        shown.makeEdges();
        shown.board->setPluggedIn(false);
        shown.pass(c_second);
        const ExportOf exporter(shown, "in"_s);
        QVERIFY(exporter.vcd().contains("x!\nrnan \"\n"));
        QVERIFY(exporter.csv().endsWith(",ain,\n"));
    }

    void namesAreExportedSoThatTheyAreRead()
    {
        SimulatedBoardSetup setup;
        const QString longName = QString(60, QLatin1Char('m'));
        for (const QString& name : {"a, \"b\""_s, "c$ d"_s, "c_ d"_s, longName + "1"_s}) {
            SimulatedBoardSetup::Line line;
            line.line = {name, DLine::Kind::Digital, DLine::Direction::In};
            setup.lines.append(line);
        }
        Shown shown(setup);
        const ExportOf exporter(shown);
        QVERIFY(exporter.csv().contains(",\"a, \"\"b\"\"\",0\n"));
        for (const char* variable : {"! a,_\"b\" ", "\" c__d ", "# c__d_ "}) {
            QVERIFY2(exporter.vcd().contains(variable), variable);
        }
        // There is so much room for names; their ends differ.
        const QString name = exporter.sheet().labels.back().text;
        QVERIFY(QFontMetrics(CourseSheet::font()).horizontalAdvance(name) < 108);
        QVERIFY2(name.endsWith("m1"_s), qPrintable(name));
    }

    void theNameOfAFileTellsItsKind_data()
    {
        const Rows<QString, QString> row("file", "begin");
        row("values", "a.csv", "time,line,level");
        row("dump", "a.VCD", "$date ");
        row("drawing", "a.svg", "<svg ");
        row("picture", "a.png", "PNG");
        row("another", "a.txt", "");
    }
    void theNameOfAFileTellsItsKind()
    {
        const auto [file, begin] = Rows<QString, QString>::values();
        Shown shown;
        shown.makeEdges();
        const ExportOf exporter(shown);
        const QTemporaryDir folder;
        const QString problem = exporter.save(folder.filePath(file));
        QFile saved(folder.filePath(file));
        QCOMPARE(saved.open(QIODevice::ReadOnly), !begin.isEmpty());
        QCOMPARE(problem, begin.isEmpty() ? "The name must end with .csv, .vcd, .svg or .png."_s : QString());
        QVERIFY(!saved.isOpen() || saved.read(16).contains(begin.toUtf8()));
    }

    void aPictureHasTheCoursesOfTheSelection()
    {
        Shown shown;
        shown.makeEdges();
        const ExportOf exporter(shown, "din"_s);
        const auto isDrawn = [&exporter](int column, bool high) {
            const QImage picture = QImage::fromData(exporter.sheet().png());
            const QColor colour = picture.pixelColor(120 + column, high ? 50 : 78);
            return picture.size() == QSize(1140, 88) && colour.blue() > colour.red() + 50;
        };
        QVERIFY(isDrawn(250, false)); // of ten seconds, on from the fifth to the eighth
        QVERIFY(isDrawn(650, true));
        QVERIFY(isDrawn(950, false));
        shown.view.setCursor(1, 0.4, -1);
        shown.view.setCursor(2, 0.7, -1);
        QVERIFY(isDrawn(250, false));
        QVERIFY(isDrawn(950, true));
    }

    void tooManyLinesForAPictureAreRefused()
    {
        SimulatedBoardSetup setup = smallBoard();
        while (setup.lines.size() < 700) {
            setup.lines.append(setup.lines.constFirst());
        }
        Shown shown(setup);
        const ExportOf exporter(shown);
        const QTemporaryDir folder;
        QCOMPARE(exporter.save(folder.filePath("a.png"_s)),
                 "A picture has no room for so many lines; hide some, or save them as .svg."_s);
        QCOMPARE(exporter.save(folder.filePath("a.svg"_s)), QString());
    }

    void theTriggerCountsAndStops_data()
    {
        using Trigger = CourseTrigger;
        const Rows<int, QString, int, int> row("condition", "mode", "count", "right");
        // The line is high from 5 to 8 s; at 20 s the courses have gone on or stopped with this right edge.
        row("rising, at", int(Trigger::Condition::Rising), "at", 1, 5);
        row("rising, around", int(Trigger::Condition::Rising), "around", 1, 10);
        row("rising, from", int(Trigger::Condition::Rising), "from", 1, 15);
        row("falling", int(Trigger::Condition::Falling), "at", 1, 8);
        row("either, the first one stops", int(Trigger::Condition::Either), "around", 2, 10);
        row("high", int(Trigger::Condition::High), "at", 1, 5);
        row("low", int(Trigger::Condition::Low), "at", 1, 8);
        row("only counted", int(Trigger::Condition::Either), "none", 2, 20);
    }
    void theTriggerCountsAndStops()
    {
        const auto [condition, mode, count, right] = Rows<int, QString, int, int>::values();
        Shown shown;
        CourseTrigger trigger(&shown.lines, &shown.view);
        trigger.setMode(mode);
        trigger.setCondition(c_line, static_cast<CourseTrigger::Condition>(condition));
        for (int second = 0; second < 20; ++second) {
            if (second == 5 || second == 8) {
                shown.lines.setLevel(c_line, second == 5 ? 1 : 0);
            }
            shown.clock.tick();
            shown.pass(c_second);
        }
        QCOMPARE(trigger.count(), mode == "at"_s ? 1 : count);
        QCOMPARE(shown.clock.isRunning(), mode == "none"_s);
        QCOMPARE(shown.view.span().toUs(), right * c_second);
        QVERIFY(mode == "none"_s || !trigger.marks().isEmpty());
    }

    void theTriggerWaitsForTheLevelsOfOtherLines()
    {
        constexpr int other = 3; // analogue: high above its middle
        Shown shown;
        CourseTrigger trigger(&shown.lines, &shown.view);
        trigger.setMode("none"_s);
        trigger.setCondition(c_line, CourseTrigger::Condition::Rising);
        trigger.setCondition(other, CourseTrigger::Condition::High);
        QCOMPARE(trigger.text(), "din \u2191, ain 1"_s);
        const auto pulse = [&shown] {
            shown.lines.setLevel(c_line, 1);
            shown.pass(1000);
            shown.lines.setLevel(c_line, 0);
            shown.pass(1000);
        };
        pulse();
        QCOMPARE(trigger.count(), 0);
        shown.lines.setLevel(other, 40000);
        QCOMPARE(trigger.count(), 0);
        pulse();
        QCOMPARE(trigger.count(), 1);
        shown.board->setPluggedIn(false);
        shown.board->setPluggedIn(true); // what becomes known is no edge
        QCOMPARE(trigger.count(), 1);
        trigger.setCondition(other, CourseTrigger::Condition::None);
        QCOMPARE(trigger.count(), 0);
        shown.view.setWidth(10000); // a pixel for each millisecond
        for (std::size_t number = 0; number < CourseTrigger::c_mostMarks + 1; ++number) {
            pulse();
        }
        QCOMPARE(trigger.count(), static_cast<int>(CourseTrigger::c_mostMarks) + 1);
        QCOMPARE(trigger.marks().size(), static_cast<int>(CourseTrigger::c_mostMarks));
        shown.clock.setRunning(false);
        pulse(); // a held course is not looked at
        QCOMPARE(trigger.count(), static_cast<int>(CourseTrigger::c_mostMarks) + 1);
        trigger.clear();
        QVERIFY(!trigger.isActive());
        QVERIFY(trigger.marks().isEmpty());
    }

    void theTriggerTellsAtTheTicksAndMarksPixels()
    {
        Shown shown;
        CourseTrigger trigger(&shown.lines, &shown.view);
        trigger.setMode("around"_s);
        trigger.setCondition(c_line, CourseTrigger::Condition::Either);
        shown.pass(c_second);
        const QSignalSpy counted(&trigger, &CourseTrigger::counted);
        const QSignalSpy marked(&trigger, &CourseTrigger::marksMoved);
        const qint64 firstUs = shown.scheduler.now();
        constexpr int most = static_cast<int>(CourseTrigger::c_mostMarks);
        for (int change = 0; change <= 2 * most; ++change) {
            shown.lines.setLevel(c_line, 1 - change % 2);
        }
        QCOMPARE(trigger.count(), 2 * most + 1);
        QCOMPARE(counted.count(), 0);
        QCOMPARE(marked.count(), 0);
        shown.clock.tick();
        QCOMPARE(counted.count(), 1);
        QCOMPARE(trigger.marks(), QVariantList{shown.view.placeOf(firstUs)});
        // What stops the courses is marked, however much comes after it.
        shown.pass(c_second);
        for (int change = 0; change <= most; ++change) {
            shown.lines.setLevel(c_line, change % 2);
        }
        QCOMPARE(trigger.marks().size(), 2);
        shown.pass(5 * c_second);
        QVERIFY(!shown.clock.isRunning());
        QCOMPARE(trigger.marks().value(0), QVariant(shown.view.placeOf(firstUs)));
    }

    void whoStopsTheCoursesTakesTheTriggersStopAway()
    {
        Shown shown;
        CourseTrigger trigger(&shown.lines, &shown.view);
        trigger.setMode("from"_s);
        trigger.setCondition(c_line, CourseTrigger::Condition::Rising);
        shown.lines.setLevel(c_line, 1);
        shown.pass(c_second);
        shown.clock.setRunning(false);
        shown.pass(20 * c_second);
        shown.clock.setRunning(true);
        shown.pass(20 * c_second);
        QVERIFY(shown.clock.isRunning());
    }

    /// Against a model that keeps all that was seen, and looks at all of it anew each time.
    void theTriggerCountsAsAPlainModelDoes()
    {
        using Condition = CourseTrigger::Condition;
        struct Moment
        {
            qint64 timeUs;
            QVector<LineLevel> levels;
            bool running;
        };
        SimulatedBoardSetup setup;
        for (const auto kind :
             {DLine::Kind::Digital, DLine::Kind::Digital, DLine::Kind::Digital, DLine::Kind::Analog}) {
            SimulatedBoardSetup::Line line;
            line.line = {"line%1"_s.arg(setup.lines.size()), kind, DLine::Direction::In};
            setup.lines.append(line);
        }
        const int lines = setup.lines.size();
        for (unsigned seed = 1; seed <= 200; ++seed) {
            std::mt19937 random(seed);
            const auto below = [&random](int limit) { return static_cast<int>(random() % unsigned(limit)); };
            Shown shown(setup);
            shown.view.setWidth(10000); // a pixel for each millisecond, in which alone something happens
            CourseTrigger trigger(&shown.lines, &shown.view);
            trigger.setMode("none"_s);
            QVector<Condition> conditions(lines, Condition::None);
            QVector<Moment> seen;
            const auto isHigh = [&](const Moment& moment, int line) {
                return moment.levels.at(line).level > shown.lines.highestLevel(line) / 2;
            };
            const auto fits = [&](const Moment& moment) {
                bool all = true;
                for (int line = 0; line < lines; ++line) {
                    const Condition wanted = conditions.at(line);
                    if (wanted == Condition::High || wanted == Condition::Low) {
                        all = all && moment.levels.at(line).known &&
                              isHigh(moment, line) == (wanted == Condition::High);
                    }
                }
                return all;
            };
            const auto isEdge = [&](const Moment& before, const Moment& after, int line) {
                const Condition wanted = conditions.at(line);
                const bool known = before.levels.at(line).known && after.levels.at(line).known;
                const bool rises = known && !isHigh(before, line) && isHigh(after, line);
                const bool falls = known && isHigh(before, line) && !isHigh(after, line);
                return (rises && (wanted == Condition::Rising || wanted == Condition::Either)) ||
                       (falls && (wanted == Condition::Falling || wanted == Condition::Either));
            };
            const auto happened = [&] {
                bool levelsAlone = true;
                bool any = false;
                for (const Condition wanted : qAsConst(conditions)) {
                    any = any || wanted != Condition::None;
                    levelsAlone = levelsAlone && (wanted == Condition::None || wanted == Condition::High ||
                                                  wanted == Condition::Low);
                }
                QVector<qint64> times;
                for (int number = 1; any && number < seen.size(); ++number) {
                    const Moment& before = seen.at(number - 1);
                    const Moment& after = seen.at(number);
                    bool counts = levelsAlone && !fits(before);
                    for (int line = 0; line < lines; ++line) {
                        counts = counts || isEdge(before, after, line);
                    }
                    if (counts && fits(after) && after.running) {
                        times.append(after.timeUs);
                    }
                }
                return times;
            };
            bool pluggedIn = true;
            for (int step = 0; step < 80; ++step) {
                const int what = below(20);
                const int line = below(lines);
                if (what == 0 || step < 3) {
                    const auto condition = static_cast<Condition>(below(static_cast<int>(Condition::Count)));
                    trigger.setCondition(line, condition);
                    if (conditions.at(line) != condition) {
                        conditions[line] = condition;
                        seen.clear();
                    }
                } else if (what == 1) {
                    shown.clock.setRunning(!shown.clock.isRunning());
                } else if (what == 2) {
                    pluggedIn = !pluggedIn;
                    shown.board->setPluggedIn(pluggedIn);
                } else {
                    shown.pass(below(3) * 1000);
                    shown.lines.setLevel(line, below(3) * shown.lines.highestLevel(line) / 2);
                }
                Moment moment{shown.scheduler.now(), {}, shown.clock.isRunning()};
                for (int other = 0; other < lines; ++other) {
                    moment.levels.append(shown.board->level(other));
                }
                seen.append(moment);
                const QVector<qint64> times = happened();
                const auto where = "seed %1, step %2: %3 times, %4 expected"_s.arg(seed)
                                       .arg(step)
                                       .arg(trigger.count())
                                       .arg(times.size());
                QVERIFY2(trigger.count() == times.size(), qPrintable(where));
                QVariantList marks;
                for (const qint64 timeUs : times) {
                    const double place = shown.view.placeOf(timeUs);
                    if (marks.isEmpty() || marks.constLast() != place) {
                        marks.append(place);
                    }
                }
                QVERIFY2(trigger.marks() == marks, qPrintable(where));
            }
        }
    }

    void theNextConditionFollowsTheLast()
    {
        Shown shown;
        CourseTrigger trigger(&shown.lines, &shown.view);
        QStringList signs;
        for (int step = 0; step < 7; ++step) {
            signs.append(trigger.sign(c_line));
            trigger.next(c_line);
        }
        QCOMPARE(signs,
                 (QStringList{QString(), "\u2191"_s, "\u2193"_s, "\u2195"_s, "1"_s, "0"_s, QString()}));
        trigger.next(-1); // no line
        QCOMPARE(trigger.text(), "din \u2191"_s);
    }

    void whatWasLostIsAGap()
    {
        Shown shown;
        shown.makeEdges();
        CourseTrigger trigger(&shown.lines, &shown.view);
        trigger.setCondition(c_line, CourseTrigger::Condition::Rising);
        Q_EMIT shown.board->changesLost(5, 10 * c_second, 11 * c_second);
        Q_EMIT shown.board->lineChanged(c_line, {1, 11 * c_second, true});
        Q_EMIT shown.board->lineChanged(0, {1, 12 * c_second, true}); // lost nothing
        shown.pass(2 * c_second);
        const auto knownAt = [&shown](int line, qint64 timeUs) {
            return shown.lines.history(line)->at(timeUs).known;
        };
        QVERIFY(knownAt(c_line, 10 * c_second - 1));
        QVERIFY(!knownAt(c_line, 10 * c_second));
        QVERIFY(!knownAt(c_line, 11 * c_second - 1));
        QVERIFY(knownAt(c_line, 11 * c_second));
        QVERIFY(knownAt(0, 11 * c_second));
        QCOMPARE(trigger.count(), 0); // what becomes known is no edge
    }

    void aCourseHasTheLevelsOfEachMicrosecond()
    {
        std::mt19937 random(1);
        const auto below = [&random](int limit) { return static_cast<int>(random() % unsigned(limit)); };
        for (int run = 0; run < 300; ++run) {
            LineHistory history;
            for (qint64 timeUs = below(30); timeUs < 400; timeUs += 1 + below(30)) {
                history.append({below(3), timeUs, below(4) != 0});
            }
            const TimeColumns columns{20 + below(200), 1 + below(20)};
            const qint64 first = below(20);
            const qint64 untilUs = columns.startOf(first + columns.perSpan) - 1;
            std::vector<LevelRange> expected(std::size_t(columns.perSpan));
            const qint64 fromUs = columns.startOf(first);
            for (qint64 us = fromUs; us <= untilUs; ++us) {
                LevelRange& range = expected.at(std::size_t(columns.of(us) - first));
                range.add(history.at(us));
                if (us > fromUs && history.changeCountUntil(us) != history.changeCountUntil(us - 1)) {
                    range.add(history.at(us - 1));
                }
            }
            std::vector<LevelRange> drawn(expected.size());
            for (const CourseStep& step : courseOf(history, columns, first, untilUs)) {
                for (int column = step.column; column < step.column + step.columns; ++column) {
                    drawn.at(std::size_t(column)).add(step.levels);
                }
            }
            for (std::size_t column = 0; column < expected.size(); ++column) {
                QCOMPARE(drawn.at(column).lowest, expected.at(column).lowest);
                QCOMPARE(drawn.at(column).highest, expected.at(column).highest);
                QVERIFY(drawn.at(column).isEmpty() || drawn.at(column).gap == expected.at(column).gap);
            }
        }
    }

    void measuresAreThoseOfEachMicrosecond()
    {
        std::mt19937 random(2);
        for (int run = 0; run < 60; ++run) {
            const PlainLine line(&random);
            std::optional<qint64> edge;
            for (qint64 us = 0; us < PlainLine::c_endUs; ++us) {
                QCOMPARE(textOf(edgeBefore(line.history(), us)), textOf(edge));
                edge = line.isEdge(us) ? us : edge;
                const auto measure = measureAt(line.history(), us);
                QCOMPARE(measure ? "%1 %2 %3"_s.arg(measure->level)
                                       .arg(textOf(measure->widthUs), textOf(measure->periodUs))
                                 : "unknown"_s,
                         line.measure(us));
            }
            edge.reset();
            for (qint64 us = PlainLine::c_endUs; us-- > 0;) {
                QCOMPARE(textOf(edgeAfter(line.history(), us)), textOf(edge));
                edge = line.isEdge(us) ? us : edge;
            }
        }
    }

    void selectionsAreThoseOfEachMicrosecond()
    {
        std::mt19937 random(3);
        for (int run = 0; run < 2000; ++run) {
            const PlainLine line(&random);
            const qint64 fromUs = static_cast<qint64>(random() % PlainLine::c_endUs);
            const qint64 toUs = fromUs + static_cast<qint64>(random() % (PlainLine::c_endUs - fromUs));
            int edges = 0;
            LevelRange levels;
            qint64 sum = 0;
            qint64 knownUs = 0;
            for (qint64 us = fromUs; us <= toUs; ++us) {
                edges += line.isEdge(us) ? 1 : 0;
                if (us < toUs && line.level(us)) {
                    levels.add(LineLevel{*line.level(us), us, true});
                    sum += *line.level(us);
                    ++knownUs;
                }
            }
            const auto measure = measureBetween(line.history(), fromUs, toUs);
            QCOMPARE(measure.has_value(), knownUs > 0);
            if (measure) {
                QCOMPARE(measure->edges, edges);
                QCOMPARE(measure->levels.lowest, levels.lowest);
                QCOMPARE(measure->levels.highest, levels.highest);
                QCOMPARE(measure->mean, static_cast<double>(sum) / static_cast<double>(knownUs));
            }
        }
    }

    /// What is read back tells of each time what the courses show there.
    void anExportIsReadBackAtRandom()
    {
        std::mt19937 random(5);
        Shown shown;
        for (int step = 0; step < 100; ++step) {
            const auto stepUs = static_cast<qint64>(1 + random() % 90000);
            shown.pass(stepUs);
            if (random() % 5 == 0) {
                shown.board->setPluggedIn(random() % 2 == 0);
            }
            shown.lines.setLevel(c_line, static_cast<int>(random() % 2));
        }
        shown.view.showAll();
        const ExportOf exporter(shown, "din"_s);
        QMap<QString, QString> levels; // by their times, as these are written
        for (const QByteArray& row : exporter.csv().split('\n').mid(1)) {
            const QList<QByteArray> fields = row.split(',');
            if (fields.size() == 3) {
                levels.insert(QString::fromUtf8(fields.at(0)), QString::fromUtf8(fields.at(2)));
            }
        }
        QVERIFY(levels.size() > 20);
        const qint64 fromUs = shown.view.span().fromUs;
        for (int time = 0; time < 2000; ++time) {
            const qint64 us =
                fromUs + static_cast<qint64>(random() % static_cast<quint64>(shown.view.span().lengthUs));
            const auto after = levels.upperBound(fullTime(shown.scheduler.wallClock(us)));
            QVERIFY(after != levels.begin());
            const LineLevel level = shown.lines.history(c_line)->at(us);
            QCOMPARE(std::prev(after).value(), level.known ? QString::number(level.level) : QString());
        }
    }

    /// What is at the place that is zoomed at stays there; nothing is shown beyond the present, and what is
    /// older than all that is remembered only where there is not enough to fill the view.
    void theViewZoomsAndPansWithinWhatIsRemembered()
    {
        std::mt19937 random(4);
        const auto share = [&random] { return static_cast<double>(random() % 1001) / 1000; };
        for (int run = 0; run < 20; ++run) {
            Shown shown;
            shown.pass(20 * c_second);
            shown.view.pan(0.5);
            for (int step = 0; step < 50; ++step) {
                if (random() % 3 == 0) {
                    shown.view.pan(2 * share() - 1);
                } else {
                    const double place = share();
                    const TimeSpan before = shown.view.span();
                    shown.view.zoom(1 + 3 * share(), place);
                    const TimeSpan after = shown.view.span();
                    QVERIFY(after.lengthUs <= before.lengthUs);
                    const qint64 moved = after.at(place) - before.at(place);
                    QVERIFY(std::abs(moved) <= 2 || before.fromUs < 0);
                    if (random() % 2 == 0) {
                        shown.view.zoom(0.1 + 0.9 * share(), place);
                    }
                }
                const TimeSpan span = shown.view.span();
                QVERIFY(span.toUs() == 20 * c_second || (span.fromUs >= 0 && span.toUs() < 20 * c_second));
                QVERIFY(span.lengthUs > 0);
            }
        }
    }

    void theViewFollowsThePresentUntilItIsMoved()
    {
        Shown shown;
        shown.pass(20 * c_second);
        QVERIFY(shown.view.isLive());
        QCOMPARE(shown.view.span().toUs(), 20 * c_second);
        shown.view.pan(0.5);
        QVERIFY(!shown.view.isLive());
        QCOMPARE(shown.view.span().toUs(), 15 * c_second);
        shown.pass(c_second);
        QCOMPARE(shown.view.span().toUs(), 15 * c_second);
        shown.view.setPointer(1);
        QCOMPARE(shown.view.pointedText(), "\u22125.00\u00a0s"_s);
        shown.view.goLive();
        QCOMPARE(shown.view.span().toUs(), 21 * c_second);
    }

    void theViewStaysInWhatIsRemembered()
    {
        Shown shown;
        shown.pass(20 * c_second);
        shown.view.pan(1000);
        QCOMPARE(shown.view.span().fromUs, qint64{0});
        shown.view.pan(-1000);
        QCOMPARE(shown.view.span().toUs(), 20 * c_second);
        shown.view.zoom(0.25, 0);
        QCOMPARE(shown.view.span().toUs(), 20 * c_second);
        shown.view.showAll();
        QCOMPARE(shown.view.span().fromUs, qint64{0});
        QCOMPARE(shown.view.span().lengthUs, 20 * c_second);
    }

    void aCursorGoesToAnEdgeThatIsNear()
    {
        Shown shown;
        shown.makeEdges();
        shown.setCursor(1, 5200000, c_line);
        shown.setCursor(2, 8100000, c_line);
        QCOMPARE(shown.view.cursorsText(), "1\u20132: 3\u00a0s \u00b7 0.3333\u00a0Hz"_s);
        shown.setCursor(2, 7 * c_second, c_line); // too far from any
        QCOMPARE(shown.view.cursorsText(), "1\u20132: 2\u00a0s \u00b7 0.5\u00a0Hz"_s);
        shown.setCursor(2, 5 * c_second);
        QCOMPARE(shown.view.cursorsText(), "1\u20132: 0\u00a0\u00b5s"_s);
        shown.setCursor(3, 5 * c_second, c_line);
        QCOMPARE(shown.view.cursors().size(), 2);
        shown.view.clearCursors();
        QCOMPARE(shown.view.cursorsText(), QString());
        QVERIFY(shown.view.cursors().isEmpty());
    }

    void aCursorGoesFromEdgeToEdge()
    {
        Shown shown;
        shown.makeEdges();
        shown.view.stepCursor({c_line}, true);
        QCOMPARE(shown.shareOfCursor(), 0.5);
        shown.view.stepCursor({c_line}, true);
        QCOMPARE(shown.shareOfCursor(), 0.8);
        shown.view.stepCursor({c_line}, true);
        QCOMPARE(shown.shareOfCursor(), 0.8);
        shown.view.stepCursor({c_line}, false);
        QCOMPARE(shown.shareOfCursor(), 0.5);
        shown.view.goLive();
        shown.pass(20 * c_second);
        QVERIFY(shown.shareOfCursor() < 0);
        shown.view.stepCursor({c_line}, true);
        QCOMPARE(shown.shareOfCursor(), 0.5); // it is shown in the middle
        QCOMPARE(shown.view.span().at(0.5), 8 * c_second);
        shown.view.stepCursor({-1}, true);
        QCOMPARE(shown.shareOfCursor(), 0.5);
    }

    /// Cursors, marks of the trigger and of the axis stand in the columns of what they mark.
    void whatIsMarkedStandsWhereItIsDrawn()
    {
        constexpr int width = 197;
        std::mt19937 random(5);
        Shown shown;
        shown.view.setWidth(width);
        CourseTrigger trigger(&shown.lines, &shown.view);
        trigger.setMode("none"_s);
        trigger.setCondition(c_line, CourseTrigger::Condition::Either);
        shown.pass(20 * c_second);
        for (int run = 0; run < 200; ++run) {
            shown.pass(random() % c_second);
            shown.lines.setLevel(c_line, run % 2 == 0 ? 1 : 0);
            const qint64 edgeUs = shown.scheduler.now();
            shown.pass(c_second + random() % c_second);
            shown.view.clearCursors();
            shown.view.stepCursor({c_line}, false);
            const TimeSpan span = shown.view.span();
            const TimeColumns columns{span.lengthUs, width};
            const auto course =
                courseOf(*shown.lines.history(c_line), columns, columns.firstUntil(span.toUs()), span.toUs());
            const auto edge = std::find_if(course.crbegin(), course.crend(), [](const CourseStep& step) {
                return step.levels.lowest != step.levels.highest;
            });
            QVERIFY(edge != course.crend());
            QCOMPARE(qRound(shown.shareOfCursor() * width) - 1, edge->column);
            QCOMPARE(qRound(trigger.marks().constLast().toDouble() * width), edge->column);
            QCOMPARE(qRound(shown.view.placeOf(edgeUs) * width), edge->column);
            shown.view.goLive();
        }
    }

    void whatIsToldUnderThePointerIsDrawnThere_data()
    {
        const Rows<int, double> row("width", "pixelRatio");
        row("a pixel each", 197, 1.0);
        row("two pixels each", 197, 2.0);
        row("a pixel and a half", 133, 1.5);
        row("more columns than microseconds", 400, 1.0);
    }
    void whatIsToldUnderThePointerIsDrawnThere()
    {
        const auto [width, ratio] = Rows<int, double>::values();
        std::mt19937 random(7);
        Shown shown;
        shown.view.setWidth(width);
        shown.view.setPixelRatio(ratio);
        shown.pass(20 * c_second);
        const bool isDeep = QByteArray(QTest::currentDataTag()).startsWith("more");
        shown.view.zoom(isDeep ? 1e6 : 1.0, 1);
        const auto spanUs = static_cast<quint32>(shown.view.spanUs());
        for (int run = 0; run < 100; ++run) {
            shown.pass(random() % (spanUs / 4) + 1);
            shown.lines.setLevel(c_line, 1 - run % 2);
            shown.pass(random() % (spanUs / 4) + 1);
            const TimeColumns columns = shown.view.columns();
            const qint64 endUs = shown.view.span().toUs();
            const auto course =
                courseOf(*shown.lines.history(c_line), columns, columns.firstUntil(endUs), endUs);
            for (const CourseStep& step : course) {
                for (const int column : {step.column, step.column + step.columns - 1}) {
                    const double timeUs =
                        shown.view.timeAt(static_cast<double>(column) / static_cast<double>(columns.perSpan));
                    const QVariant told = shown.lines.levelAt(c_line, timeUs);
                    QVERIFY(told.isValid());
                    QVERIFY(told.toInt() >= step.levels.lowest && told.toInt() <= step.levels.highest);
                }
            }
        }
    }

    void aCursorGoesFromEdgeToEdgeOfAllChosenLines()
    {
        constexpr int other = 3;
        Shown shown;
        shown.makeEdges(); // after five and eight of ten seconds
        shown.lines.setLevel(other, 100);
        shown.pass(2 * c_second);
        shown.view.zoom(0.5, 1);
        QStringList times;
        for (const bool forward : {true, true, true, true, false, false, false}) {
            shown.view.stepCursor({other, c_line}, forward);
            times.append(QString::number(shown.view.span().at(shown.shareOfCursor()) / c_second));
        }
        QCOMPARE(times.join(QLatin1Char(' ')), "5 8 10 10 8 5 5"_s);
    }

    void aCursorMovesWithTheCoursesAndThenTheClockRests()
    {
        Shown shown;
        shown.pass(20 * c_second);
        shown.view.setCursor(1, 0.5, -1);
        QSignalSpy ticks(&shown.clock, &DeviceClock::ticked);
        shown.scheduler.advance(20 * c_second);
        QVERIFY2(qAbs(ticks.count() - 100) < 3, qPrintable(QString::number(ticks.count())));
    }
};

QTEST_MAIN(TestCourseView)
#include "test_course_view.moc"
