#!/usr/bin/env python3
# SPDX-License-Identifier: BSD-3-Clause
"""Cuts a description of abidw down to the named functions and the types they reach.

usage: abi_description.py NAMES <DESCRIPTION >DESCRIPTION
  NAMES  a file with one function in each line
"""
import pathlib
import sys
import xml.etree.ElementTree as xml

REFERENCES = ("type-id", "underlying-type-id", "naming-typedef-id", "def-of-decl-id")
MEMBERS = ("parameter", "return", "data-member", "subrange", "base-class", "enumerator",
           "underlying-type", "var-decl", "member-type")


def inner(element):
    """What belongs to a type's or function's own record; members that are functions do not."""
    return [child for child in element if child.tag in MEMBERS]


def references(element):
    found = {element.get(name) for name in REFERENCES if element.get(name)}
    for child in inner(element):
        found |= references(child)
    return found


def main(names):
    wanted = set(pathlib.Path(names).read_text().split())
    root = xml.parse(sys.stdin).getroot()
    types = {}
    for element in root.iter():
        if element.get("id") and element.tag != "elf-symbol":
            types.setdefault(element.get("id"), []).append(element)
    functions = [element for element in root.iter("function-decl")
                 if element.get("elf-symbol-id", "").split("@")[0] in wanted]
    reached, todo = set(), set().union(*(references(function) for function in functions))
    while todo:
        reached |= todo
        todo = {reference for name in todo for element in types.get(name, ())
                for reference in references(element)} - reached
    keep = set(map(id, functions))

    def prune(element):
        for child in list(element):
            is_function = child.tag in ("function-decl", "member-function")
            if is_function and id(child) not in keep:
                element.remove(child)
            elif child.get("id") and child.tag != "elf-symbol" and child.get("id") not in reached:
                element.remove(child)
            elif child.tag == "elf-symbol" and child.get("name") not in wanted:
                element.remove(child)
            elif child.tag == "var-decl" and element.tag != "data-member":
                element.remove(child)
            else:
                prune(child)

    prune(root)
    for unit in list(root):
        if unit.tag == "abi-instr" and len(unit) == 0:
            root.remove(unit)
    xml.indent(root, " ")
    sys.stdout.write(xml.tostring(root, encoding="unicode") + "\n")


if __name__ == "__main__":
    main(sys.argv[1])
