#!/usr/bin/env python3
"""Tests of the part memory: memory_test.py BUILD_FOLDER"""

import types
import unittest

from badcopies import PartTest

import memory
import trust


class RefusedMemory(PartTest):
    def test_leaves_nothing_to_report_of_a_good_tool(self):
        self.assert_sound(self.outcome(memory, "good"))

    def test_shows_a_tool_that_ends_by_a_signal(self):
        self.assert_found(self.outcome(memory, "fragile"), "is ended by a signal")

    def test_shows_a_tool_that_says_nothing_about_it(self):
        self.assert_found(self.outcome(memory, "silent"), "without a line that says why")


class LongerRun(unittest.TestCase):
    def plans(self, share):
        stage = types.SimpleNamespace(counts={"alloc": 3})
        context = trust.Context(None, None, [1], share, 1, None, None)
        return [plan for _, plan in memory.plans(context, [stage])]

    def test_refuses_each_allocation_once_and_for_good(self):
        self.assertEqual(self.plans(1), ["alloc:1", "alloc:2", "alloc:3"])
        self.assertEqual(self.plans(2)[3:6], ["alloc:1+", "alloc:2+", "alloc:3+"])

    def test_refuses_pairs_in_the_number_of_its_share(self):
        pairs = self.plans(2)[6:]
        self.assertEqual(len(pairs), 2 * memory.PAIRS)
        self.assertRegex(pairs[0], r"^alloc:\d+,alloc:\d+$")


if __name__ == "__main__":
    unittest.main()
