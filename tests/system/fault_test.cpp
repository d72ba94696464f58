// What goes wrong on a link: each ends in time with its status and text, nothing leaks, and the
// same object can be initialized again.
#include <gmock/gmock.h>

#include <filesystem>

#include "tests/system/scope_client.h"

namespace kestrion {
namespace {

using testing::HasSubstr;
using testing::Not;
using virtual_scope::FaultPlan;

std::ptrdiff_t OpenDescriptors() {
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"),
                         std::filesystem::directory_iterator());
}

// Opens, captures without a fault and closes.
void ExpectWorks(ScopeClient& client, const std::string& resource) {
    ASSERT_EQ(client.Open(resource), S_OK) << TakeErrorText();
    client.AcquireOnce(1000);
    Waveform waveform;
    EXPECT_EQ(client.Fetch(KestrionSourceCh1, waveform), S_OK) << TakeErrorText();
    EXPECT_EQ(waveform.volts.size(), 1000U);
    EXPECT_EQ(client.scope->Close(), S_OK);
}

class FaultTest : public testing::Test {
  protected:
    void SetUp() override {
        server_ = Serve();
        // The first connection makes what the process keeps.
        ExpectWorks(client_, server_->ResourceName());
        descriptors_ = OpenDescriptors();
    }
    // Opens, sets a short time-out, acquires, and lets the fault strike the transfer alone.
    HRESULT FetchWith(const FaultPlan& faults) {
        EXPECT_EQ(client_.Open(server_->ResourceName()), S_OK) << TakeErrorText();
        EXPECT_EQ(client_.As<IDirectIo>()->put_Timeout(200), S_OK);
        client_.AcquireOnce(1000);
        server_->SetFaults(faults);
        Waveform waveform;
        const HRESULT status = client_.Fetch(KestrionSourceCh1, waveform);
        text_ = TakeErrorText();
        EXPECT_TRUE(waveform.volts.empty());
        return status;
    }
    // After a fault: close, and everything works again on the same object.
    void ExpectRecovers() {
        server_->SetFaults({});
        EXPECT_EQ(client_.scope->Close(), S_OK);
        ExpectWorks(client_, server_->ResourceName());
        while (server_->ClientCount() != 0) {
            std::this_thread::yield();
        }
        EXPECT_LE(OpenDescriptors(), descriptors_);
    }

    std::unique_ptr<virtual_scope::SocketServer> server_;
    ScopeClient client_;
    std::ptrdiff_t descriptors_ = 0;
    std::string text_;
};

TEST_F(FaultTest, NoListenerAtTheAddress) {
    std::string error;
    auto gone = virtual_scope::SocketServer::Start({}, error);
    ASSERT_NE(gone, nullptr) << error;
    const std::string resource = gone->ResourceName();
    gone.reset();
    EXPECT_EQ(client_.Open(resource), MakeStatus(0x80040011));
    EXPECT_THAT(TakeErrorText(), Not(testing::IsEmpty()));
    VARIANT_BOOL initialized = VARIANT_TRUE;
    EXPECT_EQ(client_.scope->get_Initialized(&initialized), S_OK);
    EXPECT_EQ(initialized, VARIANT_FALSE);
    EXPECT_LE(OpenDescriptors(), descriptors_);
    ExpectWorks(client_, server_->ResourceName());
}

TEST_F(FaultTest, ANameThatDoesNotResolve) {
    EXPECT_EQ(client_.Open("TCPIP0::no-such-host.invalid::4000::SOCKET"), MakeStatus(0x80040011));
    EXPECT_THAT(TakeErrorText(), Not(testing::IsEmpty()));
    ExpectWorks(client_, server_->ResourceName());
}

TEST_F(FaultTest, AnUnknownVirtualModel) {
    EXPECT_EQ(client_.Open("VIRTUAL::ZZ1::INSTR"), MakeStatus(0x80040011));
    ExpectWorks(client_, server_->ResourceName());
}

TEST_F(FaultTest, AResourceThatIsNone) {
    EXPECT_EQ(client_.Open("nonsense"), MakeStatus(0x80040012));
    EXPECT_THAT(TakeErrorText(), Not(testing::IsEmpty()));
    ExpectWorks(client_, server_->ResourceName());
}

TEST_F(FaultTest, AConnectionThatIsCutInTheMiddleOfTheBlock) {
    EXPECT_EQ(FetchWith({.cutAfter = 500}), MakeStatus(0x800400A6));
    EXPECT_THAT(text_, Not(testing::IsEmpty()));
    ExpectRecovers();
}

TEST_F(FaultTest, ABlockHeaderThatAnnouncesTooMuch) {
    EXPECT_EQ(FetchWith({.lengthError = 10}), MakeStatus(0x80044217));
    EXPECT_EQ(text_, "Kestrion: Preview State,Acquire the Waveform.");
    ExpectRecovers();
}

TEST_F(FaultTest, ABlockHeaderThatAnnouncesTooLittle) {
    EXPECT_EQ(FetchWith({.lengthError = -10}), MakeStatus(0x80044217));
    EXPECT_EQ(text_, "Kestrion: Preview State,Acquire the Waveform.");
    ExpectRecovers();
}

TEST_F(FaultTest, ABlockLongerThanAnnounced) {
    EXPECT_EQ(FetchWith({.surplusBytes = 20}), MakeStatus(0x80047059));
    EXPECT_EQ(text_,
              "Kestrion: Unexpected response from the instrument.\r\n"
              "The waveform block is longer than announced.");
    ExpectRecovers();
}

TEST_F(FaultTest, AnInstrumentThatFallsSilent) {
    EXPECT_EQ(FetchWith({.silent = true}), MakeStatus(0x80044215));
    EXPECT_EQ(text_, "Kestrion: I/O timeout error: .");
    ExpectRecovers();
}

TEST_F(FaultTest, AnInstrumentThatNeverAnswersAtStartUp) {
    server_->SetFaults({.silent = true});
    EXPECT_EQ(client_.Open(server_->ResourceName()), MakeStatus(0x80044215));
    EXPECT_EQ(TakeErrorText(), "Kestrion: I/O timeout error: .");
    server_->SetFaults({});
    ExpectWorks(client_, server_->ResourceName());
}

TEST_F(FaultTest, AServerThatGoesAwayBetweenTwoCalls) {
    ASSERT_EQ(client_.Open(server_->ResourceName()), S_OK) << TakeErrorText();
    server_.reset();
    LONG averages = 0;
    EXPECT_LT(client_.As<IKestrionAcquisition>()->get_NumberAverages(&averages), 0);
    EXPECT_THAT(TakeErrorText(), Not(testing::IsEmpty()));
    EXPECT_EQ(client_.scope->Close(), S_OK);
    server_ = Serve();
    ExpectWorks(client_, server_->ResourceName());
}

}  // namespace
}  // namespace kestrion
