#!/usr/bin/env python3
# SPDX-License-Identifier: BSD-3-Clause
"""What scripts/agent.sh does with its arguments and at its end.

usage: script_test.py AGENT
"""
import os
import pathlib
import shlex
import signal
import socket
import subprocess
import sys
import tempfile
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "agent_example"))
from client import Ended, Session, interface
from server import LIMIT, NO_LOGIN, SKIPPED, SOURCE, NotStarted, Server, why_not

AGENT = ""


class ScriptTest(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="qmodel-script-")).resolve()
        self.addCleanup(subprocess.run, ["rm", "-rf", self.folder], check=True)
        # Where the script makes what it takes away again.
        self.temporary = self.folder / "temporary"
        self.temporary.mkdir()
        self.environment = {"TMPDIR": str(self.temporary)}

    def serve(self, folder, port=0, **options):
        return Server(shlex.quote(AGENT), folder, port, environment=self.environment, **options)

    def run_script(self, *arguments):
        """The exit status and the last line of what the script says when it does not serve."""
        environment = {**os.environ, **self.environment, "QMODEL_AGENT": shlex.quote(AGENT)}
        done = subprocess.run(["timeout", str(LIMIT), SOURCE / "scripts/agent.sh", *arguments],
                              env=environment, capture_output=True, text=True)
        self.assertEqual(done.stdout, "")
        return done.returncode, done.stderr.splitlines()[-1]

    def nothing_is_left(self):
        self.assertEqual(list(self.temporary.iterdir()), [])


class Arguments(ScriptTest):
    def test_what_is_no_port_is_said_so(self):
        for port in "70000", "x", "-1", "1.5":
            self.assertEqual(self.run_script(port), (1, f"agent.sh: no port: {port}"))
        self.assertEqual(self.run_script("0", "a", "b"), (1, "agent.sh: usage: agent.sh [PORT [DIR]]"))

    def test_a_port_that_is_taken_is_said_so(self):
        with socket.socket() as taken:
            taken.bind(("127.0.0.1", 0))
            taken.listen()
            port = taken.getsockname()[1]
            status, said = self.run_script(str(port), str(self.folder / "dir"))
        self.assertEqual((status, said), (1, f"agent.sh: no server on port {port}"))
        self.nothing_is_left()

    def test_the_port_that_was_given_is_used(self):
        with socket.socket() as free:
            free.bind(("127.0.0.1", 0))
            port = free.getsockname()[1]
        server = self.serve(self.folder / "dir", port)
        self.addCleanup(server.stop)
        self.assertEqual(server.port, port)

    def test_folders_that_options_of_ssh_cannot_name_are_refused(self):
        for name in "a b", "%h", "a'b", 'a"b', "a\\b", "$a":
            folder = str(self.folder / name)
            said = f"agent.sh: a folder that ssh's options cannot name: {folder}"
            self.assertEqual(self.run_script("0", folder), (1, said))

    def test_the_folder_is_kept_and_the_next_start_has_its_data(self):
        folder = self.folder / "dir"
        first = self.serve(folder)
        key = pathlib.Path(first.key).read_text()
        session = Session(first.client)
        self.assertTrue(session.edit(interface("ge0")).ok())
        session.end()
        first.stop()
        self.assertEqual(folder.stat().st_mode & 0o077, 0)
        # From the folder above, by its name alone.
        second = self.serve("dir", cwd=self.folder)
        self.addCleanup(second.stop)
        self.assertEqual((second.key, pathlib.Path(second.key).read_text()), (first.key, key))
        session = Session(second.client)
        self.addCleanup(session.leave)
        self.assertIn("ge0", session.get_config().text)

    def test_a_login_that_fails_is_told_with_its_reason(self):
        programs = self.folder / "bin"
        programs.mkdir()
        ssh = programs / "ssh"
        ssh.write_text("#!/bin/sh\necho This account is currently not available.\nexit 1\n")
        ssh.chmod(0o755)
        self.environment["PATH"] = f"{programs}:{os.environ['PATH']}"
        with self.assertRaises(NotStarted) as caught:
            self.serve(self.folder / "dir")
        status, said = caught.exception.args
        self.assertEqual(status, NO_LOGIN)
        self.assertRegex(said, "^agent.sh: no login as .*: This account is currently not available.$")
        self.nothing_is_left()


class End(ScriptTest):
    def test_signals_end_all_of_it_also_with_sessions_open(self):
        for number in signal.SIGINT, signal.SIGTERM, signal.SIGHUP:
            with self.subTest(signal=number):
                # An empty name stands for no folder.
                server = self.serve("")
                self.addCleanup(server.script.kill)
                self.assertEqual(server.folder.parent.parent, self.temporary)
                session = Session(server.client)
                self.addCleanup(session.leave)
                self.assertIsNone(session.get_config().error())
                self.assertEqual(server.stop(number), 128 + number)
                with self.assertRaises(Ended):
                    session.receive()
                self.nothing_is_left()


def main():
    global AGENT
    AGENT = str(pathlib.Path(sys.argv[1]).resolve())
    reason = why_not()
    if reason:
        print("skipped:", reason)
        sys.exit(SKIPPED)
    unittest.main(argv=sys.argv[:1], verbosity=1)


if __name__ == "__main__":
    main()
