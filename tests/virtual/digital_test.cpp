// The digital channels: a counter that counts every 50 us, 0 at the trigger, D0 its lowest bit.
#include <gtest/gtest.h>

#include "tests/virtual/bench.h"
#include "virtual/digital.h"

namespace virtual_scope {
namespace {

class Digital : public testing::Test {
  protected:
    // A point every 50 us.
    Digital() {
        bench_.Write("HORIZONTAL:RECORDLENGTH 1000;SCALE 5E-3;:DATA:SOURCE DIGITALALL");
        bench_.Write("SELECT:D3 1");
    }
    std::string Fetch(int first, int last) {
        return bench_.Query("DATA:START " + std::to_string(first) + ";STOP " +
                            std::to_string(last) + ";:CURVE?");
    }

    BareBench bench_;
};

TEST_F(Digital, OneByteHasTheLowerHalf) {
    EXPECT_EQ(bench_.Query("DATA:SOURCE?;:WFMOUTPRE:BYT_NR?"), "DIGITALALL;1");
    EXPECT_EQ(Fetch(501, 504), std::string("#14\x00\x01\x02\x03", 7));
    EXPECT_EQ(Fetch(500, 500), "#11\xFF");                      // the counter was at 65535 before
    EXPECT_EQ(Fetch(757, 758), std::string("#12\x00\x01", 5));  // 256 and 257
}

TEST_F(Digital, TwoBytesHaveAllInBothOrders) {
    bench_.Write("WFMOUTPRE:BYT_NR 2;BYT_OR MSB");
    EXPECT_EQ(Fetch(757, 758), std::string("#14\x01\x00\x01\x01", 7));
    bench_.Write("WFMOUTPRE:BYT_OR LSB");
    EXPECT_EQ(Fetch(757, 758), std::string("#14\x00\x01\x01\x01", 7));
}

TEST_F(Digital, TheFormatOfNumbersDoesNotMatter) {
    bench_.Write("WFMOUTPRE:ENCDG BIN;BN_FMT FP;:WFMOUTPRE:BYT_OR LSB");
    EXPECT_EQ(bench_.Query("WFMOUTPRE:BYT_NR?"), "1");
    EXPECT_EQ(Fetch(504, 504), "#11\x03");
}

TEST_F(Digital, AThresholdBeyondTheLevelsHoldsAChannel) {
    bench_.Write("D0:THRESHOLD -1;:D1:THRESHOLD 5");
    EXPECT_EQ(Fetch(501, 505), "#15\x01\x01\x01\x01\x05");
}

TEST_F(Digital, WithoutAChannelOnTheScreenThereIsNothingToSend) {
    bench_.Write("SELECT:D3 0");
    EXPECT_EQ(bench_.Query("CURVE?"), "(nothing)");
    EXPECT_EQ(bench_.Error(), "-221,\"Settings conflict\"");
}

TEST_F(Digital, ReadsMayBeCutAnywhere) {
    bench_.Write("WFMOUTPRE:BYT_NR 2");
    const std::string whole = Fetch(1, 1000);
    EXPECT_EQ(whole.size(), 6U + 2000U);
    for (const std::size_t size : {1U, 7U, 512U}) {
        bench_.Write("CURVE?");
        EXPECT_EQ(Bench::ReadFrom(bench_.link(), size), whole) << size;
    }
}

TEST_F(Digital, ADigitalChannelTriggers) {
    bench_.Write("TRIGGER:A:EDGE:SOURCE D3;SLOPE RISE");
    EXPECT_EQ(Fetch(500, 501), "#12\x07\x08");
    bench_.Write("TRIGGER:A:EDGE:SLOPE FALL");
    EXPECT_EQ(Fetch(501, 501), std::string("#11\x00", 4));
}

}  // namespace
}  // namespace virtual_scope
