// The virtual instrument itself behind a session, as a client uses it.
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "visa/functions.h"

namespace visa_provider {
namespace {

class VirtualInstrumentTest : public ::testing::Test {
  protected:
    void SetUp() override {
        ASSERT_EQ(viOpenDefaultRM(&manager_), VI_SUCCESS);
        ASSERT_EQ(viOpen(manager_, "VIRTUAL::PL7254C::INSTR", VI_NO_LOCK, 0, &session_),
                  VI_SUCCESS);
    }
    void TearDown() override { EXPECT_EQ(viClose(manager_), VI_SUCCESS); }

    void Write(std::string_view text) const {
        ASSERT_EQ(viWrite(session_, reinterpret_cast<const ViByte*>(text.data()),
                          static_cast<ViUInt32>(text.size()), nullptr),
                  VI_SUCCESS);
    }
    [[nodiscard]] std::string Read() const {
        std::vector<ViByte> buffer(65536);
        ViUInt32 count = 0;
        EXPECT_EQ(viRead(session_, buffer.data(), 65536, &count), VI_SUCCESS);
        return {buffer.data(), buffer.data() + count};
    }
    [[nodiscard]] std::string Query(std::string_view text) const {
        Write(text);
        return Read();
    }

    ViSession manager_ = VI_NULL;
    ViSession session_ = VI_NULL;
};

TEST_F(VirtualInstrumentTest, Identifies) {
    const std::string answer = Query("*IDN?\n");
    EXPECT_NE(answer.find(",PL7254C,"), std::string::npos) << answer;
    EXPECT_EQ(answer.back(), '\n');
}

TEST_F(VirtualInstrumentTest, RequestsServiceWhenItsOperationIsComplete) {
    ASSERT_EQ(viEnableEvent(session_, VI_EVENT_SERVICE_REQ, VI_QUEUE, 0), VI_SUCCESS);
    Write("DESE 1;*ESE 1;*SRE 32;*CLS\n");
    EXPECT_EQ(viWaitOnEvent(session_, VI_EVENT_SERVICE_REQ, 0, nullptr, nullptr), VI_ERROR_TMO);
    Write("*OPC\n");
    ViEvent event = VI_NULL;
    ASSERT_EQ(viWaitOnEvent(session_, VI_EVENT_SERVICE_REQ, 5000, nullptr, &event), VI_SUCCESS);
    EXPECT_EQ(viClose(event), VI_SUCCESS);
    ViUInt16 status = 0;
    EXPECT_EQ(viReadSTB(session_, &status), VI_SUCCESS);
    EXPECT_EQ(status & 0x60, 0x60);
    EXPECT_EQ(viReadSTB(session_, &status), VI_SUCCESS);
    EXPECT_EQ(status & 0x60, 0x20);
}

TEST_F(VirtualInstrumentTest, RequestsServiceAtTheEndOfASingleAcquisition) {
    ASSERT_EQ(viEnableEvent(session_, VI_EVENT_SERVICE_REQ, VI_QUEUE, 0), VI_SUCCESS);
    Write("ACQUIRE:STOPAFTER SEQUENCE\n");
    Write("ACQUIRE:STATE 0\n");
    Write("DESE 1;*ESE 1;*SRE 32;*CLS\n");
    Write("ACQUIRE:STATE 1\n");
    Write("*OPC\n");
    EXPECT_EQ(viWaitOnEvent(session_, VI_EVENT_SERVICE_REQ, 10000, nullptr, nullptr), VI_SUCCESS);
    EXPECT_NE(Query("ACQUIRE:STATE?\n").find('0'), std::string::npos);
}

TEST_F(VirtualInstrumentTest, EndsTheCurveWithEndAndNotWithACharacter) {
    Write("HEADER OFF\n");
    Write("DATA:START 1;STOP 1000\n");
    Write("CURVE?\n");
    const std::string curve = Read();
    ASSERT_GT(curve.size(), 2U);
    EXPECT_EQ(curve.front(), '#');
    const auto digits = static_cast<std::size_t>(curve[1] - '0');
    const std::size_t length = std::stoul(curve.substr(2, digits));
    EXPECT_EQ(curve.size(), 2 + digits + length + 1);
}

TEST_F(VirtualInstrumentTest, ClearDropsTheAnswer) {
    Write("*IDN?\n");
    EXPECT_EQ(viClear(session_), VI_SUCCESS);
    EXPECT_EQ(Query("*ESE?\n").find("PL7254C"), std::string::npos);
}

}  // namespace
}  // namespace visa_provider
