#pragma once

#include <devices/gpio_chip.h>
#include <devices/gpio_presence.h>
#include <devices/line_device.h>
#include <devices/line_engine.h>

#include <QSocketNotifier>

#include <functional>

/// Which GPIO lines a bench uses.
struct GpioChipSetup
{
    /// How an output starts when its chip has been away.
    enum class OnReturn
    {
        Configured, ///< at its configured level
        Restore,    ///< at the level that it had
        Leave       ///< at the level that it is found with
    };
    struct Line
    {
        QString name; ///< what channels link to
        QString chip; ///< its file, name or label; empty for any chip
        QString line; ///< the kernel's name of the line, or its offset
        GpioLineSettings settings;
        OnReturn onReturn = OnReturn::Configured;
    };

    QVector<Line> lines;
};

class GpioLookup;
class HeldLines;

/// GPIO lines of this machine, through the kernel's character devices. The lines are held as long as the
/// device is open and their chips are there; a chip that disappears makes the device unreachable until it
/// returns, and the lines of other chips stay as they are.
class GpioChipDevice : public QObject, public LineEngine
{
    Q_OBJECT
    Q_DISABLE_COPY(GpioChipDevice)

public:
    /// scheduler and listener must outlive the device. A device whose lines cannot be had tries again when
    /// the chips of the machine change, or a line is let go that another program held.
    GpioChipDevice(const GpioChipSetup& setup, DScheduler* scheduler, LineListener* listener);
    ~GpioChipDevice() override;

    void open() override;
    void close() override;
    void request(quint64 id, const QString& instruction, const QVariantMap& arguments) override;

    static QVector<DLine> linesOf(const GpioChipSetup& setup);

protected:
    DFailure drive(int line, int level, qint64 timeUs) override;

private:
    struct Group;
    struct Held
    {
        std::unique_ptr<HeldLines> lines;
        std::unique_ptr<QSocketNotifier> notifier;
    };
    /// Where a line is held; nowhere without lines.
    struct Place
    {
        HeldLines* lines = nullptr;
        int position = 0;
    };

    std::vector<Group> findLines(GpioLookup* lookup, DWording* problem) const;
    GpioLineSettings settingsOf(int line) const;
    DWording hold(const Group& group, std::vector<std::unique_ptr<HeldLines>>* held);
    DWording whyRefused(const Group& group, int error);
    void awaitRelease(const std::shared_ptr<GpioChip>& chip);
    void connectLines();
    void take(std::unique_ptr<HeldLines> held);
    void begin();
    void release(const std::function<bool(const HeldLines&)>& isOver);
    void lookForChips();
    void lookForChipsSoon();
    DFailure failed(int line, int error);
    void readCourses();
    void tellLosses(const QString& chip, const QMap<int, quint32>& lost, quint32 lostOfStill);
    void endCourse(const Held& held, int error, std::vector<std::pair<int, DFailure>>* unreadable);
    void readInput(quint64 id, int line);
    DWording textOf(int line) const;

    GpioChipSetup m_setup;
    std::vector<Held> m_held;
    QVector<Place> m_places;                  ///< of the lines
    std::unique_ptr<GpioPresence> m_presence; ///< while the device is open
    std::shared_ptr<GpioChip> m_awaitedChip;  ///< of a line that another program holds
    std::unique_ptr<QSocketNotifier> m_awaited;
    DScheduler::Appointment m_retry;
    bool m_returning = false;   ///< the lines have been held before
    bool m_toldMissing = false; ///< what was told last is that a chip is not there
};

/// Makes the device of these lines behind its front, closed; see LineDevice.
std::unique_ptr<LineDevice> makeGpioChipDevice(const GpioChipSetup& setup, DScheduler* scheduler,
                                               DevicePlace place);
