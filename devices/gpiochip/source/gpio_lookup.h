#pragma once

#include <devices/gpio_chip.h>

#include <plugin_management/d_wording.h>

#include <QHash>

#include <map>

/// Finds lines on the chips of this machine. It keeps open what it has opened; whoever finds a line shares
/// its chip.
class GpioLookup
{
public:
    struct Place
    {
        std::shared_ptr<GpioChip> chip; ///< null when the line was not found
        int offset = 0;
    };

    /// Finds the line wanted (its offset or name) on the chip of this file, name or label, on any chip
    /// without one. name is what the line is called in messages. Without success problem says why, and
    /// isMissing() whether it may come yet.
    Place find(const QString& name, const QString& chip, const QString& wanted, DWording* problem);
    bool isMissing() const { return m_missing; }

private:
    struct Known
    {
        std::shared_ptr<GpioChip> chip; ///< null when it cannot be opened
        DWording problem;               ///< why; empty when it has gone
        bool named = false;
        QMultiHash<QString, int> offsets; ///< by the names of lines
    };

    Known& open(const QString& file);
    QList<int> offsetsOf(Known* known, const QString& wanted) const;

    std::map<QString, Known> m_chips; ///< by their files
    bool m_missing = false;
};
