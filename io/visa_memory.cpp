// Memory access through the session: argument checks, and the four attributes.
#include <cstring>

#include "io/visa_enums.h"
#include "io/visa_session.h"

namespace kestrion {
namespace {

// What the widths differ in. No library call is behind them, so nothing is read but zeros.
struct Width {
    VARTYPE type;
    std::uint32_t bytes;
    std::string_view valueName;  // the parameter of a single element
    std::string_view noMemory;
};

// The last text names the first width: programs may know it so.
constexpr Width kWidths[] = {
    {VT_UI1, 1, "puVal", "MoveIn8 could not allocate SAFEARRAY."},
    {VT_I2, 2, "psVal", "MoveIn16 could not allocate SAFEARRAY."},
    {VT_I4, 4, "plVal", "MoveIn32 could not allocate SAFEARRAY."},
    {VT_I8, 8, "pllVal", "MoveIn8 could not allocate SAFEARRAY."},
};

const Width& Of(VisaDataWidth width) {
    return kWidths[static_cast<std::size_t>(width)];
}

}  // namespace

HRESULT CVisaSession::CheckSpace(VisaAddressSpace space) {
    return visa::ToVisa(visa::kAddressSpaces, space) ? S_OK
                                                     : Refuse(visa::kUnsupportedAddressSpace);
}

HRESULT CVisaSession::CheckPlace(const VisaMemoryPlace& place) {
    const HRESULT status = CheckSpace(place.space);
    if (Failed(status)) {
        return status;
    }
    return visa::ToVisa(visa::kDataWidths, place.width) ? S_OK
                                                        : Refuse(visa::kUnsupportedDataWidth);
}

HRESULT CVisaSession::InOf(std::string_view method, VisaDataWidth width, VisaAddressSpace space,
                           std::uint64_t /*offset*/, void* value) {
    return Run([&]() -> HRESULT {
        if (value == nullptr) {
            return reporter_->ReportNullPointer(method, Of(width).valueName, "");
        }
        std::memset(value, 0, Of(width).bytes);
        return CheckSpace(space);
    });
}

HRESULT CVisaSession::OutOf(VisaAddressSpace space, std::uint64_t /*offset*/) {
    return Run([&] { return CheckSpace(space); });
}

HRESULT CVisaSession::MoveInArrayOf(std::string_view method, VisaDataWidth width,
                                    VisaAddressSpace space, std::uint64_t /*offset*/,
                                    std::uint32_t count, SAFEARRAY** array) {
    return Run([&]() -> HRESULT {
        if (array == nullptr) {
            return reporter_->ReportNullPointer(method, "psaBuf", "");
        }
        *array = nullptr;
        const HRESULT status = CheckSpace(space);
        if (Failed(status)) {
            return status;
        }
        *array = SafeArrayCreateVector(Of(width).type, 0, count);
        return *array == nullptr ? reporter_->ReportOutOfMemory(Of(width).noMemory) : S_OK;
    });
}

HRESULT CVisaSession::MoveInVariantOf(std::string_view method, VisaDataWidth width,
                                      VisaAddressSpace space, std::uint64_t offset,
                                      std::uint32_t count, VARIANT* array) {
    return Run([&]() -> HRESULT {
        SAFEARRAY* made = nullptr;
        const HRESULT status =
            MoveInArrayOf(method, width, space, offset, count, array == nullptr ? nullptr : &made);
        if (!Failed(status)) {
            (void)VariantClear(array);
            array->vt = static_cast<VARTYPE>(VT_ARRAY | Of(width).type);
            array->parray = made;
        }
        return status;
    });
}

HRESULT CVisaSession::MoveInBufferOf(std::string_view method, VisaDataWidth width,
                                     VisaAddressSpace space, std::uint64_t /*offset*/,
                                     std::uint32_t count, void* target) {
    return Run([&]() -> HRESULT {
        if (target == nullptr) {
            return reporter_->ReportNullPointer(method, "pBuf", "");
        }
        const HRESULT status = CheckSpace(space);
        if (!Failed(status)) {
            std::memset(target, 0, std::size_t{count} * Of(width).bytes);
        }
        return status;
    });
}

HRESULT CVisaSession::MoveOutOf(std::string_view method, std::string_view parameter,
                                VisaAddressSpace space, std::uint64_t /*offset*/,
                                const void* source) {
    return Run([&]() -> HRESULT {
        return source == nullptr ? reporter_->ReportNullPointer(method, parameter, "")
                                 : CheckSpace(space);
    });
}

HRESULT CVisaSession::Move(const VisaMemoryPlace& source, const VisaMemoryPlace& destination,
                           std::uint32_t /*count*/) {
    return Run([&] {
        const HRESULT status = CheckPlace(source);
        return Failed(status) ? status : CheckPlace(destination);
    });
}

HRESULT CVisaSession::Move(const VisaMemoryPlace& source, const VisaMemoryPlace& destination,
                           std::uint32_t count, visa::ViJobId* job) {
    if (job != nullptr) {
        *job = 0;
    }
    return Move(source, destination, count);
}

HRESULT CVisaSession::AllocateMemory(std::uint64_t /*size*/, std::uint64_t* offset) {
    return Run([&]() -> HRESULT {
        if (offset == nullptr) {
            return reporter_->ReportNullPointer("AllocateMemory", "pullOffset", "");
        }
        *offset = 0;
        return S_OK;
    });
}

HRESULT CVisaSession::FreeMemory(std::uint64_t /*offset*/) {
    return Run([] { return S_OK; });
}

// VISA's 0 is big-endian.
HRESULT CVisaSession::SetBigEndian(visa::ViAttr attribute, bool bigEndian) {
    return SetAttribute(attribute, !bigEndian);
}

HRESULT CVisaSession::GetBigEndian(visa::ViAttr attribute, bool* bigEndian,
                                   std::string_view method) {
    const HRESULT status = GetFlag(attribute, bigEndian, method, "pbBigEndian");
    if (!Failed(status)) {
        *bigEndian = !*bigEndian;
    }
    return status;
}

HRESULT CVisaSession::SetSourceBigEndian(bool bigEndian) {
    return SetBigEndian(visa::kAttrSourceByteOrder, bigEndian);
}
HRESULT CVisaSession::GetSourceBigEndian(bool* bigEndian) {
    return GetBigEndian(visa::kAttrSourceByteOrder, bigEndian, "GetSourceBigEndian");
}
HRESULT CVisaSession::SetDestinationBigEndian(bool bigEndian) {
    return SetBigEndian(visa::kAttrDestinationByteOrder, bigEndian);
}
HRESULT CVisaSession::GetDestinationBigEndian(bool* bigEndian) {
    return GetBigEndian(visa::kAttrDestinationByteOrder, bigEndian, "GetDestinationBigEndian");
}

HRESULT CVisaSession::SetSourceIncrement(std::int32_t increment) {
    return SetAttribute(visa::kAttrSourceIncrement, static_cast<std::uint32_t>(increment));
}
HRESULT CVisaSession::GetSourceIncrement(std::int32_t* increment) {
    return GetNumber(visa::kAttrSourceIncrement, increment, "GetSourceIncrement", "plIncrement");
}
HRESULT CVisaSession::SetDestinationIncrement(std::int32_t increment) {
    return SetAttribute(visa::kAttrDestinationIncrement, static_cast<std::uint32_t>(increment));
}
HRESULT CVisaSession::GetDestinationIncrement(std::int32_t* increment) {
    return GetNumber(visa::kAttrDestinationIncrement, increment, "GetDestinationIncrement",
                     "plIncrement");
}

}  // namespace kestrion
