#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "virtual/message_framer.h"

namespace virtual_scope {
namespace {

void Feed(MessageFramer& framer, std::string_view text, bool end = false) {
    framer.Feed(std::as_bytes(std::span(text)), end);
}

std::vector<std::string> Messages(MessageFramer& framer) {
    std::vector<std::string> messages;
    while (framer.HasMessage()) {
        messages.push_back(framer.TakeMessage());
    }
    return messages;
}

using Texts = std::vector<std::string>;

TEST(Framer, LineFeedAndEndBothCloseAMessage) {
    MessageFramer framer;
    Feed(framer, "*IDN?\n*CLS\n*RST", true);
    EXPECT_EQ(Messages(framer), (Texts{"*IDN?", "*CLS", "*RST"}));
    EXPECT_FALSE(framer.InMessage());
}

TEST(Framer, LineFeedWithEndIsOneMessage) {
    MessageFramer framer;
    Feed(framer, "*IDN?\n", true);
    EXPECT_EQ(Messages(framer), Texts{"*IDN?"});
}

TEST(Framer, AMessageMayComeByteByByte) {
    MessageFramer framer;
    for (const char c : std::string_view("*ID")) {
        Feed(framer, std::string_view(&c, 1));
        EXPECT_FALSE(framer.HasMessage());
        EXPECT_TRUE(framer.InMessage());
    }
    Feed(framer, "N?", true);
    EXPECT_EQ(Messages(framer), Texts{"*IDN?"});
}

TEST(Framer, EmptyLinesAndWhiteSpaceAreNoMessages) {
    MessageFramer framer;
    Feed(framer, "\n  \r\n\t\n", true);
    EXPECT_FALSE(framer.HasMessage());
    EXPECT_FALSE(framer.InMessage());
}

TEST(Framer, LineFeedInsideABlockIsData) {
    MessageFramer framer;
    Feed(framer, "CURVE #13a\nb\n*CLS\n");
    EXPECT_EQ(Messages(framer), (Texts{"CURVE #13a\nb", "*CLS"}));
}

TEST(Framer, ABlockMayBeCutAnywhere) {
    MessageFramer framer;
    for (const char* piece : {"CURVE #", "2", "1", "2\n\n\n\n\n\n", "\n\n\n\n\n\n", "\n"}) {
        Feed(framer, piece);
    }
    EXPECT_EQ(Messages(framer), Texts{"CURVE #212" + std::string(12, '\n')});
}

TEST(Framer, ABlockOfNoBytesEndsWithItsHeader) {
    MessageFramer framer;
    Feed(framer, "CURVE #10\nX\n");
    EXPECT_EQ(Messages(framer), (Texts{"CURVE #10", "X"}));
}

TEST(Framer, ASignInsideAStringIsNoBlock) {
    MessageFramer framer;
    Feed(framer, "CH1:LABEL:NAME '#19'\n*CLS\n");
    EXPECT_EQ(Messages(framer), (Texts{"CH1:LABEL:NAME '#19'", "*CLS"}));
}

TEST(Framer, ASignWithoutALengthIsNoBlock) {
    MessageFramer framer;
    Feed(framer, "X #H1F\nX #2a\nX #\n");
    EXPECT_EQ(Messages(framer), (Texts{"X #H1F", "X #2a", "X #"}));
}

TEST(Framer, AnOpenStringEndsWithItsLine) {
    MessageFramer framer;
    Feed(framer, "CH1:LABEL:NAME \"abc\n*CLS\n");
    EXPECT_EQ(Messages(framer), (Texts{"CH1:LABEL:NAME \"abc", "*CLS"}));
}

TEST(Framer, TooLongAMessageIsThrownAwayAndTold) {
    MessageFramer framer;
    const std::string piece(MessageFramer::kMaxMessage / 4, 'x');
    for (int i = 0; i < 5; ++i) {
        Feed(framer, piece);
    }
    EXPECT_TRUE(framer.InMessage());
    Feed(framer, "\n*CLS\n");
    EXPECT_EQ(Messages(framer), Texts{"*CLS"});
    EXPECT_TRUE(framer.TakeOverrun());
    EXPECT_FALSE(framer.TakeOverrun());
}

TEST(Framer, ClearForgetsTheBeginningOfAMessage) {
    MessageFramer framer;
    Feed(framer, "*CLS\nCURVE #9100");
    framer.Clear();
    Feed(framer, "*RST\n");
    EXPECT_EQ(Messages(framer), Texts{"*RST"});
}

}  // namespace
}  // namespace virtual_scope
