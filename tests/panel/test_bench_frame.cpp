#include "panel_fixture.h"

#include <window/page_texts.h>

#include <QQmlComponent>
#include <QQuickItemGrabResult>

/// What the bench's frame and widgets add to a page.
class TestBenchFrame : public QuietTest
{
    Q_OBJECT

    static inline const QString c_checkBox = ".idIndicator.idDigitalOutput"_s;
    static inline const QString c_led = ".idIndicator.idDigitalInput"_s;
    static inline const QString c_name = ".idInformation.idChannelName"_s;
    static constexpr int c_outputLine = 0;
    static constexpr int c_inputLine = 1;

    /// Tells how many watch which children it has.
    class WatchedItem : public QQuickItem
    {
    public:
        int watchers() const { return receivers(SIGNAL(childrenChanged())); }
    };

    static QColor colorOfText(const QQuickItem& place, int index)
    {
        return place.childItems().at(index)->property("color").value<QColor>();
    }

protected:
    void setUp() override
    {
        showChannels({channelEntry("START"_s, "digitalInput"_s, "out"_s, "dout"_s),
                      channelEntry("LAMP"_s, "digitalOutput"_s, "in"_s, "din"_s)});
        m_box = m_fixture->part("START"_s, c_checkBox);
        m_led = m_fixture->part("LAMP"_s, c_led);
        QVERIFY(m_box != nullptr && m_led != nullptr);
    }

private Q_SLOTS:
    void theButtonReadsTheLines()
    {
        m_fixture->board().setInput(c_inputLine, 1);
        QVERIFY(!m_led->property("lit").toBool());
        QTest::mouseMove(&m_fixture->window(), QPoint(1, 1));
        m_fixture->click(itemNamed(m_fixture->page(), "panelRefresh"_s));
        QTRY_VERIFY(m_led->property("lit").toBool());
    }

    void whileLiveThePageFollowsByItself()
    {
        m_fixture->page()->setProperty("liveIntervalMs", 10);
        m_fixture->click(itemNamed(m_fixture->page(), "panelLive"_s));
        QVERIFY(m_fixture->page()->property("live").toBool());
        for (const int level : {1, 0, 1}) {
            m_fixture->board().setInput(c_inputLine, level);
            QTRY_COMPARE(m_led->property("lit").toBool(), level == 1);
        }
    }

    void losingTheDeviceIsTold()
    {
        QQuickItem* notice = itemNamed(m_fixture->page(), "panelNotice"_s);
        QVERIFY(!notice->isVisible());
        m_fixture->board().setPluggedIn(false);
        QVERIFY(!m_fixture->page()->property("connected").toBool());
        QTRY_VERIFY(notice->isVisible());
        QVERIFY(
            notice->property("text").toString().contains(QLatin1String("the simulated board is unplugged")));
        m_fixture->board().setInput(c_inputLine, 1);
        m_fixture->board().setPluggedIn(true);
        QTRY_VERIFY(!notice->isVisible());
        QTRY_VERIFY(m_led->property("lit").toBool());
    }

    void aPageThatIsTooNarrowForItsValuesSaysSo()
    {
        showChannels({channelEntry("LEVEL"_s, "analogOutput"_s, "in"_s, "ain"_s)});
        QQuickItem* notice = itemNamed(m_fixture->page(), "panelNotice"_s);
        QVERIFY(!notice->isVisible());
        m_fixture->panel().setWidth(300);
        QTRY_VERIFY(notice->isVisible());
        QVERIFY(notice->property("text").toString().contains(QLatin1String("too narrow")));
        m_fixture->panel().setWidth(600);
        QTRY_VERIFY(!notice->isVisible());
    }

    void aLitLampDiffersByItsShape()
    {
        // Opacity between the middle and the rim: a lit lamp is a disc, a dark one a ring.
        const auto opacity = [this] {
            const QSharedPointer<QQuickItemGrabResult> picture = m_led->grabToImage();
            QSignalSpy ready(picture.data(), &QQuickItemGrabResult::ready);
            return ready.wait() ? picture->image()
                                      .pixelColor(int(m_led->width() / 2) - 6, int(m_led->height() / 2))
                                      .alpha()
                                : -1;
        };
        QCOMPARE(opacity(), 0);
        m_fixture->board().setInput(c_inputLine, 1);
        m_fixture->panel().refresh();
        QTRY_VERIFY(m_led->property("lit").toBool());
        QCOMPARE(opacity(), 255);
    }

    void theTextsOfThePageTakeTheLookOfTheTheme()
    {
        const QQuickItem* name = m_fixture->part("START"_s, c_name);
        QCOMPARE(name->property("font").value<QFont>().family(), m_fixture->style("fontFamily").toString());
        QCOMPARE(name->property("font").value<QFont>().pixelSize(), m_fixture->style("textSize").toInt());
        for (const char* theme : {"dark = true", "dark = false"}) {
            m_fixture->style(theme);
            QCOMPARE(name->property("color").value<QColor>(), m_fixture->style("text").value<QColor>());
        }
    }

    void aTextKeepsTheLookOfItsOwn()
    {
        QQmlComponent component(&m_fixture->engine());
        component.setData(
            "import QtQuick 2.15\n"
            "import AppVantor 1.0\n"
            "Item {\n"
            "    PageTexts { root: place; color: 'blue'; font: Qt.font({pixelSize: 30}) }\n"
            "    Item {\n"
            "        id: place\n"
            "        Text { objectName: 'plain'; font.bold: true }\n"
            "        Text { objectName: 'own'; color: 'red'; font.pixelSize: 20; elide: Text.ElideLeft }\n"
            "    }\n"
            "}\n",
            QUrl());
        const std::unique_ptr<QObject> made(component.create());
        QVERIFY2(made != nullptr, qPrintable(component.errorString()));
        const auto* plain = made->findChild<QQuickItem*>("plain"_s);
        QCOMPARE(plain->property("color").value<QColor>(), QColor(Qt::blue));
        QCOMPARE(plain->property("font").value<QFont>().pixelSize(), 30);
        QVERIFY(plain->property("font").value<QFont>().bold());
        const auto* own = made->findChild<QQuickItem*>("own"_s);
        QCOMPARE(own->property("color").value<QColor>(), QColor(Qt::red));
        QCOMPARE(own->property("font").value<QFont>().pixelSize(), 20);
        QCOMPARE(plain->property("elide").toInt(), static_cast<int>(Qt::ElideMiddle));
        QCOMPARE(own->property("elide").toInt(), static_cast<int>(Qt::ElideLeft));
    }

    void namesInAColumnAreOfOneSize()
    {
        QVariantMap longOne = channelEntry("LONG"_s, "digitalOutput"_s, "in"_s, "din"_s);
        longOne.insert("name"_s, QString(60, QLatin1Char('W')));
        showChannels({longOne, channelEntry("SHORT"_s, "digitalOutput"_s, "in"_s, "din"_s)});
        const QQuickItem* cut = m_fixture->part("LONG"_s, c_name);
        QVERIFY(cut->property("truncated").toBool());
        QCOMPARE(cut->property("contentHeight"),
                 m_fixture->part("SHORT"_s, c_name)->property("contentHeight"));
    }

    void onlyTextsThatTookTheColourFollowIt()
    {
        const std::unique_ptr<QQuickItem> place = placeOfTexts("Text {}\nText { color: 'blue' }\nText {}");
        PageTexts texts;
        texts.setColor(Qt::blue);
        texts.setRoot(place.get());
        texts.componentComplete();
        place->childItems().constLast()->setProperty("color", QColor(Qt::green));
        texts.setColor(Qt::red);
        QCOMPARE(colorOfText(*place, 0), QColor(Qt::red));
        QCOMPARE(colorOfText(*place, 1), QColor(Qt::blue));
        QCOMPARE(colorOfText(*place, 2), QColor(Qt::green));
    }

    void aRootIsWatchedWhileItIsTheRoot()
    {
        WatchedItem first;
        WatchedItem second;
        WatchedItem child;
        child.setParentItem(&first);
        PageTexts texts;
        texts.setColor(Qt::blue);
        texts.setRoot(&first);
        texts.componentComplete();
        texts.setRoot(&second);
        QCOMPARE(first.watchers(), 0);
        QCOMPARE(child.watchers(), 0);
        QCOMPARE(second.watchers(), 1);
        texts.setRoot(&first);
        child.setParentItem(nullptr);
        child.setParentItem(&first);
        QCOMPARE(first.watchers(), 1);
        QCOMPARE(child.watchers(), 1);
        QCOMPARE(second.watchers(), 0);
        const std::unique_ptr<QQuickItem> late = placeOfTexts("Text {}");
        late->setParentItem(&child);
        QCOMPARE(colorOfText(*late, 0), QColor(Qt::blue));
    }

    void aTextThatIsGoneIsForgotten()
    {
        std::unique_ptr<QQuickItem> place = placeOfTexts("Text {}\nText {}");
        PageTexts texts;
        texts.setRoot(place.get());
        texts.componentComplete();
        delete place->childItems().constFirst();
        texts.setColor(Qt::red);
        QCOMPARE(colorOfText(*place, 0), QColor(Qt::red));
        place.reset();
        texts.setColor(Qt::blue);
        texts.setRoot(nullptr);
    }

    void aTextOfThePageThatIsCutShowsWholeUnderThePointer()
    {
        QQuickItem* name = m_fixture->part("START"_s, c_name);
        const QPoint middle = name->mapToScene(QPointF(name->width() / 2, name->height() / 2)).toPoint();
        const auto cutText = [this] {
            return itemNamed(m_fixture->page(), "panelCutText"_s)->property("active").toBool();
        };
        QTest::mouseMove(&m_fixture->window(), middle);
        QCoreApplication::processEvents();
        QVERIFY(!cutText());
        name->setProperty("text", QString(500, QLatin1Char('W')));
        QTest::mouseMove(&m_fixture->window(), middle + QPoint(1, 0));
        QTRY_VERIFY(cutText());
        QTest::mouseMove(&m_fixture->window(), m_led->mapToScene(QPointF(5, 5)).toPoint());
        QTRY_VERIFY(!cutText());
    }

    void aKeyTogglesTheLine_data()
    {
        const Rows<int> row("key");
        row("space", int(Qt::Key_Space));
        row("return", int(Qt::Key_Return));
        row("enter", int(Qt::Key_Enter));
    }
    void aKeyTogglesTheLine()
    {
        QFETCH(int, key);
        m_box->forceActiveFocus(Qt::TabFocusReason);
        QTest::keyClick(&m_fixture->window(), static_cast<Qt::Key>(key));
        QVERIFY(!m_box->property("checked").toBool());
        QTRY_COMPARE(m_fixture->board().level(c_outputLine).level, 1);
        QTRY_VERIFY(m_box->property("checked").toBool());
    }

    void otherKeysDoNothing()
    {
        m_box->forceActiveFocus(Qt::TabFocusReason);
        QTest::keyClick(&m_fixture->window(), Qt::Key_A);
        QVERIFY(!m_fixture->panel().isBusy());
        QCOMPARE(m_fixture->board().level(c_outputLine).level, 0);
    }

    void theBoxTellsAssistiveToolsWhatItIs()
    {
        QAccessibleInterface* box = QAccessible::queryAccessibleInterface(m_box);
        QVERIFY(box != nullptr);
        QCOMPARE(box->role(), QAccessible::CheckBox);
        QVERIFY(box->state().checkable);
        QVERIFY(!box->state().checked);
        box->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
        QTRY_VERIFY(box->state().checked);
        QCOMPARE(m_fixture->board().level(c_outputLine).level, 1);
    }

    void noneOfTheBenchsComponentsShadowsOneOfQtQuick_data()
    {
        const Rows<QString> row("component");
        for (const char* folder : {"panels", "widgets"}) {
            const QDir components(":/applications/AppVantor/gui/"_s + QLatin1String(folder));
            for (const QFileInfo& file : components.entryInfoList({"*.qml"_s})) {
                QTest::newRow(qPrintable(file.baseName())) << file.baseName();
            }
        }
    }
    void noneOfTheBenchsComponentsShadowsOneOfQtQuick()
    {
        QFETCH(QString, component);
        QQmlComponent inQtQuick(&m_fixture->engine());
        inQtQuick.setData("import QtQuick 2.15\n" + component.toUtf8() + " {}", QUrl());
        QVERIFY2(inQtQuick.errorString().contains(component + " is not a type"_s),
                 qPrintable(inQtQuick.errorString()));
    }

private:
    /// An item with these texts as its children.
    std::unique_ptr<QQuickItem> placeOfTexts(const QByteArray& texts)
    {
        QQmlComponent component(&m_fixture->engine());
        component.setData("import QtQuick 2.15\nItem {\n" + texts + "\n}", QUrl());
        return std::unique_ptr<QQuickItem>(qobject_cast<QQuickItem*>(component.create()));
    }

    QQuickItem* m_box = nullptr;
    QQuickItem* m_led = nullptr;
};

QTEST_MAIN(TestBenchFrame)
#include "test_bench_frame.moc"
