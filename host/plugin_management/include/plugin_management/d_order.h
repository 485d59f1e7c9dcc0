#pragma once

#include <plugin_management/d_device.h>
#include <plugin_management/i_command.h>

#include <memory>

class DAbstractCommand;
class DTool;

/// One run of one command of a tool. It ends exactly once, with success or with a reason.
///
/// A listening order (a request of its command recurs) runs until it is stopped. Any other order ends with
/// success when every declared result has been updated and no request is pending. It fails when it can no
/// longer be completed: no request is pending, no timer of the command runs, and a result is missing.
///
/// The order of a stop name stops the latest running order of a command that has this stop name, among those
/// that were given each of its own arguments with the same value. It ends with success when there was one.
class PLUGIN_MANAGEMENT_EXPORT DOrder : public DObject, private DDeviceClient
{
    Q_OBJECT
    Q_DISABLE_COPY(DOrder)

public:
    enum class State
    {
        Waiting,
        Running,
        Finished
    };
    Q_ENUM(State)

    /// Prepares the command called command of tool, or the stop name of one, with these arguments; nothing
    /// runs before start().
    DOrder(DTool* tool, const QString& command, const QVariantMap& arguments, QObject* parent = nullptr);
    /// A running order is stopped silently: nothing is emitted.
    ~DOrder() override;

    /// Process-wide number of the order, from 1.
    quint64 id() const;
    QString commandName() const;
    State state() const;
    /// The tool whose command runs; null when it is gone.
    DTool* tool() const;
    /// True while a request of the command recurs.
    bool isListening() const;
    /// True when the order has ended with success.
    bool isSuccessful() const;
    /// Why the order failed; empty while it runs and after success.
    QString reason() const;
    /// The declared results with their present values.
    QVariantMap results() const;
    /// Number of replies that a listening command has rejected.
    int rejectedReplies() const;

    /// Starts the order. It may end, and emit finished, before this returns. Does nothing the second time.
    void start();
    /// Stops the order: with success while it listens, else it fails as stopped.
    void stop();

Q_SIGNALS:
    /// The declared result name has the new value.
    void resultUpdated(const QString& name, const QVariant& value);
    /// A listening order reports an event.
    void eventReceived(const QVariantMap& event);
    /// The order has ended; its last signal.
    void finished(bool success, const QString& reason);

private:
    friend class DAbstractCommand;
    friend class DTool;
    struct Private;

    // What the order's command asks of it.
    quint64 addInstruction(const QString& target, const QString& instruction, const QVariantMap& arguments,
                           int timeoutMs, const ICommand::ReplyDelegate& onReply);
    void stopInstruction(quint64 id);
    bool callDelegate(quint64 id, const QVariantMap& reply);
    bool updateResult(const QString& name, const QVariant& value);
    void passOnReply(const QVariantMap& reply);
    void commandHasFinished(DAbstractCommand& command, bool ok);

    void requestReplied(quint64 id, const QVariantMap& reply) override;
    void requestFailed(quint64 id, const QString& reason) override;

    bool isStoppedBy(const QString& stopName, const QVariantMap& arguments) const;
    void stopAnother();
    bool makeCommand();
    void execute();
    void failLater(quint64 id, const QString& reason);
    void storeResult(const QString& name, const QVariant& value);
    void checkLater();
    void endWhenComplete();
    bool commandTimes();
    void end(bool success, const QString& reason);
    void toolIsClosing();
    void detach();

    std::shared_ptr<Private> d;
};
