"""The part `truncation` reports a tool that breaks its promises."""

import unittest

import badtools
import truncation


def refuses_and_writes(words, folder, _):
    badtools.target_of(words, folder).write_bytes(badtools.WHOLE)
    return refuses(words, folder, _)


def refuses(words, *_):
    return badtools.ended(1, f"Cannot load: /x/{words[1]}\n".encode())


class Truncation(unittest.TestCase):
    def failures(self, tool):
        return badtools.failures_of(truncation, tool, 0.005)

    def test_a_tool_that_takes_half_a_file_is_reported(self):
        self.assertIn("ends with 0", self.failures(
            lambda words, folder, _: badtools.saved(words, folder)))

    def test_a_target_of_a_failure_is_reported(self):
        self.assertIn("fails and leaves ['a_updated.obl']", self.failures(refuses_and_writes))

    def test_a_failure_that_does_not_name_the_file_is_reported(self):
        self.assertIn("fails without a line that names the file",
                      self.failures(lambda *_: badtools.ended(1, b"Cannot load it\n")))

    def test_a_whole_file_that_is_refused_is_reported(self):
        whole = truncation.wholes()[0]
        run = badtools.ended(1, b"Cannot load: /x/a.obl\n")
        run.arguments = whole.commands[0]
        self.assertEqual(truncation.broken_rule(run, None, whole, whole.needed), "ends with 1")


if __name__ == "__main__":
    unittest.main()
