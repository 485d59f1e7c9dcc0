#include "broker_client.h"
#include "rows.h"

#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTest>

#include <csignal>
#include <memory>

/// Benches that work on another one by way of a broker.
class TestRigs : public QObject
{
    Q_OBJECT

    /// Runs the bench on the rig "bench-7" of broker.
    static BenchRun onRig(const Broker& broker, const QStringList& arguments, const QByteArray& input = {})
    {
        return runBench(arguments + QStringList{"--broker"_s, broker.url(), "--rig"_s, "bench-7"_s}, input);
    }

    static void sayWho(const char* name) { qputenv("USER", name); }

private Q_SLOTS:
    void init() { sayWho("ada"); }

    void areListed()
    {
        const Broker broker;
        ServedBench bench(broker);
        const QStringList rigs = {"rigs"_s, "--broker"_s, broker.url()};
        QVERIFY(runBench(rigs).output.contains("bench-7          online   "));
        const QJsonObject online = runBench(rigs + QStringList{"--json"_s}).json().value(0);
        QCOMPARE(online.value("lines"_s).toInt(), 10);
        QVERIFY(online.value("holder"_s).isNull());
        BenchProcess watching(rigs + QStringList{"--watch"_s});
        QVERIFY(watching.waitForOutput("bench-7          online"));
        bench.leave();
        QVERIFY(watching.waitForOutput("bench-7 offline"));
        watching.send(SIGINT);
        QCOMPARE(watching.end().status, 0);
    }

    void areWatchedFromTheirFirstWordAndOverARestartOfTheBroker()
    {
        const auto comes = [](const Broker& broker, const QString& rig) {
            publish(broker, "appvantor/1/%1/state"_s.arg(rig),
                    R"({"state":"online","session":"s","since":1})", {"-r"_s});
        };
        Broker broker;
        BenchProcess watching({"--json"_s, "rigs"_s, "--watch"_s, "--broker"_s, broker.url()});
        comes(broker, "first"_s);
        QVERIFY(watching.waitForOutput("first"));
        ServedBench bench(broker);
        QVERIFY(watching.waitForOutput("bench-7"));
        broker.kill();
        broker.start();
        comes(broker, "second"_s);
        QVERIFY(watching.waitForOutput("second"));
        Reader reader(broker, "appvantor/1/bench-7/state"_s);
        QVERIFY(!reader.waitFor("appvantor/1/bench-7/state", "online").isEmpty());
        bench.leave();
        QVERIFY(watching.waitForOutput("offline"));
        watching.send(SIGINT);
        const BenchRun run = watching.end();
        QCOMPARE(run.output.count("bench-7"), 2);     // that it is there, and that it went
        QCOMPARE(run.output.count("\"lines\":0"), 2); // of the others
    }

    void areNamedInOneLine()
    {
        const Broker broker;
        BenchProcess watching({"rigs"_s, "--watch"_s, "--broker"_s, broker.url()});
        QVERIFY(watching.waitForOutput("RIG"));
        publish(broker, "appvantor/1/b%0Aad/state"_s,
                "{\"state\":\"on\\u001b[2Jline\",\"session\":\"s\",\"since\":1}");
        QVERIFY(watching.waitForOutput("b\\u000aad on\\u001b[2Jline"));
    }

    void areListedWhileTheirStateGoesOnChanging()
    {
        const Broker broker;
        BenchProcess list({"rigs"_s, "--broker"_s, broker.url()});
        QTRY_VERIFY_WITH_TIMEOUT(
            [&] { // before it has been quiet for long
                publish(broker, "appvantor/1/bench-7/state"_s,
                        R"({"state":"online","session":"s","since":1})");
                return list.process().state() == QProcess::NotRunning || list.process().waitForFinished(1);
            }(),
            20000);
        QCOMPARE(list.end().status, 0);
    }

    void workFromTheirDescription()
    {
        const Broker broker;
        const ServedBench bench(broker);
        QCOMPARE(onRig(broker, "run setValue channel=START state=ON"_words),
                 (BenchRun{0, "[1] setValue: doneOk=true\n"}));
        QCOMPARE(onRig(broker, "get START ALARM"_words), (BenchRun{0, "START=ON\nALARM=ON\n"}));
        QCOMPARE(
            onRig(broker, {"shell"_s}, "set START=OFF\nexpect RUNNING=OFF within 2000\nget START\n").status,
            0);
        QCOMPARE(onRig(broker, "run getValue channel=NONE"_words).status, 1);
    }

    void areThoseThatTheBrokersAddressNames()
    {
        const Broker broker;
        const ServedBench bench(broker);
        QCOMPARE(runBench({"set"_s, "START=ON"_s, "--broker"_s, broker.url()}).status, 0);
        QCOMPARE(onRig(broker, "get START"_words), (BenchRun{0, "START=ON\n"}));
        qputenv("APPVANTOR_BROKER", broker.url().toUtf8());
        const BenchRun usual = runBench("get START"_words);
        const BenchRun here = runBench({"--config"_s, example("simulated_board.json"_s), "get"_s, "START"_s});
        qputenv("APPVANTOR_BROKER", "mqtt:/typed/wrong");
        const BenchRun wrong = runBench("get START"_words);
        qunsetenv("APPVANTOR_BROKER");
        QCOMPARE(usual, (BenchRun{0, "START=ON\n"}));
        QCOMPARE(here, (BenchRun{0, "START=OFF\n"}));
        QCOMPARE(wrong.status, 2);
    }

    void areNamedByABrokerInThePlaceOfAConfiguration_data()
    {
        const Rows<QStringList, QByteArray> row("arguments", "problem");
        row("a broker alone", {"--broker"_s, "mqtt://127.0.0.1"_s}, "expected the name of a rig: --rig NAME");
        row("a configuration beside", {"--broker"_s, "mqtt://127.0.0.1/x"_s, "--config"_s, "bench.json"_s},
            "--config: expected none beside a rig on a broker");
    }
    void areNamedByABrokerInThePlaceOfAConfiguration()
    {
        const auto [arguments, problem] = Rows<QStringList, QByteArray>::values();
        const BenchRun run = runBench(arguments + QStringList{"get"_s, "START"_s});
        QCOMPARE(run.status, 2);
        QVERIFY2(run.errors.contains(problem), run.errors);
    }

    void tellChangesWithTheTimesOfTheirRig()
    {
        const Broker broker;
        const ServedBench bench(broker);
        Reader reader(broker, "appvantor/1/bench-7/events"_s);
        BenchProcess watching("watch START --count 1 --json --broker"_words +
                              QStringList{broker.url(), "--rig"_s, "bench-7"_s});
        QVERIFY(watching.waitUntilCaught(SIGINT));
        QTRY_VERIFY_WITH_TIMEOUT(
            [&] {
                onRig(broker, "run switchValue channel=START"_words);
                return watching.process().state() == QProcess::NotRunning ||
                       watching.process().waitForFinished(200);
            }(),
            20000);
        const QJsonObject event = watching.end().json().value(0);
        QCOMPARE(event.value("type"_s), "event"_s);
        const QString time = event.value("time"_s).toString(); // to the microsecond
        const qint64 seenUs =
            QDateTime::fromString(time.left(19) + time.mid(26), Qt::ISODate).toSecsSinceEpoch() * 1000000 +
            time.mid(20, 6).toLongLong();
        bool isTold = false;
        for (const QByteArray& message : reader.messages("appvantor/1/bench-7/events")) {
            const QJsonObject events = objectOf(message);
            for (const QJsonValue& change : events.value("e"_s).toArray()) {
                const double timeUs = events.value("t0"_s).toDouble() + change.toArray().at(0).toDouble();
                isTold =
                    isTold || (change.toArray().at(1).toInt() == 0 && static_cast<qint64>(timeUs) == seenUs);
            }
        }
        QVERIFY(isTold);
    }

    void whatChangesWhileTheBrokerIsAwayIsSeenAfterwards()
    {
        Broker broker;
        const QString board = boardFile(
            R"("lines": [ { "name": "a", "kind": "analog", "waveform": { "shape": "ramp", "periodMs": 60000, "intervalMs": 10 } } ])",
            R"({ "id": "A", "name": "A", "visibility": "public", "value": [ {"id": "type", "value": "analogOutput"}, {"id": "direction", "value": "in"}, {"id": "link", "value": "a"} ] })");
        const ServedBench bench(broker, {"--config"_s, board});
        BenchProcess watching("watch A --count 150 --json --broker"_words +
                              QStringList{broker.url(), "--rig"_s, "bench-7"_s});
        QVERIFY(watching.waitForOutput("event"));
        broker.kill();
        QTest::qWait(500); // what changes meanwhile is what this is about
        broker.start();
        QVector<int> seen;
        const BenchRun run = watching.end();
        QCOMPARE(run.status, 0);
        for (const QJsonObject& event : run.json()) {
            if (event.value("type"_s) == "event"_s) {
                seen.append(event.value("results"_s).toObject().value("lastValue"_s).toInt());
            }
        }
        QCOMPARE(seen.size(), 150);

        const QString session = objectOf(ask(broker, "appvantor/1/bench-7/history"_s, R"({"from":0})"))
                                    .value("session"_s)
                                    .toString();
        const QJsonObject question = {{"session"_s, session}, {"from"_s, 1}};
        const QJsonObject history = objectOf(ask(broker, "appvantor/1/bench-7/history"_s,
                                                 QJsonDocument(question).toJson(QJsonDocument::Compact)));
        QVector<int> told;
        for (const QJsonValue& change : history.value("e"_s).toArray()) {
            told.append(change.toArray().at(2).toInt());
        }
        QCOMPARE(told.mid(told.indexOf(seen.first()), seen.size()), seen);
    }

    void areNotReached()
    {
        Broker broker;
        QCOMPARE(runBench({"get"_s, "START"_s, "--rig"_s, "nobody"_s, "--broker"_s, broker.url()}),
                 (BenchRun{3, "",
                           "appvantor: there is no rig \"nobody\" on " +
                               broker.url(QString()).chopped(1).toUtf8() + "\n"}));
        broker.kill();
        const BenchRun run = onRig(broker, "get START"_words);
        QCOMPARE(run.status, 3);
        QVERIFY2(run.errors.contains("Connection refused"), run.errors);
        QCOMPARE(runBench("get START --rig x"_words).status, 2);
    }

    void areKeptForOneOperator()
    {
        const Broker broker;
        const ServedBench bench(broker);
        const QStringList at = {"--broker"_s, broker.url()};
        {
            BenchProcess lease("lease bench-7 --for 5"_words + at);
            QVERIFY(lease.waitForOutput("ada@"));
            QVERIFY(runBench(QStringList{"rigs"_s} + at).output.contains("ada@"));
            QCOMPARE(onRig(broker, "set START=ON"_words).status, 0);
            sayWho("bob");
            const BenchRun refused = onRig(broker, "set START=OFF"_words);
            QCOMPARE(refused.status, 1);
            QVERIFY2(refused.errors.contains("ada@") && refused.errors.contains(" holds the rig until "),
                     refused.errors);
            QCOMPARE(runBench("lease bench-7"_words + at).status, 1);
            QCOMPARE(runBench("release bench-7"_words + at).status, 1);
            QCOMPARE(onRig(broker, "get START"_words), (BenchRun{0, "START=ON\n"}));
        }
        // The holder was killed.
        QTRY_COMPARE_WITH_TIMEOUT(onRig(broker, "set START=OFF"_words).status, 0, 15000);
        sayWho("ada");
        BenchProcess lease("lease bench-7"_words + at);
        QVERIFY(lease.waitForOutput("ada@"));
        QCOMPARE(runBench("release bench-7"_words + at).status, 0);
        QCOMPARE(lease.end().status, 0);
    }

    void areKeptOverARestartOfTheBrokerAndOfTheirOwn()
    {
        Broker broker;
        auto bench = std::make_unique<ServedBench>(broker);
        const QByteArray topic = "appvantor/1/bench-7/lease";
        BenchProcess lease({"lease"_s, "bench-7"_s, "--broker"_s, broker.url()});
        QVERIFY(lease.waitForOutput("ada@"));
        broker.kill();
        broker.start();
        lease.process().setReadChannel(QProcess::StandardError);
        while (!lease.process().readAll().contains("is there again")) {
            QVERIFY(lease.process().waitForReadyRead());
        }
        Reader reader(broker, QString::fromLatin1(topic));
        QVERIFY(!reader.waitFor(topic, "ada@").isEmpty());
        bench->leave();
        bench = std::make_unique<ServedBench>(broker);
        QVERIFY(!reader.waitFor(topic, "null").isEmpty());
        QTRY_VERIFY(reader.messages(topic).last().contains("ada@"));
        // Its release is known to the broker that was restarted.
        lease.send(SIGKILL);
        QTRY_VERIFY(reader.messages(topic).last().contains("null"));
    }

    void areNotKeptForAReasonOfItsOwn()
    {
        const Broker broker;
        const ServedBench bench(broker, {"--read-only"_s});
        const auto lease = [&broker](const QStringList& words) {
            return runBench(QStringList{"--json"_s, "lease"_s} + words +
                            QStringList{"--broker"_s, broker.url()});
        };
        const BenchRun readOnly = lease({"bench-7"_s});
        QCOMPARE(readOnly.status, 1);
        QCOMPARE(readOnly.json().value(0).value("kind"_s), "readOnly"_s);
        const BenchRun unknown = lease({"nobody"_s});
        QCOMPARE(unknown.status, 3);
        QCOMPARE(unknown.json().value(0).value("kind"_s), "deviceUnreachable"_s);
        const BenchRun tooLong = lease({"bench-7"_s, "--for"_s, "10081"_s});
        QCOMPARE(tooLong.status, 2);
        QCOMPARE(tooLong.json().value(0).value("kind"_s), "usage"_s);
    }

    void areDevicesOfAnotherBench()
    {
        Broker broker;
        auto bench = std::make_unique<ServedBench>(broker);
        const QByteArray configuration =
            R"({ "device": { "type": "rig", "broker": "URL", "lines": [ { "name": "lamp", "line": "line0" }, { "name": "none" } ] },
                 "tools": [ { "name": "T", "id": "{4b7a1c6e-0d52-4f3b-9a51-6f0c2f9d7a10}", "plugin": "p_tool_gpio", "channels": [
                 { "id": "LAMP", "value": [ {"id": "type", "value": "digitalInput"}, {"id": "direction", "value": "out"}, {"id": "link", "value": "lamp"} ] },
                 { "id": "NONE", "value": [ {"id": "type", "value": "digitalInput"}, {"id": "direction", "value": "out"}, {"id": "link", "value": "none"} ] } ] } ] })";
        const QString device = temporaryFile(QByteArray(configuration).replace("URL", broker.url().toUtf8()));
        BenchProcess shell({"--config"_s, device, "shell"_s, "--keep-going"_s});
        const auto say = [&shell](const QByteArray& line) { shell.process().write(line + '\n'); };
        say("set LAMP=ON");
        say("get LAMP");
        QVERIFY(shell.waitForOutput("LAMP=ON"));
        // Where changes were lost, the levels are asked for.
        Reader reader(broker, "appvantor/1/bench-7/+"_s);
        const QJsonObject state = objectOf(reader.waitFor("appvantor/1/bench-7/state"));
        publish(broker, "appvantor/1/bench-7/events"_s,
                QByteArray(R"({"session":"S","first":99,"t0":0,"lost":98,"e":[]})")
                    .replace("S", state.value("session"_s).toString().toUtf8()));
        QVERIFY(!reader.waitFor("appvantor/1/bench-7/history", R"("from":0)").isEmpty());
        bench->send(SIGKILL);
        bench->end();
        // Until the broker tells that the rig is lost, it does not answer.
        bench = std::make_unique<ServedBench>(broker);
        say("expect LAMP=OFF within 15000");
        say("set LAMP=ON");
        say("get LAMP");
        say("get NONE");
        shell.process().closeWriteChannel();
        const BenchRun run = shell.end();
        QVERIFY2(run.output.endsWith("LAMP=ON\n"), run.output);
        QVERIFY2(run.errors.contains("has no line \"none\""), run.errors);
    }

    void thatAreLostLeaveTheirLinesUnknownUntilTheyAreBack()
    {
        const Broker broker;
        auto bench = std::make_unique<ServedBench>(broker);
        const QByteArray configuration =
            R"({ "device": { "type": "rig", "broker": "URL", "lines": [ { "name": "lamp", "line": "line0" } ] },
                 "tools": [ { "name": "T", "id": "{4b7a1c6e-0d52-4f3b-9a51-6f0c2f9d7a10}", "plugin": "p_tool_gpio", "channels": [] } ] })";
        const QString device = temporaryFile(QByteArray(configuration).replace("URL", broker.url().toUtf8()));
        const QByteArray topic = "appvantor/1/bench-8/line/lamp";
        Reader reader(broker, QString::fromLatin1(topic));
        const BenchProcess relay({"--config"_s, device, "serve"_s, "--broker"_s, broker.url("bench-8"_s)});
        QVERIFY(!reader.waitFor(topic, R"("v":0,)").isEmpty());
        bench->send(SIGKILL);
        bench->end();
        QTRY_VERIFY_WITH_TIMEOUT(reader.messages(topic).last().contains(R"("quality":"unknown")"), 20000);
        QVERIFY(reader.messages(topic).last().contains(R"("v":null,)"));
        bench = std::make_unique<ServedBench>(broker);
        QTRY_VERIFY_WITH_TIMEOUT(reader.messages(topic).last().contains(R"("quality":"good")"), 20000);
    }

    void doNotCarryOutLaterWhatWasToldAsFailed()
    {
        Broker broker;
        const ServedBench bench(broker);
        BenchProcess shell("shell --keep-going --json --rig bench-7 --broker"_words +
                           QStringList{broker.url()});
        const auto say = [&shell](const QByteArray& line) { shell.process().write(line + '\n'); };
        say("set START=OFF");
        QVERIFY(shell.waitForOutput("\"result\""));
        broker.kill();
        say("set START=ON");
        QVERIFY(shell.waitForOutput("\"failure\""));
        shell.send(SIGSTOP); // until the rig is there to take what comes
        QVERIFY(shell.waitUntilStopped());
        broker.start();
        QVERIFY(!Reader(broker, "appvantor/#"_s).waitFor("appvantor/1/bench-7/state", "online").isEmpty());
        shell.send(SIGCONT);
        say("expect START=OFF within 15000"); // the rig is back
        say("get START");                     // after all that is still to come
        shell.process().closeWriteChannel();
        shell.end();
        QCOMPARE(onRig(broker, "get START"_words), (BenchRun{0, "START=OFF\n"}));
    }

    void whatTheirDescriptionNamesIsNoFileOfThisMachine()
    {
        const Broker broker;
        publish(broker, "appvantor/1/bench-7/state"_s, R"({"state":"online","session":"s","since":1})",
                {"-r"_s});
        publish(
            broker, "appvantor/1/bench-7/description"_s,
            R"({"lines":[{"index":0,"name":"a"}],"tools":[{"name":"T","id":"{4b7a1c6e-0d52-4f3b-9a51-6f0c2f9d7a10}","plugin":"/tmp/mine.so","channels":[]}]})",
            {"-r"_s});
        const BenchRun run = onRig(broker, {"channels"_s});
        QCOMPARE(run.status, 2);
        QVERIFY2(run.errors.contains("/libmine.so: no such plugin library"), run.errors);
        QVERIFY(!run.errors.contains("/tmp/"));
    }

    void areAskedAgainUntilTheyAnswer()
    {
        const Broker broker;
        publish(broker, "appvantor/1/bench-7/state"_s, R"({"state":"online","session":"s","since":1})",
                {"-r"_s});
        publish(
            broker, "appvantor/1/bench-7/description"_s,
            R"({"lines":[{"index":0,"name":"a"}],"tools":[{"name":"T","id":"{4b7a1c6e-0d52-4f3b-9a51-6f0c2f9d7a10}","plugin":"p_tool_gpio","channels":[]}]})",
            {"-r"_s});
        Reader questions(broker, "appvantor/1/bench-7/history"_s);
        const BenchProcess shell("shell --rig bench-7 --broker"_words + QStringList{broker.url()});
        QTRY_VERIFY_WITH_TIMEOUT(questions.messages("appvantor/1/bench-7/history").size() > 1, 20000);
    }

    void thatDescribeThemselvesWronglyAreRefused_data()
    {
        QTest::addColumn<QByteArray>("description");
        QTest::newRow("no JSON") << QByteArray("{");
        QTest::newRow("nothing in it") << QByteArray("{}");
        QTest::newRow("nested deep") << QByteArray(5000, '[');
    }
    void thatDescribeThemselvesWronglyAreRefused()
    {
        QFETCH(QByteArray, description);
        const Broker broker;
        publish(broker, "appvantor/1/bench-7/state"_s, R"({"state":"online","session":"s","since":1})",
                {"-r"_s});
        publish(broker, "appvantor/1/bench-7/description"_s, description, {"-r"_s});
        const BenchRun run = onRig(broker, {"channels"_s});
        QCOMPARE(run.status, 2);
        QVERIFY2(run.errors.contains("device.lines: expected at least one line"), run.errors);
    }
};

QTEST_GUILESS_MAIN(TestRigs)
#include "test_rigs.moc"
