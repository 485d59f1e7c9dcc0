#include "file_benches.h"
#include "panel_fixture.h"

#include <window/bench_window.h>
#include <window/texts.h>

#include <QGuiApplication>
#include <QScreen>
#include <QSettings>

/// The bench window below a window manager, used by the keys and the mouse of the display.
class TestDesk : public QuietTest
{
    Q_OBJECT

protected:
    void setUp() override
    {
        m_folder.emplace();
        QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, m_folder->path());
        QFile file(m_folder->filePath("desk.json"_s));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(R"({"device": {"type": "simulated", "lines": [{"name": "lamp"},
                                                                 {"name": "button", "direction": "in"}]},
                       "tools": [{"name": "Desk", "id": "{4b7a2f10-0000-4000-8000-000000000003}",
                                  "plugin": ")" PLUGIN_FILE R"(", "channels": [
                           {"id": "LAMP", "name": "Lamp", "value": [
                               {"id": "type", "value": "digitalInput"}, {"id": "direction", "value": "out"},
                               {"id": "link", "value": "lamp"}]}]}]})");
        file.close();
        m_benches = std::make_unique<FileBenches>(file.fileName(), &m_output);
        show();
    }
    void tearDown() override
    {
        m_window.reset();
        m_benches.reset();
    }

private Q_SLOTS:
    void initTestCase()
    {
        installTexts(QLocale(QLocale::English));
        QQuickWindow::setSceneGraphBackend(QSGRendererInterface::Software);
    }

    void fiveQuickClicksAreFive()
    {
        const QSignalSpy changes(&m_benches->bench().device(), &LineDevice::lineChanged);
        pointAt("lineSwitch");
        useDesk({"click"_s, "--repeat"_s, "5"_s, "--delay"_s, "5"_s, "1"_s});
        QTRY_COMPARE(changes.count(), 5);
        QTRY_COMPARE(m_benches->bench().device().level(1).level, 1);
        QTRY_VERIFY(shownItem("lineSwitch")->property("checked").toBool());
    }

    void theWheelZoomsAtThePointer()
    {
        const double spanUs = m_window->scene().courses().spanUs();
        pointAt("lineCourse");
        useDesk({"click"_s, "4"_s});
        QTRY_VERIFY(m_window->scene().courses().spanUs() < spanUs);
        useDesk({"key"_s, "f"_s});
        QTRY_VERIFY(m_window->scene().courses().spanUs() != spanUs);
    }

    void whatTheMouseDragsTheSpaceBarLetsGo()
    {
        pointAt("lineCourse");
        useDesk({"mousedown"_s, "1"_s, "mousemove_relative"_s, "20"_s, "0"_s, "mousemove_relative"_s, "20"_s,
                 "0"_s, "mouseup"_s, "1"_s});
        QTRY_VERIFY(!m_window->scene().courses().isLive());
        useDesk({"key"_s, "space"_s});
        QTRY_VERIFY(m_window->scene().courses().isLive());
        useDesk({"key"_s, "space"_s});
        QTRY_VERIFY(!m_window->scene().clock().isRunning());
        useDesk({"key"_s, "space"_s});
        QTRY_VERIFY(m_window->scene().clock().isRunning());
    }

    void withControlTheKeyOfARecordReloads()
    {
        pointAt("lineCourse");
        useDesk({"click"_s, "1"_s, "key"_s, "ctrl+r"_s});
        QTRY_COMPARE(m_benches->count(), 2);
        QVERIFY(!isShown("saveField"));
    }

    void closingByTheWindowManagerAsks()
    {
        QSignalSpy confirmed(m_window.get(), &BenchWindow::closeConfirmed);
        m_window->scene().orders().run(m_benches->bench().tools().front().get(), "startListening"_s,
                                       {{"channel"_s, "LAMP"_s}});
        QTRY_COMPARE(m_window->scene().orders().running(), 1);
        useDesk({"key"_s, "alt+F4"_s}); // the window manager's
        QTRY_VERIFY(isShown("closeReason"));
        useDesk({"key"_s, "Escape"_s});
        QTRY_VERIFY(!isShown("closeReason"));
        QVERIFY(window().isVisible());
        QCOMPARE(confirmed.count(), 0);
        useDesk({"key"_s, "alt+F4"_s});
        QTRY_VERIFY(isShown("closeAnyway"));
        pointAt("closeAnyway");
        useDesk({"click"_s, "1"_s});
        QTRY_COMPARE(confirmed.count(), 1);
    }

    void whereNothingRunsTheWindowCloses()
    {
        useDesk({"key"_s, "alt+F4"_s});
        QTRY_VERIFY(!window().isVisible());
    }

    void aWindowThatFilledTheScreenDoesSoAgain()
    {
        const QRect before = window().geometry();
        window().showMaximized();
        QTRY_VERIFY(fillsScreen());
        m_window = nullptr;
        show();
        QTRY_VERIFY(fillsScreen());
        window().showNormal();
        QTRY_COMPARE(window().size(), before.size());
    }

private:
    void show()
    {
        WindowOptions options;
        options.configuration = m_folder->filePath("desk.json"_s);
        options.theme = WindowOptions::Theme::Light;
        m_window = std::make_unique<BenchWindow>(m_benches.get(), options);
        m_window->show();
        QVERIFY(QTest::qWaitForWindowActive(&window()));
        QVERIFY(waitUntil([this] { return m_window->scene().panel().hasValues(); }));
    }

    /// The desk is used as xdotool's arguments say.
    static void useDesk(const QStringList& arguments)
    {
        QProcess desk;
        desk.start("xdotool"_s, arguments);
        QVERIFY2(desk.waitForFinished() && desk.exitCode() == 0, desk.readAllStandardError().constData());
    }
    /// Moves the pointer to the middle of an item.
    void pointAt(const char* name)
    {
        QQuickItem* item = shownItem(name);
        QVERIFY(item != nullptr);
        const QPoint place = item->mapToGlobal(QPointF(item->width() / 2, item->height() / 2)).toPoint();
        useDesk({"mousemove"_s, "--sync"_s, QString::number(place.x()), QString::number(place.y())});
    }

    bool fillsScreen() { return window().frameGeometry().size() == window().screen()->size(); }
    QQuickItem* shownItem(const char* name)
    {
        for (QQuickItem* item : itemsNamed(window().contentItem(), QLatin1String(name))) {
            if (item->isVisible()) {
                return item;
            }
        }
        return nullptr;
    }
    bool isShown(const char* name) { return shownItem(name) != nullptr; }
    QQuickWindow& window() { return m_window->window(); }

    Output m_output{false, true};
    std::optional<QTemporaryDir> m_folder;
    std::unique_ptr<FileBenches> m_benches;
    std::unique_ptr<BenchWindow> m_window;
};

QTEST_MAIN(TestDesk)
#include "test_desk.moc"
