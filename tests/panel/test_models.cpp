#include "example_bench.h"
#include "panel_fixture.h"

#include <configuration/value_text.h>
#include <process/time_text.h>
#include <window/command_form.h>
#include <window/csv_field.h>
#include <window/files.h>
#include <window/gradual_rows.h>
#include <window/line_filter.h>
#include <window/lines_model.h>
#include <window/local_text.h>
#include <window/order_events_model.h>
#include <window/order_log_model.h>
#include <window/page_reads_model.h>
#include <window/texts.h>
#include <window/time_axis.h>
#include <window/tools_model.h>
#include <window/trace_recorder.h>
#include <window/window_memory.h>

#include <QStringListModel>

#include <csignal>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

/// A model that is watched for breaches of what a model promises.
template <typename Model, typename... Arguments>
std::unique_ptr<Model> watched(Arguments&&... arguments)
{
    auto model = std::make_unique<Model>(std::forward<Arguments>(arguments)...);
    new QAbstractItemModelTester(model.get(), QAbstractItemModelTester::FailureReportingMode::QtTest,
                                 model.get());
    return model;
}

QVariant at(const QAbstractItemModel& model, int row, int role)
{
    return model.index(row, 0).data(role);
}

/// What a row has in these roles, with bars in between.
QString shown(const QAbstractItemModel& model, int row, const QVector<int>& roles)
{
    QStringList texts;
    for (const int role : roles) {
        texts.append(at(model, row, role).toString());
    }
    return texts.join(" | "_s);
}

/// Row of the parameter called name.
int rowOf(const CommandForm& form, const QString& name)
{
    for (int row = 0; row < form.rowCount(); ++row) {
        if (at(form, row, CommandForm::NameRole) == name) {
            return row;
        }
    }
    return -1;
}

QString statusOf(const LinesModel& lines, int line)
{
    return at(lines, line, LinesModel::StatusRole).toString();
}

/// A device with such a number of lines, of which it tells nothing but what a test has it tell.
struct DeafDevice
{
    struct Driver : LineDriver
    {
        void open() override {}
        void close() override {}
        void request(quint64 /*id*/, const QString& /*instruction*/,
                     const QVariantMap& /*arguments*/) override
        {}
        void cancel(quint64 /*id*/) override {}
        void setInput(int /*line*/, int /*level*/) override {}
        void setPluggedIn(bool /*pluggedIn*/) override {}
    };

    explicit DeafDevice(DScheduler& scheduler, int lines = 1)
        : front(
              "deaf"_s, QVector<DLine>(lines, {"line"_s, DLine::Kind::Digital, DLine::Direction::In}),
              &scheduler, DevicePlace::SameThread,
              [this](DScheduler*, LineListener* told) {
                  listener = told;
                  return std::make_unique<Driver>();
              },
              OutputsAtEnd::Vanish)
    {}

    LineListener* listener = nullptr;
    LineDevice front;
};

} // namespace

/// What the window's models say of the bench.
class TestModels : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        installTexts(QLocale(QLocale::English));
        m_bench = std::make_unique<ExampleBench>(8);
        m_clock = std::make_unique<DeviceClock>(&m_bench->scheduler());
        m_tools = watched<ToolsModel>(m_bench->tools());
        m_lines = watched<LinesModel>(&m_bench->board(), m_bench->tools(), m_clock.get());
        m_log = watched<OrderLogModel>(m_clock.get());
        m_form = watched<CommandForm>(m_log.get());
        m_form->setTool(&m_bench->tool());
    }
    void cleanup()
    {
        m_form.reset();
        m_log.reset();
        m_lines.reset();
        m_tools.reset();
        m_clock.reset();
        m_bench.reset();
    }

    // Tools

    void theToolsAreListed()
    {
        QCOMPARE(m_tools->rowCount(), 1);
        using Tools = ToolsModel;
        QCOMPARE(shown(*m_tools, 0,
                       {Tools::NameRole, Tools::IdRole, Tools::PluginRole, Tools::ChannelCountRole,
                        Tools::StateRole}),
                 "Front panel | %1 | Tool Gpio | 8 | Connected"_s.arg(m_bench->tool().id()));
        QCOMPARE(m_tools->toolAt(0), &m_bench->tool());
        QVERIFY(m_tools->toolAt(1) == nullptr);
        QVERIFY(m_tools->toolAt(-1) == nullptr);
    }

    void aLostDeviceIsSeenAtTheTool()
    {
        QSignalSpy changes(m_tools.get(), &ToolsModel::dataChanged);
        m_bench->board().setPluggedIn(false);
        QCOMPARE(changes.count(), 1);
        QCOMPARE(at(*m_tools, 0, ToolsModel::StateRole).toString(), "Unreachable"_s);
    }

    void aToolThatIsClosedLeavesTheList()
    {
        auto second = std::make_unique<DTool>(toolEntry({}, "second"_s), builtPlugin(), &m_bench->board());
        const auto model = watched<ToolsModel>(QVector<DTool*>{&m_bench->tool(), second.get()});
        second.reset();
        QCOMPARE(model->rowCount(), 1);
        m_bench->board().setPluggedIn(false);
        QCOMPARE(at(*model, 0, ToolsModel::StateRole).toString(), "Unreachable"_s);
    }

    // Lines

    /// The device answers when the events are processed, that is, after all of them.
    void quickSettingsOfALineAllCount()
    {
        DSteadyScheduler scheduler;
        const auto board = makeSimulatedBoard(smallBoard(), &scheduler, DevicePlace::OwnThread);
        board->open();
        QVERIFY(waitUntil([&board] { return board->level(1).known; }));
        DeviceClock clock(&scheduler);
        LinesModel lines(board.get(), {}, &clock);
        for (const int level : {1, 0, 1, 0, 1}) {
            lines.setLevel(1, level);
            QCOMPARE(at(lines, 1, LinesModel::LevelRole).toInt(), level);
            QCOMPARE(statusOf(lines, 1), "waiting"_s);
        }
        QVERIFY(waitUntil([&lines] { return lines.history(1)->changeCount() == 6; }));
        QCOMPARE(board->level(1).level, 1);
        QCOMPARE(statusOf(lines, 1), "known"_s);
        board->setPluggedIn(false);
        QVERIFY(waitUntil([&board] { return !board->level(1).known; }));
        QCOMPARE(at(lines, 1, LinesModel::LevelRole).toInt(), 1); // as it was last
    }

    /// The device tells of the second setting when the third has been asked for already.
    void aSettingThatIsToldLateUndoesNoLaterOne()
    {
        DSteadyScheduler scheduler;
        const auto board = makeSimulatedBoard(smallBoard(), &scheduler, DevicePlace::OwnThread);
        board->open();
        QVERIFY(waitUntil([&board] { return board->level(1).known; }));
        DeviceClock clock(&scheduler);
        LinesModel lines(board.get(), {}, &clock);
        const auto toggle = [&lines] { lines.setLevel(1, 1 - at(lines, 1, LinesModel::LevelRole).toInt()); };
        for (int time = 0; time < 3; ++time) {
            toggle();
        }
        int told = 0;
        connect(board.get(), &LineDevice::lineChanged, &lines, [&] {
            if (++told == 2) {
                toggle();
            }
        });
        QVERIFY(waitUntil([&told] { return told == 4; }));
        QCOMPARE(board->level(1).level, 0);
        QCOMPARE(statusOf(lines, 1), "known"_s);
    }

    void theLinesAreListedWithTheirChannels()
    {
        QCOMPARE(m_lines->rowCount(), 8);
        using Lines = LinesModel;
        const QVector<int> roles = {Lines::LineRole,   Lines::NameRole,   Lines::ChannelsRole,
                                    Lines::AnalogRole, Lines::OutputRole, Lines::SettableRole,
                                    Lines::HighestRole};
        QCOMPARE(shown(*m_lines, 0, roles), "0 | do0 | START | false | true | false | 1"_s);
        QCOMPARE(shown(*m_lines, 1, roles),
                 "1 | di0 | READY | false | false | false | 1"_s); // a wire feeds it
        QCOMPARE(shown(*m_lines, 2, roles), "2 | ai0 | PRESSURE | true | false | false | 65535"_s);
        QCOMPARE(shown(*m_lines, 5, roles), "5 | di1 | ALARM | false | false | true | 1"_s);
    }

    void levelsAreFollowed()
    {
        m_bench->scheduler().advance(1000);
        QSignalSpy changes(m_lines.get(), &LinesModel::dataChanged);
        m_bench->scheduler().advance(50000);
        changes.clear();
        m_lines->setLevel(5, 1);
        QCOMPARE(m_bench->board().level(5).level, 1);
        QCOMPARE(at(*m_lines, 5, LinesModel::LevelRole).toInt(), 1);
        QCOMPARE(m_lines->levelAt(5, 50999), QVariant(0));
        QCOMPARE(m_lines->levelAt(5, 51000), QVariant(1));
        QCOMPARE(changes.count(), 0);
        m_bench->scheduler().advance(50000);
        QVERIFY(std::any_of(changes.cbegin(), changes.cend(), [](const QVariantList& change) {
            return change.constFirst().toModelIndex().row() == 5;
        }));
    }

    void manyChangesAreToldOnce()
    {
        m_bench->scheduler().advance(1);
        QSignalSpy changes(m_lines.get(), &LinesModel::dataChanged);
        for (int number = 0; number < 1001; ++number) {
            m_lines->setLevel(5, 1 - number % 2);
        }
        QCOMPARE(changes.count(), 0);
        m_clock->tick();
        QCOMPARE(changes.count(), 1);
        QCOMPARE(at(*m_lines, 5, LinesModel::LevelRole).toInt(), 1);
        QCOMPARE(m_lines->history(5)->changeCount(), quint64{1002});
    }

    void aLevelThatNobodyKnowsIsNone()
    {
        m_bench->scheduler().advance(1000);
        m_bench->board().setPluggedIn(false);
        m_bench->scheduler().advance(1000);
        QCOMPARE(m_lines->levelAt(5, 500), QVariant(0));
        QCOMPARE(m_lines->levelAt(5, 1500), QVariant());
        QCOMPARE(m_lines->levelAt(99, 500), QVariant());
        // It has had its level all the time, but that is known from now on only.
        m_bench->board().setPluggedIn(true);
        QCOMPARE(m_lines->levelAt(5, 1999), QVariant());
        QCOMPARE(m_lines->levelAt(5, 2000), QVariant(0));
    }

    void whatIsKnownOfALevelIsTold()
    {
        QCOMPARE(statusOf(*m_lines, 5), "known"_s);
        m_lines->setLevel(5, 1);
        m_bench->board().setPluggedIn(false);
        QCOMPARE(statusOf(*m_lines, 5), "old"_s);
        QCOMPARE(at(*m_lines, 5, LinesModel::LevelRole).toInt(), 1);
        m_bench->board().setPluggedIn(true);
        QCOMPARE(statusOf(*m_lines, 5), "known"_s);
    }

    void aLineThatIsLostCannotBeSet()
    {
        QSignalSpy orders(m_lines.get(), &LinesModel::orderWanted);
        m_bench->board().setPluggedIn(false);
        m_lines->setLevel(5, 1);
        m_lines->setLevel(3, 1000);
        QCOMPARE(statusOf(*m_lines, 5), "old"_s);
        QCOMPARE(orders.count(), 0);
        m_bench->board().setPluggedIn(true);
        QCOMPARE(m_bench->board().level(5).level, 0);
        m_lines->setLevel(5, 1);
        m_lines->setLevel(3, 1000);
        QCOMPARE(m_bench->board().level(5).level, 1);
        QCOMPARE(orders.count(), 1);
    }

    void aLevelThatWasNeverKnownIsNotOld()
    {
        DeafDevice device(m_bench->scheduler());
        LinesModel lines(&device.front, {}, m_clock.get());
        QCOMPARE(statusOf(lines, 0), "unknown"_s);
        device.front.open();
        QCOMPARE(statusOf(lines, 0), "waiting"_s);
        QVERIFY(!at(lines, 0, LinesModel::KnownRole).toBool()); // it shows no level
        device.listener->stateTold(DDevice::State::Connected, {}, 0);
        QCOMPARE(statusOf(lines, 0), "failed"_s); // its line cannot be read
        device.listener->stateTold(DDevice::State::Unreachable, DWording::told("gone"_s), 0);
        QCOMPARE(statusOf(lines, 0), "unknown"_s);
    }

    /// What came after the courses stopped and is forgotten already was not as it was before.
    void aHeldCourseThatIsForgottenIsNotGuessed()
    {
        constexpr int lineCount = 40000; // each has little room
        DeafDevice device(m_bench->scheduler(), lineCount);
        LinesModel lines(&device.front, {}, m_clock.get());
        device.listener->lineTold(0, {1, 0, true});
        m_clock->setRunning(false);
        constexpr auto most = static_cast<int>(LinesModel::c_mostChanges / lineCount);
        for (int number = 0; number < most + 10; ++number) {
            m_bench->scheduler().advance(1);
            device.listener->lineTold(0, {number % 2, m_bench->scheduler().now(), true});
        }
        m_clock->setRunning(true);
        const LineHistory& history = *lines.history(0);
        QCOMPARE(history.changes().size(), std::size_t{most});
        QVERIFY(!history.at(history.changes().front().sinceUs - 1).known);
    }

    void aLineThatBlinksIsMarked()
    {
        const auto blinks = [this] { return at(*m_lines, 0, LinesModel::BlinkingRole).toBool(); };
        const QVariantMap start = {{"channel"_s, "START"_s}, {"state"_s, "BLINK"_s}, {"dutyCycle"_s, 50}};
        run("setValue", start);
        QTRY_VERIFY(blinks());
        run("setValue", {{"channel"_s, "START"_s}, {"state"_s, "OFF"_s}});
        QTRY_VERIFY(!blinks());
        run("setValue", start);
        QTRY_VERIFY(blinks());
        m_bench->board().setPluggedIn(false);
        QVERIFY(!blinks());
    }

    void anAnalogueOutputIsSetByAnOrder()
    {
        QVERIFY(at(*m_lines, 3, LinesModel::DrivableRole).toBool());
        QVERIFY(!at(*m_lines, 0, LinesModel::DrivableRole).toBool());
        QVERIFY(!at(*m_lines, 2, LinesModel::DrivableRole).toBool());
        connect(m_lines.get(), &LinesModel::orderWanted, m_log.get(),
                [this](DTool* tool, const Invocation& order) {
                    m_log->run(tool, order.command, order.arguments);
                });
        m_lines->setLevel(3, 70000);
        QTRY_COMPARE(m_bench->board().level(3).level, 65535);
        m_lines->setLevel(3, 1);
        QTRY_COMPARE(m_bench->board().level(3).level, 1);
        m_bench->closeTool();
        QVERIFY(!at(*m_lines, 3, LinesModel::DrivableRole).toBool());
    }

    void aLevelIsSetWithinItsRange()
    {
        m_lines->setLevel(5, 70000);
        QCOMPARE(m_bench->board().level(5).level, 1);
        m_lines->setLevel(5, -3);
        QCOMPARE(m_bench->board().level(5).level, 0);
        // The ends of the range are no further than they are, however often they are asked for.
        for (const int level : {66190, 66190, -655, -655}) {
            m_lines->setLevel(6, level);
            const int end = level > 0 ? 65535 : 0;
            QCOMPARE(m_bench->board().level(6).level, end);
            QCOMPARE(at(*m_lines, 6, LinesModel::LevelRole).toInt(), end);
            QCOMPARE(statusOf(*m_lines, 6), "known"_s);
        }
        m_lines->setLevel(-1, 1);
        m_lines->setLevel(8, 1);
        m_lines->setLevel(0, 1); // an output is not set from outside
        QCOMPARE(m_bench->board().level(0).level, 0);
    }

    void theStateIsFollowed()
    {
        QSignalSpy changes(m_lines.get(), &LinesModel::stateChanged);
        QCOMPARE(m_lines->state(), "Connected"_s);
        m_bench->board().setPluggedIn(false);
        QCOMPARE(m_lines->state(), "Unreachable"_s);
        QCOMPARE(m_lines->problem(), "the simulated board is unplugged"_s);
        m_bench->board().close();
        QCOMPARE(m_lines->state(), "Closed"_s);
        QCOMPARE(changes.count(), 2);
    }

    void theFilterLooksAtNamesAndChannels_data()
    {
        const Rows<QString, QStringList> row("text", "lines");
        row("everything", QString(),
            QStringList{"do0"_s, "di0"_s, "ai0"_s, "ao0"_s, "do1"_s, "di1"_s, "ai1"_s, "ao1"_s});
        row("a name", "DO", QStringList{"do0"_s, "do1"_s});
        row("a channel", "e_st", QStringList{"do1"_s});
        row("nothing", "no such line", QStringList{});
        row("no pattern", ".", QStringList{});
    }
    void theFilterLooksAtNamesAndChannels()
    {
        const auto [text, lines] = Rows<QString, QStringList>::values();
        const auto filter = watched<LineFilter>();
        filter->setSourceModel(m_lines.get());
        filter->setText(text);
        QStringList found;
        for (int row = 0; row < filter->rowCount(); ++row) {
            found.append(at(*filter, row, LinesModel::NameRole).toString());
        }
        QCOMPARE(found, lines);
    }

    void linesAreHiddenMovedAndGrouped()
    {
        const auto filter = watched<LineFilter>();
        filter->setSourceModel(m_lines.get());
        const auto names = [&filter] {
            QStringList found;
            for (int row = 0; row < filter->rowCount(); ++row) {
                found.append(at(*filter, row, LinesModel::NameRole).toString());
            }
            return found.join(QLatin1Char(' '));
        };
        QCOMPARE(names(), "do0 di0 ai0 ao0 do1 di1 ai1 ao1"_s);
        filter->hide({1, 0, 99, -1});
        QCOMPARE(names(), "ai0 ao0 do1 di1 ai1 ao1"_s);
        QCOMPARE(filter->hiddenCount(), 2);
        QVERIFY(filter->move(0, 1));
        QCOMPARE(names(), "ao0 ai0 do1 di1 ai1 ao1"_s);
        QVERIFY(!filter->move(0, -1));
        QVERIFY(!filter->move(5, 1));
        QVERIFY(!filter->move(9, -1));
        filter->showHidden();
        QCOMPARE(names(), "do0 di0 ao0 ai0 do1 di1 ai1 ao1"_s);
        filter->setGrouped(true);
        QCOMPARE(names(), "ai0 ai1 ao0 ao1 di0 di1 do0 do1"_s);
        QCOMPARE(at(*filter, 0, LinesModel::GroupRole).toString(), "ai"_s);
        filter->setGrouped(false);
        QCOMPARE(names(), "do0 di0 ao0 ai0 do1 di1 ai1 ao1"_s);
        filter->setGrouped(true);
        QVERIFY(filter->move(0, 1)); // from where it is seen
        QCOMPARE(names(), "ai1 ai0 ao0 ao1 di0 di1 do0 do1"_s);
        // What is remembered is found again, whatever lines there are.
        filter->hide({3});
        const QStringList order = filter->order();
        const auto next = watched<LineFilter>();
        next->setSourceModel(m_lines.get());
        next->arrange(QStringList{"gone"_s} + order, filter->hidden() + QStringList{"gone"_s});
        QCOMPARE(next->order(), order);
        QCOMPARE(next->hidden(), QStringList{"ao0"_s});
        next->arrange({"do1"_s, "do0"_s, "do1"_s}, {}); // named twice, the first counts
        QCOMPARE(next->order().join(QLatin1Char(' ')), "do1 do0 di0 ai0 ao0 di1 ai1 ao1"_s);
    }

    void allLinesTogetherRememberSoMuch()
    {
        constexpr int count = 4000;
        DeafDevice device(m_bench->scheduler(), count);
        const LinesModel lines(&device.front, {}, m_clock.get());
        constexpr auto share = static_cast<int>(LinesModel::c_mostChanges) / count;
        for (int number = 0; number < share + 10; ++number) {
            device.listener->lineTold(7, {number % 2, number, true});
        }
        QCOMPARE(lines.history(7)->changes().size(), std::size_t{share});
    }

    void manyRowsComeInStepsAndInTheirOrder()
    {
        QStringListModel all;
        const auto some = watched<GradualRows>(&all);
        QVERIFY(some->isComplete());
        QStringList names;
        for (int row = 0; row < 3 * GradualRows::c_first; ++row) {
            names.append("row %1"_s.arg(row, 4));
        }
        all.setStringList(names);
        const auto isAsAll = [&] {
            bool same = some->rowCount() == all.rowCount();
            for (int row = 0; row < some->rowCount(); ++row) {
                same = same && at(*some, row, Qt::DisplayRole) == at(all, row, Qt::DisplayRole);
            }
            return same;
        };
        QVERIFY(!some->isComplete());
        QCOMPARE(some->rowCount(), GradualRows::c_first);
        QTRY_VERIFY(some->isComplete());
        QVERIFY(isAsAll());
        QVERIFY(all.insertRows(0, 2)); // later, too
        QVERIFY(all.insertRows(all.rowCount(), 2));
        QTRY_VERIFY(some->isComplete());
        QTRY_VERIFY(isAsAll());
        QVERIFY(all.removeRows(1, 5));
        QVERIFY(isAsAll());
    }

    void aWindowIsRememberedForItsConfiguration()
    {
        const QTemporaryDir folder;
        QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, folder.path());
        const QVariantMap values = {{"size"_s, QSize(3, 4)}, {"names"_s, QStringList{"a"_s, "b, c"_s}}};
        const QString file = folder.filePath("own.json"_s);
        QVERIFY(QFile(file).open(QIODevice::WriteOnly));
        WindowMemory(file).remember(values);
        QCOMPARE(WindowMemory(file).recall(), values);
        QCOMPARE(WindowMemory(QString()).recall(), QVariantMap());
        WindowMemory(QString()).remember({{"other"_s, 1}});
        WindowMemory(file).remember({{"size"_s, QSize(5, 6)}});
        QCOMPARE(WindowMemory(file).recall(), (QVariantMap{{"size"_s, QSize(5, 6)}}));
    }

    void aTraceIsRecordedUntilItIsStopped()
    {
        TraceRecorder recorder(&m_bench->board(), {&m_bench->tool()});
        const QTemporaryDir folder;
        QCOMPARE(recorder.begin("-"_s), "\u201c-\u201d names no regular file."_s);
        QVERIFY(!recorder.begin(folder.filePath("no/where.vcd"_s)).isEmpty());
        QVERIFY(!recorder.isRecording());
        const QString file = folder.filePath("a.vcd"_s);
        QCOMPARE(recorder.begin(file), QString());
        QVERIFY(recorder.isRecording());
        m_bench->scheduler().advance(1000);
        m_bench->board().setInput(5, 1);
        QCOMPARE(recorder.begin(file), "A trace is being recorded already."_s);
        QCOMPARE(recorder.end(), QString());
        QCOMPARE(recorder.end(), QString());
        QVERIFY(!recorder.isRecording());
        QCOMPARE(recorder.file(), file);
        m_bench->scheduler().advance(1000);
        m_bench->board().setInput(5, 0);
        QFile saved(file);
        QVERIFY(saved.open(QIODevice::ReadOnly));
        const QByteArray text = saved.readAll();
        QVERIFY(text.contains("#1000\n"));
        QVERIFY(!text.contains("#2000\n"));
    }

    /// While it is ended, too.
    void aTraceThatIsLostSaysSo()
    {
        TraceRecorder recorder(&m_bench->board(), {});
        const QSignalSpy failures(&recorder, &TraceRecorder::failed);
        const QTemporaryDir folder;
        const QString file = folder.filePath("a.vcd"_s);
        QCOMPARE(recorder.begin(file), QString());
        QVERIFY(QFile::remove(file));
        QVERIFY(recorder.end().contains("the file was removed meanwhile"_s));
        QCOMPARE(failures.count(), 0); // it is told once
    }

    void aTraceThatFailsIsRecordedNoMore()
    {
        std::signal(SIGPIPE, SIG_IGN);
        TraceRecorder recorder(&m_bench->board(), {});
        QSignalSpy changes(&recorder, &TraceRecorder::recordingChanged);
        QSignalSpy failures(&recorder, &TraceRecorder::failed);
        const QTemporaryDir folder;
        const QString file = folder.filePath("pipe"_s);
        QCOMPARE(mkfifo(qPrintable(file), S_IRWXU), 0);
        const int reader = open(qPrintable(file), O_RDONLY | O_NONBLOCK);
        QCOMPARE(recorder.begin(file), QString());
        QVERIFY(recorder.isRecording());
        close(reader);
        m_bench->board().setInput(5, 1);
        m_bench->scheduler().advance(1000000);
        QCOMPARE(failures.count(), 1);
        QVERIFY(!recorder.isRecording());
        QCOMPARE(changes.count(), 2);
        recorder.end();
        QCOMPARE(failures.count(), 1);
        QCOMPARE(recorder.begin(folder.filePath("a.vcd"_s)), QString());
        QVERIFY(recorder.isRecording());
    }

    // Orders

    void anOrderIsLoggedWithItsResult()
    {
        readSetPoint();
        QCOMPARE(m_log->count(), 1);
        QCOMPARE(logged(0, OrderLogModel::CommandRole), "getValue channel=SETPOINT"_s);
        QCOMPARE(logged(0, OrderLogModel::StateRole), "running"_s);
        QTRY_COMPARE(logged(0, OrderLogModel::StateRole), "done"_s);
        QCOMPARE(logged(0, OrderLogModel::DetailRole), "value=0"_s);
        QCOMPARE(m_log->running(), 0);
        const qint64 startUs = ManualScheduler::c_wallClockOffsetUs + m_bench->scheduler().now();
        QCOMPARE(logged(0, OrderLogModel::TimeRole), timeOfDayText(startUs));
    }

    void anOrderThatFailsIsLoggedWithReasonAndKind()
    {
        const auto kind = [this] { return logged(0, OrderLogModel::KindRole); };
        run("noSuchCommand");
        QCOMPARE(logged(0, OrderLogModel::StateRole), "failed"_s);
        QVERIFY(logged(0, OrderLogModel::DetailRole).startsWith("unknown command \"noSuchCommand\""_s));
        QCOMPARE(kind(), "wrongInvocation"_s);
        readSetPoint();
        QCOMPARE(kind(), QString());
        m_log->stop(0);
        QCOMPARE(kind(), "stopped"_s);
        m_bench->board().setPluggedIn(false);
        readSetPoint();
        QTRY_COMPARE(kind(), "deviceUnreachable"_s);
    }

    void whatFailsBesideAllOrdersIsLogged()
    {
        m_log->addProblem("board"_s, DWording::told("line \"do0\" blinks no more"_s));
        QCOMPARE(shown(*m_log, 0,
                       {OrderLogModel::CommandRole, OrderLogModel::StateRole, OrderLogModel::DetailRole}),
                 "board | problem | line \"do0\" blinks no more"_s);
        QCOMPARE(m_log->running(), 0);
        m_log->clear();
        QCOMPARE(m_log->count(), 0);
    }

    void clicksOnAPageAreLogged()
    {
        m_log->addClick("setValue"_s, {{"channel"_s, "START"_s}}, {{"doneOk"_s, true}}, {});
        m_log->addClick("setValue"_s, {{"channel"_s, "E_STOP"_s}}, {},
                        {DFailure::Kind::RefusedByDevice, DWording::told("no such line"_s)});
        using Log = OrderLogModel;
        const QVector<int> roles = {Log::CommandRole, Log::StateRole, Log::KindRole, Log::DetailRole,
                                    Log::PageRole};
        QCOMPARE(shown(*m_log, 0, roles),
                 "setValue channel=E_STOP | failed | refusedByDevice | no such line | true"_s);
        QCOMPARE(shown(*m_log, 1, roles), "setValue channel=START | done |  | doneOk=true | true"_s);
        readSetPoint();
        QCOMPARE(logged(0, Log::PageRole), "false"_s);
    }

    void allThatAToolDrivesIsSwitchedOff()
    {
        run("setValue", {{"channel"_s, "START"_s}, {"state"_s, "ON"_s}});
        QTRY_COMPARE(m_log->running(), 0);
        QCOMPARE(m_bench->board().level(0).level, 1);
        m_log->clear();
        m_log->switchOff(&m_bench->tool());
        QCOMPARE(m_log->count(), 4); // the outputs
        QTRY_COMPARE(m_bench->board().level(0).level, 0);
        m_log->switchOff(nullptr);
        QCOMPARE(m_log->count(), 4);
    }

    void theReadsOfAPageAreToldAtTheNextTick()
    {
        const auto reads = watched<PageReadsModel>(m_clock.get());
        const auto note = [&reads](int number, const DFailure& failure) {
            reads->add("getValue"_s, {{"channel"_s, "START"_s}}, {{"value"_s, number}}, failure);
        };
        note(1, {});
        note(2, {DFailure::Kind::TimedOut, DWording::told("no answer"_s)});
        QCOMPARE(reads->rowCount(), 0);
        m_clock->tick();
        QCOMPARE(reads->total(), 2);
        QCOMPARE(reads->failed(), 1);
        using Reads = PageReadsModel;
        const QVector<int> roles = {Reads::CommandRole, Reads::DetailRole, Reads::FailedRole};
        QCOMPARE(shown(*reads, 0, roles), "getValue channel=START | no answer | true"_s);
        QCOMPARE(shown(*reads, 1, roles), "getValue channel=START | value=1 | false"_s);
        QCOMPARE(at(*reads, 0, Reads::TimeRole).toString(),
                 timeOfDayText(ManualScheduler::c_wallClockOffsetUs));
        for (int number = 0; number < Reads::c_mostReads + 50; ++number) {
            note(number, {});
            if (number % 30 == 0) {
                m_clock->tick();
            }
        }
        m_clock->tick();
        QCOMPARE(reads->rowCount(), Reads::c_mostReads);
        QCOMPARE(reads->total(), Reads::c_mostReads + 52);
        QCOMPARE(at(*reads, 0, Reads::DetailRole).toString(), "value=%1"_s.arg(Reads::c_mostReads + 49));
        QCOMPARE(at(*reads, Reads::c_mostReads - 1, Reads::DetailRole).toString(), "value=50"_s);
    }

    void aListeningOrderRunsUntilItIsStopped()
    {
        run("startListening", {{"channel"_s, "ALARM"_s}, {"edge"_s, "RE"_s}});
        QCOMPARE(logged(0, OrderLogModel::StateRole), "listening"_s);
        QCOMPARE(m_log->running(), 1);
        QCoreApplication::processEvents();
        m_bench->scheduler().advance(1234567);
        m_bench->board().setInput(5, 1);
        QTRY_COMPARE(at(*m_log, 0, OrderLogModel::EventsRole).toInt(), 1);
        QVERIFY(logged(0, OrderLogModel::DetailRole).startsWith("1 event, at "_s));
        for (const int level : {0, 1}) {
            m_bench->scheduler().advance(1234567);
            m_bench->board().setInput(5, level);
            QCoreApplication::processEvents();
        }
        QTRY_VERIFY(at(*m_log, 0, OrderLogModel::EventsRole).toInt() >= 2);
        const QString time = timeOfDayText(ManualScheduler::c_wallClockOffsetUs + 3 * 1234567);
        const QString detail = logged(0, OrderLogModel::DetailRole);
        QVERIFY2(detail.contains("the last at "_s + time), qPrintable(detail));
        readSetPoint();
        QTRY_COMPARE(logged(0, OrderLogModel::StateRole), "done"_s);
        m_log->stop(0); // has ended
        QCOMPARE(logged(1, OrderLogModel::StateRole), "listening"_s);
        m_log->stop(1);
        QCOMPARE(logged(1, OrderLogModel::StateRole), "done"_s);
        QCOMPARE(m_log->running(), 0);
        m_log->stop(-1);
        m_log->stop(2);
    }

    void theEventsOfAnOrderAreListed()
    {
        run("startListening", {{"channel"_s, "ALARM"_s}});
        QTRY_COMPARE(m_bench->board().pendingRequests(), 1);
        const auto events = watched<OrderEventsModel>(m_log.get(), m_clock.get());
        const quint64 order = at(*m_log, 0, OrderLogModel::OrderRole).toULongLong();
        m_bench->scheduler().advance(1000000);
        m_bench->board().setInput(5, 1);
        QTRY_VERIFY(m_log->events(order).size() >= 1);
        const int before = static_cast<int>(m_log->events(order).size());
        events->setOrder(order); // what has happened already
        QCOMPARE(events->rowCount(), before);
        m_bench->scheduler().advance(1000000);
        m_bench->board().setInput(5, 0); // and what follows
        QTRY_COMPARE(static_cast<int>(m_log->events(order).size()), before + 1);
        QCOMPARE(events->rowCount(), before);
        m_clock->tick();
        using Events = OrderEventsModel;
        QCOMPARE(events->rowCount(), before + 1);
        QCOMPARE(shown(*events, 0, {Events::TimeRole, Events::TextRole}),
                 timeOfDayText(ManualScheduler::c_wallClockOffsetUs + 2000000) + " | lastValue=0 value=0"_s);
        const QStringList lines = events->text().split(QLatin1Char('\n'));
        QCOMPARE(lines.constFirst(), "time,lastValue,value"_s);
        QCOMPARE(lines.at(before + 1), fullTime(ManualScheduler::c_wallClockOffsetUs + 2000000) + ",0,0"_s);
        QCOMPARE(lines.size(), before + 3);
        const QTemporaryDir folder;
        const QString file = folder.filePath("events.csv"_s);
        QCOMPARE(events->save(file), QString());
        QFile saved(file);
        QVERIFY(saved.open(QIODevice::ReadOnly));
        QCOMPARE(QString::fromUtf8(saved.readAll()), events->text());
        QCOMPARE(events->save(folder.path()), "\u201c%1\u201d names no regular file."_s.arg(folder.path()));
        QVERIFY(events->save(folder.filePath("none/here"_s)).startsWith("Cannot write "_s));
        events->setOrder(0);
        QCOMPARE(events->rowCount(), 0);
        QCOMPARE(events->text(), QString());
    }

    void ofVeryManyEventsTheLatestAreKept()
    {
        run("startListening", {{"channel"_s, "ALARM"_s}});
        QTRY_COMPARE(m_bench->board().pendingRequests(), 1);
        const quint64 order = at(*m_log, 0, OrderLogModel::OrderRole).toULongLong();
        const auto events = watched<OrderEventsModel>(m_log.get(), m_clock.get());
        events->setOrder(order);
        const auto most = static_cast<int>(OrderLogModel::c_mostEvents);
        for (int number = 0; number < most + 100; ++number) {
            m_bench->board().setInput(5, 1 - number % 2);
        }
        QTRY_COMPARE(static_cast<int>(m_log->events(order).size()), most);
        m_clock->tick();
        QCOMPARE(events->rowCount(), most);
    }

    void ofTheEventsOfManyOrdersTheLatestAreKept()
    {
        constexpr int orders = 6;
        for (int number = 0; number < orders; ++number) {
            run("startListening", {{"channel"_s, "ALARM"_s}});
        }
        QTRY_COMPARE(m_bench->board().pendingRequests(), orders);
        constexpr std::size_t each = 9000;
        for (std::size_t number = 1; number < each; ++number) {
            m_bench->board().setInput(5, static_cast<int>(number % 2));
        }
        const auto kept = [this](int row) {
            return m_log->events(at(*m_log, row, OrderLogModel::OrderRole).toULongLong()).size();
        };
        QTRY_COMPARE(kept(0), each);
        QCOMPARE(kept(orders - 2), each);
        QCOMPARE(kept(orders - 1),
                 OrderLogModel::c_mostEventsOfAll - (orders - 1) * each); // the oldest order
        m_log->stopAll();
        m_log->clear();
        run("startListening", {{"channel"_s, "ALARM"_s}});
        QTRY_COMPARE(m_bench->board().pendingRequests(), 1);
        m_bench->board().setInput(5, 1);
        QTRY_VERIFY(kept(0) >= 1);
    }

    void clearingKeepsWhatStillRuns()
    {
        readSetPoint();
        run("listenToAll");
        readSetPoint();
        QTRY_COMPARE(m_log->running(), 1);
        m_log->clear();
        QCOMPARE(m_log->count(), 1);
        QCOMPARE(logged(0, OrderLogModel::StateRole), "listening"_s);
        m_log->stopAll();
        QCOMPARE(m_log->running(), 0);
        m_log->clear();
        QCOMPARE(m_log->count(), 0);
    }

    void theLogForgetsTheOldest()
    {
        for (int number = 0; number < OrderLogModel::c_mostEntries + 20; ++number) {
            run(qPrintable("no%1"_s.arg(number)));
        }
        QCOMPARE(m_log->count(), OrderLogModel::c_mostEntries);
        QCOMPARE(logged(0, OrderLogModel::CommandRole), "no%1"_s.arg(OrderLogModel::c_mostEntries + 19));
    }

    void aLogThatGoesStopsItsOrders()
    {
        run("listenToAll");
        QTRY_COMPARE(m_bench->board().pendingRequests(), 1);
        m_form.reset();
        m_log.reset();
        QCOMPARE(m_bench->board().pendingRequests(), 0);
    }

    // The form

    void theFormListsWhatTheCommandDeclares()
    {
        QCOMPARE(m_form->problem(), QString());
        QCOMPARE(m_form->commands(),
                 QStringList({"setValue"_s, "switchValue"_s, "getValue"_s, "startListening"_s, "init"_s,
                              "listenToAll"_s, "stopTheCommand"_s, "stopListening"_s}));
        QCOMPARE(m_form->command(), "setValue"_s);
        QCOMPARE(m_form->rowCount(), 5);
        using Form = CommandForm;
        const QVector<int> roles = {Form::NameRole, Form::EditorRole, Form::DefaultTextRole,
                                    Form::DescriptionRole};
        QCOMPARE(shown(*m_form, 0, roles), "channel | channel |  | Channel"_s);
        QVERIFY(at(*m_form, 0, CommandForm::ChoicesRole).toStringList().contains("E_STOP"_s));
        QCOMPARE(shown(*m_form, 1, roles), "value | number | 1 | Value"_s);
        QCOMPARE(shown(*m_form, 2, roles), "state | choice |  | ON, OFF, PULSE or BLINK"_s);
        QCOMPARE(at(*m_form, 2, Form::ChoicesRole).toStringList(),
                 (QStringList{"ON"_s, "OFF"_s, "BLINK"_s, "PULSE"_s}));
        m_form->setCommand("listenToAll"_s);
        QCOMPARE(m_form->rowCount(), 0);
        QVERIFY(m_form->takesSections());
    }

    void onlyWhatTheStateUsesIsAskedFor_data()
    {
        const Rows<QString, QString> row("state", "used");
        row("none", QString(), "channel state");
        row("on", "ON", "channel state");
        row("off", "OFF", "channel state");
        row("pulse", "PULSE", "channel state duration");
        row("blink", "BLINK", "channel value state duration dutyCycle");
        row("one that is not known", "FLASH", "channel value state duration dutyCycle");
    }
    void onlyWhatTheStateUsesIsAskedFor()
    {
        const auto [state, used] = Rows<QString, QString>::values();
        m_form->setText(rowOf(*m_form, "channel"_s), "START"_s);
        m_form->setText(rowOf(*m_form, "duration"_s), "7"_s);
        m_form->setText(rowOf(*m_form, "state"_s), state);
        QStringList names;
        for (int row = 0; row < m_form->rowCount(); ++row) {
            if (at(*m_form, row, CommandForm::UsedRole).toBool()) {
                names.append(at(*m_form, row, CommandForm::NameRole).toString());
            }
        }
        QCOMPARE(names.join(QLatin1Char(' ')), used);
        // What does nothing is not sent either.
        m_form->run();
        QCOMPARE(logged(0, OrderLogModel::CommandRole).contains("duration=7"_s),
                 names.contains("duration"_s));
    }

    void theFieldThatIsWrongIsTold()
    {
        m_form->setText(rowOf(*m_form, "state"_s), "BLINK"_s);
        m_form->setText(rowOf(*m_form, "duration"_s), "soon"_s);
        const auto problem = [this](const char* name) {
            return at(*m_form, rowOf(*m_form, QLatin1String(name)), CommandForm::ProblemRole).toString();
        };
        QVERIFY(problem("duration").contains("cannot hold \"soon\""_s));
        QCOMPARE(problem("state"), QString());
        QCOMPARE(m_form->problem(), problem("duration"));
        m_form->setText(rowOf(*m_form, "duration"_s), "100"_s);
        m_form->setText(rowOf(*m_form, "channel"_s), "STRAT"_s);
        QCOMPARE(problem("duration"), QString());
        QCOMPARE(problem("channel"), "The tool has no channel \"STRAT\"."_s);
        m_form->run();
        QCOMPARE(m_log->count(), 0);
        m_form->setCommand("getValue"_s);
        QCOMPARE(problem("channel"), "The tool has no channel \"STRAT\"."_s);
    }

    void theFormRunsWhatWasEntered()
    {
        m_form->setText(rowOf(*m_form, "channel"_s), "START"_s);
        m_form->setText(rowOf(*m_form, "state"_s), "ON"_s);
        QCOMPARE(m_form->problem(), QString());
        m_form->run();
        QCOMPARE(logged(0, OrderLogModel::CommandRole), "setValue channel=START state=ON"_s);
        QTRY_COMPARE(m_bench->board().level(0).level, 1);
    }

    void theFormRefusesWhatTheCommandWouldRefuse()
    {
        m_form->setText(rowOf(*m_form, "channel"_s), "START"_s);
        m_form->setText(rowOf(*m_form, "state"_s), "BLINK"_s);
        const int value = rowOf(*m_form, "value"_s);
        m_form->setText(value, "65536"_s);
        QCOMPARE(m_form->problem(), "parameter \"value\" of command \"setValue\" cannot hold \"65536\"; "
                                    "expected a whole number from 0 to 65535"_s);
        m_form->run();
        QCOMPARE(m_log->count(), 0);
        m_form->setText(value, QString());
        QCOMPARE(m_form->problem(), QString());
    }

    void whatWasEnteredStaysForTheNextCommand()
    {
        m_form->setText(0, "START"_s);
        m_form->setCommand("getValue"_s);
        QCOMPARE(at(*m_form, 0, CommandForm::TextRole).toString(), "START"_s);
    }

    void sectionsReachTheCommand_data()
    {
        const Rows<QString, QString> row("sections", "problem");
        row("none", QString(), QString());
        row("a list", "{\"channels\": [1, 2]}", QString());
        row("no object", "[1]", "Sections: expected a JSON object, {\"name\": [ \u2026 ]}");
        row("broken", "{\"channels\"", "Sections: no JSON from character 12 on");
        row("no list", "{\"channels\": 1}", QString());
    }
    void sectionsReachTheCommand()
    {
        const auto [sections, problem] = Rows<QString, QString>::values();
        m_form->setCommand("init"_s);
        m_form->setSections(sections);
        QCOMPARE(m_form->problem(), problem);
        m_form->run();
        QCOMPARE(m_log->count(), problem.isEmpty() ? 1 : 0);
    }

    void theFormStopsWhatRuns()
    {
        m_form->setCommand("startListening"_s);
        m_form->setText(0, "START"_s);
        m_form->run();
        QCOMPARE(m_log->running(), 1);
        m_form->setCommand("stopListening"_s);
        QCOMPARE(at(*m_form, 0, CommandForm::TextRole).toString(), "START"_s);
        m_form->run();
        QCOMPARE(m_log->running(), 0);
        QCOMPARE(logged(0, OrderLogModel::StateRole), "done"_s);
        QCOMPARE(logged(1, OrderLogModel::StateRole), "done"_s);
    }

    void aFormWhoseToolGoesRunsNothing()
    {
        m_bench->closeTool();
        m_form->run();
        QCOMPARE(m_log->count(), 0);
        QCOMPARE(m_form->problem(), "Choose a tool to see its commands."_s);
        QCOMPARE(m_form->command(), "setValue"_s);
        m_form->setTool(nullptr);
        QCOMPARE(m_form->command(), QString());
        QCOMPARE(m_form->rowCount(), 0);
    }

    void failuresAndCommandsSpeakTheLanguageOfTheWindow()
    {
        installTexts(QLocale(QLocale::French));
        run("noSuchCommand");
        QVERIFY(logged(0, OrderLogModel::DetailRole)
                    .startsWith(
                        "appel incorrect\u00a0: commande \u00ab\u00a0noSuchCommand\u00a0\u00bb inconnue"_s));
        QCOMPARE(m_form->description(), "Donner un \u00e9tat \u00e0 une ligne"_s);
        QCOMPARE(m_lines->deviceName(), "Carte simul\u00e9e"_s);
        QCOMPARE(at(*m_form, 0, CommandForm::DescriptionRole).toString(), "Voie de l\u2019outil"_s);
        installTexts(QLocale(QLocale::English));
        QCOMPARE(m_form->description(), "Set the value of a GPIO pin"_s);
        QVERIFY(logged(0, OrderLogModel::DetailRole).startsWith("unknown command "_s));
    }

    void failuresAreToldInFrench()
    {
        installTexts(QLocale(QLocale::French));
        const auto told = [this] {
            return logged(0, OrderLogModel::DetailRole).split(" \u00b7 "_s).constLast();
        };
        const auto listen = [this] {
            run("startListening", {{"channel"_s, "READY"_s}, {"edge"_s, "RE"_s}});
            QCoreApplication::processEvents();
        };
        run("getValue", {{"channel"_s, "NOT_LINKED"_s}});
        QTRY_COMPARE(told(), "rien n\u2019a \u00e9t\u00e9 envoy\u00e9\u00a0: la commande n\u2019a rien "
                             "demand\u00e9 \u00e0 l\u2019appareil"_s);
        listen();
        m_bench->board().setPluggedIn(false);
        QTRY_COMPARE(told(), "appareil injoignable\u00a0: la carte simul\u00e9e est d\u00e9branch\u00e9e"_s);
        m_bench->board().setPluggedIn(true);
        listen();
        m_bench->closeTool();
        QTRY_COMPARE(told(), "outil ferm\u00e9\u00a0: l\u2019outil a \u00e9t\u00e9 ferm\u00e9"_s);
    }

    void aSilentDeviceIsToldInFrench()
    {
        installTexts(QLocale(QLocale::French));
        DeafDevice device(m_bench->scheduler());
        device.front.open();
        device.listener->stateTold(DDevice::State::Connected, {}, 0);
        DTool tool(toolEntry({channelEntry("LINE"_s, "digitalOutput"_s, "in"_s, "line"_s)}), builtPlugin(),
                   &device.front);
        const auto read = [&] {
            m_log->run(&tool, "getValue"_s, {{"channel"_s, "LINE"_s}});
            QCoreApplication::processEvents();
        };
        read();
        m_log->stopAll();
        QTRY_COMPARE(logged(0, OrderLogModel::DetailRole),
                     "arr\u00eat\u00e9\u00a0: arr\u00eat\u00e9 avant la fin"_s);
        read();
        m_bench->scheduler().advance(60000000);
        QTRY_VERIFY(logged(0, OrderLogModel::DetailRole)
                        .startsWith("d\u00e9lai d\u00e9pass\u00e9\u00a0: pas de r\u00e9ponse"_s));
    }

    void aFileThatCannotBeWrittenIsToldInFrench()
    {
        installTexts(QLocale(QLocale::French));
        QCOMPARE(Files::write("/nowhere/a.csv"_s, {}),
                 "Impossible d\u2019\u00e9crire /nowhere/a.csv\u00a0: fichier ou dossier inexistant"_s);
    }

    /// Every kind of failure has a text of its own in French.
    void everyKindOfFailureIsTranslated()
    {
        installTexts(QLocale(QLocale::French));
        for (int kind = 1; kind < static_cast<int>(DFailure::Kind::Count); ++kind) {
            const DFailure failure = {static_cast<DFailure::Kind>(kind), DWording::told("reason"_s)};
            const QString text = failureText(failure.kindName(), failure.text);
            QVERIFY2(text.endsWith("\u00a0: reason"_s), qPrintable(failure.kindName()));
        }
    }

    void whatFailuresNameStaysAsItIs_data()
    {
        const Rows<DWording, QString> row("reason", "text");
        row("nothing named", wording("the device is closed"), "l\u2019appareil est ferm\u00e9"_s);
        row("a name", wording("unknown channel \"%1\"").arg("true or false"_s),
            "voie \u00ab\u00a0true or false\u00a0\u00bb inconnue"_s);
        row("a name with a place in it", wording("no reply to %1 within %2 ms").arg("%2"_s, 100),
            "pas de r\u00e9ponse \u00e0 %2 en 100\u00a0ms"_s);
        row("a reason in a reason",
            wording("line \"%1\" blinks no more: %2").arg("do0"_s, wording("the device is gone")),
            "la ligne \u00ab\u00a0do0\u00a0\u00bb ne clignote plus\u00a0: l\u2019appareil n\u2019est plus l\u00e0"_s);
        row("what the system says", DWording::told("Permission denied"_s), "permission refus\u00e9e"_s);
        row("what nobody has translated", DWording::told("it is Monday"_s), "it is Monday"_s);
    }
    void whatFailuresNameStaysAsItIs()
    {
        QFETCH(DWording, reason);
        installTexts(QLocale(QLocale::French));
        const QString french = worded(reason);
        installTexts(QLocale(QLocale::English));
        QTEST(french, "text");
        QCOMPARE(worded(reason), reason.english());
    }

    void numbersAreWrittenAsTheLanguageDoes_data()
    {
        const Rows<QLocale, QString> row("locale", "texts");
        const QString french = "\u22129,5\u00a0s; 1,5\u00a0ms; 666,7\u00a0Hz; 1,500000; 58\u202f000; "
                               "1\u202f234 lectures de la page"_s;
        const QString english = "\u22129.5\u00a0s; 1.5\u00a0ms; 666.7\u00a0Hz; 1.500000; 58,000; "
                                "1,234 reads of the page"_s;
        row("French", QLocale(QLocale::French), french);
        row("English", QLocale(QLocale::English), english);
        row("a language without texts", QLocale(QLocale::German), english);
    }
    void numbersAreWrittenAsTheLanguageDoes()
    {
        const auto [locale, texts] = Rows<QLocale, QString>::values();
        installTexts(locale);
        const QStringList written = {
            offsetText(-9500000, 500000),    lengthText(1500),  frequencyText(1500),
            timeOfDayText(1500000).right(8), numberText(58000), qtTrId("orders_reads", 1234)};
        QCOMPARE(written.join("; "_s), texts);
    }

    /// An hour leaves no more than ten minutes do.
    void anHourOfSixtyBlinkingLinesIsBounded()
    {
        constexpr int count = 60;
        constexpr qint64 second = 1000000;
        DeafDevice device(m_bench->scheduler(), count);
        const LinesModel lines(&device.front, {}, m_clock.get());
        const auto remembered = [&lines] {
            std::size_t changes = 0;
            for (int line = 0; line < count; ++line) {
                changes += lines.history(line)->changes().size();
            }
            return changes;
        };
        std::vector<std::size_t> sizes;
        for (int time = 0; time < 3600; ++time) {
            for (int line = 0; line < count; ++line) {
                device.listener->lineTold(line, {time % 2, time * second, true});
            }
            m_bench->scheduler().advance(second);
            if (time % 600 == 599) {
                sizes.push_back(remembered());
            }
        }
        QCOMPARE(sizes.back(), sizes.at(1));
        QVERIFY(sizes.back() <= count * 602);
    }

    void valuesAreWrittenForPeople_data()
    {
        const Rows<QVariant, QString> row("value", "text");
        row("nothing", QVariant(), "\u2013");
        row("number", QVariant(5), "5");
        row("truth", QVariant(true), "true");
        row("text", QVariant("a b"_s), "a b");
        row("list", QVariant(QVariantList{1, "x"_s}), "[1,\"x\"]");
    }
    void valuesAreWrittenForPeople()
    {
        const auto [value, text] = Rows<QVariant, QString>::values();
        QCOMPARE(valueText(value), text);
    }

    void fieldsAreQuotedWhereTheyAreNotPlain_data()
    {
        const Rows<QString, QString> row("text", "field");
        row("plain", "do 0; [1]", "do 0; [1]");
        row("a comma", "[1,2]", "\"[1,2]\"");
        row("quotes", "a \"b\"", "\"a \"\"b\"\"\"");
        row("lines", "a\nb", "\"a\nb\"");
        row("nothing", "", "");
    }
    void fieldsAreQuotedWhereTheyAreNotPlain()
    {
        const auto [text, field] = Rows<QString, QString>::values();
        QCOMPARE(csvField(text), field);
    }

private:
    void run(const char* command, const QVariantMap& arguments = {})
    {
        m_log->run(&m_bench->tool(), QLatin1String(command), arguments);
    }
    void readSetPoint() { run("getValue", {{"channel"_s, "SETPOINT"_s}}); }
    QString logged(int row, int role) const { return at(*m_log, row, role).toString(); }

    std::unique_ptr<ExampleBench> m_bench;
    std::unique_ptr<DeviceClock> m_clock;
    std::unique_ptr<ToolsModel> m_tools;
    std::unique_ptr<LinesModel> m_lines;
    std::unique_ptr<OrderLogModel> m_log;
    std::unique_ptr<CommandForm> m_form;
};

QTEST_GUILESS_MAIN(TestModels)
#include "test_models.moc"
