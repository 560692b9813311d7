"""A browser without a screen, driven by the WebDriver protocol, and the pixels that it shows."""
import base64
import http.client
import json
import re
import struct
import subprocess
import tempfile
import time
import zlib


class Browser:
    def __init__(self, width=640, height=560):
        self.driver = subprocess.Popen(["chromedriver", "--port=0"], stdout=subprocess.PIPE, text=True)
        for line in self.driver.stdout:
            if found := re.search(r"started successfully on port (\d+)", line):
                break
        self.connection = http.client.HTTPConnection("127.0.0.1", int(found[1]), timeout=60)
        self.profile = tempfile.TemporaryDirectory(ignore_cleanup_errors=True)
        arguments = ["--headless", "--no-sandbox", "--disable-gpu", "--disable-background-networking",
                     "--disable-component-update", "--disable-sync", "--no-first-run", "--hide-scrollbars",
                     "--force-color-profile=srgb", f"--user-data-dir={self.profile.name}"]
        self.path = ""
        answer = self("POST", "/session", {"capabilities": {"alwaysMatch": {
            "goog:chromeOptions": {"args": arguments},
            "goog:loggingPrefs": {"browser": "ALL", "performance": "ALL"}}}})
        self.path = f"/session/{answer['sessionId']}"
        self.size(width, height)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        try:
            self("DELETE", "")
        finally:
            self.driver.terminate()
            self.driver.wait()

    def __call__(self, method, path, body=None):
        self.connection.request(method, self.path + path, json.dumps(body) if body is not None else None)
        value = json.loads(self.connection.getresponse().read())["value"]
        if isinstance(value, dict) and "error" in value:
            raise RuntimeError(value["message"])
        return value

    def debug(self, command, **parameters):
        return self("POST", "/goog/cdp/execute", {"cmd": command, "params": parameters})

    def size(self, width, height, phone=False):
        self.debug("Emulation.setDeviceMetricsOverride", width=width, height=height, deviceScaleFactor=1, mobile=phone)
        self.debug("Emulation.setTouchEmulationEnabled", enabled=phone)

    def scheme(self, name):
        self.debug("Emulation.setEmulatedMedia", features=[{"name": "prefers-color-scheme", "value": name}])

    def open(self, url):
        self("POST", "/url", {"url": url})

    def run(self, script, *arguments):
        """The value of a script's body, which may await."""
        script = "const done = arguments[arguments.length - 1]; (async (...args) => {" + script + \
                 "})(...arguments).then(done, error => done('failed: ' + error))"
        value = self("POST", "/execute/async", {"script": script, "args": list(arguments)})
        assert not str(value).startswith("failed: "), value
        return value

    def until(self, script, value):
        """Waits until a script's body gives a value, a few seconds at most."""
        for _ in range(50):
            if (last := self.run(script)) == value:
                return
            time.sleep(0.1)
        raise AssertionError(f"{script}: {last} and not {value}")

    def keys(self, *keys):
        actions = [{"type": kind, "value": key} for key in keys for kind in ("keyDown", "keyUp")]
        self("POST", "/actions", {"actions": [{"type": "key", "id": "keys", "actions": actions}]})

    def drag(self, points, kind="mouse"):
        """Presses at the first point and moves to the others."""
        move = [{"type": "pointerMove", "duration": 20, "x": round(x), "y": round(y)} for x, y in points]
        actions = [move[0], {"type": "pointerDown", "button": 0}, *move[1:], {"type": "pointerUp", "button": 0}]
        self("POST", "/actions", {"actions": [
            {"type": "pointer", "id": kind, "parameters": {"pointerType": kind}, "actions": actions}]})

    def log(self, kind):
        return self("POST", "/se/log", {"type": kind})

    def screenshot(self):
        return base64.b64decode(self("GET", "/screenshot"))


class Pixels:
    """A PNG or PPM of 8 bits a sample."""

    def __init__(self, file):
        if file[:2] == b"P6":
            header = re.match(rb"P6\s(?:#.*\s)?(\d+) (\d+)\s255\s", file)
            self.width, self.height, self.bands = int(header[1]), int(header[2]), 3
            stride = 3 * self.width
            self.rows = [file[at:at + stride] for at in range(header.end(), len(file), stride)]
        else:
            self.decode(file)

    def decode(self, png):
        data, at = b"", 8
        while at < len(png):
            length, kind = struct.unpack(">I4s", png[at:at + 8])
            chunk = png[at + 8:at + 8 + length]
            if kind == b"IHDR":
                self.width, self.height, depth, colours = struct.unpack(">IIBB", chunk[:10])
                self.bands = {2: 3, 6: 4}[colours]
                assert depth == 8 and chunk[12] == 0
            elif kind == b"IDAT":
                data += chunk
            at += 12 + length
        raw, stride, bands = zlib.decompress(data), self.width * self.bands, self.bands
        self.rows, before = [], bytes(stride)
        for y in range(self.height):
            kind, row = raw[y * (stride + 1)], bytearray(raw[y * (stride + 1) + 1:(y + 1) * (stride + 1)])
            left, corner = bytes(bands), bytes(bands)
            for x in range(0, stride if kind else 0, bands):
                up = before[x:x + bands]
                for c in range(bands):
                    a, b, d = left[c], up[c], corner[c]
                    nearest = min((a, b, d), key=lambda value: abs(a + b - d - value)) if kind == 4 else 0
                    row[x + c] = (row[x + c] + (0, a, b, (a + b) // 2, nearest)[kind]) & 255
                left, corner = row[x:x + bands], up
            self.rows.append(row)
            before = row

    def mean(self, left, top, right, bottom):
        """Of each channel over an area."""
        box = [row[left * self.bands:right * self.bands] for row in self.rows[top:bottom]]
        count = (right - left) * (bottom - top)
        return [sum(sum(row[c::self.bands]) for row in box) / count for c in range(3)]
