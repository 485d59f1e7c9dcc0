#include "workbench.h"

#include <QCoreApplication>

Workbench::Workbench(const std::function<void(CommandScript&)>& fill)
    : script(std::make_shared<CommandScript>())
    , device(std::make_unique<RecordingDevice>(&scheduler))
{
    if (fill) {
        fill(*script);
    }
    device->open();
    tool = std::make_unique<DTool>(configuration(), ScriptedPlugin({script}), device.get());
}

Workbench::~Workbench() = default;

QVariantMap Workbench::configuration()
{
    const QVariantMap lamp = channelEntry("LAMP"_s, "digitalInput"_s, "out"_s, "line0"_s);
    return {{"name"_s, "Bench"_s},
            {"id"_s, "{11111111-2222-3333-4444-555555555555}"_s},
            {"channels"_s, QVariantList{lamp}}};
}

std::unique_ptr<DOrder> Workbench::order(const QVariantMap& arguments)
{
    auto made = std::make_unique<DOrder>(tool.get(), "work"_s, arguments);
    QObject::connect(made.get(), &DOrder::finished, [this](bool success) { ended.append(success); });
    return made;
}

std::unique_ptr<DOrder> Workbench::start(const QVariantMap& arguments)
{
    auto started = order(arguments);
    started->start();
    return started;
}

void Workbench::answer(const QVariantMap& reply)
{
    device->reply(device->lastId(), reply);
    deliver();
}

int Workbench::workingCommands() const
{
    return script->alive - (tool != nullptr ? 1 : 0);
}

void deliver()
{
    constexpr int longestChain = 8; // each pass leaves to the next what it posts itself
    for (int pass = 0; pass < longestChain; ++pass) {
        QCoreApplication::sendPostedEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
}
