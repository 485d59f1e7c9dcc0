#include "bench_process.h"
#include "literals.h"
#include "rows.h"

#include <QtTest>

/// Which libraries a process loads, and what becomes of one whose window's library is not as it should be.
class TestParts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void onlyAProcessWithAWindowLoadsWhatDraws_data()
    {
        const Rows<QString, bool, bool> row("arguments", "loadsPlugin", "draws");
        row("the help", "--help", false, false);
        row("the chips of this machine", "discover", false, false);
        row("an order", "run getValue channel=DOOR", true, false);
        row("a script", "shell", true, false);
        row("a picture", "panel --screenshot $SCRATCH/panel.png", true, true);
    }

    void onlyAProcessWithAWindowLoadsWhatDraws()
    {
        QFETCH(QString, arguments);
        const BenchRun run = runScript(
            "LD_DEBUG=files LD_DEBUG_OUTPUT=loaded $BENCH %1 >/dev/null </dev/null; cat loaded.*"_s.arg(
                arguments));
        QCOMPARE(run.status, 0);
        QVERIFY(run.output.contains("calling init: "));
        QTEST(run.output.contains("libp_tool_gpio"), "loadsPlugin");
        for (const char* library : {"libQt5Quick", "libQt5Gui", "libGL", "libX11", "libappvantor_window"}) {
            QTEST(run.output.contains(library), "draws");
        }
    }

    void aWindowsLibraryThatCannotBeLoadedIsTold_data()
    {
        const Rows<QString, QString> row("prepare", "problem");
        row("missing", "true", "cannot open shared object file: No such file or directory");
        row("no library", "echo no library >%1", "invalid ELF header|file too short");
        row("another one", "cp $LIBRARIES/../plugins/libp_tool_gpio.so %1",
            "has no function \"appvantorWindowPart\"");
    }

    void aWindowsLibraryThatCannotBeLoadedIsTold()
    {
        QFETCH(QString, prepare);
        QFETCH(QString, problem);
        const BenchRun run =
            runScript("mkdir bin lib; cp $BENCH bin; LIBRARIES=$(dirname $BENCH)/../lib\n%1\n"
                      "LD_LIBRARY_PATH=$LIBRARIES bin/appvantor panel"_s.arg(
                          prepare.contains("%1"_s) ? prepare.arg("lib/libappvantor_window.so"_s) : prepare));
        QCOMPARE(run.status, 2);
        const QRegularExpression message(QRegularExpression::anchoredPattern(
            "appvantor: the window's part cannot be loaded: [^\\n]*/lib/"
            "libappvantor_window\\.so[^\\n]*(%1)[^\\n]*; \"appvantor --help\" "
            "tells what else there is\\n"_s.arg(problem)));
        QVERIFY2(message.match(QString::fromUtf8(run.errors)).hasMatch(), run.errors.constData());
    }
};

QTEST_GUILESS_MAIN(TestParts)
#include "test_parts.moc"
