#pragma once

#include <devices/gpio_chip.h>
#include <devices/line_device.h>
#include <devices/line_engine.h>

#include <QFileSystemWatcher>

/// Which GPIO lines a bench uses.
struct GpioChipSetup
{
    struct Line
    {
        QString name; ///< what channels link to
        QString chip; ///< its file, name or label
        QString line; ///< the kernel's name of the line, or its offset
        GpioLineSettings settings;
    };

    QVector<Line> lines;
};

/// GPIO lines of this machine, through the kernel's character devices. The lines are held as long as the
/// device is open and its chips are there; a chip that disappears makes the device unreachable until it
/// returns.
class GpioChipDevice : public QObject, public LineEngine
{
    Q_OBJECT
    Q_DISABLE_COPY(GpioChipDevice)

public:
    /// scheduler and listener must outlive the device. A device whose lines cannot be had tries again when
    /// the chips of the machine change.
    GpioChipDevice(const GpioChipSetup& setup, DScheduler* scheduler, LineListener* listener);
    ~GpioChipDevice() override;

    void open() override;
    void close() override;
    void request(quint64 id, const QString& instruction, const QVariantMap& arguments) override;

    static QVector<DLine> linesOf(const GpioChipSetup& setup);

protected:
    DFailure drive(int line, int level) override;

private:
    struct HeldLine;
    struct HeldChip;

    HeldChip* chipFor(const GpioChipSetup::Line& line, QString* problem);
    HeldChip* openChip(const QString& file, QString* problem);
    QString hold(int line);
    void connectLines();
    void releaseAll();
    void lookForChips();
    void lose(const QString& chip);
    DFailure failed(int line, int error);
    void readInputs();
    std::vector<int> readyInputs() const;
    void readInput(quint64 id, int line);

    GpioChipSetup m_setup;
    std::vector<std::unique_ptr<HeldChip>> m_chips;
    std::vector<HeldLine> m_held; ///< all lines, or none
    bool m_chipMissing = false;
    std::unique_ptr<QFileSystemWatcher> m_watcher; ///< while the device is open
};

/// Makes the device of these lines behind its front, closed; see LineDevice.
std::unique_ptr<LineDevice> makeGpioChipDevice(const GpioChipSetup& setup, DScheduler* scheduler,
                                               DevicePlace place);
