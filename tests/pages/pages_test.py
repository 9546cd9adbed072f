# What people do with the pages that `--report` writes: pages_test.py PROGRAM.
# SPDX-License-Identifier: MIT

import os
import shutil
import subprocess
import sys
import tempfile
import unittest

try:
    from selenium.webdriver.common.action_chains import ActionChains
    from selenium.webdriver.common.keys import Keys
    from selenium.webdriver.support.ui import Select
    import browser
except ImportError as error:
    print("skipped: python3-selenium is missing:", error)
    sys.exit(77)

PROGRAM = None
ODD_GROUP = "/</script><script>window.broken = true</script>\u05e9\u05dc\u05d5\u05dd \U0001f642 100 %s"


class Reports:
    """One page of each kind, made once of the sample library."""

    def __init__(self, folder):
        self.folder = folder
        library = os.path.join(folder, "library")
        figure = os.path.join(library, "People", "Genesis 8 Female")
        target = os.path.join(library, "People", "Genesis 9", "Genesis 9.duf")
        self.conversion = os.path.join(folder, "conversion.html")
        self.morphs = os.path.join(folder, "morphs.html")
        self.run("sample-content", library)
        self.run("convert", "--content", library, "--source", os.path.join(figure, "Characters", "Vera.duf"),
                 "--target", target, "--jobs", "full,head,body", "--path", ODD_GROUP, "--report", self.conversion)
        self.run("convert-morphs", "--content", library, "--source",
                 os.path.join(figure, "Developer Kit", "Genesis 8 Female Dev Load.duf"), "--target", target,
                 "--morphs", "*", "--save-library", os.path.join(folder, "saved"), "--vendor", "Acme",
                 "--product", "Shapes", "--report", self.morphs)

    def run(self, *arguments):
        environment = dict(os.environ, XDG_CACHE_HOME=self.folder, TMPDIR=self.folder, QT_QPA_PLATFORM="offscreen")
        done = subprocess.run([PROGRAM, *arguments], env=environment, capture_output=True, text=True)
        if done.returncode != 0:
            raise RuntimeError(done.stderr)


def setUpModule():
    global folder, reports, shared
    folder = tempfile.TemporaryDirectory(prefix="gantrel-pages-")
    reports = Reports(folder.name)
    shared = browser.Browser(folder.name)


def tearDownModule():
    shared.close()
    folder.cleanup()


class PageTest(unittest.TestCase):
    page = None

    def setUp(self):
        self.browser = shared
        self.browser.resize(1280)
        self.browser.prefer("light")
        self.browser.open(self.page())
        self.browser.run("try { localStorage.clear(); } catch (error) { }")
        self.browser.open(self.page())

    def background(self):
        return self.browser.run("return getComputedStyle(document.body).backgroundColor")

    def column(self, table, title):
        heads = [head.text.strip() for head in self.browser.find_all(f"#{table} thead th")]
        at = next(i for i, head in enumerate(heads) if head.startswith(title))
        return self.browser.run("return [...document.querySelectorAll(arguments[0])].map((cell) => cell.textContent)",
                                f"#{table} tbody td:nth-child({at + 1})")

    def click_head(self, table, title):
        next(head for head in self.browser.find_all(f"#{table} thead th button") if head.text.startswith(title)).click()

    def expect_no_sideways_scrolling(self):
        for width in (1600, 900, 400, 320):
            self.browser.resize(width)
            self.browser.frames()
            wide = self.browser.run("return document.documentElement.scrollWidth")
            self.assertLessEqual(wide, width, f"the window is {width} wide")

    def expect_quiet_opening(self):
        self.browser.find("footer")
        self.browser.frames(5)
        self.assertEqual(self.browser.console(), [])
        self.assertEqual([url for url in self.browser.requests() if not url.startswith("data:")],
                         ["file://" + self.page()])

    def number(self, text):
        return float(text.replace("\u202f", ""))


class ConversionPage(PageTest):
    def page(self):
        return reports.conversion

    def setUp(self):
        super().setUp()
        self.browser.wait(lambda: self.browser.find_all(".stage canvas"), "no canvas")
        self.canvas = self.browser.find(".stage canvas")
        self.browser.run("arguments[0].scrollIntoView({block: 'center', behavior: 'instant'})", self.canvas)

    def chooser(self, label):
        row = next(one for one in self.browser.find_all(".side label") if one.text.startswith(label))
        return Select(row.find_element("css selector", "select"))

    def choose(self, label, value):
        self.chooser(label).select_by_value(value)

    def test_opens_from_disk_without_a_complaint_and_asks_for_nothing_else(self):
        self.expect_quiet_opening()

    def test_has_every_part(self):
        titles = [title.text for title in self.browser.find_all("h2")]
        self.assertEqual(titles, ["Summary", "Pictures", "The figure", "Distances", "Morphs", "Dials",
                                  "Warnings", "Times", "Settings"])
        images = self.browser.pictures()
        self.assertEqual(len(images), 15)
        self.assertEqual(len({alt for alt, width in images}), 15, "each picture says what it shows")
        self.assertEqual({width for alt, width in images}, {300})

    def test_names_of_others_are_only_text(self):
        self.assertEqual(self.column("made", "Group"), [ODD_GROUP] * 3)
        self.assertIsNone(self.browser.run("return window.broken || null"))

    def test_runs_no_script_that_is_not_its_own_and_loads_nothing(self):
        self.browser.run("""
            window.blocked = [];
            document.addEventListener("securitypolicyviolation", (event) => window.blocked.push(event.effectiveDirective));
            const script = document.createElement("script");
            script.textContent = "window.injected = true";
            document.body.append(script);
            const image = document.createElement("img");
            image.src = "http://localhost/picture.png";
            document.body.append(image);""")
        self.browser.wait(lambda: len(self.browser.run("return window.blocked")) == 2, "not blocked")
        self.assertEqual(sorted(self.browser.run("return window.blocked")), ["img-src", "script-src-elem"])
        self.assertIsNone(self.browser.run("return window.injected || null"))

    def test_a_slider_changes_the_shape_and_back(self):
        before = self.browser.drawing()
        slider = self.browser.find(".side input[type=range]")
        slider.send_keys(Keys.HOME)
        self.assertEqual(self.browser.find(".side output").text, "0\u202f%")
        neutral = self.browser.drawing()
        self.assertNotEqual(neutral, before)
        slider.send_keys(Keys.END)
        self.assertEqual(self.browser.drawing(), before)

    def test_head_and_body_together_are_the_whole_morph(self):
        # In a picture: parts that are rounded on their own differ by less than shows.
        whole = self.browser.drawing()
        sliders = self.browser.find_all(".side input[type=range]")
        self.assertEqual(len(sliders), 3)
        sliders[0].send_keys(Keys.HOME)
        sliders[1].send_keys(Keys.END)
        self.assertNotEqual(self.browser.drawing(), whole)
        sliders[2].send_keys(Keys.END)
        self.assertLess(self.difference(whole, self.browser.drawing()), 0.5)

    def difference(self, one, other):
        """Mean difference of the parts of two pictures' pixels, of 255."""
        return self.browser.driver.execute_async_script("""
            const done = arguments[2];
            Promise.all([arguments[0], arguments[1]].map(async (address) => {
                const image = new Image();
                image.src = address;
                await image.decode();
                const canvas = document.createElement("canvas");
                canvas.width = image.width;
                canvas.height = image.height;
                const context = canvas.getContext("2d");
                context.drawImage(image, 0, 0);
                return context.getImageData(0, 0, image.width, image.height).data;
            })).then(([a, b]) => done(a.reduce((sum, part, i) => sum + Math.abs(part - b[i]), 0) / a.length));""",
                                                        one, other)

    def test_dragging_turns_the_figure_and_r_turns_it_back(self):
        before = self.browser.drawing()
        ActionChains(self.browser.driver).drag_and_drop_by_offset(self.canvas, 120, 20).perform()
        self.assertNotEqual(self.browser.drawing(), before)
        self.canvas.send_keys("r")
        self.assertEqual(self.browser.drawing(), before)

    def test_keys_turn_and_zoom(self):
        before = self.browser.drawing()
        for there, back in ((Keys.ARROW_LEFT, Keys.ARROW_RIGHT), (Keys.ARROW_UP, Keys.ARROW_DOWN), ("+", "-")):
            self.canvas.send_keys(there)
            self.assertNotEqual(self.browser.drawing(), before)
            self.canvas.send_keys(back)
            self.assertLess(self.difference(self.browser.drawing(), before), 0.1)

    def test_the_canvas_can_be_reached_with_the_tab_key(self):
        self.browser.find("#theme").send_keys("")
        for _ in range(40):
            ActionChains(self.browser.driver).send_keys(Keys.TAB).perform()
            if self.browser.run("return document.activeElement.tagName") == "CANVAS":
                return
        self.fail("the figure cannot be reached")

    def test_the_wheel_scrolls_the_page_until_the_figure_has_been_clicked(self):
        before = self.browser.drawing()
        wheel = "arguments[0].dispatchEvent(new WheelEvent('wheel', {deltaY: 120, bubbles: true, cancelable: true}))"
        self.browser.run("document.activeElement.blur();" + wheel, self.canvas)
        self.assertEqual(self.browser.drawing(), before)
        self.browser.run("arguments[0].focus({preventScroll: true});" + wheel, self.canvas)
        self.assertNotEqual(self.browser.drawing(), before)

    def test_each_view_is_another(self):
        seen = set()
        for button in self.browser.find_all(".views button"):
            button.click()
            seen.add(self.browser.drawing())
        self.assertEqual(len(seen), 5)

    def test_colours_stand_for_distances_and_displacements(self):
        plain = self.browser.drawing()
        self.assertEqual(self.browser.find_all(".side .legend"), [])
        self.choose("Colours", "distance")
        distance = self.browser.drawing()
        self.assertIn("Distance of each vertex", self.browser.find(".side .legend").text)
        self.choose("Colours", "displacement")
        displacement = self.browser.drawing()
        self.assertIn("How far the morphs move", self.browser.find(".side .legend").text)
        self.assertEqual(len({plain, distance, displacement}), 3)
        # Without the morph nothing is displaced, and the whole figure has the scale's first colour.
        self.browser.find(".side input[type=range]").send_keys(Keys.HOME)
        self.assertLess(self.saturation(self.browser.drawing()), 0.6 * self.saturation(displacement))

    def saturation(self, address):
        """How colourful a picture is: mean of the differences between each pixel's largest and smallest part."""
        return self.browser.driver.execute_async_script("""
            const done = arguments[1], image = new Image();
            image.src = arguments[0];
            image.decode().then(() => {
                const canvas = document.createElement("canvas");
                canvas.width = image.width;
                canvas.height = image.height;
                const context = canvas.getContext("2d");
                context.drawImage(image, 0, 0);
                const data = context.getImageData(0, 0, image.width, image.height).data;
                let sum = 0;
                for (let i = 0; i < data.length; i += 4)
                    sum += Math.max(data[i], data[i + 1], data[i + 2]) - Math.min(data[i], data[i + 1], data[i + 2]);
                done(4 * sum / data.length);
            });""", address)

    def test_the_source_stands_beside_or_over_the_figure(self):
        hidden = self.browser.drawing()
        self.choose("Source", "beside")
        beside = self.browser.drawing()
        self.choose("Source", "over")
        over = self.browser.drawing()
        self.choose("Source", "none")
        self.assertEqual(self.browser.drawing(), hidden)
        self.assertEqual(len({hidden, beside, over}), 3)

    def test_colours_are_never_seen_through_the_source(self):
        self.choose("Colours", "distance")
        self.choose("Source", "over")
        self.assertEqual(self.chooser("Colours").first_selected_option.text, "Plain")
        self.assertEqual(self.browser.find_all(".side .legend"), [])
        over = self.browser.drawing()
        self.choose("Colours", "displacement")
        self.assertEqual(self.chooser("Source").first_selected_option.text, "Hidden")
        self.assertNotEqual(self.browser.drawing(), over)

    def test_draws_nothing_while_nothing_changes(self):
        counting = self.browser.before_scripts("""
            window.draws = 0;
            for (const kind of [WebGLRenderingContext, WebGL2RenderingContext]) {
                const draw = kind.prototype.drawElements;
                kind.prototype.drawElements = function (...all) { ++window.draws; return draw.apply(this, all); };
            }""")
        try:
            self.browser.open(self.page())
            self.browser.wait(lambda: self.browser.run("return window.draws") > 0, "nothing is drawn")
            self.browser.frames(5)
            before = self.browser.run("return window.draws")
            self.browser.frames(30)
            self.assertEqual(self.browser.run("return window.draws"), before)
        finally:
            self.browser.forget_script(counting)

    def test_follows_the_system_and_a_choice_that_it_remembers(self):
        light = self.background()
        self.browser.prefer("dark")
        dark = self.background()
        self.assertNotEqual(light, dark)
        Select(self.browser.find("#theme")).select_by_value("light")
        self.assertEqual(self.background(), light)
        self.browser.prefer("light")
        Select(self.browser.find("#theme")).select_by_value("dark")
        self.assertEqual(self.background(), dark)
        self.browser.open(self.page())
        self.assertEqual(self.background(), dark)

    def test_works_where_nothing_may_be_remembered(self):
        refusing = self.browser.before_scripts("""
            Object.defineProperty(window, "localStorage", { get() { throw new DOMException("no", "SecurityError"); } });""")
        try:
            self.browser.open(self.page())
            light = self.background()
            Select(self.browser.find("#theme")).select_by_value("dark")
            self.assertNotEqual(self.background(), light)
            self.assertEqual(self.browser.console(), [])
        finally:
            self.browser.forget_script(refusing)

    def test_the_figure_has_the_ground_of_the_page(self):
        before = self.browser.drawing()
        Select(self.browser.find("#theme")).select_by_value("dark")
        self.assertNotEqual(self.browser.drawing(), before)

    def test_fits_narrow_windows(self):
        self.expect_no_sideways_scrolling()

    def test_prints_in_light_with_pictures_and_without_controls(self):
        Select(self.browser.find("#theme")).select_by_value("dark")
        file = os.path.join(folder.name, "printed.pdf")
        with open(file, "wb") as stream:
            stream.write(self.browser.pdf())
        text = subprocess.run(["pdftotext", "-layout", file, "-"], capture_output=True, text=True, check=True).stdout
        self.assertIn("Conversion of Vera", text)
        self.assertIn("Distances", text)
        for control in ("As the system", "Three-quarter", "Copy", "Drag to turn"):
            self.assertNotIn(control, text)
        images = subprocess.run(["pdfimages", "-list", file], capture_output=True, text=True, check=True).stdout
        self.assertGreaterEqual(images.count(" image "), 15)
        self.assertGreaterEqual(text.count("\f"), 2)

    def test_prints_rows_that_the_window_leaves_out(self):
        self.browser.run(
            "const rows = Array.from({length: 400}, (unused, i) => ({name: `Many${i}!`}));"
            "document.getElementById('page').append(Page.table([{key: 'name', title: 'Name'}], rows));"
        )
        shown = "return document.body.textContent.includes('Many399!')"
        self.assertFalse(self.browser.run(shown))
        file = os.path.join(folder.name, "many.pdf")
        with open(file, "wb") as stream:
            stream.write(self.browser.pdf())
        text = subprocess.run(["pdftotext", "-layout", file, "-"], capture_output=True, text=True, check=True).stdout
        self.assertIn("Many399!", text)
        self.assertFalse(self.browser.run(shown))

    def test_dials_say_where_they_stood(self):
        told = {dial["name"]: dial["value"] for dial in self.browser.run("return Page.data.report.dials.source")}
        shown = dict(zip(self.column("sourcedials", "Name"), map(self.number, self.column("sourcedials", "Value"))))
        self.assertEqual(sorted(shown), sorted(told))
        for name, value in told.items():
            self.assertAlmostEqual(shown[name], value, 3)

    def test_times_are_sorted_on_demand(self):
        self.click_head("steps", "Seconds")
        seconds = [self.number(text) for text in self.column("steps", "Seconds")]
        self.assertEqual(seconds, sorted(seconds, reverse=True))
        self.assertGreater(len(seconds), 5)


class PageWithoutWebGl(unittest.TestCase):
    def test_says_so_in_a_sentence_and_keeps_the_pictures(self):
        with tempfile.TemporaryDirectory(prefix="gantrel-pages-") as own:
            plain = browser.Browser(own, has_webgl=False)
            try:
                plain.open(reports.conversion)
                self.assertEqual(plain.find("#turn .notice").text,
                                 "This browser shows no WebGL here, so the figure cannot be turned; the pictures show it as well.")
                self.assertEqual(plain.find_all("canvas"), [])
                self.assertEqual(len(plain.pictures()), 15)
                self.assertTrue(plain.find("#settings").is_displayed())
                self.assertEqual(plain.console(), [])
            finally:
                plain.close()


class MorphPage(PageTest):
    def page(self):
        return reports.morphs

    def test_opens_from_disk_without_a_complaint_and_asks_for_nothing_else(self):
        self.expect_quiet_opening()

    def test_sorts_by_any_column_both_ways(self):
        for title, key in (("Largest, mm", self.number), ("Name", str.lower)):
            self.click_head("made", title)
            first = [key(text) for text in self.column("made", title)]
            self.click_head("made", title)
            second = [key(text) for text in self.column("made", title)]
            self.assertGreater(len(first), 20)
            self.assertNotEqual(first, second)
            self.assertEqual(sorted(first), sorted(second))
            for order in (first, second):
                self.assertIn(order, [sorted(order), sorted(order, reverse=True)], title)
            head = next(head for head in self.browser.find_all("#made th") if head.text.startswith(title))
            self.assertIn(head.get_attribute("aria-sort"), ("ascending", "descending"))

    def test_finds_what_has_all_the_words(self):
        search = self.browser.find("#made input[type=search]")
        everything = self.column("made", "Name")
        search.send_keys("NOSE long")
        found = self.column("made", "Name")
        self.assertEqual(found, ["PHMLongNose"])
        self.assertEqual(self.browser.find("#made .count").text, f"1 of {len(everything)} morphs")
        search.clear()
        search.send_keys("no such morph")
        self.assertEqual(self.column("made", "Name"), [])
        search.send_keys(Keys.CONTROL, "a", Keys.NULL, Keys.DELETE)
        self.assertEqual(self.column("made", "Name"), everything)

    def test_the_picker_puts_one_morph_on_the_figure_after_the_other(self):
        self.browser.wait(lambda: self.browser.find_all(".stage canvas"), "no canvas")
        picker = Select(self.browser.find(".side select"))
        self.assertEqual(len(picker.options), len(self.column("made", "Name")))
        seen = {self.browser.drawing()}
        for option in ("1", "2", "3"):
            picker.select_by_value(option)
            self.assertEqual(self.browser.find(".side .dial bdi").text, picker.first_selected_option.text)
            seen.add(self.browser.drawing())
        self.assertEqual(len(seen), 4)

    def test_shows_source_and_target_of_the_largest(self):
        images = self.browser.pictures()
        self.assertEqual(len(images), 24)
        self.assertTrue(all(alt and width == 240 for alt, width in images))

    def test_fits_narrow_windows(self):
        self.expect_no_sideways_scrolling()


if __name__ == "__main__":
    if not (browser.CHROMIUM and browser.DRIVER):
        print("skipped: chromium or its driver is missing")
        sys.exit(77)
    PROGRAM = sys.argv.pop(1)
    unittest.main(verbosity=2)
