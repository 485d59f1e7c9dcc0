#pragma once

#include <plugin_management/fast_delegate.h>

#include <QMap>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector>

class DAbstractCommand;

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
