#include "bench_process.h"
#include "json_checks.h"
#include "literals.h"
#include "rows.h"

#include <QtTest>

namespace {

/// An object with these fields; the others of object are left out.
QJsonObject only(const QJsonObject& object, const QStringList& fields)
{
    QJsonObject rest;
    for (const QString& field : fields) {
        if (object.contains(field)) {
            rest.insert(field, object.value(field));
        }
    }
    return rest;
}

} // namespace

/// What programs are told with --json: the protocol of docs/json.md, whose form each run of a test is checked
/// for anyway.
class TestJson : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aLineThatIsNotInTheSchemaIsNoticed_data()
    {
        const Rows<QByteArray, QByteArray> row("line", "problem");
        row("type", R"({"type":"surprise"})", "no object of a known type");
        row("missing", R"({"type":"failure","kind":"usage"})", "'reason' is a required property");
        row("unknown", R"({"type":"failure","kind":"usage","reason":"x","y":1})", "'y' was unexpected");
        row("form", R"({"type":"failure","kind":"usage","reason":1})", "1 is not of type 'string'");
    }

    void aLineThatIsNotInTheSchemaIsNoticed()
    {
        QFETCH(QByteArray, line);
        QFETCH(QByteArray, problem);
        const QByteArray found = problemOfJsonLine(line);
        QVERIFY2(found.contains(problem), found.constData());
    }

    void whatIsWrongBeforeAnyOrderIsAFailureWithItsKind_data()
    {
        const Rows<QStringList, QString, QString> row("arguments", "kind", "reason");
        const QString broken = temporaryFile("{}");
        row("subcommand", {"nosuch"_s}, "usage", "unknown subcommand \"nosuch\"");
        row("option", "commands --nosuch"_words, "usage", "nosuch");
        row("value of an option", "run getValue --for x"_words, "usage", "--for: expected a number");
        row("tool", "--tool Nobody channels"_words, "usage", "there is no tool \"Nobody\"");
        row("trace", "--trace /nonexistent/t.vcd commands"_words, "usage", "the trace cannot be written");
        row("orders", "shell nosuch.orders"_words, "usage", "nosuch.orders: the orders cannot be read");
        row("report", "shell --report /nonexistent/r.xml"_words, "usage", "the report cannot be written");
        row("no configuration", "--config /nonexistent commands"_words, "configuration", "cannot be read");
        row("configuration", {"--config"_s, broken, "channels"_s}, "configuration", "expected an object");
        row("plugin", {"--config"_s, boardFile(R"("lines": [ {"name": "a"} ])", "", "nosuch"), "channels"_s},
            "configuration", "no such plugin library");
        row("argument", "run getValue DOOR"_words, "syntax", "expected NAME=VALUE");
        row("command", "run nosuch"_words, "wrongInvocation", "unknown command \"nosuch\"");
    }

    void whatIsWrongBeforeAnyOrderIsAFailureWithItsKind()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, kind);
        QFETCH(QString, reason);
        const BenchRun run = runBench(QStringList{"--json"_s} + arguments);
        QCOMPARE(run.status, 2);
        const QJsonObject told = run.json().value(0);
        QCOMPARE(told.value("type"_s).toString(), "failure"_s);
        QCOMPARE(told.value("kind"_s).toString(), kind);
        QVERIFY2(told.value("reason"_s).toString().contains(reason), run.output.constData());
        QVERIFY2(run.errors.contains(told.value("reason"_s).toString().toUtf8()), run.errors.constData());
    }

    void eventsAndEndsSayWhatOrderTheyAreOf_data()
    {
        const Rows<QString, QStringList, QByteArray> row("words", "types", "order");
        row("a result", "setValue channel=A state=ON duration=7", {"result"_s},
            R"({"tool":"T","command":"setValue","channel":"A",
                "arguments":{"channel":"A","state":"ON","duration":7}})");
        row("a failure", "getValue channel=NOPE", {"failure"_s},
            R"({"tool":"T","command":"getValue","channel":"NOPE","arguments":{"channel":"NOPE"}})");
        row("events", "startListening channel=A --count 1", {"event"_s, "result"_s},
            R"({"tool":"T","command":"startListening","channel":"A","arguments":{"channel":"A"}})");
        row("no channel", "listenToAll --count 1", {"event"_s, "result"_s},
            R"({"tool":"T","command":"listenToAll","channel":null,"arguments":{}})");
        row("refused", "getValue colour=red", {"failure"_s},
            R"({"tool":"T","command":"getValue","channel":null,"arguments":{"colour":"red"}})");
    }

    void eventsAndEndsSayWhatOrderTheyAreOf()
    {
        QFETCH(QString, words);
        QFETCH(QStringList, types);
        QFETCH(QByteArray, order);
        const QString file = boardFile(
            R"("lines": [ {"name": "a"} ])",
            R"({"id": "A", "value": [ {"id": "direction", "value": "out"}, {"id": "link", "value": "a"} ]})");
        const BenchRun run =
            runBench(QStringList{"--config"_s, file, "--json"_s, "run"_s} + words.split(QLatin1Char(' ')));
        QStringList told;
        for (const QJsonObject& object : run.json()) {
            told.append(object.value("type"_s).toString());
            QCOMPARE(only(object, {"tool"_s, "command"_s, "channel"_s, "arguments"_s}),
                     QJsonDocument::fromJson(order).object());
        }
        QCOMPARE(told, types);
    }

    void anOrderOfAScriptHasItsNumberAndPlace_data()
    {
        const Rows<QByteArray, QByteArray> row("input", "told");
        row("none", "\nnosuch", R"({"order":null,"place":{"file":"<stdin>","line":2}})");
        row("one that failed", "# 1\nswitchValue", R"({"order":1,"place":{"file":"<stdin>","line":2}})");
        row("with a warning", "setValue channel=A state=on",
            R"({"order":1,"place":{"file":"<stdin>","line":1}})");
    }

    void anOrderOfAScriptHasItsNumberAndPlace()
    {
        QFETCH(QByteArray, input);
        QFETCH(QByteArray, told);
        const BenchRun run = runBench("--json shell"_words, input);
        QCOMPARE(only(run.json().value(0), {"order"_s, "place"_s}), QJsonDocument::fromJson(told).object());
    }

    void anExpectationThatCannotBeReadHasTheKindOfItsOrder()
    {
        const QString file = boardFile(
            R"("lines": [ {"name": "a"} ], "connected": false)",
            R"({"id": "A", "value": [ {"id": "direction", "value": "out"}, {"id": "link", "value": "a"} ]})");
        const BenchRun run = runBench({"--config"_s, file, "--json"_s, "shell"_s}, "expect A=ON");
        const QJsonObject told = {{"kind"_s, "deviceUnreachable"_s}, {"found"_s, QJsonValue()}};
        QCOMPARE(only(run.json().value(0), {"kind"_s, "found"_s}), told);
    }

    void aMistakeOfAConfigurationHasItsPlace()
    {
        const QString file = temporaryFile("\n{ \"device\": 1 }");
        const BenchRun run = runBench({"--config"_s, file, "--json"_s, "channels"_s});
        const QJsonObject place = {{"file"_s, file}, {"line"_s, 2}, {"column"_s, 3}, {"entry"_s, "device"_s}};
        QCOMPARE(run.json().value(0).value("place"_s).toObject(), place);
    }

    void whatNoOrderWaitsForIsAFailureWithItsKind_data()
    {
        const Rows<QString, QString, QString, int> row("script", "kind", "reason", "status");
        row("device", "unprivileged \"$BENCH\" --json --realtime get DOOR", "device",
            "the system grants no real-time priority: Operation not permitted", 0);
        row("trace",
            "{ until [ -s t ]; do sleep 0.01; done; rm t; echo get DOOR; } |\n"
            "\"$BENCH\" --json --trace t shell",
            "trace", "t: the trace is lost: the file was removed meanwhile", 1);
        row("report", "ulimit -f 0; echo expect ALARM=ON | \"$BENCH\" --json shell --report r.xml", "report",
            "r.xml: the report cannot be written: File too large", 1);
    }

    void whatNoOrderWaitsForIsAFailureWithItsKind()
    {
        QFETCH(QString, script);
        QFETCH(QString, kind);
        QFETCH(QString, reason);
        QFETCH(int, status);
        const BenchRun run = runScript(script);
        QCOMPARE(run.status, status);
        QStringList reasons;
        for (const QJsonObject& object : run.json()) {
            if (object.value("kind"_s) == kind) {
                reasons.append(object.value("reason"_s).toString());
            }
        }
        QCOMPARE(reasons, QStringList(reason));
        QCOMPARE(run.errors, QByteArray("appvantor: " + reason.toUtf8() + '\n'));
    }

    void whatAScriptLeavesGoingOnIsAnObject()
    {
        const BenchRun run =
            runBench("--json shell"_words, "setValue channel=DOOR state=BLINK duration=1000 dutyCycle=50\n"
                                           "setValue channel=START state=PULSE duration=60000 &\n");
        const QByteArray driven = R"({ "type": "driven", "tool": "Front panel", "channels": [
            { "channel": "DOOR", "by": "BLINK" }, { "channel": "START", "by": "PULSE" } ] })";
        QVERIFY2(run.json().contains(QJsonDocument::fromJson(driven).object()), run.output.constData());
    }

    /// Those that switch off at the end, of every tool, too.
    void eachOrderHasANumberOfItsOwn()
    {
        const BenchRun run = runBench("--json run setValue channel=DOOR state=ON --off-at-end"_words);
        int last = 0;
        for (const QJsonObject& object : run.json()) {
            QCOMPARE(object.value("order"_s).toInt(), ++last);
        }
        QVERIFY(last > 1);
    }
};

QTEST_GUILESS_MAIN(TestJson)
#include "test_json.moc"
