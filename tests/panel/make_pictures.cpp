#include "example_bench.h"

#include <window/bench_scene.h>
#include <window/bench_window.h>
#include <window/page_panel.h>
#include <window/panel_scene.h>
#include <window/picture.h>
#include <window/show_scene.h>

#include <QGuiApplication>

namespace {

/// Some orders, so that their list has something to show.
void giveOrders(BenchScene& scene, ExampleBench& bench)
{
    const auto run = [&](const char* command, const QVariantMap& arguments) {
        scene.orders().run(&bench.tool(), QLatin1String(command), arguments);
        QCoreApplication::processEvents();
        QCoreApplication::processEvents();
    };
    const QString channel = QStringLiteral("channel");
    run("getValue", {{channel, QStringLiteral("PRESSURE")}});
    run("startListening",
        {{channel, QStringLiteral("READY")}, {QStringLiteral("edge"), QStringLiteral("RE")}});
    run("setValue", {{channel, QStringLiteral("START")}, {QStringLiteral("state"), QStringLiteral("ON")}});
    run("getValue", {{channel, QStringLiteral("NOT_LINKED")}});
    run("switchValue", {{channel, QStringLiteral("E_STOP")}});
}

void settle(Scene& scene)
{
    do {
        QCoreApplication::processEvents();
    } while (!scene.panel().hasValues());
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
        qCritical("usage: make_pictures window|panel LINES light|dark WIDTHxHEIGHT SCALE LANGUAGE FILE.png");
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
    prepareWindow(options);
    const QGuiApplication application(argc, argv);
    prepareScene(options);

    ExampleBench bench(lines);
    if (words.at(0) == QLatin1String("panel")) {
        bench.play(3000000);
        PanelScene scene(&bench.tool(), options.theme);
        return showScene(scene, QString(), options);
    }
    BenchScene scene(&bench.board(), bench.tools(), options.theme,
                     [&bench] { return bench.scheduler().now(); });
    settle(scene);
    bench.play(7000000);
    giveOrders(scene, bench);
    bench.play(5000000);
    scene.form().setCommand(QStringLiteral("setValue"));
    scene.form().setText(0, QStringLiteral("START"));
    scene.form().setText(2, QStringLiteral("BLINK"));
    scene.form().setText(4, QStringLiteral("25"));
    scene.clock().tick();
    scene.panel().refresh();
    settle(scene);
    return showScene(scene, QString(), options);
}
