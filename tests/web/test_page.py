"""The page in a browser: what a person sees of a camera, does to it, and is told.

ZVWEB_PICTURES names a folder for its pictures.
"""

import contextlib
import os
import pathlib
import re
import shutil
import socket
import socketserver
import threading

import pytest
from conftest import LONG
from programs import wait_until

try:
    from selenium import webdriver
    from selenium.webdriver.common.by import By
    from selenium.webdriver.common.keys import Keys
    from selenium.webdriver.support.ui import Select
except ImportError:
    webdriver = None

CHROMIUM, DRIVER = shutil.which("chromium"), shutil.which("chromedriver")
pytestmark = pytest.mark.skipif(not (webdriver and CHROMIUM and DRIVER),
                                reason="no browser: chromium, chromium-driver or python3-selenium is missing")
RESOLUTION, FPS, LOOPING, MODE, SCHEDULE = 2, 3, 6, 144, 168


class Page:
    def __init__(self, driver, url):
        self.driver = driver
        self.url = url
        self.expected = "(?!)"  # of the console's messages; nothing
        driver.get(url)
        self.run("window.loadedOnce = true")

    def run(self, script, *arguments):
        return self.driver.execute_script(script, *arguments)

    def command(self, name, **parameters):
        return self.driver.execute_cdp_cmd(name, parameters)

    def emulate(self, **features):
        self.command("Emulation.setEmulatedMedia", features=[
            {"name": name.replace("_", "-"), "value": value} for name, value in features.items()])

    def find(self, selector):
        return self.driver.find_element(By.CSS_SELECTOR, selector)

    def text(self, selector):
        return self.find(selector).get_property("textContent")

    def field(self, setting):
        return self.find(f"#setting-{setting}")

    def choice(self, setting):
        return Select(self.field(setting)).first_selected_option.text

    def choose(self, setting, option):
        Select(self.field(setting)).select_by_visible_text(option)

    def enter(self, setting, text):
        self.field(setting).clear()
        self.field(setting).send_keys(text + Keys.ENTER)

    def focus(self, setting):
        self.run("arguments[0].focus({focusVisible: true})", self.field(setting))

    def focused(self):
        return self.driver.switch_to.active_element

    def press(self, *keys):
        self.focused().send_keys(*keys)

    def await_text(self, selector, pattern):
        wait_until(lambda: re.search(pattern, self.text(selector)), f"{selector} says {pattern}")

    def await_up(self):
        self.await_text("#link", "^Camera connected$")
        wait_until(lambda: self.find("#now").is_displayed())

    def picture(self, name):
        if folder := os.environ.get("ZVWEB_PICTURES"):
            self.driver.save_screenshot(str(pathlib.Path(folder, f"{name}.png")))

    def check(self):
        """Nothing was reloaded, and the console says nothing but what the test has made happen."""
        assert self.run("return window.loadedOnce")
        messages = [entry["message"] for entry in self.driver.get_log("browser")]
        assert [message for message in messages if not re.search(self.expected, message)] == []


@pytest.fixture(scope="module")
def driver():
    options = webdriver.ChromeOptions()
    options.binary_location = CHROMIUM
    for argument in ("headless=new", "no-sandbox", "disable-dev-shm-usage", "hide-scrollbars", "window-size=1280,900"):
        options.add_argument(f"--{argument}")
    options.set_capability("goog:loggingPrefs", {"browser": "ALL"})
    driver = webdriver.Chrome(service=webdriver.chrome.service.Service(DRIVER), options=options)
    yield driver
    driver.quit()


@pytest.fixture
def open_page(driver):
    opened = []

    def open_url(url):
        driver.delete_all_cookies()
        driver.get_log("browser")
        opened.append(Page(driver, url))
        return opened[-1]

    yield open_url
    for page in opened:
        page.check()
        page.command("Emulation.clearDeviceMetricsOverride")
        page.emulate()
    driver.get("about:blank")


@pytest.fixture
def page(camera, web, open_page):
    """Of a camera that takes 4K video at 60 frames."""
    for setting, option in ((MODE, "VIDEO"), (RESOLUTION, "4K"), (FPS, "60")):
        web.put(setting, option, status=None, force=True)
    page = open_page(web.url)
    page.await_up()
    wait_until(lambda: (page.choice(RESOLUTION), page.choice(FPS)) == ("4K", "60"))
    return page


def test_everything_has_a_name(page, web):
    """As assistive technology sees it."""
    tree = page.command("Accessibility.getFullAXTree")["nodes"]
    named = [(node["role"]["value"], node["name"]["value"]) for node in tree if "name" in node and "role" in node]
    for setting in web.get("/api/v1/catalogue")["settings"]:
        role = "textbox" if setting["setting"] == SCHEDULE else "combobox"
        assert any(kind == role and setting["name"] in name.split() for kind, name in named), setting["name"]
    for kind in ("banner", "main", "navigation", "button", "link", "checkbox", "combobox", "region", "textbox"):
        names = [name for role, name in named if role == kind]
        assert names and (kind in ("banner", "main") or "" not in names), f"{kind}: {names}"


def test_what_another_one_changes_shows_at_once(page, camera):
    camera.zvcam("set", "video/fps", "30")
    wait_until(lambda: page.choice(FPS) == "30")
    row = page.field(FPS).find_element(By.XPATH, "..")
    assert "changed" in row.get_attribute("class")
    assert "Video frames per second is now 30." in page.text("#told")
    camera.zvcam("shutter", "on")
    page.await_text("#recording", "^Recording 00:0[1-9]$")
    assert page.text("#shutter") == "Stop recording" and page.text("#told") == "Recording started."
    page.picture("recording")
    camera.zvcam("shutter", "off")
    page.await_text("#recording", "^Not recording$")
    wait_until(lambda: "changed" not in row.get_attribute("class"), "the mark is over")


def test_a_choice_reaches_the_camera(page, web, camera):
    page.choose(FPS, "24")
    wait_until(lambda: camera.zvcam("get", "video/fps")["present"]["key"] == "24")
    page.enter(SCHEDULE, "7:30")
    wait_until(lambda: page.field(SCHEDULE).get_property("value") == "07:30")
    assert web.state()["settings"][str(SCHEDULE)] & 1
    page.enter(SCHEDULE, "off")
    wait_until(lambda: not web.state()["settings"][str(SCHEDULE)] & 1)
    page.find("#switch button:nth-child(2)").click()
    page.await_text("#mode", "^Single Photo$")
    assert page.text("#shutter") == "Take photo"


def test_a_refused_choice_is_taken_back_and_told(page, camera):
    page.expected = "settings/3 .* 502"
    camera.fault("refuse:group=2")
    page.choose(FPS, "24")
    page.await_text("#alert", "refuse")
    assert page.text("#alert") == page.field(FPS).find_element(By.XPATH, "../*[contains(@class, 'note')]").text
    assert page.choice(FPS) == "60"


def test_what_is_not_offered_tells_why_and_what_frees_it(page, web, camera):
    option = page.find(f"#setting-{FPS} option[value='240']")
    assert not option.is_enabled() and option.get_attribute("title") == "Not while Video resolution is 4K"
    page.focus(FPS)
    hint = page.find(f"#setting-{FPS}-why")
    assert hint.is_displayed() and "240: not while Video resolution is 4K." in hint.text
    assert page.field(FPS).get_attribute("aria-describedby") == hint.get_attribute("id")
    page.picture("reason")
    page.run("arguments[0].selected = true; arguments[0].parentNode.dispatchEvent(new Event('change'))", option)
    page.await_text("#alert", "^Not while Video resolution is 4K.$")
    assert page.choice(FPS) == "60" and web.state()["settings"][str(FPS)] == 5
    assert not page.run("return performance.getEntriesByName(location + 'api/v1/settings/3').length"), "it was sent"

    page.focus(LOOPING)
    assert page.focused() == page.field(LOOPING) and page.focused().get_attribute("aria-disabled") == "true"
    assert page.text(f"#setting-{LOOPING}-why") == "Not while Mode is Video."
    page.press(Keys.TAB)
    assert page.focused().text == "Change Mode"
    page.press(Keys.ENTER)
    assert page.focused() == page.field(MODE)

    camera.zvcam("set", "video/resolution", "1080")
    wait_until(option.is_enabled)
    assert not option.get_attribute("title")


def test_a_camera_that_goes_is_told_and_comes_back(page, camera):
    camera.process.freeze()
    page.await_text("#link", "^The camera does not answer")
    page.await_text("#age", "^[2-9] s old$")
    page.picture("stale")
    page.find("#shutter").click()
    assert page.text("#shutter-why") == page.text("#alert") == "The camera does not answer."
    camera.process.thaw()
    page.await_up()
    camera.process.kill()
    page.await_text("#link", "^The camera does not answer")
    camera.start()
    page.await_up()
    camera.end()
    page.await_text("#link", "^No camera")
    camera.start()
    page.await_up()


class Relay(socketserver.ThreadingTCPServer):
    """Leads to a port, and is cut where that is 0."""
    daemon_threads = True

    def __init__(self, port):
        self.port, self.sockets = port, []
        super().__init__(("127.0.0.1", 0), None)
        threading.Thread(target=self.serve_forever, daemon=True).start()

    def cut(self):
        self.port = 0
        for end in self.sockets:
            with contextlib.suppress(OSError):  # it is over already
                end.shutdown(socket.SHUT_RDWR)

    def finish_request(self, request, client_address):
        if self.port:
            server = socket.create_connection(("127.0.0.1", self.port))
            self.sockets += [request, server]
            threading.Thread(target=self.pass_on, args=(request, server), daemon=True).start()
            self.pass_on(server, request)

    def pass_on(self, source, target):
        with contextlib.suppress(OSError):
            while data := source.recv(65536):
                target.sendall(data)
            target.shutdown(socket.SHUT_WR)


@pytest.mark.skipif(not LONG, reason="takes 4 s; ZVWEB_LONG asks for it")
def test_a_server_that_goes_is_told_and_comes_back(camera, start_web, open_page):
    """A line that is cut while the camera goes; another server in its place."""
    first = start_web()
    relay = Relay(first.port)
    page = open_page(f"http://127.0.0.1:{relay.server_address[1]}/")
    page.expected = "ERR_"
    page.await_up()
    for resolution in ("1080", "2.7K", "4K"):
        page.choose(RESOLUTION, resolution)
        page.await_text("#told", f"Video resolution is now {resolution}")
    relay.cut()
    page.await_text("#link", "^Connection to the server lost")
    camera.process.freeze()
    first.await_link("stale")
    relay.port = first.port
    page.await_text("#link", "^The camera does not answer")
    camera.process.thaw()
    page.await_up()
    relay.cut()
    first.end()
    relay.port = start_web().port
    camera.zvcam("set", "video/resolution", "1080")
    wait_until(page.find(f"#setting-{FPS} option[value='240']").is_enabled, "the new server's offer shows")
    relay.shutdown()


def test_a_camera_without_options_takes_numbers(camera, start_web, open_page, request):
    request.addfinalizer(camera.end)
    camera.end()
    camera.start("--model", "51")
    page = open_page(start_web().url)
    page.await_up()
    page.enter(FPS, "8")
    wait_until(lambda: camera.zvcam("get", "3")["present"]["id"] == 8)


def test_it_waits_for_the_first_camera(camera, start_web, open_page):
    camera.end()
    page = open_page(start_web().url)
    page.await_text("#empty", "^No camera yet")
    assert not page.find("#now").is_displayed()
    camera.start()
    page.await_up()
    assert not page.find("#empty").is_displayed()


def test_the_keyboard_is_enough(page, camera):
    def tab_to(target, *keys):
        for _ in range(60):
            page.press(*keys, Keys.TAB)
            assert page.run("return getComputedStyle(document.activeElement).outlineStyle") == "solid"
            if page.focused() == target:
                return

    page.press(Keys.TAB)
    assert page.focused().text == "Skip to the settings" and page.focused().is_displayed()
    page.press(Keys.ENTER)
    tab_to(page.field(FPS))
    page.press("30", Keys.ENTER)
    wait_until(lambda: camera.zvcam("get", "video/fps")["present"]["key"] == "30")
    tab_to(page.find("#shutter"), Keys.SHIFT)
    for text in ("Stop recording", "Start recording"):
        page.press(Keys.SPACE)
        page.await_text("#shutter", text)


@pytest.mark.skipif(not LONG, reason="takes 3 s; ZVWEB_LONG asks for it")
def test_a_token_is_asked_for(camera, start_web, open_page, tmp_path):
    token = tmp_path / "token"
    token.write_text("open-sesame-0123456789\n")
    token.chmod(0o600)
    web = start_web()
    page = open_page(web.url)
    page.expected = " 401 |ERR_"
    page.await_up()
    web.process.kill()
    start_web("--token-file", str(token), address=f"127.0.0.1:{web.port}")
    for word, answer in (("wrong", "not accepted"), ("open-sesame-0123456789", "")):
        wait_until(lambda: page.find("#token").is_displayed())
        page.find("#token").send_keys(word + Keys.ENTER)
        page.await_text("#ask-note", answer)
    page.await_up()


# What is written on what, by the names of the colours.
WRITTEN = [(text, back) for back in ("page", "card", "field", "sunk", "mark") for text in ("text", "muted")] + [
    ("accent", "page"), ("accent", "card"), ("on-accent", "accent"), ("red", "card"), ("on-shutter", "shutter"),
    ("bad", "card"), ("good", "good-back"), ("warn", "warn-back"), ("bad", "bad-back")]


def luminance(colour):
    linear = [c / 12.92 if c <= 0.04045 else ((c + 0.055) / 1.055) ** 2.4 for c in (value / 255 for value in colour)]
    return 0.2126 * linear[0] + 0.7152 * linear[1] + 0.0722 * linear[2]


@pytest.mark.parametrize("scheme", ["light", "dark"])
def test_text_can_be_read(page, scheme):
    page.emulate(prefers_color_scheme=scheme)
    page.picture(scheme)

    def colour(name):
        value = page.run("return getComputedStyle(document.body).getPropertyValue(arguments[0])", f"--{name}")
        return bytes.fromhex(value.strip().removeprefix("#"))

    for pair in WRITTEN:
        dark, light = sorted(luminance(colour(name)) for name in pair)
        assert (light + 0.05) / (dark + 0.05) >= 4.5, pair
    shown = page.field(FPS).value_of_css_property("background-color")
    assert bytes(int(value) for value in re.findall(r"\d+", shown)[:3]) == colour("field")
    assert (luminance(colour("field")) < 0.1) == (scheme == "dark")


def test_a_phone_has_one_column(page):
    page.command("Emulation.setDeviceMetricsOverride", width=360, height=800, deviceScaleFactor=2, mobile=True)
    page.picture("phone")
    right, lefts = page.run("""
        const boxes = [...document.querySelectorAll('body *')].filter((element) => element.checkVisibility());
        const rows = [...document.querySelectorAll('#rows .row')].map((row) => row.getBoundingClientRect().left);
        return [Math.max(document.documentElement.scrollWidth,
            ...boxes.map((element) => element.getBoundingClientRect().right)), [...new Set(rows)]]""")
    assert right <= 360 and len(lefts) == 1


def test_it_is_small_and_all_its_own(page):
    loaded = page.run("""return performance.getEntries().filter(({transferSize}) => transferSize > 0)
        .map(({name, decodedBodySize}) => [name, decodedBodySize])""")
    assert all(name.startswith(page.url) for name, size in loaded)
    files = {name.removeprefix(page.url): size for name, size in loaded if "/api/" not in name}
    assert {"", "zvweb.css", "zvweb.js"} <= files.keys() and 20000 < sum(files.values()) < 60000


def test_deleting_is_asked_first(page, camera):
    files = camera.media()
    for button, answer in (("#delete-all", Keys.ESCAPE), ("#delete-last", Keys.ENTER)):
        page.find(button).click()
        page.press(answer)
        assert not page.find("#confirm").is_displayed() and camera.media() == files
    for button in ("#delete-last", "#delete-all"):
        page.find(button).click()
        page.find("#confirm [value=yes]").click()
        wait_until(lambda: camera.media() != files, f"{button} reaches the camera")
        files = camera.media()
    page.await_text("#facts", "0 videos and 0 photos")
