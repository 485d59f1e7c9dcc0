#include "bench_process.h"
#include "literals.h"

#include <QFile>
#include <QtTest>

namespace {

/// A configuration that is right, with one part of it replaced.
QByteArray configurationWith(const QByteArray& part, const QByteArray& replacement)
{
    QByteArray text = R"({
  "device": { "type": "simulated",
              "lines": [ {"name": "a"}, {"name": "b"}, {"name": "c", "kind": "analog"} ],
              "wires": [ {"from": "a", "to": "b"} ] },
  "tools": [ { "name": "T", "id": "{4b7a1c6e-0d52-4f3b-9a51-6f0c2f9d7a10}", "plugin": "p_tool_gpio",
               "channels": [ { "id": "A", "value": [ {"id": "type", "value": "digitalInput"},
                                                     {"id": "direction", "value": "out"},
                                                     {"id": "link", "value": "a"} ] } ] } ]
})";
    return text.replace(part, replacement);
}

BenchRun channelsWith(const QByteArray& text)
{
    return runBench({"--config"_s, temporaryFile(text), "channels"_s});
}

} // namespace

/// Mistakes in the configuration file.
class TestConfiguration : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aRightConfigurationIsTaken();
    void aMistakeNamesFilePlaceAndExpectation_data();
    void aMistakeNamesFilePlaceAndExpectation();
    void anotherShapeIsTold_data();
    void anotherShapeIsTold();
    void allMistakesAreToldAtOnce();
    void aFileThatIsNotThereIsTold();
    void aPluginThatIsNotThereIsTold();
    void aPluginFileIsTakenRelativeToTheConfiguration();
    void anUnpluggedBoardEndsWithStatus3();
};

void TestConfiguration::aRightConfigurationIsTaken()
{
    const BenchRun run = channelsWith(configurationWith("", ""));
    QCOMPARE(run.status, 0);
    QCOMPARE(run.errors, QByteArray());
}

void TestConfiguration::aMistakeNamesFilePlaceAndExpectation_data()
{
    QTest::addColumn<QByteArray>("part");
    QTest::addColumn<QByteArray>("replacement");
    QTest::addColumn<QByteArray>("message");
    const auto row = [](const char* name, const char* part, const char* replacement, const char* message) {
        QTest::newRow(name) << QByteArray(part) << QByteArray(replacement) << QByteArray(message);
    };
    row("JSON", "\"tools\"", "tools", "line 5, column 4 (offset 185): expected JSON: unterminated object");
    row("unknown entry", "\"wires\"", "\"wire\"",
        "device.wire: unknown entry, expected one of: type, connected, lines, wires, faults");
    row("entry without a name", "\"device\"", R"("": 1, "device")",
        "\"\": unknown entry, expected one of: device, tools");
    row("inner entry without a name", "\"wires\"", "\"\"",
        "device.\"\": unknown entry, expected one of: type, connected, lines, wires, faults");
    row("control characters", "\"wires\"", R"("wi\u0000\n\u001bres")",
        "device.wi\\u0000\\u000a\\u001bres: unknown entry");
    row("device type", "\"simulated\"", "\"quantum\"",
        "device.type: expected one of \"simulated\", \"gpiochip\", found \"quantum\"");
    row("device type missing", "\"type\": \"simulated\",", "", "device.type: expected a text, found nothing");
    row("no lines", R"([ {"name": "a"}, {"name": "b"}, {"name": "c", "kind": "analog"} ])", "[]",
        "device.lines: expected at least one line");
    row("line without a name", "{\"name\": \"b\"}", "{}",
        "device.lines[1].name: expected a text, found nothing");
    row("line twice", "{\"name\": \"b\"}", "{\"name\": \"a\"}",
        "device.lines[1].name: expected a name of its own, \"a\" is taken");
    row("line that is no object", "{\"name\": \"b\"}", "\"b\"",
        "device.lines[1]: expected an object, found \"b\"");
    row("kind", "\"analog\"", "\"analogue\"",
        "device.lines[2].kind: expected one of \"digital\", \"analog\", found \"analogue\"");
    row("level out of range", "{\"name\": \"b\"}", "{\"name\": \"b\", \"level\": 2}",
        "device.lines[1].level: expected a whole number from 0 to 1, found 2");
    row("level that is no whole number", "\"kind\": \"analog\"", "\"kind\": \"analog\", \"level\": 1.5",
        "device.lines[2].level: expected a whole number from 0 to 65535, found 1.5");
    row("waveform on a digital line", "{\"name\": \"b\"}", R"({"name": "b", "waveform": {"shape": "sine"}})",
        "device.lines[1].waveform: expected on an analogue input only");
    row("waveform upside down", "\"kind\": \"analog\"",
        R"("kind": "analog", "waveform": {"low": 5, "high": 4})",
        "device.lines[2].waveform.high: expected at least \"low\", 5");
    row("waveform shape", "\"kind\": \"analog\"", R"("kind": "analog", "waveform": {"shape": "square"})",
        "device.lines[2].waveform.shape: expected one of \"constant\", \"ramp\", \"sine\", \"noise\", found "
        "\"square\"");
    row("wire from nowhere", "\"from\": \"a\"", "\"from\": \"x\"",
        "device.wires[0].from: expected the name of a line, found \"x\"");
    row("wire to an output", "{\"name\": \"b\"}", R"({"name": "b", "direction": "out"})",
        "device.lines[1].direction: a wire leads to \"b\", expected \"in\"");
    row("two wires to one line", "[ {\"from\": \"a\", \"to\": \"b\"} ]",
        R"([ {"from": "a", "to": "b"}, {"from": "c", "to": "b"} ])",
        "device.wires[1].to: \"b\" has a wire already, expected a free input");
    row("wires in a loop", "[ {\"from\": \"a\", \"to\": \"b\"} ]",
        R"([ {"from": "a", "to": "b"}, {"from": "b", "to": "a"} ])",
        "device.wires[1].to: the wires of \"a\" form a loop");
    row("wire delay", "\"to\": \"b\"", R"("to": "b", "delayMs": -1)",
        "device.wires[0].delayMs: expected a whole number from 0 to 3600000, found -1");
    row("wire inversion", "\"to\": \"b\"", R"("to": "b", "inverted": 1)",
        "device.wires[0].inverted: expected true or false, found 1");
    row("wire to a waveform",
        "\"kind\": \"analog\"} ],\n              \"wires\": [ {\"from\": \"a\", \"to\": \"b\"}",
        R"("kind": "analog", "waveform": {}} ], "wires": [ {"from": "a", "to": "c"})",
        "device.wires[0].to: \"c\" follows a waveform, expected a free input");
    row("fault without a kind", "\"wires\"", R"("faults": [ {"line": "a"} ], "wires")",
        "device.faults[0].kind: expected a text, found nothing");
    row("fault", "\"wires\"", R"("faults": [ {"kind": "moody"} ], "wires")",
        "device.faults[0].kind: expected one of \"silent\", \"late\", \"wrong\", \"refused\", found "
        "\"moody\"");
    row("fault of an unknown instruction", "\"wires\"", R"("faults": [ {"instruction": "sing"} ], "wires")",
        "device.faults[0].instruction: expected one of \"getValue\", \"setValues\", \"setBlink\", "
        "\"listenEvents\", "
        "\"listenToAll\", found \"sing\"");
    row("no tools", "\"tools\": [", "\"tools\": [], \"toolz\": [",
        "toolz: unknown entry, expected one of: device, tools");
    row("tools that are no list", "\"tools\": [", "\"tools\": 5, \"tools\": {}, \"x\": [",
        "tools: expected a list, found {}");
    row("tool id", "{4b7a1c6e-0d52-4f3b-9a51-6f0c2f9d7a10}", "seven",
        "tools[0].id: expected a uuid in braces, found \"seven\"");
    row("tool name twice", "\"tools\": [",
        R"("tools": [ {"name": "T", "id": "{00000000-0000-4000-8000-000000000001}", "plugin": "p_tool_gpio", "channels": []},)",
        "tools[1].name: expected a name of its own, \"T\" is taken");
    row("tool id twice", "\"tools\": [",
        R"("tools": [ {"name": "U", "id": "{4b7a1c6e-0d52-4f3b-9a51-6f0c2f9d7a10}", "plugin": "p_tool_gpio", "channels": []},)",
        "tools[1].id: expected an identifier of its own, \"{4b7a1c6e-0d52-4f3b-9a51-6f0c2f9d7a10}\" is "
        "taken");
    row("channel without id", "\"id\": \"A\",", "",
        "tools[0].channels[0].id: expected a text, found nothing");
    row("unknown entry of a channel", "\"id\": \"A\",", R"("id": "A", "visibilty": "public",)",
        "tools[0].channels[0].visibilty: unknown entry, expected one of: id, name, visibility, value");
    row("visibility", "\"id\": \"A\",", R"("id": "A", "visibility": "Public",)",
        "tools[0].channels[0].visibility: expected \"public\", found \"Public\"");
    row("type twice", "{\"id\": \"type\"", R"({"id": "type", "value": "digitalInput"}, {"id": "type")",
        "tools[0].channels[0].value[1].id: expected \"type\" once");
    row("direction that does not suit the type", "\"value\": \"out\"", "\"value\": \"in\"",
        "tools[0].channels[0].value: channel \"A\": expected the \"direction\" \"out\" of a channel of the "
        "type "
        "\"digitalInput\", found \"in\"");
    row("no tool", "\"tools\": [", "\"tools\": [], \"tools\": [ ], \"x\": [", "x: unknown entry");
    row("channel twice", "\"channels\": [", "\"channels\": [ {\"id\": \"A\"},",
        "tools[0].channels[1].id: expected an identifier of its own, \"A\" is taken");
    row("channel type", "\"digitalInput\"", "\"DigitalInput\"",
        "tools[0].channels[0].value[0].value: expected one of \"analogInput\", \"analogOutput\", "
        "\"digitalInput\", "
        "\"digitalOutput\", found \"DigitalInput\"");
    row("channel direction", "\"value\": \"out\"", "\"value\": \"up\"",
        "tools[0].channels[0].value[1].value: expected one of \"in\", \"out\", found \"up\"");
    row("channel link", "\"value\": \"a\"", "\"value\": \"z\"",
        "tools[0].channels[0].value: channel \"A\": expected \"link\" to name a line of the device, found "
        "\"z\"");
    row("output channel on an input line", "\"value\": \"a\"", "\"value\": \"b\"",
        "tools[0].channels[0].value: channel \"A\": \"direction\" is \"out\", expected \"link\" to name an "
        "output "
        "line, \"b\" is an input");
}

void TestConfiguration::aMistakeNamesFilePlaceAndExpectation()
{
    QFETCH(QByteArray, part);
    QFETCH(QByteArray, replacement);
    QFETCH(QByteArray, message);
    const QString file = temporaryFile(configurationWith(part, replacement));
    const BenchRun run = runBench({"--config"_s, file, "channels"_s});
    QCOMPARE(run.status, 2);
    QCOMPARE(run.output, QByteArray());
    QVERIFY2(("\n" + run.errors).contains("\nappvantor: " + file.toUtf8() + ": " + message) ||
                 run.errors.contains("\n" + file.toUtf8() + ": " + message),
             run.errors.constData());
}

void TestConfiguration::anotherShapeIsTold_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("message");
    QTest::newRow("a list") << QByteArray("[]")
                            << QByteArray(": line 1, column 1 (offset 0): expected an object\n");
    QTest::newRow("a device that is no object") << QByteArray(R"({"device": 5, "tools": []})")
                                                << QByteArray(": device: expected an object, found 5\n");
}

void TestConfiguration::anotherShapeIsTold()
{
    QFETCH(QByteArray, text);
    QFETCH(QByteArray, message);
    const BenchRun run = channelsWith(text);
    QVERIFY2(run.errors.contains(message), run.errors.constData());
    QCOMPARE(run.status, 2);
}

void TestConfiguration::allMistakesAreToldAtOnce()
{
    QByteArray text = configurationWith("\"analog\"", "\"wooden\"");
    text.replace("\"digitalInput\"", "7");
    const BenchRun run = channelsWith(text);
    QCOMPARE(run.status, 2);
    QCOMPARE(run.errors.count('\n'), 2);
}

void TestConfiguration::aFileThatIsNotThereIsTold()
{
    const BenchRun run = runBench({"--config"_s, "/nonexistent.json"_s, "channels"_s});
    QCOMPARE(run.status, 2);
    QCOMPARE(run.errors,
             QByteArray("appvantor: /nonexistent.json: cannot be read: No such file or directory\n"));
}

void TestConfiguration::aPluginThatIsNotThereIsTold()
{
    const BenchRun run = channelsWith(configurationWith("\"p_tool_gpio\"", "\"p_tool_piano\""));
    QCOMPARE(run.status, 2);
    QVERIFY(run.errors.contains("/plugins/libp_tool_piano.so: no such plugin library"));
}

void TestConfiguration::aPluginFileIsTakenRelativeToTheConfiguration()
{
    const BenchRun run = channelsWith(configurationWith("\"p_tool_gpio\"", "\"./mine.so\""));
    QCOMPARE(run.status, 2);
    QVERIFY2(run.errors.contains("/mine.so: no such plugin library"), run.errors.constData());
    QVERIFY(!run.errors.contains("/plugins/"));
}

void TestConfiguration::anUnpluggedBoardEndsWithStatus3()
{
    const QString file = temporaryFile(configurationWith("\"wires\"", "\"connected\": false, \"wires\""));
    const BenchRun run = runBench({"--config"_s, file, "run"_s, "getValue"_s, "channel=A"_s});
    QCOMPARE(run.status, 3);
    QCOMPARE(run.errors, QByteArray("appvantor: [1] getValue failed: the simulated board is unplugged\n"));
    QCOMPARE(runBench({"--config"_s, file, "channels"_s}).status, 3);
}

QTEST_GUILESS_MAIN(TestConfiguration)
#include "test_configuration.moc"
