#!/usr/bin/env python3
# SPDX-License-Identifier: BSD-3-Clause
"""Follows the links of all pages: the file must be there, and in it the heading.
check_links.py SOURCE_DIR"""
import pathlib
import re
import sys

LINK = re.compile(r"\]\(([^)\s]+)\)")


def anchors(text):
    """The names by which a page's headings are linked."""
    names = set()
    for heading in re.findall(r"^#+ (.*)$", text, re.M):
        plain = re.sub(r"[^\w\- ]", "", heading.strip().lower())
        names.add(plain.replace(" ", "-"))
    return names


def broken(page):
    """The links of a page that lead nowhere."""
    found = []
    for link in LINK.findall(page.read_text()):
        if "://" in link:
            continue
        name, _, anchor = link.partition("#")
        target = page.parent / name if name else page
        if not target.exists() or (anchor and anchor not in anchors(target.read_text())):
            found.append(link)
    return found


def main(source):
    pages = [*source.glob("*.md"), *source.glob("docs/*.md"), *source.glob("*/README.md"),
             *source.glob("compiler/*/README.md")]
    bad = 0
    for page in sorted(pages):
        for link in broken(page):
            print("%s: %s leads nowhere" % (page.relative_to(source), link))
            bad += 1
    return 1 if bad or len(pages) < 10 else 0


if __name__ == "__main__":
    sys.exit(main(pathlib.Path(sys.argv[1])))
