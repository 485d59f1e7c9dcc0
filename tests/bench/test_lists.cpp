#include "bench_process.h"
#include "literals.h"

#include <QJsonArray>
#include <QtTest>

/// The lists of commands and channels.
class TestLists : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void commandsAreListedInTheOrderOfTheirDeclaration();
    void aCommandIsListedWithItsExactTexts_data();
    void aCommandIsListedWithItsExactTexts();
    void commandsAreListedForPeople();
    void channelsAreListedWithTheirPresentValues();
    void channelsAreListedForPeople();
    void aChannelThatCannotBeReadIsListedWithTheReason_data();
    void aChannelThatCannotBeReadIsListedWithTheReason();
};

void TestLists::commandsAreListedInTheOrderOfTheirDeclaration()
{
    const BenchRun run = runBench({"commands"_s, "--json"_s});
    QCOMPARE(run.status, 0);
    QStringList names;
    for (const QJsonObject& command : run.json()) {
        names.append(command.value(QLatin1String("name")).toString());
        QCOMPARE(command.value(QLatin1String("tool")).toString(), "Front panel"_s);
    }
    QCOMPARE(names, QStringList({"setValue"_s, "switchValue"_s, "getValue"_s, "startListening"_s, "init"_s,
                                 "listenToAll"_s}));
}

void TestLists::aCommandIsListedWithItsExactTexts_data()
{
    QTest::addColumn<QByteArray>("line");
    const auto row = [](const char* name, const char* rest) {
        QTest::newRow(name) << QByteArray(R"({"tool":"Front panel","name":")") + name + R"(",)" + rest;
    };
    const QByteArray channel = R"({"name":"channel","type":"strg","description":"Channel","default":null})";
    const QByteArray doneOk =
        R"("results":[{"name":"doneOk","type":"bool","description":"Job done","default":false}]})";
    row("setValue",
        QByteArray(R"("stop":"stopTheCommand","description":"Set the value of a GPIO pin","parameters":[)" +
                   channel +
                   R"(,{"name":"value","type":"ui16","description":"Value","default":1})"
                   R"(,{"name":"state","type":"strg","description":"ON, OFF, PULSE or BLINK","default":""})"
                   R"(,{"name":"duration","type":"int","description":"Cycle duration","default":1000})"
                   R"(,{"name":"dutyCycle","type":"int","description":"Duty cycle in %","default":100}],)" +
                   doneOk));
    row("switchValue",
        QByteArray(R"("stop":null,"description":"Set the value of a GPIO pin","parameters":[)" + channel +
                   "]," + doneOk));
    row("getValue",
        QByteArray(R"("stop":null,"description":"Get the value of a GPIO pin","parameters":[)" + channel +
                   R"(],"results":[{"name":"value","type":"ui16","description":"Value","default":null}]})"));
    row("startListening",
        QByteArray(
            R"("stop":"stopListening","description":"Listen events from the gpio channel","parameters":[)" +
            channel +
            R"(,{"name":"edge","type":"strg","description":"Edge detection mode: RE: Rising Edge, FE: falling )"
            "Edge, HL: hight level, LL: low level, default: d\xC3\xA9"
            R"(activated","default":""}],"results":[{"name":"value","type":"ui16","description":"Value",)"
            R"("default":null},{"name":"lastValue","type":"ui16","description":"Last value","default":null}]})"));
    row("init", QByteArray(R"("stop":null,"description":"Set initia values of a GPIO pin","parameters":[],)" +
                           doneOk));
    row("listenToAll",
        R"("stop":"stopListening","description":"Listen events from the gpio channel","parameters":[],"results":[)"
        R"({"name":"value","type":"vart","description":"All gpio value in decimal","default":null}]})");
}

void TestLists::aCommandIsListedWithItsExactTexts()
{
    QFETCH(QByteArray, line);
    const BenchRun run = runBench({"--json"_s, "commands"_s});
    QVERIFY2(run.output.split('\n').contains(line), run.output.constData());
}

void TestLists::commandsAreListedForPeople()
{
    const BenchRun run = runBench({"commands"_s});
    QCOMPARE(run.status, 0);
    QVERIFY(run.output.contains("setValue: Set the value of a GPIO pin, stopped by stopTheCommand\n"
                                "  parameter channel (strg): Channel\n"
                                "  parameter value (ui16): Value [default: 1]\n"));
    QVERIFY(run.output.contains("  result doneOk (bool): Job done [default: false]\n"));
}

void TestLists::channelsAreListedWithTheirPresentValues()
{
    const BenchRun run = runBench({"channels"_s, "--json"_s});
    QCOMPARE(run.status, 0);
    QCOMPARE(run.json().size(), 10);
    const QByteArray start =
        R"({"id":"START","name":"Start button","visibility":"public","type":"digitalInput",)"
        R"("direction":"out","link":"line0","value":0})";
    const QByteArray ready = R"("type":"digitalOutput","direction":"in","link":"line5","value":1})";
    QVERIFY(run.output.contains(start));
    QVERIFY(run.output.contains(ready));
}

void TestLists::channelsAreListedForPeople()
{
    const QStringList lines = runBench({"channels"_s}).lines();
    QCOMPARE(lines.size(), 11);
    QCOMPARE(lines.first(), "CHANNEL      TYPE           DIRECTION LINK       VALUE   NAME"_s);
    QCOMPARE(lines.at(1), "START        digitalInput   out       line0      0       Start button"_s);
}

void TestLists::aChannelThatCannotBeReadIsListedWithTheReason_data()
{
    QTest::addColumn<QByteArray>("device");
    QTest::addColumn<QByteArray>("failure");
    QTest::addColumn<int>("status");
    QTest::newRow("refused") << QByteArray(R"("faults": [ {"kind": "refused", "instruction": "getValue"} ])")
                             << QByteArray(R"("kind":"refusedByDevice",)"
                                           R"("reason":"the board refuses \"getValue\" of channel \"a\"")")
                             << 1;
    QTest::newRow("away") << QByteArray(R"("connected": false)")
                          << QByteArray(
                                 R"("kind":"deviceUnreachable","reason":"the simulated board is unplugged")")
                          << 3;
}

void TestLists::aChannelThatCannotBeReadIsListedWithTheReason()
{
    QFETCH(QByteArray, device);
    QFETCH(QByteArray, failure);
    QFETCH(int, status);
    const QString file = boardFile(R"("lines": [ {"name": "a"} ], )" + device,
                                   R"({"id": "A", "value": [ {"id": "link", "value": "a"} ]}, {"id": "B"})");
    const BenchRun run = runBench({"--config"_s, file, "--json"_s, "channels"_s});
    QCOMPARE(run.status, status);
    const QByteArray unlinked = R"({"id":"B","name":"","visibility":"","type":"","direction":"","link":null,)"
                                R"("value":null})";
    QVERIFY2(run.output.contains(R"("value":null,)" + failure + "}\n"), run.output.constData());
    QVERIFY(run.output.contains(unlinked));
}

QTEST_GUILESS_MAIN(TestLists)
#include "test_lists.moc"
