#pragma once

#include <process/output.h>

#include <plugin_management/d_scheduler.h>

#include <devices/gpio_chip.h>
#include <devices/gpio_presence.h>

#include <QSet>
#include <QSocketNotifier>

#include <map>

/// Tells which GPIO chips of this machine come and go, and which of their lines are taken, released and
/// configured anew.
class DiscoverWatch : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(DiscoverWatch)

public:
    /// Begins to watch; what is there already is not told.
    explicit DiscoverWatch(Output* output);

private:
    struct Watched
    {
        std::unique_ptr<GpioChip> chip;
        std::unique_ptr<QSocketNotifier> notifier;
        std::vector<GpioLineInfo> lines; ///< as they were told last
    };

    void lookForChips(bool tells);
    void watch(const QString& file, bool tells);
    void readChanges(Watched* watched);
    void askAgain(Watched* watched);
    void tellChip(const char* change, const GpioChip& chip);
    void tellLine(GpioLineChange::Kind kind, const GpioLineInfo& line, Watched* watched, qint64 timeUs);

    Output* const m_output;
    const DSteadyScheduler m_clock;
    GpioPresence m_presence;
    std::map<QString, Watched> m_chips; ///< by their files
    QSet<QString> m_refused;            ///< files of chips that cannot be opened
};
