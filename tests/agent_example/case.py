# SPDX-License-Identifier: BSD-3-Clause
"""What the tests of the example agent over pipes have in common: PROGRAM AGENT"""
import shutil
import sys
import tempfile
import unittest

from client import INTERFACES, Session, command, source_folder

AGENT = ""


class AgentTest(unittest.TestCase):
    def setUp(self):
        self.state = tempfile.mkdtemp(prefix="qmodel-agent-")
        self.sessions = []

    def tearDown(self):
        said = [self.ended(session) for session in self.sessions]
        shutil.rmtree(self.state)
        # What sanitizers find, leaks among it, is told at the end of a process.
        self.assertFalse([text for text in said if "Sanitizer" in text or "runtime error" in text])

    @staticmethod
    def ended(session):
        """Ends a session as a client does that goes, and gives what it has said."""
        try:
            return "" if session.process.stderr.closed else session.end()[1]
        except BrokenPipeError:
            return ""
        finally:
            session.leave()

    def open(self, *more, **options):
        """A session; `more` are words of the agent's command line."""
        words = command(AGENT, source_folder(), self.state) + list(more)
        self.sessions.append(Session(words, **options))
        return self.sessions[-1]

    def close(self, session):
        status, errors = session.end()
        self.assertEqual((status, errors), (0, ""))

    def names(self, session):
        return session.get_config().values(INTERFACES, "name")


def run():
    global AGENT
    AGENT = sys.argv.pop(1)
    unittest.main(verbosity=1)
