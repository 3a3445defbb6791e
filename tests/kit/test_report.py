"""Reads reports of ksx in a real browser: search, links, zoom, light and dark, no errors."""

import html.parser
import os
import pathlib
import shutil
import subprocess
import urllib.parse

import pytest
from reportbrowser import console_of, start
from selenium.webdriver import ActionChains, Keys
from selenium.webdriver.common.by import By

KSX = os.environ["KESTRIX_KSX"]
EXAMPLES = pathlib.Path(os.environ["KESTRIX_EXAMPLES"])

HOSTILE = "</script><img src=x onerror=window.hacked=1><b>'\"&"


def write_hostile(path):
    """A sound package whose texts look like markup, under a file name that looks like an address."""
    text = (EXAMPLES / "wood/wood_planks.obl").read_text()
    escaped = HOSTILE.replace("&", "&amp;").replace("<", "&lt;").replace('"', "&quot;")
    for member in ["identifier", "desc", "author", "label", "GUIName"]:
        text = text.replace(f'<{member} v="wood_planks"/>', f'<{member} v="{escaped}"/>')
        text = text.replace(f'<{member} v="Plank count"/>', f'<{member} v="{escaped}"/>')
        text = text.replace(f'<{member} v="Nails on top"/>', f'<{member} v="{escaped}"/>')
    assert text.count("onerror") >= 3
    path.write_text(text)


@pytest.fixture(scope="module", name="report")
def report_folder(tmp_path_factory):
    """The report of the examples and of two bad packages, in a folder that is hard to address."""
    root = tmp_path_factory.mktemp("report")
    library = root / "library"
    shutil.copytree(EXAMPLES, library)
    write_hostile(library / "wood/a#b?c%20d ä.obl")
    (library / "broken.obl").write_text("<package>")
    folder = root / "pages #1? 100% ä"
    result = subprocess.run([KSX, "draw", "--html", folder, library, "--presets-path",
                             library / "presets"], capture_output=True, text=True, check=False)
    assert result.returncode == 2 and result.stderr.count("\n") == 1, result.stderr
    return folder


def go(browser, report, page):
    browser.get((report / page).as_uri())


def shown_packages(browser):
    return [row.get_attribute("data-page")
            for row in browser.find_elements(By.CSS_SELECTOR, "tr[data-page]")
            if row.is_displayed()]


def search(browser, report, words):
    go(browser, report, "index.html")
    browser.find_element(By.ID, "search").send_keys(words)


def view_of(browser):
    """The part of the first picture that is shown: left, top, width, height."""
    picture = browser.find_element(By.CSS_SELECTOR, "figure.picture svg")
    return [float(number) for number in picture.get_dom_attribute("viewBox").split()]


def point_at(view, x, y):
    """The point of the picture at a share of the width and the height."""
    return view[0] + x * view[2], view[1] + y * view[3]


def tool(browser, name):
    return browser.find_element(By.CSS_SELECTOR, f"figure.picture button[aria-label='{name}']")


def colors_of(browser):
    return [browser.execute_script(
        "return getComputedStyle(document.querySelector(arguments[0]))[arguments[1]]", *place)
        for place in [("body", "backgroundColor"), ("body", "color"), ("a", "color"),
                      ("svg .ground", "fill"), ("svg .filter .outline", "fill"),
                      ("svg .title", "fill")]]


class Links(html.parser.HTMLParser):
    """Collects the links and the anchors of a page."""

    def __init__(self, page):
        super().__init__()
        self.links = []
        self.anchors = set()
        self.feed(page.read_text())

    def handle_starttag(self, tag, attrs):
        attributes = dict(attrs)
        self.links += [attributes[name] for name in ("href", "src") if name in attributes]
        self.anchors |= {attributes["id"]} if "id" in attributes else set()


def test_the_index_lists_all_packages(browser, report):
    go(browser, report, "index.html")
    assert len(shown_packages(browser)) == len(list((report / "packages").iterdir())) > 20
    assert browser.find_element(By.ID, "status").text.endswith(" packages")


def test_the_search_narrows_the_list(browser, report):
    search(browser, report, "weave")
    assert shown_packages(browser) == ["woven_fabric.html"]


def test_the_search_finds_objects_by_several_words(browser, report):
    search(browser, report, "Species OAK input")
    hits = browser.find_elements(By.CSS_SELECTOR, "tr[data-page='wood_planks.html'] .hits a")
    assert [hit.text for hit in hits] == ["species/oak/grain_scale", "species/oak/knot_count",
                                          "species/oak/stain"]


def test_the_search_that_finds_nothing_says_so(browser, report):
    search(browser, report, "zzzz")
    assert shown_packages(browser) == []
    assert browser.find_element(By.ID, "status").text == "0 packages, 0 objects found"


def test_the_search_shows_all_again_when_it_is_empty(browser, report):
    search(browser, report, "weave")
    browser.find_element(By.ID, "search").send_keys(Keys.CONTROL, "a")
    browser.find_element(By.ID, "search").send_keys(Keys.DELETE)
    assert len(shown_packages(browser)) > 20


def test_a_head_sorts_the_index_by_numbers(browser, report):
    go(browser, report, "index.html")
    browser.find_element(By.XPATH, "//th[.='Inputs']/button").click()
    cells = browser.find_elements(By.CSS_SELECTOR, "tbody tr td:nth-child(5)")
    numbers = [int(cell.text) for cell in cells]
    assert numbers == sorted(numbers) and numbers[0] < 9 < numbers[-1]


def test_a_hit_leads_to_its_graph(browser, report):
    search(browser, report, "species/oak graph")
    browser.find_element(By.CSS_SELECTOR, "tr[data-page='wood_planks.html'] .hits a").click()
    assert browser.current_url.endswith("/packages/wood_planks.html#g-species/oak")
    top = browser.execute_script(
        "return document.getElementById('g-species/oak').getBoundingClientRect().top")
    assert -1 < top < 100


def test_an_instance_leads_to_its_graph(browser, report):
    go(browser, report, "packages/wood_planks.html")
    link = browser.find_element(By.CSS_SELECTOR, "svg a[href='#g-species/pine']")
    browser.execute_script("arguments[0].dispatchEvent(new MouseEvent('click', {bubbles: true, "
                           "cancelable: true}))", link)
    assert browser.current_url.endswith("#g-species/pine")


def test_all_links_lead_to_pages_and_anchors_that_exist(report):
    pages = {page: Links(page) for page in report.rglob("*.html")}
    count = 0
    for page, content in pages.items():
        for link in content.links:
            address = urllib.parse.urlsplit(link)
            assert not address.scheme and not address.netloc, link
            target = (page.parent / address.path).resolve() if address.path else page
            assert target.is_file(), (page.name, link)
            assert not address.fragment or address.fragment in pages[target].anchors, link
            count += 1
    assert count > 200


def test_the_users_of_a_package_are_listed(browser, report):
    go(browser, report, "packages/everything.html")
    users = browser.find_elements(By.CSS_SELECTOR, "#user-list a")
    assert "wood_planks" in [user.text for user in users]
    users[0].click()
    assert "/packages/" in browser.current_url


def test_the_buttons_zoom(browser, report):
    go(browser, report, "packages/wood_planks.html")
    whole = view_of(browser)
    tool(browser, "Zoom in").click()
    tool(browser, "Zoom in").click()
    near = view_of(browser)
    tool(browser, "Zoom out").click()
    assert near[2] < view_of(browser)[2] < whole[2]
    tool(browser, "Show the whole picture").click()
    assert view_of(browser) == whole


def test_the_keyboard_zooms_and_moves(browser, report):
    go(browser, report, "packages/wood_planks.html")
    view = browser.find_element(By.CSS_SELECTOR, "figure.picture .view")
    before = view_of(browser)
    view.send_keys("+")
    near = view_of(browser)
    view.send_keys(Keys.ARROW_RIGHT, Keys.ARROW_DOWN)
    moved = view_of(browser)
    assert near[2] < before[2]
    assert moved[0] > near[0] and moved[1] > near[1] and moved[2:] == near[2:]


def test_the_wheel_zooms_around_the_pointer_with_ctrl_alone(browser, report):
    go(browser, report, "packages/wood_planks.html")
    turn = ("const view = document.querySelector('figure.picture .view');"
            "const frame = view.getBoundingClientRect();"
            "view.dispatchEvent(new WheelEvent('wheel', {deltaY: -200, ctrlKey: arguments[0],"
            "clientX: frame.left + 0.55 * frame.width, clientY: frame.top + 0.45 * frame.height,"
            "cancelable: true, bubbles: true}));")
    before = view_of(browser)
    browser.execute_script(turn, False)
    assert view_of(browser) == before
    browser.execute_script(turn, True)
    after = view_of(browser)
    assert after[2] < before[2]
    assert abs(point_at(after, 0.55, 0.45)[0] - point_at(before, 0.55, 0.45)[0]) < 5
    assert abs(point_at(after, 0.55, 0.45)[1] - point_at(before, 0.55, 0.45)[1]) < 5


def test_the_mouse_moves_a_picture(browser, report):
    go(browser, report, "packages/wood_planks.html")
    tool(browser, "Show the picture in its own size").click()
    before = view_of(browser)
    view = browser.find_element(By.CSS_SELECTOR, "figure.picture .view")
    ActionChains(browser).drag_and_drop_by_offset(view, -60, -40).perform()
    after = view_of(browser)
    assert abs(after[0] - before[0] - 60) < 2 and abs(after[1] - before[1] - 40) < 2


def test_the_dark_scheme_has_other_colors(browser, report, tmp_path):
    dark = start(tmp_path / "profile", is_dark=True)
    try:
        go(dark, report, "packages/wood_planks.html")
        go(browser, report, "packages/wood_planks.html")
        for light_color, dark_color in zip(colors_of(browser), colors_of(dark)):
            assert light_color != dark_color
    finally:
        dark.quit()


def test_names_that_look_like_markup_stay_text(browser, report):
    go(browser, report, "packages/a_b_c_20d__.html")
    assert browser.title == HOSTILE
    assert browser.find_element(By.TAG_NAME, "h1").text == HOSTILE
    assert browser.execute_script("return window.hacked") is None
    assert browser.find_elements(By.TAG_NAME, "img") == []
    search(browser, report, "onerror")
    assert shown_packages(browser) == ["a_b_c_20d__.html"]
    assert browser.execute_script("return window.hacked") is None


def test_a_package_that_cannot_be_read_has_a_page(browser, report):
    go(browser, report, "packages/broken.html")
    text = browser.find_element(By.ID, "main").text
    assert "The package cannot be opened: it is no sound document" in text


def test_no_page_has_an_error_or_loads_anything_from_outside(browser, report):
    console_of(browser)
    for page in sorted(report.rglob("*.html")):
        browser.get(page.as_uri())
        names = browser.execute_script(
            "return performance.getEntriesByType('resource').map(entry => entry.name)")
        assert all(name.startswith(report.as_uri()) for name in names)
    assert console_of(browser) == []
