#pragma once

#include <plugin_management/fast_delegate.h>

#include <QMap>
#include <QSharedPointer>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector>

class DAbstractCommand;
class ICommand;
class QObject;

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
