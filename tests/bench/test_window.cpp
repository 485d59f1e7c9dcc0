#include "bench_process.h"
#include "literals.h"

#include <QFile>
#include <QImage>
#include <QTemporaryDir>
#include <QtTest>

#include <csignal>

/// The bench's windows from outside: pictures, and orders beside a window.
class TestWindow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void aPictureHasTheSizeThatWasAskedFor_data();
    void aPictureHasTheSizeThatWasAskedFor();
    void aPictureIsTakenWithoutADisplay();
    void themesDifferInBrightness();
    void aScaleShowsLess();
    void aWindowWithoutADisplayIsRefused_data();
    void aWindowWithoutADisplayIsRefused();
    void aPictureThatCannotBeWrittenIsTold();
    void ordersAreCarriedOutBesideTheWindow_data();
    void ordersAreCarriedOutBesideTheWindow();
    void theWindowStaysWhenItsOrdersEnd();
    void ordersThatCannotBeReadAreAnError_data();
    void ordersThatCannotBeReadAreAnError();

private:
    BenchRun take(const QString& subcommand, const QStringList& options) const
    {
        return runBench(QStringList{subcommand, "--screenshot"_s, pictureFile()} + options);
    }
    QString pictureFile() const { return m_folder.filePath("picture.png"_s); }

    QTemporaryDir m_folder;
};

namespace {

/// Takes everything out of the environment that leads to a display, until it goes.
class NoDisplay
{
public:
    NoDisplay()
    {
        for (const char* variable : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) {
            m_values.append({variable, qgetenv(variable)});
            qunsetenv(variable);
        }
    }
    ~NoDisplay()
    {
        for (const auto& [variable, value] : qAsConst(m_values)) {
            if (!value.isNull()) {
                qputenv(variable, value);
            }
        }
    }
    Q_DISABLE_COPY(NoDisplay)

private:
    QVector<QPair<const char*, QByteArray>> m_values;
};

/// How many of the picture's pixels differ from its first one.
int inkOf(const QImage& picture)
{
    int ink = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            ink += picture.pixel(x, y) != picture.pixel(0, 0) ? 1 : 0;
        }
    }
    return ink;
}

} // namespace

/// Without a folder for it, Qt speaks of one on standard error.
void TestWindow::initTestCase()
{
    QVERIFY(m_folder.isValid());
    qputenv("XDG_RUNTIME_DIR", QFile::encodeName(m_folder.path()));
}

void TestWindow::aPictureHasTheSizeThatWasAskedFor_data()
{
    QTest::addColumn<QString>("subcommand");
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QSize>("size");
    const QStringList small = {"--size"_s, "641x403"_s};
    QTest::newRow("the window") << "window"_s << small << QSize(641, 403);
    QTest::newRow("the panel") << "panel"_s << small << QSize(641, 403);
    QTest::newRow("the panel, unasked") << "panel"_s << QStringList() << QSize(1280, 800);
}

void TestWindow::aPictureHasTheSizeThatWasAskedFor()
{
    QFETCH(QString, subcommand);
    QFETCH(QStringList, options);
    const BenchRun run = take(subcommand, options);
    QCOMPARE(run.errors, QByteArray());
    QCOMPARE(run.status, 0);
    const QImage picture(pictureFile());
    QTEST(picture.size(), "size");
    QVERIFY(inkOf(picture) > 0);
}

void TestWindow::aPictureIsTakenWithoutADisplay()
{
    const NoDisplay noDisplay;
    const BenchRun run = take("panel"_s, {"--size"_s, "300x200"_s});
    QCOMPARE(run.errors, QByteArray());
    QCOMPARE(run.status, 0);
    QCOMPARE(QImage(pictureFile()).size(), QSize(300, 200));
}

void TestWindow::themesDifferInBrightness()
{
    QCOMPARE(take("window"_s, {"--theme"_s, "dark"_s}).status, 0);
    QVERIFY(QImage(pictureFile()).pixelColor(2, 2).lightnessF() < 0.2);
    QCOMPARE(take("window"_s, {"--theme"_s, "light"_s}).status, 0);
    QVERIFY(QImage(pictureFile()).pixelColor(2, 2).lightnessF() > 0.9);
}

void TestWindow::aScaleShowsLess()
{
    const QStringList options = {"--size"_s,     "400x800"_s, "--theme"_s, "light"_s,
                                 "--language"_s, "en"_s,      "--scale"_s};
    QCOMPARE(take("panel"_s, options + QStringList{"0.5"_s}).status, 0);
    const QImage half(pictureFile());
    QCOMPARE(take("panel"_s, options + QStringList{"2"_s}).status, 0);
    const QImage twice(pictureFile());
    QCOMPARE(twice.size(), half.size());
    QVERIFY(inkOf(twice) > inkOf(half));
}

void TestWindow::aWindowWithoutADisplayIsRefused_data()
{
    QTest::addColumn<QString>("subcommand");
    QTest::newRow("the window") << "window"_s;
    QTest::newRow("the panel") << "panel"_s;
}

void TestWindow::aWindowWithoutADisplayIsRefused()
{
    QFETCH(QString, subcommand);
    const NoDisplay noDisplay;
    const BenchRun run = runBench({subcommand});
    QCOMPARE(run.errors,
             QByteArray("appvantor: there is no display to open a window on (a screenshot needs none); "
                        "\"appvantor --help\" tells what else there is\n"));
    QCOMPARE(run.status, 2);
}

void TestWindow::aPictureThatCannotBeWrittenIsTold()
{
    const BenchRun run = runBench({"panel"_s, "--screenshot"_s, "/no/such/folder/x.png"_s});
    QVERIFY2(run.errors.startsWith("appvantor: ") && run.errors.contains("/no/such/folder/x.png"),
             run.errors.constData());
    QCOMPARE(run.status, 2);
}

void TestWindow::ordersAreCarriedOutBesideTheWindow_data()
{
    QTest::addColumn<QByteArray>("orders");
    QTest::addColumn<int>("status");
    QTest::newRow("none") << QByteArray() << 0;
    QTest::newRow("orders") << QByteArray("getValue channel=START\nsleep 1\ngetValue channel=DOOR") << 0;
    QTest::newRow("one that fails") << QByteArray("getValue channel=NOWHERE\ngetValue channel=START\n") << 1;
    QTest::newRow("one that there is not") << QByteArray("getValue chanel=START\n") << 2;
    QTest::newRow("the end") << QByteArray("quit\ngetValue channel=START\n") << 0;
}

void TestWindow::ordersAreCarriedOutBesideTheWindow()
{
    QFETCH(QByteArray, orders);
    const QString file = temporaryFile(orders, QStringLiteral("orders"));
    const BenchRun run = runBench({QStringLiteral("window"), QStringLiteral("--for"), QStringLiteral("0.5"),
                                   QStringLiteral("--json"), QStringLiteral("--orders"), file});
    QTEST(run.status, "status");
    const BenchRun shell = runBench({QStringLiteral("shell"), QStringLiteral("--json")}, orders);
    QCOMPARE(run.output, shell.output);
}

void TestWindow::theWindowStaysWhenItsOrdersEnd()
{
    const QString file = temporaryFile(
        "startListening channel=START edge=HL\nsetValue channel=START state=ON\n", QStringLiteral("orders"));
    BenchProcess bench(
        {QStringLiteral("window"), QStringLiteral("--json"), QStringLiteral("--orders"), file});
    QVERIFY(bench.waitForOutput("\"order\":2"));
    QVERIFY(bench.waitForOutput("\"event\":"));
    bench.send(SIGTERM);
    const BenchRun run = bench.end();
    QCOMPARE(run.status, 0);
    // What still listens is stopped, and told.
    const QJsonObject last = run.json().constLast();
    QCOMPARE(last.value(QStringLiteral("order")).toInt(), 1);
    QCOMPARE(last.value(QStringLiteral("success")).toBool(), true);
}

void TestWindow::ordersThatCannotBeReadAreAnError_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("problem");
    QTest::newRow("no file") << QStringLiteral("/no/such/file") << QByteArray("No such file or directory");
    QTest::newRow("a folder") << QStringLiteral("/tmp") << QByteArray("expected a file, found a folder");
}

void TestWindow::ordersThatCannotBeReadAreAnError()
{
    QFETCH(QString, file);
    QFETCH(QByteArray, problem);
    const BenchRun run = runBench({QStringLiteral("window"), QStringLiteral("--orders"), file});
    QCOMPARE(run.errors, "appvantor: " + file.toUtf8() + ": the orders cannot be read: " + problem + "\n");
    QCOMPARE(run.status, 2);
}

QTEST_GUILESS_MAIN(TestWindow)
#include "test_window.moc"
