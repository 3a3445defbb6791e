#!/usr/bin/env python3
"""Tests of the part kills: kills_test.py BUILD_FOLDER"""

import unittest

from badcopies import PartTest

import kills


class Kills(PartTest):
    def test_leave_nothing_to_report_of_a_good_tool(self):
        self.assert_sound(self.outcome(kills, "good"))

    def test_show_a_tool_that_writes_into_its_target(self):
        self.assert_found(self.outcome(kills, "inplace"), "neither the former nor the new ones")

    def test_show_a_tool_that_syncs_too_late(self):
        self.assert_found(self.outcome(kills, "late"), "before they are synced")

    def test_show_a_tool_that_syncs_no_folder(self):
        self.assert_found(self.outcome(kills, "forgetful"), "behind the last sync")

    def test_show_a_tool_that_writes_to_its_input(self):
        self.assert_found(self.outcome(kills, "greedy"), "input in/a.obl")


if __name__ == "__main__":
    unittest.main()
