#include <plugin_management/d_order.h>

#include <plugin_management/d_abstract_command.h>
#include <plugin_management/d_tool.h>

#include <QCoreApplication>
#include <QPointer>
#include <QTimer>

#include <algorithm>
#include <map>
#include <memory>
#include <utility>
#include <vector>

namespace {

quint64 nextOrderId()
{
    static quint64 last = 0;
    return ++last;
}

quint64 nextInstructionId()
{
    static quint64 last = 0;
    return ++last;
}

} // namespace

struct DOrder::Private
{
    struct Instruction
    {
        ICommand::ReplyDelegate onReply;
        bool recurring;
    };

    const quint64 id = nextOrderId();
    QPointer<DTool> tool;
    QString commandName;
    QVariantMap arguments;
    State state = State::Waiting;
    bool destroyed = false;
    bool ending = false;
    bool successful = false;
    bool hasSent = false;
    bool hasUpdated = false;
    bool checkPosted = false;
    int commandDepth = 0;
    int rejectedReplies = 0;
    QString reason;
    QSharedPointer<ICommand> command;
    std::map<quint64, Instruction> instructions;
    int recurringInstructions = 0;
    QVariantMap results;
    std::vector<QString> missingResults;

    /// A destroyed order runs no more.
    bool isRunning() const { return state == State::Running && !ending; }
    bool removeInstruction(quint64 instruction);
};

/// Answers whether it was pending.
bool DOrder::Private::removeInstruction(quint64 instruction)
{
    const auto found = instructions.find(instruction);
    if (found == instructions.end()) {
        return false;
    }
    recurringInstructions -= found->second.recurring ? 1 : 0;
    instructions.erase(found);
    return true;
}

namespace {

/// Marks that code of the command is on the stack. The command is then not destroyed, only let go, and the
/// order's state outlives the order itself, which a listener may destroy meanwhile.
template <typename Private>
class CommandCode
{
public:
    explicit CommandCode(const std::shared_ptr<Private>& order)
        : m_order(order)
        , m_command(order->command)
    {
        ++m_order->commandDepth;
    }
    /// A command that was let go meanwhile may itself have called the order, from a timer say: it lives until
    /// control is back in the event loop.
    ~CommandCode()
    {
        --m_order->commandDepth;
        if (m_order->commandDepth == 0 && m_order->command.isNull()) {
            QMetaObject::invokeMethod(
                QCoreApplication::instance(), [keptAlive = m_command] {}, Qt::QueuedConnection);
        }
    }
    Q_DISABLE_COPY(CommandCode)

    bool isOutermost() const { return m_order->commandDepth == 1; }

private:
    const std::shared_ptr<Private> m_order;
    const QSharedPointer<ICommand> m_command;
};

} // namespace

DOrder::DOrder(DTool* tool, const QString& command, const QVariantMap& arguments, QObject* parent)
    : DObject(command, parent)
    , d(std::make_shared<Private>())
{
    d->tool = tool;
    d->commandName = command;
    d->arguments = arguments;
}

DOrder::~DOrder()
{
    blockSignals(true);
    if (d->state == State::Running) {
        end(false, QString());
        detach();
    }
    d->destroyed = true;
}

quint64 DOrder::id() const
{
    return d->id;
}

QString DOrder::commandName() const
{
    return d->commandName;
}

DOrder::State DOrder::state() const
{
    return d->state;
}

DTool* DOrder::tool() const
{
    return d->tool;
}

bool DOrder::isListening() const
{
    return d->recurringInstructions > 0;
}

bool DOrder::isSuccessful() const
{
    return d->successful;
}

QString DOrder::reason() const
{
    return d->reason;
}

QVariantMap DOrder::results() const
{
    return d->results;
}

int DOrder::rejectedReplies() const
{
    return d->rejectedReplies;
}

void DOrder::start()
{
    if (d->state != State::Waiting) {
        return;
    }
    d->state = State::Running;
    const QString refusal = d->tool.isNull() ? QStringLiteral("the tool was closed")
                                             : d->tool->checkInvocation(d->commandName, &d->arguments);
    if (!refusal.isEmpty()) {
        end(false, refusal);
    } else if (!d->tool->hasCommand(d->commandName)) {
        stopAnother();
    } else if (!makeCommand()) {
        end(false, QStringLiteral("the plugin made no command \"%1\"").arg(d->commandName));
    } else {
        execute();
    }
}

void DOrder::execute()
{
    const std::shared_ptr<Private> order = d;
    bool accepted = false;
    {
        const CommandCode frame(d);
        accepted = d->command->commandExecute();
    }
    if (!order->isRunning()) {
        return;
    }
    if (!accepted) {
        end(false, QStringLiteral("the command refused to run"));
    } else if (!d->hasSent && !d->hasUpdated) {
        end(false, QStringLiteral("the command sent no device request"));
    } else {
        endWhenComplete();
    }
}

void DOrder::stop()
{
    if (d->state == State::Waiting) {
        d->state = State::Running;
    }
    if (isListening()) {
        end(true, QString());
    } else {
        end(false, QStringLiteral("stopped before it was complete"));
    }
}

bool DOrder::isStoppedBy(const QString& stopName, const QVariantMap& arguments) const
{
    if (!d->isRunning() || d->command->stopCommandName() != stopName) {
        return false;
    }
    for (auto wanted = arguments.cbegin(); wanted != arguments.cend(); ++wanted) {
        if (!d->arguments.contains(wanted.key()) || d->arguments.value(wanted.key()) != *wanted) {
            return false;
        }
    }
    return true;
}

/// The end of the other may destroy this order.
void DOrder::stopAnother()
{
    DOrder* running = d->tool->orderToStop(d->commandName, d->arguments);
    if (running == nullptr) {
        end(false, d->arguments.isEmpty() ? QStringLiteral("no running order to stop")
                                          : QStringLiteral("no running order with these arguments to stop"));
        return;
    }
    const std::shared_ptr<Private> order = d;
    running->stop();
    if (order->isRunning()) {
        end(true, QString());
    }
}

/// Makes and links the working instance. Answers whether the plugin made one.
bool DOrder::makeCommand()
{
    d->command = d->tool->makeCommand(d->commandName, d->arguments);
    if (d->command.isNull()) {
        return false;
    }
    d->tool->orderStarted(this);
    if (auto* object = dynamic_cast<DAbstractCommand*>(d->command.data())) {
        object->setParent(nullptr); // the shared pointer is its only owner
        for (const DDeclaration& result : object->declaration().results) {
            d->results.insert(result.name, result.defaultValue);
            d->missingResults.push_back(result.name);
        }
    }
    d->command->linkWithItsOrder(this);
    return true;
}

quint64 DOrder::addInstruction(const QString& target, const QString& instruction,
                               const QVariantMap& arguments, int timeoutMs,
                               const ICommand::ReplyDelegate& onReply)
{
    if (!d->isRunning()) {
        return 0;
    }
    const CommandCode frame(d);
    const quint64 id = nextInstructionId();
    const bool recurring = DDevice::isRecurring(instruction);
    d->instructions.emplace(id, Private::Instruction{onReply, recurring});
    d->recurringInstructions += recurring ? 1 : 0;
    d->hasSent = true;
    DDevice* device = d->tool->device();
    if (target != QLatin1String("device")) {
        failLater(id, QStringLiteral("unknown target \"%1\" of \"%2\"").arg(target, instruction));
    } else if (device == nullptr) {
        failLater(id, QStringLiteral("the tool has no device"));
    } else {
        device->send(id, instruction, arguments, timeoutMs, this);
    }
    return id;
}

void DOrder::failLater(quint64 id, const QString& reason)
{
    QMetaObject::invokeMethod(
        this, [this, id, reason] { requestFailed(id, reason); }, Qt::QueuedConnection);
}

void DOrder::stopInstruction(quint64 id)
{
    if (d->removeInstruction(id)) {
        checkLater();
        if (!d->tool.isNull() && d->tool->device() != nullptr) {
            d->tool->device()->cancel(id);
        }
    }
}

bool DOrder::callDelegate(quint64 id, const QVariantMap& reply)
{
    const auto instruction = d->instructions.find(id);
    if (instruction == d->instructions.end()) {
        return false;
    }
    const ICommand::ReplyDelegate onReply = instruction->second.onReply;
    return onReply.empty() || onReply(id, reply);
}

bool DOrder::updateResult(const QString& name, const QVariant& value)
{
    if (!d->isRunning() || !d->results.contains(name)) {
        return false;
    }
    const CommandCode frame(d);
    if (frame.isOutermost()) {
        checkLater();
    }
    const std::shared_ptr<Private> order = d;
    const bool listening = isListening();
    storeResult(name, value);
    if (listening && order->isRunning()) {
        Q_EMIT eventReceived({{name, value}});
    }
    return true;
}

void DOrder::passOnReply(const QVariantMap& reply)
{
    if (!d->isRunning()) {
        return;
    }
    const CommandCode frame(d);
    if (frame.isOutermost()) {
        checkLater();
    }
    const std::shared_ptr<Private> order = d;
    for (auto item = reply.cbegin(); item != reply.cend(); ++item) {
        if (d->results.contains(item.key())) {
            storeResult(item.key(), item.value());
        }
        if (!order->isRunning()) {
            return;
        }
    }
    Q_EMIT eventReceived(reply);
}

void DOrder::storeResult(const QString& name, const QVariant& value)
{
    d->hasUpdated = true;
    d->results.insert(name, value);
    auto& missing = d->missingResults;
    missing.erase(std::remove(missing.begin(), missing.end(), name), missing.end());
    Q_EMIT resultUpdated(name, value);
}

void DOrder::commandHasFinished(DAbstractCommand& command, bool ok)
{
    const CommandCode frame(d);
    if (d->isRunning()) {
        const QString reason = ok ? QString() : QStringLiteral("the command failed");
        QMetaObject::invokeMethod(
            this, [this, ok, reason] { end(ok, reason); }, Qt::QueuedConnection);
    }
    Q_EMIT command.sigCommandFinished(ok);
}

void DOrder::requestReplied(quint64 id, const QVariantMap& reply)
{
    if (!d->isRunning()) {
        return; // its command finishes, and runs an event loop
    }
    const std::shared_ptr<Private> order = d;
    const bool recurring = d->instructions.at(id).recurring;
    bool accepted = false;
    {
        const CommandCode frame(d);
        accepted = d->command->setReply(id, reply);
    }
    if (!order->isRunning()) {
        return;
    }
    if (!recurring) {
        d->removeInstruction(id);
    }
    if (accepted) {
        endWhenComplete();
    } else if (recurring || isListening()) {
        ++d->rejectedReplies;
    } else {
        end(false, QStringLiteral("reply rejected"));
    }
}

void DOrder::requestFailed(quint64 id, const QString& reason)
{
    if (d->removeInstruction(id)) {
        end(false, reason);
    }
}

/// For changes that the command makes on its own, from a timer say: it is on the stack then.
void DOrder::checkLater()
{
    if (!d->checkPosted) {
        d->checkPosted = true;
        QMetaObject::invokeMethod(
            this,
            [this] {
                d->checkPosted = false;
                endWhenComplete();
            },
            Qt::QueuedConnection);
    }
}

void DOrder::endWhenComplete()
{
    if (!d->isRunning() || !d->instructions.empty()) {
        return;
    }
    if (d->missingResults.empty()) {
        end(true, QString());
    } else if (!commandTimes()) {
        QStringList missing(d->missingResults.cbegin(), d->missingResults.cend());
        missing.sort();
        end(false, QStringLiteral("the command waits for nothing more, without having reported %1")
                       .arg(missing.join(QStringLiteral(", "))));
    }
}

/// True while a timer of the command runs, so that it may go on without a reply. Each such timer leads to
/// another check, since the last one to fire may bring nothing.
bool DOrder::commandTimes()
{
    const auto* command = dynamic_cast<const QObject*>(d->command.data());
    const QList<QTimer*> timers = command != nullptr ? command->findChildren<QTimer*>() : QList<QTimer*>();
    bool times = false;
    for (const QTimer* timer : timers) {
        // One whose negative interval was refused calls itself active, but has no number.
        if (timer->timerId() > 0) {
            times = true;
            connect(timer, &QTimer::timeout, this, &DOrder::checkLater, Qt::UniqueConnection);
        }
    }
    return times;
}

void DOrder::end(bool success, const QString& reason)
{
    if (d->ending || d->state != State::Running) {
        return;
    }
    d->ending = true;
    const std::shared_ptr<Private> order = d;
    if (!d->command.isNull()) {
        const CommandCode frame(d);
        bool ok = success;
        d->command->finishTheCommand(ok);
    }
    if (order->destroyed) {
        return;
    }
    detach();
    if (order->destroyed) {
        return;
    }
    d->state = State::Finished;
    d->successful = success;
    d->reason = reason;
    Q_EMIT finished(success, reason);
}

/// An order in the middle of its end keeps its outcome; only its ties are cut.
void DOrder::toolIsClosing()
{
    if (d->ending) {
        detach();
    } else {
        end(false, QStringLiteral("the tool was closed"));
    }
}

/// Cuts every tie to the command, the device and the tool. A device that hears of its cancelled requests may
/// close the tool and destroy the order.
void DOrder::detach()
{
    const std::shared_ptr<Private> order = d;
    const QPointer<DDevice> device(order->tool.isNull() ? nullptr : order->tool->device());
    if (!order->tool.isNull()) {
        order->tool->orderEnded(this);
    }
    while (!order->instructions.empty()) {
        const quint64 id = order->instructions.begin()->first;
        order->removeInstruction(id);
        if (!device.isNull()) {
            device->cancel(id);
        }
    }
    const QSharedPointer<ICommand> command = std::exchange(order->command, {});
    if (!command.isNull()) {
        command->linkWithItsOrder(nullptr);
    }
}
