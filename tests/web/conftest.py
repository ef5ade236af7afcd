"""What the tests of the HTTP side share: requests that are held against the API's own description, and a reader of
events.

ZVSIM, ZVCAM and ZVWEB name the programs. A module has one simulated camera and one zvweb; each test gets them mended.
"""

import collections
import json
import os
import pathlib
import queue
import re
import socket
import threading
import time
from types import SimpleNamespace

import pytest
from programs import (  # noqa: F401, among it fixtures
    PATIENCE, Process, camera, pytest_sessionfinish, skip_all, the_camera, wait_until)

try:
    import jsonschema
    import requests
except ImportError as missing:
    skip_all(missing)

WEB_SOURCES = pathlib.Path(__file__).parents[2] / "service" / "web"
LONG = bool(os.environ.get("ZVWEB_LONG"))  # also what takes many seconds
EXAMPLES = {"setting": "3", "module": "zvweb"}  # of the parameters in paths
PAGE_FILES = sorted(f"/{file.name}" for file in (WEB_SOURCES / "page").iterdir() if file.suffix != ".html")
KEPT = (*PAGE_FILES, "/openapi.json", "/api/v1/catalogue")  # may be kept by a client, unlike everything else


class Contract:
    """The API's description: says what is wrong with an answer."""

    def __init__(self, path=WEB_SOURCES / "openapi.json"):
        self.document = json.loads(path.read_text(encoding="utf-8"))
        self.resolver = jsonschema.RefResolver("", self.document)

    def resolve(self, node):
        return self.resolver.resolve(node["$ref"])[1] if "$ref" in node else node

    def operation(self, method, path):
        """The description of what answers there, and the template of its path; both None where nothing does."""
        for template, item in self.document["paths"].items():
            if re.fullmatch(re.sub(r"\\{\w+\\}", ".+", re.escape(template)), path):
                return item.get("get" if method == "HEAD" else method.lower()), template
        return None, None

    def validate(self, schema, value):
        jsonschema.Draft202012Validator(schema, resolver=self.resolver).validate(value)

    def check(self, method, path, answer):
        operation, template = self.operation(method, path)
        described = {"content": {"application/problem+json": {"schema": {"$ref": "#/components/schemas/Problem"}}}}
        if operation:
            described = operation["responses"].get(str(answer.status_code))
            assert described, f"{method} {template} has no {answer.status_code}: {answer.text}"
            described = self.resolve(described)
        headers = answer.headers
        assert headers.get("X-Content-Type-Options") == "nosniff", headers
        kept = answer.status_code < 400 and path in KEPT
        assert (headers.get("Cache-Control") == "no-store") != kept, headers
        for name in described.get("headers", {}):
            assert name in headers, f"{method} {path} {answer.status_code}: {headers}"
        content = described.get("content")
        if not content:
            assert answer.content == b"", answer.text
            return
        kind = headers["Content-Type"].split(";")[0]
        assert kind in content, f"{method} {path} {answer.status_code}: {kind}, not {list(content)}"
        if kind.endswith("json") and method != "HEAD":
            self.validate(content[kind]["schema"], answer.json())
        if kind == "application/problem+json" and method != "HEAD":
            assert answer.json()["status"] == answer.status_code


# Of the kinds of events.
SCHEMAS = {"state": "State", "change": "Change", "available": "Available", "link": "LinkEvent"}


class Events:
    """A stream of events, as a client reads it."""

    def __init__(self, web, last_event_id=None, **headers):
        if last_event_id is not None:
            headers["Last-Event-ID"] = last_event_id
        self.answer = web.session.get(web.url + "api/v1/events", headers=headers, stream=True, timeout=120)
        assert self.answer.status_code == 200, self.answer.text
        web.contract.check("GET", "/api/v1/events", self.answer)
        self.contract, self.seen = web.contract, web.seen
        self.queue = queue.SimpleQueue()
        threading.Thread(target=self.read, daemon=True).start()

    def read(self):
        """Puts each event, each comment, and None at the end; an end without order leaves a word of what it was."""
        fields, waiting, last = {}, b"", None
        try:
            for chunk in self.answer.iter_content(None):
                *lines, waiting = (waiting + chunk).split(b"\n")
                for line in lines:
                    name, _, value = line.decode("utf-8").partition(":")
                    if name:
                        assert name not in fields, f"{name} twice in an event"
                        fields[name] = value.removeprefix(" ")
                    elif line:
                        self.queue.put(SimpleNamespace(id=None, kind="comment", data=value))
                    elif fields:
                        self.queue.put(SimpleNamespace(id=fields["id"], kind=fields["event"],
                                                       data=json.loads(fields["data"])))
                        fields = {}
        except Exception as error:  # whatever it is, a test waits for it
            last = SimpleNamespace(id=None, kind="broken", data=error)
        self.queue.put(last)

    def next(self, patience=PATIENCE):
        """The next event or comment; None at the end of the stream."""
        event = self.queue.get(timeout=patience)
        if event and event.id:
            self.seen[event.kind] += 1
            if self.seen[event.kind] <= 10:  # each takes as long as a hundred requests
                self.contract.validate({"$ref": f"#/components/schemas/{SCHEMAS[event.kind]}"}, event.data)
            event.revision = int(event.id.partition("-")[2])
            assert event.data.get("revision", event.revision) == event.revision
        return event

    def until(self, kind, condition=lambda data: True, patience=PATIENCE):
        """The next event of this kind whose data is so."""
        end = time.monotonic() + patience
        while True:
            try:
                event = self.next(max(0, end - time.monotonic()))
            except queue.Empty:
                pytest.fail(f"no such event \"{kind}\" in {patience} s")
            assert event, f"the stream ended before an event \"{kind}\""
            if event.kind == kind and condition(event.data):
                return event

    def quiet(self):
        """Whether no event waits to be read; comments come when they like."""
        while not self.queue.empty():
            event = self.queue.get()
            if not event or event.kind != "comment":
                return False
        return True

    def close(self):
        raw = self.answer.raw.connection
        if raw and raw.sock:
            raw.sock.shutdown(socket.SHUT_RDWR)
        self.answer.close()


class Web:
    """A zvweb, and a client of it whose every answer is held against the contract."""

    def __init__(self, contract, *arguments, address="127.0.0.1:0"):
        self.contract = contract
        self.streams, self.seen = [], collections.Counter()
        self.session = requests.Session()
        self.session.trust_env = False
        self.process = Process(os.environ["ZVWEB"], "--listen", address, *arguments)
        serving = re.fullmatch(r"zvweb: (https?://(.*):(\d+)/)\n", self.process.greeting())
        assert serving, f"{self.process.said()!r} {self.process.told()}"
        self.url, self.host, self.port = serving[1], serving[2].strip("[]"), int(serving[3])

    def call(self, method, path, status=None, **arguments):
        arguments.setdefault("timeout", 30)
        answer = self.session.request(method, self.url + path.lstrip("/"), **arguments)
        assert status in (None, answer.status_code), f"{method} {path}: {answer.status_code} {answer.text}"
        self.contract.check(method, path.partition("?")[0], answer)
        return answer

    def get(self, path, status=200, **arguments):
        """A read's JSON."""
        return self.call("GET", path, status, **arguments).json()

    def put(self, setting, option, status=200, **members):
        """A setting's write, and the JSON of its answer."""
        return self.call("PUT", f"/api/v1/settings/{setting}", status, json={"option": option, **members}).json()

    def state(self):
        return self.get("/api/v1/state")

    def await_link(self, link):
        wait_until(lambda: self.state()["link"] == link, f"the link is {link}")

    def events(self, *arguments, **headers):
        """A stream of events, open until close_streams()."""
        self.streams.append(Events(self, *arguments, **headers))
        return self.streams[-1]

    def close_streams(self):
        while self.streams:
            self.streams.pop().close()

    def connect(self, patience=PATIENCE):
        """A bare connection."""
        return socket.create_connection((self.host, self.port), patience)

    def end(self, **expected):
        self.session.close()
        if self.process.running():
            self.process.thaw()
        self.process.end(patience=1, **expected)


@pytest.fixture(scope="session")
def contract():
    return Contract()


@pytest.fixture(scope="session")
def the_web(the_camera, contract):
    the_camera.mend()
    web = Web(contract)
    yield web
    web.end()


@pytest.fixture
def web(camera, the_web):
    """The module's zvweb, whose link is up."""
    the_web.await_link("up")
    yield the_web
    the_web.close_streams()


@pytest.fixture
def start_web(contract):
    """Starts further ones, which end in order after the test."""
    started = []

    def start(*arguments, **more):
        started.append(Web(contract, *arguments, **more))
        return started[-1]

    yield start
    for web in started:
        if web.process.running():
            web.end()
