#!/usr/bin/env python3
"""Installs a build into a folder, moves it, and uses tool and library from there."""

import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

BUILD, SOURCES = map(pathlib.Path, sys.argv[1:3])
CMAKE = sys.argv[3]
PYTHON = sys.argv[4] if len(sys.argv) > 4 else None

# Reads an archive, and runs the tool.
PROGRAM = """
import sys
import kestrix
with kestrix.Session() as session:
    print(len(session.open(sys.argv[1]).graphs) > 0)
print(kestrix.update(sys.argv[1], output_path=".").saved[0].name)
"""


def run(*command, **options):
    return subprocess.run([str(word) for word in command], text=True, capture_output=True,
                          check=False, **options)


def run_well(*command, **options):
    result = run(*command, **options)
    if result.returncode != 0:
        raise AssertionError(f"{command}: {result.returncode}\n{result.stdout}\n{result.stderr}")
    return result


def values_of(package):
    """The identifiers and values of a package, one behind the other."""
    return "".join(re.findall(r'<(?:identifier|value) v="[^"]*"/>', package.read_text()))


ASKER_BUILD = """
cmake_minimum_required(VERSION 3.25)
project(asker LANGUAGES CXX)
find_package(Kestrix 1.0 REQUIRED COMPONENTS ksxkit)
add_executable(asker main.cpp)
target_link_libraries(asker PRIVATE Kestrix::ksxkit)
set_target_properties(asker PROPERTIES CXX_STANDARD 17)
"""
ASKER = """
#include "ksx/kit/packagehead.h"
#include <iostream>

int main(int, char** argv)
{
    QString reason;
    const auto head = Ksx::Kit::readHead(QString::fromUtf8(argv[1]), reason);
    std::cout << (head ? head->identifier : reason).toStdString() << std::endl;
}
"""


class Installation(unittest.TestCase):
    """One installed tree, which has been moved since."""

    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory(prefix="kestrix-install-")
        root = pathlib.Path(cls.folder.name)
        run_well(CMAKE, "--install", BUILD, "--prefix", root / "first")
        cls.tree = root / "moved tree"
        (root / "first").rename(cls.tree)
        cls.work = root / "work"
        shutil.copytree(SOURCES / "examples", cls.work)
        cls.tool = cls.tree / "bin/kestrix"
        cls.modules = next(cls.tree.rglob("libksx_archives.so")).parent

    @classmethod
    def tearDownClass(cls):
        cls.folder.cleanup()

    def update(self, name):
        return run(self.tool, "update", self.work / name, cwd=self.work)

    def test_the_tool_finds_the_reader_of_archives(self):
        result = self.update("assemblies/metal_filters.oblar")
        self.assertEqual(result.returncode, 0, result.stderr)

    def connect_image(self):
        picture = self.work / "effects/steel_plate.png"
        return run(self.tool, "specialization", self.work / "effects/surface_rust.obl",
                   "--presets-path", self.work / "presets", "--output-path", self.work,
                   "--output-name", "plate", "--connect-input", "wear_mask",
                   "--connect-image", f"surface@path@{picture}")

    def test_the_tool_finds_the_decoder_of_pictures(self):
        result = self.connect_image()
        self.assertEqual(result.returncode, 0, result.stderr)

    def test_the_tool_names_a_missing_reader_of_archives(self):
        with moved_away(self.modules / "libksx_archives.so"):
            result = self.update("assemblies/metal_filters.oblar")
        self.assertEqual(result.returncode, 1)
        self.assertIn("libksx_archives.so", result.stderr)

    def test_the_tool_names_a_missing_decoder_of_pictures(self):
        with moved_away(self.modules / "kestrix-decode"):
            result = self.connect_image()
        self.assertEqual(result.returncode, 1)
        self.assertIn("kestrix-decode", result.stderr)

    def test_ksx_reads_packages_and_archives(self):
        result = run(self.tree / "bin/ksx", "info", "wood/wood_planks.obl",
                     "assemblies/metal_filters.oblar", cwd=self.work)
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        self.assertIn("graph wood_planks (5 inputs", result.stdout)
        self.assertIn("graph metal_filters/patina", result.stdout)

    def draw(self, folder, *options):
        """Draws a graph without stored places. Returns the run and the way of its layout."""
        package = self.work / "placeless.obl"
        text = (self.work / "wood/wood_planks.obl").read_text()
        package.write_text(re.sub("<GUILayout><gpos v=\"[^\"]*\"/></GUILayout>", "", text))
        result = run(self.tree / "bin/ksx", "draw", "-o", self.work / folder, "--graph",
                     "wood_planks", "--json", *options, package)
        return result, re.findall(r'"layout":"(\w+)"', result.stdout)

    def test_ksx_lays_graphs_out_by_its_library(self):
        result, layouts = self.draw("computed")
        self.assertEqual((result.returncode, layouts), (0, ["computed"]), result.stderr)

    def test_ksx_lays_graphs_out_without_its_library(self):
        with moved_away(self.modules / "libksx_layout.so"):
            result, layouts = self.draw("columns")
        self.assertEqual((result.returncode, layouts), (0, ["columns"]), result.stderr)

    def test_ksx_paints_pictures_by_its_library(self):
        result, _ = self.draw("painted", "--format", "png")
        self.assertEqual(result.returncode, 0, result.stderr)

    def test_ksx_names_a_missing_painter(self):
        with moved_away(self.modules / "libksx_painter.so"):
            result, _ = self.draw("unpainted", "--format", "png")
        self.assertEqual(result.returncode, 2)
        self.assertIn("libksx_painter.so is missing", result.stderr)

    def test_what_belongs_to_ksx_is_installed(self):
        for name in ["man/man1/ksx.1.gz", "bash-completion/completions/ksx",
                     "zsh/vendor-completions/_ksx", "fish/vendor_completions.d/ksx.fish"]:
            self.assertTrue((self.tree / "share" / name).is_file(), name)

    def test_a_program_asks_the_kit(self):
        source = self.work / "asker"
        source.mkdir()
        (source / "CMakeLists.txt").write_text(ASKER_BUILD)
        (source / "main.cpp").write_text(ASKER)
        run_well(CMAKE, "-S", source, "-B", source / "build", f"-DCMAKE_PREFIX_PATH={self.tree}",
                 "-DCMAKE_BUILD_TYPE=Release")
        run_well(CMAKE, "--build", source / "build")
        result = run_well(source / "build/asker", self.work / "wood/wood_planks.obl")
        self.assertEqual(result.stdout, "wood_planks\n")

    def test_a_program_builds_and_runs_against_the_library(self):
        build = self.work / "doubled"
        run_well(CMAKE, "-S", SOURCES / "examples/library", "-B", build,
                 f"-DCMAKE_PREFIX_PATH={self.tree}", "-DCMAKE_BUILD_TYPE=Release")
        run_well(CMAKE, "--build", build)
        result = run_well(build / "doubled", self.work / "fabrics/woven_fabric.obl",
                          self.work / "doubled.obl")
        self.assertIn("woven_fabric.thread_width = 0.85\n", result.stdout)
        self.assertIn("11 doubled\nthe last one is as it was\n", result.stdout)
        # Doubled, and brought to the maximum of the input.
        self.assertIn('<identifier v="thread_width"/><value v="256"/><value v="1"/>',
                      values_of(self.work / "doubled.obl"))
        archive = run_well(build / "doubled", self.work / "assemblies/metal_filters.oblar",
                           self.work / "filters.obl")
        self.assertIn("patina.strength = 0.5\n", archive.stdout)
        missing = run(build / "doubled", "none.obl", self.work / "none_new.obl", cwd=self.work)
        self.assertEqual(missing.returncode, 1)
        self.assertEqual(missing.stderr, "none.obl: there is no such file\n")

    @unittest.skipUnless(PYTHON, "the Python module is not built")
    def test_the_python_module_runs_from_the_moved_tree(self):
        module = next(self.tree.rglob("kestrix/__init__.py")).parent.parent
        result = run_well(PYTHON, "-c", PROGRAM, self.work / "assemblies/metal_filters.oblar",
                          cwd=self.work, env={"PYTHONPATH": str(module)})
        self.assertEqual(result.stdout, "True\nmetal_filters_updated.obl\n")

    @unittest.skipUnless(shutil.which("pkg-config"), "pkg-config is not installed")
    def test_pkg_config_leads_to_the_moved_tree(self):
        config = next(self.tree.rglob("kestrix.pc")).parent
        result = run_well("pkg-config", "--cflags", "--libs", "kestrix",
                          env={"PATH": "/usr/bin:/bin", "PKG_CONFIG_PATH": str(config)})
        self.assertIn("-lksxkit -lksx -lorv", result.stdout)
        self.assertIn("kestrix", result.stdout)


class moved_away:
    """A file that is elsewhere for a while."""

    def __init__(self, path):
        self.path = path
        self.elsewhere = path.with_suffix(".away")

    def __enter__(self):
        self.path.rename(self.elsewhere)

    def __exit__(self, *_):
        self.elsewhere.rename(self.path)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=2)
