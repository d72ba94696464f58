#include "io/format_text_writer.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <string>

#include "kestrion/platform/bstr.h"
#include "tests/io/memory_buffer.h"

namespace kestrion {
namespace {

TEST(CCStringWriter, AppendsToItsText) {
    std::string text = "CH1 ";
    FakeEnums enums;
    const auto pack = PackArgs(2, 1);
    ArgCursor cursor(pack);
    EXPECT_EQ(FormatToText(text, &enums, "%03d %{Mode}s\n", cursor), S_OK);
    EXPECT_EQ(text, "CH1 002 PEAKDETECT\n");
}

TEST(CCStringWriter, AFailureKeepsWhatEarlierPiecesMade) {
    std::string text;
    const auto pack = PackArgs(2, nullptr);
    ArgCursor cursor(pack);
    EXPECT_EQ(FormatToText(text, nullptr, "%d,%s", cursor), E_INVALIDARG);
    EXPECT_EQ(text, "2,");
    ArgCursor none({});
    EXPECT_EQ(FormatToText(text, nullptr, "50%", none), E_UNEXPECTED);
    EXPECT_EQ(text, "2,");
}

TEST(CCStringWriter, BlocksAreInHostOrder) {
    std::string text;
    const std::array<std::int16_t, 1> values = {0x4142};
    const auto pack = PackArgs(values.data());
    ArgCursor cursor(pack);
    EXPECT_EQ(FormatToText(text, nullptr, "%1hb", cursor), S_OK);
    EXPECT_EQ(text, "#12BA");
}

TEST(CCStringWriter, EveryWriteOperationAppends) {
    std::string text;
    CCStringWriter writer(text);
    std::uint32_t actual = 0;
    EXPECT_EQ(writer.WriteChar('a', true), S_OK);
    EXPECT_EQ(writer.WriteText("bc", &actual, true), S_OK);
    EXPECT_EQ(actual, 2U);
    const BstrPtr wide(u"d\u00A0");
    EXPECT_EQ(writer.WriteWideString(wide.Get(), &actual, false), S_OK);
    EXPECT_EQ(actual, 2U);
    const BYTE bytes[] = {'e', 0};
    EXPECT_EQ(writer.WriteBytes(bytes, 2, &actual, false), S_OK);
    SafeArrayPtr array(SafeArrayCreateVector(VT_UI1, 0, 2));
    array.Elements<BYTE>()[0] = 'f';
    EXPECT_EQ(writer.WriteArray(array.Get(), 1, nullptr, false), S_OK);
    EXPECT_EQ(text, std::string("abcd\xA0"
                                "e\0f",
                                8));
    EXPECT_EQ(array.Get()->cLocks, 0U);
}

TEST(CCStringWriter, BadSourcesAreInvalid) {
    std::string text;
    CCStringWriter writer(text);
    std::uint32_t actual = 9;
    EXPECT_EQ(writer.WriteBytes(nullptr, 1, &actual, false), E_INVALIDARG);
    EXPECT_EQ(writer.WriteBytes(nullptr, 0, &actual, false), S_OK);
    EXPECT_EQ(actual, 0U);
    EXPECT_EQ(writer.WriteArray(nullptr, 0, nullptr, false), E_INVALIDARG);
    SafeArrayPtr array(SafeArrayCreateVector(VT_UI1, 0, 2));
    EXPECT_EQ(writer.WriteArray(array.Get(), 3, nullptr, false), E_INVALIDARG);
    EXPECT_EQ(text, "");
}

TEST(CCStringWriter, TheOtherOperationsDoNothing) {
    std::string text = "x";
    CCStringWriter writer(text);
    BYTE byte = 5;
    std::uint32_t actual = 9;
    EXPECT_EQ(writer.GetByte(&byte), S_OK);
    EXPECT_EQ(byte, 5);
    EXPECT_EQ(writer.ReadBytes(&byte, 1, &actual, false), S_OK);
    EXPECT_EQ(actual, 0U);
    EXPECT_EQ(writer.ReadDirect(&byte, 1, nullptr, false), S_OK);
    EXPECT_EQ(writer.Read(&byte, 1, nullptr, false), S_OK);
    EXPECT_EQ(writer.ReadToString(nullptr, 1, false), S_OK);
    EXPECT_EQ(writer.ReadToArray(nullptr, 1, false), S_OK);
    EXPECT_EQ(writer.UngetByte(), S_OK);
    EXPECT_EQ(writer.FlushRead(), S_OK);
    EXPECT_EQ(writer.FlushWrite(true), S_OK);
    EXPECT_EQ(writer.SetBufferSize(IoBufferKind::kBoth, 1), S_OK);
    EXPECT_EQ(writer.GetReadBufferSize(nullptr), S_OK);
    EXPECT_EQ(writer.GetWriteBufferSize(nullptr), S_OK);
    writer.SetByteSwap(true);
    EXPECT_FALSE(writer.GetByteSwap());
    EXPECT_EQ(text, "x");
}

}  // namespace
}  // namespace kestrion
