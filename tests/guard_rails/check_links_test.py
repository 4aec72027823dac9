#!/usr/bin/env python3
# SPDX-License-Identifier: BSD-3-Clause
"""The check of links itself: what it follows and what it finds."""
import pathlib
import sys
import tempfile
import unittest

sys.dont_write_bytecode = True
sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
import check_links  # noqa: E402


class Broken(unittest.TestCase):
    def links_broken_in(self, text):
        with tempfile.TemporaryDirectory() as name:
            folder = pathlib.Path(name)
            (folder / "b.md").write_text("# B\n\n## What is `lost`, and why\n")
            (folder / "a.md").write_text("# A one\n\n" + text)
            return check_links.broken(folder / "a.md")

    def test_links_that_lead_somewhere_pass(self):
        text = "[b](b.md), [c](b.md#what-is-lost-and-why), [d](#a-one), [e](https://e.example/)"
        self.assertEqual([], self.links_broken_in(text))

    def test_links_that_lead_nowhere_are_found(self):
        for link in ("c.md", "b.md#lost", "#b"):
            with self.subTest(link=link):
                self.assertEqual([link], self.links_broken_in("[x](%s)" % link))


if __name__ == "__main__":
    unittest.main()
