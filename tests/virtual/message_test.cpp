// Program messages and their answers, as a controller sees them.
#include <gtest/gtest.h>

#include "tests/virtual/bench.h"

namespace virtual_scope {
namespace {

TEST(Message, PowerOnAnswersHaveLongHeaders) {
    Bench bench;
    EXPECT_EQ(bench.Query("HEADER?"), ":HEADER 1");
    EXPECT_EQ(bench.Query("VERBOSE?"), ":VERBOSE 1");
    EXPECT_EQ(bench.Query("ACQUIRE:STOPAFTER?"), ":ACQUIRE:STOPAFTER RUNSTOP");
    EXPECT_EQ(bench.Query("CH2:PROBE:ID:SERNUMBER?"), ":CH2:PROBE:ID:SERNUMBER \"N/A\"");
}

TEST(Message, VerboseOffShortensHeadersAndWords) {
    Bench bench;
    bench.Write("VERBOSE OFF");
    EXPECT_EQ(bench.Query("ACQUIRE:STOPAFTER?"), ":ACQ:STOPA RUNST");
    EXPECT_EQ(bench.Query("SELECT:CH1?"), ":SEL:CH1 1");
    EXPECT_EQ(bench.Query("VERBOSE?"), ":VERB 0");
}

TEST(Message, HeaderOffLeavesBareValues) {
    Bench bench;
    bench.Write("HEAD OFF;:VERBOSE 1");
    EXPECT_EQ(bench.Query("HEADER?"), "0");
    EXPECT_EQ(bench.Query("ACQUIRE:STOPAFTER?"), "RUNSTOP");
    bench.Write("VERBOSE 0");
    EXPECT_EQ(bench.Query("ACQUIRE:STOPAFTER?"), "RUNST");
}

TEST(Message, CommonQueriesNeverHaveAHeader) {
    Bench bench;
    EXPECT_EQ(bench.Query("*IDN?"), "KESTRION,PL7254C,V000001,1.0.0");
    EXPECT_EQ(bench.Query("*OPC?"), "1");
}

TEST(Message, EveryAnswerOfACompoundMessageHasItsWholeHeader) {
    Bench bench;
    EXPECT_EQ(bench.Query("DATA:START?;STOP?;*OPC?"), ":DATA:START 1;:DATA:STOP 10000;1");
}

TEST(Message, TheAnswerHasTheHeaderThatWasAskedWith) {
    Bench bench;
    EXPECT_EQ(bench.Query("HOR:MAI:SCA?"), ":HORIZONTAL:MAIN:SCALE 400.0000E-6");
    EXPECT_EQ(bench.Query("HOR:RESO?"), ":HORIZONTAL:RESOLUTION 10000");
}

TEST(Message, AnswersAreJoinedBySemicolonsAndEndOnce) {
    BareBench bench;
    EXPECT_EQ(bench.Query("DATA:SOURCE?;START?;:HEADER?;*OPC?"), "CH1;1;0;1");
    EXPECT_FALSE(bench.link().HasOutput());
}

TEST(Message, ThePathGoesOnAfterASemicolon) {
    BareBench bench;
    bench.Write("HORIZONTAL:DELAY:MODE ON;POSITION 0;TIME 1E-3");
    EXPECT_EQ(bench.Query("HORIZONTAL:DELAY:MODE?;POSITION?;TIME?"), "1;0.0000;1.0000E-3");
    EXPECT_EQ(bench.Query("HORIZONTAL:POSITION?"), "50.0000");
    EXPECT_EQ(bench.Error(), kNoError);
}

TEST(Message, ThePathGrowsWithDeeperHeaders) {
    BareBench bench;
    EXPECT_EQ(bench.Query("CH1:PROBE:GAIN?;UNITS?;ID:TYPE?;SERNUMBER?"),
              "1.0000;\"V\";\"No probe detected\";\"N/A\"");
    EXPECT_EQ(bench.Error(), kNoError);
}

TEST(Message, ThePathKeepsTheNumberOfTheChannel) {
    BareBench bench;
    bench.Write("CH2:SCALE 0.2;POSITION 1");
    EXPECT_EQ(bench.Query("CH2:SCALE?;POSITION?"), "200.0000E-3;1.0000");
    EXPECT_EQ(bench.Query("CH1:POSITION?"), "0.0000");
}

TEST(Message, CommonCommandsLeaveThePathAlone) {
    BareBench bench;
    bench.Write("DATA:START 5;*ESE 1;STOP 9");
    EXPECT_EQ(bench.Query("DATA:START?;*OPC?;STOP?"), "5;1;9");
}

TEST(Message, ALeadingColonBeginsAtTheRoot) {
    BareBench bench;
    EXPECT_EQ(bench.Query("DATA:START?;:ACQUIRE:STATE?"), "1;1");
    bench.Write("DATA:START 1;ACQUIRE:STATE 0");
    EXPECT_EQ(bench.Error(), "-113,\"Undefined header\"");
    EXPECT_EQ(bench.Query("ACQUIRE:STATE?"), "1");
}

TEST(Message, EachMessageBeginsAtTheRoot) {
    BareBench bench;
    bench.Write("DATA:START 7");
    bench.Write("STOP 9");
    EXPECT_EQ(bench.Error(), "-113,\"Undefined header\"");
    EXPECT_EQ(bench.Query("DATA:STOP?"), "10000");
}

TEST(Message, AnUnknownHeaderLeavesThePathAndTheRestOfTheMessage) {
    BareBench bench;
    EXPECT_EQ(bench.Query("DATA:START?;NOSUCH?;STOP?"), "1;10000");
    EXPECT_EQ(bench.Error(), "-113,\"Undefined header\"");
}

TEST(Message, AClosingSemicolonIsHarmless) {
    BareBench bench;
    EXPECT_EQ(
        bench.Query("CH1:POSITION?;SCALE?;OFFSET?;DESKEW?;COUPLING?;TERMINATION?;BANDWIDTH?;"),
        "0.0000;500.0000E-3;0.0000;0.0000;DC;50.0000;2.5000E+9");
    EXPECT_EQ(bench.Error(), kNoError);
}

TEST(Message, TheNoBreakSpaceIsABlank) {
    BareBench bench;
    bench.Write(
        "WFMOUTPRE:ENCD BIN;BN_FMT RI;BYT_NR\xA0"
        "2");
    EXPECT_EQ(bench.Query("WFMOUTPRE:BYT_NR?"), "2");
    EXPECT_EQ(bench.Error(), kNoError);
}

TEST(Message, SemicolonsInStringsAreText) {
    BareBench bench;
    bench.Write("CH1:LABEL:NAME 'a;:*RST;b';XPOS 2");
    EXPECT_EQ(bench.Query("CH1:LABEL:NAME?;XPOS?"), "\"a;:*RST;b\";2.0000");
}

// Every line here has to be taken without an error, in the wording that programs use.
class Wording : public testing::TestWithParam<const char*> {};

TEST_P(Wording, IsUnderstood) {
    Bench bench;
    bench.Write("*CLS");
    bench.Write(GetParam());
    while (bench.link().HasOutput()) {
        bench.Read();
    }
    EXPECT_EQ(bench.Error(), kNoError) << GetParam();
}

INSTANTIATE_TEST_SUITE_P(
    All, Wording,
    testing::Values(
        "HEAD OFF;:VERBOSE 1", "HEADER?", "SELECT:CH1?", "DATA:SOURCE?", "DATA:START 1;STOP 10000",
        "DATA:STOP 800000000", ":WFMOUTPRE:NR_PT?", "WFMOUTPRE:BYT_NR 1;BYT_NR?",
        "DATA:STOP 800000000;:WFMOUTPRE:NR_PT?", "WFMOUTPRE:ENCDG BIN;BN_FMT FP",
        ":WFMOUTPRE:BYT_OR LSB",
        "WFMOUTPRE:ENCD BIN;BN_FMT RI;BYT_NR\xA0"
        "1",
        "WFMOUTPRE:BN_FMT RI;BYT_OR MSB;ENCD BINARY;BYT_NR 1", "WFMOUTPRE:XINCR?",
        "WFMOUTPRE:XZERO?", "WFMOUTPRE:YMULT?", "WFMOUTPRE:YZERO?", "WFMOUTPRE:YOFF?",
        "WFMOUTPRE:PT_OFF?", "ACQUIRE:REPET 0;STATE 0", "ACQUIRE:STOPAFTER SEQUENCE;STATE ON",
        "DESE 1;*ESE 1;*SRE 32;*CLS", "ACQUIRE:STATE 1", ":ACQUIRE:STATE 1;*OPC",
        "HORIZONTAL:RECORDLENGTH?", "HORIZONTAL:MAIN:SAMPLERATE?",
        "HORIZONTAL:DELAY:MODE ON;POSITION 0;TIME 1e-05", "HORIZONTAL:DIVISION?;SCALE?",
        "HORIZONTAL:DIVISIONS?",
        "HOR:MODE:SAMPLER 2.5e+06;SCALE 0.0004;RECO 10000;AUTO:LIMIT 100000",
        "HOR:MODE:SAMPLER?;SCALE?;RECO?;AUTO:LIMIT?", "*RST;*OPC?", ":SYST:ERR?",
        "SYSTEM:ERROR:NEXT?", "*ESR?", "*TST?", "*CAL?", "*WAI", "*TRG", "*STB?", "AUTOSET EXECUTE",
        "ACQUIRE:MODE AVERAGE;NUMAVG 32", "ACQUIRE:MODE ENVELOPE;NUMENV 2000000000",
        "ACQUIRE:NUMACQ?", "ACQUIRE:NUMSAM 16000", "ACQUIRE:SAMPLINGMODE RT",
        "ACQUIRE:NUMFRAMESACQUIRED?", "ACQ:MAG 0", ":ACQ:ENHANCEDE OFF", ":ACQ:ENHANCEDE:STATE?",
        "DENSEACQ:STATE 0", "HORIZONTAL:POSITION 50;SCALE 0.0004;RECORDLENGTH 10000",
        "HORIZONTAL:MAIN:DELAY:MODE ON;TIME 0", "HORIZONTAL:MAIN:DELAY:POSITION 50",
        "HORIZONTAL:RESOLUTION 10000", "HORIZONTAL:ROLL AUTO", "HORIZONTAL:TRIGGER:POSITION 50",
        "HORIZONTAL:MAIN:UNITS:STRING \"s\"", "HOR:MODE AUTO", "HOR:DIG:MAG:POS 50",
        "HOR:DIG:RECO?", "HOR:DIG:SAMPLER?",
        "CH1:POSITION 0;SCALE 0.5;OFFSET 0;DESKEW 0;COUPLING DC;TERMINATION 1MEG;BANDWIDTH FULL;"
        ":SELECT:CH1 1",
        "CH1:LABEL:NAME \"in\";XPOS 0;YPOS 0",
        "CH1:PROBE:GAIN?;RESISTANCE?;UNITS?;ID:TYPE?;SERNUMBER?;:CH1:PROBEFUNC:EXTATTEN?;"
        "EXTDBATTEN?;:CH1:PROBECAL?;",
        "CH1:PROBE:INPUTMODE A;INPUTMODE:CMOFFS 0;DMOFFS 0;AOFFS 0;BOFFS 0",
        ":CH1:PROBE:INPUTM?;:CH1:PROBE:INPUTM:CMOFFS?;DMOFFS?;AOFFS?;BOFFS?",
        "AUXIN:PROBE:INPUTM?;INPUTM:CMOFFS?;DMOFFS?;AOFFS?;BOFFS?", "CH1:BANDWIDTH:ENHANCED AUTO",
        "CH1:BANDWIDTH:ENHANCED:STATE?", "CH1:BANDWIDTH:ENHANCED:APPLYTOALL 1",
        "CH1:PROBECONTROL AUTO", "CH1:PROBEFUNC:EXTUNITS \"V\"", "CH1:PROBE:SIGNAL PASS",
        "CH1:ICAP:STATE 0", "D0:POS 1", ":D0:LABEL 'clk'", "SELECT:D15 1", "D7:THRESH 1.4",
        "ZOOM:MODE 1", "ZOOM:MATH1:HORIZONTAL:POSITION?", "CURSOR:SOURCE CH1", "CURSOR:VBARS:POS1?",
        "CURSOR:VBARS:POSITION2 1E-3", "DATA:ENCDG SRIBINARY", "CURVE?",
        "WFMINPRE:BYT_OR LSB;ENCD BIN"));

}  // namespace
}  // namespace virtual_scope
