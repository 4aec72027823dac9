#!/usr/bin/env python3
# SPDX-License-Identifier: BSD-3-Clause
"""Holds the generated manual pages against the promise of the map: every function has a
section with what it gives, and groff, where it is there, finds nothing odd.
check_man.py SOURCE_DIR"""
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

source = pathlib.Path(sys.argv[1])
promised = set(re.findall(r"^    (QM\w+);$", (source / "libqmodel.map").read_text(), re.M))
faults = []
described = set()
with tempfile.TemporaryDirectory() as folder:
    subprocess.run([sys.executable, source / "scripts/man_pages.py", source / "include", folder, "1"],
                   check=True)
    for page in sorted(pathlib.Path(folder).iterdir()):
        text = page.read_text()
        if not text.isascii():
            faults.append(f"{page.name}: what is no ASCII cannot be shown everywhere")
        sections = re.split(r"^\.SS ", text, flags=re.M)[1:]
        for section in sections:
            name = section.split("\n", 1)[0]
            described.add(name)
            if "Thread safety" not in section:
                faults.append(f"{page.name}: {name} says nothing of threads")
            if re.search(r"(?<!\S)@(?:p|param|return|retval|see|par|code|endcode)\b", section):
                faults.append(f"{page.name}: {name} has a command that was not understood")
        if shutil.which("groff"):
            odd = subprocess.run(["groff", "-man", "-Tutf8", "-ww", page], capture_output=True,
                                 text=True).stderr
            faults += [f"{page.name}: {line}" for line in odd.splitlines()]
faults += [f"without a section: {name}" for name in sorted(promised - described)]
faults += [f"no function of the promise: {name}" for name in sorted(described - promised)]
if len(promised) < 100:
    faults.append("the map was not understood")
print("\n".join(faults))
sys.exit(1 if faults else 0)
