"""The part `mutants` reports a tool that breaks its promises, and no other."""

import unittest

import badtools
import mutants

REFUSED = b"Error! a.obl is refused\n"


def half_written(words, folder, _):
    return badtools.saved(words, folder, b"</pack")


def says_that_it_wrote(words, folder, _):
    run = badtools.saved(words, folder)
    badtools.target_of(words, folder).unlink()
    return run


def leaves_a_file(words, folder, _):
    (folder / "a.tmp").write_bytes(b"")
    return badtools.ended(1, REFUSED)


def writes_into_its_input(words, folder, _):
    (folder / words[1]).write_bytes(b"")
    return badtools.ended(1, REFUSED)


class Mutants(unittest.TestCase):
    def failures(self, tool):
        return badtools.failures_of(mutants, tool, 0.001)

    def ending(self, *end):
        return self.failures(lambda *_: badtools.ended(*end))

    def test_a_tool_that_refuses_all_in_a_line_is_good(self):
        self.assertEqual(self.ending(1, REFUSED), "")

    def test_a_tool_that_writes_all_is_good(self):
        self.assertEqual(self.failures(lambda words, folder, _: badtools.saved(words, folder)), "")

    def test_a_file_left_behind_is_reported(self):
        self.assertIn("has left", self.failures(leaves_a_file))

    def test_a_changed_input_is_reported(self):
        self.assertIn("has changed its input", self.failures(writes_into_its_input))

    def test_a_half_written_target_is_reported(self):
        self.assertIn("has not written all of", self.failures(half_written))

    def test_a_target_that_is_not_there_is_reported(self):
        self.assertIn("has not written [", self.failures(says_that_it_wrote))

    def test_an_end_by_a_signal_is_reported(self):
        self.assertIn("is ended by a signal", self.ending(-1, b"", b"", 11))

    def test_a_failure_without_a_word_is_reported(self):
        self.assertIn("fails without a line that says why", self.ending(1))

    def test_a_failure_that_names_no_file_is_reported(self):
        self.assertIn("fails without a line that names the file", self.ending(1, b"It is wrong\n"))

    def test_a_report_of_a_sanitizer_is_reported(self):
        self.assertIn("is reported by a sanitizer", self.ending(
            1, REFUSED + b"x.cpp:1:2: runtime error: shift exponent -1 is negative\n"))


if __name__ == "__main__":
    unittest.main()
