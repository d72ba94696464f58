// Counts heap allocations: everyday formats need none.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "io/format_text_writer.h"
#include "tests/io/memory_buffer.h"
#include "tests/platform/allocation_count.h"

namespace kestrion {
namespace {

// A text that has its memory already, so that only the writer's own allocations count.
std::string ReservedText() {
    std::string text;
    text.reserve(4096);
    return text;
}

TEST(FormatAllocations, AnEverydayCommandNeedsNoHeap) {
    std::string target = ReservedText();
    CCStringWriter writer(target);
    const auto pack = PackArgs(2, 0.1, "ON", 5, "Z");
    ArgCursor cursor(pack);
    const std::size_t before = test::AllocationCount();
    const HRESULT status =
        FormatWrite(writer, "CH%d:SCALE %0.15lg;STATE %s;X %@H8d;Y %Qs", cursor, nullptr);
    const std::size_t after = test::AllocationCount();
    EXPECT_EQ(status, S_OK);
    EXPECT_EQ(target, "CH2:SCALE 0.1;STATE ON;X      #H5;Y \"Z\"");
    EXPECT_EQ(after - before, 0U);
}

TEST(FormatAllocations, WideNumbersNeedNoHeap) {
    std::string target = ReservedText();
    CCStringWriter writer(target);
    const auto pack = PackArgs(1e308, 1.0);
    ArgCursor cursor(pack);
    const std::size_t before = test::AllocationCount();
    const HRESULT status = FormatWrite(writer, "%400f,%.1500f", cursor, nullptr);
    const std::size_t after = test::AllocationCount();
    EXPECT_EQ(status, S_OK);
    EXPECT_EQ(target.size(), 400U + 1U + 1502U);
    EXPECT_EQ(after - before, 0U);
}

TEST(FormatAllocations, AnEverydayResponseNeedsNoHeap) {
    MemoryBuffer buffer("9.910000000000000E+37;-1.250000000000000E-09;42;CH1 x");
    FakeEnums enums;
    double first = 0;
    double second = 0;
    std::int32_t third = 0;
    char fourth[16];
    const auto pack = PackArgs(&first, &second, &third, fourth);
    ArgCursor cursor(pack);
    const std::size_t before = test::AllocationCount();
    const HRESULT status = FormatRead(buffer, "%lg;%lg;%d;%15s", cursor, &enums);
    const std::size_t after = test::AllocationCount();
    EXPECT_EQ(status, IoStatusMoreData);
    EXPECT_EQ(first, 9.91e37);
    EXPECT_EQ(second, -1.25e-9);
    EXPECT_EQ(third, 42);
    EXPECT_STREQ(fourth, "CH1");
    EXPECT_EQ(after - before, 0U);
}

}  // namespace
}  // namespace kestrion
