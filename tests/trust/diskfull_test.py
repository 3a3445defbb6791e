#!/usr/bin/env python3
"""Tests of the part diskfull: diskfull_test.py BUILD_FOLDER"""

import unittest

from badcopies import PartTest

import diskfull


class FullDisk(PartTest):
    def test_leaves_nothing_to_report_of_a_good_tool(self):
        self.assert_sound(self.outcome(diskfull, "good"))

    def test_shows_a_tool_that_writes_into_its_target(self):
        self.assert_found(self.outcome(diskfull, "inplace"), "neither the former nor the new ones")

    def test_shows_a_tool_that_takes_no_notice_of_it(self):
        self.assert_found(self.outcome(diskfull, "careless"), "neither the former nor the new ones")


if __name__ == "__main__":
    unittest.main()
