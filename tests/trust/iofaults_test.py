#!/usr/bin/env python3
"""Tests of the part iofaults: iofaults_test.py BUILD_FOLDER"""

import unittest

from badcopies import PartTest

import iofaults


class FailingCalls(PartTest):
    def test_leave_nothing_to_report_of_a_good_tool(self):
        self.assert_sound(self.outcome(iofaults, "good"))

    def test_show_a_tool_that_takes_no_notice_of_them(self):
        self.assert_found(self.outcome(iofaults, "careless"), "neither the former nor the new ones")

    def test_show_a_tool_that_says_nothing_about_them(self):
        self.assert_found(self.outcome(iofaults, "silent"), "without a line that says why")

    def test_show_a_tool_that_leaves_files_behind(self):
        self.assert_found(self.outcome(iofaults, "litter"), "leaves out/a.obl.new")


if __name__ == "__main__":
    unittest.main()
