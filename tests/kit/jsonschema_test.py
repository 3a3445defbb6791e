#!/usr/bin/env python3
"""Checks what ksx prints as JSON against docs/ksx.schema.json, and that the schema is strict."""

import copy
import json
import pathlib
import subprocess
import sys
import tempfile
import unittest

import jsonschema

KSX, SOURCES = (pathlib.Path(argument).resolve() for argument in sys.argv[1:3])
SCHEMA = json.loads((SOURCES / "docs/ksx.schema.json").read_text())
VALIDATOR = jsonschema.Draft7Validator(SCHEMA)


def output_of(*arguments):
    """The document of a run that may have failures."""
    result = subprocess.run([KSX, *arguments, "--json"], cwd=SOURCES / "examples", text=True,
                            capture_output=True, check=False)
    return json.loads(result.stdout)


def objects_in(value):
    """All objects of a document, from the outside in."""
    parts = value if isinstance(value, list) else []
    if isinstance(value, dict):
        yield value
        parts = value.values()
    for part in parts:
        yield from objects_in(part)


class JsonSchema(unittest.TestCase):
    def assertValid(self, document):
        self.assertEqual([error.message for error in VALIDATOR.iter_errors(document)], [])

    def test_is_a_schema(self):
        jsonschema.Draft7Validator.check_schema(SCHEMA)

    def test_describes_all_inventories(self):
        self.assertValid(output_of("info", "."))

    def test_describes_brief_inventories(self):
        self.assertValid(output_of("info", "--brief", "."))

    def test_describes_findings(self):
        self.assertValid(output_of("check", ".", "none.obl"))

    def test_knows_the_codes_of_findings(self):
        document = output_of("check", "old")
        finding = document["packages"][0]["findings"][0]
        finding["code"] = "another"
        self.assertFalse(VALIDATOR.is_valid(document))

    def test_describes_differences(self):
        document = output_of("diff", "--layout", "mixed/everything.obl", "wood/wood_planks.obl")
        self.assertEqual(len(document["comparisons"]), 1)
        self.assertValid(document)

    def test_describes_differences_of_nodes(self):
        document = output_of("diff", "old/felt.obl", "/dev/null")
        self.assertNotEqual(document["comparisons"][0]["differences"], [])
        self.assertValid(document)

    def test_describes_conflicts(self):
        document = output_of("merge", "/dev/null", "wood/wood_planks.obl", "bricks/brick_wall.obl",
                             "-o", "out.obl")
        self.assertNotEqual(document["conflicts"], [])
        self.assertValid(document)

    def test_describes_previews(self):
        self.assertValid(output_of("preview", "--presets-path", "old/presets", "old", "wood"))

    def test_describes_previews_that_fail(self):
        document = output_of("preview", "--output-name", "", "old/grain.obl", "none.obl")
        self.assertEqual(len(document["errors"]), 2)
        self.assertValid(document)

    def test_names_each_member_of_previews(self):
        document = output_of("preview", "old/speckles.obl")
        for number, _ in enumerate(objects_in(document)):
            changed = copy.deepcopy(document)
            list(objects_in(changed))[number]["another"] = 1
            self.assertFalse(VALIDATOR.is_valid(changed), number)

    def test_requires_each_member_of_previews(self):
        document = output_of("preview", "old/speckles.obl")
        for member in [*document, *document["files"][0]]:
            changed = copy.deepcopy(document)
            changed.pop(member, changed["files"][0].pop(member, None))
            self.assertFalse(VALIDATOR.is_valid(changed), member)

    def test_describes_pictures_and_pages(self):
        with tempfile.TemporaryDirectory(prefix="kestrix-draw-") as folder:
            self.assertValid(output_of("draw", "-o", folder, "bricks", "none.obl"))
            self.assertValid(output_of("draw", "--html", folder, "bricks", "none.obl"))

    def test_describes_states_and_results_of_a_batch(self):
        with tempfile.TemporaryDirectory() as folder:
            plan = f"{folder}/plan.json"
            subprocess.run([KSX, "batch", "plan", "update", SOURCES / "examples", "--to",
                            f"{folder}/out", "-o", plan], check=False, stdout=subprocess.DEVNULL)
            subprocess.run([KSX, "batch", "run", plan], check=False, capture_output=True)
            status, report = (output_of("batch", part, plan) for part in ("status", "report"))
            checked = output_of("batch", "report", plan, "--check")
        self.assertNotEqual(status["shards"], [])
        self.assertEqual({package["state"] for package in report["packages"]}, {"done", "failed"})
        self.assertValid(status)
        self.assertValid(report)
        self.assertEqual([package["state"] for package in checked["packages"]
                          if package.get("findings")], ["done"] * 2)
        self.assertValid(checked)

    def test_describes_the_format(self):
        self.assertValid(output_of("schema"))

    def test_describes_failures(self):
        document = output_of("info", "none.obl", "README.md")
        self.assertEqual(len(document["failures"]), 2)
        self.assertValid(document)

    def test_names_each_member(self):
        document = output_of("info", "mixed/everything.obl")
        for number, _ in enumerate(objects_in(document)):
            changed = copy.deepcopy(document)
            list(objects_in(changed))[number]["another"] = 1
            self.assertFalse(VALIDATOR.is_valid(changed), number)

    def test_requires_each_member(self):
        document = output_of("info", "wood/wood_planks.obl")
        for member in [*document, *document["packages"][0]]:
            changed = copy.deepcopy(document)
            changed.pop(member, changed["packages"][0].pop(member, None))
            self.assertFalse(VALIDATOR.is_valid(changed), member)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=2)
