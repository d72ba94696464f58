"""Each error of a model: one change to the small model, and the exact lines that it gives."""

from support import ChangedModel

LAMP = "lamps/lamp.toml"
GATES = "lamps/gates.toml"
BASE = "core/base.toml"
ENUMS = "enums/lamps.toml"


class ErrorCase(ChangedModel):
    maxDiff = None

    def assert_errors(self, file: str, old: str, new: str, *expected: str) -> None:
        self.change(file, old, new)
        self.assertEqual(self.errors(), [f"model/{line}" for line in expected])


class Files(ErrorCase):
    def test_model_without_a_change_has_no_error(self) -> None:
        self.assertEqual(self.errors(), [])

    def test_text_that_is_no_toml(self) -> None:
        self.assert_errors(LAMP, 'doc = "One lamp."', "doc = One lamp.",
                           "lamps/lamp.toml:6: not a TOML text: Invalid value")

    def test_key_twice_in_one_file(self) -> None:
        self.assert_errors(LAMP, "Key = {", "Hours = {",
                           "lamps/lamp.toml:19: not a TOML text: Cannot overwrite a value")

    def test_missing_file(self) -> None:
        (self.model / "messages.toml").unlink()
        self.assertEqual(self.errors(), ["model/messages.toml:1: the file is missing"])

    def test_file_that_stands_in_the_wrong_place(self) -> None:
        (self.model / "lamp.toml").write_text("", encoding="utf-8")
        self.assertEqual(self.errors(), [
            "model/lamp.toml:1: an interface has to stand in a folder of its group; the files"
            " beside the folders are metadata.toml, messages.toml, families.toml,"
            " repeated_capabilities.toml, enum_order.toml, expected.toml"])

    def test_all_errors_are_told_at_once_in_the_order_of_files_and_lines(self) -> None:
        self.change(LAMP, 'type = "long", path = "HOURS"', 'type = "lang", path = "HOURS"')
        self.change(LAMP, 'doc = "Flashes once."', 'dok = "Flashes once."')
        self.change(ENUMS, 'doc = "On and off."', 'dock = "On and off."')
        self.assertEqual(self.errors(), [
            "model/enums/lamps.toml:23: KestrionLampModeBlink has no key 'dock';"
            " did you mean 'doc'?",
            "model/lamps/lamp.toml:9: ILamp.Flash has no key 'dok'; did you mean 'doc'?",
            "model/lamps/lamp.toml:9: ILamp.Flash needs the key 'doc'",
            "model/lamps/lamp.toml:17: ILamp.Hours: there is no type 'lang'; did you mean 'long'?",
            "model/lamps/lamp.toml:31: IClassLamp.Hours maps to 'ILamp.Hours', which doesn't"
            " exist; did you mean 'IClassLamp.Hours'?",
        ])


class Schema(ErrorCase):
    def test_unknown_key_of_an_interface(self) -> None:
        self.assert_errors(LAMP, "class_compliant = true", "class_complaint = true",
                           "lamps/lamp.toml:26: IClassLamp has no key 'class_complaint';"
                           " did you mean 'class_compliant'?")

    def test_unknown_key_of_a_member(self) -> None:
        self.change(LAMP, 'access = "r", doc = "Hours so far."',
                    'acess = "r", doc = "Hours so far."')
        self.assertEqual(self.errors(), ["model/lamps/lamp.toml:17: ILamp.Hours has no key 'acess';"
                                         " did you mean 'access'?"])

    def test_unknown_keys_of_the_tables(self) -> None:
        for file, old, new, line, message in [
            ("metadata.toml", 'vendor = "Lamp Works"', 'vendor = "Lamp Works"\nvender = "X"', 4,
             "metadata.toml has no key 'vender'; did you mean 'vendor'?"),
            ("messages.toml", "help_context = 7", 'help_context = 7\nhelp_text = "x"', 14,
             "a 'message' has no key 'help_text'; did you mean 'help_context'?"),
            ("families.toml", 'models = ["B1"]', 'models = ["B1"]\nmodel = "B2"', 10,
             "a 'family' has no key 'model'; did you mean 'models'?"),
            ("repeated_capabilities.toml", 'class = "Gate"', 'class = "Gate"\nclas = "Gate"', 3,
             "a 'capability' has no key 'clas'; did you mean 'class'?"),
            ("enum_order.toml", "order = [", "ordr = []\norder = [", 1,
             "enum_order.toml has no key 'ordr'; did you mean 'order'?"),
            (ENUMS, 'short = "Shape"', 'short = "Shape"\nshirt = 1', 42,
             "LampShape has no key 'shirt'; did you mean 'short'?"),
        ]:
            with self.subTest(file):
                self.setUp()
                self.assert_errors(file, old, new, f"{file}:{line}: {message}")

    def test_missing_keys(self) -> None:
        for file, old, line, message in [
            ("metadata.toml", 'vendor = "Lamp Works"\n', 1, "metadata.toml needs the key 'vendor'"),
            ("messages.toml", "help_context = 7\n", 10, "a 'message' needs the key 'help_context'"),
            (BASE, 'doc = "The base."\n', 1, "IBase needs the key 'doc'"),
            (ENUMS, 'doc = "How a lamp shines."\n', 18, "KestrionLampModeEnum needs the key 'doc'"),
            (LAMP, ', doc = "How it shines." }\nPower = { type = "double", path = "POWER"', 15,
             "ILamp.Mode needs the key 'doc'"),
        ]:
            with self.subTest(message):
                self.setUp()
                new = ' }\nPower = { type = "double", path = "POWER"' if file == LAMP else ""
                self.change(file, old, new)
                self.assertIn(f"model/{file}:{line}: {message}", self.errors())

    def test_value_of_the_wrong_kind(self) -> None:
        for file, old, new, line, message in [
            (BASE, "connection = false", "connection = 0", 7,
             "'connection' of IBase.Open has to be true or false"),
            (LAMP, 'path = "LIT"', "path = 3", 14, "'path' of ILamp.Lit has to be a text"),
            (LAMP, 'args = ["long Count"]', 'args = "long Count"', 13,
             "'args' of ILamp.Prepare has to be an array of texts"),
            (LAMP, 'refuses = "newer"', "refuses = 1", 9,
             "'refuses' of ILamp.Flash has to be a text or an array of texts"),
            ("metadata.toml", "selfTestTimeout = 100", 'selfTestTimeout = "100"', 15,
             "'selfTestTimeout' of metadata.toml has to be a number"),
            (ENUMS, "KestrionLampModeSteady = 0", 'KestrionLampModeSteady = "0"', 22,
             "KestrionLampModeSteady has to be a number or a table"),
            (ENUMS, 'KestrionLampModeSteady = "STEADY"', "KestrionLampModeSteady = 4", 29,
             "the tokens of KestrionLampModeSteady have to be a text or an array of texts"),
            ("families.toml", 'newer = ["Amber Series"]', "newer = 1", 12,
             "'newer' has to be an array of texts"),
        ]:
            with self.subTest(message):
                self.setUp()
                self.change(file, old, new)
                self.assertIn(f"model/{file}:{line}: {message}", self.errors())

    def test_member_that_is_no_table(self) -> None:
        self.assert_errors(BASE, 'Lamp = { type = "ILamp", doc = "The lamp." }', 'Lamp = "ILamp"',
                           "core/base.toml:17: 'Lamp' has to be a table: a member")


class Members(ErrorCase):
    def test_unknown_type(self) -> None:
        self.assert_errors(LAMP, 'Key = { type = "long"', 'Key = { type = "lnog"',
                           "lamps/lamp.toml:19: ILamp.Key: there is no type 'lnog';"
                           " did you mean 'long'?")

    def test_unknown_type_of_a_parameter(self) -> None:
        self.assert_errors(BASE, "string Where", "strnig Where",
                           "core/base.toml:7: IBase.Open: there is no type 'strnig';"
                           " did you mean 'string'?")

    def test_parameter_without_a_name(self) -> None:
        self.assert_errors(BASE, '"bool Check"', '"bool"',
                           "core/base.toml:7: IBase.Open: 'bool' is no 'type Name',"
                           " 'out type Name' or 'inout type Name'")

    def test_two_parameters_of_one_name(self) -> None:
        self.assert_errors(BASE, "bool Check", "bool Where",
                           "core/base.toml:7: IBase.Open has two parameters 'Where'")

    def test_property_with_empty_arguments(self) -> None:
        self.assert_errors(LAMP, 'Key = { type = "long"', 'Key = { args = [], type = "long"',
                           "lamps/lamp.toml:19: ILamp.Key: a property without 'args' leaves them"
                           " out")

    def test_property_with_an_argument_that_comes_out(self) -> None:
        self.assert_errors(LAMP, 'Key = { type = "long"',
                           'Key = { args = ["out long Row"], type = "long"',
                           "lamps/lamp.toml:19: ILamp.Key: the 'args' of a property are what tells"
                           " its values apart, and nothing comes out of them")

    def test_property_with_arguments_that_the_template_lacks(self) -> None:
        self.assert_errors(LAMP, 'Key = { type = "long"',
                           'Key = { args = ["long Row"], type = "long"',
                           "lamps/lamp.toml:19: ILamp.put_Key: 'KEY %d' writes 1 values, and there"
                           " are 2")

    def test_mapped_property_with_arguments(self) -> None:
        self.change(LAMP, 'Power = { type = "double", map = "ILamp.Power"',
                    'Power = { type = "double", args = ["long Row"], map = "ILamp.Power"')
        self.assertIn("model/lamps/lamp.toml:30: IClassLamp.Power: a property with 'args' has no"
                      " 'map'", self.errors())

    def test_reference_with_arguments(self) -> None:
        self.assert_errors(BASE, 'Alien = { type = "IAlien"',
                           'Alien = { args = ["long Row"], type = "IAlien"',
                           "core/base.toml:8: IBase.Alien: a reference to an interface has no"
                           " 'args'")

    def test_member_that_is_neither_property_nor_method(self) -> None:
        self.assert_errors(LAMP, 'type = "long", set = "KEY %d", ', "",
                           "lamps/lamp.toml:19: ILamp.Key needs 'type' as a property, or 'args',"
                           " 'set' or 'hook' as a method")

    def test_property_that_can_be_neither_read_nor_written(self) -> None:
        self.assert_errors(LAMP, 'set = "KEY %d", ', "",
                           "lamps/lamp.toml:19: ILamp.Key can be neither read nor written: it"
                           " needs 'path', 'get', 'set', 'map' or 'hook'")

    def test_direction_without_anything_behind_it(self) -> None:
        self.assert_errors(LAMP, 'set = "KEY %d", ', 'set = "KEY %d", access = "rw", ',
                           "lamps/lamp.toml:19: ILamp.Key has nothing by which it is read")

    def test_set_line_of_a_property_that_is_only_read(self) -> None:
        self.assert_errors(LAMP, 'path = "HOURS", access = "r"',
                           'path = "HOURS", set = "H %d", access = "r"',
                           "lamps/lamp.toml:17: ILamp.Hours: a property that is only read has no"
                           " 'set'")

    def test_reply_of_a_property_that_is_only_written(self) -> None:
        self.assert_errors(LAMP, 'set = "KEY %d"', 'set = "KEY %d", reply = "%d"',
                           "lamps/lamp.toml:19: ILamp.Key: 'reply' needs a query: 'get' or 'path'",
                           "lamps/lamp.toml:19: ILamp.Key: a property that is only written has no"
                           " 'reply'")

    def test_unknown_access(self) -> None:
        self.change(LAMP, 'path = "HOURS", access = "r"', 'path = "HOURS", access = "wr"')
        self.assertEqual(len(self.errors()), 1)
        self.assertRegex(self.errors()[0], r"^model/lamps/lamp.toml:17: ILamp.Hours: 'access'"
                                           r" can't be 'wr'; did you mean '(r|w|rw)'\?$")

    def test_hook_of_the_wrong_shape(self) -> None:
        for old, new, line, message in [
            ('hook = "put", refuses', 'hook = "call", refuses', 15,
             "ILamp.Mode: 'hook' can't be 'call'; did you mean"),
            ('set = "PREPARE %d", hook = "call"', 'set = "PREPARE %d", hook = "put"', 13,
             "ILamp.Prepare: 'hook' can't be 'put'; did you mean 'call'?"),
            ('path = "HOURS", access = "r"', 'path = "HOURS", access = "r", hook = "put"', 17,
             "ILamp.Hours: a property with the access 'r' has no hook 'put'"),
            ('path = "HOURS", access = "r"', 'path = "HOURS", access = "r", hook = "both"', 17,
             "ILamp.Hours: a property with the access 'r' has no hook 'both'"),
        ]:
            with self.subTest(message):
                self.setUp()
                self.change(LAMP, old, new)
                errors = self.errors()
                self.assertEqual(len(errors), 1)
                self.assertTrue(errors[0].startswith(f"model/lamps/lamp.toml:{line}: {message}"),
                                errors[0])

    def test_hook_of_a_reference(self) -> None:
        self.assert_errors(BASE, 'Alien = { type = "IAlien"',
                           'Alien = { hook = "get", type = "IAlien"',
                           "core/base.toml:8: IBase.Alien: a reference to an interface has no"
                           " 'hook'")

    def test_method_that_does_nothing(self) -> None:
        self.assert_errors(LAMP, 'set = "PREPARE %d", hook = "call", ', "",
                           "lamps/lamp.toml:13: ILamp.Prepare does nothing: it needs 'set', 'get'"
                           " or 'hook'")

    def test_method_with_query_and_set_line(self) -> None:
        self.assert_errors(LAMP, 'reply = "%lg;%{LampMode}[^;]"',
                           'reply = "%lg;%{LampMode}[^;]", set = "X"',
                           "lamps/lamp.toml:11: ILamp.ReadAll: a method has 'get' or 'set', not"
                           " both")

    def test_query_without_reply(self) -> None:
        self.assert_errors(LAMP, 'reply = "%lg;%{LampMode}[^;]", ', "",
                           "lamps/lamp.toml:11: ILamp.ReadAll: a query needs 'reply'")

    def test_reply_without_query(self) -> None:
        self.assert_errors(LAMP, 'set = "FLASH 1"', 'set = "FLASH 1", reply = "%d"',
                           "lamps/lamp.toml:9: ILamp.Flash: 'reply' needs the query 'get'")

    def test_order_with_a_wrong_name(self) -> None:
        self.assert_errors(LAMP, 'order = ["Power", "Count", "Mode"]',
                           'order = ["Power", "Cuont", "Mode"]',
                           "lamps/lamp.toml:10: ILamp.Configure has no parameter 'Cuont';"
                           " did you mean 'Count'?",
                           "lamps/lamp.toml:10: ILamp.Configure: 'POWER %0.15lg;COUNT %d;MODE"
                           " %{LampMode}s' writes 3 values, and there are 2",
                           "lamps/lamp.toml:10: ILamp.Configure: 'order' leaves out 'Count'")

    def test_order_that_names_a_parameter_once_too_often(self) -> None:
        self.assert_errors(LAMP, 'order = ["Power", "Count", "Mode"]',
                           'order = ["Power", "Count", "Mode", "Mode"]',
                           "lamps/lamp.toml:10: ILamp.Configure: 'POWER %0.15lg;COUNT %d;MODE"
                           " %{LampMode}s' writes 3 values, and there are 4")

    def test_order_that_reads_a_parameter_twice(self) -> None:
        self.change(LAMP, 'reply = "%lg;%{LampMode}[^;]"',
                    'reply = "%lg;%lg;%{LampMode}[^;]", order = ["Power", "Power", "Mode"]')
        self.assertIn("model/lamps/lamp.toml:11: ILamp.ReadAll: 'order' names 'Power' twice",
                      self.errors())

    def test_simulated_method(self) -> None:
        self.assert_errors(LAMP, 'set = "FLASH 1"', 'set = "FLASH 1", simulated = true',
                           "lamps/lamp.toml:9: ILamp.Flash: only a property with a value of its own"
                           " can be simulated")

    def test_mapped_property_with_templates(self) -> None:
        self.assert_errors(LAMP, 'map = "ILamp.Power"', 'map = "ILamp.Power", get = "P?"',
                           "lamps/lamp.toml:30: IClassLamp.Power: a mapped property has no 'get'")

    def test_collection_on_an_interface_that_is_none(self) -> None:
        self.assert_errors(GATES, 'collection = "Gate"\n', "",
                           *(f"lamps/gates.toml:{line}: IGates.{name}: IGates is no collection: it"
                             " needs the key 'collection' with the class of its instances"
                             for line, name in [(7, "Count"), (8, "Item"), (9, "Name")]))

    def test_collection_of_an_unknown_class(self) -> None:
        self.assert_errors(GATES, 'collection = "Gate"', 'collection = "Gaet"',
                           *(f"lamps/gates.toml:{line}: IGates.{name}: there is no repeated"
                             " capability 'Gaet'; did you mean 'Gate'?"
                             for line, name in [(8, "Count"), (9, "Item"), (10, "Name")]))

    def test_unknown_role_in_a_collection(self) -> None:
        self.assert_errors(GATES, 'collection = "count"', 'collection = "cuont"',
                           "lamps/gates.toml:8: IGates.Count: a collection has no 'cuont';"
                           " did you mean 'count'?")

    def test_collection_member_of_the_wrong_type(self) -> None:
        self.assert_errors(GATES, 'Count = { type = "long"', 'Count = { type = "double"',
                           "lamps/gates.toml:8: IGates.Count: 'count' of a collection gives long")

    def test_collection_member_with_the_wrong_arguments(self) -> None:
        self.assert_errors(GATES, '"string Name"', '"string Title"',
                           "lamps/gates.toml:9: IGates.Item: 'item' of a collection takes"
                           " ['string Name']")

    def test_unknown_refusal_list(self) -> None:
        self.assert_errors(LAMP, 'refuses = "newer"', 'refuses = "never"',
                           "lamps/lamp.toml:9: ILamp.Flash: there is no refusal list 'never';"
                           " did you mean 'newer'?")

    def test_unknown_family(self) -> None:
        self.change(LAMP, '["Blue Series", "Amber Series"]', '["Bleu Series", "Amber Series"]')
        self.assertEqual(self.errors(), [
            "model/lamps/lamp.toml:15: ILamp.Mode: there is no family 'Bleu Series';"
            " did you mean 'Blue Series'?"])

    def test_family_refused_twice(self) -> None:
        self.assert_errors(LAMP, '["Blue Series", "Amber Series"]',
                           '["Blue Series", "Blue Series"]',
                           "lamps/lamp.toml:15: ILamp.Mode refuses a family twice")


class Interfaces(ErrorCase):
    def test_interface_twice(self) -> None:
        self.change(GATES, "[IGate]", "[ILamp]")
        self.change(GATES, "[IGate.members]", "[ILamp.members]")
        self.assertIn("model/lamps/lamp.toml:3: the interface ILamp stands in"
                      " model/lamps/gates.toml:12 too", self.errors())

    def test_interface_id_twice(self) -> None:
        self.assert_errors(LAMP, "0000000000b4", "0000000000B3",
                           "lamps/lamp.toml:23: IClassLamp has the interface id of ILamp")

    def test_interface_id_of_the_wrong_form(self) -> None:
        self.assert_errors(LAMP, "0000000000b4", "b4",
                           "lamps/lamp.toml:23: IClassLamp: '00000000-0000-0000-0000-b4' is no"
                           " interface id")

    def test_unknown_node(self) -> None:
        self.assert_errors(GATES, 'node = "Gate"', 'node = "Gaet"',
                           "lamps/gates.toml:12: IGate: there is no node 'Gaet';"
                           " did you mean 'Gate'?")

    def test_missing_node(self) -> None:
        self.change(GATES, 'node = "Gate"\n', "")
        self.assertIn("model/lamps/gates.toml:12: IGate needs the key 'node'", self.errors())

    def test_doc_of_more_than_one_line(self) -> None:
        self.assert_errors(GATES, 'doc = "One gate."', 'doc = "One\\ngate."',
                           "lamps/gates.toml:12: IGate needs a 'doc' of one line")
        self.setUp()
        self.assert_errors(GATES, 'doc = "Its width."', 'doc = " "',
                           "lamps/gates.toml:19: IGate.Width needs a 'doc' of one line")

    def test_unknown_base(self) -> None:
        self.assert_errors(BASE, 'extends = "IBase"', 'extends = "IBsae"',
                           "core/base.toml:10: IRoot can't extend 'IBsae'; did you mean 'IBase'?")

    def test_external_base(self) -> None:
        self.change(BASE, 'extends = "IBase"', 'extends = "IAlien"')
        self.assertEqual(len(self.errors()), 1)
        self.assertIn("model/core/base.toml:10: IRoot can't extend 'IAlien'", self.errors()[0])

    def test_base_on_another_node(self) -> None:
        self.assert_errors(BASE, 'extends = "IBase"', 'extends = "IGate"',
                           "core/base.toml:10: IRoot extends IGate, which is on the node Gate")

    def test_interfaces_that_extend_each_other(self) -> None:
        self.change(BASE, 'doc = "The base."', 'extends = "IRoot"\ndoc = "The base."')
        errors = self.errors()
        self.assertIn("model/core/base.toml:1: IBase extends itself", errors)
        self.assertIn("model/core/base.toml:11: IRoot extends itself", errors)

    def test_member_that_a_base_has_already(self) -> None:
        self.assert_errors(BASE, "Lamp = {", "Alien = {",
                           "core/base.toml:17: IRoot has get_Alien from IBase already")

    def test_two_entries_of_one_name(self) -> None:
        self.assert_errors(LAMP, "Flash = {", "get_Hours = {",
                           "lamps/lamp.toml:17: ILamp has two entries get_Hours")

    def test_external_interface_with_members(self) -> None:
        self.assert_errors(BASE, "external = true", 'external = true\nnode = "root"',
                           "core/base.toml:23: IAlien is external: it has no 'node'")

    def test_more_parameters_than_a_call_records(self) -> None:
        many = ", ".join(f'"long P{i}"' for i in range(26))
        self.assert_errors(BASE, '"string Where", "bool Check"', many,
                           "core/base.toml:7: IBase.Open has more than 25 parameters")

    def test_map_to_a_member_that_does_not_exist(self) -> None:
        self.assert_errors(LAMP, 'map = "ILamp.Power"', 'map = "ILamp.Pwoer"',
                           "lamps/lamp.toml:30: IClassLamp.Power maps to 'ILamp.Pwoer', which"
                           " doesn't exist; did you mean 'ILamp.Power'?")

    def test_map_to_another_node(self) -> None:
        self.assert_errors(LAMP, 'map = "ILamp.Power"', 'map = "IGate.Width"',
                           "lamps/lamp.toml:30: IClassLamp.Power maps to IGate.Width, which is on"
                           " another node")

    def test_map_to_a_direction_that_is_missing(self) -> None:
        self.assert_errors(LAMP, 'map = "ILamp.Hours", access = "r"', 'map = "ILamp.Hours"',
                           "lamps/lamp.toml:31: IClassLamp.Hours maps to ILamp.Hours, which can't"
                           " be written")

    def test_map_to_another_type(self) -> None:
        self.assert_errors(LAMP, 'map = "ILamp.Hours", access = "r"',
                           'map = "ILamp.Power", access = "r"',
                           "lamps/lamp.toml:31: IClassLamp.Hours is long and maps to ILamp.Power,"
                           " which is double")


class Templates(ErrorCase):
    def test_conversions_that_do_not_fit_their_types(self) -> None:
        for old, new, line, message in [
            ('set = "KEY %d"', 'set = "KEY %0.15lg"', 19,
             "ILamp.put_Key: '%0.15lg' in 'KEY %0.15lg' writes a real number, not long"),
            ('set = "KEY %d"', 'set = "KEY %hd"', 19,
             "ILamp.put_Key: '%hd' in 'KEY %hd' writes an integer that hasn't 32 bits"),
            ('set = "KEY %d"', 'set = "KEY %s"', 19,
             "ILamp.put_Key: '%s' in 'KEY %s' writes a text, not long"),
            ('set = "KEY %d"', 'set = "KEY %{VARIANT_BOOL}s"', 19,
             "ILamp.put_Key: 'KEY %{VARIANT_BOOL}s': VARIANT_BOOL has no table for ILamp.Key"),
            ('set = "TEXT %$BQs;SHOW 1"', 'set = "TEXT %d;SHOW 1"', 18,
             "ILamp.put_Text: '%d' in 'TEXT %d;SHOW 1' writes no text"),
            ('set = "TEXT %$BQs;SHOW 1"', 'set = "TEXT %Qs;SHOW 1"', 18,
             "ILamp.put_Text: '%Qs' in 'TEXT %Qs;SHOW 1' writes a text that isn't counted:"
             " it needs $B"),
            ('path = "LIT"', 'get = "LIT?", reply = "%d"', 14,
             "ILamp.get_Lit: '%d' in '%d' reads no enumeration, and bool is one"),
            ('type = "double", path = "POWER"', 'type = "double", path = "POWER", reply = "%g"',
             16, "ILamp.get_Power: '%g' in '%g' reads single precision: it needs l"),
            ('type = "double", path = "POWER"', 'type = "double", path = "POWER", reply = "%d"',
             16, "ILamp.get_Power: '%d' in '%d' reads an integer, not double"),
            ('reply = "%,$Slg"', 'reply = "%lg"', 21,
             "ILamp.get_Trace: '%lg' in '%lg' reads no self-describing array, and double[] is"
             " one"),
            ('reply = "%,$Slg"', 'reply = "%,$Sd"', 21,
             "ILamp.get_Trace: '%,$Sd' in '%,$Sd' reads no double[]"),
        ]:
            with self.subTest(new):
                self.setUp()
                self.assert_errors(LAMP, old, new, f"lamps/lamp.toml:{line}: {message}")

    def test_number_of_conversions(self) -> None:
        for old, new, line, message in [
            ('set = "KEY %d"', 'set = "KEY"', 19,
             "ILamp.put_Key: 'KEY' writes 0 values, and there are 1"),
            ('set = "FLASH 1"', 'set = "FLASH %d"', 9,
             "ILamp.Flash: 'FLASH %d' writes 1 values, and there are 0"),
            ('get = "POWER?;MODE?"', 'get = "POWER %d?"', 11,
             "ILamp.ReadAll: 'POWER %d?' writes 1 values, and there are 0"),
            ('reply = "%lg;%{LampMode}[^;]"', 'reply = "%lg;%*lg"', 11,
             "ILamp.ReadAll: '%lg;%*lg' reads 1 values, and there are 2"),
            ('get = "TEXT?"', 'get = "TEXT? %d"', 18,
             "ILamp.get_Text: 'TEXT? %d' writes 1 values, and there are 0"),
        ]:
            with self.subTest(new):
                self.setUp()
                self.assert_errors(LAMP, old, new, f"lamps/lamp.toml:{line}: {message}")

    def test_width_from_the_argument_list_takes_an_argument(self) -> None:
        self.assert_errors(LAMP, 'set = "KEY %d"', 'set = "KEY %*d"',
                           "lamps/lamp.toml:19: ILamp.put_Key: 'KEY %*d' writes 2 values, and there"
                           " are 1")

    def test_no_conversion(self) -> None:
        self.assert_errors(LAMP, 'set = "KEY %d"', 'set = "KEY 50%"',
                           "lamps/lamp.toml:19: ILamp.Key: 'KEY 50%': '%' is no conversion")
        self.setUp()
        self.assert_errors(LAMP, 'reply = "%lg;%lg"', 'reply = "%lg;%w"',
                           "lamps/lamp.toml:20: ILamp.get_Span: '%lg;%w': '%w' is no conversion")

    def test_unknown_enumeration_in_a_template(self) -> None:
        self.assert_errors(LAMP, "MODE %{LampMode}s", "MODE %{LampMoed}s",
                           "lamps/lamp.toml:10: ILamp.Configure: 'POWER %0.15lg;COUNT %d;MODE"
                           " %{LampMoed}s': there is no enumeration 'LampMoed'; did you mean"
                           " 'LampMode'?")

    def test_enumeration_without_a_table_for_the_member(self) -> None:
        self.assert_errors(ENUMS, 'members = ["ILamp.Mode", "ILamp.Configure"]',
                           'members = ["ILamp.Mode"]',
                           "lamps/lamp.toml:10: ILamp.Configure: 'POWER %0.15lg;COUNT %d;MODE"
                           " %{LampMode}s': KestrionLampModeEnum has no table for"
                           " ILamp.Configure")

    def test_enumeration_of_another_type(self) -> None:
        self.change(ENUMS, 'members = ["ILamp.Lit", "IGate.Open"]',
                    'members = ["ILamp.Lit", "IGate.Open", "ILamp.Configure"]')
        self.assert_errors(LAMP, "MODE %{LampMode}s", "MODE %{VARIANT_BOOL}s",
                           "lamps/lamp.toml:10: ILamp.Configure: '%{VARIANT_BOOL}s' in 'POWER"
                           " %0.15lg;COUNT %d;MODE %{VARIANT_BOOL}s' writes VARIANT_BOOL, not"
                           " KestrionLampModeEnum")

    def test_reply_of_a_hook_still_needs_known_enumerations(self) -> None:
        self.change(LAMP, 'reply = "%lg;%lg"', 'reply = "%{LampMode}s;%lg"')
        self.assertEqual(self.errors(), [
            "model/lamps/lamp.toml:20: ILamp.get_Span: '%{LampMode}s;%lg': KestrionLampModeEnum has"
            " no table for ILamp.Span"])

    def test_text_that_is_no_bytes(self) -> None:
        self.assert_errors(LAMP, 'set = "FLASH 1"', 'set = "FLASH \\u20AC"',
                           "lamps/lamp.toml:9: ILamp.Flash: 'FLASH \u20ac': U+20AC is no byte of an"
                           " instrument text")

    def test_unknown_selector(self) -> None:
        self.assert_errors(GATES, "GATE<number>:OPEN", "GATE<nubmer>:OPEN",
                           *["lamps/gates.toml:18: IGate.Open: 'GATE<nubmer>:OPEN?': <nubmer> is no"
                             " selector; did you mean '<number>'?",
                             "lamps/gates.toml:18: IGate.Open: 'GATE<nubmer>:OPEN"
                             " %{VARIANT_BOOL}s': <nubmer> is no selector; did you mean"
                             " '<number>'?"][::-1])

    def test_selector_on_the_root(self) -> None:
        self.assert_errors(LAMP, 'set = "FLASH 1"', 'set = "FLASH <number>"',
                           "lamps/lamp.toml:9: ILamp.Flash: <number> in 'FLASH %d' needs a repeated"
                           " capability")

    def test_selector_behind_the_value_of_a_property(self) -> None:
        self.assert_errors(GATES, 'path = "G<index>:WIDTH"',
                           'get = "W?", set = "W %lg;<index>"',
                           "lamps/gates.toml:19: IGate.put_Width: 'W %lg;%d': a property has one"
                           " selector, before its value")


class Enumerations(ErrorCase):
    def test_enumeration_twice(self) -> None:
        (self.model / "enums" / "more.toml").write_text(
            '[LampShape]\ndoc = "X."\nshort = "Shape"\n[LampShape.values]\nRound = 0\n',
            encoding="utf-8")
        self.assertIn("model/enums/more.toml:1: the enumeration LampShape stands in"
                      " model/enums/lamps.toml:39 too", self.errors())

    def test_enumeration_without_a_place_in_the_order(self) -> None:
        self.change("enum_order.toml", '"LampShape", ', "")
        self.assertIn("model/enums/lamps.toml:39: LampShape has no place in model/enum_order.toml",
                      self.errors())

    def test_order_with_an_unknown_or_a_double_name(self) -> None:
        self.assert_errors("enum_order.toml", '"LampShape", ', '"LampShape", "Lamp", "LampShape", ',
                           "enum_order.toml:1: LampShape stands in the order twice",
                           "enum_order.toml:1: there is no enumeration Lamp")

    def test_name_that_gives_no_short_name(self) -> None:
        self.assert_errors(ENUMS, 'short = "Shape"\n', "",
                           "enums/lamps.toml:39: LampShape needs 'short': its name isn't of the"
                           " form Kestrion...Enum or IviScope...Enum")

    def test_number_twice(self) -> None:
        self.assert_errors(ENUMS, "value = 3", "value = 0",
                           "enums/lamps.toml:23: KestrionLampModeEnum: KestrionLampModeBlink has"
                           " the value of KestrionLampModeSteady")

    def test_number_of_more_than_32_bits(self) -> None:
        self.assert_errors(ENUMS, "value = 3", "value = 2147483648",
                           "enums/lamps.toml:23: KestrionLampModeEnum: KestrionLampModeBlink has"
                           " more than 32 bits")

    def test_value_name_twice(self) -> None:
        self.assert_errors(ENUMS, "LampShapeRound = 0", "KestrionLampModeSteady = 0",
                           "enums/lamps.toml:44: LampShape: KestrionLampModeEnum has a value"
                           " KestrionLampModeSteady too")

    def test_member_key_twice_whatever_its_case(self) -> None:
        self.assert_errors(ENUMS, 'members = ["ILamp.ReadAll"]',
                           'members = ["ILamp.ReadAll", "ILamp.Mode"]',
                           "enums/lamps.toml:32: KestrionLampModeEnum has two tables for"
                           " 'ILamp.Mode'")

    def test_member_key_of_no_member(self) -> None:
        self.change(ENUMS, '"IGate.Open"', '"IGate.Opne", "IGate.Open"')
        self.assertEqual(self.errors(), ["model/enums/lamps.toml:10: VARIANT_BOOL: there is no"
                                         " member 'IGate.Opne'; did you mean 'IGate.Open'?"])

    def test_table_for_no_member(self) -> None:
        self.change(ENUMS, 'members = ["ILamp.ReadAll"]', "members = []")
        self.assertIn("model/enums/lamps.toml:32: a table of KestrionLampModeEnum is for no member",
                      self.errors())

    def test_row_of_an_unknown_value(self) -> None:
        self.assert_errors(ENUMS, 'KestrionLampModeSteady = "STEADY"',
                           'KestrionLampModeStaedy = "STEADY"',
                           "enums/lamps.toml:29: KestrionLampModeEnum has no value"
                           " KestrionLampModeStaedy; did you mean 'KestrionLampModeSteady'?")

    def test_token_that_is_no_bytes(self) -> None:
        self.assert_errors(ENUMS, '"BLI"', '"\\u0100"',
                           "enums/lamps.toml:25: KestrionLampModeEnum: the token '\u0100': U+0100"
                           " is no byte of an instrument text")


class TableFiles(ErrorCase):
    def test_model_in_two_families(self) -> None:
        self.assert_errors("families.toml", 'models = ["B1"]', 'models = ["A2"]',
                           "families.toml:7: the model 'A2' stands in model/families.toml:3 too")

    def test_family_twice(self) -> None:
        self.change("families.toml", 'name = "Blue Series"', 'name = "Amber Series"')
        self.assertIn("model/families.toml:7: the family 'Amber Series' stands in"
                      " model/families.toml:3 too", self.errors())

    def test_model_name_of_other_characters(self) -> None:
        self.assert_errors("families.toml", 'models = ["B1"]', 'models = ["b1"]',
                           "families.toml:7: the model 'b1' isn't of capital letters and digits")

    def test_refusal_list_with_an_unknown_or_a_double_family(self) -> None:
        self.assert_errors("families.toml", 'newer = ["Amber Series"]',
                           'newer = ["Ambre Series"]',
                           "families.toml:12: refusal list 'newer': there is no family"
                           " 'Ambre Series'; did you mean 'Amber Series'?")
        self.setUp()
        self.change("families.toml", 'newer = ["Amber Series"]',
                    'newer = ["Amber Series", "Amber Series"]')
        self.assertIn("model/families.toml:12: in the refusal list 'newer' the family"
                      " 'Amber Series' stands in model/families.toml:12 too", self.errors())

    def test_capability_or_instance_twice(self) -> None:
        self.assert_errors("repeated_capabilities.toml", '"Gate2"', '"Gate1"',
                           "repeated_capabilities.toml:1: the name in Gate 'Gate1' stands in"
                           " model/repeated_capabilities.toml:1 too")
        self.setUp()
        self.change("repeated_capabilities.toml", "[[capability]]",
                    '[[capability]]\nclass = "Gate"\nnames = ["G"]\n\n[[capability]]')
        self.assertEqual(self.errors(), [
            "model/repeated_capabilities.toml:5: the repeated capability 'Gate' stands in"
            " model/repeated_capabilities.toml:1 too"])

    def test_message_twice(self) -> None:
        self.assert_errors("messages.toml", "code = 2", "code = 1",
                           "messages.toml:10: the message '1' stands in model/messages.toml:4 too")

    def test_status_of_more_than_32_bits(self) -> None:
        self.assert_errors("messages.toml", "0x80047000", "0x180047000",
                           "messages.toml:4: the status of message 2 hasn't 32 bits")
