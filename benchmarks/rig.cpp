#include "rig.h"

#include <channel_entry.h>
#include <plugin_management/d_plugin_loader.h>

#include <QCoreApplication>

namespace {

const IPlugin& builtPlugin()
{
    static const DPluginLoader loader(QStringLiteral(PLUGIN_FILE));
    if (loader.prototype() == nullptr) {
        qFatal("%s", qPrintable(loader.error().english()));
    }
    return *loader.prototype();
}

bool isOutput(int line)
{
    return line % 2 == 0;
}

QString lineName(int line)
{
    return QStringLiteral("line%1").arg(line);
}

SimulatedBoardSetup setupOf(int lines, const QVector<SimulatedBoardSetup::Fault>& faults)
{
    SimulatedBoardSetup setup;
    setup.faults = faults;
    for (int line = 0; line < lines; ++line) {
        SimulatedBoardSetup::Line made;
        made.line = {lineName(line), DLine::Kind::Digital,
                     isOutput(line) ? DLine::Direction::Out : DLine::Direction::In};
        setup.lines.append(made);
    }
    return setup;
}

QVariantMap configurationOf(int lines)
{
    QVariantList channels;
    for (int line = 0; line < lines; ++line) {
        channels.append(Rig::channelEntry(line));
    }
    return {{QStringLiteral("name"), QStringLiteral("Benchmark")},
            {QStringLiteral("id"), QStringLiteral("{4b7a2f10-0000-4000-8000-0000000000b0}")},
            {QStringLiteral("channels"), channels}};
}

} // namespace

Rig::Rig(int lines, const QVector<SimulatedBoardSetup::Fault>& faults, DevicePlace place)
    : m_board(makeSimulatedBoard(setupOf(lines, faults), &m_scheduler, place))
    , m_tool(configurationOf(lines), builtPlugin(), m_board.get())
{
    m_board->open();
    while (!m_board->isConnected()) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
}

QString Rig::channel(int line)
{
    return QStringLiteral("CHANNEL_%1").arg(line);
}

QVariantMap Rig::channelEntry(int line)
{
    const bool output = isOutput(line);
    return ::channelEntry(channel(line),
                          output ? QStringLiteral("digitalInput") : QStringLiteral("digitalOutput"),
                          output ? QStringLiteral("out") : QStringLiteral("in"), lineName(line));
}

std::unique_ptr<DOrder> Rig::order(const QString& command, const QVariantMap& arguments)
{
    return std::make_unique<DOrder>(&m_tool, command, arguments);
}

std::unique_ptr<DOrder> Rig::listener(int line, const QString& edge, int* events)
{
    auto listener = order(QStringLiteral("startListening"),
                          {{QStringLiteral("channel"), channel(line)}, {QStringLiteral("edge"), edge}});
    QObject::connect(listener.get(), &DOrder::eventReceived, listener.get(), [events] { ++*events; });
    listener->start();
    QCoreApplication::sendPostedEvents();
    return listener;
}

void Rig::toggle(int line)
{
    m_board->setInput(line, 1 - m_board->level(line).level);
}
