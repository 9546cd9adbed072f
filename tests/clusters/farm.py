# A small studio for one test: a library, a table of rows, and the recipes of examples/clusters at work on it.
# SPDX-License-Identifier: MIT

import atexit
import functools
import json
import os
import re
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

SOURCES = Path(__file__).resolve().parents[2]
RECIPES = SOURCES / "examples/clusters"
GANTREL = os.environ["GANTREL_PROGRAM"]
PATIENCE = 300  # seconds that nothing here takes unless it hangs


def needs(*programs):
    """Skips a test with a line that says why."""
    missing = [program for program in programs if not shutil.which(program, path=f"{os.environ['PATH']}:/usr/sbin")]
    return unittest.skipIf(missing, f"{', '.join(missing)} is not installed")


@functools.lru_cache(maxsize=None)
def studio():
    """A folder with a library, made once and gone at the end."""
    folder = Path(tempfile.mkdtemp(prefix="farm-"))
    atexit.register(shutil.rmtree, folder, ignore_errors=True)
    os.environ.update(GANTREL=GANTREL, XDG_CACHE_HOME=str(folder / "cache"), HOME=str(folder), LC_ALL="C.UTF-8")
    subprocess.run([GANTREL, "sample-content", folder / "library"], check=True, stdout=subprocess.DEVNULL)
    return folder


class FarmTest(unittest.TestCase):
    """Tables of the same rows, each in a folder of its own, since what is done is kept beside a table."""

    expected = None

    @classmethod
    def setUpClass(cls):
        cls.folder = studio()
        cls.content = cls.folder / "library"

    def make_job(self, name, chunk=2):
        """The settings of a table that nobody has worked on yet."""
        folder = self.folder / name
        folder.mkdir()
        people = self.content / "People"
        rows = ["source,name,dial,morphs,suffix"]
        rows += [f'{people}/Genesis 8 Female/Characters/Vera.duf,"Vera, {n}",,,' for n in (1, 2)]
        rows += [f"{people}/Genesis 8.1 Female/Characters/Iris.duf,Iris,,,"]
        rows += [f"{people}/Genesis 8.1 Female/Genesis 8.1 Female.duf,,,PHM*;PBMBelly,_f"]
        rows += [f"{people}/Genesis 8.1 Male/Genesis 8.1 Male.duf,,,FBM*,_m"]
        (folder / "jobs.csv").write_text("\n".join(rows) + "\n")
        (folder / "settings.sh").write_text(
            f"""table=jobs.csv
logs=logs
chunk={chunk}
options=(--content "{self.content}" --target "{people}/Genesis 9/Genesis 9.duf"
    --save-library "{folder}/saved" --vendor Acme --product "My Shapes")
"""
        )
        return folder / "settings.sh"

    def run_program(self, *arguments, **more):
        return subprocess.run(
            [str(one) for one in arguments], capture_output=True, text=True, timeout=PATIENCE, **more
        )

    def run_well(self, *arguments, **more):
        result = self.run_program(*arguments, **more)
        self.assertEqual(result.returncode, 0, result.stdout + result.stderr)
        return result

    def saved(self, settings):
        """Contents by name, without the time at which they were written."""
        folder = settings.parent / "saved"
        return {
            str(file.relative_to(folder)): re.sub(rb'"modified" ?: ?"[^"]*"', b"", file.read_bytes())
            for file in sorted(folder.rglob("*"))
            if file.is_file()
        }

    def expect_files_of_a_batch(self, settings):
        """The same names and bytes as `gantrel batch` makes of the same rows."""
        if FarmTest.expected is None:
            alone = self.make_job("alone")
            options = subprocess.run(
                ["bash", "-c", 'source "$0"; printf "%s\\n" "${options[@]}"', alone], capture_output=True, text=True
            ).stdout.splitlines()
            self.run_well(GANTREL, "batch", alone.parent / "jobs.csv", *options)
            FarmTest.expected = self.saved(alone)
            self.assertGreater(len(FarmTest.expected), 20)
        saved = self.saved(settings)
        self.assertEqual(sorted(saved), sorted(FarmTest.expected))
        for name, content in FarmTest.expected.items():
            self.assertTrue(saved[name] == content, f"{name} is another one")

    def summary(self, settings):
        result = self.run_program(RECIPES / "rows.sh", settings, "merge", "--json")
        return json.loads(result.stdout)
