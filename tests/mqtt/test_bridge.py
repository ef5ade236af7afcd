"""What a camera's bridge publishes, and each of the requests that it takes, with each of their errors."""

import json
import urllib.error
import urllib.request

import pytest
from conftest import Bridge, Client
from programs import wait_until

# topic, QoS
RETAINED = (("availability", 1), ("link", 1), ("camera", 1), ("status", 0), ("settings", 0), ("available", 0))


def test_a_late_subscriber_hears_everything(camera, bridge, broker, start):
    camera.zvcam("set", "2", "4K")
    camera.zvcam("set", "3", "60")
    late = start(Client, broker.port)
    state = {name: late.until(bridge.topic(name)) for name, _ in RETAINED}
    first = {message.topic: (message.qos, message.retain) for message in late.messages[:len(RETAINED)]}
    assert first == {bridge.topic(name): (qos, True) for name, qos in RETAINED}
    assert (state["availability"], state["link"]) == ("online", "up")
    wait_until(lambda: {name: late.until(bridge.topic(name)) for name in ("status", "settings")} ==
               camera.zvcam("poll"), "topics and poll are the same")
    told, info = state["camera"], camera.zvcam("info")
    assert [told[name] for name in ("model", "model_name", "serial_number", "firmware", "link")] == \
           [*(info[name] for name in ("model_number", "model", "serial_number", "firmware")), "up"]
    assert bridge.base == f"zv/{info['serial_number']}", "unless an id is given"
    offers = late.until(bridge.topic("available"))["settings"]
    assert {"id": 0, "why": [{"rule": 89, "because": [{"setting": 2, "option": "4K"}]}]} in offers["3"]["unavailable"]
    assert 5 in offers["3"]["options"] and offers["3"]["available"] and len(offers) > 50


def test_changes_are_told(camera, bridge, client):
    known = {name: client.until(bridge.topic(name)) for name in ("status", "settings")}
    before = client.until(bridge.topic("available"))
    for setting, option, number in (("2", "1080", 9), ("3", "240", 0), ("3", "30", 8), ("2", "4K", 1), ("3", "60", 5)):
        camera.zvcam("set", setting, option)
        client.until(bridge.topic("settings"), {setting: number})
        client.until(bridge.topic("change"), lambda change, key=setting, now=number: change["settings"].get(key) == now)
    changes = [message for message in client.messages if message.topic == bridge.topic("change")]
    first = changes[0].value
    for number, change in enumerate(changes):
        assert (change.retain, change.qos) == (False, 0)
        assert (change.value["epoch"], change.value["revision"]) == (first["epoch"], first["revision"] + number)
        assert change.value["status"] or change.value["settings"]
        for name, values in known.items():
            values.update(change.value[name])
    assert known == {name: client.until(bridge.topic(name)) for name in known}
    assert client.until(bridge.topic("camera"))["epoch"] == first["epoch"]
    assert client.until(bridge.topic("available"))["revision"] > before["revision"]
    for topic in ("status", "settings", "available", "camera"):
        values = [{**value, "revision": 0} for value in client.on(bridge.topic(topic))]
        assert all(values[i] != values[i - 1] for i in range(1, len(values))), f"{topic} again without a change"


def test_the_link_is_told(camera, bridge, client):
    settings = client.until(bridge.topic("settings"))
    for outage, link in ((camera.process.freeze, "stale"), (camera.end, "down")):
        outage()
        client.until(bridge.topic("link"), link)
        client.until(bridge.topic("camera"), {"link": link})
        assert (client.until(bridge.topic("settings")), client.until(bridge.topic("status"))["8"]) == (settings, 0)
        assert client.until(bridge.topic("availability")) == "online"
        if link == "down":
            assert client.ask(bridge.topic("set/3"), "8")["status"] == 503
        camera.mend()
        client.until(bridge.topic("link"), "up")


# request, payload, the id that it becomes
WRITES = (
    ("set/3", "8", 8),
    ("set/3", "60", 5),
    ("set/3", '"30"', 8),
    ("set/3", '"5"', 5),
    ("set/video/fps", '{"option":"24"}', 10),
    ("set/video/fps", '{"option":8,"force":false}', 8),
    ("set/3", '{"option":60}'.ljust(65536), 5),
    ("set/88", "55", 55),
    ("set/168", '"7:30"', None),
    ("set/168", '"off"', 0),
)


def test_settings_are_written(camera, bridge, client):
    camera.zvcam("set", "3", "60")
    for request, payload, wanted in WRITES:
        assert client.ask(bridge.topic(request), payload) == {"request": request, "ok": True, "status": 200}, request
        setting = request.removeprefix("set/").replace("video/fps", "3")
        told = camera.zvcam("get", setting)["present"]["id"]
        assert wanted in (None, told), (request, payload)
        client.until(bridge.topic("settings"), {setting: told})
    camera.zvcam("set", "2", "4K")
    assert client.ask(bridge.topic("set/3"), '{"option":"240","force":true}')["status"] == 200
    assert client.ask(bridge.topic("set/3"), "60")["status"] == 200
    camera.fault("freeze:link=daemon")
    assert client.ask(bridge.topic("set/3"), "30") == {"request": "set/3", "ok": True, "status": 202}
    camera.fault("thaw")
    client.until(bridge.topic("settings"), {"3": 8})


TAG = '{"command":"media/tag","file":"100SIMUL/SIM00001.MP4"'
# request, status, payloads
WRONG = (
    ("set/3", 400, "", " ", "{", "5x", "{'option':8}", '{"option":8,}', b'{"option":"\xff"}', b'"\xed\xa0\x80\xc0\x80"',
     "NaN", "60fps", "[" * 65536, '{"option":' * 6000, b"\0" * 100, b"\xff\xfe5\0", '"60', "0x5", "+5", '"\\ud800"'),
    ("set/3", 422, "{}", "[]", "[60]", "null", "true", "8.5", "-1", "-0", "99", '"nothing"', '""', '"60\\u0000"',
     "4294967304", '{"force":true}', '{"option":null}', '{"option":[8]}', '{"option":{"option":8}}',
     '{"option":8,"more":1}', '{"option":8,"force":1}', '{"option":8,"force":"true"}', '{"option\\u0000":8}',
     "[" * 32768 + "]" * 32768, '{"option":' * 5000 + "1" + "}" * 5000, json.dumps("9" * 60000),
     json.dumps({"a" * 60000: 1})),
    ("set/3", (400, 422), "9" * 60000, "1e999999999"),
    ("set/3", 413, '{"option":8}'.ljust(65537), b" " * 1000000, b"[" * 1000000, b"\0" * 70000),
    *((f"set/{name}", 404, "5") for name in (
        "", "4", "bogus", "easy_presets", "video/fps/x", "3/", "/3", "video%2Ffps", "-3", " 3", "4294967299", "9" * 20,
        "a" * 60000, "\u00e4\u2028\U0001f3a5", '"\\')),
    ("set/3", 409, '"240"'),
    ("set/31", 409, "5"),
    ("command", 400, "", "capture/start", "{", b"\xff"),
    ("command", 422, "{}", "[]", '"capture/start"', '{"command":5}', '{"command":null}',
     '{"command":"capture/start","now":true}', TAG + "}", '{"command":"media/tag","offset_ms":1}',
     TAG + ',"offset_ms":-1}', TAG + ',"offset_ms":4294967296}', TAG + ',"offset_ms":1,"remove":0}',
     '{"command":"media/tag","file":5,"offset_ms":1}', TAG.replace("100", "A" * 256) + ',"offset_ms":1}'),
    ("command", 404, *(json.dumps({"command": name}) for name in (
        "", "media/delete-all", "capture/start/", "Poll", "set/3", "x" * 60000))),
    ("command", 413, '{"command":"poll"}'.ljust(65537)),
)


def test_what_is_wrong_is_said_and_nothing_is_sent(camera, bridge, client):
    camera.zvcam("set", "2", "4K")
    camera.zvcam("set", "3", "60")
    before = camera.zvcam("poll")["settings"]
    client.until(bridge.topic("settings"), before)
    camera.fault("freeze:link=camera")  # whatever is sent gets no answer, and its request takes 15 s
    memory = bridge.process.memory_kib()
    for request, status, payload in ((request, status, payload) for request, status, *payloads in WRONG * 3
                                     for payload in payloads):
        answer = client.ask(bridge.topic(request), payload)
        case = (request[:80], payload[:80], str(answer)[:200])
        assert answer["status"] in (status if isinstance(status, tuple) else (status,)) and answer["ok"] is False, case
        assert answer["detail"] and answer["request"].startswith(request), case
        assert answer.keys() - {"request", "ok", "status", "detail"} == ({"why"} if status == 409 else set()), case
    assert bridge.process.memory_kib() - memory < 16 << 10
    why = client.ask(bridge.topic("set/3"), '"240"')["why"]
    assert why == [{"rule": 89, "because": [{"setting": 2, "option": "4K"}]}]
    camera.fault("thaw")
    assert camera.zvcam("poll")["settings"] == before


# fault, word of the detail, code
REFUSALS = (
    ("refuse:link=camera,code=3", "3", 3),
    ("error:link=camera,code=7", "7", 7),
    ("off", "the camera is switched off", None),
)


def test_commands(camera, bridge, client):
    def command(name, status=204, **members):
        answer = client.ask(bridge.topic("command"), {"command": name, **members})
        assert (answer["request"], answer["status"], answer["ok"]) == (f"command/{name}", status, status < 300), answer
        return answer

    camera.zvcam("set", "144", "VIDEO")
    moment = {"file": "100SIMUL/SIM00001.MP4", "offset_ms": 1000}
    for fault, words, code in REFUSALS:
        camera.fault(fault)
        for name in ("capture/start", "capture/stop", "media/delete-last", "media/tag"):
            answer = command(name, 502, **(moment if name == "media/tag" else {}))
            assert words in answer["detail"] and answer.get("code") == code, answer
        camera.fault("clear")
    command("poll")
    command("capture/start")
    client.until(bridge.topic("status"), {"10": 1})
    assert command("capture/start", 502)["code"] == 1
    command("capture/stop")
    client.until(bridge.topic("status"), {"10": 0})
    media = camera.media().splitlines()
    command("media/delete-last")
    assert camera.media().splitlines() == media[:-1]
    command("media/tag", **moment)
    client.until(bridge.topic("status"), {"58": 1})
    command("media/tag", remove=True, **moment)
    client.until(bridge.topic("status"), {"58": 0})


def test_requests_wait_in_order_and_no_more_than_32(camera, bridge, client):
    camera.zvcam("set", "3", "24")
    camera.fault("freeze:link=camera")
    sent = []
    for number in (1, 40):  # the first is carried out; of the others 32 wait
        sent += [client.send(bridge.topic("set/3"), str((5, 8)[(len(sent) + i) % 2])) for i in range(number)]
        assert client.ask(bridge.topic("set/3"), "bogus")["status"] == 400, "at once, after those too many"
    done, refused = sent[:33], sent[33:]
    assert {client.answer(each)["status"] for each in refused} == {429}
    camera.fault("thaw")
    assert {client.answer(each)["status"] for each in done} == {200}
    assert [message.correlation for message in client.messages if message.correlation in done] == done
    client.until(bridge.topic("settings"), {"3": 5})


# response topic wanted, the topic that the answer comes to: the camera's own for answers in place of its other ones
RESPONSE_TOPICS = (
    ("answers/a/b", "answers/a/b"),
    ("zv/other/response", "zv/other/response"),
    ("{base}x/availability", "{base}x/availability"),
    ("{base}/response/me", "{base}/response/me"),
    *((wanted, "{base}/response") for wanted in (
        None, "{base}", "{base}/availability", "{base}/set/3", "{base}/command", "{base}/responses",
        "answers/#", "answers/+", "$SYS/x")),
)


def test_answers_go_where_they_may(bridge, client):
    for number, (wanted, topic) in enumerate(RESPONSE_TOPICS):
        client.send(bridge.topic(f"set/bogus{number}"), "5", response=wanted and wanted.format(base=bridge.base))
        client.until(topic.format(base=bridge.base), {"request": f"set/bogus{number}", "status": 404})
        answer = client.messages[-1]
        assert (answer.qos, answer.retain, answer.correlation is None) == (1, False, wanted is None), wanted


@pytest.mark.parametrize("protocol", (5, 3))
def test_a_retained_order_is_never_carried_out(camera, broker, client, start, protocol):
    camera.zvcam("set", "3", "60")
    camera.zvcam("set", "144", "VIDEO")
    base = f"zv/orders/{protocol}"
    response = f"{base}/response"

    def give_orders(*payloads):
        for request, payload in zip(("set/3", "command"), payloads):
            client.send(f"{base}/{request}", payload, retain=True, response=None)

    orders = ("8", '{"command":"capture/start"}')
    give_orders(*orders)
    bridge = start(Bridge, broker.port, "--protocol", str(protocol), base=base)
    client.wait(lambda: len(client.on(response)) == 2, "those that lie there")
    if protocol == 5:
        give_orders(*orders)
    give_orders("", "")
    client.send(f"{base}/set/bogus", "5", response=None)
    client.until(response, {"request": "set/bogus"})
    answers = [(answer["request"], answer["status"]) for answer in client.on(response)]
    assert answers == [*[("set/3", 410), ("command", 410)] * (2 if protocol == 5 else 1), ("set/bogus", 404)]
    bridge.end()
    assert camera.zvcam("get", "3")["present"]["id"] == 5
    assert camera.zvcam("status")["status"]["10"] == 0


def test_metrics(bridge, client):
    before = bridge.metrics()
    for _ in range(3):
        assert client.ask(bridge.topic("set/bogus"), "5")["status"] == 404
    after = bridge.metrics()
    grown = after - before
    assert grown["zv_requests_total 404"] == 3 == grown["zv_request_seconds_count"], grown
    assert grown["zv_messages_total in"] == 3 == grown["zv_message_bytes_total in"]
    assert grown["zv_messages_total out"] >= 3 and grown["zv_message_bytes_total out"] > 100
    assert grown["zv_messages_dropped_total change"] + grown["zv_messages_dropped_total response"] == 0
    assert {"zv_messages_dropped_total change", "zv_messages_dropped_total response"} <= after.keys()
    assert (after["zv_broker_connected"], after["zv_broker_connections_total"]) == (1, 1)
    assert after["zv_link up"] == 1 and bridge.polls() > 0 and "zv_poll_seconds_sum" in after


def test_metrics_are_all_that_is_served(bridge):
    for method, path, status, headers in (
            ("HEAD", "/metrics", 200, {"Cache-Control": "no-store", "X-Content-Type-Options": "nosniff"}),
            ("GET", "/", 404, {}), ("GET", "/metrics/", 404, {}), ("POST", "/metrics", 405, {"Allow": "GET, HEAD"})):
        request = urllib.request.Request(bridge.url.replace("/metrics", path), method=method)
        try:
            answer = urllib.request.urlopen(request, timeout=5)
        except urllib.error.HTTPError as refused:
            answer = refused
        with answer:
            assert (answer.status, answer.read()) == (status, b""), (method, path)
            assert headers.items() <= dict(answer.headers).items(), (method, path)
