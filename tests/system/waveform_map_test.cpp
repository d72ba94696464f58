// Intensity maps, digital records and the clipboard.
#include <gmock/gmock.h>

#include <algorithm>
#include <sstream>

#include "tests/platform/fake_desktop.h"
#include "tests/system/link_test.h"

namespace kestrion {
namespace {

using testing::Each;
using testing::IsEmpty;
using testing::SizeIs;

struct Map {
    std::vector<double> hits;  // a column after the other, each from the bottom up
    LONG columns = 0;
    LONG rows = 0;

    [[nodiscard]] std::size_t Place(LONG row, LONG column) const {
        return static_cast<std::size_t>(column) * static_cast<std::size_t>(rows) +
               static_cast<std::size_t>(row);
    }
    [[nodiscard]] double At(LONG row, LONG column) const { return hits[Place(row, column)]; }
};

class WaveformMapTest : public LinkTest {
  protected:
    HRESULT FetchMap(KestrionSourceEnum source, Map& map) {
        SafeArrayPtr array;
        const HRESULT status =
            Transfer()->GetPixmapWaveformDataEx(source, array.Out(), &map.columns, &map.rows);
        const auto elements = array.Elements<double>();
        map.hits.assign(elements.begin(), elements.end());
        return status;
    }
    // By row and column, each element taken through the array's own access.
    HRESULT FetchTable(KestrionSourceEnum source, Map& map) {
        SafeArrayPtr array;
        const HRESULT status = Transfer()->GetPixmapWaveformData(source, array.Out());
        if (!array) {
            return status;
        }
        EXPECT_EQ(SafeArrayGetDim(array.Get()), 2U);
        LONG last = -1;
        EXPECT_EQ(SafeArrayGetUBound(array.Get(), 1, &last), S_OK);
        map.rows = last + 1;
        EXPECT_EQ(SafeArrayGetUBound(array.Get(), 2, &last), S_OK);
        map.columns = last + 1;
        map.hits.resize(map.Place(0, map.columns));
        for (LONG column = 0; column < map.columns; ++column) {
            for (LONG row = 0; row < map.rows; ++row) {
                LONG place[] = {row, column};
                double hits = -1.0;
                EXPECT_EQ(SafeArrayGetElement(array.Get(), place, &hits), S_OK);
                map.hits[map.Place(row, column)] = hits;
            }
        }
        return status;
    }
    // CH1, 0.5 V a division: a column lasts its part of the 4 ms, the screen has 10 divisions.
    static void ExpectSine(const Map& map) {
        const double width = 4e-3 / map.columns;
        const double height = 5.0 / map.rows;
        for (LONG column = 0; column < map.columns; ++column) {
            double sum = 0.0;
            for (LONG row = 0; row < map.rows; ++row) {
                const double hits = map.At(row, column);
                sum += hits;
                if (hits == 0.0) {
                    continue;
                }
                // The signal passes the row somewhere in the column's time.
                const double bottom = -2.5 + row * height;
                double nearest = 1e9;
                for (int step = 0; step <= 64; ++step) {
                    const double volts = SineAt(-2e-3 + (column + step / 64.0) * width);
                    nearest = std::min(nearest, std::abs(volts - bottom - height / 2));
                }
                ASSERT_LT(nearest, height / 2 + 1e-3) << "row " << row << ", column " << column;
            }
            ASSERT_EQ(sum, 16.0) << "column " << column;
        }
    }
};

TEST_P(WaveformMapTest, TheMapOfAWaveformDatabaseShowsTheSine) {
    SetMode(KestrionAcquisitionModeWfmDB);
    client_.AcquireOnce(1000);
    Map map;
    ASSERT_EQ(FetchMap(KestrionSourceCh1, map), S_OK) << TakeErrorText();
    EXPECT_EQ(map.columns, 1000);
    EXPECT_EQ(map.rows, 252);
    ASSERT_THAT(map.hits, SizeIs(252000));
    ExpectSine(map);
    Map table;
    ASSERT_EQ(FetchTable(KestrionSourceCh1, table), S_OK) << TakeErrorText();
    EXPECT_EQ(table.columns, 1000);
    EXPECT_EQ(table.rows, 252);
    EXPECT_EQ(table.hits, map.hits);
}

TEST_P(WaveformMapTest, ADenseAcquisitionThatRunsIsStoppedAndStartedAgain) {
    EXPECT_EQ(client_.As<IKestrionAcquisition>()->put_DenseAcquisitionMode(VARIANT_TRUE), S_OK);
    EXPECT_EQ(Ask("ACQUIRE:STATE?"), "1");
    Map map;
    ASSERT_EQ(FetchMap(KestrionSourceCh1, map), S_OK) << TakeErrorText();
    ExpectSine(map);
    EXPECT_EQ(Ask("ACQUIRE:STATE?"), "1");
    EXPECT_EQ(client_.As<IKestrionAcquisition>()->Stop(), S_OK);
    ASSERT_EQ(FetchMap(KestrionSourceCh1, map), S_OK) << TakeErrorText();
    ExpectSine(map);
    EXPECT_EQ(Ask("ACQUIRE:STATE?"), "0");
}

TEST_P(WaveformMapTest, TheOutputsSettingsAreNotPutBackButTheInputsChanged) {
    Send("DENSEACQ:STATE 1;:DATA:SOURCE CH3;:WFMOUTPRE:ENCDG ASC;BYT_OR MSB;BN_FMT RI");
    Send("WFMINPRE:ENCDG BIN;BYT_OR LSB");
    Map map;
    ASSERT_EQ(FetchMap(KestrionSourceCh1, map), S_OK) << TakeErrorText();
    EXPECT_EQ(Ask("DATA:SOURCE?;:WFMOUTPRE:ENCDG?;BYT_OR?;BN_FMT?"), "CH3;BINARY;LSB;RP");
    EXPECT_EQ(Ask("WFMINPRE:ENCDG?;BYT_OR?"), "ASCII;MSB");
}

TEST_P(WaveformMapTest, WithoutAMapThereIsAnError) {
    Send("SELECT:MATH1 1");
    client_.AcquireOnce(1000);
    const std::string before = TransferSettings();
    for (const auto source : {KestrionSourceCh1, KestrionSourceMath1}) {
        Map map;
        EXPECT_EQ(FetchMap(source, map), kInvalidAcquisition);
        EXPECT_EQ(TakeErrorText(),
                  "Kestrion: Invalid acquisition type.\r\nInvalid Acquisition Type error");
        EXPECT_EQ(FetchTable(source, map), kInvalidAcquisition);
        EXPECT_THAT(map.hits, IsEmpty());
    }
    EXPECT_EQ(TransferSettings(), before);
    Map map;
    EXPECT_EQ(FetchMap(KestrionSourceCh2, map), kChannelNotEnabled);
}

INSTANTIATE_TEST_SUITE_P(Links, WaveformMapTest, testing::Bool(), LinkName);

class SmallMapTest : public WaveformMapTest {
  protected:
    [[nodiscard]] std::string Model() const override { return "LK7254B"; }
};

TEST_P(SmallMapTest, OlderFamiliesHaveASmallerMap) {
    Send("DENSEACQ:STATE 1");
    Map map;
    ASSERT_EQ(FetchMap(KestrionSourceCh1, map), S_OK) << TakeErrorText();
    EXPECT_EQ(map.columns, 500);
    EXPECT_EQ(map.rows, 200);
    ASSERT_THAT(map.hits, SizeIs(100000));
    ExpectSine(map);
    Map table;
    ASSERT_EQ(FetchTable(KestrionSourceCh1, table), S_OK) << TakeErrorText();
    EXPECT_EQ(table.hits, map.hits);
}

INSTANTIATE_TEST_SUITE_P(Links, SmallMapTest, testing::Bool(), LinkName);

// The digital channels are a counter that counts every 50 us, 0 at the trigger, D0 its lowest bit.
class DigitalWaveformTest : public LinkTest {
  protected:
    void SetUp() override {
        LinkTest::SetUp();
        // A point every 20 us, 500 in front of the trigger.
        EXPECT_EQ(client_.As<IKestrionHorizontal>()->put_HorizontalScale(2e-3), S_OK);
    }
    static LONG CounterAt(std::size_t point) {
        const double count = std::floor((static_cast<double>(point) - 500.0) * 0.4 + 1e-6);
        return static_cast<LONG>(count) & 0xFFFF;
    }
    ComPtr<IKestrionDigitalChannel> Digital(int number) {
        const BstrPtr name("DigitalChannel" + std::to_string(number));
        ComPtr<IKestrionDigitalChannel> channel;
        EXPECT_EQ(client_.As<IKestrionDigitalChannels>()->get_Item(name.Get(), channel.Out()),
                  S_OK);
        return channel;
    }
    void Show(int number) {
        EXPECT_EQ(Digital(number)->put_State(KestrionDigitalChannelStateOn), S_OK);
    }
    std::vector<LONG> FetchAll() {
        SafeArrayPtr array;
        double initialX = 0.0;
        double xIncrement = 0.0;
        EXPECT_EQ(Transfer()->FetchDigitalAllWaveform(array.Out(), &initialX, &xIncrement), S_OK)
            << TakeErrorText();
        EXPECT_DOUBLE_EQ(initialX, -10e-3);
        EXPECT_DOUBLE_EQ(xIncrement, 20e-6);
        const auto elements = array.Elements<LONG>();
        return {elements.begin(), elements.end()};
    }
    HRESULT FetchOne(KestrionDigitalChannelEnum channel, std::vector<LONG>& bits) {
        SafeArrayPtr array;
        double initialX = 0.0;
        double xIncrement = 0.0;
        const HRESULT status =
            Transfer()->FetchDigitalWaveform(channel, array.Out(), &initialX, &xIncrement);
        const auto elements = array.Elements<LONG>();
        bits.assign(elements.begin(), elements.end());
        return status;
    }
};

TEST_P(DigitalWaveformTest, AllChannelsAreTheLowByteOfTheCounter) {
    Show(9);
    client_.AcquireOnce(1000);
    const std::string before = TransferSettings();
    const std::vector<LONG> packed = FetchAll();
    ASSERT_THAT(packed, SizeIs(1000));
    for (std::size_t i = 0; i < packed.size(); ++i) {
        ASSERT_EQ(packed[i], CounterAt(i) & 0xFF) << i;
    }
    EXPECT_EQ(TransferSettings(), before);
}

TEST_P(DigitalWaveformTest, EachChannelIsItsBit) {
    client_.AcquireOnce(1000);
    for (const int number : {0, 3, 7}) {
        Show(number);
        std::vector<LONG> bits;
        ASSERT_EQ(FetchOne(static_cast<KestrionDigitalChannelEnum>(number), bits), S_OK)
            << TakeErrorText();
        ASSERT_THAT(bits, SizeIs(1000));
        for (std::size_t i = 0; i < bits.size(); ++i) {
            ASSERT_EQ(bits[i], (CounterAt(i) >> number) & 1) << "D" << number << " at " << i;
        }
    }
    // An element is one byte, which has nothing of the upper channels.
    Show(8);
    std::vector<LONG> bits;
    ASSERT_EQ(FetchOne(KestrionDigitalChannelD8, bits), S_OK) << TakeErrorText();
    EXPECT_THAT(bits, SizeIs(1000));
    EXPECT_THAT(bits, Each(0));
}

// As many elements as there are points, each a byte of what comes first.
TEST_P(DigitalWaveformTest, TwoBytesAPointStandSideBySide) {
    Show(0);
    client_.AcquireOnce(1000);
    Send("WFMOUTPRE:BYT_NR 2");
    const std::vector<LONG> packed = FetchAll();
    ASSERT_THAT(packed, SizeIs(1000));
    for (std::size_t i = 0; i < packed.size(); ++i) {
        const LONG word = CounterAt(i / 2);
        ASSERT_EQ(packed[i], i % 2 == 0 ? word & 0xFF : word >> 8) << i;
    }
}

TEST_P(DigitalWaveformTest, AThresholdBeyondTheLevelsHoldsAChannel) {
    Show(0);
    Show(1);
    EXPECT_EQ(Digital(0)->put_Threshold(-0.5), S_OK);
    EXPECT_EQ(Digital(1)->put_Threshold(4.0), S_OK);
    EXPECT_EQ(Digital(2)->put_Threshold(1.0), S_OK);
    client_.AcquireOnce(1000);
    const std::vector<LONG> packed = FetchAll();
    ASSERT_THAT(packed, SizeIs(1000));
    for (std::size_t i = 0; i < packed.size(); ++i) {
        ASSERT_EQ(packed[i], (CounterAt(i) & 0xFC) | 1) << i;
    }
}

TEST_P(DigitalWaveformTest, WithoutAChannelThereIsAnErrorAndTheHeaderStaysOff) {
    constexpr const char* kText =
        "Kestrion: Specified channel is not enabled.\r\nDigitalChannel Not Enabled error";
    std::vector<LONG> bits;
    EXPECT_EQ(FetchOne(KestrionDigitalChannelD2, bits), kChannelNotEnabled);
    EXPECT_EQ(TakeErrorText(), kText);
    Send("HEADER ON");
    SafeArrayPtr array;
    double initialX = 0.0;
    double xIncrement = 0.0;
    EXPECT_EQ(Transfer()->FetchDigitalAllWaveform(array.Out(), &initialX, &xIncrement),
              kChannelNotEnabled);
    EXPECT_EQ(TakeErrorText(), kText);
    EXPECT_EQ(array.Get(), nullptr);
    EXPECT_EQ(Ask("HEADER?"), "0");
}

INSTANTIATE_TEST_SUITE_P(Links, DigitalWaveformTest, testing::Bool(), LinkName);

class WaveformClipboardTest : public LinkTest {
  protected:
    WaveformClipboardTest() {
        desktop_.Set("WAYLAND_DISPLAY", "wayland-0");
        desktop_.AddProgram("wl-copy");
    }
    // The environment is put back after the instrument's threads have ended.
    void TearDown() override {
        LinkTest::TearDown();
        EXPECT_EQ(client_.scope->Close(), S_OK);
        server_.reset();
    }
    std::vector<double> Copy(KestrionSourceEnum source, LONG& copied) {
        // The limits limit nothing.
        EXPECT_EQ(Transfer()->CopyWaveformToClipboard(source, 10, 20, &copied), S_OK)
            << TakeErrorText();
        const std::string text = desktop_.Text();
        EXPECT_THAT(text, testing::StartsWith(" "));
        std::istringstream lines(text.substr(1));
        std::vector<double> volts;
        for (std::string line; std::getline(lines, line);) {
            EXPECT_GE(line.size(), 12U);
            volts.push_back(std::stod(line));
        }
        return volts;
    }

    FakeDesktop desktop_;
};

TEST_P(WaveformClipboardTest, TheTextHasThePointsOfTheRecord) {
    Send("SELECT:MATH1 1;:MATH1:DEFINE \"CH1/7\"");
    client_.AcquireOnce(1000);
    const std::string before = TransferSettings();
    for (const auto source : {KestrionSourceCh1, KestrionSourceMath1}) {
        LONG copied = -1;
        const std::vector<double> volts = Copy(source, copied);
        EXPECT_EQ(copied, 1000);
        Waveform fetched;
        ASSERT_EQ(client_.Fetch(source, fetched), S_OK) << TakeErrorText();
        ASSERT_EQ(volts.size(), fetched.volts.size());
        for (std::size_t i = 0; i < volts.size(); ++i) {
            // Seven digits.
            ASSERT_NEAR(volts[i], fetched.volts[i], 5.1e-8) << i;
        }
    }
    EXPECT_EQ(TransferSettings(), before);
}

TEST_P(WaveformClipboardTest, AQuarterOfAMillionPointsIsTheMost) {
    client_.AcquireOnce(250001);
    LONG copied = -1;
    const std::vector<double> volts = Copy(KestrionSourceCh1, copied);
    EXPECT_EQ(copied, 250000);
    EXPECT_THAT(volts, SizeIs(250000));
    EXPECT_NEAR(volts.back(), SineAt(-2e-3 + 249999 * (4e-3 / 250001)), 0.02);
}

INSTANTIATE_TEST_SUITE_P(Links, WaveformClipboardTest, testing::Bool(), LinkName);

}  // namespace
}  // namespace kestrion
