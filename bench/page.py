# SPDX-License-Identifier: BSD-3-Clause
"""Tables as Markdown, printed or put into a page between the comments
"<!-- NAME -->" and "<!-- end of NAME -->"."""
import re
import sys


def table(head, rows):
    lines = ["| " + " | ".join(head) + " |", "| --- |" + " ---: |" * (len(head) - 1)]
    return "\n".join(lines + ["| " + " | ".join(row) + " |" for row in rows])


def put(page, name, text):
    """The page with the text in the place of that name."""
    place = re.compile(rf"(<!-- {name} -->\n).*?(<!-- end of {name} -->)", re.S)
    if not place.search(page):
        sys.exit(f"the page has no place for the table of {name}")
    return place.sub(lambda match: f"{match[1]}{text}\n{match[2]}", page)


def show(tables, path):
    """Prints the tables, by name, or writes them into the page at the path."""
    if path is None:
        print("\n\n".join(tables.values()), flush=True)
        return
    with open(path, encoding="utf-8") as file:
        page = file.read()
    for name, text in tables.items():
        page = put(page, name, text)
    with open(path, "w", encoding="utf-8") as file:
        file.write(page)
