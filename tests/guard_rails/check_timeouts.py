#!/usr/bin/env python3
# SPDX-License-Identifier: BSD-3-Clause
"""Checks that every test of a build tree has a time limit.

check_timeouts.py CTEST BUILD_DIR

A hang must end as a failure: each test has the property TIMEOUT, of at most five
minutes, or four times that in a build with a sanitizer or for coverage.
"""
import json
import os
import re
import subprocess
import sys

LIMIT = 300
FACTOR_OF_SLOW_BUILDS = 4


def limit_of(cache):
    """The limit for the build with this text of a CMakeCache.txt."""
    sanitized = re.search(r"^QMODEL_SANITIZE:\w+=\S", cache, re.M)
    covered = re.search(r"^CMAKE_C(XX)?_FLAGS:\w+=.*--coverage", cache, re.M)
    return LIMIT * FACTOR_OF_SLOW_BUILDS if sanitized or covered else LIMIT


def complaints(tests, limit):
    """One line for each test without a limit, or with too long a one."""
    lines = []
    for test in tests:
        # Stands for a program that is not built, and fails at once.
        if test["name"].endswith("_NOT_BUILT"):
            continue
        properties = {p["name"]: p["value"] for p in test.get("properties", [])}
        timeout = properties.get("TIMEOUT")
        if timeout is None:
            lines.append(f"{test['name']} has no TIMEOUT")
        elif not 0 < float(timeout) <= limit:
            lines.append(f"{test['name']} has a TIMEOUT of {timeout}, more than 0 to {limit} is right")
    return lines


def main():
    ctest, build = sys.argv[1:]
    with open(os.path.join(build, "CMakeCache.txt"), encoding="utf-8") as cache:
        limit = limit_of(cache.read())
    shown = subprocess.run([ctest, "--test-dir", build, "--show-only=json-v1"], check=True,
                           stdout=subprocess.PIPE).stdout
    tests = json.loads(shown)["tests"]
    lines = complaints(tests, limit)
    print("\n".join(lines) or f"{len(tests)} tests, each with at most {limit} seconds")
    return 1 if lines or not tests else 0


if __name__ == "__main__":
    sys.exit(main())
