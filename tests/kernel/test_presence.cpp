#include "line_bench.h"
#include "literals.h"
#include "rows.h"
#include "sim_chip.h"

#include <devices/gpio_presence.h>

#include <QDir>
#include <QProcess>
#include <QSignalSpy>
#include <QtTest>

/// Chips that come and go where udev runs, and where it does not.
class TestPresence : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        const bool withUdev = qstrcmp(QTest::currentDataTag(), "by the folder") != 0;
        if (withUdev) {
            m_udev.start("/lib/systemd/systemd-udevd"_s, QStringList());
            QTRY_VERIFY(QFile::exists("/run/udev/control"_s));
        }
    }

    void cleanup()
    {
        m_udev.terminate();
        m_udev.waitForFinished();
        QDir("/run/udev"_s).removeRecursively(); // where it runs is told by its files
    }

    void chipsComeAndGo_data()
    {
        const Rows<DevicePlace> row("place");
        row("by udev", DevicePlace::SameThread);
        row("by udev, in a thread", DevicePlace::OwnThread);
        row("by the folder", DevicePlace::SameThread);
    }

    void chipsComeAndGo()
    {
        QFETCH(DevicePlace, place);
        SimChip chip("coming"_s, 4);
        chip.unplug();
        LineBench bench({output("lamp"_s, "coming"_s, 0)}, place);
        for (int time = 0; time < 5; ++time) {
            QTRY_VERIFY(!bench.device().isConnected());
            chip.plugIn();
            QTRY_VERIFY(bench.device().isConnected());
            QVERIFY(bench.set("lamp"_s, "ON"_s).success);
            QCOMPARE(chip.level(0), 1);
            chip.unplug();
        }
    }

    void onlyChipsAreOfInterestToTheNotices()
    {
        GpioPresence presence;
        QSignalSpy changed(&presence, &GpioPresence::changed);
        QTemporaryFile file("/dev/other.XXXXXX"_s);
        QVERIFY(file.open());
        QTest::qWait(200);
        QCOMPARE(changed.count(), 0);
        const SimChip chip("coming"_s, 4);
        QTRY_VERIFY(changed.count() > 0);
    }

private:
    QProcess m_udev;
};

QTEST_GUILESS_MAIN(TestPresence)
#include "test_presence.moc"
