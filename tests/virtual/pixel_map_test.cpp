// The map of the waveform database and of the dense acquisition: 8 bytes for each place, one column
// after the other from the bottom up.
#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "tests/virtual/bench.h"

namespace virtual_scope {
namespace {

std::vector<std::int64_t> CountsOf(const std::string& response, std::size_t places) {
    const std::string header = "#7" + std::to_string(places * 8);
    EXPECT_EQ(response.substr(0, header.size()), header);
    EXPECT_EQ(response.size(), header.size() + places * 8);
    std::vector<std::int64_t> counts;
    for (std::size_t at = header.size(); at + 8 <= response.size(); at += 8) {
        std::int64_t count = 0;
        for (std::size_t i = 8; i-- > 0;) {
            count = count * 256 + static_cast<unsigned char>(response[at + i]);
        }
        counts.push_back(count);
    }
    return counts;
}

TEST(PixelMap, EightBytesForAPointTellOfAMap) {
    BareBench bench;
    EXPECT_EQ(bench.Query("WFMOUTPRE:BYT_NR?"), "1");
    EXPECT_EQ(bench.Query("ACQUIRE:MODE WFMDB;:WFMOUTPRE:BYT_NR?;NR_PT?"), "8;252000");
    EXPECT_EQ(bench.Query("ACQUIRE:MODE SAMPLE;:DENSEACQ:STATE 1;:WFMOUTPRE:BYT_NR?"), "8");
    EXPECT_EQ(bench.Query("DENSEACQ:STATE 0;:WFMOUTPRE:BYT_NR?"), "1");
    // A math waveform has none.
    EXPECT_EQ(bench.Query("ACQUIRE:MODE WFMDB;:DATA:SOURCE MATH1;:WFMOUTPRE:BYT_NR?"), "4");
}

TEST(PixelMap, EachColumnHasItsPartOfTheSine) {
    BareBench bench;
    bench.Write("ACQUIRE:MODE WFMDB;:WFMOUTPRE:ENCDG BIN;BYT_OR LSB");
    const auto counts = CountsOf(bench.Query("CURVE?"), 252'000);
    ASSERT_EQ(counts.size(), 252'000U);
    for (std::size_t column = 0; column < 1000; ++column) {
        std::int64_t sum = 0;
        for (std::size_t row = 0; row < 252; ++row) {
            sum += counts[column * 252 + row];
        }
        ASSERT_EQ(sum, 16) << column;
    }
    // The middle of the record is the trigger, 0 V in the middle of the screen, and rising. A row
    // is 10 divisions / 252 of 0.5 V each, 19.84 mV; a column lasts 4 us, in which the sine rises
    // by 25 mV: it leaves the first row after 3.16 us or 12.6 of 16 points.
    EXPECT_EQ(counts[500 * 252 + 126], 13);
    EXPECT_EQ(counts[500 * 252 + 127], 3);
    // The peak of 1 V after 62 columns and a half is 50.4 rows above the middle.
    EXPECT_EQ(counts[562 * 252 + 126 + 50], 16);
}

TEST(PixelMap, TheOlderFamiliesHaveASmallerOne) {
    for (const char* model : {"HR5104", "HR5054B", "IB6404", "IB6804B", "LK7054", "LK7254B"}) {
        BareBench bench(model);
        bench.Write("DENSEACQ:STATE 1");
        EXPECT_EQ(bench.Query("WFMOUTPRE:NR_PT?"), "100000") << model;
    }
    for (const char* model : {"CR7404B", "MR5104B", "SW72004C"}) {
        BareBench bench(model);
        bench.Write("DENSEACQ:STATE 1");
        EXPECT_EQ(bench.Query("WFMOUTPRE:NR_PT?"), "252000") << model;
    }
}

TEST(PixelMap, TheByteOrderIsThatOfTheTransfer) {
    BareBench bench("LK7054");
    bench.Write("DENSEACQ:STATE 1;:WFMOUTPRE:BYT_OR LSB;:CH1:COUPLING GND");
    const std::string least = bench.Query("CURVE?");
    bench.Write("WFMOUTPRE:BYT_OR MSB");
    const std::string most = bench.Query("CURVE?");
    // A flat line in the middle: 16 hits in row 100 of the first column.
    const std::size_t place = std::string("#6800000").size() + 100 * 8;
    EXPECT_EQ(least.substr(place, 8), std::string("\x10\0\0\0\0\0\0\0", 8));
    EXPECT_EQ(most.substr(place, 8), std::string("\0\0\0\0\0\0\0\x10", 8));
}

TEST(PixelMap, WhatLiesBeyondTheScreenIsAtItsEdge) {
    BareBench bench;
    bench.Write("DENSEACQ:STATE 1;:WFMOUTPRE:BYT_OR LSB;:CH1:COUPLING GND;POSITION 8");
    auto counts = CountsOf(bench.Query("CURVE?"), 252'000);
    EXPECT_EQ(counts[251], 16);
    bench.Write("CH1:POSITION -8");
    counts = CountsOf(bench.Query("CURVE?"), 252'000);
    EXPECT_EQ(counts[0], 16);
}

}  // namespace
}  // namespace virtual_scope
