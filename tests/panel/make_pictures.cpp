#include "example_bench.h"
#include "line_states.h"
#include "literals.h"

#include <window/page_panel.h>
#include <window/picture.h>
#include <window/scene.h>
#include <window/texts.h>
#include <window/window_part.h>

#include <QGuiApplication>
#include <QScreen>

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

/// A window that has the keyboard, after it was used by the pointer and by keys. Returns the exit status.
int drawUsed(BenchScene& scene, const WindowOptions& options, const std::function<void(QQuickWindow&)>& use)
{
    QQuickWindow window;
    window.resize(options.size);
    scene.putInto(window);
    window.show();
    window.requestActivate();
    if (!QTest::qWaitForWindowActive(&window)) {
        return 1;
    }
    use(window);
    settle(scene);
    QSignalSpy drawn(&window, &QQuickWindow::frameSwapped);
    window.update();
    const bool saved =
        drawn.wait() && window.screen()->grabWindow(window.winId()).save(options.screenshotFile);
    scene.root().setParentItem(nullptr); // the window goes first
    return saved ? 0 : 1;
}

void foldAllButTheBoard(BenchScene& scene)
{
    for (const char* pane : {"toolsFolded", "pageFolded", "lowerFolded"}) {
        scene.root().setProperty(pane, true);
    }
}

/// A board with lines in each state of what is known of them, while the device is there or when it is lost.
int drawStates(ExampleBench& bench, bool lost, const WindowOptions& options)
{
    const std::unique_ptr<LineDevice> device = LineStates::make(&bench.scheduler());
    BenchScene scene(device.get(), bench.tools(), options.theme);
    foldAllButTheBoard(scene);
    device->open();
    bench.play(4000000);
    device->setPluggedIn(!lost);
    scene.lines().setLevel(LineStates::c_waiting, 0);
    bench.play(2000000);
    scene.clock().tick();
    settle(scene);
    return takePicture(scene, options);
}

/// The courses alone, after as many of the five steps that find the width of a pulse.
int drawPulse(BenchScene& scene, int steps, const WindowOptions& options)
{
    foldAllButTheBoard(scene);
    return drawUsed(scene, options, [&](QQuickWindow& window) {
        const auto press = [&window](std::initializer_list<Qt::Key> keys) {
            for (const Qt::Key key : keys) {
                QTest::keyClick(&window, key);
            }
        };
        const QVector<std::function<void()>> all = {
            [&] {
                const QQuickItem* course = itemNamed(&scene.root(), "lineCourse"_s);
                const QPointF place(course->width() * 0.05, course->height() / 2);
                QTest::mouseMove(&window, course->mapToScene(place).toPoint());
                QTest::mouseClick(&window, Qt::LeftButton, Qt::NoModifier,
                                  course->mapToScene(place).toPoint());
            },
            [&] { press({Qt::Key_Space}); },
            [&] {
                press({Qt::Key_1, Qt::Key_Right});
            },
            [&] { press({Qt::Key_2}); },
            [&] {
                press({Qt::Key_Right, Qt::Key_Right});
            },
        };
        for (int step = 0; step < steps; ++step) {
            all.at(step)();
        }
    });
}

/// What comes up while the window is used, by its name; empty where there is no such state.
std::function<void(QQuickWindow&)> useCalled(const QString& name, BenchScene& scene, ExampleBench& bench)
{
    const auto shown = [&scene](const char* item) {
        const QVector<QQuickItem*> items = itemsNamed(&scene.root(), QLatin1String(item));
        const auto visible = std::find_if(items.cbegin(), items.cend(),
                                          [](const QQuickItem* candidate) { return candidate->isVisible(); });
        return visible != items.cend() ? *visible : nullptr;
    };
    const QHash<QString, std::function<void(QQuickWindow&)>> uses = {
        {"trigger"_s,
         [&, shown](QQuickWindow& window) {
             shown("boardLines")->forceActiveFocus(Qt::TabFocusReason);
             QTest::keyClick(&window, Qt::Key_T);
             bench.play(5000000);
             scene.clock().tick();
             scene.panel().refresh();
         }},
        {"failedClick"_s,
         [&, shown](QQuickWindow&) {
             bench.board().setPluggedIn(false);
             PanelFixture::click(shown("idChannelRow.idIndicator.idDigitalOutput"));
             (void)QTest::qWaitFor([&] { return shown("clickProblem") != nullptr; });
             scene.clock().tick();
         }},
        {"wrongField"_s, [&](QQuickWindow&) { scene.form().setText(1, "70000"_s); }},
        {"events"_s,
         [&, shown](QQuickWindow&) {
             scene.clock().tick();
             (void)QTest::qWaitFor([&] { return shown("eventsButton") != nullptr; });
             PanelFixture::click(shown("eventsButton"));
         }},
        {"fileMenu"_s, [&, shown](QQuickWindow&) { PanelFixture::click(shown("fileButton")); }},
        {"help"_s, [&](QQuickWindow& window) { QTest::keyClick(&window, Qt::Key_F1); }},
        {"closing"_s,
         [&](QQuickWindow&) {
             QMetaObject::invokeMethod(&scene.root(), "askToLeave", Q_ARG(QVariant, "close"_s),
                                       Q_ARG(QVariant, scene.reasonToStay()));
         }},
    };
    return uses.value(name);
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
        qCritical("usage: make_pictures window|cursors|lost|panel|states|statesLost|pulse1…pulse5|STATE "
                  "LINES light|dark "
                  "WIDTHxHEIGHT SCALE LANGUAGE FILE.png");
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
    if (words.at(0).startsWith(QLatin1String("states"))) {
        return drawStates(bench, words.at(0).endsWith(QLatin1String("Lost")), options);
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
        return drawPulse(scene, what.mid(5).toInt(), options);
    } else if (const auto use = useCalled(what, scene, bench)) {
        scene.panel().refresh();
        settle(scene);
        return drawUsed(scene, options, use);
    } else if (what == QLatin1String("lost")) {
        bench.board().setPluggedIn(false);
        scene.clock().tick();
    }
    scene.panel().refresh();
    settle(scene);
    return takePicture(scene, options);
}
