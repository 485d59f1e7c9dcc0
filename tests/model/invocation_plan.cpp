#include "invocation_plan.h"

#include "channel_entry.h"
#include "literals.h"
#include "random_source.h"

#include <limits>

using Deed = InvocationPlan::Deed;
using Wants = InvocationPlan::Wants;

namespace {

constexpr int c_replyTimeoutMs = 4000;
constexpr int c_lowest = std::numeric_limits<int>::min();
constexpr int c_highest = std::numeric_limits<int>::max();

/// What the argument of a parameter may be; an invalid one stands for none.
struct Choices
{
    QMetaType::Type type;
    int percentOfFirst; ///< of the cases, in which it is not left to chance
    QVariantList fitting;
    QVariantList others;
};

struct Channel
{
    QString id;
    QString direction;
    QString link;
};

const QVector<Channel>& channels()
{
    static const QVector<Channel> all = {{"OUT0"_s, "out"_s, "line0"_s},
                                         {"OUT1"_s, "out"_s, "line1"_s},
                                         {"IN"_s, "in"_s, "line2"_s},
                                         {"LOOSE"_s, "out"_s, QString()}};
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

const QMap<QString, Choices>& choicesOfParameters()
{
    constexpr auto text = QMetaType::QString;
    constexpr auto number = QMetaType::Int;
    const QVariant none;
    static const QMap<QString, Choices> all = {
        {"channel"_s,
         {text,
          50,
          {"OUT0"_s, "OUT0"_s, "OUT0"_s, "OUT1"_s, "OUT1"_s, "IN"_s, "LOOSE"_s, "100 %1"_s, ""_s, 7, none},
          {QVariant(QVariantList{1})}}},
        {"value"_s, {number, 90, {none, 1, 0, 65535, true, "1"_s}, {65536, -1, "high"_s, 1.5}}},
        {"state"_s,
         {text, 0, {"ON"_s, "OFF"_s, "BLINK"_s, "PULSE"_s, "PULSE"_s, "PULSE"_s, "pulse"_s, ""_s, none}, {}}},
        {"duration"_s,
         {number, 0, {none, 0, 0, 1, 50, 3999, 4000, 9000, -1, c_lowest, c_highest}, {"soon"_s, 3e9}}},
        {"dutyCycle"_s, {number, 70, {none, 0, 50, 101, c_lowest, c_highest}, {0.5}}},
        {"edge"_s, {text, 0, {none, "HL"_s, "LL"_s, "RE"_s, "FE"_s, "re"_s, 1}, {QVariant(QVariantList())}}}};
    return all;
}

/// Draws the argument of a parameter; answers whether it fits.
bool add(InvocationPlan& plan, const QString& parameter, RandomSource& random)
{
    const Choices& choices = *choicesOfParameters().constFind(parameter);
    const int fitting = choices.fitting.size();
    const int drawn =
        random.chance(choices.percentOfFirst) ? 0 : random.below(fitting + choices.others.size());
    const QVariant value = (choices.fitting + choices.others).at(drawn);
    if (value.isValid()) {
        QVariant taken = value;
        taken.convert(choices.type);
        plan.arguments.insert(parameter, value);
        plan.taken.insert(parameter, taken);
    }
    return drawn < fitting;
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
    bool fits = true;
    for (const QString& parameter : {"value"_s, "state"_s, "duration"_s, "dutyCycle"_s}) {
        fits = add(plan, parameter, random) && fits;
    }
    const QString state = plan.arguments.value("state"_s).toString();
    if (!fits) {
        refuse(plan, "parameter \""_s);
    } else if (channelNamed(plan.arguments.value("channel"_s).toString()).direction != "out"_s) {
        refuseInCommand(plan);
    } else if (state == "PULSE"_s) {
        ask(plan, Deed::Pulses, Wants::Anything);
        plan.pulseMs = plan.arguments.value("duration"_s, 1000).toInt();
    } else if (state == "ON"_s || state == "OFF"_s || state == "BLINK"_s) {
        ask(plan, Deed::Asks, Wants::Anything);
    } else {
        plan.deed = Deed::SendsNothing;
    }
}

void planGetValue(InvocationPlan& plan)
{
    if (channelNamed(plan.arguments.value("channel"_s).toString()).link.isEmpty()) {
        plan.deed = Deed::SendsNothing;
        plan.errorReports = 1;
    } else {
        ask(plan, Deed::Asks, Wants::Value);
    }
}

void planSwitchValue(InvocationPlan& plan)
{
    if (channelNamed(plan.arguments.value("channel"_s).toString()).direction != "out"_s) {
        refuseInCommand(plan);
    } else {
        ask(plan, Deed::AsksTwice, Wants::Value);
    }
}

void planStartListening(InvocationPlan& plan, RandomSource& random)
{
    const bool fits = add(plan, "edge"_s, random);
    const QString edge = plan.arguments.value("edge"_s).toString();
    const bool known = edge == "HL"_s || edge == "LL"_s || edge == "RE"_s || edge == "FE"_s;
    if (!fits) {
        refuse(plan, "parameter \"edge\""_s);
    } else if (plan.arguments.value("channel"_s).toString().isEmpty()) {
        refuseInCommand(plan);
    } else {
        ask(plan, Deed::Listens, known ? Wants::ReadingOfAnyKind : Wants::OneReading);
    }
}

/// A stop name takes the parameters of the commands that it stops.
void planStop(InvocationPlan& plan, RandomSource& random)
{
    const bool listening = plan.command == stopNameOf("listenToAll"_s);
    bool fits = random.chance(40) || add(plan, "channel"_s, random);
    if (random.chance(20)) {
        fits = add(plan, listening ? "edge"_s : "state"_s, random) && fits;
    }
    plan.deed = Deed::Stops;
    if (!fits) {
        refuse(plan, "parameter \""_s);
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
    plan.arguments.insert("timeouts"_s, section);
    plan.deed = section.isEmpty() ? Deed::SendsNothing : Deed::Asks;
}

} // namespace

InvocationPlan drawInvocation(RandomSource& random)
{
    static const QVector<QString> commands = {
        "setValue"_s,       "setValue"_s,       "switchValue"_s,   "getValue"_s,      "getValue"_s,
        "startListening"_s, "startListening"_s, "listenToAll"_s,   "init"_s,          "survey"_s,
        "survey"_s,         "unheardOf"_s,      "stopListening"_s, "stopTheCommand"_s};
    InvocationPlan plan;
    plan.command = random.of(commands);
    const bool takesChannel = plan.command.endsWith("Value"_s) || plan.command == "startListening"_s;
    const bool channelFits = !takesChannel || add(plan, "channel"_s, random);
    if (plan.command == "setValue"_s) {
        planSetValue(plan, random);
    } else if (plan.command == "switchValue"_s) {
        planSwitchValue(plan);
    } else if (plan.command == "getValue"_s) {
        planGetValue(plan);
    } else if (plan.command == "startListening"_s) {
        planStartListening(plan, random);
    } else if (plan.command == "listenToAll"_s) {
        ask(plan, Deed::Listens, Wants::Value);
    } else if (plan.command == "survey"_s) {
        planSurvey(plan, random);
    } else if (plan.command.startsWith("stop"_s)) {
        planStop(plan, random);
    } else if (plan.command == "init"_s) {
        plan.deed = Deed::ReportsAtOnce;
    } else {
        refuse(plan, "unknown command \"unheardOf\""_s);
        return plan;
    }
    if (!channelFits) {
        refuse(plan, "parameter \""_s);
    }
    if (random.chance(4)) {
        plan.arguments.insert("zone"_s, 1);
        plan.taken.insert("zone"_s, 1);
        if (takesChannel || plan.deed == Deed::Stops) { // a section of the others, which declare no parameter
            refuse(plan, "parameter \""_s);
        }
    }
    if (plan.deed == Deed::RefusedByHost) {
        plan.errorReports = 0;
    }
    return plan;
}

QString stopNameOf(const QString& command)
{
    if (command == "startListening"_s || command == "listenToAll"_s) {
        return "stopListening"_s;
    }
    return command == "setValue"_s ? "stopTheCommand"_s : QString();
}

bool asks(const QString& command)
{
    return command == "getValue"_s || command == "startListening"_s || command == "listenToAll"_s;
}

QVariantList toolChannels()
{
    QVariantList list;
    for (const Channel& channel : channels()) {
        list.append(channelEntry(channel.id, {{"direction"_s, channel.direction}, {"link"_s, channel.link}}));
    }
    return list;
}
