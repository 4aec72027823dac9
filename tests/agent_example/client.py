# SPDX-License-Identifier: BSD-3-Clause
"""A NETCONF client for the tests: speaks to the agent over pipes, without SSH."""
import os
import pathlib
import select
import subprocess
import time
import xml.etree.ElementTree as ElementTree

BASE = "urn:ietf:params:xml:ns:netconf:base:1.0"
INTERFACES = "urn:example:router-interfaces"
SYSTEM = "urn:example:router-system"
NOTIFICATION = "urn:ietf:params:xml:ns:netconf:notification:1.0"
MONITORING = "urn:ietf:params:xml:ns:yang:ietf-netconf-monitoring"
LIMIT = 30  # seconds until an answer that does not come is a failure


class Ended(Exception):
    """The agent has ended the session."""


def command(agent, source, state):
    """The command line of the agent, with the models of the example router."""
    words = [agent, state, "--models", f"{source}/examples/agent/models",
             "--models", f"{source}/examples/models"]
    for module in ("router-interfaces", "router-system", "router-alarms"):
        words += ["--module", module]
    return words


class Reply:
    def __init__(self, text):
        self.text = text
        self.root = ElementTree.fromstring(text)

    def ok(self):
        return self.root.find(f"{{{BASE}}}ok") is not None

    def error(self, name="error-tag"):
        """A text of the rpc-error; None when there is no error."""
        found = self.root.find(f".//{{{BASE}}}rpc-error//{{{BASE}}}{name}")
        return None if found is None else found.text

    def values(self, namespace, name):
        return [e.text for e in self.root.iter(f"{{{namespace}}}{name}")]


class Session:
    """One session with an agent of its own. base is "1.0" or "1.1"."""

    def __init__(self, words, base="1.1", hello=True, environment=None):
        self.process = subprocess.Popen(words, stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                        stderr=subprocess.PIPE, env=environment)
        os.set_blocking(self.process.stdout.fileno(), False)
        self.buffer = b""
        self.chunked = False
        self.number = 0
        self.notifications = []
        try:
            self.hello = Reply(self.receive())
        except Ended:
            self.leave()
            raise
        self.id = int(self.hello.values(BASE, "session-id")[0])
        self.capabilities = self.hello.values(BASE, "capability")
        if hello:
            self.greet(base)

    def greet(self, base):
        self.send(f'<hello xmlns="{BASE}"><capabilities><capability>'
                  f"urn:ietf:params:netconf:base:{base}</capability></capabilities></hello>")
        self.chunked = base == "1.1"

    def write(self, data):
        self.process.stdin.write(data)
        self.process.stdin.flush()

    def send(self, text):
        data = text.encode()
        self.write(b"\n#%d\n%s\n##\n" % (len(data), data) if self.chunked else data + b"]]>]]>")

    def more(self, limit):
        ready, _, _ = select.select([self.process.stdout], [], [], limit)
        if not ready:
            raise TimeoutError("no answer")
        data = self.process.stdout.read()
        if not data:
            raise Ended()
        self.buffer += data

    def receive(self, limit=LIMIT):
        """The next message, whatever it is."""
        end = time.monotonic() + limit
        while True:
            message = self.take_chunks() if self.chunked else self.take_marked()
            if message is not None:
                return message.decode()
            self.more(max(0, end - time.monotonic()))

    def take_marked(self):
        message, mark, rest = self.buffer.partition(b"]]>]]>")
        if not mark:
            return None
        self.buffer = rest
        return message

    def take_chunks(self):
        at, parts = 0, []
        while True:
            line = self.buffer.find(b"\n", at + 1)
            if line < 0:
                return None
            assert self.buffer[at:at + 2] == b"\n#", self.buffer[at:at + 20]
            size = self.buffer[at + 2:line]
            at = line + 1
            if size == b"#":
                self.buffer = self.buffer[at:]
                return b"".join(parts)
            parts.append(self.buffer[at:at + int(size)])
            at += int(size)

    def answer(self, limit=LIMIT):
        """The next answer; notifications that come before it are kept."""
        while True:
            reply = Reply(self.receive(limit))
            if reply.root.tag == f"{{{BASE}}}rpc-reply":
                return reply
            self.notifications.append(reply)

    def notification(self, limit=LIMIT):
        if not self.notifications:
            self.notifications.append(Reply(self.receive(limit)))
        return self.notifications.pop(0)

    def rpc(self, operation):
        self.number += 1
        self.send(f'<rpc message-id="{self.number}" xmlns="{BASE}">{operation}</rpc>')
        reply = self.answer()
        assert reply.root.get("message-id") == str(self.number), reply.text
        return reply

    def edit(self, config, options=""):
        return self.rpc(f"<edit-config><target><running/></target>{options}"
                        f'<config xmlns:nc="{BASE}">{config}</config></edit-config>')

    def get_config(self, filter_text=None):
        part = "" if filter_text is None else f'<filter type="subtree">{filter_text}</filter>'
        return self.rpc(f"<get-config><source><running/></source>{part}</get-config>")

    def end(self):
        """Closes the pipes and gives the exit status and what was said on standard error."""
        self.process.stdin.close()
        status = self.process.wait(LIMIT)
        errors = self.process.stderr.read().decode()
        self.process.stdout.close()
        self.process.stderr.close()
        return status, errors

    def leave(self):
        """Ends what is left of the session."""
        self.process.kill()
        self.process.wait(LIMIT)
        for pipe in (self.process.stdin, self.process.stdout, self.process.stderr):
            try:
                pipe.close()
            except BrokenPipeError:
                pass


def interface(name, rest="", operation=None, kind="ethernet"):
    """An interface as configuration."""
    attribute = "" if operation is None else f' nc:operation="{operation}"'
    kind_leaf = "" if kind is None else (
        f'<type xmlns:t="urn:example:router-types">t:{kind}</type>')
    return (f'<interfaces xmlns="{INTERFACES}"><interface{attribute}><name>{name}</name>'
            f"{kind_leaf}{rest}</interface></interfaces>")


def source_folder():
    return str(pathlib.Path(__file__).resolve().parents[2])
