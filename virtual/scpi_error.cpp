#include "virtual/scpi_error.h"

namespace virtual_scope {

std::string_view ErrorText(ScpiError error) {
    switch (error) {
        case ScpiError::kNone:
            return "No error";
        case ScpiError::kInvalidCharacter:
            return "Invalid character";
        case ScpiError::kSyntaxError:
            return "Syntax error";
        case ScpiError::kInvalidSeparator:
            return "Invalid separator";
        case ScpiError::kDataTypeError:
            return "Data type error";
        case ScpiError::kParameterNotAllowed:
            return "Parameter not allowed";
        case ScpiError::kMissingParameter:
            return "Missing parameter";
        case ScpiError::kUndefinedHeader:
            return "Undefined header";
        case ScpiError::kSuffixOutOfRange:
            return "Header suffix out of range";
        case ScpiError::kInvalidStringData:
            return "Invalid string data";
        case ScpiError::kInvalidBlockData:
            return "Invalid block data";
        case ScpiError::kInvalidExpression:
            return "Invalid expression";
        case ScpiError::kSettingsConflict:
            return "Settings conflict";
        case ScpiError::kDataOutOfRange:
            return "Data out of range";
        case ScpiError::kIllegalParameterValue:
            return "Illegal parameter value";
        case ScpiError::kHardwareMissing:
            return "Hardware missing";
        case ScpiError::kQueueOverflow:
            return "Queue overflow";
        case ScpiError::kInputBufferOverrun:
            return "Input buffer overrun";
        case ScpiError::kQueryInterrupted:
            return "Query INTERRUPTED";
        case ScpiError::kQueryUnterminated:
            return "Query UNTERMINATED";
        case ScpiError::kQueryDeadlocked:
            return "Query DEADLOCKED";
    }
    return "Unknown error";
}

}  // namespace virtual_scope
