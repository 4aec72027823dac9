#!/usr/bin/env python3
# SPDX-License-Identifier: BSD-3-Clause
"""The include check itself: what it allows and what it finds; and that the one list of
folders that cannot be read from cmake/layers.txt agrees with it."""
import pathlib
import re
import sys
import unittest

sys.dont_write_bytecode = True
sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "scripts"))
import check_includes  # noqa: E402

ROOT = pathlib.Path(__file__).resolve().parents[2]

ALLOWED = [
    ("context/dict.cc", '"', "context/dict.h"),
    ("context/dict.cc", '"', "platform/string.h"),
    ("context/records.h", "<", "qmodel/schema.h"),
    ("schema/node.cc", '"', "types/type.h"),
    ("xpath/eval.cc", '"', "schema/node.h"),
    ("yin/prefix_rewrite.cc", '"', "xpath/token.h"),
    ("loader/unload.cc", '"', "coupling/couple_augment.h"),
    ("data/bind.cc", '"', "xpath/eval.h"),
    ("platform/avl.cc", "<", "boost/intrusive/avltree_algorithms.hpp"),
    ("client/main.cc", "<", "qmodel/qmodel.h"),
    ("client/cmd_lint.cc", '"', "compiler/lint_job.h"),
    ("compiler/job.cc", '"', "compiler/lint/lint.h"),
    ("compiler/spelling/compile.cc", '"', "compiler/reading/records.h"),
]

FORBIDDEN = [
    ("platform/stack.cc", '"', "context/memory.h"),
    ("context/context.cc", '"', "schema/records.h"),
    ("types/type.cc", '"', "schema/node.h"),
    ("types/type.cc", '"', "xpath/eval.h"),
    ("schema/node.cc", '"', "coupling/couple_augment.h"),
    ("types/type.cc", '"', "xpath/token.h"),
    ("schema/lookup.cc", '"', "xpath/token.h"),
    ("yin/dispatch.cc", '"', "coupling/couple_augment.h"),
    ("xpath/eval.cc", '"', "data/bind.h"),
    ("context/dict.cc", "<", "context/dict.h"),
    ("context/dict.cc", "<", "boost/intrusive/avltree.hpp"),
    ("client/main.cc", '"', "context/dict.h"),
    ("compiler/words/keyword.cc", '"', "yin/keyword.h"),
    ("compiler/reading/report.cc", '"', "compiler/lint/lint_pass.h"),
    ("compiler/lint/lint.cc", '"', "compiler/job.h"),
    ("include/qmodel/context.h", '"', "context/records.h"),
]


class Judge(unittest.TestCase):
    def test_allowed_includes_pass(self):
        for row in ALLOWED:
            with self.subTest(row=row):
                self.assertIsNone(check_includes.judge(*row))

    def test_forbidden_includes_are_found(self):
        for row in FORBIDDEN:
            with self.subTest(row=row):
                self.assertIsNotNone(check_includes.judge(*row))

    def test_include_lines_are_recognised(self):
        for line, target in [('#include "a/b.h"', "a/b.h"), ("  #  include <c/d.h>", "c/d.h")]:
            self.assertEqual(check_includes.INCLUDE.match(line).group(2), target)
        self.assertIsNone(check_includes.INCLUDE.match('// see #include "a/b.h"'))

class ClangTidy(unittest.TestCase):
    """clang-tidy reads its filter of headers from its own file alone."""

    def test_header_filter_names_every_folder_and_no_former_one(self):
        settings = (ROOT / ".clang-tidy").read_text(encoding="utf-8")
        folders = re.search(r"^HeaderFilterRegex: '\(([^)]*)\)/", settings, re.M).group(1).split("|")
        for folder in check_includes.FOLDERS:
            with self.subTest(folder=folder):
                self.assertIn(folder, folders)
        for folder in folders:
            with self.subTest(folder=folder):
                self.assertTrue((ROOT / folder).is_dir())


if __name__ == "__main__":
    unittest.main()
