// The longest templates of the model, which tools/bench finds at build time.
#pragma once

#include <cstddef>
#include <span>

namespace bench {

enum class ValueKind { kInteger, kReal, kEnum, kText };

// What one conversion takes or gives.
struct TemplateValue {
    ValueKind kind;
    const char* enumName;  // empty without an enumeration
    bool isStored;         // false for a field that is read over
};

// The same for printf.
union FloorValue {
    int integer;
    double real;
    const char* text;
};

struct CommandCase {
    const char* member;  // whose tokens the enumerations have, such as "IKestrionAcquisition.Mode"
    const char* format;
    std::span<const TemplateValue> values;
    int (*print)(char* text, std::size_t size, const FloorValue* arguments);
};

// The fields of a reply are separated by semicolons.
struct ReplyCase {
    const char* member;
    const char* format;
    std::span<const TemplateValue> values;
};

[[nodiscard]] std::span<const CommandCase> LongestCommands();
[[nodiscard]] std::span<const ReplyCase> LongestReplies();

}  // namespace bench
