# SPDX-License-Identifier: BSD-3-Clause
"""The example agent under an SSH server on a loopback port, as scripts/agent.sh starts it."""
import importlib.util
import os
import pathlib
import pwd
import shlex
import shutil
import subprocess
import tempfile
import time

SOURCE = pathlib.Path(__file__).resolve().parents[2]
LIMIT = 30
SKIPPED = 77  # The exit status of a test that cannot be run here.


class Server:
    """Runs from its making to stop(). `agent` is a command of the shell."""

    def __init__(self, agent, folder):
        self.folder = pathlib.Path(folder)
        self.script = subprocess.Popen(
            [SOURCE / "scripts/agent.sh", "0", self.folder], stdin=subprocess.DEVNULL,
            stdout=subprocess.PIPE, text=True, env={**os.environ, "QMODEL_AGENT": agent})
        lines = [self.script.stdout.readline().rstrip("\n") for _ in range(4)]
        if not lines[3].startswith("ssh "):
            self.script.wait(LIMIT)
            raise RuntimeError(f"agent.sh ended with {self.script.returncode}: {lines}")
        self.port = int(lines[0].removeprefix("port "))
        self.user = lines[1].removeprefix("user ")
        self.key = lines[2].removeprefix("key ")
        self.client = shlex.split(lines[3])

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

    def stop(self):
        self.script.terminate()
        self.script.wait(LIMIT)
        self.script.stdout.close()
        end = time.monotonic() + LIMIT
        while self.processes() and time.monotonic() < end:
            time.sleep(0.02)
        assert not self.processes(), "processes are left"


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
        server = Server("true", folder)
        try:
            # The command of the client's line, with another one in the place of the subsystem.
            login = [word for word in server.client[:-1] if word != "-s"] + ["exit 7"]
            done = subprocess.run(["timeout", str(LIMIT), *login], stdin=subprocess.DEVNULL,
                                  capture_output=True, text=True)
        finally:
            server.stop()
    return None if done.returncode == 7 else f"no login: {done.stderr.strip()}"
