#include "host_record.h"

#include <utilities/d_date.h>
#include <utilities/d_object.h>
#include <utilities/d_timer.h>
#include <utilities/d_version.h>

HostRecord& hostRecord()
{
    static HostRecord record;
    return record;
}

void resetHostRecord()
{
    hostRecord() = HostRecord();
}

void noteCall(const QString& call)
{
    hostRecord().calls.append(call);
    if (hostRecord().onCall) {
        hostRecord().onCall(call);
    }
}

DObject::DObject(const QString& name, QObject* parent)
    : QObject(parent)
{
    setObjectName(name);
}

DObject::~DObject() = default;

DTimer::DTimer(QObject* parent)
    : QTimer(parent)
{}

QString getDate()
{
    return hostRecord().date;
}

unsigned long long versionFromString(const QString& text, bool* ok, QChar separator)
{
    noteCall(QStringLiteral("versionFromString ") + text);
    hostRecord().versionTexts.append({text, ok != nullptr, separator});
    return hostRecord().version;
}
