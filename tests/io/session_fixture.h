// A session over a scripted VISA library, with partners that write down what they are asked.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "io/visa_c_session.h"
#include "tests/io/fake_visa.h"
#include "tests/io/recording_partners.h"

namespace kestrion {

constexpr visa::ViStatus VisaCode(std::uint32_t bits) {
    return static_cast<visa::ViStatus>(bits);
}
// VISA's numbers, as published.
inline constexpr visa::ViStatus kVisaTimeout = VisaCode(0xBFFF0015);
inline constexpr visa::ViStatus kVisaIoError = VisaCode(0xBFFF003E);
inline constexpr visa::ViAttr kTimeoutAttribute = 0x3FFF001A;
inline constexpr visa::ViAttr kTermCharAttribute = 0x3FFF0018;
inline constexpr visa::ViAttr kTermCharEnabledAttribute = 0x3FFF0038;
inline constexpr visa::ViAttr kSendEndAttribute = 0x3FFF0016;
// What the I/O error above becomes.
inline constexpr HRESULT kMappedIoError = MakeStatus(0x8004003E);

// A variant array of these elements.
template <typename T>
SafeArrayPtr MakeArray(const std::vector<T>& values) {
    SafeArrayPtr array(SafeArrayCreateVector(kVartype<T>, 0, static_cast<ULONG>(values.size())));
    std::copy(values.begin(), values.end(), array.template Elements<T>().begin());
    return array;
}

// Memory that a test can take away.
inline bool sessionMemoryIsOut = false;
inline BufferMemory SessionMemory(std::size_t size) {
    return sessionMemoryIsOut ? nullptr : AllocateBufferMemory(size);
}

class SessionFixture : public testing::Test {
  protected:
    ~SessionFixture() override {
        sessionMemoryIsOut = false;
        EXPECT_THAT(fake.Mismatches(), testing::IsEmpty());
    }

    HRESULT Open(std::string_view resource = "TCPIP0::scope::INSTR") {
        const HRESULT status = session.Initialize(resource, &poller, &reporter, &formatter);
        fake.ForgetCalls();
        return status;
    }

    FakeVisa fake;
    RecordingReporter reporter;
    CountingPoller poller;
    SlopeFormatter formatter;
    CVisaCSession session{[this](std::string_view, const visa::FunctionTable*& functions) {
                              functions = &fake.Table();
                              return S_OK;
                          },
                          SessionMemory};
};

// The same with the session open on an interface that has END, and nothing noted yet.
class OpenSessionFixture : public SessionFixture {
  protected:
    void SetUp() override { ASSERT_EQ(Open(), S_OK); }
};

}  // namespace kestrion
