#include "bench_process.h"
#include "literals.h"
#include "rows.h"

#include <QFile>
#include <QImage>
#include <QSettings>
#include <QTemporaryDir>
#include <QtTest>

#include <csignal>

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

/// The bench's windows from outside: pictures, and orders beside a window.
class TestWindow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    /// Without a folder for it, Qt speaks of one on standard error.
    void initTestCase()
    {
        QVERIFY(m_folder.isValid());
        qputenv("XDG_RUNTIME_DIR", QFile::encodeName(m_folder.path()));
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(m_folder.path()));
    }

    void aWindowIsRemembered()
    {
        const auto remembered = [this] {
            return QSettings(m_folder.filePath("appvantor/window.ini"_s), QSettings::IniFormat)
                .value("built-in/geometry"_s)
                .toRect();
        };
        QCOMPARE(runBench("window --size 750x500 --for 0.2"_words).status, 0);
        const QSize size = remembered().size();
        QVERIFY(size.width() < size.height() * 1.6 && size.width() > size.height() * 1.4);
        QCOMPARE(runBench("window --for 0.2"_words).status, 0);
        // A screen that is none has no whole number of pixels in a unit.
        QVERIFY(qAbs(remembered().width() - size.width()) < 40);
    }

    void aPictureIsAsLargeAsItsScale()
    {
        const QString file = m_folder.filePath("scaled.png"_s);
        QCOMPARE(runBench("window --scale 1.5 --screenshot"_words << file).status, 0);
        QCOMPARE(QImage(file).size(), QSize(1920, 1200));
    }

    void aPictureHasTheSizeAndTheThemeThatWereAskedFor_data()
    {
        const Rows<QString, QStringList, QSize, double, double> row("subcommand", "options", "size",
                                                                    "darkest", "lightest");
        row("a light window", "window", "--size 641x403 --theme light"_words, {641, 403}, 0.9, 1);
        row("a dark window", "window", "--size 1001x601 --theme dark"_words, {1001, 601}, 0, 0.2);
        row("a large one", "window", "--size 2560x1440 --theme dark"_words, {2560, 1440}, 0, 0.2);
        row("a light panel", "panel", "--size 641x403 --theme light"_words, {641, 403}, 0.9, 1);
        row("a panel of which nothing is said", "panel", {}, {1280, 800}, 0, 1);
    }

    void aPictureHasTheSizeAndTheThemeThatWereAskedFor()
    {
        QFETCH(QString, subcommand);
        QFETCH(QStringList, options);
        QFETCH(double, darkest);
        QFETCH(double, lightest);
        QCOMPARE(take(subcommand, options), BenchRun{0});
        const QImage picture(pictureFile());
        QTEST(picture.size(), "size");
        QVERIFY(inkOf(picture) > 0);
        const double lightness = picture.pixelColor(2, 2).lightnessF();
        QVERIFY2(lightness >= darkest && lightness <= lightest, qPrintable(QString::number(lightness)));
    }

    void aPictureIsTakenWithoutADisplay()
    {
        const NoDisplay noDisplay;
        QCOMPARE(take("panel"_s, "--size 300x200"_words), BenchRun{0});
        QCOMPARE(QImage(pictureFile()).size(), QSize(300, 200));
    }

    void aScaleShowsLess()
    {
        const QStringList options = "--size 400x800 --theme light --language en --scale"_words;
        QCOMPARE(take("panel"_s, options + QStringList{"0.5"_s}).status, 0);
        const QImage half(pictureFile());
        QCOMPARE(take("panel"_s, options + QStringList{"2"_s}).status, 0);
        const QImage twice(pictureFile());
        QCOMPARE(twice.size(), half.size());
        QVERIFY(inkOf(twice) > inkOf(half));
    }

    void aWindowWithoutADisplayIsRefused_data()
    {
        const Rows<QString> row("subcommand");
        row("the window", "window");
        row("the panel", "panel");
    }

    void aWindowWithoutADisplayIsRefused()
    {
        QFETCH(QString, subcommand);
        const NoDisplay noDisplay;
        QCOMPARE(runBench({subcommand}),
                 (BenchRun{2, "",
                           "appvantor: there is no display to open a window on (a screenshot needs none); "
                           "\"appvantor --help\" tells what else there is\n"}));
    }

    void ordersAreCarriedOutBesideTheWindow_data()
    {
        const Rows<QByteArray, int> row("orders", "status");
        row("none", QByteArray(), 0);
        row("orders", "getValue channel=START\nsleep 1\ngetValue channel=DOOR", 0);
        row("one that fails", "getValue channel=NOWHERE\ngetValue channel=START\n", 1);
        row("one that there is not", "getValue chanel=START\n", 2);
        row("a line that is wrong", "repeat 2\nsleep now\nend\nnosuch\n", 2);
        row("the end", "quit\ngetValue channel=START\n", 0);
    }

    void ordersAreCarriedOutBesideTheWindow()
    {
        QFETCH(QByteArray, orders);
        const QString file = temporaryFile(orders, "orders"_s);
        const BenchRun run = runBench("window --for 0.5 --json --orders"_words << file);
        QTEST(run.status, "status");
        QCOMPARE(run.output, runBench("shell --json"_words << file).output);
    }

    void whatRunsWhenTheWindowClosesIsStopped_data()
    {
        const Rows<QByteArray> row("order");
        row("an order", "getValue channel=DEAD");
        row("readings", "channels");
    }

    void whatRunsWhenTheWindowClosesIsStopped()
    {
        QFETCH(QByteArray, order);
        const BenchRun run = runBench("window --for 0.5 --json --orders"_words
                                      << temporaryFile(order, "orders"_s) << "--config"_s
                                      << example("fault_injection.json"_s));
        QCOMPARE(run.status, 1);
        const QByteArray told = "\"kind\":\"stopped\",\"reason\":\"stopped before it was complete\"";
        QVERIFY2(run.output.contains(told), run.output.constData());
    }

    void theWindowStaysWhenItsOrdersEnd()
    {
        const QString file = temporaryFile(
            "startListening channel=START edge=HL\nsetValue channel=START state=ON\n", "orders"_s);
        BenchProcess bench({"window"_s, "--json"_s, "--orders"_s, file});
        QVERIFY(bench.waitForOutput("\"order\":2"));
        QVERIFY(bench.waitForOutput("\"event\""));
        bench.send(SIGTERM);
        const BenchRun run = bench.end();
        QCOMPARE(run.status, 0);
        // What still listens is stopped, and told.
        const QJsonObject last = run.json().constLast();
        QCOMPARE(last.value("order"_s).toInt(), 1);
        QCOMPARE(last.value("type"_s).toString(), "result"_s);
    }

    void ordersThatCannotBeReadAreAnError_data()
    {
        const Rows<QString, QByteArray> row("file", "problem");
        row("no file", "/no/such/file", "No such file or directory");
        row("a folder", "/tmp", "expected a file, found a folder");
    }

    void ordersThatCannotBeReadAreAnError()
    {
        QFETCH(QString, file);
        QFETCH(QByteArray, problem);
        const QByteArray message =
            "appvantor: " + file.toUtf8() + ": the orders cannot be read: " + problem + "\n";
        QCOMPARE(runBench({"window"_s, "--orders"_s, file}), (BenchRun{2, "", message}));
    }

private:
    BenchRun take(const QString& subcommand, const QStringList& options) const
    {
        return runBench(QStringList{subcommand, "--screenshot"_s, pictureFile()} + options);
    }
    QString pictureFile() const { return m_folder.filePath("picture.png"_s); }

    QTemporaryDir m_folder;
};

QTEST_GUILESS_MAIN(TestWindow)
#include "test_window.moc"
