#!/usr/bin/env python3
"""Lets git compare and merge packages by ksx, set up as docs/ksx.md says."""

import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

KSX, SOURCES = (pathlib.Path(argument).resolve() for argument in sys.argv[1:3])
PACKAGE = (SOURCES / "examples/wood/wood_planks.obl").read_text(encoding="utf-8")
NAME = "wood/wood_planks.obl"


class Git(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="kestrix-git-")
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.git("init", "-q", "-b", "main")
        (self.folder / ".gitattributes").write_text("*.obl diff=ksx merge=ksx\n")
        self.write(PACKAGE)
        self.git("add", ".")
        self.commit("base")

    def run_git(self, *arguments):
        environment = {"PATH": f"{KSX.parent}:{os.environ['PATH']}", "HOME": str(self.folder),
                       "GIT_CONFIG_NOSYSTEM": "1", "GIT_AUTHOR_NAME": "a",
                       "GIT_AUTHOR_EMAIL": "a@example.org", "GIT_COMMITTER_NAME": "a",
                       "GIT_COMMITTER_EMAIL": "a@example.org"}
        return subprocess.run(["git", *arguments], cwd=self.folder, env=environment, text=True,
                              capture_output=True, check=False)

    def git(self, *arguments):
        result = self.run_git(*arguments)
        self.assertEqual(result.returncode, 0, result.stdout + result.stderr)
        return result.stdout

    def commit(self, message):
        self.git("commit", "-q", "-a", "-m", message)

    def read(self):
        return (self.folder / NAME).read_text(encoding="utf-8")

    def write(self, text):
        (self.folder / NAME).parent.mkdir(exist_ok=True)
        (self.folder / NAME).write_text(text, encoding="utf-8")

    def change(self, before, after):
        self.assertIn(before, self.read())
        self.write(self.read().replace(before, after))

    def change_on(self, branch, before, after):
        self.git("checkout", "-q", "-B", branch, "main")
        self.change(before, after)
        self.commit(branch)

    def use_external_diff(self):
        self.git("config", "diff.ksx.command", "ksx diff --git")

    def use_textconv(self):
        self.git("config", "diff.ksx.textconv", "ksx diff --text")

    def use_merge_driver(self):
        self.git("config", "merge.ksx.driver", "ksx merge %O %A %B -o %A --path %P")

    def test_shows_differences_of_the_work_tree(self):
        self.use_external_diff()
        self.change('<label v="Gap"', '<label v="Gaps"')
        self.assertEqual(self.git("diff"), f"{NAME}\npkg://wood_planks\n  changed input gap, "
                                           "attributes/label: Gap -> Gaps\n1 changed\n")

    def test_shows_differences_of_commits(self):
        self.use_external_diff()
        self.change_on("ours", '<label v="Gap"', '<label v="Gaps"')
        self.assertIn("Gap -> Gaps", self.git("diff", "main", "ours"))

    def test_shows_an_added_package(self):
        self.use_external_diff()
        (self.folder / "new.obl").write_text(PACKAGE, encoding="utf-8")
        self.git("add", "new.obl")
        self.assertIn("added   graph wood_planks: 48 nodes", self.git("diff", "--cached"))

    def test_shows_a_removed_package(self):
        self.use_external_diff()
        self.git("rm", "-q", NAME)
        self.assertIn("removed graph wood_planks: 48 nodes", self.git("diff", "--cached"))

    def test_shows_facts_as_lines_of_text(self):
        self.use_textconv()
        self.change('<label v="Gap"', '<label v="Gaps"')
        lines = self.git("diff").splitlines()
        self.assertIn("-graph pkg://wood_planks, input gap, attributes, label = Gap", lines)
        self.assertIn("+graph pkg://wood_planks, input gap, attributes, label = Gaps", lines)

    def test_merges_changes_of_two_branches(self):
        self.use_merge_driver()
        self.change_on("ours", '<label v="Gap"', '<label v="Gaps"')
        self.change_on("theirs", '<label v="Nails"', '<label v="Bolts"')
        self.git("merge", "-q", "-m", "both", "ours")
        self.assertEqual(self.read(), PACKAGE.replace('<label v="Gap"', '<label v="Gaps"')
                         .replace('<label v="Nails"', '<label v="Bolts"'))

    def test_leaves_a_conflict_to_people(self):
        self.use_merge_driver()
        self.change_on("ours", '<label v="Gap"', '<label v="Gaps"')
        self.change_on("theirs", '<label v="Gap"', '<label v="Joints"')
        result = self.run_git("merge", "ours")
        self.assertEqual(result.returncode, 1)
        self.assertIn("CONFLICT", result.stdout)
        self.assertIn("    ours    Joints\n    theirs  Gaps\n", result.stdout)
        self.assertIn('<label v="Joints"', self.read())

    def test_merges_a_package_that_one_side_has_renamed(self):
        self.use_merge_driver()
        self.git("checkout", "-q", "-B", "ours", "main")
        self.git("mv", NAME, "wood/Bretter \u00e4 1.obl")
        self.commit("renamed")
        self.change_on("theirs", '<label v="Nails"', '<label v="Bolts"')
        self.git("merge", "-q", "-m", "both", "ours")
        merged = (self.folder / "wood/Bretter \u00e4 1.obl").read_text(encoding="utf-8")
        self.assertEqual(merged, PACKAGE.replace('<label v="Nails"', '<label v="Bolts"'))

    def test_leaves_a_damaged_package_to_people(self):
        self.use_merge_driver()
        self.change_on("ours", '<label v="Gap"', '<label v="Gaps"')
        self.git("checkout", "-q", "-B", "theirs", "main")
        (self.folder / NAME).write_bytes(b"PK\x03\x04\x00\xff")
        self.commit("damaged")
        self.git("checkout", "-q", "ours")
        result = self.run_git("merge", "theirs")
        self.assertEqual(result.returncode, 1)
        self.assertIn("Error! ", result.stderr)
        self.assertIn("CONFLICT", result.stdout)
        self.assertEqual(self.read(), PACKAGE.replace('<label v="Gap"', '<label v="Gaps"'))

    def test_compares_packages_that_both_sides_have_added(self):
        self.use_merge_driver()
        for branch in ("ours", "theirs"):
            self.git("checkout", "-q", "-B", branch, "main")
            (self.folder / "new one.obl").write_text(PACKAGE.replace("\u00c5sa \u00d6berg", branch),
                                                     encoding="utf-8")
            self.git("add", ".")
            self.commit(branch)
        result = self.run_git("merge", "ours")
        self.assertEqual(result.returncode, 1)
        self.assertIn("    base    nothing\n    ours    theirs\n    theirs  ours\n", result.stdout)
        self.assertIn("CONFLICT (add/add)", result.stdout)
        self.assertIn('v="theirs"', (self.folder / "new one.obl").read_text(encoding="utf-8"))

    def test_merges_in_a_rebase_a_pick_and_a_stash(self):
        self.use_merge_driver()
        self.change_on("ours", '<label v="Gap"', '<label v="Gaps"')
        self.change_on("theirs", '<label v="Nails"', '<label v="Bolts"')
        self.git("rebase", "-q", "ours")
        self.assertEqual(self.read(), PACKAGE.replace('<label v="Gap"', '<label v="Gaps"')
                         .replace('<label v="Nails"', '<label v="Bolts"'))
        self.change_on("others", "\u00c5sa \u00d6berg", "us")
        self.git("cherry-pick", "theirs")
        both = self.read()
        self.change('<label v="Wood planks"', '<label v="Boards"')
        self.git("stash")
        self.git("checkout", "-q", "ours")
        self.git("stash", "pop")
        self.assertEqual(both, PACKAGE.replace("Åsa Öberg", "us")
                         .replace('<label v="Nails"', '<label v="Bolts"'))
        self.assertEqual(self.read(), PACKAGE.replace('<label v="Gap"', '<label v="Gaps"')
                         .replace('<label v="Wood planks"', '<label v="Boards"'))

    def test_merges_in_a_folder_of_the_work_tree(self):
        self.use_merge_driver()
        self.change_on("ours", '<label v="Gap"', '<label v="Gaps"')
        self.change_on("theirs", '<label v="Nails"', '<label v="Bolts"')
        self.git("-C", "wood", "merge", "-q", "-m", "both", "ours")
        self.assertIn('<label v="Gaps"', self.read())
        self.assertIn('<label v="Bolts"', self.read())
        self.assertIn('v="bitmaps/', self.read())


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=2)
