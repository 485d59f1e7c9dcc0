#pragma once

#include <plugin_management/d_device.h>
#include <plugin_management/i_command.h>

class DAbstractCommand;
class DTool;

/// One run of one command of a tool. It ends exactly once, with success or with a reason.
///
/// A listening order (a request of its command recurs, as the device says) runs until it is stopped. Any
/// other order ends with success when every declared result has been updated and no request is pending. It
/// fails when it can no longer be completed: no request is pending, no timer of the command runs, and a
/// result is missing.
///
/// The order of a stop name stops the latest running order of a command that has this stop name, among those
/// that were given each of its own arguments with the same value. It ends with success when there was one.
class PLUGIN_MANAGEMENT_EXPORT DOrder : public QObject, private DDeviceClient
{
    Q_OBJECT
    Q_DISABLE_COPY(DOrder)

public:
    enum class State
    {
        Waiting,
        Running,
        Finished,
        Count
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
    /// The arguments that it was given; once it has started, as their declared types.
    QVariantMap arguments() const;
    State state() const;
    /// The tool whose command runs; null when it is gone.
    DTool* tool() const;
    /// True while a request of the command recurs.
    bool isListening() const;
    /// True when the order has ended with success.
    bool isSuccessful() const;
    /// Why the order failed; no failure while it runs and after success.
    const DFailure& failure() const;
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
    /// A listening order reports an event, true since timeUs on the steady clock.
    void eventReceived(const QVariantMap& event, qint64 timeUs);
    /// So many events of a listening order came too fast and were left out.
    void eventsLost(quint64 count);
    /// The order has ended; its last signal.
    void finished(bool success);

private:
    friend class DAbstractCommand;
    friend class DTool;
    struct Private;

    // What the order's command asks of it.
    quint64 addInstruction(const QString& target, const QString& instruction, const QVariantMap& arguments,
                           int timeoutMs);
    void stopInstruction(quint64 id);
    bool updateResult(const QString& name, const QVariant& value);
    void passOnReply(const QVariantMap& reply);
    void commandHasFinished(DAbstractCommand& command, bool ok);

    void requestReplied(quint64 id, const QVariantMap& reply, qint64 timeUs) override;
    void repliesLost(quint64 id, quint64 count) override;
    void requestFailed(quint64 id, const DFailure& failure) override;

    bool isStoppedBy(const QString& stopName, const QVariantMap& arguments) const;
    void stopAnother();
    void makeCommand(DAbstractCommand* prototype);
    void execute();
    void failLater(quint64 id, const DFailure& failure);
    bool removeInstruction(quint64 id);
    void storeResult(int number, const QVariant& value);
    void checkLater();
    void endWhenComplete();
    bool commandTimes();
    void end(DFailure failure);
    void toolIsClosing();
    void detach();

    Private* const d; ///< outlives the order while a call of it is on the stack
};
