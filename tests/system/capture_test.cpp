// A waveform over the whole road, held against the signals that the instrument is told to have:
// CH1 a sine of 1 kHz and 1 V, CH2 a square of 10 kHz from 0 V to 3.3 V, the trigger on the rising
// crossing of CH1 at half of the record.
#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <numbers>

#include "tests/system/scope_client.h"

namespace kestrion {
namespace {

constexpr const char* kVirtual = "VIRTUAL::PL7254C::INSTR";

// One digitising level: the vertical scale over 25 levels a division.
double Level(ScopeClient& client, std::string_view channel) {
    double scale = 0.0;
    EXPECT_EQ(client.Channel(channel)->get_VerticalScale(&scale), S_OK);
    return scale / 25.0;
}

void ExpectSine(const Waveform& waveform, double level) {
    for (std::size_t i = 0; i < waveform.volts.size(); ++i) {
        const double time = waveform.initialX + static_cast<double>(i) * waveform.xIncrement;
        const double expected = std::sin(2.0 * std::numbers::pi * 1000.0 * time);
        ASSERT_NEAR(waveform.volts[i], expected, level) << "at point " << i;
    }
}

TEST(Capture, TheSineLiesWithinOneLevelWithTimeZeroOnTheRisingCrossing) {
    const auto server = Serve();
    ScopeClient client;
    ASSERT_EQ(client.Open(server->ResourceName()), S_OK) << TakeErrorText();
    client.AcquireOnce(10000);
    Waveform waveform;
    ASSERT_EQ(client.Fetch(KestrionSourceCh1, waveform), S_OK) << TakeErrorText();
    ASSERT_EQ(waveform.volts.size(), 10000U);
    // 10 divisions of 400 us.
    EXPECT_DOUBLE_EQ(waveform.xIncrement, 4.0e-7);
    EXPECT_DOUBLE_EQ(waveform.initialX, -2.0e-3);
    const double level = Level(client, "Channel1");
    ExpectSine(waveform, level);
    // Point 5000 is t = 0.
    EXPECT_NEAR(waveform.volts[5000], 0.0, level);
    EXPECT_LT(waveform.volts[4900], -level);
    EXPECT_GT(waveform.volts[5100], level);
}

TEST(Capture, SocketAndVirtualLinkGiveTheSameRecord) {
    const auto server = Serve();
    for (const LONG points : {1000, 4096, 100000}) {
        std::vector<Waveform> captured;
        for (const std::string& resource : {server->ResourceName(), std::string(kVirtual)}) {
            ScopeClient client;
            ASSERT_EQ(client.Open(resource), S_OK) << TakeErrorText();
            EXPECT_EQ(client.Channel("Channel2")->put_DisplayState(VARIANT_TRUE), S_OK);
            EXPECT_EQ(client.Channel("Channel3")->put_DisplayState(VARIANT_TRUE), S_OK);
            client.AcquireOnce(points);
            for (const auto source : {KestrionSourceCh1, KestrionSourceCh2, KestrionSourceCh3}) {
                Waveform waveform;
                ASSERT_EQ(client.Fetch(source, waveform), S_OK) << TakeErrorText();
                EXPECT_EQ(waveform.volts.size(), static_cast<std::size_t>(points));
                captured.push_back(waveform);
            }
        }
        for (std::size_t i = 0; i < 3; ++i) {
            EXPECT_EQ(captured[i].volts, captured[i + 3].volts) << points << " points";
            EXPECT_EQ(captured[i].initialX, captured[i + 3].initialX);
            EXPECT_EQ(captured[i].xIncrement, captured[i + 3].xIncrement);
        }
    }
}

TEST(Capture, ReadWaveformWaitsForTheServiceRequest) {
    ScopeClient client;
    ASSERT_EQ(client.Open(kVirtual), S_OK) << TakeErrorText();
    EXPECT_EQ(client.As<IKestrionAcquisition>()->put_SingleSequence(VARIANT_TRUE), S_OK);
    for (int round = 0; round < 3; ++round) {
        Waveform waveform;
        ASSERT_EQ(client.Read(KestrionSourceCh1, 5000, waveform), S_OK) << TakeErrorText();
        ExpectSine(waveform, Level(client, "Channel1"));
        VARIANT_BOOL running = VARIANT_TRUE;
        EXPECT_EQ(client.As<IKestrionAcquisition>()->get_State(&running), S_OK);
        EXPECT_EQ(running, VARIANT_FALSE);
    }
}

TEST(Capture, ReadWaveformOnALinkWithoutServiceRequestEndsByTimeout) {
    const auto server = Serve();
    ScopeClient client;
    ASSERT_EQ(client.Open(server->ResourceName()), S_OK) << TakeErrorText();
    EXPECT_EQ(client.As<IKestrionAcquisition>()->put_SingleSequence(VARIANT_TRUE), S_OK);
    Waveform waveform;
    EXPECT_EQ(client.Read(KestrionSourceCh1, 100, waveform), MakeStatus(0x80042003));
    // The connection is in order: the record can be fetched.
    client.AcquireOnce(1000);
    EXPECT_EQ(client.Fetch(KestrionSourceCh1, waveform), S_OK) << TakeErrorText();
}

TEST(Capture, AMathWaveformComesAsVoltsInFloatingPoint) {
    const auto server = Serve();
    ScopeClient client;
    ASSERT_EQ(client.Open(server->ResourceName()), S_OK) << TakeErrorText();
    const BstrPtr on(std::string_view("SELECT:MATH1 ON"));
    EXPECT_EQ(client.As<IDirectIo>()->WriteString(on.Get()), S_OK);
    EXPECT_EQ(client.Channel("Channel2")->put_DisplayState(VARIANT_TRUE), S_OK);
    client.AcquireOnce(1000);
    Waveform first;
    Waveform second;
    Waveform difference;
    ASSERT_EQ(client.Fetch(KestrionSourceCh1, first), S_OK) << TakeErrorText();
    ASSERT_EQ(client.Fetch(KestrionSourceCh2, second), S_OK) << TakeErrorText();
    ASSERT_EQ(client.Fetch(KestrionSourceMath1, difference), S_OK) << TakeErrorText();
    ASSERT_EQ(difference.volts.size(), 1000U);
    const double levels = Level(client, "Channel1") + Level(client, "Channel2");
    for (std::size_t i = 0; i < 1000; ++i) {
        ASSERT_NEAR(difference.volts[i], first.volts[i] - second.volts[i], levels) << i;
    }
}

TEST(Capture, TransferSettingsAreAsTheyWere) {
    const auto server = Serve();
    ScopeClient client;
    ASSERT_EQ(client.Open(server->ResourceName()), S_OK) << TakeErrorText();
    const auto direct = client.As<IDirectIo>();
    const BstrPtr settings(
        std::string_view("DATA:SOURCE CH2;START 7;STOP 900;:WFMOUTPRE:ENCDG ASC;BYT_NR 2;"
                         "BYT_OR LSB"));
    EXPECT_EQ(direct->WriteString(settings.Get()), S_OK);
    const BstrPtr query(
        std::string_view("HEADER?;:DATA:SOURCE?;START?;STOP?;:WFMOUTPRE:ENCDG?;BN_FMT?;BYT_OR?;"
                         "BYT_NR?"));
    BstrPtr before;
    EXPECT_EQ(direct->QueryString(query.Get(), before.Out()), S_OK);
    client.AcquireOnce(1000);
    Waveform waveform;
    ASSERT_EQ(client.Fetch(KestrionSourceCh1, waveform), S_OK) << TakeErrorText();
    BstrPtr after;
    EXPECT_EQ(direct->QueryString(query.Get(), after.Out()), S_OK);
    EXPECT_EQ(after.Utf8(), before.Utf8());
    LONG code = -1;
    BstrPtr text;
    EXPECT_EQ(client.As<IIviDriverUtility>()->ErrorQuery(&code, text.Out()), S_OK);
    EXPECT_EQ(code, 0) << text.Utf8();
}

TEST(Capture, ASourceThatIsOffIsReported) {
    ScopeClient client;
    ASSERT_EQ(client.Open(kVirtual), S_OK) << TakeErrorText();
    Waveform waveform;
    EXPECT_EQ(client.Fetch(KestrionSourceCh4, waveform), MakeStatus(0x80042001));
    EXPECT_EQ(TakeErrorText(),
              "Kestrion: Specified channel is not enabled.\r\nChannel Not Enabled error");
}

}  // namespace
}  // namespace kestrion
