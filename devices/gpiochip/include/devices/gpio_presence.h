#pragma once

#include <QObject>

#include <memory>

/// Tells when GPIO chips may have come or gone: by the notices of udev, which come when a chip can be used;
/// where udev does not run, by the folder of the chips' files.
class GpioPresence : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(GpioPresence)

public:
    /// Begins to watch.
    GpioPresence();
    ~GpioPresence() override;

Q_SIGNALS:
    void changed();

private:
    bool listenToUdev();
    void watchFolder();

    struct Private;
    std::unique_ptr<Private> d;
};
