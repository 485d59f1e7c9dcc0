#pragma once

#include <devices/gpio_chip.h>
#include <devices/line_device.h>

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
/// device lives and its chips are there; a chip that disappears disconnects the device until it returns.
class GpioChipDevice : public LineDevice
{
    Q_OBJECT
    Q_DISABLE_COPY(GpioChipDevice)

public:
    /// scheduler must outlive the device. A device whose lines cannot be had is not connected, and tries
    /// again when the chips of the machine change.
    GpioChipDevice(const GpioChipSetup& setup, Scheduler* scheduler, QObject* parent = nullptr);
    ~GpioChipDevice() override;

protected:
    QString drive(int line, int level) override;
    void handleRequest(quint64 id, const QString& instruction, const QVariantMap& arguments) override;

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
    QString failed(int line, int error);
    void readInputs();
    std::vector<int> readyInputs() const;
    void readInput(quint64 id, int line);

    GpioChipSetup m_setup;
    qint64 m_clockOffsetUs = 0; ///< from the kernel's monotonic clock to the device's
    std::vector<std::unique_ptr<HeldChip>> m_chips;
    std::vector<HeldLine> m_held; ///< all lines, or none
    bool m_chipMissing = false;
    QFileSystemWatcher m_watcher;
};
