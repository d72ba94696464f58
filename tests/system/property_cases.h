// What is expected of each property that can be written: typed by hand from the command reference
// of the instrument, a row or more for each property.
#pragma once

#include <algorithm>
#include <array>
#include <span>
#include <string_view>
#include <vector>

#include "tests/system/property.h"
#include "tests/system/scope_client.h"

namespace kestrion {

// What the driver answers with.
inline constexpr HRESULT kInvalidValue = MakeStatus(0x80047010);
inline constexpr HRESULT kNoSuchProperty = MakeStatus(0x80047012);
inline constexpr HRESULT kNoSuchValue = MakeStatus(0x80047013);
inline constexpr HRESULT kToldByText = MakeStatus(0x80020009);
// What the instrument has in its queue.
inline constexpr LONG kInvalidString = -151;
inline constexpr LONG kOutOfRange = -222;
inline constexpr LONG kIllegalParameter = -224;

// A number that the setting takes, from where to where, and what stands in the instrument's queue
// after one step beyond. The setting is what it was then.
struct Limits {
    double low = 0.0;
    double high = 0.0;
    LONG errorAbove = kOutOfRange;
};

// Values that can't be put, from one to another. The setting is what it was then, and the
// instrument wasn't asked.
struct Refusal {
    LONG first = 0;
    LONG last = -1;
    HRESULT status = S_OK;
};

// Plain data, so that the tables cost no code.
struct PropertyCase {
    enum class Kind { kEachValue, kNumber, kText, kWord, kWritten, kAbsent };
    using Models = std::array<std::string_view, 4>;
    using Preparation = void (*)(ScopeClient&);

    // On these models in place of the usual one.
    [[nodiscard]] constexpr PropertyCase On(const Models& these) const {
        PropertyCase row = *this;
        row.models = these;
        return row;
    }
    // Runs first: sets what the setting depends on.
    [[nodiscard]] constexpr PropertyCase After(Preparation preparation) const {
        PropertyCase row = *this;
        row.prepare = preparation;
        return row;
    }
    [[nodiscard]] constexpr PropertyCase Refusing(LONG first, LONG last, HRESULT status) const {
        PropertyCase row = *this;
        row.refusals.at(row.refusalCount++) = {first, last, status};
        return row;
    }
    [[nodiscard]] constexpr PropertyCase Refusing(LONG value, HRESULT status) const {
        return Refusing(value, value, status);
    }
    // Values above the upper limit are taken for it.
    [[nodiscard]] constexpr PropertyCase CutAbove() const {
        PropertyCase row = *this;
        row.limits.errorAbove = 0;
        return row;
    }

    // The refusal of a value; null for one that is taken.
    [[nodiscard]] const Refusal* FindRefusal(LONG value) const {
        for (const Refusal& refusal : refusals) {
            if (value >= refusal.first && value <= refusal.last) {
                return &refusal;
            }
        }
        return nullptr;
    }
    [[nodiscard]] bool IsFor(std::string_view model) const {
        return std::ranges::find(models, model) != models.end();
    }

    std::string_view name;  // "IKestrionAcquisition.Mode"
    Kind kind;
    Models models = {"PL7254C"};
    Limits limits = {};
    std::array<Refusal, 3> refusals = {};
    std::size_t refusalCount = 0;
    std::size_t longest = 0;                     // of a text in quotes, in characters
    std::array<std::string_view, 6> words = {};  // that a text without quotes may be
    std::string_view companion = {};             // what a property is read by that is written only
    std::array<double, 5> effects = {};          // and how, for each of its values in order
    HRESULT absent = S_OK;                       // what both directions answer
    Preparation prepare = nullptr;
};

// Every value of the enumeration, or both of a truth value.
constexpr PropertyCase EachValue(std::string_view name) {
    return {.name = name, .kind = PropertyCase::Kind::kEachValue};
}
constexpr PropertyCase Between(std::string_view name, double low, double high) {
    return {.name = name, .kind = PropertyCase::Kind::kNumber, .limits = {low, high}};
}
// A text in quotes of at most so many characters.
constexpr PropertyCase Quoted(std::string_view name, std::size_t longest) {
    return {.name = name, .kind = PropertyCase::Kind::kText, .longest = longest};
}
// A text without quotes: one of these words.
constexpr PropertyCase OneOf(std::string_view name, const std::array<std::string_view, 6>& words) {
    return {.name = name, .kind = PropertyCase::Kind::kWord, .words = words};
}
// Written only: each value that isn't refused, and what another property of the interface then is.
constexpr PropertyCase Written(std::string_view name, std::string_view companion,
                               const std::array<double, 5>& effects) {
    return {.name = name,
            .kind = PropertyCase::Kind::kWritten,
            .companion = companion,
            .effects = effects};
}
// Neither put nor got: the instrument has nothing for it.
constexpr PropertyCase Absent(std::string_view name, HRESULT status) {
    return {.name = name, .kind = PropertyCase::Kind::kAbsent, .absent = status};
}

[[nodiscard]] std::span<const PropertyCase> DriverCases();
[[nodiscard]] std::span<const PropertyCase> AcquisitionCases();
[[nodiscard]] std::span<const PropertyCase> ChannelCases();
[[nodiscard]] std::span<const PropertyCase> MeasurementCases();
[[nodiscard]] std::span<const PropertyCase> TriggerCases();
[[nodiscard]] std::span<const PropertyCase> LogicTriggerCases();
[[nodiscard]] std::span<const PropertyCase> PulseTriggerCases();
[[nodiscard]] std::span<const PropertyCase> SerialTriggerCases();
[[nodiscard]] std::span<const PropertyCase> ClassTriggerCases();

// All of them.
[[nodiscard]] std::vector<PropertyCase> AllPropertyCases();

}  // namespace kestrion
