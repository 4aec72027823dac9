#!/usr/bin/env python3
# SPDX-License-Identifier: BSD-3-Clause
"""The check of the folders' READMEs itself: what it allows and what it finds."""
import pathlib
import sys
import unittest

sys.dont_write_bytecode = True
sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
import check_readmes  # noqa: E402

FILES = {"a.cc", "a.h", "b.h", "a_long.cc", "lint_x.cc", "lint_y.cc"}
GOOD = "# f/: it\n\nIn reading order: `a` with `_long`, `b.h`\n(it), `lint_*`.\n\nUses: `z/`.\n"


class Faults(unittest.TestCase):
    def test_good_page_has_none(self):
        self.assertEqual([], check_readmes.faults(GOOD, FILES))

    def test_file_that_is_not_named_is_found(self):
        self.assertEqual(["does not name c.h"], check_readmes.faults(GOOD, FILES | {"c.h"}))
        self.assertEqual(
            ["does not name b.cc"], check_readmes.faults(GOOD, FILES | {"b.cc"}))

    def test_name_without_file_is_found(self):
        for gone in ("b.h", "a_long.cc"):
            with self.subTest(gone=gone):
                self.assertEqual(1, len(check_readmes.faults(GOOD, FILES - {gone})))
        self.assertEqual(
            ["names `lint_*`, which is no file"],
            check_readmes.faults(GOOD, FILES - {"lint_x.cc", "lint_y.cc"}))

    def test_page_without_reading_order_is_found(self):
        self.assertEqual(1, len(check_readmes.faults("# f/\n\nMay include: `a`.\n", FILES)))


if __name__ == "__main__":
    unittest.main()
