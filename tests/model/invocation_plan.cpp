#include "invocation_plan.h"

#include "random_source.h"
#include "text.h"

#include <limits>

using Deed = InvocationPlan::Deed;
using Wants = InvocationPlan::Wants;

namespace {

constexpr int c_replyTimeoutMs = 4000;
constexpr int c_lowest = std::numeric_limits<int>::min();
constexpr int c_highest = std::numeric_limits<int>::max();

/// An argument; an invalid one stands for none.
struct Choice
{
    QVariant value;
    bool fits = true; ///< the parameter's type
};

struct Channel
{
    QString id;
    QString direction;
    QString link;
};

const QVector<Channel>& channels()
{
    static const QVector<Channel> all = {{"OUT0"_q, "out"_q, "line0"_q},
                                         {"OUT1"_q, "out"_q, "line1"_q},
                                         {"IN"_q, "in"_q, "line2"_q},
                                         {"LOOSE"_q, "out"_q, QString()}};
    return all;
}

Channel channelNamed(const QString& id)
{
    for (const Channel& channel : channels()) {
        if (channel.id == id) {
            return channel;
        }
    }
    return {};
}

/// Adds the argument of a parameter; answers whether it fits.
bool add(InvocationPlan& plan, const QString& parameter, const Choice& choice)
{
    if (choice.value.isValid()) {
        plan.arguments.insert(parameter, choice.value);
    }
    return choice.fits;
}

Choice channelChoice(RandomSource& random)
{
    static const QVector<Choice> choices = {
        {"OUT0"_q},  {"OUT0"_q},   {"OUT0"_q},      {"OUT1"_q}, {"OUT1"_q}, {"IN"_q},
        {"LOOSE"_q}, {"100 %1"_q}, {QString(""_q)}, {7},        {},         {QVariantList{1}, false}};
    return random.chance(50) ? choices.first() : random.of(choices);
}

Choice valueChoice(RandomSource& random)
{
    static const QVector<Choice> choices = {
        {}, {1}, {0}, {65535}, {true}, {"1"_q}, {65536, false}, {-1, false}, {"high"_q, false}, {1.5, false}};
    return random.chance(90) ? choices.first() : random.of(choices);
}

Choice stateChoice(RandomSource& random)
{
    static const QVector<Choice> choices = {{"ON"_q},    {"OFF"_q},       {"BLINK"_q},
                                            {"PULSE"_q}, {"PULSE"_q},     {"PULSE"_q},
                                            {"pulse"_q}, {QString(""_q)}, {}};
    return random.of(choices);
}

Choice durationChoice(RandomSource& random)
{
    static const QVector<Choice> choices = {{},          {0},        {0},         {1},
                                            {50},        {3999},     {4000},      {9000},
                                            {-1},        {c_lowest}, {c_highest}, {"soon"_q, false},
                                            {3e9, false}};
    return random.of(choices);
}

Choice dutyCycleChoice(RandomSource& random)
{
    static const QVector<Choice> choices = {{}, {0}, {50}, {101}, {c_lowest}, {c_highest}, {0.5, false}};
    return random.chance(70) ? choices.first() : random.of(choices);
}

void refuse(InvocationPlan& plan, const QString& text)
{
    plan.deed = Deed::RefusedByHost;
    plan.refusal = text;
}

void refuseInCommand(InvocationPlan& plan)
{
    plan.deed = Deed::RefusedByCommand;
    plan.errorReports = 1;
}

void ask(InvocationPlan& plan, Deed deed, Wants wants)
{
    plan.deed = deed;
    plan.wants = wants;
    plan.timeoutsMs = {c_replyTimeoutMs};
}

void planSetValue(InvocationPlan& plan, RandomSource& random)
{
    bool fits = add(plan, "value"_q, valueChoice(random));
    fits = add(plan, "state"_q, stateChoice(random)) && fits;
    fits = add(plan, "duration"_q, durationChoice(random)) && fits;
    fits = add(plan, "dutyCycle"_q, dutyCycleChoice(random)) && fits;
    const QString state = plan.arguments.value("state"_q).toString();
    if (!fits) {
        refuse(plan, "parameter \""_q);
    } else if (channelNamed(plan.arguments.value("channel"_q).toString()).direction != "out"_q) {
        refuseInCommand(plan);
    } else if (state == "PULSE"_q) {
        ask(plan, Deed::Pulses, Wants::Anything);
        plan.pulseMs = plan.arguments.value("duration"_q, 1000).toInt();
    } else if (state == "ON"_q || state == "OFF"_q || state == "BLINK"_q) {
        ask(plan, Deed::Asks, Wants::Anything);
    } else {
        plan.deed = Deed::SendsNothing;
    }
}

void planGetValue(InvocationPlan& plan)
{
    if (channelNamed(plan.arguments.value("channel"_q).toString()).link.isEmpty()) {
        plan.deed = Deed::SendsNothing;
        plan.errorReports = 1;
    } else {
        ask(plan, Deed::Asks, Wants::Value);
    }
}

void planSwitchValue(InvocationPlan& plan)
{
    if (channelNamed(plan.arguments.value("channel"_q).toString()).direction != "out"_q) {
        refuseInCommand(plan);
    } else {
        ask(plan, Deed::AsksTwice, Wants::Value);
    }
}

void planStartListening(InvocationPlan& plan, RandomSource& random)
{
    static const QVector<Choice> edges = {{},       {"HL"_q}, {"LL"_q}, {"RE"_q},
                                          {"FE"_q}, {"re"_q}, {1},      {QVariantList{}, false}};
    const bool fits = add(plan, "edge"_q, random.of(edges));
    const QString edge = plan.arguments.value("edge"_q).toString();
    const bool known = edge == "HL"_q || edge == "LL"_q || edge == "RE"_q || edge == "FE"_q;
    if (!fits) {
        refuse(plan, "parameter \"edge\""_q);
    } else if (plan.arguments.value("channel"_q).toString().isEmpty()) {
        refuseInCommand(plan);
    } else {
        ask(plan, Deed::Listens, known ? Wants::ReadingOfAnyKind : Wants::OneReading);
    }
}

void planSurvey(InvocationPlan& plan, RandomSource& random)
{
    static const QVector<int> timeouts = {0, -1, 1, 2, 50, 50, 51, 4000, c_highest};
    QVariantList section;
    for (int request = random.below(5); request > 0; --request) {
        plan.timeoutsMs.append(random.of(timeouts));
        section.append(plan.timeoutsMs.constLast());
    }
    plan.arguments.insert("timeouts"_q, section);
    plan.deed = section.isEmpty() ? Deed::SendsNothing : Deed::Asks;
}

} // namespace

InvocationPlan drawInvocation(RandomSource& random)
{
    static const QVector<QString> commands = {
        "setValue"_q,       "setValue"_q,    "switchValue"_q, "getValue"_q, "getValue"_q, "startListening"_q,
        "startListening"_q, "listenToAll"_q, "init"_q,        "survey"_q,   "survey"_q,   "unheardOf"_q};
    InvocationPlan plan;
    plan.command = random.of(commands);
    const bool takesChannel = plan.command.endsWith("Value"_q) || plan.command == "startListening"_q;
    const bool channelFits = !takesChannel || add(plan, "channel"_q, channelChoice(random));
    if (plan.command == "setValue"_q) {
        planSetValue(plan, random);
    } else if (plan.command == "switchValue"_q) {
        planSwitchValue(plan);
    } else if (plan.command == "getValue"_q) {
        planGetValue(plan);
    } else if (plan.command == "startListening"_q) {
        planStartListening(plan, random);
    } else if (plan.command == "listenToAll"_q) {
        ask(plan, Deed::Listens, Wants::Value);
    } else if (plan.command == "survey"_q) {
        planSurvey(plan, random);
    } else if (plan.command == "init"_q) {
        plan.deed = Deed::ReportsAtOnce;
    } else {
        refuse(plan, "unknown command \"unheardOf\""_q);
        return plan;
    }
    if (!channelFits) {
        refuse(plan, "parameter \""_q);
    }
    if (random.chance(4)) {
        plan.arguments.insert("zone"_q, 1);
        if (takesChannel) { // a section of the others, which declare no parameter
            refuse(plan, "parameter \""_q);
        }
    }
    if (plan.deed == Deed::RefusedByHost) {
        plan.errorReports = 0;
    }
    return plan;
}

QVariantList toolChannels()
{
    const auto item = [](const QString& id, const QString& value) {
        return QVariantMap{{"id"_q, id}, {"value"_q, value}};
    };
    QVariantList list;
    for (const Channel& channel : channels()) {
        list.append(QVariantMap{
            {"id"_q, channel.id},
            {"value"_q, QVariantList{item("direction"_q, channel.direction), item("link"_q, channel.link)}}});
    }
    return list;
}
