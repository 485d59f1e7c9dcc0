#pragma once

#include <plugin_management/d_abstract_command.h>

#include <QPointer>

#include <functional>
#include <memory>

class ScriptedCommand;

/// What the commands of one name do, and what became of them.
struct CommandScript
{
    QString name = QStringLiteral("work");
    QString stopName;
    QString description = QStringLiteral("Works");
    DDeclarations parameters;
    DDeclarations results;

    /// Called by commandExecute after the base accepted; without one the command accepts and does nothing.
    std::function<bool(ScriptedCommand&)> execute;
    /// Called with each reply; without one every reply is accepted.
    std::function<bool(ScriptedCommand&, quint64, const QVariantMap&)> onReply;
    /// Called by finishTheCommand before the base's work.
    std::function<void(ScriptedCommand&)> onFinish;

    int alive = 0;
    int finishes = 0;
    QVector<bool> outcomes;
    /// The latest instance, prototype or not.
    QPointer<ScriptedCommand> latest;
};

/// A command that follows its script.
class ScriptedCommand : public DAbstractCommand
{
    Q_OBJECT
    Q_DISABLE_COPY(ScriptedCommand)

public:
    ScriptedCommand(const std::shared_ptr<CommandScript>& script, const QVariantMap& parameters,
                    QObject* parent);
    ~ScriptedCommand() override;

    bool commandExecute() override;
    void finishTheCommand(bool& ok) override;
    QSharedPointer<ICommand> createCommand(const QVariantMap& parameters) override;

    /// Sends a request to the device; its replies go to the script.
    quint64 send(const QString& instruction, const QVariantMap& arguments = {}, int timeoutMs = 0);
    /// The same to any target.
    quint64 sendTo(const QString& target, const QString& instruction);

private:
    bool onReply(quint64 id, const QVariantMap& reply);

    std::shared_ptr<CommandScript> m_script;
};
