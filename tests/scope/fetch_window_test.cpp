// FetchWaveformWithinCursor and FetchWaveformWithinZoom, line by line.
#include <gmock/gmock.h>

#include "tests/scope/waveform_test.h"

namespace kestrion {
namespace {

using testing::ElementsAre;

class FetchWindowTest : public WaveformTest {
  protected:
    HRESULT FetchCursor(KestrionSourceEnum source) {
        return As<IKestrionWaveformTransfer>()->FetchWaveformWithinCursor(source, waveform.Out(),
                                                                          &initialX, &xIncrement);
    }
    HRESULT FetchZoom(KestrionSourceEnum source) {
        return As<IKestrionWaveformTransfer>()->FetchWaveformWithinZoom(source, waveform.Out(),
                                                                        &initialX, &xIncrement);
    }
    // From the saved state to the window, with bars at these times in a record of 1000 points of
    // 1 ms, whose trigger stands at point 500.
    void ExpectCursor(std::string_view first, std::string_view second, std::string_view window) {
        ExpectChecks("CH1");
        ExpectSavedState();
        fake.Expect("DATA:SOURCE CH1\n");
        fake.Expect("HORIZONTAL:RECORDLENGTH?\n").Reply("1000\n");
        fake.Expect("CURSOR:SOURCE CH1\n");
        fake.Expect("CURSOR:VBARS:POS1?\n").Reply(std::string(first) + "\n");
        fake.Expect("CURSOR:VBARS:POS2?\n").Reply(std::string(second) + "\n");
        fake.Expect("DATA:START 1;STOP 1000\n");
        fake.Expect("WFMOUTPRE:XINCR?\n").Reply("1.0E-3\n");
        fake.Expect("WFMOUTPRE:PT_OFF?\n").Reply("500\n");
        fake.Expect("DATA:" + std::string(window) + "\n");
        ExpectEncoding();
    }
    void ExpectZoomOn() {
        ExpectHeaderOff();
        fake.Expect("ZOOM:MODE 1\n");
        fake.Expect("ZOOM:MODE?\n").Reply("1\n");
    }
    void ExpectZoom(std::string_view position, std::string_view scale, std::string_view window) {
        ExpectZoomOn();
        fake.Expect("SELECT:CH1?\n").Reply("1\n");
        fake.Expect("ACQUIRE:MODE?\n").Reply("SAMPLE\n");
        ExpectSavedState();
        fake.Expect("DATA:SOURCE CH1\n");
        fake.Expect("HORIZONTAL:RECORDLENGTH?\n").Reply("1000\n");
        fake.Expect("ZOOM:CH1:HORIZONTAL:POSITION?\n").Reply(std::string(position) + "\n");
        fake.Expect("ZOOM:CH1:HORIZONTAL:SCALE?\n").Reply(std::string(scale) + "\n");
        fake.Expect("DATA:" + std::string(window) + "\n");
        ExpectEncoding();
    }
    void ExpectEncoding() {
        fake.Expect("WFMOUTPRE:BYT_NR 1;BYT_NR?\n").Reply("1\n");
        fake.Expect(
            "WFMOUTPRE:ENCD BIN;BN_FMT RI;BYT_NR\xA0"
            "1\n");
    }
    // A block of so many bytes, which isn't the record's length.
    void ExpectRefusedBlock(std::string_view header) {
        fake.Expect("CURVE?\n").Reply(header);
        ExpectRestore();
    }
};

TEST_F(FetchWindowTest, APartBetweenTheBarsIsHeldAgainstTheWholeRecord) {
    Connect();
    // 500 - 250.5 is 249.5 and 500 + 100.25 is 600.25: both lose what is behind the point.
    ExpectCursor("-0.2505", "0.10025", "START 249;STOP 600");
    ExpectRefusedBlock("#3352");
    EXPECT_EQ(FetchCursor(KestrionSourceCh1), MakeStatus(0x80044217));
    EXPECT_EQ(ErrorText(), "Kestrion: Preview State,Acquire the Waveform.");
    EXPECT_EQ(waveform.Get(), nullptr);
}

TEST_F(FetchWindowTest, BarsInTheOtherOrderAreExchanged) {
    Connect();
    ExpectCursor("0.25", "-0.25", "START 250;STOP 750");
    ExpectRefusedBlock("#3501");
    EXPECT_EQ(FetchCursor(KestrionSourceCh1), MakeStatus(0x80044217));
}

TEST_F(FetchWindowTest, BarsInFrontOfTheRecordAreTruncatedTowardZero) {
    Connect();
    ExpectCursor("-0.5015", "-0.50025", "START -1;STOP 0");
    ExpectRefusedBlock("#12");
    EXPECT_EQ(FetchCursor(KestrionSourceCh1), MakeStatus(0x80044217));
}

TEST_F(FetchWindowTest, ABlockAsLongAsTheRecordComesThrough) {
    Connect();
    ExpectCursor("-0.5", "0.5", "START 0;STOP 1000");
    fake.Expect("CURVE?\n").Reply("#41000" + std::string(1000, '\x02') + "\n");
    ExpectPreamble();
    ExpectRestore();
    EXPECT_EQ(FetchCursor(KestrionSourceCh1), S_OK);
    ASSERT_EQ(Volts().size(), 1000U);
    EXPECT_EQ(Volts()[999], 0.25);
}

TEST_F(FetchWindowTest, WithoutATimeBetweenPointsTheBarsLieAtTheEndsOfWhatANumberHolds) {
    Connect();
    ExpectChecks("CH1");
    ExpectSavedState();
    fake.Expect("DATA:SOURCE CH1\n");
    fake.Expect("HORIZONTAL:RECORDLENGTH?\n").Reply("1000\n");
    fake.Expect("CURSOR:SOURCE CH1\n");
    fake.Expect("CURSOR:VBARS:POS1?\n").Reply("0\n");
    fake.Expect("CURSOR:VBARS:POS2?\n").Reply("1\n");
    fake.Expect("DATA:START 1;STOP 1000\n");
    fake.Expect("WFMOUTPRE:XINCR?\n").Reply("0\n");
    fake.Expect("WFMOUTPRE:PT_OFF?\n").Reply("500\n");
    fake.Expect("DATA:START 0;STOP 2147483647\n");
    ExpectEncoding();
    ExpectRefusedBlock("#12");
    EXPECT_EQ(FetchCursor(KestrionSourceCh1), MakeStatus(0x80044217));
}

TEST_F(FetchWindowTest, TheCursorRefusesAnAbsentSourceWithoutAWord) {
    Connect("PL77002SX");
    fake.Expect("HEADER?\n").Reply("1\n");
    fake.Expect("HEADER OFF\n");
    fake.Expect("HEADER 1\n");
    EXPECT_EQ(FetchCursor(KestrionSourceCh4), 1);
    EXPECT_EQ(ErrorText(), "");
    EXPECT_EQ(waveform.Get(), nullptr);
}

TEST_F(FetchWindowTest, APartWithinTheZoomIsHeldAgainstTheWholeRecord) {
    Connect();
    // Half of 1000 / 4 around 40 per cent.
    ExpectZoom("40", "4", "START 275;STOP 525");
    ExpectRefusedBlock("#3251");
    EXPECT_EQ(FetchZoom(KestrionSourceCh1), MakeStatus(0x80044217));
}

TEST_F(FetchWindowTest, AZoomThatHangsOverTheBeginningStartsAtOne) {
    Connect();
    ExpectZoom("10", "2", "START 1;STOP 350");
    ExpectRefusedBlock("#3350");
    EXPECT_EQ(FetchZoom(KestrionSourceCh1), MakeStatus(0x80044217));
}

TEST_F(FetchWindowTest, AZoomThatHangsOverTheEndStopsAtTheLastPoint) {
    Connect();
    ExpectZoom("90", "2", "START 650;STOP 1000");
    ExpectRefusedBlock("#3351");
    EXPECT_EQ(FetchZoom(KestrionSourceCh1), MakeStatus(0x80044217));
}

TEST_F(FetchWindowTest, AZoomOfTheWholeRecordComesThroughAndStaysOn) {
    Connect();
    ExpectZoom("50", "1", "START 1;STOP 1000");
    fake.Expect("CURVE?\n").Reply("#41000" + std::string(1000, '\x02') + "\n");
    ExpectPreamble();
    ExpectRestore();
    EXPECT_EQ(FetchZoom(KestrionSourceCh1), S_OK);
    EXPECT_EQ(Volts().size(), 1000U);
}

TEST_F(FetchWindowTest, AZoomThatDoesNotGoOnIsRefusedWithoutAWord) {
    Connect();
    ExpectHeaderOff();
    fake.Expect("ZOOM:MODE 1\n");
    fake.Expect("ZOOM:MODE?\n").Reply("0\n");
    fake.Expect("HEADER 0\n");
    EXPECT_EQ(FetchZoom(KestrionSourceCh1), 1);
    EXPECT_EQ(ErrorText(), "");
}

TEST_F(FetchWindowTest, TheZoomGoesOnBeforeAnAbsentSourceIsRefused) {
    Connect("PL77002SX");
    ExpectZoomOn();
    fake.Expect("HEADER 0\n");
    EXPECT_EQ(FetchZoom(KestrionSourceRef3), 1);
    EXPECT_EQ(ErrorText(), "");
}

}  // namespace
}  // namespace kestrion
