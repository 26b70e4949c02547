"""Opens the gallery in a headless browser, as a person would, and uses it.

Arguments: the dibkit program, the chromedriver program. Speaks to the driver in plain HTTP.
"""

import json
import pathlib
import subprocess
import sys
import tempfile
import time
import urllib.error
import urllib.request

program, driver = sys.argv[1:]


class Browser:
    def __init__(self):
        self.process = subprocess.Popen([driver, "--port=0"], stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
        for line in self.process.stdout:
            if "started successfully on port" in line:
                self.root = "http://127.0.0.1:" + line.split("port")[1].strip().rstrip(".")
                break
        options = {
            "args": ["--headless", "--no-sandbox", "--disable-gpu", "--window-size=1200,900"],
            "prefs": {"profile.content_settings.exceptions.clipboard": {"*": {"setting": 1}}},
        }
        wanted = {"browserName": "chrome", "goog:chromeOptions": options, "goog:loggingPrefs": {"browser": "ALL"}}
        answer = self.ask("POST", "/session", {"capabilities": {"alwaysMatch": wanted}})
        self.session = "/session/" + answer["sessionId"]

    def ask(self, method, path, body=None):
        data = None if body is None else json.dumps(body).encode()
        request = urllib.request.Request(self.root + path, data, {"Content-Type": "application/json"}, method=method)
        with urllib.request.urlopen(request, timeout=60) as response:
            return json.load(response)["value"]

    def open(self, url):
        self.ask("POST", self.session + "/url", {"url": url})

    def run(self, script):
        return self.ask("POST", self.session + "/execute/sync", {"script": script, "args": []})

    def console(self):
        return self.ask("POST", self.session + "/se/log", {"type": "browser"})

    def command(self, name, parameters):
        self.ask("POST", self.session + "/goog/cdp/execute", {"cmd": name, "params": parameters})

    def picture_of(self, script):
        """What is on the screen where the element that a script returns is."""
        element = next(iter(self.run(script).values()))
        return self.ask("GET", f"{self.session}/element/{element}/screenshot")

    def close(self):
        try:
            self.ask("DELETE", self.session)
        except (urllib.error.URLError, AttributeError):
            pass
        self.process.terminate()
        self.process.wait()


def expect(holds, what):
    if not holds:
        raise AssertionError(what)


def wait_for(browser, script, what):
    for _ in range(100):
        if browser.run(script):
            return
        time.sleep(0.1)
    raise AssertionError(what)


def check(browser, pages):
    browser.open(pages.joinpath("index.html").as_uri())
    near = "document.querySelector('.card')"
    value = f"return Number({near}.querySelector('input').value)"
    wait_for(browser, f"{value} > 2", "the slider does not follow the animation")

    # Where it is stopped it stays, and plays on from there.
    click = f"{near}.querySelector('.play').click();"
    stopped = browser.run(f"{click} {value}")
    picture = browser.picture_of(f"return {near}.querySelector('canvas')")
    time.sleep(1)
    expect(browser.run(value) == stopped, "a stopped animation goes on")
    expect(browser.picture_of(f"return {near}.querySelector('canvas')") == picture, "a stopped picture changes")
    expect(browser.run(f"{click} {value}") == stopped, "it does not play on from where it was stopped")
    wait_for(browser, f"{value} > {stopped}", "it does not play on")

    # The slider stops it at a frame: 0 and 20 of the 40 there and back are the pictures themselves.
    move = (
        f"const slider = {near}.querySelector('input'); slider.value = %d; slider.dispatchEvent(new Event('input'));"
        f"return {near}.querySelector('canvas')"
    )
    expect(browser.run(f"return {near}.querySelector('input').max") == "39", "the slider has not all frames")
    shown = [browser.picture_of(move % frame) for frame in (0, 10, 20, 0)]
    expect(shown[0] == shown[3] and len(set(shown)) == 3, "the slider does not show its frame")
    wait_for(browser, f"return {near}.querySelector('.play').textContent === '▶'", "the slider does not stop it")
    browser.run("document.querySelector('.all').click()")
    expect(browser.run("return new Set([...document.querySelectorAll('.play')].map(b => b.textContent)).size") == 1, "not all stop")

    names = browser.run(
        "return [...document.querySelectorAll('.card :is(button, input, a, canvas)')]"
        ".map(one => one.tagName + (one.getAttribute('aria-label') ?? one.textContent))"
    )
    expect(len(names) > 200 and len(set(names)) == len(names), "two controls have the same name")

    # The button copies its command.
    browser.run("document.querySelector('.copy').click()")
    wait_for(browser, "return document.querySelector('.copy').classList.contains('copied')", "nothing was copied")
    copied = browser.run(
        "const area = document.createElement('textarea'); document.body.append(area); area.focus();"
        "document.execCommand('paste'); const pasted = area.value; area.remove();"
        "return pasted || navigator.clipboard.readText()"
    )
    wanted = browser.run("return document.querySelector('.copy code').textContent")
    expect(copied == wanted and copied.startswith("dibkit transition "), f"copied: {copied!r}")

    # Nothing stands out, and each pixel of a frame is a whole number of the screen's.
    for width, ratio in ((390, 3), (360, 2), (1200, 1)):
        metrics = {"width": width, "height": 800, "deviceScaleFactor": ratio, "mobile": ratio > 1}
        browser.command("Emulation.setDeviceMetricsOverride", metrics)
        across = browser.run("return document.documentElement.scrollWidth - document.documentElement.clientWidth")
        expect(across == 0, f"{across} pixels stand out at a width of {width}")
        times = f"return {near}.querySelector('canvas').getBoundingClientRect().width * devicePixelRatio / 90"
        wait_for(browser, f"{times} % 1 === 0", f"pixels have no whole size at a width of {width}")
        expect(browser.run(times) >= 2, "the frame is small")

    messages = [entry["message"] for entry in browser.console()]
    expect(messages == [], f"the console says {messages}")


with tempfile.TemporaryDirectory() as folder:
    root = pathlib.Path(folder)
    subprocess.run([program, "-q", "samples", root, "--size", "90x60"], check=True)
    pictures = [root / "lake.png", root / "dahlia.png"]
    subprocess.run([program, "-q", "gallery", root / "pages", *pictures, "--size", "90x60"], check=True)
    browser = Browser()
    try:
        check(browser, root / "pages")
    finally:
        browser.close()
