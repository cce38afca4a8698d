# SPDX-License-Identifier: Apache-2.0
"""The page of 'matrix --format html', in a browser. COMMAND names the command; UPDATE=1 rewrites the
picture in the documents."""
import json
import os
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

from selenium import webdriver
from selenium.webdriver.chrome.service import Service
from selenium.webdriver.common.action_chains import ActionChains
from selenium.webdriver.common.by import By
from selenium.webdriver.common.keys import Keys
from selenium.webdriver.support.ui import Select

PROJECT = Path(__file__).resolve().parents[2]
sys.path.append(str(PROJECT / "tests/tools"))
from compare_test import COUNTRIES, POWERS, make_forty_countries  # noqa: E402
from command_test import CommandTest, run  # noqa: E402

SIZE = (1280, 1500)

# The contrast of each text with what is below it, by the formula of WCAG; the least is returned.
LEAST_CONTRAST = """
const parts = color => color.match(/[\\d.]+/g).map(Number);
const light = color => parts(color).slice(0, 3).map(part => part / 255)
  .map(part => part <= 0.04045 ? part / 12.92 : ((part + 0.055) / 1.055) ** 2.4)
  .reduce((sum, part, i) => sum + part * [0.2126, 0.7152, 0.0722][i], 0);
const backOf = element => {
  const color = getComputedStyle(element).backgroundColor;
  return parts(color)[3] === 0 ? backOf(element.parentElement) : color;
};
let least = [21, ''];
for (const element of document.querySelectorAll('body *')) {
  if (![...element.childNodes].some(node => node.nodeType === 3 && node.data.trim())) continue;
  if (!element.checkVisibility()) continue;
  const [a, b] = [light(getComputedStyle(element).color), light(backOf(element))];
  const contrast = (Math.max(a, b) + 0.05) / (Math.min(a, b) + 0.05);
  if (contrast < least[0]) least = [contrast, element.outerHTML];
}
return least;
"""


def setUpModule():
    global BROWSER, FOLDER
    CommandTest.setUpClass()  # Skips all where a tree cannot be read.
    FOLDER = Path(tempfile.mkdtemp())
    unittest.addModuleCleanup(shutil.rmtree, FOLDER)
    options = webdriver.ChromeOptions()
    for argument in ("--headless", "--no-sandbox", "--disable-gpu", "--disable-dev-shm-usage",
                     "--window-size={},{}".format(*SIZE), f"--user-data-dir={FOLDER}/profile"):
        options.add_argument(argument)
    options.binary_location = "/usr/bin/chromium"
    options.set_capability("goog:loggingPrefs", {"browser": "ALL"})
    BROWSER = webdriver.Chrome(options=options, service=Service("/usr/bin/chromedriver"))
    unittest.addModuleCleanup(BROWSER.quit)


class PageTest(unittest.TestCase):
    arguments = ()

    @classmethod
    def setUpClass(cls):
        tree = FOLDER / cls.__name__
        make_forty_countries(tree)
        cls.change(tree / "vendor/etc/uwb")
        cls.page = FOLDER / f"{cls.__name__}.html"
        run("matrix", "--root", tree.name, "--format", "html", "-o", cls.page, *cls.arguments,
            cwd=FOLDER)

    @classmethod
    def change(cls, folder):
        """Changes the tree of forty countries."""

    def setUp(self):
        self.media([])
        BROWSER.get(self.page.as_uri())

    def tearDown(self):
        self.assertEqual(BROWSER.get_log("browser"), [])

    def media(self, features, media=""):
        BROWSER.execute_cdp_cmd("Emulation.setEmulatedMedia",
                                {"media": media, "features": features})

    def all(self, selector):
        return BROWSER.find_elements(By.CSS_SELECTOR, selector)

    def one(self, selector):
        return BROWSER.find_element(By.CSS_SELECTOR, selector)

    def cell(self, field, column):
        """The value of the field in a column, counted from 0."""
        row = next(row for row in self.all("#values tbody tr")
                   if row.find_element(By.TAG_NAME, "th").text == field)
        return row.find_elements(By.TAG_NAME, "button")[column]

    def detail(self):
        """The lines of what is shown of a value, below the button that closes it."""
        close, *lines = self.one("#detail").text.splitlines()
        self.assertEqual(close, "close")
        return lines


class FortyCountries(PageTest):
    def test_needs_no_network(self):
        self.assertEqual(BROWSER.execute_script(
            "return performance.getEntriesByType('resource').map(entry => entry.name)"), [])

    def test_tells_what_values_are_compared_with(self):
        self.assertEqual(self.one("#compared").text, "the default's")

    def test_shows_forty_countries_in_five_blocks(self):
        self.assertEqual(self.one("#summary").text, "FortyCountries: 42 loads, 5 different blocks, "
                         "0 without a block; lint: 0 findings")
        self.assertEqual(len(self.all("#values thead th")), 5)
        self.assertEqual(sorted(country.text for country in self.all(".country")),
                         sorted([*COUNTRIES, "any other country", "no country code"]))
        self.assertEqual([tag.text for tag in self.all("#values th:nth-child(2) .tag")], ["default"])

    def test_marks_the_values_that_are_not_the_defaults(self):
        marked = [(cell.text, row.text) for row in self.all("#values tbody tr")
                  for cell in row.find_elements(By.CSS_SELECTOR, ".differs")]
        self.assertEqual([text.splitlines()[0] for text, _ in marked], 2 * [*POWERS[1:]])
        self.assertEqual({row.split()[0] for _, row in marked}, {"ch5_tx_power", "ch9_tx_power"})

    def test_a_value_is_shown_as_the_text_has_it_and_decimal(self):
        self.assertEqual(self.cell("ch9_tx_power", 1).text, "0x10141418\n269751320")
        self.assertEqual(self.cell("xtal_trim", 1).text, "40")
        self.assertEqual(self.cell("ch9_port", 1).text, "1\nbyte 02")
        self.assertEqual(self.cell("ch9_antenna_selection", 1).text, "GPIO 7, level 1\nbyte 0c")

    def test_a_click_tells_the_line_and_keeps_it(self):
        self.assertFalse(self.one("#detail").is_displayed())
        self.cell("ch9_tx_power", 1).click()
        if os.environ.get("UPDATE"):
            BROWSER.set_window_size(1160, 1170)
            picture = PROJECT / "docs/matrix.png"
            BROWSER.save_screenshot(str(picture))
            subprocess.run(["pngquant", "--force", "--output", picture, "48", picture], check=True)
            BROWSER.set_window_size(*SIZE)
        self.assertEqual(self.detail()[:4], [
            "ch9_tx_power 0x10141418 (269751320)", "block " + self.all("#values thead th")[1].text[:6]
            + ", offset 8, 4 bytes: 10 14 14 18", "be",
            "/vendor/etc/uwb/be/calib.conf:3: edge.ch9.prf64.tx_power=0x10141418"])
        ActionChains(BROWSER).move_to_element(self.cell("version", 2)).perform()
        self.assertEqual(self.detail()[0], "ch9_tx_power 0x10141418 (269751320)")
        ActionChains(BROWSER).send_keys(Keys.ESCAPE).perform()
        self.assertFalse(self.one("#detail").is_displayed())

    def test_pointing_tells_the_line(self):
        ActionChains(BROWSER).move_to_element(self.cell("xtal_trim", 0)).perform()
        self.assertEqual(self.detail()[0], "xtal_trim 40")
        self.assertEqual(self.detail()[-1], "/vendor/etc/uwb/common.conf:31: xtal_trim=40")

    def test_keys_lead_to_every_value(self):
        self.one("#search").click()
        keys = [Keys.TAB, Keys.ARROW_RIGHT, Keys.ARROW_DOWN, Keys.ARROW_DOWN]
        shown = []
        for key in keys:
            ActionChains(BROWSER).send_keys(key).perform()
            shown.append(self.detail()[0].split()[0])
        self.assertEqual(shown, ["version", "version", "ch9_ant_delay", "ch5_ant_delay"])
        ActionChains(BROWSER).send_keys(Keys.ARROW_DOWN, Keys.ARROW_LEFT).perform()
        self.assertEqual(self.detail()[0], "ch9_tx_power 0x181C2024 (404496420)")
        ActionChains(BROWSER).send_keys(Keys.ARROW_LEFT).perform()
        self.assertEqual(self.detail()[0], "ch9_tx_power 0x181C2024 (404496420)")

    def test_search_finds_a_country(self):
        self.one("#search").send_keys("BE")
        column = self.all("#values thead th")[1]
        self.assertEqual(self.one("#found").text, f"be: block {column.text[:6]}")
        self.assertEqual([hit.text for hit in self.all(".hit")], ["be"])
        self.assertEqual([cell.get_attribute("class") for cell in self.all("#values thead th")],
                         ["", "", "other", "other", "other"])
        self.assertFalse(self.cell("version", 2).is_displayed())
        self.one("#search").send_keys("x")
        self.assertEqual(self.one("#found").text, "no such country")
        self.one("#search").clear()
        self.one("#search").send_keys(" ", Keys.BACKSPACE)
        self.assertEqual((self.all(".hit"), self.all(".other"), self.one("#found").text),
                         ([], [], ""))

    def test_keys_pass_over_what_a_search_hides(self):
        self.cell("version", 2).click()
        ActionChains(BROWSER).send_keys(Keys.ARROW_LEFT, Keys.ARROW_RIGHT).perform()
        last = BROWSER.execute_script("return blocks.length - 1")
        country = self.all("#values thead th")[last].find_element(By.CLASS_NAME, "country").text
        self.one("#search").send_keys(country)
        ActionChains(BROWSER).send_keys(Keys.TAB).perform()
        self.assertTrue(BROWSER.switch_to.active_element == self.cell("version", 0))
        ActionChains(BROWSER).send_keys(Keys.ARROW_RIGHT).perform()
        self.assertTrue(BROWSER.switch_to.active_element == self.cell("version", last))
        ActionChains(BROWSER).send_keys(Keys.ARROW_RIGHT, Keys.ARROW_LEFT).perform()
        self.assertTrue(BROWSER.switch_to.active_element == self.cell("version", 0))

    def test_map_names_the_field_of_each_byte(self):
        names = [byte.get_attribute("aria-label") for byte in self.all("#map button")]
        self.assertEqual(len(names), 82)
        self.assertEqual((names[15], names[81]),
                         ("ch5_tx_power, offset 15", "reserved_39, offset 81"))
        ActionChains(BROWSER).move_to_element(self.all("#map button")[17]).perform()
        text = "ch5_tx_power, offset 15, 4 bytes: 18 1c 20 24"
        self.assertEqual(self.one("#field").text, text)
        self.assertEqual([byte.text for byte in self.all(".lit")], ["18", "1c", "20", "24"])
        self.one("#detail .close").click()
        self.assertFalse(self.one("#detail").is_displayed())
        Select(self.one("#block")).select_by_index(1)
        BROWSER.execute_script("arguments[0].focus()", self.all("#map button")[15])
        self.assertEqual(self.one("#field").text, text[:-11] + "10 14 14 18")
        self.assertEqual([byte.text for byte in self.all("#map .changed")][2:],
                         "10 14 14 18 10 14 14 18".split())

    def test_both_colour_schemes_can_be_read(self):
        backs = []
        for scheme in ("light", "dark"):
            self.media([{"name": "prefers-color-scheme", "value": scheme}])
            self.cell("ch9_tx_power", 1).click()
            backs.append(self.one("body").value_of_css_property("background-color"))
            contrast, element = BROWSER.execute_script(LEAST_CONTRAST)
            self.assertGreaterEqual(contrast, 4.5, (scheme, element))
        self.assertEqual(backs, ["rgba(255, 255, 255, 1)", "rgba(21, 23, 27, 1)"])

    def test_a_narrow_page_scrolls_its_tables_alone(self):
        BROWSER.set_window_size(500, SIZE[1])
        self.addCleanup(BROWSER.set_window_size, *SIZE)
        widths = BROWSER.execute_script("""
          return [document.documentElement, ...document.querySelectorAll('.scroll')].map(
            element => element.scrollWidth > element.clientWidth)""")
        self.assertEqual(widths, [False, True, True])

    def test_print_leaves_out_what_needs_a_screen(self):
        self.cell("ch9_tx_power", 1).click()
        self.media([], "print")
        self.assertEqual([self.one(part).is_displayed() for part in
                          ("#search", "#detail", "#values", "#map", "#findings")],
                         [False, False, True, True, True])


class AwkwardFiles(PageTest):
    TEXT = "xtal_trim=0x29 ; </script><img src=x onerror=alert(1)> \"q\" ' &"

    @classmethod
    def change(cls, folder):
        power = "patch.ch5.prf64.tx_power=1\nedge.ch9.prf64.tx_power=404\n"
        (folder / "us/calib.conf").write_text(f"{cls.TEXT}\n<b>xtal_trm=3\n{power}")
        (folder / "fr/calib.conf").write_text("version=2\n")
        (folder / "latam").mkdir()
        (folder / "latam/calib.conf").write_text("")
        common = (folder / "common.conf").read_bytes()
        (folder / "common.conf").write_bytes(common + b"# \xff\nversion=2 ; " + b"y" * 5000 + b"\n")

    def test_texts_are_no_markup(self):
        index = next(i for i, head in enumerate(self.all("#values thead th"))
                     if head.text.splitlines()[1:] == ["us"])
        self.cell("xtal_trim", index).click()
        self.assertEqual(self.detail()[-2:], [
            f"/vendor/etc/uwb/us/calib.conf:1: {self.TEXT}",
            "overrides /vendor/etc/uwb/common.conf:31: xtal_trim=40"])
        self.assertEqual(self.all("img, article b b, #detail b b"), [])

    def test_tells_what_the_table_does_not(self):
        self.assertEqual(self.one("#remark").text,
                         "not taken for countries: latam (name them with --countries)")

    def test_loads_without_a_block_say_why(self):
        self.assertEqual(self.one("#without").text, "fr: parameters are missing: "
                         "patch.ch5.prf64.tx_power, edge.ch9.prf64.tx_power")
        self.one("#search").send_keys("fr")
        self.assertEqual(self.one("#found").text, "fr: no block")

    def test_findings_stand_with_their_lines(self):
        found = {article.text for article in self.all("article")}
        told = json.loads(run("lint", "--root", "AwkwardFiles", "--format", "json",
                              cwd=FOLDER).stdout)["findings"]
        self.assertGreaterEqual(len(told), 4)
        self.assertEqual(len(found), len(told))
        for finding in told:
            self.assertTrue(any(finding["message"] in text and finding["source"].strip() in text and
                                f"{finding['path']}:{finding['line']}:" in text for text in found))
        self.assertTrue(any("leads to: no block: parameters are missing [no-block]" in text and
                            "in fr\n" in text for text in found))
        self.assertTrue(any("in all 42 loads" in text for text in found))

    def test_long_lines_stay_within_the_page(self):
        self.cell("version", 0).click()
        self.assertTrue(BROWSER.execute_script(
            "return document.documentElement.scrollWidth <= window.innerWidth"))


class NoDefault(PageTest):
    arguments = ("--countries", "us,de")

    def test_tells_what_values_are_compared_with(self):
        self.assertEqual(self.one("#compared").text, "that of the first column")
        self.assertEqual(self.all(".tag"), [])


class NoBlock(PageTest):
    @classmethod
    def change(cls, folder):
        (folder / "common.conf").unlink()

    def test_tells_that_there_is_none(self):
        self.assertEqual(self.one("#summary").text.split(";")[0],
                         "NoBlock: 42 loads, 0 different blocks, 42 without a block")
        self.assertEqual(len(self.all("#without li")), 42)
        self.one("#search").send_keys("us")
        self.assertEqual(self.one("#found").text.split("; ")[-1], "us: no block")


if __name__ == "__main__":
    unittest.main()
