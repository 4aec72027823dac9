#!/usr/bin/env python3
# SPDX-License-Identifier: BSD-3-Clause
"""Holds docs/examples.md against the examples: each listing is its file to the letter,
and below each command stands what it prints.

usage: check_examples.py SOURCE_DIR PROGRAMS_DIR [--update]
  --update  writes listings and outputs anew
"""
import os
import pathlib
import re
import subprocess
import sys

# In README.md and docs/agent-kit.md; tests/client/example_test.cc compares them.
SHOWN_ELSEWHERE = {"validate_rpc.c", "kit_rpc.c"}
BLOCK = re.compile(r"^```(c|cpp|)\n(.*?)^```$", re.M | re.S)


def run(command, source, programs):
    env = dict(os.environ, PATH=f"{programs}:{os.environ['PATH']}")
    done = subprocess.run(command, shell=True, cwd=source / "examples", env=env, text=True,
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT, timeout=60)
    return done.stdout


def current(match, heading, source, programs):
    """The text of a block as it should be."""
    language, body = match.groups()
    if language:
        return f"```{language}\n{(source / 'examples' / heading).read_text()}```"
    command = body.split("\n", 1)[0]
    if not command.startswith("$ "):
        return match.group(0)
    return f"```\n{command}\n{run(command[2:], source, programs)}```"


def main(source, programs, update):
    page = source / "docs/examples.md"
    text = page.read_text()
    shown = []

    def replace(match):
        names = re.findall(r"`examples/(\w+\.\w+)`", text[: match.start()])
        if match.group(1):
            shown.append(names[-1])
        return current(match, names[-1] if names else "", source, programs)

    wanted = BLOCK.sub(replace, text)
    if update:
        page.write_text(wanted)
        return 0
    files = {path.name for pattern in ("*.c", "*.cc") for path in (source / "examples").glob(pattern)}
    missing = files - set(shown) - SHOWN_ELSEWHERE
    if missing:
        print("not shown:", *sorted(missing))
    if wanted != text:
        for old, new in zip(BLOCK.finditer(text), BLOCK.finditer(wanted)):
            if old.group(0) != new.group(0):
                print(f"--- on the page:\n{old.group(0)}\n--- now:\n{new.group(0)}")
                break
        else:
            print("the number of blocks differs")
    return 1 if missing or wanted != text else 0


if __name__ == "__main__":
    flags = [argument for argument in sys.argv[1:] if argument.startswith("--")]
    paths = [pathlib.Path(argument).resolve() for argument in sys.argv[1:] if argument not in flags]
    sys.exit(main(paths[0], paths[1], "--update" in flags))
