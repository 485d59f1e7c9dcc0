#include "broker_client.h"

#include <QJsonArray>
#include <QTest>

#include <csignal>

/// A bench on a broker, as others see it.
class TestServe : public QObject
{
    Q_OBJECT

    static QByteArray topic(const char* name) { return QByteArray("appvantor/1/bench-7/") + name; }

    static QString quietBoard()
    {
        return boardFile(R"("lines": [ { "name": "a" }, { "name": "b/c" } ],
                            "wires": [ { "from": "a", "to": "b/c", "delayMs": 20 } ])",
                         R"({ "id": "A", "name": "A", "visibility": "public", "value": [
                            {"id": "type", "value": "digitalInput"}, {"id": "direction", "value": "out"},
                            {"id": "link", "value": "a"} ] })");
    }

private Q_SLOTS:
    void tellsWhatItIsAndWhatChanges()
    {
        const Broker broker;
        Reader reader(broker, "appvantor/#"_s);
        ServedBench bench(broker, {"--config"_s, quietBoard()});
        const QJsonObject state = objectOf(reader.waitFor(topic("state")));
        QCOMPARE(state.value("state"_s), "online"_s);
        const QJsonValue session = state.value("session"_s);

        const QJsonObject description = objectOf(reader.waitFor(topic("description")));
        QCOMPARE(
            description.value("lines"_s).toArray().at(1).toObject(),
            QJsonObject(
                {{"index"_s, 1}, {"name"_s, "b/c"_s}, {"kind"_s, "digital"_s}, {"direction"_s, "in"_s}}));
        const QJsonObject tool = description.value("tools"_s).toArray().first().toObject();
        QCOMPARE(tool.value("plugin"_s), "p_tool_gpio"_s);
        QCOMPARE(tool.value("channels"_s).toArray().first().toObject().value("id"_s), "A"_s);
        QCOMPARE(tool.value("commands"_s).toArray().size(), 6);

        publish(broker, "appvantor/1/bench-7/order"_s,
                R"({"command":"setValue","arguments":{"channel":"A","state":"ON"}})");
        const QJsonObject level = objectOf(reader.waitFor(topic("line/b%2Fc"), "\"v\":1"));
        QCOMPARE(level.value("quality"_s), "good"_s);
        QCOMPARE(level.value("session"_s), session);
        QVERIFY(!reader.waitFor(topic("events"), ",1,1]]").isEmpty());

        quint64 next = 1;
        QVector<QJsonArray> changes;
        for (const QByteArray& message : reader.messages(topic("events"))) {
            const QJsonObject events = objectOf(message);
            QCOMPARE(events.value("session"_s), session);
            QCOMPARE(events.value("lost"_s).toInt(-1), 0);
            QCOMPARE(static_cast<quint64>(events.value("first"_s).toInt()), next);
            for (const QJsonValue& change : events.value("e"_s).toArray()) {
                changes.append(change.toArray());
                ++next;
            }
        }
        QCOMPARE(static_cast<int>(level.value("seq"_s).toInt()), static_cast<int>(next - 1));
        QCOMPARE(changes.last().at(1).toInt(), 1);
        QCOMPARE(changes.last().at(2).toInt(), 1);
        QCOMPARE(bench.leave().status, 0);
        QVERIFY(!reader.waitFor(topic("state"), "offline").isEmpty());
    }

    void aKilledRigIsLostAfterAMoment()
    {
        const Broker broker;
        Reader reader(broker, "appvantor/+/+/state"_s);
        ServedBench bench(broker);
        const QJsonValue session = objectOf(reader.waitFor(topic("state"), "online")).value("session"_s);
        bench.send(SIGKILL);
        QCOMPARE(objectOf(reader.waitFor(topic("state"), "lost")).value("session"_s), session);
    }

    void comesToABrokerThatIsNotThereYet()
    {
        Broker broker;
        broker.kill();
        BenchProcess bench({"serve"_s, "--broker"_s, broker.url(), "--json"_s});
        bench.process().setReadChannel(QProcess::StandardError);
        while (bench.process().bytesAvailable() == 0) {
            QVERIFY(bench.process().waitForReadyRead());
        }
        broker.start();
        bench.process().setReadChannel(QProcess::StandardOutput);
        QVERIFY(bench.waitForOutput(R"({"type":"serving","rig":"bench-7","broker")"));
        bench.send(SIGTERM);
        const BenchRun run = bench.end();
        QCOMPARE(run.status, 0);
        QVERIFY2(run.errors.contains("Connection refused; it is tried again"), run.errors);
    }

    void aBrokerThatIsNotFoundHoldsNothingUp()
    {
        BenchProcess bench({"serve"_s, "--broker"_s, "mqtt://no-such-host.invalid/rig"_s});
        bench.process().setReadChannel(QProcess::StandardError);
        while (bench.process().bytesAvailable() == 0) { // that it is not found
            QVERIFY(bench.process().waitForReadyRead());
        }
        bench.send(SIGTERM);
        QCOMPARE(bench.end().status, 0);
    }

    void whatHappensWhileTheBrokerIsAwayIsNotLost()
    {
        Broker broker;
        const QString board = boardFile(
            R"("lines": [ { "name": "a", "kind": "analog", "waveform": { "shape": "noise", "intervalMs": 1 } } ])",
            R"({ "id": "A", "name": "A", "visibility": "public", "value": [
               {"id": "type", "value": "analogOutput"}, {"id": "direction", "value": "in"}, {"id": "link", "value": "a"} ] })");
        ServedBench bench(broker, {"--config"_s, board});
        quint64 next = 0;
        {
            Reader reader(broker, "appvantor/1/bench-7/events"_s);
            const QJsonObject events = objectOf(reader.waitFor(topic("events")));
            next =
                static_cast<quint64>(events.value("first"_s).toInt() + events.value("e"_s).toArray().size());
        }
        broker.kill();
        QTest::qWait(1000);
        broker.start();
        Reader reader(broker, "appvantor/1/bench-7/+"_s);
        QVERIFY(!reader.waitFor(topic("state"), "online").isEmpty());
        const QByteArray session =
            objectOf(reader.waitFor(topic("state"), "online")).value("session"_s).toString().toUtf8();
        const QJsonObject history =
            objectOf(ask(broker, "appvantor/1/bench-7/history"_s,
                         "{\"session\":\"" + session + "\",\"from\":" + QByteArray::number(next) + "}"));
        QCOMPARE(static_cast<quint64>(history.value("first"_s).toInt()), next);
        QCOMPARE(history.value("lost"_s).toInt(-1), 0);
        QVERIFY(history.value("e"_s).toArray().size() > 500);
        QVERIFY(bench.leave().errors.contains("is there again"));
    }

    void anotherRigOfTheNameTakesItsPlace()
    {
        const Broker broker;
        ServedBench first(broker);
        ServedBench second(broker);
        const BenchRun run = first.end();
        QCOMPARE(run.status, 1);
        QVERIFY2(run.errors.contains("another bench serves \"bench-7\" now"), run.errors);
        QCOMPARE(second.leave().status, 0);
    }

    void aShellIsServedBesideItsLines()
    {
        const Broker broker;
        Reader reader(broker, "appvantor/#"_s);
        BenchProcess shell({"shell"_s, "--serve"_s, broker.url()});
        QVERIFY(!reader.waitFor(topic("state"), "online").isEmpty());
        shell.process().write("set START=ON\n");
        QVERIFY(shell.process().waitForBytesWritten());
        QVERIFY(!reader.waitFor(topic("line/line0"), "\"v\":1").isEmpty());
        publish(broker, "appvantor/1/bench-7/line/line1/set"_s, "1");
        QVERIFY(!reader.waitFor(topic("line/line1"), "\"v\":1").isEmpty());
        shell.process().write("get STOP\n");
        shell.process().closeWriteChannel();
        QCOMPARE(shell.end(), (BenchRun{0, "[1] setValue: doneOk=true\nSTOP=ON\n"}));
        QVERIFY(!reader.waitFor(topic("state"), "offline").isEmpty());
        QCOMPARE(runBench("shell --serve mqtt:/x"_words).status, 2);
    }

    void refusesWhatIsNoBroker_data()
    {
        QTest::addColumn<QString>("url");
        QTest::addColumn<QByteArray>("problem");
        QTest::newRow("another protocol") << "http://x/"_s << QByteArray("expected mqtt://HOST");
        QTest::newRow("no host") << "mqtt:///rig"_s << QByteArray("expected mqtt://HOST");
        QTest::newRow("no port") << "mqtt://x:0/rig"_s << QByteArray("expected mqtt://HOST");
        QTest::newRow("a password") << "mqtt://me:secret@x/rig"_s << QByteArray("expected no user");
        QTest::newRow("two names") << "mqtt://x/a/b"_s << QByteArray("expected one name of a rig");
    }
    void refusesWhatIsNoBroker()
    {
        QFETCH(QString, url);
        QFETCH(QByteArray, problem);
        const BenchRun run = runBench({"serve"_s, "--broker"_s, url});
        QCOMPARE(run.status, 2);
        QVERIFY2(run.errors.contains(problem), run.errors);
        QVERIFY(!run.errors.contains("secret"));
    }

    void needsABroker() { QCOMPARE(runBench({"serve"_s}).status, 2); }
};

QTEST_GUILESS_MAIN(TestServe)
#include "test_serve.moc"
