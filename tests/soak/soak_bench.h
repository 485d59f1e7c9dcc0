#pragma once

#include "channel_entry.h"
#include "literals.h"
#include "manual_scheduler.h"

#include <devices/simulated_board.h>
#include <plugin_management/d_order.h>
#include <plugin_management/d_plugin_loader.h>
#include <plugin_management/d_tool.h>

#include <QCoreApplication>
#include <QTimer>
#include <QVariant>

#include <algorithm>
#include <functional>
#include <memory>
#include <vector>

/// The plugin, loaded from its library, on a simulated board: works off orders and events, and says what did
/// not go as it must.
class SoakBench : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(SoakBench)

    static constexpr int c_outputs = 8;
    static constexpr int c_inputs = 56; // the last of the 64 lines that listenToAll tells of
    static constexpr int c_ordersAtATime = 50;
    static constexpr int c_changesAtATime = 20;
    static constexpr int c_wholeBoardListeners = 2;

    static QString outputName(int number) { return "out%1"_s.arg(number); }
    static QString inputName(int number) { return "in%1"_s.arg(number); }

    static SimulatedBoardSetup setup()
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

    static QVariantMap configuration(const SimulatedBoardSetup& board)
    {
        QVariantList channels;
        for (const SimulatedBoardSetup::Line& line : board.lines) {
            const QString direction = line.line.direction == DLine::Direction::Out ? "out"_s : "in"_s;
            channels.append(
                channelEntry(line.line.name, {{"direction"_s, direction}, {"link"_s, line.line.name}}));
        }
        return {{"name"_s, "Soak"_s}, {"channels"_s, channels}};
    }

public:
    /// The board itself lives in place. A plugin that cannot be loaded ends the process.
    explicit SoakBench(DevicePlace place)
        : m_invocations(invocations())
        , m_inputs(c_inputs, 0)
    {
        const SimulatedBoardSetup board = setup();
        m_board = makeSimulatedBoard(board, &m_scheduler, place);
        m_board->open();
        await([this] { return m_board->isConnected(); }, "connecting the board"_s);
        const DPluginLoader loader(QStringLiteral(PLUGIN_FILE));
        if (loader.prototype() == nullptr) {
            qFatal("%s", qPrintable(loader.error().english()));
        }
        m_tool = std::make_unique<DTool>(configuration(board), *loader.prototype(), m_board.get());
    }

    /// Runs so many orders of all six commands to their ends, some at a time.
    /// The blinking goes on while they run, by the scheduler's clock.
    void runOrders(qint64 count)
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
            await([&] { return std::none_of(running.cbegin(), running.cend(), works); }, "running orders"_s);
            m_scheduler.advance(1000);
            for (const Running& one : running) {
                if (one.invocation->listens) {
                    one.order->stop();
                }
                require(one.order->isSuccessful() == one.invocation->succeeds,
                        "an order of %1 ended with \"%2\""_s.arg(one.order->commandName(),
                                                                 one.order->failure().text.english()));
            }
            running.clear();
            require(m_board->pendingRequests() == 0, "requests are pending after their orders"_s);
        }
    }

    /// Changes inputs that many orders listen to, until these have heard of so many events.
    void runEvents(qint64 count)
    {
        m_events = 0;
        std::vector<std::unique_ptr<DOrder>> listeners;
        for (int input = 0; input < c_inputs; ++input) {
            const QString channel = inputName(input);
            listeners.push_back(start({"startListening"_s, {{"channel"_s, channel}}}));
            listeners.push_back(start({"startListening"_s, {{"channel"_s, channel}, {"edge"_s, "FE"_s}}}));
        }
        for (int number = 0; number < c_wholeBoardListeners; ++number) {
            listeners.push_back(start({"listenToAll"_s, {}}));
        }
        const auto heard = static_cast<qint64>(listeners.size());
        await([&] { return m_events == heard; }, "the first reply to each listener"_s);
        m_events = 0;
        qint64 expected = 0;
        for (int input = 0; expected < count && m_problem.isEmpty();) {
            for (int change = 0; change < c_changesAtATime; ++change) {
                int& level = m_inputs.at(static_cast<std::size_t>(input));
                level = 1 - level;
                m_board->setInput(c_outputs + input, level);
                expected += 2 + c_wholeBoardListeners;
                input = (input + 1) % c_inputs;
            }
            await([&] { return m_events >= expected; }, "hearing of changes"_s);
            require(m_events == expected, "%1 events came of %2"_s.arg(m_events).arg(expected));
        }
        m_heard += m_events;
        for (const auto& listener : listeners) {
            listener->stop();
            require(listener->isSuccessful(),
                    "a listening order ended with \"%1\""_s.arg(listener->failure().text.english()));
        }
        require(m_board->pendingRequests() == 0, "requests are pending after their listeners"_s);
    }

    /// Unplugs the board, whose levels nobody knows then, and plugs it in again.
    void replug()
    {
        const auto known = [this] {
            int count = 0;
            for (int line = 0; line < m_board->lines().size(); ++line) {
                count += m_board->level(line).known ? 1 : 0;
            }
            return count;
        };
        m_board->setPluggedIn(false);
        await([this] { return !m_board->isConnected(); }, "unplugging"_s);
        require(known() == 0, "%1 levels of an unplugged board are known"_s.arg(known()));
        m_board->setPluggedIn(true);
        await([this] { return m_board->isConnected(); }, "plugging in"_s);
        require(known() == m_board->lines().size(), "a level of a plugged board is not known"_s);
    }

    /// Events that runEvents has heard of.
    qint64 events() const { return m_heard; }
    /// Error reports that the orders have provoked.
    qint64 provokedReports() const { return m_provoked; }

    /// What went wrong first; empty while all is well.
    QString problem() const { return m_problem; }

private:
    struct Invocation
    {
        QString command;
        QVariantMap arguments;
        bool listens = false;
        bool succeeds = true;
        int reports = 0;
    };

    static std::vector<Invocation> invocations()
    {
        std::vector<Invocation> all;
        for (int number = 0; number < c_outputs; ++number) {
            const QString name = outputName(number);
            const QVariantMap channel = {{"channel"_s, name}};
            const auto set = [&all, name](const QString& state) {
                all.push_back({"setValue"_s,
                               {{"channel"_s, name},
                                {"state"_s, state},
                                {"duration"_s, state == "PULSE"_s ? 0 : 10},
                                {"dutyCycle"_s, 50}}});
            };
            set("ON"_s);
            all.push_back({"getValue"_s, channel});
            set("BLINK"_s);
            all.push_back({"switchValue"_s, channel});
            set("PULSE"_s);
            all.push_back({"init"_s, {}});
            all.push_back({"startListening"_s, channel, true});
            all.push_back({"startListening"_s, {{"channel"_s, name}, {"edge"_s, "RE"_s}}, true});
            set("OFF"_s);
            all.push_back({"listenToAll"_s, {}, true});
        }
        all.push_back({"setValue"_s, {{"channel"_s, inputName(0)}, {"state"_s, "ON"_s}}, false, false, 1});
        all.push_back({"getValue"_s, {{"channel"_s, "nowhere"_s}}, false, false, 1});
        all.push_back({"getValue"_s, {{"zone"_s, 1}}, false, false});
        return all;
    }

    std::unique_ptr<DOrder> start(const Invocation& invocation)
    {
        auto order = std::make_unique<DOrder>(m_tool.get(), invocation.command, invocation.arguments);
        connect(order.get(), &DOrder::eventReceived, this, [this] { ++m_events; });
        order->start();
        return order;
    }

    void require(bool holds, const QString& what)
    {
        if (!holds && m_problem.isEmpty()) {
            m_problem = what;
        }
    }

    /// Runs the event loop until something has come about; too long a time is a problem.
    void await(const std::function<bool()>& cameAbout, const QString& what)
    {
        constexpr int patienceMs = 20000;
        QTimer patience;
        patience.setSingleShot(true);
        patience.start(patienceMs);
        while (!cameAbout() && patience.isActive()) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
        require(patience.isActive(), "%1 takes more than %2 ms"_s.arg(what, QString::number(patienceMs)));
    }

    ManualScheduler m_scheduler;
    std::unique_ptr<LineDevice> m_board;
    std::unique_ptr<DTool> m_tool;
    const std::vector<Invocation> m_invocations;
    std::size_t m_next = 0;
    std::vector<int> m_inputs; ///< levels
    qint64 m_provoked = 0;
    qint64 m_events = 0;
    qint64 m_heard = 0;
    QString m_problem;
};
