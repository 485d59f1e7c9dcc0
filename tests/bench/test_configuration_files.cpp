#include "bench_process.h"
#include "literals.h"
#include "rows.h"

#include <QtTest>

/// Configuration files that cannot be read, or hold anything but a configuration.
class TestConfigurationFiles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatIsNoConfigurationIsToldWithFileAndPlace_data()
    {
        const Rows<QString, QString, QByteArray> row("preparation", "file", "message");
        row("not there", "", "c", "cannot be read: No such file or directory");
        row("a folder", "mkdir c", "c", "cannot be read: file to open is a directory");
        row("unreadable", "echo {} >c; chmod 000 c", "c", "cannot be read: Permission denied");
        row("in a folder that is locked", "mkdir d; echo {} >d/c; chmod 000 d", "d/c",
            "cannot be read: Permission denied");
        row("a loop of links", "ln -s c c", "c", "cannot be read: Too many levels of symbolic links");
        row("a name that is too long", "", "$(printf '%5000s' | tr ' ' c)",
            "cannot be read: File name too long");
        row("a read that fails", "", "/proc/self/mem", "cannot be read: Input/output error");
        row("empty", ": >c", "c", ":1:1: expected JSON, found nothing more");
        row("empty device", "", "/dev/null", ":1:1: expected JSON, found nothing more");
        row("endless device", "", "/dev/zero", "expected at most 67108864 bytes");
        row("huge", "truncate --size 1G c", "c", "expected at most 67108864 bytes");
        row("as large as it may be", "truncate --size 64M c", "c", ":1:1: expected JSON, found a NUL byte");
        row("writer that stops half way", "mkfifo c; { head -c 146 \"$EXAMPLES/traffic_light.json\" >c; } &",
            "c", ":7:17: expected JSON, found \"am");
        row("writer that writes nothing", "mkfifo c; { : >c; } &", "c",
            ":1:1: expected JSON, found nothing more");
        row("lists in lists", "printf '%100000s' | tr ' ' '[' >c", "c",
            ":1:1025: nested too deeply, expected at most 1024 levels");
        row("objects in objects", "printf '{\"device\":%.0s' {1..2000} >c", "c",
            ":1:10241: nested too deeply, expected at most 1024 levels");
        row("no UTF-8", "printf '{\"device\": \"\\xff\"}' >c", "c",
            ":1:12: expected JSON, found \"\xEF\xBF\xBD");
        row("NUL bytes", "printf '{\"device\": \\0}' >c", "c", ":1:12: expected JSON, found a NUL byte");
        row("NUL after it", "{ cat \"$EXAMPLES/traffic_light.json\"; printf '\\0'; } >c", "c",
            ":37:1: expected JSON, found a NUL byte");
        row("UTF-16", "iconv -t UTF-16LE \"$EXAMPLES/traffic_light.json\" >c", "c",
            ":1:2: expected JSON, found a NUL byte");
        row("a program", "cp \"$BENCH\" c", "c", ":1:9: expected JSON, found a NUL byte");
    }

    void whatIsNoConfigurationIsToldWithFileAndPlace()
    {
        QFETCH(QString, preparation);
        QFETCH(QString, file);
        QFETCH(QByteArray, message);
        const BenchRun run = runScript(
            preparation + "\nunprivileged \"$BENCH\" --config \"%1\" run getValue channel=A"_s.arg(file));
        QCOMPARE(run, (BenchRun{2, "", run.errors}));
        QCOMPARE(run.errors.count('\n'), 1);
        if (!file.startsWith(QLatin1Char('$'))) {
            QVERIFY2(run.errors.startsWith("appvantor: " + file.toUtf8() + ":"), run.errors.constData());
        }
        QVERIFY2(run.errors.contains(message), run.errors.constData());
    }

    void aConfigurationIsTakenFromAPipe()
    {
        const BenchRun run = runScript("{ head -c 100; sleep 0.1; cat; } <\"$EXAMPLES/traffic_light.json\" | "
                                       "\"$BENCH\" --config /dev/stdin run getValue channel=RED"_s);
        QCOMPARE(run, (BenchRun{0, "[1] getValue: value=0\n"}));
    }

    void aByteOrderMarkIsTaken()
    {
        const BenchRun run =
            runScript("{ printf '\\xef\\xbb\\xbf'; cat \"$EXAMPLES/traffic_light.json\"; } >c\n"
                      "\"$BENCH\" --config c run getValue channel=RED"_s);
        QCOMPARE(run, (BenchRun{0, "[1] getValue: value=0\n"}));
    }

    void aFileThatIsReplacedMeanwhileIsTheOneOrTheOther()
    {
        const BenchRun run = runScript("cp \"$EXAMPLES/traffic_light.json\" c\n"
                                       "while :; do for name in traffic_light button_and_lamp; do\n"
                                       "    cp \"$EXAMPLES/$name.json\" new; mv new c\n"
                                       "done; done & replacing=$!\n"
                                       "for run in {1..30}; do \"$BENCH\" --config c channels "
                                       ">/dev/null || echo \"status $?\"; done\n"
                                       "kill $replacing"_s);
        QCOMPARE(run, BenchRun{0});
    }

    void aWaitForAConfigurationIsEndedByASignal_data()
    {
        const Rows<QString> row("signal");
        for (const char* signal : {"INT", "TERM", "HUP"}) {
            row(signal, signal);
        }
    }

    /// The first byte of the pipe tells that the bench reads it.
    void aWaitForAConfigurationIsEndedByASignal()
    {
        QFETCH(QString, signal);
        const BenchRun run = runScript("set -m; mkfifo c\n"
                                       "\"$BENCH\" --config c channels & bench=$!\n"
                                       "exec 3>c; printf '{' >&3; kill -%1 $bench; wait $bench\n"
                                       "status=$?; [ $status -gt 128 ] && kill -l $status"_s.arg(signal));
        QCOMPARE(run.output, signal.toUtf8() + '\n');
    }
};

QTEST_GUILESS_MAIN(TestConfigurationFiles)
#include "test_configuration_files.moc"
