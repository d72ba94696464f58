"""Parameters beyond one for each conversion: of properties, and those that are written twice."""

import unittest

from generator import output
from generator.cli import read_model
from generator.problems import Problems
from support import ChangedModel

LAMP = "lamps/lamp.toml"
KEY = 'Key = { type = "long", set = "KEY %d", doc = "Written only." }'


class Arguments(ChangedModel):
    def files(self) -> dict[str, str]:
        return output.all_files(read_model(self.model, "1.2.3", Problems()))

    def test_property_of_which_there_are_several(self) -> None:
        self.change(LAMP, KEY, 'Key = { type = "double", args = ["long Row"], path = "KEY%d:AT",'
                    ' refuses_put = "newer", doc = "Where it is." }')
        files = self.files()
        self.assertIn("""\
    // Where it is. Not written on the models of the Amber Series.
    virtual HRESULT STDMETHODCALLTYPE get_Key(LONG Row, double* val) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_Key(LONG Row, double val) = 0;
""", files["include/kestrion/interfaces/ILamp.h"].replace("    // Where it is.\n    //",
                                                          "    // Where it is."))
        self.assertIn("""\
    return CallQuery(node_, members::ILamp::get_Key, \
Parameters(In("Row", Row), Out("val", val)), Arguments(Row), Arguments(val));
""", files["faces/ILamp.cpp"])
        self.assertIn("""\
    return CallCommand(node_, members::ILamp::put_Key, \
Parameters(In("Row", Row), In("val", val)), Arguments(Row, val));
""", files["faces/ILamp.cpp"])
        # Both have the key of the property.
        self.assertEqual(files["members/ILamp.h"].count('.fullName = "ILamp.Key"'), 2)
        self.assertIn('.command = "KEY%d:AT?"', files["members/ILamp.h"])
        self.assertIn('.command = "KEY%d:AT %0.15lg"', files["members/ILamp.h"])

    def test_hook_of_such_a_property(self) -> None:
        self.change(LAMP, KEY, 'Key = { type = "double", args = ["long Row"], hook = "get",'
                    ' doc = "Where it is." }')
        self.assertIn("[[nodiscard]] HRESULT get_Key(MemberCall& call, LONG Row, double* val);\n",
                      self.files()["hooks/ILamp.h"])

    def test_value_that_is_written_twice(self) -> None:
        self.change(LAMP, "POWER %0.15lg;COUNT %d;MODE %{LampMode}s",
                    "POWER %0.15lg;COUNT %d;MODE %{LampMode}s;%{LampMode}s:ON")
        self.change(LAMP, 'order = ["Power", "Count", "Mode"]',
                    'order = ["Power", "Count", "Mode", "Mode"]')
        self.assertIn("Arguments(Power, Count, Mode, Mode));", self.files()["faces/ILamp.cpp"])


if __name__ == "__main__":
    unittest.main()
