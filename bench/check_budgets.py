#!/usr/bin/env python3
# SPDX-License-Identifier: BSD-3-Clause
"""Holds the instructions of libqmodel's own code to the budgets of budgets.tsv.

usage: check_budgets.py BUILD [--update]

Runs the small form of each case of bench_count under callgrind and compares what
libqmodel's own object executes for one entry, node or value with its budget. More than
5 % over the budget fails: the change made the library slower, or the budget is raised
with a reason. More than 10 % under it fails too: lower the budget, so that the gain
cannot be lost again. --update writes the budgets of today. Budgets hold for one compiler;
a build with another one is reported and never fails. Cases of the real models are
compared where QMODEL_MODELS_DIR names their folder.
"""
import os
import sys

import callgrind

OVER = 1.05
UNDER = 0.90
BUDGETS = os.path.join(os.path.dirname(os.path.abspath(__file__)), "budgets.tsv")
HEAD = """# Instructions of libqmodel's own code, for one unit of each case in its small form; held to
# and rewritten by check_budgets.py. Taken in a release build for x86-64 with:
"""


def read_budgets(path):
    """What they were taken with, and (unit, instructions) by case."""
    taken_with = {}
    budgets = {}
    with open(path, encoding="utf-8") as file:
        for line in file:
            words = line.rstrip("\n").split("\t")
            if line.startswith("# ") and len(words) == 2:
                taken_with[words[0][2:]] = words[1]
            elif not line.startswith("#") and words[0] != "case":
                budgets[words[0]] = (words[1], float(words[2]))
    return taken_with, budgets


def write_budgets(path, about, counts, kept):
    """Writes the counts; budgets in `kept` stay as they are."""
    rows = dict(kept)
    rows.update({one.name: (one.unit, one.own / one.units) for one in counts})
    with open(path, "w", encoding="utf-8") as file:
        file.write(HEAD)
        for name, value in about.items():
            file.write(f"# {name}\t{value}\n")
        file.write("case\tunit\tinstructions\n")
        for name, (unit, instructions) in rows.items():
            file.write(f"{name}\t{unit}\t{instructions:.1f}\n")


def compare(budgets, counts, has_real_models):
    """Lines to print, and those of them that are faults."""
    lines = []
    faults = []
    for one in counts:
        if one.name not in budgets:
            faults.append(f"{one.name}: has no budget; write one with --update")
            continue
        budget = budgets[one.name][1]
        now = one.own / one.units
        line = f"{one.name}: {now:.1f} instructions per {one.unit}, budget {budget:.1f} " \
               f"({100 * (now / budget - 1 if budget else now):+.1f} %)"
        lines.append(line)
        if now > OVER * budget:
            faults.append(line + ": over the budget")
        if now < UNDER * budget:
            faults.append(line + ": lower the budget with --update")
    counted = {one.name for one in counts}
    for name in budgets:
        if name not in counted and (has_real_models or not is_real(name)):
            faults.append(f"{name}: has a budget and is not counted")
    return lines, faults


def is_real(name):
    return "real models" in name


def main():
    words = [word for word in sys.argv[1:] if word != "--update"]
    if len(words) != 1:
        sys.exit(__doc__)
    program = os.path.join(words[0], "bench", "bench_count")
    about = callgrind.about(program)
    counts = [one for one in callgrind.count(program, "cases", "small") if one.kind == "run"]
    has_real_models = any(is_real(one.name) for one in counts)
    taken_with, budgets = read_budgets(BUDGETS) if os.path.exists(BUDGETS) else ({}, {})
    if "--update" in sys.argv:
        kept = {} if has_real_models else {n: b for n, b in budgets.items() if is_real(n)}
        write_budgets(BUDGETS, about, counts, kept)
        return 0
    lines, faults = compare(budgets, counts, has_real_models)
    print("\n".join(lines))
    if not has_real_models:
        print("the real models are not there: their budgets are not compared")
    print("\n".join(faults), file=sys.stderr)
    if about.get("compiler") != taken_with.get("compiler"):
        print(f"built with {about.get('compiler')}, the budgets with "
              f"{taken_with.get('compiler')}: reported only")
        return 0
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
