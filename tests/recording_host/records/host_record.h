#pragma once

#include <QChar>
#include <QString>
#include <QStringList>
#include <QVector>

#include <functional>

/// What one host does and another does not.
enum class HostHabit
{
    KeepsParents,        ///< leaves a working instance a child of the prototype's parent
    RefusesAtRandom,     ///< refuses every second treatment or so
    InitialisesTooEarly, ///< tells a backend once only that it is initialised, and that unbound
    ConvertsValues       ///< gives a command its values in their declared types, not as they came
};

/// True for the one habit that the environment variable RECORDING_HOST names: "keeps_parents",
/// "refuses_at_random", "initialises_too_early" or "converts_values". Without the variable the host has none.
/// Another name is fatal.
Q_DECL_EXPORT bool hostHas(HostHabit habit);

/// What the plugin asked of the host as a whole, and what the host answers.
struct HostRecord
{
    struct VersionText
    {
        QString text;
        bool asksForSuccess;
        QChar separator;
    };

    /// Answers.
    QString date = QStringLiteral("the present date");
    unsigned long long version = 0x1234;
    /// Called with each call of any object before it is carried out; it may throw.
    std::function<void(const QString& call)> onCall;

    /// Calls of all objects, in their order.
    QStringList calls;
    QVector<VersionText> versionTexts;
};

/// The record of this process.
Q_DECL_EXPORT HostRecord& hostRecord();
/// Starts a new record with its first answers.
Q_DECL_EXPORT void resetHostRecord();
/// Adds a call to the record.
Q_DECL_EXPORT void noteCall(const QString& call);
