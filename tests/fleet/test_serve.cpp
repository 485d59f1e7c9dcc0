#include "broker_client.h"
#include "rows.h"

#include <QElapsedTimer>
#include <QJsonArray>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>

#include <csignal>
#include <memory>

/// A bench on a broker, as others see it.
class TestServe : public QObject
{
    Q_OBJECT

    static constexpr int c_patienceMs = 20000;

    static QByteArray topic(const char* name) { return QByteArray("appvantor/1/bench-7/") + name; }

    static QString quietBoard()
    {
        return boardFile(R"("lines": [ { "name": "a" }, { "name": "b/c" } ],
                            "wires": [ { "from": "a", "to": "b/c", "delayMs": 20 } ])",
                         R"({ "id": "A", "name": "A", "visibility": "public", "value": [
                            {"id": "type", "value": "digitalInput"}, {"id": "direction", "value": "out"},
                            {"id": "link", "value": "a"} ] })");
    }

    /// Begins a bench that is to be served on broker, which the test plays.
    static std::unique_ptr<BenchProcess> reachingFor(QTcpServer* broker)
    {
        broker->listen(QHostAddress::LocalHost);
        return std::make_unique<BenchProcess>(
            QStringList{"serve"_s, "--broker"_s, "mqtt://127.0.0.1:%1/bench-7"_s.arg(broker->serverPort())});
    }

    /// What bench says to a broker that the test plays, until text is among it.
    static QByteArray heardOf(QTcpSocket* bench, const QByteArray& text)
    {
        QByteArray heard;
        while (!heard.contains(text) &&
               (bench->bytesAvailable() > 0 || bench->waitForReadyRead(c_patienceMs))) {
            heard += bench->readAll();
        }
        return heard;
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
        QElapsedTimer clock;
        clock.start();
        bench.send(SIGKILL);
        QCOMPARE(objectOf(reader.waitFor(topic("state"), "lost")).value("session"_s), session);
        QVERIFY2(clock.elapsed() >= 4000, "it may come back within 5 s");
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

    void aBrokerIsFoundByItsName()
    {
        const Broker broker;
        BenchProcess bench({"serve"_s, "--broker"_s, "mqtt://localhost:%1/rig"_s.arg(broker.port())});
        QVERIFY(bench.waitForOutput("serving rig"));
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

    void linesOfAnEarlierRunAreGone()
    {
        const Broker broker;
        ServedBench(broker).leave();
        Reader reader(broker, "appvantor/#"_s);
        QVERIFY(!reader.waitFor(topic("line/line3"), "\"v\":").isEmpty());
        const ServedBench bench(broker, {"--config"_s, boardFile(R"("lines": [ { "name": "line0" } ])")});
        QVERIFY(!reader.waitFor(topic("line/line3"), "(null)").isEmpty());
        Reader later(broker, "appvantor/#"_s);
        QVERIFY(!later.waitFor(topic("line/line0"), "\"v\":").isEmpty());
        QCOMPARE(later.messages(topic("line/line3")).size(), 0);
    }

    void linesOfALongDescriptionAreGoneToo()
    {
        constexpr int count = 400;
        const auto name = [](int line) { return QByteArray::number(line) + QByteArray(200, 'x'); };
        QByteArray lines;
        for (int line = 0; line < count; ++line) {
            lines += QByteArray(R"({ "name": "NAME" },)").replace("NAME", name(line));
        }
        lines.chop(1);
        const QByteArray last = topic("line/" + name(count - 1));
        const Broker broker;
        Reader reader(broker, QString::fromLatin1(last));
        {
            ServedBench bench(broker, {"--config"_s, boardFile("\"lines\": [" + lines + "]")});
            QVERIFY(!reader.waitFor(last, "\"v\":").isEmpty());
            bench.leave();
        }
        const ServedBench bench(broker, {"--config"_s, boardFile(R"("lines": [ { "name": "line0" } ])")});
        QVERIFY(!reader.waitFor(last, "(null)").isEmpty());
    }

    void whatIsSwitchedOffAtTheEndIsTold()
    {
        const Broker broker;
        Reader reader(broker, "appvantor/#"_s);
        ServedBench bench(broker, {"--off-at-end"_s});
        publish(broker, "appvantor/1/bench-7/line/line0/set"_s, "1");
        QVERIFY(!reader.waitFor(topic("line/line0"), "\"v\":1").isEmpty());
        bench.leave();
        QVERIFY(!reader.waitFor(topic("state"), "offline").isEmpty());
        QVERIFY(reader.messages(topic("line/line0")).last().contains("\"v\":0"));
    }

    void whatOthersSayOfItDoesNotStand_data()
    {
        const Rows<QByteArray> row("lie");
        row("that it is lost", R"({"state":"lost","session":"s","since":1})");
        row("that it has ended", R"({"state":"offline","session":"s","since":9999999999999999})");
        row("no JSON", "{");
    }
    void whatOthersSayOfItDoesNotStand()
    {
        QFETCH(QByteArray, lie);
        const Broker broker;
        const ServedBench bench(broker);
        Reader reader(broker, "appvantor/1/bench-7/state"_s);
        QVERIFY(!reader.waitFor(topic("state"), "online").isEmpty());
        publish(broker, QString::fromLatin1(topic("state")), lie, {"-r"_s});
        QTRY_COMPARE(reader.messages(topic("state")).size(), 3);
        QVERIFY(reader.messages(topic("state")).last().contains("online"));
    }

    void aBrokerThatIsSlowIsWaitedFor()
    {
        Broker broker;
        Reader reader(broker, "appvantor/1/bench-7/+"_s);
        BenchProcess shell({"shell"_s, "--serve"_s, broker.url()});
        QVERIFY(!reader.waitFor(topic("events"), ",0,0]").isEmpty());
        broker.send(SIGSTOP);
        shell.process().write("set START=ON\nget START\n");
        QVERIFY(shell.waitForOutput("START=ON")); // nothing waits for the broker
        broker.send(SIGCONT);
        QVERIFY(!reader.waitFor(topic("events"), ",0,1]").isEmpty());
        shell.process().closeWriteChannel();
        const BenchRun run = shell.end();
        QCOMPARE(run.status, 0);
        QCOMPARE(run.errors, QByteArray());
    }

    void anotherRigOfTheNameTakesItsPlace()
    {
        const Broker broker;
        ServedBench first(broker);
        ServedBench second(broker);
        const BenchRun run = first.end();
        QCOMPARE(run.status, 4);
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

    void theLastChangeIsToldBeforeTheFarewell()
    {
        const Broker broker;
        Reader reader(broker, "appvantor/#"_s);
        BenchProcess shell({"shell"_s, "--serve"_s, broker.url()});
        QVERIFY(!reader.waitFor(topic("state"), "online").isEmpty());
        shell.process().write("set START=ON\n");
        shell.process().closeWriteChannel();
        QCOMPARE(shell.end().status, 0);
        QVERIFY(!reader.waitFor(topic("state"), "offline").isEmpty());
        QVERIFY(!reader.waitFor(topic("events"), ",0,1]").isEmpty());
        QVERIFY(!reader.waitFor(topic("line/line0"), "\"v\":1").isEmpty());
    }

    void aWindowIsServedBesideWhatItShows()
    {
        const Broker broker;
        Reader reader(broker, "appvantor/#"_s);
        BenchProcess window({"window"_s, "--serve"_s, broker.url()});
        QVERIFY(!reader.waitFor(topic("state"), "online").isEmpty());
        publish(broker, "appvantor/1/bench-7/line/line1/set"_s, "1");
        QVERIFY(!reader.waitFor(topic("line/line1"), "\"v\":1").isEmpty());
        window.send(SIGTERM);
        QCOMPARE(window.end().status, 0);
        QVERIFY(!reader.waitFor(topic("state"), "offline").isEmpty());
    }

    /// The library takes what a connection asks for by a way of its own.
    void saysHowLongItMayBeAwayAndHowMuchItTakes()
    {
        QTcpServer broker;
        const auto bench = reachingFor(&broker);
        QVERIFY(broker.waitForNewConnection(c_patienceMs));
        QTcpSocket* socket = broker.nextPendingConnection();
        const QByteArray greeting = heardOf(socket, "bench-7/state");
        QVERIFY(greeting.contains(QByteArray::fromHex("110000003c"))); // the session: 60 s
        QVERIFY(greeting.contains(QByteArray::fromHex("1800000005"))); // the will: 5 s
        QVERIFY(greeting.contains(QByteArray::fromHex("2700840000"))); // a message: a description of 8 MiB
    }

    void leavesNoSessionBehind()
    {
        QTcpServer broker;
        const auto bench = reachingFor(&broker);
        QVERIFY(broker.waitForNewConnection(c_patienceMs));
        QTcpSocket* socket = broker.nextPendingConnection();
        heardOf(socket, "bench-7/state");
        socket->write(QByteArray::fromHex("2003000000"));
        QVERIFY(heardOf(socket, "listenToAll").contains("listenToAll")); // what it is
        bench->send(SIGTERM);
        const QByteArray farewell = QByteArray::fromHex("e00700051100000000");
        QVERIFY(heardOf(socket, farewell).contains(farewell));

        BenchProcess list({"rigs"_s, "--broker"_s, "mqtt://127.0.0.1:%1"_s.arg(broker.serverPort())});
        QVERIFY(broker.waitForNewConnection(c_patienceMs));
        const QByteArray greeting = heardOf(broker.nextPendingConnection(), "appvantor-");
        QVERIFY(greeting.contains(QByteArray::fromHex("1100000000")));
    }

    void tellsWhatIsWrongWithABroker_data()
    {
        const Rows<QByteArray, QByteArray> row("answer", "problem");
        row("it is none", QByteArray("HTTP/1.1 400 Bad Request\r\n").leftJustified(200, ' '), "protocol");
        row("it closes", "", "connection was lost");
        row("it is full", QByteArray::fromHex("2003009700"), "it refuses: Quota exceeded");
        row("it falls silent", QByteArray::fromHex("2006000003130001"), // it wants to hear once a second
            "it does not answer; it is tried again");
        row("it goes", QByteArray::fromHex("2003000000e0028b00"),
            "it ended the connection: Server shutting down");
    }
    void tellsWhatIsWrongWithABroker()
    {
        QFETCH(QByteArray, answer);
        QFETCH(QByteArray, problem);
        QTcpServer broker;
        const auto bench = reachingFor(&broker);
        QVERIFY(broker.waitForNewConnection(c_patienceMs));
        QTcpSocket* socket = broker.nextPendingConnection();
        QVERIFY(socket->waitForReadyRead(c_patienceMs));
        socket->write(answer);
        if (answer.isEmpty()) {
            socket->close();
        } else {
            QVERIFY(socket->waitForBytesWritten(c_patienceMs));
        }
        bench->process().setReadChannel(QProcess::StandardError);
        QVERIFY(bench->process().canReadLine() || bench->process().waitForReadyRead(c_patienceMs));
        bench->send(SIGTERM);
        const BenchRun run = bench->end();
        QCOMPARE(run.status, 0);
        QVERIFY2(run.errors.contains(problem), run.errors);
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
