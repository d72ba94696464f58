// The definition of a math waveform: CH, REF and MATH waveforms and numbers, with + - * / and
// parentheses: "CH1-CH2", "2*(CH1+REF3)/MATH1".
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

#include "virtual/scpi_error.h"

namespace virtual_scope {

struct MathNode;
using MathPointer = std::shared_ptr<const MathNode>;

struct MathNode {
    enum class Kind : std::uint8_t { kNumber, kChannel, kReference, kMath, kOperation };

    Kind kind = Kind::kNumber;
    double number = 0;
    int index = 0;         // of a waveform, counted from 0
    char operation = '+';  // + - * /
    MathPointer left;
    MathPointer right;
};

// Reads the definition of the math waveform with that number, counted from 0, on a model with so
// many channels. A definition may use math waveforms of lower numbers only, so that none comes back
// to itself. `kInvalidExpression` for what can't be read, `kHardwareMissing` for a waveform that
// the model lacks.
[[nodiscard]] ScpiError ParseMath(std::string_view text, int number, int channels,
                                  MathPointer& result);

}  // namespace virtual_scope
