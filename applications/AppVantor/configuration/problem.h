#pragma once

#include <plugin_management/d_wording.h>

#include <QString>

/// A mistake in what somebody wrote, and where it stands, as far as that is known.
struct Problem
{
    DWording text = {};
    QString file = {};
    int line = 0;       ///< from 1; 0 for none
    int column = 0;     ///< in bytes, from 1; 0 for none
    QString entry = {}; ///< of a configuration: "device.lines[2].name"

    /// For people, in one line: "bench.json:12:7: device.lines[2].name: expected …".
    QString toString() const;
    /// The same with the text as it is worded elsewhere.
    Q_DECL_EXPORT QString toString(const QString& worded) const;
};
