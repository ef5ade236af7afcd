"""Who may write and read what at a fleet's broker, by the rules that are made for it."""

import pathlib
import threading

from conftest import HOST, Bridge, Broker, Client, SubscribeOptions, paho
from programs import Process

RULES = pathlib.Path(__file__).parents[2] / "packaging" / "mosquitto" / "acl"


class User(Client):
    def __init__(self, port, name, *filters):
        self.messages, self.changed, self.paho = [], threading.Condition(), paho.Client(name, protocol=paho.MQTTv5)
        self.paho.on_message = self.take
        self.paho.username_pw_set(name)
        self.paho.connect(HOST, port)
        self.paho.loop_start()
        self.paho.subscribe([(each, SubscribeOptions(1, noLocal=True)) for each in filters])


class UserBridge(Bridge):
    def __init__(self, camera, port, name):
        self.process = Process(
            *camera.beside("ZVMQTT", "--broker", f"{HOST}:{port}", "--id", name, "--username", name))


def test_a_camera_has_its_own_topics_alone(camera, start, tmp_path):
    (tmp_path / "rules").write_bytes(RULES.read_bytes())
    port = start(Broker, lines=("allow_anonymous true", f"acl_file {tmp_path / 'rules'}")).port
    home, operator = start(User, port, "home", "homeassistant/#"), start(User, port, "operator", "zv/#")
    start(UserBridge, camera, port, "cam-a")
    operator.until("zv/cam-a/link", "up")
    home.until("homeassistant/select/cam-a/setting_3/config")
    other = start(User, port, "cam-b", "zv/#", "homeassistant/#")
    assert operator.ask("zv/cam-a/set/bogus", "5", response="zv/cam-a/response/operator")["status"] == 404
    operator.send("zv/cam-b/set/3", "5")
    other.until("zv/cam-b/set/3")
    forged = "zv/cam-a/status", "zv/cam-a/set/3", "homeassistant/select/cam-a/setting_3/config"
    for topic in (*forged, "zv/cam-b/status"):
        other.send(topic, "forged", response=None)
    operator.until("zv/cam-b/status", "forged")
    assert {message.topic for message in other.messages} == {"zv/cam-b/set/3"}
    assert "forged" not in [value for user in (home, operator) for topic in forged for value in user.on(topic)]
