#!/usr/bin/env python3
"""Tests of the changes that scripts/mutate makes to a source: mutate_test.py SOURCES"""

import sys
import unittest
from pathlib import Path

ROOT = Path(sys.argv.pop(1)) if len(sys.argv) > 1 else Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "scripts"))
sys.dont_write_bytecode = True

from mutation.operators import mutants_of  # noqa: E402


def lines_made_of(text):
    found = mutants_of("a.cpp", text)
    return {mutant.after.strip() for mutants in found.values() for mutant in mutants}


class Changes(unittest.TestCase):
    def expect(self, line, *changed):
        self.assertEqual(lines_made_of(line), set(changed))

    def test_a_comparison_is_moved_or_turned(self):
        self.expect("bool x = a < b;", "bool x = a <= b;")
        self.expect("bool x = a == b;", "bool x = a != b;")

    def test_brackets_of_templates_are_no_comparisons(self):
        self.expect("std::vector<int> x;")

    def test_references_and_pointers_are_no_operators(self):
        self.expect("const Text& a; Text* b; Text&& c;")

    def test_logic_and_arithmetic_are_exchanged(self):
        self.expect("bool x = a && b;", "bool x = a || b;")
        self.expect("int x = a + b;", "int x = a - b;")

    def test_a_number_goes_to_its_neighbours(self):
        self.expect("int x = 7u;", "int x = 8u;", "int x = 6u;")
        self.expect("int x = 0;", "int x = 1;")
        self.expect("int x = 0700;", "int x = 0701;")
        self.expect("float x = 0.5F;", "float x = 1.5F;")

    def test_a_text_and_a_boolean_are_changed(self):
        self.expect('auto x = "a\\"b";', 'auto x = "a\\"b~";')
        self.expect("bool x = true;", "bool x = false;")

    def test_a_condition_is_negated(self):
        self.expect("if (f(a)) {", "if (!(f(a))) {")
        self.expect("if (!a) {", "if (!(!a)) {", "if (a) {")

    def test_a_condition_that_declares_is_left_alone(self):
        self.expect("if (const auto* x = f(a)) {")

    def test_a_condition_over_several_lines_is_left_alone(self):
        self.expect("if (f(a,\n      b)) {")

    def test_a_call_and_an_assignment_are_removed(self):
        self.expect("f(a);", ";")
        self.expect("a.b->f(a, g());", ";")
        self.expect("m_a = b;", ";")
        self.expect("break;", ";")

    def test_a_declaration_is_kept(self):
        self.expect("const Lock lock(a);")
        self.expect("const auto a = b;")
        self.expect("A::~A() = default;")

    def test_a_line_inside_a_statement_is_kept(self):
        self.expect("f(a,\n  g(b));")

    def test_an_answer_is_exchanged(self):
        self.expect("return a;", "return {};", "return !(a);")
        self.expect("return nullptr;")

    def test_what_is_no_code_is_left_alone(self):
        self.expect('// a < b\n/* f(1);\n true */\n#include "a.h"\n#define A 1')

    def test_asserts_and_the_log_are_left_alone(self):
        self.expect("Q_ASSERT(a == 1);")
        self.expect('DiagnosticLog::write(Level, "a",\n                     1);')


class Mutants(unittest.TestCase):
    TEXT = "void f()\n{\n    g(1);\n    g(1);\n}\n"

    def test_change_the_line_that_they_say(self):
        mutant = mutants_of("a.cpp", self.TEXT)[4][0]
        self.assertEqual(mutant.apply(self.TEXT), "void f()\n{\n    g(1);\n    g(2);\n}\n")

    def test_of_equal_lines_have_keys_of_their_own(self):
        found = mutants_of("a.cpp", self.TEXT)
        keys = [mutant.key for mutants in found.values() for mutant in mutants]
        self.assertEqual(len(keys), len(set(keys)))

    def test_keep_their_keys_when_the_file_moves_and_grows(self):
        here = mutants_of("a/x.cpp", self.TEXT)[3][0]
        there = mutants_of("b/c/x.cpp", "// more\n" + self.TEXT)[4][0]
        self.assertEqual(here.key, there.key)


if __name__ == "__main__":
    unittest.main()
