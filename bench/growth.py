#!/usr/bin/env python3
# SPDX-License-Identifier: BSD-3-Clause
"""Prints how the instructions of each work grow with its size.

usage: growth.py BUILD [--page FILE] [WORD]

Each work is counted at four sizes, each twice the one before. The exponent is that of the
last doubling, where what does not grow weighs least: 1 means in proportion. Those above
1.15 have to stand in growth.tsv with their reason; the program fails for one that does
not, and for one that stands there and is not above. WORD chooses works by their name;
--page writes the tables into a page that has places for them.
"""
import argparse
import math
import os
import sys

import callgrind
import page
from measure import figure

LIMIT = 1.15
HERE = os.path.dirname(os.path.abspath(__file__))


def known_growths(path):
    """Why a work may grow faster, and when it takes a second, by its name."""
    with open(path, encoding="utf-8") as file:
        rows = [line.rstrip("\n").split("\t") for line in file if not line.startswith("#")]
    return {row[0]: row[1:] for row in rows[1:]}


def exponent(smaller, bigger):
    return math.log(bigger.total / smaller.total) / math.log(bigger.size / smaller.size)


def grown(counts):
    """The four counts of each work, by name, without the parses."""
    works = {}
    for one in counts:
        if one.kind == "run":
            works.setdefault(one.name, []).append(one)
    return works


def check(works, known):
    """Rows of the table, and what is not as the list says."""
    rows = []
    faults = []
    for name, counts in works.items():
        last = exponent(counts[-2], counts[-1])
        rows.append((name, f"{counts[0].size:,} to {counts[-1].size:,}",
                     *(figure(one.total) for one in counts),
                     f"{exponent(counts[0], counts[-1]):.2f}", f"{last:.2f}"))
        if last > LIMIT and name not in known:
            faults.append(f"{name}: grows with the power of {last:.2f}")
        if last <= LIMIT and name in known:
            faults.append(f"{name}: is listed in growth.tsv and grows with {last:.2f} only")
    return rows, faults


def exceptions(rows, known):
    """The listed works with their exponents."""
    return page.table(("dimension: work", "exponent", "why", "a second at"),
                      [(row[0], row[-1], *known[row[0]]) for row in rows if row[0] in known])


def main():
    parser = argparse.ArgumentParser(description="prints how works grow")
    parser.add_argument("build")
    parser.add_argument("word", nargs="?", default="")
    parser.add_argument("--page")
    options = parser.parse_args()
    counts = callgrind.count(f"{options.build}/bench/bench_count", "growth", options.word)
    known = known_growths(os.path.join(HERE, "growth.tsv"))
    rows, faults = check(grown(counts), known)
    head = ("dimension: work", "sizes", "at the first", "second", "third", "fourth",
            "exponent of all", "of the last doubling")
    page.show({"growth": page.table(head, rows), "exceptions": exceptions(rows, known)},
              options.page)
    print("\n".join(faults))
    sys.exit(1 if faults else 0)


if __name__ == "__main__":
    main()
