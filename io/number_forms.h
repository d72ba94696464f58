// The numeric forms of IEEE 488.2 that a format can ask for with `@`.
#pragma once

#include "io/number_text.h"
#include "kestrion/platform/types.h"

namespace kestrion {

// Lays out `value` in the form that `form` names:
//   1  NR1, a decimal integer        2  NR2, fixed point      3  NR3, exponential
//   H  hexadecimal behind "#H"       Q  octal behind "#Q"     B  binary behind "#B"
// 1, H, Q and B take the value plus 0.5, cut to a whole number, for negative values too: -2.6
// becomes -2. H and Q show its 64 bits, B its low 32. Where the width left room for padding, "#H"
// and "#Q" stand in place of two padding characters. Letter of `format`: ignored.
// E_UNEXPECTED for another form; E_INVALIDARG for a value that has no whole number of 64 bits.
[[nodiscard]] HRESULT FormatNumericForm(char form, double value, FieldFormat format,
                                        NumberDigits& digits, TextField& field);

}  // namespace kestrion
