#include "command_line_numbers.h"
#include "literals.h"
#include "message_log.h"
#include "soak_bench.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>

#include <algorithm>
#include <cstdio>
#include <limits>
#include <unistd.h>

namespace {

constexpr int c_rounds = 100;
/// The heap, Qt's event queue and the dynamic linker take their lasting size in these.
constexpr int c_warmUpRounds = 10;
/// What the heap may still gain by scattering: one lost object of 16 bytes an order would be 15 MB.
constexpr qint64 c_mostGrowthKiB = 1024;

#ifdef __SANITIZE_ADDRESS__
/// Freed memory is kept back to find uses of it; leaks are told by the sanitizer itself.
constexpr bool c_memoryTells = false;
#else
constexpr bool c_memoryTells = true;
#endif

qint64 residentPages()
{
    QFile statm("/proc/self/statm"_s);
    return statm.open(QIODevice::ReadOnly) ? statm.readAll().split(' ').value(1).toLongLong() : 0;
}

/// What this process holds of the machine at one moment.
struct ProcessUsage
{
    qint64 residentKiB = 0;
    int descriptors = 0;

    static ProcessUsage now()
    {
        const QDir descriptors("/proc/self/fd"_s);
        return {residentPages() * sysconf(_SC_PAGESIZE) / 1024,
                static_cast<int>(descriptors.entryList(QDir::Files | QDir::System).size())};
    }
};

struct Record
{
    ProcessUsage warm;
    ProcessUsage highest;
    ProcessUsage last;

    void add(int round, const ProcessUsage& usage)
    {
        if (round <= c_warmUpRounds) {
            warm = usage;
            highest = usage;
        }
        highest.residentKiB = std::max(highest.residentKiB, usage.residentKiB);
        highest.descriptors = std::max(highest.descriptors, usage.descriptors);
        last = usage;
    }

    QString problem() const
    {
        const qint64 growth = highest.residentKiB - warm.residentKiB;
        if (c_memoryTells && growth > c_mostGrowthKiB) {
            return "resident memory grew by %1 KiB, expected %2 at most"_s.arg(growth).arg(c_mostGrowthKiB);
        }
        if (highest.descriptors != warm.descriptors) {
            return "%1 descriptors are open, %2 after the warm-up"_s.arg(highest.descriptors)
                .arg(warm.descriptors);
        }
        return QString();
    }
};

qint64 share(qint64 all, int round)
{
    return all * round / c_rounds - all * (round - 1) / c_rounds;
}

qint64 count(const QCommandLineParser& parser, const QString& option)
{
    return static_cast<qint64>(wholeNumber(parser, option, c_rounds, std::numeric_limits<int>::max()));
}

} // namespace

/// Runs orders and events for long in one process, and watches what the process holds.
int main(int argc, char* argv[])
{
    const QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    parser.addOption({"orders"_s, "Orders to run."_s, "number"_s, "1000000"_s});
    parser.addOption({"events"_s, "Listening events to hear."_s, "number"_s, "10000000"_s});
    parser.addOption({"own-thread"_s, "Keeps the board in a thread of its own."_s});
    readOptions(&parser);
    const qint64 orders = count(parser, "orders"_s);
    const qint64 events = count(parser, "events"_s);

    QElapsedTimer clock;
    clock.start();
    SoakBench bench(parser.isSet("own-thread"_s) ? DevicePlace::OwnThread : DevicePlace::SameThread);
    Record record;
    qint64 messages = 0;
    for (int round = 1; round <= c_rounds && bench.problem().isEmpty(); ++round) {
        const MessageLog log;
        bench.runOrders(share(orders, round));
        bench.replug(); // which ends all blinking: what is heard next is counted
        bench.runEvents(share(events, round));
        messages += log.messages().size();
        record.add(round, ProcessUsage::now());
    }

    QString problem = bench.problem().isEmpty() ? record.problem() : bench.problem();
    if (problem.isEmpty() && messages != bench.provokedReports()) {
        problem = "%1 messages were logged, %2 provoked"_s.arg(messages).arg(bench.provokedReports());
    }
    std::printf(
        "%lld orders, %lld events, %.1f s, resident %lld KiB after the warm-up, %lld at the end, %lld at "
        "most, descriptors %d, %d, %d, %lld messages, %lld provoked\n",
        orders, bench.events(), static_cast<double>(clock.elapsed()) / 1000, record.warm.residentKiB,
        record.last.residentKiB, record.highest.residentKiB, record.warm.descriptors, record.last.descriptors,
        record.highest.descriptors, messages, bench.provokedReports());
    if (!problem.isEmpty()) {
        std::fprintf(stderr, "%s\n", qPrintable(problem));
        return 1;
    }
    return 0;
}
