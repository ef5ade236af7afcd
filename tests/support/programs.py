"""The programs as processes, for tests from outside: ZVSIM, ZVCAM and further variables of the environment name them. A
module has one simulated camera, and each test gets it mended.
"""

import json
import os
import re
import signal
import subprocess
import sys
import tempfile
import time

import pytest

SKIPPED = 77  # as ctest knows it
NO_ROOM = "ulimit -q"  # for queues: a user has few bytes for all of them, and a removed one keeps its while it is open
PATIENCE = 10  # seconds; nothing that works takes half of it
os.environ["TSAN_OPTIONS"] = os.environ.get("TSAN_OPTIONS", "") + " atexit_sleep_ms=0"  # an end is timed here


def skip_all(missing):
    """Ends a run for which something is not installed."""
    print(f"skipped: {missing}; the packages are in packaging/packages.list")
    sys.exit(SKIPPED)


def pytest_sessionfinish(session, exitstatus):
    """A module whose every test was skipped was skipped itself."""
    reporter = session.config.pluginmanager.get_plugin("terminalreporter")
    if exitstatus == 0 and reporter and reporter.stats.get("skipped") and not reporter.stats.get("passed"):
        session.exitstatus = SKIPPED


def wait_until(condition, what="it comes true", patience=PATIENCE):
    """Returns the first true value that the condition gives."""
    end = time.monotonic() + patience
    while not (found := condition()):
        assert time.monotonic() < end, f"waited {patience} s until {what}"
        time.sleep(0.02)
    return found


class Process:
    """One of the programs. What it says on standard error is an error unless its end expects it."""

    def __init__(self, *command):
        self.output, self.errors = tempfile.TemporaryFile(), tempfile.TemporaryFile()
        self.popen = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=self.output, stderr=self.errors)
        self.pid = self.popen.pid

    def running(self):
        return self.popen.poll() is None

    def said(self):
        """On standard output."""
        return os.pread(self.output.fileno(), 1 << 20, 0).decode()

    def told(self):
        """On standard error."""
        return os.pread(self.errors.fileno(), 1 << 20, 0).decode()

    def greeting(self):
        """Its first line; less than that when it has ended."""
        wait_until(lambda: not self.running() or "\n" in self.said(), "it greets")
        return self.said()

    def freeze(self):
        self.popen.send_signal(signal.SIGSTOP)

    def thaw(self):
        self.popen.send_signal(signal.SIGCONT)

    def kill(self):
        self.popen.kill()
        self.popen.wait()

    def end(self, told="", said="[^\n]*\n", signal_number=signal.SIGTERM, patience=PATIENCE):
        """In order: with 0, in time, and with nothing said but what the patterns have."""
        self.popen.send_signal(signal_number)
        try:
            code = self.popen.wait(patience)
        except subprocess.TimeoutExpired:
            self.kill()
            raise
        assert code == 0 and re.fullmatch(said, self.said()), (code, self.said(), self.told())
        assert re.fullmatch(told, self.told(), re.DOTALL), self.told()

    def memory_kib(self):
        """What it has in memory; nothing where a sanitizer keeps what was freed."""
        with open(f"/proc/{self.pid}/maps", encoding="ascii") as maps:
            if re.search(r"lib[at]san", maps.read()):
                return 0
        with open(f"/proc/{self.pid}/status", encoding="ascii") as status:
            return int(re.search(r"VmRSS:\s+(\d+) kB", status.read())[1])


class Camera:
    """A simulated camera, with its command line tool. `place` are the words before a program that start it where the
    camera is to be, and `inside` those that start one beside it, from its process."""

    def __init__(self, place=(), inside=lambda pid: ()):
        self.process = None
        self.place, self.inside = place, inside

    def start(self, *arguments):
        def ready():
            self.process = Process(*self.place, os.environ["ZVSIM"], *arguments)
            return "ready" in self.process.greeting() or NO_ROOM not in self.process.told()

        wait_until(ready, "there is room for the camera's queues")
        assert "ready" in self.process.said(), self.process.told()

    def end(self):
        """Also one that is frozen, and one that is gone."""
        if self.process and self.process.running():
            self.process.thaw()
            self.process.end(told=".*")
        self.process = None

    def mend(self):
        if not (self.process and self.process.running()):
            self.start()
        self.process.thaw()
        self.fault("clear")

    def beside(self, program, *words):
        """The command line of a program beside the camera."""
        return [*self.inside(self.process.pid), os.environ[program], *words]

    def run(self, program, *words):
        """What a program prints that has nothing to complain of."""
        def ended():
            outcome = subprocess.run(self.beside(program, *words), capture_output=True, text=True)
            return None if NO_ROOM in outcome.stderr else outcome

        outcome = wait_until(ended, "there is room for its queues")
        assert outcome.stderr == "", outcome
        return outcome.stdout

    def fault(self, rule):
        self.run("ZVSIM", "fault", rule)

    def media(self):
        return self.run("ZVSIM", "media")

    def zvcam(self, *words):
        """What a command prints as JSON, also one whose answer is no."""
        return json.loads(self.run("ZVCAM", *words, "--json"))


@pytest.fixture(scope="session")
def the_camera():
    camera = Camera()
    yield camera
    camera.end()


@pytest.fixture
def camera(the_camera):
    """The module's camera, running and without faults."""
    the_camera.mend()
    yield the_camera
    the_camera.mend()
