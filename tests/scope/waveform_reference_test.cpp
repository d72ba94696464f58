// WriteWaveformToReference, line by line.
#include <gmock/gmock.h>

#include <array>

#include "tests/scope/waveform_test.h"

namespace kestrion {
namespace {

using testing::ElementsAre;

class WaveformReferenceTest : public WaveformTest {
  protected:
    HRESULT Write(KestrionReferenceEnum reference, const std::vector<double>& volts,
                  double first = -5.0e-7, double interval = 1.0e-9) {
        const SafeArrayPtr array(SafeArrayCreateVector(VT_R8, 0, static_cast<ULONG>(volts.size())));
        std::ranges::copy(volts, array.Elements<double>().begin());
        return WriteArray(reference, array.Get(), first, interval);
    }
    HRESULT WriteArray(KestrionReferenceEnum reference, SAFEARRAY* array, double first,
                       double interval) {
        return As<IKestrionWaveformTransfer>()->WriteWaveformToReference(reference, array, first,
                                                                         interval);
    }
    void ExpectState() {
        ExpectHeaderOff();
        fake.Expect("DATA:DESTINATION?\n").Reply("REF4\n");
        fake.Expect("DATA:START?\n").Reply("3\n");
        fake.Expect("WFMINPRE:BN_FMT?\n").Reply("RI\n");
        fake.Expect("WFMINPRE:BYT_OR?\n").Reply("MSB\n");
        fake.Expect("WFMINPRE:ENCD?\n").Reply("ASC\n");
        fake.Expect("WFMINPRE:BYT_NR?\n").Reply("1\n");
        fake.Expect("WFMINPRE:YMULT?\n").Reply("2.5E-2\n");
        fake.Expect("WFMINPRE:PT_OFF?\n").Reply("77\n");
        fake.Expect("WFMINPRE:NR_PT?\n").Reply("1000\n");
        fake.Expect("WFMINPRE:XINCR?\n").Reply("2.0E-9\n");
        fake.Expect("ACQUIRE:STATE?\n").Reply("0\n");
    }
    void ExpectSetUp(std::string_view reference, std::string_view points,
                     std::string_view interval) {
        fake.Expect("DATA:DESTINATION " + std::string(reference) + "\n");
        fake.Expect("WFMINPRE:NR_PT " + std::string(points) + "\n");
        fake.Expect("WFMINPRE:XINCR " + std::string(interval) + "\n");
        fake.Expect("WFMINPRE:ENCDG BIN;BN_FMT FP;BYT_NR 4;YMULT 1.0\n");
        fake.Expect(":WFMINPRE:BYT_OR LSB\n");
    }
    // The destination that was asked for goes back as the source.
    void ExpectStateBack() {
        fake.Expect("DATA:SOURCE REF4;START 3\n");
        fake.Expect(
            "WFMINPRE:BN_FMT RI;BYT_OR MSB;ENCD ASC;BYT_NR 1;YMULT 2.5E-2;PT_OFF 77;NR_PT 1000;"
            "XINCR 2.0E-9\n");
        fake.Expect("HEADER 0\n");
    }
};

TEST_F(WaveformReferenceTest, VoltsGoOutInSinglePrecisionWithTheLowByteFirst) {
    Connect();
    ExpectState();
    ExpectSetUp("REF2", "3;PT_OFF 500", "1e-09");
    // 1.5 is 3FC00000, -2.0 is C0000000 and 0.1 in single precision 3DCCCCCD.
    fake.Expect(std::string("CURVE #212") +
                std::string("\x00\x00\xC0\x3F\x00\x00\x00\xC0\xCD\xCC\xCC\x3D", 12) + "\n");
    ExpectStateBack();
    EXPECT_EQ(Write(KestrionReferenceRef2, {1.5, -2.0, 0.1}), S_OK);
}

TEST_F(WaveformReferenceTest, TheTriggerPointIsTheNearestWholeNumber) {
    Connect();
    ExpectState();
    // 1e-6 / 3e-7 is 3.33.
    ExpectSetUp("REF1", "1;PT_OFF -3", "3e-07");
    fake.Expect(std::string("CURVE #14") + std::string("\x00\x00\x00\x00", 4) + "\n");
    ExpectStateBack();
    EXPECT_EQ(Write(KestrionReferenceRef1, {0.0}, 1.0e-6, 3.0e-7), S_OK);
}

TEST_F(WaveformReferenceTest, WithoutATimeBetweenPointsTheTriggerPointIsAtTheEnd) {
    Connect();
    ExpectState();
    ExpectSetUp("REF1", "1;PT_OFF 2147483647", "0");
    fake.Expect(std::string("CURVE #14") + std::string("\x00\x00\x00\x00", 4) + "\n");
    ExpectStateBack();
    EXPECT_EQ(Write(KestrionReferenceRef1, {0.0}, -1.0, 0.0), S_OK);
    ExpectState();
    ExpectSetUp("REF1", "1;PT_OFF 0", "0");
    fake.Expect(std::string("CURVE #14") + std::string("\x00\x00\x00\x00", 4) + "\n");
    ExpectStateBack();
    EXPECT_EQ(Write(KestrionReferenceRef1, {0.0}, 0.0, 0.0), S_OK);
}

TEST_F(WaveformReferenceTest, ALongRecordIsOneMessage) {
    Connect();
    ExpectState();
    ExpectSetUp("REF3", "5000;PT_OFF 500", "1e-09");
    std::string block = "CURVE #520000";
    for (int i = 0; i < 5000; ++i) {
        block += std::string_view("\x00\x00\xC0\x3F", 4);
    }
    fake.Expect(block + "\n");
    ExpectStateBack();
    EXPECT_EQ(Write(KestrionReferenceRef3, std::vector<double>(5000, 1.5)), S_OK);
}

TEST_F(WaveformReferenceTest, NoPointsAreABlockWithoutData) {
    Connect();
    ExpectState();
    ExpectSetUp("REF1", "0;PT_OFF 500", "1e-09");
    fake.Expect("CURVE #10\n");
    ExpectStateBack();
    EXPECT_EQ(Write(KestrionReferenceRef1, {}), S_OK);
}

TEST_F(WaveformReferenceTest, AStateThatCannotBeReadWritesNothing) {
    Connect();
    ExpectHeaderOff();
    fake.Expect("DATA:DESTINATION?\n").Reply("REF4\n");
    fake.Expect("DATA:START?\n").Reply("3\n");
    for (const char* field :
         {"BN_FMT", "BYT_OR", "ENCD", "BYT_NR", "YMULT", "PT_OFF", "NR_PT", "XINCR"}) {
        fake.Expect("WFMINPRE:" + std::string(field) + "?\n").Reply("1\n");
    }
    fake.Expect("ACQUIRE:STATE?\n");  // never answered
    EXPECT_EQ(Write(KestrionReferenceRef1, {1.0}), MakeStatus(0x80044215));
}

TEST_F(WaveformReferenceTest, AnArrayOfAnotherKindSendsNothing) {
    Connect();
    fake.ForgetCalls();
    const SafeArrayPtr longs(SafeArrayCreateVector(VT_I4, 0, 3));
    EXPECT_EQ(WriteArray(KestrionReferenceRef1, longs.Get(), 0.0, 1.0), MakeStatus(0x80047010));
    EXPECT_EQ(ErrorText(),
              "Kestrion: Invalid value () for method WriteWaveformToReference, parameter "
              "WaveformArray.");
    const std::array<SAFEARRAYBOUND, 2> bounds = {{{2, 0}, {2, 0}}};
    const SafeArrayPtr table(SafeArrayCreate(VT_R8, 2, bounds.data()));
    EXPECT_EQ(WriteArray(KestrionReferenceRef1, table.Get(), 0.0, 1.0), MakeStatus(0x80047010));
    EXPECT_EQ(WriteArray(KestrionReferenceRef1, nullptr, 0.0, 1.0), MakeStatus(0x80047058));
    EXPECT_THAT(fake.Calls(), ElementsAre());
}

TEST_F(WaveformReferenceTest, AnUnknownReferenceSendsNothing) {
    Connect();
    fake.ForgetCalls();
    EXPECT_EQ(Write(static_cast<KestrionReferenceEnum>(4), {1.0}), MakeStatus(0x80047010));
    EXPECT_THAT(fake.Calls(), ElementsAre());
}

}  // namespace
}  // namespace kestrion
