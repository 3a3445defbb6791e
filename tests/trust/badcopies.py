"""What the tests of the parts share: a part runs a bad tool in place of the real one.

A test is started with the build folder as its argument."""

import pathlib
import sys
import tempfile
import unittest

BUILD = pathlib.Path(sys.argv.pop(1)).resolve()
sys.dont_write_bytecode = True

import scenes  # noqa: E402
import trust  # noqa: E402


class PartTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = pathlib.Path(folder.name)
        (self.root / "work").mkdir()
        (self.root / "build/tests/support").mkdir(parents=True)
        for name, target in (("kestrix", "tests/trust/badcopy"),
                             ("tests/support/kestrix_faults.so",) * 2):
            (self.root / "build" / name).symlink_to(BUILD / target)

    def outcome(self, part, mode, share=0.25):
        """Runs the part with a tool that breaks the promise of that name."""
        context = trust.Context(self.root / "build", None, [1], share, 2, self.root / "work",
                                self.root / "kept")
        scene = scenes.Scene(mode, {"in/a.obl": b"new bytes" * 40},
                             [mode, "in/a.obl", "out/a.obl"], ["out/a.obl"])
        return part.run_stages(context, scenes.usual_stages(scene))

    def assert_sound(self, outcome):
        self.assertGreater(outcome.runs, 0)
        self.assertEqual(outcome.failures, [])

    def assert_found(self, outcome, text):
        self.assertTrue(any(text in failure for failure in outcome.failures),
                        f"'{text}' is in none of {outcome.failures}")
