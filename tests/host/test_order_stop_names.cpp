#include "common_scripts.h"
#include "rows.h"
#include "workbench.h"

#include <array>

class TestOrderStopNames : public QObject
{
    Q_OBJECT

    /// A command that is stopped as "rest" and listens on a channel at a level.
    static std::shared_ptr<CommandScript> listenerNamed(const QString& name)
    {
        auto script = std::make_shared<CommandScript>();
        fillListener(*script);
        script->name = name;
        script->parameters = {{"channel"_s, "strg"_s, "Channel"_s, QVariant()},
                              {"level"_s, "ui16"_s, "Level"_s, 1}};
        return script;
    }

private Q_SLOTS:
    void initTestCase() { m_device.open(); }

    void init()
    {
        m_watch = listenerNamed("watch"_s);
        m_scan = listenerNamed("scan"_s);
        m_scan->parameters = {{"level"_s, "ui16"_s, "Level of all"_s, 2}, {"rate"_s, "int"_s, "Rate"_s, 5}};
        makeTool({m_watch, m_scan});
    }

    void cleanup() { m_tool.reset(); }

    void theStopNameEndsTheListeningOrder()
    {
        const auto listening = start("watch"_s);
        const auto stop = start("rest"_s);
        QCOMPARE(listening->state(), DOrder::State::Finished);
        QVERIFY(listening->isSuccessful());
        QCOMPARE(m_watch->outcomes, QVector<bool>{true});
        QCOMPARE(m_device.cancelled, QVector<quint64>{m_device.lastId()});
        QCOMPARE(stop->state(), DOrder::State::Finished);
        QVERIFY(stop->isSuccessful());
        QVERIFY(stop->results().isEmpty());
    }

    void anOrderThatDoesNotListenFailsAsStopped()
    {
        const auto reader = std::make_shared<CommandScript>();
        fillReader(*reader);
        reader->stopName = "halt"_s;
        makeTool({reader});
        const auto reading = start("work"_s);
        QVERIFY(start("halt"_s)->isSuccessful());
        QCOMPARE(reading->failure().text.english(), "stopped before it was complete"_s);
        QCOMPARE(reader->outcomes, QVector<bool>{false});
    }

    void theStopNameFailsWhereNothingRuns()
    {
        const auto stop = start("rest"_s);
        QCOMPARE(stop->failure().text.english(), "no running order to stop"_s);
        QCOMPARE(stop->failure().kind, DFailure::Kind::RefusedByCommand);
        const auto ended = start("watch"_s);
        ended->stop();
        const DOrder waiting(m_tool.get(), "watch"_s, {});
        QCOMPARE(start("rest"_s)->failure().text.english(), "no running order to stop"_s);
        QCOMPARE(m_watch->finishes, 1);
    }

    void theLatestOrderOfEitherCommandIsStoppedFirst()
    {
        const auto first = start("watch"_s);
        const auto second = start("scan"_s);
        const auto third = start("watch"_s);
        const std::array<const DOrder*, 3> latestFirst = {third.get(), second.get(), first.get()};
        for (const DOrder* next : latestFirst) {
            QCOMPARE(next->state(), DOrder::State::Running);
            QVERIFY(start("rest"_s)->isSuccessful());
            QCOMPARE(next->state(), DOrder::State::Finished);
        }
        QVERIFY(!start("rest"_s)->isSuccessful());
    }

    void itsArgumentsChooseTheOrder_data()
    {
        const Rows<QVariantMap, int> row("arguments", "stopped");
        row("a channel", {{"channel"_s, "A"_s}}, 1);
        row("another channel", {{"channel"_s, "B"_s}}, 2);
        row("two arguments", {{"channel"_s, "A"_s}, {"level"_s, 3}}, 0);
        row("as a text", {{"level"_s, "3"_s}}, 0);
        row("of the other command", {{"rate"_s, 7}}, 3);
        row("a section", {{"zones"_s, QVariantList{1, 2}}}, 2);
        row("no such channel", {{"channel"_s, "C"_s}}, -1);
        row("one of two differs", {{"channel"_s, "B"_s}, {"level"_s, 3}}, -1);
        row("an empty text is one", {{"channel"_s, QString()}}, -1);
        row("another section", {{"zones"_s, QVariantList{2, 1}}}, -1);
    }
    void itsArgumentsChooseTheOrder()
    {
        const auto [arguments, stopped] = Rows<QVariantMap, int>::values();
        std::vector<std::unique_ptr<DOrder>> running;
        running.push_back(start("watch"_s, {{"channel"_s, "A"_s}, {"level"_s, 3}}));
        running.push_back(start("watch"_s, {{"channel"_s, "A"_s}}));
        running.push_back(start("watch"_s, {{"channel"_s, "B"_s}, {"zones"_s, QVariantList{1, 2}}}));
        running.push_back(start("scan"_s, {{"rate"_s, 7}}));
        const auto stop = start("rest"_s, arguments);
        QCOMPARE(stop->isSuccessful(), stopped >= 0);
        QCOMPARE(stop->failure().text.english(),
                 stopped >= 0 ? QString() : "no running order with these arguments to stop"_s);
        for (int i = 0; i < static_cast<int>(running.size()); ++i) {
            QCOMPARE(running.at(static_cast<std::size_t>(i))->state() == DOrder::State::Finished,
                     i == stopped);
        }
    }

    void anArgumentThatNoStoppedCommandTakesIsRefused_data()
    {
        const Rows<QVariantMap, QString> row("arguments", "reason");
        row("unknown", {{"zone"_s, 1}},
            "unknown parameter \"zone\" of command \"rest\"; it takes: \"channel\", "
            "\"level\", \"rate\""_s);
        row("of the wrong type", {{"rate"_s, "fast"_s}},
            "parameter \"rate\" of command \"rest\" cannot hold \"fast\"; "
            "expected a whole number from -2147483648 to 2147483647"_s);
    }
    void anArgumentThatNoStoppedCommandTakesIsRefused()
    {
        const auto [arguments, reason] = Rows<QVariantMap, QString>::values();
        const auto listening = start("watch"_s);
        QCOMPARE(start("rest"_s, arguments)->failure().text.english(), reason);
        QCOMPARE(listening->state(), DOrder::State::Running);
    }

    void anotherToolsOrderGoesOn()
    {
        const auto listening = start("watch"_s);
        DTool neighbour({{"name"_s, "Neighbour"_s}}, ScriptedPlugin({m_watch}), &m_device);
        DOrder stop(&neighbour, "rest"_s, {});
        stop.start();
        QVERIFY(!stop.isSuccessful());
        QCOMPARE(listening->state(), DOrder::State::Running);
    }

    void anOrderThatIsEndingIsNotStoppedAgain()
    {
        QString reason;
        m_watch->onFinish = [&](ScriptedCommand&) { reason = start("rest"_s)->failure().text.english(); };
        const auto listening = start("watch"_s);
        listening->stop();
        QCOMPARE(reason, "no running order to stop"_s);
        QCOMPARE(m_watch->finishes, 1);
    }

    void theEndOfTheStoppedOrderMayDestroyTheOtherAndTheTool()
    {
        const auto listening = start("watch"_s);
        auto stop = std::make_unique<DOrder>(m_tool.get(), "rest"_s, QVariantMap());
        connect(listening.get(), &DOrder::finished, this, [&] {
            stop.reset();
            m_tool.reset();
        });
        stop->start();
        QVERIFY(stop == nullptr);
        QVERIFY(listening->isSuccessful());
    }

    void theStopNamesAreListedWithWhatTheyTake()
    {
        const auto pace = listenerNamed("pace"_s);
        pace->stopName = "halt"_s;
        makeTool({m_watch, m_scan, pace});
        const QVector<DCommandDescription> stops = m_tool->stops();
        QCOMPARE(stops.size(), 2);
        QCOMPARE(stops.at(1).name, "halt"_s);
        QCOMPARE(stops.at(1).description, "Stops the latest running pace"_s);
        const DCommandDescription& stop = stops.constFirst();
        QCOMPARE(stop.name, "rest"_s);
        QCOMPARE(stop.stopName, QString());
        QCOMPARE(stop.description, "Stops the latest running watch or scan"_s);
        QStringList parameters;
        for (const DDeclaration& parameter : stop.parameters) {
            parameters.append("%1 %2 %3"_s.arg(parameter.name, parameter.typeTag, parameter.description));
            QVERIFY(!parameter.defaultValue.isValid()); // what is left out chooses nothing
        }
        QCOMPARE(parameters,
                 QStringList({"channel strg Channel"_s, "level ui16 Level"_s, "rate int Rate"_s}));
        QVERIFY(stop.results.empty());
    }

    void theStopNamesAreAmongWhatAToolHas()
    {
        QCOMPARE(start("play"_s)->failure().text.english(),
                 "unknown command \"play\"; the tool has: watch, scan, rest"_s);
    }

    void aCommandOfThatNameGoesFirst()
    {
        m_watch->stopName = "scan"_s;
        makeTool({m_watch, m_scan});
        const auto watching = start("watch"_s);
        const auto scanning = start("scan"_s);
        QVERIFY(scanning->isListening());
        QVERIFY(watching->isListening());
        QCOMPARE(m_tool->stops().size(), 1);
        QCOMPARE(m_tool->stops().constFirst().name, "rest"_s);
    }

private:
    void makeTool(const ScriptedPlugin::Scripts& scripts)
    {
        m_tool = std::make_unique<DTool>(Workbench::configuration(), ScriptedPlugin(scripts), &m_device);
    }

    std::unique_ptr<DOrder> start(const QString& name, const QVariantMap& arguments = {})
    {
        auto order = std::make_unique<DOrder>(m_tool.get(), name, arguments);
        order->start();
        return order;
    }

    std::shared_ptr<CommandScript> m_watch;
    std::shared_ptr<CommandScript> m_scan;
    ManualScheduler m_scheduler;
    RecordingDevice m_device{&m_scheduler};
    std::unique_ptr<DTool> m_tool;
};

QTEST_GUILESS_MAIN(TestOrderStopNames)
#include "test_order_stop_names.moc"
