#include "manual_scheduler.h"
#include "workbench.h"

#include <devices/gpio_chip_device.h>
#include <devices/gpio_messages.h>

#include <QtTest>

/// GPIO lines where there are none.
class TestGpioChipDevice : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aChipThatIsNotThereIsToldWhenTheDeviceIsOpened()
    {
        GpioChipSetup setup;
        setup.lines = {{"lamp"_s, "/dev/nosuchgpiochip"_s, "0"_s, {}}};
        ManualScheduler scheduler;
        const auto device = makeGpioChipDevice(setup, &scheduler, DevicePlace::SameThread);
        QSignalSpy changed(device.get(), &DDevice::stateChanged);
        for (int time = 1; time <= 2; ++time) {
            device->open();
            QCOMPARE(device->state(), DDevice::State::Unreachable);
            QCOMPARE(device->connectionProblem().english(),
                     "line \"lamp\": "_s + GpioMessages::noSuchChip("/dev/nosuchgpiochip"_s).english());
            QVERIFY(!device->level(0).known);
            device->close();
            QCOMPARE(changed.count(), 3 * time);
        }
    }
};

QTEST_GUILESS_MAIN(TestGpioChipDevice)
#include "test_gpio_chip_device.moc"
