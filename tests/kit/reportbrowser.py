"""The browser of the tests of reports."""

import pytest
from selenium import webdriver
from selenium.common.exceptions import WebDriverException
from selenium.webdriver.chrome.service import Service

# Files of a browser for one test: no network of its own, no question at the first start.
OPTIONS = ["--headless", "--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run",
           "--disable-background-networking", "--disable-component-update", "--disable-sync",
           "--window-size=1300,900"]
PROGRAMS = ["/usr/bin/chromium", "/usr/bin/chromedriver"]


def start(folder, is_dark):
    options = webdriver.ChromeOptions()
    options.binary_location = PROGRAMS[0]
    options.set_capability("goog:loggingPrefs", {"browser": "ALL"})
    for option in [*OPTIONS, f"--user-data-dir={folder}"]:
        options.add_argument(option)
    try:
        browser = webdriver.Chrome(options=options, service=Service(PROGRAMS[1]))
    except WebDriverException as error:
        pytest.skip(f"Chromium cannot be started: {error}")
    scheme = {"name": "prefers-color-scheme", "value": "dark" if is_dark else "light"}
    browser.execute_cdp_cmd("Emulation.setEmulatedMedia", {"features": [scheme]})
    return browser


def console_of(browser):
    return [entry["message"] for entry in browser.get_log("browser")]
