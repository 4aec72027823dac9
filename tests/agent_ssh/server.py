# SPDX-License-Identifier: BSD-3-Clause
"""The example agent under an SSH server on a loopback port, as scripts/agent.sh starts it."""
import importlib.util
import os
import pathlib
import pwd
import shlex
import shutil
import signal
import subprocess
import tempfile
import time

SOURCE = pathlib.Path(__file__).resolve().parents[2]
LIMIT = 30
SKIPPED = 77  # The exit status of a test that cannot be run here.
NO_LOGIN = 4  # The exit status of the script when the server does not let the user in.


class NotStarted(Exception):
    """The script has ended at once: its exit status and what it said."""


class Server:
    """Runs from its making to stop(). `agent` is a command of the shell."""

    def __init__(self, agent, folder, port=0, **options):
        """`options` are those of the script's process."""
        environment = {**os.environ, "QMODEL_AGENT": agent, **options.pop("environment", {})}
        self.script = subprocess.Popen(
            [SOURCE / "scripts/agent.sh", str(port), str(folder)], stdin=subprocess.DEVNULL,
            stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True, env=environment, **options)
        lines = [self.script.stdout.readline().rstrip("\n") for _ in range(4)]
        if not lines[3].startswith("ssh "):
            self.script.stdout.close()
            with self.script.stderr as errors:
                raise NotStarted(self.script.wait(LIMIT), errors.read())
        self.port = int(lines[0].removeprefix("port "))
        self.user = lines[1].removeprefix("user ")
        self.key = lines[2].removeprefix("key ")
        self.client = shlex.split(lines[3])
        self.folder = pathlib.Path(self.key).parent

    def processes(self):
        """The processes that have the folder in their command line."""
        found = []
        for path in pathlib.Path("/proc").glob("[0-9]*/cmdline"):
            try:
                if str(self.folder).encode() in path.read_bytes():
                    found.append(int(path.parent.name))
            except OSError:
                pass
        return found

    def stop(self, number=signal.SIGTERM):
        """Gives the script's exit status."""
        self.script.send_signal(number)
        status = self.script.wait(LIMIT)
        self.script.stdout.close()
        self.script.stderr.close()
        end = time.monotonic() + LIMIT
        while self.processes() and time.monotonic() < end:
            time.sleep(0.02)
        assert not self.processes(), "processes are left"
        return status


def why_not():
    """What keeps a client from a login here, or None."""
    for program in "sshd", "ssh", "ssh-keygen":
        if not shutil.which(program, path=os.environ["PATH"] + ":/usr/sbin:/sbin"):
            return f"there is no {program}"
    if not importlib.util.find_spec("ncclient"):
        return "there is no python3-ncclient"
    try:
        pwd.getpwuid(os.getuid())
    except KeyError:
        return "the present user has no name"
    with tempfile.TemporaryDirectory() as folder:
        try:
            Server("true", folder).stop()
        except NotStarted as error:
            status, said = error.args
            if status != NO_LOGIN:
                raise
            return said.strip()
    return None
