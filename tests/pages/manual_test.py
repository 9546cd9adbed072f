# How people read the manual in a browser: manual_test.py MANUAL.html CHAPTER.md...
# SPDX-License-Identifier: MIT

import os
import re
import sys
import tempfile
import unittest

try:
    import browser
except ImportError as error:
    print("skipped: python3-selenium is missing:", error)
    sys.exit(77)

MANUAL, CHAPTERS = None, []


def headings():
    """Level and text of every heading, as the chapters have them; blocks of code have lines that begin alike."""
    found = []
    for chapter in CHAPTERS:
        with open(chapter, encoding="utf-8") as file:
            text = re.sub(r"^```.*?^```$", "", file.read(), flags=re.DOTALL | re.MULTILINE)
        found += [(len(marks), words) for marks, words in re.findall(r"^(#+) (.*)$", text, re.MULTILINE)]
    return found


class TheManual(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        cls.window = browser.Browser(cls.folder.name)

    @classmethod
    def tearDownClass(cls):
        cls.window.close()
        cls.folder.cleanup()

    def setUp(self):
        self.window.open(MANUAL)

    def search(self, words):
        box = self.window.find("#search")
        box.clear()
        box.send_keys(words)

    def results(self):
        return [result.text.splitlines()[0] for result in self.window.find_all("#results a")]

    def test_fetches_nothing_and_complains_of_nothing(self):
        self.window.pictures()
        self.assertEqual([url for url in self.window.requests() if not url.startswith("data:")],
                         ["file://" + MANUAL.replace(" ", "%20")])
        self.assertEqual(self.window.console(), [])

    def test_has_every_heading_and_the_larger_ones_in_its_contents(self):
        number, expected = 0, []
        for level, words in headings():
            number += level == 1
            expected.append((level, f"{number} {words}" if level == 1 else words))
        shown = self.window.run("return [...document.querySelectorAll('main h1, main h2, main h3')]"
                                ".map((heading) => [Number(heading.tagName[1]), heading.textContent])")
        self.assertEqual([tuple(heading) for heading in shown], [(level, words.replace("`", "").replace("**", ""))
                                                                 for level, words in expected])
        self.assertEqual([link.text for link in self.window.find_all("#contents a")],
                         [words for level, words in shown if level <= 2])

    def test_every_link_leads_to_a_place_on_the_page(self):
        links = self.window.run("return [...document.querySelectorAll('a[href]')].map((a) => a.getAttribute('href'))")
        self.assertGreater(len(links), 60)
        lost = self.window.run("return arguments[0].filter((link) => !document.getElementById(link.slice(1)))", links)
        self.assertEqual(lost, [])

    def test_shows_each_picture_with_its_words(self):
        pictures = self.window.pictures()
        self.assertGreaterEqual(len(pictures), 6)
        captions = [caption.text for caption in self.window.find_all("img + br + em")]
        self.assertEqual([words for words, width in pictures if width > 300], captions)

    def test_lists_the_sections_that_have_all_words(self):
        self.search("VENDOR  folder")
        found = self.results()
        self.assertIn("Save checked morphs as support assets", found)
        self.assertNotIn("Head split", found)
        self.assertFalse(self.window.find("#contents").is_displayed())
        marked = {mark.get_attribute("textContent").lower() for mark in self.window.find_all("main mark")}
        self.assertEqual(marked, {"vendor", "folder"})

    def test_puts_headings_with_the_words_first_and_leads_there(self):
        self.search("limits")
        self.assertEqual(self.results()[0], "16 Limits")
        self.window.find("#results a").click()
        place = self.window.run("return document.getElementById('limits').getBoundingClientRect().top")
        self.assertTrue(0 <= place < 900, place)

    def test_says_when_nothing_is_found_and_goes_back(self):
        before = self.window.run("return document.querySelector('main').innerHTML")
        self.search("zebra")
        self.assertEqual(self.window.find("#results").text, "Nothing in the manual has all of these words.")
        self.search("morph")
        self.assertNotEqual(self.window.run("return document.querySelector('main').innerHTML"), before)
        self.window.find("#search").send_keys("\ue00c")  # Escape
        self.assertTrue(self.window.find("#contents").is_displayed())
        self.assertEqual(self.window.run("return document.querySelector('main').innerHTML"), before)

    def test_fits_into_a_narrow_window(self):
        self.window.resize(420)
        wider = self.window.run("return document.documentElement.scrollWidth - window.innerWidth")
        self.window.resize(1280)
        self.assertLessEqual(wider, 0)

    def test_breaks_no_word_at_the_beginning_of_a_table_s_row(self):
        for width in (420, 1100, 1280):
            self.window.resize(width)
            broken = self.window.run("""
                const words = [];
                for (const cell of document.querySelectorAll('main th:first-child, main td:first-child')) {
                    const texts = document.createTreeWalker(cell, NodeFilter.SHOW_TEXT);
                    while (texts.nextNode())
                        for (const word of texts.currentNode.data.matchAll(/(?<![^\\s/-])[^\\s/-]{2,16}(?=[\\s/-]|$)/g)) {
                            const range = document.createRange();
                            range.setStart(texts.currentNode, word.index);
                            range.setEnd(texts.currentNode, word.index + word[0].length);
                            const lines = new Set([...range.getClientRects()].map((box) => Math.round(box.top)));
                            if (lines.size > 1)
                                words.push(word[0]);
                        }
                }
                return words;""")
            with self.subTest(width):
                self.assertEqual(broken, [])
        self.window.resize(1280)

    def test_keeps_options_in_one_piece_where_there_is_room(self):
        for width in (1100, 1280):
            self.window.resize(width)
            broken = self.window.run("return [...document.querySelectorAll('td:first-child code')]"
                                     ".filter((code) => code.getClientRects().length > 1).map((code) => code.textContent)")
            wider = self.window.run("return document.documentElement.scrollWidth - window.innerWidth")
            with self.subTest(width):
                self.assertEqual(broken, [])
                self.assertLessEqual(wider, 0)
        self.window.resize(1280)


if __name__ == "__main__":
    MANUAL, *CHAPTERS = sys.argv[1:]
    if not browser.CHROMIUM or not browser.DRIVER:
        print("skipped: chromium and its driver are missing")
        sys.exit(77)
    unittest.main(argv=sys.argv[:1])
