"""What the tests of reports in a browser share."""

import pytest
from reportbrowser import start


@pytest.fixture(scope="session", name="browser")
def light_browser(tmp_path_factory):
    browser = start(tmp_path_factory.mktemp("profile"), is_dark=False)
    yield browser
    browser.quit()
