#include "shell_orders.h"

#include <plugin_management/d_order.h>
#include <plugin_management/d_tool.h>
#include <process/diagnostics.h>

#include <utility>

ShellOrders::ShellOrders(DTool* tool, Output* output)
    : m_tool(tool)
    , m_output(output)
    , m_driven(*tool)
{}

ShellOrders::~ShellOrders() = default;

DFailure ShellOrders::start(const Invocation& invocation, const ScriptLine& line)
{
    return start(invocation, line, std::nullopt);
}

DFailure ShellOrders::read(const DToolChannel& channel, const ScriptLine& line)
{
    return start({QStringLiteral("getValue"), {{QStringLiteral("channel"), channel.id}}}, line,
                 levelReport(channel));
}

DFailure ShellOrders::start(const Invocation& invocation, const ScriptLine& line,
                            const std::optional<ChannelReport>& ofChannel)
{
    auto order = std::make_unique<DOrder>(m_tool, invocation.command, invocation.arguments);
    order->start();
    if (order->failure().kind == DFailure::Kind::WrongInvocation) {
        reportRefusal(*order, m_output, line.told());
        return order->failure();
    }
    const int number = reportOrder(order.get(), m_output, line.told(), ofChannel);
    m_last = number;
    connect(order.get(), &DOrder::finished, this, [this, number] { orderEnded(number); });
    const bool hasEnded = order->state() == DOrder::State::Finished;
    m_running.emplace(number, Running{std::move(order), invocation, line});
    if (hasEnded) {
        orderEnded(number);
    }
    return DFailure();
}

void ShellOrders::orderEnded(int number)
{
    const auto found = m_running.find(number);
    Running ended = std::move(found->second);
    m_running.erase(found);
    const DFailure failure = ended.order->failure();
    ended.order.release()->deleteLater(); // its signal is still on the stack
    if (!failure) {
        m_driven.note(ended.invocation);
    }
    Q_EMIT this->ended(ended.line, failure);
}

bool ShellOrders::isListening(int number) const
{
    return m_running.at(number).order->isListening();
}

void ShellOrders::stop(int number)
{
    m_running.at(number).order->stop();
}

void ShellOrders::stopAll()
{
    while (!m_running.empty()) {
        m_running.begin()->second.order->stop(); // its end takes it out
    }
}

void ShellOrders::reportDriven() const
{
    QStringList texts;
    Json channels = Json::array();
    const auto add = [&](const QString& channel, const char* by, const char* words) {
        texts.append(QStringLiteral("%1 (%2)").arg(channel, QLatin1String(words)));
        channels.push_back({{"channel", toJson(channel)}, {"by", by}});
    };
    const QStringList blinking = m_driven.blinking();
    for (const QString& channel : blinking) {
        add(channel, "BLINK", "blinks");
    }
    for (const auto& [number, running] : m_running) {
        if (DrivenChannels::isPulse(running.invocation)) {
            add(DrivenChannels::channelOf(running.invocation), "PULSE", "pulse");
        }
    }
    if (texts.isEmpty()) {
        return;
    }
    diagnostic(QStringLiteral("still driven at the end: %1").arg(texts.join(QStringLiteral(", "))));
    m_output->json([&] {
        return Json{
            {"type", "driven"}, {"tool", toJson(m_tool->objectName())}, {"channels", std::move(channels)}};
    });
}
