#pragma once

#include <plugin_management/fast_delegate.h>
#include <plugin_management/i_plugin.h>

#include <QMap>
#include <QSharedPointer>
#include <QStringList>
#include <QVariant>
#include <QVector>

#include <functional>

class DAbstractCommand;
class DAbstractPlugin;
class DAbstractPluginBackend;
class ICommand;
struct DBoundTool;

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

/// What one command asked of its base, and what the base answers.
struct CommandRecord
{
    struct Declaration
    {
        QString name;
        QString typeTag;
        QString description;
        QVariant defaultValue;
    };
    struct Instruction
    {
        quint64 id;
        QString target;
        QString name;
        QVariantMap arguments;
        int timeoutMs;
        fastdelegate::FastDelegate2<quint64, const QVariantMap&, bool> onReply;
    };
    struct Channel
    {
        QString link;
        QVariantMap items;
    };
    struct Result
    {
        QString name;
        QVariant value;
    };

    /// The command as its class made it.
    QObject* parent = nullptr;
    QString name;
    QString stopName;
    bool isStoppable = false;
    QVariantMap arguments;
    QString description;
    QVector<Declaration> parameters;
    QVector<Declaration> results;

    /// Answers.
    bool executeAnswer = true;
    bool updateAnswer = true;
    quint64 nextInstructionId = 1;
    QMap<QString, Channel> channels;
    QVariantMap sections;

    /// What the command did.
    QStringList calls;
    QVector<Instruction> instructions;
    QVector<quint64> stoppedInstructions;
    QVector<Result> updatedResults;
    QVector<QVariantMap> replies;
    QVector<bool> finishes;
    /// Flags by which commandFinish was called.
    QVector<const bool*> finishFlags;
};

/// The record of command, which lives as long as the command.
Q_DECL_EXPORT CommandRecord& recordOf(const DAbstractCommand& command);
/// Makes the command of an order from prototype, as the host does. It has no parent but the shared pointer,
/// unless the host keeps the parent that its class gave it; then the pointer must go first.
Q_DECL_EXPORT QSharedPointer<ICommand> commandOfAnOrder(DAbstractCommand& prototype,
                                                        const QVariantMap& arguments);

/// What one plugin object asked of its base.
struct PluginRecord
{
    struct Property
    {
        QString name;
        QVariant value;
        bool flag;
    };

    /// Arguments of the construction.
    QUuid pluginUuid;
    QString pluginName;
    IPlugin::Type type;
    unsigned long long version;
    QUuid objectUuid;
    QObject* parent;
    bool flag;

    QVector<Property> properties;
    QVector<DAbstractCommand*> prototypes;
};

/// The record of plugin, which lives as long as the plugin.
Q_DECL_EXPORT PluginRecord& recordOf(const DAbstractPlugin& plugin);

/// What one backend asked of its base, and what the base answers.
struct BackendRecord
{
    struct Treatment
    {
        int id;
        QString name;
        QVariantMap parameters;
    };
    struct Release
    {
        int id;
        QString name;
        bool success;
    };

    QString pluginLib;
    QObject* parent = nullptr;
    bool isInitialised = false;

    /// Answers: so many of the next treatments are refused, whatever the host's habit.
    int refusals = 0;
    bool pending = false;
    bool baseReplyAnswer = false;
    /// Called with each treatment after it was written down.
    std::function<void(const Treatment& treatment)> onTreatment;
    /// Called when the base is destroyed, after all that the backend holds.
    std::function<void()> onDestroyed;

    /// All treatments that the backend asked for, and those of them that were accepted.
    QVector<Treatment> asked;
    QVector<Treatment> accepted;
    /// What reached the base's own implementations.
    QVector<Treatment> baseReplies;
    QVector<Release> baseReleases;
};

/// The record of backend, which lives as long as the backend.
Q_DECL_EXPORT BackendRecord& recordOf(const DAbstractPluginBackend& backend);
/// Binds backend to tool, null for none, and tells it that it is initialised. A host that initialises too
/// early tells it the first time only, before it binds it.
Q_DECL_EXPORT void initialise(DAbstractPluginBackend& backend, DBoundTool* tool);
