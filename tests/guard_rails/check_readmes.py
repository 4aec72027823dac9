#!/usr/bin/env python3
# SPDX-License-Identifier: BSD-3-Clause
"""Holds the README of each source folder against its files. The paragraph that begins
with "In reading order:" names every source and nothing else: by its name, with or without
ending, in backticks; `_add` behind `deviate` is short for `deviate_add`, and `lint_*`
stands for all that begin so. check_readmes.py SOURCE_DIR"""
import pathlib
import re
import sys

sys.dont_write_bytecode = True
sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "scripts"))
from check_includes import COMPILER_FOLDERS  # noqa: E402

ENDINGS = (".cc", ".c", ".h", ".hpp")


def reading_order(text):
    """The words in backticks of the paragraph, or None when there is none."""
    start = text.find("In reading order:")
    if start < 0:
        return None
    paragraph = text[start:].split("\n\n")[0]
    return re.findall(r"`([a-z0-9_*.]+)`", paragraph)


def covers(word, base, files):
    """The files that `word` names, standing somewhere behind `base`."""
    if word.startswith("_"):
        word = base + word
    if word.endswith("*"):
        return {name for name in files if name.startswith(word[:-1])}
    return {name for name in files if name == word or pathlib.Path(name).stem == word}


def faults(text, files):
    words = reading_order(text)
    if words is None:
        return ['has no paragraph "In reading order:"']
    found = []
    named = set()
    base = ""
    for word in words:
        names = covers(word, base, files)
        if not names:
            found.append("names `%s`, which is no file" % word)
        named |= names
        if not word.startswith("_"):
            base = re.sub(r"\..*$", "", word)
    return found + ["does not name " + name for name in sorted(files - named)]


def main(source):
    bad = 0
    readmes = 0
    pages = [*source.glob("*/README.md"), *source.glob("compiler/*/README.md")]
    for page in sorted(pages):
        folder = page.parent
        text = page.read_text()
        files = {p.name for p in folder.iterdir() if p.suffix in ENDINGS}
        if folder.name == "bench":
            continue  # a page of results
        readmes += 1
        for fault in faults(text, files):
            print("%s %s" % (page.relative_to(source), fault))
            bad += 1
    layers = re.findall(r"^[a-z]+", (source / "cmake/layers.txt").read_text(), re.M)
    layers += ["compiler/" + folder for folder in COMPILER_FOLDERS]
    for folder in layers + ["client", "compiler"]:
        if not (source / folder / "README.md").exists():
            print(folder + " has no README.md")
            bad += 1
    return 1 if bad or not readmes else 0


if __name__ == "__main__":
    sys.exit(main(pathlib.Path(sys.argv[1])))
