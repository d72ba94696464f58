#include "io/format_block.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "kestrion/platform/safe_array.h"
#include "tests/io/memory_buffer.h"

namespace kestrion {
namespace {

constexpr HRESULT kMore = IoStatusMoreData;

std::string Header(std::uint64_t bytes) {
    const auto header = FormatBlockHeader(bytes);
    return header ? std::string(header->Text()) : "none";
}

std::int64_t Length(std::string_view digits) {
    return ParseBlockLength({reinterpret_cast<const BYTE*>(digits.data()), digits.size()});
}

template <typename T>
std::vector<T> ToVector(const SafeArrayPtr& array) {
    const std::span<T> elements = array.Elements<T>();
    return {elements.begin(), elements.end()};
}

// Helpers
// -------------------------------------------------------------------------------------------

TEST(BlockHeader, CountsTheDigitsOfTheLength) {
    EXPECT_EQ(Header(24), "#224");
    EXPECT_EQ(Header(1000), "#41000");
    EXPECT_EQ(Header(0), "#10");
    EXPECT_EQ(Header(999999999), "#9999999999");
}

TEST(BlockHeader, CannotSayMoreThanNineDigits) {
    EXPECT_EQ(Header(1000000000), "none");
}

TEST(BlockHeader, LengthsAreDigitsOnly) {
    EXPECT_EQ(Length("5"), 5);
    EXPECT_EQ(Length("000012"), 12);
    EXPECT_EQ(Length("999999999"), 999999999);
    EXPECT_EQ(Length(""), -1);
    EXPECT_EQ(Length("1 "), -1);
    EXPECT_EQ(Length("-1"), -1);
    EXPECT_EQ(BlockLengthDigits('0'), 0);
    EXPECT_EQ(BlockLengthDigits('9'), 9);
    EXPECT_EQ(BlockLengthDigits('H'), -1);
}

TEST(ReverseElements, ReversesEachElementAndLeavesTheRest) {
    std::array<BYTE, 7> bytes = {1, 2, 3, 4, 5, 6, 7};
    ReverseElements(bytes, 2);
    EXPECT_EQ(bytes, (std::array<BYTE, 7>{2, 1, 4, 3, 6, 5, 7}));
    ReverseElements(bytes, 1);
    EXPECT_EQ(bytes, (std::array<BYTE, 7>{2, 1, 4, 3, 6, 5, 7}));
    ReverseElements(bytes, 4);
    EXPECT_EQ(bytes, (std::array<BYTE, 7>{3, 4, 1, 2, 6, 5, 7}));
}

// Writing
// -------------------------------------------------------------------------------------------

constexpr std::array<std::int16_t, 2> kShorts = {0x0102, 0x0304};

TEST(FormatWriteBlock, BytesBehindTheirHeader) {
    EXPECT_EQ(Written("CURVE %5b", "hello"), "CURVE #15hello");
    EXPECT_EQ(Written("%*b", 1000, std::string(1000, 'x').c_str()),
              "#41000" + std::string(1000, 'x'));
}

TEST(FormatWriteBlock, ElementsAreMostSignificantByteFirstWithSwap) {
    EXPECT_EQ(Written("%2hb", kShorts.data()), "#14\x01\x02\x03\x04");
    const std::array<std::int32_t, 1> longs = {0x01020304};
    EXPECT_EQ(Written("%1lb", longs.data()), "#14\x01\x02\x03\x04");
    const std::array<std::int64_t, 1> wide = {0x0102030405060708};
    EXPECT_EQ(Written("%1Ib", wide.data()), "#18\x01\x02\x03\x04\x05\x06\x07\x08");
    const std::array<float, 1> singles = {1.0F};  // 3F800000
    EXPECT_EQ(Written("%1zb", singles.data()), std::string("#14\x3F\x80\0\0", 7));
    const std::array<double, 1> doubles = {1.0};  // 3FF0000000000000
    EXPECT_EQ(Written("%1Zb", doubles.data()), std::string("#18\x3F\xF0\0\0\0\0\0\0", 11));
}

TEST(FormatWriteBlock, ElementsKeepTheHostsOrderWithoutSwap) {
    MemoryBuffer buffer;
    buffer.SetByteSwap(false);
    EXPECT_EQ(WriteTo(buffer, "%2hb", kShorts.data()), S_OK);
    EXPECT_EQ(buffer.Written(), "#14\x02\x01\x04\x03");
}

TEST(FormatWriteBlock, ManySwappedElementsGoOutInParts) {
    const std::vector<std::int16_t> values(1500, 0x4142);
    std::string expected = "#43000";
    for (std::size_t i = 0; i < values.size(); ++i) {
        expected += "AB";
    }
    EXPECT_EQ(Written("%1500hb", values.data()), expected);
}

TEST(FormatWriteBlock, NoElementsAreAHeaderAlone) {
    EXPECT_EQ(Written("%0hb", kShorts.data()), "#10");
}

TEST(FormatWriteBlock, AnIndefiniteBlockEndsWithALineFeedThatDoesNotFlush) {
    MemoryBuffer buffer;
    EXPECT_EQ(WriteTo(buffer, "%2hB", kShorts.data()), S_OK);
    EXPECT_EQ(buffer.Written(), "#0\x01\x02\x03\x04\n");
    EXPECT_TRUE(buffer.Flushed().empty());
}

TEST(FormatWriteBlock, ARawArrayNamesItsOrder) {
    EXPECT_EQ(Written("%2hy", kShorts.data()), "\x01\x02\x03\x04");
    EXPECT_EQ(Written("%2!obhy", kShorts.data()), "\x01\x02\x03\x04");
    EXPECT_EQ(Written("%2!olhy", kShorts.data()), "\x02\x01\x04\x03");
    EXPECT_EQ(Written("%5y", "hello"), "hello");
    EXPECT_EQ(Written("%2!oly", "hi"), "hi");
}

TEST(FormatWriteBlock, ARawArrayIgnoresTheSwapFlag) {
    for (const bool swap : {false, true}) {
        MemoryBuffer buffer;
        buffer.SetByteSwap(swap);
        EXPECT_EQ(WriteTo(buffer, "%2hy%2!olhy", kShorts.data(), kShorts.data()), S_OK);
        EXPECT_EQ(buffer.Written(), "\x01\x02\x03\x04\x02\x01\x04\x03");
    }
}

TEST(FormatWriteBlock, VariantArraysGiveTheirSize) {
    const SafeArrayPtr array(SafeArrayCreateVector(VT_I2, 0, 2));
    array.Elements<SHORT>()[0] = 0x0102;
    array.Elements<SHORT>()[1] = 0x0304;
    EXPECT_EQ(Written("%$Shb", array.Get()), "#14\x01\x02\x03\x04");
    EXPECT_EQ(Written("%1$Shb", array.Get()), "#12\x01\x02");
    EXPECT_EQ(Written("%9$ShB", array.Get()), "#0\x01\x02\x03\x04\n");
    EXPECT_EQ(Written("%$Shy", array.Get()), "\x01\x02\x03\x04");
    EXPECT_EQ(WriteStatus("%$Slb", array.Get()), E_INVALIDARG);
    EXPECT_EQ(array.Get()->cLocks, 0U);
}

TEST(FormatWriteBlock, MissingCountsAndNullsFail) {
    for (const char* format : {"%b", "%B", "%y"}) {
        EXPECT_EQ(WriteStatus(format, "hello"), E_UNEXPECTED) << format;
    }
    for (const char* format : {"%5b", "%5B", "%5y", "%$Sb", "%$SB", "%$Sy"}) {
        EXPECT_EQ(WriteStatus(format, nullptr), E_INVALIDARG) << format;
    }
}

// A caller whose count went wrong has no elements: none may be read.
TEST(FormatWriteBlock, ANegativeCountFromTheArgumentsIsUnexpected) {
    EXPECT_EQ(WriteStatus("%*hb", -2, kShorts.data()), E_UNEXPECTED);
    EXPECT_EQ(WriteStatus("%*hB", -2, kShorts.data()), E_UNEXPECTED);
    EXPECT_EQ(WriteStatus("%*hy", -2, kShorts.data()), E_UNEXPECTED);
}

TEST(FormatWriteBlock, ABlockTooLongForItsHeaderWritesNothing) {
    MemoryBuffer buffer;
    EXPECT_EQ(WriteTo(buffer, "%125000000Zb", kShorts.data()), E_INVALIDARG);
    EXPECT_EQ(buffer.Writes(), 0);
}

TEST(FormatWriteBlock, ABufferThatTakesLessIsUnexpected) {
    for (const std::size_t room : {1U, 4U, 6U}) {
        for (const bool swap : {false, true}) {
            for (const char* format : {"%2hb", "%2hB"}) {
                MemoryBuffer buffer;
                buffer.SetByteSwap(swap);
                buffer.TakeAtMost(room);
                EXPECT_EQ(WriteTo(buffer, format, kShorts.data()), E_UNEXPECTED) << format << room;
            }
        }
    }
    for (const char* format : {"%2hy", "%2!olhy"}) {
        MemoryBuffer buffer;
        buffer.TakeAtMost(3);
        EXPECT_EQ(WriteTo(buffer, format, kShorts.data()), E_UNEXPECTED) << format;
    }
}

TEST(FormatWriteBlock, AFailureOfTheBufferIsPassedOnAndUnlocksTheArray) {
    const SafeArrayPtr array(SafeArrayCreateVector(VT_I2, 0, 2));
    for (int write = 1; write <= 3; ++write) {
        MemoryBuffer buffer;
        buffer.FailWrite(write);
        EXPECT_EQ(WriteTo(buffer, "%$ShB", array.Get()), kFakeWriteFailure);
        EXPECT_EQ(array.Get()->cLocks, 0U);
    }
}

// Reading
// -------------------------------------------------------------------------------------------

TEST(FormatReadBlock, BytesBehindTheirHeader) {
    MemoryBuffer buffer("#15hello;1", "\n");
    char memory[] = "zzzzzz";
    EXPECT_EQ(ReadFrom(buffer, "%5b", memory), kMore);
    EXPECT_STREQ(memory, "helloz");
    EXPECT_EQ(buffer.Unread(), ";1");
    EXPECT_EQ(buffer.DirectReads(), 2);  // the last digit of the length, and the data at once
}

TEST(FormatReadBlock, AnythingAfterTheBlockCanBeReadByTheSameFormat) {
    char memory[] = "zzzzzz";
    std::int32_t value = 0;
    EXPECT_EQ(ReadText("#15hello;12", "%5b;%d", memory, &value), S_OK);
    EXPECT_EQ(value, 12);
}

TEST(FormatReadBlock, ATargetTooSmallKeepsWhatFitsAndTheBlockIsGone) {
    MemoryBuffer buffer("#15hello;1");
    char memory[] = "zzz";
    EXPECT_EQ(ReadFrom(buffer, "%2b", memory), kMore);
    EXPECT_STREQ(memory, "hez");
    EXPECT_EQ(buffer.Unread(), ";1");
}

TEST(FormatReadBlock, ATargetLargerThanTheBlockTakesTheBlockOnly) {
    MemoryBuffer buffer("#15hello", "\n");
    char memory[] = "zzzzzzzzz";
    std::int32_t count = 9;
    EXPECT_EQ(ReadFrom(buffer, "%#b", &count, memory), S_OK);
    EXPECT_STREQ(memory, "hellozzzz");
    EXPECT_EQ(count, 5);
}

TEST(FormatReadBlock, ElementsAreSwappedByTheFlag) {
    std::array<std::int16_t, 2> shorts = {};
    EXPECT_EQ(ReadText("#14\x01\x02\x03\x04", "%2hb", shorts.data()), S_OK);
    EXPECT_EQ(shorts, kShorts);
    MemoryBuffer buffer("#14\x02\x01\x04\x03");
    buffer.SetByteSwap(false);
    shorts = {};
    EXPECT_EQ(ReadFrom(buffer, "%2hb", shorts.data()), S_OK);
    EXPECT_EQ(shorts, kShorts);
    double real = 0;
    EXPECT_EQ(ReadText(std::string("#18\x3F\xF0\0\0\0\0\0\0", 11), "%1Zb", &real), S_OK);
    EXPECT_EQ(real, 1.0);
    float single = 0;
    EXPECT_EQ(ReadText(std::string("#14\x3F\x80\0\0", 7), "%1zb", &single), S_OK);
    EXPECT_EQ(single, 1.0F);
    std::int64_t wide = 0;
    EXPECT_EQ(ReadText("#18\x01\x02\x03\x04\x05\x06\x07\x08", "%1Ib", &wide), S_OK);
    EXPECT_EQ(wide, 0x0102030405060708);
}

TEST(FormatReadBlock, AnIndefiniteBlockReadsAsManyAsTheCountSays) {
    MemoryBuffer buffer("#0hello!", "\n");
    char memory[] = "zzzzzz";
    EXPECT_EQ(ReadFrom(buffer, "%5b", memory), kMore);
    EXPECT_STREQ(memory, "helloz");
    EXPECT_EQ(buffer.Unread(), "!");
}

TEST(FormatReadBlock, AnythingButAHeaderIsUnexpected) {
    char memory[16];
    for (const char* response : {"hello", "#", "#x", "#1", "#1x5", "#25", "#21x345", " #15hello"}) {
        EXPECT_EQ(ReadText(response, "%5b", memory), E_UNEXPECTED) << response;
    }
}

TEST(FormatReadBlock, AHeaderThatEndsTheResponseIsAnEmptyBlock) {
    char memory[] = "zzz";
    for (const char* response : {"#10", "#0"}) {
        std::int32_t count = 3;
        EXPECT_EQ(ReadText(response, "%#b", &count, memory), S_OK) << response;
        EXPECT_EQ(count, 0);
    }
    EXPECT_STREQ(memory, "zzz");
}

TEST(FormatReadBlock, AnAnnouncedBlockThatDoesNotComeIsATimeOut) {
    char memory[] = "zzz";
    std::int32_t count = 3;
    EXPECT_EQ(ReadText("#13", "%#b", &count, memory), kFakeTimeout);
    EXPECT_EQ(count, 3);
}

TEST(FormatReadBlock, DataMayBeginWithTheTerminator) {
    // The buffer takes the terminator off behind the header, as it stands at the end of a fill.
    MemoryBuffer buffer("#12", "\n\n");
    char memory[] = "zzz";
    EXPECT_EQ(ReadFrom(buffer, "%2b", memory), S_OK);
    EXPECT_STREQ(memory, "\n\nz");
}

TEST(FormatReadBlock, AnEmptyBlockInTheMiddleGoesOn) {
    std::int32_t value = 0;
    char memory[] = "zzz";
    EXPECT_EQ(ReadText("#10;5", "%3b;%d", memory, &value), S_OK);
    EXPECT_EQ(value, 5);
    EXPECT_EQ(ReadText("#10;6", "%*b;%d", &value), S_OK);
    EXPECT_EQ(value, 6);
}

TEST(FormatReadBlock, MissingCountsAndNullsFail) {
    char memory[16];
    std::int32_t count = 0;
    EXPECT_EQ(ReadText("#15hello", "%b", memory), E_UNEXPECTED);
    EXPECT_EQ(ReadText("#15hello", "%#b", &count, memory), E_UNEXPECTED);
    EXPECT_EQ(ReadText("hello", "%y", memory), E_UNEXPECTED);
    EXPECT_EQ(ReadText("#15hello", "%5b", nullptr), E_INVALIDARG);
    EXPECT_EQ(ReadText("#15hello", "%$Sb", nullptr), E_INVALIDARG);
    EXPECT_EQ(ReadText("hello", "%5y", nullptr), E_INVALIDARG);
    EXPECT_EQ(ReadText("#15hello", "%#b", nullptr), E_INVALIDARG);
}

TEST(FormatReadBlock, AShortBlockGivesTheCountThatCame) {
    MemoryBuffer buffer("#210hello!");
    buffer.DirectReadsEndWithResponse();
    std::array<std::int16_t, 5> values = {};
    std::int32_t count = 5;
    EXPECT_EQ(ReadFrom(buffer, "%#hb", &count, values.data()), S_OK);
    EXPECT_EQ(count, 3);
    EXPECT_EQ(values, (std::array<std::int16_t, 5>{0x6865, 0x6C6C, 0x6F21, 0, 0}));
}

TEST(FormatReadBlock, AFailureOfTheReadIsPassedOn) {
    for (const char* start : {"", "#", "#2", "#210", "#210he"}) {
        MemoryBuffer buffer(start);
        buffer.NeverEnds();
        char memory[16];
        std::int32_t count = 10;
        EXPECT_EQ(ReadFrom(buffer, "%#b", &count, memory), kFakeTimeout) << start;
        EXPECT_EQ(count, 10);
    }
}

TEST(FormatReadBlock, SuppressedDropsTheAnnouncedBytes) {
    const std::string data(2500, 'x');
    MemoryBuffer buffer("#42500" + data + ";7");
    std::int32_t value = 0;
    EXPECT_EQ(ReadFrom(buffer, "%*b;%d", &value), S_OK);
    EXPECT_EQ(value, 7);
}

TEST(FormatReadBlock, SuppressedIndefiniteDropsTheCountOrEverything) {
    std::int32_t value = 0;
    EXPECT_EQ(ReadText("#0\x01\x02\x03\x04;7", "%*2hb;%d", &value), S_OK);
    EXPECT_EQ(value, 7);
    MemoryBuffer buffer("#0abc");
    EXPECT_EQ(ReadFrom(buffer, "%*b"), S_OK);
    EXPECT_EQ(buffer.ReadFlushes(), 1);
}

TEST(FormatReadBlock, AVariantArrayTakesTheBlock) {
    SafeArrayPtr array;
    MemoryBuffer buffer("#15\x01\x02\x03\x04z;1");  // the odd byte belongs to no element
    EXPECT_EQ(ReadFrom(buffer, "%$Shb", array.Out()), kMore);
    EXPECT_EQ(ToVector<SHORT>(array), (std::vector<SHORT>{0x0102, 0x0304}));
    EXPECT_EQ(buffer.Unread(), ";1");
    std::int32_t count = 1;
    EXPECT_EQ(ReadText("#14\x01\x02\x03\x04;1", "%#$Shb", &count, array.Out()), kMore);
    EXPECT_EQ(ToVector<SHORT>(array), (std::vector<SHORT>{0x0102}));
    EXPECT_EQ(count, 1);
}

TEST(FormatReadBlock, AVariantArrayOfEachKind) {
    SafeArrayPtr array;
    EXPECT_EQ(ReadText("#12hi", "%$Sb", array.Out()), S_OK);
    EXPECT_EQ(ToVector<BYTE>(array), (std::vector<BYTE>{'h', 'i'}));
    EXPECT_EQ(ReadText("#14\x01\x02\x03\x04", "%$Slb", array.Out()), S_OK);
    EXPECT_EQ(ToVector<LONG>(array), (std::vector<LONG>{0x01020304}));
    EXPECT_EQ(ReadText(std::string("#14\x3F\x80\0\0", 7), "%$Szb", array.Out()), S_OK);
    EXPECT_EQ(ToVector<FLOAT>(array), (std::vector<FLOAT>{1.0F}));
    EXPECT_EQ(ReadText(std::string("#18\x3F\xF0\0\0\0\0\0\0", 11), "%$SZb", array.Out()), S_OK);
    EXPECT_EQ(ToVector<DOUBLE>(array), (std::vector<DOUBLE>{1.0}));
    EXPECT_EQ(ReadText("#10", "%$Sb", array.Out()), S_OK);
    EXPECT_EQ(array.Get()->rgsabound[0].cElements, 0U);
}

TEST(FormatReadBlock, AnIndefiniteBlockGrowsTheVariantArray) {
    std::string data;
    std::vector<SHORT> expected;
    for (int i = 0; i < 3333; ++i) {
        data += static_cast<char>(i >> 8);
        data += static_cast<char>(i & 0xFF);
        expected.push_back(static_cast<SHORT>(i));
    }
    MemoryBuffer buffer("#0" + data, "\n");
    SafeArrayPtr array;
    EXPECT_EQ(ReadFrom(buffer, "%$Shb", array.Out()), S_OK);
    EXPECT_EQ(ToVector<SHORT>(array), expected);
    EXPECT_EQ(buffer.DirectReads(), 0);  // only the buffer knows the end
}

TEST(FormatReadBlock, AnIndefiniteBlockOfWholeChunksEndsToo) {
    for (const std::size_t size : {999U, 1000U, 1001U, 2000U, 4000U}) {
        MemoryBuffer buffer("#0" + std::string(size, 'x'), "\n");
        SafeArrayPtr array;
        EXPECT_EQ(ReadFrom(buffer, "%$Sb", array.Out()), S_OK) << size;
        EXPECT_EQ(ToVector<BYTE>(array), std::vector<BYTE>(size, 'x'));
    }
}

TEST(FormatReadBlock, AHugeAnnouncementTakesNoMemoryAhead) {
    MemoryBuffer buffer("#9999999999hello");
    buffer.DirectReadsEndWithResponse();
    SafeArrayPtr array;
    EXPECT_EQ(ReadFrom(buffer, "%$Sb", array.Out()), S_OK);
    EXPECT_EQ(array.Get()->rgsabound[0].cElements, 5U);
}

TEST(FormatReadBlock, AFailureLeavesTheVariantArrayAlone) {
    for (const char* start : {"#210he", "#0he"}) {
        SAFEARRAY* const former = SafeArrayCreateVector(VT_UI1, 0, 2);
        SAFEARRAY* array = former;
        MemoryBuffer buffer(start);
        buffer.NeverEnds();
        EXPECT_EQ(ReadFrom(buffer, "%$Sb", &array), kFakeTimeout);
        EXPECT_EQ(array, former);
        EXPECT_EQ(SafeArrayDestroy(array), S_OK);
    }
}

TEST(FormatReadRaw, ElementsInTheNamedOrder) {
    std::array<std::int16_t, 2> values = {};
    EXPECT_EQ(ReadText("\x01\x02\x03\x04", "%2hy", values.data()), S_OK);
    EXPECT_EQ(values, kShorts);
    EXPECT_EQ(ReadText("\x01\x02\x03\x04", "%2!obhy", values.data()), S_OK);
    EXPECT_EQ(values, kShorts);
    MemoryBuffer buffer("\x02\x01\x04\x03");
    buffer.SetByteSwap(true);
    EXPECT_EQ(ReadFrom(buffer, "%2!olhy", values.data()), S_OK);
    EXPECT_EQ(values, kShorts);
}

TEST(FormatReadRaw, TheCountIsWrittenBack) {
    MemoryBuffer buffer("abcde");
    buffer.DirectReadsEndWithResponse();
    char memory[] = "zzzzzzzzz";
    std::int32_t count = 9;
    EXPECT_EQ(ReadFrom(buffer, "%#y", &count, memory), S_OK);
    EXPECT_STREQ(memory, "abcdezzzz");
    EXPECT_EQ(count, 5);
}

TEST(FormatReadRaw, AVariantArrayTakesTheCountOrAll) {
    SafeArrayPtr array;
    EXPECT_EQ(ReadText("\x01\x02\x03\x04", "%1$Shy", array.Out()), kMore);
    EXPECT_EQ(ToVector<SHORT>(array), (std::vector<SHORT>{0x0102}));
    MemoryBuffer buffer("\x01\x02\x03\x04", "\n");
    EXPECT_EQ(ReadFrom(buffer, "%!ol$Shy", array.Out()), S_OK);
    EXPECT_EQ(ToVector<SHORT>(array), (std::vector<SHORT>{0x0201, 0x0403}));
}

TEST(FormatReadRaw, SuppressedDropsTheCountOrEverything) {
    std::int32_t value = 0;
    EXPECT_EQ(ReadText("\x01\x02\x03\x04;7", "%*2hy;%d", &value), S_OK);
    EXPECT_EQ(value, 7);
    MemoryBuffer buffer("abc");
    EXPECT_EQ(ReadFrom(buffer, "%*y"), S_OK);
    EXPECT_EQ(buffer.ReadFlushes(), 1);
}

}  // namespace
}  // namespace kestrion
