"""What the part `valgrind` says of a tool in which valgrind sees a fault."""

import pathlib
import sys
import tempfile
import types
import unittest

SOURCES = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(SOURCES / "tests/trust"))

import trust
import valgrind


class ValgrindTest(unittest.TestCase):
    """A script is in the place of valgrind."""

    def failure_with(self, script):
        with tempfile.TemporaryDirectory() as name:
            root = pathlib.Path(name)
            context = types.SimpleNamespace(release=root, workplace=trust.runs.Workplace(root),
                                            keep=lambda name, content: root / "kept" / name)
            case = valgrind.Case("case", ["update", "a.obl"], {"a.obl": b"<package/>"})
            return valgrind.failure_of(context, case, ("sh", "-c", script))

    def test_a_run_that_fails_by_itself_is_no_failure(self):
        self.assertIsNone(self.failure_with("exit 1"))

    def test_a_run_finds_the_files_of_its_case(self):
        self.assertIsNone(self.failure_with("grep -q package a.obl"))

    def test_what_valgrind_sees_is_a_failure(self):
        text = self.failure_with("echo Invalid read >&2; exit 97")
        self.assertIn("update a.obl", text)
        self.assertIn("valgrind has seen a fault\nInvalid read", text)

    def test_a_signal_is_a_failure(self):
        self.assertIn("SIGSEGV", self.failure_with("kill -SEGV $$"))

    def test_valgrind_that_cannot_start_is_a_failure(self):
        self.assertIn("exit 127", self.failure_with("exit 127"))


class CasesTest(unittest.TestCase):
    def cases(self, share):
        context = types.SimpleNamespace(
            seeds=[1], number=lambda full: full * share,
            random=lambda seed, case: trust.random.Random(f"{seed}-{case}"))
        return valgrind.cases(context)

    def test_there_are_as_many_as_announced_and_all_commands(self):
        found = self.cases(1)
        self.assertEqual(len(found), valgrind.INPUTS)
        self.assertEqual({case.arguments[0] for case in found},
                         {"update", "specialization", "graph-parameters-editor"})

    def test_a_larger_share_adds_mutants(self):
        found = self.cases(2)
        self.assertEqual(len(found), 2 * valgrind.INPUTS)
        self.assertIn("b.obl", found[-1].files)


if __name__ == "__main__":
    unittest.main()
