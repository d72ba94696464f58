"""Which families refuse a member: what its interface says for all, and what it says itself."""

import unittest

from generator.cli import read_model
from generator.problems import Problems
from support import SMALL_MODEL, ChangedModel, generated

BEACON = "lamps/beacon.toml"


class Resolved(unittest.TestCase):
    def test_interface_speaks_for_members_that_say_nothing(self) -> None:
        model = read_model(SMALL_MODEL, "1.2.3", Problems())
        self.assertEqual(
            [(entry.name, entry.refused, entry.refused_list)
             for entry in model.interfaces["IBeacon"].entries], [
                ("Turn", ("Amber Series",), "newer"),
                ("Stop", (), ""),
                ("get_Speed", ("Amber Series",), "newer"),
                ("put_Speed", ("Blue Series",), "older"),
                ("get_Angle", (), ""),
                ("put_Angle", ("Blue Series",), "older"),
                ("get_Color", ("Blue Series", "Amber Series"), ""),
                ("put_Color", ("Amber Series",), "newer"),
            ])


class Written(unittest.TestCase):
    maxDiff = None

    @classmethod
    def setUpClass(cls) -> None:
        cls.files = generated()

    def test_descriptors(self) -> None:
        for name, list_name in [
            ("Turn", "refusals::kNewer"), ("Stop", "{}"), ("get_Speed", "refusals::kNewer"),
            ("put_Speed", "refusals::kOlder"), ("get_Angle", "{}"),
            ("put_Angle", "refusals::kOlder"), ("get_Color", "kGetColorRefusals"),
            ("put_Color", "refusals::kNewer"),
        ]:
            text = self.files["members/IBeacon.h"].split(f"MethodDescriptor {name}{{")[1]
            with self.subTest(name):
                self.assertIn(f"    .refusedFamilies = {list_name},\n", text.split("};")[0])
        self.assertIn('kGetColorRefusals[] = {"Blue Series", "Amber Series"};\n',
                      self.files["members/IBeacon.h"])

    def test_comments_tell_reading_from_writing_where_they_differ(self) -> None:
        text = self.files["include/kestrion/interfaces/IBeacon.h"]
        for comment in [
            "Turns once. Not on the models of the Amber Series.",
            "Stops.",
            "Turns a minute. Not read on the models of the Amber Series. Not written on the models"
            " of the Blue Series.",
            "Where it is, in degrees. Not written on the models of the Blue Series.",
            "Its color. Not read on the models of the Blue Series, Amber Series. Not written on the"
            " models of the Amber Series.",
        ]:
            with self.subTest(comment):
                self.assertIn(f" {comment} virtual ", " ".join(text.replace("//", "").split()))


class Errors(ChangedModel):
    def assert_errors(self, old: str, new: str, *expected: str) -> None:
        self.change(BEACON, old, new)
        self.assertEqual(self.errors(), [f"model/{BEACON}:{line}" for line in expected])

    def test_unknown_list_of_an_interface_is_told_once(self) -> None:
        self.assert_errors('\nrefuses = "newer"', '\nrefuses = "newest"',
                           "4: IBeacon: there is no refusal list 'newest'; did you mean 'newer'?")

    def test_interface_names_a_list(self) -> None:
        self.assert_errors('\nrefuses = "newer"', '\nrefuses = ["Amber Series"]',
                           "4: 'refuses' of IBeacon has to be a text")

    def test_unknown_list_of_a_setter(self) -> None:
        self.assert_errors('refuses_put = "older"', 'refuses_put = "odler"',
                           "10: IBeacon.Speed: there is no refusal list 'odler'; did you mean"
                           " 'older'?")

    def test_unknown_family_of_a_getter(self) -> None:
        self.assert_errors('["Blue Series", "Amber Series"]', '["Blue Serie"]',
                           "12: IBeacon.Color: there is no family 'Blue Serie'; did you mean"
                           " 'Blue Series'?")

    def test_family_that_a_getter_refuses_twice(self) -> None:
        self.assert_errors('["Blue Series", "Amber Series"]', '["Blue Series", "Blue Series"]',
                           "12: IBeacon.Color refuses a family twice")

    def test_setter_that_does_not_exist(self) -> None:
        self.assert_errors('path = "SPEED", ', 'path = "SPEED", access = "r", ',
                           "10: IBeacon.Speed: a property that is only read has no 'refuses_put'")

    def test_getter_that_does_not_exist(self) -> None:
        self.assert_errors('path = "COLOR", ', 'path = "COLOR", access = "w", ',
                           "12: IBeacon.Color: a property that is only written has no"
                           " 'refuses_get'")

    def test_method_has_no_getter(self) -> None:
        self.assert_errors("refuses = []", "refuses_get = []",
                           "9: IBeacon.Stop: a method has no 'refuses_get'")

    def test_reference_and_collection_have_no_getter_and_setter(self) -> None:
        self.change("core/base.toml", 'type = "ILamp"', 'type = "ILamp", refuses_get = "newer"')
        self.change("lamps/gates.toml", 'collection = "count"',
                    'collection = "count", refuses_put = "newer"')
        self.assertEqual(self.errors(), [
            "model/core/base.toml:17: IRoot.Lamp: a reference to an interface has no"
            " 'refuses_get'",
            "model/lamps/gates.toml:8: IGates.Count: a collection's member has no 'refuses_put'"])

    def test_external_interface_refuses_nothing(self) -> None:
        self.change("core/base.toml", "external = true", 'external = true\nrefuses = "newer"')
        self.assertEqual(self.errors(),
                         ["model/core/base.toml:23: IAlien is external: it has no 'refuses'"])
