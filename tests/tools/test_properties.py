"""The tables of properties for the system tests, made of the small model."""

import unittest

from generator import output
from generator.cli import read_model
from generator.problems import Problems
from support import ChangedModel, generated

LAMP = "lamps/lamp.toml"
LAMPS = "tests/lamps_lamp.cpp"
GATES = "tests/lamps_gates.cpp"
ALL = "tests/properties.cpp"
KEY = 'Key = { type = "long", set = "KEY %d", doc = "Written only." }'


def row(text: str, name: str) -> str:
    """The row of a property, up to its end."""
    return text.split(f'{{.name = "{name}",\n')[1].split("},\n    {")[0].split("},\n};")[0]


class Rows(unittest.TestCase):
    @classmethod
    def setUpClass(cls) -> None:
        cls.files = generated()

    def test_property_of_an_enumeration_with_the_values_of_its_own_table(self) -> None:
        self.assertIn("constexpr LONG kModeValues[] = {0, 3};\n", self.files[LAMPS])
        self.assertEqual(row(self.files[LAMPS], "Mode"), """\
     .kind = PropertyKind::kEnum,
     .hasIndex = false,
     .values = kModeValues,
     .indexes = {},
     .get = Getter<&::ILamp::get_Mode>::Call,
     .put = Setter<&::ILamp::put_Mode>::Call""")

    def test_enumeration_without_a_table_for_the_member_has_all_its_values(self) -> None:
        part = self.files[LAMPS].split("namespace IClassLampProperties")[1]
        self.assertIn("constexpr LONG kModeValues[] = {0};\n", part)
        self.assertIn("&::IClassLamp::put_Mode", part)

    def test_kinds_of_plain_types(self) -> None:
        for file, name, kind in ((LAMPS, "Lit", "kBool"), (LAMPS, "Power", "kDouble"),
                                 (LAMPS, "Text", "kText"), (LAMPS, "Key", "kLong"),
                                 (GATES, "Open", "kBool"), (GATES, "Label", "kText")):
            with self.subTest(name):
                text = row(self.files[file], name)
                self.assertIn(f"     .kind = PropertyKind::{kind},\n", text)
                self.assertIn("     .values = {},\n", text)

    def test_property_that_is_written_only_has_no_getter(self) -> None:
        self.assertIn("     .get = nullptr,\n     .put = Setter<&::ILamp::put_Key>::Call",
                      row(self.files[LAMPS], "Key"))

    def test_what_is_only_read_and_what_is_called_stand_in_no_table(self) -> None:
        for name in ("Hours", "Span", "Trace", "Flash", "Configure", "Record"):
            with self.subTest(name):
                self.assertNotIn(f'"{name}"', self.files[LAMPS])

    def test_interfaces_of_one_file_of_the_model_share_a_source(self) -> None:
        self.assertIn("namespace ILampProperties {", self.files[LAMPS])
        self.assertIn("namespace IClassLampProperties {", self.files[LAMPS])
        self.assertIn("namespace IBeaconProperties {", self.files["tests/lamps_beacon.cpp"])
        self.assertIn('#include "kestrion/interfaces/IClassLamp.h"\n'
                      '#include "kestrion/interfaces/ILamp.h"\n', self.files[LAMPS])

    def test_list_of_all_interfaces_with_their_nodes(self) -> None:
        self.assertIn('constexpr PropertyNode kGate{"Gate1", "Gate2",\n'
                      "    &FindInstance<::IGates, ::IGate>};\n", self.files[ALL])
        self.assertIn('        {"IBeacon", nullptr, IBeaconProperties::All()},\n'
                      '        {"IChime", nullptr, IChimeProperties::All()},\n'
                      '        {"IHighChime", nullptr, IHighChimeProperties::All()},\n'
                      '        {"IGate", &kGate, IGateProperties::All()},\n'
                      '        {"ILamp", nullptr, ILampProperties::All()},\n'
                      '        {"IClassLamp", nullptr, IClassLampProperties::All()},\n',
                      self.files[ALL])

    def test_interface_without_such_a_property_is_left_out(self) -> None:
        self.assertNotIn("IBaseProperties", self.files[ALL])
        self.assertNotIn("IGatesProperties", self.files[ALL])
        self.assertNotIn("tests/core_base.cpp", self.files)

    def test_sources_are_a_group_of_their_own(self) -> None:
        self.assertEqual(output.groups(list(self.files))["tests"],
                         ["tests/lamps_beacon.cpp", "tests/lamps_chime.cpp", GATES, LAMPS, ALL])


class Indexes(ChangedModel):
    def text(self, line: str) -> str:
        self.change(LAMP, KEY, line)
        return output.all_files(read_model(self.model, "1.2.3", Problems()))[LAMPS]

    def test_enumeration_tells_the_values_apart(self) -> None:
        self.change("enums/lamps.toml", 'members = ["ILamp.ReadAll"]',
                    'members = ["ILamp.ReadAll", "ILamp.Key"]')
        text = self.text('Key = { type = "double", args = ["KestrionLampModeEnum Of"],'
                         ' path = "KEY:%{LampMode}s", doc = "Of each." }')
        # The table of the member has words for one of the values only.
        self.assertIn("constexpr LONG kKeyIndexes[] = {0};\n", text)
        self.assertIn("     .hasIndex = true,\n     .values = {},\n     .indexes = kKeyIndexes,\n",
                      row(text, "Key"))
        self.assertIn(".put = Setter<&::ILamp::put_Key>::Call", row(text, "Key"))

    def test_number_tells_the_values_apart(self) -> None:
        text = self.text('Key = { type = "double", args = ["long Row"], path = "KEY%d:AT",'
                         ' doc = "Where it is." }')
        self.assertIn("     .hasIndex = true,\n     .values = {},\n     .indexes = {},\n",
                      row(text, "Key"))

    def test_what_one_number_and_one_value_do_not_call_has_no_calls(self) -> None:
        text = self.text('Key = { type = "double", args = ["long Row", "long Column"],'
                         ' path = "KEY%d:AT%d", doc = "Where it is." }')
        self.assertIn("     .get = nullptr,\n     .put = nullptr", row(text, "Key"))


if __name__ == "__main__":
    unittest.main()
