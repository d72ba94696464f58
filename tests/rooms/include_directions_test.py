"""The check of the include directions, on small trees made here."""

from support import ToolTest, load_tool, run

directions = load_tool("include_directions")


class IncludeDirectionsTest(ToolTest):
    def check(self, *arguments: str) -> tuple[int, list[str], str]:
        return self.run_tool(directions, "--root", str(self.root), *arguments)

    def expect_clean(self, files: int) -> None:
        code, lines, _ = self.check()
        self.assertEqual(lines, [f"{files} files, 0 faults"])
        self.assertEqual(code, 0)

    def expect_faults(self, *expected: str) -> None:
        code, lines, _ = self.check()
        self.assertEqual(lines[:-1], list(expected))
        self.assertTrue(lines[-1].endswith(f" {len(expected)} faults"), lines[-1])
        self.assertEqual(code, 1)


class ArrowsTest(IncludeDirectionsTest):
    def test_accepts_arrows_that_point_down(self) -> None:
        self.write("core/node.cpp", '#include "core/node.h"\n#include "tables/hash_map.h"\n'
                                    '#include "io/session.h"\n#include "platform/text.h"\n'
                                    '#include "kestrion/platform/bstr.h"\n#include <vector>\n')
        self.write("tables/hash_map.h", '#include "platform/text.h"\n')
        self.write("io/session.h", '#include "platform/clock.h"\n')
        self.expect_clean(3)

    def test_reports_an_arrow_that_points_up_with_its_line(self) -> None:
        self.write("io/session.h", '#pragma once\n\n#include "core/node.h"\n')
        self.expect_faults('io/session.h:3: room io must not include core: "core/node.h"')

    def test_reports_every_wrong_arrow_of_a_file(self) -> None:
        self.write("platform/text.cpp", '#include "io/session.h"\n#include "tables/x.h"\n')
        self.expect_faults(
            'platform/text.cpp:1: room platform must not include io: "io/session.h"',
            'platform/text.cpp:2: room platform must not include tables: "tables/x.h"')

    def test_rooms_side_by_side_do_not_include_each_other(self) -> None:
        self.write("io/a.h", '#include "tables/b.h"\n')
        self.write("scope/a.h", '#include "groups/b.h"\n')
        self.write("store/a.h", '#include "tables/b.h"\n')
        self.write("tables/a.h", '#include "io/b.h"\n')
        self.expect_faults('io/a.h:1: room io must not include tables: "tables/b.h"',
                           'scope/a.h:1: room scope must not include groups: "groups/b.h"',
                           'store/a.h:1: room store must not include tables: "tables/b.h"',
                           'tables/a.h:1: room tables must not include io: "io/b.h"')

    def test_bodies_do_not_reach_past_core_to_the_objects(self) -> None:
        self.write("groups/search.cpp", '#include "hosting/objects.h"\n')
        self.write("scope/channel.cpp", '#include "generated/faces/IKestrion.h"\n')
        self.expect_faults(
            'groups/search.cpp:1: room groups must not include hosting: "hosting/objects.h"',
            'scope/channel.cpp:1: room scope must not include generated/faces: '
            '"generated/faces/IKestrion.h"')

    def test_the_command_line_uses_public_headers_only(self) -> None:
        self.write("cli/main.cpp", '#include <kestrion/kestrion.h>\n#include "cli/a.h"\n'
                                   '#include "kestrion/platform/bstr.h"\n')
        self.write("cli/shortcut.cpp", '#include "io/session.h"\n')
        self.expect_faults('cli/shortcut.cpp:1: room cli must not include io: "io/session.h"')

    def test_an_include_in_angle_brackets_is_held_to_the_same_rules(self) -> None:
        self.write("io/session.h", "#include <kestrion/kestrion.h>\n")
        self.expect_faults(
            'io/session.h:1: room io must not include kestrion: "kestrion/kestrion.h"')

    def test_a_name_that_only_begins_like_a_room_is_no_room(self) -> None:
        self.write("io/session.h", "#include <iostream>\n#include <corecrt.h>\n")
        self.expect_clean(1)


class PublicHeadersTest(IncludeDirectionsTest):
    def test_headers_below_the_two_include_folders_are_public(self) -> None:
        self.write("include/kestrion/kestrion.h", '#include "kestrion/enums.h"\n'
                                                  '#include "kestrion/platform/types.h"\n')
        self.write("platform/include/kestrion/platform/types.h",
                   '#include "kestrion/platform/linux/types.h"\n')
        self.expect_clean(2)

    def test_public_headers_show_nothing_of_the_inside(self) -> None:
        self.write("include/kestrion/kestrion.h", '#include "core/node.h"\n')
        self.write("platform/include/kestrion/platform/types.h", '#include "platform/text.h"\n')
        self.expect_faults(
            'include/kestrion/kestrion.h:1: room kestrion must not include core: "core/node.h"',
            'platform/include/kestrion/platform/types.h:1: room kestrion/platform must not '
            'include platform: "platform/text.h"')


class InstrumentTest(IncludeDirectionsTest):
    def test_the_visa_library_reaches_the_instrument_by_one_header(self) -> None:
        self.write("visa/good.cpp", '#include "virtual/device_link.h"\n')
        self.write("visa/wrong.cpp", '#include "virtual/oscilloscope.h"\n')
        self.expect_faults('visa/wrong.cpp:1: room visa must not include virtual but by '
                           'virtual/device_link.h: "virtual/oscilloscope.h"')

    def test_neither_knows_anything_of_the_driver(self) -> None:
        self.write("virtual/server/main.cpp", '#include "platform/clock.h"\n')
        self.write("visa/session.cpp", '#include "io/visa_numbers.h"\n')
        self.expect_faults(
            'virtual/server/main.cpp:1: room virtual must not include platform: '
            '"platform/clock.h"',
            'visa/session.cpp:1: room visa must not include io: "io/visa_numbers.h"')

    def test_the_driver_reaches_neither_past_the_function_table(self) -> None:
        self.write("core/driver.cpp", '#include "visa/functions.h"\n')
        self.write("hosting/bundled.cpp", '#include "visa/functions.h"\n')
        self.write("hosting/wrong.cpp", '#include "visa/session.h"\n'
                                        '#include "virtual/device_link.h"\n')
        self.expect_faults(
            'core/driver.cpp:1: room core must not include visa: "visa/functions.h"',
            'hosting/wrong.cpp:1: room hosting must not include visa but by visa/functions.h: '
            '"visa/session.h"',
            'hosting/wrong.cpp:2: room hosting must not include virtual: '
            '"virtual/device_link.h"')


class TestFoldersTest(IncludeDirectionsTest):
    def test_tests_include_their_room_and_what_is_below(self) -> None:
        self.write("tests/core/a_test.cpp", '#include "core/node.h"\n#include "io/session.h"\n'
                                            '#include "platform/text.h"\n'
                                            '#include "tests/core/helper.h"\n'
                                            '#include "tests/io/fake_visa.h"\n'
                                            '#include <sys/socket.h>\n')
        self.expect_clean(1)

    def test_tests_do_not_include_rooms_above(self) -> None:
        self.write("tests/io/a_test.cpp", '#include "core/node.h"\n')
        self.expect_faults('tests/io/a_test.cpp:1: room tests/io must not include core: '
                           '"core/node.h"')

    def test_tests_of_the_instrument_are_free_of_the_driver_too(self) -> None:
        self.write("tests/virtual/a_test.cpp", '#include "io/session.h"\n')
        self.write("tests/visa/a_test.cpp", '#include "virtual/oscilloscope.h"\n'
                                            '#include "tests/io/fake_visa.h"\n')
        self.expect_faults('tests/virtual/a_test.cpp:1: room tests/virtual must not include io: '
                           '"io/session.h"',
                           'tests/visa/a_test.cpp:2: room tests/visa must not include tests/io: '
                           '"tests/io/fake_visa.h"')

    def test_shared_support_brings_what_it_stands_on(self) -> None:
        self.write("tests/scope/a_test.cpp", '#include "tests/support/scope_test.h"\n'
                                             '#include "tests/io/fake_visa.h"\n')
        self.write("tests/tables/a_test.cpp", '#include "tests/support/scope_test.h"\n')
        self.expect_faults('tests/tables/a_test.cpp:1: room tests/tables must not include '
                           'tests/support but by tests/support/temporary_folder.h: '
                           '"tests/support/scope_test.h"')

    def test_every_test_may_have_a_temporary_folder(self) -> None:
        for room in ("platform", "cli", "virtual"):
            self.write(f"tests/{room}/a_test.cpp",
                       '#include "tests/support/temporary_folder.h"\n')
        self.expect_clean(3)

    def test_system_tests_include_everything(self) -> None:
        self.write("tests/system/a_test.cpp", '#include "virtual/oscilloscope.h"\n'
                                              '#include "kestrion/kestrion.h"\n')
        self.expect_clean(1)

    def test_nothing_includes_tests(self) -> None:
        self.write("io/session.cpp", '#include "tests/io/fake_visa.h"\n')
        self.expect_faults('io/session.cpp:1: room io must not include tests/io: '
                           '"tests/io/fake_visa.h"')


class GeneratedSourcesTest(IncludeDirectionsTest):
    def test_hooks_and_members_are_for_the_bodies(self) -> None:
        self.write("scope/a.cpp", '#include "generated/hooks/IKestrionChannel.h"\n')
        self.write("io/a.cpp", '#include "generated/members/IKestrionChannel.h"\n')
        self.expect_faults('io/a.cpp:1: room io must not include generated/members: '
                           '"generated/members/IKestrionChannel.h"')

    def test_generated_sources_are_checked_where_they_are_named(self) -> None:
        self.write("io/a.cpp")
        self.write("build/debug/generated/include/kestrion/enums.h",
                   '#include "kestrion/platform/types.h"\n')
        self.write("build/debug/generated/hooks/IKestrion.h", '#include "scope/channel.h"\n')
        code, lines, _ = self.check("--generated", str(self.root / "build/debug/generated"))
        self.assertEqual(lines, ['generated/hooks/IKestrion.h:1: room generated/hooks must not '
                                 'include scope: "scope/channel.h"', "3 files, 1 faults"])
        self.assertEqual(code, 1)

    def test_tables_for_tests_see_what_a_program_sees(self) -> None:
        self.write("build/debug/generated/tests/scope_a.cpp",
                   '#include "kestrion/interfaces/IKestrion.h"\n'
                   '#include "tests/system/property.h"\n'
                   '#include "core/frame.h"\n')
        _, lines, _ = self.check("--generated", str(self.root / "build/debug/generated"))
        self.assertEqual(lines, ['generated/tests/scope_a.cpp:3: room generated/tests must not '
                                 'include core: "core/frame.h"', "1 files, 1 faults"])

    def test_a_missing_folder_of_generated_sources_is_an_error(self) -> None:
        self.write("io/a.cpp")
        code, lines, err = self.check("--generated", str(self.root / "nowhere"))
        self.assertEqual((code, lines), (2, []))
        self.assertIn("build the project first", err)


class WaysToIncludeTest(IncludeDirectionsTest):
    def test_a_path_from_the_files_own_folder_is_refused(self) -> None:
        self.write("io/a.cpp", '#include "session.h"\n#include "../core/node.h"\n')
        self.expect_faults('io/a.cpp:1: "session.h" is not named from the top of the tree',
                           'io/a.cpp:2: "../core/node.h" is not named from the top of the tree')

    def test_comments_and_raw_texts_are_not_includes(self) -> None:
        self.write("io/a.cpp", '// #include "core/a.h"\n'
                               '/*\n#include "core/b.h"\n*/\n'
                               'const char* kText = R"(\n#include "core/c.h"\n)";\n'
                               'const char* kSlashes = "//";\n')
        self.expect_clean(1)

    def test_lines_are_counted_through_comments_and_blanks_are_allowed(self) -> None:
        self.write("io/a.cpp", '/* one\n two */\n  #  include "core/a.h"  // why\n')
        self.expect_faults('io/a.cpp:3: room io must not include core: "core/a.h"')

    def test_a_comment_mark_in_a_text_hides_nothing(self) -> None:
        self.write("io/a.cpp", 'const char* kText = "/*";\n#include "core/a.h"\n')
        self.expect_faults('io/a.cpp:2: room io must not include core: "core/a.h"')

    def test_a_digit_separator_hides_nothing(self) -> None:
        self.write("io/a.cpp", "int big = 1'000;\n#include \"core/a.h\"\nint two = 2'000;\n")
        self.expect_faults('io/a.cpp:2: room io must not include core: "core/a.h"')


class PlatformTest(IncludeDirectionsTest):
    def test_only_the_platform_room_tests_for_a_platform(self) -> None:
        self.write("platform/include/kestrion/platform/types.h", "#if defined(_WIN32)\n#endif\n")
        self.write("io/a.h", "#pragma once\n#ifdef _WIN32\n#elif defined(__linux__)\n#endif\n")
        self.expect_faults("io/a.h:2: _WIN32 must not be tested outside platform/",
                           "io/a.h:3: __linux__ must not be tested outside platform/")

    def test_a_condition_over_several_lines_is_read_whole(self) -> None:
        self.write("visa/linux/a.cpp", "#if defined(FIRST) || \\\n    defined(__APPLE__)\n#endif\n")
        self.expect_faults("visa/linux/a.cpp:1: __APPLE__ must not be tested outside platform/")

    def test_other_conditions_are_not_meant(self) -> None:
        self.write("io/a.h", "#ifdef NDEBUG\n#endif\n// #ifdef _WIN32\n"
                             'const char* kName = "_WIN32";\n#if defined(MY_linux_NAME)\n#endif\n')
        self.expect_clean(1)

    def test_system_headers_stand_in_the_systems_folder(self) -> None:
        self.write("visa/linux/tcp_socket.cpp", "#include <sys/socket.h>\n#include <unistd.h>\n")
        self.write("visa/socket_link.cpp", "#include <sys/socket.h>\n")
        self.expect_faults("visa/socket_link.cpp:1: <sys/socket.h> belongs in a folder linux/ or "
                           "windows/ of the room")


class FoldersTest(IncludeDirectionsTest):
    def test_a_folder_without_a_rule_is_a_fault(self) -> None:
        self.write("extra/a.cpp", "int a = 0;\n")
        self.write("main.cpp", "int b = 0;\n")
        self.expect_faults("extra/a.cpp:1: this folder has no rule in tools/include_directions.py",
                           "main.cpp:1: this folder has no rule in tools/include_directions.py")

    def test_build_folders_and_hidden_ones_are_left_out(self) -> None:
        self.write("build/debug/a.cpp", '#include "core/a.h"\n')
        self.write(".cache/a.cpp", '#include "core/a.h"\n')
        self.write("io/build/a.cpp", "int a = 0;\n")
        self.expect_clean(1)

    def test_a_tree_without_sources_is_an_error(self) -> None:
        code, lines, err = self.check()
        self.assertEqual((code, lines), (2, []))
        self.assertIn("No source files", err)

    def test_every_room_has_a_rule(self) -> None:
        self.assertEqual(set(directions.ROOMS) - {"tests"}, set(directions.MAY_INCLUDE))


if __name__ == "__main__":
    run()
