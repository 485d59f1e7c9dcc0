"""A broker, rigs and a reader, for what is tried and measured by hand.

The reader knows rigs by what docs/fleet.md says alone, and is a client of the Paho project.
"""

import json
import pathlib
import socket
import subprocess
import time

import paho.mqtt.client as mqtt
from paho.mqtt.packettypes import PacketTypes
from paho.mqtt.properties import Properties

ROOT = pathlib.Path(__file__).resolve().parents[3]
BENCH = ROOT / "build" / "release" / "bin" / "appvantor"


def wait_until(holds, seconds=60):
    end = time.monotonic() + seconds
    while not holds():
        if time.monotonic() > end:
            raise SystemExit("this took too long")
        time.sleep(0.01)


class Broker:
    """A mosquitto of its own, on a free port of the loopback address."""

    def __init__(self, folder):
        with socket.socket() as free:
            free.bind(("127.0.0.1", 0))
            self.port = free.getsockname()[1]
        self.file = folder / "broker.conf"
        self.file.write_text(f"listener {self.port} 127.0.0.1\nallow_anonymous true\nmax_queued_messages 0\n"
                             "user root\nlog_type none\n")
        self.start()

    def start(self):
        self.process = subprocess.Popen(["/usr/sbin/mosquitto", "-c", self.file], stderr=subprocess.DEVNULL)
        wait_until(self.answers)

    def answers(self):
        with socket.socket() as client:
            return client.connect_ex(("127.0.0.1", self.port)) == 0

    def kill(self):
        self.process.kill()
        self.process.wait()


def noise_board(file, noisy, interval_ms, quiet=0):
    """Writes the configuration of a bench with so many lines that change each interval, and some that stay."""
    lines = [{"name": f"n{i}", "kind": "analog",
              "waveform": {"shape": "noise", "intervalMs": interval_ms, "seed": i + 1}} for i in range(noisy)]
    lines += [{"name": f"q{i}"} for i in range(quiet)]
    channels = [{"id": line["name"].upper(), "name": line["name"], "visibility": "public",
                 "value": [{"id": "type", "value": "analogOutput" if "kind" in line else "digitalOutput"},
                           {"id": "direction", "value": "in"}, {"id": "link", "value": line["name"]}]}
                for line in lines]
    tool = {"name": "T", "id": "{4b7a1c6e-0d52-4f3b-9a51-6f0c2f9d7a10}", "plugin": "p_tool_gpio",
            "channels": channels}
    file.write_text(json.dumps({"device": {"type": "simulated", "lines": lines}, "tools": [tool]}))


def serve(broker, rig, configuration, *options):
    """Starts a rig; it ends with SIGTERM."""
    return subprocess.Popen([BENCH, "--config", configuration, *options, "serve", "--broker",
                             f"mqtt://127.0.0.1:{broker.port}/{rig}"],
                            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)


class Rig:
    """What a reader knows of a rig."""

    def __init__(self):
        self.state = None
        self.session = None
        self.next = 0
        self.is_current = False
        self.lost = 0


class Reader:
    """Hears every change of all rigs, once and in order, and is told how many there are that it cannot have.

    heard(rig, time, line, level) is called for each, from a thread of its own, as it comes.
    """

    def __init__(self, broker, heard):
        self.heard = heard
        self.rigs = {}
        self.client = mqtt.Client(protocol=mqtt.MQTTv5)
        self.client.reconnect_delay_set(1, 1)
        self.client.on_connect = self.connected
        self.client.on_message = lambda _client, _data, message: self.take(message)
        self.client.connect("127.0.0.1", broker.port)
        self.client.loop_start()

    def end(self):
        self.client.disconnect()
        self.client.loop_stop()

    def connected(self, client, *_):
        for rig in self.rigs.values():
            rig.is_current = False
        client.subscribe([(topic, 1) for topic in
                          ("appvantor/1/+/events", "appvantor/1/+/state", "answers/lab/+")])

    def ask(self, name):
        rig = self.rigs[name]
        properties = Properties(PacketTypes.PUBLISH)
        properties.ResponseTopic = f"answers/lab/{name}"
        question = {"session": rig.session, "from": rig.next}
        self.client.publish(f"appvantor/1/{name}/history", json.dumps(question), 1, properties=properties)

    def take(self, message):
        *_, name, what = message.topic.split("/")
        told = json.loads(message.payload)
        if message.topic.startswith("answers/"):
            self.take_history(what, told)
        elif what == "state":
            self.take_state(name, told)
        elif name in self.rigs and told["session"] == self.rigs[name].session:
            self.take_events(name, told)

    def take_state(self, name, told):
        rig = self.rigs.setdefault(name, Rig())
        rig.state = told["state"]
        if told["session"] != rig.session:
            rig.session, rig.next = told["session"], 0
        if rig.state == "online":
            rig.is_current = False
            self.ask(name)

    def take_events(self, name, told):
        rig = self.rigs[name]
        if rig.next > 0 and told["first"] <= rig.next + told["lost"]:
            self.apply(name, told)
            rig.is_current = True
        elif rig.is_current:
            rig.is_current = False
            self.ask(name)

    def take_history(self, name, told):
        rig = self.rigs[name]
        if rig.is_current or told["session"] != rig.session:
            return
        if "levels" in told:
            rig.next = told["first"]
        self.apply(name, told)
        rig.is_current = not told["e"]
        if told["e"]:
            self.ask(name)

    def apply(self, name, told):
        rig = self.rigs[name]
        rig.lost += max(0, told["first"] - rig.next)
        for number, (time_us, line, level) in enumerate(told["e"], told["first"]):
            if number >= rig.next:
                self.heard(name, told["t0"] + time_us, line, level)
                rig.next = number + 1
