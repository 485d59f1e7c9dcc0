#include <devices/gpio_presence.h>

#include <QFile>
#include <QFileSystemWatcher>
#include <QSocketNotifier>

#include <libudev.h>

namespace {

template <typename Thing, Thing* (*release)(Thing*)>
struct Unref
{
    void operator()(Thing* thing) const { release(thing); }
};

using Udev = std::unique_ptr<udev, Unref<udev, udev_unref>>;
using Monitor = std::unique_ptr<udev_monitor, Unref<udev_monitor, udev_monitor_unref>>;
using Notice = std::unique_ptr<udev_device, Unref<udev_device, udev_device_unref>>;

} // namespace

struct GpioPresence::Private
{
    Udev udev;
    Monitor monitor;
    std::unique_ptr<QSocketNotifier> notifier;
    std::unique_ptr<QFileSystemWatcher> folder;
};

GpioPresence::GpioPresence()
    : d(std::make_unique<Private>())
{
    if (!listenToUdev()) {
        watchFolder();
    }
}

GpioPresence::~GpioPresence() = default;

bool GpioPresence::listenToUdev()
{
    if (!QFile::exists(QStringLiteral("/run/udev/control"))) { // without udev nobody would send the notices
        return false;
    }
    d->udev.reset(udev_new());
    d->monitor.reset(udev_monitor_new_from_netlink(d->udev.get(), "udev"));
    if (d->monitor == nullptr ||
        udev_monitor_filter_add_match_subsystem_devtype(d->monitor.get(), "gpio", nullptr) < 0 ||
        udev_monitor_enable_receiving(d->monitor.get()) < 0) {
        return false;
    }
    d->notifier =
        std::make_unique<QSocketNotifier>(udev_monitor_get_fd(d->monitor.get()), QSocketNotifier::Read);
    connect(d->notifier.get(), &QSocketNotifier::activated, this, [this] {
        bool any = false;
        while (const Notice notice{udev_monitor_receive_device(d->monitor.get())}) {
            any = true;
        }
        if (any) {
            Q_EMIT changed();
        }
    });
    return true;
}

void GpioPresence::watchFolder()
{
    d->folder = std::make_unique<QFileSystemWatcher>(QStringList{QStringLiteral("/dev")});
    connect(d->folder.get(), &QFileSystemWatcher::directoryChanged, this, &GpioPresence::changed);
}
