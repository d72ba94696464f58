"""The numbers that a model comes to: the report, and the errors where one has to hold."""

import re

from support import SMALL_MODEL, ChangedModel, run

ENUMS = "enums/lamps.toml"
EXPECTED = "expected.toml"


class Report(ChangedModel):
    maxDiff = None

    def lines(self) -> list[str]:
        result, text, errors = run("--model", str(self.model), "--coverage")
        self.assertEqual((result, errors), (0, ""))
        return text.splitlines()

    def test_whole_report(self) -> None:
        self.assertEqual(run("--model", str(SMALL_MODEL), "--coverage"), (0, """\
interfaces: 9
external interfaces: 1
members of interfaces: 42
entries: 58
hooks: 12
repeated capabilities: 1
instances: 2
messages: 2

IBase: members 2
IRoot: members 2
IBeacon: members 5
IChime: members 4
IHighChime: members 4
IGates: members 3
IGate: members 6/6
ILamp: members 13
IClassLamp: members 3

KestrionLampModeEnum: members 2/2; tables 3/2, 1 over
LampShape: members 1/1; tables 0/0
IviScopeLampModeEnum: members 1; tables 0
tables of the class: 0/1, 1 short

tables of the boolean with "OFF" "0" and "ON" "1": 2/2
tables of the boolean: 2/2

refused by newer (Amber Series): 12/3, 9 over
refused by older (Blue Series): 2
refused by Amber Series, Blue Series: 3
refused by no family: 41, of about 40

enumerations: 2/2
members: 3/3
tables: 5/5
member keys: 5/5
converters: 2/3, 1 short
families: 2/2
models: 3/3
methods, getters and setters: 58, of about 50
""", ""))

    def test_interface_without_a_number_shows_what_it_has(self) -> None:
        self.change(EXPECTED, "IGate = 6\n", "")
        self.assertIn("IGate: members 6", self.lines())

    def test_tables_that_are_missing_are_no_error(self) -> None:
        self.change(EXPECTED, "{ members = 2, tables = 2 }", "{ members = 2, tables = 9 }")
        self.change(EXPECTED, "tables = 5", "tables = 12")
        self.assertIn("KestrionLampModeEnum: members 2/2; tables 3/9, 6 short", self.lines())

    def test_table_of_several_members_counts_for_each(self) -> None:
        self.change(ENUMS, 'members = ["ILamp.Mode", "ILamp.Configure"]',
                    'members = ["ILamp.Mode", "ILamp.Configure", "ILamp.Lit"]')
        lines = self.lines()
        self.assertIn("KestrionLampModeEnum: members 2/2; tables 4/2, 2 over", lines)
        # ILamp.Lit had a table of another enumeration before: it stays one key.
        self.assertIn("member keys: 5/5", lines)
        self.assertIn("tables: 6/5, 1 over", lines)

    def test_families_count_as_a_set_whether_named_or_not(self) -> None:
        self.change("lamps/lamp.toml", 'set = "PREPARE %d"',
                    'set = "PREPARE %d", refuses = ["Amber Series"]')
        self.change("lamps/lamp.toml", 'set = "KEY %d"',
                    'set = "KEY %d", refuses = ["Amber Series", "Blue Series"]')
        lines = self.lines()
        self.assertIn("refused by newer (Amber Series): 13/3, 10 over", lines)
        self.assertIn("refused by Amber Series, Blue Series: 4", lines)


class ExpectedErrors(ChangedModel):
    maxDiff = None

    def assert_errors(self, file: str, old: str, new: str, *expected: str) -> None:
        self.change(file, old, new)
        self.assertEqual(self.errors(), [f"model/{line}" for line in expected])

    def test_complete_interface_that_loses_a_member(self) -> None:
        self.assert_errors("lamps/gates.toml",
                           'Label = { type = "string", path = ":LABEL:<name>", doc = "Its label." }\n',
                           "", "lamps/gates.toml:12: IGate has 5 members, and 6 are expected")

    def test_complete_interface_that_does_not_exist(self) -> None:
        self.assert_errors(EXPECTED, "IGate = 6", "IGat = 6",
                           "expected.toml:36: there is no interface IGat; did you mean 'IGate'?")

    def test_enumeration_with_a_value_too_few(self) -> None:
        self.change(ENUMS, 'KestrionLampModeBlink = { value = 3, doc = "On and off." }\n', "")
        self.change(ENUMS, 'KestrionLampModeBlink = ["BLINK", "BLI"]\n', "")
        self.assert_errors(ENUMS, "KestrionLampModeBlink = []\n", "",
                           "enums/lamps.toml:18: KestrionLampModeEnum has 1 values, and 2 are"
                           " expected")

    def test_enumeration_with_a_value_too_many(self) -> None:
        self.assert_errors(ENUMS, "KestrionLampModeSteady = 0",
                           "KestrionLampModeSteady = 0\nKestrionLampModeFlicker = 1",
                           "enums/lamps.toml:18: KestrionLampModeEnum has 3 values, and 2 are"
                           " expected")

    def test_enumeration_that_is_not_expected(self) -> None:
        self.change(EXPECTED, "enumerations = 2\nmembers = 3", "enumerations = 1\nmembers = 2")
        self.assert_errors(EXPECTED, "LampShape = { members = 1, tables = 0 }\n", "",
                           "enums/lamps.toml:39: LampShape has no line in model/expected.toml;"
                           " did you mean 'KestrionLampModeEnum'?")

    def test_enumeration_of_the_class_that_is_not_expected(self) -> None:
        self.change(EXPECTED, '["IviScopeLampModeEnum"]', "[]")
        self.assert_errors(EXPECTED, "converters = 3", "converters = 2",
                           "enums/lamps.toml:46: IviScopeLampModeEnum has no line in"
                           " model/expected.toml; did you mean 'KestrionLampModeEnum'?")

    def test_expected_enumeration_that_does_not_exist(self) -> None:
        self.change(EXPECTED, "enumerations = 2\nmembers = 3", "enumerations = 3\nmembers = 5")
        self.assert_errors(EXPECTED, "LampShape = {",
                           "KestrionLampColor = { members = 2, tables = 0 }\nLampShape = {",
                           "expected.toml:33: there is no enumeration KestrionLampColor;"
                           " did you mean 'KestrionLampModeEnum'?")

    def test_expected_enumeration_of_the_class_that_does_not_exist(self) -> None:
        self.change(EXPECTED, "without_tables = []", 'without_tables = ["IviScopeLampEnum"]')
        self.assertEqual(self.errors(), [
            "model/expected.toml:21: there is no enumeration IviScopeLampEnum;"
            " did you mean 'IviScopeLampModeEnum'?"])

    def test_family_with_another_number_of_models(self) -> None:
        self.assert_errors("families.toml", '["A1", "A2"]', '["A1"]',
                           "families.toml:3: 'Amber Series' has 1 models, and 2 are expected")

    def test_family_that_is_not_expected(self) -> None:
        self.change(EXPECTED, "families = 2\nmodels = 3", "families = 1\nmodels = 2")
        self.assert_errors(EXPECTED, '"Blue Series" = 1\n', "",
                           "families.toml:7: 'Blue Series' has no line in model/expected.toml;"
                           " did you mean 'Amber Series'?")

    def test_expected_family_that_does_not_exist(self) -> None:
        self.change(EXPECTED, "families = 2\nmodels = 3", "families = 3\nmodels = 7")
        self.assert_errors(EXPECTED, '"Blue Series" = 1\n', '"Blue Series" = 1\n"Red Series" = 4\n',
                           "expected.toml:17: there is no family 'Red Series';"
                           " did you mean 'Blue Series'?")

    def test_expected_refusals_of_an_unknown_list(self) -> None:
        self.assert_errors(EXPECTED, "newer = 3", "newest = 3",
                           "expected.toml:19: there is no refusal list 'newest';"
                           " did you mean 'newer'?")

    def test_boolean_table_of_other_words(self) -> None:
        self.assert_errors(ENUMS, 'VARIANT_FALSE = ["OFF", "0"]', 'VARIANT_FALSE = ["0", "OFF"]',
                           "enums/lamps.toml:10: VARIANT_BOOL: model/expected.toml has no"
                           " 'boolean' with ['0', 'OFF'] and ['ON', '1']")

    def test_parts_that_do_not_add_up(self) -> None:
        for key, line, found, said in [("enumerations", 2, 2, 7), ("members", 3, 3, 7),
                                       ("tables", 4, 5, 7), ("converters", 6, 3, 7),
                                       ("families", 7, 2, 7), ("models", 8, 3, 7)]:
            with self.subTest(key):
                self.setUp()
                path = self.model / EXPECTED
                text = path.read_text(encoding="utf-8")
                path.write_text(re.sub(rf"^{key} = \d+$", f"{key} = {said}", text, count=1,
                                       flags=re.MULTILINE), encoding="utf-8")
                self.assertEqual(self.errors(), [
                    f"model/expected.toml:{line}: the parts of '{key}' add up to {found},"
                    f" not {said}"])

    def test_keys_that_are_unknown_or_missing(self) -> None:
        for old, new, *errors in [
            ("[about]", "[abuot]",
             "expected.toml:1: expected.toml needs the key 'about'",
             "expected.toml:1: [about] needs the key 'methods'",
             "expected.toml:1: [about] needs the key 'refused_by_no_family'",
             "expected.toml:10: expected.toml has no key 'abuot'; did you mean 'about'?"),
            ("member_keys = 5", "membr_keys = 5",
             "expected.toml:1: [sums] needs the key 'member_keys'",
             "expected.toml:5: [sums] has no key 'membr_keys'; did you mean 'member_keys'?"),
            ("methods = 50", 'methods = "50"',
             "expected.toml:11: 'methods' of [about] has to be a number"),
            ('"Blue Series" = 1', '"Blue Series" = "1"',
             "expected.toml:16: 'Blue Series' of [families] has to be a number"),
            ("newer = 3", "newer = [3]",
             "expected.toml:19: 'newer' of [refusals] has to be a number"),
            ("without_tables = []\n", "",
             "expected.toml:21: [class_enumerations] needs the key 'without_tables'"),
            ("LampShape = { members = 1, tables = 0 }", "LampShape = 1",
             "expected.toml:33: 'LampShape' has to be a table"),
            ("LampShape = { members = 1, tables = 0 }", "LampShape = { members = 1 }",
             "expected.toml:33: LampShape needs the key 'tables'"),
            ('true_tokens = ["ON", "1"]', 'true_tokens = "ON"',
             "expected.toml:28: 'true_tokens' of a 'boolean' has to be an array of texts"),
        ]:
            with self.subTest(new):
                self.setUp()
                self.change(EXPECTED, old, new)
                found = self.errors()
                for error in errors:
                    self.assertIn(f"model/{error}", found)
