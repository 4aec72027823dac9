#!/usr/bin/python3
# SPDX-License-Identifier: BSD-3-Clause
"""Writes the page of some models and uses it in a headless browser as a person would.

html_page_test.py QMODEL EXAMPLES
Exit status 77, with a word, where there is no browser to do it in.
"""
import os
import shutil
import subprocess
import sys
import tempfile

try:
    from selenium import webdriver
    from selenium.webdriver.chrome.service import Service
    from selenium.webdriver.common.by import By
    from selenium.webdriver.common.keys import Keys
except ImportError:
    print("skipped: needs the package python3-selenium")
    sys.exit(77)

CHROMIUM = shutil.which("chromium")
DRIVER = shutil.which("chromedriver")
if CHROMIUM is None or DRIVER is None:
    print("skipped: needs the packages chromium and chromium-driver")
    sys.exit(77)

HOSTILE = """<module name='hostile' xmlns='urn:ietf:params:xml:ns:yang:yin:1'>
<namespace uri='urn:hostile'/><prefix value='h'/>
<leaf name='x'><type name='string'/><description><text>&lt;/script&gt;&lt;script&gt;
document.title='taken'&lt;/script&gt;&lt;img src=x onerror="document.title='taken'"&gt;</text>
</description></leaf></module>"""


def check(what, condition):
    if not condition:
        print("FAILED: " + what)
        sys.exit(1)


def start(folder):
    options = webdriver.ChromeOptions()
    options.binary_location = CHROMIUM
    for argument in ("--headless=new", "--no-sandbox", "--disable-gpu", "--disable-dev-shm-usage",
                     "--window-size=1200,800", "--user-data-dir=" + folder + "/profile"):
        options.add_argument(argument)
    options.set_capability("goog:loggingPrefs", {"browser": "ALL"})
    return webdriver.Chrome(service=Service(DRIVER), options=options)


class Page:
    def __init__(self, browser):
        self.browser = browser

    def one(self, selector):
        return self.browser.find_element(By.CSS_SELECTOR, selector)

    def item(self, name):
        path = f"//li[div/span[@class='name' and text()='{name}']]"
        return self.browser.find_element(By.XPATH, path)

    def row(self, name):
        return self.item(name).find_element(By.CSS_SELECTOR, ".row")

    def shown(self, name):
        return self.row(name).is_displayed()

    def press(self, *keys):
        for key in keys:
            self.browser.switch_to.active_element.send_keys(key)

    def facts(self):
        return self.one("#facts").text


def fold_with_the_mouse(page):
    check("modules are open at first", page.shown("system"))
    check("nodes are folded at first", not page.shown("host-name"))
    page.row("system").click()
    check("a click unfolds", page.shown("host-name"))
    page.row("system").click()
    check("another one folds", not page.shown("host-name"))


def see_details(page):
    page.row("system").click()
    page.row("host-name").click()
    facts = page.facts()
    check("the path is shown", "leaf /router-system:system/host-name" in facts)
    check("the type is shown", "string" in facts and "length" in facts)
    check("the default is shown", "default\nrouter" in facts)


def search(page):
    box = page.one("#search")
    page.press("/")
    check("/ goes to the search", page.browser.switch_to.active_element == box)
    page.press("interval")
    check("the hit is unfolded", page.shown("interval"))
    check("hits are counted", page.one("#count").text == "1 node")
    check("others are hidden", not page.shown("restart"))
    page.press(Keys.ARROW_DOWN)
    check("the hit is chosen", "ping/input/probe/interval" in page.facts())
    page.press(Keys.ESCAPE)
    check("Escape ends it", page.shown("restart") and page.one("#count").text == "")


def walk_with_the_keyboard(page):
    page.one("#close").click()
    check("all are folded", not page.shown("system"))
    page.row("router-system").click()
    page.press(Keys.HOME)
    if page.item("router-system").get_attribute("aria-expanded") == "false":
        page.press(Keys.ARROW_RIGHT)
    check("right unfolds", page.shown("system"))
    page.press(Keys.ARROW_RIGHT)
    check("right enters", "/router-system:system" in page.facts())
    page.press(Keys.ARROW_RIGHT, Keys.ARROW_DOWN)
    check("down goes on", "/router-system:system/host-name" in page.facts())
    page.press(Keys.ARROW_LEFT, Keys.ARROW_LEFT)
    check("left goes up and folds", not page.shown("host-name"))
    page.one("#open").click()
    check("all are unfolded", page.shown("host-name") and page.shown("interval"))


def colour(page, selector):
    return page.one(selector).value_of_css_property("color")


def background(page):
    return page.one("body").value_of_css_property("background-color")


def look(page):
    kinds = [colour(page, f".{kind} > .row .name") for kind in ("container", "leaf", "list", "rpc")]
    check("kinds have their colours", len(set(kinds)) == 4)
    check("types have theirs", colour(page, ".type") not in kinds)
    before = background(page)
    page.one("#theme").click()
    after = background(page)
    check("light and dark differ", before != after)
    page.one("#theme").click()
    check("and come back", background(page) == before)
    page.browser.execute_cdp_cmd("Emulation.setEmulatedMedia", {
        "features": [{"name": "prefers-color-scheme", "value": "dark"}]})
    page.browser.refresh()
    check("dark is taken from the system", background(page) == after)


def stay_alone(page):
    loaded = page.browser.execute_script("return performance.getEntriesByType('resource').length")
    check("nothing is loaded", loaded == 0)
    errors = [entry["message"] for entry in page.browser.get_log("browser")]
    check(f"nothing goes wrong: {errors}", not errors)


def write(client, examples, file, more):
    subprocess.run([client, "tree", "-i", "--html", file, *more], cwd=examples, check=True)


def use(browser, folder, client, examples):
    file = os.path.join(folder, "page.html")
    write(client, examples, file, ["-p", "models", "router-system", "router-interfaces"])
    page = Page(browser)
    browser.get("file://" + file)
    check("the title names the modules", browser.title == "router-system, router-interfaces")
    for step in (fold_with_the_mouse, see_details, search, walk_with_the_keyboard, look,
                 stay_alone):
        step(page)
    with open(os.path.join(folder, "hostile.yin"), "w", encoding="utf-8") as model:
        model.write(HOSTILE)
    write(client, examples, file, [os.path.join(folder, "hostile.yin")])
    browser.get("file://" + file)
    check("a model's text is no markup", browser.title == "hostile")
    page.row("x").click()
    check("but is shown", "</script>" in page.facts() and browser.title == "hostile")


def main():
    with tempfile.TemporaryDirectory(ignore_cleanup_errors=True) as folder:
        browser = start(folder)
        try:
            use(browser, folder, sys.argv[1], sys.argv[2])
        finally:
            browser.quit()
    print("used")


if __name__ == "__main__":
    main()
