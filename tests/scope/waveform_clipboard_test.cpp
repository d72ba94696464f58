// CopyWaveformToClipboard: the transaction on the wire, and the text.
#include <gmock/gmock.h>

#include <algorithm>

#include "tests/platform/fake_desktop.h"
#include "tests/scope/waveform_test.h"

namespace kestrion {
namespace {

using testing::HasSubstr;

class WaveformClipboardTest : public WaveformTest {
  protected:
    void OpenSession() {
        desktop.Set("WAYLAND_DISPLAY", "wayland-0");
        desktop.AddProgram("wl-copy");
    }
    HRESULT Copy(KestrionSourceEnum source) {
        return As<IKestrionWaveformTransfer>()->CopyWaveformToClipboard(source, 3, 4, &copied);
    }
    // Start and stop of the call have no part in it.
    void ExpectChannel(std::string_view points, std::string_view block) {
        ExpectChecks("CH1");
        ExpectSavedState();
        ExpectChannelSetUp("CH1", points);
        fake.Expect("CURVE?\n").Reply(block);
        ExpectPreamble();
        ExpectRestore();
    }

    FakeDesktop desktop;
    LONG copied = -1;
};

TEST_F(WaveformClipboardTest, TheWholeRecordIsOneTextThatBeginsWithABlank) {
    OpenSession();
    Connect();
    ExpectChannel("3", std::string_view("#13\x00\x02\xFE\n", 7));
    fake.ForgetCalls();
    ASSERT_EQ(Copy(KestrionSourceCh1), S_OK);
    EXPECT_EQ(copied, 3);
    EXPECT_EQ(desktop.Text(),
              "        -0.75\n"
              "        0.25\n"
              "       -1.75\n");
    EXPECT_FALSE(fake.Locked());
}

TEST_F(WaveformClipboardTest, FloatingPointPointsAreNotMultiplied) {
    OpenSession();
    Connect();
    ExpectChecks("MATH1");
    ExpectSavedState();
    ExpectFloatSetUp("MATH1", "1");
    fake.Expect("CURVE?\n").Reply(std::string_view("#14\x00\x00\xC0\x3F\n", 8));
    ExpectPreamble();
    ExpectRestore();
    ASSERT_EQ(Copy(KestrionSourceMath1), S_OK);
    EXPECT_EQ(desktop.Text(), "        -0.25\n");
}

TEST_F(WaveformClipboardTest, Of300000Points250000AreCopied) {
    OpenSession();
    Connect();
    ExpectChannel("300000", "#6300000" + std::string(300000, '\x02') + "\n");
    ASSERT_EQ(Copy(KestrionSourceCh1), S_OK);
    EXPECT_EQ(copied, 250000);
    const std::string text = desktop.Text();
    EXPECT_EQ(std::ranges::count(text, '\n'), 250000);
}

TEST_F(WaveformClipboardTest, TheCountIsNotTested) {
    OpenSession();
    Connect();
    ExpectChannel("1000", "#12\x02\x03\n");
    ASSERT_EQ(Copy(KestrionSourceCh1), S_OK);
    EXPECT_EQ(copied, 2);
}

TEST_F(WaveformClipboardTest, WithoutAClipboardTheInstrumentIsPutBackAndTheMemberSaysSo) {
    Connect();
    ExpectChannel("1", "#11\x02\n");
    EXPECT_EQ(Copy(KestrionSourceCh1), MakeStatus(0x80047011));
    EXPECT_EQ(copied, 0);
    EXPECT_THAT(ErrorText(), HasSubstr("CopyWaveformToClipboard"));
}

TEST_F(WaveformClipboardTest, AClipboardThatTakesNothingIsReported) {
    desktop.Set("DISPLAY", ":0");
    desktop.AddScript("xclip", "exit 1\n");
    Connect();
    ExpectChannel("1", "#11\x02\n");
    EXPECT_EQ(Copy(KestrionSourceCh1), MakeStatus(0x80047000));
    EXPECT_EQ(copied, 0);
    EXPECT_EQ(ErrorText(),
              "Kestrion: Unrecoverable failure.\r\n"
              "The clipboard took no text: xclip ended with 1.");
}

TEST_F(WaveformClipboardTest, AnAbsentSourceIsError246) {
    OpenSession();
    Connect("PL77002SX");
    fake.Expect("HEADER?\n").Reply("1\n");
    fake.Expect("HEADER OFF\n");
    fake.Expect("HEADER 1\n");
    EXPECT_EQ(Copy(KestrionSourceCh3), MakeStatus(0x80020009));
    EXPECT_THAT(ErrorText(), HasSubstr("Resource ID = 246"));
    EXPECT_EQ(copied, 0);
    EXPECT_EQ(desktop.Call(), "");
}

TEST_F(WaveformClipboardTest, AWrongModeCopiesNothing) {
    OpenSession();
    Connect();
    ExpectChecksInMode("CH1", "ENVELOPE");
    fake.Expect("HEADER 0\n");
    EXPECT_EQ(Copy(KestrionSourceCh1), MakeStatus(0x80042004));
    EXPECT_EQ(copied, 0);
    EXPECT_EQ(desktop.Call(), "");
}

}  // namespace
}  // namespace kestrion
