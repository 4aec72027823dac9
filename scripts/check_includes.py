#!/usr/bin/env python3
# SPDX-License-Identifier: BSD-3-Clause
"""Checks the include directions of the layers, which cmake/layers.txt lists.

A folder includes itself and folders below it, and so do those of the model compiler. The
public headers, the client, the model compiler and the examples include no internal header
of the library.

usage: check_includes.py <source folder>
"""
import pathlib
import re
import sys


def parse_layers(text):
    """The folders that a text in the form of cmake/layers.txt lists, bottom up."""
    lines = [line.strip() for line in text.splitlines()]
    return [line for line in lines if line and not line.startswith("#")]


FOLDERS = parse_layers((pathlib.Path(__file__).resolve().parents[1] / "cmake" / "layers.txt")
                       .read_text(encoding="utf-8"))
RANK = {name: rank for rank, name in enumerate(FOLDERS)}
# The folders of the model compiler, bottom up; what stands beside them is above them all.
COMPILER_FOLDERS = ["words", "reading", "conditions", "spelling", "lint"]
# Header-only code that one file may use.
ONLY_IN = {"boost/": "platform/avl.cc"}

INCLUDE = re.compile(r'^\s*#\s*include\s*(["<])([^">]+)[">]')


def layer_of(path):
    """The layer of a source path such as "schema/node.h", or None."""
    parts = pathlib.PurePosixPath(path).parts
    if len(parts) < 2 or parts[0] not in FOLDERS:
        return None
    return parts[0]


def compiler_rank(path):
    """How high a file of the model compiler stands, or None."""
    parts = pathlib.PurePosixPath(path).parts
    if parts[0] != "compiler":
        return None
    if len(parts) == 2:
        return len(COMPILER_FOLDERS)
    return COMPILER_FOLDERS.index(parts[1])


def judge(source, kind, target):
    """Why `source` must not include `target`, or None."""
    for prefix, owner in ONLY_IN.items():
        if target.startswith(prefix) and source != owner:
            return f"only {owner} may include <{prefix}...>"
    target_layer = layer_of(target)
    if not source.startswith(tuple(f + "/" for f in FOLDERS)):
        if target_layer is not None:
            return "only the library's own folders include its internal headers"
        rank, target_rank = compiler_rank(source), compiler_rank(target)
        if rank is not None and target_rank is not None and target_rank > rank:
            return f"{source.rpartition('/')[0]} must not include {target}"
        return None
    if target_layer is None:
        return None
    if kind == "<":
        return "internal headers are included with quotes"
    if RANK[target_layer] > RANK[layer_of(source)]:
        return f"layer {layer_of(source)} must not include layer {target_layer}"
    return None


def includes_of(file):
    for number, line in enumerate(file.read_text(encoding="utf-8").splitlines(), 1):
        match = INCLUDE.match(line)
        if match:
            yield number, match.group(1), match.group(2)


def main():
    root = pathlib.Path(sys.argv[1])
    files = [f for folder in FOLDERS + ["client", "compiler", "include", "examples"]
             for f in sorted((root / folder).rglob("*"))
             if f.suffix in {".h", ".cc", ".c", ".in"}]
    if not files:
        sys.exit(f"no sources under {root}")
    faults = 0
    for file in files:
        source = file.relative_to(root).as_posix()
        for number, kind, target in includes_of(file):
            reason = judge(source, kind, target)
            if reason:
                print(f"{source}:{number}: {target}: {reason}", file=sys.stderr)
                faults += 1
    print(f"{len(files)} files, {faults} forbidden includes")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
