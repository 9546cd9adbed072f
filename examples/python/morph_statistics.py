"""Tells what the morphs of files do, as comma-separated values."""

# SPDX-License-Identifier: MIT

import argparse
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
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("files", metavar="FILE.dsf", nargs="+")
    try:
        main(parser.parse_args().files)
    except gantrel.Error as error:
        sys.exit(str(error))
