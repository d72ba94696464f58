// A program's view of the driver: the shared library through its public headers alone.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "kestrion/kestrion.h"
#include "virtual/server/socket_server.h"

namespace kestrion {

struct Waveform {
    std::vector<double> volts;
    double initialX = 0.0;
    double xIncrement = 0.0;
};

// The description of this thread's error object, which is taken; empty without one.
inline std::string TakeErrorText() {
    ComPtr<IErrorInfo> error;
    BstrPtr text;
    if (GetErrorInfo(0, error.Out()) == S_OK) {
        EXPECT_EQ(error->GetDescription(text.Out()), S_OK);
    }
    return text.Utf8();
}

class ScopeClient {
  public:
    ScopeClient() { EXPECT_EQ(CreateKestrion(scope.Out()), S_OK); }

    HRESULT Open(std::string_view resource, std::string_view options = "") {
        const BstrPtr name(resource);
        const BstrPtr text(options);
        return scope->Initialize(name.Get(), VARIANT_TRUE, VARIANT_FALSE, text.Get());
    }
    template <typename Interface>
    ComPtr<Interface> As() {
        auto found = Query<Interface>(scope.Get());
        EXPECT_TRUE(found);
        return found;
    }
    ComPtr<IKestrionChannel> Channel(std::string_view name) {
        const BstrPtr text(name);
        ComPtr<IKestrionChannel> channel;
        EXPECT_EQ(As<IKestrionChannels>()->get_Item(text.Get(), channel.Out()), S_OK);
        return channel;
    }
    // One acquisition sequence, awaited by asking for the acquisition's state.
    void AcquireOnce(LONG points) {
        EXPECT_EQ(As<IKestrionHorizontal>()->put_RecordLength(points), S_OK);
        EXPECT_EQ(As<IKestrionAcquisition>()->StartSingleSequence(), S_OK);
        VARIANT_BOOL running = VARIANT_TRUE;
        while (running == VARIANT_TRUE) {
            ASSERT_EQ(As<IKestrionAcquisition>()->get_State(&running), S_OK);
        }
    }
    HRESULT Fetch(KestrionSourceEnum source, Waveform& waveform) {
        SafeArrayPtr array;
        const HRESULT status = As<IKestrionWaveformTransfer>()->FetchWaveform(
            source, array.Out(), &waveform.initialX, &waveform.xIncrement);
        Keep(array, waveform);
        return status;
    }
    HRESULT Read(KestrionSourceEnum source, LONG maxTime, Waveform& waveform) {
        SafeArrayPtr array;
        const HRESULT status = As<IKestrionWaveformTransfer>()->ReadWaveform(
            source, maxTime, array.Out(), &waveform.initialX, &waveform.xIncrement);
        Keep(array, waveform);
        return status;
    }

    ComPtr<IKestrion> scope;

  private:
    static void Keep(const SafeArrayPtr& array, Waveform& waveform) {
        const auto elements = array.Elements<double>();
        waveform.volts.assign(elements.begin(), elements.end());
    }
};

inline std::unique_ptr<virtual_scope::SocketServer> Serve(
    const virtual_scope::FaultPlan& faults = {}, const std::string& model = "PL7254C") {
    std::string error;
    auto server = virtual_scope::SocketServer::Start({.model = model, .faults = faults}, error);
    EXPECT_NE(server, nullptr) << error;
    return server;
}

}  // namespace kestrion
