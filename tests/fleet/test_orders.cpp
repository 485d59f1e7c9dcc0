#include "broker_client.h"
#include "json_checks.h"
#include "rows.h"

#include <QTest>

#include <csignal>

/// Orders that come from a broker.
class TestOrders : public QObject
{
    Q_OBJECT

    static QString order() { return "appvantor/1/bench-7/order"_s; }

    /// Publishes an order with its correlation, and waits for nothing.
    static void send(const Broker& broker, const QByteArray& payload, const QString& correlation)
    {
        publish(broker, order(), payload,
                {"-D"_s, "publish"_s, "response-topic"_s, "answers/sent"_s, "-D"_s, "publish"_s,
                 "correlation-data"_s, correlation});
    }

    static void sendMany(const Broker& broker, const QByteArray& payload, int count,
                         const QStringList& options = {"-D"_s, "publish"_s, "response-topic"_s,
                                                       "answers/sent"_s})
    {
        publish(broker, order(), (payload + '\n').repeated(count), QStringList{"-l"_s} + options);
    }

    static int levelOf(const Broker& broker, const char* line)
    {
        const QByteArray payload = R"({"instruction":"getValue","arguments":{"channel":"LINE"}})";
        const QByteArray answer = ask(broker, order(), QByteArray(payload).replace("LINE", line));
        return objectOf(answer).value("results"_s).toObject().value("value"_s).toInt(-1);
    }

private Q_SLOTS:
    void isAnsweredInTheFormOfTheCommandLine_data()
    {
        const Rows<QByteArray, QByteArray> row("order", "answer");
        row("a command", R"({"command":"setValue","arguments":{"channel":"START","state":"ON"}})",
            R"({"type":"result","order":1,"tool":"Front panel","command":"setValue","channel":"START","arguments":{"channel":"START","state":"ON"},"results":{"doneOk":true}})");
        row("of a tool", R"({"command":"getValue","arguments":{"channel":"ALARM"},"tool":"Front panel"})",
            R"({"type":"result","order":1,"tool":"Front panel","command":"getValue","channel":"ALARM","arguments":{"channel":"ALARM"},"results":{"value":1}})");
        row("of no tool", R"({"command":"getValue","arguments":{"channel":"DOOR"},"tool":"Back panel"})",
            R"({"type":"failure","kind":"usage","reason")");
        row("no command", R"({"command":"juggle"})", R"("kind":"wrongInvocation")");
        row("a warning first", R"({"command":"setValue","arguments":{"channel":"START","state":"on"}})",
            R"("type":"warning")");
        row("to the device", R"({"instruction":"setValues","arguments":{"channel":"line1","values":1}})",
            R"({"type":"result","order":1,"tool":null,"command":"setValues","channel":"line1","arguments":{"channel":"line1","values":1},"results":{"channel":"line1","values":1}})");
        row("to no line", R"({"instruction":"getValue","arguments":{"channel":"line99"}})",
            R"("kind":"refusedByDevice","reason")");
        row("one that recurs", R"({"instruction":"listenEvents"})",
            R"(order:1:2: instruction: expected one of)");
        row("no JSON", "{]", "\"syntax\",\"reason\":\"order:1:2: expected JSON, found ]\"}");
        row("no object", "[1]", "expected an object");
        row("nothing", "", "expected JSON, found nothing more");
        row("a number for a text", R"({"command":3})", "order:1:2: command: expected a text");
        row("a key too many", R"({"command":"getValue","arguments":{},"channel":"DOOR"})", "channel: ");
        row("an answer", R"({"type":"result","command":"setValue","arguments":{}})", "type: ");
        row("nested deep", QByteArray(2000, '['), "nested too deeply");
    }
    void isAnsweredInTheFormOfTheCommandLine()
    {
        QFETCH(QByteArray, order);
        QFETCH(QByteArray, answer);
        const Broker broker;
        const ServedBench bench(broker);
        const QByteArray answered = ask(broker, TestOrders::order(), order);
        QVERIFY2(answered.contains(answer), answered);
        QCOMPARE(problemOfJsonLine(answered), QByteArray());
    }

    void thatComesTwiceRunsOnce()
    {
        const Broker broker;
        const ServedBench bench(broker);
        Reader answers(broker, "answers/sent"_s);
        const QByteArray toggle = R"({"command":"switchValue","arguments":{"channel":"START"}})";
        send(broker, toggle, "1"_s);
        send(broker, toggle, "1"_s);
        QVERIFY(!answers.waitFor("answers/sent", "\"order\":1").isEmpty());
        QCOMPARE(levelOf(broker, "line0"), 1);
        QCOMPARE(answers.messages("answers/sent").size(), 1);
        send(broker, toggle, "2"_s);
        QVERIFY(!answers.waitFor("answers/sent", "\"order\":3").isEmpty());
        QCOMPARE(levelOf(broker, "line0"), 0);
    }

    void thatIsOldNeverRuns()
    {
        const Broker broker;
        publish(broker, order(), R"({"command":"setValue","arguments":{"channel":"START","state":"ON"}})",
                {"-r"_s});
        publish(broker, "appvantor/1/bench-7/line/line1/set"_s, "1", {"-r"_s});
        {
            ServedBench earlier(broker);
            earlier.send(SIGKILL);
            earlier.end();
        }
        publish(broker, order(), R"({"command":"setValue","arguments":{"channel":"LAMP","state":"ON"}})");
        const ServedBench bench(broker);
        QCOMPARE(levelOf(broker, "line0"), 0);
        QCOMPARE(levelOf(broker, "line1"), 0);
        QCOMPARE(levelOf(broker, "line2"), 0);
    }

    void thatOutlivedItsExpiryNeverRuns()
    {
        const Broker broker;
        ServedBench bench(broker);
        const QStringList brief = {"-D"_s, "publish"_s, "message-expiry-interval"_s, "1"_s};
        publish(broker, "appvantor/1/bench-7/line/line0/set"_s, "1", brief);
        QTRY_COMPARE(levelOf(broker, "line0"), 1);
        bench.send(SIGSTOP);
        QVERIFY(bench.waitUntilStopped());
        publish(broker, "appvantor/1/bench-7/line/line1/set"_s, "1", brief);
        QTest::qWait(2500); // the order's time passes
        bench.send(SIGCONT);
        QCOMPARE(levelOf(broker, "line1"), 0);
    }

    void aLineIsSetByItsPlainValue()
    {
        const Broker broker;
        ServedBench bench(broker);
        Reader reader(broker, "appvantor/1/bench-7/line/+"_s);
        const QString topic = "appvantor/1/bench-7/line/line1/set"_s;
        publish(broker, topic, "ON");
        QVERIFY(!reader.waitFor("appvantor/1/bench-7/line/line1", "\"v\":1").isEmpty());
        publish(broker, topic, "0");
        QTRY_COMPARE(levelOf(broker, "line1"), 0);
        publish(broker, topic, "perhaps");
        publish(broker, "appvantor/1/bench-7/line/door/set"_s, "1");
        publish(broker, "appvantor/1/bench-7/line/door/set"_s, "1");
        publish(broker, "appvantor/1/bench-7/line/a%0Aappvantor: forged%1b[31m/set"_s, "1");
        QCOMPARE(levelOf(broker, "line1"), 0);
        const QByteArray errors = bench.leave().errors;
        QVERIFY2(errors.contains("line \"line1\" is not set: expected ON, OFF, or a number"), errors);
        QVERIFY2(errors.contains("line \"door\" is not set: unknown channel \"door\""), errors);
        QCOMPARE(errors.count("\"door\" is not set"), 1);
        QVERIFY2(errors.contains("line \"a\\u000aappvantor: forged\\u001b[31m\" is not set: "), errors);
    }

    void ofOthersAreRefusedWhileSomebodyHoldsTheRig()
    {
        const Broker broker;
        const ServedBench bench(broker);
        Reader reader(broker, "appvantor/1/bench-7/lease"_s);
        QVERIFY(ask(broker, order(), R"({"lease":5,"holder":"ada"})")
                    .contains(R"({"type":"lease","lease":{"holder":"ada","until":)"));
        QVERIFY(!reader.waitFor("appvantor/1/bench-7/lease", "ada").isEmpty());
        const QByteArray refused =
            ask(broker, order(), R"({"command":"getValue","arguments":{"channel":"DOOR"}})");
        QVERIFY2(refused.contains("\"leased\",\"reason\":\"ada holds the rig until "), refused);
        QCOMPARE(problemOfJsonLine(refused), QByteArray());
        QVERIFY(ask(broker, order(), R"({"lease":5,"holder":"bob"})").contains("ada holds the rig"));
        QVERIFY(ask(broker, order(), R"({"release":true,"holder":"bob"})").contains("ada holds the rig"));
        QVERIFY(
            ask(broker, order(), R"({"command":"getValue","arguments":{"channel":"DOOR"},"holder":"ada"})")
                .contains("result"));
        publish(broker, "appvantor/1/bench-7/line/line1/set"_s, "1");
        QCOMPARE(levelOf(broker, "line1"), 0);
        QVERIFY(ask(broker, order(), R"({"release":true,"holder":"ada"})").contains(R"({"holder":null})"));
        QVERIFY(ask(broker, order(), R"({"release":true,"holder":"ada"})").contains("nobody holds the rig"));
        QVERIFY(ask(broker, order(), R"({"command":"getValue","arguments":{"channel":"DOOR"}})")
                    .contains("result"));
    }

    void areNotTakenByARigThatIsOnlyLookedAt()
    {
        const Broker broker;
        const ServedBench bench(broker, {"--read-only"_s});
        const QByteArray refused =
            ask(broker, order(), R"({"command":"setValue","arguments":{"channel":"START"}})");
        QCOMPARE(refused,
                 QByteArray(R"({"type":"failure","kind":"readOnly","reason":"this rig takes no orders"})"));
        publish(broker, "appvantor/1/bench-7/line/line1/set"_s, "1");
        QCOMPARE(levelOf(broker, "line1"), 0);
    }

    void areNotTakenWhereTheirAnswerWouldBeAnOrder()
    {
        const Broker broker;
        ServedBench bench(broker);
        const QByteArray order = R"({"command":"setValue","arguments":{"channel":"START","state":"ON"}})";
        QCOMPARE(ask(broker, TestOrders::order(), order, "appvantor/1/bench-8/order"_s), QByteArray());
        QCOMPARE(levelOf(broker, "line0"), 0);
        QVERIFY(
            ask(broker, TestOrders::order(), order, "appvantor/1/bench-7/answer/me"_s).contains("result"));
        QVERIFY(bench.leave().errors.contains("its answer may not go to \"appvantor/1/bench-8/order\""));
    }

    void thatListensEndsWhenNobodyHearsOfIt()
    {
        const Broker broker;
        const ServedBench bench(broker);
        const QByteArray listen = R"({"command":"startListening","arguments":{"channel":"TEMPERATURE"}})";
        sendMany(broker, listen, 257);
        // Each was stopped with its first event that reached nobody: there is room for more.
        bool heard = false; // the test asks again what has come true
        QTRY_VERIFY_WITH_TIMEOUT(heard = heard || ask(broker, order(), listen).contains("\"event\""), 30000);
    }

    void thatListenForNobodyTakeNoPlace()
    {
        const Broker broker;
        const ServedBench bench(broker);
        sendMany(broker, R"({"command":"startListening","arguments":{"channel":"DOOR"}})", 300, {});
        QVERIFY(ask(broker, order(), R"({"command":"getValue","arguments":{"channel":"DOOR"}})")
                    .contains("result"));
    }

    void thatStopAnotherFindAPlaceAmongTooMany()
    {
        const Broker broker;
        const ServedBench bench(broker);
        Reader answers(broker, "answers/sent"_s);
        sendMany(broker, R"({"command":"startListening","arguments":{"channel":"DOOR"}})", 300);
        QVERIFY(!answers.waitFor("answers/sent", R"("kind":"busy")").isEmpty());
        QVERIFY(ask(broker, order(), R"({"command":"stopListening","arguments":{"channel":"DOOR"}})")
                    .contains("result"));
        QVERIFY(ask(broker, order(), R"({"command":"getValue","arguments":{"channel":"DOOR"}})")
                    .contains("result"));
    }

    void areAllAnsweredHoweverManyComeAtOnce()
    {
        const Broker broker;
        const ServedBench bench(broker);
        Reader answers(broker, "answers/sent"_s);
        sendMany(broker, R"({"command":"getValue","arguments":{"channel":"DOOR"}})", 10000);
        QTRY_COMPARE_WITH_TIMEOUT(answers.messages("answers/sent").size(), 10000, 60000);
    }

    void areAllAnsweredHoweverMuchTheyHold()
    {
        const Broker broker;
        const ServedBench bench(broker);
        Reader answers(broker, "answers/sent"_s);
        const QByteArray order =
            QByteArray(R"({"command":"getValue","arguments":{"channel":"DOOR","note":"NOTE"}})")
                .replace("NOTE", QByteArray(20000, 'x'));
        sendMany(broker, order, 3000);
        QTRY_COMPARE_WITH_TIMEOUT(answers.messages("answers/sent").size(), 3000, 60000);
    }

    void areAllAnsweredWhenTheyEndAtOnce()
    {
        constexpr int count = 200;
        const Broker broker;
        const QString silent =
            boardFile(R"("lines": [ { "name": "a" } ], "faults": [ { "kind": "silent" } ])");
        ServedBench bench(broker, {"--config"_s, silent});
        Reader answers(broker, "answers/sent"_s);
        const QByteArray request =
            QByteArray(R"({"instruction":"getValue","arguments":{"channel":"a","note":"NOTE"}})")
                .replace("NOTE", QByteArray(60000, 'x'));
        sendMany(broker, request, count);
        sendMany(broker, R"({"command":"juggle"})", 1); // answered after those were taken
        QVERIFY(!answers.waitFor("answers/sent", "juggle").isEmpty());
        QCOMPARE(bench.leave().status, 0);
        QTRY_COMPARE_WITH_TIMEOUT(answers.messages("answers/sent").size(), count + 1, 20000);
    }

    void areAnsweredToAClientOfAnotherMake()
    {
        const Broker broker;
        const ServedBench bench(broker);
        const QStringList orders = {
            R"({"command":"setValue","arguments":{"channel":"START","state":"PULSE","duration":50}})"_s,
            R"({"command":"setValue","arguments":{"channel":"STOP","state":"on"}})"_s,
            R"({"command":"juggle"})"_s, R"({"instruction":"getValue","arguments":{"channel":"line1"}})"_s};
        QProcess paho;
        paho.start(QStringLiteral(PAHO_ORDERS),
                   QStringList{QString::number(broker.port()), order()} + orders);
        QVERIFY(paho.waitForFinished());
        QVERIFY2(paho.exitCode() == 0, paho.readAllStandardError());
        QVector<QStringList> types(orders.size());
        for (const QByteArray& line : paho.readAllStandardOutput().trimmed().split('\n')) {
            const int blank = line.indexOf(' ');
            types[line.left(blank).toInt()].append(objectOf(line.mid(blank)).value("type"_s).toString());
        }
        QCOMPARE(types, (QVector<QStringList>{
                            {"result"_s}, {"warning"_s, "failure"_s}, {"failure"_s}, {"result"_s}}));
    }

    void areReadUpTo64KiB()
    {
        constexpr int longest = 64 << 10;
        const Broker broker;
        const ServedBench bench(broker);
        const QByteArray getting = R"({"instruction":"getValue","arguments":{"channel":"line0"}})";
        QCOMPARE(ask(broker, order(), getting.leftJustified(longest + 1, ' ')), QByteArray());
        QVERIFY(ask(broker, order(), getting.leftJustified(longest, ' ')).contains("\"order\":1,"));
    }

    void areNoneWhateverElseIsSent_data()
    {
        const Rows<QByteArray> row("payload");
        row("nothing", "");
        row("bytes", QByteArray("\0\xff\xfe{", 4));
        row("nested deep", QByteArray(60000, '['));
        row("a long number", QByteArray(60000, '9'));
        row("a question without an end", R"({"from":18446744073709551615,"session":{}})");
    }
    void areNoneWhateverElseIsSent()
    {
        QFETCH(QByteArray, payload);
        const Broker broker;
        ServedBench bench(broker);
        for (const char* topic : {"order", "history", "line/line1/set", "line/%00%ff/set", "state"}) {
            publish(broker, "appvantor/1/bench-7/"_s + QLatin1String(topic), payload,
                    {"-D"_s, "publish"_s, "response-topic"_s, "answers/sent"_s});
        }
        QCOMPARE(levelOf(broker, "line1"), 0);
        QCOMPARE(bench.leave().status, 0);
    }

    void endWithTheirRig()
    {
        const Broker broker;
        ServedBench bench(broker);
        Reader reader(broker, "#"_s);
        send(broker,
             R"({"command":"setValue","arguments":{"channel":"START","state":"PULSE","duration":20000}})",
             "1"_s);
        send(broker, R"({"command":"startListening","arguments":{"channel":"TEMPERATURE"}})", "2"_s);
        QVERIFY(!reader.waitFor("answers/sent", R"("type":"event")").isEmpty());
        QCOMPARE(bench.leave().status, 0);
        QVERIFY(!reader.waitFor("appvantor/1/bench-7/state", "offline").isEmpty());
        QVERIFY(!reader.waitFor("answers/sent", R"({"type":"failure","order":1)").isEmpty());
        QVERIFY(!reader.waitFor("answers/sent", R"({"type":"result","order":2)").isEmpty());
    }

    void beyondWhatARigCanDoAreRefused()
    {
        const Broker broker;
        const ServedBench bench(broker);
        Reader answers(broker, "answers/sent"_s);
        const QByteArray pulse =
            R"({"command":"setValue","arguments":{"channel":"START","state":"PULSE","duration":20000}})";
        sendMany(broker, pulse, 300);
        QVERIFY(
            !answers.waitFor("answers/sent", R"("kind":"busy","reason":"256 orders run already")").isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestOrders)
#include "test_orders.moc"
