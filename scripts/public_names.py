#!/usr/bin/env python3
# SPDX-License-Identifier: BSD-3-Clause
"""Holds libqmodel.map against the public headers.

The functions that the headers declare are the promise and carry the version
QMODEL_1; all other exported names carry QMODEL_PRIVATE_1. Differences are printed,
and the exit status is 1 then.

usage: public_names.py [--update] [TREE]
  --update  writes the list of the map anew from the headers
"""
import pathlib
import re
import sys

DECLARATION = re.compile(r"QM_API\b([^;{]*?)\b(Q[A-Z]+_\w+)\s*\(", re.S)
NODE = re.compile(r"(QMODEL_1 \{\n  global:\n)(.*?)(  local:)", re.S)


def declared(tree):
    names = set()
    for header in sorted((tree / "include/qmodel").glob("*.h")):
        text = re.sub(r"/\*.*?\*/", "", header.read_text(), flags=re.S)
        text = re.sub(r"^#.*", "", text, flags=re.M)
        names.update(match.group(2) for match in DECLARATION.finditer(text))
    return names


def main(arguments):
    update = "--update" in arguments
    rest = [argument for argument in arguments if argument != "--update"]
    tree = pathlib.Path(rest[0] if rest else ".")
    path = tree / "libqmodel.map"
    text = path.read_text()
    node = NODE.search(text)
    if node is None:
        print("libqmodel.map: no node QMODEL_1 with a list of names")
        return 1
    names = declared(tree)
    if update:
        lines = "".join(f"    {name};\n" for name in sorted(names))
        path.write_text(text[: node.start(2)] + lines + text[node.end(2):])
        return 0
    listed = set(re.findall(r"\w+", node.group(2)))
    for name in sorted(names - listed):
        print(f"libqmodel.map: lacks {name}, which a public header declares")
    for name in sorted(listed - names):
        print(f"libqmodel.map: {name} is declared by no public header")
    return 1 if names != listed else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
