"""Runs `gantrel script` as a user does, in a folder of its own."""

# SPDX-License-Identifier: MIT

import os
import pathlib
import signal
import subprocess
import tempfile
import unittest

GANTREL = os.environ["GANTREL_PROGRAM"]


class ScriptCase(unittest.TestCase):
    """Each test has an empty folder that goes with it; the program runs there."""

    def setUp(self):
        self.place = tempfile.TemporaryDirectory()
        self.addCleanup(self.place.cleanup)
        self.folder = pathlib.Path(self.place.name).resolve()

    def write(self, name, text):
        file = self.folder / name
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_text(text, encoding="utf-8")
        return str(file)

    def environment(self):
        kept = {name: value for name, value in os.environ.items() if not name.startswith("GANTREL_")}
        return dict(kept, XDG_CONFIG_HOME="/nonexistent", QT_QPA_PLATFORM="offscreen")

    def run_script(self, *arguments, typed=None):
        return subprocess.run([GANTREL, "script", *map(str, arguments)], input=typed, capture_output=True, text=True,
                              cwd=self.folder, env=self.environment(), check=False,
                              stdin=subprocess.DEVNULL if typed is None else None)

    def run_text(self, text, *arguments):
        """The result, of a script that stands in a file of the test's folder."""
        return self.run_script(self.write("script.js", text), *arguments)

    def out_of(self, text, *arguments):
        """What it prints; it must succeed without a warning."""
        ended = self.run_text(text, *arguments)
        self.assertEqual((ended.returncode, ended.stderr), (0, ""))
        return ended.stdout

    def error_of(self, text, *arguments):
        """The sentence behind the script's name; the script must fail and print nothing."""
        ended = self.run_text(text, *arguments)
        self.assertEqual((ended.returncode, ended.stdout), (1, ""), ended.stderr)
        beginning = f"gantrel: {self.folder}/script.js, "
        self.assertTrue(ended.stderr.startswith(beginning), ended.stderr)
        self.assertEqual(ended.stderr.count("\n"), 1, ended.stderr)
        return ended.stderr[len(beginning):].rstrip("\n")

    def interrupt(self, text, sign=signal.SIGINT):
        """What it prints until it is interrupted, which is when it has printed a line; and how it ended."""
        running = subprocess.Popen([GANTREL, "script", self.write("script.js", text)], cwd=self.folder, text=True,
                                   env=self.environment(), stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                                   stderr=subprocess.PIPE)
        first = running.stdout.readline()
        running.send_signal(sign)
        out, err = running.communicate()
        return first + out, err, running.returncode
