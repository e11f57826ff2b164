"""The include check finds what it is there for, in a small tree of its own."""
import pathlib
import sys
import tempfile
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "tools"))
import check_includes

# file, its include, what the fault must say (None: fits)
CASES = [
    ("host/a.cpp", "<cstddef>", None),
    ("host/a.cpp", '"layout/field.h"', 'host (level 0) includes "layout/field.h" of level 1'),
    ("layout/newcomer.h", '"runtime/text.h"', 'layout (level 1) includes "runtime/text.h" of level 2'),
    ("passes/length_pass.cpp", '"runtime/text.h"', None),
    ("passes/length_pass.cpp", '"records/header.h"', 'passes (level 4) includes "records/header.h" of level 4'),
    ("records/declaration.cpp", '"records/header.h"', None),
    ("records/header.cpp", '  #  include "component/run.h"', 'level 4) includes "component/run.h" of level 5'),
    ("runtime/text.cpp", "<sqlite3.h>", "<sqlite3.h> is no standard header"),
    ("component/run.cpp", "<unistd.h>", "<unistd.h> is no standard header"),
    ("component/run.cpp", '"adapters/local/files.h"', 'level 5) includes "adapters/local/files.h" of level 6'),
    ("component/run.cpp", '"component/missing.h"', '"component/missing.h" is not in the project'),
    ("runtime/dates.cpp", '"text.h"', "write the path from the project's root"),
    ("adapters/sqlite/store.cpp", "<sqlite3.h>", None),
    ("adapters/sqlite/store.cpp", '"generated_rows.h"', None),
    ("adapters/sqlite/store.cpp", '"adapters/local/files.h"', None),
    ("adapters/trace/sink.cpp", '"adapters/sqlite/store.h"', 'level 7) includes "adapters/sqlite/store.h" of level 7'),
    ("adapters/new/a.cpp", "<cstddef>", "give the folder a level"),
    ("cli/main.cpp", '"component/run.h"', None),
    ("cli/main.cpp", '"tests/core/builder.h"', "belongs to no level"),
    ("tests/core/a.cpp", '"component/run.h"', None),
    ("stray/a.cpp", "<cstddef>", "give the folder a level"),
]
HEADERS = ["layout/field.h", "records/declaration.h", "runtime/text.h", "records/header.h", "component/run.h",
           "adapters/local/files.h", "adapters/sqlite/store.h", "tests/core/builder.h"]


class CheckIncludes(unittest.TestCase):
    def test_each_case(self):
        for file, include, fault in CASES:
            with self.subTest(file=file, include=include), tempfile.TemporaryDirectory() as folder:
                root = pathlib.Path(folder)
                for header in HEADERS:
                    (root / header).parent.mkdir(parents=True, exist_ok=True)
                    (root / header).touch()
                (root / file).parent.mkdir(parents=True, exist_ok=True)
                line = include if "#" in include else f"#include {include}"
                (root / file).write_text(f"// head\n{line}\n")
                found = check_includes.check(root)
                if fault is None:
                    self.assertEqual(found, [])
                else:
                    self.assertEqual(len(found), 1, found)
                    self.assertIn(fault, found[0])
                    self.assertTrue(found[0].startswith(file), found[0])


if __name__ == "__main__":
    unittest.main()
