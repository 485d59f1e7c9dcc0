#!/usr/bin/python3
"""Sends orders to a rig with a client of the Paho project, and writes what is answered to each.

    tests/fleet/paho_orders.py PORT TOPIC ORDER…

All orders are sent at once. Each line of the output is the number of an order, from 0, and a message of its answer. The
end is when each has been answered to its final line, and one more that was sent after them.
"""

import json
import sys

import paho.mqtt.client as mqtt
from paho.mqtt.packettypes import PacketTypes
from paho.mqtt.properties import Properties

ANSWERS = "answers/paho"


def is_final(payload):
    return json.loads(payload)["type"] in ("result", "failure")


class Orders(mqtt.Client):
    def __init__(self, topic, orders):
        super().__init__(protocol=mqtt.MQTTv5)
        self.topic = topic
        self.orders = orders
        self.unanswered = set(range(len(orders)))
        self.on_connect = lambda *_: self.subscribe(ANSWERS, qos=1)
        self.on_subscribe = lambda *_: [self.send(number) for number in self.unanswered]
        self.on_message = lambda _client, _data, message: self.take(message)

    def send(self, number):
        """The number is the correlation data: with a zero byte, which no text holds."""
        properties = Properties(PacketTypes.PUBLISH)
        properties.ResponseTopic = ANSWERS
        properties.CorrelationData = number.to_bytes(2, "big")
        properties.MessageExpiryInterval = 10
        order = self.orders[number] if number < len(self.orders) else '{"command":"after all others"}'
        self.publish(self.topic, order, qos=1, properties=properties)

    def take(self, message):
        number = int.from_bytes(message.properties.CorrelationData, "big")
        if number == len(self.orders):
            self.disconnect()
            return
        print(number, message.payload.decode(), flush=True)
        if is_final(message.payload):
            self.unanswered.discard(number)
            if not self.unanswered:
                self.send(len(self.orders))


def main(port, topic, *orders):
    client = Orders(topic, orders)
    client.connect("127.0.0.1", int(port))
    client.loop_forever()


main(*sys.argv[1:])
