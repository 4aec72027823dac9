#!/usr/bin/env python3
# SPDX-License-Identifier: BSD-3-Clause
"""The measuring of the structure, on a tree of six small files."""
import pathlib
import sys
import unittest

sys.dont_write_bytecode = True
sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "scripts"))
import measure_structure  # noqa: E402

SOURCES = {
    "cmake/layers.txt": "# bottom up\nlow\nhigh\n",
    "low/text.h": """// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// Counts; see Above() for more.
QM_BEGIN_INTERNAL_DECLS
// How many there are.
uint32_t Count(const char* text);
uint32_t CountAll(const char* text);

void Elsewhere(void);
int Behind(int a,
           int b);  // with a word
void NowhereDefined();
QM_END_INTERNAL_DECLS
inline int Twice(int a) { return 2 * a; }
extern const int g_table[3];
using Func = uint32_t (*)(int a);
static_assert(sizeof(int) == 4, "a ; and a { in a text");
""",
    "low/text.cc": """// Calls Above() in a comment only.
#include "low/text.h"
namespace {
struct Row { int id; };
int Hidden(int a) { return a; }
}  // namespace
static uint32_t Above2(const char* text) { return *text; }
uint32_t Count(const char* text) {
  const char c = '{';
  Row row = {Hidden(c)};
  row.Above(1);
  return Above(text) + Above2("Beyond(");
}
template <auto F>
uint32_t CountAll(const char* text) { return F(text); }
int Behind(int a, int b) { return Table<Beyond>(a, b); }
""",
    "low/other.cc": "void Elsewhere(void) {}\n",
    "high/above.h": "#pragma once\nuint32_t Above(const char* text);\nint Beyond(int a);\n",
    "high/above.cc": """#include "high/above.h"
extern "C" {
uint32_t Above(const char* text) { return Count(text); }
int Beyond(int a) { return a; }
}
""",
    "outside/any.cc": "int Above(int a) { return a; }\n",
}


class Measure(unittest.TestCase):
    def setUp(self):
        self.tree = measure_structure.Tree(SOURCES)
        self.figures = dict(self.tree.figures())

    def test_only_the_listed_folders_count(self):
        self.assertEqual(self.figures["files without public headers"], 5)
        self.assertEqual(self.figures["headers"], 2)

    def test_median_is_of_all_files(self):
        # 1, 3, 5, 18 and 17 lines.
        self.assertEqual(self.figures["median lines of a file"], 5)

    def test_functions_called_upwards_are_found_by_name(self):
        self.assertEqual(self.tree.upward_calls(),
                         {("low", "high", "Above"), ("low", "high", "Beyond")})
        self.assertEqual(self.figures["functions called upwards"], 2)
        self.assertEqual(self.figures["pairs of layers with such calls"], 1)

    def test_prototypes_are_compared_with_their_source(self):
        # Count, CountAll, Behind, Elsewhere, Above and Beyond; one stands elsewhere.
        self.assertEqual(self.figures["internal prototypes"], 6)
        self.assertEqual(self.figures["implemented in a file of another name"], "17 %")

    def test_comments_cover_a_prototype_or_its_group(self):
        # Of seven: Count and Behind; CountAll and NowhereDefined stand below one.
        self.assertEqual(self.figures["prototypes with a comment of their own"], "29 %")
        self.assertEqual(self.figures["with one of their own or of their group"], "57 %")

    def test_headers_without_a_comment_are_counted(self):
        self.assertEqual(self.figures["headers with prototypes and no comment at any"], 1)
        self.assertEqual(self.figures["headers without a word"], 1)

    def test_a_licence_line_is_no_comment(self):
        file = measure_structure.File("low/a.h", "// SPDX-License-Identifier: X\nint A();\n")
        self.assertFalse(file.has_word())

    def test_the_former_heights_split_one_folder(self):
        tree = measure_structure.Tree({
            "xpath/token.cc": "int Token(int a) { return a; }\n",
            "xpath/eval.cc": "int Eval(int a) { return Token(a); }\n",
            "types/type.cc": "int Type(int a) { return Token(a) + Eval(a); }\n",
        })
        self.assertEqual(tree.upward_calls(), {("types", "xpath", "Eval")})


if __name__ == "__main__":
    unittest.main()
