#!/usr/bin/env python3
# SPDX-License-Identifier: BSD-3-Clause
"""The example agent under OpenSSH's server, with a NETCONF client that others wrote.

usage: ssh_test.py AGENT [SANITIZED]
  SANITIZED  "yes" when the agent was built with sanitizers; what they report is a failure
Where no login over SSH is possible the exit status is 77, and the reason is printed.
"""
import os
import pathlib
import shlex
import shutil
import sys
import tempfile
import threading
import time
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "agent_example"))
from client import BASE, Ended, Session, interface, source_folder
from server import LIMIT, SKIPPED, Server, why_not

try:
    from ncclient import manager
    from ncclient.operations import RPCError
    from ncclient.transport.errors import SessionCloseError
    from ncclient.xml_ import to_ele
except ImportError:
    manager = None  # why_not() tells.

AGENT = ""
SANITIZED = False
INTERFACES = "urn:example:router-interfaces"
SYSTEM = "urn:example:router-system"
VLANS = "urn:example:router-vlans"
ALARMS = "urn:example:router-alarms"
CHANGE = "urn:ietf:params:xml:ns:yang:ietf-netconf-notifications"
CAPABILITY = "urn:ietf:params:netconf:capability:"


def config(data):
    return f'<config xmlns="{BASE}" xmlns:nc="{BASE}">{data}</config>'


def system(data, attributes=""):
    return f'<system xmlns="{SYSTEM}"{attributes}>{data}</system>'


class SshTest(unittest.TestCase):
    def setUp(self):
        self.folder = os.path.realpath(tempfile.mkdtemp(prefix="qmodel-ssh-"))
        self.addCleanup(shutil.rmtree, self.folder)
        self.server = Server(self.agent(), self.folder + "/dir")
        self.addCleanup(self.no_reports)
        self.addCleanup(self.server.stop)
        # Agents end with their clients; one that the script has to kill would tell of no leak.
        self.addCleanup(self.wait_for, lambda: not self.agents())

    def agent(self):
        """The server passes no environment on: the sanitizers' options stand in the command."""
        if not SANITIZED:
            return shlex.quote(AGENT)
        options = f"log_path={self.folder}/report"
        return (f"env ASAN_OPTIONS={options}:detect_leaks=1 "
                f"UBSAN_OPTIONS={options}:halt_on_error=1:print_stacktrace=1 {shlex.quote(AGENT)}")

    def no_reports(self):
        """What sanitizers say, after all sessions."""
        reports = [path.read_text() for path in pathlib.Path(self.folder).glob("report*")]
        self.assertEqual(reports, [])

    def connect(self):
        session = manager.connect(
            host="127.0.0.1", port=self.server.port, username=self.server.user,
            key_filename=self.server.key, hostkey_verify=False, allow_agent=False,
            look_for_keys=False, timeout=LIMIT, manager_params={"timeout": LIMIT})
        self.addCleanup(self.close, session)
        return session

    @staticmethod
    def close(session):
        if session.connected:
            session.close_session()

    def pipe(self, **options):
        """A session down to its bytes, through the client's line of the script."""
        session = Session(self.server.client, **options)
        self.addCleanup(session.leave)
        return session

    def edit(self, session, data, **options):
        return session.edit_config(target="running", config=config(data), **options)

    def refused(self, tag, call, *arguments, **options):
        with self.assertRaises(RPCError) as caught:
            call(*arguments, **options)
        self.assertEqual(caught.exception.tag, tag, caught.exception)
        return caught.exception

    def texts(self, session, namespace, name):
        data = session.get_config(source="running").data
        return [element.text for element in data.iter(f"{{{namespace}}}{name}")]

    def agents(self):
        """The processes of agents, without the server and its script."""
        state = f"{self.folder}/dir/state\0".encode()
        found = []
        for pid in self.server.processes():
            try:
                words = pathlib.Path(f"/proc/{pid}/cmdline").read_bytes()
            except OSError:
                continue
            if words.split(b"\0")[0].endswith(os.path.basename(AGENT).encode()) and state in words:
                found.append(pid)
        return found

    def wait_for(self, condition):
        end = time.monotonic() + LIMIT
        while not condition():
            self.assertLess(time.monotonic(), end, "waited in vain")
            time.sleep(0.02)


class Hello(SshTest):
    def test_capabilities(self):
        session = self.connect()
        told = list(session.server_capabilities)
        for name in ("urn:ietf:params:netconf:base:1.0", "urn:ietf:params:netconf:base:1.1",
                     CAPABILITY + "writable-running:1.0", CAPABILITY + "rollback-on-error:1.0",
                     CAPABILITY + "validate:1.1", CAPABILITY + "notification:1.0",
                     CAPABILITY + "interleave:1.0"):
            self.assertIn(name, told)
        library = CAPABILITY + "yang-library:1.1?revision="
        self.assertTrue([name for name in told if name.startswith(library)])
        for absent in "candidate", "startup", "xpath", "url", "confirmed-commit":
            self.assertFalse([c for c in told if c.startswith(f"{CAPABILITY}{absent}:")])
        self.assertIn(f"{INTERFACES}?module=router-interfaces&revision=2026-05-04&features=ipv6",
                      told)
        self.assertGreater(int(session.session_id), 0)


class Edits(SshTest):
    def test_valid_ones_of_each_kind(self):
        session = self.connect()
        self.edit(session, interface("a", "<description>1</description>"))
        self.edit(session, interface("a", "<enabled>false</enabled>"))
        self.assertEqual(self.texts(session, INTERFACES, "description"), ["1"])
        self.edit(session, interface("a", operation="replace"))
        self.assertEqual(self.texts(session, INTERFACES, "description"), [])
        self.edit(session, interface("b", operation="create"))
        self.edit(session, interface("a", operation="delete", kind=None))
        self.edit(session, interface("a", operation="remove", kind=None))
        self.assertEqual(self.texts(session, INTERFACES, "name"), ["b"])
        leaf = '<description nc:operation="merge">2</description>'
        self.edit(session, interface("b", leaf, kind=None), default_operation="none")
        self.assertEqual(self.texts(session, INTERFACES, "description"), ["2"])
        self.edit(session, system("<host-name>c</host-name>"), default_operation="replace")
        self.assertEqual(self.texts(session, INTERFACES, "name"), [])
        self.edit(session, system("<host-name>d</host-name>"), test_option="test-only")
        self.assertEqual(self.texts(session, SYSTEM, "host-name"), ["c"])
        session.copy_config(source=to_ele(
            f'<source xmlns="{BASE}">{config(interface("e"))}</source>'), target="running")
        self.assertEqual(self.texts(session, INTERFACES, "name"), ["e"])
        self.assertEqual(self.texts(session, SYSTEM, "host-name"), [])

    def test_invalid_ones_of_each_kind_change_nothing(self):
        session = self.connect()
        self.edit(session, interface("there"))
        before = session.get_config(source="running").data_xml
        cases = [
            ("data-exists", interface("there", operation="create")),
            ("data-missing", interface("gone", operation="delete", kind=None)),
            ("unknown-element", system("<colour>red</colour>")),
            ("unknown-namespace", '<system xmlns="urn:example:nowhere"/>'),
            ("invalid-value", system("<host-name>under_score</host-name>")),
            ("invalid-value", interface("a", "<enabled>perhaps</enabled>")),
            ("invalid-value", interface("a", "<mtu>9001</mtu>")),
            ("missing-element", f'<interfaces xmlns="{INTERFACES}"><interface/></interfaces>'),
            ("data-missing", interface("without-type", kind=None)),
            ("bad-element", system("<cpu><load>3</load></cpu>")),
            ("bad-attribute", interface("a", operation="frobnicate")),
        ]
        for error_option in "stop-on-error", "rollback-on-error":
            for tag, data in cases:
                with self.subTest(tag=tag, data=data, error_option=error_option):
                    # What is valid comes first, and is not kept.
                    self.refused(tag, self.edit, session, system("<host-name>x</host-name>") + data
                                 if "<system" not in data else interface("x") + data,
                                 error_option=error_option)
                    self.assertEqual(session.get_config(source="running").data_xml, before)

    def test_validate_and_what_is_not_supported(self):
        session = self.connect()
        self.assertTrue(session.validate(source="running").ok)
        self.assertTrue(session.validate(source=to_ele(config(interface("a")))).ok)
        self.refused("invalid-value", session.validate,
                     source=to_ele(config(system("<host-name>_</host-name>"))))
        self.refused("operation-not-supported", session.dispatch, to_ele(
            f'<delete-config xmlns="{BASE}"><target><url>file:///x</url></target></delete-config>'))


class Locks(SshTest):
    def test_one_session_keeps_the_other_out(self):
        one, two = self.connect(), self.connect()
        one.lock("running")
        denied = self.refused("lock-denied", two.lock, "running")
        self.assertIn(f"<session-id>{one.session_id}</session-id>", denied.info)
        self.refused("in-use", self.edit, two, interface("a"))
        self.edit(one, interface("a"))
        one.unlock("running")
        with two.locked("running"):
            self.edit(two, interface("b"))
        one.lock("running")
        one.close_session()
        two.lock("running")

    def test_a_session_that_dies_has_no_lock(self):
        dying, other = self.pipe(), self.connect()
        self.assertTrue(dying.rpc("<lock><target><running/></target></lock>").ok())
        self.refused("lock-denied", other.lock, "running")
        dying.process.kill()
        self.wait_for(lambda: len(self.agents()) == 1)
        other.lock("running")

    def test_kill_session(self):
        one, two = self.connect(), self.connect()
        one.lock("running")
        two.kill_session(one.session_id)
        two.lock("running")
        self.wait_for(lambda: not one.connected)
        self.refused("invalid-value", two.kill_session, two.session_id)


class Reading(SshTest):
    def test_filters(self):
        session = self.connect()
        for name in "a", "b":
            self.edit(session, interface(name, f"<description>of {name}</description>"))
        self.edit(session, system("<host-name>h</host-name>"))

        def chosen(data, call=session.get_config, **options):
            found = call(filter=("subtree", data), **options).data
            return [text for text in found.itertext() if text.strip()]

        running = {"source": "running"}
        self.assertEqual(chosen(f'<system xmlns="{SYSTEM}"/>', **running), ["h"])
        entry = f'<interfaces xmlns="{INTERFACES}"><interface>%s</interface></interfaces>'
        self.assertEqual(chosen(entry % "<name/>", **running), ["a", "b"])
        self.assertEqual(chosen(entry % "<name>b</name><description/>", **running), ["b", "of b"])
        self.assertEqual(chosen(entry % "<name>c</name>", **running), [])
        load = chosen(f'<system xmlns="{SYSTEM}"><cpu/></system>', call=session.get)
        self.assertTrue(len(load) == 1 and 0 <= int(load[0]) <= 100, load)

    def test_schemas_are_the_files(self):
        session = self.connect()
        folder = pathlib.Path(source_folder()) / "examples/models"
        for name in "router-system", "router-types":
            reply = session.get_schema(name, version="2026-05-04", format="yin")
            self.assertEqual(reply.data.strip(), (folder / f"{name}.yin").read_text().strip())
        self.refused("invalid-value", session.get_schema, "nowhere")

    def test_library(self):
        library = '<yang-library xmlns="urn:ietf:params:xml:ns:yang:ietf-yang-library"/>'
        data = self.connect().get(filter=("subtree", library)).data
        names = [element.text for element in data.iter("{*}name")]
        for name in "router-system", "router-types", "ietf-yang-library":
            self.assertIn(name, names)


class Notifications(SshTest):
    def test_an_alarm_reaches_who_has_subscribed(self):
        watching, editing = self.connect(), self.connect()
        watching.create_subscription()
        self.edit(editing, interface("a", "<enabled>false</enabled>"))
        alarm = watching.take_notification(timeout=LIMIT).notification_ele
        self.assertEqual([e.text for e in alarm.iter(f"{{{ALARMS}}}interface")], ["a"])
        # Requests are answered in between.
        self.assertEqual(self.texts(watching, INTERFACES, "name"), ["a"])
        self.edit(editing, interface("a", "<enabled>true</enabled>"))
        cleared = watching.take_notification(timeout=LIMIT).notification_ele
        self.assertTrue(list(cleared.iter(f"{{{ALARMS}}}alarm-cleared")))

    def test_there_is_no_replay(self):
        session = self.connect()
        with self.assertRaises(RPCError):
            session.create_subscription(start_time="2026-01-01T00:00:00Z")


class Packages(SshTest):
    def packages(self, session, operation):
        session.dispatch(to_ele(f'<{operation} xmlns="urn:example:router-packages">'
                                f"<name>router-vlans</name></{operation}>"))

    def change(self, session, kind):
        told = session.take_notification(timeout=LIMIT).notification_ele
        return [element.text for element in told.iter(f"{{{CHANGE}}}{kind}")]

    def test_one_goes_while_sessions_are_open(self):
        watching, editing = self.connect(), self.connect()
        vlan = interface("a", f'<vlan xmlns="{VLANS}"><native>5</native></vlan>')
        watching.create_subscription()
        self.refused("unknown-namespace", self.edit, watching, vlan)
        self.packages(editing, "install-package")
        added = self.change(watching, "added-capability")
        self.assertTrue([name for name in added if name.startswith(VLANS)], added)
        schema = watching.get_schema("router-vlans", format="yin")
        self.assertIn('name="router-vlans"', schema.data)
        self.edit(watching, vlan)
        self.assertEqual(self.texts(watching, VLANS, "native"), ["5"])
        self.packages(editing, "remove-package")
        deleted = self.change(watching, "deleted-capability")
        self.assertEqual(deleted, added)
        self.refused("invalid-value", watching.get_schema, "router-vlans")
        self.refused("unknown-namespace", self.edit, watching, vlan)
        self.assertEqual(self.texts(watching, VLANS, "native"), [])


class Misbehaviour(SshTest):
    def test_broken_framing_ends_one_session_only(self):
        other = self.connect()
        for broken in b"\n#x\n", b"\n#0\n", b"<rpc", b"\n#4294967296\n":
            with self.subTest(broken=broken):
                session = self.pipe()
                session.write(broken)
                with self.assertRaises(Ended):
                    session.receive()
        self.edit(other, interface("a"))
        self.wait_for(lambda: len(self.agents()) == 1)

    def test_a_megabyte_is_taken_and_ten_are_too_big(self):
        session = self.pipe()
        description = "<description>%s</description>"
        self.assertTrue(session.edit(interface("a", description % ("x" * 1000000))).ok())
        refused = session.edit(interface("b", description % ("x" * 10000000)))
        self.assertEqual(refused.error(), "too-big")
        # The framing is in step.
        self.assertTrue(session.edit(interface("c")).ok())
        self.assertEqual(session.get_config().values(INTERFACES, "name"), ["a", "c"])

    def test_one_that_goes_in_the_middle_leaves_nothing(self):
        session = self.pipe()
        session.edit(interface("a"))
        request = f'<rpc message-id="9" xmlns="{BASE}"><edit-config><target><running/></target>'
        session.write(b"\n#5000\n" + request.encode())
        session.process.kill()
        self.wait_for(lambda: not self.agents())
        self.assertEqual(self.texts(self.connect(), INTERFACES, "name"), ["a"])

    def test_a_thousand_requests_at_once_are_answered_in_order(self):
        session = self.pipe()
        requests = "".join(
            f"\n#{len(text)}\n{text}\n##\n" for text in (
                f'<rpc message-id="{number}" xmlns="{BASE}"><get-config><source><running/></source>'
                "</get-config></rpc>" for number in range(1000)))
        # The answers come while the rest is still being sent.
        writer = threading.Thread(target=session.write, args=(requests.encode(),), daemon=True)
        writer.start()
        for number in range(1000):
            self.assertEqual(session.answer().root.get("message-id"), str(number))
        writer.join(LIMIT)


def main():
    global AGENT, SANITIZED
    AGENT = str(pathlib.Path(sys.argv[1]).resolve())
    SANITIZED = sys.argv[2:] == ["yes"]
    reason = why_not()
    if reason:
        print("skipped:", reason)
        sys.exit(SKIPPED)
    # ncclient calls what newer versions of Python will not have.
    unittest.main(argv=sys.argv[:1], verbosity=2, warnings="ignore")


if __name__ == "__main__":
    main()
