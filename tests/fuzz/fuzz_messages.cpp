#include "support/fuzzer_process.h"
#include "support/require.h"

#include <configuration/bench_configuration.h>
#include <fleet/rig_order.h>
#include <literals.h>
#include <rig_device.h>

#include <set>

// Lines of any bytes as messages from a broker: the first character says to which topic, the rest is the
// payload. A rig reads orders; a device reads what its rig tells, in any order; a bench is made of what a rig
// says that it is.

namespace {

RigDeviceSetup rigSetup()
{
    RigDeviceSetup setup;
    setup.broker = {"127.0.0.1"_s, 1883, false, "r"_s};
    for (const char* name : {"a", "b", "c"}) {
        RigDeviceSetup::Line line;
        line.line.name = QString::fromLatin1(name);
        line.line.kind = line.line.name == "b"_s ? DLine::Kind::Analog : DLine::Kind::Digital;
        line.there = line.line.name;
        setup.lines.append(line);
    }
    return setup;
}

/// Holds a device to what its front relies on.
class Rules final : public LineListener
{
public:
    explicit Rules(const QVector<DLine>& lines)
        : m_lines(lines)
    {}

    void requestAnswered(quint64 id, const QVariantMap&, qint64) override { end(id); }
    void requestRefused(quint64 id, const DFailure& failure) override
    {
        require(failure && !failure.text.isEmpty(), "a request is refused for a reason");
        end(id);
    }
    void eventTold(quint64, const QVariantMap&, qint64) override { require(false, "nobody listens"); }
    void eventsLeftOut(quint64, quint64) override { require(false, "nobody listens"); }
    void lineTold(int line, const LineLevel& level) override
    {
        require(level.level >= 0 && level.level <= m_lines.at(line).highestLevel(),
                "levels stay in their range");
    }
    void blinkingTold(int, bool) override { require(false, "lines blink at the rig"); }
    void changesLeftOut(quint64 count, qint64, const QMap<int, LineLevel>& levels) override
    {
        require(count > 0, "what is told as lost was lost");
        for (auto level = levels.cbegin(); level != levels.cend(); ++level) {
            lineTold(level.key(), *level);
        }
    }
    void stateTold(DDevice::State state, const DWording& problem, qint64) override
    {
        require((state == DDevice::State::Connected) == problem.isEmpty(), "a device is lost for a reason");
    }
    void failureTold(const DWording& text) override { require(!text.isEmpty(), "a failure is told"); }

private:
    void end(quint64 id) { require(m_ended.insert(id).second, "a request is answered once"); }

    const QVector<DLine> m_lines;
    std::set<quint64> m_ended;
};

void readOrder(const QByteArray& payload)
{
    QString problem;
    const std::optional<RigOrder> order = readRigOrder(payload, &problem);
    require(order.has_value() == problem.isEmpty(), "an order is taken, or refused for a reason");
    if (order) {
        const bool isOfLease = order->kind == RigOrder::Kind::Lease || order->kind == RigOrder::Kind::Release;
        require(order->name.isEmpty() == isOfLease, "what is not about the lease has a name");
        require(order->kind != RigOrder::Kind::Lease || order->minutes >= 1, "a lease lasts");
    } else {
        require(!problem.contains(QLatin1Char('\n')), "a mistake is told in one line");
    }
}

void readChanges(const QByteArray& payload)
{
    if (const auto changes = RigChanges::fromJson(payload)) {
        const auto again = RigChanges::fromJson(changes->toJson());
        require(again && again->toJson() == changes->toJson(), "changes are read as they are written");
        require(changes->end() > changes->lost, "what is lost came before");
    }
}

void readDescription(const QByteArray& payload)
{
    QVector<Problem> problems;
    const auto bench = readRigDescription(payload, rigSetup().broker, {}, &problems);
    require(bench.has_value() == problems.isEmpty(), "a description is taken, or refused for a reason");
}

void readTopic(const QByteArray& topic)
{
    const RigTopics topics("r"_s);
    require(!topics.mayAnswer(topic) || (topic != topics.order() && !topic.contains('#')),
            "no answer is an order");
    RigTopics::rigOf(topic);
    topics.lineOfSet(topics.lineSet(QString::fromUtf8(topic)));
}

void tell(RigDevice* device, char topic, const QByteArray& payload)
{
    const RigTopics topics("r"_s);
    switch (topic) {
    case 'o':
        readOrder(payload);
        break;
    case 't':
        readTopic(payload);
        break;
    case 'd':
        readDescription(payload);
        device->take({topics.description(), payload});
        break;
    case 's':
        device->take({topics.state(), payload});
        break;
    case 'e':
        readChanges(payload);
        device->take({topics.events(), payload});
        break;
    case 'h':
        readChanges(payload);
        device->take({topics.answer("me"), payload, false, {}, "history"});
        break;
    default:
        device->take({topics.answer("me"), payload, false, {}, QByteArray(1, topic)});
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const quint8* bytes, std::size_t size)
{
    beginInput();
    Rules rules(rigLines(rigSetup()));
    RigDevice device(rigSetup(), &fuzzerTime(), &rules);
    device.open(); // nothing comes of it: the time stands still
    quint64 request = 0;
    const auto text = QByteArray::fromRawData(reinterpret_cast<const char*>(bytes), static_cast<int>(size));
    for (const QByteArray& line : text.split('\n')) {
        if (!line.isEmpty()) {
            device.request(++request, "getValue"_s, {{"channel"_s, "a"_s}});
            tell(&device, line.at(0), line.mid(1));
        }
    }
    device.close();
    return 0;
}
