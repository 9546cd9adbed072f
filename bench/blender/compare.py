#!/usr/bin/env python3
# The same transfer here and in Blender, in turn on the same machine:
# compare.py BUILD_FOLDER SOURCE_NEUTRAL.obj SOURCE_MORPHED.obj TARGET_NEUTRAL.obj [RUNS]
# SPDX-License-Identifier: MIT

import json
import os
import shutil
import statistics
import subprocess
import sys
import tempfile
import time
from pathlib import Path

LEVEL = "3"
if len(sys.argv) < 5:
    sys.exit("usage: compare.py BUILD_FOLDER SOURCE_NEUTRAL.obj SOURCE_MORPHED.obj TARGET_NEUTRAL.obj [RUNS]")
build, meshes = Path(sys.argv[1]), [str(Path(file).resolve()) for file in sys.argv[2:5]]
runs = int(sys.argv[5]) if len(sys.argv) > 5 else 5
if not shutil.which("blender"):
    sys.exit("blender is not installed; Debian's package of this name has it")


def timed(command):
    os.sync()  # or what the process before has still to write takes this one's time
    begin = time.monotonic()
    done = subprocess.run(list(map(str, command)), stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
    if done.returncode:
        sys.exit(f"{command[0]} failed: {done.stderr.strip() or done.stdout.strip()}")
    return time.monotonic() - begin, done.stdout


def steps_here(folder):
    program = build / "bench/blender/blender_counterpart"
    return json.loads(timed([program, *meshes, folder / "here.obj", LEVEL])[1])


def steps_there(folder):
    script = Path(__file__).with_name("in_blender.py")
    text = timed(["blender", "-b", "--factory-startup", "-P", script, "--", *meshes, folder / "there.obj", LEVEL])[1]
    lines = [line for line in text.splitlines() if line.startswith("seconds ")]
    if not lines:
        sys.exit("Blender did not come to the end:\n" + text)
    return json.loads(lines[0].removeprefix("seconds "))


def whole_here(folder):
    names = ("--source-neutral", "--source-morphed", "--target-neutral")
    files = [part for pair in zip(names, meshes) for part in pair]
    return timed([build / "apps/cli/gantrel", "transfer", *files, "--out", folder / "here.obj"])[0]


def whole_there(folder):
    script = Path(__file__).with_name("in_blender.py")
    # Level 0 leaves out nothing that a transfer needs; what follows it is taken off.
    seconds, text = timed(["blender", "-b", "--factory-startup", "-P", script, "--", *meshes, folder / "there.obj", "0"])
    line = next(line for line in text.splitlines() if line.startswith("seconds "))
    rest = json.loads(line.removeprefix("seconds "))
    return seconds - rest["subdivide"] - rest["write subdivided"] - rest["read subdivided"]


here, there = [], []
with tempfile.TemporaryDirectory() as name:
    folder = Path(name)
    for _ in range(runs):
        here.append({**steps_here(folder), "whole process": whole_here(folder)})
        there.append({**steps_there(folder), "whole process": whole_there(folder)})
for measured in (here, there):
    for one in measured:
        one["bind and evaluate"] = one["bind"] + one["evaluate"]
print(f"medians of {runs}, load {os.getloadavg()[0]:.1f}, seconds")
print(f"{'':20}{'here':>10}{'Blender':>10}{'ratio':>8}")
for step in ("read", "bind", "evaluate", "bind and evaluate", "write", "subdivide", "write subdivided",
             "read subdivided", "whole process"):  # fmt: skip
    ours, theirs = (statistics.median(one[step] for one in measured) for measured in (here, there))
    print(f"{step:20}{ours:10.4f}{theirs:10.4f}{theirs / ours:8.1f}")
