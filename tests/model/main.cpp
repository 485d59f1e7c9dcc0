#include "command_line_numbers.h"
#include "literals.h"
#include "manual_event_dispatcher.h"
#include "world.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QHash>
#include <QRandomGenerator>

#include <cstdio>
#include <limits>

namespace {

void printFigures(int steps, const World& world)
{
    const OrderRules& orders = world.orderRules();
    const TreatmentRules& treatments = world.treatmentRules();
    quint64 ended = 0;
    QStringList kinds;
    for (auto kind = orders.ends.cbegin(); kind != orders.ends.cend(); ++kind) {
        ended += kind.value();
        kinds.append("%1 %2"_s.arg(kind.key()).arg(kind.value()));
    }
    std::printf("%d steps, %llu orders, %llu replies, %llu destroyed, %llu treatments released, "
                "%llu refused; ends: %s\n",
                steps, ended, orders.replies, world.destroyed(), treatments.releases, treatments.refusals,
                qPrintable(kinds.join(", "_s)));
}

} // namespace

/// Does random things to the host and holds what comes of them against a model of its rules.
int main(int argc, char* argv[])
{
    qSetGlobalQHashSeed(0); // the same seed gives the same run
    ManualScheduler scheduler;
    QCoreApplication::setEventDispatcher(new ManualEventDispatcher(&scheduler));
    const QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    parser.addOption({"seed"_s, "Repeats the run of this seed; a fresh one by default."_s, "number"_s,
                      QString::number(QRandomGenerator::global()->generate())});
    parser.addOption({"steps"_s, "How many steps the run has."_s, "number"_s, "2000"_s});
    parser.addOption({"aloud"_s, "Prints each action as it happens."_s});
    readOptions(&parser);
    const quint64 seed = wholeNumber(parser, "seed"_s, 0, std::numeric_limits<quint64>::max());
    const int steps = static_cast<int>(wholeNumber(parser, "steps"_s, 0, std::numeric_limits<int>::max()));

    std::printf("seed %llu: ", seed);
    std::fflush(stdout);
    Journal journal(seed, steps, parser.isSet("aloud"_s), &scheduler);
    World world(seed, &journal, &scheduler);
    for (int step = 1; step <= steps; ++step) {
        journal.beginStep(step);
        world.step();
    }
    world.finish();
    printFigures(steps, world);
    return 0;
}
