#include "process_usage.h"

#include "literals.h"

#include <QDir>
#include <QFile>

#include <unistd.h>

namespace {

qint64 residentPages()
{
    QFile statm("/proc/self/statm"_s);
    return statm.open(QIODevice::ReadOnly) ? statm.readAll().split(' ').value(1).toLongLong() : 0;
}

} // namespace

ProcessUsage ProcessUsage::now()
{
    const QDir descriptors("/proc/self/fd"_s);
    return {residentPages() * sysconf(_SC_PAGESIZE) / 1024,
            static_cast<int>(descriptors.entryList(QDir::Files | QDir::System).size())};
}
