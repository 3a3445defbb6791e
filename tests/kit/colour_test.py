#!/usr/bin/env python3
"""Checks that ksx shows colours on a terminal, and nowhere else."""

import os
import pathlib
import pty
import subprocess
import sys
import unittest

KSX, SOURCES = (pathlib.Path(argument).resolve() for argument in sys.argv[1:3])
ESCAPE = b"\x1b["
COMMANDS = {"diff": ["diff", "wood/wood_planks.obl", "bricks/brick_wall.obl"],
            "check": ["check", "old/roof_tiles.obl"],
            "merge": ["merge", "/dev/null", "wood/wood_planks.obl", "bricks/brick_wall.obl", "-o",
                      "/nowhere/out.obl"]}


def run_on_terminal(arguments, **variables):
    """What a run prints on a terminal."""
    environment = {"PATH": os.environ["PATH"], "TERM": "xterm", **variables}
    process, terminal = pty.fork()
    if process == 0:
        os.chdir(SOURCES / "examples")
        os.execve(KSX, [str(KSX), *arguments], environment)
    output = b""
    try:
        while block := os.read(terminal, 4096):
            output += block
    except OSError:
        pass  # the end, as Linux tells it
    os.waitpid(process, 0)
    os.close(terminal)
    return output


class Colour(unittest.TestCase):
    def expect_colours(self, are_there, **variables):
        for name, arguments in COMMANDS.items():
            with self.subTest(command=name):
                self.assertEqual(ESCAPE in run_on_terminal(arguments, **variables), are_there)

    def test_is_shown_on_a_terminal(self):
        self.expect_colours(True)

    def test_is_left_out_with_no_color(self):
        self.expect_colours(False, NO_COLOR="1")

    def test_is_shown_with_an_empty_no_color(self):
        self.expect_colours(True, NO_COLOR="")

    def test_is_left_out_on_a_dumb_terminal(self):
        self.expect_colours(False, TERM="dumb")

    def test_is_left_out_of_a_pipe(self):
        for name, arguments in COMMANDS.items():
            with self.subTest(command=name):
                result = subprocess.run([KSX, *arguments], cwd=SOURCES / "examples",
                                        capture_output=True, check=False,
                                        env={**os.environ, "TERM": "xterm"})
                self.assertNotIn(ESCAPE, result.stdout)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=2)
