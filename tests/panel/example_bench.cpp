#include "example_bench.h"

#include "panel_fixture.h"

namespace {

struct Kind
{
    DLine::Kind kind;
    DLine::Direction direction;
    const char* type;
    const char* direct;
};

/// Each fourth line is of the same kind.
const Kind& kindOf(int line)
{
    static const Kind kinds[] = {
        {DLine::Kind::Digital, DLine::Direction::Out, "digitalInput", "out"},
        {DLine::Kind::Digital, DLine::Direction::In, "digitalOutput", "in"},
        {DLine::Kind::Analog, DLine::Direction::In, "analogOutput", "in"},
        {DLine::Kind::Analog, DLine::Direction::Out, "analogInput", "out"},
    };
    return kinds[line % 4];
}

QString lineName(int line)
{
    static const char* names[] = {"do", "di", "ai", "ao"};
    return QLatin1String(names[line % 4]) + QString::number(line / 4);
}

struct Channel
{
    QString id;
    QString name;
};

Channel channelOf(int line)
{
    static const QVector<Channel> channels = {
        {QStringLiteral("START"), QStringLiteral("Start button")},
        {QStringLiteral("READY"), QStringLiteral("Ready lamp")},
        {QStringLiteral("PRESSURE"), QStringLiteral("Hydraulic pressure")},
        {QStringLiteral("SETPOINT"), QStringLiteral("Speed set point")},
        {QStringLiteral("E_STOP"), QStringLiteral("Emergency stop")},
        {QStringLiteral("ALARM"), QStringLiteral("Alarm horn")},
        {QStringLiteral("TEMP_1"), QStringLiteral("Bearing temperature")},
        {QStringLiteral("HEATER"), QStringLiteral("Heater power")},
        {QStringLiteral("DOOR"), QStringLiteral("Cabinet door contact")},
        {QStringLiteral("MOTOR"), QStringLiteral("Motor relay")},
        {QStringLiteral("CURRENT"), QStringLiteral("Motor current")},
        {QStringLiteral("DIMMER"), QStringLiteral("Dimmer")},
    };
    if (line < channels.size()) {
        return channels.at(line);
    }
    return {QStringLiteral("CH_%1").arg(line), QStringLiteral("Channel %1").arg(line)};
}

/// Asks for things and does not want to hear of them.
class Nobody final : public DDeviceClient
{
public:
    void requestReplied(quint64 id, const QVariantMap& reply) override
    {
        Q_UNUSED(id)
        Q_UNUSED(reply)
    }
    void requestFailed(quint64 id, const QString& reason) override
    {
        Q_UNUSED(id)
        Q_UNUSED(reason)
    }
};

Nobody nobody;
quint64 lastRequest = 1000000; // far from the numbers of the orders

} // namespace

ExampleBench::ExampleBench(int lines)
{
    SimulatedBoardSetup setup;
    QVariantList channels;
    for (int number = 0; number < lines; ++number) {
        const Kind& kind = kindOf(number);
        SimulatedBoardSetup::Line line;
        line.line = {lineName(number), kind.kind, kind.direction};
        if (number % 4 == 2) {
            Waveform wave;
            wave.shape = number % 12 == 2
                             ? Waveform::Shape::Sine
                             : (number % 12 == 6 ? Waveform::Shape::Noise : Waveform::Shape::Ramp);
            wave.low = wave.shape == Waveform::Shape::Noise ? 30000 : 6000;
            wave.high = wave.shape == Waveform::Shape::Noise ? 36000 : 58000;
            wave.periodUs = 2500000 + number * 70000;
            wave.intervalUs = 50000;
            wave.seed = static_cast<quint32>(number);
            line.waveform = wave;
        }
        setup.lines.append(line);
        const Channel channel = channelOf(number);
        QVariantMap entry =
            channelEntry(channel.id, QLatin1String(kind.type), QLatin1String(kind.direct), lineName(number));
        entry.insert(QStringLiteral("name"), channel.name);
        channels.append(entry);
    }
    setup.wires.append({0, 1, 300000, false});
    m_board = std::make_unique<SimulatedBoard>(setup, &m_scheduler);
    m_tool = std::make_unique<DTool>(toolEntry(channels, QStringLiteral("Front panel")), builtPlugin(),
                                     m_board.get());
}

void ExampleBench::play(qint64 us)
{
    constexpr qint64 stepUs = 50000;
    const int lines = m_board->lines().size();
    for (qint64 time = 0; time < us; time += stepUs) {
        const auto step = static_cast<int>(time / stepUs);
        for (int line = 0; line < lines; ++line) {
            const int period = 14 + line * 5 % 37;
            if (line % 4 == 2 || step % period != line % period) {
                continue;
            }
            const int on = step / period % 2 == 0 ? 1 : 0;
            if (line % 4 == 1) {
                m_board->setInput(line, on);
            } else {
                m_board->send(++lastRequest, QStringLiteral("setValues"),
                              {{QStringLiteral("channel"), lineName(line)},
                               {QStringLiteral("values"), line % 4 == 3 ? 9000 * (step / period % 7) : on}},
                              0, &nobody);
            }
        }
        QCoreApplication::processEvents();
        m_scheduler.advance(stepUs);
    }
    QCoreApplication::processEvents();
}
