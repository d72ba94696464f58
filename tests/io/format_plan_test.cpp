// Formats that are taken apart once and run again.
#include "io/format_plan.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <thread>

#include "io/format_text_writer.h"
#include "tests/io/memory_buffer.h"

namespace kestrion {
namespace {

std::string TextOf(std::string_view format, std::int32_t value) {
    std::string text;
    const auto pack = PackArgs(value);
    ArgCursor cursor(pack);
    EXPECT_EQ(FormatToText(text, nullptr, format, cursor), S_OK) << format;
    return text;
}

TEST(FormatPlan, HasThePiecesInTheirOrder) {
    const FormatPlan plan("CH%d:%{ Mode }s", FormatDirection::kWrite);
    ASSERT_EQ(plan.Status(), S_OK);
    ASSERT_EQ(plan.Pieces().size(), 4U);
    EXPECT_EQ(WriteRow{plan.Pieces()[0].row}, WriteRow::kLiteral);
    EXPECT_EQ(plan.Pieces()[0].text, "CH");
    EXPECT_EQ(WriteRow{plan.Pieces()[1].row}, WriteRow::kInteger);
    EXPECT_EQ(plan.Pieces()[1].conversion.letter, 'd');
    EXPECT_EQ(plan.Pieces()[2].text, ":");
    EXPECT_EQ(WriteRow{plan.Pieces()[3].row}, WriteRow::kEnum);
    EXPECT_EQ(plan.Pieces()[3].conversion.enumName, "Mode");
}

TEST(FormatPlan, TwoPercentSignsStandForOne) {
    for (const FormatDirection direction : {FormatDirection::kWrite, FormatDirection::kRead}) {
        const FormatPlan plan("50%% x", direction);
        ASSERT_EQ(plan.Pieces().size(), 3U);
        EXPECT_EQ(plan.Pieces()[0].text, "50");
        EXPECT_EQ(plan.Pieces()[1].text, "%");
        EXPECT_EQ(plan.Pieces()[2].text, " x");
    }
}

TEST(FormatPlan, ABadFormatHasNoPieces) {
    const FormatPlan plan("CH%d:50%", FormatDirection::kWrite);
    EXPECT_EQ(plan.Status(), E_UNEXPECTED);
    EXPECT_TRUE(plan.Pieces().empty());
}

TEST(FormatPlan, AnEmptyFormatIsNoFailure) {
    const FormatPlan plan("", FormatDirection::kRead);
    EXPECT_EQ(plan.Status(), S_OK);
    EXPECT_TRUE(plan.Pieces().empty());
}

TEST(FormatPlan, AWidthThatDoesNotFitFailsWhenItsPieceRuns) {
    const FormatPlan plan("%d;%9999999999d", FormatDirection::kWrite);
    ASSERT_EQ(plan.Status(), S_OK);
    ASSERT_EQ(plan.Pieces().size(), 3U);
    EXPECT_EQ(plan.Pieces()[0].status, S_OK);
    EXPECT_EQ(plan.Pieces()[2].status, E_INVALIDARG);
    for (int run = 0; run < 2; ++run) {
        std::string text;
        const auto pack = PackArgs(4, 5);
        ArgCursor cursor(pack);
        EXPECT_EQ(FormatToText(text, nullptr, "%d;%9999999999d", cursor), E_INVALIDARG);
        EXPECT_EQ(text, "4;");
    }
}

TEST(FormatPlan, IsOfOneTextAndOneDirection) {
    const FormatPlan plan("%d", FormatDirection::kRead);
    EXPECT_TRUE(plan.IsOf("%d", FormatDirection::kRead));
    EXPECT_FALSE(plan.IsOf("%d", FormatDirection::kWrite));
    EXPECT_FALSE(plan.IsOf("%u", FormatDirection::kRead));
    EXPECT_FALSE(plan.IsOf("%d ", FormatDirection::kRead));
}

TEST(FormatPlan, OutlivesTheTextThatItWasMadeFrom) {
    std::string format = "%{Mode}s and a tail that is longer than a short string";
    const FormatPlan plan(format, FormatDirection::kWrite);
    format.assign(format.size(), '?');
    EXPECT_EQ(plan.Pieces()[0].conversion.enumName, "Mode");
    EXPECT_EQ(plan.Pieces()[1].text, " and a tail that is longer than a short string");
}

TEST(BorrowedPlan, ComesBackTheNextTime) {
    const FormatPlan* first = nullptr;
    {
        const BorrowedPlan plan("COMES:BACK %d", FormatDirection::kWrite);
        first = plan.operator->();
    }
    const BorrowedPlan again("COMES:BACK %d", FormatDirection::kWrite);
    EXPECT_EQ(again.operator->(), first);
}

TEST(BorrowedPlan, IsNotLentTwice) {
    const BorrowedPlan outer("NOT:TWICE %d", FormatDirection::kWrite);
    const BorrowedPlan inner("NOT:TWICE %d", FormatDirection::kWrite);
    EXPECT_NE(outer.operator->(), inner.operator->());
    EXPECT_TRUE(outer->IsOf("NOT:TWICE %d", FormatDirection::kWrite));
    EXPECT_TRUE(inner->IsOf("NOT:TWICE %d", FormatDirection::kWrite));
}

TEST(BorrowedPlan, AFailureComesBackAsAFailure) {
    for (int run = 0; run < 2; ++run) {
        const BorrowedPlan plan("50%", FormatDirection::kWrite);
        EXPECT_EQ(plan->Status(), E_UNEXPECTED);
    }
}

TEST(BorrowedPlan, OtherTextInTheSameMemoryIsAnotherFormat) {
    std::string format = "A %d";
    EXPECT_EQ(TextOf(format, 11), "A 11");
    format[3] = 'x';
    EXPECT_EQ(TextOf(format, 11), "A b");
    format[3] = 'o';
    EXPECT_EQ(TextOf(format, 11), "A 13");
    format[3] = 'd';
    EXPECT_EQ(TextOf(format, 11), "A 11");
}

TEST(BorrowedPlan, OneFormatIsWrittenAndRead) {
    for (int run = 0; run < 2; ++run) {
        EXPECT_EQ(TextOf("%03d", 7), "007");
        EXPECT_EQ(TextOf("W%d", 7), "W7");
        MemoryBuffer buffer("W7");
        std::int32_t value = 0;
        const auto pack = PackArgs(&value);
        ArgCursor cursor(pack);
        EXPECT_EQ(FormatRead(buffer, "W%d", cursor, nullptr), S_OK);
        EXPECT_EQ(value, 7);
    }
}

// Arguments are filled in anew each time.
TEST(BorrowedPlan, AWidthFromTheArgumentsIsNotKept) {
    const auto written = [](std::int32_t width) {
        std::string text;
        const auto pack = PackArgs(width, 5);
        ArgCursor cursor(pack);
        EXPECT_EQ(FormatToText(text, nullptr, "[%*d]", cursor), S_OK);
        return text;
    };
    EXPECT_EQ(written(4), "[   5]");
    EXPECT_EQ(written(-3), "[5  ]");
    EXPECT_EQ(written(2), "[ 5]");
}

TEST(BorrowedPlan, MoreFormatsThanThereArePlacesFor) {
    for (int run = 0; run < 2; ++run) {
        for (int i = 0; i < 2000; ++i) {
            const std::string format = "F" + std::to_string(i) + " %d";
            ASSERT_EQ(TextOf(format, i), "F" + std::to_string(i) + " " + std::to_string(i));
        }
    }
}

TEST(BorrowedPlan, AFormatThatIsTooLongToBeKept) {
    const std::string tail(5000, 'x');
    for (int run = 0; run < 2; ++run) {
        EXPECT_EQ(TextOf("%d" + tail, run), std::to_string(run) + tail);
    }
}

// Writes the token of every value by the format that asks for it.
class FormatInAFormat final : public IEnumFormatter {
  public:
    HRESULT EnumToToken(std::string_view, std::int32_t value, std::string& token) override {
        if (value == 0) {
            token = "end";
            return S_OK;
        }
        const auto pack = PackArgs(value - 1, value);
        ArgCursor cursor(pack);
        return FormatToText(token, this, kFormat, cursor);
    }
    HRESULT TokenToEnum(std::string_view, std::string_view, std::int32_t&) override {
        return E_NOTIMPL;
    }
    std::int32_t GetMaxTokenLength(std::string_view) override { return 0; }

    static constexpr std::string_view kFormat = "<%{Nested}s %d>";
};

TEST(BorrowedPlan, AFormatRunsWithinItself) {
    FormatInAFormat formatter;
    for (int run = 0; run < 2; ++run) {
        std::string text;
        const auto pack = PackArgs(2, 9);
        ArgCursor cursor(pack);
        EXPECT_EQ(FormatToText(text, &formatter, FormatInAFormat::kFormat, cursor), S_OK);
        EXPECT_EQ(text, "<<<end 1> 2> 9>");
    }
}

TEST(BorrowedPlan, EachThreadHasItsOwn) {
    const BorrowedPlan here("EACH:THREAD %d", FormatDirection::kWrite);
    std::string there;
    std::thread([&there] { there = TextOf("EACH:THREAD %d", 3); }).join();
    EXPECT_EQ(there, "EACH:THREAD 3");
}

std::string writtenAtTheEnd;

// Made before the thread's plans, so that it goes after them.
struct WritesAtTheEnd {
    ~WritesAtTheEnd() {
        writtenAtTheEnd = TextOf("LAST %d", 1);
        writtenAtTheEnd += TextOf(";LAST %d", 2);
    }
    bool made = false;
};

TEST(BorrowedPlan, AFormatRunsWhenTheThreadsPlansAreGone) {
    writtenAtTheEnd.clear();
    std::thread([] {
        thread_local WritesAtTheEnd writer;
        writer.made = true;
        EXPECT_EQ(TextOf("FIRST %d", 1), "FIRST 1");
    }).join();
    EXPECT_EQ(writtenAtTheEnd, "LAST 1;LAST 2");
}

}  // namespace
}  // namespace kestrion
