#include "literals.h"
#include "rows.h"

#include <QFile>
#include <QImage>
#include <QProcess>
#include <QTemporaryDir>
#include <QTextStream>
#include <QtTest>

/// The pictures that the documentation shows are those that the program draws.
class TestGuidePictures : public QObject
{
    Q_OBJECT

    /// How many pixels of a thousand differ so much that it is seen.
    static double difference(const QImage& one, const QImage& other)
    {
        constexpr int seen = 48;
        int differing = 0;
        for (int y = 0; y < one.height(); ++y) {
            for (int x = 0; x < one.width(); ++x) {
                const QRgb left = one.pixel(x, y);
                const QRgb right = other.pixel(x, y);
                const int most = std::max({qAbs(qRed(left) - qRed(right)), qAbs(qGreen(left) - qGreen(right)),
                                           qAbs(qBlue(left) - qBlue(right))});
                differing += most > seen ? 1 : 0;
            }
        }
        return 1000.0 * differing / (one.width() * one.height());
    }

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
        constexpr double tolerated = 3; // of a thousand
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
        const double differs = difference(found, expected);
        QVERIFY2(
            differs <= tolerated,
            qPrintable("%1 differs in %2 of a thousand pixels; tools/pictures draws it anew"_s.arg(file).arg(
                differs)));
    }
};

QTEST_GUILESS_MAIN(TestGuidePictures)
#include "test_guide_pictures.moc"
