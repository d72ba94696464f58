// Blocks through a session.
#include <cstring>
#include <string>
#include <vector>

#include "io/block_transfer.h"
#include "tests/io/session_fixture.h"

namespace kestrion {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using namespace std::string_literals;

class SessionBlocksTest : public OpenSessionFixture {};

// Writing blocks ----------------------------------------------------------------------------------

TEST_F(SessionBlocksTest, BlockOfThreeDoublesHasTwentyFourBytesBehindItsHeader) {
    const DOUBLE values[] = {1.0, -2.0, 0.5};
    EXPECT_EQ(session.WriteBlockNoPoll(values, 3, true), S_OK);
    EXPECT_EQ(fake.Written(),
              "#224"
              "\x3F\xF0\0\0\0\0\0\0"
              "\xC0\0\0\0\0\0\0\0"
              "\x3F\xE0\0\0\0\0\0\0\n"s);
    EXPECT_EQ(poller.polls, 0);
}

TEST_F(SessionBlocksTest, BlockOfAThousandBytesAnnouncesFourDigits) {
    const std::vector<BYTE> values(1000, 'b');
    EXPECT_EQ(session.WriteBlock(values.data(), 1000, true), S_OK);
    EXPECT_EQ(fake.Written(), "#41000" + std::string(1000, 'b') + "\n");
    EXPECT_EQ(poller.polls, 1);
}

TEST_F(SessionBlocksTest, BlockElementsGoMostSignificantByteFirstUnlessSwapIsOff) {
    const SHORT values[] = {0x0102, 0x0304};
    EXPECT_EQ(session.WriteBlock(values, 2, true), S_OK);
    ASSERT_EQ(session.SetByteSwap(false), S_OK);
    EXPECT_EQ(session.WriteBlock(values, 2, true), S_OK);
    EXPECT_EQ(fake.Written(), "#14\x01\x02\x03\x04\n#14\x02\x01\x04\x03\n");
}

TEST_F(SessionBlocksTest, EmptyBlockIsItsHeaderAndOnlyFlushedWithoutSwap) {
    const SHORT values[] = {1};
    EXPECT_EQ(session.WriteBlock(values, 0, true), S_OK);
    EXPECT_THAT(fake.Written(), IsEmpty());
    ASSERT_EQ(session.FlushWrite(true), S_OK);
    ASSERT_EQ(session.SetByteSwap(false), S_OK);
    EXPECT_EQ(session.WriteBlock(values, 0, true), S_OK);
    EXPECT_EQ(fake.Written(), "#10\n#10\n");
}

TEST_F(SessionBlocksTest, LargeBlockLeavesInFullBuffersAndEndsOnce) {
    const std::vector<BYTE> values(10000, 'b');
    EXPECT_EQ(session.CommandWriteBlock("DATA ", values.data(), 10000, true), S_OK);
    EXPECT_EQ(fake.Written(), "DATA #510000" + std::string(10000, 'b') + "\n");
    EXPECT_EQ(fake.CallsOf("viWrite").size(), 3U);
    EXPECT_EQ(poller.polls, 1);
}

TEST_F(SessionBlocksTest, BlockWithoutFlushStaysAndDoesNotPoll) {
    const BYTE values[] = {'a'};
    EXPECT_EQ(session.WriteBlock(values, 1, false), S_OK);
    EXPECT_THAT(fake.Calls(), IsEmpty());
    EXPECT_EQ(poller.polls, 0);
}

TEST_F(SessionBlocksTest, BlocksThatCannotBeAreRefused) {
    const BYTE values[] = {'a'};
    EXPECT_EQ(session.WriteBlock(values, -1, true), E_INVALIDARG);
    EXPECT_EQ(session.WriteBlock(static_cast<const BYTE*>(nullptr), 1, true), kNullPointerStatus);
    // 125 million doubles are one byte more than nine digits can say.
    const DOUBLE one = 1;
    EXPECT_EQ(session.WriteBlock(&one, 125000000, true), E_INVALIDARG);
    EXPECT_THAT(fake.Calls(), IsEmpty());
}

TEST_F(SessionBlocksTest, VariantBlocksAreWrittenByTheirOwnType) {
    EXPECT_EQ(session.WriteBlock(MakeArray<SHORT>({0x0102}).Get(), true), S_OK);
    EXPECT_EQ(session.CommandWriteBlock("D ", MakeArray<BYTE>({'a', 'b'}).Get(), true), S_OK);
    EXPECT_EQ(fake.Written(), "#12\x01\x02\nD #12ab\n");
    const SafeArrayPtr texts(SafeArrayCreateVector(VT_BSTR, 0, 1));
    EXPECT_EQ(session.WriteBlockNoPoll(texts.Get(), true), kInvalidValueStatus);
    EXPECT_THAT(reporter.reports,
                ElementsAre("ReportInvalidValue(psa | <Unknown Value> | SAFEARRAY was not of the "
                            "expected type.)"));
}

// Takes a limited number of bytes of each write.
class ShortBuffer final : public IIoBuffer {
  public:
    explicit ShortBuffer(std::uint32_t limit, bool swap) : limit_(limit), swap_(swap) {}
    HRESULT WriteText(std::string_view, std::uint32_t*, bool) override { return S_OK; }
    HRESULT WriteBytes(const BYTE*, std::uint32_t count, std::uint32_t* actual, bool) override {
        *actual = std::min(count, limit_);
        limit_ -= *actual;
        return S_OK;
    }
    bool GetByteSwap() override { return swap_; }
    HRESULT GetByte(BYTE*) override { return E_NOTIMPL; }
    HRESULT ReadToString(BSTR*, std::uint32_t, bool) override { return E_NOTIMPL; }
    HRESULT ReadToArray(SAFEARRAY**, std::uint32_t, bool) override { return E_NOTIMPL; }
    HRESULT Read(BYTE*, std::uint32_t, std::uint32_t*, bool) override { return E_NOTIMPL; }
    HRESULT ReadBytes(BYTE*, std::uint32_t, std::uint32_t*, bool) override { return E_NOTIMPL; }
    HRESULT UngetByte() override { return E_NOTIMPL; }
    HRESULT ReadDirect(BYTE*, std::uint32_t, std::uint32_t*, bool) override { return E_NOTIMPL; }
    HRESULT WriteChar(BYTE, bool) override { return E_NOTIMPL; }
    HRESULT WriteWideString(BSTR, std::uint32_t*, bool) override { return E_NOTIMPL; }
    HRESULT WriteArray(SAFEARRAY*, std::uint32_t, std::uint32_t*, bool) override {
        return E_NOTIMPL;
    }
    HRESULT FlushRead() override { return E_NOTIMPL; }
    HRESULT FlushWrite(bool) override { return E_NOTIMPL; }
    HRESULT SetBufferSize(IoBufferKind, std::uint32_t) override { return E_NOTIMPL; }
    HRESULT GetReadBufferSize(std::uint32_t*) override { return E_NOTIMPL; }
    HRESULT GetWriteBufferSize(std::uint32_t*) override { return E_NOTIMPL; }
    void SetByteSwap(bool) override {}

  private:
    std::uint32_t limit_;
    bool swap_;
};

TEST(BlockTransfer, ShortWriteIsReportedWithTheBytesThatWent) {
    const LONG values[] = {1, 2, 3};
    RecordingReporter reporter;
    ShortBuffer atOnce(7, false);
    EXPECT_EQ(WriteBlockElements(atOnce, reporter, ElementKind::kLong, values, 3, true),
              kIoErrorStatus);
    ShortBuffer each(7, true);
    EXPECT_EQ(WriteBlockElements(each, reporter, ElementKind::kLong, values, 3, true),
              kIoErrorStatus);
    EXPECT_THAT(reporter.reports,
                ElementsAre("ReportIoError(Binary block write only successfully sent 7 of 12 data "
                            "bytes to the device.)",
                            "ReportIoError(Binary block write only successfully sent 4 of 12 data "
                            "bytes to the device.)"));
}

// Reading blocks ----------------------------------------------------------------------------------

TEST_F(SessionBlocksTest, BlockOfBytesIsRead) {
    fake.Respond("#15hello\n");
    BYTE values[10] = {};
    std::int32_t actual = 0;
    EXPECT_EQ(session.ReadBlock(values, 10, &actual, false, true), S_OK);
    EXPECT_EQ(actual, 5);
    EXPECT_EQ(std::memcmp(values, "hello", 5), 0);
    EXPECT_EQ(poller.polls, 1);
}

TEST_F(SessionBlocksTest, BlockLargerThanTheBufferComesStraightIntoTheTarget) {
    std::string data;
    for (int i = 0; i < 10000; ++i) {
        data += static_cast<char>(i % 251);
    }
    fake.Respond("#510000" + data + "\n");
    std::vector<BYTE> values(10000);
    std::int32_t actual = 0;
    EXPECT_EQ(session.ReadBlockNoPoll(values.data(), 10000, &actual, false, true), S_OK);
    EXPECT_EQ(actual, 10000);
    EXPECT_EQ(std::memcmp(values.data(), data.data(), 10000), 0);
    EXPECT_THAT(fake.CallsOf("viRead"), ElementsAre("viRead(4096)", "viRead(5911)", "viRead(1)"));
}

TEST_F(SessionBlocksTest, BlockOnASocketMayBeginWithTheTerminationCharacter) {
    ASSERT_EQ(session.SetTerminationCharacterEnabled(true), S_OK);
    fake.Respond("#14\n\n\n\n\n", false);
    BYTE values[4] = {};
    std::int32_t actual = 0;
    EXPECT_GE(session.ReadBlock(values, 4, &actual, false, true), 0);
    EXPECT_EQ(actual, 4);
    EXPECT_THAT(values, ElementsAre('\n', '\n', '\n', '\n'));
    EXPECT_EQ(fake.AttributeValue(kTermCharEnabledAttribute), 1U);
    fake.Expect("X?\n").Reply("7\n");
    LONG value = 0;
    EXPECT_EQ(session.QueryNumber("X?", &value, true), S_OK);
    EXPECT_EQ(value, 7);
}

TEST_F(SessionBlocksTest, TargetSmallerThanTheBlockLeavesTheRest) {
    fake.Respond("#15hello\n");
    BYTE values[2] = {};
    std::int32_t actual = 0;
    EXPECT_EQ(session.ReadBlockNoPoll(values, 2, &actual, false, false), IoStatusMoreData);
    EXPECT_EQ(actual, 2);
    std::string rest;
    EXPECT_EQ(session.ReadStringNoPoll(&rest), S_OK);
    EXPECT_EQ(rest, "llo");
}

TEST_F(SessionBlocksTest, FlushDropsTheRestOfTheBlockAndTheLineFeedBehindIt) {
    fake.Respond("#15hello\n;next\n");
    BYTE values[2] = {};
    std::int32_t actual = 0;
    EXPECT_EQ(session.ReadBlockNoPoll(values, 2, &actual, false, true), IoStatusMoreData);
    EXPECT_EQ(actual, 2);
    std::string rest;
    EXPECT_EQ(session.ReadStringNoPoll(&rest), S_OK);
    EXPECT_EQ(rest, ";next");
}

TEST_F(SessionBlocksTest, FlushDropsALongRestAThousandBytesAtATime) {
    fake.Respond("#15" + std::string("x"));
    ASSERT_EQ(session.FlushRead(), S_OK);
    fake.ForgetCalls();
    ASSERT_EQ(session.SetBufferSize(IoBufferKind::kRead, 6), S_OK);
    ASSERT_EQ(session.Clear(), S_OK);
    fake.ForgetCalls();
    fake.Respond("#42500" + std::string(2500, 'd') + "\n");
    BYTE values[100];
    std::int32_t actual = 0;
    EXPECT_EQ(session.ReadBlockNoPoll(values, 100, &actual, false, true), S_OK);
    EXPECT_THAT(fake.CallsOf("viRead"), ElementsAre("viRead(6)", "viRead(100)", "viRead(1000)",
                                                    "viRead(1000)", "viRead(401)"));
}

TEST_F(SessionBlocksTest, SeekSkipsNoiseInFrontOfTheBlock) {
    fake.Respond("CURVE #13abc\n");
    BYTE values[3] = {};
    std::int32_t actual = 0;
    EXPECT_EQ(session.ReadBlock(values, 3, &actual, true, true), S_OK);
    EXPECT_EQ(actual, 3);
}

TEST_F(SessionBlocksTest, NoiseWithoutSeekIsNoHeader) {
    fake.Respond("CURVE #13abc\n");
    BYTE values[3] = {};
    std::int32_t actual = 77;
    EXPECT_EQ(session.ReadBlock(values, 3, &actual, false, true), kUnexpectedResponseStatus);
    EXPECT_THAT(reporter.reports,
                ElementsAre("ReportUnexpectedResponse(Binary block header not found.)"));
    EXPECT_EQ(actual, 77);
    EXPECT_EQ(poller.polls, 0);
}

TEST_F(SessionBlocksTest, HeadersThatAnnounceNoLengthAreNone) {
    for (const char* const response : {"#0abc\n", "#xabc\n", "#3\n", "#312\n", "#2ab\n", "#\n"}) {
        fake.Respond(response);
        BYTE values[3] = {};
        std::int32_t actual = 0;
        EXPECT_EQ(session.ReadBlockNoPoll(values, 3, &actual, false, true),
                  kUnexpectedResponseStatus)
            << response;
        EXPECT_EQ(session.FlushRead(), S_OK);
    }
}

TEST_F(SessionBlocksTest, HeaderDoesNotGoOnInTheNextResponse) {
    fake.Respond("#2\n");
    fake.Respond("12next\n");
    BYTE values[3] = {};
    EXPECT_EQ(session.ReadBlockNoPoll(values, 3, nullptr, false, true), kUnexpectedResponseStatus);
    std::string text;
    EXPECT_EQ(session.ReadStringNoPoll(&text), S_OK);
    EXPECT_EQ(text, "12next");
}

TEST_F(SessionBlocksTest, SeekThatFindsNoBlockEndsWithTheTimeout) {
    fake.Respond("noise\n");
    BYTE values[3] = {};
    EXPECT_EQ(session.ReadBlock(values, 3, nullptr, true, true), kIoTimeoutStatus);
}

TEST_F(SessionBlocksTest, BlockElementsArriveInHostOrder) {
    fake.Respond("#14\x01\x02\x03\x04\n");
    SHORT values[2] = {};
    std::int32_t actual = 0;
    EXPECT_EQ(session.ReadBlock(values, 2, &actual, false, true), S_OK);
    EXPECT_THAT(values, ElementsAre(0x0102, 0x0304));
    ASSERT_EQ(session.SetByteSwap(false), S_OK);
    fake.Respond("#14\x01\x02\x03\x04\n");
    EXPECT_EQ(session.ReadBlock(values, 2, &actual, false, true), S_OK);
    EXPECT_THAT(values, ElementsAre(0x0201, 0x0403));
}

TEST_F(SessionBlocksTest, BlocksOfEveryElementTypeAreRead) {
    std::int32_t actual = 0;
    LONG whole = 0;
    fake.Respond("#14\x00\x01\x00\x00\n"s);
    EXPECT_EQ(session.ReadBlock(&whole, 1, &actual, false, true), S_OK);
    EXPECT_EQ(whole, 65536);
    FLOAT single = 0;
    fake.Respond("#14\x3F\x00\x00\x00\n"s);
    EXPECT_EQ(session.ReadBlock(&single, 1, &actual, false, true), S_OK);
    EXPECT_EQ(single, 0.5F);
    DOUBLE real = 0;
    fake.Respond("#18\xC0\x00\x00\x00\x00\x00\x00\x00\n"s);
    EXPECT_EQ(session.ReadBlock(&real, 1, &actual, false, true), S_OK);
    EXPECT_EQ(real, -2.0);
}

TEST_F(SessionBlocksTest, BlockShorterThanAnnouncedShowsInTheCount) {
    fake.Respond("#18abcde");
    BYTE values[8] = {};
    std::int32_t actual = 0;
    EXPECT_EQ(session.ReadBlockNoPoll(values, 8, &actual, false, false), kIoTimeoutStatus);
    EXPECT_EQ(actual, 5);
}

TEST_F(SessionBlocksTest, BlockReadRunsUnderItsTimeout) {
    fake.Respond("#11a\n");
    BYTE value = 0;
    EXPECT_EQ(session.ReadBlock(&value, 1, nullptr, false, true, 9000), S_OK);
    EXPECT_THAT(fake.CallsOf("viSetAttribute"),
                ElementsAre("viSetAttribute(TMO_VALUE, 9000)", "viSetAttribute(TMO_VALUE, 2000)"));
}

TEST_F(SessionBlocksTest, BlockReadRefusesBadArguments) {
    BYTE value = 0;
    EXPECT_EQ(session.ReadBlock(static_cast<BYTE*>(nullptr), 1, nullptr, false, true),
              kNullPointerStatus);
    EXPECT_EQ(session.ReadBlock(&value, -1, nullptr, false, true), E_INVALIDARG);
    EXPECT_THAT(fake.Calls(), IsEmpty());
}

TEST_F(SessionBlocksTest, VariantBlockIsMadeAtTheAnnouncedSize) {
    fake.Respond("#16\x01\x02\x03\x04\x05\x06\n");
    SAFEARRAY* array = MakeArray<LONG>({1, 2, 3}).Detach();  // destroyed by the read
    EXPECT_EQ(session.ReadBlock(&array, ElementKind::kShort, false, true), S_OK);
    const SafeArrayPtr result(array);
    EXPECT_THAT(result.Elements<SHORT>(), ElementsAre(0x0102, 0x0304, 0x0506));
    EXPECT_EQ(poller.polls, 1);
}

TEST_F(SessionBlocksTest, VariantBlockOfPartOfAnElementHoldsWholeOnes) {
    fake.Respond("#15\x01\x02\x03\x04\x05\n");
    SafeArrayPtr array;
    EXPECT_EQ(session.ReadBlockNoPoll(array.Out(), ElementKind::kShort, false, true), S_OK);
    EXPECT_THAT(array.Elements<SHORT>(), ElementsAre(0x0102, 0x0304));
}

TEST_F(SessionBlocksTest, VariantBlockThatCameShortIsCutToWhatCame) {
    fake.Respond("#16\x01\x02\x03");
    fake.Respond("\x04");
    SafeArrayPtr array;
    EXPECT_EQ(session.ReadBlockNoPoll(array.Out(), ElementKind::kShort, false, false), S_OK);
    EXPECT_THAT(array.Elements<SHORT>(), ElementsAre(0x0102, 0x0304));
}

TEST_F(SessionBlocksTest, EmptyVariantBlockIsAnEmptyArray) {
    fake.Respond("#10\n");
    SafeArrayPtr array;
    EXPECT_EQ(session.ReadBlockNoPoll(array.Out(), ElementKind::kDouble, false, true), S_OK);
    ASSERT_TRUE(array);
    EXPECT_TRUE(array.Elements<DOUBLE>().empty());
}

TEST_F(SessionBlocksTest, VariantBlockOfAnUnknownKindOrNullIsRefused) {
    SafeArrayPtr array;
    EXPECT_EQ(session.ReadBlock(array.Out(), ElementKind::kText, false, true), kInvalidValueStatus);
    EXPECT_EQ(session.ReadBlock(static_cast<SAFEARRAY**>(nullptr), ElementKind::kByte, false, true),
              kNullPointerStatus);
    EXPECT_THAT(reporter.reports, ElementsAre("ReportInvalidValue(eType | 6 | )",
                                              "ReportNullPointer(ReadBlock | ppsaData | )"));
    EXPECT_THAT(fake.Calls(), IsEmpty());
}

TEST_F(SessionBlocksTest, FormatBlockLargerThanItsTargetIsGoneFromTheBuffer) {
    fake.Respond("#15hello;7\n");
    BYTE values[2] = {};
    std::int32_t count = 2;
    std::int32_t behind = 0;
    EXPECT_EQ(session.ScanfNoFlush("%#b;%d", &count, values, &behind), S_OK);
    EXPECT_EQ(std::memcmp(values, "he", 2), 0);
    EXPECT_EQ(behind, 7);
}

}  // namespace
}  // namespace kestrion
