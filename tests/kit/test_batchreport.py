"""Reads the report of a batch in a real browser: search, order, findings, no errors."""

import os
import pathlib
import shutil
import subprocess

import pytest
from reportbrowser import console_of
from selenium.webdriver import Keys
from selenium.webdriver.common.by import By

KSX = os.environ["KESTRIX_KSX"]
EXAMPLES = pathlib.Path(os.environ["KESTRIX_EXAMPLES"])
HOSTILE = "<script>window.hacked=1<img src=x onerror=window.hacked=1>'\"&.obl"


@pytest.fixture(scope="module", name="page")
def report_page(tmp_path_factory):
    """The report of the examples, of which two fail and one is changed behind the run."""
    root = tmp_path_factory.mktemp("batch #1? 100% \u00e4")
    library = root / "library"
    shutil.copytree(EXAMPLES, library)
    text = (library / "old/parquet.obl").read_text()
    (library / "old" / HOSTILE).write_text(text)
    (library / "broken.obl").write_text("<package>")

    def batch(*arguments):
        subprocess.run([KSX, "batch", *arguments], cwd=root, check=False, capture_output=True)

    batch("plan", "update", "library", "--to", "out", "--presets-path", "library/presets",
          "--shards", "12", "-o", "plan.json")
    batch("run", "plan.json")
    (root / "out/wood/wood_planks.obl").write_text("other bytes")
    batch("report", "plan.json", "--html", "batch.html")
    return root / "batch.html"


@pytest.fixture(name="opened")
def opened_page(browser, page):
    browser.get(page.as_uri())
    return browser


def rows_of(browser, table):
    return [row for row in browser.find_elements(By.CSS_SELECTOR, f"{table} tbody tr")
            if row.is_displayed()]


def names_of(browser):
    """The names of the packages that are shown."""
    return [row.find_element(By.TAG_NAME, "td").text.rsplit("/", 1)[-1]
            for row in rows_of(browser, "table.searched")]


def search(browser, words):
    browser.find_element(By.ID, "search").send_keys(words)


def press(browser, table, head):
    browser.find_element(By.XPATH, f"//table[{table}]//th[.='{head}']/button").click()


PACKAGES = "@class='searched'"
SHARDS = "caption='The shards of the plan'"


def test_the_packages_that_failed_come_first(opened):
    states = [row.find_elements(By.TAG_NAME, "td")[1].text
              for row in rows_of(opened, "table.searched")]
    assert states == ["failed"] * 2 + ["changed"] + ["done"] * (len(states) - 3)
    assert opened.find_element(By.ID, "status").text == f"{len(states)} packages"


def test_the_search_finds_a_reason(opened):
    search(opened, "no such FILE")
    assert names_of(opened) == ["felt.obl", "roof_tiles.obl"]
    assert opened.find_element(By.ID, "status").text == "2 packages"


def test_the_search_finds_a_kind_of_finding_that_is_folded(opened):
    search(opened, "out-of-range")
    assert names_of(opened) == ["everything.obl"]


def test_the_search_shows_all_again_when_it_is_empty(opened):
    everything = names_of(opened)
    search(opened, "zzzz")
    assert names_of(opened) == []
    opened.find_element(By.ID, "search").send_keys(*[Keys.BACKSPACE] * 4)
    assert names_of(opened) == everything


def test_the_findings_of_a_package_unfold(opened):
    row = next(row for row in rows_of(opened, "table.searched") if "everything.obl" in row.text)
    assert "out-of-range" not in row.text
    row.find_element(By.TAG_NAME, "summary").click()
    assert row.text.count("out-of-range") == 2


def test_a_head_sorts_packages_and_sorts_them_the_other_way_round(opened):
    press(opened, PACKAGES, "Package")
    up = names_of(opened)
    press(opened, PACKAGES, "Package")
    assert names_of(opened) == up[::-1]
    assert up.index("felt.obl") < up.index("parquet.obl") < up.index("wood_planks.obl")


def test_a_head_sorts_shards_by_their_numbers(opened):
    press(opened, SHARDS, "Shard")
    rows = opened.find_elements(By.XPATH, f"//table[{SHARDS}]/tbody/tr/td[1]")
    assert [row.text for row in rows] == [str(number) for number in range(1, 13)]


def test_a_head_sorts_shards_by_their_bytes(opened):
    press(opened, SHARDS, "Bytes")
    rows = opened.find_elements(By.XPATH, f"//table[{SHARDS}]/tbody/tr/td[7]")
    sizes = [int(row.text.replace(",", "")) for row in rows]
    assert sizes == sorted(sizes) != sorted(sizes, key=str)


def test_names_that_look_like_markup_stay_text(opened):
    search(opened, "onerror")
    assert names_of(opened) == [HOSTILE]
    assert opened.execute_script("return window.hacked") is None
    assert opened.find_elements(By.TAG_NAME, "img") == []


def test_the_page_has_no_error_and_loads_nothing(browser, page):
    console_of(browser)
    browser.get(page.as_uri())
    assert browser.execute_script("return performance.getEntriesByType('resource').length") == 0
    color = browser.execute_script(
        "return getComputedStyle(document.querySelector('td .error')).color")
    assert color == "rgb(179, 18, 43)"  # the style is taken, by the policy of the page too
    assert console_of(browser) == []
