// Counts heap allocations: everyday formats need none, once they have run.
#include <gtest/gtest.h>

#include <cstdint>
#include <new>
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

// The allocations of writing `format`, which has to give `expected`.
template <typename... Arguments>
std::size_t AllocationsOfWriting(std::string_view expected, std::string_view format,
                                 Arguments... arguments) {
    std::string target = ReservedText();
    CCStringWriter writer(target);
    const auto pack = PackArgs(arguments...);
    ArgCursor cursor(pack);
    HRESULT status = E_FAIL;
    const std::size_t count =
        test::CountAllocations([&] { status = FormatWrite(writer, format, cursor, nullptr); });
    EXPECT_EQ(status, S_OK);
    EXPECT_EQ(target, expected);
    return count;
}

TEST(FormatAllocations, AnEverydayCommandNeedsNoHeapOnceItHasRun) {
    const auto run = [] {
        return AllocationsOfWriting("CH2:SCALE 0.1;STATE ON;X      #H5;Y \"Z\"",
                                    "CH%d:SCALE %0.15lg;STATE %s;X %@H8d;Y %Qs", 2, 0.1, "ON", 5,
                                    "Z");
    };
    EXPECT_GT(run(), 0U);
    EXPECT_EQ(run(), 0U);
}

TEST(FormatAllocations, WideNumbersNeedNoHeapOnceTheyHaveRun) {
    std::string target = ReservedText();
    std::size_t allocations = 0;
    for (int run = 0; run < 2; ++run) {
        target.clear();
        CCStringWriter writer(target);
        const auto pack = PackArgs(1e308, 1.0);
        ArgCursor cursor(pack);
        HRESULT status = E_FAIL;
        allocations = test::CountAllocations(
            [&] { status = FormatWrite(writer, "%400f,%.1500f", cursor, nullptr); });
        EXPECT_EQ(status, S_OK);
        EXPECT_EQ(target.size(), 400U + 1U + 1502U);
    }
    EXPECT_EQ(allocations, 0U);
}

TEST(FormatAllocations, AnEverydayResponseNeedsNoHeapOnceItHasRun) {
    std::size_t allocations = 0;
    for (int run = 0; run < 2; ++run) {
        MemoryBuffer buffer("9.910000000000000E+37;-1.250000000000000E-09;42;CH1 x");
        FakeEnums enums;
        double first = 0;
        double second = 0;
        std::int32_t third = 0;
        char fourth[16];
        const auto pack = PackArgs(&first, &second, &third, fourth);
        ArgCursor cursor(pack);
        HRESULT status = E_FAIL;
        allocations = test::CountAllocations(
            [&] { status = FormatRead(buffer, "%lg;%lg;%d;%15s", cursor, &enums); });
        EXPECT_EQ(status, IoStatusMoreData);
        EXPECT_EQ(first, 9.91e37);
        EXPECT_EQ(second, -1.25e-9);
        EXPECT_EQ(third, 42);
        EXPECT_STREQ(fourth, "CH1");
    }
    EXPECT_EQ(allocations, 0U);
}

TEST(FormatAllocations, AFormatThatCouldNotBeTakenApartRunsWhenThereIsMemory) {
    const auto run = [] { return AllocationsOfWriting("M1,M2", "M%d,M%d", 1, 2); };
    // Of the same shape; the one above hasn't run yet.
    const std::size_t needed = AllocationsOfWriting("N1,N2", "N%d,N%d", 1, 2);
    ASSERT_GT(needed, 0U);
    for (std::size_t i = 0; i < needed; ++i) {
        std::string target = ReservedText();
        const auto pack = PackArgs(1, 2);
        ArgCursor cursor(pack);
        const test::FailingAllocation failing(i);
        EXPECT_THROW((void)FormatToText(target, nullptr, "M%d,M%d", cursor), std::bad_alloc) << i;
    }
    EXPECT_EQ(run(), needed);
    EXPECT_EQ(run(), 0U);
}

}  // namespace
}  // namespace kestrion
