// GetPixmapWaveformData and GetPixmapWaveformDataEx, line by line.
#include <gmock/gmock.h>

#include "tests/scope/waveform_test.h"

namespace kestrion {
namespace {

using testing::ElementsAre;

class PixmapTest : public WaveformTest {
  protected:
    HRESULT GetTable(KestrionSourceEnum source) {
        return As<IKestrionWaveformTransfer>()->GetPixmapWaveformData(source, waveform.Out());
    }
    HRESULT GetVector(KestrionSourceEnum source) {
        return As<IKestrionWaveformTransfer>()->GetPixmapWaveformDataEx(source, waveform.Out(),
                                                                        &columns, &rows);
    }
    void ExpectFound(std::string_view width) {
        ExpectHeaderOff();
        fake.Expect("SELECT:CH2?\n").Reply("1\n");
        fake.Expect("DATA:SOURCE?\n").Reply("CH4\n");
        fake.Expect("WFMOUTPRE:BYT_OR?\n").Reply("MSB\n");
        fake.Expect("WFMOUTPRE:ENCD?\n").Reply("ASC\n");
        fake.Expect("DATA:SOURCE CH2\n");
        fake.Expect("WFMOUTPRE:BYT_NR?\n").Reply(std::string(width) + "\n");
    }
    void ExpectEncoding() {
        fake.Expect(
            "WFMOUTPRE:ENCDG\xA0"
            "BIN\n");
        fake.Expect(
            "WFMOUTPRE:BYT_OR\xA0"
            "LSB\n");
    }
    void ExpectRestored() {
        fake.Expect("DATA:SOURCE CH4\n");
        fake.Expect("WFMINPRE:BYT_OR MSB;ENCD ASC\n");
        fake.Expect("HEADER 0\n");
    }
    // A block of so many elements: the first -2, the second 258, the others 1.
    static std::string Block(std::size_t elements) {
        std::string bytes;
        for (std::size_t i = 0; i < elements; ++i) {
            bytes += std::string_view("\x01\x00\x00\x00\x00\x00\x00\x00", 8);
        }
        bytes.replace(0, 16,
                      std::string_view("\xFE\xFF\xFF\xFF\xFF\xFF\xFF\xFF"
                                       "\x02\x01\x00\x00\x00\x00\x00\x00",
                                       16));
        const std::string length = std::to_string(bytes.size());
        return "#" + std::to_string(length.size()) + length + bytes + "\n";
    }
    double At(LONG row, LONG column) {
        const std::array<LONG, 2> indices = {row, column};
        double value = -99.0;
        EXPECT_EQ(SafeArrayGetElement(waveform.Get(), indices.data(), &value), S_OK);
        return value;
    }
    LONG Last(UINT dimension) {
        LONG bound = -1;
        EXPECT_EQ(SafeArrayGetUBound(waveform.Get(), dimension, &bound), S_OK);
        return bound;
    }

    LONG columns = -1;
    LONG rows = -1;
};

TEST_F(PixmapTest, AMapOfALargeModelComesAColumnAtATime) {
    Connect();
    ExpectFound("8");
    ExpectEncoding();
    fake.Expect("ACQ:STATE?\n").Reply("0\n");
    fake.Expect("CURVE?\n").Reply(Block(252000));
    ExpectRestored();
    ASSERT_EQ(GetTable(KestrionSourceCh2), S_OK);
    EXPECT_EQ(SafeArrayGetDim(waveform.Get()), 2U);
    EXPECT_EQ(Last(1), 251);
    EXPECT_EQ(Last(2), 999);
    EXPECT_EQ(At(0, 0), -2.0);
    EXPECT_EQ(At(1, 0), 258.0);
    EXPECT_EQ(At(0, 1), 1.0);
    EXPECT_EQ(At(251, 999), 1.0);
    EXPECT_FALSE(fake.Locked());
}

TEST_F(PixmapTest, ARunningAcquisitionIsStoppedAndStartedAgain) {
    Connect("HR5054");
    ExpectFound("8");
    ExpectEncoding();
    fake.Expect("ACQ:STATE?\n").Reply("1\n");
    fake.Expect("ACQ:STATE 0\n");
    fake.Expect("CURVE?\n").Reply(Block(100000));
    fake.Expect("ACQ:STATE ON\n");
    ExpectRestored();
    ASSERT_EQ(GetTable(KestrionSourceCh2), S_OK);
    // The smaller map of this family.
    EXPECT_EQ(Last(1), 199);
    EXPECT_EQ(Last(2), 499);
}

TEST_F(PixmapTest, TheVectorAsksForPositiveIntegersAndTellsItsSize) {
    Connect("LK7154B");
    ExpectFound("8");
    ExpectEncoding();
    fake.Expect(
        "WFMOUTPRE:BN_FMT\xA0"
        "RP\n");
    fake.Expect("ACQ:STATE?\n").Reply("0\n");
    fake.Expect("CURVE?\n").Reply(Block(100000));
    ExpectRestored();
    ASSERT_EQ(GetVector(KestrionSourceCh2), S_OK);
    ASSERT_EQ(Volts().size(), 100000U);
    EXPECT_EQ(Volts()[0], -2.0);
    EXPECT_EQ(Volts()[1], 258.0);
    EXPECT_EQ(Volts()[99999], 1.0);
    EXPECT_EQ(columns, 500);
    EXPECT_EQ(rows, 200);
}

TEST_F(PixmapTest, SixFamiliesHaveTheSmallMap) {
    struct Case {
        const char* model;
        LONG columns;
        LONG rows;
    };
    constexpr std::array<Case, 10> kCases = {{{"HR5054", 500, 200},
                                              {"HR5054B", 500, 200},
                                              {"IB6604", 500, 200},
                                              {"IB6604B", 500, 200},
                                              {"LK7154", 500, 200},
                                              {"LK7154B", 500, 200},
                                              {"CR7154B", 1000, 252},
                                              {"PL7254C", 1000, 252},
                                              {"SW71254C", 1000, 252},
                                              {"MR71254C", 1000, 252}}};
    for (const Case& expected : kCases) {
        Connect(expected.model);
        ExpectFound("8");
        ExpectEncoding();
        fake.Expect(
            "WFMOUTPRE:BN_FMT\xA0"
            "RP\n");
        fake.Expect("ACQ:STATE?\n").Reply("0\n");
        fake.Expect("CURVE?\n")
            .Reply(std::string_view("#18\x05\x00\x00\x00\x00\x00\x00\x00\n", 12));
        ExpectRestored();
        EXPECT_EQ(GetVector(KestrionSourceCh2), S_OK) << expected.model;
        EXPECT_EQ(columns, expected.columns) << expected.model;
        EXPECT_EQ(rows, expected.rows) << expected.model;
        EXPECT_EQ(scope->Close(), S_OK);
    }
}

TEST_F(PixmapTest, ABlockSmallerThanTheMapLeavesZeros) {
    Connect();
    ExpectFound("8");
    ExpectEncoding();
    fake.Expect(
        "WFMOUTPRE:BN_FMT\xA0"
        "RP\n");
    fake.Expect("ACQ:STATE?\n").Reply("0\n");
    fake.Expect("CURVE?\n").Reply(std::string_view("#18\x05\x00\x00\x00\x00\x00\x00\x00\n", 12));
    ExpectRestored();
    ASSERT_EQ(GetVector(KestrionSourceCh2), S_OK);
    ASSERT_EQ(Volts().size(), 252000U);
    EXPECT_EQ(Volts()[0], 5.0);
    EXPECT_EQ(Volts()[1], 0.0);
    EXPECT_EQ(Volts()[251999], 0.0);
}

TEST_F(PixmapTest, AWidthOtherThan8IsNoMap) {
    Connect();
    ExpectFound("1");
    fake.Expect("HEADER 0\n");
    fake.Expect("DATA:SOURCE CH4\n");
    EXPECT_EQ(GetTable(KestrionSourceCh2), MakeStatus(0x80042004));
    EXPECT_EQ(ErrorText(), "Kestrion: Invalid acquisition type.\r\nInvalid Acquisition Type error");
    EXPECT_EQ(waveform.Get(), nullptr);
}

TEST_F(PixmapTest, ASourceThatIsOffIsReported) {
    Connect();
    ExpectHeaderOff();
    fake.Expect("SELECT:CH2?\n").Reply("0\n");
    fake.Expect("HEADER 0\n");
    EXPECT_EQ(GetVector(KestrionSourceCh2), MakeStatus(0x80042001));
    EXPECT_EQ(columns, 0);
}

TEST_F(PixmapTest, AnAbsentSourceIsRefusedWithoutAWord) {
    Connect("PL77002SX");
    for (int form = 0; form < 2; ++form) {
        fake.Expect("HEADER?\n").Reply("1\n");
        fake.Expect("HEADER OFF\n");
        fake.Expect("HEADER 1\n");
        EXPECT_EQ(form == 0 ? GetTable(KestrionSourceCh3) : GetVector(KestrionSourceCh3), 1);
        EXPECT_EQ(ErrorText(), "");
    }
}

TEST_F(PixmapTest, ASilentInstrumentRestoresNothingAndKeepsTheLock) {
    Connect();
    ExpectFound("8");
    ExpectEncoding();
    fake.Expect("ACQ:STATE?\n").Reply("1\n");
    fake.Expect("ACQ:STATE 0\n");
    fake.Expect("CURVE?\n");
    EXPECT_EQ(GetTable(KestrionSourceCh2), MakeStatus(0x80044215));
    EXPECT_EQ(waveform.Get(), nullptr);
    EXPECT_TRUE(fake.Locked());
}

TEST_F(PixmapTest, ABlockThatEndsEarlyIsAnUnexpectedResponse) {
    Connect();
    ExpectFound("8");
    ExpectEncoding();
    fake.Expect("ACQ:STATE?\n").Reply("0\n");
    fake.Expect("CURVE?\n").Reply("#216abc");
    EXPECT_EQ(GetTable(KestrionSourceCh2), MakeStatus(0x80047059));
    EXPECT_EQ(waveform.Get(), nullptr);
    EXPECT_FALSE(fake.Locked());
}

}  // namespace
}  // namespace kestrion
