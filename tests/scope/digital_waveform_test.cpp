// FetchDigitalAllWaveform and FetchDigitalWaveform, line by line.
#include <gmock/gmock.h>

#include "tests/scope/waveform_test.h"

namespace kestrion {
namespace {

using testing::DoubleEq;
using testing::ElementsAre;

class DigitalWaveformTest : public WaveformTest {
  protected:
    HRESULT FetchAll() {
        return As<IKestrionWaveformTransfer>()->FetchDigitalAllWaveform(waveform.Out(), &initialX,
                                                                        &xIncrement);
    }
    HRESULT FetchOne(KestrionDigitalChannelEnum source) {
        return As<IKestrionWaveformTransfer>()->FetchDigitalWaveform(source, waveform.Out(),
                                                                     &initialX, &xIncrement);
    }
    // The questions for all channels, of which one is on; 16 for none.
    void ExpectSelection(int on) {
        ExpectHeaderOff();
        for (const char* name : {"D0", "D1", "D2", "D3", "D4", "D5", "D6", "D7", "D8", "D9", "D10",
                                 "D11", "D12", "D13", "D14", "D15"}) {
            fake.Expect("SELECT:" + std::string(name) + "?\n")
                .Reply(name == "D" + std::to_string(on) ? "1\n" : "0\n");
        }
    }
    void ExpectSetUp(std::string_view width) {
        ExpectSavedState();
        fake.Expect("DATA:SOURCE DIGITALALL\n");
        fake.Expect("HORIZONTAL:RECORDLENGTH?\n").Reply("1000\n");
        fake.Expect("DATA:START 1;STOP 1000\n");
        fake.Expect("WFMOUTPRE:BYT_NR?\n").Reply(std::string(width) + "\n");
        fake.Expect("WFMOUTPRE:ENCDG BIN;BN_FMT FP\n");
        fake.Expect(":WFMOUTPRE:BYT_OR LSB\n");
    }
    void ExpectTimes() {
        fake.Expect("WFMOUTPRE:XINCR?\n").Reply("4.0E-7\n");
        fake.Expect("WFMOUTPRE:XZERO?\n").Reply("1.0E-3\n");
        fake.Expect("WFMOUTPRE:PT_OFF?\n").Reply("500\n");
    }
    void ExpectRecord(int on) {
        ExpectSelection(on);
        ExpectSetUp("1");
        fake.Expect("CURVE?\n").Reply(std::string_view("#14\x00\x01\x82\xFF\n", 8));
        ExpectTimes();
        ExpectRestore();
    }
};

TEST_F(DigitalWaveformTest, AllChannelsComePackedInBytes) {
    Connect();
    ExpectRecord(3);
    fake.ForgetCalls();
    ASSERT_EQ(FetchAll(), S_OK);
    EXPECT_THAT(waveform.Elements<LONG>(), ElementsAre(0, 1, 130, 255));
    EXPECT_THAT(xIncrement, DoubleEq(4.0e-7));
    EXPECT_THAT(initialX, DoubleEq(8.0e-4));
    EXPECT_FALSE(fake.Locked());
    EXPECT_THAT(fake.CallsOf("viLock(1, 1000"), testing::SizeIs(1));
}

TEST_F(DigitalWaveformTest, AWiderElementIsStillOneByteOfTheBlock) {
    Connect();
    ExpectSelection(15);
    ExpectSetUp("2");
    fake.Expect("CURVE?\n").Reply("#15\x01\x02\x03\x04\x05\n");
    ExpectTimes();
    ExpectRestore();
    ASSERT_EQ(FetchAll(), S_OK);
    EXPECT_THAT(waveform.Elements<LONG>(), ElementsAre(1, 2));
}

TEST_F(DigitalWaveformTest, WithoutAChannelTheHeaderStaysOff) {
    Connect();
    ExpectSelection(16);
    EXPECT_EQ(FetchAll(), MakeStatus(0x80042001));
    EXPECT_EQ(ErrorText(),
              "Kestrion: Specified channel is not enabled.\r\nDigitalChannel Not Enabled error");
    EXPECT_EQ(waveform.Get(), nullptr);
}

TEST_F(DigitalWaveformTest, AWidthOfZeroGivesNoElements) {
    Connect();
    ExpectSelection(0);
    ExpectSetUp("0");
    fake.Expect("CURVE?\n").Reply("#12\x01\x02\n");
    ExpectTimes();
    ExpectRestore();
    ASSERT_EQ(FetchAll(), S_OK);
    EXPECT_NE(waveform.Get(), nullptr);
    EXPECT_TRUE(waveform.Elements<LONG>().empty());
}

TEST_F(DigitalWaveformTest, TimesThatAreNotToldAreZero) {
    Connect();
    ExpectSelection(0);
    ExpectSetUp("1");
    fake.Expect("CURVE?\n").Reply("#12\x01\x02\n");
    fake.Expect("WFMOUTPRE:XINCR?\n").Reply("broken\n");
    fake.Expect("WFMOUTPRE:PT_OFF?\n").Reply("broken\n");
    ExpectRestore();
    EXPECT_EQ(FetchAll(), S_OK);
    EXPECT_EQ(ErrorText(), "");
    EXPECT_THAT(waveform.Elements<LONG>(), ElementsAre(1, 2));
    EXPECT_EQ(initialX, 0.0);
    EXPECT_EQ(xIncrement, 0.0);
}

TEST_F(DigitalWaveformTest, ASilentInstrumentRestoresNothing) {
    Connect();
    ExpectSelection(0);
    ExpectSetUp("1");
    fake.Expect("CURVE?\n");
    EXPECT_EQ(FetchAll(), MakeStatus(0x80044215));
    EXPECT_EQ(waveform.Get(), nullptr);
}

TEST_F(DigitalWaveformTest, AChannelIsItsBitOfThePackedRecord) {
    Connect();
    fake.Expect("SELECT:D1?\n").Reply("1\n");
    ExpectRecord(1);
    ASSERT_EQ(FetchOne(KestrionDigitalChannelD1), S_OK);
    EXPECT_THAT(waveform.Elements<LONG>(), ElementsAre(0, 0, 1, 1));
    EXPECT_THAT(initialX, DoubleEq(8.0e-4));
}

TEST_F(DigitalWaveformTest, TheHighestBitOfAByteIsAChannelToo) {
    Connect();
    fake.Expect("SELECT:D7?\n").Reply("1\n");
    ExpectRecord(7);
    ASSERT_EQ(FetchOne(KestrionDigitalChannelD7), S_OK);
    EXPECT_THAT(waveform.Elements<LONG>(), ElementsAre(0, 0, 1, 1));
}

TEST_F(DigitalWaveformTest, ChannelsBeyondAByteAreZero) {
    Connect();
    fake.Expect("SELECT:D15?\n").Reply("1\n");
    ExpectRecord(15);
    ASSERT_EQ(FetchOne(KestrionDigitalChannelD15), S_OK);
    EXPECT_THAT(waveform.Elements<LONG>(), ElementsAre(0, 0, 0, 0));
}

TEST_F(DigitalWaveformTest, AChannelThatIsOffIsReported) {
    Connect();
    fake.Expect("SELECT:D10?\n").Reply("0\n");
    EXPECT_EQ(FetchOne(KestrionDigitalChannelD10), MakeStatus(0x80042001));
    EXPECT_EQ(ErrorText(),
              "Kestrion: Specified channel is not enabled.\r\nDigitalChannel Not Enabled error");
}

TEST_F(DigitalWaveformTest, AFailureOfThePackedRecordIsTheChannels) {
    Connect();
    fake.Expect("SELECT:D0?\n").Reply("1\n");
    ExpectSelection(16);
    EXPECT_EQ(FetchOne(KestrionDigitalChannelD0), MakeStatus(0x80042001));
    EXPECT_EQ(waveform.Get(), nullptr);
}

TEST_F(DigitalWaveformTest, AnUnknownChannelSendsNothing) {
    Connect();
    fake.ForgetCalls();
    EXPECT_EQ(FetchOne(static_cast<KestrionDigitalChannelEnum>(16)), MakeStatus(0x80047010));
    EXPECT_THAT(fake.Calls(), ElementsAre());
}

}  // namespace
}  // namespace kestrion
