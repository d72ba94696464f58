"""The generated files of the small model against texts written by hand."""

import unittest

from generator import output
from generator.cli import read_model
from generator.problems import Problems
from support import ChangedModel, generated


class OutputCase(unittest.TestCase):
    maxDiff = None

    @classmethod
    def setUpClass(cls) -> None:
        cls.files = generated()

    def assert_contains(self, path: str, text: str) -> None:
        self.assertIn(text, self.files[path])


class PublicHeaders(OutputCase):
    def test_every_file_says_where_it_comes_from(self) -> None:
        for path, text in self.files.items():
            with self.subTest(path):
                self.assertRegex(text.splitlines()[0],
                                 r"^// Made by tools/generator from .*; do not edit\.$")

    def test_enumeration_header(self) -> None:
        self.assertEqual(self.files["include/kestrion/enums/KestrionLampModeEnum.h"], """\
// Made by tools/generator from small_model/enums/lamps.toml; do not edit.
// How a lamp shines.
#pragma once

#include "kestrion/platform/types.h"

enum KestrionLampModeEnum : LONG {
    KestrionLampModeSteady = 0,
    // On and off.
    KestrionLampModeBlink = 3,
};
""")

    def test_type_of_the_platform_has_no_header(self) -> None:
        self.assertNotIn("include/kestrion/enums/VARIANT_BOOL.h", self.files)
        self.assertNotIn("VARIANT_BOOL", self.files["include/kestrion/enums.h"])

    def test_umbrella_headers_include_everything(self) -> None:
        self.assert_contains("include/kestrion/enums.h", """\
#include "kestrion/enums/IviScopeLampModeEnum.h"
#include "kestrion/enums/KestrionLampModeEnum.h"
#include "kestrion/enums/LampShape.h"
""")
        self.assert_contains("include/kestrion/interfaces.h", """\
#include "kestrion/interfaces/IAlien.h"
#include "kestrion/interfaces/IBase.h"
#include "kestrion/interfaces/IBeacon.h"
#include "kestrion/interfaces/IChime.h"
#include "kestrion/interfaces/IClassLamp.h"
#include "kestrion/interfaces/IGate.h"
#include "kestrion/interfaces/IGates.h"
#include "kestrion/interfaces/IHighChime.h"
#include "kestrion/interfaces/ILamp.h"
#include "kestrion/interfaces/IRoot.h"
""")

    def test_interface_header(self) -> None:
        self.assertEqual(self.files["include/kestrion/interfaces/IClassLamp.h"], """\
// Made by tools/generator from small_model/lamps/lamp.toml; do not edit.
// One lamp, in the terms of the class.
#pragma once

#include "kestrion/enums/IviScopeLampModeEnum.h"
#include "kestrion/platform/component.h"

struct IClassLamp : IUnknown {
    // Power in watts.
    virtual HRESULT STDMETHODCALLTYPE get_Power(double* val) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_Power(double val) = 0;
    // Hours so far.
    virtual HRESULT STDMETHODCALLTYPE get_Hours(LONG* val) = 0;
    // How it shines.
    virtual HRESULT STDMETHODCALLTYPE get_Mode(IviScopeLampModeEnum* val) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_Mode(IviScopeLampModeEnum val) = 0;

  protected:
    ~IClassLamp() = default;
};

template <>
struct kestrion::InterfaceId<IClassLamp> {
    static constexpr GUID value{0x00000000, 0x0000, 0x0000, \
{0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0xB4}};
};
""")

    def test_interface_that_extends_another_and_refers_to_others(self) -> None:
        self.assert_contains("include/kestrion/interfaces/IRoot.h", """\
#include "kestrion/interfaces/IBase.h"
#include "kestrion/platform/component.h"

struct IGates;
struct ILamp;

struct IRoot : IBase {
    // The lamp.
    virtual HRESULT STDMETHODCALLTYPE get_Lamp(ILamp** val) = 0;
    // The gates.
    virtual HRESULT STDMETHODCALLTYPE get_Gates(IGates** val) = 0;
""")

    def test_external_interface_is_declared_with_its_id_only(self) -> None:
        self.assert_contains("include/kestrion/interfaces/IAlien.h", """\
struct IAlien;

template <>
struct kestrion::InterfaceId<IAlien> {
    static constexpr GUID value{0x12345678, 0x9ABC, 0xDEF0, \
{0x12, 0x34, 0x56, 0x78, 0x9A, 0xBC, 0xDE, 0xF0}};
};
""")
        self.assertEqual([path for path in self.files if "IAlien" in path],
                         ["include/kestrion/interfaces/IAlien.h"])

    def test_refused_families_stand_in_the_comment_of_a_member(self) -> None:
        self.assert_contains("include/kestrion/interfaces/ILamp.h", """\
    // Flashes once. Not on the models of the Amber Series.
    virtual HRESULT STDMETHODCALLTYPE Flash() = 0;
""")

    def test_parameters_of_every_type_and_direction(self) -> None:
        self.assert_contains(
            "include/kestrion/interfaces/ILamp.h",
            "Record(LONG First, SAFEARRAY** Points, BSTR* Note) = 0;")
        self.assert_contains(
            "include/kestrion/interfaces/ILamp.h",
            "Configure(KestrionLampModeEnum Mode, double Power, LONG Count) = 0;")
        self.assert_contains("include/kestrion/interfaces/IBase.h",
                             "Open(BSTR Where, VARIANT_BOOL Check) = 0;")


class Descriptors(OutputCase):
    def test_regular_property_has_query_reply_and_set_line(self) -> None:
        self.assert_contains("members/ILamp.h", """\
inline constexpr MethodDescriptor get_Power{
    .iid = kInterfaceId<::ILamp>,
    .interfaceName = "ILamp",
    .memberName = "get_Power",
    .fullName = "ILamp.Power",
    .command = "POWER?",
    .response = "%lg",
    .variant = "",
    .selector = Selector::kNone,
    .refusedFamilies = {},
    .needsConnection = true,
    .simulated = false,
};

inline constexpr MethodDescriptor put_Power{
    .iid = kInterfaceId<::ILamp>,
    .interfaceName = "ILamp",
    .memberName = "put_Power",
    .fullName = "ILamp.Power",
    .command = "POWER %0.15lg",
    .response = "",
    .variant = "",
    .selector = Selector::kNone,
    .refusedFamilies = {},
    .needsConnection = true,
    .simulated = false,
};
""")

    def assert_templates(self, header: str, name: str, command: str, response: str) -> None:
        text = self.files[header]
        self.assertIn(f"MethodDescriptor {name}{{", text)
        block = text.split(f"MethodDescriptor {name}{{")[1].split("};")[0]
        self.assertIn(f"    .command = {command},\n    .response = {response},\n", block)

    def test_default_conversions_by_type(self) -> None:
        self.assert_templates("members/ILamp.h", "get_Lit", '"LIT?"', '"%{VARIANT_BOOL}s"')
        self.assert_templates("members/ILamp.h", "put_Lit", '"LIT %{VARIANT_BOOL}s"', '""')
        self.assert_templates("members/ILamp.h", "get_Mode", '"MODE?"',
                              '"%{KestrionLampModeEnum}s"')
        self.assert_templates("members/ILamp.h", "put_Mode", '"MODE %{KestrionLampModeEnum}s"',
                              '""')
        self.assert_templates("members/ILamp.h", "get_Hours", '"HOURS?"', '"%d"')
        self.assert_templates("members/ILamp.h", "get_Text", '"TEXT?"', '"%$Bs"')
        self.assert_templates("members/IGate.h", "put_Label", '":LABEL:%s %$BQs"', '""')

    def test_given_templates_stand_as_they_are(self) -> None:
        self.assert_templates("members/ILamp.h", "put_Text", '"TEXT %$BQs;SHOW 1"', '""')
        self.assert_templates("members/ILamp.h", "get_Span", '"A?;B?"', '"%lg;%lg"')
        self.assert_templates("members/ILamp.h", "get_Trace", '"TRACE?"', '"%,$Slg"')
        self.assert_templates("members/ILamp.h", "ReadAll", '"POWER?;MODE?"',
                              '"%lg;%{LampMode}[^;]"')

    def test_member_without_template_has_none(self) -> None:
        self.assert_templates("members/ILamp.h", "Record", '""', '""')
        self.assert_templates("members/IClassLamp.h", "put_Power", '""', '""')

    def test_selectors_of_a_property(self) -> None:
        for name, command, selector in [("get_Open", "GATE%d:OPEN?", "kNumber"),
                                        ("put_Width", "G%d:WIDTH %0.15lg", "kIndex"),
                                        ("get_Label", ":LABEL:%s?", "kName")]:
            block = self.files["members/IGate.h"].split(f"MethodDescriptor {name}{{")[1]
            with self.subTest(name):
                self.assertIn(f'    .command = "{command}",\n', block.split("};")[0])
                self.assertIn(f"    .selector = Selector::{selector},\n", block.split("};")[0])

    def test_byte_above_ascii_is_one_byte_and_apart_from_digits_behind_it(self) -> None:
        self.assert_templates("members/IGate.h", "Drop", r'"GATE%d:DROP\xA0" "A1"', '""')

    def test_named_refusal_list(self) -> None:
        self.assert_contains("members/refusals.h",
                             'inline constexpr std::string_view kNewer[] = {"Amber Series"};\n')
        block = self.files["members/ILamp.h"].split("MethodDescriptor Flash{")[1].split("};")[0]
        self.assertIn("    .refusedFamilies = refusals::kNewer,\n", block)

    def test_refusal_list_of_one_member_in_its_order(self) -> None:
        self.assert_contains(
            "members/ILamp.h",
            "inline constexpr std::string_view kGetModeRefusals[] ="
            ' {"Blue Series", "Amber Series"};\ninline constexpr MethodDescriptor get_Mode{\n')
        self.assert_contains("members/ILamp.h", "    .refusedFamilies = kPutModeRefusals,\n")

    def test_member_that_needs_no_connection(self) -> None:
        block = self.files["members/IBase.h"].split("MethodDescriptor Open{")[1].split("};")[0]
        self.assertIn("    .needsConnection = false,\n", block)

    def test_class_properties_are_simulated_unless_they_say_otherwise(self) -> None:
        for name, simulated in [("get_Power", "true"), ("put_Power", "true"),
                                ("get_Hours", "false"), ("get_Mode", "true")]:
            block = self.files["members/IClassLamp.h"].split(f"MethodDescriptor {name}{{")[1]
            with self.subTest(name):
                self.assertIn(f"    .simulated = {simulated},\n", block.split("};")[0])


class Hooks(OutputCase):
    def test_hooks_of_an_interface(self) -> None:
        self.assertEqual(self.files["hooks/ILamp.h"], """\
// Made by tools/generator from small_model/lamps/lamp.toml; do not edit.
// The hand-written bodies of members of ILamp. Each runs inside the call frame, under the object's
// lock.
#pragma once

#include "kestrion/enums/KestrionLampModeEnum.h"
#include "kestrion/platform/component.h"

namespace kestrion {

class MemberCall;

namespace hooks::ILamp {

[[nodiscard]] HRESULT Record(MemberCall& call, LONG First, SAFEARRAY** Points, BSTR* Note);
[[nodiscard]] HRESULT Prepare(MemberCall& call, LONG Count);
[[nodiscard]] HRESULT put_Mode(MemberCall& call, KestrionLampModeEnum val);
[[nodiscard]] HRESULT get_Span(MemberCall& call, double* val);

}  // namespace hooks::ILamp

}  // namespace kestrion
""")

    def test_interface_without_hooks_has_no_header_of_them(self) -> None:
        self.assertNotIn("hooks/IGate.h", self.files)


class Faces(OutputCase):
    def assert_body(self, path: str, head: str, call: str) -> None:
        self.assert_contains(path, f"HRESULT {head} {{\n    return {call};\n}}\n")

    def test_class_of_a_face_with_the_members_of_its_bases(self) -> None:
        self.assert_contains("faces/IRoot.h", """\
namespace kestrion {

class CNode;

class IRootFace final : public ::IRoot {
  public:
    explicit IRootFace(CNode& node) : node_(node) {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
    ULONG STDMETHODCALLTYPE AddRef() override;
    ULONG STDMETHODCALLTYPE Release() override;

    HRESULT STDMETHODCALLTYPE Open(BSTR Where, VARIANT_BOOL Check) override;
    HRESULT STDMETHODCALLTYPE get_Alien(::IAlien** val) override;
    HRESULT STDMETHODCALLTYPE get_Lamp(::ILamp** val) override;
    HRESULT STDMETHODCALLTYPE get_Gates(::IGates** val) override;

  private:
    CNode& node_;
};
""")

    def test_identity_goes_to_the_node(self) -> None:
        self.assert_contains("faces/IRoot.cpp", """\
HRESULT IRootFace::QueryInterface(REFIID iid, void** object) {
    return node_.QueryInterface(iid, object);
}

ULONG IRootFace::AddRef() {
    return node_.AddRef();
}

ULONG IRootFace::Release() {
    return node_.Release();
}
""")

    def test_inherited_member_uses_the_base_and_its_hook(self) -> None:
        self.assert_body(
            "faces/IRoot.cpp", "IRootFace::Open(BSTR Where, VARIANT_BOOL Check)",
            'Call(node_, members::IBase::Open, Parameters(In("Where", Where),'
            ' In("Check", Check)), [&](MemberCall& call) { return hooks::IBase::Open(call, Where,'
            ' Check); })')

    def test_reference(self) -> None:
        self.assert_body("faces/IRoot.cpp", "IRootFace::get_Lamp(::ILamp** val)",
                         "GetReference(node_, members::IRoot::get_Lamp, val)")
        self.assert_contains("faces/IRoot.cpp", '#include "kestrion/interfaces/ILamp.h"\n')
        self.assert_contains("faces/IRoot.cpp", '#include "kestrion/interfaces/IAlien.h"\n')

    def test_property(self) -> None:
        self.assert_body("faces/ILamp.cpp", "ILampFace::get_Mode(KestrionLampModeEnum* val)",
                         "Get(node_, members::ILamp::get_Mode, val)")
        self.assert_body("faces/ILamp.cpp", "ILampFace::put_Key(LONG val)",
                         "Put(node_, members::ILamp::put_Key, val)")

    def test_property_with_a_hook(self) -> None:
        self.assert_body("faces/ILamp.cpp", "ILampFace::put_Mode(KestrionLampModeEnum val)",
                         "Put(node_, members::ILamp::put_Mode, val, hooks::ILamp::put_Mode)")
        self.assert_body("faces/ILamp.cpp", "ILampFace::get_Span(double* val)",
                         "Get(node_, members::ILamp::get_Span, val, hooks::ILamp::get_Span)")

    def test_access_decides_which_entries_there_are(self) -> None:
        self.assertNotIn("put_Hours", self.files["faces/ILamp.h"])
        self.assertNotIn("get_Key", self.files["faces/ILamp.h"])

    def test_mapped_property(self) -> None:
        self.assert_body("faces/IClassLamp.cpp", "IClassLampFace::get_Power(double* val)",
                         "GetMapped<::ILamp>(node_, members::IClassLamp::get_Power, val,"
                         " &::ILamp::get_Power)")
        self.assert_body("faces/IClassLamp.cpp", "IClassLampFace::put_Power(double val)",
                         "PutMapped<::ILamp>(node_, members::IClassLamp::put_Power, val,"
                         " &::ILamp::put_Power)")

    def test_hook_in_one_direction_of_a_mapped_property(self) -> None:
        self.assert_body("faces/IClassLamp.cpp",
                         "IClassLampFace::get_Mode(IviScopeLampModeEnum* val)",
                         "Get(node_, members::IClassLamp::get_Mode, val,"
                         " hooks::IClassLamp::get_Mode)")
        self.assert_body("faces/IClassLamp.cpp",
                         "IClassLampFace::put_Mode(IviScopeLampModeEnum val)",
                         "PutMapped<::ILamp>(node_, members::IClassLamp::put_Mode, val,"
                         " &::ILamp::put_Mode)")

    def test_collection(self) -> None:
        self.assert_body("faces/IGates.cpp", "IGatesFace::get_Count(LONG* val)",
                         'CollectionCount(node_, members::IGates::get_Count, "Gate", val)')
        self.assert_body("faces/IGates.cpp", "IGatesFace::get_Item(BSTR Name, ::IGate** val)",
                         'CollectionItem(node_, members::IGates::get_Item, "Gate", Name, val)')
        self.assert_body("faces/IGates.cpp", "IGatesFace::get_Name(LONG Index, BSTR* val)",
                         'CollectionName(node_, members::IGates::get_Name, "Gate", Index, val)')

    def test_method_that_is_one_line(self) -> None:
        self.assert_body("faces/ILamp.cpp", "ILampFace::Flash()",
                         "CallCommand(node_, members::ILamp::Flash, Parameters(), Arguments())")

    def test_method_whose_template_has_an_order_of_its_own(self) -> None:
        self.assert_body(
            "faces/ILamp.cpp",
            "ILampFace::Configure(KestrionLampModeEnum Mode, double Power, LONG Count)",
            'CallCommand(node_, members::ILamp::Configure, Parameters(In("Mode", Mode),'
            ' In("Power", Power), In("Count", Count)), Arguments(Power, Count, Mode))')

    def test_method_that_is_a_query(self) -> None:
        self.assert_body(
            "faces/ILamp.cpp", "ILampFace::ReadAll(double* Power, KestrionLampModeEnum* Mode)",
            'CallQuery(node_, members::ILamp::ReadAll, Parameters(Out("Power", Power),'
            ' Out("Mode", Mode)), Arguments(), Arguments(Power, Mode))')

    def test_selectors_of_a_method_stand_among_its_arguments(self) -> None:
        self.assert_body(
            "faces/IGate.cpp", "IGateFace::Move(double To, double Speed)",
            'CallCommand(node_, members::IGate::Move, Parameters(In("To", To),'
            ' In("Speed", Speed)), Arguments(node_.Number(), To, node_.Number(), Speed))')
        self.assert_body(
            "faces/IGate.cpp", "IGateFace::Where(LONG Axis, double* At)",
            'CallQuery(node_, members::IGate::Where, Parameters(In("Axis", Axis),'
            ' Out("At", At)), Arguments(node_.Number(), Axis), Arguments(At))')

    def test_method_with_a_body_of_its_own(self) -> None:
        self.assert_body(
            "faces/ILamp.cpp", "ILampFace::Record(LONG First, SAFEARRAY** Points, BSTR* Note)",
            'Call(node_, members::ILamp::Record, Parameters(In("First", First),'
            ' OutArray("Points", Points, VT_R8), InOut("Note", Note)), [&](MemberCall& call)'
            " { return hooks::ILamp::Record(call, First, Points, Note); })")

    def test_method_with_a_template_and_a_hook(self) -> None:
        self.assert_body(
            "faces/ILamp.cpp", "ILampFace::Prepare(LONG Count)",
            'CallCommand(node_, members::ILamp::Prepare, Parameters(In("Count", Count)),'
            " Arguments(Count), [&](MemberCall& call)"
            " { return hooks::ILamp::Prepare(call, Count); })")

    def test_set_of_faces_of_a_node(self) -> None:
        self.assert_contains("objects/RootFaces.h", """\
struct RootFaces {
    explicit RootFaces(CNode& node);

    // The face for an interface of this node, not counted; null for any other.
    [[nodiscard]] void* Find(REFIID iid);

    IBaseFace base;
    IRootFace root;
    IBeaconFace beacon;
    IChimeFace chime;
    IHighChimeFace highChime;
    IGatesFace gates;
    ILampFace lamp;
    IClassLampFace classLamp;
};
""")
        self.assert_contains("objects/GateFaces.cpp", """\
GateFaces::GateFaces(CNode& node)
    : gate(node) {}

void* GateFaces::Find(REFIID iid) {
    if (iid == kInterfaceId<::IGate>) {
        return static_cast<::IGate*>(&gate);
    }
    return nullptr;
}
""")


class Tables(OutputCase):
    def test_enumerations(self) -> None:
        self.assert_contains("tables/enum_data.cpp", """\
constexpr std::string_view kVARIANT_BOOL1Members[] = {
    "ILamp.Lit",
    "IGate.Open",
};

constexpr std::string_view kVARIANT_BOOL1Tokens1[] = {"ON", "1"};
constexpr std::string_view kVARIANT_BOOL1Tokens2[] = {"ON", "1"};
constexpr std::string_view kVARIANT_BOOL1Tokens3[] = {"OFF", "0"};
constexpr EnumRow kVARIANT_BOOL1Rows[] = {
    {1, kVARIANT_BOOL1Tokens1},
    {-1, kVARIANT_BOOL1Tokens2},
    {0, kVARIANT_BOOL1Tokens3},
};
""")

    def test_enumeration_with_two_tables_and_a_row_without_tokens(self) -> None:
        self.assert_contains("tables/enum_data.cpp", """\
constexpr EnumRow kKestrionLampModeEnum2Rows[] = {
    {0, kKestrionLampModeEnum2Tokens1},
    {3, {}},
};

constexpr EnumTable kKestrionLampModeEnumTables[] = {
    {kKestrionLampModeEnum1Members, kKestrionLampModeEnum1Rows},
    {kKestrionLampModeEnum2Members, kKestrionLampModeEnum2Rows},
};
""")

    def test_enumerations_stand_in_the_given_order_with_their_short_names(self) -> None:
        self.assert_contains("tables/enum_data.cpp", """\
constexpr EnumData kEnums[] = {
    {"VARIANT_BOOL", "VARIANT_BOOL", kVARIANT_BOOLTables},
    {"KestrionLampModeEnum", "LampMode", kKestrionLampModeEnumTables},
    {"LampShape", "Shape", {}},
    {"IviScopeLampModeEnum", "LampMode", {}},
};
""")

    def test_families(self) -> None:
        self.assert_contains("tables/family_data.cpp", """\
constexpr FamilyData kFamilies[] = {
    {"Amber Series", kModels1},
    {"Blue Series", kModels2},
};
""")
        self.assert_contains("tables/family_data.cpp", '    "A1",\n    "A2",\n')
        self.assert_contains("tables/family_data.cpp", 'return "B1,A1,A2";')

    def test_repeated_capabilities(self) -> None:
        self.assert_contains("tables/repeated_capability_data.cpp", """\
constexpr std::string_view kGateNames[] = {
    "Gate1",
    "Gate2",
};

constexpr RepeatedCapabilityData kCapabilities[] = {
    {"Gate", kGateNames},
};
""")

    def test_messages_with_the_lowest_code_first(self) -> None:
        self.assert_contains("core/message_data.cpp", """\
constexpr MessageData kMessages[] = {
    {1, MakeStatus(0x00000000), 7, "Lamps: Value \\"%1\\".\\r\\n"},
    {2, MakeStatus(0x80047000), 0, "Lamps: Broken.\\r\\n"},
};
""")

    def test_metadata(self) -> None:
        self.assert_contains("core/message_data.cpp", '    .revision = "1.2.3.0",\n')
        self.assert_contains("core/message_data.cpp",
                             '    .groupCapabilities = "LampBase,LampGates",\n'
                             '    .supportedInstrumentModels = "B1,A1,A2",\n')
        self.assert_contains("core/message_data.cpp", "    .supportsSelfTest = false,\n")
        self.assert_contains("core/message_data.cpp", "    .disableTimeout = 200,\n")


class MemberKeys(ChangedModel):
    """The names by which members find their tables, of entries whose names look like accessors."""

    def assert_key(self, written: str, name: str, key: str) -> None:
        self.change("lamps/lamp.toml", "Flash = {", f"{written} = {{")
        files = output.all_files(read_model(self.model, "1.2.3", Problems()))
        block = files["members/ILamp.h"].split(f"MethodDescriptor {name}{{")[1].split("};")[0]
        self.assertIn(f'    .memberName = "{name}",\n    .fullName = "{key}",\n', block)

    def test_getter_and_setter_have_one_key(self) -> None:
        for name in ("get_Power", "put_Power"):
            block = generated()["members/ILamp.h"].split(f"MethodDescriptor {name}{{")[1]
            with self.subTest(name):
                self.assertIn('    .fullName = "ILamp.Power",\n', block.split("};")[0])

    def test_method_keeps_a_name_that_begins_with_get(self) -> None:
        self.assert_key("getFoo", "getFoo", "ILamp.getFoo")

    def test_method_keeps_a_name_that_begins_with_put(self) -> None:
        self.assert_key("putter", "putter", "ILamp.putter")

    def test_prefixes_count_in_their_own_case_only(self) -> None:
        self.assert_key("Get_Foo", "Get_Foo", "ILamp.Get_Foo")

    def test_method_loses_the_prefix_of_an_accessor(self) -> None:
        self.assert_key("get_Foo", "get_Foo", "ILamp.Foo")
