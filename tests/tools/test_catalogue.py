"""The enumerations of the driver's own model, against names and values written by hand."""

import unittest
from pathlib import Path

from generator.cli import read_model
from generator.problems import Problems
from support import HERE, run

MODEL = HERE.parents[1] / "model"

CHANNELS = ["Ch1", "Ch2", "Ch3", "Ch4"]
WAVEFORMS = [*CHANNELS, "Math1", "Math2", "Math3", "Math4", "Ref1", "Ref2", "Ref3", "Ref4"]


class Catalogue(unittest.TestCase):
    maxDiff = None

    @classmethod
    def setUpClass(cls) -> None:
        cls.model = read_model(Path(MODEL), "3.9.0", Problems())
        cls.enums = {enum.name: enum for enum in cls.model.enums}

    def values(self, enum: str) -> dict[str, int]:
        """The values by name, without what all names begin with."""
        stem = enum.removesuffix("Enum")
        return {v.name.removeprefix(stem): v.value for v in self.enums[enum].values}

    def assert_in_order(self, enum: str, names: str, first: int = 0) -> None:
        self.assertEqual(list(self.values(enum).items()),
                         list(zip(names.split(), range(first, 999))))


class Sums(Catalogue):
    def test_numbers_of_the_finished_model(self) -> None:
        sums = {name: line.number for name, line in self.model.expected.sums.items()}
        self.assertEqual(sums, {"enumerations": 286, "members": 1657, "tables": 1099,
                                "member_keys": 800, "converters": 292, "families": 10,
                                "models": 115})

    def test_report_has_all_enumerations_with_all_members(self) -> None:
        lines = run("--coverage")[1].splitlines()
        self.assertIn("enumerations: 286/286", lines)
        self.assertIn("members: 1657/1657", lines)

    def test_report_has_no_table_too_many(self) -> None:
        self.assertEqual([line for line in run("--coverage")[1].splitlines() if "over" in
                          line.split(": ", 1)[-1]], [])

    def test_numbers_of_telling_enumerations(self) -> None:
        for name, members, tables in [
            ("KestrionChannelEnum", 4, 70), ("KestrionSourceEnum", 13, 65),
            ("KestrionBusSourceEnum", 24, 32), ("KestrionTriggerSlopeEnum", 3, 26),
            ("KestrionMaskStandardEnum", 174, 2), ("KestrionTrigABusUSBTrigOnCondition", 10, 2),
            ("KestrionTriggerCommunicationStandardEnum", 71, 3), ("KestrionTimeOutEnum", 2, 0),
            ("KestrionMeasurementTypeEnum", 52, 8), ("KestrionZoomScrollDirectionEnum", 5, 1),
            ("KestrionSearchMipiCsiTwoDTLongEnum", 30, 1), ("KestrionErrorCodesEnum", 7, 0),
        ]:
            with self.subTest(name):
                expected = self.model.expected.enums[name]
                self.assertEqual((expected.members, expected.tables), (members, tables))
                self.assertEqual(len(self.enums[name].values), members)

    def test_refusals(self) -> None:
        numbers = {name: line.number for name, line in self.model.expected.refusals.items()}
        self.assertEqual(numbers, {
            "newer": 930, "herons_and_lark": 150, "newer_and_swift": 74, "heron": 69,
            "herons": 27, "newer_but_ibisb": 27, "all_but_herons": 25,
            "newer_but_larkb": 25, "all_but_merlin": 25, "ibises_larks_and_crake": 14})

    def test_words_of_booleans(self) -> None:
        words = [(w.false_tokens, w.true_tokens, w.tables) for w in self.model.expected.booleans]
        self.assertEqual(words, [
            (["0"], ["1"], 62), (["OFF"], ["ON"], 11), (["OFF", "0"], ["ON", "1"], 11),
            (["FALSE"], ["TRUE"], 9), (["0", "OFF"], ["1", "ON"], 7),
            (["0", " OFF"], ["1", " ON"], 4), (["NOPARITY"], ["PARITY"], 2),
            (["SEQUENCE"], ["RUNSTOP"], 1), (["RUNSTOP"], ["SEQUENCE"], 1),
            (["0, OFF"], ["1, ON"], 1)])


class Names(Catalogue):
    def test_members_begin_with_the_name_of_their_enumeration(self) -> None:
        for enum in self.model.enums:
            if enum.name.startswith("Kestrion"):
                stem = enum.name.removesuffix("Enum")
                for value in enum.values:
                    with self.subTest(value.name):
                        self.assertTrue(value.name.startswith(stem) and value.name != stem)

    def test_no_two_enumerations_of_the_driver_share_a_name(self) -> None:
        owners: dict[str, str] = {}
        for enum in self.model.enums:
            if enum.name.startswith("Kestrion"):
                for name in set(word.lower() for word in enum.names()):
                    self.assertEqual(owners.setdefault(name, enum.name), enum.name)

    def test_short_names_that_the_class_shares_belong_to_the_driver(self) -> None:
        for short in ("TriggerType", "TriggerSlope", "TimeOut"):
            with self.subTest(short):
                found = self.model.find_enum(short)
                self.assertEqual(found and found.name, f"Kestrion{short}Enum")
                self.assertIn(f"IviScope{short}Enum", self.enums)

    def test_order(self) -> None:
        names = [enum.name for enum in self.model.enums]
        self.assertEqual(names[0], "VARIANT_BOOL")
        self.assertEqual(names[1], "KestrionAcquisitionEnhancedENOBTypeEnum")
        self.assertEqual(names[286], "KestrionZoomScrollDirectionEnum")
        self.assertEqual({name[:8] for name in names[1:287]}, {"Kestrion"})
        self.assertEqual({name[:8] for name in names[287:]}, {"IviScope"})
        # The names that stand where the alphabet wouldn't put them.
        for before, name, behind in [
            ("KestrionErrorCodesEnum", "KestrionBurstFrameMultipleFrameModeEnum",
             "KestrionBurstFrameTrackEnum"),
            ("KestrionSpectralWindowEnum", "KestrionMeshLinkConnectionEnum",
             "KestrionMeshLinkRefClockEnum"),
        ]:
            at = names.index(name)
            self.assertEqual(names[at - 1:at + 2], [before, name, behind])

    def test_enumeration_without_the_ending(self) -> None:
        self.assertEqual(self.enums["KestrionTrigABusUSBTrigOnCondition"].names(), [
            "TrigABusUSBTrigOnCondition", "KestrionTrigABusUSBTrigOnCondition",
            "KestrionTrigABusUSBTrigOnCondition", "TrigABusUSBTrigOnConditionEnum"])


class Values(Catalogue):
    def test_sources(self) -> None:
        self.assert_in_order("KestrionChannelEnum", " ".join(CHANNELS))
        self.assert_in_order("KestrionReferenceEnum", "Ref1 Ref2 Ref3 Ref4")
        self.assert_in_order("KestrionSourceEnum", " ".join([*WAVEFORMS, "Histogram"]))
        self.assert_in_order("KestrionWaveformSourceEnum", " ".join(WAVEFORMS))
        self.assert_in_order("KestrionSearchSearchSourceEnum", " ".join(WAVEFORMS))
        digital = " ".join(f"D{number}" for number in range(16))
        self.assert_in_order("KestrionDigitalChannelEnum", digital)
        self.assert_in_order("KestrionBusSourceEnum",
                             f"CH1 CH2 CH3 CH4 MATH1 MATH2 MATH3 MATH4 {digital}")
        # Absent on two channels are the values 2 and 3.
        self.assertEqual([self.values("KestrionTriggerSourceEnum")[name] for name in CHANNELS],
                         [0, 1, 2, 3])

    def test_channels(self) -> None:
        self.assert_in_order("KestrionChannelCouplingEnum", "AC DC GND DCREJECT")
        bandwidths = self.values("KestrionChannelBandwidthEnum")
        self.assertEqual((bandwidths["Onefifty"], bandwidths["Twofifty"], bandwidths["Five"]),
                         (1, 2, 4))

    def test_acquisition(self) -> None:
        self.assert_in_order("KestrionAcquisitionModeEnum",
                             "Sample PeakDetect HiRes Envelope Average WfmDB")
        self.assert_in_order("KestrionAcquisitionSamplingModeEnum", "RT ET IT")
        self.assertEqual(self.values("KestrionTimeOutEnum"), {"Infinite": -1, "Immediate": 0})

    def test_trigger(self) -> None:
        self.assert_in_order(
            "KestrionTriggerTypeEnum",
            "Edge Width Runt Glitch Timeout Transition SetHold Pattern State Communication Serial"
            " Window Video Bus I2C CAN SPI RS232", first=1)
        self.assert_in_order("KestrionTriggerSlopeEnum", "Fall Rise Either")
        self.assert_in_order("KestrionTriggerPulsePolarityEnum", "Positive Negative Either",
                             first=1)
        self.assert_in_order("KestrionTriggerQualifyEnum", "Occurs Logic")
        self.assert_in_order("KestrionTriggerLogicInputChannelEnum", "High Low DontCare")
        self.assert_in_order("KestrionTriggerPatternTypeEnum", "AND NAND NOR OR")
        # The value that needs the inputs that two channels don't leave.
        self.assertEqual(self.values("KestrionTriggerWindowConditionEnum")["Logic"], 2)

    def test_values_that_the_class_hands_on_as_they_are(self) -> None:
        for name, of_class, same in [
            ("KestrionTriggerPulsePolarityEnum", "IviScopeRuntPolarityEnum",
             {"Positive": "Positive", "Negative": "Negative", "Either": "Either"}),
            ("KestrionTriggerPulsePolarityEnum", "IviScopeGlitchPolarityEnum",
             {"Positive": "Positive", "Negative": "Negative", "Either": "Either"}),
            ("KestrionTriggerGlitchConditionEnum", "IviScopeGlitchConditionEnum",
             {"Accept": "LessThan", "Reject": "GreaterThan"}),
            ("KestrionTriggerWidthConditionEnum", "IviScopeWidthConditionEnum",
             {"Within": "Within", "Outside": "Outside"}),
            ("KestrionTriggerWidthPolarityEnum", "IviScopeWidthPolarityEnum",
             {"Positive": "Positive", "Negative": "Negative"}),
            ("KestrionTriggerSlopeEnum", "IviScopeTriggerSlopeEnum",
             {"Fall": "Negative", "Rise": "Positive"}),
            ("KestrionTriggerAEdgeCouplingEnum", "IviScopeTriggerCouplingEnum",
             {"AC": "AC", "DC": "DC", "HFReject": "HFReject", "LFReject": "LFReject",
              "NoiseReject": "NoiseReject"}),
            ("KestrionChannelCouplingEnum", "IviScopeVerticalCouplingEnum",
             {"AC": "AC", "DC": "DC", "GND": "Gnd"}),
        ]:
            with self.subTest(name):
                mine, theirs = self.values(name), self.values(of_class)
                self.assertEqual({word: mine[word] for word in same},
                                 {word: theirs[other] for word, other in same.items()})

    def test_measurements(self) -> None:
        types = list(self.values("KestrionMeasurementTypeEnum").items())
        self.assertEqual(types[:7], [("Rise", 0), ("Fall", 1), ("Frequency", 2), ("Period", 3),
                                     ("RMS", 4), ("Pk2Pk", 5), ("Maximum", 6)])
        self.assertEqual([value for _, value in types], list(range(52)))
        # The class's measurements are read as these, by number.
        of_class = self.values("IviScopeMeasurementEnum")
        mine = dict(types)
        for word, other in {
            "Minimum": "VoltageMin", "High": "VoltageHigh", "Low": "VoltageLow",
            "Mean": "VoltageAverage", "NWidth": "WidthNeg", "PWidth": "WidthPos",
            "NDuty": "DutyCycleNeg", "PDuty": "DutyCyclePos", "Amplitude": "Amplitude",
            "CRMS": "VoltageCycleRMS", "CMean": "VoltageCycleAverage", "POvershoot": "Overshoot",
            "NOvershoot": "Preshoot",
        }.items():
            with self.subTest(word):
                self.assertEqual(mine[word], of_class[other])
        self.assert_in_order("KestrionMeasurementEdgeEnum", "Fall Rise")

    def test_masks(self) -> None:
        standards = self.values("KestrionMaskStandardEnum")
        self.assertEqual(list(standards.values()), list(range(174)))
        self.assertEqual([standards[name] for name in ("D1", "D2", "VIDEO270", "VIDEO360")],
                         [152, 153, 154, 155])

    def test_communication_standards(self) -> None:
        self.assertEqual(
            list(self.values("KestrionTriggerCommunicationStandardEnum").values()),
            list(range(71)))
        self.assertEqual(list(self.values("KestrionTriggerSerialStandardEnum").values()),
                         list(range(18)))

    def test_buses(self) -> None:
        self.assert_in_order("KestrionSearchDataFormatEnum", "Binary Hex")
        self.assert_in_order("KestrionTrigABusMIL1553BitValueTypeEnum", "DONTCARE ON OFF")
        self.assertEqual(self.values("KestrionSearchI2CAddressTypeEnum")["EEPROM"], 2)

    def test_files(self) -> None:
        self.assert_in_order("KestrionWaveformFileFormatEnum", "WithoutScaleFactor WithScaleFactor")

    def test_error_codes_are_the_driver_s_own_statuses(self) -> None:
        codes = {word: value % 2**32
                 for word, value in self.values("KestrionErrorCodesEnum").items()}
        self.assertEqual(list(codes.values()), list(range(0x80044211, 0x80044218)))
        statuses = {message.code: message.status for message in self.model.messages}
        for word, code in {"IOError": 42, "IOTimeout": 43, "ModelNotSupported": 44,
                           "PersonalityNotActive": 45, "PersonalityNotInstalled": 47,
                           "PreviewState": 48}.items():
            with self.subTest(word):
                self.assertEqual(codes[word], statuses[code])


class OfTheClass(Catalogue):
    def test_published_values(self) -> None:
        for name, values in {
            "IviScopeGlitchConditionEnum": {"LessThan": 1, "GreaterThan": 2},
            "IviScopeGlitchPolarityEnum": {"Positive": 1, "Negative": 2, "Either": 3},
            "IviScopeRuntPolarityEnum": {"Positive": 1, "Negative": 2, "Either": 3},
            "IviScopeTVSignalFormatEnum": {"NTSC": 1, "PAL": 2, "SECAM": 3},
            "IviScopeTVTriggerEventEnum":
                {"Field1": 1, "Field2": 2, "AnyField": 3, "AnyLine": 4, "LineNumber": 5},
            "IviScopeTVTriggerPolarityEnum": {"Positive": 1, "Negative": 2},
            "IviScopeTriggerSlopeEnum": {"Negative": 0, "Positive": 1},
            "IviScopeVerticalCouplingEnum": {"AC": 0, "DC": 1, "Gnd": 2},
            "IviScopeWidthConditionEnum": {"Within": 1, "Outside": 2},
            "IviScopeWidthPolarityEnum": {"Positive": 1, "Negative": 2, "Either": 3},
        }.items():
            with self.subTest(name):
                self.assertEqual(self.values(name), values)
        self.assertEqual(
            [(value.name, value.value) for value in self.enums["IviScopeTriggerTypeEnum"].values],
            [("IviScopeTriggerEdge", 1), ("IviScopeTriggerWidth", 2), ("IviScopeTriggerRunt", 3),
             ("IviScopeTriggerGlitch", 4), ("IviScopeTriggerTV", 5),
             ("IviScopeTriggerImmediate", 6), ("IviScopeTriggerACLine", 7)])

    def test_those_that_no_command_carries(self) -> None:
        self.assertEqual(sorted(self.model.expected.class_without_tables), sorted(
            f"IviScope{word}Enum" for word in (
                "Interpolation SampleMode AcquisitionType Measurement AcquisitionStatus"
                " TriggerCoupling TriggerModifier ACLineSlope TimeOut").split()))
        for name in self.model.expected.class_without_tables:
            self.assertEqual(self.enums[name].tables, [])
