# SPDX-License-Identifier: BSD-3-Clause
"""The guard of instructions: what it reads, what it lets pass and what it refuses."""
import os
import sys
import tempfile
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "bench"))
import callgrind  # noqa: E402  the path comes first
import check_budgets  # noqa: E402
import growth  # noqa: E402
import page  # noqa: E402

DUMP = """desc: Trigger: Client Request: plain request|200|100|entry|run
ob=(1) /lib/libc.so.6
fn=(1) strlen
0 7
ob=(2) /build/libqmodel.so.1.0.0
fn=(2) Validate
0 300
cob=(1)
cfn=(1)
calls=3 0
0 21
0 200
cob=(3) /lib/libxml2.so.2
cfn=(4) xmlParse
calls=1 0
0 5000
ob=(3)
fn=(4)
0 5000
ob=(2)
fn=(5) Bind
+1 100
"""


def count(name="plain request", own=600, total=6000):
    return callgrind.Count(name, 200, 100, "entry", "run", total, own)


class Callgrind(unittest.TestCase):
    def test_a_calls_cost_counts_in_the_callee_alone(self):
        costs = callgrind.object_costs(DUMP.splitlines())
        self.assertEqual({"/lib/libc.so.6": 7, "/build/libqmodel.so.1.0.0": 600,
                          "/lib/libxml2.so.2": 5000}, costs)

    def test_a_dump_is_named_by_its_trigger(self):
        with tempfile.NamedTemporaryFile("w", suffix=".1") as file:
            file.write(DUMP)
            file.flush()
            self.assertEqual(count(own=600, total=5607), callgrind.read_dump(file.name))

    def test_a_dump_that_nothing_triggered_is_passed_over(self):
        with tempfile.NamedTemporaryFile("w") as file:
            file.write("desc: Trigger: Program termination\n")
            file.flush()
            self.assertIsNone(callgrind.read_dump(file.name))


class Budgets(unittest.TestCase):
    def faults(self, own, budgets=None):
        known = {"plain request": ("entry", 6.0)} if budgets is None else budgets
        return check_budgets.compare(known, [count(own=own)], False)[1]

    def test_five_percent_over_and_ten_under_pass(self):
        self.assertEqual([], self.faults(630))
        self.assertEqual([], self.faults(540))

    def test_more_over_fails(self):
        self.assertIn("over the budget", self.faults(631)[0])

    def test_more_under_fails(self):
        self.assertIn("lower the budget", self.faults(539)[0])

    def test_a_case_that_runs_none_of_the_library_may_not_begin_to(self):
        self.assertEqual([], self.faults(0, {"plain request": ("entry", 0.0)}))
        self.assertIn("over the budget", self.faults(100, {"plain request": ("entry", 0.0)})[0])

    def test_a_case_without_a_budget_fails(self):
        self.assertIn("has no budget", self.faults(600, {})[0])

    def test_a_budget_without_a_case_fails(self):
        budgets = {"plain request": ("entry", 6.0), "gone": ("entry", 1.0)}
        self.assertIn("is not counted", self.faults(600, budgets)[0])

    def test_budgets_of_real_models_wait_for_their_folder(self):
        budgets = {"plain request": ("entry", 6.0), "load the real models": ("module", 1.0)}
        self.assertEqual([], self.faults(600, budgets))
        self.assertEqual(1, len(check_budgets.compare(budgets, [count()], True)[1]))

    def test_what_is_written_is_read(self):
        with tempfile.TemporaryDirectory() as folder:
            path = os.path.join(folder, "budgets.tsv")
            kept = {"load the real models": ("module", 12.5)}
            check_budgets.write_budgets(path, {"compiler": "g++ 12"}, [count()], kept)
            taken_with, budgets = check_budgets.read_budgets(path)
        self.assertEqual({"compiler": "g++ 12"}, taken_with)
        self.assertEqual({**kept, "plain request": ("entry", 6.0)}, budgets)


class Page(unittest.TestCase):
    def test_a_table_takes_the_place_of_the_one_before(self):
        text = "a\n<!-- one -->\nold\n<!-- end of one -->\nb\n"
        new = page.put(text, "one", page.table(("x", "y"), [("1", "2")]))
        self.assertEqual("a\n<!-- one -->\n| x | y |\n| --- | ---: |\n| 1 | 2 |\n"
                         "<!-- end of one -->\nb\n", new)

    def test_a_page_without_the_place_is_refused(self):
        with self.assertRaises(SystemExit):
            page.put("a\n", "one", "text")


class Growth(unittest.TestCase):
    def works(self, *totals):
        return {"siblings: load": [callgrind.Count("siblings: load", 100 << i, 1, "", "run", total,
                                                   0) for i, total in enumerate(totals)]}

    def test_in_proportion_passes(self):
        self.assertEqual([], growth.check(self.works(50, 100, 200, 400), {})[1])

    def test_a_square_fails_unless_it_is_listed(self):
        works = self.works(100, 400, 1600, 6400)
        self.assertIn("power of 2.00", growth.check(works, {})[1][0])
        self.assertEqual([], growth.check(works, {"siblings: load": "why"})[1])

    def test_what_is_listed_and_does_not_grow_fails(self):
        works = self.works(50, 100, 200, 400)
        self.assertIn("is listed", growth.check(works, {"siblings: load": "why"})[1][0])


if __name__ == "__main__":
    unittest.main()
