// What the operations of the session are made of.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "io/args.h"
#include "io/element.h"
#include "io/status.h"
#include "kestrion/platform/bstr.h"
#include "kestrion/platform/safe_array.h"
#include "kestrion/platform/types.h"

namespace kestrion {

using ArgList = std::span<const ArgSlot>;

// Whether an operation asks the poller for the instrument's status when it has succeeded.
enum class Polling : bool { kOff = false, kOn = true };

// Each behaviour in one place, with the element kind and the poll as arguments. The operations that
// programs call are these with their types: see IIoSession. `flush` of a formatted one includes the
// poll.
struct IoSessionCores {
  protected:
    virtual ~IoSessionCores() = default;

    virtual HRESULT PrintfOf(std::string_view format, ArgList args, bool flush) = 0;
    virtual HRESULT ScanfOf(std::string_view format, std::int32_t timeout, ArgList args,
                            bool flush) = 0;
    virtual HRESULT QueryfOf(std::string_view command, std::string_view response,
                             std::int32_t timeout, ArgList args, Polling polling) = 0;
    // The command as it stands, the response by a format.
    virtual HRESULT QueryScanfOf(std::string_view command, std::string_view response,
                                 std::int32_t timeout, ArgList args, Polling polling) = 0;
    virtual HRESULT QueryStringOf(std::string_view command, BSTR* text, std::int32_t timeout,
                                  Polling polling) = 0;
    virtual HRESULT QueryStringOf(std::string_view command, std::string* text, std::int32_t timeout,
                                  Polling polling) = 0;
    virtual HRESULT WriteArrayOf(SAFEARRAY* bytes, bool flush, std::int32_t timeout,
                                 Polling polling) = 0;
    virtual HRESULT WriteBytesOf(const BYTE* bytes, std::uint32_t count, std::uint32_t* actual,
                                 bool flush, std::int32_t timeout, Polling polling) = 0;
    virtual HRESULT WriteWideOf(std::u16string_view text, bool flush, std::int32_t timeout,
                                Polling polling) = 0;
    virtual HRESULT WriteTextOf(std::string_view text, bool flush, std::int32_t timeout,
                                Polling polling) = 0;
    virtual HRESULT ReadArrayOf(SAFEARRAY** bytes, std::uint32_t count, bool flush,
                                std::int32_t timeout, Polling polling) = 0;
    virtual HRESULT ReadBytesOf(BYTE* target, std::uint32_t count, std::uint32_t* actual,
                                bool flush, std::int32_t timeout, Polling polling) = 0;
    virtual HRESULT ReadStringOf(BSTR* text, std::int32_t timeout, Polling polling) = 0;
    virtual HRESULT ReadStringOf(std::string* text, std::int32_t timeout, Polling polling) = 0;
    virtual HRESULT WriteVariantListOf(SAFEARRAY* values, std::string_view separator, bool flush,
                                       std::int32_t timeout, Polling polling) = 0;
    virtual HRESULT CommandWriteVariantListOf(std::string_view command, SAFEARRAY* values,
                                              std::string_view separator, bool flush,
                                              std::int32_t timeout) = 0;
    virtual HRESULT ReadVariantListOf(ElementKind kind, SAFEARRAY** values,
                                      std::string_view separators, std::int32_t timeout,
                                      Polling polling) = 0;
    virtual HRESULT QueryVariantListOf(ElementKind kind, std::string_view command,
                                       SAFEARRAY** values, std::string_view separators,
                                       std::int32_t timeout, Polling polling) = 0;
    virtual HRESULT WriteVariantBlockOf(SAFEARRAY* values, bool flush, std::int32_t timeout,
                                        Polling polling) = 0;
    virtual HRESULT CommandWriteVariantBlockOf(std::string_view command, SAFEARRAY* values,
                                               bool flush, std::int32_t timeout) = 0;
    virtual HRESULT ReadVariantBlockOf(ElementKind kind, SAFEARRAY** values, bool seek, bool flush,
                                       std::int32_t timeout, Polling polling) = 0;
    virtual HRESULT QueryNumberOf(ElementKind kind, std::string_view command, void* value,
                                  bool flush, std::int32_t timeout, Polling polling) = 0;
    virtual HRESULT ReadNumberOf(ElementKind kind, void* value, bool flush, std::int32_t timeout,
                                 Polling polling) = 0;
    virtual HRESULT WriteNumberOf(ElementKind kind, const void* value, bool flush,
                                  std::int32_t timeout, Polling polling) = 0;
    virtual HRESULT CommandWriteNumberOf(ElementKind kind, std::string_view command,
                                         const void* value, bool flush, std::int32_t timeout) = 0;
    virtual HRESULT WriteListOf(ElementKind kind, const void* values, std::int32_t count,
                                std::string_view separator, bool flush, std::int32_t timeout,
                                Polling polling) = 0;
    virtual HRESULT CommandWriteListOf(ElementKind kind, std::string_view command,
                                       const void* values, std::int32_t count,
                                       std::string_view separator, bool flush,
                                       std::int32_t timeout) = 0;
    virtual HRESULT ReadListOf(ElementKind kind, void* values, std::int32_t count,
                               std::int32_t* actual, std::string_view separators,
                               std::int32_t timeout, Polling polling) = 0;
    virtual HRESULT QueryListOf(ElementKind kind, std::string_view command, void* values,
                                std::int32_t count, std::int32_t* actual,
                                std::string_view separators, std::int32_t timeout,
                                Polling polling) = 0;
    virtual HRESULT WriteBlockOf(ElementKind kind, const void* values, std::int32_t count,
                                 bool flush, std::int32_t timeout, Polling polling) = 0;
    virtual HRESULT CommandWriteBlockOf(ElementKind kind, std::string_view command,
                                        const void* values, std::int32_t count, bool flush,
                                        std::int32_t timeout) = 0;
    virtual HRESULT ReadBlockOf(ElementKind kind, void* values, std::int32_t count,
                                std::int32_t* actual, bool seek, bool flush, std::int32_t timeout,
                                Polling polling) = 0;
};

}  // namespace kestrion
