#include "bench_process.h"
#include "literals.h"

#include <QtTest>

namespace {

/// A configuration of GPIO lines that is right, with one part of it replaced.
QByteArray configurationWith(const QByteArray& part, const QByteArray& replacement)
{
    QByteArray text = R"({
  "device": { "type": "gpiochip",
              "lines": [ {"name": "lamp", "chip": "no-such-chip", "line": 3, "direction": "out"},
                         {"name": "button", "chip": "no-such-chip", "line": "GPIO4", "bias": "pull-up"} ] },
  "tools": [ { "name": "T", "id": "{4b7a1c6e-0d52-4f3b-9a51-6f0c2f9d7a10}", "plugin": "p_tool_gpio",
               "channels": [ { "id": "A", "value": [ {"id": "type", "value": "digitalInput"},
                                                     {"id": "direction", "value": "out"},
                                                     {"id": "link", "value": "lamp"} ] } ] } ]
})";
    return text.replace(part, replacement);
}

BenchRun runWith(const QByteArray& text)
{
    return runBench({"--config"_s, temporaryFile(text), "run"_s, "getValue"_s, "channel=A"_s});
}

} // namespace

/// Configurations of GPIO lines, as far as no kernel is needed.
class TestGpioConfiguration : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aMistakeNamesPlaceAndExpectation_data();
    void aMistakeNamesPlaceAndExpectation();
    void aChipThatIsNotThereEndsWithStatus3();
    void aChipFileThatIsNoChipIsTold();
    void aConfigurationForAnUnknownChipIsRefused();
};

void TestGpioConfiguration::aMistakeNamesPlaceAndExpectation_data()
{
    QTest::addColumn<QByteArray>("part");
    QTest::addColumn<QByteArray>("replacement");
    QTest::addColumn<QByteArray>("message");
    const auto row = [](const char* name, const char* part, const char* replacement, const char* message) {
        QTest::newRow(name) << QByteArray(part) << QByteArray(replacement) << QByteArray(message);
    };
    row("unknown entry", "\"bias\"", "\"pull\"",
        "device.lines[1].pull: unknown entry, expected one of: name, chip, line, direction, activeLow, bias, "
        "drive, level, onReturn, debounceUs, clock, kind");
    row("entry of the simulated board", "\"lines\"", "\"wires\": [], \"lines\"",
        "device.wires: unknown entry, expected one of: type, lines");
    row("no lines", "\"lines\"", "\"lines\": [], \"type2\"", "device.lines: expected at least one line");
    row("offset without a chip", "\"chip\": \"no-such-chip\", \"line\": 3,", "\"line\": 3,",
        "device.lines[0].chip: expected the chip of line 3");
    row("return", "\"direction\": \"out\"", R"("direction": "out", "onReturn": "off")",
        "device.lines[0].onReturn: expected one of \"configured\", \"restore\", \"leave\", found \"off\"");
    row("return of an input", "\"bias\": \"pull-up\"", "\"onReturn\": \"leave\"",
        "device.lines[1].onReturn: expected on an output only");
    row("clock", "\"bias\": \"pull-up\"", "\"clock\": \"tai\"",
        "device.lines[1].clock: expected one of \"monotonic\", \"realtime\", \"hte\", found \"tai\"");
    row("clock of an output", "\"direction\": \"out\"", R"("direction": "out", "clock": "realtime")",
        "device.lines[0].clock: expected on an input only");
    row("name twice", "\"name\": \"button\"", "\"name\": \"lamp\"",
        "device.lines[1].name: expected a name of its own, \"lamp\" is taken");
    row("line twice", "\"line\": \"GPIO4\"", "\"line\": 3",
        "device.lines[1].line: line \"3\" of the chip \"no-such-chip\" is used already, expected another");
    row("offset", "\"line\": 3", "\"line\": -1",
        "device.lines[0].line: expected a whole number from 0 to 65535, found -1");
    row("direction", "\"out\"},", "\"both\"},",
        "device.lines[0].direction: expected one of \"in\", \"out\", found \"both\"");
    row("bias", "\"pull-up\"", "\"up\"",
        "device.lines[1].bias: expected one of \"as-is\", \"pull-up\", \"pull-down\", \"none\", found "
        "\"up\"");
    row("drive", "\"direction\": \"out\"", R"("direction": "out", "drive": "hard")",
        "device.lines[0].drive: expected one of \"push-pull\", \"open-drain\", \"open-source\", found "
        "\"hard\"");
    row("drive of an input", "\"bias\": \"pull-up\"", "\"drive\": \"open-drain\"",
        "device.lines[1].drive: expected on an output only");
    row("level of an input", "\"bias\": \"pull-up\"", "\"level\": 1",
        "device.lines[1].level: expected on an output only");
    row("debounce of an output", "\"direction\": \"out\"", R"("direction": "out", "debounceUs": 10)",
        "device.lines[0].debounceUs: expected on an input only");
    row("debounce", "\"bias\": \"pull-up\"", "\"debounceUs\": -5",
        "device.lines[1].debounceUs: expected a whole number from 0 to 1000000, found -5");
    row("active-low", "\"bias\": \"pull-up\"", "\"activeLow\": 1",
        "device.lines[1].activeLow: expected true or false, found 1");
    row("analogue line", "\"bias\": \"pull-up\"", "\"kind\": \"analog\"",
        "device.lines[1].kind: line \"GPIO4\" of the chip \"no-such-chip\": a GPIO line is digital, expected "
        "\"digital\"");
    row("analogue channel", "\"digitalInput\"", "\"analogInput\"",
        "tools[0].channels[0].value: channel \"A\": \"type\" is \"analogInput\", but \"lamp\" is a line of a "
        "GPIO chip and digital, expected \"digitalInput\" or \"digitalOutput\"");
    row("output of an input", "\"value\": \"lamp\"", "\"value\": \"button\"",
        "tools[0].channels[0].value: channel \"A\": \"direction\" is \"out\", expected \"link\" to name an "
        "output line, \"button\" is an input");
}

void TestGpioConfiguration::aMistakeNamesPlaceAndExpectation()
{
    QFETCH(QByteArray, part);
    QFETCH(QByteArray, replacement);
    QFETCH(QByteArray, message);
    const BenchRun run = runWith(configurationWith(part, replacement));
    QCOMPARE(run.status, 2);
    QVERIFY2(run.errors.contains(": " + message + '\n'), run.errors.constData());
}

void TestGpioConfiguration::aChipThatIsNotThereEndsWithStatus3()
{
    const BenchRun run = runWith(configurationWith("", ""));
    QCOMPARE(run.status, 3);
    QVERIFY2(run.errors.contains("line \"lamp\": there is no GPIO chip \"no-such-chip\"; \"appvantor "
                                 "discover\" lists those of this machine"),
             run.errors.constData());
}

void TestGpioConfiguration::aChipFileThatIsNoChipIsTold()
{
    const BenchRun run =
        runWith(configurationWith("\"no-such-chip\", \"line\": 3", "\"/dev/null\", \"line\": 3"));
    QCOMPARE(run.status, 3);
    QVERIFY2(run.errors.contains("the chip /dev/null cannot be opened: "), run.errors.constData());
}

void TestGpioConfiguration::aConfigurationForAnUnknownChipIsRefused()
{
    const BenchRun run = runBench({"discover"_s, "--config-for"_s, "no-such-chip"_s});
    QCOMPARE(run.status, 3);
    QCOMPARE(run.output, QByteArray());
    QVERIFY2(run.errors.contains("GPIO chip"), run.errors.constData());
}

QTEST_GUILESS_MAIN(TestGpioConfiguration)
#include "test_gpio_configuration.moc"
