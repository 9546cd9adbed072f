#!/usr/bin/env python3
# A table of so many rows: make_table.py ROWS [FOLDER]. Their sources need not be there for the stand-in.
# SPDX-License-Identifier: MIT

import csv
import sys

rows = int(sys.argv[1])
folder = sys.argv[2] if len(sys.argv) > 2 else "/shared/library"
table = csv.writer(sys.stdout, lineterminator="\n")
table.writerow(["source", "name", "dial"])
for number in range(1, rows + 1):
    source = f"{folder}/People/Genesis 8 Female/Characters/Studio/Person {number:06}.duf"
    table.writerow([source, f"Person {number:06}", f"Wide={number % 100 / 100};Bulge=0.5"])
