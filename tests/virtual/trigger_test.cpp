#include <gtest/gtest.h>

#include "tests/virtual/bench.h"

namespace virtual_scope {
namespace {

using std::chrono::milliseconds;

constexpr const char* kConflict = "-221,\"Settings conflict\"";

// What a program writes to set a trigger up, and reads to see how it is set up.
struct Line {
    const char* name;
    const char* command;
    const char* query;
    const char* answer;
    const char* model = "PL7254C";
};

const Line kLines[] = {
    {"AEdge", "TRIGGER:A:TYPE EDGE;LEVEL 0.25;EDGE:SOURCE CH2;SLOPE FALL;COUPLING LFREJ",
     "TRIGGER:A:TYPE?;LEVEL?;EDGE:SOURCE?;SLOPE?;COUPLING?", "EDGE;250.0000E-3;CH2;FALL;LFREJ"},
    {"BEdge", "TRIGGER:B:LEVEL 0.5;EDGE:SOURCE CH3;SLOPE FALL;COUPLING AC",
     "TRIGGER:B:LEVEL?;EDGE:SOURCE?;SLOPE?;COUPLING?", "500.0000E-3;CH3;FALL;AC"},
    {"AThenBAfterEvents",
     "TRIGGER:A:HOLDOFF:BY TIME;TIME 1E-3;:TRIGGER:B:STATE 1;BY EVENTS;EVENTS:COUNT 7",
     "TRIGGER:A:HOLDOFF:BY?;TIME?;ACTUAL?;:TRIGGER:B:STATE?;BY?;EVENTS:COUNT?",
     "TIME;1.0000E-3;1.0000E-3;1;EVENTS;7"},
    {"AThenBAfterTime", "TRIGGER:A:HOLDOFF:BY DEFAULT;TIME 1E-3;:TRIGGER:B:STATE 1;BY TIME;TIME 2",
     "TRIGGER:A:HOLDOFF:BY?;:TRIGGER:B:BY?;TIME?", "DEFAULT;TIME;2.0000"},
    {"Communication",
     "TRIGGER:A:LEVEL 0.1;TYPE COMMUNICATION;COMMUNICATION:SOURCE CH2;SOURCE:TYPE CLOCK;"
     ":TRIGGER:A:COMMUNICATION:STANDARD OC3;CLOCK:POLARITY FALL",
     "TRIGGER:A:LEVEL?;COMMUNICATION:SOURCE?;SOURCE:TYPE?;:TRIGGER:A:COMMUNICATION:STANDARD?;"
     "CLOCK:POLARITY?",
     "100.0000E-3;CH2;CLOCK;OC3;FALL"},
    {"CommunicationCode",
     "TRIGGER:A:COMMUNICATION:CODE CMI;CMI:PULSEFORM ZERO;THRESHOLD:HIGH 1;LOW -1",
     "TRIGGER:A:COMMUNICATION:CODE?;CMI:PULSEFORM?;THRESHOLD:HIGH?;LOW?",
     "CMI;ZERO;1.0000;-1.0000"},
    {"Glitch",
     "TRIGGER:A:TYPE PULSE;PULSE:CLASS GLITCH;:TRIGGER:A:LEVEL 1;PULSE:SOURCE CH2;"
     "GLITCH:POLARITY EITHER;TRIGIF REJECT;WIDTH 1E-8",
     "TRIGGER:A:LEVEL?;PULSE:SOURCE?;GLITCH:POLARITY?;TRIGIF?;WIDTH?",
     "1.0000;CH2;EITHER;REJECT;10.0000E-9"},
    {"PatternOfTwoChannels",
     "TRIGGER:A:TYPE LOGIC;LOGIC:CLASS PATTERN;INPUT:CH1 HIGH;:TRIGGER:A:LOGIC:PATTERN:INPUT:CH2 "
     "LOW;:TRIGGER:A:LOGIC:THRESHOLD:CH1 1;CH2 2;:TRIGGER:A:LOGIC:FUNCTION OR;PATTERN:WHEN "
     "MORETHAN;WHEN:MORETHAN 1E-6",
     "TRIGGER:A:LOGIC:INPUT:CH1?;:TRIGGER:A:LOGIC:PATTERN:INPUT:CH2?;"
     ":TRIGGER:A:LOGIC:THRESHOLD:CH1?;CH2?;:TRIGGER:A:LOGIC:FUNCTION?;"
     ":TRIGGER:A:LOGIC:PATTERN:WHEN?",
     "HIGH;LOW;1.0000;2.0000;OR;MORETHAN", "HR5052BE"},
    {"PatternOfFourChannels",
     "TRIGGER:B:LOGIC:INPUT:CH1 LOW;CH3 HIGH;:TRIGGER:B:LOGIC:PATTERN:"
     "INPUT:CH4 LOW",
     "TRIGGER:B:LOGIC:INPUT:CH1?;CH2?;CH3?;:TRIGGER:B:LOGIC:PATTERN:INPUT:CH4?;", "LOW;X;HIGH;LOW",
     "LK7054"},
    {"Runt",
     "TRIGGER:A:TYPE PULSE;PULSE:CLASS RUNT;SOURCE CH3;RUNT:POLARITY NEGATIVE;WHEN WIDERTHAN;"
     "WIDTH 1E-8;THRESHOLD:LOW 0.5;HIGH 1.5",
     "TRIGGER:A:PULSE:SOURCE?;RUNT:POLARITY?;WHEN?;WIDTH?;THRESHOLD:LOW?;HIGH?",
     "CH3;NEGATIVE;WIDERTHAN;10.0000E-9;500.0000E-3;1.5000"},
    {"RuntByLogic",
     "TRIGGER:A:PULSE:RUNT:WHEN LOGIC;LOGIC:INPUT:CH1 HIGH;CH2 LOW;"
     ":TRIGGER:A:PULSE:RUNT:LOGIC:THRESHOLD:CH1 1;CH2 2",
     "TRIGGER:A:PULSE:RUNT:WHEN?;LOGIC:INPUT:CH1?;CH2?", "LOGIC;HIGH;LOW", "IB6404"},
    {"RuntByCommonLogic",
     "TRIGGER:A:PULSE:RUNT:QUALIFY LOGIC;:TRIGGER:A:LOGIC:INPUT:CH3 HIGH;CH4 LOW;"
     ":TRIGGER:A:LOGIC:THRESHOLD:CH3 1;CH4 2",
     "TRIGGER:A:PULSE:RUNT:QUALIFY?;:TRIGGER:A:LOGIC:INPUT:CH3?;CH4?", "LOGIC;HIGH;LOW"},
    {"Serial",
     "TRIGGER:A:TYPE SERIAL;SERIAL:SOURCE CH2;CODE S8B10B;STANDARD SATA1500;DATA:FORMAT HEX;"
     "PATTERN \"BC\"",
     "TRIGGER:A:SERIAL:SOURCE?;CODE?;STANDARD?;DATA:FORMAT?;PATTERN?",
     "CH2;S8B10B;SATA1500;HEX;\"BC\""},
    {"SerialClock", "TRIGGER:A:SERIAL:CLOCK:SOURCE RECOVERED;POLARITY FALL;LEVEL 0.5",
     "TRIGGER:A:SERIAL:CLOCK:SOURCE?;POLARITY?;LEVEL?", "RECOVERED;FALL;500.0000E-3"},
    {"SetUpAndHold",
     "TRIGGER:A:TYPE LOGIC;LOGIC:CLASS SETHOLD;SETHOLD:DATA:SOURCE CH3;THRESHOLD 1;"
     ":TRIGGER:A:LOGIC:SETHOLD:CLOCK:SOURCE CH4;THRESHOLD 2;EDGE FALL;"
     ":TRIGGER:A:LOGIC:SETHOLD:SETTIME 3E-9;HOLDTIME 4E-9",
     "TRIGGER:A:LOGIC:SETHOLD:DATA:SOURCE?;THRESHOLD?;:TRIGGER:A:LOGIC:SETHOLD:CLOCK:SOURCE?;"
     "THRESHOLD?;EDGE?;:TRIGGER:A:LOGIC:SETHOLD:SETTIME?;HOLDTIME?",
     "CH3;1.0000;CH4;2.0000;FALL;3.0000E-9;4.0000E-9"},
    {"State",
     "TRIGGER:A:TYPE LOGIC;LOGIC:CLASS STATE;INPUT:CH1 HIGH;CH2 LOW;CH3 X;"
     ":TRIGGER:A:LOGIC:STATE:INPUT:CH4 FALL;:TRIGGER:A:LOGIC:THRESHOLD:CH1 1;CH2 2;CH3 3;CH4 4;"
     ":TRIGGER:A:LOGIC:FUNCTION NOR;STATE:WHEN FALSE",
     "TRIGGER:A:LOGIC:INPUT:CH1?;CH2?;CH3?;:TRIGGER:A:LOGIC:STATE:INPUT:CH4?;"
     ":TRIGGER:A:LOGIC:THRESHOLD:CH1?;CH2?;CH3?;CH4?;:TRIGGER:A:LOGIC:FUNCTION?;"
     ":TRIGGER:A:LOGIC:STATE:WHEN?",
     "HIGH;LOW;X;FALL;1.0000;2.0000;3.0000;4.0000;NOR;FALSE", "HR5054B"},
    {"Timeout",
     "TRIGGER:A:LEVEL 1;TYPE PULSE;PULSE:CLASS TIMEOUT;SOURCE CH2;TIMEOUT:POLARITY EITHER;TIME 1",
     "TRIGGER:A:PULSE:SOURCE?;:TRIGGER:A:LEVEL?;:TRIGGER:A:PULSE:TIMEOUT:POLARITY?;TIME?",
     "CH2;1.0000;EITHER;1.0000"},
    {"Transition",
     "TRIGGER:A:TYPE PULSE;PULSE:CLASS TRANSITION;SOURCE CH4;TRANSITION:POLARITY NEGATIVE;WHEN "
     "SLOWERTHAN;DELTATIME 1E-6;THRESHOLD:LOW 1;HIGH 2",
     "TRIGGER:A:PULSE:SOURCE?;:TRIGGER:A:PULSE:TRANSITION:THRESHOLD:LOW?;HIGH?;"
     ":TRIGGER:A:PULSE:TRANSITION:POLARITY?;WHEN?;DELTATIME?",
     "CH4;1.0000;2.0000;NEGATIVE;SLOWERTHAN;1.0000E-6"},
    {"Video",
     "TRIGGER:A:TYPE VIDEO;VIDEO:SOURCE CH2;STANDARD PAL;POLARITY NEGATIVE;FIELD NUMERIC;LINE 17;"
     "HOLDOFF:FIELD 2",
     "TRIGGER:A:VIDEO:SOURCE?;STANDARD?;POLARITY?;FIELD?;HOLDOFF:FIELD?;:TRIGGER:A:VIDEO:LINE?",
     "CH2;PAL;NEGATIVE;NUMERIC;2.0000;17", "HR5104"},
    {"Width",
     "TRIGGER:A:LEVEL 1;TYPE PULSE;PULSE:CLASS WIDTH;SOURCE CH2;WIDTH:POLARITY NEGATIVE;WHEN "
     "OUTSIDE;LOWLIMIT 1E-9;HIGHLIMIT 2E-9",
     "TRIGGER:A:LEVEL?;PULSE:SOURCE?;WIDTH:POLARITY?;WHEN?;LOWLIMIT?;HIGHLIMIT?",
     "1.0000;CH2;NEGATIVE;OUTSIDE;1.0000E-9;2.0000E-9"},
    {"WidthLimits", "TRIGGER:A:PULSE:WIDTH:LOWLIMIT 3E-9; HIGHLIMIT 4E-9",
     "TRIGGER:A:PULSE:WIDTH:LOWLIMIT?;HIGHLIMIT?", "3.0000E-9;4.0000E-9"},
    {"Window",
     "TRIGGER:A:TYPE PULSE;PULSE:CLASS WINDOW;SOURCE CH1;WINDOW:TYPE OUTSIDE;WHEN WIDERTHAN;WIDTH "
     "1E-6;THRESHOLD:LOW 1;HIGH 2;",
     "TRIGGER:A:PULSE:SOURCE?;WINDOW:TYPE?;WHEN?;WIDTH?;THRESHOLD:LOW?;HIGH?",
     "CH1;OUTSIDE;WIDERTHAN;1.0000E-6;1.0000;2.0000", "LK7054"},
    {"QualifiedWindow",
     "TRIGGER:A:TYPE PULSE;PULSE:CLASS WINDOW;SOURCE CH1;WINDOW:TYPE OUTSIDE;QUALIFY LOGIC;WIDTH "
     "1E-6;THRESHOLD:LOW 1;HIGH 2;",
     "TRIGGER:A:PULSE:WINDOW:QUALIFY?;WIDTH?", "LOGIC;1.0000E-6", "LK7254B"},
};

class TriggerLine : public testing::TestWithParam<Line> {};

TEST_P(TriggerLine, IsReadAsItWasWritten) {
    BareBench bench(GetParam().model);
    bench.Write(GetParam().command);
    EXPECT_EQ(bench.Query(GetParam().query), GetParam().answer);
    EXPECT_EQ(bench.Error(), kNoError);
}

INSTANTIATE_TEST_SUITE_P(All, TriggerLine, testing::ValuesIn(kLines),
                         [](const auto& line) { return std::string(line.param.name); });

struct Refusal {
    const char* model;
    const char* command;
};

class TriggerRefusal : public testing::TestWithParam<Refusal> {};

TEST_P(TriggerRefusal, IsASettingThatTheFamilyLacks) {
    BareBench bench(GetParam().model);
    bench.Write(GetParam().command);
    EXPECT_EQ(bench.Error(), kConflict) << GetParam().model << ' ' << GetParam().command;
}

INSTANTIATE_TEST_SUITE_P(
    Families, TriggerRefusal,
    testing::Values(Refusal{"LK7054", "TRIGGER:A:LOGIC:INPUT:CH4 LOW"},
                    Refusal{"HR5052BE", "TRIGGER:A:LOGIC:INPUT:CH2?"},
                    Refusal{"LK7054", "TRIGGER:A:LOGIC:PATTERN:INPUT:CH3 LOW"},
                    Refusal{"CR7404B", "TRIGGER:A:PULSE:RUNT:QUALIFY LOGIC"},
                    Refusal{"LK7254B", "TRIGGER:A:PULSE:WINDOW:LOGIC:INPUT:CH1?"},
                    Refusal{"PL7254C", "TRIGGER:B:PULSE:RUNT:LOGIC:THRESHOLD:CH1 1"},
                    Refusal{"IB6404", "TRIGGER:A:EDGE:SLOPE EITHER"},
                    Refusal{"HR5104", "TRIGGER:B:EDGE:SLOPE EITHER"},
                    Refusal{"PL7254C", "TRIGGER:A:TYPE VIDEO"},
                    Refusal{"HR5054B", "TRIGGER:A:VIDEO:LINE 5"},
                    Refusal{"HR5104", "TRIGGER:A:TYPE SERIAL"},
                    Refusal{"HR5104", "TRIGGER:A:SERIAL:CODE?"}));

TEST(TriggerChannels, AMissingChannelIsRefused) {
    BareBench bench("PL77002SX");
    for (const char* command : {"TRIGGER:A:EDGE:SOURCE CH3", "TRIGGER:A:PULSE:SOURCE CH4",
                                "TRIGGER:A:LOGIC:INPUT:CH3 LOW", "TRIGGER:B:LEVEL:CH4 1"}) {
        bench.Write(command);
        EXPECT_EQ(bench.Error(), "-241,\"Hardware missing\"") << command;
    }
    // A digital channel of a like number is no analog one.
    bench.Write("TRIGGER:A:EDGE:SOURCE D4");
    EXPECT_EQ(bench.Error(), kNoError);
}

// A record of 1000 points of 4 us with the trigger at number 501; a level of CH1 is 20 mV.
class EdgeTriggerTest : public testing::Test {
  protected:
    EdgeTriggerTest() { bench_.Write("HORIZONTAL:RECORDLENGTH 1000;:SELECT:CH2 1;CH3 1"); }

    // The levels before, at and after the trigger.
    std::string AtTrigger() {
        return bench_.Query("DATA:START 500;STOP 502;:WFMOUTPRE:ENCDG ASCII;:CURVE?");
    }

    BareBench bench_;
};

TEST_F(EdgeTriggerTest, TimeZeroIsWhereTheSignalCrossesTheLevel) {
    EXPECT_EQ(AtTrigger(), "-1,0,1");
    // 0.5 V is 25 levels; 4 us are 1.44 degrees of a sine that is at 30 degrees.
    bench_.Write("TRIGGER:A:LEVEL 0.5");
    EXPECT_EQ(AtTrigger(), "24,25,26");
    bench_.Write("TRIGGER:A:EDGE:SLOPE FALL");
    EXPECT_EQ(AtTrigger(), "26,25,24");
    bench_.Write("TRIGGER:A:LEVEL -0.5");
    EXPECT_EQ(AtTrigger(), "-24,-25,-26");
    bench_.Write("TRIGGER:A:EDGE:SLOPE EITHER");
    EXPECT_EQ(AtTrigger(), "-26,-25,-24");
    EXPECT_EQ(bench_.Query("TRIGGER:STATE?;:WFMOUTPRE:XZERO?;PT_OFF?"), "TRIGGER;0.0000;500");
}

TEST_F(EdgeTriggerTest, TheSourceDecidesWhichSignalIsAligned) {
    // The square wave falls after half a period, where the sine is at 18 degrees: 15.45 levels.
    bench_.Write("TRIGGER:A:EDGE:SOURCE CH2;SLOPE FALL;:TRIGGER:A:LEVEL 1;:WFMOUTPRE:BN_FMT RI");
    EXPECT_EQ(AtTrigger(), "14,15,17");
    bench_.Write("DATA:SOURCE CH2;:CH2:SCALE 1.1");  // 75 levels for 3.3 V
    EXPECT_EQ(AtTrigger(), "75,0,0");
    // The text begins with a start bit after an idle line; the first bit of K is a one.
    bench_.Write("DATA:SOURCE CH3;:CH3:SCALE 1.1;:TRIGGER:A:EDGE:SOURCE CH3");
    EXPECT_EQ(AtTrigger(), "75,0,0");
    bench_.Write("TRIGGER:A:EDGE:SLOPE RISE");
    EXPECT_EQ(AtTrigger(), "0,75,75");
}

TEST_F(EdgeTriggerTest, CouplingMovesTheSignalPastTheLevel) {
    bench_.Write("TRIGGER:A:EDGE:SOURCE CH2;:TRIGGER:A:LEVEL 2;:DATA:SOURCE CH2");
    EXPECT_EQ(bench_.Query("TRIGGER:STATE?"), "TRIGGER");
    bench_.Write("CH2:COUPLING AC");  // 1.65 V to either side
    EXPECT_EQ(bench_.Query("TRIGGER:STATE?"), "AUTO");
}

TEST_F(EdgeTriggerTest, WithoutACrossingEachRecordBeginsElsewhere) {
    bench_.Write("TRIGGER:A:LEVEL 1.5");
    const std::string first = AtTrigger();
    EXPECT_EQ(AtTrigger(), first);
    bench_.Advance(milliseconds(5));
    EXPECT_NE(AtTrigger(), first);
    EXPECT_EQ(bench_.Query("TRIGGER:STATE?"), "AUTO");
}

TEST_F(EdgeTriggerTest, SetLevelIsTheMiddleOfTheSource) {
    bench_.Write("TRIGGER:A:LEVEL 0.9");
    bench_.Write("TRIGGER:A SETLEVEL");
    EXPECT_EQ(bench_.Query("TRIGGER:A:LEVEL?"), "0.0000");
    bench_.Write("TRIGGER:A:EDGE:SOURCE CH2;:TRIGGER:A SETLEVEL");
    EXPECT_EQ(bench_.Query("TRIGGER:A:LEVEL?"), "1.6500");
}

TEST_F(EdgeTriggerTest, NormalModeWaitsForATriggerUntilOneIsForced) {
    bench_.Write("ACQUIRE:STOPAFTER SEQUENCE;:TRIGGER:A:MODE NORMAL;LEVEL 3;:ACQUIRE:STATE 1;*OPC");
    bench_.Advance(std::chrono::hours(1));
    EXPECT_EQ(bench_.Query("ACQUIRE:STATE?;NUMACQ?;:TRIGGER:STATE?;*ESR?"), "1;0;READY;0");
    EXPECT_EQ(bench_.link().NextEvent(), std::nullopt);
    bench_.Write("TRIGGER FORCE");
    EXPECT_EQ(bench_.Query("ACQUIRE:STATE?;NUMACQ?;:TRIGGER:STATE?;*ESR?"), "0;1;SAVE;1");
}

TEST_F(EdgeTriggerTest, AContinuousAcquisitionThatWaitsGetsOneRecordForEachForcedTrigger) {
    bench_.Write("TRIGGER:A:MODE NORMAL;LEVEL 3");
    bench_.Advance(std::chrono::hours(1));
    EXPECT_EQ(bench_.Query("ACQUIRE:NUMACQ?"), "0");
    bench_.Write("TRIGGER FORCE;:TRIGGER FORCE");
    EXPECT_EQ(bench_.Query("ACQUIRE:STATE?;NUMACQ?;:TRIGGER:STATE?"), "1;2;READY");
    bench_.Write("TRIGGER:A:LEVEL 0");  // which the signal crosses
    bench_.Advance(milliseconds(5));
    EXPECT_EQ(bench_.Query("ACQUIRE:NUMACQ?;:TRIGGER:STATE?"), "1;TRIGGER");
}

TEST_F(EdgeTriggerTest, AForcedTriggerThatNothingWaitsForChangesNothing) {
    bench_.Advance(milliseconds(5));
    bench_.Write("TRIGGER FORCE");
    EXPECT_EQ(bench_.Query("ACQUIRE:STATE?;NUMACQ?"), "1;1");
    bench_.Write("ACQUIRE:STATE 0;:TRIGGER FORCE");
    EXPECT_EQ(bench_.Query("ACQUIRE:STATE?;NUMACQ?;:TRIGGER:STATE?"), "0;1;SAVE");
    EXPECT_EQ(bench_.Error(), kNoError);
}

TEST_F(EdgeTriggerTest, OtherTypesTriggerAtTheSignalsBeginning) {
    bench_.Write("TRIGGER:A:LEVEL 0.5;TYPE PULSE");
    EXPECT_EQ(AtTrigger(), "-1,0,1");
}

}  // namespace
}  // namespace virtual_scope
