# A browser without a window, and what the tests ask of it.
# SPDX-License-Identifier: MIT

import base64
import json
import os
import shutil

from selenium import webdriver
from selenium.webdriver.chrome.options import Options
from selenium.webdriver.chrome.service import Service
from selenium.webdriver.support.ui import WebDriverWait

CHROMIUM = shutil.which("chromium")
DRIVER = shutil.which("chromedriver")
PATIENCE = 60  # seconds; far more than anything takes that comes at all


class Browser:
    """One window. Its files are all in a folder of the test's."""

    def __init__(self, folder, has_webgl=True):
        options = Options()
        options.binary_location = CHROMIUM
        options.add_argument("--headless=new")
        options.add_argument("--no-sandbox")  # which nothing can have that runs as root
        options.add_argument("--disable-dev-shm-usage")
        options.add_argument("--user-data-dir=" + os.path.join(folder, "profile"))
        for argument in (["--use-angle=swiftshader", "--enable-unsafe-swiftshader"] if has_webgl
                         else ["--disable-gpu", "--disable-3d-apis"]):
            options.add_argument(argument)
        options.set_capability("goog:loggingPrefs", {"browser": "ALL", "performance": "ALL"})
        environment = dict(os.environ, HOME=folder, TMPDIR=folder, XDG_CONFIG_HOME=folder, XDG_CACHE_HOME=folder)
        self.driver = webdriver.Chrome(service=Service(DRIVER, env=environment), options=options)
        self.driver.set_page_load_timeout(PATIENCE)
        self.driver.set_script_timeout(PATIENCE)
        self.resize(1280)

    def close(self):
        self.driver.quit()

    def resize(self, width, height=900):
        self.command("Emulation.setDeviceMetricsOverride", width=width, height=height, deviceScaleFactor=1, mobile=False)

    def prefer(self, scheme):
        self.command("Emulation.setEmulatedMedia", features=[
            {"name": "prefers-color-scheme", "value": scheme},
            {"name": "prefers-reduced-motion", "value": "reduce"}])  # what is clicked stands still

    def command(self, name, **arguments):
        return self.driver.execute_cdp_cmd(name, arguments)

    def before_scripts(self, script):
        """Runs the script in every page before its own ones. Gives what forget_script() wants."""
        return self.command("Page.addScriptToEvaluateOnNewDocument", source=script)["identifier"]

    def forget_script(self, identifier):
        self.command("Page.removeScriptToEvaluateOnNewDocument", identifier=identifier)

    def open(self, file):
        self.driver.get("about:blank")
        self.driver.get_log("browser")
        self.driver.get_log("performance")
        self.driver.get("file://" + file)

    def run(self, script, *arguments):
        return self.driver.execute_script(script, *arguments)

    def find(self, selector):
        return self.driver.find_element("css selector", selector)

    def find_all(self, selector):
        return self.driver.find_elements("css selector", selector)

    def wait(self, condition, what):
        return WebDriverWait(self.driver, PATIENCE, 0.05).until(lambda driver: condition(), what)

    def frames(self, count=3):
        """Lets so many pictures of the window pass."""
        self.driver.execute_async_script(
            "const done = arguments[1]; let left = arguments[0];"
            "const step = () => left-- > 0 ? requestAnimationFrame(step) : done(); step();", count)

    def pictures(self):
        """What each picture says it shows and its width, once all are decoded, which a page does not wait for."""
        self.wait(lambda: self.run("return [...document.images].every((image) => image.naturalWidth > 0)"),
                  "not all pictures come")
        return self.run("return [...document.images].map((image) => [image.alt, image.naturalWidth])")

    def console(self):
        return [entry["message"] for entry in self.driver.get_log("browser")]

    def requests(self):
        messages = [json.loads(entry["message"])["message"] for entry in self.driver.get_log("performance")]
        return [message["params"]["request"]["url"] for message in messages
                if message["method"] == "Network.requestWillBeSent"]

    def drawing(self):
        """The figure as it is drawn: the bytes of a picture."""
        self.frames()
        return self.run("return document.querySelector('.stage canvas').toDataURL()")

    def pdf(self):
        return base64.b64decode(self.command("Page.printToPDF", printBackground=False)["data"])
