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

    void init()
    {
        m_bench = std::make_unique<ExampleBench>(8);
        m_clock = std::make_unique<DeviceClock>(&m_bench->scheduler());
        m_log = std::make_unique<OrderLogModel>(m_clock.get());
        new QAbstractItemModelTester(m_log.get(), FailureMode::QtTest, m_log.get());
        m_form = std::make_unique<CommandForm>(m_log.get());
        new QAbstractItemModelTester(m_form.get(), FailureMode::QtTest, m_form.get());
        m_form->setTool(&m_bench->tool());
    }
    void cleanup()
    {
        m_form.reset();
        m_log.reset();
        m_clock.reset();
        m_bench.reset();
    }

    // Tools

    void theToolsAreListed()
    {
        ToolsModel model(m_bench->tools());
        const QAbstractItemModelTester tester(&model, FailureMode::QtTest);
        QCOMPARE(model.rowCount(), 1);
        QCOMPARE(at(model, 0, ToolsModel::NameRole).toString(), "Front panel"_s);
        QCOMPARE(at(model, 0, ToolsModel::IdRole).toString(), m_bench->tool().id());
        QCOMPARE(at(model, 0, ToolsModel::PluginRole).toString(), "Tool Gpio"_s);
        QCOMPARE(at(model, 0, ToolsModel::ChannelCountRole).toInt(), 8);
        QCOMPARE(at(model, 0, ToolsModel::StateRole).toString(), "Connected"_s);
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
        QCOMPARE(at(model, 0, ToolsModel::StateRole).toString(), "Unreachable"_s);
    }

    void aToolThatIsClosedLeavesTheList()
    {
        auto second = std::make_unique<DTool>(toolEntry({}, "second"_s), builtPlugin(), &m_bench->board());
        ToolsModel model({&m_bench->tool(), second.get()});
        const QAbstractItemModelTester tester(&model, FailureMode::QtTest);
        second.reset();
        QCOMPARE(model.rowCount(), 1);
        m_bench->board().setPluggedIn(false);
        QCOMPARE(at(model, 0, ToolsModel::StateRole).toString(), "Unreachable"_s);
    }

    // Lines

    void theLinesAreListedWithTheirChannels()
    {
        const LinesModel model(&m_bench->board(), m_bench->tools(), m_clock.get());
        QCOMPARE(model.rowCount(), 8);
        QCOMPARE(at(model, 0, LinesModel::NameRole).toString(), "do0"_s);
        QCOMPARE(at(model, 0, LinesModel::ChannelsRole).toString(), "START"_s);
        QVERIFY(at(model, 0, LinesModel::OutputRole).toBool());
        QVERIFY(!at(model, 0, LinesModel::SettableRole).toBool());
        QVERIFY(!at(model, 1, LinesModel::SettableRole).toBool()); // a wire feeds it
        QVERIFY(at(model, 5, LinesModel::SettableRole).toBool());
        QVERIFY(at(model, 2, LinesModel::AnalogRole).toBool());
        QCOMPARE(at(model, 1, LinesModel::HighestRole).toInt(), 1);
        QCOMPARE(at(model, 2, LinesModel::HighestRole).toInt(), 65535);
        QCOMPARE(at(model, 5, LinesModel::LineRole).toInt(), 5);
    }

    void levelsAreFollowed()
    {
        LinesModel model(&m_bench->board(), m_bench->tools(), m_clock.get());
        const QAbstractItemModelTester tester(&model, FailureMode::QtTest);
        m_bench->scheduler().advance(1000);
        QSignalSpy changes(&model, &LinesModel::dataChanged);
        m_bench->scheduler().advance(50000);
        changes.clear();
        model.setLevel(5, 1);
        QCOMPARE(m_bench->board().level(5).level, 1);
        QCOMPARE(at(model, 5, LinesModel::LevelRole).toInt(), 1);
        QCOMPARE(model.levelAt(5, 50999), QVariant(0));
        QCOMPARE(model.levelAt(5, 51000), QVariant(1));
        QCOMPARE(changes.count(), 0);
        m_bench->scheduler().advance(50000);
        QVERIFY(std::any_of(changes.cbegin(), changes.cend(), [](const QVariantList& change) {
            return change.constFirst().toModelIndex().row() == 5;
        }));
    }

    void manyChangesAreToldOnce()
    {
        LinesModel model(&m_bench->board(), m_bench->tools(), m_clock.get());
        m_bench->scheduler().advance(1);
        QSignalSpy changes(&model, &LinesModel::dataChanged);
        for (int number = 0; number < 1001; ++number) {
            model.setLevel(5, 1 - number % 2);
        }
        QCOMPARE(changes.count(), 0);
        m_clock->tick();
        QCOMPARE(changes.count(), 1);
        QCOMPARE(at(model, 5, LinesModel::LevelRole).toInt(), 1);
        QCOMPARE(model.history(5)->changeCount(), quint64{1002});
    }

    void aLevelThatNobodyKnowsIsNone()
    {
        LinesModel model(&m_bench->board(), m_bench->tools(), m_clock.get());
        m_bench->scheduler().advance(1000);
        QVERIFY(at(model, 5, LinesModel::KnownRole).toBool());
        m_bench->board().setPluggedIn(false);
        QVERIFY(!at(model, 5, LinesModel::KnownRole).toBool());
        m_bench->scheduler().advance(1000);
        QCOMPARE(model.levelAt(5, 500), QVariant(0));
        QCOMPARE(model.levelAt(5, 1500), QVariant());
        QCOMPARE(model.levelAt(99, 500), QVariant());
        // It has had its level all the time, but that is known from now on only.
        m_bench->board().setPluggedIn(true);
        QVERIFY(at(model, 5, LinesModel::KnownRole).toBool());
        QCOMPARE(model.levelAt(5, 1999), QVariant());
        QCOMPARE(model.levelAt(5, 2000), QVariant(0));
    }

    void aLevelIsSetWithinItsRange()
    {
        LinesModel model(&m_bench->board(), m_bench->tools(), m_clock.get());
        model.setLevel(5, 70000);
        QCOMPARE(m_bench->board().level(5).level, 1);
        model.setLevel(5, -3);
        QCOMPARE(m_bench->board().level(5).level, 0);
        model.setLevel(-1, 1);
        model.setLevel(8, 1);
        model.setLevel(0, 1); // an output is not set from outside
        QCOMPARE(m_bench->board().level(0).level, 0);
    }

    void theStateIsFollowed()
    {
        const LinesModel model(&m_bench->board(), m_bench->tools(), m_clock.get());
        QSignalSpy changes(&model, &LinesModel::stateChanged);
        QCOMPARE(model.state(), "Connected"_s);
        m_bench->board().setPluggedIn(false);
        QCOMPARE(model.state(), "Unreachable"_s);
        QCOMPARE(model.problem(), "the simulated board is unplugged"_s);
        m_bench->board().close();
        QCOMPARE(model.state(), "Closed"_s);
        QCOMPARE(changes.count(), 2);
    }

    void theFilterLooksAtNamesAndChannels_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QStringList>("lines");
        QTest::newRow("everything") << QString() << QStringList{"do0"_s, "di0"_s, "ai0"_s, "ao0"_s,
                                                                "do1"_s, "di1"_s, "ai1"_s, "ao1"_s};
        QTest::newRow("a name") << "DO"_s << QStringList{"do0"_s, "do1"_s};
        QTest::newRow("a channel") << "e_st"_s << QStringList{"do1"_s};
        QTest::newRow("nothing") << "no such line"_s << QStringList{};
        QTest::newRow("no pattern") << "."_s << QStringList{};
    }

    void theFilterLooksAtNamesAndChannels()
    {
        QFETCH(QString, text);
        QFETCH(QStringList, lines);
        LinesModel model(&m_bench->board(), m_bench->tools(), m_clock.get());
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
        m_log->run(&m_bench->tool(), "getValue"_s, {{"channel"_s, "SETPOINT"_s}});
        QCOMPARE(m_log->count(), 1);
        QCOMPARE(logged(0, OrderLogModel::CommandRole), "getValue channel=SETPOINT"_s);
        QCOMPARE(logged(0, OrderLogModel::StateRole), "running"_s);
        QTRY_COMPARE(logged(0, OrderLogModel::StateRole), "done"_s);
        QCOMPARE(logged(0, OrderLogModel::DetailRole), "value=0"_s);
        QCOMPARE(m_log->running(), 0);
        const qint64 startUs = ManualScheduler::c_wallClockOffsetUs + m_bench->scheduler().now();
        QCOMPARE(logged(0, OrderLogModel::TimeRole), timeOfDay(startUs));
    }

    void anOrderThatFailsIsLoggedWithTheReason()
    {
        m_log->run(&m_bench->tool(), "noSuchCommand"_s, {});
        QCOMPARE(logged(0, OrderLogModel::StateRole), "failed"_s);
        QVERIFY(logged(0, OrderLogModel::DetailRole)
                    .startsWith(QLatin1String("unknown command \"noSuchCommand\"")));
    }

    void theKindOfAFailureIsTold()
    {
        const auto kind = [this] { return logged(0, OrderLogModel::KindRole); };
        m_log->run(&m_bench->tool(), "noSuchCommand"_s, {});
        QCOMPARE(kind(), "wrongInvocation"_s);
        m_log->run(&m_bench->tool(), "getValue"_s, {{"channel"_s, "SETPOINT"_s}});
        QCOMPARE(kind(), QString());
        m_log->stop(0);
        QCOMPARE(kind(), "stopped"_s);
        m_bench->board().setPluggedIn(false);
        m_log->run(&m_bench->tool(), "getValue"_s, {{"channel"_s, "SETPOINT"_s}});
        QTRY_COMPARE(kind(), "deviceUnreachable"_s);
    }

    void whatFailsBesideAllOrdersIsLogged()
    {
        m_log->addProblem("board"_s, "line \"do0\" blinks no more"_s);
        QCOMPARE(logged(0, OrderLogModel::CommandRole), "board"_s);
        QCOMPARE(logged(0, OrderLogModel::StateRole), "problem"_s);
        QCOMPARE(logged(0, OrderLogModel::DetailRole), "line \"do0\" blinks no more"_s);
        QCOMPARE(m_log->running(), 0);
        m_log->clear();
        QCOMPARE(m_log->count(), 0);
    }

    void aListeningOrderRunsUntilItIsStopped()
    {
        m_log->run(&m_bench->tool(), "startListening"_s, {{"channel"_s, "ALARM"_s}, {"edge"_s, "RE"_s}});
        QCOMPARE(logged(0, OrderLogModel::StateRole), "listening"_s);
        QCOMPARE(m_log->running(), 1);
        QCoreApplication::processEvents();
        for (const int level : {1, 0, 1}) {
            m_bench->scheduler().advance(1234567);
            m_bench->board().setInput(5, level);
            QCoreApplication::processEvents();
        }
        QTRY_VERIFY(at(*m_log, 0, OrderLogModel::EventsRole).toInt() >= 2);
        const QString time = timeOfDay(ManualScheduler::c_wallClockOffsetUs + 3 * 1234567);
        const QString detail = logged(0, OrderLogModel::DetailRole);
        QVERIFY2(detail.contains("the last at "_s + time), qPrintable(detail));
        m_log->run(&m_bench->tool(), "getValue"_s, {{"channel"_s, "SETPOINT"_s}});
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
        const auto read = [&] { m_log->run(&m_bench->tool(), "getValue"_s, {{"channel"_s, "SETPOINT"_s}}); };
        read();
        m_log->run(&m_bench->tool(), "listenToAll"_s, {});
        read();
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
            m_log->run(&m_bench->tool(), "no%1"_s.arg(number), {});
        }
        QCOMPARE(m_log->count(), OrderLogModel::c_mostEntries);
        QCOMPARE(logged(0, OrderLogModel::CommandRole), "no%1"_s.arg(OrderLogModel::c_mostEntries + 19));
    }

    void aLogThatGoesStopsItsOrders()
    {
        m_log->run(&m_bench->tool(), "listenToAll"_s, {});
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
        QCOMPARE(at(*m_form, 0, CommandForm::EditorRole).toString(), "channel"_s);
        QVERIFY(at(*m_form, 0, CommandForm::ChoicesRole).toStringList().contains("E_STOP"_s));
        QCOMPARE(at(*m_form, 1, CommandForm::EditorRole).toString(), "number"_s);
        QCOMPARE(at(*m_form, 1, CommandForm::DefaultTextRole).toString(), "1"_s);
        QCOMPARE(at(*m_form, 2, CommandForm::EditorRole).toString(), "text"_s);
        QCOMPARE(at(*m_form, 2, CommandForm::DescriptionRole).toString(), "ON, OFF, PULSE or BLINK"_s);
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

    void theFormRefusesWhatTheCommandWouldRefuse_data()
    {
        QTest::addColumn<QString>("parameter");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("problem");
        QTest::newRow("too big") << "value"_s
                                 << "65536"_s
                                 << "parameter \"value\" of command \"setValue\" cannot hold "
                                    "\"65536\"; expected a whole number from 0 to 65535"_s;
        QTest::newRow("no number") << "duration"_s
                                   << "long"_s
                                   << "parameter \"duration\" of command \"setValue\" cannot hold "
                                      "\"long\"; expected a whole number from -2147483648 to "
                                      "2147483647"_s;
    }

    void theFormRefusesWhatTheCommandWouldRefuse()
    {
        QFETCH(QString, parameter);
        QFETCH(QString, text);
        QFETCH(QString, problem);
        m_form->setText(rowOf(*m_form, parameter), text);
        QCOMPARE(m_form->problem(), problem);
        m_form->run();
        QCOMPARE(m_log->count(), 0);
        m_form->setText(rowOf(*m_form, parameter), QString());
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
        QTest::addColumn<QString>("sections");
        QTest::addColumn<QString>("problem");
        QTest::newRow("none") << QString() << QString();
        QTest::newRow("a list") << "{\"channels\": [1, 2]}"_s << QString();
        QTest::newRow("no object") << "[1]"_s
                                   << "Sections: expected a JSON object, {\"name\": [ \u2026 ]}"_s;
        QTest::newRow("broken") << "{\"channels\""_s
                                << "Sections: unterminated string at offset 11"_s;
        QTest::newRow("no list") << "{\"channels\": 1}"_s << QString();
    }

    void sectionsReachTheCommand()
    {
        QFETCH(QString, sections);
        QFETCH(QString, problem);
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
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<QString>("text");
        QTest::newRow("nothing") << QVariant() << "\u2013"_s;
        QTest::newRow("number") << QVariant(5) << "5"_s;
        QTest::newRow("truth") << QVariant(true) << "true"_s;
        QTest::newRow("text") << QVariant("a b"_s) << "a b"_s;
        QTest::newRow("list") << QVariant(QVariantList{1, "x"_s}) << "[1,\"x\"]"_s;
    }

    void valuesAreWrittenForPeople()
    {
        QFETCH(QVariant, value);
        QFETCH(QString, text);
        QCOMPARE(valueText(value), text);
    }

private:
    QString logged(int row, int role) const { return at(*m_log, row, role).toString(); }

    std::unique_ptr<ExampleBench> m_bench;
    std::unique_ptr<DeviceClock> m_clock;
    std::unique_ptr<OrderLogModel> m_log;
    std::unique_ptr<CommandForm> m_form;
};

QTEST_GUILESS_MAIN(ModelsTest)

#include "literals.h"
#include "test_models.moc"
