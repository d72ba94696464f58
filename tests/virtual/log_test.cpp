#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "virtual/server/message_log.h"

namespace virtual_scope {
namespace {

using Lines = std::vector<std::string>;

class Shortening : public testing::Test {
  protected:
    void Feed(std::string_view piece) {
        shortener_.Feed(std::as_bytes(std::span(piece)),
                        [this](std::string_view line) { lines_.emplace_back(line); });
    }

    LineShortener shortener_;
    Lines lines_;
};

TEST_F(Shortening, AMessageIsALine) {
    Feed("*IDN?\nDATA:START 1;STOP 5\n");
    EXPECT_EQ(lines_, (Lines{"*IDN?", "DATA:START 1;STOP 5"}));
}

TEST_F(Shortening, ABlockBecomesItsLength) {
    Feed("#15a\nb\nc\n");
    EXPECT_EQ(lines_, Lines{"#15 <5 bytes>"});
}

TEST_F(Shortening, TextAroundABlockStays) {
    Feed(":CURVE #13\x01\x02\x03;:HEADER 1\n");
    EXPECT_EQ(lines_, Lines{":CURVE #13 <3 bytes>;:HEADER 1"});
}

TEST_F(Shortening, ALongBlockInPieces) {
    Feed("#91");
    Feed("00000000");
    const std::string piece(10'000'000, '\n');
    for (int i = 0; i < 10; ++i) {
        Feed(piece);
    }
    EXPECT_TRUE(lines_.empty());
    Feed("\n");
    EXPECT_EQ(lines_, Lines{"#9100000000 <100000000 bytes>"});
}

TEST_F(Shortening, AnEmptyBlock) {
    Feed("#10\n");
    EXPECT_EQ(lines_, Lines{"#10 <0 bytes>"});
}

TEST_F(Shortening, ASignInAStringIsText) {
    Feed("LABEL '#15'\nLABEL \"#15\"\n");
    EXPECT_EQ(lines_, (Lines{"LABEL '#15'", "LABEL \"#15\""}));
}

TEST_F(Shortening, BytesThatAreNotPrintable) {
    Feed(
        "BYT_NR\xA0"
        "1\r\n");
    EXPECT_EQ(lines_, Lines{"BYT_NR\\xA01\\x0D"});
}

TEST_F(Shortening, WhatIsTooLongIsCut) {
    Feed(std::string(2000, 'x') + "\n");
    ASSERT_EQ(lines_.size(), 1U);
    EXPECT_EQ(lines_[0], std::string(500, 'x') + "...");
}

}  // namespace
}  // namespace virtual_scope
