#!/usr/bin/env python3
"""Proves that every test file is registered with CTest.

    tools/registered_tests.py --tests FOLDER --list FILE

FILE has the registered files, one a line, named from FOLDER; the build writes it. Prints the test
files that aren't in it and the entries that aren't there any more; ends with 1 if there are any.
"""

import argparse
import sys
from pathlib import Path, PurePosixPath

TEST_FILES = ("*_test.cpp", "*_test.py", "test_*.py")


def is_test_file(name: str) -> bool:
    return any(PurePosixPath(name).match(pattern) for pattern in TEST_FILES)


def test_files(folder: Path) -> set[str]:
    names = (path.relative_to(folder).as_posix() for path in folder.rglob("*"))
    return {name for name in names if is_test_file(name)}


def faults(found: set[str], registered: set[str]) -> list[str]:
    missing = [f"{name}: in no kestrion_test() or kestrion_python_test() of a folder that "
               "tests/CMakeLists.txt adds" for name in sorted(found - registered)]
    gone = [f"{name}: registered, but there is no such test file"
            for name in sorted(registered - found) if is_test_file(name)]
    return missing + gone


def main(arguments: list[str]) -> int:
    parser = argparse.ArgumentParser(description="Finds test files that no test runs.")
    parser.add_argument("--tests", type=Path, required=True, help="the folder of the tests")
    parser.add_argument("--list", type=Path, required=True, help="the list that the build wrote")
    options = parser.parse_args(arguments)

    found = test_files(options.tests)
    registered = set(options.list.read_text(encoding="utf-8").split("\n")) - {""}
    wrong = faults(found, registered)
    for fault in wrong:
        print(f"tests/{fault}")
    if not found:
        print(f"No test files below {options.tests}.", file=sys.stderr)
        return 1
    print(f"{len(found)} test files, {len(wrong)} faults")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
