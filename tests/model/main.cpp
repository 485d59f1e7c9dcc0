#include "literals.h"
#include "manual_event_dispatcher.h"
#include "world.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QHash>
#include <QRandomGenerator>

#include <cstdio>
#include <limits>
#include <optional>

namespace {

constexpr int c_usageError = 2;

std::optional<quint64> wholeNumber(const QCommandLineParser& parser, const QString& option, quint64 highest)
{
    bool ok = false;
    const quint64 number = parser.value(option).toULongLong(&ok);
    if (ok && number <= highest) {
        return number;
    }
    std::fprintf(stderr, "--%s: expected a whole number from 0 to %llu, got \"%s\"\n", qPrintable(option),
                 highest, qPrintable(parser.value(option)));
    return std::nullopt;
}

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
    const QString seedOption = "seed"_s;
    const QString stepsOption = "steps"_s;
    const QString aloudOption = "aloud"_s;
    parser.addHelpOption();
    parser.addOption({seedOption, "Repeats the run of this seed; a fresh one by default."_s, "number"_s,
                      QString::number(QRandomGenerator::global()->generate())});
    parser.addOption({stepsOption, "How many steps the run has."_s, "number"_s, "2000"_s});
    parser.addOption({aloudOption, "Prints each action as it happens."_s});
    parser.process(application);
    if (!parser.positionalArguments().isEmpty()) {
        std::fprintf(stderr, "unexpected argument \"%s\"\n",
                     qPrintable(parser.positionalArguments().constFirst()));
        return c_usageError;
    }
    const auto seed = wholeNumber(parser, seedOption, std::numeric_limits<quint64>::max());
    const auto steps = wholeNumber(parser, stepsOption, std::numeric_limits<int>::max());
    if (!seed || !steps) {
        return c_usageError;
    }

    std::printf("seed %llu: ", *seed);
    std::fflush(stdout);
    const int count = static_cast<int>(*steps);
    Journal journal(*seed, count, parser.isSet(aloudOption), &scheduler);
    World world(*seed, &journal, &scheduler);
    for (int step = 1; step <= count; ++step) {
        journal.beginStep(step);
        world.step();
    }
    world.finish();
    printFigures(count, world);
    return 0;
}
