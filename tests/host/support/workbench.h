#pragma once

#include "channel_entry.h"
#include "literals.h"
#include "manual_scheduler.h"
#include "recording_device.h"
#include "scripted_plugin.h"

#include <plugin_management/d_order.h>
#include <plugin_management/d_tool.h>

#include <QCoreApplication>

#include <memory>

/// Delivers what waits in the event loop and what follows from it, without waiting for timers.
inline void deliver()
{
    constexpr int longestChain = 8; // each pass leaves to the next what it posts itself
    for (int pass = 0; pass < longestChain; ++pass) {
        QCoreApplication::sendPostedEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
}

/// One tool of a scripted plugin with one command, "work", and an open recording device.
struct Workbench
{
    /// Makes the tool; fill gives the command's script its declarations and deeds.
    explicit Workbench(const std::function<void(CommandScript&)>& fill = {})
        : script(std::make_shared<CommandScript>())
        , device(std::make_unique<RecordingDevice>(&scheduler))
    {
        if (fill) {
            fill(*script);
        }
        device->open();
        tool = std::make_unique<DTool>(configuration(), ScriptedPlugin({script}), device.get());
    }
    Q_DISABLE_COPY(Workbench)

    /// A configuration with the name "Bench" and one channel, "LAMP", linked to "line0" with direction "out".
    static QVariantMap configuration()
    {
        const QVariantMap lamp = channelEntry("LAMP"_s, "digitalInput"_s, "out"_s, "line0"_s);
        return {{"name"_s, "Bench"_s},
                {"id"_s, "{11111111-2222-3333-4444-555555555555}"_s},
                {"channels"_s, QVariantList{lamp}}};
    }

    /// Prepares an order of "work".
    std::unique_ptr<DOrder> order(const QVariantMap& arguments = {})
    {
        auto made = std::make_unique<DOrder>(tool.get(), "work"_s, arguments);
        QObject::connect(made.get(), &DOrder::finished, [this](bool success) { ended.append(success); });
        return made;
    }

    /// Prepares one and starts it.
    std::unique_ptr<DOrder> start(const QVariantMap& arguments = {})
    {
        auto started = order(arguments);
        started->start();
        return started;
    }

    /// Answers the latest request and delivers the answer.
    void answer(const QVariantMap& reply = {})
    {
        device->reply(device->lastId(), reply);
        deliver();
    }

    /// Working instances of the command that exist now.
    int workingCommands() const { return script->alive - (tool != nullptr ? 1 : 0); }

    ManualScheduler scheduler;
    std::shared_ptr<CommandScript> script;
    std::unique_ptr<RecordingDevice> device;
    std::unique_ptr<DTool> tool;
    /// What the orders that were made here told at their ends.
    QVector<bool> ended;
};
