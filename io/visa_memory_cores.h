// What VISA's access to the memory of a register-based device is made of.
#pragma once

#include <cstdint>
#include <string_view>

#include "kestrion/platform/safe_array.h"
#include "kestrion/platform/types.h"
#include "kestrion/platform/variant.h"

namespace kestrion {

// The driver's own numbers; the tables in visa_enums.h give VISA's.
enum class VisaAddressSpace : std::int32_t {
    kA16 = 0,
    kA24 = 1,
    kA32 = 2,
    kA64 = 3,
    kPxiConfiguration = 4,
    kPxiBar0 = 5,
    kPxiBar1 = 6,
    kPxiBar2 = 7,
    kPxiBar3 = 8,
    kPxiBar4 = 9,
    kPxiBar5 = 10,
    kPxiAllocated = 11,
};
enum class VisaDataWidth : std::int32_t { k8 = 0, k16 = 1, k32 = 2, k64 = 3 };

// Each behaviour in one place, with the operation's name for its reports and the width of its
// elements. What programs call are these with their types: see IVisaMemoryIo.
struct VisaMemoryCores {
  protected:
    virtual ~VisaMemoryCores() = default;

    virtual HRESULT InOf(std::string_view method, VisaDataWidth width, VisaAddressSpace space,
                         std::uint64_t offset, void* value) = 0;
    virtual HRESULT OutOf(VisaAddressSpace space, std::uint64_t offset) = 0;
    virtual HRESULT MoveInVariantOf(std::string_view method, VisaDataWidth width,
                                    VisaAddressSpace space, std::uint64_t offset,
                                    std::uint32_t count, VARIANT* array) = 0;
    virtual HRESULT MoveInArrayOf(std::string_view method, VisaDataWidth width,
                                  VisaAddressSpace space, std::uint64_t offset, std::uint32_t count,
                                  SAFEARRAY** array) = 0;
    virtual HRESULT MoveInBufferOf(std::string_view method, VisaDataWidth width,
                                   VisaAddressSpace space, std::uint64_t offset,
                                   std::uint32_t count, void* target) = 0;
    // `parameter` is the name of the source for the report of a null one.
    virtual HRESULT MoveOutOf(std::string_view method, std::string_view parameter,
                              VisaAddressSpace space, std::uint64_t offset, const void* source) = 0;
};

}  // namespace kestrion
