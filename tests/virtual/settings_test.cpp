// Every line of the command table, against a list typed from the command set.
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "tests/virtual/bench.h"
#include "tests/virtual/entries.h"
#include "virtual/command_table.h"

namespace virtual_scope {
namespace {

const std::vector<Entry> kEntries = {
    {"*IDN?", "*IDN", "KESTRION,PL7254C,V000001,1.0.0", nullptr, nullptr},
    {"*RST", "*RST", nullptr, "", nullptr},
    {"*CLS", "*CLS", nullptr, "", nullptr},
    {"*OPC", "*OPC", "1", "", "1"},
    {"*WAI", "*WAI", nullptr, "", nullptr},
    {"*TRG", "*TRG", nullptr, "", nullptr},
    {"*ESE", "*ESE", "0", "60", "60"},
    {"*ESR?", "*ESR", "0", nullptr, nullptr},
    {"*SRE", "*SRE", "0", "48", "48"},
    {"*STB?", "*STB", "0", nullptr, nullptr},
    {"*TST?", "*TST", "0", nullptr, nullptr},
    {"*CAL?", "*CAL", "0", nullptr, nullptr},
    {"DESE", "DESE", "255", "1", "1"},
    {"SYSTem:ERRor[:NEXT]?", "SYSTEM:ERROR", "0,\"No error\"", nullptr, nullptr},
    {"HEADer", "HEADER", "0", "ON", ":HEADER 1"},
    {"VERBose", "VERBOSE", "1", "OFF", "0"},

    {"ACQuire:STATE", "ACQUIRE:STATE", "1", "STOP", "0"},
    {"ACQuire:STOPAfter", "ACQUIRE:STOPAFTER", "RUNSTOP", "SEQ", "SEQUENCE"},
    {"ACQuire:MODe", "ACQUIRE:MODE", "SAMPLE", "PEAK", "PEAKDETECT"},
    {"ACQuire:NUMAVg", "ACQUIRE:NUMAVG", "16", "10240", "10240"},
    {"ACQuire:NUMENv", "ACQUIRE:NUMENV", "10", "2000000000", "2000000000"},
    {"ACQuire:NUMACq?", "ACQUIRE:NUMACQ", "0", nullptr, nullptr},
    {"ACQuire:NUMSAMples", "ACQUIRE:NUMSAMPLES", "16000", "2147400000", "2147400000"},
    {"ACQuire:NUMFRAMESACQuired?", "ACQUIRE:NUMFRAMESACQUIRED", "0", nullptr, nullptr},
    {"ACQuire:SAMPLINGMode", "ACQUIRE:SAMPLINGMODE", "RT", "IT", "IT"},
    {"ACQuire:REPEt", "ACQUIRE:REPET", "0", "1", "1"},
    {"ACQuire:MAGnivu", "ACQUIRE:MAGNIVU", "0", "ON", "1"},
    {"ACQuire:ENHANCEDEnob", "ACQUIRE:ENHANCEDENOB", "OFF", "AUTO", "AUTO"},
    {"ACQuire:ENHANCEDEnob:STATE?", "ACQUIRE:ENHANCEDENOB:STATE", "0", nullptr, nullptr},
    {"AUTOSet", "AUTOSET", nullptr, "EXEC", nullptr},
    {"DENSEACQ:STATE", "DENSEACQ:STATE", "0", "1", "1"},

    {"HORizontal[:MAIn|:MODE]:SCAle", "HORIZONTAL:SCALE", "400.0000E-6", "2E-9", "2.0000E-9"},
    {"HORizontal[:MAIn|:MODE]:{RECOrdlength|RESOlution}", "HORIZONTAL:RECORDLENGTH", "10000",
     "100000000", "100000000"},
    {"HORizontal[:MAIn|:MODE]:SAMPLERate", "HORIZONTAL:MAIN:SAMPLERATE", "2.5000E+6", "5E6",
     "5.0000E+6"},
    {"HORizontal[:MAIn][:TRIGger]:POSition", "HORIZONTAL:TRIGGER:POSITION", "50.0000", "10",
     "10.0000"},
    {"HORizontal[:MAIn]:DELay:MODe", "HORIZONTAL:DELAY:MODE", "0", "ON", "1"},
    {"HORizontal[:MAIn]:DELay:TIMe", "HORIZONTAL:MAIN:DELAY:TIME", "0.0000", "-1E-3", "-1.0000E-3"},
    {"HORizontal[:MAIn]:DELay:POSition", "HORIZONTAL:DELAY:POSITION", "50.0000", "0", "0.0000"},
    {"HORizontal:MODE", "HORIZONTAL:MODE", "AUTO", "MANUAL", "MANUAL"},
    {"HORizontal:MODE:AUTO:LIMITrecordlen", "HORIZONTAL:MODE:AUTO:LIMIT", "100000000", "5000",
     "5000"},
    {"HORizontal:DIVisions?", "HORIZONTAL:DIVISIONS", "10", nullptr, nullptr},
    {"HORizontal[:MAIn]:UNIts[:STRing]", "HORIZONTAL:MAIN:UNITS:STRING", "\"s\"", "'ms'", "\"ms\""},
    {"HORizontal:ROLL", "HORIZONTAL:ROLL", "AUTO", "OFF", "OFF"},
    {"HORizontal:DIGital:RECOrdlength?", "HORIZONTAL:DIGITAL:RECORDLENGTH", "10000", nullptr,
     nullptr},
    {"HORizontal:DIGital:SAMPLERate?", "HORIZONTAL:DIGITAL:SAMPLERATE", "2.5000E+6", nullptr,
     nullptr},
    {"HORizontal:DIGital:MAGnivu:POSition", "HORIZONTAL:DIGITAL:MAGNIVU:POSITION", "50.0000", "25",
     "25.0000"},

    {"CH<x>:SCAle", "CH4:SCALE", "100.0000E-3", "2E-3", "2.0000E-3"},
    {"CH<x>:POSition", "CH2:POSITION", "0.0000", "-1.5", "-1.5000"},
    {"CH<x>:OFFSet", "CH3:OFFSET", "0.0000", "1.65", "1.6500"},
    {"CH<x>:COUPling", "CH1:COUPLING", "DC", "DCREJ", "DCREJECT"},
    {"CH<x>:DESKew", "CH1:DESKEW", "0.0000", "1E-9", "1.0000E-9"},
    {"CH<x>:TERmination", "CH1:TERMINATION", "50.0000", "1E6", "1.0000E+6"},
    {"CH<x>:BANdwidth", "CH1:BANDWIDTH", "2.5000E+9", "TWENTY", "20.0000E+6"},
    {"CH<x>:BANdwidth:ENHanced", "CH1:BANDWIDTH:ENHANCED", "OFF", "AUTO", "AUTO"},
    {"CH<x>:BANdwidth:ENHanced:STATE?", "CH1:BANDWIDTH:ENHANCED:STATE", "0", nullptr, nullptr},
    {"CH<x>:BANdwidth:ENHanced:APPLYTOAll", "CH1:BANDWIDTH:ENHANCED:APPLYTOALL", "0", "1", "1"},
    {"CH<x>:LABel:NAMe", "CH1:LABEL:NAME", "\"\"", "\"clock\"", "\"clock\""},
    {"CH<x>:LABel:XPOS", "CH1:LABEL:XPOS", "0.0000", "2.5", "2.5000"},
    {"CH<x>:LABel:YPOS", "CH1:LABEL:YPOS", "0.0000", "-3", "-3.0000"},
    {"CH<x>:PROBe:GAIN?", "CH1:PROBE:GAIN", "1.0000", nullptr, nullptr},
    {"CH<x>:PROBe:RESistance?", "CH1:PROBE:RESISTANCE", "1.0000E+6", nullptr, nullptr},
    {"CH<x>:PROBe:UNIts?", "CH1:PROBE:UNITS", "\"V\"", nullptr, nullptr},
    {"CH<x>:PROBe:ID:TYPe?", "CH1:PROBE:ID:TYPE", "\"No probe detected\"", nullptr, nullptr},
    {"CH<x>:PROBe:ID:SERnumber?", "CH1:PROBE:ID:SERNUMBER", "\"N/A\"", nullptr, nullptr},
    {"CH<x>:PROBe:SIGnal", "CH1:PROBE:SIGNAL", "PASS", "BYP", "BYPASS"},
    {"CH<x>:PROBe:SET", "CH1:PROBE:SET", "\"\"", "'range 5'", "\"range 5\""},
    {"CH<x>:PROBe:INPUTMode", "CH1:PROBE:INPUTMODE", "DIFFERENTIAL", "A", "A"},
    {"CH<x>:PROBe:INPUTMode:CMOFFSet", "CH1:PROBE:INPUTMODE:CMOFFS", "0.0000", "1", "1.0000"},
    {"CH<x>:PROBe:INPUTMode:DMOFFSet", "CH1:PROBE:INPUTMODE:DMOFFS", "0.0000", "2", "2.0000"},
    {"CH<x>:PROBe:INPUTMode:AOFFSet", "CH1:PROBE:INPUTMODE:AOFFS", "0.0000", "3", "3.0000"},
    {"CH<x>:PROBe:INPUTMode:BOFFSet", "CH1:PROBE:INPUTMODE:BOFFS", "0.0000", "4", "4.0000"},
    {"CH<x>:PROBEFunc:EXTAtten", "CH1:PROBEFUNC:EXTATTEN", "1.0000", "10", "10.0000"},
    {"CH<x>:PROBEFunc:EXTDBatten", "CH1:PROBEFUNC:EXTDBATTEN", "0.0000", "20", "20.0000"},
    {"CH<x>:PROBEFunc:EXTUnits", "CH1:PROBEFUNC:EXTUNITS", "\"V\"", "'A'", "\"A\""},
    {"CH<x>:PROBECal?", "CH1:PROBECAL", "INITIALIZED", nullptr, nullptr},
    {"CH<x>:PROBECOntrol", "CH1:PROBECONTROL", "AUTO", "MAN", "MANUAL"},
    {"CH<x>:ICAP:STATE", "CH1:ICAP:STATE", "0", "1", "1"},
    {"WLENgth:VALue", "WLENGTH:VALUE", "1.5500E+3", "850", "850.0000", "CR7404B"},
    {"AUXin:COUPling", "AUXIN:COUPLING", "DC", "AC", "AC"},
    {"AUXin:PROBe:SIGnal", "AUXIN:PROBE:SIGNAL", "PASS", "BYPASS", "BYPASS"},
    {"AUXin:PROBe:SET", "AUXIN:PROBE:SET", "\"\"", "'x'", "\"x\""},
    {"AUXin:PROBe:INPUTMode", "AUXIN:PROBE:INPUTMODE", "DIFFERENTIAL", "COM", "COMMONMODE"},
    {"AUXin:PROBe:INPUTMode:CMOFFSet", "AUXIN:PROBE:INPUTMODE:CMOFFS", "0.0000", "1", "1.0000"},
    {"AUXin:PROBe:INPUTMode:DMOFFSet", "AUXIN:PROBE:INPUTMODE:DMOFFS", "0.0000", "2", "2.0000"},
    {"AUXin:PROBe:INPUTMode:AOFFSet", "AUXIN:PROBE:INPUTMODE:AOFFS", "0.0000", "3", "3.0000"},
    {"AUXin:PROBe:INPUTMode:BOFFSet", "AUXIN:PROBE:INPUTMODE:BOFFS", "0.0000", "4", "4.0000"},
    {"D<x>:POSition", "D0:POSITION", "0.0000", "2", "2.0000"},
    {"D<x>:LABel", "D15:LABEL", "\"\"", "'cs'", "\"cs\""},
    {"D<x>:THREshold", "D7:THRESHOLD", "1.4000", "0.9", "900.0000E-3"},
    {"SELect:CH<x>", "SELECT:CH1", "1", "OFF", "0"},
    {"SELect:MATH<x>", "SELECT:MATH4", "0", "1", "1"},
    {"SELect:REF<x>", "SELECT:REF2", "0", "1", "1"},
    {"SELect:D<x>", "SELECT:D9", "0", "1", "1"},

    {"DATa:SOUrce", "DATA:SOURCE", "CH1", "MATH2", "MATH2"},
    {"DATa:DESTination", "DATA:DESTINATION", "REF1", "REF3", "REF3"},
    {"DATa:STARt", "DATA:START", "1", "500", "500"},
    {"DATa:STOP", "DATA:STOP", "10000", "800000000", "800000000"},
    {"DATa:ENCdg", "DATA:ENCDG", "RIBINARY", "SRP", "SRPBINARY"},
    {"WFMOutpre:ENCdg", "WFMOUTPRE:ENCDG", "BINARY", "ASC", "ASCII"},
    {"WFMOutpre:BN_Fmt", "WFMOUTPRE:BN_FMT", "RI", "RP", "RP"},
    {"WFMOutpre:BYT_Or", "WFMOUTPRE:BYT_OR", "MSB", "LSB", "LSB"},
    {"WFMOutpre:BYT_Nr", "WFMOUTPRE:BYT_NR", "1", "2", "2"},
    {"WFMOutpre:NR_Pt?", "WFMOUTPRE:NR_PT", "10000", nullptr, nullptr},
    {"WFMOutpre:PT_Fmt?", "WFMOUTPRE:PT_FMT", "Y", nullptr, nullptr},
    {"WFMOutpre:PT_Off?", "WFMOUTPRE:PT_OFF", "5000", nullptr, nullptr},
    {"WFMOutpre:XINcr?", "WFMOUTPRE:XINCR", "400.0000E-9", nullptr, nullptr},
    {"WFMOutpre:XZEro?", "WFMOUTPRE:XZERO", "0.0000", nullptr, nullptr},
    {"WFMOutpre:XUNit?", "WFMOUTPRE:XUNIT", "\"s\"", nullptr, nullptr},
    {"WFMOutpre:YMUlt?", "WFMOUTPRE:YMULT", "20.0000E-3", nullptr, nullptr},
    {"WFMOutpre:YOFf?", "WFMOUTPRE:YOFF", "0.0000", nullptr, nullptr},
    {"WFMOutpre:YZEro?", "WFMOUTPRE:YZERO", "0.0000", nullptr, nullptr},
    {"WFMOutpre:YUNit?", "WFMOUTPRE:YUNIT", "\"V\"", nullptr, nullptr},
    {"WFMOutpre:WFId?", "WFMOUTPRE:WFID", "\"CH1, 4.0000E-3 s, 10000 points\"", nullptr, nullptr},
    {"WFMInpre:ENCdg", "WFMINPRE:ENCDG", "BINARY", "ASCII", "ASCII"},
    {"WFMInpre:BN_Fmt", "WFMINPRE:BN_FMT", "RI", "FP", "FP"},
    {"WFMInpre:BYT_Or", "WFMINPRE:BYT_OR", "MSB", "LSB", "LSB"},
    {"WFMInpre:BYT_Nr", "WFMINPRE:BYT_NR", "1", "4", "4"},
    {"WFMInpre:NR_Pt", "WFMINPRE:NR_PT", "1000", "250", "250"},
    {"WFMInpre:PT_Fmt", "WFMINPRE:PT_FMT", "Y", "ENV", "ENV"},
    {"WFMInpre:PT_Off", "WFMINPRE:PT_OFF", "0", "-5", "-5"},
    {"WFMInpre:XINcr", "WFMINPRE:XINCR", "4.0000E-6", "1E-9", "1.0000E-9"},
    {"WFMInpre:XZEro", "WFMINPRE:XZERO", "0.0000", "-2E-3", "-2.0000E-3"},
    {"WFMInpre:XUNit", "WFMINPRE:XUNIT", "\"s\"", "'Hz'", "\"Hz\""},
    {"WFMInpre:YMUlt", "WFMINPRE:YMULT", "1.0000", "0.02", "20.0000E-3"},
    {"WFMInpre:YOFf", "WFMINPRE:YOFF", "0.0000", "10", "10.0000"},
    {"WFMInpre:YZEro", "WFMINPRE:YZERO", "0.0000", "0.5", "500.0000E-3"},
    {"WFMInpre:YUNit", "WFMINPRE:YUNIT", "\"V\"", "'A'", "\"A\""},
    // A quarter of the sine's period after the trigger: 50 levels, which is the digit 2.
    {"CURVe", "DATA:START 5626;STOP 5626;:CURVE", "#112", "#11a", "#112"},

    {"MATH<x>:DEFine", "MATH2:DEFINE", "\"CH1+CH2\"", "'2*MATH1'", "\"2*MATH1\""},

    {"DISplay:FILTer", "DISPLAY:FILTER", "SINX", "LINEA", "LINEAR"},
    {"ZOOm:MODe", "ZOOM:MODE", "0", "1", "1"},
    {"ZOOm:CH<x>:HORizontal:POSition", "ZOOM:CH2:HORIZONTAL:POSITION", "50.0000", "25", "25.0000"},
    {"ZOOm:CH<x>:HORizontal:SCAle", "ZOOM:CH2:HORIZONTAL:SCALE", "1.0000", "10", "10.0000"},
    {"ZOOm:MATH<x>:HORizontal:POSition", "ZOOM:MATH1:HORIZONTAL:POSITION", "50.0000", "1",
     "1.0000"},
    {"ZOOm:MATH<x>:HORizontal:SCAle", "ZOOM:MATH1:HORIZONTAL:SCALE", "1.0000", "2", "2.0000"},
    {"ZOOm:REF<x>:HORizontal:POSition", "ZOOM:REF4:HORIZONTAL:POSITION", "50.0000", "99",
     "99.0000"},
    {"ZOOm:REF<x>:HORizontal:SCAle", "ZOOM:REF4:HORIZONTAL:SCALE", "1.0000", "5", "5.0000"},
    {"CURSor:SOUrce", "CURSOR:SOURCE", "CH1", "REF2", "REF2"},
    {"CURSor:VBArs:POSition<x>", "CURSOR:VBARS:POSITION2", "0.0000", "1E-3", "1.0000E-3"},
};

std::vector<Entry> AllEntries() {
    std::vector<Entry> all = kEntries;
    for (const std::vector<Entry>& more : {TriggerEntries(), MeasurementEntries()}) {
        all.insert(all.end(), more.begin(), more.end());
    }
    return all;
}

class TableEntry : public testing::TestWithParam<Entry> {};

TEST_P(TableEntry, KeepsWhatIsSet) {
    const Entry& entry = GetParam();
    BareBench bench(entry.model);
    const std::string query = entry.header + "?";
    if (entry.initial != nullptr) {
        EXPECT_EQ(bench.Query(query), entry.initial) << entry.notation;
    }
    if (entry.value != nullptr) {
        bench.Write(entry.header + ' ' + entry.value);
        if (entry.answer != nullptr) {
            EXPECT_EQ(bench.Query(query), entry.answer) << entry.notation;
        }
    }
    EXPECT_EQ(bench.Error(), kNoError) << entry.notation;
}

INSTANTIATE_TEST_SUITE_P(All, TableEntry, testing::ValuesIn(AllEntries()));

TEST(CommandTable, EveryLineIsInTheListOfThisTest) {
    std::set<std::string> listed;
    for (const Entry& entry : AllEntries()) {
        EXPECT_TRUE(listed.insert(entry.notation).second) << entry.notation << " is listed twice";
    }
    std::set<std::string> rows;
    for (const CommandRow& row : TheCommandTable().rows) {
        rows.insert(row.notation);
    }
    EXPECT_EQ(rows, listed);
}

TEST(CommandTable, InstancesAreSettingsOfTheirOwn) {
    BareBench bench;
    bench.Write("CH1:DESKEW 1E-9;:CH4:DESKEW 2E-9;:SELECT:D0 1;D15 1");
    EXPECT_EQ(bench.Query("CH1:DESKEW?;:CH2:DESKEW?;:CH4:DESKEW?"), "1.0000E-9;0.0000;2.0000E-9");
    EXPECT_EQ(bench.Query("SELECT:D0?;D1?;D15?"), "1;0;1");
    EXPECT_EQ(bench.Query("CH1:SCALE?;:CH2:SCALE?;:CH3:SCALE?;:CH4:SCALE?"),
              "500.0000E-3;1.0000;1.0000;100.0000E-3");
}

TEST(Horizontal, RecordLengthKeepsTheScaleAndChangesTheRate) {
    BareBench bench;
    bench.Write("HORIZONTAL:RECORDLENGTH 1000000");
    EXPECT_EQ(bench.Query("HORIZONTAL:SCALE?;SAMPLERATE?;RESOLUTION?"),
              "400.0000E-6;250.0000E+6;1000000");
    EXPECT_EQ(bench.Query("WFMOUTPRE:XINCR?"), "4.0000E-9");
}

TEST(Horizontal, SampleRateKeepsTheRecordLengthAndChangesTheScale) {
    BareBench bench;
    bench.Write("HORIZONTAL:MODE:SAMPLERATE 1E9");
    EXPECT_EQ(bench.Query("HORIZONTAL:RECORDLENGTH?;SCALE?;MAIN:SCALE?"),
              "10000;1.0000E-6;1.0000E-6");
}

TEST(Horizontal, TheIntervalHasAllItsDigits) {
    BareBench bench;
    bench.Write("HORIZONTAL:RECORDLENGTH 30000");  // 4 ms / 30000
    EXPECT_EQ(bench.Query("WFMOUTPRE:XINCR?"), "133.33333333333334E-9");
}

TEST(Vertical, AttenuationInDecibelsIsTheSameSetting) {
    BareBench bench;
    bench.Write("CH1:PROBEFUNC:EXTDBATTEN 40");
    EXPECT_EQ(bench.Query("CH1:PROBEFUNC:EXTATTEN?"), "100.0000");
    bench.Write("CH1:PROBEFUNC:EXTATTEN 10");
    EXPECT_EQ(bench.Query("CH1:PROBEFUNC:EXTDBATTEN?"), "20.0000");
}

TEST(Vertical, NoBandwidthIsAboveThatOfTheModel) {
    BareBench bench("PL5034");
    EXPECT_EQ(bench.Query("CH1:BANDWIDTH?"), "350.0000E+6");
    EXPECT_EQ(bench.Query("CH1:BANDWIDTH FIVE;BANDWIDTH?"), "350.0000E+6");
    EXPECT_EQ(bench.Query("CH1:BANDWIDTH TWOFIFTY;BANDWIDTH?"), "250.0000E+6");
    EXPECT_EQ(bench.Query("CH1:BANDWIDTH 1.5E8;BANDWIDTH?"), "150.0000E+6");
}

TEST(Vertical, EnhancedBandwidthMayBeAppliedToAll) {
    BareBench bench;
    bench.Write("CH2:BANDWIDTH:ENHANCED AUTO;ENHANCED:APPLYTOALL ON");
    EXPECT_EQ(bench.Query("CH4:BANDWIDTH:ENHANCED?;ENHANCED:STATE?"), "AUTO;1");
}

TEST(Transfer, DataEncodingIsThreeSettingsInOne) {
    BareBench bench;
    const char* const query = "WFMOUTPRE:ENCDG?;BN_FMT?;BYT_OR?;:DATA:ENCDG?";
    bench.Write("DATA:ENCDG SFPBINARY");
    EXPECT_EQ(bench.Query(query), "BINARY;FP;LSB;SFPBINARY");
    bench.Write("DATA:ENCDG RPBINARY");
    EXPECT_EQ(bench.Query(query), "BINARY;RP;MSB;RPBINARY");
    bench.Write("DATA:ENCDG FASTEST");
    EXPECT_EQ(bench.Query(query), "BINARY;RI;MSB;RIBINARY");
    bench.Write("DATA:ENCDG ASCII");
    EXPECT_EQ(bench.Query(query), "ASCII;RI;MSB;ASCII");
    bench.Write("DATA:ENCDG SRIBINARY");
    EXPECT_EQ(bench.Query(query), "BINARY;RI;LSB;SRIBINARY");
}

}  // namespace
}  // namespace virtual_scope
