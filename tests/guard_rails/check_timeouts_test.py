#!/usr/bin/env python3
# SPDX-License-Identifier: BSD-3-Clause
"""check_timeouts.py finds the tests that it is there for."""
import os
import sys

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import check_timeouts  # noqa: E402


def test(name, **properties):
    return {"name": name, "properties": [{"name": k, "value": v} for k, v in properties.items()]}


def expect(right, found):
    if right != found:
        sys.exit(f"expected {right!r}, found {found!r}")


NAMED = [test("none"), {"name": "bare"}, test("zero", TIMEOUT=0.0), test("long", TIMEOUT=301.0),
         test("right", TIMEOUT=300.0), test("other", COST=1.0), test("program_NOT_BUILT")]
expect(["none", "bare", "zero", "long", "other"],
       [line.split()[0] for line in check_timeouts.complaints(NAMED, 300)])
expect([], check_timeouts.complaints([test("long", TIMEOUT=1200.0)], 1200))

expect(300, check_timeouts.limit_of("QMODEL_SANITIZE:STRING=\nCMAKE_CXX_FLAGS:STRING=-O2\n"))
expect(1200, check_timeouts.limit_of("QMODEL_SANITIZE:STRING=address,undefined\n"))
expect(1200, check_timeouts.limit_of("CMAKE_CXX_FLAGS:STRING=-O0 --coverage\n"))
