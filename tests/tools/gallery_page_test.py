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

    def resize(self, width, height):
        self.ask("POST", self.session + "/window/rect", {"width": width, "height": height})

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
    browser.run("document.querySelectorAll('img').forEach(image => { image.loading = 'eager'; })")
    wait_for(browser, "return [...document.images].every(image => image.complete)", "the pictures do not load")
    sizes = browser.run("return [...document.images].map(image => [image.naturalWidth, image.naturalHeight])")
    expect(len(sizes) > 2 and all(size == [90, 60] for size in sizes), f"natural sizes: {sizes}")

    # The slider shows the frame that it stands on, out of the strip.
    shown = "return getComputedStyle(document.querySelector('.strip')).visibility"
    expect(browser.run(shown) == "hidden", "the strip covers the GIF before anyone asked for it")
    move = (
        "const slider = document.querySelector('.card input'); slider.value = %d;"
        "slider.dispatchEvent(new Event('input'));"
        "return getComputedStyle(document.querySelector('.strip')).backgroundPosition"
    )
    positions = [browser.run(move % place) for place in (0, 5, 20)]
    expect(positions == ["0px 0%", "0px 25%", "0px 100%"], f"the slider leads to {positions}")
    expect(browser.run(shown) == "visible", "the slider shows no frame")
    height = (
        "const image = new Image(); image.src = document.querySelector('.strip').dataset.strip;"
        "return image.decode().then(() => image.naturalHeight)"
    )
    expect(browser.run(height) == 21 * 60, "the strip has not all frames")
    browser.run("document.querySelector('.card .play').click()")
    expect(browser.run(shown) == "hidden", "the GIF does not play on")

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

    for width in (360, 1200):
        browser.resize(width, 800)
        across = browser.run("return document.documentElement.scrollWidth - document.documentElement.clientWidth")
        expect(across == 0, f"{across} pixels stand out at a width of {width}")

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
