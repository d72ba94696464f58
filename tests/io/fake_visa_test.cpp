// The scripted library itself: a test double that never complains proves nothing.
#include "tests/io/fake_visa.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace kestrion {
namespace {

using testing::ElementsAre;

class FakeVisaTest : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_EQ(visa.viOpenDefaultRM(&manager), 0);
        ASSERT_EQ(visa.viOpen(manager, "SOME::RESOURCE", 0, 2000, &session), 0);
    }
    visa::ViStatus Write(std::string_view text) {
        visa::ViUInt32 actual = 0;
        return visa.viWrite(session, reinterpret_cast<const visa::ViUInt8*>(text.data()),
                            static_cast<visa::ViUInt32>(text.size()), &actual);
    }
    std::string Read(visa::ViUInt32 count, std::uint32_t expected) {
        std::string text(count, '?');
        visa::ViUInt32 actual = 0;
        const visa::ViStatus status =
            visa.viRead(session, reinterpret_cast<visa::ViUInt8*>(text.data()), count, &actual);
        EXPECT_EQ(static_cast<std::uint32_t>(status), expected);
        return text.substr(0, actual);
    }

    FakeVisa fake;
    const visa::FunctionTable& visa = fake.Table();
    visa::ViSession manager = 0;
    visa::ViSession session = 0;
};

TEST_F(FakeVisaTest, MessageOutsideOfTheScriptFailsAndShows) {
    fake.Expect("A\n");
    EXPECT_EQ(static_cast<std::uint32_t>(Write("B\n")), 0xBFFF003E);
    EXPECT_THAT(fake.Mismatches(), ElementsAre("\"B\\n\" came in place of \"A\\n\""));
    EXPECT_FALSE(fake.Finished());
}

TEST_F(FakeVisaTest, MessageBehindTheScriptFailsAndShows) {
    fake.Expect("A\n");
    EXPECT_EQ(Write("A\n"), 0);
    EXPECT_TRUE(fake.Finished());
    EXPECT_NE(Write("B\n"), 0);
    EXPECT_THAT(fake.Mismatches(), ElementsAre("\"B\\n\" came in place of nothing"));
}

TEST_F(FakeVisaTest, MessageIsCompleteWithEndOnly) {
    fake.Expect("AB\n");
    EXPECT_EQ(visa.viSetAttribute(session, 0x3FFF0016, 0), 0);
    EXPECT_EQ(Write("A"), 0);
    EXPECT_FALSE(fake.Finished());
    EXPECT_EQ(visa.viSetAttribute(session, 0x3FFF0016, 1), 0);
    EXPECT_EQ(Write("B\n"), 0);
    EXPECT_TRUE(fake.Finished());
}

TEST_F(FakeVisaTest, ReadsEndWithEndWithTheCountOrWithTheTerminationCharacter) {
    fake.Respond("ABCDEF");
    EXPECT_EQ(Read(2, 0x3FFF0006), "AB");
    EXPECT_EQ(Read(4, 0), "CDEF");
    EXPECT_EQ(Read(4, 0xBFFF0015), "");
    fake.Respond("A\nB", false);
    EXPECT_EQ(visa.viSetAttribute(session, 0x3FFF0038, 1), 0);
    EXPECT_EQ(Read(9, 0x3FFF0005), "A\n");
    EXPECT_EQ(Read(9, 0xBFFF0015), "B");
}

TEST_F(FakeVisaTest, ServiceRequestsAndStatusBytesComeWithTheirExchange) {
    fake.Expect("*OPC\n").RequestService().StatusByte(96);
    visa::ViUInt16 value = 7;
    visa::ViEventType type = 0;
    visa::ViEvent context = 0;
    EXPECT_EQ(
        static_cast<std::uint32_t>(visa.viWaitOnEvent(session, 0x3FFF200B, 0, &type, &context)),
        0xBFFF002F);
    EXPECT_EQ(visa.viEnableEvent(session, 0x3FFF200B, 1, 0), 0);
    EXPECT_EQ(
        static_cast<std::uint32_t>(visa.viWaitOnEvent(session, 0x3FFF200B, 0, &type, &context)),
        0xBFFF0015);
    EXPECT_EQ(Write("*OPC\n"), 0);
    EXPECT_EQ(visa.viWaitOnEvent(session, 0x3FFF200B, 0, &type, &context), 0);
    EXPECT_EQ(type, 0x3FFF200BU);
    EXPECT_EQ(visa.viReadSTB(session, &value), 0);
    EXPECT_EQ(value, 96);
    EXPECT_EQ(fake.OpenObjects(), 3);
    EXPECT_EQ(visa.viClose(context), 0);
    EXPECT_EQ(visa.viClose(manager), 0);
    EXPECT_EQ(fake.OpenObjects(), 0);
    EXPECT_EQ(static_cast<std::uint32_t>(visa.viClear(session)), 0xBFFF000E);
}

TEST_F(FakeVisaTest, CallsFailByNumberOrByFunction) {
    fake.ForgetCalls();
    fake.FailCall(2, static_cast<visa::ViStatus>(0xBFFF003E));
    EXPECT_EQ(visa.viClear(session), 0);
    EXPECT_NE(visa.viClear(session), 0);
    EXPECT_EQ(visa.viClear(session), 0);
    fake.FailFunction("viClear", static_cast<visa::ViStatus>(0xBFFF003E));
    EXPECT_NE(visa.viClear(session), 0);
    fake.FailFunction("viClear", 0);
    EXPECT_EQ(visa.viClear(session), 0);
    EXPECT_EQ(fake.CallCount(), 5);
}

}  // namespace
}  // namespace kestrion
