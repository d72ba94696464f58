"""Interfaces that are alike: one has its members and hooks from the other."""

import unittest

from generator.cli import read_model
from generator.problems import Problems
from support import SMALL_MODEL, ChangedModel, generated

CHIME = "lamps/chime.toml"


class Resolved(unittest.TestCase):
    @classmethod
    def setUpClass(cls) -> None:
        model = read_model(SMALL_MODEL, "1.2.3", Problems())
        cls.low, cls.high = model.interfaces["IChime"], model.interfaces["IHighChime"]

    def test_members_are_those_of_the_other(self) -> None:
        names = ["Ring", "get_Tone", "put_Tone", "get_Tune", "put_Tune", "Learn"]
        self.assertEqual([entry.name for entry in self.low.entries], names)
        self.assertEqual([entry.name for entry in self.high.entries], names)

    def test_node_and_refusals_are_those_of_the_other(self) -> None:
        self.assertEqual(self.high.node, "root")
        self.assertEqual([entry.refused for entry in self.high.entries],
                         [("Amber Series",)] * 3 + [()] * 2 + [("Amber Series",)])

    def test_variant_stands_in_the_templates(self) -> None:
        self.assertEqual(self.low.entries[0].command.text, "CHIME:LOW:RING %d;:CHIME:LOW:TONE 1")
        self.assertEqual(self.high.entries[0].command.text,
                         "CHIME:HIGH:RING %d;:CHIME:HIGH:TONE 1")
        self.assertEqual(self.high.entries[1].command.text, "CHIME:HIGH:TONE?")
        self.assertEqual(self.high.entries[2].command.text, "CHIME:HIGH:TONE %0.15lg")

    def test_member_keys_are_its_own(self) -> None:
        self.assertEqual(self.high.entries[1].key, "IHighChime.Tone")


class Written(unittest.TestCase):
    @classmethod
    def setUpClass(cls) -> None:
        cls.files = generated()

    def test_descriptor_has_the_variant(self) -> None:
        for interface, variant in [("IChime", "LOW"), ("IHighChime", "HIGH")]:
            text = self.files[f"members/{interface}.h"].split("MethodDescriptor put_Tune{")[1]
            with self.subTest(interface):
                self.assertIn(f'    .interfaceName = "{interface}",\n', text.split("};")[0])
                self.assertIn(f'    .variant = "{variant}",\n', text.split("};")[0])

    def test_hooks_are_written_once(self) -> None:
        self.assertIn("hooks/IChime.h", self.files)
        self.assertNotIn("hooks/IHighChime.h", self.files)

    def test_face_runs_the_hooks_of_the_other(self) -> None:
        text = self.files["faces/IHighChime.cpp"]
        self.assertIn('#include "generated/hooks/IChime.h"\n', text)
        self.assertIn("Get(node_, members::IHighChime::get_Tune, val, hooks::IChime::get_Tune)",
                      text)
        self.assertIn("return hooks::IChime::Learn(call, Tune);", text)


class Errors(ChangedModel):
    def assert_error(self, old: str, new: str, expected: str) -> None:
        self.change(CHIME, old, new)
        self.assertEqual(self.errors(), [f"model/{CHIME}:{expected}"])

    def test_unknown_interface(self) -> None:
        self.assert_error('like = "IChime"', 'like = "IChim"',
                          "16: there is no interface IChim; did you mean 'IChime'?")

    def test_interface_that_is_like_another_itself(self) -> None:
        self.assert_error('like = "IChime"', 'like = "IHighChime"',
                          "16: IHighChime can't be like IHighChime, which has no members of its"
                          " own")

    def test_external_interface_has_no_members_to_take(self) -> None:
        self.assert_error('like = "IChime"', 'like = "IAlien"',
                          "16: IHighChime can't be like IAlien, which has no members of its own")

    def test_members_of_its_own(self) -> None:
        self.assert_error('variant = "HIGH"', 'variant = "HIGH"\nnode = "root"',
                          "18: IHighChime is like IChime: it has no 'node' of its own")

    def test_same_variant(self) -> None:
        self.assert_error('variant = "HIGH"', 'variant = "LOW"',
                          "16: IHighChime needs a 'variant' other than that of IChime, or there is"
                          " nothing to tell them apart")

    def test_no_variant(self) -> None:
        self.assert_error('variant = "HIGH"\n', "",
                          "16: IHighChime needs a 'variant' other than that of IChime, or there is"
                          " nothing to tell them apart")

    def test_template_without_a_variant_to_put_in(self) -> None:
        self.change(CHIME, 'like = "IChime"\nvariant = "HIGH"\n', 'node = "root"\nmembers = {}\n')
        self.change(CHIME, 'variant = "LOW"\n', "")
        self.assertEqual(self.errors(), [
            f"model/{CHIME}:8: IChime.Ring: '<variant>' needs the key 'variant' of IChime",
            f"model/{CHIME}:9: IChime.Tone: '<variant>' needs the key 'variant' of IChime"])

    def test_mistake_in_a_member_is_told_once(self) -> None:
        self.assert_error(', doc = "Its pitch in hertz."', "",
                          "10: IChime.Tone needs the key 'doc'")


if __name__ == "__main__":
    unittest.main()
