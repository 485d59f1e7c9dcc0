#include "example_bench.h"
#include "literals.h"

#include <window/page_panel.h>
#include <window/picture.h>
#include <window/scene.h>
#include <window/texts.h>
#include <window/window_part.h>

#include <QGuiApplication>

#include <functional>

namespace {

/// Some orders, so that their list has something to show.
void giveOrders(BenchScene& scene, ExampleBench& bench)
{
    const auto run = [&](const char* command, const QVariantMap& arguments) {
        scene.orders().run(&bench.tool(), QLatin1String(command), arguments);
        QCoreApplication::processEvents();
        QCoreApplication::processEvents();
    };
    const QString channel = "channel"_s;
    run("getValue", {{channel, "PRESSURE"_s}});
    run("startListening", {{channel, "READY"_s}, {"edge"_s, "RE"_s}});
    run("setValue", {{channel, "START"_s}, {"state"_s, "ON"_s}});
    run("getValue", {{channel, "NOT_LINKED"_s}});
    run("switchValue", {{channel, "E_STOP"_s}});
}

void settle(Scene& scene)
{
    do {
        QCoreApplication::processEvents();
    } while (!scene.panel().hasValues());
}

/// The courses alone, and as many of the five steps that find the width of a pulse.
void findPulse(BenchScene& scene, int steps)
{
    constexpr int line = 0;
    for (const char* pane : {"toolsFolded", "pageFolded", "lowerFolded"}) {
        scene.root().setProperty(pane, true);
    }
    const auto stepOn = [&](int times) {
        for (int time = 0; time < times; ++time) {
            scene.courses().stepCursor({line}, true);
        }
    };
    const auto setCursor = [&](int number) { scene.courses().setCursor(number, 0.05, -1); };
    const QVector<std::function<void()>> all = {
        [&] { scene.clock().setRunning(false); },
        [&] { itemNamed(&scene.root(), "courses"_s)->forceActiveFocus(Qt::MouseFocusReason); },
        [&] {
            setCursor(1);
            stepOn(1);
        },
        [&] { setCursor(2); },
        [&] { stepOn(2); },
    };
    for (int step = 0; step < steps; ++step) {
        all.at(step)();
    }
}

/// Two cursors around a pulse.
void setCursors(BenchScene& scene)
{
    constexpr int line = 0;
    scene.clock().setRunning(false);
    scene.courses().zoom(2.5, 0.5);
    scene.courses().setCursor(1, 0.1, -1);
    scene.courses().stepCursor({line}, true);
    scene.courses().setCursor(2, 0.1, -1);
    scene.courses().stepCursor({line}, true);
    scene.courses().stepCursor({line}, true);
}

} // namespace

/// Draws the bench window, or a panel alone, into a PNG file, the same picture at each run.
int main(int argc, char** argv)
{
    QStringList words;
    for (int number = 1; number < argc; ++number) {
        words.append(QString::fromLocal8Bit(argv[number]));
    }
    if (words.size() != 7) {
        qCritical("usage: make_pictures window|cursors|lost|panel|pulse1…pulse5 LINES light|dark "
                  "WIDTHxHEIGHT SCALE "
                  "LANGUAGE FILE.png");
        return 2;
    }
    WindowOptions options;
    const int lines = words.at(1).toInt();
    options.theme =
        words.at(2) == QLatin1String("dark") ? WindowOptions::Theme::Dark : WindowOptions::Theme::Light;
    const QStringList size = words.at(3).split(QLatin1Char('x'));
    options.size = QSize(size.value(0).toInt(), size.value(1).toInt());
    options.scale = words.at(4).toDouble();
    options.locale = QLocale(words.at(5));
    options.screenshotFile = words.at(6);
    appvantorWindowPart()->prepare(options);
    const QGuiApplication application(argc, argv);
    installTexts(options.locale);

    ExampleBench bench(lines);
    if (words.at(0) == QLatin1String("panel")) {
        bench.play(3000000);
        PanelScene scene(&bench.tool(), options.theme);
        return takePicture(scene, options);
    }
    BenchScene scene(&bench.board(), bench.tools(), options.theme);
    settle(scene);
    bench.play(7000000);
    giveOrders(scene, bench);
    bench.play(5000000);
    scene.form().setCommand("setValue"_s);
    scene.form().setText(0, "START"_s);
    scene.form().setText(2, "BLINK"_s);
    scene.form().setText(4, "25"_s);
    scene.clock().tick();
    const QString& what = words.at(0);
    if (what == QLatin1String("cursors")) {
        setCursors(scene);
    } else if (what.startsWith(QLatin1String("pulse"))) {
        findPulse(scene, what.mid(5).toInt());
    } else if (what == QLatin1String("lost")) {
        bench.board().setPluggedIn(false);
        scene.clock().tick();
    }
    scene.panel().refresh();
    settle(scene);
    return takePicture(scene, options);
}
