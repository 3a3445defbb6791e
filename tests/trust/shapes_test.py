"""The part `shapes` reports a tool whose work grows too fast, and one that breaks a bound."""

import unittest
from unittest import mock

import badtools
import hostile
import runs
import shapes

SHAPE = hostile.Shape("text", (hostile.UPDATE,), lambda n: {"a.obl": "x" * n})


def taking(cpu_of):
    """In the place of runs, those of a tool that takes that cpu for a number of bytes."""
    return mock.patch.object(shapes, "run_on", lambda context, files, command: runs.Run(
        list(command), 0, 0, cpu_of(shapes.size_of(files)), 1000, b"", b""))


class Shapes(unittest.TestCase):
    def broken(self, cpu_of):
        with taking(cpu_of):
            return shapes.check_shape(None, SHAPE, hostile.UPDATE)

    def test_work_that_grows_as_the_file_does_is_good(self):
        self.assertIsNone(self.broken(lambda size: 0.001 + size / 1e7))

    def test_work_that_grows_with_the_square_is_reported(self):
        self.assertIn("grows too fast", self.broken(lambda size: 0.001 + size ** 2 / 1e13))

    def test_one_measurement_by_chance_is_not_reported(self):
        measured = iter([0.1, 0.3])
        self.assertIsNone(self.broken(lambda size: next(measured, size / 1e7)))

    def test_a_megabyte_that_takes_seconds_is_reported(self):
        self.assertIn("s for a megabyte", self.broken(lambda size: size / 4e5))

    def test_all_shapes_can_be_made_small_and_large(self):
        small, large = ({shape.name: shapes.size_of(shape.make(parts)) for shape in hostile.SHAPES}
                        for parts in (10, 6000))
        self.assertEqual([name for name, size in small.items() if size >= large[name]], [])

    def test_a_signal_is_reported(self):
        self.assertIn("is ended by a signal", badtools.failures_of(
            shapes, lambda *_: badtools.ended(-1, b"", b"", 11), 0.02))


if __name__ == "__main__":
    unittest.main()
