#include "bench_process.h"
#include "literals.h"
#include "rows.h"

#include <QTemporaryDir>

#include <csignal>
#include <memory>
#include <vector>

namespace {

QString script(const QByteArray& lines)
{
    return temporaryFile(lines, "orders"_s);
}

/// Where a line of file stands, as messages begin.
QByteArray at(const QString& file, int line)
{
    return "appvantor: " + file.toUtf8() + ':' + QByteArray::number(line) + ": ";
}

/// A board with a line that follows another one 60 ms later, and more entries.
QStringList followingBoard(const QByteArray& more = QByteArray())
{
    return {"--config"_s, boardFile(R"("lines": [ {"name": "a"}, {"name": "b"} ],
                         "wires": [ {"from": "a", "to": "b", "delayMs": 60} ])" +
                                        more,
                                    R"({"id": "A", "value": [ {"id": "type", "value": "digitalInput"},
                                                {"id": "direction", "value": "out"},
                                                {"id": "link", "value": "a"} ]},
                         {"id": "B", "value": [ {"id": "type", "value": "digitalOutput"},
                                                {"id": "direction", "value": "in"},
                                                {"id": "link", "value": "b"} ]})")};
}

} // namespace

/// Scripts from files, where they end, what they expect, and what is reported of them.
class TestScriptFiles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aScriptEndsAtItsFirstFailure_data()
    {
        const Rows<QByteArray, int, QByteArray> row("line", "status", "message");
        row("an order that fails", "setValue channel=ALARM state=ON", 1,
            "[1] setValue failed: the command refused to run");
        row("a level that is not there", "expect DOOR=ON", 1, "expected DOOR=ON, found OFF");
        row("a line that is wrong", "sleep now", 2,
            "expected milliseconds from 0 to 86400000, found \"now\"");
    }

    void aScriptEndsAtItsFirstFailure()
    {
        QFETCH(QByteArray, line);
        QFETCH(int, status);
        QFETCH(QByteArray, message);
        const QByteArray lines = "sleep 1\n" + line + "\ngetValue channel=DOOR\nnosuch\n";
        const QStringList options = "--log-level off shell"_words;
        QCOMPARE(runBench(options, lines), (BenchRun{status, "", "appvantor: <stdin>:2: " + message + '\n'}));
        const QString file = script(lines);
        const QByteArray told = at(file, 2) + message + '\n';
        QCOMPARE(runBench(options + QStringList{file}), (BenchRun{status, "", told}));
        const BenchRun whole = runBench(options + QStringList{file, "--keep-going"_s});
        QVERIFY(whole.errors.startsWith(told + at(file, 4) + "unknown command \"nosuch\""));
        QVERIFY(whole.output.endsWith("] getValue: value=0\n"));
        QCOMPARE(whole.status, 2);
    }

    /// What runs beside fails after some seconds: the scripts wait for that side by side.
    void aScriptEndsWhateverItWaitsFor()
    {
        const QVector<QByteArray> waits = {"sleep 80000000", "wait 1",
                                           "setValue channel=SOUND state=PULSE duration=60000",
                                           "expect SOUND=ON within 80000000"};
        QStringList files;
        std::vector<std::unique_ptr<BenchProcess>> scripts;
        for (const QByteArray& wait : waits) {
            files.append(script("startListening channel=SOUND\ngetValue channel=DEAD &\n" + wait +
                                "\ngetValue channel=SOUND\n"));
            scripts.push_back(std::make_unique<BenchProcess>(
                QStringList{"--log-level"_s, "off"_s, "--config"_s, example("fault_injection.json"_s),
                            "shell"_s, files.last()}));
        }
        for (int wait = 0; wait < waits.size(); ++wait) {
            const BenchRun run = scripts.at(static_cast<std::size_t>(wait))->end();
            QVERIFY2(run.status == 1, waits.at(wait));
            QVERIFY2(run.errors.contains(at(files.at(wait), 2) + "[2] getValue failed: no reply"),
                     run.errors);
            QVERIFY2(!run.output.contains("getValue: value"), waits.at(wait));
        }
    }

    void filesShareOneBoardAndItsNames()
    {
        const QString first = script("let LAMP = DOOR\nsetValue channel=LAMP state=ON");
        const QString second = script("repeat 2\nexpect LAMP=ON\nend\nlet LAMP = STOP\n");
        QCOMPARE(runBench({"shell"_s, first, second}),
                 (BenchRun{2, "[1] setValue: doneOk=true\nLAMP=ON\nLAMP=ON\n",
                           at(second, 4) + "\"LAMP\" stands for the channel DOOR already\n"}));
    }

    void wrongBlocksOfFilesAreToldBeforeAnythingRuns()
    {
        const QString first = script("getValue channel=DOOR\nend\nrepeat x\nend\n");
        const QString second = script("getValue channel=DOOR\nrepeat 2\n");
        QCOMPARE(runBench({"shell"_s, "--keep-going"_s, first, second}),
                 (BenchRun{2, "",
                           at(first, 2) + "\"end\" without a \"repeat\"\n" + at(first, 3) +
                               "expected \"repeat N\", N from 1 to 1000000\n" + at(second, 2) +
                               "\"repeat\" without an \"end\"\n"}));
    }

    void aBlockOfStandardInputWaitsForItsEnd()
    {
        BenchProcess bench("shell --echo"_words);
        bench.process().write("repeat 2\ngetValue channel=DOOR\nend\n# after");
        bench.process().closeWriteChannel();
        QCOMPARE(bench.end(), (BenchRun{0, "> getValue channel=DOOR\n[1] getValue: value=0\n"
                                           "> getValue channel=DOOR\n[2] getValue: value=0\n> # after\n"}));
    }

    void pipesAndStandardInputAreFilesToo()
    {
        QCOMPARE(runScript("\"$BENCH\" shell <(echo 'setValue channel=DOOR state=ON') - "
                           "<<< 'expect DOOR=ON'"_s),
                 (BenchRun{0, "[1] setValue: doneOk=true\nDOOR=ON\n"}));
    }

    void filesThatCannotBeReadAreToldBeforeAnythingRuns_data()
    {
        const Rows<QString, QByteArray> row("file", "reason");
        row("missing", "/nowhere/to.orders", "No such file or directory");
        row("folder", "/tmp", "expected a file, found a folder");
    }

    void filesThatCannotBeReadAreToldBeforeAnythingRuns()
    {
        QFETCH(QString, file);
        QFETCH(QByteArray, reason);
        QCOMPARE(runBench({"shell"_s, script("getValue channel=DOOR"), file}),
                 (BenchRun{2, "",
                           "appvantor: " + file.toUtf8() + ": the orders cannot be read: " + reason + '\n'}));
    }

    void aLevelIsFoundByReadingWhereNobodyCanListen_data()
    {
        const Rows<QByteArray> row("more");
        row("it can be listened to", "");
        row("listening is refused", R"(, "faults": [ {"kind": "refused", "instruction": "listenEvents"} ])");
    }

    void aLevelIsFoundByReadingWhereNobodyCanListen()
    {
        QFETCH(QByteArray, more);
        const QByteArray lines = "setValue channel=A state=ON\nexpect B=ON within 60000\n";
        QCOMPARE(runBench(followingBoard(more) + QStringList{"shell"_s}, lines),
                 (BenchRun{0, "[1] setValue: doneOk=true\nB=ON\n"}));
    }

    void aPulseIsNotMissed()
    {
        const QByteArray lines = "setValue channel=A state=PULSE duration=1 &\nexpect B=ON within 60000\n"
                                 "expect B=OFF within 60000\nwait 1\n";
        const BenchRun run = runBench(followingBoard() + QStringList{"shell"_s}, lines);
        QCOMPARE(run, (BenchRun{0, run.output}));
        QVERIFY(run.output.endsWith("B=ON\nB=OFF\n"));
    }

    void aChannelThatCannotBeReadHasItsReason_data()
    {
        const Rows<QByteArray, QByteArray, int, QByteArray> row("more", "line", "status", "complaint");
        row("refused", R"(, "faults": [ {"kind": "refused"} ])", "expect A=OFF within 60000", 1,
            "expected A=OFF within 60000 ms, found nothing: the board refuses \"getValue\" of channel \"a\"");
        row("silent", R"(, "faults": [ {"kind": "silent"} ])", "expect A=OFF within 20", 1,
            "expected A=OFF within 20 ms, found nothing");
        row("unplugged", R"(, "connected": false)", "expect A=OFF", 3,
            "expected A=OFF, found nothing: the simulated board is unplugged");
    }

    void aChannelThatCannotBeReadHasItsReason()
    {
        QFETCH(QByteArray, more);
        QFETCH(QByteArray, line);
        QFETCH(int, status);
        QFETCH(QByteArray, complaint);
        QCOMPARE(runBench(followingBoard(more) + QStringList{"shell"_s}, line),
                 (BenchRun{status, "", "appvantor: <stdin>:1: " + complaint + '\n'}));
    }

    void programsAreToldOfExpectationsToo()
    {
        const BenchRun run =
            runBench("--json shell"_words, "expect ALARM=ON within 60000\nexpect DOOR=ON within 100\n");
        QVector<QJsonObject> lines = run.json();
        for (QJsonObject& line : lines) {
            QVERIFY(line.take("seconds"_s).isDouble());
        }
        const QJsonObject met = {{"type"_s, "expectation"_s},
                                 {"tool"_s, "Front panel"_s},
                                 {"channel"_s, "ALARM"_s},
                                 {"expected"_s, 1},
                                 {"found"_s, 1}};
        const QJsonObject place = {{"file"_s, "<stdin>"_s}, {"line"_s, 2}};
        const QJsonObject unmet = {{"type"_s, "failure"_s},
                                   {"tool"_s, "Front panel"_s},
                                   {"channel"_s, "DOOR"_s},
                                   {"expected"_s, 1},
                                   {"found"_s, 0},
                                   {"kind"_s, "unexpectedLevel"_s},
                                   {"reason"_s, "expected DOOR=ON within 100 ms, found OFF"_s},
                                   {"place"_s, place}};
        QCOMPARE(lines, QVector<QJsonObject>({met, unmet}));
    }

    /// By the schema of such reports, and by a reader of other people.
    void aReportTellsOfEachExpectation()
    {
        const QString shell =
            "cd \"$SCRATCH\"\n"
            "printf '%s\\n' 'repeat 2' ' expect ALARM=ON' end 'expect DOOR=ON' "
            "'setValue channel=\"<&>\" # \1' 'expect DOOR=ON within 1' >a.orders\n"
            "echo 'expect ALARM=1' >b.orders\n"
            "\"$BENCH\" --log-level off shell --keep-going --report r.xml a.orders b.orders "
            ">/dev/null 2>&1; echo $?\n"
            "xmllint --noout --schema " SCHEMA " r.xml 2>&1\n"
            "/usr/bin/python3 - <<'END'\n"
            "from junitparser import JUnitXml\n"
            "for suite in JUnitXml.fromfile('r.xml'):\n"
            "    print(suite.name, suite.tests, suite.failures, suite.errors)\n"
            "    for case in suite:\n"
            "        print(case.classname, case.name, [(type(r).__name__, r.message) "
            "for r in case.result])\n"
            "END\n"_s;
        QCOMPARE(runScript(shell),
                 (BenchRun{0, "2\nr.xml validates\na.orders 5 2 1\n"
                              "a.orders a.orders:2: expect ALARM=ON []\n"
                              "a.orders a.orders:2: expect ALARM=ON []\n"
                              "a.orders a.orders:4: expect DOOR=ON "
                              "[('Failure', 'expected DOOR=ON, found OFF')]\n"
                              "a.orders a.orders:5: setValue channel=\"<&>\" # \357\277\275 "
                              "[('Error', 'expected NAME=VALUE, found \"#\"')]\n"
                              "a.orders a.orders:6: expect DOOR=ON within 1 "
                              "[('Failure', 'expected DOOR=ON within 1 ms, found OFF')]\n"
                              "b.orders 1 0 0\nb.orders b.orders:1: expect ALARM=1 []\n"}));
    }

    void aScriptThatIsCutOffIsAnErrorInItsReport()
    {
        const QTemporaryDir folder;
        const QString report = folder.filePath("r.xml"_s);
        BenchProcess bench({"shell"_s, "--echo"_s, "--report"_s, report});
        bench.process().write("sleep 80000000\n");
        QVERIFY(bench.waitForOutput("sleep"));
        bench.send(SIGTERM);
        QCOMPARE(bench.end().status, 0);
        QVERIFY(contentOf(report).contains(
            R"(<error type="script" message="interrupted by a signal">sleep 80000000</error>)"));
    }

    void anExpectationThatIsCutOffIsOneCase()
    {
        const QTemporaryDir folder;
        const QString report = folder.filePath("r.xml"_s);
        BenchProcess bench({"shell"_s, "--echo"_s, "--report"_s, report});
        bench.process().write("expect DOOR=ON within 80000000\n");
        QVERIFY(bench.waitForOutput("expect"));
        bench.send(SIGTERM);
        QCOMPARE(bench.end().status, 1);
        const QByteArray text = contentOf(report);
        QVERIFY2(text.contains(R"(tests="1" failures="1" errors="0")"), text.constData());
    }

    void aReportThatCannotBeWrittenIsTold()
    {
        QCOMPARE(runScript("cd \"$SCRATCH\"; mkdir r.xml; \"$BENCH\" shell --report r.xml <<< nosuch"_s),
                 (BenchRun{2, "", "appvantor: r.xml: the report cannot be written: not a regular file\n"}));
        QCOMPARE(
            runScript("cd \"$SCRATCH\"; \"$BENCH\" shell --report no/r.xml <<< nosuch"_s),
            (BenchRun{2, "",
                      "appvantor: no/r.xml: the report cannot be written: No such file or directory\n"}));
    }
};

QTEST_GUILESS_MAIN(TestScriptFiles)
#include "test_script_files.moc"
