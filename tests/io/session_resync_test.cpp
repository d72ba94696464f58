// After a transfer that went wrong: what the next query gets, and what brings both sides together.
#include <string>

#include "tests/io/session_fixture.h"

namespace kestrion {
namespace {

using testing::ElementsAre;

class SessionResyncTest : public OpenSessionFixture {
  protected:
    // Asks for a number whose answer is 2.
    std::int32_t AskForTwo() {
        fake.Expect("B?\n").Reply("2\n");
        std::int32_t value = 0;
        EXPECT_EQ(session.Queryf("B?", "%d", &value), S_OK);
        return value;
    }
};

TEST_F(SessionResyncTest, QueryDropsTheRestOfAResponseThatTimedOutBehindItsFirstBuffer) {
    fake.Respond(std::string(6000, '9') + "\n");
    fake.DelayCall(2, 10);
    std::string bytes(6000, '\0');
    std::uint32_t actual = 0;
    EXPECT_EQ(session.ReadBytesNoPoll(reinterpret_cast<BYTE*>(bytes.data()), 6000, &actual, false),
              kIoTimeoutStatus);
    EXPECT_EQ(actual, 4096U);
    EXPECT_EQ(AskForTwo(), 2);
    EXPECT_THAT(fake.Calls(), ElementsAre("viRead(4096)", "viRead(4096)", "viRead(1000)",
                                          "viRead(1000)", "viWrite(\"B?\\n\")", "viRead(4096)"));
}

TEST_F(SessionResyncTest, ScanfDropsTheRestOfItsOwnResponse) {
    fake.Respond("1;" + std::string(6000, '9') + "\n");
    std::int32_t value = 0;
    EXPECT_EQ(session.Scanf("%d;", &value), S_OK);
    EXPECT_EQ(value, 1);
    EXPECT_EQ(AskForTwo(), 2);
}

// Nothing tells an answer that comes late from the one to the next question.
TEST_F(SessionResyncTest, LateAnswerIsTakenForTheNextOneWhereNoByteOfItCame) {
    fake.Expect("A?\n").Reply("1\n");
    fake.DelayCall(2, 0);
    std::int32_t value = 0;
    EXPECT_EQ(session.Queryf("A?", "%d", &value), kIoTimeoutStatus);
    fake.Expect("B?\n").Reply("2\n");
    EXPECT_EQ(session.Queryf("B?", "%d", &value), S_OK);
    EXPECT_EQ(value, 1);
    EXPECT_EQ(session.Clear(), S_OK);
    EXPECT_EQ(AskForTwo(), 2);
}

TEST_F(SessionResyncTest, DeviceClearDropsALateAnswer) {
    fake.Expect("A?\n").Reply("1\n");
    fake.DelayCall(2, 0);
    std::int32_t value = 0;
    EXPECT_EQ(session.Queryf("A?", "%d", &value), kIoTimeoutStatus);
    EXPECT_EQ(session.Clear(), S_OK);
    EXPECT_EQ(AskForTwo(), 2);
}

TEST_F(SessionResyncTest, DeviceClearDropsTheRestOfARawReadThatIsFullOfTerminators) {
    ASSERT_EQ(session.SetTerminationCharacterEnabled(true), S_OK);
    fake.Respond(std::string(50, '\n'));
    BYTE first = 0;
    EXPECT_EQ(session.ReadRaw(&first, 1, nullptr, kKeepTimeout), IoStatusMoreData);
    EXPECT_EQ(session.Clear(), S_OK);
    EXPECT_EQ(AskForTwo(), 2);
}

TEST_F(SessionResyncTest, DeviceClearDropsWhatWaitsInBothBuffers) {
    fake.Respond("1;2;3\n");
    std::int32_t value = 0;
    EXPECT_EQ(session.ScanfNoFlush("%d;", &value), IoStatusMoreData);
    EXPECT_EQ(session.PrintfNoFlush("HALF A MESS"), S_OK);
    fake.ForgetCalls();
    EXPECT_EQ(session.Clear(), S_OK);
    EXPECT_EQ(AskForTwo(), 2);
    EXPECT_THAT(fake.Calls(), ElementsAre("viClear()", "viWrite(\"B?\\n\")", "viRead(4096)"));
}

TEST_F(SessionResyncTest, DeviceClearThatFailsKeepsWhatWaits) {
    EXPECT_EQ(session.PrintfNoFlush("B"), S_OK);
    fake.FailFunction("viClear", kVisaIoError);
    EXPECT_EQ(session.Clear(), kMappedIoError);
    fake.Expect("B?\n").Reply("2\n");
    std::int32_t value = 0;
    EXPECT_EQ(session.Queryf("?", "%d", &value), S_OK);
    EXPECT_EQ(value, 2);
}

// Without a device clear the next message carries what could not be sent.
TEST_F(SessionResyncTest, MessageThatCouldNotBeSentGoesWithTheNextOneUnlessTheDeviceIsCleared) {
    fake.FailCall(1, kVisaTimeout);
    EXPECT_EQ(session.Printf("CH1:ON"), kIoTimeoutStatus);
    fake.Expect("CH1:ON;CH2:ON\n");
    EXPECT_EQ(session.Printf(";CH2:ON"), S_OK);
    fake.ForgetCalls();
    fake.FailCall(1, kVisaTimeout);
    EXPECT_EQ(session.Printf("CH1:ON"), kIoTimeoutStatus);
    EXPECT_EQ(session.Clear(), S_OK);
    fake.Expect("CH2:ON\n");
    EXPECT_EQ(session.Printf("CH2:ON"), S_OK);
    EXPECT_TRUE(fake.Finished());
}

// Responses around the size of the read buffer ----------------------------------------------------

struct Link {
    std::string name;
    bool hasEnd;
};

class SessionLengthsTest : public SessionFixture, public testing::WithParamInterface<Link> {
  protected:
    void SetUp() override {
        fake.SetInterfaceType(6);
        ASSERT_EQ(Open(GetParam().hasEnd ? "TCPIP0::scope::INSTR" : "TCPIP0::scope::4000::SOCKET"),
                  S_OK);
    }
    // A response of so many bytes on the wire, its line feed among them; gives the text in front.
    std::string Respond(std::size_t wireBytes) {
        std::string text(wireBytes - 1, 'r');
        fake.Respond(text + "\n", GetParam().hasEnd);
        return text;
    }
    static constexpr std::size_t kLengths[] = {1, 2, 4095, 4096, 4097, 8191, 8192, 8193, 12288};
};

TEST_P(SessionLengthsTest, OneByteAtATimeGivesTheWholeResponseAndItsEnd) {
    for (const std::size_t length : kLengths) {
        const std::string expected = Respond(length);
        std::string got;
        HRESULT status = IoStatusMoreData;
        while (status == IoStatusMoreData && got.size() <= length) {
            BYTE byte = 0;
            std::uint32_t actual = 0;
            status = session.ReadBytesNoPoll(&byte, 1, &actual, false);
            got.append(actual, static_cast<char>(byte));
        }
        EXPECT_EQ(status, S_OK) << length;
        EXPECT_EQ(got, expected) << length;
    }
}

TEST_P(SessionLengthsTest, OneReadGivesTheWholeResponseAndItsEnd) {
    for (const std::size_t length : kLengths) {
        const std::string expected = Respond(length);
        std::string got(20000, '\0');
        std::uint32_t actual = 0;
        EXPECT_EQ(
            session.ReadBytesNoPoll(reinterpret_cast<BYTE*>(got.data()), 20000, &actual, false),
            S_OK)
            << length;
        got.resize(actual);
        EXPECT_EQ(got, expected) << length;
    }
}

TEST_P(SessionLengthsTest, FormatForTheRestOfTheResponseTakesAllOfIt) {
    for (const std::size_t length : kLengths) {
        const std::string expected = Respond(length);
        std::string got;
        EXPECT_EQ(session.Scanf("%$Ct", &got), S_OK) << length;
        EXPECT_EQ(got, expected) << length;
    }
}

TEST_P(SessionLengthsTest, ReadsOfEveryCountAroundTheBufferLeaveTheRest) {
    for (const std::uint32_t count : {4095U, 4096U, 4097U}) {
        const std::string expected = Respond(8193);
        std::string got(count, '\0');
        std::uint32_t actual = 0;
        EXPECT_EQ(
            session.ReadBytesNoPoll(reinterpret_cast<BYTE*>(got.data()), count, &actual, false),
            IoStatusMoreData);
        EXPECT_EQ(actual, count);
        std::string rest(20000, '\0');
        EXPECT_EQ(
            session.ReadBytesNoPoll(reinterpret_cast<BYTE*>(rest.data()), 20000, &actual, false),
            S_OK);
        rest.resize(actual);
        EXPECT_EQ(got + rest, expected) << count;
    }
}

INSTANTIATE_TEST_SUITE_P(Links, SessionLengthsTest,
                         testing::Values(Link{"WithEnd", true}, Link{"WithTerminatorOnly", false}),
                         [](const testing::TestParamInfo<Link>& parameter) {
                             return parameter.param.name;
                         });

}  // namespace
}  // namespace kestrion
