#include "example_bench.h"
#include "panel_fixture.h"

#include <window/close_guard.h>
#include <window/files.h>
#include <window/page_panel.h>
#include <window/picture.h>
#include <window/scene.h>
#include <window/texts.h>

#include <QAccessible>
#include <QClipboard>
#include <QQuickWindow>

#include <cmath>

Q_DECLARE_METATYPE(OutputsAtEnd)

/// The bench window, used by hand and by keyboard.
class TestBenchWindow : public QuietTest
{
    Q_OBJECT

    static QVector<QQuickItem*> visibleNamed(QQuickItem& root, const char* name)
    {
        QVector<QQuickItem*> found;
        for (QQuickItem* item : itemsNamed(&root, QLatin1String(name))) {
            if (item->isVisible()) {
                found.append(item);
            }
        }
        return found;
    }

    /// Of the control that the item is, or is a part of.
    static QString accessibleName(QQuickItem* item)
    {
        QAccessibleInterface* told = nullptr;
        while (item != nullptr && (told = QAccessible::queryAccessibleInterface(item)) == nullptr) {
            item = item->parentItem();
        }
        return told != nullptr ? told->text(QAccessible::Name) : QString();
    }

    /// Visits what is told of the visible items from there on to programs that read the screen.
    template <typename Visitor>
    static void visitAccessible(QQuickItem& item, const Visitor& visit)
    {
        if (!item.isVisible()) {
            return;
        }
        const QAccessibleInterface* told = QAccessible::queryAccessibleInterface(&item);
        if (told != nullptr && told->role() != QAccessible::Client && told->role() != QAccessible::NoRole) {
            visit(*told);
        }
        for (QQuickItem* child : item.childItems()) {
            visitAccessible(*child, visit);
        }
    }

    /// True when the texts of the page's rows are neither cut nor shrunk.
    static bool showsWhole(QQuickItem& root)
    {
        const auto heightOf = [](const QQuickItem* text) {
            return text->property("contentHeight").toDouble();
        };
        const double usual =
            heightOf(visibleNamed(root, "idChannelRow.idInformation.idChannelId").constFirst());
        for (const char* name :
             {"idInformation.idChannelId", "idInformation.idChannelName", "idValueRectangle.idValue"}) {
            for (const QQuickItem* text :
                 visibleNamed(root, qPrintable("idChannelRow."_s + QLatin1String(name)))) {
                if (text->property("truncated").toBool() || heightOf(text) < usual) {
                    return false;
                }
            }
        }
        return true;
    }

protected:
    void setUp() override { open(8); }
    void tearDown() override { close(); }

private Q_SLOTS:
    void initTestCase()
    {
        installTexts(QLocale(QLocale::English));
        // Pictures are drawn by it, and a process has one renderer only.
        QQuickWindow::setSceneGraphBackend(QSGRendererInterface::Software);
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
            QVERIFY2(!accessibleName(focused).isEmpty(), qPrintable(focused->objectName()));
            // A list has the keyboard by its row, and an editable box by its text.
            while (focused->objectName().isEmpty()) {
                focused = focused->parentItem();
            }
            names.append(focused->objectName());
        }
        const QString checkBox = "idChannelRow.idIndicator.idDigitalOutput"_s;
        const QStringList expected = {
            "fileButton"_s,      "toolsList"_s,     "allOffButton"_s, "darkSwitch"_s,   "helpButton"_s,
            "toolsHandle"_s,     "panelLive"_s,     "panelRefresh"_s, checkBox,         checkBox,
            "boardHandle"_s,     "lineFilter"_s,    "linesButton"_s,  "freezeButton"_s, "boardLines"_s,
            "courses"_s,         "lowerHandle"_s,   "commandBox"_s,   "runButton"_s,    "parameterChannel"_s,
            "parameterChoice"_s, "commandHandle"_s, "pageReadsBar"_s,
        };
        QCOMPARE(names, expected);
    }

    /// Those in the rows of lists, too, which the Tab key does not go to.
    void whatIsShownHasANameForWhoDoesNotSeeIt()
    {
        QTest::keyClick(&window(), Qt::Key_F1);
        QTRY_VERIFY(!visibleNamed(*window().contentItem(), "helpText").isEmpty());
        QStringList nameless;
        QSet<int> roles;
        visitAccessible(*window().contentItem(), [&](const QAccessibleInterface& told) {
            roles.insert(told.role());
            const bool isFrame = told.object()->inherits("QQuickPopupItem"); // Qt's own, around a dialog
            if (!isFrame && told.text(QAccessible::Name).isEmpty()) {
                nameless.append(told.object()->objectName() + QLatin1Char(' ') +
                                QLatin1String(told.object()->metaObject()->className()));
            }
        });
        QCOMPARE(nameless.join(QLatin1Char(',')), QString());
        for (const QAccessible::Role role :
             {QAccessible::Dialog, QAccessible::Slider, QAccessible::CheckBox}) {
            QVERIFY(roles.contains(role));
        }
    }

    void aRowDoesWhatTheKeyboardDoesForWhoDoesNotSeeIt()
    {
        QQuickItem* lever = visibleNamed(root(), "lineSwitch").value(0);
        QVERIFY(lever != nullptr);
        QQuickItem* row = lever;
        while (!row->property("alsoChosen").isValid()) {
            row = row->parentItem();
        }
        QAccessibleActionInterface* actions = QAccessible::queryAccessibleInterface(row)->actionInterface();
        actions->doAction(QAccessibleActionInterface::toggleAction());
        QCOMPARE(m_bench->board().level(5).level, 1);
        actions->doAction(QAccessibleActionInterface::decreaseAction());
        QCOMPARE(m_bench->board().level(5).level, 0);
        actions->doAction(QAccessibleActionInterface::increaseAction());
        QCOMPARE(m_bench->board().level(5).level, 1);
        actions->doAction(QAccessibleActionInterface::pressAction());
        QCOMPARE(m_bench->board().level(5).level, 0);
    }

    void theFieldThatIsMissingIsOutlined()
    {
        QQuickItem* run = itemNamed(&root(), "runButton"_s);
        QVERIFY(visibleNamed(root(), "fieldProblem").isEmpty());
        PanelFixture::click(run);
        QCOMPARE(m_scene->orders().count(), 0);
        QCOMPARE(visibleNamed(root(), "fieldProblem").size(), 2);
        QVERIFY(visibleNamed(root(), "parameterChannel").constFirst()->property("wrong").toBool());
        QVERIFY(visibleNamed(root(), "parameterChoice").constFirst()->property("wrong").toBool());
        QVERIFY(!run->isEnabled());
        m_scene->form().setText(0, "START"_s);
        QCOMPARE(visibleNamed(root(), "fieldProblem").size(), 1);
        m_scene->form().setText(2, "ON"_s);
        QVERIFY(run->isEnabled());
        PanelFixture::click(run);
        QCOMPARE(m_scene->orders().count(), 1);
        m_scene->form().setText(0, QString());
        QVERIFY(visibleNamed(root(), "fieldProblem").isEmpty()); // it is not nagged about
    }

    void everyControlTakesThePointerAndTheKeyboard()
    {
        giveOrder("listenToAll"_s);
        visit(root());
        QVERIFY(m_visited > 60);
    }

    void aSwitchOfTheBoardSetsItsLine()
    {
        QQuickItem* lever = visibleNamed(root(), "lineSwitch").value(0);
        QVERIFY(lever != nullptr);
        for (const int level : {1, 0, 1}) {
            PanelFixture::click(lever);
            QCOMPARE(m_bench->board().level(5).level, level);
            m_scene->clock().tick();
            QCOMPARE(lever->property("checked").toBool(), level == 1);
        }
        // The switch still follows the line.
        m_bench->board().setInput(5, 0);
        m_scene->clock().tick();
        QVERIFY(!lever->property("checked").toBool());
    }

    void theKeyboardSetsTheLinesOfTheBoard()
    {
        QQuickItem* list = itemNamed(&root(), "boardLines"_s);
        list->forceActiveFocus(Qt::TabFocusReason);
        for (int row = 0; row < 5; ++row) {
            QTest::keyClick(&window(), Qt::Key_Down);
        }
        QCOMPARE(list->property("currentIndex").toInt(), 5);
        QTest::keyClick(&window(), Qt::Key_Space);
        QCOMPARE(m_bench->board().level(5).level, 1);
        m_scene->clock().tick();
        QVERIFY(visibleNamed(root(), "lineSwitch").constFirst()->property("checked").toBool());
        QTest::keyClick(&window(), Qt::Key_Space);
        QCOMPARE(m_bench->board().level(5).level, 0);
        // An output stays what requests make it.
        QTest::keyClick(&window(), Qt::Key_Up);
        QTest::keyClick(&window(), Qt::Key_Space);
        QCOMPARE(m_bench->board().level(4).level, 0);
    }

    void aSliderSetsItsLine()
    {
        QQuickItem* slider = visibleNamed(root(), "lineSlider").value(1);
        QVERIFY(slider != nullptr);
        const QPoint right = slider->mapToScene(QPointF(slider->width() - 1, slider->height() / 2)).toPoint();
        QTest::mouseClick(&window(), Qt::LeftButton, Qt::NoModifier, right);
        QCOMPARE(m_bench->board().level(6).level, 65535);
    }

    void aDraggedSliderStaysUnderThePointer()
    {
        QQuickItem* slider = visibleNamed(root(), "lineSlider").value(1);
        const QPoint start = slider->mapToScene(QPointF(8, slider->height() / 2)).toPoint();
        QTest::mousePress(&window(), Qt::LeftButton, Qt::NoModifier, start);
        QTest::mouseMove(&window(), start + QPoint(20, 0));
        QTest::mouseMove(&window(), start + QPoint(40, 0));
        const double dragged = slider->property("value").toDouble();
        QVERIFY(dragged > 20000);
        m_bench->board().setInput(6, 100);
        m_scene->clock().tick();
        QCOMPARE(slider->property("value").toDouble(), dragged);
        QTest::mouseRelease(&window(), Qt::LeftButton, Qt::NoModifier, start + QPoint(40, 0));
        m_bench->board().setInput(6, 200);
        m_scene->clock().tick();
        QCOMPARE(slider->property("value").toDouble(), 200.0);
    }

    void thePageAndTheBoardShowTheSame()
    {
        QQuickItem* box = nullptr;
        for (QQuickItem* row : itemsNamed(&root(), "idChannelRow"_s)) {
            QQuickItem* candidate = itemNamed(row, "idChannelRow.idIndicator.idDigitalOutput"_s);
            if (candidate->isVisible()) {
                box = candidate;
                break;
            }
        }
        QVERIFY(box != nullptr);
        PanelFixture::click(box);
        QTRY_COMPARE(m_bench->board().level(0).level, 1);
        QTRY_VERIFY(box->property("checked").toBool());
        QCOMPARE(m_scene->lines().index(0).data(LinesModel::LevelRole).toInt(), 1);
    }

    /// Typing chooses the first word that begins so.
    void aCommandIsFilledInAndRun()
    {
        QQuickItem* channel = itemNamed(&root(), "parameterChannel"_s);
        channel->forceActiveFocus(Qt::TabFocusReason);
        type("e_"_s);
        QTest::keyClick(&window(), Qt::Key_Tab);
        QCOMPARE(entered("channel"), "E_STOP"_s);
        type("bl"_s);
        QCOMPARE(entered("state"), "BLINK"_s);
        QQuickItem* value = visibleNamed(root(), "parameterText").constFirst();
        value->forceActiveFocus(Qt::TabFocusReason);
        type("70000"_s);
        QQuickItem* problem = visibleNamed(root(), "fieldProblem").value(0);
        QVERIFY(problem != nullptr);
        QVERIFY(problem->property("text").toString().contains(QLatin1String("cannot hold \"70000\"")));
        QVERIFY(value->property("wrong").toBool());
        QVERIFY(!itemNamed(&root(), "runButton"_s)->isEnabled());
        QTest::keyClick(&window(), Qt::Key_Return);
        QCOMPARE(m_scene->orders().count(), 0);
        QTest::keyClick(&window(), Qt::Key_A, Qt::ControlModifier);
        type("1"_s);
        QVERIFY(visibleNamed(root(), "fieldProblem").isEmpty());
        QTest::keyClick(&window(), Qt::Key_Return);
        QCOMPARE(m_scene->orders().count(), 1);
        QTRY_COMPARE(m_bench->board().level(4).level, 1);
        channel->forceActiveFocus(Qt::TabFocusReason);
        QTest::keyClick(&window(), Qt::Key_Return);
        QCOMPARE(m_scene->orders().count(), 2);
    }

    void nothingOfTheFormIsCut()
    {
        m_scene->form().setText(2, "BLINK"_s);
        const QQuickItem* form = itemNamed(&root(), "formFlickable"_s);
        QCOMPARE(visibleNamed(root(), "parameterText").size(), 3);
        QVERIFY(form->property("contentHeight").toDouble() <= form->height());
    }

    void theEventsOfAnOrderAreShownCopiedAndSaved()
    {
        m_scene->orders().run(&m_bench->tool(), "startListening"_s, {{"channel"_s, "ALARM"_s}});
        m_bench->board().setInput(5, 1);
        QTRY_VERIFY(m_scene->orders().index(0).data(OrderLogModel::EventsRole).toInt() > 0);
        m_scene->clock().tick();
        QTRY_COMPARE(visibleNamed(root(), "eventsButton").size(), 1);
        PanelFixture::click(visibleNamed(root(), "eventsButton").constFirst());
        QQuickItem* list = itemNamed(&root(), "eventsList"_s);
        QVERIFY(list->isVisible());
        const int count = list->property("count").toInt();
        QVERIFY(count > 0);
        PanelFixture::click(itemNamed(&root(), "eventsCopy"_s));
        const QString copied = QGuiApplication::clipboard()->text();
        QCOMPARE(copied.count(QLatin1Char('\n')), count + 1);
        const QTemporaryDir folder;
        const QString file = folder.filePath("e.csv"_s);
        PanelFixture::click(itemNamed(&root(), "eventsSave"_s));
        visibleNamed(root(), "saveField").constFirst()->setProperty("text", file);
        QTest::keyClick(&window(), Qt::Key_Return);
        QCOMPARE(visibleNamed(root(), "saveOutcome").constFirst()->property("text").toString(),
                 "Saved as "_s + file);
        QFile saved(file);
        QVERIFY(saved.open(QIODevice::ReadOnly));
        QCOMPARE(QString::fromUtf8(saved.readAll()), copied);
        PanelFixture::click(itemNamed(&root(), "eventsSave"_s));
        visibleNamed(root(), "saveField").constFirst()->setProperty("text", folder.path());
        PanelFixture::click(visibleNamed(root(), "saveButton").constFirst());
        QVERIFY(visibleNamed(root(), "saveOutcome")
                    .constFirst()
                    ->property("text")
                    .toString()
                    .endsWith(QLatin1String("names no regular file.")));
        QVERIFY(visibleNamed(root(), "saveField").constFirst()->isVisible());
        PanelFixture::click(itemNamed(&root(), "eventsClose"_s));
        QVERIFY(!list->isVisible());
    }

    void aCommandIsChosenFromTheList()
    {
        QQuickItem* box = itemNamed(&root(), "commandBox"_s);
        box->forceActiveFocus(Qt::TabFocusReason);
        QTest::keyClick(&window(), Qt::Key_Space);
        QTest::keyClick(&window(), Qt::Key_Down);
        QTest::keyClick(&window(), Qt::Key_Down);
        QTest::keyClick(&window(), Qt::Key_Return);
        QTRY_COMPARE(m_scene->form().command(), "getValue"_s);
        QTRY_COMPARE(visibleNamed(root(), "parameterText").size(), 0);
    }

    void aListeningOrderIsStoppedByItsButton()
    {
        giveOrder("listenToAll"_s);
        QTRY_COMPARE(visibleNamed(root(), "stopButton").size(), 1);
        PanelFixture::click(visibleNamed(root(), "stopButton").constFirst());
        QCOMPARE(m_scene->orders().running(), 0);
        m_scene->clock().tick();
        QCOMPARE(visibleNamed(root(), "stopButton").size(), 0);
    }

    void whatNoOrderWaitsForIsToldInTheLog()
    {
        Q_EMIT m_bench->board().problemTold(DWording::told("line \"do0\" blinks no more"_s));
        QCOMPARE(m_scene->orders().count(), 1);
        QTRY_COMPARE(visibleNamed(root(), "orderDetail").size(), 1);
        const QQuickItem* detail = visibleNamed(root(), "orderDetail").constFirst();
        QCOMPARE(detail->property("text").toString(), "line \"do0\" blinks no more"_s);
        QVERIFY(visibleNamed(root(), "stopButton").isEmpty());
    }

    /// What the user stopped has not failed.
    void theKindOfAFailureDecidesItsColour()
    {
        giveOrder("noSuchCommand"_s);
        m_scene->orders().run(&m_bench->tool(), "getValue"_s, {{"channel"_s, "SETPOINT"_s}});
        m_scene->orders().stop(0);
        m_scene->clock().tick();
        QTRY_COMPARE(visibleNamed(root(), "orderDetail").size(), 2);
        QMap<QString, QColor> colours;
        for (const QQuickItem* detail : visibleNamed(root(), "orderDetail")) {
            const QString text = detail->property("text").toString();
            colours.insert(text.left(text.indexOf(QLatin1Char(' '))),
                           detail->property("color").value<QColor>());
        }
        QCOMPARE(colours.size(), 2);
        QVERIFY(colours.value("unknown"_s).red() > 2 * colours.value("unknown"_s).green());
        QVERIFY(colours.first() != colours.last());
    }

    void theFilterNarrowsTheBoard()
    {
        QTest::keySequence(&window(), QKeySequence(QKeySequence::Find));
        type("alarm"_s);
        QQuickItem* list = itemNamed(&root(), "boardLines"_s);
        QTRY_COMPARE(list->property("count").toInt(), 1);
        QTRY_COMPARE(visibleNamed(root(), "lineSwitch").size(), 1);
        PanelFixture::click(visibleNamed(root(), "lineSwitch").constFirst());
        QCOMPARE(m_bench->board().level(5).level, 1);
        QTest::keySequence(&window(), QKeySequence(QKeySequence::Find));
        QTest::keyClick(&window(), Qt::Key_Escape);
        QTRY_COMPARE(list->property("count").toInt(), 8);
    }

    /// The one that a wire feeds, and the one that a waveform does.
    void anInputThatIsFedSaysSo()
    {
        QCOMPARE(remarks(), (QStringList{"driven"_s, "driven"_s}));
        m_bench->board().setPluggedIn(false);
        m_scene->clock().tick();
        const QStringList told = remarks();
        QCOMPARE(told.size(), visibleNamed(root(), "lineUnknown").size());
        QCOMPARE(told.count("old"_s), told.size());
    }

    void aBlinkingLineIsMarked()
    {
        m_scene->orders().run(&m_bench->tool(), "setValue"_s,
                              {{"channel"_s, "START"_s}, {"state"_s, "BLINK"_s}, {"dutyCycle"_s, 50}});
        QTRY_VERIFY(m_bench->board().blinks(0));
        m_scene->clock().tick();
        QCOMPARE(remarks().value(0), "\u25d0 blinking"_s);
    }

    void aClickThatFailsIsToldBesideThePage()
    {
        QQuickItem* problem = itemNamed(&root(), "clickProblem"_s);
        QQuickItem* box = itemNamed(&root(), "idChannelRow.idIndicator.idDigitalOutput"_s);
        QVERIFY(!problem->isVisible());
        m_bench->board().setPluggedIn(false);
        PanelFixture::click(box);
        QTRY_VERIFY(problem->isVisible());
        QCOMPARE(problem->property("text").toString(), "START: the device is not connected"_s);
        QVERIFY(m_scene->orders().index(0).data(OrderLogModel::PageRole).toBool());
        QCOMPARE(m_scene->orders().index(0).data(OrderLogModel::StateRole).toString(), "failed"_s);
        PanelFixture::click(itemNamed(&root(), "dismissButton"_s));
        QVERIFY(!problem->isVisible());
        PanelFixture::click(box);
        QTRY_VERIFY(problem->isVisible());
        m_bench->board().setPluggedIn(true);
        PanelFixture::click(box);
        QTRY_VERIFY(!problem->isVisible());
        QCOMPARE(m_bench->board().level(0).level, 1);
    }

    void theReadsOfThePageAreUnfolded()
    {
        QQuickItem* list = itemNamed(&root(), "pageReadsList"_s);
        QQuickItem* bar = itemNamed(&root(), "pageReadsBar"_s);
        QVERIFY(bar->isVisible());
        QVERIFY(!list->isVisible());
        PanelFixture::click(bar);
        QVERIFY(list->isVisible());
        QCOMPARE(list->property("count").toInt(), m_scene->pageReads().rowCount());
        QVERIFY(m_scene->pageReads().rowCount() >= 8); // a read of each channel
        QTest::keyClick(&window(), Qt::Key_Space);
        QVERIFY(!list->isVisible());
    }

    void aLevelIsWrittenAsANumber()
    {
        const auto numbers = visibleNamed(root(), "lineNumber");
        QCOMPARE(numbers.size(), 3); // an input, and the outputs that a channel drives
        QQuickItem* list = itemNamed(&root(), "boardLines"_s);
        PanelFixture::click(numbers.at(1));
        QCOMPARE(list->property("currentIndex").toInt(), 6);
        type("4321"_s);
        QTest::keyClick(&window(), Qt::Key_Return);
        QCOMPARE(m_bench->board().level(6).level, 4321);
        QVERIFY(!numbers.at(1)->hasActiveFocus()); // the list has the keyboard again
        QVERIFY(list->hasActiveFocus());
        // From the keyboard alone; Esc leaves the level.
        list->setProperty("currentIndex", 3);
        list->forceActiveFocus(Qt::TabFocusReason);
        QTest::keyClick(&window(), Qt::Key_Return);
        type("77"_s);
        QTest::keyClick(&window(), Qt::Key_Return);
        QTRY_COMPARE(m_bench->board().level(3).level, 77);
        QTest::keyClick(&window(), Qt::Key_Return);
        type("5"_s);
        QTest::keyClick(&window(), Qt::Key_Escape);
        m_scene->clock().tick();
        QCOMPARE(visibleNamed(root(), "lineNumber").constFirst()->property("text").toString(), "77"_s);
        QCOMPARE(m_scene->orders().count(), 1);
    }

    void anAnalogueOutputIsSetByItsSlider()
    {
        QQuickItem* slider = visibleNamed(root(), "lineSlider").value(0);
        const QPoint right = slider->mapToScene(QPointF(slider->width() - 1, slider->height() / 2)).toPoint();
        QTest::mouseClick(&window(), Qt::LeftButton, Qt::NoModifier, right);
        QTRY_COMPARE(m_bench->board().level(3).level, 65535);
        QCOMPARE(m_scene->orders().count(), 1);
    }

    void oneButtonSwitchesAllOff()
    {
        for (const QString& channel : {"START"_s, "E_STOP"_s}) {
            m_scene->orders().run(&m_bench->tool(), "setValue"_s,
                                  {{"channel"_s, channel}, {"state"_s, "ON"_s}});
        }
        QTRY_COMPARE(m_bench->board().level(4).level, 1);
        PanelFixture::click(itemNamed(&root(), "allOffButton"_s));
        QTRY_COMPARE(m_bench->board().level(0).level, 0);
        QTRY_COMPARE(m_bench->board().level(4).level, 0);
    }

    void allOffThatCannotBeUsedSaysWhy()
    {
        QQuickItem* button = itemNamed(&root(), "allOffButton"_s);
        QQuickItem* list = itemNamed(&root(), "toolsList"_s);
        const auto isTold = [this](QQuickItem* item, const QString& text) {
            return waitUntil([&] {
                QTest::mouseMove(&window(),
                                 item->mapToScene(QPointF(item->width() / 2, item->height() / 2)).toPoint());
                const QVector<QQuickItem*> tips = visibleNamed(*window().contentItem(), "toolTip");
                return (tips.isEmpty() ? QString() : tips.constFirst()->property("text").toString()) == text;
            });
        };
        const QString hint = "Switch off all that the tools drive"_s;
        const QString reason = "Not connected"_s;
        for (const bool pluggedIn : {true, false}) {
            m_bench->board().setPluggedIn(pluggedIn);
            m_scene->clock().tick();
            QVERIFY(isTold(button, pluggedIn ? hint : reason));
            QCOMPARE(QAccessible::queryAccessibleInterface(button)->text(QAccessible::Description),
                     pluggedIn ? hint : reason);
            QVERIFY(isTold(list, QString()));
        }
    }

    void freezingHoldsTheWaveforms()
    {
        QQuickItem* button = itemNamed(&root(), "freezeButton"_s);
        QQuickItem* mark = itemNamed(&root(), "heldMark"_s);
        QVERIFY(!mark->isVisible());
        const double width = button->width();
        const QString hint = button->property("hint").toString();
        PanelFixture::click(button);
        QVERIFY(!m_scene->clock().isRunning());
        QVERIFY(mark->isVisible());
        QCOMPARE(button->property("text").toString(), "Resume"_s);
        QVERIFY(button->property("hint").toString() != hint);
        QCOMPARE(button->width(), width);
        PanelFixture::click(button);
        QVERIFY(m_scene->clock().isRunning());
        QVERIFY(!mark->isVisible());
    }

    void theTimeUnderThePointerIsShown()
    {
        QQuickItem* label = itemNamed(&root(), "pointedTime"_s);
        QVERIFY(!label->isVisible());
        QQuickItem* wave = visibleNamed(root(), "lineCourse").constFirst();
        const QPointF middle = wave->mapToScene(QPointF(wave->width() / 2, wave->height() / 2));
        QTest::mouseMove(&window(), middle.toPoint());
        QTRY_VERIFY(label->isVisible());
        const QString text = label->property("text").toString();
        QVERIFY2(QRegularExpression("^\u2212[45]\\.\\d\\d\u00a0s$"_s).match(text).hasMatch(),
                 qPrintable(text));
        // Held, it counts from what was the present, and on as soon as the courses run.
        m_scene->courses().pan(0);
        m_bench->scheduler().advance(7000000);
        m_scene->clock().tick();
        QCOMPARE(label->property("text").toString(), text);
        m_scene->courses().zoom(0.5, 0.5);
        m_scene->courses().goLive();
        QVERIFY2(QRegularExpression("^\u22129\\.\\d+\u00a0s$"_s)
                     .match(label->property("text").toString())
                     .hasMatch(),
                 qPrintable(label->property("text").toString()));
        QTest::mouseMove(&window(), QPoint(5, 5));
        QTRY_VERIFY(!label->isVisible());
    }

    /// To the pixel.
    void theLevelUnderThePointerIsThatDrawnThere()
    {
        m_bench->scheduler().advance(5000000);
        m_bench->board().setInput(5, 1);
        m_bench->scheduler().advance(3333333);
        m_scene->clock().tick();
        QQuickItem* course = visibleNamed(root(), "lineCourse").at(5);
        const QQuickItem* level = itemsNamed(&root(), "lineLevel"_s).at(5);
        QCOMPARE(level->property("text").toString(), "1"_s);
        const double edge = course->width() * m_scene->courses().placeOf(m_bench->board().level(5).sinceUs);
        const auto toldAt = [&](double x) {
            QTest::mouseMove(&window(), course->mapToScene(QPointF(x, course->height() / 2)).toPoint());
            return level->property("text").toString();
        };
        QTRY_COMPARE(toldAt(edge - 1), "0"_s);
        QTRY_COMPARE(toldAt(edge + 1), "1"_s);
    }

    void theWheelZoomsAtThePointer()
    {
        m_bench->play(20000000);
        m_scene->clock().tick();
        const QPoint place = atCourse(0.5);
        const double before = timeAt(0.5);
        turnWheel(place, 120);
        QVERIFY(m_scene->courses().spanUs() < 10e6);
        QVERIFY(!m_scene->courses().isLive());
        QVERIFY2(qAbs(timeAt(0.5) - before) < 50000, qPrintable(QString::number(timeAt(0.5) - before)));
        turnWheel(place, -120);
        QCOMPARE(m_scene->courses().spanUs(), 10e6);
    }

    void draggingMovesTheCoursesUntilAKeyFollowsThePresent()
    {
        m_bench->play(20000000);
        m_scene->clock().tick();
        const double before = m_scene->courses().fromUs();
        QTest::mousePress(&window(), Qt::LeftButton, Qt::NoModifier, atCourse(0.25));
        QTest::mouseMove(&window(), atCourse(0.5));
        QTest::mouseMove(&window(), atCourse(0.75));
        QTest::mouseRelease(&window(), Qt::LeftButton, Qt::NoModifier, atCourse(0.75));
        QVERIFY(qAbs(before - m_scene->courses().fromUs() - 5e6) < 1e5);
        QVERIFY(itemNamed(&root(), "heldMark"_s)->isVisible());
        m_bench->play(1000000);
        QVERIFY(qAbs(before - m_scene->courses().fromUs() - 5e6) < 1e5);
        QTest::keyClick(&window(), Qt::Key_L);
        QVERIFY(m_scene->courses().isLive());
        m_scene->clock().tick();
        QCOMPARE(m_scene->courses().fromUs(), before + 1e6);
        QVERIFY(!itemNamed(&root(), "heldMark"_s)->isVisible());
    }

    void aClickThatTremblesMovesNothing()
    {
        m_bench->play(20000000);
        m_scene->clock().tick();
        QTest::mousePress(&window(), Qt::LeftButton, Qt::NoModifier, atCourse(0.5));
        QTest::mouseMove(&window(), atCourse(0.5) + QPoint(2, 1));
        QTest::mouseMove(&window(), atCourse(0.5) + QPoint(3, 0));
        QTest::mouseRelease(&window(), Qt::LeftButton, Qt::NoModifier, atCourse(0.5) + QPoint(3, 0));
        QVERIFY(m_scene->courses().isLive());
    }

    void keysZoomAndStopTheCourses()
    {
        m_bench->play(20000000);
        m_scene->clock().tick();
        QTest::mouseClick(&window(), Qt::LeftButton, Qt::NoModifier, atCourse(0.5));
        QTest::mouseMove(&window(), QPoint(5, 5));
        QTest::keyClick(&window(), Qt::Key_Plus);
        QCOMPARE(m_scene->courses().spanUs(), 5e6);
        QTest::keyClick(&window(), Qt::Key_Minus);
        QCOMPARE(m_scene->courses().spanUs(), 10e6);
        QTest::keyClick(&window(), Qt::Key_F);
        QVERIFY(qAbs(m_scene->courses().spanUs() - 20e6) < 1e6);
        QVERIFY(m_scene->courses().isLive());
        QTest::keyClick(&window(), Qt::Key_Space);
        QVERIFY(!m_scene->clock().isRunning());
        QTest::keyClick(&window(), Qt::Key_Space);
        QVERIFY(m_scene->clock().isRunning());
    }

    /// By whatever they are held, and by whatever they are let go.
    void coursesThatAreHeldRunAgain()
    {
        m_bench->play(20000000);
        m_scene->clock().tick();
        const QQuickItem* mark = itemNamed(&root(), "heldMark"_s);
        QQuickItem* courses = itemNamed(&root(), "courses"_s);
        const std::function<void()> holds[] = {
            [this] { QTest::keyClick(&window(), Qt::Key_Space); },
            [this] { m_scene->courses().pan(0.2); },
            [this] {
                QTest::keyClick(&window(), Qt::Key_Space);
                m_scene->courses().pan(0.2);
            },
            [this] {
                m_scene->trigger().setMode("at"_s);
                m_scene->trigger().setCondition(5, CourseTrigger::Condition::Either);
                m_bench->board().setInput(5, 1 - m_bench->board().level(5).level);
                m_bench->scheduler().advance(1000000);
                m_scene->clock().tick();
                m_scene->trigger().clear();
            },
        };
        const std::function<void()> ways[] = {
            [this] { QTest::keyClick(&window(), Qt::Key_Space); },
            [this] { QTest::keyClick(&window(), Qt::Key_L); },
            [this] { PanelFixture::click(itemNamed(&root(), "freezeButton"_s)); },
            [this] { PanelFixture::click(itemNamed(&root(), "heldMark"_s)); },
        };
        for (const auto& hold : holds) {
            for (const auto& letGo : ways) {
                courses->forceActiveFocus(Qt::TabFocusReason);
                hold();
                QVERIFY(mark->isVisible());
                letGo();
                QVERIFY(!mark->isVisible());
                QVERIFY(m_scene->clock().isRunning());
                QVERIFY(m_scene->courses().isLive());
                QTest::mouseMove(&window(), QPoint(5, 5));
            }
        }
    }

    void withAnotherKeyHeldTheKeysOfTheCoursesAreOthers()
    {
        m_bench->play(20000000);
        m_scene->clock().tick();
        QTest::mouseMove(&window(), QPoint(5, 5));
        const QVariantMap arrangement = m_scene->arrangement();
        for (const char* place : {"courses", "boardLines"}) {
            itemNamed(&root(), QLatin1String(place))->forceActiveFocus(Qt::TabFocusReason);
            for (const auto modifier : {Qt::ControlModifier, Qt::AltModifier, Qt::MetaModifier}) {
                for (const Qt::Key key :
                     {Qt::Key_Space, Qt::Key_Plus, Qt::Key_Minus, Qt::Key_E, Qt::Key_G, Qt::Key_H, Qt::Key_L,
                      Qt::Key_R, Qt::Key_T, Qt::Key_Left, Qt::Key_Right}) {
                    QTest::keyClick(&window(), key, modifier);
                }
            }
            for (const Qt::Key key : {Qt::Key_1, Qt::Key_2, Qt::Key_F}) { // with Ctrl they are the window's
                QTest::keyClick(&window(), key, Qt::AltModifier);
                QTest::keyClick(&window(), key, Qt::MetaModifier);
            }
        }
        QCOMPARE(m_scene->arrangement(), arrangement);
        QVERIFY(m_scene->clock().isRunning());
        QVERIFY(m_scene->courses().isLive());
        QCOMPARE(m_scene->courses().spanUs(), 10e6);
        QVERIFY(m_scene->courses().cursors().isEmpty());
        QVERIFY(!m_scene->trigger().isActive());
        QVERIFY(visibleNamed(root(), "saveField").isEmpty());
    }

    void cursorsMeasureAPulse()
    {
        for (const int level : {1, 0, 1, 0}) {
            m_bench->board().setInput(5, level);
            m_bench->scheduler().advance(level == 1 ? 250000 : 1000000);
        }
        m_scene->clock().tick();
        QQuickItem* text = itemNamed(&root(), "cursorsText"_s);
        QTest::mouseClick(&window(), Qt::LeftButton, Qt::NoModifier, atCourse(0.5, 5));
        QTest::mouseMove(&window(), atCourse(0.5, 5) + QPoint(1, 0));
        QTest::keyClick(&window(), Qt::Key_1);
        QCOMPARE(visibleNamed(root(), "cursor1").size(), 1);
        QCOMPARE(text->property("text").toString(), "Cursor 1"_s);
        QTest::keyClick(&window(), Qt::Key_Right);
        QTest::keyClick(&window(), Qt::Key_2); // near no edge
        QTest::keyClick(&window(), Qt::Key_Right);
        QTest::keyClick(&window(), Qt::Key_Right);
        QCOMPARE(text->property("text").toString(),
                 "1\u20132: 250\u00a0ms \u00b7 4\u00a0Hz \u00b7 2 edges \u00b7 1 to 1 \u00b7 mean 1"_s);
        QTest::keyClick(&window(), Qt::Key_Escape);
        QVERIFY(visibleNamed(root(), "cursor1").isEmpty());
        QCOMPARE(text->property("text").toString(), QString());
    }

    void theLevelUnderThePointerIsMeasured()
    {
        for (const int level : {1, 0, 1, 0}) {
            m_bench->board().setInput(5, level);
            m_bench->scheduler().advance(level == 1 ? 1000000 : 3000000);
        }
        m_scene->clock().tick();
        QTest::mouseMove(&window(), atCourse(0.5, 5));
        const QQuickItem* measured = itemNamed(&root(), "measured"_s);
        QTRY_COMPARE(
            measured->property("text").toString(),
            "low for 3\u00a0s \u00b7 period 4\u00a0s \u00b7 0.25\u00a0Hz \u00b7 duty cycle 25\u00a0%"_s);
        QTest::mouseMove(&window(), QPoint(5, 5));
        QTRY_VERIFY(measured->property("text").toString().startsWith(QLatin1String("Wheel")));
    }

    void theMarksOfTheAxisNeverCollide_data()
    {
        const Rows<int, double> row("width", "factor");
        for (const int width : {640, 800, 1280, 3840}) {
            for (const double factor : {0.02, 0.7, 1.0, 3.0, 1000.0, 100000.0}) {
                row(qPrintable("%1, %2"_s.arg(width).arg(factor)), width, factor);
            }
        }
    }
    void theMarksOfTheAxisNeverCollide()
    {
        QFETCH(int, width);
        QFETCH(double, factor);
        root().setWidth(width);
        m_scene->courses().zoom(factor, 1);
        const QVector<QQuickItem*> marks = visibleNamed(root(), "axisMark");
        for (int mark = 1; mark < marks.size(); ++mark) {
            QVERIFY(marks.at(mark - 1)->x() + marks.at(mark - 1)->width() < marks.at(mark)->x());
        }
        QVERIFY(width < 1280 || marks.size() > 1);
    }

    void theRingOfTheCoursesLeavesTheTimesReadable()
    {
        itemNamed(&root(), "courses"_s)->forceActiveFocus(Qt::TabFocusReason);
        const QQuickItem* ring = visibleNamed(root(), "coursesRing").value(0);
        QVERIFY(ring != nullptr);
        const QRectF place = ring->mapRectToScene(ring->boundingRect());
        const QVector<QQuickItem*> marks = visibleNamed(root(), "axisMark");
        QVERIFY(marks.size() > 1);
        for (const QQuickItem* mark : marks) {
            QVERIFY(!mark->mapRectToScene(mark->boundingRect()).intersects(place));
        }
    }

    void aTitleIsReadableOrLeftOut_data()
    {
        const Rows<double, bool> row("width of the pane", "isThere");
        row("room for all of it", 176, true);
        row("room for a letter or two", 130, false);
        row("not even room for its button", 64, false);
    }
    void aTitleIsReadableOrLeftOut()
    {
        const auto [width, isThere] = Rows<double, bool>::values();
        const QQuickItem* title = visibleNamed(root(), "paneTitle").constFirst();
        title->parentItem()->setWidth(width);
        QCOMPARE(title->isVisible(), isThere);
        QCOMPARE(title->property("truncated").toBool(), !isThere);
    }

    void aRecordIsMarkedInTheNarrowestBar_data()
    {
        const Rows<double, QString> row("width of the window", "mark");
        row("wide", 1280, "\u25cf REC"_s);
        row("narrow", 800, "\u25cf"_s);
    }
    void aRecordIsMarkedInTheNarrowestBar()
    {
        const auto [width, mark] = Rows<double, QString>::values();
        const QTemporaryDir folder;
        root().setWidth(width);
        QVERIFY(visibleNamed(root(), "paneMark").isEmpty());
        auto* recorder = root().property("recorder").value<TraceRecorder*>();
        QCOMPARE(recorder->begin(folder.filePath("a.vcd"_s)), QString());
        const QQuickItem* label = visibleNamed(root(), "paneMark").value(0);
        QVERIFY(label != nullptr);
        QCOMPARE(label->property("text").toString(), mark);
        QVERIFY(!label->property("truncated").toBool());
        const QQuickItem* filter = itemNamed(&root(), "lineFilter"_s);
        QTRY_VERIFY(label->mapToScene(QPointF(label->width(), 0)).x() < filter->mapToScene(QPointF()).x());
        QCOMPARE(recorder->end(), QString());
    }

    void theRoomOfThePanesIsSharedByDragging()
    {
        QQuickItem* handle = itemNamed(&root(), "toolsHandle"_s);
        const QPoint grip = handle->mapToScene(QPointF(2, 100)).toPoint();
        const double before = handle->x();
        QTest::mousePress(&window(), Qt::LeftButton, Qt::NoModifier, grip);
        QTest::mouseMove(&window(), grip + QPoint(20, 0));
        QTest::mouseMove(&window(), grip + QPoint(50, 0));
        QTest::mouseRelease(&window(), Qt::LeftButton, Qt::NoModifier, grip + QPoint(50, 0));
        QCOMPARE(handle->x(), before + 50);
    }

    void thePageTakesWhatItsRowsNeed_data()
    {
        const Rows<QString, QString, int> row("type", "name", "level");
        row("a level", "analogOutput", "Speed", 65535);
        row("a name", "digitalOutput", "Contact of the cabinet's door", 1);
        row("a name beside a level", "analogOutput", "Temperature of a bearing", 65535);
    }
    void thePageTakesWhatItsRowsNeed()
    {
        const auto [type, name, level] = Rows<QString, QString, int>::values();
        close();
        m_bench = std::make_unique<ExampleBench>(8);
        const int line = level > 1 ? 6 : 5;
        m_bench->board().setInput(line, level);
        QVariantMap entry = channelEntry("ID"_s, type, "in"_s, m_bench->board().lines().at(line).name);
        entry.insert("name"_s, name);
        DTool tool(toolEntry({entry}), builtPlugin(), &m_bench->board());
        show({&tool});
        QVERIFY(showsWhole(root()));
        root().setProperty("wantedPageWidth", root().property("pageWidth").toDouble() - 24);
        QVERIFY(!showsWhole(root()));
        close();
    }

    void thePageTakesWhatItsHeaderNeeds()
    {
        close();
        m_bench = std::make_unique<ExampleBench>(4);
        DTool tool(toolEntry({}, "Front panel of the third cabinet"_s), builtPlugin(), &m_bench->board());
        show({&tool});
        const QQuickItem* name = itemNamed(m_scene->panel().page(), "panelName"_s);
        QCOMPARE(name->property("text").toString(), "Front panel of the third cabinet"_s);
        QVERIFY(!name->property("truncated").toBool());
        close();
    }

    void thePageIsWholeBeforeWhatIsBesideItIsWide()
    {
        const QQuickItem* board = itemNamed(&root(), "boardLines"_s);
        const QQuickItem* tools = itemNamed(&root(), "toolsList"_s);
        root().setWidth(1064);
        QVERIFY(showsWhole(root()));
        QCOMPARE(board->width(), 320.0);
        QVERIFY(tools->width() < 176);
        root().setWidth(1280);
        QVERIFY(showsWhole(root()));
        QVERIFY(board->width() > 320);
        QCOMPARE(tools->width(), 176.0);
    }

    void thePageLeavesTheBoardAThird()
    {
        close();
        m_bench = std::make_unique<ExampleBench>(4);
        DTool tool(toolEntry({}, "Front panel "_s.repeated(20)), builtPlugin(), &m_bench->board());
        show({&tool});
        const QQuickItem* board = itemNamed(&root(), "boardLines"_s);
        QCOMPARE(board->width(), std::round(root().property("besideTools").toDouble() / 3));
        itemNamed(&root(), "boardHandle"_s)->forceActiveFocus(Qt::TabFocusReason);
        QTest::keyClick(&window(), Qt::Key_Right);
        QCOMPARE(board->width(), std::round(root().property("besideTools").toDouble() / 3) - 16);
        QVERIFY(m_scene->arrangement().value("wantedPageWidth"_s).toDouble() > 0);
        close();
    }

    void theRoomOfThePanesIsSharedByKeys_data()
    {
        const Rows<QString, int, int> row("handle", "less", "more");
        row("tools", "toolsHandle", Qt::Key_Left, Qt::Key_Right);
        row("page", "boardHandle", Qt::Key_Left, Qt::Key_Right);
        row("command", "commandHandle", Qt::Key_Left, Qt::Key_Right);
        row("what is below", "lowerHandle", Qt::Key_Up, Qt::Key_Down);
    }
    void theRoomOfThePanesIsSharedByKeys()
    {
        const auto [name, less, more] = Rows<QString, int, int>::values();
        QQuickItem* handle = itemNamed(&root(), name);
        QAccessibleInterface* told = QAccessible::queryAccessibleInterface(handle);
        const auto place = [told] { return told->valueInterface()->currentValue().toDouble(); };
        const double before = place();
        handle->forceActiveFocus(Qt::TabFocusReason);
        QTest::keyClick(&window(), static_cast<Qt::Key>(less));
        QCOMPARE(place(), before - 16);
        QTest::keyClick(&window(), static_cast<Qt::Key>(more));
        QTest::keyClick(&window(), static_cast<Qt::Key>(more));
        QCOMPARE(place(), before + 16);
        told->actionInterface()->doAction(QAccessibleActionInterface::decreaseAction());
        QCOMPARE(place(), before);
    }

    void aPaneIsFoldedByKeys()
    {
        QQuickItem* handle = itemNamed(&root(), "toolsHandle"_s);
        handle->forceActiveFocus(Qt::TabFocusReason);
        QTest::keyClick(&window(), Qt::Key_Return);
        QVERIFY(root().property("toolsFolded").toBool());
        QTest::keyClick(&window(), Qt::Key_Right);
        QCOMPARE(handle->x(), 0.0);
        QTest::keyClick(&window(), Qt::Key_Space);
        QVERIFY(!root().property("toolsFolded").toBool());
    }

    void panesFoldAway_data()
    {
        const Rows<QString, QString, int> row("handle", "pane", "key");
        row("tools", "toolsHandle", "toolsList", Qt::Key_1);
        row("page", "boardHandle", "pagePanel", Qt::Key_2);
        row("command and orders", "lowerHandle", "ordersList", Qt::Key_3);
    }
    void panesFoldAway()
    {
        const auto [handle, pane, key] = Rows<QString, QString, int>::values();
        const QQuickItem* list = itemNamed(&root(), "boardLines"_s);
        const double before = list->width() * list->height();
        PanelFixture::click(itemNamed(&root(), handle + "Fold"_s));
        QVERIFY(!itemNamed(&root(), pane)->isVisible());
        QVERIFY(list->width() * list->height() > before);
        QTest::keyClick(&window(), static_cast<Qt::Key>(key), Qt::ControlModifier);
        QVERIFY(itemNamed(&root(), pane)->isVisible());
        QCOMPARE(list->width() * list->height(), before);
    }

    void rowsAreAsHighAsTheyAreDragged()
    {
        const QQuickItem* course = visibleNamed(root(), "lineCourse").constFirst();
        const QQuickItem* handle = visibleNamed(root(), "rowHeightHandle").constFirst();
        const double before = course->height();
        const QPoint grip = handle->mapToScene(QPointF(20, 3)).toPoint();
        QTest::mousePress(&window(), Qt::LeftButton, Qt::NoModifier, grip);
        QTest::mouseMove(&window(), grip + QPoint(0, 10));
        QTest::mouseMove(&window(), grip + QPoint(0, 32));
        QTest::mouseRelease(&window(), Qt::LeftButton, Qt::NoModifier, grip + QPoint(0, 32));
        QCOMPARE(course->height(), before + 32);
    }

    void keysMakeTheRowsHigher()
    {
        const QQuickItem* course = visibleNamed(root(), "lineCourse").constFirst();
        const double before = course->height();
        itemNamed(&root(), "boardLines"_s)->forceActiveFocus(Qt::TabFocusReason);
        QTest::keyClick(&window(), Qt::Key_Down, Qt::AltModifier | Qt::ShiftModifier);
        QCOMPARE(course->height(), before + 8);
        QTest::keyClick(&window(), Qt::Key_Up, Qt::AltModifier | Qt::ShiftModifier);
        QCOMPARE(course->height(), before);
        QCOMPARE(m_scene->lineFilter().order().constFirst(), "do0"_s); // none has moved
    }

    void allChosenLinesAreHidden()
    {
        itemNamed(&root(), "boardLines"_s)->forceActiveFocus(Qt::TabFocusReason);
        QTest::keyClick(&window(), Qt::Key_Down, Qt::ShiftModifier);
        QTest::keyClick(&window(), Qt::Key_Down, Qt::ShiftModifier);
        QTest::keyClick(&window(), Qt::Key_H);
        QCOMPARE(m_scene->lineFilter().hidden(), (QStringList{"ai0"_s, "di0"_s, "do0"_s}));
    }

    void keysHideMoveAndGroupTheLines()
    {
        const auto names = [this] {
            QStringList found;
            for (int row = 0; row < 3; ++row) {
                found.append(m_scene->lineFilter().index(row, 0).data(LinesModel::NameRole).toString());
            }
            return found.join(QLatin1Char(' '));
        };
        QQuickItem* list = itemNamed(&root(), "boardLines"_s);
        list->forceActiveFocus(Qt::TabFocusReason);
        QTest::keyClick(&window(), Qt::Key_Down, Qt::AltModifier);
        QCOMPARE(names(), "di0 do0 ai0"_s);
        QCOMPARE(list->property("currentIndex").toInt(), 1);
        QTest::keyClick(&window(), Qt::Key_H);
        QCOMPARE(names(), "di0 ai0 ao0"_s);
        const auto chosen = [list] {
            const auto* row = list->property("currentItem").value<QQuickItem*>();
            return row != nullptr ? row->property("line").toInt() : -1;
        };
        QTRY_COMPARE(chosen(), 2); // ai0
        QTest::keyClick(&window(), Qt::Key_G);
        QCOMPARE(names(), "ai0 ai1 ao0"_s);
        QTRY_COMPARE(chosen(), 2); // in its new place
        QTRY_COMPARE(visibleNamed(root(), "groupName").size(), 4);
        // The same from the menu.
        PanelFixture::click(itemNamed(&root(), "linesButton"_s));
        QTRY_VERIFY(itemNamed(window().contentItem(), "menuEntry1"_s) != nullptr);
        QTRY_VERIFY(itemNamed(window().contentItem(), "menuEntry1"_s)->isVisible());
        QQuickItem* entry = itemNamed(window().contentItem(), "menuEntry1"_s);
        QCOMPARE(entry->property("text").toString(), "Show 1 hidden line"_s);
        PanelFixture::click(entry);
        QCOMPARE(m_scene->lineFilter().hiddenCount(), 0);
        QCOMPARE(entry->property("text").toString(), "Show all lines"_s);
    }

    void theCursorFollowsTheEdgesOfAllChosenLines()
    {
        for (const int line : {5, 6}) {
            m_bench->board().setInput(line, 1 - m_bench->board().level(5).level);
            m_bench->scheduler().advance(1000000);
            m_scene->clock().tick();
        }
        QQuickItem* list = itemNamed(&root(), "boardLines"_s);
        const auto press = [this](Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
            itemNamed(&root(), "courses"_s)->forceActiveFocus(Qt::TabFocusReason);
            QTest::keyClick(&window(), key, modifiers);
        };
        const TimeColumns drawn = m_scene->courses().columns();
        const auto cursorColumn = [&] {
            const QVariant share = m_scene->courses().cursors().value(0).toMap().value("share"_s);
            return share.toDouble() * static_cast<double>(drawn.perSpan);
        };
        list->setProperty("currentIndex", 6);
        press(Qt::Key_Down, Qt::ShiftModifier);
        press(Qt::Key_Left);
        const double later = cursorColumn();
        press(Qt::Key_Left);
        QCOMPARE(cursorColumn(), later); // no edge before
        press(Qt::Key_Up, Qt::ShiftModifier);
        press(Qt::Key_Up, Qt::ShiftModifier);
        QCOMPARE(list->property("currentIndex").toInt(), 5);
        press(Qt::Key_Left);
        const double second =
            1000000.0 * static_cast<double>(drawn.perSpan) / static_cast<double>(drawn.spanUs);
        const double earlier = cursorColumn();
        QVERIFY2(qAbs(later - second - earlier) <= 1, qPrintable(QString::number(earlier)));
        press(Qt::Key_Right);
        QCOMPARE(cursorColumn(), later); // of a line beside the current one
        QVERIFY(!visibleNamed(root(), "alsoChosenMark").isEmpty());
        press(Qt::Key_Escape);
        QVERIFY(visibleNamed(root(), "alsoChosenMark").isEmpty());
        QTest::mouseClick(&window(), Qt::LeftButton, Qt::ControlModifier, atCourse(0.5, 1));
        QCOMPARE(visibleNamed(root(), "alsoChosenMark").size(), 1);
        QTest::mouseClick(&window(), Qt::LeftButton, Qt::NoModifier, atCourse(0.5, 0));
        QVERIFY(visibleNamed(root(), "alsoChosenMark").isEmpty());
    }

    void theTriggerIsSetByAKeyAndMarked()
    {
        QQuickItem* bar = itemNamed(&root(), "triggerBar"_s);
        QVERIFY(!bar->isVisible());
        PanelFixture::click(itemNamed(&root(), "boardLines"_s)); // some line
        QQuickItem* list = itemNamed(&root(), "boardLines"_s);
        list->setProperty("currentIndex", 5);
        QTest::keyClick(&window(), Qt::Key_T);
        QVERIFY(bar->isVisible());
        m_bench->board().setInput(5, 1);
        m_bench->scheduler().advance(100000);
        m_scene->clock().tick();
        QCOMPARE(itemNamed(&root(), "triggerText"_s)->property("text").toString(),
                 "Trigger di1 \u2191: 1 time"_s);
        QTRY_COMPARE(visibleNamed(root(), "triggerMark").size(), 1);
        m_bench->scheduler().advance(10000000);
        m_scene->clock().tick();
        QVERIFY(!m_scene->clock().isRunning());
        PanelFixture::click(itemNamed(&root(), "triggerClear"_s));
        QVERIFY(!bar->isVisible());
    }

    void theCoursesAreExportedAndRecorded()
    {
        const QTemporaryDir folder;
        const QQuickItem* courses = itemNamed(&root(), "courses"_s);
        itemNamed(&root(), "courses"_s)->forceActiveFocus(Qt::TabFocusReason);
        const auto saveAs = [&](Qt::Key key, const QString& name) {
            QTest::keyClick(&window(), key);
            for (QQuickItem* field : visibleNamed(root(), "saveField")) {
                field->setProperty("text", folder.filePath(name));
            }
            QTest::keyClick(&window(), Qt::Key_Return);
        };
        const auto isThere = [&folder](const QString& name) {
            return QFileInfo(folder.filePath(name)).size() > 0;
        };
        const auto outcome = [this] {
            return visibleNamed(root(), "saveOutcome").constFirst()->property("text").toString();
        };
        saveAs(Qt::Key_E, "a.csv"_s);
        QVERIFY(isThere("a.csv"_s));
        // The courses have the keyboard again.
        QVERIFY(courses->hasActiveFocus());
        QVERIFY(QFile::remove(folder.filePath("a.csv"_s)));
        QTest::keyClick(&window(), Qt::Key_Return);
        QVERIFY(!isThere("a.csv"_s));
        QTest::keyClick(&window(), Qt::Key_E);
        QVERIFY(!courses->hasActiveFocus());
        QTest::keyClick(&window(), Qt::Key_Escape);
        QVERIFY(courses->hasActiveFocus());
        saveAs(Qt::Key_E, "a.png"_s);
        QTRY_VERIFY(!QImage(folder.filePath("a.png"_s)).isNull());
        saveAs(Qt::Key_R, "a.vcd"_s);
        QCOMPARE(outcome(), "Recording into "_s + folder.filePath("a.vcd"_s));
        QVERIFY(m_scene->reasonToStay().contains("trace"_s));
        QTest::keyClick(&window(), Qt::Key_R);
        QVERIFY(isThere("a.vcd"_s));
        QCOMPARE(outcome(), "Saved as "_s + folder.filePath("a.vcd"_s));
        QTest::keyClick(&window(), Qt::Key_Escape);
        QVERIFY(visibleNamed(root(), "saveOutcome").isEmpty());
        QCOMPARE(m_scene->reasonToStay(), QString());
        // The next one goes to the same folder.
        QTest::keyClick(&window(), Qt::Key_E);
        QCOMPARE(visibleNamed(root(), "saveField").constFirst()->property("text").toString(),
                 folder.filePath("courses.csv"_s));
    }

    void whatIsSavedGoesToTheDocumentsOrHome()
    {
        const QByteArray home = qgetenv("HOME");
        const QTemporaryDir folder;
        qputenv("HOME", folder.path().toUtf8());
        const auto place = [] { return Files().documentFile("a.csv"_s); };
        QCOMPARE(place(), folder.filePath("a.csv"_s));
        QVERIFY(QDir(folder.path()).mkdir("Documents"_s));
        QCOMPARE(place(), folder.filePath("Documents/a.csv"_s));
        qputenv("HOME", home);
    }

    void aFileThatIsThereIsReplacedWhenThatIsWanted()
    {
        const QTemporaryDir folder;
        const QString file = folder.filePath("a.csv"_s);
        const auto content = [&file] {
            QFile there(file);
            return there.open(QIODevice::ReadOnly) ? there.readAll() : QByteArray();
        };
        QFile before(file);
        QVERIFY(before.open(QIODevice::WriteOnly));
        before.write("before");
        before.close();
        itemNamed(&root(), "courses"_s)->forceActiveFocus(Qt::TabFocusReason);
        QTest::keyClick(&window(), Qt::Key_E);
        visibleNamed(root(), "saveField").constFirst()->setProperty("text", file);
        QTest::keyClick(&window(), Qt::Key_Return);
        QCOMPARE(content(), QByteArray("before"));
        QCOMPARE(visibleNamed(root(), "saveOutcome").constFirst()->property("text").toString(),
                 file + " is there already; save once more to replace it."_s);
        QCOMPARE(visibleNamed(root(), "saveButton").constFirst()->property("text").toString(), "Replace"_s);
        QTest::keyClick(&window(), Qt::Key_Return);
        QVERIFY(content().startsWith("time,"));
    }

    /// In the longer language.
    void whatIsToldOfTheCoursesStaysInItsPane()
    {
        close();
        installTexts(QLocale(QLocale::French));
        open(8);
        root().setSize(QSizeF(800, 500));
        m_bench->play(10000000);
        m_scene->clock().tick();
        itemNamed(&root(), "boardLines"_s)->setProperty("currentIndex", 2);
        m_scene->courses().setCursor(1, 0.123, -1);
        m_scene->courses().setCursor(2, 0.789, -1);
        m_scene->trigger().setCondition(0, CourseTrigger::Condition::Rising);
        const QQuickItem* pane = itemNamed(&root(), "triggerBar"_s);
        for (const char* name : {"cursorsText", "triggerText", "triggerMode", "triggerClear"}) {
            const QQuickItem* item = visibleNamed(root(), name).value(0);
            QVERIFY2(item != nullptr, name);
            const QRectF place = item->mapRectToItem(pane, item->boundingRect());
            QVERIFY2(place.left() >= 0 && place.right() <= pane->width(), name);
        }
        QVERIFY(!itemNamed(&root(), "triggerText"_s)->property("truncated").toBool());
        installTexts(QLocale(QLocale::English));
    }

    void theHelpTellsKeysAndVersions()
    {
        const auto help = [this] { return itemNamed(window().contentItem(), "helpText"_s); };
        QTest::keyClick(&window(), Qt::Key_F1);
        QTRY_VERIFY(help() != nullptr && help()->isVisible());
        const QQuickItem* versions = itemNamed(window().contentItem(), "helpVersions"_s);
        QVERIFY(versions->property("text").toString().contains("Qt "_s + QLatin1String(qVersion())));
        QVERIFY(versions->property("text").toString().endsWith("Tool Gpio 1.0"_s));
        QTest::keyClick(&window(), Qt::Key_Escape);
        QTRY_VERIFY(help() == nullptr || !help()->isVisible());
    }

    void aSmallWindowHasRoomForTheHelp()
    {
        window().resize(800, 500);
        root().setSize({800, 500});
        QTest::keyClick(&window(), Qt::Key_F1);
        QTRY_VERIFY(isShown("helpText"));
        for (const char* name : {"helpVersions", "helpClose"}) {
            const QQuickItem* item = itemNamed(window().contentItem(), QLatin1String(name));
            QTRY_VERIFY(item->mapRectToScene(item->boundingRect()).bottom() < 500);
        }
        const QQuickItem* help = itemNamed(window().contentItem(), "helpText"_s);
        const auto rest = [help] {
            return help->property("contentHeight").toDouble() - help->height() -
                   help->property("contentY").toDouble();
        };
        QVERIFY(rest() > 0);
        for (int step = 0; step < 20; ++step) {
            QTest::keyClick(&window(), Qt::Key_Down);
        }
        QCOMPARE(rest(), 0.0);
        QTest::keyClick(&window(), Qt::Key_Escape);
        QTRY_VERIFY(!isShown("helpText"));
    }

    void closingAsksWhileSomethingRuns()
    {
        CloseGuard guard(*m_scene, &window());
        QSignalSpy confirmed(&guard, &CloseGuard::confirmed);
        const auto closes = [this] {
            QCloseEvent event;
            QCoreApplication::sendEvent(&window(), &event);
            return event.isAccepted();
        };
        QVERIFY(m_scene->reasonToStay().isEmpty());
        giveOrder("listenToAll"_s);
        m_scene->orders().run(&m_bench->tool(), "setValue"_s,
                              {{"channel"_s, "START"_s}, {"state"_s, "BLINK"_s}, {"dutyCycle"_s, 50}});
        QTRY_VERIFY(m_bench->board().blinks(0));
        QTRY_COMPARE(m_scene->orders().running(), 1);
        QVERIFY(!closes());
        QTRY_VERIFY(isShown("closeReason"));
        QCOMPARE(
            itemNamed(window().contentItem(), "closeReason"_s)->property("text").toString(),
            "1 order still runs and would be stopped. These lines blink, which would end: do0. Nothing stays on: the simulated lines end with the bench."_s);
        PanelFixture::click(itemNamed(window().contentItem(), "closeCancel"_s));
        QTRY_VERIFY(!isShown("closeReason"));
        QCOMPARE(confirmed.count(), 0);
        QVERIFY(!closes());
        QTRY_VERIFY(isShown("closeAnyway"));
        PanelFixture::click(itemNamed(window().contentItem(), "closeAnyway"_s));
        QCOMPARE(confirmed.count(), 1);
        QCOMPARE(m_scene->orders().running(), 1);
        QTRY_VERIFY(!isShown("closeReason"));
        QVERIFY(!closes());
        QTRY_VERIFY(isShown("closeStop"));
        PanelFixture::click(itemNamed(window().contentItem(), "closeStop"_s));
        QCOMPARE(confirmed.count(), 2);
        QCOMPARE(m_scene->orders().running(), 0);
    }

    void leavingOutputsOnIsAskedAbout()
    {
        close();
        open(8, OutputsAtEnd::Stay);
        CloseGuard guard(*m_scene, &window());
        m_scene->orders().run(&m_bench->tool(), "setValue"_s,
                              {{"channel"_s, "START"_s}, {"state"_s, "ON"_s}});
        QTRY_COMPARE(m_bench->board().level(0).level, 1);
        QTRY_COMPARE(m_scene->orders().running(), 0);
        QCOMPARE(m_scene->reasonToStay(), "These outputs are on, and would be left so: do0."_s);
        m_scene->setOffAtEnd(true);
        QCOMPARE(m_scene->reasonToStay(), "These outputs would be switched off: do0."_s);
        guard.askToReplace();
        QTRY_VERIFY(isShown("closeAnyway"));
        QVERIFY(!isShown("closeStop")); // nothing is there to be stopped
        const QQuickItem* reason = itemNamed(window().contentItem(), "closeReason"_s);
        QCOMPARE(reason->property("text").toString(), "These outputs would be switched off: do0."_s);
        m_scene->orders().run(&m_bench->tool(), "setValue"_s,
                              {{"channel"_s, "START"_s}, {"state"_s, "OFF"_s}});
        QTRY_COMPARE(m_bench->board().level(0).level, 0);
        QTRY_COMPARE(m_scene->orders().running(), 0);
        m_scene->clock().tick();
        QCOMPARE(reason->property("text").toString(), "No output is on."_s);
    }

    void whatBecomesOfTheOutputsIsUpToTheDevice_data()
    {
        const Rows<OutputsAtEnd, QString, QString> row("outputsAtEnd", "on", "blinking");
        row("simulated", OutputsAtEnd::Vanish, QString(),
            "These lines blink, which would end: do0. Nothing stays on: the simulated lines end with the bench."_s);
        row("of a chip", OutputsAtEnd::Released,
            "These outputs are on, and would be left so: do0. Whether a released line keeps its level is up "
            "to its "
            "driver."_s,
            "These lines blink, which would end; each would be left as it is then: do0. Whether a released "
            "line keeps "
            "its level is up to its driver."_s);
        row("of a rig", OutputsAtEnd::Stay, "These outputs are on, and would be left so: do0."_s,
            "These lines blink, which would end; each would be left as it is then: do0."_s);
    }
    void whatBecomesOfTheOutputsIsUpToTheDevice()
    {
        const auto [outputsAtEnd, on, blinking] = Rows<OutputsAtEnd, QString, QString>::values();
        close();
        open(8, outputsAtEnd);
        m_scene->orders().run(&m_bench->tool(), "setValue"_s,
                              {{"channel"_s, "START"_s}, {"state"_s, "ON"_s}});
        QTRY_COMPARE(m_bench->board().level(0).level, 1);
        QTRY_COMPARE(m_scene->orders().running(), 0);
        QCOMPARE(m_scene->reasonToStay(), on);
        m_scene->orders().run(&m_bench->tool(), "setValue"_s,
                              {{"channel"_s, "START"_s}, {"state"_s, "BLINK"_s}, {"dutyCycle"_s, 50}});
        QTRY_VERIFY(m_bench->board().blinks(0));
        QTRY_COMPARE(m_scene->orders().running(), 0);
        QCOMPARE(m_scene->reasonToStay(), blinking);
    }

    /// What is behind it is dimmed and out of reach.
    void aDialogHasTheKeyboardAndGivesItBack()
    {
        QQuickItem* courses = itemNamed(&root(), "courses"_s);
        courses->forceActiveFocus(Qt::TabFocusReason);
        QTest::keyClick(&window(), Qt::Key_F1);
        QTRY_VERIFY(isShown("helpText"));
        QVERIFY(isShown("dialogShade"));
        QVERIFY(!courses->hasActiveFocus());
        for (const Qt::Key key : {Qt::Key_Space, Qt::Key_1, Qt::Key_T}) {
            QTest::keyClick(&window(), key);
        }
        QTest::keyClick(&window(), Qt::Key_3, Qt::ControlModifier);
        QTest::mouseClick(&window(), Qt::LeftButton, Qt::NoModifier, QPoint(40, 120));
        QVERIFY(m_scene->clock().isRunning());
        QVERIFY(m_scene->courses().cursors().isEmpty());
        QVERIFY(!m_scene->trigger().isActive());
        QVERIFY(!root().property("lowerFolded").toBool());
        QVERIFY(isShown("helpText"));
        QTest::keyClick(&window(), Qt::Key_Escape);
        QTRY_VERIFY(!isShown("helpText"));
        QTRY_VERIFY(!isShown("dialogShade"));
        QVERIFY(courses->hasActiveFocus());
    }

    void whatStaysOnIsNamedAsFarAsThereIsRoom()
    {
        close();
        open(100, OutputsAtEnd::Stay);
        for (int line = 0; line < 100; line += 4) {
            const QString channel = m_bench->tool().channels().at(line).id;
            m_scene->orders().run(&m_bench->tool(), "setValue"_s,
                                  {{"channel"_s, channel}, {"state"_s, "ON"_s}});
        }
        QTRY_COMPARE(m_bench->board().level(96).level, 1);
        giveOrder("listenToAll"_s);
        QTRY_COMPARE(m_scene->orders().running(), 1);
        QVERIFY2(m_scene->reasonToStay().endsWith(
                     ": do0, do1, do2, do3, do4, do5, do6, do7, do8, do9 and 15 more."_s),
                 qPrintable(m_scene->reasonToStay()));
    }

    void theArrangementIsTakenUpAgain()
    {
        QTest::keyClick(&window(), Qt::Key_1, Qt::ControlModifier);
        root().setProperty("rowHeight", 70);
        root().setProperty("wantedPageWidth", 500);
        m_scene->lineFilter().move(0, 1);
        m_scene->lineFilter().hide({3});
        QVariantMap arrangement = m_scene->arrangement();
        close();
        open(8);
        QVERIFY(itemNamed(&root(), "toolsList"_s)->isVisible());
        m_scene->arrange(arrangement);
        QVERIFY(!itemNamed(&root(), "toolsList"_s)->isVisible());
        QCOMPARE(m_scene->arrangement(), arrangement);
        // What makes no sense does no harm.
        arrangement.insert("rowHeight"_s, "tall"_s);
        arrangement.insert("wantedPageWidth"_s, 1e12);
        m_scene->arrange(arrangement);
        QCOMPARE(root().property("rowHeight").toInt(), 70);
        QVERIFY(itemNamed(&root(), "boardLines"_s)->width() >= 320);
    }

    void aFieldThatTheTabKeyReachesIsShownWhole()
    {
        root().setHeight(500);
        m_scene->form().setText(2, "BLINK"_s);
        QQuickItem* form = itemNamed(&root(), "formFlickable"_s);
        QTRY_VERIFY(form->property("contentHeight").toDouble() > form->height());
        itemNamed(&root(), "runButton"_s)->forceActiveFocus(Qt::TabFocusReason);
        for (int field = 0; field < 5; ++field) {
            QTest::keyClick(&window(), Qt::Key_Tab);
            const QQuickItem* focused = window().activeFocusItem();
            const QRectF place = focused->mapRectToItem(form, focused->boundingRect());
            QVERIFY2(form->boundingRect().contains(place), qPrintable(focused->objectName()));
        }
        QCOMPARE(window().activeFocusItem(), visibleNamed(root(), "parameterText").constLast());
    }

    void theDarkThemeIsSwitchedOn()
    {
        const auto background = [this] { return root().property("color").value<QColor>(); };
        const bool wasDark = background().lightnessF() < 0.5;
        PanelFixture::click(itemNamed(&root(), "darkSwitch"_s));
        QTRY_VERIFY((background().lightnessF() < 0.5) != wasDark);
    }

    void losingTheBoardIsShown()
    {
        m_bench->board().setPluggedIn(false);
        m_scene->clock().tick();
        QTRY_VERIFY(itemNamed(&root(), "panelNotice"_s)->isVisible());
        QVERIFY(visibleNamed(root(), "lineSwitch").isEmpty());
        QVERIFY(!itemNamed(&root(), "allOffButton"_s)->isEnabled());
        QCOMPARE(visibleNamed(root(), "lineUnknown").size(), 8);
        QCOMPARE(visibleNamed(root(), "lineLevel").constFirst()->property("text").toString(), "(0)"_s);
        m_bench->board().setPluggedIn(true);
        m_scene->clock().tick();
        QTRY_VERIFY(!itemNamed(&root(), "panelNotice"_s)->isVisible());
        QVERIFY(visibleNamed(root(), "lineUnknown").isEmpty());
        QVERIFY(itemNamed(&root(), "allOffButton"_s)->isEnabled());
        QCOMPARE(visibleNamed(root(), "lineLevel").constFirst()->property("text").toString(), "0"_s);
    }

    void aToolSaysWhatItsDeviceDoes()
    {
        const auto detail = [this] {
            return visibleNamed(root(), "toolDetail").constFirst()->property("text").toString();
        };
        QCOMPARE(detail(), "Tool Gpio \u00b7 8 channels"_s);
        m_bench->board().setPluggedIn(false);
        QTRY_COMPARE(detail(), "Not connected"_s);
        m_bench->board().close();
        QTRY_COMPARE(detail(), "Closed"_s);
    }

    void aBenchWithoutToolsSaysWhatToDo()
    {
        close();
        m_bench = std::make_unique<ExampleBench>(4);
        show({});
        QVERIFY(!itemNamed(&root(), "runButton"_s)->isEnabled());
        QVERIFY(itemNamed(&root(), "pageProblem"_s)->isVisible());
        QVERIFY(itemNamed(&root(), "pageProblem"_s)
                    ->property("text")
                    .toString()
                    .startsWith(QLatin1String("This tool does not exist.")));
    }

    void aThousandLinesAreShown()
    {
        close();
        open(1000);
        m_bench->play(500000);
        QCOMPARE(itemNamed(&root(), "boardLines"_s)->property("count").toInt(), 1000);
        QVERIFY(itemsNamed(&root(), "lineCourse"_s).size() < 50);
    }

    void aPictureIsTakenWhenTheValuesAreThere()
    {
        close();
        m_bench = std::make_unique<ExampleBench>(8);
        m_bench->board().setInput(6, 4321);
        const QTemporaryDir folder;
        WindowOptions options;
        options.screenshotFile = folder.filePath("panel.png"_s);
        PanelScene scene(&m_bench->tool(), WindowOptions::Theme::Light);
        QCOMPARE(takePicture(scene, options), 0);
        QStringList values;
        for (const QQuickItem* value : itemsNamed(&scene.root(), "idChannelRow.idValueRectangle.idValue"_s)) {
            values.append(value->property("text").toString());
        }
        QVERIFY(values.contains("4321"_s));
        QVERIFY(!values.contains("undefined"_s));
    }

    void aPictureOfAnUnpluggedBoardHasItsRows()
    {
        close();
        m_bench = std::make_unique<ExampleBench>(8);
        m_bench->board().setPluggedIn(false);
        const QTemporaryDir folder;
        WindowOptions options;
        options.screenshotFile = folder.filePath("panel.png"_s);
        PanelScene scene(&m_bench->tool(), WindowOptions::Theme::Light);
        QCOMPARE(takePicture(scene, options), 0);
        QCOMPARE(itemsNamed(&scene.root(), "idChannelRow"_s).size(), 8);
    }

private:
    void open(int lines, OutputsAtEnd outputsAtEnd = OutputsAtEnd::Vanish)
    {
        m_bench = std::make_unique<ExampleBench>(lines, outputsAtEnd);
        show(m_bench->tools());
    }

    void show(const QVector<DTool*>& tools)
    {
        m_scene = std::make_unique<BenchScene>(&m_bench->board(), tools, WindowOptions::Theme::Light);
        m_window = std::make_unique<QQuickWindow>();
        m_window->resize(1280, 800);
        root().setParentItem(m_window->contentItem());
        root().setSize(m_window->size());
        m_window->show();
        m_window->requestActivate();
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
        QVERIFY(waitUntil([this] { return m_scene->panel().hasValues(); }));
        m_scene->clock().tick();
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

    /// What was entered for a parameter of the form.
    QString entered(const char* parameter)
    {
        const CommandForm& form = m_scene->form();
        for (int row = 0; row < form.rowCount(); ++row) {
            if (form.index(row).data(CommandForm::NameRole) == QLatin1String(parameter)) {
                return form.index(row).data(CommandForm::TextRole).toString();
            }
        }
        return {};
    }

    /// What stands below the controls of the lines.
    QStringList remarks()
    {
        QStringList texts;
        for (const QQuickItem* remark : visibleNamed(root(), "lineRemark")) {
            texts.append(remark->property("text").toString());
        }
        return texts;
    }

    /// Wherever in the window, on top of it too.
    bool isShown(const char* name)
    {
        const QQuickItem* item = itemNamed(window().contentItem(), QLatin1String(name));
        return item != nullptr && item->isVisible();
    }
    QQuickItem& root() { return m_scene->root(); }
    QQuickWindow& window() { return *m_window; }

    void type(const QString& text)
    {
        for (const QChar character : text) {
            QTest::keyClick(&window(), character.toLatin1());
        }
    }

    /// A place on the course of a line, by its share of the width.
    QPoint atCourse(double share, int line = 0)
    {
        const QQuickItem* course = visibleNamed(root(), "lineCourse").at(line);
        return course->mapToScene(QPointF(course->width() * share, course->height() / 2)).toPoint();
    }
    double timeAt(double share) { return m_scene->courses().fromUs() + share * m_scene->courses().spanUs(); }
    void turnWheel(QPoint place, int angle)
    {
        QTest::mouseMove(&window(), place);
        QWheelEvent turn(place, window().mapToGlobal(place), QPoint(), QPoint(0, angle), Qt::NoButton,
                         Qt::NoModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&window(), &turn);
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

    std::unique_ptr<ExampleBench> m_bench;
    std::unique_ptr<BenchScene> m_scene;
    std::unique_ptr<QQuickWindow> m_window;
    int m_visited = 0;
};

QTEST_MAIN(TestBenchWindow)
#include "test_bench_window.moc"
