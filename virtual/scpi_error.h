// The error numbers that the instrument reports, with the meanings of the SCPI standard (volume 2,
// chapter 21): -1xx command, -2xx execution, -3xx device-specific and -4xx query errors.
#pragma once

#include <string_view>

namespace virtual_scope {

enum class ScpiError : int {
    kNone = 0,
    kInvalidCharacter = -101,
    kSyntaxError = -102,
    kInvalidSeparator = -103,
    kDataTypeError = -104,
    kParameterNotAllowed = -108,
    kMissingParameter = -109,
    kUndefinedHeader = -113,
    kSuffixOutOfRange = -114,
    kInvalidStringData = -151,
    kInvalidBlockData = -161,
    kInvalidExpression = -171,
    kSettingsConflict = -221,
    kDataOutOfRange = -222,
    kIllegalParameterValue = -224,
    kHardwareMissing = -241,
    kQueueOverflow = -350,
    kInputBufferOverrun = -363,
    kQueryInterrupted = -410,
    kQueryUnterminated = -420,
    kQueryDeadlocked = -430,
};

// The standard's words for it.
[[nodiscard]] std::string_view ErrorText(ScpiError error);

}  // namespace virtual_scope
