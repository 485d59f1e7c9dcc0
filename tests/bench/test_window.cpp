#include "bench_process.h"

#include <QFile>
#include <QImage>
#include <QTemporaryDir>
#include <QtTest>

/// The bench's windows from outside, as pictures.
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

private:
    BenchRun take(const QString& subcommand, const QStringList& options) const
    {
        return runBench(QStringList{subcommand, QStringLiteral("--screenshot"), pictureFile()} + options);
    }
    QString pictureFile() const { return m_folder.filePath(QStringLiteral("picture.png")); }

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
    const QStringList small = {QStringLiteral("--size"), QStringLiteral("641x403")};
    QTest::newRow("the window") << QStringLiteral("window") << small << QSize(641, 403);
    QTest::newRow("the panel") << QStringLiteral("panel") << small << QSize(641, 403);
    QTest::newRow("the panel, unasked") << QStringLiteral("panel") << QStringList() << QSize(1280, 800);
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
    const BenchRun run = take(QStringLiteral("panel"), {QStringLiteral("--size"), QStringLiteral("300x200")});
    QCOMPARE(run.errors, QByteArray());
    QCOMPARE(run.status, 0);
    QCOMPARE(QImage(pictureFile()).size(), QSize(300, 200));
}

void TestWindow::themesDifferInBrightness()
{
    QCOMPARE(take(QStringLiteral("window"), {QStringLiteral("--theme"), QStringLiteral("dark")}).status, 0);
    QVERIFY(QImage(pictureFile()).pixelColor(2, 2).lightnessF() < 0.2);
    QCOMPARE(take(QStringLiteral("window"), {QStringLiteral("--theme"), QStringLiteral("light")}).status, 0);
    QVERIFY(QImage(pictureFile()).pixelColor(2, 2).lightnessF() > 0.9);
}

void TestWindow::aScaleShowsLess()
{
    const QStringList options = {QStringLiteral("--size"),     QStringLiteral("400x800"),
                                 QStringLiteral("--theme"),    QStringLiteral("light"),
                                 QStringLiteral("--language"), QStringLiteral("en"),
                                 QStringLiteral("--scale")};
    QCOMPARE(take(QStringLiteral("panel"), options + QStringList{QStringLiteral("0.5")}).status, 0);
    const QImage half(pictureFile());
    QCOMPARE(take(QStringLiteral("panel"), options + QStringList{QStringLiteral("2")}).status, 0);
    const QImage twice(pictureFile());
    QCOMPARE(twice.size(), half.size());
    QVERIFY(inkOf(twice) > inkOf(half));
}

void TestWindow::aWindowWithoutADisplayIsRefused_data()
{
    QTest::addColumn<QString>("subcommand");
    QTest::newRow("the window") << QStringLiteral("window");
    QTest::newRow("the panel") << QStringLiteral("panel");
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
    const BenchRun run = runBench(
        {QStringLiteral("panel"), QStringLiteral("--screenshot"), QStringLiteral("/no/such/folder/x.png")});
    QVERIFY2(run.errors.startsWith("appvantor: ") && run.errors.contains("/no/such/folder/x.png"),
             run.errors.constData());
    QCOMPARE(run.status, 2);
}

QTEST_GUILESS_MAIN(TestWindow)
#include "test_window.moc"
