# What tables of many rows cost, counted in calls of the system rather than in time.
# SPDX-License-Identifier: MIT

import collections
import json
import os
import re
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

from farm import PATIENCE, SOURCES, needs

STAND_IN = os.environ["GANTREL_STAND_IN"]


class Costs(unittest.TestCase):
    def setUp(self):
        self.folder = Path(tempfile.mkdtemp(prefix="farm-"))
        self.addCleanup(shutil.rmtree, self.folder)

    def make_table(self, name, rows):
        maker = SOURCES / "bench/clusters/make_table.py"
        text = subprocess.run([sys.executable, maker, str(rows), self.folder / "library"], capture_output=True).stdout
        (self.folder / name).write_bytes(text)
        return self.folder / name

    def command(self, table, *more):
        product = Path(table).stem
        return [str(one) for one in (STAND_IN, "batch", table, "--content", self.folder, "--target",
                self.folder / "target.duf", "--save-library", self.folder / "saved", "--vendor", "Acme",
                "--product", product, *more)]  # fmt: skip

    def run_well(self, table, *more):
        result = subprocess.run(self.command(table, *more), capture_output=True, text=True, timeout=PATIENCE)
        self.assertEqual(result.returncode, 0, result.stderr)
        return result.stdout

    def calls(self, table, *more):
        """Names of the calls that have to do with the folder, without those that read the table, by how often."""
        log = self.folder / "strace.txt"
        command = ["strace", "-f", "-y", "-o", log, *self.command(table, *more)]
        subprocess.run(command, stdout=subprocess.DEVNULL, check=True, timeout=PATIENCE)
        lines = [line for line in log.read_text(errors="replace").splitlines() if str(self.folder) in line]
        reads = re.compile(rf"read\(\d+<{re.escape(str(table))}>")
        calls = [line.split(None, 1)[1].split("(")[0] for line in lines if not reads.search(line)]
        return collections.Counter(calls), "\n".join(lines)

    @needs("strace")
    def test_of_a_row_do_not_grow_with_the_table(self):
        counts = {}
        for rows in (600, 2000):
            table = self.make_table(f"of{rows}.csv", rows)
            self.run_well(table, "--row", 1)
            counts[rows], lines = self.calls(table, "--row", "11-20", "--workers", 1)
            self.assertIn("Person 000011.duf", lines)
            self.assertNotIn("Person 000021.duf", lines)
        few, many = (sum(counts[rows].values()) for rows in (600, 2000))
        self.assertLess(abs(few - many), 20, f"{counts}")  # the database's pages lie a little differently
        self.assertLess(many, 10 * 200)
        # Folders with the morphs of all rows are not listed for each row.
        self.assertLess(counts[2000]["getdents64"], 10)

    @needs("strace")
    def test_of_checking_a_table_are_one_look_at_each_folder(self):
        few, _ = self.calls(self.make_table("few.csv", 600), "--list")
        many, _ = self.calls(self.make_table("many.csv", 2000), "--list")
        self.assertEqual(few, many)

    def test_of_many_rows_are_paid_once(self):
        table = self.make_table("all.csv", 1000)
        log = self.folder / "log.jsonl"
        first = json.loads(self.run_well(table, "--resume", "--json", "--log", log))
        self.assertEqual((first["done"], first["skipped"], first["failed"]), (1000, 0, 0))
        again = json.loads(self.run_well(table, "--resume", "--json", "--log", log))
        self.assertEqual((again["done"], again["skipped"], again["failed"]), (0, 1000, 0))
        merged = json.loads(self.run_well(table, "--merge", log, "--json"))
        self.assertEqual((merged["rows"], merged["done"], merged["missing"]), (1000, 1000, 0))
        self.assertEqual(len(list((self.folder / "saved").rglob("*.dsf"))), 2 * 1000)


if __name__ == "__main__":
    unittest.main(verbosity=2)
