#pragma once

#include <devices/broker_message.h>

class Bench;

/// The message that shows the rig on home-automation dashboards by itself: the MQTT discovery of Home
/// Assistant, one device whose components are the lines. Those that can be set are switches and numbers, all
/// others, and all of a rig that takes no orders, sensors.
BrokerMessage homeAnnouncement(const Bench& bench, const QString& rig, bool takesOrders);
