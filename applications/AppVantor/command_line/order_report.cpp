#include "order_report.h"

#include "channel_value.h"
#include "order_advice.h"
#include "order_json.h"

#include <configuration/value_text.h>
#include <plugin_management/d_order.h>
#include <plugin_management/d_tool.h>
#include <process/diagnostics.h>
#include <process/time_text.h>

#include <utility>

namespace {

/// For people: with its place.
void complain(const QString& text, const Problem& place)
{
    Problem problem = place;
    problem.text = DWording::told(text);
    diagnostic(problem.toString());
}

/// Reports an order as long as it lives. Events that find no room are counted, and the count is told in their
/// place.
class OrderReport : public QObject
{
public:
    OrderReport(DOrder* order, int number, Output* output, const Problem& place,
                const std::optional<ChannelReport>& ofChannel)
        : QObject(order)
        , m_order(*order)
        , m_number(number)
        , m_output(output)
        , m_place(place)
        , m_ofChannel(ofChannel)
    {}

    void tellWarning()
    {
        const QString warning = warningOf(m_order);
        if (warning.isEmpty()) {
            return;
        }
        complain(QStringLiteral("%1 %2: %3").arg(label(), m_order.commandName(), warning), m_place);
        m_output->json([&] { return warningJson(m_order, m_number, warning, m_place); });
    }

    void tellEvent(const QVariantMap& event, qint64 timeUs)
    {
        if (m_ofChannel && m_ofChannel->tells && !m_ofChannel->tells(event)) {
            return;
        }
        if (!m_output->hasRoomForEvents()) {
            ++m_leftOut;
            return;
        }
        tellLeftOut();
        const qint64 time = wallClockOf(m_order, timeUs);
        m_output->write([&] { return eventJson(m_order, m_number, event, timeUs); },
                        [&] {
                            return m_ofChannel && m_ofChannel->eventText
                                       ? m_ofChannel->eventText(event, time)
                                       : QStringLiteral("%1 %2  %3")
                                             .arg(label(), timeOfDay(time), assignmentsText(event));
                        });
    }

    void tellLost(quint64 count)
    {
        tellLeftOut();
        tellLost(count, QStringLiteral("they came too fast"));
    }

    void tellEnd()
    {
        tellLeftOut();
        const QString command = label() + QLatin1Char(' ') + m_order.commandName();
        if (m_output->isJson()) {
            m_output->json([this] { return endJson(m_order, m_number, m_place); });
        } else if (m_order.isSuccessful() && m_ofChannel && m_ofChannel->resultText) {
            m_output->text(m_ofChannel->resultText(m_order.results()));
        } else if (m_order.isSuccessful() && !m_ofChannel) {
            const QString results = assignmentsText(m_order.results());
            m_output->text(
                QStringLiteral("%1: %2").arg(command, results.isEmpty() ? QStringLiteral("done") : results));
        }
        if (m_order.rejectedReplies() > 0) {
            complain(QStringLiteral("%1 rejected replies of the device: %2")
                         .arg(command)
                         .arg(m_order.rejectedReplies()),
                     m_place);
        }
        if (m_order.failure()) {
            complain(QStringLiteral("%1 failed: %2").arg(command, reasonOf(m_order)), m_place);
        }
    }

private:
    /// What people know the order by.
    QString label() const
    {
        return m_ofChannel
                   ? m_order.arguments().value(QStringLiteral("channel")).toString() + QLatin1Char(':')
                   : QStringLiteral("[%1]").arg(m_number);
    }

    void tellLeftOut()
    {
        if (m_leftOut > 0) {
            tellLost(std::exchange(m_leftOut, 0), QStringLiteral("the reader was too slow"));
        }
    }

    void tellLost(quint64 count, const QString& reason)
    {
        m_output->write(
            [&] { return lostJson(m_order, m_number, count, reason); },
            [&] { return QStringLiteral("%1 %2 events lost: %3").arg(label()).arg(count).arg(reason); });
    }

    const DOrder& m_order;
    const int m_number;
    Output* const m_output;
    const Problem m_place;
    const std::optional<ChannelReport> m_ofChannel;
    quint64 m_leftOut = 0; ///< events since the last one that was written
};

} // namespace

ChannelReport levelReport(const DToolChannel& channel)
{
    ChannelReport report;
    report.resultText = [channel](const QVariantMap& results) {
        return channel.id + QLatin1Char('=') + levelText(channel, results.value(QStringLiteral("value")));
    };
    return report;
}

int reportOrder(DOrder* order, Output* output, const Problem& place,
                const std::optional<ChannelReport>& ofChannel)
{
    const int number = output->nextOrder();
    auto* report = new OrderReport(order, number, output, place, ofChannel);
    report->tellWarning();
    if (order->state() == DOrder::State::Finished) {
        report->tellEnd();
        return number;
    }
    QObject::connect(order, &DOrder::eventReceived, report, &OrderReport::tellEvent);
    QObject::connect(order, &DOrder::eventsLost, report, qOverload<quint64>(&OrderReport::tellLost));
    QObject::connect(order, &DOrder::finished, report, &OrderReport::tellEnd);
    return number;
}

void reportRefusal(const DOrder& order, Output* output, const Problem& place)
{
    complain(order.failure().text.english(), place);
    output->json([&] { return failureJson(order, 0, place); });
}
