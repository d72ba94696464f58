// What the tests of the VISA functions have in common: sessions to a scripted instrument, over
// each kind of link.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "tests/visa/loopback_server.h"
#include "tests/visa/scripted_device.h"
#include "visa/functions.h"
#include "visa/instrument_catalog.h"

namespace visa_provider::testing {

// A read as the caller sees it.
struct ReadResult {
    ViStatus status = VI_SUCCESS;
    std::string bytes;
};

// A resource manager for each test, and virtual instruments that are scripted. Models "SCRIPTED"
// and "Mixed-Case" exist.
class VisaTest : public ::testing::Test {
  protected:
    void SetUp() override;
    void TearDown() override;

    // A session that has to open.
    ViSession Open(const std::string& resource);
    ViSession OpenVirtual() { return Open("VIRTUAL::SCRIPTED::INSTR"); }

    static ViStatus Write(ViSession session, std::string_view text);
    static ReadResult Read(ViSession session, std::size_t count);
    template <typename Value>
    static Value Get(ViSession object, ViAttr attribute) {
        Value value{};
        EXPECT_EQ(viGetAttribute(object, attribute, &value), VI_SUCCESS);
        return value;
    }
    static std::string GetText(ViSession object, ViAttr attribute);
    static void Set(ViSession object, ViAttr attribute, ViAttrState state);

    // Of the instrument that was made last.
    [[nodiscard]] std::shared_ptr<ScriptedDevice::Record> LastRecord();
    [[nodiscard]] ScriptedDevice& LastDevice();

    ViSession manager_ = VI_NULL;

  private:
    std::unique_ptr<virtual_scope::DeviceLink> MakeInstrument();

    InstrumentCatalog former_;
    std::mutex mutex_;
    std::shared_ptr<ScriptedDevice::Record> record_;
    ScriptedDevice* device_ = nullptr;
};

}  // namespace visa_provider::testing
