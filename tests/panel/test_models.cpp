#include "example_bench.h"
#include "panel_fixture.h"

#include <bench/value_text.h>
#include <window/command_form.h>
#include <window/line_filter.h>
#include <window/lines_model.h>
#include <window/order_log_model.h>
#include <window/texts.h>
#include <window/tools_model.h>

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QtTest>

namespace {

using FailureMode = QAbstractItemModelTester::FailureReportingMode;

QVariant at(const QAbstractItemModel& model, int row, int role)
{
    return model.index(row, 0).data(role);
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
class ModelsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { installTexts(QLocale(QLocale::English)); }

    void init() { m_bench = std::make_unique<ExampleBench>(8); }
    void cleanup() { m_bench.reset(); }

    // History and clock

    void aLineKeepsItsLevelUntilItChanges()
    {
        LineHistory history(5);
        history.append(100, 7);
        history.append(200, 9);
        QCOMPARE(history.levelAt(99), 5);
        QCOMPARE(history.levelAt(100), 7);
        QCOMPARE(history.levelAt(199), 7);
        QCOMPARE(history.levelAt(200), 9);
        QCOMPARE(history.levelAt(1000000), 9);
        QVERIFY(history.hasChangedSince(200));
        QVERIFY(!history.hasChangedSince(201));
    }

    void changesThatAreTooOldAreForgotten()
    {
        LineHistory history(0);
        history.append(0, 1);
        history.append(10, 2);
        history.append(LineHistory::c_longestUs + 5, 3);
        QCOMPARE(history.samples().size(), std::size_t{2});
        QCOMPARE(history.levelAt(5), 1);
    }

    void changesThatAreTooManyAreForgotten()
    {
        LineHistory history(0);
        for (int number = 1; number <= static_cast<int>(LineHistory::c_mostSamples) + 10; ++number) {
            history.append(number, number);
        }
        QCOMPARE(history.samples().size(), LineHistory::c_mostSamples);
        QCOMPARE(history.levelAt(1), 10);
    }

    void theClockBelievesTheFastestAnnouncement()
    {
        qint64 local = 1000;
        DeviceClock clock([&local] { return local; });
        clock.observe(5000); // 1000 here
        local = 2000;
        clock.tick();
        QCOMPARE(clock.now(), 6000.0);
        clock.observe(5500); // late by 500
        clock.tick();
        QCOMPARE(clock.now(), 6000.0);
        clock.observe(6100); // faster than the first by 100
        clock.tick();
        QCOMPARE(clock.now(), 6100.0);
        QCOMPARE(clock.startUs(), 5100LL);
    }

    void aClockThatIsStoppedDoesNotTick()
    {
        DeviceClock clock;
        QSignalSpy ticks(&clock, &DeviceClock::ticked);
        clock.setRunning(true);
        QVERIFY(ticks.wait());
        clock.setRunning(false);
        ticks.clear();
        QVERIFY(!ticks.wait(200));
        QVERIFY(!clock.isRunning());
    }

    // Tools

    void theToolsAreListed()
    {
        ToolsModel model(m_bench->tools());
        const QAbstractItemModelTester tester(&model, FailureMode::QtTest);
        QCOMPARE(model.rowCount(), 1);
        QCOMPARE(at(model, 0, ToolsModel::NameRole).toString(), QStringLiteral("Front panel"));
        QCOMPARE(at(model, 0, ToolsModel::IdRole).toString(), m_bench->tool().id());
        QCOMPARE(at(model, 0, ToolsModel::PluginRole).toString(), QStringLiteral("Tool Gpio"));
        QCOMPARE(at(model, 0, ToolsModel::ChannelCountRole).toInt(), 8);
        QVERIFY(at(model, 0, ToolsModel::ConnectedRole).toBool());
        QCOMPARE(model.toolAt(0), &m_bench->tool());
        QVERIFY(model.toolAt(1) == nullptr);
        QVERIFY(model.toolAt(-1) == nullptr);
    }

    void aLostDeviceIsSeenAtTheTool()
    {
        ToolsModel model(m_bench->tools());
        const QAbstractItemModelTester tester(&model, FailureMode::QtTest);
        QSignalSpy changes(&model, &ToolsModel::dataChanged);
        m_bench->board().setPluggedIn(false);
        QCOMPARE(changes.count(), 1);
        QVERIFY(!at(model, 0, ToolsModel::ConnectedRole).toBool());
    }

    void aToolThatIsClosedLeavesTheList()
    {
        auto second = std::make_unique<DTool>(toolEntry({}, QStringLiteral("second")), builtPlugin(),
                                              &m_bench->board());
        ToolsModel model({&m_bench->tool(), second.get()});
        const QAbstractItemModelTester tester(&model, FailureMode::QtTest);
        second.reset();
        QCOMPARE(model.rowCount(), 1);
        m_bench->board().setPluggedIn(false);
        QVERIFY(!at(model, 0, ToolsModel::ConnectedRole).toBool());
    }

    // Lines

    void theLinesAreListedWithTheirChannels()
    {
        DeviceClock clock;
        const LinesModel model(&m_bench->board(), m_bench->tools(), &clock);
        QCOMPARE(model.rowCount(), 8);
        QCOMPARE(at(model, 0, LinesModel::NameRole).toString(), QStringLiteral("do0"));
        QCOMPARE(at(model, 0, LinesModel::ChannelsRole).toString(), QStringLiteral("START"));
        QVERIFY(at(model, 0, LinesModel::OutputRole).toBool());
        QVERIFY(!at(model, 0, LinesModel::SettableRole).toBool());
        QVERIFY(at(model, 1, LinesModel::SettableRole).toBool());
        QVERIFY(at(model, 2, LinesModel::AnalogRole).toBool());
        QCOMPARE(at(model, 1, LinesModel::HighestRole).toInt(), 1);
        QCOMPARE(at(model, 2, LinesModel::HighestRole).toInt(), 65535);
        QCOMPARE(at(model, 5, LinesModel::LineRole).toInt(), 5);
    }

    void levelsAreFollowed()
    {
        DeviceClock clock([this] { return m_bench->scheduler().now(); });
        LinesModel model(&m_bench->board(), m_bench->tools(), &clock);
        const QAbstractItemModelTester tester(&model, FailureMode::QtTest);
        QSignalSpy changes(&model, &LinesModel::dataChanged);
        m_bench->scheduler().advance(1000);
        model.setLevel(5, 1);
        QCOMPARE(m_bench->board().level(5), 1);
        QCOMPARE(at(model, 5, LinesModel::LevelRole).toInt(), 1);
        QCOMPARE(model.levelAt(5, 999), 0);
        QCOMPARE(model.levelAt(5, 1000), 1);
        QVERIFY(changes.wait());
        QCOMPARE(changes.constFirst().constFirst().toModelIndex().row(), 5);
    }

    void manyChangesAreToldOnce()
    {
        DeviceClock clock;
        LinesModel model(&m_bench->board(), m_bench->tools(), &clock);
        QSignalSpy changes(&model, &LinesModel::dataChanged);
        for (int number = 0; number < 1001; ++number) {
            model.setLevel(5, 1 - number % 2);
        }
        QCOMPARE(changes.count(), 0);
        QVERIFY(changes.wait());
        QCOMPARE(changes.count(), 1);
        QCOMPARE(at(model, 5, LinesModel::LevelRole).toInt(), 1);
        QCOMPARE(model.history(5)->samples().size(), std::size_t{1001});
    }

    void aLevelIsSetWithinItsRange()
    {
        DeviceClock clock;
        LinesModel model(&m_bench->board(), m_bench->tools(), &clock);
        model.setLevel(5, 70000);
        QCOMPARE(m_bench->board().level(5), 1);
        model.setLevel(5, -3);
        QCOMPARE(m_bench->board().level(5), 0);
        model.setLevel(-1, 1);
        model.setLevel(8, 1);
        model.setLevel(0, 1); // an output is not set from outside
        QCOMPARE(m_bench->board().level(0), 0);
    }

    void theConnectionIsFollowed()
    {
        DeviceClock clock;
        const LinesModel model(&m_bench->board(), m_bench->tools(), &clock);
        QSignalSpy changes(&model, &LinesModel::connectionChanged);
        QVERIFY(model.isConnected());
        m_bench->board().setPluggedIn(false);
        QVERIFY(!model.isConnected());
        QCOMPARE(model.connectionProblem(), QStringLiteral("the simulated board is unplugged"));
        QCOMPARE(changes.count(), 1);
    }

    void theFilterLooksAtNamesAndChannels_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QStringList>("lines");
        QTest::newRow("everything") << QString() << QStringList{QStringLiteral("do0"), QStringLiteral("di0"),
                                                                QStringLiteral("ai0"), QStringLiteral("ao0"),
                                                                QStringLiteral("do1"), QStringLiteral("di1"),
                                                                QStringLiteral("ai1"), QStringLiteral("ao1")};
        QTest::newRow("a name") << QStringLiteral("DO")
                                << QStringList{QStringLiteral("do0"), QStringLiteral("do1")};
        QTest::newRow("a channel") << QStringLiteral("e_st") << QStringList{QStringLiteral("do1")};
        QTest::newRow("nothing") << QStringLiteral("no such line") << QStringList{};
        QTest::newRow("no pattern") << QStringLiteral(".") << QStringList{};
    }

    void theFilterLooksAtNamesAndChannels()
    {
        QFETCH(QString, text);
        QFETCH(QStringList, lines);
        DeviceClock clock;
        LinesModel model(&m_bench->board(), m_bench->tools(), &clock);
        LineFilter filter;
        const QAbstractItemModelTester tester(&filter, FailureMode::QtTest);
        filter.setSourceModel(&model);
        filter.setText(text);
        QStringList found;
        for (int row = 0; row < filter.rowCount(); ++row) {
            found.append(at(filter, row, LinesModel::NameRole).toString());
        }
        QCOMPARE(found, lines);
    }

    // Orders

    void anOrderIsLoggedWithItsResult()
    {
        OrderLogModel log;
        const QAbstractItemModelTester tester(&log, FailureMode::QtTest);
        log.run(&m_bench->tool(), QStringLiteral("getValue"),
                {{QStringLiteral("channel"), QStringLiteral("SETPOINT")}});
        QCOMPARE(log.count(), 1);
        QCOMPARE(at(log, 0, OrderLogModel::CommandRole).toString(),
                 QStringLiteral("getValue channel=SETPOINT"));
        QCOMPARE(at(log, 0, OrderLogModel::StateRole).toString(), QStringLiteral("running"));
        QTRY_COMPARE(at(log, 0, OrderLogModel::StateRole).toString(), QStringLiteral("done"));
        QCOMPARE(at(log, 0, OrderLogModel::DetailRole).toString(), QStringLiteral("value=0"));
        QCOMPARE(log.running(), 0);
    }

    void anOrderThatFailsIsLoggedWithTheReason()
    {
        OrderLogModel log;
        const QAbstractItemModelTester tester(&log, FailureMode::QtTest);
        log.run(&m_bench->tool(), QStringLiteral("noSuchCommand"), {});
        QCOMPARE(at(log, 0, OrderLogModel::StateRole).toString(), QStringLiteral("failed"));
        QVERIFY(at(log, 0, OrderLogModel::DetailRole)
                    .toString()
                    .startsWith(QLatin1String("unknown command \"noSuchCommand\"")));
    }

    void aListeningOrderRunsUntilItIsStopped()
    {
        OrderLogModel log;
        const QAbstractItemModelTester tester(&log, FailureMode::QtTest);
        log.run(&m_bench->tool(), QStringLiteral("startListening"),
                {{QStringLiteral("channel"), QStringLiteral("ALARM")},
                 {QStringLiteral("edge"), QStringLiteral("RE")}});
        QCOMPARE(at(log, 0, OrderLogModel::StateRole).toString(), QStringLiteral("listening"));
        QCOMPARE(log.running(), 1);
        QCoreApplication::processEvents();
        for (const int level : {1, 0, 1}) {
            m_bench->board().setInput(5, level);
            QCoreApplication::processEvents();
        }
        QTRY_VERIFY(at(log, 0, OrderLogModel::EventsRole).toInt() >= 2);
        log.run(&m_bench->tool(), QStringLiteral("getValue"),
                {{QStringLiteral("channel"), QStringLiteral("SETPOINT")}});
        QTRY_COMPARE(at(log, 0, OrderLogModel::StateRole).toString(), QStringLiteral("done"));
        log.stop(0); // has ended
        QCOMPARE(at(log, 1, OrderLogModel::StateRole).toString(), QStringLiteral("listening"));
        log.stop(1);
        QCOMPARE(at(log, 1, OrderLogModel::StateRole).toString(), QStringLiteral("done"));
        QCOMPARE(log.running(), 0);
        log.stop(-1);
        log.stop(2);
    }

    void clearingKeepsWhatStillRuns()
    {
        OrderLogModel log;
        const QAbstractItemModelTester tester(&log, FailureMode::QtTest);
        const auto read = [&] {
            log.run(&m_bench->tool(), QStringLiteral("getValue"),
                    {{QStringLiteral("channel"), QStringLiteral("SETPOINT")}});
        };
        read();
        log.run(&m_bench->tool(), QStringLiteral("listenToAll"), {});
        read();
        QTRY_COMPARE(log.running(), 1);
        log.clear();
        QCOMPARE(log.count(), 1);
        QCOMPARE(at(log, 0, OrderLogModel::StateRole).toString(), QStringLiteral("listening"));
        log.stopAll();
        QCOMPARE(log.running(), 0);
        log.clear();
        QCOMPARE(log.count(), 0);
    }

    void theLogForgetsTheOldest()
    {
        OrderLogModel log;
        for (int number = 0; number < OrderLogModel::c_mostEntries + 20; ++number) {
            log.run(&m_bench->tool(), QStringLiteral("no%1").arg(number), {});
        }
        QCOMPARE(log.count(), OrderLogModel::c_mostEntries);
        QCOMPARE(at(log, 0, OrderLogModel::CommandRole).toString(),
                 QStringLiteral("no%1").arg(OrderLogModel::c_mostEntries + 19));
    }

    void aLogThatGoesStopsItsOrders()
    {
        {
            OrderLogModel log;
            log.run(&m_bench->tool(), QStringLiteral("listenToAll"), {});
            QTRY_COMPARE(m_bench->board().pendingRequests(), 1);
        }
        QCOMPARE(m_bench->board().pendingRequests(), 0);
    }

    // The form

    void theFormListsWhatTheCommandDeclares()
    {
        OrderLogModel log;
        CommandForm form(&log);
        const QAbstractItemModelTester tester(&form, FailureMode::QtTest);
        QCOMPARE(form.problem(), QStringLiteral("Choose a tool to see its commands."));
        form.setTool(&m_bench->tool());
        QCOMPARE(form.problem(), QString());
        QCOMPARE(form.commands(),
                 QStringList({QStringLiteral("setValue"), QStringLiteral("switchValue"),
                              QStringLiteral("getValue"), QStringLiteral("startListening"),
                              QStringLiteral("init"), QStringLiteral("listenToAll"),
                              QStringLiteral("stopTheCommand"), QStringLiteral("stopListening")}));
        QCOMPARE(form.command(), QStringLiteral("setValue"));
        QCOMPARE(form.rowCount(), 5);
        QCOMPARE(at(form, 0, CommandForm::EditorRole).toString(), QStringLiteral("channel"));
        QVERIFY(at(form, 0, CommandForm::ChoicesRole).toStringList().contains(QStringLiteral("E_STOP")));
        QCOMPARE(at(form, 1, CommandForm::EditorRole).toString(), QStringLiteral("number"));
        QCOMPARE(at(form, 1, CommandForm::DefaultTextRole).toString(), QStringLiteral("1"));
        QCOMPARE(at(form, 2, CommandForm::EditorRole).toString(), QStringLiteral("text"));
        QCOMPARE(at(form, 2, CommandForm::DescriptionRole).toString(),
                 QStringLiteral("ON, OFF, PULSE or BLINK"));
        form.setCommand(QStringLiteral("listenToAll"));
        QCOMPARE(form.rowCount(), 0);
    }

    void theFormRunsWhatWasEntered()
    {
        OrderLogModel log;
        CommandForm form(&log);
        form.setTool(&m_bench->tool());
        form.setText(rowOf(form, QStringLiteral("channel")), QStringLiteral("START"));
        form.setText(rowOf(form, QStringLiteral("state")), QStringLiteral("ON"));
        QCOMPARE(form.problem(), QString());
        form.run();
        QCOMPARE(at(log, 0, OrderLogModel::CommandRole).toString(),
                 QStringLiteral("setValue channel=START state=ON"));
        QTRY_COMPARE(m_bench->board().level(0), 1);
    }

    void theFormRefusesWhatTheCommandWouldRefuse_data()
    {
        QTest::addColumn<QString>("parameter");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("problem");
        QTest::newRow("too big") << QStringLiteral("value") << QStringLiteral("65536")
                                 << QStringLiteral("parameter \"value\" of command \"setValue\" cannot hold "
                                                   "\"65536\"; expected a whole number from 0 to 65535");
        QTest::newRow("no number") << QStringLiteral("duration") << QStringLiteral("long")
                                   << QStringLiteral(
                                          "parameter \"duration\" of command \"setValue\" cannot hold "
                                          "\"long\"; expected a whole number from -2147483648 to "
                                          "2147483647");
    }

    void theFormRefusesWhatTheCommandWouldRefuse()
    {
        QFETCH(QString, parameter);
        QFETCH(QString, text);
        QFETCH(QString, problem);
        OrderLogModel log;
        CommandForm form(&log);
        form.setTool(&m_bench->tool());
        form.setText(rowOf(form, parameter), text);
        QCOMPARE(form.problem(), problem);
        form.run();
        QCOMPARE(log.count(), 0);
        form.setText(rowOf(form, parameter), QString());
        QCOMPARE(form.problem(), QString());
    }

    void whatWasEnteredStaysForTheNextCommand()
    {
        OrderLogModel log;
        CommandForm form(&log);
        form.setTool(&m_bench->tool());
        form.setText(0, QStringLiteral("START"));
        form.setCommand(QStringLiteral("getValue"));
        QCOMPARE(at(form, 0, CommandForm::TextRole).toString(), QStringLiteral("START"));
    }

    void sectionsReachTheCommand_data()
    {
        QTest::addColumn<QString>("sections");
        QTest::addColumn<QString>("problem");
        QTest::newRow("none") << QString() << QString();
        QTest::newRow("a list") << QStringLiteral("{\"channels\": [1, 2]}") << QString();
        QTest::newRow("no object") << QStringLiteral("[1]")
                                   << QStringLiteral(
                                          "Sections: expected a JSON object, {\"name\": [ \u2026 ]}");
        QTest::newRow("broken") << QStringLiteral("{\"channels\"")
                                << QStringLiteral("Sections: unterminated string at offset 11");
        QTest::newRow("no list") << QStringLiteral("{\"channels\": 1}") << QString();
    }

    void sectionsReachTheCommand()
    {
        QFETCH(QString, sections);
        QFETCH(QString, problem);
        OrderLogModel log;
        CommandForm form(&log);
        form.setTool(&m_bench->tool());
        form.setCommand(QStringLiteral("init"));
        form.setSections(sections);
        QCOMPARE(form.problem(), problem);
        form.run();
        QCOMPARE(log.count(), problem.isEmpty() ? 1 : 0);
    }

    void theFormStopsWhatRuns()
    {
        OrderLogModel log;
        CommandForm form(&log);
        form.setTool(&m_bench->tool());
        form.setCommand(QStringLiteral("startListening"));
        form.setText(0, QStringLiteral("START"));
        form.run();
        QCOMPARE(log.running(), 1);
        form.setCommand(QStringLiteral("stopListening"));
        QCOMPARE(at(form, 0, CommandForm::TextRole).toString(), QStringLiteral("START"));
        form.run();
        QCOMPARE(log.running(), 0);
        QCOMPARE(at(log, 0, OrderLogModel::StateRole).toString(), QStringLiteral("done"));
        QCOMPARE(at(log, 1, OrderLogModel::StateRole).toString(), QStringLiteral("done"));
    }

    void aFormWhoseToolGoesRunsNothing()
    {
        OrderLogModel log;
        CommandForm form(&log);
        form.setTool(&m_bench->tool());
        m_bench.reset();
        form.run();
        QCOMPARE(log.count(), 0);
        QCOMPARE(form.problem(), QStringLiteral("Choose a tool to see its commands."));
    }

    void valuesAreWrittenForPeople_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<QString>("text");
        QTest::newRow("nothing") << QVariant() << QStringLiteral("\u2013");
        QTest::newRow("number") << QVariant(5) << QStringLiteral("5");
        QTest::newRow("truth") << QVariant(true) << QStringLiteral("true");
        QTest::newRow("text") << QVariant(QStringLiteral("a b")) << QStringLiteral("a b");
        QTest::newRow("list") << QVariant(QVariantList{1, QStringLiteral("x")})
                              << QStringLiteral("[1,\"x\"]");
    }

    void valuesAreWrittenForPeople()
    {
        QFETCH(QVariant, value);
        QFETCH(QString, text);
        QCOMPARE(valueText(value), text);
    }

private:
    std::unique_ptr<ExampleBench> m_bench;
};

QTEST_GUILESS_MAIN(ModelsTest)

#include "test_models.moc"
