"""What goes wrong between a bridge and its broker, what the program is given, and many cameras on one broker."""

import contextlib
import os
import signal
import socket
import subprocess
import threading
import time

import pytest
from conftest import HOST, LONG, NAMESPACE, OUTAGE, Bridge, Broker, Client, free_port
from programs import wait_until


@pytest.mark.parametrize("hangs", ("nothing", "camera", "broker", "bridge"))
def test_an_end_is_told_whatever_hangs(camera, start, hangs):
    broker = start(Broker)
    version = ("--protocol", "3") if hangs == "bridge" else ()  # whose sessions last until one is clean
    bridge, client = start(Bridge, broker.port, *version, base=f"zv/{hangs}"), start(Client, broker.port)
    client.until(bridge.topic("link"), "up")
    if hangs == "bridge":
        bridge.process.kill()  # its last will is left
    else:
        orders = []
        if hangs == "camera":
            camera.process.freeze()
            orders = [client.send(bridge.topic("set/3"), "8") for _ in range(3)]
            assert client.ask(bridge.topic("set/3"), "{")["status"] == 400, "at once, and it has the others"
        if hangs == "broker":
            broker.process.freeze()
        bridge.end(signal_number=signal.SIGINT if hangs == "nothing" else signal.SIGTERM)
        assert {client.answer(order)["status"] for order in orders} <= {503, 504}
        broker.process.thaw()
    client.until(bridge.topic("availability"), "offline")
    late = start(Client, broker.port)
    assert late.until(bridge.topic("availability")) == "offline", "it is retained"
    if hangs == "bridge":
        client.send(bridge.topic("set/3"), "{")
        start(Bridge, broker.port, *version, base=bridge.base)
        client.until(bridge.topic("availability"), "online")
        client.send(bridge.topic("command"), "{")
        client.until(bridge.topic("response"), {"request": "command"})
        assert len(client.on(bridge.topic("response"))) == 1, "the order before it is lost"
    elif hangs != "broker":
        assert client.on(bridge.topic("availability")) == ["online", "offline"], "it is told once"


# ---- A broker that is away


def test_a_broker_that_comes_late_or_again_hears_everything(camera, start):
    broker = start(Broker)
    bridge = start(Bridge, broker.port, base="zv/again")
    wait_until(lambda: bridge.connections() == 1)
    broker.process.kill()
    camera.zvcam("set", "3", "24")
    polls = bridge.polls()
    late = start(Bridge, broker.port, base="zv/late")
    wait_until(lambda: late.process.told() and late.polls() and bridge.polls() > polls, "cameras are polled on")
    assert bridge.metrics()["zv_broker_connected"] == 0
    broker.start()
    client = start(Client, broker.port)
    for one in (bridge, late):
        client.until(one.topic("settings"), {"3": 10})
        client.until(one.topic("availability"), "online")
        client.until(one.topic("link"), "up")
        for name in ("camera", "status", "available"):
            client.until(one.topic(name))
        assert client.ask(one.topic("set/3"), "24")["status"] == 200
        one.end(told=OUTAGE)
    assert (bridge.connections(), late.connections()) == (2, 1)


def test_a_frozen_broker_holds_nothing_up(camera, start):
    broker = start(Broker)
    bridge, client = start(Bridge, broker.port, "--interval", "50", base="zv/frozen"), start(Client, broker.port)
    client.until(bridge.topic("link"), "up")
    polls, memory = bridge.polls(), bridge.process.memory_kib()
    broker.process.freeze()
    end = time.monotonic() + (30 if LONG else 0.4)
    while time.monotonic() < end:
        for setting, option in (("3", "60"), ("3", "30"), ("3", "24"), ("2", "1080"), ("2", "4K")):
            camera.zvcam("set", setting, option)
    assert bridge.polls() - polls > (300 if LONG else 4)
    assert bridge.process.memory_kib() - memory < 4 << 10
    broker.process.thaw()
    for name, values in camera.zvcam("poll").items():
        client.until(bridge.topic(name), values)
    assert client.ask(bridge.topic("set/3"), "60")["status"] == 200
    bridge.end(told=f"({OUTAGE})?")


def test_an_answer_waits_for_a_broker_that_is_away(camera, start):
    broker = start(Broker)
    bridge, client = start(Bridge, broker.port, base="zv/answers"), start(Client, broker.port)
    client.until(bridge.topic("link"), "up")
    camera.fault("freeze:link=camera")
    client.send(bridge.topic("set/3"), "24", response=None)
    assert client.ask(bridge.topic("set/3"), "{")["status"] == 400, "at once, and it has the other"
    broker.process.kill()
    camera.fault("thaw")
    wait_until(lambda: camera.zvcam("get", "3")["present"]["key"] == "24", "it is carried out")
    bridge.process.freeze()
    broker.start()
    late = start(Client, broker.port)
    late.send("zv/late", "1", retain=True)  # so that it listens by now
    bridge.process.thaw()
    late.until(bridge.topic("response"), {"request": "set/3", "status": 200})
    bridge.end(told=OUTAGE)


def close_all(server, times, acknowledgement):
    """Closes each connection, with or without having acknowledged it."""
    with contextlib.suppress(OSError):  # of the server's end
        while True:
            with server.accept()[0] as connection:
                times.append(time.monotonic())
                connection.recv(4096)
                connection.sendall(acknowledgement)


def test_what_is_wrong_with_a_broker_is_told_once_and_mended_without_a_restart(start, tmp_path):
    path = {name: str(tmp_path / name)
            for name in ("right", "right.key", "wrong", "wrong.key", "ca", "passwords", "own")}
    for name in ("right", "wrong"):  # each is its own authority, the broker's certificate, and the bridge's
        subprocess.run(["openssl", "req", "-x509", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:P-256", "-nodes",
                        "-subj", "/CN=rig", "-addext", f"subjectAltName=IP:{HOST}", "-keyout", path[f"{name}.key"],
                        "-out", path[name]], check=True, capture_output=True)

    def lay(password, authority):
        subprocess.run(["mosquitto_passwd", "-b", "-c", path["passwords"], "rig", password], check=True)
        (tmp_path / "ca").write_bytes((tmp_path / authority).read_bytes())

    (tmp_path / "own").write_text("secret\n")
    lay("another", "wrong")
    broker = start(Broker, ("allow_anonymous false", f"password_file {path['passwords']}"), (
        "require_certificate true", "use_identity_as_username true", "allow_anonymous false", f"cafile {path['right']}",
        f"certfile {path['right']}", f"keyfile {path['right.key']}"))
    bridges = (start(Bridge, broker.doors[0], "--username", "rig", "--password-file", path["own"], base="zv/named"),
               start(Bridge, broker.doors[1], "--cafile", path["ca"], "--cert", path["right"],
                     "--key", path["right.key"], base="zv/signed"))
    closings = []
    for name, acknowledgement in (("closed", b""), ("cut", b"\x20\x03\0\0\0")):
        server, times = socket.create_server((HOST, free_port())), []
        threading.Thread(target=close_all, args=(server, times, acknowledgement), daemon=True).start()
        closings.append((server, times, start(Bridge, server.getsockname()[1], base=f"zv/{name}")))
    closed = [bridge for _, _, bridge in closings]
    wait_until(lambda: all(bridge.process.told() for bridge in (*bridges, *closed)), "all tell it")
    assert not any(bridge.connections() for bridge in bridges)
    lay("secret", "right")
    broker.process.popen.send_signal(signal.SIGHUP)
    client = start(Client, broker.port)
    for bridge in bridges:
        client.until(bridge.topic("link"), "up")
        assert client.ask(bridge.topic("set/bogus"), "5")["status"] == 404
        bridge.end(told=OUTAGE)
    for server, times, bridge in closings:
        wait_until(lambda: len(times) >= (5 if LONG else 3), "it tries again", patience=35)
        waits = [after - before for before, after in zip(times, times[1:])]  # 1 to 2 s, 2 to 4 s, 4 to 8 s
        assert all(0.9 * 2 ** i < wait < 1.1 * 2 ** (i + 1) for i, wait in enumerate(waits)), waits
        bridge.end(told=f"({OUTAGE})+")
        server.shutdown(socket.SHUT_RDWR)


# ---- Many cameras


def test_two_cameras_do_not_mix(camera, broker, client, start, more_cameras):
    other, = more_cameras(1)
    bridges = [start(Bridge, broker.port, camera=one, base=base)
               for one, base in ((camera, "zv/rig"), (other, "zv/rig/2"))]
    for bridge, one, option, number in zip(bridges, (camera, other), ("30", "24"), (8, 10)):
        client.until(bridge.topic("link"), "up")
        assert client.ask(bridge.topic("set/3"), f'"{option}"')["status"] == 200
        assert one.zvcam("get", "3")["present"]["id"] == number
    for topic in ("zv/ri/set/3", "zv/rig/2/3/set/3", "zv/rig2/set/3", "zv/set/3", "zv/rig/sets/3", "rig/set/3"):
        client.send(topic, "60")
    camera.process.freeze()
    client.until("zv/rig/link", "stale")
    assert client.ask("zv/rig/2/set/88", "55")["status"] == 200
    assert len(client.on("answers/here")) == 3, "one for each that has a camera"
    assert client.until("zv/rig/2/link") == "up"
    assert [client.until(bridge.topic("settings"))["3"] for bridge in bridges] == [8, 10]


@pytest.mark.skipif(not LONG, reason="starts 20 cameras; ZVMQTT_LONG asks for it")
def test_twenty_cameras_on_one_broker(broker, client, start, more_cameras):
    bridges = [start(Bridge, broker.port, camera=one, base=f"zv/{number}")
               for number, one in enumerate(more_cameras(20))]
    for bridge in bridges:
        client.until(bridge.topic("availability"), "online")
        client.until(bridge.topic("link"), "up")
    options = (5, 8, 10) * 7
    orders = [client.send(bridge.topic("set/3"), str(option)) for bridge, option in zip(bridges, options)]
    assert all(client.answer(order)["status"] == 200 for order in orders)
    for bridge, option in zip(bridges, options):
        client.until(bridge.topic("settings"), {"3": option})
    bridges.pop(7).process.kill()
    client.until("zv/7/availability", "offline")
    for bridge in bridges:
        assert client.until(bridge.topic("availability")) == "online"
        bridge.end()
        client.until(bridge.topic("availability"), "offline")


# ---- The program


def test_wrong_usage_is_one_line(tmp_path):
    empty, text, none = (str(tmp_path / name) for name in ("empty", "text", "none"))
    for file, content in ((empty, "\n"), (text, "one\ntwo\n")):
        with open(file, "w", encoding="utf-8") as stream:
            stream.write(content)
    # a word of the line, arguments
    rows = [(broker, "--broker", broker) for broker in (
        "nonsense:port", ":1883", "localhost:65536", "localhost:0", "localhost:", "localhost:-1")]
    rows += [("--broker",), *((word, "--broker", "localhost", *arguments) for word, *arguments in (
        ("surplus", "surplus"), ("--bogus", "--bogus"), ("--username", "--password-file", text),
        *((word, f"--{name}", wrong) for name in ("id", "prefix") for word, wrong in (
            ("empty", ""), ("empty", "/a"), ("empty", "a/"), ("empty", "a//b"), ("+", "a/+"), ("#", "#"), ("$", "$a"),
            ("valid", "a\x01b"), ("valid", b"a\xff"))),
        (none, "--username", "u", "--password-file", none), (empty, "--username", "u", "--password-file", empty),
        (none, "--cafile", none), (none, "--cafile", text, "--cert", none, "--key", none),
        ("--cert", "--cafile", text, "--key", text), ("--key", "--cafile", text, "--cert", text),
        ("--protocol", "--protocol", "4"), ("--interval", "--interval", "0"), ("--interval", "--interval", "1.5"),
        ("nonsense", "--metrics", "nonsense"), ("+", "--discovery", "a/+")))]
    for code, (word, *arguments) in (*((2, row) for row in rows), (3, ("--id", "--broker", "localhost"))):
        elsewhere = () if code == 2 else ("env", "--unset=ZVCTRL_NAMESPACE", NAMESPACE)  # where no camera ever was
        ended = subprocess.run([*elsewhere, os.environ["ZVMQTT"], *arguments], capture_output=True, text=True,
                               errors="replace", timeout=10)
        assert (ended.returncode, ended.stdout, ended.stderr.count("\n")) == (code, "", 1), (arguments, ended)
        assert ended.stderr.startswith("zvmqtt: ") and word in ended.stderr, (arguments, ended)
