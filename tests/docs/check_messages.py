#!/usr/bin/env python3
# SPDX-License-Identifier: BSD-3-Clause
"""Holds docs/errors.md against the code: every message and status that the page
lists stands in the sources, every load message of the sources stands on the page,
and has a cause and a remedy there. check_messages.py SOURCE_DIR"""
import pathlib
import re
import sys

source = pathlib.Path(sys.argv[1])
page = (source / "docs/errors.md").read_text()
load_errors, records = page.split("\n## Load errors\n")[1].split("\n## ", 1)

code = ""
layers = re.findall(r"^[a-z]+", (source / "cmake/layers.txt").read_text(), re.M)
for folder in layers:
    for path in sorted((source / folder).glob("*.cc")):
        code += path.read_text()
# Adjacent literals are one text; escaped quotes are quotes.
code = re.sub(r'(?<!\\)"\s*\n?\s*"', "", code)
literals = [text.replace('\\"', '"') for text in re.findall(r'"((?:[^"\\\n]|\\.)*)"', code)]
header = (source / "include/qmodel/error.h").read_text().replace("\\\n", "")

faults = []
messages = re.findall(r"`((?:[A-Z%][a-z]*|leaf|leaf-list|typedef) [^`]*)`", page)
faults += [f"on the page, but not in the code: {text}" for text in messages if text not in literals]

statuses = re.findall(r"^\| (\d+) \| `(QM_\w+)`", page, re.M)
for number, name in statuses:
    if name != "QM_MINUS_ONE" and not re.search(r"X\(%s, %s,\s" % (name, number), header):
        faults.append(f"on the page, but not in error.h: {name} {number}")

rows = re.findall(r"^\| `([^`]+)` \|(.*)\|(.*)\|$", load_errors, re.M)
described = [text for text, cause, remedy in rows if len(cause.strip()) > 5 and len(remedy.strip()) > 5]
begins = re.compile(r"(?:Failed to|Deleting|The i[a-z-]+|leaf|leaf-list|typedef) [^%]*(?:%s|file\.$|\.$)")
for text in literals:
    if begins.match(text) and text not in described and f"`{text}`" not in records:
        faults.append(f"without a cause and a remedy on the page: {text}")

if len(described) < 80 or len(statuses) < 30:
    faults.append(f"the page is not read as it should be: {len(described)}, {len(statuses)}")
print("\n".join(faults))
sys.exit(1 if faults else 0)
