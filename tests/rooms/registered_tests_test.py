"""The check that every test file is registered, on small folders made here."""

from support import ToolTest, load_tool, run

registered_tests = load_tool("registered_tests")


class RegisteredTestsTest(ToolTest):
    def check(self, *registered: str) -> tuple[int, list[str], str]:
        self.write("list.txt", "".join(f"{name}\n" for name in registered))
        return self.run_tool(registered_tests, "--tests", str(self.root / "tests"),
                             "--list", str(self.root / "list.txt"))

    def test_accepts_a_tree_whose_test_files_are_all_registered(self) -> None:
        self.write("tests/io/a_test.cpp")
        self.write("tests/rooms/b_test.py")
        self.write("tests/io/helper.cpp")
        code, lines, _ = self.check("io/a_test.cpp", "io/helper.cpp", "rooms/b_test.py")
        self.assertEqual((code, lines), (0, ["2 test files, 0 faults"]))

    def test_reports_a_file_that_its_folder_does_not_register(self) -> None:
        self.write("tests/io/a_test.cpp")
        self.write("tests/io/b_test.cpp")
        code, lines, _ = self.check("io/a_test.cpp")
        self.assertEqual(code, 1)
        self.assertEqual(lines, [
            "tests/io/b_test.cpp: in no kestrion_test() or kestrion_python_test() of a folder "
            "that tests/CMakeLists.txt adds", "2 test files, 1 faults"])

    def test_both_ways_to_name_a_python_test_are_known(self) -> None:
        self.write("tests/tools/test_a.py")
        self.write("tests/rooms/a_test.py")
        code, lines, _ = self.check()
        self.assertEqual(code, 1)
        self.assertEqual(lines[-1], "2 test files, 2 faults")

    def test_reports_the_files_of_a_folder_that_is_not_added(self) -> None:
        self.write("tests/io/a_test.cpp")
        self.write("tests/new/deep/b_test.py")
        code, lines, _ = self.check("io/a_test.cpp")
        self.assertEqual(code, 1)
        self.assertTrue(lines[0].startswith("tests/new/deep/b_test.py: "), lines[0])

    def test_a_file_of_the_same_name_in_another_folder_is_another_file(self) -> None:
        self.write("tests/io/a_test.cpp")
        self.write("tests/core/a_test.cpp")
        code, lines, _ = self.check("io/a_test.cpp")
        self.assertEqual(code, 1)
        self.assertTrue(lines[0].startswith("tests/core/a_test.cpp: "), lines[0])

    def test_reports_an_entry_whose_file_is_gone(self) -> None:
        self.write("tests/io/a_test.cpp")
        code, lines, _ = self.check("io/a_test.cpp", "io/old_test.cpp")
        self.assertEqual(code, 1)
        self.assertEqual(lines[0],
                         "tests/io/old_test.cpp: registered, but there is no such test file")

    def test_a_tree_without_test_files_is_an_error(self) -> None:
        (self.root / "tests").mkdir()
        code, _, err = self.check()
        self.assertEqual(code, 1)
        self.assertIn("No test files", err)


if __name__ == "__main__":
    run()
