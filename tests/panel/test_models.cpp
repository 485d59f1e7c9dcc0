#include "example_bench.h"
#include "panel_fixture.h"

#include <configuration/value_text.h>
#include <process/time_text.h>
#include <window/command_form.h>
#include <window/line_filter.h>
#include <window/lines_model.h>
#include <window/order_log_model.h>
#include <window/texts.h>
#include <window/tools_model.h>

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

} // namespace

/// What the window's models say of the bench.
class TestModels : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { installTexts(QLocale(QLocale::English)); }

    void init()
    {
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
        }
        QVERIFY(waitUntil([&lines] { return lines.history(1)->changeCount() == 6; }));
        QCOMPARE(board->level(1).level, 1);
        board->setPluggedIn(false);
        QVERIFY(waitUntil([&board] { return !board->level(1).known; }));
        QCOMPARE(at(lines, 1, LinesModel::LevelRole).toInt(), 0);
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
        QVERIFY(at(*m_lines, 5, LinesModel::KnownRole).toBool());
        m_bench->board().setPluggedIn(false);
        QVERIFY(!at(*m_lines, 5, LinesModel::KnownRole).toBool());
        m_bench->scheduler().advance(1000);
        QCOMPARE(m_lines->levelAt(5, 500), QVariant(0));
        QCOMPARE(m_lines->levelAt(5, 1500), QVariant());
        QCOMPARE(m_lines->levelAt(99, 500), QVariant());
        // It has had its level all the time, but that is known from now on only.
        m_bench->board().setPluggedIn(true);
        QVERIFY(at(*m_lines, 5, LinesModel::KnownRole).toBool());
        QCOMPARE(m_lines->levelAt(5, 1999), QVariant());
        QCOMPARE(m_lines->levelAt(5, 2000), QVariant(0));
    }

    void aLevelIsSetWithinItsRange()
    {
        m_lines->setLevel(5, 70000);
        QCOMPARE(m_bench->board().level(5).level, 1);
        m_lines->setLevel(5, -3);
        QCOMPARE(m_bench->board().level(5).level, 0);
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
        QCOMPARE(logged(0, OrderLogModel::TimeRole), timeOfDay(startUs));
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
        m_log->addProblem("board"_s, "line \"do0\" blinks no more"_s);
        QCOMPARE(shown(*m_log, 0,
                       {OrderLogModel::CommandRole, OrderLogModel::StateRole, OrderLogModel::DetailRole}),
                 "board | problem | line \"do0\" blinks no more"_s);
        QCOMPARE(m_log->running(), 0);
        m_log->clear();
        QCOMPARE(m_log->count(), 0);
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
        const QString time = timeOfDay(ManualScheduler::c_wallClockOffsetUs + 3 * 1234567);
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
        QCOMPARE(shown(*m_form, 2, roles), "state | text |  | ON, OFF, PULSE or BLINK"_s);
        m_form->setCommand("listenToAll"_s);
        QCOMPARE(m_form->rowCount(), 0);
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
