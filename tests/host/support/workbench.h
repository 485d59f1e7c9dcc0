#pragma once

#include "channel_entry.h"
#include "literals.h"
#include "manual_scheduler.h"
#include "recording_device.h"
#include "scripted_plugin.h"

#include <plugin_management/d_order.h>
#include <plugin_management/d_tool.h>

#include <memory>

/// One tool of a scripted plugin with one command, "work", and an open recording device.
struct Workbench
{
    /// Makes the tool; fill gives the command's script its declarations and deeds.
    explicit Workbench(const std::function<void(CommandScript&)>& fill = {});
    ~Workbench();
    Q_DISABLE_COPY(Workbench)

    /// A configuration with the name "Bench" and one channel, "LAMP", linked to "line0" with direction "out".
    static QVariantMap configuration();

    /// Prepares an order of "work".
    std::unique_ptr<DOrder> order(const QVariantMap& arguments = {});
    /// Prepares one and starts it.
    std::unique_ptr<DOrder> start(const QVariantMap& arguments = {});
    /// Answers the latest request and delivers the answer.
    void answer(const QVariantMap& reply = {});
    /// Working instances of the command that exist now.
    int workingCommands() const;

    ManualScheduler scheduler;
    std::shared_ptr<CommandScript> script;
    std::unique_ptr<RecordingDevice> device;
    std::unique_ptr<DTool> tool;
    /// What the orders that were made here told at their ends.
    QVector<bool> ended;
};

/// Delivers what waits in the event loop and what follows from it, without waiting for timers.
void deliver();
