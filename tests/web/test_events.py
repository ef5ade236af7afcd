"""The stream of events: what comes first, what follows, what a client that comes back gets, and that one that does not
read harms nobody."""

import contextlib
import json
import signal
import socket
import time
from concurrent.futures import ThreadPoolExecutor

import pytest
from conftest import LONG
from programs import PATIENCE

CLIENTS = 200
SLOW_CLIENTS = 8
WAITING_MAX = 262144  # bytes that may wait for a client


def shows(number, option):
    """Of a change: that the setting is at this option now."""
    return lambda change: change["settings"].get(str(number)) == option


def collect(stream, last=lambda event: False):
    """All events up to the first that `last` holds for, or up to the stream's end. Comments come when they like."""
    events = []
    while not events or events[-1] and not last(events[-1]):
        event = stream.next()
        assert not event or event.kind != "broken", event.data
        if not event or event.kind != "comment":
            events.append(event)
    return events


def document(state):
    return {name: state[name] for name in ("revision", "status", "settings")}


def test_the_whole_then_changes_then_offers(camera, web):
    web.put(2, "4K")
    web.put(88, "70P")
    stream = web.events()
    first = stream.next()
    assert first.kind == "state" and document(first.data) == document(web.state())
    assert first.id == f"{first.data['epoch']}-{first.data['revision']}" and first.data["link"] == "up"
    web.put(88, "50P")
    camera.zvcam("set", "88", "60P")
    events = collect(stream, lambda event: event.kind == "change" and shows(88, 60)(event.data))
    assert {event.kind for event in events} == {"change"}, [(event.kind, event.data) for event in events]
    assert shows(88, 50)(events[0].data)
    web.put(2, "1080")
    resolution = stream.until("change", shows(2, 9))
    offers = stream.until("available")
    assert offers.revision == resolution.revision and 0 in offers.data["settings"]["3"]["options"]
    assert offers.data["settings"] == web.get("/api/v1/available")["settings"]
    web.put(2, "4K")


def test_the_link_is_told(camera, web):
    stream = web.events()
    revision = stream.next().revision
    for outage, link in ((camera.process.freeze, "stale"), (camera.process.kill, "stale"), (camera.end, "down")):
        outage()
        assert stream.until("link").data == {"link": link}
        assert web.events().next().data["link"] == link
        camera.mend()
        back = stream.until("link", lambda data: data["link"] == "up")
        assert back.revision >= revision
        web.put(3, "30")
        stream.until("change", shows(3, 8))
        web.put(3, "60")


def test_a_client_comes_back(camera, web):
    web.put(3, "60")
    stream = web.events()
    last = stream.next()
    state = document(last.data)
    for resolution, rate in (("1080", "30"), ("4K", "24")):
        web.put(2, resolution)
        web.put(3, rate)
    stream.until("change", shows(3, 10))  # all is told to those who are there
    stream.close()
    changes = collect(web.events(last.id), lambda event: shows(3, 10)(event.data))
    assert [change.kind for change in changes] == ["change"] * len(changes), "the changes alone"
    assert [change.revision for change in changes] == \
           list(range(last.revision + 1, last.revision + 1 + len(changes))), "all of them"
    for change in changes:
        state = {"revision": change.revision, "status": {**state["status"], **change.data["status"]},
                 "settings": {**state["settings"], **change.data["settings"]}}
    assert state == document(web.state())

    present = web.events(changes[-1].id)
    time.sleep(0.2)
    assert present.quiet(), "nothing was missed"
    web.put(3, "60")
    assert shows(3, 5)(collect(present, lambda event: True)[0].data)

    epoch = last.id.partition("-")[0]
    for unknown in (f"x{epoch[1:]}-{last.revision}", f"{epoch}-{last.revision + 1000}", f"{epoch}-", epoch, "-", "",
                    f"{epoch}-{last.revision}x", f"{epoch}--1", f"{epoch}-{2 ** 64 + last.revision}", "x" * 3000):
        assert web.events(unknown).next().kind == "state", unknown


@pytest.mark.skipif(not LONG, reason="takes 30 s; ZVWEB_LONG asks for it")
def test_a_comment_every_15_seconds(web):
    stream = web.events()
    stream.until("comment", patience=17)
    began = time.monotonic()
    stream.until("comment", patience=17)
    assert time.monotonic() - began > 13


@pytest.mark.parametrize("number", (signal.SIGTERM, signal.SIGINT))
def test_streams_end_in_order_with_the_program(camera, start_web, number):
    web = start_web()
    web.await_link("up")
    streams = [web.events() for _ in range(20)]
    assert all(stream.next().kind == "state" for stream in streams)
    camera.fault("freeze:link=camera")
    with web.connect() as writing:
        writing.sendall(b'PUT /api/v1/settings/3 HTTP/1.1\r\nHost: localhost\r\nContent-Type: application/json\r\n'
                        b'Content-Length: 12\r\n\r\n{"option":8}')
        assert web.state()["link"] == "up"
        web.end(signal_number=number)
    assert all(collect(stream)[-1] is None for stream in streams)


def test_many_clients_at_once(camera, web):
    web.put(88, "70P")
    brightness = (50, 60, 50, 80)
    with ThreadPoolExecutor(CLIENTS) as clients:
        streams = list(clients.map(lambda _: web.events(), range(CLIENTS)))
        assert all(stream.next().kind == "state" for stream in streams)

        def client(stream):
            """Sees all changes, and reads beside them."""
            seen = []
            for percent in brightness:
                seen += collect(stream, lambda event: event.kind == "change" and shows(88, percent)(event.data))
                assert web.state()["revision"] >= seen[-1].revision
            return [event.id for event in seen]

        reading = [clients.submit(client, stream) for stream in streams]
        for percent in brightness:
            web.put(88, percent)
        ids = [future.result(2 * PATIENCE) for future in reading]
    assert all(each == ids[0] for each in ids)


def deaf_client(web):
    """Asks for events, and reads nothing yet."""
    client = socket.socket()
    client.setsockopt(socket.SOL_SOCKET, socket.SO_RCVBUF, 4096)
    client.settimeout(PATIENCE)
    client.connect((web.host, web.port))
    client.sendall(b"GET /api/v1/events HTTP/1.1\r\nHost: localhost\r\n\r\n")
    return client


def flood(web, reader, size):
    """Changes the offers until so many bytes of them went out. Returns the last revision."""
    sent = 0
    while sent < size:
        web.put(2, "4K" if web.state()["settings"]["2"] == 9 else "1080")
        offers = reader.until("available")
        sent += len(json.dumps(offers.data, separators=(",", ":")))
    return offers.revision


def test_a_client_that_does_not_read_is_cut_off(camera, web):
    web.put(2, "4K")
    readers = [web.events() for _ in range(3)]
    first = [reader.next() for reader in readers][0]
    with deaf_client(web) as late:
        last = flood(web, readers[0], WAITING_MAX // 2)
        got = b""
        while b"-%d\nevent: available" % last not in got:
            got += late.recv(65536)
    memory = web.process.memory_kib()
    deaf = [deaf_client(web) for _ in range(SLOW_CLIENTS)]
    last = flood(web, readers[0], 4 * WAITING_MAX)
    for client in deaf:
        got = 0
        with client, contextlib.suppress(ConnectionResetError):
            while part := client.recv(65536):
                got += len(part)
        assert got < 2 * WAITING_MAX, "the stream went on"
    for reader in readers[1:]:
        events = collect(reader, lambda event: event.kind == "available" and event.revision == last)
        revisions = [event.revision for event in events if event.kind == "change"]
        assert revisions == list(range(first.revision + 1, last + 1))
    assert web.process.memory_kib() - memory < 8 << 10
    assert web.events(first.id).next().kind == "state", "the journal forgets"
