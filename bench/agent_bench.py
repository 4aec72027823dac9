#!/usr/bin/env python3
# SPDX-License-Identifier: BSD-3-Clause
"""What a session with the example agent costs: requests in a second, over one session and
over four, through pipes and through SSH; the time from the start to the hello; memory.

usage: agent_bench.py AGENT [SECONDS]
  AGENT    the program, of a release build
  SECONDS  how long each rate is measured, 3 by default
"""
import os
import pathlib
import re
import shlex
import shutil
import statistics
import subprocess
import sys
import tempfile
import threading
import time

SOURCE = pathlib.Path(__file__).resolve().parents[1]
sys.path[:0] = [str(SOURCE / "tests/agent_example"), str(SOURCE / "tests/agent_ssh")]
from client import BASE, Session, command, interface
from server import Server, why_not

ENTRIES = 50
STARTS = 20
COUNTED = 200  # Requests whose instructions are counted; the hello is spread over them.
# Functions that do not call one another.
PARTS = {"QM_AGENT_ParseMessage": "parse", "QM_AGENT_ValidateRequest": "validation",
         "OperationsRun": "operation"}
GET = "<get-config><source><running/></source>%s</get-config>"
ONE = ('<filter type="subtree"><interfaces xmlns="urn:example:router-interfaces"><interface>'
       "<name>eth7</name></interface></interfaces></filter>")
SYSTEM = "urn:example:router-system"
REQUESTS = [
    # The library checks the message and the agent does nothing.
    ("a ping", f'<ping xmlns="{SYSTEM}"><destination>192.0.2.1</destination></ping>'),
    ("get-config of one interface", GET % ONE),
    (f"get-config of {ENTRIES} interfaces", GET % ""),
    ("edit-config of one leaf", "<edit-config><target><running/></target><config>"
     f'<system xmlns="{SYSTEM}"><host-name>edge-1</host-name></system></config></edit-config>'),
    # The library refuses it.
    ("a ping with a wrong address", f'<ping xmlns="{SYSTEM}"><destination>x</destination></ping>'),
]


def answered(session, request):
    """Sends bytes and waits for the answer, without a look at it: the client is to cost little."""
    os.write(session.process.stdin.fileno(), request)
    end = b""
    while not end.endswith(b"\n##\n"):
        block = os.read(session.process.stdout.fileno(), 65536)
        assert block, "the agent has ended"
        end = end[-4:] + block


def rate(sessions, operation, seconds):
    """Requests in a second over all sessions, each with one after the other."""
    text = f'<rpc message-id="1" xmlns="{BASE}">{operation}</rpc>'.encode()
    request = b"\n#%d\n%s\n##\n" % (len(text), text)
    counts = [0] * len(sessions)
    begin = time.monotonic()

    def run(index):
        while time.monotonic() < begin + seconds:
            answered(sessions[index], request)
            counts[index] += 1

    threads = [threading.Thread(target=run, args=(index,)) for index in range(len(sessions))]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    return sum(counts) / (time.monotonic() - begin)


def measure_rates(words, seconds):
    """Per request, the rates over one session and over four."""
    sessions = [Session(words) for _ in range(4)]
    try:
        for index in range(ENTRIES):
            port = interface(f"eth{index}", "<description>a port</description>")
            assert sessions[0].edit(port).ok()
        for session in sessions:
            os.set_blocking(session.process.stdout.fileno(), True)
        return {title: (rate(sessions[:1], operation, seconds), rate(sessions, operation, seconds))
                for title, operation in REQUESTS}
    finally:
        for session in sessions:
            session.leave()


def hello_time(words):
    """The median of the milliseconds from the start to the whole hello."""
    times = []
    for _ in range(STARTS):
        begin = time.monotonic()
        session = Session(words)
        times.append(1000 * (time.monotonic() - begin))
        session.leave()
    return statistics.median(times)


def memory(words):
    """What each of four sessions has, in KiB: its share of all pages, and pages of its own."""
    sessions = [Session(words) for _ in range(4)]
    try:
        for session in sessions:
            for _, operation in REQUESTS:
                session.rpc(operation)
        fields = {}
        rollup = pathlib.Path(f"/proc/{sessions[0].process.pid}/smaps_rollup").read_text()
        for line in rollup.splitlines()[1:]:
            name, value = line.split(":")
            fields[name] = int(value.split()[0])
        return fields["Pss"], fields["Private_Clean"] + fields["Private_Dirty"]
    finally:
        for session in sessions:
            session.leave()


def instructions(words, operation):
    """Of a request's instructions, by function with all that it calls; the kernel's are none."""
    with tempfile.TemporaryDirectory() as folder:
        dump = f"{folder}/dump"
        counting = ["valgrind", "--quiet", "--tool=callgrind", "--toggle-collect=SessionServe"]
        session = Session([*counting, f"--callgrind-out-file={dump}", *words])
        for _ in range(COUNTED):
            session.rpc(operation)
        session.end()
        listing = subprocess.run(["callgrind_annotate", "--inclusive=yes", "--threshold=100", dump],
                                 capture_output=True, text=True, check=True).stdout
    found = {}
    for name in "SessionServe", *PARTS:
        match = re.search(rf"^ *([\d,]+) \(.*:{name}\b", listing, re.M)
        found[name] = int(match[1].replace(",", "")) // COUNTED if match else 0
    return found


def print_rates(rates):
    print("| request | pipes, 1 session | 4 sessions | SSH, 1 session | 4 sessions | SSH's share |")
    print("| --- | --- | --- | --- | --- | --- |")
    for title, _ in REQUESTS:
        pipes, ssh = rates["pipes"][title], rates["ssh"][title] if "ssh" in rates else (0, 0)
        share = f"{100 * (1 - ssh[0] / pipes[0]):.0f} %" if ssh[0] else "-"
        values = " | ".join(f"{value:,.0f}" for value in pipes + ssh)
        print(f"| {title} | {values} | {share} |")


def print_instructions(words):
    print("\n| request | instructions | " + " | ".join(PARTS.values()) + " | rest |")
    print("| --- | --- |" + " --- |" * (len(PARTS) + 1))
    for title, operation in REQUESTS:
        found = instructions(words, operation)
        whole = found.pop("SessionServe")
        parts = [*found.values(), whole - sum(found.values())]
        shares = " | ".join(f"{100 * part / whole:.0f} %" for part in parts)
        print(f"| {title} | {whole:,} | {shares} |")


def main(agent, seconds):
    with tempfile.TemporaryDirectory() as folder:
        words = command(agent, str(SOURCE), folder)
        rates = {"pipes": measure_rates(words, seconds)}
        hello = {"pipes": hello_time(words)}
        share, own = memory(words)
        reason = why_not()
        if reason:
            print("without SSH:", reason)
        else:
            server = Server(shlex.quote(agent), f"{folder}/ssh")
            try:
                rates["ssh"] = measure_rates(server.client, seconds)
                hello["ssh"] = hello_time(server.client)
            finally:
                server.stop()
        print_rates(rates)
        for way, milliseconds in hello.items():
            print(f"\nfrom start to hello, {way}: {milliseconds:.0f} ms", end="")
        print(f"\nmemory of a session among four: {share:,} KiB, of them {own:,} KiB its own")
        if shutil.which("valgrind"):
            print_instructions(words)


if __name__ == "__main__":
    main(str(pathlib.Path(sys.argv[1]).resolve()), float(sys.argv[2]) if sys.argv[2:] else 3)
