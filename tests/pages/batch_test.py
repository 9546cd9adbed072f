# What people do with the page of a batch: batch_test.py PROGRAM.
# SPDX-License-Identifier: MIT

import json
import os
import subprocess
import sys
import tempfile
import unittest

try:
    from selenium.webdriver.support.ui import Select
    import browser
except ImportError as error:
    print("skipped: python3-selenium is missing:", error)
    sys.exit(77)

PROGRAM = None
ODD_NAME = "\u05e9\u05dc\u05d5\u05dd </script><script>window.broken = true</script> \U0001f642 100 %"
MANY, FEW = 100000, 250


def run(folder, *arguments):
    environment = dict(os.environ, XDG_CACHE_HOME=folder, TMPDIR=folder, QT_QPA_PLATFORM="offscreen")
    return subprocess.run([PROGRAM, *arguments], env=environment, capture_output=True, text=True)


def result(row, picture):
    """A line of a log; every tenth row has failed, every seventh has warnings."""
    line = {"row": row, "line": row + 1, "name": f"Character {row}", "command": f"gantrel convert --name={row}",
            "source": f"/library/Studio {row % 7}/Character {row}.duf", "target": "/library/Genesis 9.duf",
            "status": "failed" if row % 10 == 0 else "done", "seconds": 0.25 + row % 3, "peak_memory_mib": 90.5}
    if row % 10 == 0:
        line["error"] = f"Cannot open /library/{row}.dsf: No such file or directory."
        return line
    p95 = (row * 37 % 1000) / 250
    line["report"] = {"kind": "genesis8_1female", "created_morphs": [{}, {}],
                      "surface_distance_mm": {"mean": p95 / 2, "p95": p95, "max": 9 * p95},
                      "warnings": [f"the morph {n} of {row} is missing" for n in range(3 if row % 7 == 0 else 0)]}
    line["picture"] = picture
    return line


class Pages:
    """Made once: of a small batch of the sample library, and of logs of more rows."""

    def __init__(self, folder):
        library = os.path.join(folder, "library")
        people = os.path.join(library, "People")
        self.log = os.path.join(folder, "log.jsonl")
        self.small = os.path.join(folder, "small.html")
        self.vera = os.path.join(folder, "pages & more", "V\u00e9ra #1.html")
        os.mkdir(os.path.dirname(self.vera))
        run(folder, "sample-content", library)
        table = os.path.join(folder, "jobs.json")
        with open(table, "w") as file:
            json.dump([
                {"name": "Vera", "report": self.vera,
                 "source": os.path.join(people, "Genesis 8 Female", "Characters", "Vera.duf")},
                {"name": ODD_NAME, "source": os.path.join(folder, "nobody.duf")},
                {"name": "Gina", "source": os.path.join(people, "Genesis 3 Female", "Characters", "Gina.duf")}], file)
        self.done = run(folder, "batch", table, "--content", library, "--target",
                        os.path.join(people, "Genesis 9", "Genesis 9.duf"), "--save-library",
                        os.path.join(folder, "saved"), "--vendor", "Acme", "--product", "Heroes", "--log", self.log,
                        "--report", self.small)
        with open(self.log) as file:
            picture = next(line["picture"] for line in map(json.loads, file) if "picture" in line)
        self.few, self.many = (self.merged(folder, count, picture) for count in (FEW, MANY))

    @staticmethod
    def merged(folder, count, picture):
        log, page = (os.path.join(folder, f"{count}.{end}") for end in ("jsonl", "html"))
        with open(log, "w") as file:
            for row in range(1, count + 1):
                file.write(json.dumps(result(row, picture)) + "\n")
        run(folder, "batch", "--merge", log, "--report", page)
        os.remove(log)
        return page


def setUpModule():
    global folder, pages, shared
    folder = tempfile.TemporaryDirectory(prefix="gantrel-pages-")
    pages = Pages(folder.name)
    shared = browser.Browser(folder.name)


def tearDownModule():
    shared.close()
    folder.cleanup()


class BatchPage(unittest.TestCase):
    page = "few"

    def setUp(self):
        self.browser = shared
        self.browser.resize(1600)
        self.browser.prefer("light")
        self.browser.open(getattr(pages, self.page))

    def column(self, title):
        heads = [head.text.rstrip(" \u25b4\u25be\u00a0") for head in self.browser.find_all("#results thead th:not([hidden])")]
        return self.browser.run("return [...document.querySelectorAll(arguments[0])].map((cell) => cell.innerText.trim())",
                                f"#results tbody tr:not(.told) td:nth-child({heads.index(title) + 1})")

    def numbers(self, title):
        return [float(text.replace("\u202f", "")) for text in self.column(title) if text != "\u2013"]

    def click(self, title):
        next(head for head in self.browser.find_all("#results thead th button") if head.text.startswith(title)).click()

    def search(self, text):
        field = self.browser.find("#search")
        field.clear()
        field.send_keys(text)

    def show(self, text):
        Select(self.browser.find("#filter")).select_by_visible_text(text)

    def count(self):
        return self.browser.find("#rows .tools .note").text.replace("\u00a0", " ")


class SmallBatch(BatchPage):
    page = "small"

    def test_opens_from_disk_without_a_complaint_and_asks_for_nothing_else(self):
        self.browser.find("footer")
        self.browser.frames(5)
        self.assertEqual(self.browser.console(), [])
        self.assertEqual([url for url in self.browser.requests() if not url.startswith("data:")],
                         ["file://" + pages.small])

    def test_has_a_row_for_each_the_failed_one_first(self):
        self.assertEqual(pages.done.returncode, 1, pages.done.stderr)
        self.assertEqual(self.column("Status"), ["failed", "done", "done"])
        names = self.column("Name")
        self.assertIn("nobody.duf: No such file or directory.", names[0])
        self.assertEqual(sorted(names[1:]), ["Gina", "Vera"])
        self.assertEqual(sorted(self.column("Kind")[1:]), ["Genesis\u00a03 female", "Genesis\u00a08 female"])

    def test_names_of_others_are_only_text(self):
        self.assertEqual(self.browser.find("#results .failed .name bdi").text, ODD_NAME)
        self.assertIsNone(self.browser.run("return window.broken || null"))

    def test_has_a_picture_of_each_that_says_what_it_shows(self):
        images = self.browser.pictures()
        self.assertEqual(sorted(images), [[f"{name}: source, converted figure and their difference", 240]
                                          for name in ("Gina", "Vera")])

    def test_leads_to_the_page_of_a_row(self):
        self.browser.find("#results a").click()
        self.browser.wait(lambda: self.browser.find_all("#pictures"), "the page of the row does not come")
        self.assertIn("Vera", self.browser.find("h1").text)

    def test_is_dark_where_that_is_preferred(self):
        background = "return getComputedStyle(document.body).backgroundColor"
        light = self.browser.run(background)
        self.browser.prefer("dark")
        self.assertNotEqual(self.browser.run(background), light)


class FewRows(BatchPage):
    def test_begin_with_failed_ones_and_then_the_farthest_apart(self):
        self.assertEqual(self.column("Status"), ["failed"] * 25 + ["done"] * 75)
        distances = self.numbers("95 %, mm")
        self.assertEqual(distances, sorted(distances, reverse=True))

    def test_are_sorted_by_each_column_both_ways(self):
        for title in ("Row", "Mean, mm", "95 %, mm", "Max, mm", "Seconds", "MiB", "Warnings"):
            self.click(title)
            first = self.numbers(title)
            self.click(title)
            second = self.numbers(title)
            ways = [sorted(first) == first, sorted(second) == second]
            self.assertTrue(len(set(first)) == 1 or ways in ([True, False], [False, True]), title)
        self.click("Name")
        self.assertTrue(self.column("Name")[1].startswith("Character 2"), "numbers in names count as numbers")

    def test_are_found_by_words_in_any_order(self):
        self.search("\"studio 3\" 17")
        self.search("17 studio")
        found = self.column("Name")
        self.assertTrue(found)
        self.assertTrue(all("17" in name for name in found), found)
        self.search("nothing of this kind")
        self.assertEqual(self.count(), "0 of 250 rows")
        self.search("morph 2 of 77")
        self.assertEqual(self.column("Name"), ["Character 77"], "its warnings are searched as well")

    def test_can_be_only_the_failed_or_those_with_warnings(self):
        self.show("Failed")
        self.assertEqual(self.count(), "25 of 250 rows")
        self.show("With warnings")
        self.assertEqual(self.numbers("Warnings"), [3] * 32)
        self.search("character 77.duf")
        self.assertEqual(self.column("Name"), ["Character 77"])

    def test_unfold_their_warnings_beneath_them(self):
        self.show("With warnings")
        button = self.browser.find(".unfold")
        button.click()
        row = self.column("Row")[0]
        told = self.browser.find(".told")
        self.assertEqual(told.text.splitlines(), [f"the morph {n} of {row} is missing" for n in range(3)])
        self.assertEqual(button.get_attribute("aria-expanded"), "true")
        button.click()
        self.assertEqual(self.browser.find_all(".told"), [])

    def test_come_a_hundred_at_a_time(self):
        self.click("Row")
        self.browser.find(".pager button:last-child").click()
        self.assertEqual(self.numbers("Row"), list(range(101, 201)))
        self.browser.find(".pager button:last-child").click()
        self.assertEqual(self.numbers("Row"), list(range(201, 251)))
        self.assertEqual(self.browser.find(".where").text, "201 to 250 of 250")

    def test_fit_narrow_windows(self):
        self.show("With warnings")
        self.browser.find(".unfold").click()
        for width in (1600, 1000, 900, 400, 320):
            self.browser.resize(width)
            self.browser.frames()
            wide = self.browser.run("return document.documentElement.scrollWidth")
            self.assertLessEqual(wide, width, f"the window is {width} wide")

    def test_are_printed_all_of_them(self):
        file = os.path.join(folder.name, "printed.pdf")
        with open(file, "wb") as printed:
            printed.write(self.browser.pdf())
        text = subprocess.run(["pdftotext", file, "-"], capture_output=True, text=True, check=True).stdout
        self.assertIn("Character 249.duf", text)
        self.assertEqual(len(self.column("Row")), 100, "the window shows what it did")

    def test_can_be_reached_by_keys(self):
        self.browser.run("document.querySelector('#search').focus()")
        head = self.browser.run("return document.querySelectorAll('#results thead th button')[0]")
        self.browser.run("arguments[0].focus()", head)
        head.send_keys("\ue007")
        self.assertEqual(self.numbers("Row")[0], 1)


class ManyRows(BatchPage):
    page = "many"

    def test_open_and_are_sorted_and_found(self):
        self.assertEqual(self.count(), "100\u202f000 rows")
        self.click("Row")
        self.click("Row")
        self.assertEqual(self.numbers("Row"), list(range(MANY, MANY - 100, -1)))
        self.search("character 77777.duf")
        self.assertEqual(self.column("Name"), ["Character 77777"])
        self.assertEqual(self.browser.console(), [])

    def test_have_pictures_of_the_worst(self):
        self.assertEqual(self.browser.run("return Page.data.rows.filter((row) => row[18]).length"), 500)
        self.assertIn("Pictures of the 500 rows", self.browser.find("#rows").text)
        self.show("Done")
        self.assertEqual(len(self.browser.find_all("#results img")), 100)

    def test_are_a_page_of_a_size_that_can_be_sent(self):
        self.assertLess(os.path.getsize(pages.many), 300 * MANY)


if __name__ == "__main__":
    if not (browser.CHROMIUM and browser.DRIVER):
        print("skipped: chromium or its driver is missing")
        sys.exit(77)
    PROGRAM = sys.argv.pop(1)
    unittest.main(verbosity=2)
