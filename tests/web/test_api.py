"""Each request of the API, and each of its errors: answers, types and headers are held against openapi.json."""

import itertools
import json
import os
import subprocess
import time
from concurrent.futures import ThreadPoolExecutor

import jsonschema
import pytest
import requests
from conftest import EXAMPLES, LONG, PAGE_FILES, WEB_SOURCES
from programs import PATIENCE, wait_until

FPS = "/api/v1/settings/3"
JSON = {"Content-Type": "application/json"}
CONFIRMED = {"confirm": True}


def option(setting):
    """Of a setting's document: its number, key and name."""
    return {name: setting[name] for name in ("id", "key", "name")}


# ---- The description itself


def test_the_description_is_whole(contract, web):
    assert web.call("GET", "/openapi.json", 200).content == (WEB_SOURCES / "openapi.json").read_bytes()
    names = []

    def walk(node):
        if isinstance(node, list):
            for item in node:
                walk(item)
        elif isinstance(node, dict):
            if isinstance(node.get("$ref"), str):
                assert contract.resolve(node)
            if "operationId" in node:
                names.append(node["operationId"])
                assert node["responses"] and node["summary"]
            examples = [example["value"] for example in node.get("examples", {}).values()]
            for example in examples + [node[name] for name in node if name == "example"]:
                contract.validate(node["schema"], example)
            for item in node.values():
                walk(item)

    walk(contract.document)
    for schema in contract.document["components"]["schemas"].values():
        jsonschema.Draft202012Validator.check_schema(schema)
    methods = [method for item in contract.document["paths"].values() for method in item if method != "parameters"]
    assert len(names) == len(set(names)) == len(methods)


# ---- Reads


def test_every_read_has_a_head(contract, web):
    for path in contract.document["paths"]:
        path = path.format(**EXAMPLES)
        if not contract.operation("GET", path)[0]:
            continue
        head = web.call("HEAD", path, 200, timeout=PATIENCE)
        assert head.content == b""
        if not path.endswith("events"):
            length = len(web.call("GET", path, 200).content)
            assert abs(int(head.headers["Content-Length"]) - length) < 100, "but for ages and counters"
    policy = web.call("GET", "/", 200).headers["Content-Security-Policy"]
    assert policy.startswith("default-src 'self'") and "unsafe" not in policy and "data:" not in policy


def test_the_state_is_what_the_camera_tells(camera, web):
    wait_until(lambda: {name: web.state()[name] for name in ("status", "settings")} == camera.zvcam("poll"),
               "state and poll are the same")
    state = web.state()
    assert web.get("/api/v1/settings") == {"settings": state["settings"]}
    assert web.get("/api/v1/status")["status"].keys() == state["status"].keys()
    assert state["age_ms"] < 2000 and "-" not in state["epoch"]
    told, info = web.get("/api/v1/camera"), camera.zvcam("info")
    assert told["link"] == "up" and told["epoch"] == state["epoch"]
    assert [told[name] for name in ("model", "model_name", "serial_number", "firmware")] == \
           [info[name] for name in ("model_number", "model", "serial_number", "firmware")]


def test_the_catalogue_the_settings_and_the_offers_agree(web):
    catalogue = web.get("/api/v1/catalogue")["settings"]
    offers = web.get("/api/v1/available")["settings"]
    values = web.state()["settings"]
    numbers = [row["setting"] for row in catalogue]
    assert numbers == sorted(set(numbers)) and [str(number) for number in numbers] == list(offers)
    for row in catalogue:
        setting = web.get(f"/api/v1/settings/{row['setting']}")
        offer = offers[str(row["setting"])]
        assert [row["name"], row["options"], row.get("default")] == \
               [setting["name"], [option(each) for each in setting["options"]], setting.get("default")]
        assert [setting["available"], setting["why"]] == [offer["available"], offer["why"]]
        assert offer["options"] == [each["id"] for each in setting["options"] if each["available"]]
        assert offer["unavailable"] == \
               [{"id": each["id"], "why": each["why"]} for each in setting["options"] if not each["available"]]
        assert setting["option"]["id"] == values[str(row["setting"])]


def test_reasons_are_those_of_the_tool(camera, web):
    def reasons(rules):
        return [{"rule": rule["rule"], "because": [
            {"setting": met["setting"], "option": met["is"]} if "setting" in met else
            {"status": met["status"], "value": met["is"]} for met in rule["because"]]} for rule in rules]

    for number in (3, 31, 108, 176):
        setting, told = web.get(f"/api/v1/settings/{number}"), camera.zvcam("why", str(number))
        assert setting["available"] == told["available"]
        assert [(each["available"], each["why"]) for each in setting["options"]] == \
               [(each["available"], reasons(each["rules"])) for each in told["options"]]


def test_settings_are_found_by_number_and_by_name(web):
    documents = [web.get(f"/api/v1/settings/{name}") for name in ("3", "video/fps", "video%2Ffps", "video%2ffps")]
    assert all(document == documents[0] for document in documents)
    for name in ("4", "bogus", "easy_presets", "3/x", "3/", "", "-3", "3%20", "%2B3", "4294967299", "9" * 20):
        web.call("GET", f"/api/v1/settings/{name}", 404)
        web.put(name, 5, 404)
    for path in ("/bogus", "/api/v1/", "/api/v1/states", "/api/v1/state/", "/api/v1/statex", "/api/v2/state"):
        assert web.call("GET", path, 404).json()["title"] == "Not Found"


def test_what_has_not_changed_is_not_sent_again(camera, web):
    web.put(3, "60")
    for path in ("/api/v1/state", "/api/v1/catalogue", "/openapi.json", "/zvweb.js"):
        tag = web.call("GET", path, 200).headers["ETag"]
        assert tag.startswith("W/") == (path == "/api/v1/state")
        for known in (tag, f'"other", {tag}', "*"):
            again = web.call("GET", path, 304, headers={"If-None-Match": known})
            assert again.headers["ETag"] == tag
        for known in ('"other"', tag[:-2] + '"'):
            web.call("GET", path, 200, headers={"If-None-Match": known})
    state = web.call("GET", "/api/v1/state")
    assert state.headers["ETag"] == 'W/"{epoch}-{revision}"'.format(**state.json())
    web.put(3, "30")
    changed = web.call("GET", "/api/v1/state", 200, headers={"If-None-Match": state.headers["ETag"]}).json()
    assert changed["settings"]["3"] == 8 and changed["revision"] > state.json()["revision"]


# ---- Writes

# setting, option, the id that it becomes
WRITES = (
    ("3", 8, 8),
    ("3", "60", 5),
    ("video/fps", "8", 8),
    ("video%2Ffps", 60, 5),
    ("video/fps", 24, 10),
    ("88", "55", 55),
    ("168", "7:30", None),
    ("168", "off", 0),
)


def test_settings_are_written(camera, web):
    web.put(3, "24")
    for setting, wanted, number in WRITES:
        written = web.put(setting, wanted)
        now = web.get(f"/api/v1/settings/{setting}")
        assert written == {"setting": now["setting"], "option": now["option"], "change": written["change"]}
        told = camera.zvcam("get", str(now["setting"]))["present"]["id"]
        assert number in (None, told) and now["option"]["id"] == told
        assert written["change"]["settings"][str(now["setting"])] == told
        assert written["change"]["revision"] == web.state()["revision"]
    assert web.put(3, 10)["setting"] == web.put(3, 10)["setting"]  # what it is already


def test_a_camera_without_a_catalogue_has_values(camera, start_web):
    camera.end()
    camera.start("--model", "51")
    web = start_web()
    web.await_link("up")
    assert web.get("/api/v1/settings/2")["value"] == web.state()["settings"]["2"]
    assert web.put(2, 24)["value"] == 24 == web.state()["settings"]["2"]
    camera.end()


# body, status; the content type is JSON's
BODIES = (
    ("", 400),
    ("{", 400),
    ('{"option":8}x', 400),
    ("{'option':8}", 400),
    ('{"option":8,}', 400),
    (b'{"option":"\xff"}', 400),
    ("NaN", 400),
    ("[]", 422),
    ("null", 422),
    ("8", 422),
    ("{}", 422),
    ('{"force":true}', 422),
    ('{"option":null}', 422),
    ('{"option":true}', 422),
    ('{"option":8.5}', 422),
    ('{"option":-1}', 422),
    ('{"option":[8]}', 422),
    ('{"option":4294967304}', 422),
    ('{"option":1e400}', (400, 422)),
    ('{"option":99}', 422),
    ('{"option":"nothing"}', 422),
    ('{"option":""}', 422),
    ('{"option":"8\\u0000"}', 422),
    ('{"option":8,"more":1}', 422),
    ('{"option":8,"force":1}', 422),
    ('{"option":8,"force":"true"}', 422),
    ('{"option":"240"}', 409),
    (b'{"option":8,"force":' + b" " * 65517 + b"1}", 413),
)
ORDERS = (
    ("capture/start", '{"now":true}', 422),
    ("capture/stop", "[", 400),
    ("media/delete-last", "", 400),
    ("media/delete-last", "{}", 422),
    ("media/delete-all", "{}", 422),
    ("media/delete-all", '{"confirm":false}', 422),
    ("media/delete-all", '{"confirm":1}', 422),
    ("media/delete-all", '{"confirm":true,"really":true}', 422),
    ("media/tag", '{"file":"100SIMUL/SIM00001.MP4"}', 422),
    ("media/tag", '{"offset_ms":1}', 422),
    ("media/tag", '{"file":5,"offset_ms":1}', 422),
    ("media/tag", '{"file":"","offset_ms":1}', 422),
    ("media/tag", json.dumps({"file": "A" * 256, "offset_ms": 1}), 422),
    ("media/tag", '{"file":"100SIMUL/SIM00001.MP4","offset_ms":-1}', 422),
    ("media/tag", '{"file":"100SIMUL/SIM00001.MP4","offset_ms":4294967296}', 422),
    ("media/tag", '{"file":"100SIMUL/SIM00001.MP4","offset_ms":1,"remove":0}', 422),
)
TYPES = (
    ("application/json; charset=utf-8", 200),
    ("APPLICATION/JSON", 200),
    ("application/jsonx", 415),
    ("text/plain", 415),
    ("application/x-www-form-urlencoded", 415),
    ("", 415),
    (None, 415),
)


def test_what_is_wrong_is_said_and_nothing_is_sent(camera, web):
    web.put(2, "4K")
    web.put(3, "60")
    before = web.state()["settings"]
    camera.fault("freeze:link=camera")  # whatever is sent gets no answer, and its request takes 15 s
    for body, status in BODIES:
        answer = web.call("PUT", FPS, data=body, headers=JSON, timeout=5)
        assert answer.status_code in (status if isinstance(status, tuple) else (status,)), (body[:80], answer.text)
    why = web.put(3, 0, 409)["why"]
    assert why == [{"rule": 89, "because": [{"setting": 2, "option": "4K"}]}]
    assert web.put(31, 5, 409)["why"]
    for path, body, status in ORDERS:
        web.call("POST", f"/api/v1/{path}", status, data=body, headers=JSON, timeout=5)
    for kind, status in TYPES:
        if status != 200:
            web.call("PUT", FPS, status, data=b'{"option":8}', headers={"Content-Type": kind}, timeout=5)
    camera.fault("thaw")
    camera.zvcam("poll")
    assert web.state()["settings"] == before
    for kind, status in TYPES:
        if status == 200:
            web.call("PUT", FPS, status, data=b'{"option":8}', headers={"Content-Type": kind})
    web.call("PUT", FPS, 200, data=b'{"option":8}'.ljust(65536), headers=JSON)
    web.call("PUT", FPS, 413, data=itertools.repeat(b" " * 1000, 66), headers=JSON)


def test_force_sends_what_the_rules_forbid(camera, web):
    web.put(2, "4K")
    web.put(3, "60")
    web.put(3, "240", 409, force=False)
    assert web.put(3, "240", force=True)["option"]["key"] == "240"
    assert web.state()["settings"]["3"] == 0
    web.put(3, "60")


def test_a_write_that_the_camera_does_not_tell_is_accepted(camera, web):
    web.put(3, "60")
    camera.fault("freeze:link=daemon")
    assert web.put(3, "30", 202) == {"setting": 3, "option": {"id": 8, "key": "30", "name": "30"}}
    camera.fault("thaw")
    wait_until(lambda: web.state()["settings"]["3"] == 8)


# fault, status, word of the detail, code
REFUSALS = (
    ("refuse:link=camera,code=3", 502, "3", 3),
    ("error:link=camera,code=7", 502, "7", 7),
    ("off", 502, "the camera is switched off", None),
)


def test_what_the_camera_refuses(camera, web):
    web.put(3, "60")
    orders = (("PUT", "settings/3", {"option": 8}), ("POST", "capture/start", None), ("POST", "capture/stop", None),
              ("POST", "media/delete-last", CONFIRMED), ("POST", "media/delete-all", CONFIRMED),
              ("POST", "media/tag", {"file": "100SIMUL/SIM00001.MP4", "offset_ms": 1}))
    for fault, status, words, code in REFUSALS:
        camera.fault(fault)
        for method, path, body in orders:
            problem = web.call(method, f"/api/v1/{path}", status, json=body).json()
            assert words in problem["detail"] and problem.get("code") == code, (fault, path, problem)
        camera.fault("clear")
    web.await_link("up")
    assert web.state()["settings"]["3"] == 5


@pytest.mark.skipif(not LONG, reason="takes 15 s; ZVWEB_LONG asks for it")
def test_a_frozen_camera_is_waited_for_15_seconds(camera, web):
    camera.fault("freeze:link=camera")
    with ThreadPoolExecutor(40) as clients:
        writes = [clients.submit(web.call, "PUT", FPS, 504, json={"option": 8}, timeout=16) for _ in range(40)]
        while not all(write.done() for write in writes):
            assert web.call("GET", "/api/v1/state", 200).elapsed.total_seconds() < 0.5
            time.sleep(0.1)
    assert all("may still" in write.result().json()["detail"] for write in writes)


def test_captures_and_media(camera, web):
    web.put(144, "VIDEO")
    post = lambda path, status, body=None: web.call("POST", f"/api/v1/{path}", status, json=body)
    post("capture/start", 204)
    wait_until(lambda: web.state()["status"]["10"] == 1, "it records")
    assert post("capture/start", 502).json()["code"] == 1
    post("capture/stop", 204, {})
    wait_until(lambda: web.state()["status"]["10"] == 0, "it has stopped")
    media = camera.media().splitlines()
    post("media/delete-last", 204, CONFIRMED)
    assert camera.media().splitlines() == media[:-1]
    moment = {"file": "100SIMUL/SIM00001.MP4", "offset_ms": 1000}
    post("media/tag", 204, moment)
    wait_until(lambda: web.state()["status"]["58"] == 1, "the tag is counted")
    post("media/tag", 204, {**moment, "remove": True})
    wait_until(lambda: web.state()["status"]["58"] == 0, "the tag is gone")
    assert post("media/tag", 502, {**moment, "file": "100ABCDE/CLIP0001.MP4"}).json()["code"] == 2
    post("media/delete-all", 204, CONFIRMED)
    wait_until(lambda: [web.state()["status"][number] for number in ("38", "39")] == [0, 0], "the card is empty")
    camera.end()


# ---- Who may ask, and how


def test_wrong_methods_say_the_right_ones(contract, web):
    for template, item in contract.document["paths"].items():
        path = template.format(**EXAMPLES)
        right = {method.upper() for method in item if method != "parameters"}
        right |= {"HEAD"} if "GET" in right else set()
        for method in {"GET", "HEAD", "PUT", "POST", "DELETE", "PATCH", "BOGUS"} - right:
            allow = web.call(method, path, 405).headers["Allow"]
            assert set(allow.replace(" ", "").split(",")) - {"OPTIONS"} == right, (method, path)
    web.call("POST", "/bogus", 404)


def change(web, status, **headers):
    """A change that the server reads, and refuses for its body, unless it refuses it for what its headers say."""
    web.call("PUT", FPS, status, data=b"{", headers={**JSON, **headers})


def test_only_its_own_hosts_and_origins_are_served(start_web):
    web = start_web("--allow-host", "camera.test")
    port = web.port
    for host, status in (
            (f"127.0.0.1:{port}", 200), ("127.0.0.1", 200), (f"localhost:{port}", 200), (f"LocalHost:{port}", 200),
            (f"camera.test:{port}", 200), ("Camera.Test", 200), ("evil.test", 403), (f"evil.test:{port}", 403),
            (f"127.0.0.1.evil.test:{port}", 403), (f"evil.camera.test:{port}", 403), ("localhost.evil.test", 403),
            ("localhost@evil.test", 403), (":", 403)):
        for path in ("/", "/api/v1/state", "/zvweb.js"):
            web.call("GET", path, status, headers={"Host": host})
    own = f"http://127.0.0.1:{port}"
    for origin, status in (
            (None, 400), (own, 400), ("http://evil.test", 403), (f"http://evil.test:{port}", 403), ("null", 403),
            (f"http://127.0.0.1:{port + 1}", 403), ("http://127.0.0.1", 403), (f"{own}.evil.test", 403),
            (f"http://127.0.0.1.evil.test:{port}", 403), ("", 403), (f"{own}, http://evil.test", 403)):
        change(web, status, Origin=origin)
        web.call("POST", "/api/v1/capture/stop", status, data=b"{", headers={**JSON, "Origin": origin})
        answer = web.call("GET", "/api/v1/state", 200, headers={"Origin": origin})
        assert "Access-Control-Allow-Origin" not in answer.headers
    change(web, 400, Host=f"camera.test:{port}", Origin=f"http://camera.test:{port}")


def test_a_token_is_asked_for(contract, start_web, tmp_path):
    token = "s3cret-0123456789"
    (tmp_path / "token").write_text(token + "\n")
    web = start_web("--token-file", str(tmp_path / "token"))
    for path, item in contract.document["paths"].items():
        for method in set(item) - {"parameters"}:
            free = item[method].get("security") == []
            web.call(method.upper(), path.format(**EXAMPLES), 200 if free else 401)
    web.call("GET", "/bogus", 401)
    for header, value, status in (
            ("Authorization", f"Bearer {token}", 200), ("Authorization", f"bearer {token}", 200),
            ("Cookie", f"zvweb_token={token}", 200), ("Cookie", f"other=1; zvweb_token={token}", 200),
            ("Authorization", f"Bearer {token[:-1]}", 401), ("Authorization", f"Bearer {token}x", 401),
            ("Authorization", "Bearer ", 401), ("Authorization", token, 401), ("Authorization", f"Digest {token}", 401),
            ("Cookie", f"zvweb_token={token}x", 401), ("Cookie", "zvweb_token=", 401), ("Cookie", f"x={token}", 401)):
        web.call("GET", "/api/v1/state", status, headers={header: value})


def test_tls(start_web, tmp_path):
    cert, key = str(tmp_path / "cert.pem"), str(tmp_path / "key.pem")
    subprocess.run(["openssl", "req", "-x509", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:P-256", "-nodes",
                    "-subj", "/CN=localhost", "-addext", "subjectAltName=IP:127.0.0.1", "-keyout", key, "-out", cert],
                   check=True, capture_output=True)
    web = start_web("--tls-cert", cert, "--tls-key", key)
    assert web.url.startswith("https:")
    web.session.verify = cert
    change(web, 400, Origin=web.url[:-1])
    with pytest.raises(requests.ConnectionError):
        requests.get(web.url.replace("https", "http"), timeout=PATIENCE)
    web.state()


def test_a_connection_too_many(start_web):
    web = start_web("--max-clients", "4")
    with web.connect(), web.connect(), web.connect(), web.connect() as last:
        wait_until(lambda: web.call("GET", "/api/v1/state").status_code == 503, "there is no room")
        assert int(web.call("GET", "/api/v1/state", 503, headers={"Connection": "close"}).headers["Retry-After"]) > 0
        last.close()
        wait_until(lambda: web.call("GET", "/api/v1/state").status_code == 200, "there is room again")


# ---- The program


def test_wrong_usage_is_one_line(tmp_path, start_web):
    empty, token, taken = tmp_path / "empty", tmp_path / "token", start_web()
    empty.write_text("\n")
    token.write_text("token\n")
    # exit code, a word of the line, arguments
    for code, word, *arguments in (
            (2, "--no-auth", "--listen", "0.0.0.0:0"), (2, "--no-auth", "--listen", "[::]:0"),
            (2, "nonsense", "--listen", "nonsense"), (2, "ADDRESS", "--listen", ":0"),
            (2, "127.0.0.1", "--listen", "127.0.0.1"), (2, "65536", "--listen", "127.0.0.1:65536"),
            (1, "in use", "--listen", f"127.0.0.1:{taken.port}"), (2, "none", "--token-file", str(tmp_path / "none")),
            (2, "empty", "--token-file", str(empty)), (2, "--tls-key", "--tls-cert", str(token)),
            (2, "--tls-cert", "--tls-key", str(token)), (2, "--max-clients", "--max-clients", "0"),
            (2, "many", "--max-clients", "many"), (2, "--bogus", "--bogus"), (2, "surplus", "surplus")):
        listen = () if "--listen" in arguments else ("--listen", "127.0.0.1:0")
        ended = subprocess.run([os.environ["ZVWEB"], *listen, *arguments], capture_output=True, text=True)
        assert (ended.returncode, ended.stdout, ended.stderr.count("\n")) == (code, "", 1), (arguments, ended)
        assert word in ended.stderr, (arguments, ended)
    for arguments in (("--no-auth",), ("--token-file", str(token))):
        web = start_web(*arguments, address="0.0.0.0:0")
        web.call("GET", "/", 200)
        web.call("GET", "/", 403, headers={"Host": f"evil.test:{web.port}"})


def test_metrics(camera, web):
    parser = pytest.importorskip("prometheus_client.openmetrics.parser")

    def samples():
        families = parser.text_string_to_metric_families(web.call("GET", "/metrics", 200).text)
        return {(sample.name, tuple(sorted(sample.labels.items()))): sample.value
                for family in families for sample in family.samples}

    before = samples()
    for _ in range(3):
        web.call("GET", "/api/v1/settings/bogus", 404)
    after = samples()
    grown = {key for key in after if key[1] == (("status", "404"),) and after[key] - before.get(key, 0) == 3}
    assert len(grown) == 1, "the requests by status"
    assert after["zv_link", (("zv_link", "up"),)] == 1 and after["zv_link", (("zv_link", "down"),)] == 0
    state = web.state()
    assert after["zv_revision", ()] <= state["revision"]
    assert {name for name, _ in after} >= {"zv_polls_total", "zv_poll_seconds_bucket", "zv_call_seconds_count"}
    told = {key: value for key, value in after.items() if key[0].startswith("zv_status_")}
    numbers = [value for value in state["status"].values() if isinstance(value, int)]
    assert len(told) == len(numbers)
    assert told["zv_status_system_internal_battery_present", (("status", "1"),)] == state["status"]["1"]


# ---- The camera comes and goes


def test_reads_go_on_while_the_camera_is_frozen_killed_and_back(camera, web):
    web.put(3, "60")
    for outage, link in ((camera.process.freeze, "stale"), (camera.process.kill, "stale"), (camera.end, "down")):
        outage()
        web.await_link(link)
        answer = web.call("GET", "/api/v1/state", 200)
        assert answer.elapsed.total_seconds() < 0.5
        state = answer.json()
        assert state["settings"]["3"] == 5 and state["status"]["8"] == 0
        assert answer.headers["ETag"] == f'W/"{state["epoch"]}-{state["revision"]}-{link}"'
        assert web.get("/api/v1/camera")["link"] == link
        for path in ("/api/v1/status", "/api/v1/settings", FPS, "/api/v1/catalogue", "/api/v1/available"):
            web.call("GET", path, 200)
        if link == "down":
            assert web.put(3, 8, 503)["detail"]
            web.call("POST", "/api/v1/capture/start", 503)
        camera.mend()
        web.await_link("up")
        web.put(3, "30")
        web.put(3, "60")


def test_before_the_first_poll(camera, start_web):
    camera.end()
    web = start_web()
    state = web.state()
    assert state == {**state, "revision": 0, "age_ms": 0, "link": "down", "status": {}, "settings": {}}
    assert web.get("/api/v1/camera")["link"] == "down"
    for path in ("/api/v1/status", "/api/v1/settings", FPS, "/api/v1/catalogue", "/api/v1/available"):
        web.call("GET", path, 503)
    web.put(3, 8, 503)
    for path in ("/", "/openapi.json", "/metrics", *PAGE_FILES):
        web.call("GET", path, 200)
    camera.mend()
    web.await_link("up")
    assert web.state()["revision"] >= 1 and web.state()["epoch"] == state["epoch"]
