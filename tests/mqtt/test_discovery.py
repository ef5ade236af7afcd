"""What home automation is told of a camera. It is played here, by the documents alone, and renders their templates."""

import re

import pytest
from conftest import HOST, Broker, Client
from programs import Process, wait_until

# Of home automation's schema: what a component has to have, and what else it is given here.
COMMON = "name unique_id availability availability_mode device origin"
COMPONENTS = {
    "select": ("command_topic options", "command_template state_topic value_template qos entity_category"),
    "text": ("command_topic", "command_template state_topic value_template qos entity_category min max pattern"),
    "button": ("command_topic", "payload_press qos"),
    "sensor": ("state_topic", "value_template device_class unit_of_measurement state_class"),
    "binary_sensor": ("state_topic", "value_template device_class qos entity_category"),
}
UNITS = {"battery": "%", "data_size": "KiB", "duration": "s", None: "photos"}  # by a sensor's device class


class Home(Client):
    def fill(self, template, **values):
        jinja2 = pytest.importorskip("jinja2")
        return jinja2.Environment(undefined=jinja2.StrictUndefined).from_string(template).render(values)

    def documents(self):
        """The last of each topic, by component, node and object."""
        found = [(re.fullmatch(r"home/(\w+)/([\w-]+)/([\w-]+)/config", message.topic, re.ASCII), message.value)
                 for message in list(self.messages) if message.topic.endswith("/config")]
        return {topic.groups(): value for topic, value in found}

    def entity(self, name):
        return {own: document for (_, _, own), document in self.documents().items()}[name]

    def render(self, topic, template="{{ value }}"):
        value = self.until(topic)
        return self.fill(template, value=value, value_json=value)

    def state(self, name):
        return self.render(self.entity(name)["state_topic"], self.entity(name)["value_template"])

    def is_available(self, name):
        return all(self.render(*each.values()) == "online" for each in self.entity(name)["availability"])

    def order(self, name, value=""):
        entity = self.entity(name)
        template = entity.get("command_template", entity.get("payload_press"))
        self.send(entity["command_topic"], self.fill(template, value=value), response="")


@pytest.fixture
def settle(camera, start):
    """Starts a broker and a bridge of each id, and returns the home that they make themselves known to."""
    bridges = []

    def settling(*ids):
        port = start(Broker).port
        bridges.extend(Process(*camera.beside("ZVMQTT", *f"--broker {HOST}:{port} --discovery home --id {own}".split()))
                       for own in ids)
        home = start(Home, port, "zv/#", "home/#")
        wait_until(lambda: len(home.documents()) == 102 * len(ids), "all are known")
        return home

    yield settling
    for bridge in bridges:
        bridge.end()


def test_two_cameras_are_told_by_the_schema(settle):
    home = settle("rig/1", "rig_2f1")
    known, devices, ids, names = home.documents(), {}, set(), set()
    for (component, node, _), document in known.items():
        base = {"rig_2f1": "zv/rig/1", "rig__2f1": "zv/rig_2f1"}[node]
        required, possible = (set(f"{COMMON} {words}".split()) for words in COMPONENTS[component])
        assert required <= document.keys() <= required | possible, document
        assert [each["topic"] for each in document["availability"]][:1] == [f"{base}/availability"]
        assert all(document.get(key, base).startswith(base) for key in ("state_topic", "command_topic"))
        assert component != "sensor" or document["unit_of_measurement"] == UNITS[document.get("device_class")]
        assert document["origin"].keys() == {"name", "sw_version"}
        assert devices.setdefault(node, document["device"]) == document["device"], "one device has them all"
        ids.add(document["unique_id"])
        names.add((node, document["name"]))
    assert len(ids) == len(names) == len(known)
    assert devices["rig_2f1"]["name"] == "Simulated camera 62 rig/1" != devices["rig__2f1"]["name"]
    assert devices["rig_2f1"]["identifiers"] != devices["rig__2f1"]["identifiers"]
    assert all(message.qos == 1 and message.retain for message in home.messages if message.topic.startswith("home/"))
    home.messages.clear()
    home.send("home/status", "online", response="")
    wait_until(lambda: home.documents() == known, "all are told anew")


def test_a_camera_is_shown_and_operated(camera, settle):
    home = settle("cam")

    def check_settings():
        for setting in home.until("zv/cam/settings"):
            told, name = camera.zvcam("get", setting), f"setting_{setting}"
            assert home.entity(name)["options"] == [option["key"] for option in told["options"] if option["available"]]
            assert home.is_available(name) == told["available"]
            if told["available"]:
                present = told["present"]
                assert home.state(name) == (present.get("key", "None") if present["available"] else "None")

    check_settings()
    # An order, and whether an option of a setting is offered then. HDR leaves its setting without any.
    for name, value, other, key, offered in (
            ("setting_2", "1080", 3, "240", True), ("setting_2", "4K", 3, "240", False),
            ("setting_184", "HDR", 145, "AUTO", False), ("setting_184", "STANDARD", 145, "AUTO", True),
            *(("setting_168_time", text, 145, "AUTO", True) for text in ("7:30", "23:05", "off"))):
        home.order(name, value)
        wait_until(lambda: home.state(name) == {"7:30": "07:30"}.get(value, value), f"{name} is {value}")
        wait_until(lambda: (key in home.entity(f"setting_{other}")["options"]) == offered, "the offer follows")
        assert home.is_available(f"setting_{other}") == (value != "HDR")
    check_settings()
    for action, shown in (("start", "ON"), ("stop", "OFF")):
        home.order(f"capture_{action}")
        wait_until(lambda: home.state("status_10") == shown, f"recording is {shown}")
    for number in ("13", "34", "35", "54", "70"):
        wait_until(lambda: int(home.state(f"status_{number}")) == camera.zvcam("status")["status"][number], number)
    assert home.state("link") == "ON"
    low = home.entity("low_battery")["value_template"]
    for shown, present, bars, percent in (("OFF", 1, 3, 87), ("ON", 1, 1, 20), ("OFF", 1, 4, 5), ("OFF", 0, 0, 0)):
        assert home.fill(low, value_json={"1": present, "2": bars, "70": percent}) == shown
