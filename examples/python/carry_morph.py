"""Carries a morph from one OBJ mesh to another."""

# SPDX-License-Identifier: MIT

import argparse
import sys

import gantrel
import numpy as np


def main(neutral, morphed, target, out):
    source, shaped, other = gantrel.read_obj(neutral), gantrel.read_obj(morphed), gantrel.read_obj(target)
    match = gantrel.Match(source.vertices, source.faces, other.vertices, other.faces)
    deltas = match.transfer(shaped.vertices - source.vertices)
    gantrel.write_obj(out, other.vertices + deltas, other.faces)
    lengths = np.linalg.norm(deltas, axis=1)
    print(f"{np.count_nonzero(lengths > 1e-4)} vertices move by up to {lengths.max():g} cm")


if __name__ == "__main__":
    parser = argparse.ArgumentParser(description=__doc__)
    for name in ("NEUTRAL.obj", "MORPHED.obj", "TARGET.obj", "OUT.obj"):
        parser.add_argument(name)
    try:
        main(*vars(parser.parse_args()).values())
    except gantrel.Error as error:
        sys.exit(str(error))
