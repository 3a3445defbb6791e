#!/usr/bin/env python3
"""Tests of the part memory: memory_test.py BUILD_FOLDER"""

import unittest

from badcopies import PartTest

import memory


class RefusedMemory(PartTest):
    def test_leaves_nothing_to_report_of_a_good_tool(self):
        self.assert_sound(self.outcome(memory, "good"))

    def test_shows_a_tool_that_ends_by_a_signal(self):
        self.assert_found(self.outcome(memory, "fragile"), "is ended by a signal")

    def test_shows_a_tool_that_says_nothing_about_it(self):
        self.assert_found(self.outcome(memory, "silent"), "without a line that says why")


if __name__ == "__main__":
    unittest.main()
