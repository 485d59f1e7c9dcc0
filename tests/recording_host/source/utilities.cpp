#include "records.h"

#include <utilities/d_date.h>
#include <utilities/d_object.h>
#include <utilities/d_timer.h>
#include <utilities/d_version.h>

#include <QMap>

#include <optional>

namespace {

std::optional<HostHabit> habitOfThisProcess()
{
    static const QMap<QByteArray, HostHabit> habits = {
        {"keeps_parents", HostHabit::KeepsParents},
        {"refuses_at_random", HostHabit::RefusesAtRandom},
        {"initialises_too_early", HostHabit::InitialisesTooEarly},
        {"converts_values", HostHabit::ConvertsValues}};
    const QByteArray name = qgetenv("RECORDING_HOST");
    const auto habit = habits.constFind(name);
    if (habit != habits.constEnd()) {
        return *habit;
    }
    if (!name.isEmpty()) {
        qFatal("RECORDING_HOST: %s is no habit of the recording host", name.constData());
    }
    return std::nullopt;
}

} // namespace

bool hostHas(HostHabit habit)
{
    static const std::optional<HostHabit> own = habitOfThisProcess();
    return own == habit;
}

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
