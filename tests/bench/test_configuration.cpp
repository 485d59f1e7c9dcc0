#include "bench_process.h"
#include "literals.h"
#include "rows.h"

namespace {

const char* const c_simulated = R"({
  "device": { "type": "simulated",
              "lines": [ {"name": "a"}, {"name": "b"}, {"name": "c", "kind": "analog"} ],
              "wires": [ {"from": "a", "to": "b"} ] },
  "tools": [ { "name": "T", "id": "{4b7a1c6e-0d52-4f3b-9a51-6f0c2f9d7a10}", "plugin": "p_tool_gpio",
               "channels": [ { "id": "A", "value": [ {"id": "type", "value": "digitalInput"},
                                                     {"id": "direction", "value": "out"},
                                                     {"id": "link", "value": "a"} ] } ] } ]
})";

const char* const c_chips = R"({
  "device": { "type": "gpiochip",
              "lines": [ {"name": "lamp", "chip": "no-such-chip", "line": 3, "direction": "out"},
                         {"name": "button", "chip": "no-such-chip", "line": "GPIO4", "bias": "pull-up"} ] },
  "tools": [ { "name": "T", "id": "{4b7a1c6e-0d52-4f3b-9a51-6f0c2f9d7a10}", "plugin": "p_tool_gpio",
               "channels": [ { "id": "A", "value": [ {"id": "type", "value": "digitalInput"},
                                                     {"id": "direction", "value": "out"},
                                                     {"id": "link", "value": "lamp"} ] } ] } ]
})";

const char* const c_rig = R"({
  "device": { "type": "rig", "broker": "mqtt:\/\/lab", "rig": "bench-7",
              "lines": [ {"name": "lamp", "line": "line0"}, {"name": "door", "direction": "in"} ] },
  "tools": [ { "name": "T", "id": "{4b7a1c6e-0d52-4f3b-9a51-6f0c2f9d7a10}", "plugin": "p_tool_gpio",
               "channels": [ { "id": "A", "value": [ {"id": "type", "value": "digitalInput"},
                                                     {"id": "direction", "value": "out"},
                                                     {"id": "link", "value": "lamp"} ] } ] } ]
})";

QByteArray replaced(QByteArray text, const QByteArray& part, const QByteArray& replacement)
{
    return text.replace(part, replacement);
}

BenchRun runWith(const QByteArray& text)
{
    return runBench({"--config"_s, temporaryFile(text), "run"_s, "getValue"_s, "channel=A"_s});
}

/// The rows of configurations that are right but for one part, which is replaced; with ' for ".
class Mistakes
{
public:
    explicit Mistakes(const QByteArray& right)
        : m_right(right)
    {}

    void operator()(const char* name, const char* part, const char* replacement, const char* message) const
    {
        const auto json = [](QByteArray text) { return text.replace('\'', '"'); };
        m_row(name, replaced(m_right, json(part), json(replacement)), json(message));
    }

private:
    const QByteArray m_right;
    const Rows<QByteArray, QByteArray> m_row{"text", "message"};
};

} // namespace

/// Configurations, right and wrong; of GPIO lines, as far as no kernel is needed.
class TestConfiguration : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aRightConfigurationIsTaken()
    {
        QCOMPARE(runWith(c_simulated), (BenchRun{0, "[1] getValue: value=0\n"}));
    }

    void aMistakeNamesFilePlaceAndExpectation_data()
    {
        const Mistakes row(c_simulated);
        row("JSON", "'tools'", "tools", "expected JSON, found tools: [ { 'name': '");
        row("schema", "'device'", "'$schema': 7, 'device'", "$schema: expected a text, found 7");
        row("unknown entry", "'wires'", "'wire'",
            "device.wire: unknown entry, expected one of: type, connected, lines, wires, faults");
        row("entry without a name", "'device'", "'': 1, 'device'",
            "'': unknown entry, expected one of: device, tools, $schema");
        row("inner entry without a name", "'wires'", "''",
            "device.'': unknown entry, expected one of: type, connected, lines, wires, faults");
        row("control characters", "'wires'", "'wi\\u0000\\n\\u001bres'",
            "device.wi\\u0000\\u000a\\u001bres: unknown entry");
        row("device type", "'simulated'", "'quantum'",
            "device.type: expected one of 'simulated', 'gpiochip', 'rig', found 'quantum'");
        row("device type missing", "'type': 'simulated',", "",
            "device.type: expected one of 'simulated', 'gpiochip', 'rig', found nothing");
        row("no lines", "[ {'name': 'a'}, {'name': 'b'}, {'name': 'c', 'kind': 'analog'} ]", "[]",
            "device.lines: expected at least one line");
        row("line without a name", "{'name': 'b'}", "{}",
            "device.lines[1].name: expected a text, found nothing");
        row("line twice", "{'name': 'b'}", "{'name': 'a'}",
            "device.lines[1].name: expected a name of its own, 'a' is taken");
        row("line that is no object", "{'name': 'b'}", "'b'",
            "device.lines[1]: expected an object, found 'b'");
        row("kind", "'analog'", "'analogue'",
            "device.lines[2].kind: expected one of 'digital', 'analog', found 'analogue'");
        row("level out of range", "{'name': 'b'}", "{'name': 'b', 'level': 2}",
            "device.lines[1].level: expected a whole number from 0 to 1, found 2");
        row("level that is no whole number", "'kind': 'analog'", "'kind': 'analog', 'level': 1.5",
            "device.lines[2].level: expected a whole number from 0 to 65535, found 1.5");
        row("waveform on a digital line", "{'name': 'b'}", "{'name': 'b', 'waveform': {'shape': 'sine'}}",
            "device.lines[1].waveform: expected on an analogue input only");
        row("waveform upside down", "'kind': 'analog'", "'kind': 'analog', 'waveform': {'low': 5, 'high': 4}",
            "device.lines[2].waveform.high: expected at least 'low', 5");
        row("waveform shape", "'kind': 'analog'", "'kind': 'analog', 'waveform': {'shape': 'square'}",
            "device.lines[2].waveform.shape: expected one of 'constant', 'ramp', 'sine', 'noise', found "
            "'square'");
        row("wire from nowhere", "'from': 'a'", "'from': 'x'",
            "device.wires[0].from: expected the name of a line, found 'x'");
        row("wire to an output", "{'name': 'b'}", "{'name': 'b', 'direction': 'out'}",
            "device.lines[1].direction: a wire leads to 'b', expected 'in'");
        row("two wires to one line", "[ {'from': 'a', 'to': 'b'} ]",
            "[ {'from': 'a', 'to': 'b'}, {'from': 'c', 'to': 'b'} ]",
            "device.wires[1].to: 'b' has a wire already, expected a free input");
        row("wires in a loop", "[ {'from': 'a', 'to': 'b'} ]",
            "[ {'from': 'a', 'to': 'b'}, {'from': 'b', 'to': 'a'} ]",
            "device.wires[1].to: the wires of 'a' form a loop");
        row("wires in a longer loop", "[ {'from': 'a', 'to': 'b'} ]",
            "[ {'from': 'a', 'to': 'b'}, {'from': 'b', 'to': 'c'}, {'from': 'c', 'to': 'a'} ]",
            "device.wires[2].to: the wires of 'a' form a loop");
        row("wire delay", "'to': 'b'", "'to': 'b', 'delayMs': -1",
            "device.wires[0].delayMs: expected a whole number from 0 to 3600000, found -1");
        row("wire inversion", "'to': 'b'", "'to': 'b', 'inverted': 1",
            "device.wires[0].inverted: expected true or false, found 1");
        row("wire to a waveform", "'kind': 'analog'} ],\n              'wires': [ {'from': 'a', 'to': 'b'}",
            "'kind': 'analog', 'waveform': {}} ], 'wires': [ {'from': 'a', 'to': 'c'}",
            "device.wires[0].to: 'c' follows a waveform, expected a free input");
        row("fault without a kind", "'wires'", "'faults': [ {'line': 'a'} ], 'wires'",

            "device.faults[0].kind: expected one of 'silent', 'late', 'wrong', 'refused', found nothing");
        row("fault", "'wires'", "'faults': [ {'kind': 'moody'} ], 'wires'",
            "device.faults[0].kind: expected one of 'silent', 'late', 'wrong', 'refused', found 'moody'");
        row("fault of an unknown instruction", "'wires'", "'faults': [ {'instruction': 'sing'} ], 'wires'",
            "device.faults[0].instruction: expected one of 'getValue', 'setValues', 'setBlink', "
            "'listenEvents', 'listenToAll', found 'sing'");
        row("no tools", "'tools': [", "'tools': [], 'toolz': [",
            "toolz: unknown entry, expected one of: device, tools, $schema");
        row("another entry", "'tools': [", "'tools': {}, 'x': [",
            "x: unknown entry, expected one of: device, tools, $schema");
        row("lines that are no list", "'lines': [", "'lines': {}, 'x': [",
            "device.lines: expected a list, found {}");
        row("tool id", "{4b7a1c6e-0d52-4f3b-9a51-6f0c2f9d7a10}", "seven",
            "tools[0].id: expected a uuid in braces, found 'seven'");
        row("tool name twice", "'tools': [",
            "'tools': [ {'name': 'T', 'id': '{00000000-0000-4000-8000-000000000001}', 'plugin': "
            "'p_tool_gpio', 'channels': []},",
            "tools[1].name: expected a name of its own, 'T' is taken");
        row("tool id twice", "'tools': [",
            "'tools': [ {'name': 'U', 'id': '{4b7a1c6e-0d52-4f3b-9a51-6f0c2f9d7a10}', 'plugin': "
            "'p_tool_gpio', 'channels': []},",
            "tools[1].id: expected an identifier of its own, '{4b7a1c6e-0d52-4f3b-9a51-6f0c2f9d7a10}' is "
            "taken");
        row("channel without id", "'id': 'A',", "",
            "tools[0].channels[0].id: expected a text, found nothing");
        row("unknown entry of a channel", "'id': 'A',", "'id': 'A', 'visibilty': 'public',",
            "tools[0].channels[0].visibilty: unknown entry, expected one of: id, name, visibility, value");
        row("visibility", "'id': 'A',", "'id': 'A', 'visibility': 'Public',",
            "tools[0].channels[0].visibility: expected one of 'public', 'private', 'hidden', found 'Public'");
        row("type twice", "{'id': 'type'", "{'id': 'type', 'value': 'digitalInput'}, {'id': 'type'",
            "tools[0].channels[0].value[1].id: expected 'type' once");
        row("entry of the plugin twice", "{'id': 'type'", "{'id': 'x'}, {'id': 'x'}, {'id': 'type'",
            "tools[0].channels[0].value[1].id: expected 'x' once");
        row("direction that does not suit the type", "'value': 'out'", "'value': 'in'",
            "tools[0].channels[0].value: channel 'A': expected the 'direction' 'out' of a channel of the "
            "type 'digitalInput', found 'in'");
        row("no tool", "'tools': [", "'tools': [], 'tools': [ ], 'x': [", "x: unknown entry");
        row("channel twice", "'channels': [", "'channels': [ {'id': 'A'},",
            "tools[0].channels[1].id: expected an identifier of its own, 'A' is taken");
        row("channel type", "'digitalInput'", "'DigitalInput'",
            "tools[0].channels[0].value[0].value: expected one of 'analogInput', 'analogOutput', "
            "'digitalInput', 'digitalOutput', found 'DigitalInput'");
        row("channel direction", "'value': 'out'", "'value': 'up'",
            "tools[0].channels[0].value[1].value: expected one of 'in', 'out', found 'up'");
        row("channel link", "'value': 'a'", "'value': 'z'",
            "tools[0].channels[0].value: channel 'A': expected 'link' to name a line of the device, found "
            "'z'");
        row("output channel on an input line", "'value': 'a'", "'value': 'b'",
            "tools[0].channels[0].value: channel 'A': 'direction' is 'out', expected 'link' to name an "
            "output line, 'b' is an input");
        row("another shape", c_simulated, "[]", "expected an object");
        row("a device that is no object", c_simulated, "{'device': 5, 'tools': []}",
            "device: expected an object, found 5");
    }

    void aMistakeNamesFilePlaceAndExpectation()
    {
        QFETCH(QByteArray, text);
        QFETCH(QByteArray, message);
        const QString file = temporaryFile(text);
        const BenchRun run = runBench({"--config"_s, file, "channels"_s});
        QCOMPARE(run, (BenchRun{2, "", run.errors}));
        const QRegularExpression told(
            "^appvantor: %1(:\\d+:\\d+)?: %2"_s.arg(QRegularExpression::escape(file),
                                                    QRegularExpression::escape(QString::fromUtf8(message))),
            QRegularExpression::MultilineOption);
        QVERIFY2(told.match(QString::fromUtf8(run.errors)).hasMatch(), run.errors.constData());
    }

    void aMistakeInALineOfAChipNamesPlaceAndExpectation_data()
    {
        const Mistakes row(c_chips);
        row("unknown entry", "'bias'", "'pull'",
            "device.lines[1].pull: unknown entry, expected one of: name, chip, line, direction, activeLow, "
            "bias, drive, level, onReturn, debounceUs, clock, kind");
        row("entry of the simulated board", "'lines'", "'wires': [], 'lines'",
            "device.wires: unknown entry, expected one of: type, lines");
        row("no lines", "'lines'", "'lines': [], 'type2'", "device.lines: expected at least one line");
        row("offset without a chip", "'chip': 'no-such-chip', 'line': 3,", "'line': 3,",
            "device.lines[0].chip: expected the chip of line 3");
        row("return", "'direction': 'out'", "'direction': 'out', 'onReturn': 'off'",
            "device.lines[0].onReturn: expected one of 'configured', 'restore', 'leave', found 'off'");
        row("return of an input", "'bias': 'pull-up'", "'onReturn': 'leave'",
            "device.lines[1].onReturn: expected on an output only");
        row("clock", "'bias': 'pull-up'", "'clock': 'tai'",
            "device.lines[1].clock: expected one of 'monotonic', 'realtime', 'hte', found 'tai'");
        row("clock of an output", "'direction': 'out'", "'direction': 'out', 'clock': 'realtime'",
            "device.lines[0].clock: expected on an input only");
        row("name twice", "'name': 'button'", "'name': 'lamp'",
            "device.lines[1].name: expected a name of its own, 'lamp' is taken");
        row("line twice", "'line': 'GPIO4'", "'line': 3",
            "device.lines[1].line: line '3' of the chip 'no-such-chip' is used already, expected another");
        row("offset", "'line': 3", "'line': -1",
            "device.lines[0].line: expected a whole number from 0 to 65535, found -1");
        row("direction", "'out'},", "'both'},",
            "device.lines[0].direction: expected one of 'in', 'out', found 'both'");
        row("bias", "'pull-up'", "'up'",
            "device.lines[1].bias: expected one of 'as-is', 'pull-up', 'pull-down', 'none', found 'up'");
        row("drive", "'direction': 'out'", "'direction': 'out', 'drive': 'hard'",
            "device.lines[0].drive: expected one of 'push-pull', 'open-drain', 'open-source', found 'hard'");
        row("drive of an input", "'bias': 'pull-up'", "'drive': 'open-drain'",
            "device.lines[1].drive: expected on an output only");
        row("level of an input", "'bias': 'pull-up'", "'level': 1",
            "device.lines[1].level: expected on an output only");
        row("debounce of an output", "'direction': 'out'", "'direction': 'out', 'debounceUs': 10",
            "device.lines[0].debounceUs: expected on an input only");
        row("debounce", "'bias': 'pull-up'", "'debounceUs': -5",
            "device.lines[1].debounceUs: expected a whole number from 0 to 1000000, found -5");
        row("active-low", "'bias': 'pull-up'", "'activeLow': 1",
            "device.lines[1].activeLow: expected true or false, found 1");
        row("analogue line", "'bias': 'pull-up'", "'kind': 'analog'",
            "device.lines[1].kind: line 'GPIO4' of the chip 'no-such-chip': a GPIO line is digital, expected "
            "'digital'");
        row("analogue channel", "'digitalInput'", "'analogInput'",
            "tools[0].channels[0].value: channel 'A': 'type' is 'analogInput', but 'lamp' is a line of a "
            "GPIO chip and digital, expected 'digitalInput' or 'digitalOutput'");
        row("output of an input", "'value': 'lamp'", "'value': 'button'",
            "tools[0].channels[0].value: channel 'A': 'direction' is 'out', expected 'link' to name an "
            "output line, 'button' is an input");
    }

    void aMistakeInALineOfAChipNamesPlaceAndExpectation() { aMistakeNamesFilePlaceAndExpectation(); }

    void aMistakeInALineOfARigNamesPlaceAndExpectation_data()
    {
        const Mistakes row(c_rig);
        row("unknown entry", "'rig': 'bench-7'", "'rig': 'bench-7', 'user': 'ada'",
            "device.user: unknown entry, expected one of: type, broker, rig, login, ca, cert, key, lines");
        row("no broker", "'broker': 'mqtt:\\/\\/lab', ", "", "device.broker: expected a text, found nothing");
        row("another protocol", "mqtt:", "http:",
            "device.broker: expected mqtt://HOST[:PORT]/[RIG] or mqtts://…, found 'http://lab'");
        row("no rig", "'rig': 'bench-7',", "", "device.rig: expected the name of a rig");
        row("no lines", "'lines'", "'lines': [], 'type2'", "device.lines: expected at least one line");
        row("name twice", "'door'", "'lamp'",
            "device.lines[1].name: expected a name of its own, 'lamp' is taken");
        row("line twice", "'name': 'door'", "'name': 'door', 'line': 'line0'",
            "device.lines[1].line: expected a line of its own, 'line0' is taken");
        row("kind", "'line': 'line0'", "'kind': 'analogue'",
            "device.lines[0].kind: expected one of 'digital', 'analog', found 'analogue'");
        row("output of an input", "'value': 'lamp'", "'value': 'door'",
            "tools[0].channels[0].value: channel 'A': 'direction' is 'out', expected 'link' to name an "
            "output line, 'door' is an input");
    }

    void aMistakeInALineOfARigNamesPlaceAndExpectation() { aMistakeNamesFilePlaceAndExpectation(); }

    void aMistakeStandsAtItsLineAndColumn_data()
    {
        const Rows<QByteArray, QByteArray> row("text", "place");
        row("an entry", "{\n  \"device\": 5\n}", "2:3: device: ");
        row("an element of a list",
            "{ \"device\": { \"type\": \"simulated\", \"lines\": [\n 7 , {}\n, []] } }",
            "2:2: device.lines[0]: ");
        row("an element after others",
            "{ \"device\": { \"type\": \"simulated\", \"lines\": [\n 7 , {}\n, []] } }",
            "3:3: device.lines[2]: ");
        row("an entry that is missing, that of its object",
            "{ \"device\": { \"type\": \"simulated\", \"lines\": [\n 7 , {}\n, []] } }",
            "2:6: device.lines[1].name: ");
        row("a key that stands twice", "{ \"tools\": 5,\n \"t\\u006fols\": 6 }",
            "2:2: the entry \"tools\" stands here for the second time, expected it once");
        row("a comma too many", "{ \"device\": [1,,2] }", "1:16: expected JSON, found ,2] }");
        row("a bracket that is missing", "{ \"device\": [1", "1:15: expected JSON, found nothing more");
        row("a text without an end", "{ \"device\": \"a\n", "1:13: expected JSON, found \"a");
        row("a number beyond all", "{ \"device\": 1e999 }", "1:13: expected JSON, found 1e999 }");
    }

    void aMistakeStandsAtItsLineAndColumn()
    {
        QFETCH(QByteArray, text);
        QFETCH(QByteArray, place);
        const QString file = temporaryFile(text);
        const BenchRun run = runBench({"--config"_s, file, "channels"_s});
        QCOMPARE(run.status, 2);
        QVERIFY2(("\n" + run.errors).contains("\nappvantor: " + file.toUtf8() + ':' + place),
                 run.errors.constData());
    }

    void oneMistakeIsToldOnce_data()
    {
        const Rows<QByteArray, QByteArray, QByteArray> row("text", "part", "replacement");
        const auto chips = [&row](const char* name, const char* part, const char* replacement) {
            row(name, c_chips, part, replacement);
        };
        const auto board = [&row](const char* name, const char* part, const char* replacement) {
            row(name, c_simulated, part, replacement);
        };
        chips("an offset that is none", "\"line\": 3", "\"line\": -1");
        chips("a line that is no name", "\"line\": 3", "\"line\": true");
        chips("a chip that is no name", "\"chip\": \"no-such-chip\", \"line\": 3",
              "\"chip\": 7, \"line\": 3");
        chips("a direction that is none", "\"direction\": \"out\"}", "\"direction\": \"up\", \"level\": 1}");
        chips("a name that is missing", "\"name\": \"lamp\", ", "");
        chips("names that are missing", "\"name\": \"button\", ", "\"name\": 1, ");
        board("the type", "\"simulated\"", "\"quantum\"");
        board("no type", "\"type\": \"simulated\",", "");
        row("no device", "{\"device\": 5, \"tools\": []}", "", "");
        board("the kind of a fault", "\"wires\"", "\"faults\": [ {\"kind\": 1} ], \"wires\"");
        board("no kind of a fault", "\"wires\"", "\"faults\": [ {} ], \"wires\"");
        board("the line of a fault", "\"wires\"",
              "\"faults\": [ {\"kind\": \"late\", \"line\": \"\"} ], \"wires\"");
        board("the kind of a line", "\"analog\"", "\"analogue\", \"level\": 5, \"waveform\": {}");
        board("the name of a line", "\"name\": \"a\"", "\"name\": 5");
        board("the direction of a line", "{\"name\": \"a\"}", "{\"name\": \"a\", \"direction\": \"inn\"}");
    }

    void oneMistakeIsToldOnce()
    {
        QFETCH(QByteArray, text);
        QFETCH(QByteArray, part);
        QFETCH(QByteArray, replacement);
        const BenchRun run = runWith(replaced(text, part, replacement));
        QCOMPARE(run, (BenchRun{2, "", run.errors}));
        QVERIFY2(run.errors.count('\n') == 1, run.errors.constData());
    }

    void allMistakesAreToldAtOnce()
    {
        const BenchRun run =
            runWith(replaced(replaced(c_simulated, "\"analog\"", "\"wooden\""), "\"digitalInput\"", "7"));
        QCOMPARE(run.status, 2);
        QCOMPARE(run.errors.count('\n'), 2);
    }

    void aPluginThatIsNotThereIsTold_data()
    {
        const Rows<QByteArray, QByteArray> row("plugin", "file");
        row("by its name", "p_tool_piano", "/plugins/libp_tool_piano.so");
        row("by its file beside the configuration", "mine.so",
            QFileInfo(temporaryFile({})).path().toUtf8() + "/mine.so");
        row("by its file, from the configuration on", "./mine.so",
            QFileInfo(temporaryFile({})).path().toUtf8() + "/mine.so");
    }

    void aPluginThatIsNotThereIsTold()
    {
        QFETCH(QByteArray, plugin);
        QFETCH(QByteArray, file);
        const BenchRun run = runWith(replaced(c_simulated, "p_tool_gpio", plugin));
        QCOMPARE(run.status, 2);
        QVERIFY2(run.errors.contains(file + ": no such plugin library"), run.errors.constData());
    }

    void aChipThatCannotBeOpenedEndsWithStatus3_data()
    {
        const Rows<QByteArray, QByteArray> row("chip", "message");
        row("no chip", "no-such-chip",
            "line \"lamp\": there is no GPIO chip \"no-such-chip\"; \"appvantor discover\" lists those of "
            "this machine");
        row("a file that is no chip", "/dev/null", "the chip /dev/null cannot be opened: ");
    }

    void aChipThatCannotBeOpenedEndsWithStatus3()
    {
        QFETCH(QByteArray, chip);
        QFETCH(QByteArray, message);
        const BenchRun run =
            runWith(replaced(c_chips, "no-such-chip\", \"line\": 3", chip + "\", \"line\": 3"));
        QCOMPARE(run.status, 3);
        QVERIFY2(run.errors.contains(message), run.errors.constData());
    }

    void aConfigurationForAnUnknownChipIsRefused()
    {
        const BenchRun run = runBench("discover --config-for no-such-chip"_words);
        QCOMPARE(run, (BenchRun{3, "", run.errors}));
        QVERIFY2(run.errors.contains("GPIO chip"), run.errors.constData());
    }
};

QTEST_GUILESS_MAIN(TestConfiguration)
#include "test_configuration.moc"
