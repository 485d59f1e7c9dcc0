#include "example_bench.h"
#include "panel_fixture.h"
#include "warning_guard.h"

#include <window/bench_scene.h>
#include <window/page_panel.h>
#include <window/panel_scene.h>
#include <window/picture.h>
#include <window/show_scene.h>
#include <window/texts.h>

#include <QDir>
#include <QElapsedTimer>
#include <QQuickItemGrabResult>
#include <QQuickWindow>
#include <QRegularExpression>
#include <QSet>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

namespace {

QVector<QQuickItem*> visibleNamed(QQuickItem& root, const char* name)
{
    QVector<QQuickItem*> found;
    for (QQuickItem* item : itemsNamed(&root, QLatin1String(name))) {
        if (item->isVisible()) {
            found.append(item);
        }
    }
    return found;
}

} // namespace

/// The bench window, used by hand and by keyboard.
class BenchWindowTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        installTexts(QLocale(QLocale::English));
        // Pictures are drawn by it, and a process has one renderer only.
        QQuickWindow::setSceneGraphBackend(QSGRendererInterface::Software);
    }

    void init()
    {
        m_guard = std::make_unique<WarningGuard>();
        open(8);
    }

    void cleanup()
    {
        close();
        const QString messages = WarningGuard::takeMessages();
        m_guard.reset();
        QVERIFY2(messages.isEmpty(), qPrintable(messages));
    }

    void everyControlIsReachedByTheTabKey()
    {
        QSet<QQuickItem*> reached;
        QStringList names;
        for (int step = 0; step < 100; ++step) {
            QTest::keyClick(&window(), Qt::Key_Tab);
            QQuickItem* focused = window().activeFocusItem();
            if (focused == nullptr || reached.contains(focused)) {
                break;
            }
            reached.insert(focused);
            // A list has the keyboard by its row, and an editable box by its text.
            while (focused->objectName().isEmpty()) {
                focused = focused->parentItem();
            }
            names.append(focused->objectName());
        }
        const QString checkBox = QStringLiteral("idChannelRow.idIndicator.idDigitalOutput");
        const QStringList expected = {
            QStringLiteral("toolsList"),
            QStringLiteral("darkSwitch"),
            QStringLiteral("panelLive"),
            QStringLiteral("panelRefresh"),
            checkBox,
            checkBox,
            QStringLiteral("lineFilter"),
            QStringLiteral("freezeButton"),
            QStringLiteral("boardLines"),
            QStringLiteral("commandBox"),
            QStringLiteral("runButton"),
            QStringLiteral("parameterChannel"),
            QStringLiteral("parameterText"),
            QStringLiteral("parameterText"),
            QStringLiteral("parameterText"),
            QStringLiteral("parameterText"),
            QStringLiteral("sectionsField"),
        };
        QCOMPARE(names, expected);
    }

    void everyControlTakesThePointerAndTheKeyboard()
    {
        giveOrder(QStringLiteral("listenToAll"));
        visit(root());
        QVERIFY(m_visited > 60);
    }

    void aSwitchOfTheBoardSetsItsLine()
    {
        QQuickItem* lever = visibleNamed(root(), "lineSwitch").value(0);
        QVERIFY(lever != nullptr);
        for (const int level : {1, 0, 1}) {
            click(lever);
            QCOMPARE(m_bench->board().level(1), level);
            QTRY_COMPARE(lever->property("checked").toBool(), level == 1);
        }
        // The switch still follows the line.
        m_bench->board().setInput(1, 0);
        QTRY_VERIFY(!lever->property("checked").toBool());
    }

    void theKeyboardSetsTheLinesOfTheBoard()
    {
        QQuickItem* list = itemNamed(&root(), QStringLiteral("boardLines"));
        list->forceActiveFocus(Qt::TabFocusReason);
        QTest::keyClick(&window(), Qt::Key_Down);
        QCOMPARE(list->property("currentIndex").toInt(), 1);
        QTest::keyClick(&window(), Qt::Key_Space);
        QCOMPARE(m_bench->board().level(1), 1);
        QTRY_VERIFY(visibleNamed(root(), "lineSwitch").constFirst()->property("checked").toBool());
        QTest::keyClick(&window(), Qt::Key_Space);
        QCOMPARE(m_bench->board().level(1), 0);
        // An output stays what requests make it.
        QTest::keyClick(&window(), Qt::Key_Up);
        QTest::keyClick(&window(), Qt::Key_Space);
        QCOMPARE(m_bench->board().level(0), 0);
    }

    void aSliderSetsItsLine()
    {
        QQuickItem* slider = visibleNamed(root(), "lineSlider").value(0);
        QVERIFY(slider != nullptr);
        const QPoint right = slider->mapToScene(QPointF(slider->width() - 1, slider->height() / 2)).toPoint();
        QTest::mouseClick(&window(), Qt::LeftButton, Qt::NoModifier, right);
        QCOMPARE(m_bench->board().level(2), 65535);
    }

    void thePageAndTheBoardShowTheSame()
    {
        QQuickItem* box = nullptr;
        for (QQuickItem* row : itemsNamed(&root(), QStringLiteral("idChannelRow"))) {
            QQuickItem* candidate =
                itemNamed(row, QStringLiteral("idChannelRow.idIndicator.idDigitalOutput"));
            if (candidate->isVisible()) {
                box = candidate;
                break;
            }
        }
        QVERIFY(box != nullptr);
        click(box);
        QTRY_COMPARE(m_bench->board().level(0), 1);
        QTRY_VERIFY(box->property("checked").toBool());
        QCOMPARE(m_scene->lines().index(0).data(LinesModel::LevelRole).toInt(), 1);
    }

    void aCommandIsFilledInAndRun()
    {
        QQuickItem* channel = itemNamed(&root(), QStringLiteral("parameterChannel"));
        channel->forceActiveFocus(Qt::TabFocusReason);
        type(QStringLiteral("START"));
        QCOMPARE(m_scene->form().index(0).data(CommandForm::TextRole).toString(), QStringLiteral("START"));
        QQuickItem* value = visibleNamed(root(), "parameterText").constFirst();
        value->forceActiveFocus(Qt::TabFocusReason);
        type(QStringLiteral("70000"));
        QQuickItem* problem = itemNamed(&root(), QStringLiteral("formProblem"));
        QVERIFY(problem->isVisible());
        QVERIFY(problem->property("text").toString().contains(QLatin1String("cannot hold \"70000\"")));
        QVERIFY(!itemNamed(&root(), QStringLiteral("runButton"))->isEnabled());
        QTest::keyClick(&window(), Qt::Key_A, Qt::ControlModifier);
        type(QStringLiteral("1"));
        QVERIFY(!problem->isVisible());
        visibleNamed(root(), "parameterText").at(1)->forceActiveFocus(Qt::TabFocusReason);
        type(QStringLiteral("ON"));
        QTest::keyClick(&window(), Qt::Key_Return, Qt::ControlModifier);
        QCOMPARE(m_scene->orders().count(), 1);
        QTRY_COMPARE(m_bench->board().level(0), 1);
    }

    void aCommandIsChosenFromTheList()
    {
        QQuickItem* box = itemNamed(&root(), QStringLiteral("commandBox"));
        box->forceActiveFocus(Qt::TabFocusReason);
        QTest::keyClick(&window(), Qt::Key_Space);
        QTest::keyClick(&window(), Qt::Key_Down);
        QTest::keyClick(&window(), Qt::Key_Down);
        QTest::keyClick(&window(), Qt::Key_Return);
        QTRY_COMPARE(m_scene->form().command(), QStringLiteral("getValue"));
        QTRY_COMPARE(visibleNamed(root(), "parameterText").size(), 0);
    }

    void aListeningOrderIsStoppedByItsButton()
    {
        giveOrder(QStringLiteral("listenToAll"));
        QTRY_COMPARE(visibleNamed(root(), "stopButton").size(), 1);
        click(visibleNamed(root(), "stopButton").constFirst());
        QCOMPARE(m_scene->orders().running(), 0);
        QTRY_COMPARE(visibleNamed(root(), "stopButton").size(), 0);
    }

    void theFilterNarrowsTheBoard()
    {
        QTest::keySequence(&window(), QKeySequence(QKeySequence::Find));
        type(QStringLiteral("alarm"));
        QQuickItem* list = itemNamed(&root(), QStringLiteral("boardLines"));
        QTRY_COMPARE(list->property("count").toInt(), 1);
        QTRY_COMPARE(visibleNamed(root(), "lineSwitch").size(), 1);
        click(visibleNamed(root(), "lineSwitch").constFirst());
        QCOMPARE(m_bench->board().level(5), 1);
    }

    void freezingHoldsTheWaveforms()
    {
        QQuickItem* button = itemNamed(&root(), QStringLiteral("freezeButton"));
        click(button);
        QVERIFY(!m_scene->clock().isRunning());
        QCOMPARE(button->property("text").toString(), QStringLiteral("Resume"));
        click(button);
        QVERIFY(m_scene->clock().isRunning());
    }

    void theTimeUnderThePointerIsShown()
    {
        QQuickItem* label = itemNamed(&root(), QStringLiteral("pointedTime"));
        QVERIFY(!label->isVisible());
        QQuickItem* wave = waveforms().constFirst();
        const QPointF middle = wave->mapToScene(QPointF(wave->width() / 2, wave->height() / 2));
        QTest::mouseMove(&window(), middle.toPoint());
        QTRY_VERIFY(label->isVisible());
        const QString text = label->property("text").toString();
        QVERIFY2(QRegularExpression(QStringLiteral("^\u2212[45]\\.\\d\\d s$")).match(text).hasMatch(),
                 qPrintable(text));
        QTest::mouseMove(&window(), QPoint(5, 5));
        QTRY_VERIFY(!label->isVisible());
    }

    void theWaveformShowsWhatTheLineDid()
    {
        // Low for five seconds, then high for five.
        m_bench->scheduler().advance(15000000);
        m_bench->board().setInput(1, 1);
        m_bench->scheduler().advance(5000000);
        m_scene->clock().tick();
        QQuickItem* wave = waveforms().value(1);
        const QImage picture = grab(wave);
        const auto isDrawn = [&picture](double x, double y) {
            return picture.pixelColor(qRound(x * (picture.width() - 1)), qRound(y)).alpha() > 128;
        };
        const int low = picture.height() - 4;
        const int high = 3;
        QVERIFY(isDrawn(0.25, low));
        QVERIFY(!isDrawn(0.25, high));
        QVERIFY(isDrawn(0.75, high));
        QVERIFY(!isDrawn(0.75, low));
    }

    void theRoomOfThePanesIsSharedByDragging()
    {
        QQuickItem* handle = itemNamed(&root(), QStringLiteral("toolsHandle"));
        const QPoint grip = handle->mapToScene(QPointF(2, 100)).toPoint();
        const double before = handle->x();
        QTest::mousePress(&window(), Qt::LeftButton, Qt::NoModifier, grip);
        QTest::mouseMove(&window(), grip + QPoint(20, 0));
        QTest::mouseMove(&window(), grip + QPoint(50, 0));
        QTest::mouseRelease(&window(), Qt::LeftButton, Qt::NoModifier, grip + QPoint(50, 0));
        QCOMPARE(handle->x(), before + 50);
    }

    void theDarkThemeIsSwitchedOn()
    {
        const auto background = [this] { return root().property("color").value<QColor>(); };
        const bool wasDark = background().lightnessF() < 0.5;
        click(itemNamed(&root(), QStringLiteral("darkSwitch")));
        QTRY_VERIFY((background().lightnessF() < 0.5) != wasDark);
    }

    void losingTheBoardIsShown()
    {
        m_bench->board().setPluggedIn(false);
        QTRY_VERIFY(itemNamed(&root(), QStringLiteral("panelNotice"))->isVisible());
        m_bench->board().setPluggedIn(true);
        QTRY_VERIFY(!itemNamed(&root(), QStringLiteral("panelNotice"))->isVisible());
    }

    void aBenchWithoutToolsSaysWhatToDo()
    {
        close();
        m_bench = std::make_unique<ExampleBench>(4);
        show({});
        QVERIFY(!itemNamed(&root(), QStringLiteral("runButton"))->isEnabled());
        QVERIFY(itemNamed(&root(), QStringLiteral("pageProblem"))->isVisible());
        QVERIFY(itemNamed(&root(), QStringLiteral("pageProblem"))
                    ->property("text")
                    .toString()
                    .startsWith(QLatin1String("This tool does not exist.")));
    }

    void aThousandLinesStayResponsive()
    {
        close();
        open(1000);
        QElapsedTimer timer;
        timer.start();
        for (int step = 0; step < 20; ++step) {
            m_bench->play(50000);
            m_scene->clock().tick();
            QCoreApplication::processEvents();
        }
        qInfo("1000 lines: 20 steps of 50 ms in %lld ms", timer.elapsed());
        QVERIFY(timer.elapsed() < 10000);
        QCOMPARE(itemNamed(&root(), QStringLiteral("boardLines"))->property("count").toInt(), 1000);
    }

    void aPictureHasTheSizeThatWasAskedFor_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::newRow("usual") << QSize(1280, 800);
        QTest::newRow("odd") << QSize(1001, 601);
        QTest::newRow("large") << QSize(2560, 1440);
    }

    void aPictureHasTheSizeThatWasAskedFor()
    {
        QFETCH(QSize, size);
        close();
        m_bench = std::make_unique<ExampleBench>(4);
        const QTemporaryDir folder;
        WindowOptions options;
        options.screenshotFile = folder.filePath(QStringLiteral("picture.png"));
        options.size = size;
        options.theme = WindowOptions::Theme::Dark;
        {
            BenchScene scene(&m_bench->board(), m_bench->tools(), options.theme);
            QCOMPARE(showScene(scene, QString(), options), 0);
        }
        const QImage window(options.screenshotFile);
        QCOMPARE(window.size(), size);
        QVERIFY(window.pixelColor(2, 2).lightnessF() < 0.2);
        options.theme = WindowOptions::Theme::Light;
        {
            PanelScene scene(&m_bench->tool(), options.theme);
            QCOMPARE(showScene(scene, QString(), options), 0);
        }
        const QImage panel(options.screenshotFile);
        QCOMPARE(panel.size(), size);
        QVERIFY(panel.pixelColor(2, 2).lightnessF() > 0.9);
    }

    void aPictureIsTakenWhenTheValuesAreThere()
    {
        close();
        m_bench = std::make_unique<ExampleBench>(8);
        m_bench->board().setInput(2, 4321);
        const QTemporaryDir folder;
        WindowOptions options;
        options.screenshotFile = folder.filePath(QStringLiteral("panel.png"));
        PanelScene scene(&m_bench->tool(), WindowOptions::Theme::Light);
        QCOMPARE(showScene(scene, QString(), options), 0);
        QStringList values;
        for (const QQuickItem* value :
             itemsNamed(&scene.root(), QStringLiteral("idChannelRow.idValueRectangle.idValue"))) {
            values.append(value->property("text").toString());
        }
        QVERIFY(values.contains(QStringLiteral("4321")));
        QVERIFY(!values.contains(QStringLiteral("undefined")));
    }

    void aPictureThatCannotBeWrittenIsAnError()
    {
        close();
        m_bench = std::make_unique<ExampleBench>(4);
        WindowOptions options;
        options.screenshotFile = QStringLiteral("/no/such/folder/picture.png");
        PanelScene scene(&m_bench->tool(), options.theme);
        QCOMPARE(showScene(scene, QString(), options), 2);
    }

private:
    void open(int lines)
    {
        m_bench = std::make_unique<ExampleBench>(lines);
        show(m_bench->tools());
    }

    void show(const QVector<DTool*>& tools)
    {
        m_scene = std::make_unique<BenchScene>(&m_bench->board(), tools, WindowOptions::Theme::Light,
                                               [this] { return m_bench->scheduler().now(); });
        m_window = std::make_unique<QQuickWindow>();
        m_window->resize(1280, 800);
        root().setParentItem(m_window->contentItem());
        root().setSize(m_window->size());
        m_window->show();
        m_window->requestActivate();
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
        QVERIFY(waitUntil([this] { return m_scene->panel().hasValues(); }));
        QTest::mouseMove(m_window.get(), QPoint(5, 5));
    }

    void close()
    {
        if (m_scene) {
            root().setParentItem(nullptr);
        }
        m_scene.reset();
        m_window.reset();
        m_bench.reset();
    }

    QQuickItem& root() { return m_scene->root(); }
    QQuickWindow& window() { return *m_window; }

    void click(QQuickItem* item)
    {
        const QPointF middle = item->mapToScene(QPointF(item->width() / 2, item->height() / 2));
        QTest::mouseClick(&window(), Qt::LeftButton, Qt::NoModifier, middle.toPoint());
    }

    void type(const QString& text)
    {
        for (const QChar character : text) {
            QTest::keyClick(&window(), character.toLatin1());
        }
    }

    void giveOrder(const QString& command)
    {
        m_scene->orders().run(&m_bench->tool(), command, {});
        QCoreApplication::processEvents();
    }

    /// Moves the pointer over each item that can be seen, and gives the keyboard to each that takes it.
    void visit(QQuickItem& item)
    {
        if (!item.isVisible() || item.width() <= 0 || item.height() <= 0) {
            return;
        }
        ++m_visited;
        const QPointF middle = item.mapToScene(QPointF(item.width() / 2, item.height() / 2));
        if (QRectF(root().boundingRect()).contains(middle)) {
            QTest::mouseMove(&window(), middle.toPoint());
        }
        if (item.activeFocusOnTab()) {
            item.forceActiveFocus(Qt::TabFocusReason);
            for (const Qt::Key key :
                 {Qt::Key_Down, Qt::Key_Up, Qt::Key_Right, Qt::Key_Left, Qt::Key_PageDown}) {
                QTest::keyClick(&window(), key);
            }
        }
        for (QQuickItem* child : item.childItems()) {
            visit(*child);
        }
    }

    QVector<QQuickItem*> waveforms()
    {
        QVector<QQuickItem*> found;
        const std::function<void(QQuickItem*)> collect = [&](QQuickItem* item) {
            if (item->inherits("WaveformItem")) {
                found.append(item);
            }
            for (QQuickItem* child : item->childItems()) {
                collect(child);
            }
        };
        collect(&root());
        std::sort(found.begin(), found.end(), [](const QQuickItem* one, const QQuickItem* other) {
            return one->property("line").toInt() < other->property("line").toInt();
        });
        return found;
    }

    static QImage grab(QQuickItem* item)
    {
        const QSharedPointer<QQuickItemGrabResult> result = item->grabToImage();
        QSignalSpy ready(result.data(), &QQuickItemGrabResult::ready);
        return ready.wait() ? result->image() : QImage();
    }

    std::unique_ptr<WarningGuard> m_guard;
    std::unique_ptr<ExampleBench> m_bench;
    std::unique_ptr<BenchScene> m_scene;
    std::unique_ptr<QQuickWindow> m_window;
    int m_visited = 0;
};

QTEST_MAIN(BenchWindowTest)

#include "test_bench_window.moc"
