"""The part `metamorphic` reports a tool whose outputs depend on what must make no difference."""

import itertools
import unittest
from unittest import mock

import badtools
import metamorphic


def writes_the_hash_seed(words, folder, environment):
    seed = environment.get("QT_HASH_SEED", "")
    return badtools.saved(words, folder, seed.encode() + badtools.WHOLE)


def writes_after_its_first_input(words, folder, _):
    return badtools.saved(words, folder)


def writes_more_each_time(words, folder, _):
    target = badtools.target_of(words, folder)
    former = target.read_bytes() if words[-1] == "{inputName}" else b""
    return badtools.saved(words, folder, former + badtools.WHOLE)


def writes_into_another_input(words, folder, _):
    if (folder / "old.obl").exists():
        (folder / "b.obl").write_bytes(b"")
    return badtools.saved(words, folder)


def mixes_targets(words, folder, _):
    return badtools.saved(words, folder, b"mixed" if words[-1] == "both" else b"")


class Metamorphic(unittest.TestCase):
    def failures(self, tool):
        with (mock.patch.object(metamorphic, "make_locales", lambda _: {}),
              mock.patch.object(metamorphic, "without_powers", lambda context, words, folder:
                                metamorphic.start(context, words, folder, {}))):
            return badtools.failures_of(metamorphic, tool, 0.05)

    def test_outputs_that_depend_on_the_hash_seed_are_reported(self):
        self.assertRegex(self.failures(writes_the_hash_seed),
                         "'QT_HASH_SEED': '0'.*: update: other bytes")

    def test_a_changed_input_is_reported(self):
        self.assertIn("changes ['b.obl']", self.failures(writes_into_another_input))

    def test_a_second_update_that_changes_the_file_is_reported(self):
        self.assertIn("changes what the one before has written",
                      self.failures(writes_more_each_time))

    def test_outputs_that_depend_on_the_order_are_reported(self):
        self.assertIn("the order of inputs changes", self.failures(writes_after_its_first_input))

    def test_outputs_that_differ_each_time_are_reported(self):
        numbers = map(str, itertools.count())
        self.assertIn("other bytes", self.failures(
            lambda words, folder, _: badtools.saved(words, folder, next(numbers).encode())))

    def test_two_targets_that_are_mixed_are_reported(self):
        self.assertIn("leave neither's result", self.failures(mixes_targets))


if __name__ == "__main__":
    unittest.main()
