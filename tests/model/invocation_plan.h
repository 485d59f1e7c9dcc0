#pragma once

#include <QVariant>
#include <QVector>

class RandomSource;

/// A random order: a command and its arguments, and what it is to do when everything goes well.
struct InvocationPlan
{
    enum class Deed
    {
        RefusedByHost,    ///< no command is made
        RefusedByCommand, ///< commandExecute answers false
        SendsNothing,
        ReportsAtOnce,
        Asks,      ///< sends its requests at once, and has reported with the first reply that it accepts
        AsksTwice, ///< asks again when the first reply has come, and has reported with the second
        Pulses,    ///< asks again when its time is over, and has reported then
        Listens,
        Stops ///< another order, by its stop name
    };
    /// What a reply must hold to be accepted.
    enum class Wants
    {
        Anything,
        Value,
        OneReading,
        ReadingOfAnyKind
    };

    QString command;
    QVariantMap arguments;
    QVariantMap taken; ///< the arguments as the command gets them
    Deed deed = Deed::RefusedByHost;
    QString refusal; ///< part of the host's message
    Wants wants = Wants::Anything;
    int errorReports = 0; ///< of commandExecute
    int pulseMs = 0;
    QVector<int> timeoutsMs; ///< of the requests that commandExecute sends
};

/// Draws an invocation of one of the plugin's six commands, of "survey", of a stop name, or of none.
InvocationPlan drawInvocation(RandomSource& random);

/// The stop name of a command; empty for one that has none.
QString stopNameOf(const QString& command);
/// True for the commands that only ask.
bool asks(const QString& command);

/// The channels of every tool, as its configuration holds them.
QVariantList toolChannels();
