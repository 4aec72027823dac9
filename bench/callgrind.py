# SPDX-License-Identifier: BSD-3-Clause
"""Runs bench_count under callgrind and reads the dumps that it leaves.

Each dump is one run; its trigger names it: "CASE|SIZE|UNITS|UNIT|run" or "...|parse".
"""
import os
import re
import subprocess
import sys
import tempfile
from dataclasses import dataclass

LIBRARY = re.compile(r"/libqmodel\.so[^/]*$")
TRIGGER = "desc: Trigger: Client Request: "


@dataclass
class Count:
    """Instructions of one run."""
    name: str
    size: int
    units: int
    unit: str
    kind: str  # "run" or "parse"
    total: int
    own: int  # of them, those in libqmodel's own object


def object_costs(lines):
    """Instructions by object. A cost line after "calls=" is that of the callee."""
    names = {}
    costs = {}
    current = None
    is_call = False
    for line in lines:
        if line.startswith("ob="):
            match = re.match(r"ob=\((\d+)\)(?: (.*))?", line)
            number, name = match.groups()
            if name:
                names[number] = name.strip()
            current = names[number]
        elif line.startswith("cob="):  # may bring a name that a later "ob=" leaves out
            number, name = re.match(r"cob=\((\d+)\)(?: (.*))?", line).groups()
            if name:
                names[number] = name.strip()
        elif line.startswith("calls="):
            is_call = True
        elif line[:1] in "0123456789+-*":
            words = line.split()
            if not is_call and len(words) > 1:
                costs[current] = costs.get(current, 0) + int(words[1])
            is_call = False
    return costs


def read_dump(path):
    """The count of one dump, or None for one that no run has triggered."""
    with open(path, encoding="utf-8", errors="replace") as file:
        lines = file.read().splitlines()
    triggers = [line[len(TRIGGER):] for line in lines if line.startswith(TRIGGER)]
    if not triggers:
        return None
    name, size, units, unit, kind = triggers[0].split("|")
    costs = object_costs(lines)
    own = sum(cost for name_, cost in costs.items() if LIBRARY.search(name_))
    return Count(name, int(size), int(units), unit, kind, sum(costs.values()), own)


def count(program, *words):
    """All counts of a run of the program, in order."""
    with tempfile.TemporaryDirectory() as folder:
        command = ["valgrind", "--tool=callgrind", "--instr-atstart=no", "--dump-line=no",
                   f"--callgrind-out-file={folder}/out", "--quiet", program, *words]
        done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                              text=True, check=False)
        if done.returncode != 0:
            sys.exit(f"{' '.join(command)} failed:\n{done.stdout}")
        dumps = sorted((name for name in os.listdir(folder) if re.fullmatch(r"out\.\d+", name)),
                       key=lambda name: int(name[4:]))
        counts = [read_dump(os.path.join(folder, name)) for name in dumps]
    return [one for one in counts if one is not None]


def about(program):
    """The compiler that built the program and its libxml2."""
    done = subprocess.run([program, "about"], stdout=subprocess.PIPE, text=True, check=True)
    return dict(line.split("\t") for line in done.stdout.splitlines())
