#include "file_benches.h"
#include "panel_fixture.h"

#include <window/bench_window.h>
#include <window/texts.h>
#include <window/window_memory.h>

#include <QClipboard>
#include <QGuiApplication>
#include <QScreen>
#include <QSettings>

#include <sys/stat.h>

namespace {

/// A configuration of a board with a line, and a tool with a channel on it.
QByteArray benchNamed(const QByteArray& line)
{
    return R"({"device": {"type": "simulated", "lines": [{"name": ")" + line + R"("}]},
               "tools": [{"name": "Tool", "id": "{4b7a2f10-0000-4000-8000-000000000002}", "plugin": ")" +
           QByteArray(PLUGIN_FILE) + R"(", "channels": [{"id": "START", "name": "Start", "value": [
               {"id": "type", "value": "digitalInput"}, {"id": "direction", "value": "out"},
               {"id": "link", "value": ")" +
           line + R"("}]}]}]})";
}

} // namespace

/// Configurations that are opened and reloaded in the window.
class TestOpenConfiguration : public QuietTest
{
    Q_OBJECT

protected:
    void setUp() override
    {
        m_folder.emplace();
        QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, path(".settings"_s));
        write("left.json"_s, benchNamed("left0"));
        write("right.json"_s, benchNamed("right0"));
        open("left.json"_s);
    }
    void tearDown() override
    {
        m_window.reset();
        m_benches.reset();
        installTexts(QLocale(QLocale::English));
    }

private Q_SLOTS:
    void initTestCase()
    {
        installTexts(QLocale(QLocale::English));
        QQuickWindow::setSceneGraphBackend(QSGRendererInterface::Software);
    }

    void aPathIsTyped()
    {
        const QRect place = window().geometry();
        QCOMPARE(window().title(), "left.json \u2013 AppVantor"_s);
        press(Qt::Key_O, Qt::ControlModifier);
        QTRY_VERIFY(isShown("openField"));
        QCOMPARE(item("openField")->property("text").toString(), m_folder->path() + "/"_s);
        type("right.json"_s);
        press(Qt::Key_Return);
        QTRY_COMPARE(window().title(), "right.json \u2013 AppVantor"_s);
        QCOMPARE(lines(), QStringList{"right0"_s});
        QCOMPARE(window().geometry(), place);
        QCOMPARE(WindowMemory::recentFiles(), (QStringList{path("right.json"_s), path("left.json"_s)}));
    }

    void theFilesAreGoneThrough()
    {
        QVERIFY(QDir(m_folder->path()).mkdir("more"_s));
        write("more/deep.json"_s, benchNamed("deep0"));
        write("more/notes.txt"_s, "no configuration");
        press(Qt::Key_O, Qt::ControlModifier);
        QTRY_VERIFY(isShown("openField"));
        QTRY_COMPARE(entries(), (QStringList{"more/"_s, "left.json"_s, "right.json"_s}));
        press(Qt::Key_Down);
        press(Qt::Key_Return);
        QTRY_COMPARE(entries(), QStringList{"deep.json"_s});
        QVERIFY(item("openField")->hasActiveFocus());
        PanelFixture::click(itemsNamed(window().contentItem(), "openEntry"_s).constFirst());
        QTRY_COMPARE(lines(), QStringList{"deep0"_s});
    }

    void openingIsGivenUp()
    {
        press(Qt::Key_O, Qt::ControlModifier);
        QTRY_VERIFY(isShown("openField"));
        type("nowhere"_s);
        QTRY_COMPARE(entries(), QStringList());
        press(Qt::Key_Escape);
        QTRY_VERIFY(!isShown("openField"));
        QCOMPARE(m_benches->count(), 1);
    }

    void aChangedFileIsReloaded()
    {
        write("left.json"_s, benchNamed("changed0"));
        press(Qt::Key_R, Qt::ControlModifier);
        QTRY_COMPARE(lines(), QStringList{"changed0"_s});
        QTRY_VERIFY(m_window->scene().panel().hasValues());
    }

    void tenReloadsOneAfterTheOther()
    {
        for (int time = 0; time < 10; ++time) {
            press(Qt::Key_R, Qt::ControlModifier);
        }
        QTRY_VERIFY(m_benches->count() > 1);
        const int count = m_benches->count();
        press(Qt::Key_R, Qt::ControlModifier);
        QTRY_COMPARE(m_benches->count(), count + 1);
        QTRY_VERIFY(m_window->scene().panel().hasValues());
    }

    void whatCannotBeReadLeavesTheBench_data()
    {
        const Rows<QString, QString, QString> row("kind", "text", "french");
        row("no file", "none", "left.json: cannot be read: No such file or directory",
            "left.json: lecture impossible\u00a0: fichier ou dossier inexistant");
        row("a folder", "folder", "left.json: expected a file",
            "left.json\u00a0: un fichier \u00e9tait attendu");
        row("a pipe", "pipe", "left.json: expected a file", "left.json\u00a0: un fichier \u00e9tait attendu");
        row("an endless device", "device", "left.json: expected a file",
            "left.json\u00a0: un fichier \u00e9tait attendu");
        row("a huge file", "huge", "left.json: expected at most 67108864 bytes",
            "left.json: 67108864 octets au plus \u00e9taient attendus");
        row("an empty file", "empty", "left.json:1:1: expected JSON, found nothing more",
            "left.json:1:1: attendu du JSON, trouv\u00e9 rien de plus");
        row("an entry that there is not", "entry",
            "left.json:1:45: device.lines[0].nam: unknown entry, expected one of: name, kind, direction, "
            "level, waveform",
            "left.json:1:45: device.lines[0].nam: entr\u00e9e inconnue, attendu une de\u00a0: name, kind, "
            "direction, level, waveform");
    }

    void whatCannotBeReadLeavesTheBench()
    {
        QFETCH(QString, kind);
        QVERIFY(QFile::remove(path("left.json"_s)));
        const QByteArray name = QFile::encodeName(path("left.json"_s));
        if (kind == "folder"_s) {
            QVERIFY(QDir().mkdir(path("left.json"_s)));
        } else if (kind == "pipe"_s) {
            QCOMPARE(mkfifo(name.constData(), 0600), 0);
        } else if (kind == "device"_s) {
            QVERIFY(QFile::link("/dev/zero"_s, path("left.json"_s)));
        } else if (kind == "huge"_s) {
            write("left.json"_s, {});
            QVERIFY(QFile::resize(path("left.json"_s), 1LL << 36));
        } else if (kind == "empty"_s) {
            write("left.json"_s, {});
        } else if (kind == "entry"_s) {
            write("left.json"_s,
                  benchNamed("left0").replace("{\"name\": \"left0\"", "{\"nam\": 1, \"name\": \"left0\""));
        }
        const Bench* before = &m_benches->bench();
        press(Qt::Key_R, Qt::ControlModifier);
        QTRY_VERIFY(isShown("mistakesDialogTitle"));
        QFETCH(QString, text);
        QTRY_COMPARE(texts("mistakeText"), QStringList{text});
        QCOMPARE(&m_benches->bench(), before);
        QCOMPARE(m_benches->count(), 1);
        QVERIFY(m_window->scene().panel().hasValues());
        installTexts(QLocale(QLocale::French));
        PanelFixture::click(item("mistakesRetry"));
        QFETCH(QString, french);
        QTRY_COMPARE(texts("mistakeText"), QStringList{french});
    }

    void mistakesAreListedAndCopied()
    {
        write("left.json"_s, "{\"device\": {\"type\": \"simulated\", \"lines\": [{\"nam\": 1}]}}");
        press(Qt::Key_R, Qt::ControlModifier);
        QTRY_VERIFY(isShown("mistakesDialogTitle"));
        QTRY_VERIFY(texts("mistakeText").size() > 1);
        const QStringList mistakes = texts("mistakeText");
        QVERIFY2(mistakes.constFirst().startsWith("left.json:1:"_s), qPrintable(mistakes.constFirst()));
        const QClipboard& clipboard = *QGuiApplication::clipboard();
        const auto whole = [&](int row) { return m_folder->path() + "/"_s + mistakes.at(row); };
        press(Qt::Key_Return);
        QCOMPARE(clipboard.text(), whole(0));
        press(Qt::Key_Down);
        press(Qt::Key_Space);
        QCOMPARE(clipboard.text(), whole(1));
        PanelFixture::click(itemsNamed(window().contentItem(), "mistakeText"_s).constFirst());
        QCOMPARE(clipboard.text(), whole(0));
        PanelFixture::click(item("mistakesCopy"));
        QCOMPARE(clipboard.text().split("\n"_s).value(1), whole(1));
        // The bench goes on.
        m_window->scene().orders().run(
            m_benches->bench().findTool({}), "setValue"_s,
            {{"channel"_s, "START"_s}, {"state"_s, "BLINK"_s}, {"dutyCycle"_s, 50}});
        QTRY_VERIFY(m_benches->bench().device().blinks(0));
        // Once more, and then without them.
        PanelFixture::click(item("mistakesRetry"));
        QTRY_VERIFY(isShown("mistakesDialogTitle"));
        QCOMPARE(m_benches->count(), 1);
        write("left.json"_s, benchNamed("mended0"));
        PanelFixture::click(item("mistakesRetry"));
        QTRY_VERIFY(isShown("closeAnyway")); // its output blinks
        PanelFixture::click(item("closeAnyway"));
        QTRY_COMPARE(lines(), QStringList{"mended0"_s});
    }

    void whatRunsIsAskedAbout()
    {
        BenchScene& scene = m_window->scene();
        scene.orders().run(m_benches->bench().findTool({}), "listenToAll"_s, {});
        QTRY_COMPARE(scene.orders().running(), 1);
        press(Qt::Key_R, Qt::ControlModifier);
        QTRY_VERIFY(isShown("closeReason"));
        QTRY_VERIFY(heightOf("closeDialog") > item("closeReason")->height() + item("closeCancel")->height());
        press(Qt::Key_Return); // Cancel has the keyboard
        QTRY_VERIFY(!isShown("closeReason"));
        QCOMPARE(m_benches->count(), 1);
        QCOMPARE(scene.orders().running(), 1);
        press(Qt::Key_R, Qt::ControlModifier);
        QTRY_VERIFY(isShown("closeStop"));
        PanelFixture::click(item("closeStop"));
        QTRY_COMPARE(m_benches->count(), 2);
        QCOMPARE(m_window->scene().orders().running(), 0);
    }

    /// The answer to the one question is none to the other.
    void closingGoesBeforeOpening()
    {
        const QSignalSpy closed(m_window.get(), &BenchWindow::closeConfirmed);
        BenchScene& scene = m_window->scene();
        scene.orders().run(m_benches->bench().findTool({}), "listenToAll"_s, {});
        QTRY_COMPARE(scene.orders().running(), 1);
        press(Qt::Key_R, Qt::ControlModifier);
        QTRY_VERIFY(isShown("closeAnyway"));
        QCloseEvent event;
        QCoreApplication::sendEvent(&window(), &event);
        QVERIFY(!event.isAccepted());
        PanelFixture::click(item("closeAnyway"));
        QCOMPARE(closed.count(), 1);
        QCoreApplication::processEvents();
        QCOMPARE(m_benches->count(), 1);
    }

    void recentFilesStandInTheMenu()
    {
        write("gone.json"_s, {});
        for (int file = 0; file < 9; ++file) {
            WindowMemory::noteRecent(path("right.json"_s));
            write("recent%1.json"_s.arg(file), benchNamed("recent"));
            WindowMemory::noteRecent(path("recent%1.json"_s.arg(file)));
        }
        WindowMemory::noteRecent(path("gone.json"_s));
        QVERIFY(QFile::remove(path("gone.json"_s)));
        QCOMPARE(WindowMemory::recentFiles().size(), 7);
        PanelFixture::click(item("fileButton"));
        QTRY_VERIFY(isShown("menuEntry9"));
        QVERIFY(!isShown("menuEntry10"));
        QTRY_VERIFY(heightOf("fileMenu") > 10 * item("menuEntry9")->height());
        QCOMPARE(item("menuEntry3")->property("text").toString(), path("recent8.json"_s));
        for (int entry = 0; entry < 4; ++entry) {
            press(Qt::Key_Down);
        }
        QVERIFY(item("menuEntry4")->hasActiveFocus());
        press(Qt::Key_Return);
        QTRY_COMPARE(window().title(), "right.json \u2013 AppVantor"_s);
    }

    void eachConfigurationIsArrangedAsItWasLeft()
    {
        press(Qt::Key_3, Qt::ControlModifier);
        QVERIFY(m_window->scene().arrangement().value("lowerFolded"_s).toBool());
        openPath("right.json"_s);
        QTRY_COMPARE(lines(), QStringList{"right0"_s});
        QVERIFY(!m_window->scene().arrangement().value("lowerFolded"_s).toBool());
        openPath("left.json"_s);
        QTRY_COMPARE(lines(), QStringList{"left0"_s});
        QVERIFY(m_window->scene().arrangement().value("lowerFolded"_s).toBool());
    }

    /// What vanished while it was shown is remembered as itself, and nothing else is forgotten.
    void aVanishedFileTakesNothingWithIt()
    {
        WindowMemory(path("right.json"_s)).remember({{"rowHeight"_s, 70}});
        QVERIFY(QFile::remove(path("left.json"_s)));
        openPath("right.json"_s);
        QTRY_COMPARE(lines(), QStringList{"right0"_s});
        QCOMPARE(m_window->scene().root().property("rowHeight").toInt(), 70);
        QCOMPARE(WindowMemory::recentFiles(), QStringList{path("right.json"_s)});
    }

    void aScriptIsRunLineByLine()
    {
        write("tour.orders"_s, "setValue channel=START state=ON\nsleep 100000\ngetValue channel=START\n");
        runScript("tour.orders"_s);
        QTRY_COMPARE(item("scriptText")->property("text").toString(), "tour.orders:2  sleep 100000"_s);
        QCOMPARE(m_benches->bench().device().level(0).level, 1);
        QVERIFY(m_window->scene().reasonToStay().startsWith("A script runs"_s));
        PanelFixture::click(item("scriptButton"));
        QTRY_COMPARE(item("scriptText")->property("text").toString(), "tour.orders: stopped in line 2"_s);
        QCOMPARE(m_window->scene().reasonToStay(), QString()); // its output ends with the board
        PanelFixture::click(item("scriptButton"));
        QTRY_VERIFY(!isShown("scriptText"));
    }

    void theEndOfAScriptIsTold_data()
    {
        const Rows<QByteArray, QString, QString> row("orders", "told", "french");
        row("done", "getValue channel=START\n", "tour.orders: done", "tour.orders\u00a0: termin\u00e9");
        row("an order that fails", "# to begin with\ngetValue channel=NOWHERE\nsleep 100000\n",
            "%1/tour.orders:2: the command sent no device request",
            "%1/tour.orders:2: la commande n\u2019a rien demand\u00e9 \u00e0 l\u2019appareil");
        row("an expectation that is not met", "expect START=ON\n",
            "%1/tour.orders:1: expected START=ON, found OFF",
            "%1/tour.orders:1: attendu START=ON, trouv\u00e9 OFF");
        row("a line that is wrong", "repeat 2\ngetValue channel=START\n",
            "%1/tour.orders:1: \"repeat\" without an \"end\"",
            "%1/tour.orders:1: \u00ab\u00a0repeat\u00a0\u00bb sans \u00ab\u00a0end\u00a0\u00bb");
        row("the end", "quit\ngetValue channel=NOWHERE\n", "tour.orders: done",
            "tour.orders\u00a0: termin\u00e9");
    }

    void theEndOfAScriptIsTold()
    {
        QFETCH(QByteArray, orders);
        QFETCH(QString, told);
        QFETCH(QString, french);

        write("tour.orders"_s, orders);
        runScript("tour.orders"_s);
        QTRY_COMPARE(item("scriptText")->property("text").toString(), told.replace("%1"_s, m_folder->path()));
        installTexts(QLocale(QLocale::French));
        runScript("tour.orders"_s);
        QTRY_COMPARE(item("scriptText")->property("text").toString(),
                     french.replace("%1"_s, m_folder->path()));
        QCOMPARE(m_window->scene().reasonToStay(), QString());
        m_log->takeProblems(); // of the order
    }

    void aScriptThatCannotBeReadIsTold()
    {
        runScript("nowhere.orders"_s);
        QTRY_VERIFY(isShown("scriptText"));
        QCOMPARE(item("scriptText")->property("text").toString(),
                 path("nowhere.orders"_s) + ": the orders cannot be read: No such file or directory"_s);
        installTexts(QLocale(QLocale::French));
        runScript("nowhere.orders"_s);
        QTRY_COMPARE(item("scriptText")->property("text").toString(),
                     path("nowhere.orders"_s) + "\u00a0: les ordres ne peuvent pas \u00eatre lus\u00a0: "
                                                "fichier ou dossier inexistant"_s);
    }

    void aScriptEndsWithItsBench()
    {
        write("tour.orders"_s, "sleep 100000\n");
        runScript("tour.orders"_s);
        QTRY_VERIFY(isShown("scriptText"));
        press(Qt::Key_R, Qt::ControlModifier);
        QTRY_VERIFY(isShown("closeAnyway"));
        PanelFixture::click(item("closeAnyway"));
        QTRY_COMPARE(m_benches->count(), 2);
        QVERIFY(!isShown("scriptText"));
    }

    void whatAScriptLeavesRunningIsAskedAbout()
    {
        write("tour.orders"_s, "listenToAll\n");
        runScript("tour.orders"_s);
        QTRY_VERIFY(isShown("scriptText"));
        QTRY_COMPARE(item("scriptText")->property("text").toString(), "tour.orders: done"_s);
        press(Qt::Key_R, Qt::ControlModifier);
        QTRY_VERIFY(isShown("closeAnyway"));
        QVERIFY(item("closeReason")
                    ->property("text")
                    .toString()
                    .startsWith("1 order still runs and would be stopped."_s));
        PanelFixture::click(item("closeAnyway"));
        QTRY_COMPARE(m_benches->count(), 2);
        QCOMPARE(m_window->scene().reasonToStay(), QString());
    }

    void aRigIsNotReloaded()
    {
        WindowOptions options;
        options.rig = "bench 7"_s;
        WindowMemory(QString()).remember({{"rowHeight"_s, 70}});
        m_window = std::make_unique<BenchWindow>(m_benches.get(), options);
        showWindow();
        m_window->scene().root().setProperty("rowHeight", 60);
        QCOMPARE(window().title(), "bench 7 \u2013 AppVantor"_s);
        press(Qt::Key_R, Qt::ControlModifier);
        QCOMPARE(m_benches->count(), 1);
        openPath("right.json"_s);
        QTRY_COMPARE(window().title(), "right.json \u2013 AppVantor"_s);
        QCOMPARE(WindowMemory(QString()).recall(), (QVariantMap{{"rowHeight"_s, "70"_s}}));
        QCOMPARE(WindowMemory(QString(), "bench 7"_s).recall().value("rowHeight"_s).toInt(), 60);
        press(Qt::Key_R, Qt::ControlModifier);
        QTRY_COMPARE(m_benches->count(), 3);
    }

    void aWindowThatFilledTheScreenDoesSoAgain()
    {
        WindowOptions options;
        options.configuration = path("left.json"_s);
        m_window = std::make_unique<BenchWindow>(m_benches.get(), options);
        const QRect before = window().geometry();
        window().setWindowState(Qt::WindowMaximized);
        m_window = nullptr;
        m_window = std::make_unique<BenchWindow>(m_benches.get(), options);
        QCOMPARE(window().windowState(), Qt::WindowMaximized);
        QCOMPARE(WindowMemory(options.configuration).recall().value("geometry"_s).toRect(), before);
    }

    void aWindowOfALargerScreenIsWhole()
    {
        WindowOptions options;
        options.configuration = path("left.json"_s);
        m_window = nullptr;
        const QRect screens = QGuiApplication::primaryScreen()->availableVirtualGeometry();
        const QPoint corner = screens.bottomRight() - QPoint(400, 300);
        WindowMemory(options.configuration).remember({{"geometry"_s, QRect(corner, QSize(700, 500))}});
        m_window = std::make_unique<BenchWindow>(m_benches.get(), options);
        QCOMPARE(window().size(), QSize(700, 500));
        QVERIFY(screens.contains(window().geometry()));
    }

private:
    QString path(const QString& name) const { return m_folder->filePath(name); }
    void write(const QString& name, const QByteArray& text)
    {
        QFile file(path(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(text), qint64(text.size()));
    }

    void open(const QString& name)
    {
        WindowOptions options;
        options.configuration = path(name);
        options.theme = WindowOptions::Theme::Light;
        m_benches = std::make_unique<FileBenches>(options.configuration, &m_output);
        m_window = std::make_unique<BenchWindow>(m_benches.get(), options);
        showWindow();
    }

    void showWindow()
    {
        window().show();
        window().requestActivate();
        QVERIFY(QTest::qWaitForWindowActive(&window()));
        QVERIFY(waitUntil([this] { return m_window->scene().panel().hasValues(); }));
    }

    void openPath(const QString& name) { choose(name, Qt::Key_O, Qt::ControlModifier); }
    void runScript(const QString& name) { choose(name, Qt::Key_F9, Qt::NoModifier); }
    /// Types the path of a file into the field that a key opens.
    void choose(const QString& name, Qt::Key key, Qt::KeyboardModifiers modifiers)
    {
        press(key, modifiers);
        QTRY_VERIFY(isShown("openField"));
        press(Qt::Key_A, Qt::ControlModifier);
        type(path(name));
        press(Qt::Key_Return);
    }

    QQuickWindow& window() { return m_window->window(); }
    QQuickItem* item(const char* name) { return itemNamed(window().contentItem(), QLatin1String(name)); }
    bool isShown(const char* name) { return item(name) != nullptr && item(name)->isVisible(); }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::keyClick(&window(), key, modifiers);
    }
    void type(const QString& text)
    {
        for (const QChar character : text) {
            QTest::keyClick(&window(), character.toLatin1());
        }
    }

    /// The names of the lines that the board shows.
    QStringList lines()
    {
        QStringList names;
        const LinesModel& model = m_window->scene().lines();
        for (int line = 0; line < model.count(); ++line) {
            names.append(model.index(line).data(LinesModel::NameRole).toString());
        }
        return names;
    }
    double heightOf(const char* popup)
    {
        return m_window->scene()
            .root()
            .findChild<QObject*>(QLatin1String(popup))
            ->property("height")
            .toDouble();
    }
    QStringList entries() { return texts("openEntry"); }
    QStringList texts(const char* name)
    {
        QStringList shown;
        for (const QQuickItem* item : itemsNamed(window().contentItem(), QLatin1String(name))) {
            shown.append(item->property("text").toString());
        }
        return shown;
    }

    Output m_output{false, true};
    std::optional<QTemporaryDir> m_folder;
    std::unique_ptr<FileBenches> m_benches;
    std::unique_ptr<BenchWindow> m_window;
};

QTEST_MAIN(TestOpenConfiguration)
#include "test_open_configuration.moc"
