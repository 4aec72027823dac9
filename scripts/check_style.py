#!/usr/bin/env python3
# SPDX-License-Identifier: BSD-3-Clause
"""Checks rules of style that no formatter or linter knows.

Each finding is one line "file:line: [rule] what". Without findings the exit
status is 0.

usage: check_style.py [--count] [--rule RULE]... [TREE [FOLDER...]]
  --count   prints only how many findings each rule has, by folder
"""
import argparse
import collections
import pathlib
import re
import sys

import measure_structure as structure
from check_includes import FOLDERS

C_TEXT = re.compile(r"(?<![\w:>.])(?:std::)?"
                    r"(str(?:n?len|n?(?:case)?cmp|coll|r?chr|(?:case)?str|c?spn|pbrk|tok(?:_r)?|n?dup|n?cpy|n?cat)"
                    r"|stpn?cpy)\s*\(")
BARE_MEMORY = re.compile(r"(?<![\w:>.])(memcpy|memset|memmove|memcmp)\s*\(")
HOOK_CALL = re.compile(r"\bg_qmMem(?:Malloc|ReAlloc)Func\s*\(")
CONTROL = re.compile(r"\b(if|for|while)\b(?:\s+constexpr)?\s*\(|\belse\b")
NAMELESS = re.compile(r"^(const\s+)?[\w:]+(<[^()]*>)?(\s*[*&]+)?$")


def line_of(text, offset):
    return text.count("\n", 0, offset) + 1


def end_of_parens(code, at):
    depth = 0
    while at < len(code):
        depth += (code[at] == "(") - (code[at] == ")")
        at += 1
        if depth == 0:
            break
    return at


def idea_first(file):
    """A source begins with its idea, before the first include."""
    if file.path.suffix != ".cc":
        return
    include = re.search(r"^[ \t]*#[ \t]*include", file.text, re.M)
    head = file.text[:include.start()] if include else file.text
    comments = [line for line in head.splitlines() if line.startswith("//") and "SPDX" not in line]
    if not comments:
        yield 1, "no idea of the file before its includes"


def braces(file):
    """One line without braces, or braces: nothing hangs below its condition."""
    for match in CONTROL.finditer(file.code):
        at = match.end()
        if match.group(1):
            at = end_of_parens(file.code, at - 1)
        rest = file.code[at:]
        following = rest.lstrip()
        between = rest[:len(rest) - len(following)]
        if "\n" in between and following[:1] not in "{;":
            yield line_of(file.code, match.start()), "a statement on a line of its own has braces"


def unused_parameters(file):
    """An unused parameter keeps its name in a comment."""
    for begin, head, _ in definitions(file):
        opening = structure.CALLEE.search(head)
        if opening is None:
            continue
        end = end_of_parens(head, opening.end() - 1)
        inner = head[opening.end():end - 1]
        at = begin + opening.end()
        for parameter in split_commas(inner):
            text = parameter.strip()
            named = "/*" in file.text[at:at + len(parameter)]
            if text and text not in ("void", "...") and NAMELESS.match(text) and not named:
                yield line_of(file.code, at), f"parameter without a name: {text}"
            at += len(parameter) + 1
    for match in re.finditer(r"static_cast<void>\(\s*\w+\s*\)", file.code):
        yield line_of(file.code, match.start()), "name an unused parameter in a comment instead"


def split_commas(text):
    """The parts of a parameter list; commas inside of brackets do not count."""
    parts, depth, start = [], 0, 0
    for at, char in enumerate(text):
        depth += (char in "(<[") - (char in ")>]")
        if char == "," and depth == 0:
            parts.append(text[start:at])
            start = at + 1
    return parts + [text[start:]]


def definitions(file):
    """(offset, head, body) of each function that the file defines at its top level."""
    if not hasattr(file, "_definitions"):
        file._definitions = list(scan_definitions(file))
    return file._definitions


def scan_definitions(file):
    code, at, start = file.code, 0, 0
    while at < len(code):
        if code[at] in ";}":
            start = at + 1
        elif code[at] == "{":
            head = code[start:at]
            if re.search(r"\b(namespace\b[\w\s:]*|extern\s*)$", head):
                start = at + 1
            else:
                end = file._end_of_block(at)
                if structure.function_name(head):
                    yield start, head, code[at:end]
                at = start = end
                continue
        at += 1


def statuses(file):
    """A status beside a number is written uint32_t{QM_X}."""
    for match in re.finditer(r"static_cast<uint32_t>\(\s*Q[MSTD]+_[A-Z_]+\s*\)", file.code):
        yield line_of(file.code, match.start()), "write uint32_t{...} around an enumerator"


def text_functions(file):
    """Texts by the platform's functions, memory by those of the standard library."""
    if file.path.parts[0] == "platform":
        return
    for match in C_TEXT.finditer(file.code):
        yield line_of(file.code, match.start()), f"{match.group(1)}: use the function of platform/string.h"
    for match in BARE_MEMORY.finditer(file.code):
        yield line_of(file.code, match.start()), f"{match.group(1)}: write std:: in front"
    for match in HOOK_CALL.finditer(file.code):
        yield line_of(file.code, match.start()), "take blocks with TakeBlock() or ResizeBlock()"


def linkage_blocks(file):
    """No linkage block around bodies: the header's declaration says it."""
    if file.path.suffix == ".cc":
        for match in re.finditer(r'^extern "C" \{', file.text, re.M):
            yield line_of(file.text, match.start()), 'no extern "C" { } around bodies'


def local_records(file, declared):
    """What one file alone uses stands in an unnamed namespace; an opaque record of a header does not."""
    if file.path.suffix != ".cc":
        return
    open_blocks, depth = [], 0
    for match in re.finditer(r"[{}]|\b(?:struct|class|enum(?:\s+class)?)\s+\w+[^;(){}]*(?=\{)", file.code):
        text = match.group()
        if text == "{":
            head = file.code[:match.start()].rstrip()
            open_blocks.append(bool(re.search(r"\bnamespace$", head)))
            depth += 1
        elif text == "}":
            open_blocks and open_blocks.pop()
            depth -= 1
        elif depth == 0 and text.split()[1] not in declared:
            yield line_of(file.code, match.start()), "a record of one file stands in an unnamed namespace"


def constants(file):
    """constexpr alone gives a constant of a file its linkage."""
    for match in re.finditer(r"^static constexpr (?!.*\()", file.code, re.M):
        yield line_of(file.code, match.start()), "constexpr says static already"


def prototype_comments(file):
    """Each prototype of a header, or its group, says what it answers."""
    if file.path.suffix != ".h":
        return
    covered, end = False, 0
    for name, offset in file.prototypes:
        if re.search(r"\n[ \t]*\n", file.text[end:offset]):
            covered = False
        covered = covered or file.has_own_comment(offset)
        if not covered:
            yield line_of(file.text, offset), f"{name} has no comment, nor has its group"
        end = file.text.index(";", offset)


def own_source(file, home):
    """A header declares what the source of the same name defines."""
    if file.path.suffix != ".h":
        return
    for name, offset in file.prototypes:
        source = home.get(name)
        if source and source.path.with_suffix("") != file.path.with_suffix(""):
            yield line_of(file.text, offset), f"{name} is defined in {source.path}"


RULES = {
    "idea": idea_first, "braces": braces, "unused": unused_parameters, "status": statuses,
    "text": text_functions, "linkage": linkage_blocks, "records": local_records,
    "constants": constants, "comment": prototype_comments, "own-source": own_source,
}


def main():
    parser = argparse.ArgumentParser(description="Checks the rules of style that no other tool knows.")
    parser.add_argument("--count", action="store_true")
    parser.add_argument("--rule", action="append", choices=sorted(RULES))
    parser.add_argument("tree", nargs="?", default=str(pathlib.Path(__file__).resolve().parents[1]))
    parser.add_argument("folders", nargs="*")
    args = parser.parse_args()
    tree = structure.Tree(structure.read_tree(args.tree))
    declared = {name for file in tree.files if file.path.suffix == ".h"
                for name in re.findall(r"\b(?:struct|class)\s+(\w+)", file.code)}
    counts = collections.Counter()
    for file in tree.files:
        folder = file.path.parts[0]
        if args.folders and folder not in args.folders:
            continue
        for rule in args.rule or RULES:
            more = {"own-source": [tree.home], "records": [declared]}.get(rule, [])
            found = RULES[rule](file, *more)
            for line, what in found:
                counts[rule, folder] += 1
                if not args.count:
                    print(f"{file.path}:{line}: [{rule}] {what}", file=sys.stderr)
    if args.count:
        for rule in RULES:
            row = [f"{folder} {counts[rule, folder]}" for folder in FOLDERS if counts[rule, folder]]
            if row:
                print(f"{rule:<11}{sum(n for (r, _), n in counts.items() if r == rule):>5}  " + ", ".join(row))
    print(f"{len(tree.files)} files, {sum(counts.values())} findings")
    return 1 if counts else 0


if __name__ == "__main__":
    sys.exit(main())
