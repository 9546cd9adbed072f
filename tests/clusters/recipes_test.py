# The same rows by the recipes of examples/clusters, on one machine.
# SPDX-License-Identifier: MIT

import subprocess
import unittest

from farm import PATIENCE, RECIPES, FarmTest, needs

ROWS = RECIPES / "rows.sh"


class Chunks(FarmTest):
    def test_of_rows_make_the_files_of_a_batch(self):
        settings = self.make_job("chunks")
        self.assertEqual(self.run_well(ROWS, settings, "chunks").stdout, "3\n")
        for number in (3, 1, 2):
            self.run_well(ROWS, settings, "run", number)
        self.run_well(ROWS, settings, "merge")
        self.assertEqual(self.summary(settings)["done"], 5)
        self.expect_files_of_a_batch(settings)

    def test_that_run_again_do_nothing(self):
        settings = self.make_job("again")
        self.run_well(ROWS, settings, "chunks")
        self.run_well(ROWS, settings, "run", 1)
        before = {path: path.stat().st_mtime_ns for path in (settings.parent / "saved").rglob("*")}
        self.run_well(ROWS, settings, "run", 1)
        self.assertEqual({path: path.stat().st_mtime_ns for path in before}, before)
        self.assertEqual(self.summary(settings)["done"], 2)
        self.assertEqual(self.summary(settings)["missing"], 3)
        self.assertEqual(self.run_program(ROWS, settings, "merge").returncode, 1)

    def test_that_are_asked_for_wrongly_are_told_in_a_sentence(self):
        settings = self.make_job("wrong")
        for arguments, sentence in [
            ((), "wants the settings' file, and one of chunks, run K and merge"),
            ((settings,), "wants the settings' file, and one of chunks, run K and merge"),
            ((settings.parent / "none.sh", "chunks"), f"there is no settings file {settings.parent}/none.sh"),
            ((settings, "run", 1), f"nobody has counted the chunks yet: rows.sh {settings} chunks"),
            ((settings, "run", "x"), "run wants the number of a chunk, the first is 1"),
            ((settings, "merge"), "there are no logs in logs yet"),
            ((settings, "sum"), "sum is none of chunks, run and merge"),
        ]:
            result = self.run_program(ROWS, *arguments)
            self.assertEqual((result.returncode, result.stderr), (2, f"rows.sh: {sentence}\n"))
        self.run_well(ROWS, settings, "chunks")
        result = self.run_program(ROWS, settings, "run", 4)
        self.assertEqual(result.stderr, "rows.sh: there is no chunk 4: the table has 5 rows, in chunks of 2\n")
        (settings.parent / "half.sh").write_text("table=jobs.csv\nlogs=logs\nchunk=2\n")
        result = self.run_program(ROWS, settings.parent / "half.sh", "chunks")
        self.assertEqual(result.stderr, f"rows.sh: {settings.parent}/half.sh does not say options\n")

    def test_that_run_twice_at_a_time_are_safe(self):
        settings = self.make_job("twice", chunk=5)
        self.run_well(ROWS, settings, "chunks")
        both = [
            subprocess.Popen([ROWS, settings, "run", "1"], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
            for _ in range(2)
        ]
        for one in both:
            one.wait(PATIENCE)
        # Rows that one left to the other are done, or are done by the next try.
        self.run_well(ROWS, settings, "run", 1)
        self.run_well(ROWS, settings, "merge")
        self.expect_files_of_a_batch(settings)

    def test_that_are_killed_are_completed_by_the_next_try(self):
        settings = self.make_job("killed", chunk=5)
        self.run_well(ROWS, settings, "chunks")
        task = subprocess.Popen([ROWS, settings, "run", "1"], stdout=subprocess.DEVNULL)
        while task.poll() is None and not list((settings.parent / "saved").rglob("*.dsf")):
            pass
        task.kill()
        task.wait(PATIENCE)
        self.run_well(ROWS, settings, "run", 1)
        self.run_well(ROWS, settings, "merge")
        self.expect_files_of_a_batch(settings)


class Parallel(FarmTest):
    @needs("parallel")
    def test_makes_the_files_of_a_batch(self):
        settings = self.make_job("it's in parallel")
        self.run_well(RECIPES / "parallel.sh", settings, "--jobs", 2)
        self.expect_files_of_a_batch(settings)

    @needs("parallel")
    def test_makes_again_what_is_gone(self):
        settings = self.make_job("gone")
        self.run_well(RECIPES / "parallel.sh", settings, "--jobs", 2)
        next((settings.parent / "saved").rglob("*Iris*.dsf")).unlink()
        self.run_well(RECIPES / "parallel.sh", settings, "--jobs", 2)
        self.assertEqual(self.summary(settings)["done"], 5)
        self.expect_files_of_a_batch(settings)

    @needs("parallel")
    def test_goes_on_where_it_failed(self):
        settings = self.make_job("missing")
        vera = self.content / "People/Genesis 8 Female/Characters/Vera.duf"
        away = vera.with_suffix(".away")
        vera.rename(away)
        self.addCleanup(lambda: away.exists() and away.rename(vera))
        failed = self.run_program(RECIPES / "parallel.sh", settings, "--jobs", 2)
        self.assertEqual(failed.returncode, 1)
        self.assertIn("2 of 5 rows failed", failed.stderr)
        away.rename(vera)
        self.run_well(RECIPES / "parallel.sh", settings, "--jobs", 2)
        self.expect_files_of_a_batch(settings)


class Snakemake(FarmTest):
    def snakemake(self, settings, *more):
        return self.run_well(
            "snakemake", "--snakefile", RECIPES / "snakemake/Snakefile", "--config", f"settings={settings}",
            "--directory", settings.parent, "--cores", 2, *more,
        )  # fmt: skip

    @needs("snakemake")
    def test_makes_the_files_of_a_batch_here(self):
        settings = self.make_job("workflow")
        self.snakemake(settings)
        self.expect_files_of_a_batch(settings)
        self.assertTrue((settings.parent / "snakemake/summary.json").stat().st_size > 0)
        self.assertIn("Nothing to be done", self.snakemake(settings).stderr)

    @needs("snakemake")
    def test_makes_the_files_of_a_batch_through_a_command_that_submits(self):
        settings = self.make_job("submitted")
        submit = settings.parent / "submit"
        # As those of clusters do: takes the script, says a number, and is gone before the work is done.
        submit.write_text(
            '#!/bin/sh\necho "$@" >>"$(dirname "$0")/submitted"\n'
            'setsid sh "$4" >/dev/null 2>&1 </dev/null &\necho $!\n'
        )
        submit.chmod(0o755)
        command = f"{submit} {{threads}} {{resources.mem_mb}} {{resources.runtime}}"
        self.snakemake(settings, "--jobs", 3, "--latency-wait", 60, "--cluster", command)
        self.expect_files_of_a_batch(settings)
        lines = (settings.parent / "submitted").read_text().splitlines()
        self.assertEqual([line.split()[:3] for line in lines], [["1", "1000", "120"]] * 3)


if __name__ == "__main__":
    unittest.main(verbosity=2)
