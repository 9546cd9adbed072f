"""Tells what the morphs of files do, as comma-separated values: morph_statistics.py FILE.dsf..."""

# SPDX-License-Identifier: MIT

import csv
import sys

import gantrel
import numpy as np


def main(files):
    table = csv.writer(sys.stdout)
    table.writerow(["name", "vertices", "mean cm", "max cm"])
    for file in files:
        for morph in gantrel.read_morphs(file):
            lengths = np.linalg.norm(morph.deltas, axis=1) if len(morph.vertices) else np.zeros(1)
            table.writerow([morph.name, len(morph.vertices), f"{lengths.mean():.4f}", f"{lengths.max():.4f}"])


if __name__ == "__main__":
    try:
        main(sys.argv[1:])
    except gantrel.Error as error:
        sys.exit(str(error))
