#include "literals.h"
#include "rows.h"

#include <utilities/d_date.h>
#include <utilities/d_object.h>
#include <utilities/d_timer.h>
#include <utilities/d_version.h>

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
        const Rows<QString, quint64, bool> row("text", "version", "wellFormed");
        row("one number", "1", quint64{0x0001000000000000}, true);
        row("two numbers", "1.0", quint64{0x0001000000000000}, true);
        row("three numbers", "1.2.3", quint64{0x0001000200030000}, true);
        row("four numbers", "1.2.3.4", quint64{0x0001000200030004}, true);
        row("lowest", "0.0.0.0", quint64{0}, true);
        row("highest", "65535.65535.65535.65535", ~quint64{0}, true);
        row("leading zeros", "01.002", quint64{0x0001000200000000}, true);
        const QStringList malformed = {
            QString(), " "_s,     "."_s,   "1."_s,   ".1"_s,   "1..2"_s,  "1.2.3.4.5"_s,
            "65536"_s, "-1.0"_s,  "-0"_s,  "+1.0"_s, " 1.0"_s, "1.0 "_s,  "1.2.3.65536"_s,
            "1. 0"_s,  "1.0\n"_s, "1.x"_s, "0x1"_s,  "1e1"_s,  "1,000"_s, "99999999999999999999"_s,
            "١.٠"_s,   "1-0"_s};
        for (const QString& text : malformed) {
            row(("malformed: \""_s + text + "\""_s).toUtf8(), text, 0, false);
        }
    }
    void aWellFormedVersionPacksSixteenBitsANumber()
    {
        const auto [text, version, wellFormed] = Rows<QString, quint64, bool>::values();
        bool ok = !wellFormed;
        QCOMPARE(quint64{versionFromString(text, &ok)}, version);
        QCOMPARE(ok, wellFormed);
        QCOMPARE(quint64{versionFromString(text)}, version);
    }

    void theNumbersOfAVersionMayBePartedOtherwise()
    {
        bool ok = false;
        QCOMPARE(quint64{versionFromString("5-15"_s, &ok, QLatin1Char('-'))}, quint64{0x0005000F00000000});
        QVERIFY(ok);
    }
};

QTEST_GUILESS_MAIN(TestUtilities)
#include "test_utilities.moc"
