#!/usr/bin/env python3
# SPDX-License-Identifier: BSD-3-Clause
"""The style check itself: what each rule finds and what it lets pass."""
import pathlib
import sys
import unittest

sys.dont_write_bytecode = True
sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "scripts"))
import check_style  # noqa: E402
import measure_structure  # noqa: E402

# (rule, path, text, the lines that are found)
ROWS = [
    ("idea", "a/a.cc", "// SPDX-License-Identifier: X\n// The idea.\n#include <a>\n", []),
    ("idea", "a/a.cc", "// SPDX-License-Identifier: X\n#include <a>\n// Late.\n", [1]),
    ("idea", "a/a.h", "#pragma once\n#include <a>\n", []),
    ("braces", "a/a.cc", "void F() {\n  if (a) return;\n  if (b) {\n    G();\n  }\n}\n", []),
    ("braces", "a/a.cc", "void F() {\n  for (;;)\n    G();\n  if (a) {\n  } else\n    G();\n}\n", [2, 5]),
    ("braces", "a/a.cc", "void F() {\n  if (a &&\n      b) {\n    G();\n  }\n  while (Next())\n    ;\n}\n", []),
    ("unused", "a/a.cc", "int F(void* /*a*/, const char* b, uint32_t c) {\n  return c;\n}\n", []),
    ("unused", "a/a.cc", "int F(void*, uint32_t c) {\n  static_cast<void>(c);\n  return 0;\n}\n", [1, 2]),
    ("unused", "a/a.cc", "int F(int a) {\n  static_cast<void>(G(a));\n  return 0;\n}\n", []),
    ("status", "a/a.cc", "int F() {\n  return a ? uint32_t{QM_INVALID} : n;\n}\n", []),
    ("status", "a/a.cc", "int F() {\n  return a ? static_cast<uint32_t>(QM_INVALID) : n;\n}\n", [2]),
    ("text", "a/a.cc", "int F() {\n  return RTK_StrLen(a) + std::memcmp(a, b, 1);\n}\n", []),
    ("text", "a/a.cc", "int F() {\n  return std::strlen(a) + strcmp(a, b);\n  memcpy(a, b, 1);\n}\n",
     [2, 2, 3]),
    ("text", "a/a.cc", "int F() {\n  return strnlen(a, 1);\n  strncpy(a, b, 1);\n  free(strdup(a));\n}\n",
     [2, 3, 4]),
    ("text", "a/a.cc", "int F() {\n  return RTK_StrNLen(a, 1) + std::strtoul(a, b, 10) + strcpy_s(a, 1, b);\n}\n",
     []),
    ("text", "platform/a.cc", "int F() {\n  return std::strlen(a);\n}\n", []),
    ("linkage", "a/a.cc", "// extern \"C\" { }\nint F() { return 0; }\n", []),
    ("linkage", "a/a.cc", "extern \"C\" {\nint F() { return 0; }\n}\n", [1]),
    ("records", "a/a.cc", "namespace {\nstruct A {\n  int a;\n};\n}\nstruct Opaque {\n  int a;\n};\n", []),
    ("records", "a/a.cc", "struct A {\n  int a;\n};\nenum B : int { C };\n", [1, 4]),
    ("records", "a/a.cc", "static struct Opaque* F(struct Opaque* a) {\n  return a;\n}\n", []),
    ("constants", "a/a.cc", "constexpr int kA = 1;\nstatic constexpr int F() { return 1; }\n", []),
    ("constants", "a/a.cc", "static constexpr int kA = 1;\n", [1]),
    ("comment", "a/a.h", "// One.\nint A(int a);\nint B(int a);\n\nint C(int a);  // three\n", []),
    ("comment", "a/a.h", "// One.\nint A(int a);\n\nint B(int a);\n", [4]),
]


class Rules(unittest.TestCase):
    def test_each_rule_finds_its_faults_and_nothing_else(self):
        for rule, path, text, lines in ROWS:
            with self.subTest(rule=rule, text=text):
                file = measure_structure.File(path, text)
                more = [{"Opaque"}] if rule == "records" else []
                found = [line for line, _ in check_style.RULES[rule](file, *more)]
                self.assertEqual(found, lines)

    def test_every_rule_has_a_row_that_passes_and_one_that_fails(self):
        for rule in check_style.RULES.keys() - {"own-source"}:
            self.assertIn([], [row[3] for row in ROWS if row[0] == rule], rule)
            self.assertTrue(any(row[3] for row in ROWS if row[0] == rule), rule)

    def test_a_prototype_belongs_to_the_header_of_its_source(self):
        tree = measure_structure.Tree({
            "cmake/layers.txt": "a\n",
            "a/a.h": "int A(int a);\nint B(int a);\nint Nowhere(int a);\n",
            "a/a.cc": "int A(int a) { return a; }\n",
            "a/b.cc": "int B(int a) { return a; }\n",
        })
        header = next(file for file in tree.files if file.path.suffix == ".h")
        found = list(check_style.own_source(header, tree.home))
        self.assertEqual([(line, what.split()[0]) for line, what in found], [(2, "B")])


if __name__ == "__main__":
    unittest.main()
