#!/usr/bin/env python3
"""Tests of check_layout.py on small trees of sources."""

import pathlib
import tempfile
import unittest

import check_layout

CONTRIBUTING = """
## The rooms of `core/`

| Room | What it is for |
|---|---|
| `content/` | below |
| `graph/` | above |

## Another section
| `cellar/` | no room |
"""


class LayoutTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.sources = pathlib.Path(folder.name)
        self.write("CONTRIBUTING.md", CONTRIBUTING)
        self.write("core/content/corewalk.cpp", '#include "content/walk.h"\n')
        self.write("core/content/walk.h", "")
        self.write("core/graph/corenode.cpp", '#include "ksx/core/node.h"\n#include "content/walk.h"\n')
        self.write(check_layout.PUBLIC + "/node.h", "")

    def write(self, name, text):
        path = self.sources / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text)

    def faults(self, rule):
        return list(check_layout.CHECKS[rule](check_layout.Layout(self.sources)))

    def test_a_room_may_include_rooms_above_it_in_the_table(self):
        self.assertEqual(self.faults("floors"), [])

    def test_an_internal_header_of_a_higher_room_is_a_fault(self):
        self.write("core/graph/link.h", "")
        self.write("core/content/corewalk.cpp", '\n#include "graph/link.h"\n')
        self.assertEqual(self.faults("floors"),
                         ["core/content/corewalk.cpp:2: core/content includes core/graph/link.h,"
                          " which is above it"])

    def test_a_public_header_counts_to_the_room_of_its_source(self):
        self.write("core/content/walk.h", '#include "ksx/core/node.h"\n')
        self.assertEqual(len(self.faults("floors")), 1)

    def test_folders_below_the_rooms_have_an_order_too(self):
        self.write("data/content/graph.h", "")
        self.write("common/data/base.h", '#include "data/content/graph.h"\n')
        self.assertEqual(len(self.faults("floors")), 1)

    def test_a_header_beside_the_file_is_found_by_its_name_alone(self):
        self.write("core/graph/link.h", "")
        self.write("core/content/corewalk.cpp", '#include "corebelow.h"\n')
        self.write("core/content/corebelow.h", '#include "graph/link.h"\n')
        self.assertEqual([fault.split(":")[0] for fault in self.faults("floors")],
                         ["core/content/corebelow.h"])

    def test_a_public_header_without_source_and_room_is_a_fault(self):
        self.write(check_layout.PUBLIC + "/lonely.h", "")
        self.assertEqual(len(self.faults("floors")), 1)

    def test_a_room_that_the_table_does_not_name_is_a_fault(self):
        self.write("core/cellar/coreold.cpp", "")
        self.assertEqual(len(self.faults("floors")), 1)

    def test_a_public_header_that_includes_an_internal_one_is_a_fault(self):
        self.write(check_layout.PUBLIC + "/node.h", '#include "content/walk.h"\n')
        self.assertEqual(len(self.faults("public")), 1)

    def test_the_kit_is_a_client_of_the_public_headers(self):
        self.write("kit/inventory.cpp", '#include "ksx/core/node.h"\n#include "content/walk.h"\n')
        self.assertEqual(self.faults("public"),
                         ["kit/inventory.cpp:2: includes core/content/walk.h, which is not"
                          " installed"])

    def test_the_kit_knows_neither_its_commands_nor_the_other_tool(self):
        self.write("kit/command/command.h", "")
        self.write("cli/services.h", "")
        self.write("kit/inventory.cpp", '#include "kit/command/command.h"\n')
        self.write("kit/command/command.cpp", '#include "cli/services.h"\n')
        self.assertEqual([fault.split(":")[0] for fault in self.faults("floors")],
                         ["kit/command/command.cpp", "kit/inventory.cpp"])

    def test_a_public_header_of_the_kit_counts_to_the_kit(self):
        self.write(check_layout.PUBLIC_KIT + "/inventory.h", '#include "ksx/core/node.h"\n')
        self.write("core/content/walk.h", '#include "ksx/kit/inventory.h"\n')
        self.assertEqual(self.faults("floors"),
                         ["core/content/walk.h:1: core/content includes"
                          " kestrix/common/include/ksx/kit/inventory.h, which is above it"])

    def test_only_the_commands_of_the_kit_print(self):
        self.write("kit/command/command.cpp", "std::cout << 1;\n")
        self.write("kit/inventory.cpp", "std::cout << 1;\n")
        self.assertEqual(self.faults("printing"),
                         ["kit/inventory.cpp:1: writes to a standard stream"])

    def test_printing_in_the_library_is_a_fault(self):
        self.write("core/content/corewalk.cpp", "void f()\n{ std::cout << 1; }\n")
        self.assertEqual(self.faults("printing"),
                         ["core/content/corewalk.cpp:2: writes to a standard stream"])

    def test_the_tool_may_print_and_comments_may_speak_of_it(self):
        self.write("cli/console.cpp", "std::cout << 1;\n")
        self.write("core/content/corewalk.cpp", "// nothing for stdout\n")
        self.assertEqual(self.faults("printing"), [])


if __name__ == "__main__":
    unittest.main()
