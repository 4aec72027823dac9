#!/usr/bin/env python3
# SPDX-License-Identifier: BSD-3-Clause
"""Holds docs/errors.md against the code: every message and status that the page
lists must stand in the sources. check_messages.py SOURCE_DIR"""
import pathlib
import re
import sys

source = pathlib.Path(sys.argv[1])
page = (source / "docs/errors.md").read_text()

code = ""
layers = re.findall(r"^[a-z]+", (source / "cmake/layers.txt").read_text(), re.M)
for folder in layers:
    for path in sorted((source / folder).glob("*.cc")):
        code += path.read_text()
# Adjacent literals are one text; escaped quotes are quotes.
code = re.sub(r'(?<!\\)"\s*\n?\s*"', "", code).replace('\\"', '"')
header = (source / "include/qmodel/error.h").read_text().replace("\\\n", "")

bad = 0
messages = re.findall(r"`((?:[A-Z%][a-z]*|leaf|leaf-list|typedef) [^`]*)`", page)
for message in messages:
    if '"' + message + '"' not in code:
        print("in docs/errors.md, but not in the code:", message)
        bad += 1
statuses = re.findall(r"^\| (\d+) \| `(QM_\w+)`", page, re.M)
for number, name in statuses:
    if name == "QM_MINUS_ONE":
        continue
    if not re.search(r"X\(%s, %s,\s" % (name, number), header):
        print("in docs/errors.md, but not in error.h:", name, number)
        bad += 1
if len(messages) < 80 or len(statuses) < 30:
    print("the page is not read as it should be:", len(messages), len(statuses))
    bad += 1
sys.exit(1 if bad else 0)
