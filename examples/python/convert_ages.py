"""Converts a character at several values of a dial.

Each shape becomes a morph of its own on the Genesis 9 figure, saved in FOLDER.
"""

# SPDX-License-Identifier: MIT

import argparse
import sys

import gantrel


def main(library_folder, character, dial, folder):
    with gantrel.Library(library_folder) as library:
        source = library.load(character)
        target = library.load(f"{library_folder}/People/Genesis 9/Genesis 9.duf")
        for percent in (25, 50, 100):
            source.dials[dial] = percent / 100
            name = f"{source.label} {dial} {percent}"
            made = gantrel.convert(source, target, jobs=["full"], name=name, save=gantrel.Save(folder, "Me", "Ages"))
            target.dials[name] = 0  # the next shape begins at the neutral one
            print(f"{name}: {10 * made.distances.mean:.2f} mm from the source on average, {made.created[0].file}")


if __name__ == "__main__":
    parser = argparse.ArgumentParser(description=__doc__)
    for name in ("LIBRARY", "CHARACTER.duf", "DIAL", "FOLDER"):
        parser.add_argument(name)
    try:
        main(*vars(parser.parse_args()).values())
    except gantrel.Error as error:
        sys.exit(str(error))
