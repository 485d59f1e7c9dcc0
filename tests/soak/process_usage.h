#pragma once

#include <QtGlobal>

/// What this process holds of the machine at one moment.
struct ProcessUsage
{
    qint64 residentKiB = 0;
    int descriptors = 0;

    static ProcessUsage now();
};
