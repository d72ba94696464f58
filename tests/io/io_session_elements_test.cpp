// Numbers and lists through a session.
#include <cstring>
#include <string>
#include <vector>

#include "tests/io/session_fixture.h"

namespace kestrion {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using namespace std::string_literals;

class SessionElementsTest : public OpenSessionFixture {
  protected:
    template <typename T>
    void ExpectRangeError(const std::string& response, const std::string& message) {
        fake.Respond(response + "\n");
        T value = 77;
        EXPECT_EQ(session.ReadNumberNoPoll(&value, true), kIoErrorStatus) << response;
        EXPECT_EQ(value, T{77});
        ASSERT_FALSE(reporter.reports.empty());
        EXPECT_EQ(reporter.reports.back(), "ReportIoError(" + message + ")");
    }
    template <typename T>
    T ReadOne(const std::string& response) {
        fake.Respond(response + "\n");
        T value = 77;
        EXPECT_EQ(session.ReadNumber(&value, true), S_OK) << response;
        return value;
    }
};

// Numbers -----------------------------------------------------------------------------------------

TEST_F(SessionElementsTest, NumbersOfEveryTypeAreReadAndCutTowardZero) {
    EXPECT_EQ(ReadOne<BYTE>("254.9"), 254);
    EXPECT_EQ(ReadOne<SHORT>("-32768"), -32768);
    EXPECT_EQ(ReadOne<LONG>("2.147483647E+9"), 2147483647);
    EXPECT_EQ(ReadOne<LONG>("-2.9"), -2);
    EXPECT_EQ(ReadOne<FLOAT>("1.5E-3"), 1.5E-3F);
    EXPECT_EQ(ReadOne<DOUBLE>("9.91E+37"), 9.91E+37);
    EXPECT_EQ(poller.polls, 6);
}

TEST_F(SessionElementsTest, NumbersOutOfRangeAreReportedWithTheirValue) {
    ExpectRangeError<BYTE>("256",
                           "Overflow or underflow reading value of '2.560000e+02' into a BYTE.");
    ExpectRangeError<BYTE>("-1",
                           "Overflow or underflow reading value of '-1.000000e+00' into a BYTE.");
    ExpectRangeError<SHORT>("32768",
                            "Overflow or underflow reading value of '3.276800e+04' into a short.");
    ExpectRangeError<SHORT>("-32769",
                            "Overflow or underflow reading value of '-3.276900e+04' into a short.");
    ExpectRangeError<LONG>("2147483648",
                           "Overflow or underflow reading value of '2.147484e+09' into a long.");
    ExpectRangeError<LONG>("-2147483649",
                           "Overflow or underflow reading value of '-2.147484e+09' into a long.");
    ExpectRangeError<FLOAT>("3.5E38",
                            "Overflow or underflow reading value of '3.500000e+38' into a "
                            "single-precision float.");
    ExpectRangeError<FLOAT>("1E-39",
                            "Overflow or underflow reading value of '1.000000e-39' into a "
                            "single-precision float.");
    EXPECT_EQ(poller.polls, 0);
}

TEST_F(SessionElementsTest, ResponseWithoutADigitIsUnexpected) {
    fake.Respond("ABC\n");
    DOUBLE value = 77;
    EXPECT_EQ(session.ReadNumber(&value, true), E_UNEXPECTED);
    EXPECT_EQ(value, 77);
    EXPECT_THAT(reporter.reports, IsEmpty());
}

TEST_F(SessionElementsTest, NullNumberIsReported) {
    EXPECT_EQ(session.ReadNumber(static_cast<LONG*>(nullptr), true), kNullPointerStatus);
    EXPECT_THAT(fake.Calls(), IsEmpty());
}

TEST_F(SessionElementsTest, QueryNumberSendsReadsAndPolls) {
    fake.Expect("A?\n").Reply("12\n");
    fake.Expect("B?\n").Reply("2.5\n");
    LONG whole = 0;
    DOUBLE real = 0;
    EXPECT_EQ(session.QueryNumber("A?", &whole, true), S_OK);
    EXPECT_EQ(session.QueryNumberNoPoll("B?", &real, true), S_OK);
    EXPECT_EQ(whole, 12);
    EXPECT_EQ(real, 2.5);
    EXPECT_EQ(poller.polls, 1);
}

TEST_F(SessionElementsTest, QueryNumberAppliesItsTimeoutOnce) {
    fake.Expect("A?\n").Reply("12\n");
    LONG value = 0;
    EXPECT_EQ(session.QueryNumber("A?", &value, true, 900), S_OK);
    EXPECT_THAT(fake.CallsOf("viSetAttribute"),
                ElementsAre("viSetAttribute(TMO_VALUE, 900)", "viSetAttribute(TMO_VALUE, 2000)"));
}

TEST_F(SessionElementsTest, QueryNumberWhoseCommandFailsDoesNotRead) {
    fake.FailFunction("viWrite", kVisaIoError);
    LONG value = 0;
    EXPECT_EQ(session.QueryNumber("A?", &value, true), kMappedIoError);
    EXPECT_THAT(fake.CallsOf("viRead"), IsEmpty());
    EXPECT_EQ(poller.polls, 0);
}

TEST_F(SessionElementsTest, NumbersAreWrittenAsWholeOrFixedPoint) {
    EXPECT_EQ(session.WriteNumber(BYTE{200}, true), S_OK);
    EXPECT_EQ(session.WriteNumber(SHORT{-5}, true), S_OK);
    EXPECT_EQ(session.WriteNumberNoPoll(LONG{-2147483647}, true), S_OK);
    EXPECT_EQ(session.WriteNumber(FLOAT{0.5F}, true), S_OK);
    EXPECT_EQ(session.WriteNumber(DOUBLE{1e7}, false), S_OK);
    EXPECT_EQ(session.FlushWrite(true), S_OK);
    EXPECT_EQ(fake.Written(), "200\n-5\n-2147483647\n0.500000\n10000000.000000\n");
    EXPECT_EQ(poller.polls, 3);
}

TEST_F(SessionElementsTest, CommandAndNumberLeaveInOneMessage) {
    EXPECT_EQ(session.CommandWriteNumber("CH1:SCALE ", DOUBLE{0.25}, true), S_OK);
    EXPECT_THAT(fake.Calls(), ElementsAre("viWrite(\"CH1:SCALE 0.250000\\n\")"));
    EXPECT_EQ(poller.polls, 1);
}

// Lists -------------------------------------------------------------------------------------------

TEST_F(SessionElementsTest, ListHasItsSeparatorBetweenTwoElementsOnly) {
    const LONG values[] = {1, -2, 3};
    EXPECT_EQ(session.WriteList(values, 3, ", ", true), S_OK);
    EXPECT_THAT(fake.Calls(), ElementsAre("viWrite(\"1, -2, 3\\n\")"));
    EXPECT_EQ(poller.polls, 1);
}

TEST_F(SessionElementsTest, EmptyListOnlyFlushes) {
    const DOUBLE values[] = {1};
    EXPECT_EQ(session.WriteStringNoPoll("A", false), S_OK);
    EXPECT_EQ(session.WriteList(values, 0, ",", false), S_OK);
    EXPECT_THAT(fake.Calls(), IsEmpty());
    EXPECT_EQ(session.WriteList(values, -1, ",", true), S_OK);
    EXPECT_THAT(fake.Calls(), ElementsAre("viWrite(\"A\\n\")"));
}

TEST_F(SessionElementsTest, CommandAndListLeaveInOneMessage) {
    const DOUBLE values[] = {0.5, 1.5};
    EXPECT_EQ(session.CommandWriteList("LIST ", values, 2, ",", true), S_OK);
    EXPECT_EQ(fake.Written(), "LIST 0.500000,1.500000\n");
}

TEST_F(SessionElementsTest, NullListIsReported) {
    EXPECT_EQ(session.WriteList(static_cast<const LONG*>(nullptr), 1, ",", true),
              kNullPointerStatus);
    EXPECT_EQ(session.ReadList(static_cast<LONG*>(nullptr), 1, nullptr, ","), kNullPointerStatus);
}

TEST_F(SessionElementsTest, VariantListsAreWrittenByTheirOwnType) {
    EXPECT_EQ(session.WriteList(MakeArray<BYTE>({1, 2}).Get(), ",", true), S_OK);
    EXPECT_EQ(session.WriteList(MakeArray<SHORT>({-1}).Get(), ",", true), S_OK);
    EXPECT_EQ(session.WriteList(MakeArray<LONG>({70000}).Get(), ",", true), S_OK);
    EXPECT_EQ(session.WriteList(MakeArray<FLOAT>({0.5F}).Get(), ",", true), S_OK);
    EXPECT_EQ(session.CommandWriteList("D ", MakeArray<DOUBLE>({2.5}).Get(), ",", true), S_OK);
    EXPECT_EQ(fake.Written(), "1,2\n-1\n70000\n0.500000\nD 2.500000\n");
    EXPECT_EQ(poller.polls, 5);
}

TEST_F(SessionElementsTest, VariantListOfAnotherTypeIsRefused) {
    const SafeArrayPtr texts(SafeArrayCreateVector(VT_BSTR, 0, 1));
    EXPECT_EQ(session.WriteList(texts.Get(), ",", true), kInvalidValueStatus);
    EXPECT_EQ(session.WriteList(static_cast<SAFEARRAY*>(nullptr), ",", true), kInvalidValueStatus);
    EXPECT_THAT(reporter.reports,
                ElementsAre("ReportInvalidValue(pszValues | <Unknown Array Type> | Unknown type of "
                            "array passed to WriteList function.)",
                            "ReportInvalidValue(psa | <Unknown Value> | SAFEARRAY is NULL.)"));
}

TEST_F(SessionElementsTest, ListOfNumbersIsReadUpToItsCount) {
    fake.Respond("1, 2;3,4\n");
    LONG values[3] = {};
    std::int32_t actual = 0;
    EXPECT_EQ(session.ReadList(values, 3, &actual, ",;"), IoStatusMoreData);
    EXPECT_EQ(actual, 3);
    EXPECT_THAT(values, ElementsAre(1, 2, 3));
    EXPECT_EQ(session.ReadListNoPoll(values, 3, &actual, ",;"), S_OK);
    EXPECT_EQ(actual, 1);
    EXPECT_EQ(values[0], 4);
    EXPECT_EQ(poller.polls, 1);
}

TEST_F(SessionElementsTest, ListEndsAtAByteThatIsNoSeparator) {
    fake.Respond("1,2 V,3\n");
    DOUBLE values[5] = {};
    std::int32_t actual = 0;
    EXPECT_EQ(session.ReadList(values, 5, &actual, ","), IoStatusMoreData);
    EXPECT_EQ(actual, 2);
}

TEST_F(SessionElementsTest, ListElementOutOfRangeIsReportedAndCountsTheOnesBefore) {
    fake.Respond("1,300,2\n");
    BYTE values[5] = {};
    std::int32_t actual = 0;
    EXPECT_EQ(session.ReadList(values, 5, &actual, ","), kIoErrorStatus);
    EXPECT_EQ(actual, 1);
    EXPECT_EQ(poller.polls, 0);
}

TEST_F(SessionElementsTest, QueryListSendsItsCommand) {
    fake.Expect("LIST?\n").Reply("0.5,1.5\n");
    DOUBLE values[5] = {};
    std::int32_t actual = 0;
    EXPECT_EQ(session.QueryList("LIST?", values, 5, &actual, ","), S_OK);
    EXPECT_EQ(actual, 2);
    EXPECT_EQ(values[1], 1.5);
    EXPECT_EQ(poller.polls, 1);
}

TEST_F(SessionElementsTest, TextListTakesTokensBetweenSeparators) {
    fake.Expect("CAT?\n").Reply("CH1, CH 2;MATH1\n");
    std::string values[5];
    std::int32_t actual = 0;
    EXPECT_EQ(session.QueryListNoPoll("CAT?", values, 5, &actual, ",;"), S_OK);
    EXPECT_EQ(actual, 3);
    EXPECT_EQ(values[0], "CH1");
    EXPECT_EQ(values[1], "CH 2");
    EXPECT_EQ(values[2], "MATH1");
    EXPECT_EQ(poller.polls, 0);
}

TEST_F(SessionElementsTest, VariantListsAreReadInEveryKind) {
    fake.Respond("1,2,3\n");
    SafeArrayPtr array;
    EXPECT_EQ(session.ReadList(array.Out(), ElementKind::kShort, ","), S_OK);
    EXPECT_THAT(array.Elements<SHORT>(), ElementsAre(1, 2, 3));
    fake.Expect("X?\n").Reply("0.5\n");
    EXPECT_EQ(session.QueryList("X?", array.Out(), ElementKind::kDouble, ","), S_OK);
    EXPECT_THAT(array.Elements<DOUBLE>(), ElementsAre(0.5));
    fake.Expect("Y?\n").Reply("A,B\xB5\n");
    EXPECT_EQ(session.QueryListNoPoll("Y?", array.Out(), ElementKind::kText, ","), S_OK);
    const auto texts = array.Elements<BSTR>();
    ASSERT_EQ(texts.size(), 2U);
    EXPECT_EQ(View(texts[0]), u"A");
    EXPECT_EQ(View(texts[1]), u"B\u00B5");
    EXPECT_EQ(poller.polls, 2);
}

TEST_F(SessionElementsTest, VariantListsGrowByChunksAndEndWithTheResponse) {
    for (const int count : {511, 512, 513, 1024, 1300}) {
        std::string response;
        for (int i = 0; i < count; ++i) {
            response += (i == 0 ? "" : ",") + std::to_string(i);
        }
        fake.Respond(response + "\n");
        SafeArrayPtr array;
        EXPECT_EQ(session.ReadListNoPoll(array.Out(), ElementKind::kDouble, ","), S_OK) << count;
        const auto values = array.Elements<DOUBLE>();
        ASSERT_EQ(values.size(), static_cast<std::size_t>(count));
        EXPECT_EQ(values.back(), count - 1);
        EXPECT_EQ(session.FlushRead(), S_OK);
    }
}

TEST_F(SessionElementsTest, VariantListOfAnUnknownKindOrNullIsRefused) {
    SafeArrayPtr array;
    EXPECT_EQ(session.ReadList(array.Out(), static_cast<ElementKind>(3), ","), kInvalidValueStatus);
    EXPECT_EQ(session.ReadList(static_cast<SAFEARRAY**>(nullptr), ElementKind::kLong, ","),
              kNullPointerStatus);
    EXPECT_THAT(reporter.reports, ElementsAre("ReportInvalidValue(eType | 3 | )",
                                              "ReportNullPointer(ReadList | ppsaData | )"));
}

TEST_F(SessionElementsTest, VariantListThatFailsLeavesTheArgument) {
    fake.Respond("1,x\n");
    SafeArrayPtr array = MakeArray<LONG>({9});
    SAFEARRAY* kept = array.Detach();
    SAFEARRAY* argument = kept;
    EXPECT_EQ(session.ReadList(&argument, ElementKind::kLong, ","), E_UNEXPECTED);
    EXPECT_EQ(argument, kept);
    EXPECT_EQ(SafeArrayDestroy(argument), S_OK);
}

}  // namespace
}  // namespace kestrion
