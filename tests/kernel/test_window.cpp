#include "bench_process.h"
#include "line_bench.h"
#include "literals.h"
#include "sim_chip.h"

#include <QImage>
#include <QtTest>

/// The bench window on lines of the kernel.
class TestWindow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void thePictureShowsTheLines()
    {
        const SimChip chip("front-panel"_s, 8, {"LAMP"_s, "MOTOR"_s, "DOOR"_s, "BUTTON"_s});
        chip.pull(2, 1);
        const QString configuration = temporaryFile(configurationOf(
            {output("LAMP"_s, "front-panel"_s, "LAMP"_s, {{"level"_s, 1}}),
             output("MOTOR"_s, "front-panel"_s, "MOTOR"_s), input("DOOR"_s, "front-panel"_s, "DOOR"_s),
             input("BUTTON"_s, "front-panel"_s, "BUTTON"_s)}));
        const QString orders =
            temporaryFile("setValue channel=MOTOR state=BLINK duration=400 dutyCycle=50\n", "orders"_s);
        const QString picture = "/run/results/window.png"_s;
        const BenchRun run =
            runBench({"--config"_s, configuration, "window"_s, "--orders"_s, orders, "--screenshot"_s,
                      picture, "--size"_s, "1280x800"_s, "--theme"_s, "light"_s, "--for"_s, "3"_s});
        QVERIFY2(run.status == 0, run.errors.constData());
        QCOMPARE(QImage(picture).size(), QSize(1280, 800));
    }
};

QTEST_GUILESS_MAIN(TestWindow)
#include "test_window.moc"
