// Numbers on the wire at the limits of their types and in the forms that instruments use, with a
// decimal point and with a decimal comma in force.
#include <bit>
#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "tests/io/comma_locale.h"
#include "tests/io/session_fixture.h"

namespace kestrion {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr double kInfinity = std::numeric_limits<double>::infinity();

class SessionNumbersTest : public OpenSessionFixture, public testing::WithParamInterface<bool> {
  protected:
    SessionNumbersTest() {
        if (GetParam()) {
            comma_ = std::make_unique<CommaLocale>();
        }
    }

    // Reads with a format of one conversion; the value stays 77 if none is stored.
    template <typename T>
    std::pair<HRESULT, T> Read(const std::string& response, const char* format) {
        fake.Respond(response + "\n");
        T value = 77;
        const HRESULT status = session.Scanf(format, &value);
        (void)session.FlushRead();
        return {status, value};
    }
    template <typename T>
    void ExpectRead(const std::string& response, const char* format, T expected) {
        EXPECT_EQ(Read<T>(response, format), std::pair(HRESULT{S_OK}, expected))
            << response << " with " << format;
    }
    template <typename T>
    void ExpectRefused(const std::string& response, const char* format) {
        EXPECT_EQ(Read<T>(response, format), std::pair(HRESULT{E_UNEXPECTED}, T{77}))
            << response << " with " << format;
    }

  private:
    std::unique_ptr<CommaLocale> comma_;
};

INSTANTIATE_TEST_SUITE_P(Locales, SessionNumbersTest, testing::Bool(),
                         [](const testing::TestParamInfo<bool>& parameter) {
                             return parameter.param ? "DecimalComma" : "DecimalPoint";
                         });

TEST(CommaLocaleTest, IsInForceForBothLibrariesAndGoesAgain) {
    {
        const CommaLocale comma;
        RecordProperty("locale", comma.CName());
        EXPECT_EQ(CommaLocale::CppText(), "1.234,5");
        EXPECT_EQ(CommaLocale::CText(), comma.CName().empty() ? "1.5" : "1,5");
    }
    EXPECT_EQ(CommaLocale::CppText(), "1234.5");
    EXPECT_EQ(CommaLocale::CText(), "1.5");
}

TEST_P(SessionNumbersTest, WholeNumbersAtTheirLimitsAreWritten) {
    EXPECT_EQ(session.Printf("%bd,%bd,%hd,%hd", 0, 255, -32768, 32767), S_OK);
    EXPECT_EQ(session.Printf("%d,%ld,%u", INT32_MIN, INT32_MAX, UINT32_MAX), S_OK);
    EXPECT_EQ(session.Printf("%Id,%Id,%Iu", INT64_MIN, INT64_MAX, UINT64_MAX), S_OK);
    EXPECT_EQ(session.Printf("%x,%Ix,%o", 0x7FFFFFFF, UINT64_MAX, 8), S_OK);
    EXPECT_EQ(fake.Written(),
              "0,255,-32768,32767\n"
              "-2147483648,2147483647,4294967295\n"
              "-9223372036854775808,9223372036854775807,18446744073709551615\n"
              "7fffffff,ffffffffffffffff,10\n");
}

TEST_P(SessionNumbersTest, WholeNumbersAtTheirLimitsAreRead) {
    ExpectRead<std::uint8_t>("255", "%bu", 255);
    ExpectRead<std::uint8_t>("0", "%bd", 0);
    ExpectRead<std::int16_t>("-32768", "%hd", -32768);
    ExpectRead<std::int16_t>("32767", "%hd", 32767);
    ExpectRead<std::uint16_t>("65535", "%hu", 65535);
    ExpectRead<std::int32_t>("-2147483648", "%d", INT32_MIN);
    ExpectRead<std::int32_t>("2147483647", "%ld", INT32_MAX);
    ExpectRead<std::uint32_t>("4294967295", "%u", UINT32_MAX);
    ExpectRead<std::int64_t>("-9223372036854775808", "%Id", INT64_MIN);
    ExpectRead<std::int64_t>("9223372036854775807", "%Id", INT64_MAX);
    ExpectRead<std::uint64_t>("18446744073709551615", "%Iu", UINT64_MAX);
    ExpectRead<std::uint64_t>("FFFFFFFFFFFFFFFF", "%Ix", UINT64_MAX);
    EXPECT_THAT(reporter.reports, IsEmpty());
}

TEST_P(SessionNumbersTest, WholeNumbersBeyondTheirLimitsAreRefused) {
    ExpectRefused<std::uint8_t>("256", "%bu");
    ExpectRefused<std::int16_t>("32768", "%hd");
    ExpectRefused<std::int16_t>("-32769", "%hd");
    ExpectRefused<std::uint16_t>("65536", "%hu");
    ExpectRefused<std::int32_t>("2147483648", "%d");
    ExpectRefused<std::int32_t>("-2147483649", "%d");
    ExpectRefused<std::uint32_t>("4294967296", "%u");
    ExpectRefused<std::int64_t>("9223372036854775808", "%Id");
    ExpectRefused<std::int64_t>("-9223372036854775809", "%Id");
    ExpectRefused<std::uint64_t>("18446744073709551616", "%Iu");
}

TEST_P(SessionNumbersTest, RealNumbersAtTheirLimitsAreWritten) {
    using Double = std::numeric_limits<double>;
    EXPECT_EQ(session.Printf("%.17g,%.17g", Double::max(), Double::lowest()), S_OK);
    EXPECT_EQ(session.Printf("%.17lg,%.17g", Double::min(), Double::denorm_min()), S_OK);
    EXPECT_EQ(session.Printf("%.9g,%g,%f", double{std::numeric_limits<float>::max()}, -0.0, 0.5),
              S_OK);
    EXPECT_EQ(fake.Written(),
              "1.7976931348623157e+308,-1.7976931348623157e+308\n"
              "2.2250738585072014e-308,4.9406564584124654e-324\n"
              "3.40282347e+38,-0,0.500000\n");
}

TEST_P(SessionNumbersTest, RealNumbersAtTheirLimitsAreRead) {
    using Double = std::numeric_limits<double>;
    using Float = std::numeric_limits<float>;
    ExpectRead<double>("1.7976931348623157E+308", "%lf", Double::max());
    ExpectRead<double>("-1.7976931348623157e308", "%Lg", Double::lowest());
    ExpectRead<double>("2.2250738585072014e-308", "%lf", Double::min());
    ExpectRead<float>("3.4028234663852886E+38", "%f", Float::max());
    ExpectRead<float>("-3.4028234663852886E+38", "%f", Float::lowest());
    ExpectRead<float>("1.1754943508222875E-38", "%f", Float::min());
}

TEST_P(SessionNumbersTest, RealNumbersBeyondTheirLimitsAreRefused) {
    ExpectRefused<double>("1E400", "%lf");
    ExpectRefused<double>("-1E400", "%lf");
    ExpectRefused<double>("1.8E308", "%lf");
    ExpectRefused<float>("1E400", "%f");
    // The largest one, rounded up to nine digits.
    ExpectRefused<float>("3.40282347E+38", "%f");
    ExpectRefused<float>("1E-39", "%f");
    ExpectRefused<float>("-1E-300", "%f");
}

TEST_P(SessionNumbersTest, DenormalsAreReadAsDoublesAndWhatIsSmallerIsZero) {
    ExpectRead<double>("4.9406564584124654e-324", "%lf", std::numeric_limits<double>::denorm_min());
    ExpectRead<double>("1E-310", "%lf", 1E-310);
    ExpectRead<double>("1E-400", "%lf", 0.0);
    ExpectRead<float>("1E-310", "%f", 0.0F);
}

TEST_P(SessionNumbersTest, InfinitiesAreWrittenInWordsAndNotRead) {
    EXPECT_EQ(session.Printf("%f,%g,%E,%G", kInfinity, -kInfinity, kInfinity, -kInfinity), S_OK);
    EXPECT_EQ(fake.Written(), "inf,-inf,INF,-INF\n");
    ExpectRefused<double>("INF", "%lf");
    ExpectRefused<double>("-inf", "%lf");
    ExpectRefused<double>("NAN", "%lf");
}

TEST_P(SessionNumbersTest, TextsOfInstruments) {
    ExpectRead<double>("9.91E+37", "%lf", 9.91e37);
    ExpectRead<float>("9.91E+37", "%f", 9.91e37F);
    ExpectRead<double>("-9.9E+37", "%lf", -9.9e37);
    ExpectRead<double>("+1.", "%lf", 1.0);
    ExpectRead<double>("-.5", "%lf", -0.5);
    ExpectRead<double>("+.25E+3", "%lf", 250.0);
    ExpectRead<double>("  12.5E-3", "%lf", 0.0125);
    ExpectRead<double>("007", "%lf", 7.0);
    ExpectRead<std::int32_t>("+12", "%d", 12);
    ExpectRefused<double>(".", "%lf");
    ExpectRefused<double>("+", "%lf");
}

TEST_P(SessionNumbersTest, DigitsAreEnoughForTheWayThereAndBack) {
    for (const double value : {0.1, 1.0 / 3.0, 2.5e-9, -1.0000000000000002, 6.02214076e23}) {
        EXPECT_EQ(session.Printf("%.17g", value), S_OK);
        std::string text = fake.Written();
        text = text.substr(text.rfind('\n', text.size() - 2) + 1);
        text.pop_back();
        EXPECT_EQ(std::bit_cast<std::uint64_t>(Read<double>(text, "%lf").second),
                  std::bit_cast<std::uint64_t>(value))
            << text;
    }
}

TEST_P(SessionNumbersTest, TypedOperationsUseAPoint) {
    fake.Expect("A?\n").Reply("1.5\n");
    fake.Expect("B 1.500000\n");
    fake.Expect("C 0.250000;-2.500000\n").Reply("0.25;-2.5\n");
    double value = 0;
    EXPECT_EQ(session.QueryNumber("A?", &value, true), S_OK);
    EXPECT_EQ(value, 1.5);
    EXPECT_EQ(session.CommandWriteNumber("B ", 1.5, true), S_OK);
    const std::vector<double> values{0.25, -2.5};
    EXPECT_EQ(session.CommandWriteList("C ", values.data(), 2, ";", true), S_OK);
    std::vector<float> read(2);
    std::int32_t actual = 0;
    EXPECT_EQ(session.ReadList(read.data(), 2, &actual, ";"), S_OK);
    EXPECT_THAT(read, ElementsAre(0.25F, -2.5F));
    EXPECT_TRUE(fake.Finished());
}

TEST_P(SessionNumbersTest, NumericFormsUseAPoint) {
    EXPECT_EQ(session.Printf("%@1f,%@2d,%@3f,%@Hd", 2.5, 3, 0.5, 255), S_OK);
    EXPECT_EQ(fake.Written(), "3,3.000000,5.000000E-01,#HFF\n");
    ExpectRead<double>("1.25", "%@2lf", 1.25);
    ExpectRead<double>("1.25E+1", "%@3lf", 12.5);
}

}  // namespace
}  // namespace kestrion
