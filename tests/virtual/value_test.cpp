#include "virtual/value.h"

#include <gtest/gtest.h>

namespace virtual_scope {
namespace {

ScpiError Parse(const Spec& spec, std::string_view parameter) {
    Value value;
    return ParseValue(spec, parameter, value);
}

std::string Echo(const Spec& spec, std::string_view parameter, bool verbose = true) {
    Value value;
    const ScpiError error = ParseValue(spec, parameter, value);
    return error == ScpiError::kNone ? FormatValue(spec, value, verbose)
                                     : std::string(ErrorText(error));
}

TEST(SettingValue, Flags) {
    const Flag flag;
    for (const char* text : {"ON", "on", "1", "+1", "2", "1.0", "-1"}) {
        EXPECT_EQ(Echo(flag, text), "1") << text;
    }
    for (const char* text : {"OFF", "Off", "0", "0.0", "0.4"}) {
        EXPECT_EQ(Echo(flag, text), "0") << text;
    }
    EXPECT_EQ(Parse(flag, "RUN"), ScpiError::kIllegalParameterValue);
    EXPECT_EQ(Parse(flag, "\"ON\""), ScpiError::kDataTypeError);
}

TEST(SettingValue, FlagsWithWordsOfTheirOwn) {
    const Flag flag = {.onWord = "RUN", .offWord = "STOP"};
    EXPECT_EQ(Echo(flag, "RUN"), "1");
    EXPECT_EQ(Echo(flag, "stop"), "0");
    EXPECT_EQ(Echo(flag, "ON"), "1");
}

TEST(SettingValue, Keywords) {
    const Keyword keyword = {"RUNSTop|SEQuence"};
    EXPECT_EQ(Echo(keyword, "SEQUENCE"), "SEQUENCE");
    EXPECT_EQ(Echo(keyword, "seq"), "SEQUENCE");
    EXPECT_EQ(Echo(keyword, "RUNST", false), "RUNST");
    EXPECT_EQ(Echo(keyword, "SEQUEN", false), "SEQ");
    EXPECT_EQ(Parse(keyword, "SEQUENCES"), ScpiError::kIllegalParameterValue);
    EXPECT_EQ(Parse(keyword, "SE"), ScpiError::kIllegalParameterValue);
    EXPECT_EQ(Parse(keyword, "1"), ScpiError::kDataTypeError);
}

TEST(SettingValue, Integers) {
    const Integer integer = {1000, 100'000'000, 10000};
    EXPECT_EQ(Echo(integer, "1000"), "1000");
    EXPECT_EQ(Echo(integer, "1e8"), "100000000");
    EXPECT_EQ(Echo(integer, "2000.6"), "2001");
    EXPECT_EQ(Parse(integer, "999"), ScpiError::kDataOutOfRange);
    EXPECT_EQ(Parse(integer, "100000001"), ScpiError::kDataOutOfRange);
    EXPECT_EQ(Parse(integer, "1e300"), ScpiError::kDataOutOfRange);
    EXPECT_EQ(Parse(integer, "MANY"), ScpiError::kIllegalParameterValue);
    EXPECT_EQ(Parse(integer, "'1000'"), ScpiError::kDataTypeError);
    EXPECT_EQ(Parse(integer, "#11a"), ScpiError::kDataTypeError);
}

TEST(SettingValue, Reals) {
    const Real real = {-1, 1, 0};
    EXPECT_EQ(Echo(real, "0.25"), "250.0000E-3");
    EXPECT_EQ(Echo(real, "-1"), "-1.0000");
    EXPECT_EQ(Parse(real, "1.0001"), ScpiError::kDataOutOfRange);
    EXPECT_EQ(Parse(real, "FULL"), ScpiError::kIllegalParameterValue);
}

TEST(SettingValue, RealsWithNames) {
    const Real bandwidth = {1e6, 1e12, 1e12, "FULl=1E12|TWEnty=20E6"};
    EXPECT_EQ(Echo(bandwidth, "TWE"), "20.0000E+6");
    EXPECT_EQ(Echo(bandwidth, "TWENTY"), "20.0000E+6");
    EXPECT_EQ(Echo(bandwidth, "30e6"), "30.0000E+6");
    EXPECT_EQ(Parse(bandwidth, "HALF"), ScpiError::kIllegalParameterValue);
    const Real termination = {50, 1e6, 50, "FIFty=50|MEG=1E6|1MEG=1E6", true};
    EXPECT_EQ(Echo(termination, "1MEG"), "1.0000E+6");
    EXPECT_EQ(Echo(termination, "50"), "50.0000");
    EXPECT_EQ(Parse(termination, "75"), ScpiError::kIllegalParameterValue);
    EXPECT_EQ(Parse(termination, "2e6"), ScpiError::kDataOutOfRange);
}

TEST(SettingValue, Texts) {
    const Text text = {"", 5};
    EXPECT_EQ(Echo(text, "\"abc\""), "\"abc\"");
    EXPECT_EQ(Echo(text, "'a\"b'"), "\"a\"\"b\"");
    EXPECT_EQ(Parse(text, "abc"), ScpiError::kDataTypeError);
    EXPECT_EQ(Parse(text, "'abcdef'"), ScpiError::kDataOutOfRange);
}

}  // namespace
}  // namespace virtual_scope
