#!/usr/bin/env python3
# SPDX-License-Identifier: BSD-3-Clause
"""Makes a manual page of each public header, from its comments.

usage: man_pages.py [--list] INCLUDE_DIR OUTPUT_DIR VERSION
  --list  only prints the names of the pages, one a line
"""
import pathlib
import re
import sys

# Each page: the header, and what the page is for.
PAGES = {
    "agent": "a kit for programs that answer NETCONF messages",
    "context": "contexts, lookups, features, search directories, hooks",
    "data": "validation of requests and notifications",
    "error": "statuses and error records",
    "inspect": "everything of a schema that can be listed",
    "loader": "loading and unloading of modules",
    "memory": "memory hooks",
    "schema": "modules, schema nodes, extension instances, printed trees",
    "types": "types of leaves and their restrictions",
    "xpath": "tokens and evaluation of conditions",
}
ITEM = re.compile(r"/\*\*(?P<comment>.*?)\*/\s*(?P<code>(?:(?!/\*\*).)*?)(?=/\*|\Z)", re.S)
FUNCTION = re.compile(r"QM_API\b(.*?;)", re.S)


def plain(text):
    """The text of a comment without its frame of stars."""
    return "\n".join(re.sub(r"^\s*\* ?", "", line) for line in text.split("\n")).strip("\n")


def escape(text):
    return text.replace("\\", "\\e").replace("-", "\\-")


def inline(text):
    text = escape(text)
    text = re.sub(r"@p (\w+)", r"\\fI\1\\fR", text)
    text = re.sub(r"#(\w+)", r"\\fB\1\\fR", text)
    text = re.sub(r"\b(QM\w*_\w+)\(\)", r"\\fB\1\\fR()", text)
    text = re.sub(r"`([^`]*)`", r"\\fB\1\\fR", text)
    return "\n".join("\\&" + line if line[:1] in ".'" else line for line in text.split("\n"))


def paragraphs(text):
    """Running text as roff: code, lists and paragraphs."""
    out = []
    for part in re.split(r"(@code.*?@endcode)", text, flags=re.S):
        if part.startswith("@code"):
            code = escape(part[5:-8].strip("\n"))
            code = "\n".join("\\&" + line if line[:1] in ".'" else line for line in code.split("\n"))
            out.append(f".PP\n.nf\n{code}\n.fi")
            continue
        for block in re.split(r"\n\s*\n", part.strip()):
            if not block.strip():
                continue
            items = re.split(r"^- ", block, flags=re.M)
            if items[0].strip():
                out.append(f".PP\n{inline(squeeze(items[0]))}")
            out += [f".IP \\(bu 2\n{inline(squeeze(item))}" for item in items[1:]]
    return "\n".join(out)


def squeeze(text):
    return re.sub(r"[ \t]*\n[ \t]*", "\n", text.strip())


def commands(text):
    """Splits a comment into its text and its commands, each a pair of name and text."""
    parts = re.split(r"^@(file|brief|param(?:\[[\w,]+\])?|retval|return|par|see)(?=\s|$)[ \t]*", text,
                     flags=re.M)
    return parts[0], list(zip(parts[1::2], parts[2::2]))


def function(declaration, comment):
    lead, found = commands(comment)
    out, parameters, results, rest = [], [], [], []
    for name, text in found:
        if name == "brief":
            out.append(paragraphs(text))
        elif name.startswith("param"):
            argument, _, meaning = text.strip().partition(" ")
            parameters.append(f".TP\n.I {argument}\n{inline(squeeze(meaning))}")
        elif name == "retval":
            value, _, meaning = text.strip().partition(" ")
            results.append(f".TP\n.B {inline(value)}\n{inline(squeeze(meaning))}")
        elif name == "return":
            results.append(f".PP\nReturns: {inline(squeeze(text))}" if not results else
                           f".TP\notherwise\n{inline(squeeze(re.sub('^Otherwise ', '', text)))}")
        elif name == "par":
            title, _, body = text.partition("\n")
            rest.append(f".PP\n{inline(title.strip())}: {inline(squeeze(body))}")
        elif name == "see":
            rest.append(f".PP\nSee {inline(squeeze(text))}.")
    if lead.strip():
        out.insert(0, paragraphs(lead))
    name = re.search(r"(\w+)\s*\(", declaration).group(1)
    return "\n".join([f".SS {name}", *out, *parameters, *results, *rest])


def enumerators(header, name):
    """The names of an enumeration with what the header says of each."""
    body = re.search(r"typedef enum %s\b[^{]*\{(.*?)\} *%s;" % (name, name), header, re.S)
    found = re.findall(r"\b(QM\w+)(?: = \w+)?,?(?:\s*/\*\*<(.*?)\*/)?", body[1], re.S) if body else []
    return [f".br\n\\fI{escape(item)}\\fR" + (f": {inline(squeeze(plain(text)))}" if text else "")
            for item, text in found if not item.startswith("QM_STATUS_LIST")
            and not item.endswith("_")]


def declared(code):
    text = re.sub(r"\s+", " ", code).strip()
    return re.sub(r"\b(QM_NODISCARD|QM_NOEXCEPT)\b ?", "", text).replace(" ;", ";")


def page(name, purpose, header, version):
    about, synopsis, described, others = "", [], [], []
    for match in ITEM.finditer(header):
        comment, code = plain(match["comment"]), match["code"]
        found = FUNCTION.search(code)
        if comment.lstrip().startswith("@file"):
            about = commands(comment.strip())[1]
            about = paragraphs("\n".join(text for key, text in about if key != "file"))
        elif found:
            prototype = declared(found.group(1))
            synopsis.append(f".PP\n.nf\n.B {prototype.replace(chr(92), '')}\n.fi")
            described.append(function(prototype, comment))
        elif re.match(r"\s*typedef", code):
            kind = re.search(r"(\w+)\s*;\s*$|\(\*(\w+)\)|typedef \w+ (\w+)", code.strip())
            label = next((group for group in kind.groups() if group), "") if kind else ""
            if label:
                others.append(f".TP\n.B {label}\n{inline(squeeze(commands(comment)[0] or comment))}")
                others += enumerators(header, label)
    lines = [f'.TH LIBQMODEL_{name.upper()} 3 "" "libqmodel {version}" "Library functions"',
             ".SH NAME", f"libqmodel_{name} \\- {inline(purpose)}",
             ".SH SYNOPSIS", ".nf", f".B #include <qmodel/{name}.h>", ".fi", *synopsis,
             ".SH DESCRIPTION", about]
    if others:
        lines += [".SH TYPES", *others]
    lines += [".SH FUNCTIONS", *described, ".SH SEE ALSO", ".BR libqmodel (3)"]
    return "\n".join(line for line in lines if line) + "\n"


def main(arguments):
    listing = "--list" in arguments
    include, output, version = [a for a in arguments if a != "--list"]
    for name, purpose in sorted(PAGES.items()):
        if listing:
            print(f"libqmodel_{name}.3")
            continue
        header = (pathlib.Path(include) / "qmodel" / f"{name}.h").read_text().replace("…", "...")
        path = pathlib.Path(output) / f"libqmodel_{name}.3"
        path.write_text(page(name, purpose, header, version))


if __name__ == "__main__":
    main(sys.argv[1:])
