#include "literals.h"

#include <utilities/d_date.h>
#include <utilities/d_object.h>
#include <utilities/d_timer.h>
#include <utilities/d_version.h>

#include <QDateTime>
#include <QSignalSpy>
#include <QTest>

class TestUtilities : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void anObjectIsNamedAndOwnedFromTheStart()
    {
        QObject parent;
        const auto* object = new DObject("Lamp"_s, &parent);
        QCOMPARE(object->objectName(), "Lamp"_s);
        QCOMPARE(object->parent(), &parent);
        QVERIFY(DObject("Alone"_s).parent() == nullptr);
    }

    void aTimerIsMadeStoppedAndPrecise()
    {
        QObject parent;
        const auto* timer = new DTimer(&parent);
        QVERIFY(!timer->isActive());
        QCOMPARE(timer->timerType(), Qt::PreciseTimer);
        QCOMPARE(timer->parent(), &parent);
    }

    void aTimerFires()
    {
        DTimer timer;
        QSignalSpy fired(&timer, &QTimer::timeout);
        timer.setSingleShot(true);
        timer.start(1);
        QVERIFY(fired.wait());
        QCOMPARE(fired.count(), 1);
    }

    void theDateTextIsTheLocalTimeToTheMillisecond()
    {
        const QDateTime before = QDateTime::currentDateTime();
        const QString text = getDate();
        const QDateTime after = QDateTime::currentDateTime();
        QCOMPARE(text.size(), 23);
        const QDateTime told = QDateTime::fromString(text, "yyyy-MM-dd HH:mm:ss.zzz"_s);
        QVERIFY2(told.isValid(), qPrintable(text));
        QVERIFY(before <= told);
        QVERIFY(told <= after);
    }

    void aWellFormedVersionPacksSixteenBitsANumber_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QChar>("separator");
        QTest::addColumn<quint64>("version");
        const QChar dot = QLatin1Char('.');
        QTest::newRow("one number") << "1"_s << dot << quint64{0x0001000000000000};
        QTest::newRow("two numbers") << "1.0"_s << dot << quint64{0x0001000000000000};
        QTest::newRow("three numbers") << "1.2.3"_s << dot << quint64{0x0001000200030000};
        QTest::newRow("four numbers") << "1.2.3.4"_s << dot << quint64{0x0001000200030004};
        QTest::newRow("lowest") << "0.0.0.0"_s << dot << quint64{0};
        QTest::newRow("highest") << "65535.65535.65535.65535"_s << dot << ~quint64{0};
        QTest::newRow("leading zeros") << "01.002"_s << dot << quint64{0x0001000200000000};
        QTest::newRow("another separator")
            << "5-15"_s << QChar(QLatin1Char('-')) << quint64{0x0005000F00000000};
    }

    void aWellFormedVersionPacksSixteenBitsANumber()
    {
        QFETCH(QString, text);
        QFETCH(QChar, separator);
        QFETCH(quint64, version);
        bool ok = false;
        QCOMPARE(quint64{versionFromString(text, &ok, separator)}, version);
        QVERIFY(ok);
        QCOMPARE(quint64{versionFromString(text, nullptr, separator)}, version);
    }

    void aMalformedVersionIsNoVersion_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("empty") << QString();
        QTest::newRow("blank") << " "_s;
        QTest::newRow("separator alone") << "."_s;
        QTest::newRow("trailing separator") << "1."_s;
        QTest::newRow("leading separator") << ".1"_s;
        QTest::newRow("empty number") << "1..2"_s;
        QTest::newRow("five numbers") << "1.2.3.4.5"_s;
        QTest::newRow("too large") << "65536"_s;
        QTest::newRow("too large later") << "1.2.3.65536"_s;
        QTest::newRow("huge") << "99999999999999999999"_s;
        QTest::newRow("minus") << "-1.0"_s;
        QTest::newRow("minus zero") << "-0"_s;
        QTest::newRow("plus") << "+1.0"_s;
        QTest::newRow("blank before") << " 1.0"_s;
        QTest::newRow("blank after") << "1.0 "_s;
        QTest::newRow("blank inside") << "1. 0"_s;
        QTest::newRow("line end") << "1.0\n"_s;
        QTest::newRow("letters") << "1.x"_s;
        QTest::newRow("hexadecimal") << "0x1"_s;
        QTest::newRow("exponent") << "1e1"_s;
        QTest::newRow("group separator") << "1,000"_s;
        QTest::newRow("other digits") << "١.٠"_s;
        QTest::newRow("another separator") << "1-0"_s;
    }

    void aMalformedVersionIsNoVersion()
    {
        QFETCH(QString, text);
        bool ok = true;
        QCOMPARE(quint64{versionFromString(text, &ok)}, quint64{0});
        QVERIFY(!ok);
        QCOMPARE(quint64{versionFromString(text)}, quint64{0});
    }
};

QTEST_GUILESS_MAIN(TestUtilities)

#include "test_utilities.moc"
