#include "bench_process.h"
#include "literals.h"
#include "rows.h"

#include <QtTest>

namespace {

/// Takes a picture of the window and one of the panel; both must end alike. Ends with what the folder holds.
BenchRun takePictures(const QString& preparation, const QString& file)
{
    return runScript(preparation + "\nfor page in window panel; do\n"
                                   "    $privilege \"$BENCH\" $page --screenshot %1; echo $?\n"
                                   "done\n"
                                   "shopt -s nullglob; echo *; cat kept.png 2>/dev/null; true"_s.arg(file));
}

} // namespace

/// The option --screenshot: where the picture cannot be written, and onto standard output.
class TestPictures : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aPictureThatCannotBeWrittenIsToldAndNothingIsLeftOver_data()
    {
        const Rows<QString, QString, QByteArray, QByteArray> row("preparation", "file", "message", "left");
        row("no folder", "", "nowhere/p.png", "nowhere/p.png: No such file or directory", "\n");
        row("a folder", "mkdir p.png", "p.png", "p.png: not a regular file", "p.png\n");
        row("a pipe", "mkfifo p.png", "p.png", "p.png: not a regular file", "p.png\n");
        row("a link to a pipe", "mkfifo pipe; ln -s pipe p.png", "p.png", "p.png: not a regular file",
            "p.png pipe\n");
        row("a folder that is read-only", "mkdir d; chmod 500 d; privilege=unprivileged", "d/p.png",
            "d/p.png: Permission denied", "d\n");
        row("a picture that is read-only", "echo old >kept.png; chmod 400 kept.png; privilege=unprivileged",
            "kept.png", "kept.png: Existing file kept.png is not writable", "kept.png\nold\n");
        row("a full disk", "echo old >kept.png; ulimit -f 4", "kept.png", "kept.png: File too large",
            "kept.png\nold\n");
        // A picture of little more than the one block that a file may have.
        row("a disk that is full at the last bytes", "echo old >kept.png; ulimit -f 1",
            "kept.png --size 64x40", "kept.png: File too large", "kept.png\nold\n");
    }

    void aPictureThatCannotBeWrittenIsToldAndNothingIsLeftOver()
    {
        QFETCH(QString, preparation);
        QFETCH(QString, file);
        QFETCH(QByteArray, message);
        QFETCH(QByteArray, left);
        const BenchRun run = takePictures(preparation, file);
        QVERIFY2(run.errors.count("appvantor: cannot write the picture " + message + "\n") == 2,
                 run.errors.constData());
        QCOMPARE(run.output, "2\n2\n" + left);
    }

    void aPictureThatCannotBeWrittenIsToldToPrograms()
    {
        const BenchRun run = runScript("mkdir p.png; \"$BENCH\" --json panel --screenshot p.png"_s);
        QCOMPARE(run.status, 2);
        QCOMPARE(run.json().value(0).value("kind"_s).toString(), "picture"_s);
    }

    void aPictureReplacesAnother()
    {
        const BenchRun run = takePictures("echo old >kept.png"_s, "kept.png"_s);
        QVERIFY2(run.output.startsWith("0\n0\nkept.png\n\x89PNG"), run.output.left(80).constData());
    }

    void aPictureGoesToStandardOutput_data()
    {
        const Rows<QString, QByteArray, QByteArray> row("words", "output", "message");
        row("a reader that sleeps", "panel --screenshot - | (sleep 0.3; head -c 4)", "\x89PNG", "");
        row("a reader that has gone", "panel --screenshot - | true", "",
            "cannot write the picture standard output: Broken pipe");
        row("a full disk", "panel --screenshot - >/dev/full", "",
            "cannot write the picture standard output: No space left on device");
        row("beside what is said", "panel --off-at-end --screenshot - | head -c 4", "\x89PNG", "");
    }

    void aPictureGoesToStandardOutput()
    {
        QFETCH(QString, words);
        QFETCH(QByteArray, message);
        const BenchRun run = runScript("\"$BENCH\" "_s + words);
        QTEST(run.output, "output");
        QVERIFY2(run.errors.contains(message), run.errors.constData());
    }

    void onlyOneThingGoesToStandardOutput_data()
    {
        const Rows<QString, QByteArray> row("words", "message");
        row("a trace and objects", "--json --trace - commands", "--trace -: standard output has what --json");
        row("a picture and objects", "--json panel --screenshot -",
            "--screenshot -: standard output has what --json");
        row("a picture and a trace", "--trace - panel --screenshot -",
            "--screenshot -: standard output has what --trace");
    }

    void onlyOneThingGoesToStandardOutput()
    {
        QFETCH(QString, words);
        QFETCH(QByteArray, message);
        const BenchRun run = runBench(words.split(QLatin1Char(' ')));
        QCOMPARE(run.status, 2);
        QVERIFY2(run.errors.contains("appvantor: " + message), run.errors.constData());
    }
};

QTEST_GUILESS_MAIN(TestPictures)
#include "test_pictures.moc"
