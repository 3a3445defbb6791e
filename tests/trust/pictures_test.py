"""What the part `pictures` says of decoders and tools that break their promises."""

import pathlib
import random
import sys
import tempfile
import types
import unittest

SOURCES = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(SOURCES / "tests/trust"))

import picturemutants
import pictures
import trust

GOOD = pictures.Answer(code=0, signal=0, microseconds=2000, peak=11000, bytes=16,
                       mark=pictures.MARK, kind=1, width=16, height=12, pixel_bytes=768, hash=5)
CRASH = pictures.Answer(-1, 11, 2000, 11000, 0, 0, 0, 0, 0, 0, 0)
FILTER = b"<package/>"


def answer(**changes):
    return pictures.dataclasses.replace(GOOD, **changes)


class DecodingTest(unittest.TestCase):
    def test_a_picture_is_no_failure(self):
        self.assertIsNone(pictures.broken_promise(GOOD, GOOD))

    def test_a_crash_is_no_failure(self):
        self.assertIsNone(pictures.broken_promise(CRASH))
        self.assertEqual(CRASH.end(), "crash")

    def test_a_picture_of_another_size_than_it_says_is_a_failure(self):
        self.assertIn("another size", pictures.broken_promise(answer(pixel_bytes=764)))

    def test_a_picture_of_too_many_pixels_is_a_failure(self):
        large = answer(width=1 << 14, height=1 << 13, pixel_bytes=1 << 29)
        self.assertIn("another size", pictures.broken_promise(large))

    def test_an_answer_without_its_mark_is_a_failure(self):
        self.assertIn("an answer that is none", pictures.broken_promise(answer(mark=1)))

    def test_a_picture_that_lacks_its_end_is_a_failure(self):
        self.assertIn("part is missing", pictures.broken_promise(GOOD, answer(hash=6)))

    def test_pixels_that_a_decoder_leaves_unwritten_are_told(self):
        case = pictures.Case("1-1", "pict", b"", GOOD, True, None)
        self.assertIn("zeros in the tool: pict 1", pictures.notes_on([case])[-1])

    def test_more_time_than_there_is_is_a_failure(self):
        late = answer(kind=0, microseconds=13_000_000)
        self.assertIn("time of cpu", pictures.broken_promise(late))


class MutantTest(unittest.TestCase):
    def test_mutants_of_a_seed_are_always_the_same(self):
        sample = bytes(range(200))
        first, second = (picturemutants.mutant(random.Random(3), sample, sample) for _ in range(2))
        self.assertEqual(first, second)
        self.assertNotEqual(first, sample)

    def test_chunks_keep_their_checksums(self):
        data = bytearray(b"\x89PNG\r\n\x1a\n")
        picturemutants.write_chunks(data, [(b"IHDR", b"\0" * 13), (b"IEND", b"")])
        self.assertEqual(bytes(data[-4:]), b"\xae\x42\x60\x82")
        self.assertEqual(len(picturemutants.chunks_of(data)), 2)


class WholeRunTest(unittest.TestCase):
    """Runs of a tool that is a script."""

    def failure_with(self, script):
        with tempfile.TemporaryDirectory() as name:
            root = pathlib.Path(name)
            (root / "kestrix").write_text("#!/bin/sh\n" + script)
            (root / "kestrix").chmod(0o755)
            context = types.SimpleNamespace(
                release=root, keep=lambda name, content: name,
                workplace=trust.runs.Workplace(root))
            case = pictures.Case("1-1", "png", b"no picture", CRASH, False, None)
            return pictures.connect(context, case, FILTER)

    def test_a_run_that_names_the_picture_is_no_failure(self):
        self.assertIsNone(self.failure_with(
            'echo "Error! Image cannot be correctly loaded: $PWD/p.png" >&2; exit 1'))

    def test_a_run_that_writes_a_package_is_no_failure(self):
        self.assertIsNone(self.failure_with('echo "<package/>" > f_specialized.obl'))

    def test_a_run_that_says_nothing_is_a_failure(self):
        self.assertIn("without a line", self.failure_with("exit 1"))

    def test_a_run_that_crashes_is_a_failure(self):
        self.assertIn("ended by a signal", self.failure_with("kill -SEGV $$"))

    def test_a_run_that_leaves_a_file_is_a_failure(self):
        self.assertIn("leaves a file", self.failure_with(
            'touch x.tmp; echo "Error! Image cannot be correctly loaded: $PWD/p.png" >&2; exit 1'))

    def test_a_run_that_changes_the_picture_is_a_failure(self):
        self.assertIn("changes its input", self.failure_with(
            'echo > p.png; echo "<package/>" > f_specialized.obl'))

    def test_a_run_that_writes_no_package_is_a_failure(self):
        self.assertIn("a package that is none", self.failure_with('echo "<pa" > f_specialized.obl'))

    def test_a_run_without_a_target_is_a_failure(self):
        self.assertIn("without its target", self.failure_with("exit 0"))


if __name__ == "__main__":
    unittest.main()
