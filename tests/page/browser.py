"""A browser under a test's control: headless Chromium, spoken to in the WebDriver protocol."""

import base64
import json
import subprocess
import tempfile
import time
import urllib.error
import urllib.request

ELEMENT = "element-6066-11e4-a52e-4f735466cecf"
SWITCHES = [
    "--headless", "--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run",
    "--disable-background-networking", "--disable-component-update", "--disable-sync", "--window-size=1200,800"]


class Browser:
    """Use as a context: the browser and its profile go when it ends."""

    def __enter__(self):
        self._profile = tempfile.TemporaryDirectory()
        self._driver = subprocess.Popen(["chromedriver", "--port=0"], stdout=subprocess.PIPE, text=True)
        for line in self._driver.stdout:
            if "started successfully on port" in line:
                self._url = f"http://127.0.0.1:{int(line.split()[-1].rstrip('.'))}/session"
                break
        else:
            raise RuntimeError("chromedriver does not start")
        options = {"args": SWITCHES + [f"--user-data-dir={self._profile.name}"]}
        answer = self._send("POST", "", {"capabilities": {"alwaysMatch": {
            "goog:chromeOptions": options, "goog:loggingPrefs": {"browser": "ALL"}}}})
        self._url += "/" + answer["sessionId"]
        return self

    def __exit__(self, *_):
        try:
            self._send("DELETE", "")
        finally:
            self._driver.terminate()
            self._driver.wait()
            self._driver.stdout.close()
            self._profile.cleanup()

    def _send(self, method, path, body=None):
        data = None if method != "POST" else json.dumps(body or {}).encode()
        request = urllib.request.Request(self._url + path, data, {"Content-Type": "application/json"}, method=method)
        try:
            with urllib.request.urlopen(request, timeout=60) as answer:
                return json.load(answer)["value"]
        except urllib.error.HTTPError as error:
            raise RuntimeError(error.read().decode()) from error

    def open(self, path):
        self._send("POST", "/url", {"url": f"file://{path}"})

    def run(self, script, *arguments):
        """The value of a JavaScript function body."""
        return self._send("POST", "/execute/sync", {"script": script, "args": list(arguments)})

    def find(self, selector):
        return self._send("POST", "/element", {"using": "css selector", "value": selector})[ELEMENT]

    def click(self, selector):
        self._send("POST", f"/element/{self.find(selector)}/click")

    def type(self, selector, keys):
        self._send("POST", f"/element/{self.find(selector)}/value", {"text": keys})

    def text(self, selector):
        return self._send("GET", f"/element/{self.find(selector)}/text")

    def screenshot(self, path, width, height):
        """What a window of this size shows, as a PNG file."""
        self._send("POST", "/window/rect", {"width": width, "height": height})
        with open(path, "wb") as file:
            file.write(base64.b64decode(self._send("GET", "/screenshot")))

    def wait(self, script):
        """Until the function body returns something true; an error after ten seconds."""
        for _ in range(200):
            if self.run(script):
                return
            time.sleep(0.05)
        raise AssertionError(f"never came true: {script}")

    def complaints(self):
        """What the browser wrote to its console since the last call."""
        return [entry["message"] for entry in self._send("POST", "/se/log", {"type": "browser"})]
