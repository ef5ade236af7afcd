"""What no honest client sends: after each of it the server answers as before."""

import http.client
import json
import socket
import struct
import time

import pytest
from conftest import LONG
from programs import PATIENCE, wait_until

HOST = b"Host: localhost\r\n"
GET = b"GET /api/v1/state HTTP/1.1\r\n" + HOST
PUT = b"PUT /api/v1/settings/3 HTTP/1.1\r\n" + HOST + b"Content-Type: application/json\r\n"
BODY = b'{"option":8}'
CLOSED = None  # in place of an answer
WAITS = "waits"  # for more of the request
REFUSED = (400, CLOSED)
TOO_MUCH = (400, 413, 414, 431, CLOSED)


def path(text, *statuses):
    return text, b"GET " + text + b" HTTP/1.1\r\n" + HOST + b"\r\n", statuses or (404,)


def body(name, content, *statuses):
    return name, PUT + b"Content-Length: %d\r\n\r\n" % len(content) + content, statuses


def head(name, lines, *statuses, content=b""):
    return name, PUT + lines + b"\r\n\r\n" + content, statuses


# name, bytes, what they may come to
ROWS = (
    ("garbage", bytes(range(256)) * 16 + b"\r\n\r\n", REFUSED),
    ("zeroes", bytes(4096) + b"\r\n\r\n", (*REFUSED, WAITS)),
    ("a TLS hello", b"\x16\x03\x01\x02\x00\x01\x00\x01\xfc\x03\x03" + b"\x42" * 512 + b"\r\n\r\n", REFUSED),
    ("no version", b"GET /api/v1/state\r\n\r\n", REFUSED),
    ("a version to come", b"GET /api/v1/state HTTP/3.7\r\n" + HOST + b"\r\n", (400, 505, CLOSED)),
    ("no host", b"GET /api/v1/state HTTP/1.1\r\n\r\n", (400, 403)),
    ("two hosts", GET + b"Host: evil.test\r\n\r\n", (400, 403)),
    ("the evil host first", b"GET /api/v1/state HTTP/1.1\r\nHost: evil.test\r\n" + HOST + b"\r\n", (400, 403)),
    ("a host in the target", b"GET http://evil.test/ HTTP/1.1\r\n" + HOST + b"\r\n", (400, 403, 404)),
    ("a tunnel", b"CONNECT evil.test:443 HTTP/1.1\r\n" + HOST + b"\r\n", (400, 403, 404, 405, CLOSED)),
    ("bare line feeds", GET.replace(b"\r\n", b"\n") + b"\n", (200, 400, CLOSED)),
    ("a zero in a header", GET + b"X: a\0b\r\n\r\n", (200, 400, CLOSED)),
    ("a header without a colon", GET + b"nonsense\r\n\r\n", (200, 400, CLOSED)),
    ("a huge header", GET + b"X: " + b"a" * 1000000 + b"\r\n\r\n", TOO_MUCH),
    ("many headers", GET + b"X: a\r\n" * 50000 + b"\r\n", TOO_MUCH),
    ("a huge path", b"GET /" + b"a" * 1000000 + b" HTTP/1.1\r\n\r\n", TOO_MUCH),
    ("a huge method", b"G" * 1000000 + b" / HTTP/1.1\r\n\r\n", TOO_MUCH),
    ("half a request", GET, (WAITS,)),
    path(b"/../../../../etc/passwd"),
    path(b"/%2e%2e/%2e%2e/%2e%2e/etc/passwd"),
    path(b"/zvweb.js/../../web.cpp"),
    path(b"/..%2f..%2fetc%2fpasswd"),
    path(b"/zvweb.js%00.html", 400, 404),
    path(b"/api/v1/state%00x", 400, 404),
    path(b"/api/v1/settings/3%00x", 400, 404),
    path(b"/api/v1/settings/%", 400, 404),
    path(b"/api/v1/settings/%zz", 400, 404),
    path(b"/api/v1/settings/%3", 400, 404),
    path(b"/api/v1/settings/%ff%fe", 400, 404),
    path(b"/api/v1/settings/\xff\xc0\x80", 400, 404),
    path(b"/api/v1/settings/%22%5c%0a%1f", 400, 404),
    path(b"/%0d%0aX-Evil:%201", 400, 404),
    body("a body of 1 MB", b" " * 1000000, 413),
    body("deep JSON", b"[" * 100000, 413),
    body("deep JSON that is read", b"[" * 65536, 400),
    body("deep JSON that is whole", b"[" * 32768 + b"]" * 32768, 422),
    body("deep objects", b'{"option":' * 5000 + b"1" + b"}" * 5000, 422),
    body("a huge number", b'{"option":' + b"9" * 60000 + b"}", 400, 422),
    body("a huge exponent", b'{"option":1e999999999}', 400, 422),
    body("a huge text", b'{"option":"' + b"9" * 60000 + b'"}', 422),
    body("a huge name", b'{"' + b"a" * 60000 + b'":1}', 422),
    body("text that is no UTF-8", b'{"option":"\xed\xa0\x80\xc0\x80"}', 400),
    body("half a surrogate", b'{"option":"\\ud800"}', 400, 422),
    body("a zero in a name", b'{"option\\u0000":8}', 422),
    body("zeroes", bytes(100), 400),
    head("a length that is short", b"Content-Length: 5", 400, content=BODY),
    head("a length that is long", b"Content-Length: 100", WAITS, content=BODY),
    head("a negative length", b"Content-Length: -12", *REFUSED, content=BODY),
    head("a length in words", b"Content-Length: twelve", *REFUSED, content=BODY),
    head("a length that wraps", b"Content-Length: 18446744073709551628", *REFUSED, 413, content=BODY),
    head("two lengths", b"Content-Length: 12\r\nContent-Length: 5", *REFUSED, content=BODY),
    head("two lengths in one", b"Content-Length: 12, 5", *REFUSED, content=BODY),
    head("a length and chunks", b"Content-Length: 12\r\nTransfer-Encoding: chunked", *REFUSED, content=b"0\r\n\r\n"),
    head("an unknown coding", b"Transfer-Encoding: bogus", 400, 501, content=BODY),
    head("a chunk that is no number", b"Transfer-Encoding: chunked", *REFUSED, content=b"zz\r\n"),
    head("a huge chunk", b"Transfer-Encoding: chunked", *REFUSED, 413, content=b"fffffffffffffffff\r\n"),
    head("a negative chunk", b"Transfer-Encoding: chunked", *REFUSED, content=b"-1\r\n"),
    head("half a chunk", b"Transfer-Encoding: chunked", WAITS, content=b"c\r\n{"),
    head("a body that is announced and too long", b"Expect: 100-continue\r\nContent-Length: 9999999", 413),
)


def speak(web, sent, patience=PATIENCE):
    """Sends bytes. Returns the first answer, whose body is read and whose JSON parses, and the connection."""
    connection = web.connect(patience)
    try:
        connection.sendall(sent)
    except OSError:
        pass  # it has heard enough; what it said can still be read
    answer = http.client.HTTPResponse(connection)
    try:
        answer.begin()
        while answer.status == 100:
            answer.begin()
        content = answer.read()
    except (ConnectionError, http.client.HTTPException):
        return CLOSED, connection
    except TimeoutError:
        return WAITS, connection
    assert "X-Evil" not in answer.headers
    if (answer.headers["Content-Type"] or "").endswith("json"):
        json.loads(content.decode("utf-8"))
    return answer.status, connection


def test_every_row_does_no_harm(web, camera):
    before, wrong = None, []
    for name, sent, statuses in ROWS:
        status, connection = speak(web, sent, 0.2 if WAITS in statuses else PATIENCE)
        connection.close()
        if status not in statuses:
            wrong.append(f"{name}: {status}")
        assert web.state()["link"] == "up", name
        before = before or web.process.memory_kib()
    assert not wrong, "\n".join(wrong)
    for _ in range(5):
        for _, sent, statuses in ROWS:
            if WAITS not in statuses:
                speak(web, sent)[1].close()
    assert web.process.memory_kib() - before < 16 << 10


def test_requests_in_one_piece_are_answered_in_order(web):
    rows = ((b"GET /api/v1/camera", 200, "model"), (b"HEAD /api/v1/events", 200, None), (b"GET /bogus", 404, "detail"),
            (b"HEAD /metrics", 200, None), (b"GET /api/v1/settings/3", 200, "options"))
    with web.connect() as connection:
        connection.sendall(b"".join(row[0] + b" HTTP/1.1\r\n" + HOST + b"\r\n" for row in rows))
        stream = connection.makefile("rb")
        for _, status, member in rows:
            assert stream.readline().startswith(b"HTTP/1.1 %d " % status)
            headers = http.client.parse_headers(stream)
            assert member is None or member in json.loads(stream.read(int(headers["Content-Length"])))


def test_clients_that_hang_or_vanish(web, camera):
    before = web.process.memory_kib()
    hanging = [web.connect() for _ in range(200)]
    for i, connection in enumerate(hanging):
        connection.sendall((b"", b"G", GET, PUT + b"Content-Length: 12\r\n\r\n{", GET + b"\r\n")[i % 5])
    for connection in hanging[::3]:
        connection.shutdown(socket.SHUT_WR)
    began = time.monotonic()
    web.put(3, "30")
    web.put(3, "60")
    assert time.monotonic() - began < 2
    for i, connection in enumerate(hanging):
        if i % 2:
            connection.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, struct.pack("ii", 1, 0))  # a reset
        connection.close()
    camera.fault("freeze:link=camera,ms=300")
    for sent in (PUT + b"Content-Length: 12\r\n\r\n" + BODY, b"GET /api/v1/events HTTP/1.1\r\n" + HOST + b"\r\n") * 20:
        with web.connect() as connection:
            connection.sendall(sent)
            connection.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, struct.pack("ii", 1, 0))
    web.put(88, "50P")
    assert web.process.memory_kib() - before < 16 << 10


@pytest.mark.skipif(not LONG, reason="takes half a minute; ZVWEB_LONG asks for it")
def test_a_request_in_single_bytes_is_cut_off(web):
    connections = [(web.connect(), request) for request in (
        GET + b"X: " + b"a" * 1000, PUT + b"Content-Length: 1000\r\n\r\n" + b" " * 1000)]
    began = time.monotonic()
    for i in range(64):
        for connection, request in connections:
            try:
                connection.sendall(request[i:i + 1] if i else request[:100])
            except OSError:
                pass
        time.sleep(0.5)
    for connection, _ in connections:
        with connection:
            connection.settimeout(1)
            try:
                while connection.recv(65536):
                    pass
            except ConnectionError:
                pass
    assert time.monotonic() - began < 40
    assert web.state()["link"] == "up"
