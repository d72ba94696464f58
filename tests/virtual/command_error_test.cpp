#include <gtest/gtest.h>

#include "tests/virtual/bench.h"

namespace virtual_scope {
namespace {

struct Refusal {
    const char* message;
    const char* error;
    const char* model = "PL7254C";
};

class Refused : public testing::TestWithParam<Refusal> {};

TEST_P(Refused, GoesToTheErrorQueue) {
    BareBench bench(GetParam().model);
    EXPECT_EQ(bench.Query(GetParam().message), "(nothing)") << GetParam().message;
    EXPECT_EQ(bench.Error(), GetParam().error) << GetParam().message;
    EXPECT_EQ(bench.Error(), kNoError) << GetParam().message;
}

constexpr const char* kUndefined = "-113,\"Undefined header\"";
constexpr const char* kRange = "-222,\"Data out of range\"";
constexpr const char* kIllegal = "-224,\"Illegal parameter value\"";
constexpr const char* kConflict = "-221,\"Settings conflict\"";
constexpr const char* kMissingHardware = "-241,\"Hardware missing\"";

INSTANTIATE_TEST_SUITE_P(
    CommandErrors, Refused,
    testing::Values(Refusal{"NOSUCH 1", kUndefined}, Refusal{"ACQUIRE:NOSUCH?", kUndefined},
                    Refusal{"ACQUIRE?", kUndefined}, Refusal{"*XYZ", kUndefined},
                    Refusal{"ACQUIRE:NUMACQ 1", kUndefined}, Refusal{"AUTOSET?", kUndefined},
                    Refusal{"*RST?", kUndefined}, Refusal{"*IDN", kUndefined},
                    Refusal{"CURVE", "-109,\"Missing parameter\""},
                    Refusal{"CURVE? 1", "-108,\"Parameter not allowed\""},
                    Refusal{"CH5:SCALE 1", "-114,\"Header suffix out of range\""},
                    Refusal{"CH1:SCALE", "-109,\"Missing parameter\""},
                    Refusal{"CH1:SCALE 1,2", "-108,\"Parameter not allowed\""},
                    Refusal{"CH1:SCALE? 1", "-108,\"Parameter not allowed\""},
                    Refusal{"*RST 1", "-108,\"Parameter not allowed\""},
                    Refusal{"CH1:SCALE '1'", "-104,\"Data type error\""},
                    Refusal{"CH1:COUPLING 1", "-104,\"Data type error\""},
                    Refusal{"CH1:LABEL:NAME abc", "-104,\"Data type error\""},
                    Refusal{"CH1:LABEL:NAME 'abc", "-151,\"Invalid string data\""},
                    Refusal{"CH1::SCALE 1", "-102,\"Syntax error\""},
                    Refusal{"CH1:SCALE=1", "-103,\"Invalid separator\""},
                    Refusal{"%", "-101,\"Invalid character\""}));

INSTANTIATE_TEST_SUITE_P(
    ExecutionErrors, Refused,
    testing::Values(Refusal{"CH1:SCALE 100", kRange},
                    Refusal{"HORIZONTAL:RECORDLENGTH 999", kRange},
                    Refusal{"HORIZONTAL:RECORDLENGTH 100000001", kRange},
                    Refusal{"HORIZONTAL:SAMPLERATE 1e17", kRange}, Refusal{"*ESE 256", kRange},
                    Refusal{"*SRE -1", kRange}, Refusal{"DATA:START 0", kRange},
                    Refusal{"WFMOUTPRE:BYT_NR 8", kRange}, Refusal{"WFMOUTPRE:BYT_NR 3", kIllegal},
                    Refusal{"CH1:TERMINATION 75", kIllegal}, Refusal{"ACQUIRE:MODE SLOW", kIllegal},
                    Refusal{"DATA:SOURCE CH5", kIllegal}, Refusal{"ACQUIRE:STATE MAYBE", kIllegal},
                    Refusal{"DATA:SOURCE CH2;:CURVE?", kConflict},
                    Refusal{"DATA:SOURCE MATH1;:CURVE?", kConflict},
                    Refusal{"DATA:SOURCE REF1;:CURVE?", kConflict}));

INSTANTIATE_TEST_SUITE_P(Families, Refused,
                         testing::Values(Refusal{"ACQUIRE:MODE WFMDB", kConflict, "HR5054B"},
                                         Refusal{"ACQUIRE:ENHANCEDENOB AUTO", kConflict, "LK7054"},
                                         Refusal{"ACQUIRE:ENHANCEDENOB:STATE?", kConflict,
                                                 "IB6404"},
                                         Refusal{"CH1:ICAP:STATE 1", kConflict, "CR7404B"},
                                         Refusal{"WLENGTH:VALUE 850", kConflict, "PL7254C"},
                                         Refusal{"WLENGTH:VALUE?", kConflict, "HR5104"}));

INSTANTIATE_TEST_SUITE_P(TwoChannels, Refused,
                         testing::Values(Refusal{"CH3:SCALE 1", kMissingHardware, "PL77002SX"},
                                         Refusal{"SELECT:CH4?", kMissingHardware, "HR5052BE"},
                                         Refusal{"SELECT:MATH3 1", kMissingHardware, "PL77002SX"},
                                         Refusal{"SELECT:REF4?", kMissingHardware, "PL77002SX"},
                                         Refusal{"DATA:SOURCE CH3", kMissingHardware, "PL77002SX"},
                                         Refusal{"DATA:SOURCE REF4", kMissingHardware,
                                                 "HR5052BE"}));

TEST(CommandError, ARefusedValueLeavesTheOldOne) {
    BareBench bench;
    bench.Write("CH1:SCALE 0.1");
    bench.Write("CH1:SCALE 100");
    EXPECT_EQ(bench.Query("CH1:SCALE?"), "100.0000E-3");
}

TEST(CommandError, FamiliesThatHaveTheSettingTakeIt) {
    BareBench heron("HR5104");
    EXPECT_EQ(heron.Query("ACQUIRE:MODE WFMDB;MODE?"), "WFMDB");
    BareBench merlin("MR5104B");
    EXPECT_EQ(merlin.Query("ACQUIRE:ENHANCEDENOB AUTO;ENHANCEDENOB:STATE?"), "1");
    BareBench crake("CR7404B");
    EXPECT_EQ(crake.Query("WLENGTH:VALUE 850;VALUE?"), "850.0000");
    BareBench twoChannels("PL77002SX");
    EXPECT_EQ(twoChannels.Query("CH2:SCALE?;:SELECT:D3?"), "1.0000;0");
}

TEST(CommandError, TheQueueHoldsThirtyTwoAndTellsOfMore) {
    BareBench bench;
    for (int i = 0; i < 40; ++i) {
        bench.Write("NOSUCH");
    }
    for (int i = 0; i < 31; ++i) {
        EXPECT_EQ(bench.Error(), kUndefined) << i;
    }
    EXPECT_EQ(bench.Error(), "-350,\"Queue overflow\"");
    EXPECT_EQ(bench.Error(), kNoError);
}

TEST(CommandError, AFullQueueIsNoOverflow) {
    BareBench bench;
    for (int i = 0; i < 32; ++i) {
        bench.Write("NOSUCH");
    }
    for (int i = 0; i < 32; ++i) {
        EXPECT_EQ(bench.Error(), kUndefined) << i;
    }
    EXPECT_EQ(bench.Error(), kNoError);
}

}  // namespace
}  // namespace virtual_scope
