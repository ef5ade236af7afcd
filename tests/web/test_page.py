"""The page in a browser: what a person sees of a camera, does to it, and is told.

ZVWEB_PICTURES names a folder for its pictures.
"""

import os
import pathlib
import re
import shutil
import time

import pytest
import requests
from conftest import WEB_SOURCES, wait_until

try:
    from selenium import webdriver
    from selenium.webdriver.common.by import By
    from selenium.webdriver.common.keys import Keys
    from selenium.webdriver.support.ui import Select
except ImportError:
    webdriver = None

CHROMIUM, DRIVER = shutil.which("chromium"), shutil.which("chromedriver")
pytestmark = pytest.mark.skipif(not (webdriver and CHROMIUM and DRIVER),
                                reason="no browser: chromium, chromium-driver and python3-selenium are missing")
PHONE = {"width": 360, "height": 800, "deviceScaleFactor": 2, "mobile": True}
FPS, RESOLUTION, LOOPING, SCHEDULE, MODE = 3, 2, 6, 168, 144


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


class Page:
    def __init__(self, driver, url):
        self.driver = driver
        self.expected = r"(?!)"  # of the console's messages
        driver.get(url)
        driver.execute_script("window.loadedOnce = true")

    def find(self, selector):
        return self.driver.find_element(By.CSS_SELECTOR, selector)

    def text(self, selector):
        return self.find(selector).get_property("textContent")

    def field(self, setting):
        return self.find(f"#setting-{setting}")

    def choice(self, setting):
        return Select(self.field(setting)).first_selected_option.text

    def option(self, setting, key):
        return self.find(f"#setting-{setting} option[value='{key}']")

    def focused(self):
        return self.driver.switch_to.active_element

    def press(self, *keys):
        for key in keys:
            self.focused().send_keys(key)

    def await_text(self, selector, pattern):
        wait_until(lambda: re.search(pattern, self.text(selector)), f"{selector} says {pattern}")

    def await_up(self):
        self.await_text("#link", "^Camera connected$")
        wait_until(lambda: self.find("#now").is_displayed())

    def emulate(self, **features):
        self.driver.execute_cdp_cmd("Emulation.setEmulatedMedia", {"features": [
            {"name": name.replace("_", "-"), "value": value} for name, value in features.items()]})

    def colours(self, *names):
        """Of the page as it is shown now, as bytes."""
        values = self.driver.execute_script("""const style = getComputedStyle(document.documentElement);
            return arguments[0].map((name) => style.getPropertyValue(`--${name}`))""", names)
        return [bytes.fromhex(value.strip().removeprefix("#")) for value in values]

    def picture(self, name):
        if folder := os.environ.get("ZVWEB_PICTURES"):
            self.driver.save_screenshot(str(pathlib.Path(folder, f"{name}.png")))

    def check(self):
        """Nothing was reloaded, and the console says nothing but what the test has made happen."""
        assert self.driver.execute_script("return window.loadedOnce")
        messages = [entry["message"] for entry in self.driver.get_log("browser")]
        assert [message for message in messages if not re.search(self.expected, message)] == []


@pytest.fixture
def open_page(driver):
    """Opens the page of a zvweb in a fresh state."""
    opened = []

    def open_url(url):
        driver.delete_all_cookies()
        driver.get_log("browser")
        opened.append(Page(driver, url))
        return opened[-1]

    yield open_url
    driver.execute_cdp_cmd("Emulation.clearDeviceMetricsOverride", {})
    driver.execute_cdp_cmd("Emulation.setEmulatedMedia", {"features": []})
    for page in opened:
        page.check()
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
    tree = page.driver.execute_cdp_cmd("Accessibility.getFullAXTree", {})["nodes"]
    named = [(node["role"]["value"], node["name"]["value"]) for node in tree if node.get("name") and node.get("role")]
    for setting in web.get("/api/v1/catalogue")["settings"]:
        role = "textbox" if setting["setting"] == SCHEDULE else "combobox"
        assert any(kind == role and setting["name"] in name.split() for kind, name in named), setting["name"]
    for kind in ("button", "link", "checkbox", "combobox", "region", "textbox"):
        names = [name for role, name in named if role == kind]
        assert names and "" not in names and len(set(names)) >= len(names) - 2, f"{kind}: {names}"
    for landmark in ("banner", "main", "navigation"):
        assert sum(node.get("role", {}).get("value") == landmark for node in tree) == 1, landmark


def test_what_another_one_changes_shows_at_once(page, camera):
    camera.zvcam("set", "video/fps", "30")
    wait_until(lambda: page.choice(FPS) == "30")
    row = page.field(FPS).find_element(By.XPATH, "..")
    assert "changed" in row.get_attribute("class")
    assert "Video frames per second is now 30." in page.text("#told")
    page.picture("changed")
    camera.zvcam("shutter", "on")
    page.await_text("#recording", r"^Recording 00:0[1-9]$")
    assert page.text("#shutter") == "Stop recording" and page.text("#told") == "Recording started."
    page.picture("recording")
    camera.zvcam("shutter", "off")
    page.await_text("#recording", "^Not recording$")
    wait_until(lambda: "changed" not in row.get_attribute("class"), "the mark is over")


def test_a_choice_reaches_the_camera(page, web, camera):
    Select(page.field(FPS)).select_by_visible_text("24")
    wait_until(lambda: camera.zvcam("get", "video/fps")["present"]["key"] == "24")
    page.field(SCHEDULE).clear()
    page.field(SCHEDULE).send_keys("7:30" + Keys.ENTER)
    wait_until(lambda: page.field(SCHEDULE).get_property("value") == "07:30")
    assert web.state()["settings"][str(SCHEDULE)] & 1
    page.field(SCHEDULE).clear()
    page.field(SCHEDULE).send_keys("off" + Keys.ENTER)
    wait_until(lambda: not web.state()["settings"][str(SCHEDULE)] & 1)
    page.find("#switch button:nth-child(2)").click()
    page.await_text("#mode", "^Single Photo$")
    assert page.text("#shutter") == "Take photo"


def test_a_refused_choice_is_taken_back_and_told(page, camera):
    page.expected = "settings/3 .* 502"
    camera.fault("refuse:group=2")
    Select(page.field(FPS)).select_by_visible_text("24")
    page.await_text("#alert", "refuse")
    row = page.field(FPS).find_element(By.XPATH, "..")
    assert page.text("#alert") == row.find_element(By.CLASS_NAME, "note").text
    assert page.choice(FPS) == "60"


def test_what_is_not_offered_tells_why_and_what_frees_it(page, web, camera):
    option = page.option(FPS, "240")
    assert not option.is_enabled() and option.get_attribute("title") == "Not while Video resolution is 4K"
    page.driver.execute_script("arguments[0].focus({focusVisible: true})", page.field(FPS))
    hint = page.find(f"#setting-{FPS}-why")
    assert hint.is_displayed() and "240: not while Video resolution is 4K." in hint.text
    assert page.field(FPS).get_attribute("aria-describedby") == hint.get_attribute("id")
    page.picture("reason")
    page.driver.execute_script("""arguments[0].selected = true;
        arguments[0].parentNode.dispatchEvent(new Event('change'))""", option)
    page.await_text("#alert", "Not while")
    assert page.choice(FPS) == "60" and web.state()["settings"][str(FPS)] == 5
    assert not page.driver.execute_script("return performance.getEntriesByName(location + 'api/v1/settings/3').length")

    looping = page.field(LOOPING)
    page.driver.execute_script("arguments[0].focus({focusVisible: true})", looping)
    assert looping.get_attribute("aria-disabled") == "true" and page.focused() == looping
    assert page.text(f"#setting-{LOOPING}-why") == "Not while Mode is Video."
    page.press(Keys.TAB)
    assert page.focused().text == "Change Mode"
    page.press(Keys.ENTER)
    assert page.focused() == page.field(MODE)

    camera.zvcam("set", "video/resolution", "1080")
    wait_until(option.is_enabled)
    assert not option.get_attribute("title")


def test_a_camera_that_goes_is_told_and_comes_back(page, camera):
    """Frozen, killed, ended in order."""
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


def test_a_server_that_goes_is_told_and_comes_back(camera, start_web, open_page):
    web = start_web()
    web.await_link("up")
    page = open_page(web.url)
    page.expected = "ERR_CONNECTION_REFUSED|ERR_INCOMPLETE_CHUNKED_ENCODING|ERR_CONNECTION_RESET"
    page.await_up()
    web.process.kill()
    page.await_text("#link", "^Connection to the server lost")
    start_web(address=f"127.0.0.1:{web.port}")
    page.await_up()
    camera.zvcam("set", "video/fps", "30")
    wait_until(lambda: page.choice(FPS) == "30")


def test_it_waits_for_the_first_camera(camera, start_web, open_page):
    camera.end()
    page = open_page(start_web().url)
    page.await_text("#empty", "^No camera yet")
    assert not page.find("#now").is_displayed()
    camera.start()
    page.await_up()
    assert not page.find("#empty").is_displayed()


@pytest.fixture
def camera_without_options(camera):
    camera.end()
    camera.start("--model", "51")
    yield camera
    camera.end()


def test_settings_without_options_take_numbers(camera_without_options, start_web, open_page):
    page = open_page(start_web().url)
    page.await_up()
    page.field(FPS).clear()
    page.field(FPS).send_keys("8" + Keys.ENTER)
    wait_until(lambda: camera_without_options.zvcam("get", "3")["present"]["id"] == 8)


def test_the_keyboard_is_enough(page, camera):
    page.press(Keys.TAB)
    assert page.focused().text == "Skip to the settings" and page.focused().is_displayed()
    page.press(Keys.ENTER)
    fps = page.field(FPS)
    for _ in range(40):
        page.press(Keys.TAB)
        outline = page.focused().value_of_css_property("outline-style")
        assert outline == "solid", page.focused().get_attribute("outerHTML")
        if page.focused() == fps:
            break
    page.press("30", Keys.ENTER)
    wait_until(lambda: camera.zvcam("get", "video/fps")["present"]["key"] == "30")
    for _ in range(60):
        page.driver.switch_to.active_element.send_keys(Keys.SHIFT, Keys.TAB)
        if page.focused() == page.find("#shutter"):
            break
    page.press(Keys.SPACE)
    page.await_text("#shutter", "^Stop recording$")
    page.press(Keys.SPACE)
    page.await_text("#shutter", "^Start recording$")


def test_deleting_is_asked_first(page, camera):
    files = camera.media()
    page.find("#delete-all").click()
    page.press(Keys.ESCAPE)
    page.find("#delete-last").click()
    page.press(Keys.ENTER)  # keeps
    assert not page.find("#confirm").is_displayed() and camera.media() == files
    page.find("#delete-all").click()
    page.find("#confirm [value=yes]").click()
    page.await_text("#facts", "0 videos and 0 photos")
    assert camera.media() != files


def test_a_token_is_asked_for(camera, start_web, open_page, tmp_path):
    token = tmp_path / "token"
    token.write_text("open-sesame-0123456789\n")
    token.chmod(0o600)
    page = open_page(start_web("--token-file", str(token)).url)
    page.expected = " 401 "
    for word in ("wrong", "open-sesame-0123456789"):
        wait_until(lambda: page.find("#token").is_displayed())
        page.find("#token").send_keys(word + Keys.ENTER)
        if word == "wrong":
            page.await_text("#ask-note", "not accepted")
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
    assert (luminance(page.colours("page")[0]) < 0.1) == (scheme == "dark")
    for pair in WRITTEN:
        dark, light = sorted(luminance(colour) for colour in page.colours(*pair))
        assert (light + 0.05) / (dark + 0.05) >= 4.5, pair
    shown = page.field(FPS).value_of_css_property("background-color")
    assert bytes(int(value) for value in re.findall(r"\d+", shown)[:3]) == page.colours("field")[0]


def test_a_phone_has_one_column(page):
    page.driver.execute_cdp_cmd("Emulation.setDeviceMetricsOverride", PHONE)
    page.emulate(prefers_reduced_motion="reduce")
    page.picture("phone")
    right, lefts = page.driver.execute_script("""
        const boxes = [...document.querySelectorAll('body *')].filter((element) => element.checkVisibility())
            .map((element) => element.getBoundingClientRect());
        const rows = [...document.querySelectorAll('#rows .row')].map((row) => row.getBoundingClientRect().left);
        return [Math.max(document.documentElement.scrollWidth, ...boxes.map(({ right }) => right)), [...new Set(rows)]];
        """)
    assert right <= 360 and len(lefts) == 1


def test_it_is_small_and_its_own(page, web):
    files = [requests.get(web.url + name, timeout=10).content for name in ("", "zvweb.css", "zvweb.js", "icon.svg")]
    assert sum(map(len, files)) < 60000
    loaded = page.driver.execute_script("return performance.getEntriesByType('resource').map(({ name }) => name)")
    assert len(loaded) >= 3 and all(name.startswith(web.url) for name in loaded)
    assert sorted(path.name for path in (WEB_SOURCES / "page").iterdir()) == [
        "icon.svg", "index.html", "zvweb.css", "zvweb.js"]
