#include "lease_rig.h"

#include "broker_options.h"
#include "failure_report.h"

#include <devices/broker_link.h>
#include <devices/rig_changes.h>
#include <devices/rig_device.h>
#include <devices/rig_topics.h>
#include <process/absence.h>
#include <process/diagnostics.h>
#include <process/exit_status.h>
#include <process/time_text.h>
#include <process/unix_signals.h>

#include <QElapsedTimer>
#include <QEventLoop>
#include <QJsonDocument>
#include <QJsonObject>
#include <QUuid>

#include <utility>

namespace {

/// A talk with a rig about who holds it.
class LeaseTalk : public QObject
{
public:
    LeaseTalk(const BrokerPlace& place, const QString& rig, Output* output)
        : m_topics(rig)
        , m_rig(rig)
        , m_client("appvantor-" + QUuid::createUuid().toByteArray(QUuid::WithoutBraces))
        , m_output(output)
        , m_link(place.address, place.access, m_client)
        , m_broker(place.address.text())
    {
        m_link.subscribe(m_topics.answer(m_client));
        connect(&m_link, &BrokerLink::received, this, &LeaseTalk::take);
        connect(&m_link, &BrokerLink::connected, this, [this] { m_broker.end(); });
        connect(&m_link, &BrokerLink::disconnected, this, [this](const DWording& problem) {
            const std::optional<QString> text = m_broker.begin(problem);
            if (text && !m_isHeld) {
                fail("deviceUnreachable", *text);
            } else if (text) {
                // The rig keeps the lease meanwhile.
                diagnostic(*text + QStringLiteral("; it is tried again"));
            }
        });
    }

    /// The rig is given back when this process is lost.
    void releaseWhenLost()
    {
        BrokerMessage will = order(release());
        will.responseTopic.clear();
        m_link.setWill(will, 0);
        m_stays = true;
        m_link.subscribe(m_topics.state());
        m_link.subscribe(m_topics.lease());
    }

    /// Asks, and waits for the answer; one that stays waits for its end.
    int ask(const Json& question)
    {
        constexpr int patienceMs = 5000;
        const UnixSignals unixSignals;
        connect(&unixSignals, &UnixSignals::interrupted, &m_loop, &QEventLoop::quit);
        m_question = question;
        m_asked.start();
        m_link.publish(order(question));
        m_link.open();
        QTimer::singleShot(patienceMs, this, [this] {
            if (!m_isAnswered) {
                fail("deviceUnreachable", QStringLiteral("the rig \"%1\" does not answer").arg(m_rig));
            }
        });
        m_loop.exec();
        if (m_stays && std::exchange(m_isHeld, false)) {
            m_link.publish(order(release()));
            connect(&m_link, &BrokerLink::freeAgain, &m_loop, &QEventLoop::quit);
            QTimer::singleShot(patienceMs, &m_loop, &QEventLoop::quit);
            m_loop.exec();
        }
        m_link.leave();
        return m_status;
    }

    static Json release() { return {{"release", true}, {"holder", toJson(thisHolder())}}; }

private:
    BrokerMessage order(const Json& question) const
    {
        BrokerMessage message;
        message.topic = m_topics.order();
        message.payload = QByteArray::fromStdString(question.dump());
        message.responseTopic = m_topics.answer(m_client);
        message.correlation = QByteArray::fromStdString(question.dump());
        message.expirySeconds = 10;
        return message;
    }

    void take(const BrokerMessage& message)
    {
        if (message.topic == m_topics.lease()) {
            takeHolder(RigHolder::fromJson(message.payload));
            return;
        }
        if (message.topic == m_topics.state()) {
            takeState(RigState::fromJson(message.payload).value_or(RigState()));
            return;
        }
        if (m_isAnswered) {
            return;
        }
        const QJsonObject payload = QJsonDocument::fromJson(message.payload).object();
        if (payload.value(QStringLiteral("type")).toString() != QLatin1String("lease")) {
            const QString kind = payload.value(QStringLiteral("kind")).toString();
            fail(kind == QLatin1String("readOnly") ? "readOnly" : "leased",
                 payload.value(QStringLiteral("reason")).toString());
            return;
        }
        m_isAnswered = true;
        const QJsonDocument lease(payload.value(QStringLiteral("lease")).toObject());
        tell(RigHolder::fromJson(lease.toJson()));
        m_isHeld = m_stays;
        if (!m_stays) {
            m_loop.quit();
        }
    }

    /// Given back by another process, or its time is over.
    void takeHolder(const RigHolder& holder)
    {
        if (m_isAnswered && m_isHeld && holder.name != thisHolder()) {
            m_isHeld = false;
            tell(holder);
            m_loop.quit();
        }
    }

    /// A rig that has begun anew knows of no lease: it is asked for the minutes that are left.
    void takeState(const RigState& state)
    {
        if (!state.isOnline()) {
            return;
        }
        const QString before = std::exchange(m_session, state.session);
        if (!m_isHeld || before == state.session) {
            return;
        }
        constexpr qint64 msPerMinute = 60000;
        const auto left = m_question.value("lease", qint64{0}) - m_asked.elapsed() / msPerMinute;
        if (left <= 0) {
            takeHolder(RigHolder());
            return;
        }
        Json question = m_question;
        question["lease"] = left;
        m_isAnswered = false;
        m_link.publish(order(question));
    }

    void tell(const RigHolder& holder)
    {
        m_output->write(
            [&] {
                Json json = {{"holder", holder.name.isEmpty() ? Json() : toJson(holder.name)}};
                if (!holder.name.isEmpty()) {
                    json["until"] = holder.untilUs;
                }
                return Json{{"type", "lease"}, {"lease", json}};
            },
            [&] {
                return holder.name.isEmpty() ? QStringLiteral("nobody holds %1").arg(m_rig)
                                             : QStringLiteral("%1 holds %2 until %3")
                                                   .arg(holder.name, m_rig, fullTime(holder.untilUs));
            });
    }

    void fail(const char* kind, const QString& reason)
    {
        reportFailure(kind, {reason}, m_output);
        m_status = qstrcmp(kind, "deviceUnreachable") == 0 ? ExitDeviceUnreachable : ExitOrderFailed;
        m_isHeld = false;
        m_loop.quit();
    }

    const RigTopics m_topics;
    const QString m_rig;
    const QByteArray m_client;
    Output* const m_output;
    BrokerLink m_link;
    Absence m_broker;
    QEventLoop m_loop;
    Json m_question;
    QElapsedTimer m_asked;
    QString m_session; ///< of the rig
    bool m_stays = false;
    bool m_isAnswered = false;
    bool m_isHeld = false;
    int m_status = ExitSuccess;
};

std::optional<BrokerPlace> placeOf(const Options& options, Output* output)
{
    DWording problem;
    std::optional<BrokerPlace> place = brokerOf(options, &problem);
    if (!place) {
        reportFailure("usage", {problem}, output);
    }
    return place;
}

} // namespace

int leaseRig(const Options& options, Output* output)
{
    constexpr double usualMinutes = 10;
    const int minutes = qMax(1, qRound(options.seconds.value_or(usualMinutes)));
    if (minutes > RigHolder::c_longestMinutes) {
        reportFailure("usage",
                      {QStringLiteral("--for: expected at most %1 minutes").arg(RigHolder::c_longestMinutes)},
                      output);
        return ExitWrongUsage;
    }
    const std::optional<BrokerPlace> place = placeOf(options, output);
    if (!place) {
        return ExitWrongUsage;
    }
    LeaseTalk talk(*place, options.words.first(), output);
    talk.releaseWhenLost();
    return talk.ask({{"lease", minutes}, {"holder", toJson(thisHolder())}});
}

int releaseRig(const Options& options, Output* output)
{
    const std::optional<BrokerPlace> place = placeOf(options, output);
    if (!place) {
        return ExitWrongUsage;
    }
    return LeaseTalk(*place, options.words.first(), output).ask(LeaseTalk::release());
}
