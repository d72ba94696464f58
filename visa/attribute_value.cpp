#include "visa/attribute_value.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <type_traits>

namespace visa_provider {

namespace {

constexpr std::size_t kMaxText = 255;

template <typename Number>
std::optional<Number> ToUnsigned(ViAttrState state) {
    if (state > std::numeric_limits<Number>::max()) {
        return std::nullopt;
    }
    return static_cast<Number>(state);
}

}  // namespace

void StoreText(const std::string& text, ViChar* target) {
    const std::size_t length = std::min(text.size(), kMaxText);
    std::memcpy(target, text.data(), length);
    target[length] = '\0';
}

void StoreValue(const AttributeValue& value, void* target) {
    std::visit(
        [target](const auto& held) {
            if constexpr (std::is_same_v<std::decay_t<decltype(held)>, std::string>) {
                StoreText(held, static_cast<ViChar*>(target));
            } else {
                std::memcpy(target, &held, sizeof(held));
            }
        },
        value);
}

std::optional<ViUInt8> ToUInt8(ViAttrState state) {
    return ToUnsigned<ViUInt8>(state);
}

std::optional<ViUInt16> ToUInt16(ViAttrState state) {
    return ToUnsigned<ViUInt16>(state);
}

std::optional<ViUInt32> ToUInt32(ViAttrState state) {
    const auto low = static_cast<ViUInt32>(state);
    const auto extended =
        static_cast<ViAttrState>(static_cast<std::intptr_t>(static_cast<ViInt32>(low)));
    if (state != low && state != extended) {
        return std::nullopt;
    }
    return low;
}

std::optional<bool> ToBoolean(ViAttrState state) {
    if (state != VI_TRUE && state != VI_FALSE) {
        return std::nullopt;
    }
    return state == VI_TRUE;
}

}  // namespace visa_provider
