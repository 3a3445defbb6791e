#!/usr/bin/env python3
"""Checks packages with the schemas that ksx writes: sound ones are valid, damaged ones are not."""

import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

KSX, KESTRIX, SOURCES = (pathlib.Path(argument).resolve() for argument in sys.argv[1:4])
EXAMPLES = SOURCES / "examples"
OPTIONS = {"relaxng": "--relaxng", "xsd": "--schema"}

# The first place of the left text in a sample becomes the right one.
DAMAGES = {
    "a missing member": ('<platform v="1"/>', ""),
    "a member twice": ('<platform v="1"/>', '<platform v="1"/><platform v="1"/>'),
    "an unknown member": ('<platform v="1"/>', '<platform v="1"/><stage v="1"/>'),
    "an unknown item": ("<dependencies>", "<dependencies><stage/>"),
    "an item of another list": ("<dependencies>", "<dependencies><graph/>"),
    "two choices of a union": ("<constantValueBool>",
                               '<constantValueInt1><value v="1"/></constantValueInt1>'
                               "<constantValueBool>"),
    "a value without its attribute": ('<platform v="1"/>', "<platform/>"),
    "another attribute": ('<platform v="1"/>', '<platform v="1" w="1"/>'),
    "text between elements": ("<dependencies>", "<dependencies>and"),
    "a number that is a word": ('<platform v="1"/>', '<platform v="one"/>'),
    "a number beyond all": ('<platform v="1"/>', '<platform v="4294967296"/>'),
    "a truth value of two": ("<constantValueBool><value v=\"1\"/>",
                             "<constantValueBool><value v=\"2\"/>"),
    "a vector with too few numbers": ('v="1 2 -3"', 'v="1 2"'),
    "a vector with too many numbers": ('v="1 2 -3"', 'v="1 2 -3 4"'),
}
# Texts that the reader takes for the same as those that are written.
VARIANTS = {
    "members in another order": ('<platform v="1"/><author v="', '<author v="'),
    "a sign in front of a number": ('<platform v="1"/>', '<platform v="+1"/>'),
    "commas between components": ('v="1 2 -3"', 'v="1,2,-3"'),
    "a number that is none": ("<constantValueFloat1><value v=\"0.1\"/>",
                              "<constantValueFloat1><value v=\"nan\"/>"),
}


def run_well(*command):
    return subprocess.run([str(word) for word in command], capture_output=True, check=True)


def current_examples():
    return [path for path in sorted(EXAMPLES.rglob("*.obl")) if "old" not in path.parts]


class Schemas(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.temporary = tempfile.TemporaryDirectory(prefix="kestrix-schema-")
        cls.folder = pathlib.Path(cls.temporary.name)
        for form in OPTIONS:
            schema = run_well(KSX, "schema", "--form", form).stdout
            (cls.folder / form).write_bytes(schema)
        cls.sample = (EXAMPLES / "mixed/everything.obl").read_text()

    @classmethod
    def tearDownClass(cls):
        cls.temporary.cleanup()

    def errors(self, form, package):
        """Whatever is wrong with a package, empty for a valid one."""
        result = subprocess.run(["xmllint", "--noout", OPTIONS[form], self.folder / form, package],
                                text=True, capture_output=True, check=False)
        return "" if result.returncode == 0 else result.stderr

    def errors_of_text(self, form, text):
        package = self.folder / "changed.obl"
        package.write_text(text)
        return self.errors(form, package)

    def changed(self, old, new):
        self.assertIn(old, self.sample)
        return self.sample.replace(old, new, 1)

    def test_all_current_examples_are_valid(self):
        for form in OPTIONS:
            for package in current_examples():
                self.assertEqual(self.errors(form, package), "")

    def test_old_examples_are_valid_when_they_are_updated(self):
        run_well(KESTRIX, "update", *sorted((EXAMPLES / "old").glob("*.obl")), "--presets-path",
                 EXAMPLES / "old/presets", "--output-path", self.folder)
        updated = sorted(self.folder.glob("*_updated.obl"))
        self.assertGreater(len(updated), 7)
        for form in OPTIONS:
            for package in updated:
                self.assertEqual(self.errors(form, package), "")

    def test_damaged_packages_are_not_valid(self):
        for form in OPTIONS:
            for name, (old, new) in DAMAGES.items():
                self.assertNotEqual(self.errors_of_text(form, self.changed(old, new)), "",
                                    f"{form}: {name}")

    def test_other_forms_that_the_reader_takes_are_valid(self):
        for form in OPTIONS:
            for name, (old, new) in VARIANTS.items():
                text = self.changed(old, new)
                if name == "members in another order":
                    text = text.replace("<configurations>", '<platform v="1"/><configurations>', 1)
                self.assertEqual(self.errors_of_text(form, text), "", f"{form}: {name}")

    def test_another_root_is_not_valid(self):
        for form in OPTIONS:
            text = self.sample.replace("package>", "library>")
            self.assertNotEqual(self.errors_of_text(form, text), "", form)

    def test_each_required_member_of_the_root_is_required(self):
        for form in OPTIONS:
            for member in ["identifier", "formatVersion", "author", "fileUID", "versionUID"]:
                text = re.sub(f'<{member} v="[^"]*"/>', "", self.sample, count=1)
                self.assertNotEqual(self.errors_of_text(form, text), "", f"{form}: {member}")


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=2)
