"""The driver's own model against figures and texts written by hand."""

import unittest
from pathlib import Path

from generator.cli import read_model
from generator.problems import Problems
from support import HERE, run

MODEL = HERE.parents[1] / "model"


class RealModel(unittest.TestCase):
    maxDiff = None

    @classmethod
    def setUpClass(cls) -> None:
        cls.model = read_model(Path(MODEL), "3.9.0", Problems())
        cls.entries = {f"{entry.interface}.{entry.name}": entry
                       for part in cls.model.interfaces.values() for entry in part.entries}

    def members(self, interface: str) -> list[str]:
        return list(dict.fromkeys(e.member for e in self.model.interfaces[interface].entries))

    def templates(self, interface: str) -> dict[str, tuple[str, str]]:
        """Command and reply of each entry that has them."""
        return {entry.name: (entry.command.text, entry.reply or "")
                for entry in self.model.interfaces[interface].entries if entry.command is not None}

    def tokens(self, enum: str, key: str) -> list[tuple[int, list[str]]]:
        found = next(e for e in self.model.enums if e.name == enum)
        return next(table.rows for table in found.tables if key in table.members)


class Checked(RealModel):
    def test_model_is_in_order(self) -> None:
        self.assertEqual(run("--check"), (0, "", ""))


class Identity(RealModel):
    def test_metadata(self) -> None:
        self.assertEqual(self.model.metadata, {
            "driverName": "Kestrion", "identifier": "Kestrion", "vendor": "Kestrion Instruments",
            "description": "IVI driver for Kestrion Instruments oscilloscopes",
            "revision": "3.9.0.0",
            "groupCapabilities":
                "IviScopeBase,IviScopeInterpolation,IviScopeRuntTrigger,IviScopeGlitchTrigger,"
                "IviScopeWidthTrigger,IviScopeWaveformMeas,IviScopeMinMaxWaveform,"
                "IviScopeProbeAutoSense,IviScopeContinuousAcquisition,IviScopeAverageAcquisition,"
                "IviScopeSampleMode,IviScopeTriggerModifier,IviScopeAutoSetup",
            "defaultModel": "Kestrion", "specificationMajorVersion": 3,
            "specificationMinorVersion": 0, "supportsInterchangeCheck": False,
            "supportsIdQuery": True, "supportsReset": True, "supportsSelfTest": True,
            "supportsErrorQuery": True, "selfTestTimeout": 2000, "disableTimeout": 2000,
            "resetTimeout": 2000, "maxCoercionRecords": 1000, "progId": "Kestrion.Kestrion",
            "helpFile": "Kestrion.chm"})

    def test_messages(self) -> None:
        rows = {m.code: (m.status, m.help_context, m.text) for m in self.model.messages}
        # Every number from 1 to 53 but 46.
        self.assertEqual(sorted(rows), [*range(1, 46), *range(47, 54)])
        for code, row in {
            1: (0, 0, "Kestrion: Success.\r\n"),
            3: (0x80047001, 0, "Kestrion: Instrument error detected.  Use ErrorQuery() to determine"
                               " error(s).\r\n"),
            8: (0x80047010, 0, "Kestrion: Invalid value (%1) for method %2, parameter %3.\r\n"),
            12: (0x8004701D, 0,
                 "Kestrion: A connection to the instrument has not been established.\r\n"),
            22: (0x80047058, 0,
                 "Kestrion: Null pointer passed for method %1, parameter %2.\r\n"),
            37: (0x00047065, 0, "Kestrion: ID Query is not supported by this instrument.\r\n"),
            44: (0x80044216, 1215,
                 "Kestrion: Instrument model does not support this feature: %1.\r\n"),
            47: (0x80044212, 1215, "Kestrion: Personality is not installed.\r\n"),
            48: (0x80044217, 1215, "Kestrion: Preview State,Acquire the Waveform.\r\n"),
            53: (0x00042001, 2,
                 "Kestrion: One of the elements in the waveform array is invalid.\r\n"),
        }.items():
            with self.subTest(code):
                self.assertEqual(rows[code], row)

    def test_families_in_order_with_their_numbers_of_models(self) -> None:
        self.assertEqual([(f.name, len(f.models)) for f in self.model.families], [
            ("Merlin Series", 23), ("Swift Series", 20), ("Plover Series", 41),
            ("Crake Series", 3), ("LarkB Series", 3), ("Lark Series", 5), ("IbisB Series", 2),
            ("Ibis Series", 4), ("HeronB Series", 9), ("Heron Series", 5)])

    def test_models_that_have_to_be_known(self) -> None:
        families = {model: f.name.split()[0] for f in self.model.families for model in f.models}
        self.assertEqual(len(families), 115)
        for family, models in {
            "Merlin": "MR5104B MR71254C MR72304DX", "Swift": "SW72004C SW73304D",
            "Plover": "PL5034 PL7254C PL72304DX PL77002SX", "Crake": "CR7404B",
            "LarkB": "LK7254B", "Lark": "LK7054", "IbisB": "IB6804B", "Ibis": "IB6404 IB6124C",
            "HeronB": "HR5054B HR5052BE", "Heron": "HR5104",
        }.items():
            for model in models.split():
                with self.subTest(model):
                    self.assertEqual(families[model], family)

    def test_supported_models_begin_with_the_heron_series(self) -> None:
        supported = self.model.supported_models
        self.assertEqual(len(supported), 115)
        order = list(dict.fromkeys(model[:2] for model in supported))
        self.assertEqual(order, ["HR", "IB", "LK", "CR", "PL", "SW", "MR"])
        self.assertEqual(sorted(supported),
                         sorted(model for f in self.model.families for model in f.models))

    def test_refusal_lists(self) -> None:
        short = {name: " ".join(family.removesuffix(" Series") for family in families)
                 for name, families in self.model.refusals.items()}
        self.assertEqual(short, {
            "newer": "Heron HeronB Ibis IbisB Lark LarkB Crake",
            "herons_and_lark": "Heron HeronB Lark",
            "newer_and_swift": "Heron HeronB Ibis IbisB Lark LarkB Crake Swift",
            "heron": "Heron",
            "herons": "Heron HeronB",
            "newer_but_ibisb": "Heron HeronB Ibis Lark LarkB Crake",
            "all_but_herons": "Ibis IbisB Lark LarkB Crake Plover Swift Merlin",
            "newer_but_larkb": "Heron HeronB Ibis IbisB Lark Crake",
            "all_but_merlin": "Heron HeronB Ibis IbisB Lark LarkB Crake Plover Swift",
            "ibises_larks_and_crake": "Ibis IbisB Lark LarkB Crake",
        })

    def test_repeated_capabilities_in_order(self) -> None:
        rows = [(c.class_name, c.names[0], c.names[-1], len(c.names))
                for c in self.model.capabilities]
        self.assertEqual(rows, [
            ("KestrionSearch", "Search1", "Search8", 8),
            ("KestrionBus", "Bus1", "Bus16", 16),
            ("KestrionDigitalChannel", "DigitalChannel0", "DigitalChannel15", 16),
            ("KestrionChannel", "Channel1", "Channel4", 4),
            ("KestrionMath", "Math1", "Math4", 4),
            ("KestrionMeasurementSlot", "MeasurementSlot1", "MeasurementSlot8", 8),
            ("KestrionReference", "Reference1", "Reference4", 4),
            ("KestrionMultiScopeIdentity", "A", "B", 2)])


class PublishedInterfaces(RealModel):
    def test_ids(self) -> None:
        tail = "-a398-11d4-ba58-000064657374"
        for name, head in {
            "IIviDriver": "47ed5184", "IIviComponentIdentity": "47ed5185",
            "IIviDriverIdentity": "47ed5186", "IIviDriverOperation": "47ed5188",
            "IIviDriverUtility": "47ed5189", "IIviClassWrapper": "47ed518a",
            "IIviScope": "47ed524c",
            "IIviScopeAcquisition": "47ed524d", "IIviScopeChannels": "47ed524e",
            "IIviScopeReferenceLevel": "47ed5250", "IIviScopeMeasurements": "47ed5251",
            "IIviScopeChannel": "47ed524f", "IIviScopeMeasurement": "47ed5252",
            "IIviScopeTrigger": "47ed5253", "IIviScopeTriggerAcLine": "47ed5254",
            "IIviScopeTriggerEdge": "47ed5255", "IIviScopeTriggerGlitch": "47ed5256",
            "IIviScopeTriggerRunt": "47ed5257", "IIviScopeTriggerTv": "47ed5258",
            "IIviScopeTriggerWidth": "47ed5259",
        }.items():
            with self.subTest(name):
                self.assertEqual(self.model.interfaces[name].iid, head + tail)

    def test_members_in_order(self) -> None:
        for name, members in {
            "IIviDriver": "Close DriverOperation Identity Initialize Initialized Utility",
            "IIviDriverOperation":
                "Cache ClearInterchangeWarnings DriverSetup GetNextCoercionRecord"
                " GetNextInterchangeWarning InterchangeCheck InvalidateAllAttributes"
                " IoResourceDescriptor LogicalName QueryInstrumentStatus RangeCheck"
                " RecordCoercions ResetInterchangeCheck Simulate",
            "IIviDriverUtility":
                "Disable ErrorQuery LockObject Reset ResetWithDefaults SelfTest UnlockObject",
            "IIviComponentIdentity": "Description Identifier Revision Vendor",
            "IIviDriverIdentity":
                "GroupCapabilities InstrumentFirmwareRevision InstrumentManufacturer"
                " InstrumentModel SpecificationMajorVersion SpecificationMinorVersion"
                " SupportedInstrumentModels",
            "IIviScope": "Acquisition Channels Measurements ReferenceLevel Trigger",
            "IIviScopeAcquisition":
                "ConfigureRecord Interpolation NumberOfAverages NumberOfEnvelopes"
                " NumberOfPointsMin RecordLength SampleMode SampleRate StartTime TimePerRecord"
                " Type",
            "IIviScopeChannels": "Count Item Name",
            "IIviScopeChannel":
                "Configure ConfigureCharacteristics Coupling Enabled InputFrequencyMax"
                " InputImpedance Offset ProbeAttenuation ProbeSense Range",
            "IIviScopeMeasurements":
                "Abort AutoSetup Count Initiate IsWaveformElementInvalid Item Name Status",
            "IIviScopeMeasurement":
                "FetchWaveform FetchWaveformMeasurement FetchWaveformMinMax ReadWaveform"
                " ReadWaveformMeasurement ReadWaveformMinMax",
            "IIviScopeReferenceLevel": "Configure High Low Mid",
            "IIviScopeTrigger":
                "ACLine Configure Continuous Coupling Edge Glitch Holdoff Level Modifier Runt"
                " Source TV Type Width",
            "IIviScopeTriggerAcLine": "Slope",
            "IIviScopeTriggerEdge": "Configure Slope",
            "IIviScopeTriggerGlitch": "Condition Configure Polarity Width",
            "IIviScopeTriggerRunt": "Configure Polarity ThresholdHigh ThresholdLow",
            "IIviScopeTriggerTv": "Configure Event LineNumber Polarity SignalFormat",
            "IIviScopeTriggerWidth": "Condition Configure Polarity ThresholdHigh ThresholdLow",
        }.items():
            with self.subTest(name):
                self.assertEqual(self.members(name), members.split())

    def test_access_of_the_class_acquisition(self) -> None:
        access = {member: "".join(how for how, prefix in (("r", "get_"), ("w", "put_"))
                                  if f"IIviScopeAcquisition.{prefix}{member}" in self.entries)
                  for member in self.members("IIviScopeAcquisition")[1:]}
        self.assertEqual(access, {
            "Interpolation": "rw", "NumberOfAverages": "rw", "NumberOfEnvelopes": "rw",
            "NumberOfPointsMin": "rw", "RecordLength": "r", "SampleMode": "r", "SampleRate": "r",
            "StartTime": "rw", "TimePerRecord": "rw", "Type": "rw"})

    def test_only_the_class_is_simulated(self) -> None:
        simulated = {entry.interface for entry in self.entries.values() if entry.simulated}
        self.assertEqual(simulated, {
            "IIviScopeAcquisition", "IIviScopeChannel", "IIviScopeReferenceLevel",
            "IIviScopeTrigger", "IIviScopeTriggerAcLine", "IIviScopeTriggerEdge",
            "IIviScopeTriggerGlitch", "IIviScopeTriggerRunt", "IIviScopeTriggerTv",
            "IIviScopeTriggerWidth"})

    def test_members_that_need_no_connection(self) -> None:
        free = sorted(name for name, entry in self.entries.items() if not entry.needs_connection)
        self.assertEqual(free, [
            "IDirectIo.get_ConfigurationStore", "IDirectIo.get_ConfigurationStoreReason",
            "IIviComponentIdentity.get_Description", "IIviComponentIdentity.get_Identifier",
            "IIviComponentIdentity.get_Revision", "IIviComponentIdentity.get_Vendor",
            "IIviDriver.Initialize", "IIviDriver.get_Initialized",
            "IIviDriverIdentity.get_GroupCapabilities",
            "IIviDriverIdentity.get_SpecificationMajorVersion",
            "IIviDriverIdentity.get_SpecificationMinorVersion",
            "IIviDriverIdentity.get_SupportedInstrumentModels"])

    def test_one_interface_extends_another(self) -> None:
        self.assertEqual({part.name: part.extends for part in self.model.interfaces.values()
                          if part.extends},
                         {"IIviDriverIdentity": "IIviComponentIdentity", "IIviScope": "IIviDriver",
                          "IKestrion": "IIviDriver"})


class InstrumentInterfaces(RealModel):
    def test_acquisition_templates(self) -> None:
        flag = "%{VARIANT_BOOL}s"
        mode = "%{KestrionAcquisitionModeEnum}s"
        roll = "%{KestrionHorizontalRollModeEnum}s"
        sampling = "%{KestrionAcquisitionSamplingModeEnum}s"
        bits = "%{KestrionAcquisitionEnhancedENOBTypeEnum}s"
        self.assertEqual(self.templates("IKestrionAcquisition"), {
            "AutoSet": ("AUTOSET EXECUTE", ""),
            "SetAverageMode": ("ACQUIRE:MODE AVERAGE;NUMAVG %d", ""),
            "SetEnvelopeMode": ("ACQUIRE:MODE ENVELOPE;NUMENV %d", ""),
            "SetMaximumEnvelopes": ("ACQUIRE:MODE ENVELOPE;NUMENV 2000000000", ""),
            "Start": ("ACQUIRE:STATE ON", ""),
            "StartSingleSequence": ("ACQUIRE:STOPAFTER SEQUENCE;STATE ON", ""),
            "Stop": ("ACQUIRE:STATE OFF", ""),
            "get_EquivalentTimeMode": ("ACQUIRE:REPET?", flag),
            "put_EquivalentTimeMode": (f"ACQUIRE:REPET {flag}", ""),
            "get_DenseAcquisitionMode": ("DENSEACQ:STATE?", flag),
            "put_DenseAcquisitionMode": (f"DENSEACQ:STATE {flag}", ""),
            "get_Mode": ("ACQUIRE:MODE?", mode),
            "put_Mode": (f"ACQUIRE:MODE {mode}", ""),
            "get_NumberAcquisitions": ("ACQUIRE:NUMACQ?", "%d"),
            "get_NumberAverages": ("ACQUIRE:NUMAVG?", "%d"),
            "put_NumberAverages": ("ACQUIRE:NUMAVG %d", ""),
            "get_NumberEnvelopes": ("ACQUIRE:NUMENV?", "%d"),
            "put_NumberEnvelopes": ("ACQUIRE:NUMENV %d", ""),
            "get_NumberSamples": ("ACQUIRE:NUMSAM?", "%d"),
            "put_NumberSamples": ("ACQUIRE:NUMSAM %d", ""),
            "get_RollMode": ("HORIZONTAL:ROLL?", roll),
            "put_RollMode": (f"HORIZONTAL:ROLL {roll}", ""),
            "get_RunStop": ("ACQUIRE:STOPAFTER?", flag),
            "put_RunStop": (f"ACQUIRE:STOPAFTER {flag}", ""),
            "get_SamplingMode": ("ACQUIRE:SAMPLINGMODE?", sampling),
            "put_SamplingMode": (f"ACQUIRE:SAMPLINGMODE {sampling}", ""),
            "get_SingleSequence": ("ACQUIRE:STOPAFTER?", flag),
            "put_SingleSequence": (f"ACQUIRE:STOPAFTER {flag}", ""),
            "get_State": ("ACQUIRE:STATE?", flag),
            "put_State": (f"ACQUIRE:STATE {flag}", ""),
            "get_NumberOfFramesAcquired": ("ACQUIRE:NUMFRAMESACQUIRED?", "%d"),
            "get_FineScanState": ("ACQ:MAG?", flag),
            "put_FineScanState": (f"ACQ:MAG {flag}", ""),
            "get_EnhancedENOBType": (":ACQ:ENHANCEDE?", bits),
            "put_EnhancedENOBType": (f":ACQ:ENHANCEDE {bits}", ""),
            "get_EnhancedENOBState": (":ACQ:ENHANCEDE:STATE?", flag),
        })

    def test_horizontal_groups(self) -> None:
        templates = self.templates("IKestrionHorizontal")
        for name, expected in {
            "Configure": ("HORIZONTAL:POSITION %0.15lg;SCALE %0.15lg;RECORDLENGTH %d", ""),
            "Read": ("HORIZONTAL:POSITION?;SCALE?;RECORDLENGTH?", "%lg;%lg;%d"),
            "ConfigureDelayOff": ("HORIZONTAL:MAIN:DELAY:MODE OFF", ""),
            "ConfigureDelayOn": ("HORIZONTAL:MAIN:DELAY:MODE ON;TIME %0.15lg", ""),
            "ConfigureHorizontalModel":
                ("HOR:MODE:SAMPLER %0.15lg;SCALE %0.15lg;RECO %d;AUTO:LIMIT %d", ""),
            "ReadHorizontalModel":
                ("HOR:MODE:SAMPLER?;SCALE?;RECO?;AUTO:LIMIT?", "%lg;%lg;%d;%d"),
            "get_Duration": ("HORIZONTAL:DIVISION?;SCALE?", "%lg;%lg"),
        }.items():
            with self.subTest(name):
                self.assertEqual(templates[name], expected)

    def test_horizontal_model_takes_its_values_in_the_order_of_the_line(self) -> None:
        for name in ("ConfigureHorizontalModel", "ReadHorizontalModel"):
            entry = self.entries[f"IKestrionHorizontal.{name}"]
            self.assertEqual([p.name for p in entry.parameters],
                             ["LimitRecordLength", "SampleRate", "Scale", "RecordLength"])
            self.assertEqual(entry.order,
                             ["SampleRate", "Scale", "RecordLength", "LimitRecordLength"])

    def test_horizontal_paths(self) -> None:
        templates = self.templates("IKestrionHorizontal")
        for member, path in {
            "DelayMode": "HORIZONTAL:DELAY:MODE", "DelayTime": "HORIZONTAL:DELAY:TIME",
            "Position": "HORIZONTAL:POSITION", "RecordLength": "HORIZONTAL:RECORDLENGTH",
            "ReferencePoint": "HORIZONTAL:MAIN:DELAY:POSITION",
            "Resolution": "HORIZONTAL:RESOLUTION", "RollMode": "HORIZONTAL:ROLL",
            "SampleRate": "HORIZONTAL:MAIN:SAMPLERATE", "HorizontalScale": "HORIZONTAL:SCALE",
            "TriggerPosition": "HORIZONTAL:TRIGGER:POSITION",
            "UnitsString": "HORIZONTAL:MAIN:UNITS:STRING",
            "AutoLimitRecordLength": "HOR:MODE:AUTO:LIMIT", "HorizontalModel": "HOR:MODE",
            "HorizontalModelRecordLength": "HOR:MODE:RECO",
            "HorizontalModelSampleRate": "HOR:MODE:SAMPLER",
            "HorizontalModelScale": "HORIZONTAL:MODE:SCALE",
            "DigitalFineScanPosition": "HOR:DIG:MAG:POS",
        }.items():
            with self.subTest(member):
                self.assertEqual(templates[f"get_{member}"][0], f"{path}?")
                self.assertEqual(templates[f"put_{member}"][0].split(" ")[0], path)
        for member, query in {"Divisions": "HORIZONTAL:DIVISIONS?",
                              "DigitalRecordLength": "HOR:DIG:RECO?",
                              "DigitalSampleRate": "HOR:DIG:SAMPLER?"}.items():
            with self.subTest(member):
                self.assertEqual(templates[f"get_{member}"][0], query)
                self.assertNotIn(f"put_{member}", templates)

    def test_class_times(self) -> None:
        templates = self.templates("IIviScopeAcquisition")
        self.assertEqual(templates, {
            "put_StartTime": ("HORIZONTAL:DELAY:MODE ON;POSITION 0;TIME %0.15lg", ""),
            "get_TimePerRecord": ("HORIZONTAL:SCALE?", "%lg")})

    def test_channel_paths(self) -> None:
        templates = self.templates("IKestrionChannel")
        for member, path, access in [
            ("Bandwidth", "CH%d:BANDWIDTH", "rw"), ("BandwidthEnum", "CH%d:BANDWIDTH", "w"),
            ("Coupling", "CH%d:COUPLING", "rw"), ("Deskew", "CH%d:DESKEW", "rw"),
            ("DisplayState", "SELECT:CH%d", "rw"),
            ("ExternalAttenuation", "CH%d:PROBEFUNC:EXTATTEN", "rw"),
            ("ExternalAttenuationDB", "CH%d:PROBEFUNC:EXTDBATTEN", "rw"),
            ("LabelName", "CH%d:LABEL:NAME", "rw"), ("LabelPositionX", "CH%d:LABEL:XPOS", "rw"),
            ("LabelPositionY", "CH%d:LABEL:YPOS", "rw"), ("Offset", "CH%d:OFFSET", "rw"),
            ("Position", "CH%d:POSITION", "rw"), ("ProbeCalibration", "CH%d:PROBECAL", "r"),
            ("ProbeFunctionExternalUnits", "CH%d:PROBEFUNC:EXTUNITS", "rw"),
            ("ProbeGain", "CH%d:PROBE:GAIN", "r"),
            ("ProbeResistance", "CH%d:PROBE:RESISTANCE", "r"),
            ("ProbeSerialNumber", "CH%d:PROBE:ID:SERNUMBER", "r"),
            ("ProbeType", "CH%d:PROBE:ID:TYPE", "r"), ("ProbeUnits", "CH%d:PROBE:UNITS", "r"),
            ("VerticalScale", "CH%d:SCALE", "rw"), ("Termination", "CH%d:TERMINATION", "rw"),
            ("WaveLength", "WLENGTH:VALUE", "rw"),
            ("EnhancedBandwidth", "CH%d:BANDWIDTH:ENHANCED", "rw"),
            ("EnhancedBandwidthApplytoAll", "CH%d:BANDWIDTH:ENHANCED:APPLYTOALL", "rw"),
            ("ProbeSignal", "CH%d:PROBE:SIGNAL", "rw"), ("ProbeSet", "CH%d:PROBE:SET", "rw"),
            ("BandWidthEnhancedState", "CH%d:BANDWIDTH:ENHANCED:STATE", "r"),
            ("ProbeControl", "CH%d:PROBECONTROL", "rw"),
            ("MixCaptureState", "CH%d:ICAP:STATE", "rw"),
        ]:
            with self.subTest(member):
                reads = [templates[f"get_{member}"][0]] if f"get_{member}" in templates else []
                self.assertEqual(reads, [f"{path}?"] if "r" in access else [])
                writes = [templates[f"put_{member}"][0].split(" ")[0]] \
                    if f"put_{member}" in templates else []
                self.assertEqual(writes, [path] if "w" in access else [])
        self.assertEqual(len(self.members("IKestrionChannel")), 29 + len([
            "Configure", "ConfigureLabel", "Read", "ReadProbeDetails", "ConfigureProbeInputMode",
            "ReadProbeInputMode"]))

    def test_every_hook(self) -> None:
        hooks: dict[str, list[str]] = {}
        for entry in self.entries.values():
            if (entry.has_hook and not entry.interface.startswith("IIviDriver")
                    and "Trigger" not in entry.interface):
                hooks.setdefault(entry.interface, []).append(entry.name)
        self.assertEqual(hooks, {
            "IDirectIo": ["QueryString", "WriteString", "get_Timeout", "put_Timeout",
                          "get_InstrumentFamily", "get_VisaLibrary", "get_VisaLibraryReason",
                          "get_ConfigurationStore", "get_ConfigurationStoreReason"],
            "IIviClassWrapper": ["AttachToExistingCSession", "get_NativeCHandle"],
            "IIviComponentIdentity": ["get_Description", "get_Identifier", "get_Revision",
                                      "get_Vendor"],
            "IIviScopeAcquisition": ["ConfigureRecord", "get_Interpolation", "put_Interpolation",
                                     "get_SampleMode", "get_StartTime", "get_TimePerRecord",
                                     "put_TimePerRecord", "get_Type"],
            "IIviScopeChannel": ["Configure", "get_Range", "put_Range"],
            "IIviScopeMeasurement": ["FetchWaveform", "FetchWaveformMeasurement",
                                     "FetchWaveformMinMax", "ReadWaveform",
                                     "ReadWaveformMeasurement", "ReadWaveformMinMax"],
            "IIviScopeMeasurements": ["Abort", "AutoSetup", "Initiate",
                                      "IsWaveformElementInvalid", "Status"],
            "IKestrionAcquisition": ["SetWfmDBMode", "put_Mode"],
            "IKestrionChannel": ["Configure", "Read", "put_BandwidthEnum", "put_WaveLength"],
            "IKestrionHorizontal": ["get_Duration"],
            "IKestrionMeasurement": ["Configure", "ReadValue"],
            "IKestrionMeasurementImmediate": ["Configure", "ReadValue", "ReadReferenceLevel",
                                              "put_Type"],
            "IKestrionMeasurements": ["put_Gating", "put_Method"],
            "IKestrionReferenceLevel": ["Read"],
            "IKestrionWaveformTransfer": [
                "FetchWaveform", "FetchWaveformDigitizedLevel", "FetchWaveformMinMax",
                "FetchWaveformStartStop", "FetchWaveformWithinCursor", "FetchWaveformWithinZoom",
                "FetchWaveformHighResolution", "ReadWaveform", "ReadWaveformMinMax",
                "GetPixmapWaveformData", "GetPixmapWaveformDataEx", "FetchDigitalAllWaveform",
                "FetchDigitalWaveform", "CopyWaveformToClipboard", "IsWaveformElementInvalid",
                "SaveWaveformToFile", "WriteWaveformToReference"],
        })

    def test_every_hook_of_the_trigger(self) -> None:
        hooks: dict[str, list[str]] = {}
        for entry in self.entries.values():
            if entry.has_hook and "Trigger" in entry.interface:
                hooks.setdefault(entry.interface, []).append(entry.name)
        others = [f"{access}_Ch{channel}{what}" for what in ("Input", "Threshold")
                  for channel in "AB" for access in ("get", "put")]
        runt = ["ConfigureLogicCondition", *others]
        window = ["Configure", "ConfigureLogicCondition", *others]
        pattern = ["Configure", "Read", "get_ChannelLogic", "put_ChannelLogic"]
        state = ["get_ChannelLogic", "put_ChannelLogic", "get_ClockEdge", "put_ClockEdge"]
        self.assertEqual(hooks, {
            "IIviScopeTrigger": ["Configure", "get_Modifier", "put_Modifier", "get_Type",
                                 "put_Type"],
            "IIviScopeTriggerAcLine": ["get_Slope", "put_Slope"],
            "IIviScopeTriggerTv": ["Configure", "get_Event", "put_Event", "get_LineNumber",
                                   "put_LineNumber", "get_Polarity", "put_Polarity",
                                   "get_SignalFormat", "put_SignalFormat"],
            "IIviScopeTriggerWidth": ["Configure", "put_Polarity"],
            "IKestrionTrigger": ["get_Type", "put_Type"],
            "IKestrionTriggerAEdge": ["Configure", "put_Slope", "put_Source"],
            "IKestrionTriggerBEdge": ["Configure", "put_Slope"],
            "IKestrionTriggerRunt": runt, "IKestrionTriggerBRunt": runt,
            "IKestrionTriggerWindow": window, "IKestrionTriggerBWindow": window,
            "IKestrionTriggerPattern": pattern, "IKestrionTriggerBPattern": pattern,
            "IKestrionTriggerState": state, "IKestrionTriggerBState": state,
            "IKestrionTriggerCommunication": ["Configure", "put_Standard"],
            "IKestrionTriggerSerial": ["Configure", "put_Standard"],
        })

    def test_events_a_and_b_are_alike_but_for_a_letter(self) -> None:
        for part in ("Glitch", "Pattern", "Runt", "Setuphold", "State", "Timeout", "Transition",
                     "Width", "Window"):
            a, b = f"IKestrionTrigger{part}", f"IKestrionTriggerB{part}"
            with self.subTest(part):
                self.assertEqual(self.members(a), self.members(b))
                moved = {name: (command.replace("TRIGGER:A", "TRIGGER:B"), reply)
                         for name, (command, reply) in self.templates(a).items()}
                self.assertEqual(moved, self.templates(b))


class Tokens(RealModel):
    def test_run_stop_and_single_sequence_see_one_setting_from_both_sides(self) -> None:
        self.assertEqual(self.tokens("VARIANT_BOOL", "IKestrionAcquisition.RunStop"),
                         [(1, ["RUNSTOP"]), (-1, ["RUNSTOP"]), (0, ["SEQUENCE"])])
        self.assertEqual(self.tokens("VARIANT_BOOL", "IKestrionAcquisition.SingleSequence"),
                         [(1, ["SEQUENCE"]), (-1, ["SEQUENCE"]), (0, ["RUNSTOP"])])

    def test_boolean_rows_stand_in_the_order_1_minus_1_0(self) -> None:
        boolean = self.model.enums[0]
        self.assertEqual(boolean.name, "VARIANT_BOOL")
        for table in boolean.tables:
            self.assertEqual([value for value, _ in table.rows], [1, -1, 0])
            self.assertEqual(table.rows[0][1], table.rows[1][1])

    def test_telling_tables(self) -> None:
        for enum, key, rows in [
            ("KestrionAcquisitionModeEnum", "IKestrionAcquisition.Mode",
             [(0, ["SAMPLE"]), (1, ["PEAKDETECT"]), (2, ["HIRES"]), (3, ["ENVELOPE"]),
              (4, ["AVERAGE"]), (5, ["WFMDB"])]),
            ("KestrionChannelCouplingEnum", "IKestrionChannel.Coupling",
             [(0, ["AC"]), (1, ["DC"]), (2, ["GND"]), (3, ["DCREJECT"])]),
            ("KestrionChannelTerminationEnum", "IKestrionChannel.Termination",
             [(0, ["50.0000"]), (1, ["1.0000E+6"])]),
            ("KestrionChannelTerminationEnum", "IKestrionChannel.Configure",
             [(0, ["50"]), (1, ["1MEG"])]),
            ("KestrionChannelTerminationEnum", "IKestrionChannel.Read",
             [(0, ["50.0000"]), (1, ["1MEG"])]),
            ("VARIANT_BOOL", "IIviScopeChannel.Configure",
             [(1, ["1, ON"]), (-1, ["1, ON"]), (0, ["0, OFF"])]),
            ("KestrionMeasurementEdgeEnum", "IKestrionMeasurementImmediate.Read",
             [(0, ["FALL"]), (1, ["RISE"])]),
            ("KestrionChannelEnhancedBandwidthEnum", "IKestrionChannel.EnhancedBandwidth",
             [(0, ["OFF"]), (1, ["AUTO"])]),
            ("KestrionChannelEnhancedBandwidthEnum", "IKestrionChannel.BandWidthEnhancedState",
             [(0, ["0"]), (1, ["1"])]),
            ("KestrionChannelBandwidthEnum", "IKestrionChannel.BandwidthEnum",
             [(0, ["FULL"]), (1, ["ONEFIFTY"]), (2, ["TWOFIFTY"]), (3, ["TWENTY"]),
              (4, ["FIVE"])]),
            ("KestrionChannelCalibrationEnum", "IKestrionChannel.ProbeCalibration",
             [(0, ["INITIALIZED"]), (1, ["PASS"]), (2, ["FAIL"]), (3, ["RUNNING"])]),
            ("KestrionChannelWavelengthEnum", "IKestrionChannel.WaveLength",
             [(0, ["780", "780.0000"]), (1, ["850", "850.0000"]), (2, ["1310", "1.3100E+3"]),
              (3, ["1550", "1.5500E+3"])]),
            ("KestrionChannelMixCaptureStateEnum", "IKestrionChannel.MixCaptureState",
             [(0, ["OFF", "0"]), (1, ["ON", "1"])]),
            ("KestrionChannelProbeInputModeEnum", "IKestrionChannels.ReadAuxInProbeInputMode",
             [(0, ["A"]), (1, ["B"]), (2, ["COMMONMODE"]), (3, ["DIFFERENTIAL"])]),
            ("KestrionChannelProbeSignalEnum", "IKestrionChannel.ProbeSignal",
             [(0, ["BYPASS"]), (1, ["PASS"])]),
        ]:
            with self.subTest(key):
                self.assertEqual(self.tokens(enum, key), rows)

    def test_sources_of_waveforms(self) -> None:
        rows = self.tokens("KestrionSourceEnum", "IKestrionWaveformTransfer.FetchWaveform")
        self.assertEqual(rows, [
            (0, ["CH1"]), (1, ["CH2"]), (2, ["CH3"]), (3, ["CH4"]),
            (4, ["MATH1"]), (5, ["MATH2"]), (6, ["MATH3"]), (7, ["MATH4"]),
            (8, ["REF1"]), (9, ["REF2"]), (10, ["REF3"]), (11, ["REF4"]),
            (12, ["HISTOGRAM", "HIS"])])
        self.assertIs(rows,
                      self.tokens("KestrionSourceEnum", "IKestrionWaveformTransfer.ReadWaveform"))

    def test_class_enumerations_have_published_values_and_no_tokens(self) -> None:
        for name, values in {
            "IviScopeAcquisitionTypeEnum":
                {"Normal": 0, "PeakDetect": 1, "HiRes": 2, "Envelope": 3, "Average": 4},
            "IviScopeInterpolationEnum": {"None": 1, "SineX": 2, "Linear": 3},
            "IviScopeSampleModeEnum": {"RealTime": 0, "EquivalentTime": 1},
            "IviScopeAcquisitionStatusEnum": {"Complete": 1, "InProgress": 0, "Unknown": -1},
            "IviScopeTriggerCouplingEnum":
                {"AC": 0, "DC": 1, "HFReject": 3, "LFReject": 4, "NoiseReject": 5},
        }.items():
            with self.subTest(name):
                enum = next(e for e in self.model.enums if e.name == name)
                prefix = name.removesuffix("Enum")
                self.assertEqual({v.name.removeprefix(prefix): v.value for v in enum.values},
                                 values)
                self.assertEqual(enum.tables, [])
