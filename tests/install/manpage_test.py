#!/usr/bin/env python3
"""Checks the manual pages: they have no fault, and name each option that the tools have."""

import os
import pathlib
import re
import shutil
import subprocess
import sys
import unittest

BUILD, SOURCES = map(pathlib.Path, sys.argv[1:3])


def page(program):
    return SOURCES / f"docs/man/{program}.1"


def options_of(program):
    """The options that the completions of a program know."""
    script = (BUILD / f"completion/{program}.bash").read_text()
    return set(re.findall(r"--([a-z-]+)", script)) - {"input", "inputs"}


class ManualPage(unittest.TestCase):
    @unittest.skipUnless(shutil.which("man"), "man is not installed")
    def test_has_no_fault(self):
        for program in ["kestrix", "ksx"]:
            result = subprocess.run(["man", "--warnings", "-E", "UTF-8", "-l", "-Tutf8", page(program)],
                                    text=True, capture_output=True, check=False,
                                    env={**os.environ, "LC_ALL": "C.UTF-8", "MANROFFSEQ": ""})
            self.assertEqual((result.returncode, result.stderr), (0, ""))
            self.assertIn("EXIT STATUS", re.sub(".\x08", "", result.stdout))

    def test_names_each_option_of_the_tool(self):
        for program in ["kestrix", "ksx"]:
            options = options_of(program)
            self.assertIn("presets-path", options)
            text = page(program).read_text()
            self.assertEqual({option for option in options if f"Fl -{option}" not in text}, set())


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=2)
