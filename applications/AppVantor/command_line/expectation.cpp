#include "expectation.h"

#include "channel_names.h"
#include "channel_value.h"
#include "failure_report.h"

#include <plugin_management/d_device.h>
#include <plugin_management/d_order.h>
#include <plugin_management/d_tool.h>
#include <process/diagnostics.h>
#include <process/time_text.h>

#include <utility>

namespace {

constexpr int c_longestMs = 86400000;
constexpr qint64 c_usPerMs = 1000;
constexpr qint64 c_readingPauseUs = 20 * c_usPerMs;

} // namespace

QString ExpectedLevel::text() const
{
    return name + QLatin1Char('=') + levelText(channel, level);
}

ExpectedLevel readExpectedLevel(const QStringList& words, const ChannelNames& names, DWording* problem)
{
    ExpectedLevel expected;
    const int equals = words.value(0).lastIndexOf(QLatin1Char('='));
    const bool hasLimit = words.size() == 3 && words.at(1) == QLatin1String("within");
    if (equals <= 0 || (words.size() != 1 && !hasLimit)) {
        *problem = wording(R"(expected "expect CHANNEL=VALUE [within MS]")");
        return expected;
    }
    expected.name = words.first().left(equals);
    const DToolChannel* channel = names.find(expected.name, problem);
    if (channel == nullptr) {
        return expected;
    }
    expected.channel = *channel;
    expected.level = readLevel(*channel, words.first().mid(equals + 1), problem);
    if (hasLimit && problem->isEmpty()) {
        bool ok = false;
        expected.withinMs = words.at(2).toInt(&ok);
        if (!ok || *expected.withinMs < 0 || *expected.withinMs > c_longestMs) {
            *problem =
                wording(R"(expected milliseconds from 0 to %1, found "%2")").arg(c_longestMs, words.at(2));
        }
    }
    return expected;
}

Expectation::Expectation(DTool* tool, ExpectedLevel expected)
    : m_tool(tool)
    , m_clock(tool->device()->scheduler())
    , m_expected(std::move(expected))
    , m_startUs(m_clock->now())
    , m_endUs(m_startUs)
{}

Expectation::~Expectation()
{
    if (m_tool->device() != nullptr) {
        m_clock->cancel(m_limit);
        m_clock->cancel(m_nextReading);
    }
}

void Expectation::start()
{
    if (m_expected.mayCome()) {
        m_limit = m_clock->at(m_startUs + *m_expected.withinMs * c_usPerMs, [this] { end(); });
    }
    read();
}

void Expectation::stop()
{
    end();
}

void Expectation::read()
{
    begin(QStringLiteral("getValue"), {});
}

/// With an edge, the reading comes whole.
void Expectation::listen()
{
    begin(QStringLiteral("startListening"), {{QStringLiteral("edge"), QStringLiteral("RE")}});
}

void Expectation::readLater()
{
    m_nextReading = m_clock->at(m_clock->now() + c_readingPauseUs, [this] { read(); });
}

void Expectation::begin(const QString& command, const QVariantMap& arguments)
{
    dropOrder();
    QVariantMap all = arguments;
    all.insert(QStringLiteral("channel"), m_expected.channel.id);
    m_order = std::make_unique<DOrder>(m_tool, command, all);
    connect(m_order.get(), &DOrder::eventReceived, this,
            [this](const QVariantMap& event) { take(event.value(QStringLiteral("lastValue"))); });
    // Not from within the order, which may end while it starts.
    connect(m_order.get(), &DOrder::finished, this, &Expectation::orderEnded, Qt::QueuedConnection);
    m_order->start();
}

void Expectation::orderEnded()
{
    if (m_hasEnded || m_order == nullptr || m_order->state() != DOrder::State::Finished) {
        return;
    }
    const bool listened = m_order->commandName() != QLatin1String("getValue");
    if (listened) {
        m_isListenable = false;
        readLater();
        return;
    }
    if (!m_order->isSuccessful()) {
        m_failure = m_order->failure();
        m_found.reset();
        end();
        return;
    }
    take(m_order->results().value(QStringLiteral("value")));
    if (m_hasEnded) {
        return;
    }
    if (!m_expected.mayCome()) {
        end();
    } else if (m_isListenable) {
        listen();
    } else {
        readLater();
    }
}

void Expectation::take(const QVariant& reading)
{
    if (m_hasEnded) {
        return;
    }
    m_found = reading.toInt();
    if (isMet()) {
        end();
    }
}

/// Its signals may be on the stack.
void Expectation::dropOrder()
{
    if (m_order != nullptr) {
        m_order->disconnect(this);
        m_order->stop();
        m_order.release()->deleteLater();
    }
}

void Expectation::end()
{
    if (m_hasEnded) {
        return;
    }
    m_hasEnded = true;
    m_endUs = m_clock->now();
    m_clock->cancel(std::exchange(m_limit, {}));
    m_clock->cancel(std::exchange(m_nextReading, {}));
    dropOrder();
    QMetaObject::invokeMethod(this, &Expectation::ended, Qt::QueuedConnection);
}

DWording Expectation::complaint() const
{
    const QString expected = m_expected.text();
    const DWording found =
        m_found ? DWording::name(levelText(m_expected.channel, *m_found)) : wording("nothing");
    const DWording complaint =
        m_expected.withinMs
            ? wording("expected %1 within %2 ms, found %3").arg(expected, *m_expected.withinMs, found)
            : wording("expected %1, found %2").arg(expected, found);
    return m_failure ? wording("%1: %2").arg(complaint, m_failure.text) : complaint;
}

double Expectation::seconds() const
{
    return static_cast<double>(m_endUs - m_startUs) / c_usPerSecond;
}

void Expectation::report(const Problem& place, Output* output) const
{
    const auto json = [this](const char* type) {
        return Json{{"type", type},
                    {"tool", toJson(m_tool->objectName())},
                    {"channel", toJson(m_expected.channel.id)},
                    {"expected", m_expected.level},
                    {"found", m_found ? Json(*m_found) : Json()},
                    {"seconds", seconds()}};
    };
    if (isMet()) {
        output->write([&] { return json("expectation"); }, [this] { return m_expected.text(); });
        return;
    }
    Problem problem = place;
    problem.text = complaint();
    diagnostic(problem.toString());
    output->json([&] {
        Json failure = json("failure");
        failure["kind"] = m_failure ? toJson(m_failure.kindName()) : Json("unexpectedLevel");
        failure["reason"] = toJson(problem.text.english());
        addPlace(place, &failure);
        return failure;
    });
}
