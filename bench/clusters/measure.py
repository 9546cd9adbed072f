#!/usr/bin/env python3
# What a large table costs apart from its conversions: measure.py STAND_IN ROWS FOLDER [ROWS THAT ARE RUN]
# SPDX-License-Identifier: MIT

import collections
import os
import re
import subprocess
import sys
import time
from pathlib import Path

program, rows, folder = sys.argv[1], int(sys.argv[2]), Path(sys.argv[3]).resolve()
run = int(sys.argv[4]) if len(sys.argv) > 4 else rows
folder.mkdir(parents=True)
table = folder / "jobs.csv"
with open(table, "wb") as file:
    maker = Path(__file__).with_name("make_table.py")
    subprocess.run([sys.executable, maker, str(rows), str(folder / "library")], stdout=file, check=True)
options = ["--content", folder, "--target", folder / "target.duf", "--save-library", folder / "saved"]
options += ["--vendor", "Acme", "--product", "Farm"]


def measure(what, *arguments, codes=(0,)):
    begin = time.monotonic()
    child = subprocess.Popen([program, "batch", *map(str, arguments)], stdout=subprocess.DEVNULL)
    _, status, usage = os.wait4(child.pid, 0)
    seconds = time.monotonic() - begin
    if os.waitstatus_to_exitcode(status) not in codes:
        sys.exit(f"{what}: failed")
    cpu = usage.ru_utime + usage.ru_stime
    print(f"{what:44} {seconds:9.2f} s {cpu:9.2f} s CPU {usage.ru_maxrss / 1024:8.0f} MiB", flush=True)


def count_operations(what, rows_done, *arguments):
    log = folder / "strace.txt"
    subprocess.run(["strace", "-f", "-y", "-o", log, program, "batch", *map(str, arguments)],
                   stdout=subprocess.DEVNULL, check=True)  # fmt: skip
    calls = collections.Counter(
        match[1] for line in open(log, errors="replace") if str(folder) in line and (match := re.match(r"\d+ +(\w+)\(", line))
    )
    names = ", ".join(f"{name} {count / rows_done:.1f}" for name, count in calls.most_common(14))
    print(f"{what}: {sum(calls.values()) / rows_done:.1f} calls a row on the shared folder: {names}", flush=True)
    log.unlink()


print(f"table of {rows} rows: {table.stat().st_size / 2**20:.1f} MiB")
measure("--list", table, *options, "--list")
measure("--row 7, the table known to be right", table, *options, "--row", 7)
measure("--row 101-200", table, *options, "--row", "101-200", "--workers", 1, "--log", folder / "a.jsonl")
count_operations("--row 8", 1, table, *options, "--row", 8, "--log", folder / "b.jsonl")
count_operations("--row 201-300", 100, table, *options, "--row", "201-300", "--workers", 1, "--log", folder / "b.jsonl")
measure(f"--row 301-{run}", table, *options, "--row", f"301-{run}", "--log", folder / "c.jsonl")
measure("the same again, all done", table, *options, "--row", f"301-{run}")
logs = [folder / f"{name}.jsonl" for name in "abc"]
measure("--merge", table, *options, "--merge", *logs, codes=(0, 1))
state = Path(f"{table}.gantrel-batch")
print(f"state {state.stat().st_size / run:.0f} bytes a row, logs {sum(log.stat().st_size for log in logs) / run:.0f}")
