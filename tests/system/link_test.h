// Tests over each link: the instrument in the same process, and the served one. What its inputs
// carry stands here once more, by formula.
#pragma once

#include <cmath>
#include <numbers>

#include "tests/system/scope_client.h"

namespace kestrion {

inline constexpr HRESULT kPreviewState = MakeStatus(0x80044217U);
inline constexpr HRESULT kChannelNotEnabled = MakeStatus(0x80042001U);
inline constexpr HRESULT kMaxTimeExceeded = MakeStatus(0x80042003U);
inline constexpr HRESULT kInvalidAcquisition = MakeStatus(0x80042004U);

inline constexpr const char* kMaxTimeText =
    "Kestrion: Maximum time exceeded before the operation completed.\r\n"
    "Maximum Acquisition timeout exceeded.";

// CH1, in volts at seconds after its rising crossing of 0 V: 1 kHz, 1 V.
inline double SineAt(double time) {
    return std::sin(2.0 * std::numbers::pi * 1000.0 * time);
}

// CH2: 10 kHz between 0 V and 3.3 V, high from time 0 on. A point on an edge is behind it.
inline double SquareAt(double time) {
    const double halves = std::floor(time * 20000.0 + 1e-6);
    return std::fmod(halves, 2.0) == 0.0 ? 3.3 : 0.0;
}

// CH3: "Kestrion", carriage return and line feed at 9600 baud between 0 V and 3.3 V, each character
// a low start bit, eight bits from the lowest on and a high stop bit; then ten bits of high.
inline double SerialAt(double time) {
    constexpr std::string_view kText = "Kestrion\r\n";
    const double round = 10.0 * static_cast<double>(kText.size()) + 10.0;
    const double bits = std::floor(time * 9600.0 + 1e-6);
    const auto place = static_cast<std::size_t>(bits - round * std::floor(bits / round));
    const std::size_t character = place / 10;
    const std::size_t bit = place % 10;
    if (character == kText.size() || bit == 9) {
        return 3.3;
    }
    const bool high = bit > 0 && ((kText[character] >> (bit - 1)) & 1) != 0;
    return high ? 3.3 : 0.0;
}

class LinkTest : public testing::TestWithParam<bool> {
  protected:
    void SetUp() override {
        if (IsSocket()) {
            server_ = Serve({}, Model());
        }
        ASSERT_EQ(
            client_.Open(IsSocket() ? server_->ResourceName() : "VIRTUAL::" + Model() + "::INSTR"),
            S_OK)
            << TakeErrorText();
    }
    // Whatever a test did, the instrument understood it.
    void TearDown() override { ExpectNoInstrumentError(); }

    [[nodiscard]] virtual std::string Model() const { return "PL7254C"; }
    [[nodiscard]] static bool IsSocket() { return GetParam(); }

    void ExpectNoInstrumentError() {
        LONG code = -1;
        BstrPtr text;
        EXPECT_EQ(client_.As<IIviDriverUtility>()->ErrorQuery(&code, text.Out()), S_OK);
        EXPECT_EQ(code, 0) << text.Utf8();
    }

    // Past the members, to the instrument itself.
    void Send(std::string_view command) {
        const BstrPtr text(command);
        EXPECT_EQ(client_.As<IDirectIo>()->WriteString(text.Get()), S_OK) << command;
    }
    std::string Ask(std::string_view query) {
        const BstrPtr text(query);
        BstrPtr answer;
        EXPECT_EQ(client_.As<IDirectIo>()->QueryString(text.Get(), answer.Out()), S_OK) << query;
        return answer.Utf8();
    }
    ComPtr<IKestrionWaveformTransfer> Transfer() { return client_.As<IKestrionWaveformTransfer>(); }

    // The settings that a transfer changes and puts back.
    std::string TransferSettings() {
        return Ask(
            "HEADER?;:DATA:SOURCE?;START?;STOP?;DESTINATION?;:WFMOUTPRE:ENCDG?;BN_FMT?;BYT_OR?;"
            "BYT_NR?;:WFMINPRE:BN_FMT?;BYT_OR?;ENCDG?;BYT_NR?;YMULT?;PT_OFF?;NR_PT?;XINCR?");
    }
    void SetMode(KestrionAcquisitionModeEnum mode) {
        EXPECT_EQ(client_.As<IKestrionAcquisition>()->put_Mode(mode), S_OK) << TakeErrorText();
    }
    // One digitising level in volts: 25 make a division.
    double Level(std::string_view channel) {
        double scale = 0.0;
        EXPECT_EQ(client_.Channel(channel)->get_VerticalScale(&scale), S_OK);
        return scale / 25.0;
    }

    std::unique_ptr<virtual_scope::SocketServer> server_;
    ScopeClient client_;
};

inline std::string LinkName(const testing::TestParamInfo<bool>& link) {
    return link.param ? "Socket" : "Virtual";
}

// Each point against the signal at its time.
template <typename Signal>
void ExpectSignal(const Waveform& waveform, Signal signal, double tolerance) {
    for (std::size_t i = 0; i < waveform.volts.size(); ++i) {
        const double time = waveform.initialX + static_cast<double>(i) * waveform.xIncrement;
        ASSERT_NEAR(waveform.volts[i], signal(time), tolerance)
            << "at point " << i << ", " << time << " s";
    }
}

}  // namespace kestrion
