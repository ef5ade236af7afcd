"""What the tests of the MQTT side share: a broker, bridges, and a client that hears everything.

ZVSIM, ZVCAM and ZVMQTT name the programs. A module has one simulated camera, one mosquitto and one bridge; each test
gets them mended.
"""

import collections
import itertools
import json
import os
import pathlib
import re
import shutil
import socket
import threading
import urllib.request
from types import SimpleNamespace

import pytest
from programs import (  # noqa: F401, among it fixtures
    PATIENCE, Camera, Process, camera, pytest_sessionfinish, skip_all, the_camera, wait_until)

try:
    from paho.mqtt import client as paho
    from paho.mqtt.packettypes import PacketTypes
    from paho.mqtt.properties import Properties
    from paho.mqtt.subscribeoptions import SubscribeOptions
except ImportError as missing:
    skip_all(missing)
MOSQUITTO = shutil.which("mosquitto", path=os.environ["PATH"] + ":/usr/sbin") or skip_all("No program named mosquitto")

LONG = bool(os.environ.get("ZVMQTT_LONG"))  # also what takes many seconds, and many cameras
HOST = "127.0.0.1"
FIRST_USER = 62100  # of those that cameras beside the module's own run as: each user has bytes for few queues
NAMESPACE = str(pathlib.Path(__file__).parents[2] / "packaging" / "private-namespace.sh")
OUTAGE = r"zvmqtt: [^\n]+\n"  # what a bridge tells of each


def free_port():
    with socket.create_server((HOST, 0)) as server:
        return server.getsockname()[1]


class Broker:
    """A mosquitto. Everybody may use its port; each door is a further one, with the configuration's lines for it."""

    def __init__(self, folder, *doors, lines=("allow_anonymous true",)):
        self.port, *self.doors = (free_port() for _ in range(len(doors) + 1))
        self.config = folder / f"broker{self.port}.conf"
        listeners = [(f"listener {port} {HOST}", *own) for port, own in zip((self.port, *self.doors), (lines, *doors))]
        self.config.write_text("\n".join(("per_listener_settings true", "set_tcp_nodelay true", "user root",
                                          *itertools.chain(*listeners))) + "\n", encoding="utf-8")
        self.start()

    def start(self):
        self.process = Process(MOSQUITTO, "-c", str(self.config))
        wait_until(lambda: "running" in self.process.told(), "the broker runs")

    def end(self):
        self.process.thaw()
        self.process.end(told=".*", said="")


class Client:
    """A client of a broker, which keeps each message with its value, of JSON or of text; not those that it sent."""

    numbers = itertools.count()

    def __init__(self, port, *filters):
        self.messages, self.changed = [], threading.Condition()
        self.paho = paho.Client(f"test-{next(self.numbers)}", protocol=paho.MQTTv5)
        self.paho.on_message = self.take
        self.paho.connect(HOST, port)
        self.paho.socket().setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)
        self.paho.loop_start()
        for each in filters or ("zv/#", "answers/#"):
            self.paho.subscribe(each, options=SubscribeOptions(1, noLocal=True, retainAsPublished=True))

    def take(self, _client, _data, message):
        try:
            value = json.loads(message.payload)
        except ValueError:
            value = message.payload.decode(errors="replace")
        with self.changed:
            self.messages.append(SimpleNamespace(
                topic=message.topic, value=value, retain=message.retain, qos=message.qos,
                correlation=getattr(message.properties, "CorrelationData", None)))
            self.changed.notify_all()

    def wait(self, condition, what):
        """Returns the first true value that the condition gives."""
        with self.changed:
            found = self.changed.wait_for(condition, PATIENCE)
        assert found, f"waited {PATIENCE} s for {what}"
        return found

    def on(self, topic):
        """The values so far."""
        return [message.value for message in self.messages if message.topic == topic]

    def until(self, topic, wanted=lambda value: True):
        """What the topic holds once it is this, has these members, or is so."""
        def fits(value):
            present = {**value, **wanted} if isinstance(wanted, dict) else wanted
            return wanted(value) if callable(wanted) else value == present

        return self.wait(lambda: [value for value in self.on(topic)[-1:] if fits(value)], topic)[0]

    def send(self, topic, payload, retain=False, response="answers/here"):
        """A request, or what else there is to publish. Returns its correlation data."""
        properties, correlation = Properties(PacketTypes.PUBLISH), b"\0c%d" % next(self.numbers)
        if response:
            properties.ResponseTopic, properties.CorrelationData = response, correlation
        payload = payload if isinstance(payload, (bytes, str)) else json.dumps(payload)
        sent = self.paho.publish(topic, payload, 1, retain, properties)
        if retain:
            sent.wait_for_publish(PATIENCE)  # it lies there
        return correlation

    def answer(self, correlation):
        """Of a request."""
        return self.wait(lambda: [message.value for message in self.messages if message.correlation == correlation],
                         "an answer")[0]

    def ask(self, topic, payload, **more):
        return self.answer(self.send(topic, payload, **more))

    def end(self):
        self.paho.disconnect()
        self.paho.loop_stop()


class Bridge:
    """A zvmqtt of a camera. `base` is what its topics lie below."""

    def __init__(self, camera, port, *arguments, base=None):
        arguments = ("--broker", f"{HOST}:{port}", "--metrics", f"{HOST}:0", "--discovery", "off", *arguments)
        own = ("--id", base.removeprefix("zv/")) if base else ()
        self.process = Process(*camera.beside("ZVMQTT", *own, *arguments))
        self.base = base or f"zv/{camera.zvcam('info')['serial_number']}"
        serving = re.match(r"zvmqtt: metrics at (\S+)\n", self.process.greeting())
        assert serving, self.process.told()
        self.url = serving[1]

    def topic(self, name):
        return f"{self.base}/{name}"

    def connections(self):
        """How often it said that it is connected."""
        return len(re.findall(rf"^zvmqtt: connected to \S+:\d+ as {self.base}$", self.process.said(), re.MULTILINE))

    def metrics(self):
        """The values by name and labels."""
        parser = pytest.importorskip("prometheus_client.openmetrics.parser")
        with urllib.request.urlopen(self.url, timeout=PATIENCE) as answer:
            families = parser.text_string_to_metric_families(answer.read().decode())
            return collections.Counter({" ".join((sample.name, *sample.labels.values())): sample.value
                                        for family in families for sample in family.samples})

    def polls(self):
        return self.metrics()["zv_polls_total done"]

    def end(self, told="", **expected):
        """In order, also while camera or broker hang."""
        self.process.end(patience=2, said="(zvmqtt: [^\n]*\n)*", told=told, **expected)


@pytest.fixture(scope="session")
def broker(tmp_path_factory):
    broker = Broker(tmp_path_factory.mktemp("broker"))
    yield broker
    broker.end()


@pytest.fixture(scope="session")
def the_bridge(the_camera, broker):
    the_camera.mend()
    bridge = Bridge(the_camera, broker.port, "--interval", "50")
    yield bridge
    bridge.end()


@pytest.fixture
def client(broker):
    client = Client(broker.port)
    yield client
    client.end()


@pytest.fixture
def bridge(camera, client, the_bridge):
    """The module's bridge, connected and with its camera."""
    client.until(the_bridge.topic("availability"), "online")
    client.until(the_bridge.topic("link"), "up")
    return the_bridge


@pytest.fixture
def start(camera, tmp_path):
    """Starts a Broker, Client or Bridge with its arguments, whose end comes after the test."""
    started = []

    def starting(kind, *arguments, **more):
        first = {Broker: (tmp_path,), Bridge: (more.pop("camera", camera),)}.get(kind, ())
        started.append(kind(*first, *arguments, **more))
        return started[-1]

    yield starting
    for one in reversed(started):
        if isinstance(one, Client) or one.process.running():
            one.end(**{"told": ".*"} if isinstance(one, Bridge) else {})


@pytest.fixture
def more_cameras():
    """A function that starts a number of cameras, each in a namespace and of a user of its own."""
    if os.geteuid() != 0:
        pytest.skip("only root can give each camera a user of its own, whose queues have room")
    cameras = []

    def starting(number):
        for user in range(FIRST_USER, FIRST_USER + number):
            as_user = ("setpriv", f"--reuid={user}", f"--regid={user}", "--clear-groups",
                       "env", "GCOV_PREFIX=/tmp")  # where it may write what is counted for coverage
            cameras.append(Camera(
                ("env", "--unset=ZVCTRL_NAMESPACE", NAMESPACE, *as_user),
                lambda pid, as_user=as_user: ("nsenter", f"--target={pid}", "--ipc", "--mount", *as_user)))
            cameras[-1].start()
        return cameras

    yield starting
    for camera in cameras:
        camera.end()
