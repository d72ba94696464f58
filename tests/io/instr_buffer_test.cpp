#include "io/instr_buffer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <deque>
#include <memory>
#include <string>
#include <vector>

#include "tests/io/recording_partners.h"

namespace kestrion {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr HRESULT kBroken = MakeStatus(0x8004003E);

// An instrument that answers its reads from a list and notes every call.
class ScriptedIo final : public ILowLevelIo {
  public:
    struct Read {
        std::string bytes;
        HRESULT status;
    };
    std::deque<Read> reads;
    std::vector<std::string> calls;
    bool termChar = false;
    bool sendEnd = true;
    HRESULT getTermCharStatus = S_OK;
    HRESULT setTermCharStatus = S_OK;
    HRESULT getSendEndStatus = S_OK;
    HRESULT setSendEndStatus = S_OK;
    HRESULT writeStatus = S_OK;
    std::uint32_t writeLimit = 0xFFFFFFFF;

    HRESULT SetTerminationCharacterEnabled(bool enabled) override {
        calls.push_back(enabled ? "termchar on" : "termchar off");
        if (!Failed(setTermCharStatus)) {
            termChar = enabled;
        }
        return setTermCharStatus;
    }
    HRESULT GetTerminationCharacterEnabled(bool* enabled) override {
        *enabled = termChar;
        return getTermCharStatus;
    }
    HRESULT SetSendEndEnabled(bool enabled) override {
        calls.push_back(enabled ? "end on" : "end off");
        if (!Failed(setSendEndStatus)) {
            sendEnd = enabled;
        }
        return setSendEndStatus;
    }
    HRESULT GetSendEndEnabled(bool* enabled) override {
        *enabled = sendEnd;
        return getSendEndStatus;
    }
    HRESULT LowLevelReadNoPoll(BYTE* buffer, std::uint32_t count, std::uint32_t* actual,
                               std::int32_t timeout) override {
        EXPECT_EQ(timeout, -2);
        calls.push_back("read " + std::to_string(count));
        *actual = 0;
        if (reads.empty()) {
            return kIoTimeoutStatus;
        }
        const Read read = reads.front();
        reads.pop_front();
        EXPECT_LE(read.bytes.size(), count);
        std::memcpy(buffer, read.bytes.data(), read.bytes.size());
        *actual = static_cast<std::uint32_t>(read.bytes.size());
        return read.status;
    }
    HRESULT LowLevelReadStringNoPoll(std::string* text, std::uint32_t count,
                                     std::int32_t timeout) override {
        EXPECT_EQ(timeout, -2);
        calls.push_back("drop " + std::to_string(count));
        if (reads.empty()) {
            return kIoTimeoutStatus;
        }
        const Read read = reads.front();
        reads.pop_front();
        *text = read.bytes;
        return read.status;
    }
    HRESULT LowLevelWriteNoPoll(const BYTE* bytes, std::uint32_t count, std::uint32_t* actual,
                                std::int32_t timeout) override {
        EXPECT_EQ(timeout, -2);
        const std::string text(reinterpret_cast<const char*>(bytes), count);
        calls.push_back((count > 40 ? "write " + std::to_string(count) : "write " + text) +
                        (sendEnd ? " END" : ""));
        if (Failed(writeStatus)) {
            return writeStatus;
        }
        *actual = std::min(count, writeLimit);
        return writeStatus;
    }
};

// Memory that a test can take away.
bool memoryIsOut = false;
BufferMemory LimitedMemory(std::size_t size) {
    return memoryIsOut ? nullptr : AllocateBufferMemory(size);
}

class InstrBufferTest : public testing::Test {
  protected:
    ~InstrBufferTest() override { memoryIsOut = false; }

    std::string Read(std::uint32_t count, HRESULT expected, bool flush = false) {
        std::string text(count, '?');
        std::uint32_t actual = 0;
        EXPECT_EQ(buffer->ReadBytes(reinterpret_cast<BYTE*>(text.data()), count, &actual, flush),
                  expected);
        return text.substr(0, actual);
    }
    std::string ReadDirect(std::uint32_t count, HRESULT expected, bool flush = false) {
        std::string text(count, '?');
        std::uint32_t actual = 0;
        EXPECT_EQ(buffer->ReadDirect(reinterpret_cast<BYTE*>(text.data()), count, &actual, flush),
                  expected);
        return text.substr(0, actual);
    }
    HRESULT Write(std::string_view text, bool flush = false) {
        return buffer->WriteText(text, nullptr, flush);
    }

    ScriptedIo io;
    RecordingReporter reporter;
    std::unique_ptr<CInstrBuffer> buffer =
        CInstrBuffer::Create(io, reporter, "\n", "\n", LimitedMemory);
};

// Reading -----------------------------------------------------------------------------------------

TEST_F(InstrBufferTest, CountThatMatchesTheResponseEndsWithZeroAndTakesTheTerminator) {
    io.reads = {{"ABC\n", S_OK}};
    EXPECT_EQ(Read(3, S_OK), "ABC");
    EXPECT_THAT(io.calls, ElementsAre("read 4096"));
}

TEST_F(InstrBufferTest, UngetAfterACompleteResponseRestoresAByteOfTheTerminator) {
    io.reads = {{"ABC\n", S_OK}};
    EXPECT_EQ(Read(3, S_OK), "ABC");
    EXPECT_EQ(buffer->UngetByte(), S_OK);
    EXPECT_EQ(Read(1, S_OK), "\n");
    EXPECT_THAT(io.calls, ElementsAre("read 4096"));
}

TEST_F(InstrBufferTest, FewerBytesThanTheResponseLeaveMoreData) {
    io.reads = {{"ABC\n", S_OK}};
    EXPECT_EQ(Read(2, IoStatusMoreData), "AB");
    EXPECT_EQ(Read(1, S_OK), "C");
}

TEST_F(InstrBufferTest, MoreBytesThanTheResponseEndWithIt) {
    io.reads = {{"ABC\n", S_OK}};
    EXPECT_EQ(Read(10, S_OK), "ABC");
    EXPECT_THAT(io.calls, ElementsAre("read 4096"));
}

TEST_F(InstrBufferTest, ResponseWithoutTerminatorKeepsAllItsBytes) {
    io.reads = {{"ABC", S_OK}};
    EXPECT_EQ(Read(10, S_OK), "ABC");
}

TEST_F(InstrBufferTest, EmptyResponseGivesNothing) {
    io.reads = {{"\n", S_OK}};
    EXPECT_EQ(Read(10, S_OK), "");
}

TEST_F(InstrBufferTest, ResponseOf4096BytesHasItsTerminatorInASecondFill) {
    io.reads = {{std::string(4096, 'x'), IoStatusMoreData}, {"\n", S_OK}};
    EXPECT_EQ(Read(4096, IoStatusMoreData), std::string(4096, 'x'));
    EXPECT_THAT(io.calls, ElementsAre("read 4096"));
    EXPECT_EQ(Read(1, S_OK), "");
    EXPECT_THAT(io.calls, ElementsAre("read 4096", "read 4096"));
}

TEST_F(InstrBufferTest, ResponsesAroundMultiplesOf4096ComeOutWhole) {
    for (const std::size_t length : {4095U, 4096U, 4097U, 8191U, 8192U, 8193U}) {
        std::string wire(length, 'y');
        wire += '\n';
        for (std::size_t at = 0; at < wire.size(); at += 4096) {
            io.reads.push_back({wire.substr(at, 4096),
                                at + 4096 < wire.size() ? IoStatusMoreData : HRESULT{S_OK}});
        }
        EXPECT_EQ(Read(20000, S_OK), std::string(length, 'y')) << length;
        EXPECT_THAT(io.reads, IsEmpty()) << length;
    }
}

TEST_F(InstrBufferTest, TerminatorThatIsSplitOverTwoFillsKeepsItsFirstPart) {
    buffer->SetReadTerminator("\r\n");
    io.reads = {{std::string(4095, 'x') + "\r", IoStatusMoreData}, {"\n", S_OK}};
    EXPECT_EQ(Read(5000, S_OK), std::string(4095, 'x') + "\r\n");
}

TEST_F(InstrBufferTest, TerminatorIsTakenOffOnlyAtTheEndOfAResponse) {
    io.reads = {{"A\n", IoStatusMoreData}, {"B\n", S_OK}};
    EXPECT_EQ(Read(10, S_OK), "A\nB");
}

TEST_F(InstrBufferTest, EmptyReadTerminatorTakesNothingOff) {
    buffer->SetReadTerminator("");
    io.reads = {{"A\n", S_OK}};
    EXPECT_EQ(Read(10, S_OK), "A\n");
}

TEST_F(InstrBufferTest, FailedFillLeavesTheStateAndCountsWhatCameBefore) {
    io.reads = {{"AB", IoStatusMoreData}, {"", kIoTimeoutStatus}, {"C\n", S_OK}};
    EXPECT_EQ(Read(3, kIoTimeoutStatus), "AB");
    EXPECT_EQ(Read(3, S_OK), "C");
}

TEST_F(InstrBufferTest, ByteWiseReadsSeeMoreDataUntilTheLastByte) {
    io.reads = {{"12\n", S_OK}};
    BYTE byte = 0;
    EXPECT_EQ(buffer->GetByte(&byte), IoStatusMoreData);
    EXPECT_EQ(byte, '1');
    EXPECT_EQ(buffer->GetByte(&byte), S_OK);
    EXPECT_EQ(byte, '2');
}

// Byte by byte, what isn't the response's last byte is taken by a way of its own.
TEST_F(InstrBufferTest, ByteWiseReadsEndBeforeATerminatorOfAnyLength) {
    const std::string response = "3.14E-9";
    for (const std::string terminator : {"", "\n", "\r\n", "END"}) {
        for (std::size_t length = 1; length <= response.size(); ++length) {
            buffer->SetReadTerminator(terminator);
            io.reads = {{response.substr(0, length) + terminator, S_OK}};
            std::string got;
            HRESULT status = IoStatusMoreData;
            while (status == IoStatusMoreData) {
                BYTE byte = 0;
                status = buffer->GetByte(&byte);
                got += static_cast<char>(byte);
            }
            EXPECT_EQ(status, S_OK);
            EXPECT_EQ(got, response.substr(0, length)) << terminator;
        }
    }
    EXPECT_THAT(reporter.reports, ElementsAre());
}

TEST_F(InstrBufferTest, ByteWiseReadsGoOverTheEndOfAFill) {
    io.reads = {{"12\n", IoStatusMoreData}, {"3", IoStatusMoreData}, {"4\n", S_OK}};
    for (const char expected : {'1', '2', '\n', '3'}) {
        BYTE byte = 0;
        EXPECT_EQ(buffer->GetByte(&byte), IoStatusMoreData);
        EXPECT_EQ(byte, expected);
    }
    BYTE byte = 0;
    EXPECT_EQ(buffer->GetByte(&byte), S_OK);
    EXPECT_EQ(byte, '4');
}

TEST_F(InstrBufferTest, ByteWiseReadsGiveBytesBackToUnget) {
    io.reads = {{"ABCD\n", S_OK}};
    BYTE byte = 0;
    for (const char expected : {'A', 'B'}) {
        EXPECT_EQ(buffer->GetByte(&byte), IoStatusMoreData);
        EXPECT_EQ(byte, expected);
    }
    EXPECT_EQ(buffer->UngetByte(), S_OK);
    EXPECT_EQ(Read(2, IoStatusMoreData), "BC");
    EXPECT_EQ(Read(2, S_OK), "D");
}

TEST_F(InstrBufferTest, GetByteTellsThatTheResponseEndedWithoutAByte) {
    io.reads = {{std::string(4096, 'x'), IoStatusMoreData}, {"\n", S_OK}};
    EXPECT_EQ(Read(4096, IoStatusMoreData).size(), 4096U);
    BYTE byte = 0xFF;
    EXPECT_EQ(buffer->GetByte(&byte), S_FALSE);
    EXPECT_EQ(byte, 0);
}

TEST_F(InstrBufferTest, GetByteDoesNotPassForAByteWhatATransportNeverGave) {
    io.reads = {{"", IoStatusMoreData}};
    BYTE byte = 0xFF;
    EXPECT_EQ(buffer->GetByte(&byte), E_UNEXPECTED);
}

TEST_F(InstrBufferTest, UngetOnAnIdleBufferFailsWithItsMessage) {
    EXPECT_EQ(buffer->UngetByte(), kOutOfMemoryStatus);
    EXPECT_THAT(reporter.reports,
                ElementsAre("ReportOutOfMemory(Can't push character back into read buffer.  "
                            "Buffer has not been read from.)"));
}

TEST_F(InstrBufferTest, UngetGivesTheByteOnceMore) {
    io.reads = {{"ABC\n", S_OK}};
    EXPECT_EQ(Read(2, IoStatusMoreData), "AB");
    EXPECT_EQ(buffer->UngetByte(), S_OK);
    EXPECT_EQ(Read(5, S_OK), "BC");
}

TEST_F(InstrBufferTest, UngetBehindAFullFillKeepsTheRestInTheInstrumentKnown) {
    io.reads = {{"AB", IoStatusMoreData}, {"C\n", S_OK}};
    EXPECT_EQ(Read(2, IoStatusMoreData), "AB");
    EXPECT_EQ(buffer->UngetByte(), S_OK);
    EXPECT_EQ(Read(5, S_OK), "BC");
}

TEST_F(InstrBufferTest, NullTargetsAreReportedByTheirNames) {
    EXPECT_EQ(buffer->ReadBytes(nullptr, 1, nullptr, false), kNullPointerStatus);
    EXPECT_EQ(buffer->Read(nullptr, 1, nullptr, false), kNullPointerStatus);
    EXPECT_EQ(buffer->GetByte(nullptr), kNullPointerStatus);
    EXPECT_EQ(buffer->ReadDirect(nullptr, 1, nullptr, false), kNullPointerStatus);
    EXPECT_EQ(buffer->ReadToArray(nullptr, 1, false), kNullPointerStatus);
    EXPECT_EQ(buffer->ReadToString(nullptr, 1, false), kNullPointerStatus);
    EXPECT_EQ(buffer->WriteBytes(nullptr, 1, nullptr, false), kNullPointerStatus);
    EXPECT_EQ(buffer->WriteArray(nullptr, 1, nullptr, false), kNullPointerStatus);
    EXPECT_EQ(buffer->WriteWideString(nullptr, nullptr, false), kNullPointerStatus);
    EXPECT_THAT(reporter.reports,
                ElementsAre("ReportNullPointer(pBuf | )", "ReportNullPointer(pBuf | )",
                            "ReportNullPointer(pBuf | )", "ReportNullPointer(pBuf | )",
                            "ReportNullPointer(ppsaBuf | )", "ReportNullPointer(pbstrBuf | )",
                            "ReportNullPointer(pBuf | )", "ReportNullPointer(ppsaBuf | )",
                            "ReportNullPointer(pbstrBuf | )"));
    EXPECT_THAT(io.calls, IsEmpty());
}

TEST_F(InstrBufferTest, ReadWithFlushDropsTheRestInBufferAndInstrument) {
    io.reads = {{"ABCD", IoStatusMoreData}, {"EF", IoStatusMoreData}, {"G\n", S_OK}};
    EXPECT_EQ(Read(2, S_OK, true), "AB");
    EXPECT_THAT(io.calls, ElementsAre("read 4096", "drop 1000", "drop 1000"));
}

TEST_F(InstrBufferTest, FlushReadAfterACompleteResponseMakesNoRead) {
    io.reads = {{"ABC\n", S_OK}};
    EXPECT_EQ(Read(1, IoStatusMoreData), "A");
    EXPECT_EQ(buffer->FlushRead(), S_OK);
    EXPECT_THAT(io.calls, ElementsAre("read 4096"));
    io.reads = {{"XY\n", S_OK}};
    EXPECT_EQ(Read(10, S_OK), "XY");
}

TEST_F(InstrBufferTest, FlushReadOnAnIdleBufferMakesNoRead) {
    EXPECT_EQ(buffer->FlushRead(), S_OK);
    EXPECT_THAT(io.calls, IsEmpty());
}

TEST_F(InstrBufferTest, FailedFlushReadLeavesAnIdleBufferAllTheSame) {
    io.reads = {{"AB", IoStatusMoreData}, {"", kIoTimeoutStatus}};
    EXPECT_EQ(Read(1, IoStatusMoreData), "A");
    EXPECT_EQ(buffer->FlushRead(), kIoTimeoutStatus);
    EXPECT_EQ(buffer->FlushRead(), S_OK);
    EXPECT_EQ(buffer->UngetByte(), kOutOfMemoryStatus);
}

TEST_F(InstrBufferTest, ReadToStringKeepsEachByteAsAByte) {
    io.reads = {{"ABC\n", S_OK}};
    BstrPtr text;
    EXPECT_EQ(buffer->ReadToString(text.Out(), 10, false), S_OK);
    ASSERT_EQ(SysStringByteLen(text.Get()), 3U);
    EXPECT_EQ(std::memcmp(text.Get(), "ABC", 3), 0);
}

TEST_F(InstrBufferTest, ReadToArrayHoldsWhatCame) {
    io.reads = {{"ABC\n", S_OK}};
    SafeArrayPtr array;
    EXPECT_EQ(buffer->ReadToArray(array.Out(), 10, false), S_OK);
    EXPECT_THAT(array.Elements<BYTE>(), ElementsAre('A', 'B', 'C'));
}

TEST_F(InstrBufferTest, ReadsIntoNewMemoryThatFailLeaveNull) {
    SafeArrayPtr array;
    BstrPtr text;
    EXPECT_EQ(buffer->ReadToArray(array.Out(), 10, false), kIoTimeoutStatus);
    EXPECT_EQ(buffer->ReadToString(text.Out(), 10, false), kIoTimeoutStatus);
    EXPECT_EQ(array.Get(), nullptr);
    EXPECT_EQ(text.Get(), nullptr);
}

TEST_F(InstrBufferTest, ReadToStringWithoutMemoryIsReported) {
    memoryIsOut = true;
    BstrPtr text;
    EXPECT_EQ(buffer->ReadToString(text.Out(), 10, false), kOutOfMemoryStatus);
    EXPECT_THAT(reporter.reports,
                ElementsAre("ReportOutOfMemory(Could not allocate BSTR memory for Read.)"));
    EXPECT_THAT(io.calls, IsEmpty());
}

// Direct reads ------------------------------------------------------------------------------------

TEST_F(InstrBufferTest, DirectReadWithNothingBufferedIsOneReadOfTheTransport) {
    io.reads = {{"12345", IoStatusMoreData}};
    EXPECT_EQ(ReadDirect(5, IoStatusMoreData), "12345");
    EXPECT_THAT(io.calls, ElementsAre("read 5"));
}

TEST_F(InstrBufferTest, DirectReadTakesTheBufferFirstAndThenTheInstrument) {
    io.reads = {{"#15he", IoStatusMoreData}, {"llo", IoStatusMoreData}};
    EXPECT_EQ(Read(3, IoStatusMoreData), "#15");
    EXPECT_EQ(ReadDirect(5, IoStatusMoreData), "hello");
    EXPECT_THAT(io.calls, ElementsAre("read 4096", "read 3"));
}

TEST_F(InstrBufferTest, DirectReadServedFromTheBufferReadsNothing) {
    io.reads = {{"#15hello\n", S_OK}};
    EXPECT_EQ(Read(3, IoStatusMoreData), "#15");
    EXPECT_EQ(ReadDirect(4, IoStatusMoreData), "hell");
    EXPECT_EQ(ReadDirect(1, S_OK), "o");
    EXPECT_EQ(ReadDirect(1, S_OK), "\n");
    EXPECT_THAT(io.calls, ElementsAre("read 4096"));
}

TEST_F(InstrBufferTest, DirectReadTurnsTheTerminationCharacterOffAndOnAgain) {
    io.termChar = true;
    io.reads = {{"A\nB", IoStatusMoreData}};
    EXPECT_EQ(ReadDirect(3, IoStatusMoreData), "A\nB");
    EXPECT_THAT(io.calls, ElementsAre("termchar off", "read 3", "termchar on"));
}

TEST_F(InstrBufferTest, DirectReadThatFailsStillTurnsTheTerminationCharacterOn) {
    io.termChar = true;
    io.reads = {{"AB", kIoTimeoutStatus}};
    EXPECT_EQ(ReadDirect(3, kIoTimeoutStatus), "AB");
    EXPECT_TRUE(io.termChar);
}

TEST_F(InstrBufferTest, DirectReadEndsWhenTheTerminationCharacterCannotBeAskedFor) {
    io.getTermCharStatus = kBroken;
    EXPECT_EQ(ReadDirect(3, kBroken), "");
    EXPECT_THAT(io.calls, IsEmpty());
}

TEST_F(InstrBufferTest, DirectReadReportsThatTheTerminationCharacterCouldNotBeSet) {
    io.termChar = true;
    io.setTermCharStatus = kBroken;
    EXPECT_EQ(ReadDirect(3, kBroken), "");
    EXPECT_THAT(io.calls, ElementsAre("termchar off", "termchar on"));
}

TEST_F(InstrBufferTest, DirectReadWithFlushDropsTheRest) {
    io.reads = {{"AB", IoStatusMoreData}, {"CD\n", S_OK}};
    EXPECT_EQ(ReadDirect(2, S_OK, true), "AB");
    EXPECT_THAT(io.calls, ElementsAre("read 2", "drop 1000"));
}

// Writing -----------------------------------------------------------------------------------------

TEST_F(InstrBufferTest, FlushWriteWithNothingWrittenSendsNothing) {
    EXPECT_EQ(buffer->FlushWrite(true), S_OK);
    EXPECT_EQ(buffer->FlushWrite(false), S_OK);
    EXPECT_THAT(io.calls, IsEmpty());
}

TEST_F(InstrBufferTest, FlushAddsTheTerminatorOnce) {
    EXPECT_EQ(Write("*RST"), S_OK);
    EXPECT_EQ(buffer->FlushWrite(true), S_OK);
    EXPECT_EQ(Write("*CLS\n", true), S_OK);
    EXPECT_THAT(io.calls, ElementsAre("write *RST\n END", "write *CLS\n END"));
}

TEST_F(InstrBufferTest, MessageShorterThanTheTerminatorGetsIt) {
    EXPECT_EQ(buffer->SetWriteTerminator("\r\n"), S_OK);
    EXPECT_EQ(Write("\n", true), S_OK);
    EXPECT_THAT(io.calls, ElementsAre("write \n\r\n END"));
}

TEST_F(InstrBufferTest, EmptyWriteTerminatorAddsNothing) {
    EXPECT_EQ(buffer->SetWriteTerminator(""), S_OK);
    EXPECT_EQ(Write("A", true), S_OK);
    EXPECT_THAT(io.calls, ElementsAre("write A END"));
}

TEST_F(InstrBufferTest, FlushWithoutEndAddsNoTerminatorAndPutsEndBackOn) {
    EXPECT_EQ(Write("AB"), S_OK);
    EXPECT_EQ(buffer->FlushWrite(false), S_OK);
    EXPECT_THAT(io.calls, ElementsAre("end off", "write AB", "end on"));
}

TEST_F(InstrBufferTest, FlushWithoutEndLeavesEndOffWhereItWasOff) {
    io.sendEnd = false;
    EXPECT_EQ(Write("AB"), S_OK);
    EXPECT_EQ(buffer->FlushWrite(false), S_OK);
    EXPECT_THAT(io.calls, ElementsAre("write AB"));
}

TEST_F(InstrBufferTest, LongMessageLeavesInFullBuffersAndEndsWithTheLastPiece) {
    EXPECT_EQ(Write(std::string(4100, 'x')), S_OK);
    EXPECT_EQ(buffer->FlushWrite(true), S_OK);
    EXPECT_THAT(io.calls, ElementsAre("end off", "write 4096", "end on", "write xxxx\n END"));
}

TEST_F(InstrBufferTest, MessageOfExactlyOneBufferLeavesWithoutEndOrTerminator) {
    EXPECT_EQ(Write(std::string(4096, 'x'), true), S_OK);
    EXPECT_THAT(io.calls, ElementsAre("end off", "write 4096", "end on"));
}

TEST_F(InstrBufferTest, EndIsBackOnAfterAFullBufferThatCouldNotBeWritten) {
    io.writeStatus = kBroken;
    std::uint32_t actual = 77;
    const std::string text(4097, 'x');
    EXPECT_EQ(buffer->WriteText(text, &actual, false), kBroken);
    EXPECT_TRUE(io.sendEnd);
    EXPECT_EQ(actual, 77U);
    EXPECT_THAT(io.calls, ElementsAre("end off", "write 4096", "end on"));
}

TEST_F(InstrBufferTest, FailedWriteKeepsTheDataForTheNextFlush) {
    io.writeStatus = kBroken;
    EXPECT_EQ(Write("AB", true), kBroken);
    io.writeStatus = S_OK;
    EXPECT_EQ(buffer->FlushWrite(true), S_OK);
    EXPECT_THAT(io.calls, ElementsAre("write AB\n END", "write AB\n END"));
}

TEST_F(InstrBufferTest, ShortWriteIsReportedAndTheDataIsGone) {
    io.writeLimit = 2;
    EXPECT_EQ(Write("ABCD", true), kIoErrorStatus);
    EXPECT_THAT(reporter.reports,
                ElementsAre("ReportIoError(Flush of formatted I/O write buffer only successfully "
                            "sent 2 of 5 bytes to the device.)"));
    EXPECT_EQ(buffer->FlushWrite(true), S_OK);
    EXPECT_THAT(io.calls, ElementsAre("write ABCD\n END"));
}

TEST_F(InstrBufferTest, FlushWithoutEndEndsWhenSendEndCannotBeAskedFor) {
    EXPECT_EQ(Write("AB"), S_OK);
    io.getSendEndStatus = kBroken;
    EXPECT_EQ(buffer->FlushWrite(false), kBroken);
    EXPECT_THAT(io.calls, IsEmpty());
}

TEST_F(InstrBufferTest, FlushWithoutEndSendsNothingWhenEndStaysOn) {
    EXPECT_EQ(Write("AB"), S_OK);
    io.setSendEndStatus = kBroken;
    EXPECT_EQ(buffer->FlushWrite(false), kBroken);
    EXPECT_THAT(io.calls, ElementsAre("end off", "end on"));
}

TEST_F(InstrBufferTest, WideTextIsNarrowedToBytes) {
    const BstrPtr text(std::u16string_view(u"A\u00A0B"));
    std::uint32_t actual = 0;
    EXPECT_EQ(buffer->WriteWideString(text.Get(), &actual, true), S_OK);
    EXPECT_EQ(actual, 3U);
    EXPECT_THAT(io.calls, ElementsAre("write A\xA0"
                                      "B\n END"));
}

TEST_F(InstrBufferTest, ArrayIsWrittenUpToItsSize) {
    SafeArrayPtr array(SafeArrayCreateVector(VT_UI1, 0, 3));
    std::memcpy(array.Elements<BYTE>().data(), "ABC", 3);
    std::uint32_t actual = 0;
    EXPECT_EQ(buffer->WriteArray(array.Get(), 10, &actual, false), S_OK);
    EXPECT_EQ(actual, 3U);
    EXPECT_EQ(buffer->WriteArray(array.Get(), 1, &actual, true), S_OK);
    EXPECT_EQ(actual, 1U);
    EXPECT_THAT(io.calls, ElementsAre("write ABCA\n END"));
}

TEST_F(InstrBufferTest, ArrayOfAnotherTypeIsRefused) {
    const SafeArrayPtr array(SafeArrayCreateVector(VT_I4, 0, 3));
    EXPECT_EQ(buffer->WriteArray(array.Get(), 3, nullptr, true), kInvalidValueStatus);
    EXPECT_THAT(reporter.reports,
                ElementsAre("ReportInvalidValue(psa | <Unknown Value> | SAFEARRAY was not of the "
                            "expected type.)"));
}

TEST_F(InstrBufferTest, EmptyTextIsNoMessage) {
    EXPECT_EQ(Write(std::string_view(), true), S_OK);
    EXPECT_THAT(io.calls, IsEmpty());
}

// Sizes and terminators ---------------------------------------------------------------------------

TEST_F(InstrBufferTest, SizeOfBothFirstDropsTheReadSideThenSendsTheWriteSideWithEnd) {
    io.reads = {{"AB", IoStatusMoreData}, {"C\n", S_OK}};
    EXPECT_EQ(Read(1, IoStatusMoreData), "A");
    EXPECT_EQ(Write("X"), S_OK);
    io.calls.clear();
    EXPECT_EQ(buffer->SetBufferSize(IoBufferKind::kBoth, 10), S_OK);
    EXPECT_THAT(io.calls, ElementsAre("drop 1000", "write X\n END"));
    std::uint32_t size = 0;
    EXPECT_EQ(buffer->GetReadBufferSize(&size), S_OK);
    EXPECT_EQ(size, 10U);
    EXPECT_EQ(buffer->GetWriteBufferSize(&size), S_OK);
    EXPECT_EQ(size, 10U);
}

TEST_F(InstrBufferTest, SizesAre4096AtFirst) {
    std::uint32_t size = 0;
    EXPECT_EQ(buffer->GetReadBufferSize(&size), S_OK);
    EXPECT_EQ(size, 4096U);
    EXPECT_EQ(buffer->GetWriteBufferSize(&size), S_OK);
    EXPECT_EQ(size, 4096U);
    EXPECT_TRUE(buffer->GetByteSwap());
}

TEST_F(InstrBufferTest, OneSideIsResizedAlone) {
    EXPECT_EQ(Write("X"), S_OK);
    EXPECT_EQ(buffer->SetBufferSize(IoBufferKind::kRead, 10), S_OK);
    EXPECT_THAT(io.calls, IsEmpty());
    EXPECT_EQ(buffer->SetBufferSize(IoBufferKind::kWrite, 4), S_OK);
    EXPECT_EQ(Write("ABCDE", true), S_OK);
    EXPECT_THAT(io.calls,
                ElementsAre("write X\n END", "end off", "write ABCD", "end on", "write E\n END"));
    io.reads = {{"0123456789", IoStatusMoreData}};
    EXPECT_EQ(Read(1, IoStatusMoreData), "0");
    EXPECT_EQ(io.calls.back(), "read 10");
}

TEST_F(InstrBufferTest, UnknownSideIsSuccessWithoutEffect) {
    EXPECT_EQ(Write("X"), S_OK);
    EXPECT_EQ(buffer->SetBufferSize(static_cast<IoBufferKind>(3), 10), S_OK);
    std::uint32_t size = 0;
    EXPECT_EQ(buffer->GetReadBufferSize(&size), S_OK);
    EXPECT_EQ(size, 4096U);
    EXPECT_THAT(io.calls, IsEmpty());
}

TEST_F(InstrBufferTest, SizeIsNotChangedWhenTheFlushFails) {
    EXPECT_EQ(Write("X"), S_OK);
    io.writeStatus = kBroken;
    EXPECT_EQ(buffer->SetBufferSize(IoBufferKind::kWrite, 10), kBroken);
    std::uint32_t size = 0;
    EXPECT_EQ(buffer->GetWriteBufferSize(&size), S_OK);
    EXPECT_EQ(size, 4096U);
}

TEST_F(InstrBufferTest, SizesWithoutMemoryAreReportedAndTheOldBuffersGoOnWorking) {
    memoryIsOut = true;
    EXPECT_EQ(buffer->SetBufferSize(IoBufferKind::kRead, 12345), kOutOfMemoryStatus);
    EXPECT_EQ(buffer->SetBufferSize(IoBufferKind::kWrite, 54321), kOutOfMemoryStatus);
    EXPECT_THAT(reporter.reports,
                ElementsAre("ReportOutOfMemory(Couldn't allocate formatted I/O read buffer with a "
                            "capacity of 12345 bytes.)",
                            "ReportOutOfMemory(Couldn't allocate formatted I/O write buffer with a "
                            "capacity of 54321 bytes.)"));
    io.reads = {{"AB\n", S_OK}};
    EXPECT_EQ(Read(10, S_OK), "AB");
    EXPECT_EQ(Write("X", true), S_OK);
}

TEST_F(InstrBufferTest, WriteTerminatorChangesUnderAWaitingMessage) {
    EXPECT_EQ(Write("AB"), S_OK);
    EXPECT_EQ(buffer->SetWriteTerminator(";END\n"), S_OK);
    EXPECT_EQ(buffer->FlushWrite(true), S_OK);
    EXPECT_THAT(io.calls, ElementsAre("write AB;END\n END"));
}

TEST_F(InstrBufferTest, WriteTerminatorWithoutMemoryIsReportedAndTheOldOneStays) {
    EXPECT_EQ(Write("AB"), S_OK);
    memoryIsOut = true;
    EXPECT_EQ(buffer->SetWriteTerminator("\r\n"), kOutOfMemoryStatus);
    EXPECT_THAT(reporter.reports,
                ElementsAre("ReportOutOfMemory(Couldn't allocate formatted I/O write buffer with a "
                            "capacity of 4096 bytes.)"));
    EXPECT_EQ(buffer->FlushWrite(true), S_OK);
    EXPECT_THAT(io.calls, ElementsAre("write AB\n END"));
}

TEST_F(InstrBufferTest, BufferOfNoBytesRefusesToWriteInPlaceOfHanging) {
    EXPECT_EQ(buffer->SetBufferSize(IoBufferKind::kWrite, 0), S_OK);
    EXPECT_EQ(Write("A", true), E_UNEXPECTED);
}

TEST_F(InstrBufferTest, CreationWithoutMemoryGivesNothing) {
    memoryIsOut = true;
    EXPECT_EQ(CInstrBuffer::Create(io, reporter, "\n", "\n", LimitedMemory), nullptr);
    EXPECT_THAT(reporter.reports, IsEmpty());
}

TEST_F(InstrBufferTest, ByteSwapIsAFlag) {
    buffer->SetByteSwap(false);
    EXPECT_FALSE(buffer->GetByteSwap());
}

}  // namespace
}  // namespace kestrion
