# SPDX-License-Identifier: BSD-3-Clause
"""Kills the agent before, in the middle of and after each call by which an edit changes files,
starts it again, and looks whether the datastore is whole: crash_test.py AGENT PRELOADED"""
import os
import pathlib
import shutil
import sys
import tempfile
import unittest

from client import INTERFACES, NOTIFICATION, Ended, Session, command, interface, source_folder

AGENT = PRELOADED = ""
OLD = interface("ge0", "<description>old</description>")
# Takes the interface down, so that the edit also raises an alarm.
NEW = interface("ge0", "<description>new</description><enabled>false</enabled>")


class CrashTest(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="qmodel-crash-"))
        self.state = self.folder / "state"
        self.base = self.folder / "base"
        self.state.mkdir()
        session = self.open()
        self.assertTrue(session.edit(OLD).ok())
        self.assertEqual(session.end(), (0, ""))
        # Events enough that the edit begins them anew.
        (self.state / "events").write_bytes(b"\n" * (1024 * 1024 + 1))
        self.state.rename(self.base)

    def tearDown(self):
        shutil.rmtree(self.folder)

    def open(self, **variables):
        environment = dict(os.environ, **variables)
        if variables:
            environment["LD_PRELOAD"] = PRELOADED
            environment["ASAN_OPTIONS"] = "verify_asan_link_order=0:detect_leaks=0"
        return Session(command(AGENT, source_folder(), str(self.state)), environment=environment)

    def edit(self, **variables):
        """Makes the new edit in a fresh copy of the folder; tells whether it was answered."""
        if self.state.exists():
            shutil.rmtree(self.state)
        shutil.copytree(self.base, self.state)
        session = None
        try:
            session = self.open(**variables)
            return session.edit(NEW).ok()
        except (Ended, BrokenPipeError):
            return False
        finally:
            if session is not None:
                session.leave()

    def check(self, answered):
        """Starts the agent on what was left; tells whether the edit is there."""
        session = self.open()
        reply = session.get_config()
        there = reply.values(INTERFACES, "description")
        self.assertIn((there, reply.values(INTERFACES, "enabled")),
                      ((["old"], []), (["new"], ["false"])))
        if answered:
            self.assertEqual(there, ["new"])
        self.assertTrue(session.rpc("<lock><target><running/></target></lock>").ok())
        self.assertTrue(session.edit(interface("ge1")).ok())
        self.assertEqual(session.get_config().values(INTERFACES, "name"), ["ge0", "ge1"])
        self.assertEqual(session.end(), (0, ""))
        return there == ["new"]

    def test_the_datastore_is_whole_wherever_the_agent_is_killed(self):
        count_file = self.folder / "count"
        self.assertTrue(self.edit(CRASH_COUNT=str(count_file)))
        count = int(count_file.read_text())
        # The table (4), the hello, the datastore (4), the events (2) and the answer.
        self.assertGreaterEqual(count, 12)
        self.assertLess((self.state / "events").stat().st_size, 1000)
        outcomes = {}
        for number in range(1, count + 1):
            for when in ("before", "half", "after"):
                with self.subTest(call=number, when=when):
                    answered = self.edit(CRASH_AT=str(number), CRASH_WHEN=when)
                    outcomes[number, when] = self.check(answered)
        # The rename is the moment; from then on the edit is there.
        kept = list(outcomes.values())
        self.assertFalse(kept[0])
        self.assertTrue(kept[-1])
        self.assertEqual(kept, sorted(kept))

    def test_a_call_that_fails_is_told_or_does_no_harm(self):
        """The calls of the edit; those before are the session's entry and its hello."""
        outcomes = []
        for number in range(6, 12):
            with self.subTest(call=number):
                answered = self.edit(CRASH_AT=str(number), CRASH_WHEN="fail")
                outcomes.append((answered, self.check(answered)))
        # Writing, syncing and renaming the new file; the folder's sync comes when it is there already.
        # Events that cannot be kept are lost.
        self.assertEqual(outcomes, [(False, False)] * 3 + [(False, True)] + [(True, True)] * 2)

    def test_a_session_that_cannot_watch_the_folder_is_told_all_the_same(self):
        self.base.rename(self.state)
        blind, other = self.open(CRASH_NO_WATCH="yes"), self.open()
        try:
            self.assertTrue(blind.rpc(f'<create-subscription xmlns="{NOTIFICATION}"/>').ok())
            self.assertTrue(other.edit(NEW).ok())
            self.assertIn("link-down", blind.notification().text)
        finally:
            blind.leave()
            other.leave()

    def test_a_session_that_cannot_be_ended_stays_in_the_table(self):
        self.base.rename(self.state)
        weak, other = self.open(CRASH_NO_KILL="yes"), self.open()
        try:
            kill = f"<kill-session><session-id>{other.id}</session-id></kill-session>"
            lock = "<lock><target><running/></target></lock>"
            self.assertTrue(other.rpc(lock).ok())
            self.assertEqual(weak.rpc(kill).error(), "operation-failed")
            self.assertEqual(weak.rpc(lock).error("session-id"), str(other.id))
        finally:
            weak.leave()
            other.leave()


if __name__ == "__main__":
    AGENT, PRELOADED = sys.argv.pop(1), sys.argv.pop(1)
    unittest.main(verbosity=1)
