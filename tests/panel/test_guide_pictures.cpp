#include "literals.h"
#include "rows.h"

#include <QFile>
#include <QImage>
#include <QProcess>
#include <QTemporaryDir>
#include <QTextStream>
#include <QtTest>

namespace {

/// A part of a picture, and how many of its pixels differ so much that it is seen.
struct Tile
{
    QPoint place;
    int differing = 0;
};

constexpr int c_tolerated = 16; // a single letter that is missing differs in more

bool isSeen(QRgb one, QRgb other)
{
    constexpr int seen = 48;
    return std::max({qAbs(qRed(one) - qRed(other)), qAbs(qGreen(one) - qGreen(other)),
                     qAbs(qBlue(one) - qBlue(other))}) > seen;
}

/// The tile of two pictures of one size that differs most: a label that is not there is much of its tile, and
/// nothing of the whole.
Tile worstTile(const QImage& one, const QImage& other)
{
    constexpr int side = 32;
    Tile worst;
    for (int top = 0; top < one.height(); top += side) {
        for (int left = 0; left < one.width(); left += side) {
            Tile tile{{left, top}, 0};
            for (int y = top; y < std::min(top + side, one.height()); ++y) {
                for (int x = left; x < std::min(left + side, one.width()); ++x) {
                    tile.differing += isSeen(one.pixel(x, y), other.pixel(x, y)) ? 1 : 0;
                }
            }
            worst = tile.differing > worst.differing ? tile : worst;
        }
    }
    return worst;
}

} // namespace

/// The pictures that the documentation shows are those that the program draws.
class TestGuidePictures : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aPictureIsAsTheProgramDrawsIt_data()
    {
        const Rows<QStringList, QString> row("arguments", "file");
        QFile table(QStringLiteral(PICTURES));
        QVERIFY(table.open(QIODevice::ReadOnly));
        const QStringList lines = QString::fromUtf8(table.readAll()).split(QLatin1Char('\n'));
        for (const QString& line : lines) {
            QStringList words = line.simplified().split(QLatin1Char(' '));
            if (words.size() == 7) {
                const QString file = words.takeLast();
                row(qPrintable(file), words, file);
            }
        }
    }
    void aPictureIsAsTheProgramDrawsIt()
    {
        const auto [arguments, file] = Rows<QStringList, QString>::values();
        const QTemporaryDir folder;
        const QString drawn = folder.filePath("drawn.png"_s);
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("TZ"_s, "UTC"_s);
        environment.insert("QT_QPA_PLATFORM"_s, "offscreen"_s);
        process.setProcessEnvironment(environment);
        process.start(QStringLiteral(MAKE_PICTURES), arguments + QStringList{drawn});
        QVERIFY(process.waitForFinished(60000));
        QCOMPARE(process.exitCode(), 0);
        const QImage expected(QStringLiteral(SOURCE_DIR "/") + file);
        const QImage found(drawn);
        QCOMPARE(found.size(), expected.size());
        const Tile worst = worstTile(found, expected);
        QVERIFY2(
            worst.differing <= c_tolerated,
            qPrintable("%1 differs at %2, %3 in %4 pixels of a tile; tools/pictures draws it anew"_s.arg(file)
                           .arg(worst.place.x())
                           .arg(worst.place.y())
                           .arg(worst.differing)));
    }

    /// A step that changes nothing to be seen needs no picture.
    void eachStepOfTheGuideIsSeen()
    {
        const auto step = [](int number) {
            return QImage(QStringLiteral(SOURCE_DIR "/docs/pictures/pulse-%1.png").arg(number));
        };
        for (int number = 2; number <= 5; ++number) {
            QVERIFY(!step(number).isNull());
            QVERIFY(worstTile(step(number - 1), step(number)).differing > c_tolerated);
        }
    }
};

QTEST_GUILESS_MAIN(TestGuidePictures)
#include "test_guide_pictures.moc"
