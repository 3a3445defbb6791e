#!/usr/bin/env python3
"""Checks the manual page: it has no fault, and names each option that the tool has."""

import os
import pathlib
import re
import shutil
import subprocess
import sys
import unittest

BUILD, SOURCES = map(pathlib.Path, sys.argv[1:3])
PAGE = SOURCES / "docs/man/kestrix.1"


class ManualPage(unittest.TestCase):
    @unittest.skipUnless(shutil.which("man"), "man is not installed")
    def test_has_no_fault(self):
        result = subprocess.run(["man", "--warnings", "-E", "UTF-8", "-l", "-Tutf8", PAGE],
                                text=True, capture_output=True, check=False,
                                env={**os.environ, "LC_ALL": "C.UTF-8", "MANROFFSEQ": ""})
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        self.assertIn("EXIT STATUS", re.sub(".\x08", "", result.stdout))

    def test_names_each_option_of_the_tool(self):
        script = (BUILD / "completion/kestrix.bash").read_text()
        options = set(re.findall(r"--([a-z-]+)", script)) - {"input", "inputs"}
        self.assertIn("presets-path", options)
        page = PAGE.read_text()
        self.assertEqual({option for option in options if f"Fl -{option}" not in page}, set())


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=2)
