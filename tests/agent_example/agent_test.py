# SPDX-License-Identifier: BSD-3-Clause
"""What the example agent does, tested over pipes: agent_test.py AGENT"""
import concurrent.futures
import os
import pathlib
import signal
import tempfile
import time

import case
from case import AgentTest
from client import (BASE, INTERFACES, MONITORING, NOTIFICATION, SYSTEM, Ended,
                    interface, source_folder)

PACKAGES = "urn:example:router-packages"
VLANS = "urn:example:router-vlans"
ALARMS = "urn:example:router-alarms"
CHANGE = "urn:ietf:params:xml:ns:yang:ietf-netconf-notifications"
LIBRARY = "urn:ietf:params:xml:ns:yang:ietf-yang-library"
ACTION = "urn:ietf:params:xml:ns:yang:1"


class Framing(AgentTest):
    def test_both_framings_serve(self):
        for base in ("1.0", "1.1"):
            session = self.open(base=base)
            self.assertTrue(session.edit(interface("ge-" + base)).ok())
            self.close(session)
        self.assertEqual(self.names(self.open()), ["ge-1.0", "ge-1.1"])

    def test_a_message_may_come_in_pieces(self):
        session = self.open()
        for byte in f'<rpc message-id="a" xmlns="{BASE}"><get-config><source>':
            session.write(b"\n#1\n" + byte.encode())
        rest = b"<running/></source></get-config></rpc>"
        session.write(b"\n#%d\n%s\n##\n" % (len(rest), rest))
        self.assertEqual(session.answer().root.get("message-id"), "a")

    def test_the_end_mark_may_come_in_pieces(self):
        session = self.open(base="1.0")
        request = f'<rpc message-id="a" xmlns="{BASE}"><close-session/></rpc>]]>]]>'
        for byte in request.encode():
            session.write(bytes([byte]))
        self.assertTrue(session.answer().ok())

    def test_an_end_mark_that_is_none_belongs_to_the_message(self):
        session = self.open(base="1.0")
        session.write(f'<rpc message-id="a]]]>]" xmlns="{BASE}"><close-session/></rpc>'.encode()
                      + b"]]>]]>")
        self.assertEqual(session.answer().root.get("message-id"), "a]]]>]")

    def test_blanks_before_a_message_are_no_part_of_it(self):
        session = self.open(base="1.0")
        request = f'<rpc message-id="a" xmlns="{BASE}"><get/></rpc>'
        for blanks in ("\n", "\r\n \t", ""):
            text = f'{blanks}<?xml version="1.0" encoding="UTF-8"?>\n{request}\n]]>]]>'
            session.write(text.encode())
            self.assertIsNone(session.answer().error())

    def test_an_empty_message_is_not_taken_for_the_one_before(self):
        session = self.open(base="1.0")
        self.assertTrue(session.rpc("<validate><source><running/></source></validate>").ok())
        session.write(b"]]>]]>")
        reply = session.answer()
        self.assertEqual((reply.error(), reply.root.get("message-id")), ("malformed-message", None))

    def test_requests_may_follow_the_hello_in_one_write(self):
        session = self.open(hello=False)
        hello = (f'<hello xmlns="{BASE}"><capabilities><capability>urn:ietf:params:netconf:base:1.1'
                 "</capability></capabilities></hello>]]>]]>")
        request = f'<rpc message-id="a" xmlns="{BASE}"><close-session/></rpc>'
        session.write(f"{hello}\n#{len(request)}\n{request}\n##\n".encode())
        session.chunked = True
        self.assertTrue(session.answer().ok())
        self.assertEqual(session.process.wait(30), 0)

    def test_many_messages_in_one_write_are_answered_in_order(self):
        session = self.open()
        request = '<rpc message-id="%d" xmlns="{}"><unlock><target><running/></target></unlock></rpc>'
        data = b""
        for number in range(1000):
            text = (request.format(BASE) % number).encode()
            data += b"\n#%d\n%s\n##\n" % (len(text), text)
        session.write(data)
        for number in range(1000):
            self.assertEqual(session.answer().root.get("message-id"), str(number))

    def test_broken_chunks_end_the_session(self):
        for head in (b"x", b"\n#0\n", b"\n#01\n", b"\n#4294967296\n", b"\n##\n", b"\n#1x\n"):
            session = self.open()
            session.write(head)
            with self.assertRaises(Ended):
                session.receive()
            self.assertEqual(session.process.wait(30), 1)

    def test_a_megabyte_is_taken_and_ten_are_too_big(self):
        for base in ("1.0", "1.1"):
            session = self.open(base=base)
            reply = session.edit(interface("ge0", f"<description>{'x' * 10**6}</description>"))
            self.assertTrue(reply.ok())
            reply = session.edit(interface("ge1", f"<description>{'x' * 10**7}</description>"))
            self.assertEqual(reply.error(), "too-big")
            self.assertEqual(self.names(session), ["ge0"])

    def test_a_client_that_goes_in_the_middle_leaves_nothing(self):
        session = self.open()
        session.write(b"\n#1000\n<rpc")
        self.close(session)
        self.assertEqual(self.names(self.open()), [])


class Messages(AgentTest):
    def test_the_hello_names_modules_with_revision_and_features(self):
        hello = self.open()
        for own in ("writable-running:1.0", "rollback-on-error:1.0", "validate:1.1",
                    "notification:1.0", "interleave:1.0"):
            self.assertIn("urn:ietf:params:netconf:capability:" + own, hello.capabilities)
        for other in ("candidate", "startup", "xpath", "url"):
            self.assertFalse([c for c in hello.capabilities if f":{other}:" in c])
        self.assertIn("urn:example:router-interfaces?module=router-interfaces&revision=2026-05-04"
                      "&features=ipv6", hello.capabilities)

    def test_a_client_without_a_common_base_is_left(self):
        session = self.open(hello=False)
        session.send(f'<hello xmlns="{BASE}"><capabilities/></hello>')
        with self.assertRaises(Ended):
            session.receive()

    def test_a_hello_is_not_waited_for_without_end(self):
        session = self.open("--hello-timeout", "1", hello=False)
        session.write(b"<hello")
        with self.assertRaises(Ended):
            session.receive()
        self.assertEqual(session.process.wait(30), 1)
        # The limit is not one of the session.
        greeted = self.open("--hello-timeout", "4")
        time.sleep(4.2)
        self.assertIsNone(greeted.get_config().error())

    def test_attributes_of_a_request_come_back(self):
        session = self.open()
        session.send(f'<rpc xmlns="{BASE}" message-id="1&#10;2&#9;3&#13;4" xml:lang="de"><get/></rpc>')
        root = session.answer().root
        self.assertEqual((root.get("message-id"),
                          root.get("{http://www.w3.org/XML/1998/namespace}lang")),
                         ("1\n2\t3\r4", "de"))
        session.send(f'<rpc xmlns="{BASE}" xmlns:x="urn:x" x:a="1 &lt; &quot;2&quot;" message-id="m">'
                     "<get-config><source><running/></source></get-config></rpc>")
        root = session.answer().root
        self.assertEqual((root.get("{urn:x}a"), root.get("message-id")), ('1 < "2"', "m"))

    def test_a_request_without_message_id_misses_it(self):
        session = self.open()
        session.send(f'<rpc xmlns="{BASE}"><get/></rpc>')
        reply = session.answer()
        self.assertEqual((reply.error(), reply.error("bad-attribute")),
                         ("missing-attribute", "message-id"))

    def test_what_is_no_xml_is_malformed_and_the_session_goes_on(self):
        session = self.open()
        session.send(f'<rpc xmlns="{BASE}" message-id="m"><get></rpc>')
        reply = session.answer()
        self.assertEqual((reply.error(), reply.root.get("message-id")), ("malformed-message", "m"))
        session.send("<unknown/>")
        self.assertEqual(session.answer().error(), "malformed-message")
        self.assertTrue(session.rpc("<close-session/>").ok())

    def test_the_library_refuses_unknown_operations_and_wrong_parameters(self):
        session = self.open()
        self.assertEqual(session.rpc("<discard-changes/>").error(), "unknown-element")
        reply = session.rpc("<get-config><source><candidate/></source></get-config>")
        self.assertEqual(reply.error("error-path"), "/ietf-netconf:get-config/source/candidate")
        reply = session.edit("", "<error-option>continue-on-error</error-option>")
        self.assertIsNotNone(reply.error())

    def test_parameters_may_come_without_a_namespace_as_the_library_takes_them(self):
        session = self.open()
        config = f'<config xmlns="">{interface("ge0").replace("nc:", "")}</config>'
        target = '<target xmlns=""><running/></target>'
        self.assertTrue(session.rpc(f"<edit-config>{target}{config}</edit-config>").ok())
        chosen = session.rpc('<get-config><source><running/></source><filter xmlns="" type="subtree">'
                             f'<system xmlns="{SYSTEM}"/></filter></get-config>')
        self.assertEqual(chosen.values(INTERFACES, "name"), [])
        self.assertEqual(self.names(session), ["ge0"])
        wrong = config.replace("ethernet", "nothing")
        mixed = wrong.replace('<config xmlns="">', f'<config xmlns="{BASE}">')
        for source in (f"<source>{wrong}</source>", f'<source xmlns="">{wrong}</source>',
                       f'<source xmlns="">{mixed}</source>'):
            self.assertEqual(session.rpc(f"<validate>{source}</validate>").error(), "invalid-value")
        ping = f'<ping xmlns="{SYSTEM}"><destination xmlns="">192.0.2.1</destination></ping>'
        self.assertEqual(session.rpc(ping).values(SYSTEM, "received"), ["5"])

    def test_delete_config_is_not_supported(self):
        reply = self.open().rpc("<delete-config><target><running/></target></delete-config>")
        self.assertEqual(reply.error(), "operation-not-supported")

    def test_close_session_answers_and_ends(self):
        session = self.open()
        self.assertTrue(session.rpc("<close-session/>").ok())
        self.assertEqual(session.process.wait(30), 0)


class Edits(AgentTest):
    def description(self, session):
        return session.get_config().values(INTERFACES, "description")

    def test_merge_changes_what_it_names(self):
        session = self.open()
        session.edit(interface("ge0", "<description>a</description><mtu>1500</mtu>"))
        self.assertTrue(session.edit(interface("ge0", "<description>b</description>", kind=None)).ok())
        reply = session.get_config()
        self.assertEqual(reply.values(INTERFACES, "description"), ["b"])
        self.assertEqual(reply.values(INTERFACES, "mtu"), ["1500"])

    def test_replace_leaves_nothing_else(self):
        session = self.open()
        session.edit(interface("ge0", "<description>a</description><mtu>1500</mtu>"))
        session.edit(interface("ge1"))
        self.assertTrue(session.edit(interface("ge0", "<mtu>9000</mtu>", "replace")).ok())
        reply = session.get_config()
        self.assertEqual(reply.values(INTERFACES, "description"), [])
        self.assertEqual(reply.values(INTERFACES, "mtu"), ["9000"])
        self.assertEqual(reply.values(INTERFACES, "name"), ["ge0", "ge1"])

    def test_create_wants_nothing_there_and_delete_something(self):
        session = self.open()
        self.assertTrue(session.edit(interface("ge0", operation="create")).ok())
        self.assertEqual(session.edit(interface("ge0", operation="create")).error(), "data-exists")
        self.assertTrue(session.edit(interface("ge0", operation="delete", kind=None)).ok())
        self.assertEqual(session.edit(interface("ge0", operation="delete", kind=None)).error(),
                         "data-missing")
        self.assertTrue(session.edit(interface("ge0", operation="remove", kind=None)).ok())

    def test_default_operation_none_goes_through_what_is_there(self):
        session = self.open()
        none = "<default-operation>none</default-operation>"
        self.assertEqual(session.edit(interface("ge0"), none).error(), "data-missing")
        session.edit(interface("ge0", "<description>a</description>"))
        leaf = '<description nc:operation="delete"/>'
        self.assertTrue(session.edit(interface("ge0", leaf, kind=None), none).ok())
        self.assertEqual(self.description(session), [])

    def test_default_operation_replace_replaces_everything(self):
        session = self.open()
        session.edit(interface("ge0"))
        replace = "<default-operation>replace</default-operation>"
        self.assertTrue(session.edit(interface("ge1"), replace).ok())
        self.assertEqual(self.names(session), ["ge1"])

    def test_test_only_changes_nothing_and_says_what_is_wrong(self):
        session = self.open()
        only = "<test-option>test-only</test-option>"
        self.assertTrue(session.edit(interface("ge0"), only).ok())
        self.assertEqual(session.edit(interface("ge0", kind=None), only).error(), "data-missing")
        self.assertEqual(self.names(session), [])

    def test_after_an_error_nothing_is_changed(self):
        session = self.open()
        for option in ("stop-on-error", "rollback-on-error"):
            gone = interface("ge1", operation="delete", kind=None)
            both = (interface("ge0") + gone).replace(
                f'</interfaces><interfaces xmlns="{INTERFACES}">', "")
            reply = session.edit(both, f"<error-option>{option}</error-option>")
            self.assertEqual(reply.error(), "data-missing")
            self.assertEqual(self.names(session), [])

    def test_data_of_one_case_deletes_that_of_the_other(self):
        session = self.open()
        session.edit(interface("ge0", "<dhcp-client-id>x</dhcp-client-id>"))
        address = "<address><ip>192.0.2.1</ip><prefix-length>24</prefix-length></address>"
        self.assertTrue(session.edit(interface("ge0", address, kind=None)).ok())
        reply = session.get_config()
        self.assertEqual(reply.values(INTERFACES, "dhcp-client-id"), [])
        self.assertEqual(reply.values(INTERFACES, "ip"), ["192.0.2.1"])

    def test_sessions_that_edit_at_once_lose_nothing(self):
        sessions = [self.open() for _ in range(4)]

        def edit(number):
            for entry in range(20):
                self.assertTrue(sessions[number].edit(interface(f"i{number}-{entry}")).ok())

        with concurrent.futures.ThreadPoolExecutor() as pool:
            list(pool.map(edit, range(4)))
        self.assertEqual(len(self.names(sessions[0])), 80)

    def test_another_file_is_read_though_it_looks_like_the_one_before(self):
        session = self.open()
        session.edit(interface("ge0", "<description>a</description>"))
        self.assertEqual(self.description(session), ["a"])
        store = pathlib.Path(self.state) / "datastore.xml"
        was, text = store.stat(), store.read_text()
        # Its number is free for another file, which most file systems give it to.
        store.unlink()
        store.write_text(text.replace(">a<", ">b<"))
        os.utime(store, ns=(was.st_atime_ns, was.st_mtime_ns))
        self.assertEqual(self.description(session), ["b"])

    def test_copy_config_replaces_everything(self):
        session = self.open()
        session.edit(interface("ge0"))
        copy = ("<copy-config><target><running/></target><source>{}</source></copy-config>")
        self.assertTrue(session.rpc(copy.format(f"<config>{interface('ge1')}</config>")).ok())
        self.assertEqual(self.names(session), ["ge1"])
        self.assertEqual(session.rpc(copy.format("<running/>")).error(), "invalid-value")

    def test_identities_are_kept_whatever_their_prefix(self):
        session = self.open()
        session.edit(interface("ge0", kind="tunnel"))
        match = (f'<interfaces xmlns="{INTERFACES}"><interface>'
                 '<type xmlns:q="urn:example:router-types">q:tunnel</type></interface></interfaces>')
        self.assertEqual(session.get_config(match).values(INTERFACES, "name"), ["ge0"])

    def test_thousands_of_entries_are_edited(self):
        session = self.open()
        entries = "".join(f"<interface><name>i{n}</name><type>t:loopback</type></interface>"
                          for n in range(5000))
        config = (f'<interfaces xmlns="{INTERFACES}" xmlns:t="urn:example:router-types">'
                  f"{entries}</interfaces>")
        self.assertTrue(session.edit(config).ok())
        self.assertTrue(session.edit(config).ok())
        self.assertEqual(len(self.names(session)), 5000)


class Checks(AgentTest):
    def refused(self, config, tag, path=None):
        session = self.open()
        reply = session.edit(config)
        self.assertEqual(reply.error(), tag, reply.text)
        if path is not None:
            self.assertEqual(reply.error("error-path"), path)
        validated = session.rpc(f"<validate><source><config>{config}</config></source></validate>")
        self.assertEqual(validated.error(), tag, validated.text)
        self.assertEqual(self.names(session), [])

    def test_unknown_elements_and_namespaces(self):
        self.refused(interface("ge0", "<colour/>"), "unknown-element",
                     "/router-interfaces:interfaces/interface[name='ge0']/colour")
        self.refused('<a xmlns="urn:nobody"/>', "unknown-namespace")

    def test_values(self):
        self.refused(interface("ge0", "<mtu>1</mtu>"), "invalid-value",
                     "/router-interfaces:interfaces/interface[name='ge0']/mtu")
        self.refused(interface("ge0", kind="colour"), "invalid-value")

    def test_state_is_not_configuration(self):
        self.refused(interface("ge0", "<counters/>"), "bad-element")

    def test_keys_are_there_and_unique(self):
        self.refused(f'<interfaces xmlns="{INTERFACES}"><interface/></interfaces>',
                     "missing-element")
        twice = interface("ge0").replace("</interfaces>", "") + interface("ge0").partition(">")[2]
        self.refused(twice, "bad-element")

    def test_one_case_of_a_choice(self):
        both = ("<dhcp-client-id>x</dhcp-client-id><address><ip>192.0.2.1</ip>"
                "<prefix-length>24</prefix-length></address>")
        self.refused(interface("ge0", both), "bad-element")

    def test_mandatory_nodes_at_the_commit(self):
        self.refused(interface("ge0", kind=None), "data-missing",
                     "/router-interfaces:interfaces/interface[name='ge0']/type")
        self.refused(interface("ge0", "<address><ip>192.0.2.1</ip></address>"), "data-missing")

    def test_texts_between_elements_and_elements_in_leaves(self):
        self.refused(interface("ge0", "text"), "bad-element")
        self.refused("text", "bad-element")
        self.refused(interface("ge0", "<mtu><a/></mtu>"), "bad-element")

    def test_attributes(self):
        session = self.open()
        self.assertEqual(session.edit(interface("ge0", operation="destroy")).error(), "bad-attribute")
        self.assertEqual(session.edit(interface("ge0").replace("<name>", '<name a="b">')).error(),
                         "unknown-attribute")

    def test_an_operation_of_the_whole_is_not_passed_over(self):
        session = self.open()
        reply = session.rpc('<edit-config><target><running/></target>'
                            f'<config xmlns:nc="{BASE}" nc:operation="replace">{interface("ge0")}'
                            "</config></edit-config>")
        self.assertEqual((reply.error(), reply.error("bad-attribute"), reply.error("error-path")),
                         ("unknown-attribute", "operation", None))
        self.assertEqual(self.names(session), [])

    def test_running_is_valid(self):
        self.assertTrue(self.open().rpc("<validate><source><running/></source></validate>").ok())


class Filters(AgentTest):
    def setUp(self):
        super().setUp()
        self.session = self.open()
        self.session.edit(interface("ge0", "<description>a</description>"))
        self.session.edit(interface("ge1", "<description>b</description>", kind="tunnel"))
        self.session.edit(f'<system xmlns="{SYSTEM}"><host-name>r</host-name></system>')

    def selected(self, text):
        reply = self.session.get_config(text)
        self.assertIsNone(reply.error(), reply.text)
        return reply

    def test_an_empty_filter_selects_nothing(self):
        self.assertEqual(len(self.selected("").root[0]), 0)

    def test_a_subtree_is_selected(self):
        reply = self.selected(f'<system xmlns="{SYSTEM}"/>')
        self.assertEqual([e.tag for e in reply.root[0]], [f"{{{SYSTEM}}}system"])

    def test_content_selects_entries_and_leaves_pick_parts_with_the_keys(self):
        match = (f'<interfaces xmlns="{INTERFACES}"><interface><description> b </description>'
                 "<type/></interface></interfaces>")
        reply = self.selected(match)
        self.assertEqual(reply.values(INTERFACES, "name"), ["ge1"])
        self.assertEqual(reply.values(INTERFACES, "type"), ["router-types:tunnel"])

    def test_two_branches_select_together(self):
        one = "<interface><name>ge{}</name>{}</interface>"
        match = (f'<interfaces xmlns="{INTERFACES}">{one.format(0, "<type/>")}'
                 f'{one.format(0, "<description/>")}{one.format(1, "<type/>")}</interfaces>')
        reply = self.selected(match)
        self.assertEqual(reply.values(INTERFACES, "name"), ["ge0", "ge1"])
        self.assertEqual(reply.values(INTERFACES, "description"), ["a"])

    def test_no_namespace_stands_for_any(self):
        self.assertEqual(self.selected('<system xmlns=""/>').values(SYSTEM, "host-name"), ["r"])

    def test_other_types_are_refused(self):
        reply = self.session.rpc('<get-config><source><running/></source>'
                                 '<filter type="xpath" select="/"/></get-config>')
        self.assertEqual((reply.error(), reply.error("bad-attribute")), ("bad-attribute", "type"))


class Locks(AgentTest):
    LOCK = "<lock><target><running/></target></lock>"
    UNLOCK = "<unlock><target><running/></target></unlock>"

    def test_a_lock_keeps_others_out(self):
        one, two = self.open(), self.open()
        self.assertTrue(one.rpc(self.LOCK).ok())
        reply = two.rpc(self.LOCK)
        self.assertEqual((reply.error(), reply.error("session-id")), ("lock-denied", str(one.id)))
        self.assertEqual(one.rpc(self.LOCK).error(), "lock-denied")
        self.assertEqual(two.edit(interface("ge0")).error(), "in-use")
        self.assertTrue(one.edit(interface("ge0")).ok())
        self.assertEqual(two.rpc(self.UNLOCK).error(), "operation-failed")
        self.assertTrue(one.rpc(self.UNLOCK).ok())
        self.assertTrue(two.edit(interface("ge1")).ok())

    def test_a_session_that_ends_or_dies_releases_its_lock(self):
        one, two, three = self.open(), self.open(), self.open()
        one.rpc(self.LOCK)
        self.close(one)
        self.assertTrue(two.rpc(self.LOCK).ok())
        two.process.kill()
        two.process.wait()
        self.assertTrue(three.rpc(self.LOCK).ok())

    def test_a_table_that_cannot_be_read_is_not_taken_for_an_empty_one(self):
        for name in ("sessions", "packages"):
            one, two = self.open(), self.open()
            file = pathlib.Path(self.state) / name
            if not file.exists():
                file.write_text("0\n")
            file.rename(self.state + "/kept")
            file.mkdir()
            # An idle session sees the list of packages, and can be gone before the request.
            with self.assertRaises((Ended, BrokenPipeError)):
                two.rpc(self.LOCK)
            self.assertEqual(two.process.wait(30), 3)
            file.rmdir()
            pathlib.Path(self.state + "/kept").rename(file)
            self.assertTrue(name == "packages" or one.rpc(self.LOCK).ok())

    def test_kill_session_ends_another_and_releases_its_lock(self):
        one, two = self.open(), self.open()
        one.rpc(self.LOCK)
        self.assertTrue(two.rpc(f"<kill-session><session-id>{one.id}</session-id></kill-session>").ok())
        with self.assertRaises(Ended):
            one.receive()
        self.assertTrue(two.rpc(self.LOCK).ok())
        for number in (one.id, two.id, 4000000000):
            reply = two.rpc(f"<kill-session><session-id>{number}</session-id></kill-session>")
            self.assertEqual(reply.error(), "invalid-value")

    def test_a_process_that_has_got_the_number_of_another_is_not_killed(self):
        one, two = self.open(), self.open()
        with open(self.state + "/sessions") as file:
            rows = file.read().splitlines()
        changed = []
        for row in rows:
            parts = row.split()
            if parts[0] == str(one.id) and len(parts) == 4:
                parts[2] = str(int(parts[2]) - 1)
            changed.append(" ".join(parts))
        with open(self.state + "/sessions", "w") as file:
            file.write("\n".join(changed) + "\n")
        reply = two.rpc(f"<kill-session><session-id>{one.id}</session-id></kill-session>")
        self.assertEqual(reply.error(), "invalid-value")
        self.assertIsNone(one.get_config().error())


class Knowledge(AgentTest):
    def test_get_has_state_and_the_yang_library(self):
        session = self.open()
        session.edit(interface("ge0"))
        reply = session.rpc("<get/>")
        self.assertEqual(reply.values(INTERFACES, "in-octets"), ["0"])
        names = [m.find(f"{{{LIBRARY}}}name").text for m in reply.root.iter(f"{{{LIBRARY}}}module")]
        self.assertIn("router-interfaces", names)
        self.assertEqual(reply.values(LIBRARY, "content-id"), [self.content_id(session)])

    def content_id(self, session):
        capability = [c for c in session.capabilities if ":yang-library:1.1?" in c]
        self.assertEqual(len(capability), 1)
        return capability[0].partition("&content-id=")[2]

    def test_the_library_has_another_number_when_it_has_other_modules(self):
        first = self.open()
        # The same folder, as after a start with other models.
        other = self.open("--module", "router-qos")
        self.assertNotEqual(self.content_id(first), self.content_id(other))
        self.assertEqual(self.content_id(first), self.content_id(self.open()))
        first.rpc(f'<install-package xmlns="{PACKAGES}"><name>router-vlans</name></install-package>')
        now = first.rpc("<get/>").values(LIBRARY, "content-id")
        self.assertNotEqual(now, [self.content_id(first)])
        self.assertEqual(now, [self.content_id(self.open())])

    def test_the_streams_are_told(self):
        streams = "urn:ietf:params:xml:ns:netmod:notification"
        reply = self.open().rpc(f'<get><filter><netconf xmlns="{streams}"><streams/></netconf>'
                                "</filter></get>")
        self.assertEqual(reply.values(streams, "name"), ["NETCONF"])
        self.assertEqual(reply.values(streams, "replaySupport"), ["false"])

    def schema(self, session, name, more=""):
        return session.rpc(f'<get-schema xmlns="{MONITORING}"><identifier>{name}</identifier>'
                           f"{more}</get-schema>")

    def test_get_schema_serves_the_file(self):
        session = self.open()
        text = self.schema(session, "router-types").values(MONITORING, "data")[0]
        with open(source_folder() + "/examples/models/router-types.yin") as file:
            self.assertEqual(text, file.read())
        for more in ("<format>yang</format>", "<version>1999-01-01</version>"):
            self.assertEqual(self.schema(session, "router-types", more).error(), "invalid-value")
        self.assertEqual(self.schema(session, "../models/router-types").error(), "invalid-value")

    def test_a_compiled_module_is_loaded_and_its_original_served(self):
        text = ("module shelf {\n  namespace urn:shelf;\n  prefix s;\n  grouping g {"
                " leaf height { type uint8; } }\n  container shelf { uses g; }\n}\n")
        compiled = ('<module name="shelf" xmlns="urn:ietf:params:xml:ns:yang:yin:1" xmlns:s="urn:shelf">'
                    '<namespace uri="urn:shelf"/><prefix value="s"/><container name="shelf">'
                    '<leaf name="height"><type name="uint8"/></leaf></container></module>')
        folder = tempfile.mkdtemp(dir=self.state)
        originals = tempfile.mkdtemp(dir=self.state)
        with open(folder + "/shelf.yin", "w") as file:
            file.write(compiled)
        session = self.open("--compiled", folder, "--models", originals, "--module", "shelf")
        self.assertEqual(self.schema(session, "shelf").error(), "invalid-value")
        with open(originals + "/shelf.yang", "w") as file:
            file.write(text)
        self.assertEqual(self.schema(session, "shelf").values(MONITORING, "data"), [text])

    def test_get_schema_serves_the_text_of_the_revision_that_is_loaded(self):
        folder = tempfile.mkdtemp(dir=self.state)
        text = ('<module name="shelf" xmlns="urn:ietf:params:xml:ns:yang:yin:1" xmlns:s="urn:shelf">'
                '<namespace uri="urn:shelf"/><prefix value="s"/><revision date="{}"/></module>')
        with open(folder + "/shelf.yin", "w") as file:
            file.write(text.format("2026-02-02"))
        session = self.open("--models", folder, "--module", "shelf")
        with open(folder + "/shelf@2026-02-02.yang", "w") as file:
            file.write("module shelf { }")
        with open(folder + "/shelf.yang", "w") as file:
            file.write("module shelf { /* another */ }")
        self.assertEqual(self.schema(session, "shelf").values(MONITORING, "data"), ["module shelf { }"])

    def test_the_way_to_an_action_is_one_and_all_of_it_is_there(self):
        session = self.open()
        session.edit(interface("ge0"))
        action = (f'<action xmlns="{ACTION}"><interfaces xmlns="{INTERFACES}">{{}}</interfaces></action>')
        entry = "<interface><name>{}</name>{}</interface>"
        reset = "<reset-counters/>"
        self.assertIsNone(session.rpc(action.format(entry.format("ge0", reset))).error())
        for tag, inner in (
                ("data-missing", entry.format("ge9", reset)),
                ("missing-element", f"<interface>{reset}</interface>"),
                ("bad-element", entry.format("ge9", "") + entry.format("ge0", reset)),
                ("bad-element", entry.format("ge0", reset) + entry.format("ge9", "")),
                ("bad-element", entry.format("ge0", "<mtu>1500</mtu>" + reset))):
            self.assertEqual(session.rpc(action.format(inner)).error(), tag, inner)

    def test_a_must_of_a_request_is_told_with_its_tag(self):
        image = (f'<install-image xmlns="{SYSTEM}"><file>f</file><verify>false</verify>'
                 "</install-image>")
        reply = self.open().rpc(image)
        self.assertEqual((reply.error(), reply.error("error-app-tag")),
                         ("operation-failed", "unverified-image"))

    def test_rpcs_and_actions_are_answered(self):
        session = self.open()
        ping = (f'<ping xmlns="{SYSTEM}"><destination>192.0.2.1</destination>'
                "<probe><count>3</count></probe></ping>")
        self.assertEqual(session.rpc(ping).values(SYSTEM, "received"), ["3"])
        self.assertEqual(session.rpc(ping.replace("192.0.2.1", "x")).error("error-path"),
                         "/router-system:ping/destination")
        action = (f'<action xmlns="{ACTION}"><interfaces xmlns="{INTERFACES}"><interface>'
                  "<name>ge0</name><reset-counters/></interface></interfaces></action>")
        self.assertEqual(session.rpc(action).error(), "data-missing")
        session.edit(interface("ge0"))
        self.assertEqual(len(session.rpc(action).values(INTERFACES, "reset-at")), 1)


class Notifications(AgentTest):
    def subscribe(self, session, more=""):
        return session.rpc(f'<create-subscription xmlns="{NOTIFICATION}">{more}</create-subscription>')

    def test_alarms_of_one_session_reach_another(self):
        one, two = self.open(), self.open()
        one.edit(interface("ge0"))
        self.assertTrue(self.subscribe(two).ok())
        one.edit(interface("ge0", "<enabled>false</enabled>"))
        alarm = two.notification()
        self.assertEqual(alarm.values(ALARMS, "interface"), ["ge0"])
        self.assertEqual(len(alarm.values(NOTIFICATION, "eventTime")), 1)
        one.edit(interface("ge0", "<enabled>true</enabled>"))
        self.assertIn("alarm-cleared", two.notification().text)
        self.assertIsNone(two.get_config().error())
        one.edit(interface("ge0", "<enabled>false</enabled>"))
        self.assertIn("link-down", two.notification().text)
        one.edit(f'<interfaces xmlns="{INTERFACES}" nc:operation="remove"/>')
        self.assertIn("alarm-cleared", two.notification().text)

    def test_line_ends_in_a_name_do_not_end_an_event(self):
        session = self.open()
        self.assertTrue(self.subscribe(session).ok())
        session.edit(interface("a\nb c\td", "<enabled>false</enabled>"))
        self.assertEqual(session.notification().values(ALARMS, "interface"), ["a\nb c\td"])

    def test_a_filter_selects_notifications(self):
        session = self.open()
        self.assertTrue(self.subscribe(
            session, f'<filter type="subtree"><alarm-cleared xmlns="{ALARMS}"/></filter>').ok())
        session.edit(interface("ge0", "<enabled>false</enabled>"))
        session.edit(interface("ge0", "<enabled>true</enabled>"))
        self.assertIn("alarm-cleared", session.notification().text)
        self.assertEqual(session.notifications, [])

    def test_events_do_not_grow_without_end_and_none_is_lost_when_they_begin_anew(self):
        one, two, three = self.open(), self.open(), self.open()
        self.assertTrue(self.subscribe(two).ok())
        one.edit(interface("ge0", "<enabled>false</enabled>"))
        self.assertEqual(two.notification().values(ALARMS, "interface"), ["ge0"])
        # Before the session has seen what was there until then.
        two.process.send_signal(signal.SIGSTOP)
        one.edit(interface("ge1", "<enabled>false</enabled>"))
        events = pathlib.Path(self.state) / "events"
        with events.open("ab") as file:
            file.write(b"\n" * 1024 * 1024 + b"2026-01-01T00:00:00Z <alarm half wri")
        one.edit(interface("ge2", "<enabled>false</enabled>"))
        self.assertLess(events.stat().st_size, 1000)
        one.edit(interface("ge3", "<enabled>false</enabled>"))
        two.process.send_signal(signal.SIGCONT)
        self.assertEqual([two.notification().values(ALARMS, "interface") for _ in range(3)],
                         [["ge1"], ["ge2"], ["ge3"]])
        self.assertTrue(self.subscribe(three).ok())
        with events.open("ab") as file:
            file.write(b"2026-01-01T00:00:00Z <alarm half wri")
        one.edit(interface("ge4", "<enabled>false</enabled>"))
        for session in (two, three):
            self.assertEqual(session.notification().values(ALARMS, "interface"), ["ge4"])

    def test_there_is_no_replay_no_other_stream_and_one_subscription(self):
        session = self.open()
        start = "<startTime>2026-01-01T00:00:00Z</startTime>"
        self.assertEqual(self.subscribe(session, start).error(), "operation-not-supported")
        self.assertEqual(self.subscribe(session, "<stream>x</stream>").error(), "bad-element")
        self.assertTrue(self.subscribe(session).ok())
        self.assertEqual(self.subscribe(session).error(), "operation-failed")


class Packages(AgentTest):
    def package(self, session, verb, name):
        return session.rpc(f'<{verb}-package xmlns="{PACKAGES}"><name>{name}</name></{verb}-package>')

    def test_a_package_comes_and_goes_while_sessions_are_open(self):
        one, two = self.open(), self.open()
        vlan = interface("ge0", f'<vlan xmlns="{VLANS}"><native>5</native></vlan>')
        two.rpc(f'<create-subscription xmlns="{NOTIFICATION}"/>')
        self.assertEqual(two.edit(vlan).error(), "unknown-namespace")
        self.assertTrue(self.package(one, "install", "router-vlans").ok())
        change = two.notification()
        self.assertIn("router-vlans", change.values(CHANGE, "added-capability")[-1])
        self.assertTrue(two.edit(vlan).ok())
        self.assertTrue(self.package(one, "remove", "router-vlans").ok())
        change = two.notification()
        self.assertIn("router-vlans", change.values(CHANGE, "deleted-capability")[-1])
        self.assertEqual(two.edit(vlan).error(), "unknown-namespace")

    def test_a_request_for_a_module_is_judged_by_what_is_there_when_its_turn_comes(self):
        session = self.open()
        vlan = ("<edit-config><target><running/></target><config>"
                + interface("ge0", f'<vlan xmlns="{VLANS}"><native>5</native></vlan>').replace("nc:", "")
                + "</config></edit-config>")
        package = f'<{{}}-package xmlns="{PACKAGES}"><name>router-vlans</name></{{}}-package>'
        steps = [(package.format("install", "install"), None), (vlan, None),
                 (package.format("remove", "remove"), None), (vlan, "unknown-namespace")] * 3
        data = b""
        for operation, _ in steps:
            text = f'<rpc message-id="a" xmlns="{BASE}">{operation}</rpc>'.encode()
            data += b"\n#%d\n%s\n##\n" % (len(text), text)
        session.write(data)
        self.assertEqual([session.answer().error() for _ in steps], [tag for _, tag in steps])

    def test_all_sessions_are_told_of_what_comes_goes_and_changes(self):
        sessions = [self.open(base=base) for base in ("1.0", "1.1", "1.1")]
        for session in sessions:
            session.rpc(f'<create-subscription xmlns="{NOTIFICATION}"/>')
        self.assertTrue(self.package(sessions[1], "install", "router-lite").ok())
        for session in sessions:
            told = session.notification()
            self.assertIn("urn:example:router-lite?", told.values(CHANGE, "added-capability")[0])
            modified = told.values(CHANGE, "modified-capability")
            self.assertTrue([c for c in modified if "router-system" in c and "=router-lite" in c])
            self.assertTrue([c for c in modified if ":yang-library:" in c])
        self.assertTrue(self.package(sessions[0], "remove", "router-lite").ok())
        for session in sessions:
            told = session.notification()
            self.assertIn("urn:example:router-lite?", told.values(CHANGE, "deleted-capability")[0])

    def test_data_of_a_package_waits_for_it(self):
        session = self.open()
        self.package(session, "install", "router-vlans")
        session.edit(interface("ge0", f'<vlan xmlns="{VLANS}"><native>5</native></vlan>'))
        self.package(session, "remove", "router-vlans")
        self.assertEqual(session.get_config().values(VLANS, "native"), [])
        self.assertTrue(session.edit(interface("ge1")).ok())
        self.package(session, "install", "router-vlans")
        self.assertEqual(session.get_config().values(VLANS, "native"), ["5"])

    def test_a_package_deviates_and_the_schema_is_as_before_afterwards(self):
        session = self.open()
        name = f'<system xmlns="{SYSTEM}"><host-name>{"a" * 20}</host-name></system>'
        self.package(session, "install", "router-lite")
        self.assertEqual(session.edit(name).error(), "invalid-value")
        hello = self.open()
        self.assertIn("deviations=router-lite",
                      [c for c in hello.capabilities if "module=router-system" in c][0])
        self.package(session, "remove", "router-lite")
        self.assertTrue(session.edit(name).ok())

    def test_a_package_in_several_files_comes_whole_and_has_no_one_text(self):
        session = self.open()
        self.assertTrue(self.package(session, "install", "router-qos").ok())
        config = "".join(f'<{name} xmlns="urn:example:router-qos"/>' for name in ("policers", "queues"))
        self.assertTrue(session.edit(config).ok())
        reply = session.rpc(f'<get-schema xmlns="{MONITORING}"><identifier>router-qos</identifier>'
                            "</get-schema>")
        self.assertEqual(reply.error(), "invalid-value")
        self.assertTrue(self.package(session, "remove", "router-qos").ok())

    def test_packages_bring_one_module_each_and_stay_while_others_need_them(self):
        module = ('<module name="{0}" xmlns="urn:ietf:params:xml:ns:yang:yin:1" xmlns:p="urn:{0}"'
                  ' xmlns:l="urn:low"><namespace uri="urn:{0}"/><prefix value="p"/>{1}</module>')
        folder = tempfile.mkdtemp(dir=self.state)
        for name, rest in (("low", ""), ("high", '<import module="low"><prefix value="l"/></import>')):
            with open(f"{folder}/{name}.yin", "w") as file:
                file.write(module.format(name, rest))
        session = self.open("--models", folder)

        def told(session):
            return sorted(name for name in session.rpc("<get/>").values(LIBRARY, "name")
                          if name in ("low", "high"))

        reply = self.package(session, "install", "high")
        self.assertEqual(reply.error("error-message"),
                         "The package needs low, which is not installed.")
        self.assertTrue(self.package(session, "install", "low").ok())
        self.assertTrue(self.package(session, "install", "high").ok())
        self.assertEqual(self.package(session, "remove", "low").error(), "in-use")
        for modules, gone in ((["high", "low"], "high"), (["low"], "low"), ([], None)):
            self.assertEqual(told(session), modules)
            self.assertEqual(told(self.open("--models", folder)), modules)
            if gone:
                self.assertTrue(self.package(session, "remove", gone).ok())

    def test_a_package_that_the_configuration_does_not_fit_is_refused(self):
        session = self.open()
        name = '<system xmlns="{}"><host-name>{}</host-name></system>'
        self.assertTrue(session.edit(name.format(SYSTEM, "a" * 20)).ok())
        reply = self.package(session, "install", "router-lite")
        self.assertEqual((reply.error(), reply.error("error-path")),
                         ("invalid-value", "/router-system:system/host-name"))
        self.assertTrue(session.edit(name.format(SYSTEM, "b" * 20)).ok())
        self.assertTrue(session.edit(name.format(SYSTEM, "c")).ok())
        self.assertTrue(self.package(session, "install", "router-lite").ok())

    def test_what_is_no_package_is_refused(self):
        session = self.open()
        self.assertEqual(self.package(session, "install", "nothing").error(), "operation-failed")
        self.assertEqual(self.package(session, "remove", "nothing").error(), "data-missing")
        self.assertEqual(self.package(session, "install", "router-system").error(), "data-exists")
        reply = self.package(session, "install", "a/b")
        self.assertEqual(reply.error("error-path"), "/router-packages:install-package/name")


if __name__ == "__main__":
    case.run()
