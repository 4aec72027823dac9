#!/usr/bin/env python3
# SPDX-License-Identifier: BSD-3-Clause
"""Measures how the library is laid out: files, layers, headers, comments.

Prints one column for the tree and, when a git revision is named, one for that
revision before it, so that a change of the layout can be judged by figures.

usage: measure_structure.py [--names] [TREE [REVISION]]
  --names   also lists the calls that run upwards and the headers without a word
"""
import argparse
import io
import pathlib
import re
import statistics
import subprocess
import tarfile

from check_includes import parse_layers

# The heights of a revision that has no list of its folders yet. The named files of
# xpath/ stood below types/, the others above loader/.
FORMER = [
    ("platform", None), ("context", None), ("xpath", {"token", "target_path", "records", "upcalls"}),
    ("types", None), ("schema", None), ("loader", None), ("xpath", None), ("data", None),
]

NOT_CODE = re.compile(
    r'//[^\n]*|/\*.*?\*/|"(?:\\.|[^"\\\n])*"|\'(?:\\.|[^\'\\\n])*\'|^[ \t]*#(?:[^\n]*\\\n)*[^\n]*',
    re.S | re.M)
MARKERS = re.compile(r"\bQM_(?:BEGIN|END)_(?:INTERNAL_)?DECLS\b|\bQM_API\b|\bQM_NODISCARD\b")
CALLEE = re.compile(r"([A-Za-z_]\w*(?:\s*::\s*~?\w+)*)\s*\(")
NO_FUNCTION = {"static_assert", "decltype", "alignas", "sizeof", "__attribute__", "_Pragma"}
WORD = re.compile(r"(?<![\w.>:])([A-Za-z_]\w*)")


def blank(text):
    """`text` without comments, literals and directives; offsets and lines stay."""
    return NOT_CODE.sub(lambda m: re.sub(r"[^\n]", " ", m.group()), text)


def drop_template(statement):
    """`statement` without the template heads that it begins with."""
    statement = statement.lstrip()
    while statement.startswith("template"):
        depth = 0
        for at, char in enumerate(statement):
            depth += (char == "<") - (char == ">")
            if char == ">" and depth == 0:
                break
        else:
            return statement
        statement = statement[at + 1:].lstrip()
    return statement


def function_name(statement):
    """The function that a statement declares, or None."""
    statement = drop_template(statement)
    if re.match(r"(using|typedef|friend|namespace|static_assert)\b", statement):
        return None
    if "=" in statement.split("(")[0] and "operator" not in statement:
        return None
    for match in CALLEE.finditer(statement):
        name = re.sub(r"\s", "", match.group(1))
        if name in NO_FUNCTION:
            continue
        # A constructor call or a variable has no type in front of its name.
        return name if statement[:match.start()].strip() or "::" in name else None
    return None


class File:
    """The functions that one source declares, defines and mentions."""

    def __init__(self, path, text):
        self.path = pathlib.PurePosixPath(path)
        self.text = text
        self.code = MARKERS.sub(lambda m: " " * len(m.group()), blank(text))
        self.prototypes = []  # (name, offset of its first character)
        self.definitions = {}  # name: True when other files can call it
        self.bodies = []
        self._scan()
        self.mentions = set(WORD.findall(" ".join(self.bodies)))

    def _scan(self):
        scopes = []  # of the namespaces and linkage blocks that are open: is it anonymous?
        at = start = 0
        code = self.code
        while at < len(code):
            char = code[at]
            if char == ";":
                self._declaration(code[start:at], start)
                start = at + 1
            elif char == "}":
                if scopes:
                    scopes.pop()
                start = at + 1
            elif char == "{":
                head = code[start:at]
                if re.search(r'\b(namespace\b[\w\s:]*|extern\s*)$', head):
                    scopes.append(bool(re.search(r"\bnamespace\s*$", head)))
                    start = at + 1
                else:
                    end = self._end_of_block(at)
                    self._block(head, code[at:end], any(scopes))
                    at = end
                    # What follows "}" of a record or table ends with its ";".
                    start = at
                    continue
            at += 1

    def _end_of_block(self, at):
        depth = 0
        while at < len(self.code):
            depth += (self.code[at] == "{") - (self.code[at] == "}")
            at += 1
            if depth == 0:
                break
        return at

    def _declaration(self, statement, start):
        name = function_name(statement)
        if name is None:
            self.bodies.append(statement)
        elif "::" not in name:
            self.prototypes.append((name, start + len(statement) - len(statement.lstrip())))

    def _block(self, head, body, in_anonymous):
        self.bodies.append(body)
        name = function_name(head)
        if name is None or re.match(r"\s*(struct|class|enum|union)\b[^()]*$", head):
            return
        head = drop_template(head)
        hidden = in_anonymous or re.search(r"\b(static|inline|consteval|constexpr)\b", head)
        self.definitions[name] = not hidden

    def has_own_comment(self, offset):
        """Whether a comment stands right above the line of `offset`, or behind it."""
        first = self.text.rfind("\n", 0, offset)
        above = self.text[:max(first, 0)].rpartition("\n")[2].strip()
        behind = self.text[offset:].split(";", 1)[1].split("\n", 1)[0]
        return above.startswith("//") or above.endswith("*/") or "//" in behind

    def commented_prototypes(self):
        """How many have a comment of their own, and how many share one of their group."""
        own = group = 0
        covered = False
        end = 0
        for _, offset in self.prototypes:
            if re.search(r"\n[ \t]*\n", self.text[end:offset]):
                covered = False
            if self.has_own_comment(offset):
                covered = True
                own += 1
            elif covered:
                group += 1
            end = self.text.index(";", offset)
        return own, group

    def has_word(self):
        comments = re.findall(r"//[^\n]*|/\*.*?\*/", self.text, re.S)
        return any("SPDX" not in comment for comment in comments)


class Tree:
    """The library of one tree or revision."""

    def __init__(self, sources):
        listed = sources.get("cmake/layers.txt")
        self.heights = FORMER if listed is None else [(name, None) for name in parse_layers(listed)]
        folders = {name for name, _ in self.heights}
        self.files = [File(path, text) for path, text in sorted(sources.items())
                      if path.split("/")[0] in folders and path.endswith((".h", ".cc"))]
        self.home = {}
        for file in self.files:
            for name, shared in file.definitions.items():
                if shared:
                    self.home[name] = file

    def height(self, path):
        for rank, (folder, stems) in enumerate(self.heights):
            if path.parts[0] == folder and (stems is None or path.stem in stems):
                return rank
        raise KeyError(path)

    def upward_calls(self):
        """(folder, folder, function) of each function that a lower layer names."""
        found = set()
        for file in self.files:
            for name in file.mentions - file.definitions.keys():
                home = self.home.get(name)
                if home and self.height(home.path) > self.height(file.path):
                    found.add((file.path.parts[0], home.path.parts[0], name))
        return found

    def figures(self):
        headers = [file for file in self.files if file.path.suffix == ".h"]
        prototypes = [(header, name) for header in headers for name, _ in header.prototypes
                      if name in self.home]
        elsewhere = sum(self.home[name].path.with_suffix("") != header.path.with_suffix("")
                        for header, name in prototypes)
        counts = [header.commented_prototypes() for header in headers]
        own = sum(count[0] for count in counts)
        group = sum(count[1] for count in counts)
        declared = sum(len(header.prototypes) for header in headers)
        upward = self.upward_calls()
        return [
            ("files without public headers", len(self.files)),
            ("median lines of a file", int(statistics.median(
                len(file.text.splitlines()) for file in self.files))),
            ("functions called upwards", len({name for _, _, name in upward})),
            ("pairs of layers with such calls", len({pair[:2] for pair in upward})),
            ("internal prototypes", len(prototypes)),
            ("implemented in a file of another name", percent(elsewhere, len(prototypes))),
            ("prototypes with a comment of their own", percent(own, declared)),
            ("with one of their own or of their group", percent(own + group, declared)),
            ("headers", len(headers)),
            ("headers with prototypes and no comment at any", sum(
                bool(header.prototypes) and count[0] == 0 for header, count in zip(headers, counts))),
            ("headers without a word", sum(not header.has_word() for header in headers)),
        ]

    def print_names(self):
        for lower, higher, name in sorted(self.upward_calls()):
            print(f"  {lower} -> {higher}: {name}")
        for file in self.files:
            if file.path.suffix == ".h" and not file.has_word():
                print(f"  without a word: {file.path}")


def percent(part, whole):
    return f"{100 * part / whole:.0f} %" if whole else "-"


def read_tree(root):
    sources = {}
    for path in pathlib.Path(root).rglob("*"):
        name = path.relative_to(root).as_posix()
        if name.endswith((".h", ".cc")) and not name.startswith(("build", "_", ".")) \
                or name == "cmake/layers.txt":
            sources[name] = path.read_text(encoding="utf-8")
    return sources


def read_revision(root, revision):
    archive = subprocess.run(["git", "-C", root, "archive", "--format=tar", revision], check=True,
                             stdout=subprocess.PIPE).stdout
    sources = {}
    with tarfile.open(fileobj=io.BytesIO(archive)) as tar:
        for member in tar:
            if member.isfile() and (member.name.endswith((".h", ".cc"))
                                    or member.name == "cmake/layers.txt"):
                sources[member.name] = tar.extractfile(member).read().decode("utf-8")
    return sources


def main():
    parser = argparse.ArgumentParser(description="Measures how the library is laid out.")
    parser.add_argument("--names", action="store_true", help="also list what the counts are made of")
    parser.add_argument("tree", nargs="?", default=str(pathlib.Path(__file__).resolve().parents[1]))
    parser.add_argument("revision", nargs="?", help="a git revision to print beside it")
    args = parser.parse_args()
    columns = [("tree", Tree(read_tree(args.tree)))]
    if args.revision:
        columns.insert(0, (args.revision, Tree(read_revision(args.tree, args.revision))))
    rows = [tree.figures() for _, tree in columns]
    width = max(len(label) for label, _ in rows[0])
    print(" " * width + "".join(f"{title[:12]:>14}" for title, _ in columns))
    for index, (label, _) in enumerate(rows[0]):
        print(f"{label:<{width}}" + "".join(f"{str(row[index][1]):>14}" for row in rows))
    if args.names:
        for title, tree in columns:
            print(f"{title}:")
            tree.print_names()


if __name__ == "__main__":
    main()
