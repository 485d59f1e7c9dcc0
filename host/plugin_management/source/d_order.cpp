#include <plugin_management/d_order.h>

#include <plugin_management/d_abstract_command.h>
#include <plugin_management/d_scheduler.h>
#include <plugin_management/d_tool.h>

#include <QCoreApplication>
#include <QPointer>
#include <QTimer>
#include <QVarLengthArray>

#include <algorithm>
#include <list>
#include <memory>
#include <optional>
#include <utility>

namespace {

quint64 nextOrderId()
{
    static quint64 last = 0;
    return ++last;
}

} // namespace

struct DOrder::Private
{
    struct Instruction
    {
        quint64 id;
        bool recurring;
    };
    using Instructions = QVarLengthArray<Instruction, 1>;

    struct Result
    {
        QString name;
        QVariant value;
        bool updated;
    };

    const quint64 id = nextOrderId();
    QPointer<DTool> tool;
    QString commandName;
    QVariantMap arguments;
    State state = State::Waiting;
    bool destroyed = false;
    bool ending = false;
    bool hasSent = false;
    bool hasUpdated = false;
    bool checkPosted = false;
    int keepers = 0;
    int commandDepth = 0;
    int rejectedReplies = 0;
    DFailure failure;
    QSharedPointer<ICommand> command;
    QSharedPointer<ICommand> letGo;   ///< the command, after that, while code of it is on the stack
    DAbstractCommand* base = nullptr; ///< the command; null for one that derives from ICommand alone
    /// Its place among the running orders of the tool.
    std::optional<std::list<DOrder*>::iterator> place;
    Instructions instructions;
    int recurringInstructions = 0;
    /// Since when the reply is true that is being handed to the command.
    std::optional<qint64> replyTimeUs;
    QVarLengthArray<Result, 2> results; ///< the declared ones, in the order of their declaration

    /// A destroyed order runs no more.
    bool isRunning() const { return state == State::Running && !ending; }
    Instructions::iterator instruction(quint64 wanted);
    /// Its number; -1 when no such result is declared.
    int result(const QString& name) const;
    qint64 eventTimeUs() const;
};

DOrder::Private::Instructions::iterator DOrder::Private::instruction(quint64 wanted)
{
    return std::find_if(instructions.begin(), instructions.end(),
                        [wanted](const Instruction& pending) { return pending.id == wanted; });
}

int DOrder::Private::result(const QString& name) const
{
    const auto found = std::find_if(results.cbegin(), results.cend(),
                                    [&name](const Result& result) { return result.name == name; });
    return found != results.cend() ? static_cast<int>(found - results.cbegin()) : -1;
}

/// What a command tells on its own, from a timer say, is true now.
qint64 DOrder::Private::eventTimeUs() const
{
    const DDevice* device = tool.isNull() ? nullptr : tool->device();
    return replyTimeUs.value_or(device != nullptr ? device->scheduler()->now() : 0);
}

namespace {

/// Keeps the state of an order, which a listener may destroy meanwhile.
template <typename Private>
class Kept
{
public:
    explicit Kept(Private* order)
        : m_order(order)
    {
        ++m_order->keepers;
    }
    ~Kept()
    {
        // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDelete): the checker does not count the keepers
        if (--m_order->keepers == 0 && m_order->destroyed) {
            delete m_order;
        }
    }
    Q_DISABLE_COPY(Kept)

    // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDelete): the same
    Private* operator->() const { return m_order; }

private:
    Private* const m_order;
};

/// Marks that code of the command is on the stack. The command is then not destroyed, only let go: it may
/// itself have called the order, from a timer say, and lives until control is back in the event loop.
template <typename Private>
class CommandCode
{
public:
    explicit CommandCode(Private* order)
        : m_order(order)
    {
        ++m_order->commandDepth;
    }
    ~CommandCode()
    {
        if (--m_order->commandDepth == 0 && !m_order->letGo.isNull()) {
            QMetaObject::invokeMethod(
                QCoreApplication::instance(), [keptAlive = std::exchange(m_order->letGo, {})] {},
                Qt::QueuedConnection);
        }
    }
    Q_DISABLE_COPY(CommandCode)

    bool isOutermost() const { return m_order->commandDepth == 1; }

private:
    const Kept<Private> m_order;
};

} // namespace

DOrder::DOrder(DTool* tool, const QString& command, const QVariantMap& arguments, QObject* parent)
    : QObject(parent)
    , d(new Private)
{
    d->tool = tool;
    d->commandName = command;
    d->arguments = arguments;
}

DOrder::~DOrder()
{
    blockSignals(true);
    if (d->state == State::Running) {
        end({DFailure::Kind::Stopped, {}});
        detach();
    }
    d->destroyed = true;
    if (d->keepers == 0) {
        delete d;
    }
}

quint64 DOrder::id() const
{
    return d->id;
}

QString DOrder::commandName() const
{
    return d->commandName;
}

QVariantMap DOrder::arguments() const
{
    return d->arguments;
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
    return d->state == State::Finished && !d->failure;
}

const DFailure& DOrder::failure() const
{
    return d->failure;
}

QVariantMap DOrder::results() const
{
    QVariantMap results;
    for (const Private::Result& result : d->results) {
        results.insert(result.name, result.value);
    }
    return results;
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
    if (d->tool.isNull()) {
        end({DFailure::Kind::ToolClosed, wording("the tool was closed")});
        return;
    }
    DAbstractCommand* prototype = d->tool->prototype(d->commandName);
    const DFailure refusal = d->tool->checkArguments(d->commandName, prototype, &d->arguments);
    if (refusal) {
        end(refusal);
    } else if (prototype != nullptr) {
        makeCommand(prototype);
    } else {
        stopAnother();
    }
}

void DOrder::execute()
{
    const Kept<Private> order(d);
    bool accepted = false;
    {
        const CommandCode frame(d);
        accepted = d->command->commandExecute();
    }
    if (!order->isRunning()) {
        return;
    }
    if (!accepted) {
        end({DFailure::Kind::RefusedByCommand, wording("the command refused to run")});
    } else if (!d->hasSent && !d->hasUpdated) {
        end({DFailure::Kind::NothingSent, wording("the command sent no device request")});
    } else {
        endWhenComplete();
    }
}

void DOrder::stop()
{
    if (d->state == State::Waiting) {
        d->state = State::Running;
    }
    end(isListening() ? DFailure()
                      : DFailure{DFailure::Kind::Stopped, wording("stopped before it was complete")});
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
        end({DFailure::Kind::RefusedByCommand,
             d->arguments.isEmpty() ? wording("no running order to stop")
                                    : wording("no running order with these arguments to stop")});
        return;
    }
    const Kept<Private> order(d);
    running->stop();
    if (order->isRunning()) {
        end(DFailure());
    }
}

/// Makes the working instance and runs it.
void DOrder::makeCommand(DAbstractCommand* prototype)
{
    d->command = prototype->createCommand(d->arguments);
    if (d->command.isNull()) {
        end({DFailure::Kind::RefusedByCommand,
             wording(R"(the plugin made no command "%1")").arg(d->commandName)});
        return;
    }
    d->place = d->tool->orderStarted(this);
    d->base = dynamic_cast<DAbstractCommand*>(d->command.data());
    if (d->base != nullptr) {
        d->base->setParent(nullptr); // the shared pointer is its only owner
        for (const DDeclaration& result : d->base->declaration().results) {
            if (d->result(result.name) < 0) {
                d->results.append({result.name, result.defaultValue, false});
            }
        }
    }
    d->command->linkWithItsOrder(this);
    execute();
}

quint64 DOrder::addInstruction(const QString& target, const QString& instruction,
                               const QVariantMap& arguments, int timeoutMs)
{
    if (!d->isRunning()) {
        return 0;
    }
    const CommandCode frame(d);
    const quint64 id = DDevice::nextRequestId();
    DDevice* device = d->tool->device();
    const bool recurring = device != nullptr && device->isRecurring(instruction);
    d->instructions.append({id, recurring});
    d->recurringInstructions += recurring ? 1 : 0;
    d->hasSent = true;
    if (target != QLatin1String("device")) {
        failLater(id, {DFailure::Kind::RefusedByDevice,
                       wording(R"(unknown target "%1" of "%2")").arg(target, instruction)});
    } else if (device == nullptr) {
        failLater(id, {DFailure::Kind::DeviceUnreachable, wording("the tool has no device")});
    } else {
        device->send(id, instruction, arguments, timeoutMs, this);
    }
    return id;
}

/// Answers whether it was pending.
bool DOrder::removeInstruction(quint64 id)
{
    const auto found = d->instruction(id);
    if (found == d->instructions.end()) {
        return false;
    }
    d->recurringInstructions -= found->recurring ? 1 : 0;
    d->instructions.erase(found);
    if (d->base != nullptr) {
        d->base->forgetInstruction(id);
    }
    return true;
}

void DOrder::failLater(quint64 id, const DFailure& failure)
{
    QMetaObject::invokeMethod(
        this, [this, id, failure] { requestFailed(id, failure); }, Qt::QueuedConnection);
}

void DOrder::stopInstruction(quint64 id)
{
    if (removeInstruction(id)) {
        checkLater();
        if (!d->tool.isNull() && d->tool->device() != nullptr) {
            d->tool->device()->cancel(id);
        }
    }
}

bool DOrder::updateResult(const QString& name, const QVariant& value)
{
    const int result = d->isRunning() ? d->result(name) : -1;
    if (result < 0) {
        return false;
    }
    const CommandCode frame(d);
    if (frame.isOutermost()) {
        checkLater();
    }
    const Kept<Private> order(d);
    const bool listening = isListening();
    storeResult(result, value);
    if (listening && order->isRunning()) {
        Q_EMIT eventReceived({{name, value}}, order->eventTimeUs());
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
    const Kept<Private> order(d);
    for (auto item = reply.cbegin(); item != reply.cend(); ++item) {
        const int result = d->result(item.key());
        if (result >= 0) {
            storeResult(result, item.value());
        }
        if (!order->isRunning()) {
            return;
        }
    }
    Q_EMIT eventReceived(reply, order->eventTimeUs());
}

void DOrder::storeResult(int number, const QVariant& value)
{
    d->hasUpdated = true;
    Private::Result& result = d->results[number];
    result.value = value;
    result.updated = true;
    const QString name = result.name; // a listener may destroy the order
    Q_EMIT resultUpdated(name, value);
}

void DOrder::commandHasFinished(DAbstractCommand& command, bool ok)
{
    const CommandCode frame(d);
    if (d->isRunning()) {
        const DFailure failure =
            ok ? DFailure() : DFailure{DFailure::Kind::RefusedByCommand, wording("the command failed")};
        QMetaObject::invokeMethod(
            this, [this, failure] { end(failure); }, Qt::QueuedConnection);
    }
    Q_EMIT command.sigCommandFinished(ok);
}

void DOrder::requestReplied(quint64 id, const QVariantMap& reply, qint64 timeUs)
{
    if (!d->isRunning()) {
        return; // its command finishes, and runs an event loop
    }
    const Kept<Private> order(d);
    const bool recurring = d->instruction(id)->recurring;
    bool accepted = false;
    {
        const CommandCode frame(d);
        const std::optional<qint64> outerTimeUs = std::exchange(d->replyTimeUs, timeUs);
        accepted = d->command->setReply(id, reply);
        order->replyTimeUs = outerTimeUs;
    }
    if (!order->isRunning()) {
        return;
    }
    if (!recurring) {
        removeInstruction(id);
    }
    if (accepted) {
        endWhenComplete();
    } else if (recurring || isListening()) {
        ++d->rejectedReplies;
    } else {
        end({DFailure::Kind::ReplyRejected, wording("reply rejected")});
    }
}

void DOrder::repliesLost(quint64 id, quint64 count)
{
    Q_UNUSED(id)
    if (d->isRunning()) {
        Q_EMIT eventsLost(count);
    }
}

void DOrder::requestFailed(quint64 id, const DFailure& failure)
{
    if (removeInstruction(id)) {
        end(failure);
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
    if (!d->isRunning() || !d->instructions.isEmpty()) {
        return;
    }
    QStringList missing;
    for (const Private::Result& result : qAsConst(d->results)) {
        if (!result.updated) {
            missing.append(result.name);
        }
    }
    if (missing.isEmpty()) {
        end(DFailure());
    } else if (!commandTimes()) {
        missing.sort();
        end({DFailure::Kind::NothingSent,
             wording("the command waits for nothing more, without having reported %1")
                 .arg(missing.join(QStringLiteral(", ")))});
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

/// The failure by value: what it came from may end with the order.
void DOrder::end(DFailure failure)
{
    if (d->ending || d->state != State::Running) {
        return;
    }
    d->ending = true;
    const Kept<Private> order(d);
    if (!d->command.isNull()) {
        const CommandCode frame(d);
        bool ok = !failure;
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
    const bool success = !failure;
    d->failure = std::move(failure);
    Q_EMIT finished(success);
}

/// An order in the middle of its end keeps its outcome; only its ties are cut.
void DOrder::toolIsClosing()
{
    if (d->ending) {
        detach();
    } else {
        end({DFailure::Kind::ToolClosed, wording("the tool was closed")});
    }
}

/// Cuts every tie to the command, the device and the tool. A device that hears of its cancelled requests may
/// close the tool and destroy the order.
void DOrder::detach()
{
    const Kept<Private> order(d);
    const bool waits = !order->instructions.isEmpty() && !order->tool.isNull();
    const QPointer<DDevice> device(waits ? order->tool->device() : nullptr);
    const auto place = std::exchange(order->place, std::nullopt);
    if (place && !order->tool.isNull()) {
        order->tool->orderEnded(*place);
    }
    order->recurringInstructions = 0;
    while (!order->instructions.isEmpty()) {
        const quint64 id = order->instructions.first().id;
        order->instructions.erase(order->instructions.begin());
        if (!device.isNull()) {
            device->cancel(id);
        }
    }
    order->base = nullptr;
    const QSharedPointer<ICommand> command = std::exchange(order->command, {});
    if (!command.isNull()) {
        command->linkWithItsOrder(nullptr);
    }
    if (order->commandDepth > 0 && !command.isNull()) {
        order->letGo = command;
    }
}
