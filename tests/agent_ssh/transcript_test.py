#!/usr/bin/env python3
# SPDX-License-Identifier: BSD-3-Clause
"""Runs the session with the example agent that README.md shows, and compares each answer. What
differs from run to run is taken from the lines that agent.sh prints.

usage: transcript_test.py AGENT
"""
import doctest
import pathlib
import re
import shlex
import sys
import tempfile
import warnings

from server import SKIPPED, SOURCE, Server, why_not


def shown():
    """What README.md has of the script's four lines, and of the session."""
    text = (SOURCE / "README.md").read_text()
    script = re.search(r"^\$ scripts/agent\.sh\n((?:.+\n){4})```$", text, re.M)
    session = re.search(r"^```pycon\n(.*?)^```$", text, re.M | re.S)
    return script[1].splitlines(), session[1]


def main(agent):
    reason = why_not()
    if reason:
        print("skipped:", reason)
        return SKIPPED
    lines, session = shown()
    port, user, key = (line.split(" ")[1] for line in lines[:3])
    with tempfile.TemporaryDirectory() as folder:
        server = Server(shlex.quote(agent), f"{folder}/state")
        try:
            here = {str(pathlib.Path(key).parent): str(server.folder), f"{port}": str(server.port),
                    user: server.user}
            for old, new in here.items():
                lines = [line.replace(old, new) for line in lines]
                session = session.replace(old, new)
            assert shlex.split(lines[3]) == server.client, (lines[3], server.client)
            assert lines[2] == f"key {server.key}", lines[2]
            warnings.simplefilter("ignore")  # Of ncclient, which newer versions of Python blame.
            example = doctest.DocTestParser().get_doctest(session, {}, "README.md", None, 0)
            assert len(example.examples) > 5, "the session was not understood"
            runner = doctest.DocTestRunner(optionflags=doctest.ELLIPSIS)
            return 1 if runner.run(example).failed else 0
        finally:
            server.stop()


if __name__ == "__main__":
    sys.exit(main(str(pathlib.Path(sys.argv[1]).resolve())))
