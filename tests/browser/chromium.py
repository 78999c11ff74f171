"""A headless Chromium, driven through a pipe by its own debugging protocol."""
import base64
import json
import os
import shutil
import subprocess
import tempfile
import time


class Chromium:
    def __init__(self):
        self.profile = tempfile.mkdtemp()
        to_browser, commands = os.pipe()
        answers, from_browser = os.pipe()

        def connect():  # it reads commands from descriptor 3 and answers on 4
            taken = os.dup(to_browser), os.dup(from_browser)
            os.dup2(taken[0], 3)
            os.dup2(taken[1], 4)

        sandbox = ["--no-sandbox"] if os.geteuid() == 0 else []
        self.process = subprocess.Popen(
            ["chromium", "--headless=new", "--remote-debugging-pipe", f"--user-data-dir={self.profile}",
             "--disable-gpu", "--disable-dev-shm-usage", "--no-first-run", "--hide-scrollbars", *sandbox],
            preexec_fn=connect, close_fds=False, stderr=subprocess.DEVNULL)
        os.close(to_browser)
        os.close(from_browser)
        self.commands = os.fdopen(commands, "wb", buffering=0)
        self.answers = os.fdopen(answers, "rb")
        self.unread = b""
        self.number = 0
        self.target = None
        self.messages = []  # of the console, exceptions, dialogs, and addresses that were asked for

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.process.terminate()
        self.process.wait()
        shutil.rmtree(self.profile, ignore_errors=True)

    def receive(self):
        while b"\0" not in self.unread:
            part = os.read(self.answers.fileno(), 1 << 20)
            if not part:
                raise EOFError("chromium has ended")
            self.unread += part
        message, _, self.unread = self.unread.partition(b"\0")
        message = json.loads(message)
        method, about = message.get("method"), message.get("params", {})
        if method in ("Runtime.consoleAPICalled", "Runtime.exceptionThrown", "Log.entryAdded",
                      "Page.javascriptDialogOpening", "Network.requestWillBeSent"):
            self.messages.append(about.get("request", {}).get("url") or f"{method}: {about}")
        return message

    def call(self, method, **parameters):
        self.number += 1
        message = {"id": self.number, "method": method, "params": parameters}
        if self.target:
            message["sessionId"] = self.target
        self.commands.write(json.dumps(message).encode() + b"\0")
        while (answer := self.receive()).get("id") != self.number:
            pass
        if "error" in answer:
            raise RuntimeError(f"{method}: {answer['error']}")
        return answer["result"]

    def open(self, path, *, width=1280, height=900, scripts=True, scheme="light"):
        """Opens a file in a new tab, and waits for it to be shown."""
        self.target, self.messages = None, []
        tab = self.call("Target.createTarget", url="about:blank")["targetId"]
        self.target = self.call("Target.attachToTarget", targetId=tab, flatten=True)["sessionId"]
        for domain in ("Page", "Runtime", "Log", "Network"):
            self.call(f"{domain}.enable")
        self.call("Emulation.setScriptExecutionDisabled", value=not scripts)
        self.call("Emulation.setEmulatedMedia", features=[{"name": "prefers-color-scheme", "value": scheme}])
        self.call("Emulation.setDeviceMetricsOverride", width=width, height=height, deviceScaleFactor=1,
                  mobile=False)
        self.call("Page.navigate", url=f"file://{os.path.abspath(path)}")
        while self.receive().get("method") != "Page.loadEventFired":
            pass

    def value(self, expression):
        result = self.call("Runtime.evaluate", expression=expression, returnByValue=True, awaitPromise=True)
        if "exceptionDetails" in result:
            raise RuntimeError(f"{expression}: {result['exceptionDetails']}")
        return result["result"].get("value")

    def wait_for(self, expression, seconds=20):
        """Until an expression holds: what a page does after an event comes a little later."""
        end = time.monotonic() + seconds
        while not self.value(expression):
            assert time.monotonic() < end, f"never came: {expression}"
            time.sleep(.01)

    def press_enter(self):
        for kind in ("keyDown", "keyUp"):
            self.call("Input.dispatchKeyEvent", type=kind, key="Enter", code="Enter", windowsVirtualKeyCode=13,
                      text="\r")

    def click(self, selector):
        """At the left end of an element's middle, as a hand does it."""
        x, y = self.value(f"""(() => {{
            const element = document.querySelector({json.dumps(selector)});
            element.scrollIntoView({{block: 'center'}});
            const box = element.getBoundingClientRect();
            return [box.left + 6, box.top + Math.min(box.height, 20) / 2];
        }})()""")
        for kind in ("mousePressed", "mouseReleased"):
            self.call("Input.dispatchMouseEvent", type=kind, x=x, y=y, button="left", clickCount=1)

    def screenshot(self, path):
        image = self.call("Page.captureScreenshot", format="png")["data"]
        with open(path, "wb") as file:
            file.write(base64.b64decode(image))
