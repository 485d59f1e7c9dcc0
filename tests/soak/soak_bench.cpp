#include "soak_bench.h"

#include "text.h"

#include <plugin_management/d_plugin_loader.h>

#include <QCoreApplication>

#include <algorithm>

namespace {

constexpr int c_outputs = 8;
constexpr int c_inputs = 56; // the last of the 64 lines that listenToAll tells of
constexpr int c_ordersAtATime = 50;
constexpr int c_changesAtATime = 20;
constexpr int c_wholeBoardListeners = 2;

QString outputName(int number)
{
    return "out%1"_q.arg(number);
}

QString inputName(int number)
{
    return "in%1"_q.arg(number);
}

SimulatedBoardSetup setup()
{
    SimulatedBoardSetup board;
    const auto add = [&board](const QString& name, DLine::Direction direction) {
        SimulatedBoardSetup::Line line;
        line.line = {name, DLine::Kind::Digital, direction};
        board.lines.append(line);
    };
    for (int output = 0; output < c_outputs; ++output) {
        add(outputName(output), DLine::Direction::Out);
    }
    for (int input = 0; input < c_inputs; ++input) {
        add(inputName(input), DLine::Direction::In);
    }
    return board;
}

QVariantMap configuration(const SimulatedBoardSetup& board)
{
    const auto item = [](const QString& id, const QString& value) {
        return QVariantMap{{"id"_q, id}, {"value"_q, value}};
    };
    QVariantList channels;
    for (const SimulatedBoardSetup::Line& line : board.lines) {
        const QString direction = line.line.direction == DLine::Direction::Out ? "out"_q : "in"_q;
        channels.append(QVariantMap{
            {"id"_q, line.line.name},
            {"value"_q, QVariantList{item("direction"_q, direction), item("link"_q, line.line.name)}}});
    }
    return {{"name"_q, "Soak"_q}, {"channels"_q, channels}};
}

} // namespace

SoakBench::SoakBench()
    : m_invocations(invocations())
{
    const SimulatedBoardSetup board = setup();
    m_board = std::make_unique<SimulatedBoard>(board, &m_scheduler);
    const DPluginLoader loader(QStringLiteral(PLUGIN_FILE));
    if (loader.prototype() == nullptr) {
        qFatal("%s", qPrintable(loader.error()));
    }
    m_tool = std::make_unique<DTool>(configuration(board), *loader.prototype(), m_board.get());
}

SoakBench::~SoakBench() = default;

std::vector<SoakBench::Invocation> SoakBench::invocations()
{
    std::vector<Invocation> all;
    for (int number = 0; number < c_outputs; ++number) {
        const QVariantMap channel = {{"channel"_q, outputName(number)}};
        const auto set = [&all, channel](const QString& state) {
            QVariantMap arguments = channel;
            arguments.insert("state"_q, state);
            arguments.insert("duration"_q, state == "PULSE"_q ? 0 : 10);
            arguments.insert("dutyCycle"_q, 50);
            all.push_back({"setValue"_q, arguments});
        };
        set("ON"_q);
        all.push_back({"getValue"_q, channel});
        set("BLINK"_q);
        all.push_back({"switchValue"_q, channel});
        set("PULSE"_q);
        all.push_back({"init"_q, {}});
        all.push_back({"startListening"_q, channel, true});
        all.push_back({"startListening"_q, {{"channel"_q, outputName(number)}, {"edge"_q, "RE"_q}}, true});
        set("OFF"_q);
        all.push_back({"listenToAll"_q, {}, true});
    }
    all.push_back({"setValue"_q, {{"channel"_q, inputName(0)}, {"state"_q, "ON"_q}}, false, false, 1});
    all.push_back({"getValue"_q, {{"channel"_q, "nowhere"_q}}, false, false, 1});
    all.push_back({"getValue"_q, {{"zone"_q, 1}}, false, false});
    return all;
}

void SoakBench::require(bool holds, const QString& what)
{
    if (!holds && m_problem.isEmpty()) {
        m_problem = what;
    }
}

std::unique_ptr<DOrder> SoakBench::start(const Invocation& invocation)
{
    auto order = std::make_unique<DOrder>(m_tool.get(), invocation.command, invocation.arguments);
    connect(order.get(), &DOrder::eventReceived, this, [this] { ++m_events; });
    order->start();
    return order;
}

/// The blinking goes on while they run, by the scheduler's clock.
void SoakBench::runOrders(qint64 count)
{
    struct Running
    {
        const Invocation* invocation;
        std::unique_ptr<DOrder> order;
    };
    for (qint64 done = 0; done < count && m_problem.isEmpty(); done += c_ordersAtATime) {
        std::vector<Running> running;
        for (qint64 left = std::min<qint64>(c_ordersAtATime, count - done); left > 0; --left) {
            const Invocation& invocation = m_invocations.at(m_next);
            m_next = (m_next + 1) % m_invocations.size();
            m_provoked += invocation.reports;
            running.push_back({&invocation, start(invocation)});
        }
        const auto works = [](const Running& one) {
            return one.order->state() == DOrder::State::Running && !one.invocation->listens;
        };
        while (std::any_of(running.cbegin(), running.cend(), works)) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
        m_scheduler.advance(1000);
        for (const Running& one : running) {
            if (one.invocation->listens) {
                one.order->stop();
            }
            require(one.order->isSuccessful() == one.invocation->succeeds,
                    "an order of %1 ended with \"%2\""_q.arg(one.order->commandName(), one.order->reason()));
        }
        running.clear();
        require(m_board->pendingRequests() == 0, "requests are pending after their orders"_q);
    }
}

void SoakBench::runEvents(qint64 count)
{
    std::vector<std::unique_ptr<DOrder>> listeners;
    for (int input = 0; input < c_inputs; ++input) {
        const QString channel = inputName(input);
        listeners.push_back(start({"startListening"_q, {{"channel"_q, channel}}}));
        listeners.push_back(start({"startListening"_q, {{"channel"_q, channel}, {"edge"_q, "FE"_q}}}));
    }
    for (int number = 0; number < c_wholeBoardListeners; ++number) {
        listeners.push_back(start({"listenToAll"_q, {}}));
    }
    QCoreApplication::processEvents();
    m_events = 0;
    qint64 expected = 0;
    for (int input = 0; expected < count && m_problem.isEmpty();) {
        for (int change = 0; change < c_changesAtATime; ++change) {
            const int line = c_outputs + input;
            m_board->setInput(line, 1 - m_board->level(line));
            expected += 2 + c_wholeBoardListeners;
            input = (input + 1) % c_inputs;
        }
        QCoreApplication::processEvents();
        require(m_events == expected, "%1 events came of %2"_q.arg(m_events).arg(expected));
    }
    m_heard += m_events;
    for (const auto& listener : listeners) {
        listener->stop();
        require(listener->isSuccessful(), "a listening order ended with \"%1\""_q.arg(listener->reason()));
    }
    require(m_board->pendingRequests() == 0, "requests are pending after their listeners"_q);
}
