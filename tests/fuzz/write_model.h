// What a conversion that writes has to give, by the C library's own formatting.
#pragma once

#include <optional>
#include <string>

#include "io/format_spec.h"
#include "tests/fuzz/write_arguments.h"

namespace kestrion::fuzz {

// The text of one conversion with these values. Nothing where the model doesn't say: numeric forms
// laid out in a field, enumerations, numbers that no integer holds, wide fields, refused arguments.
[[nodiscard]] std::optional<std::string> TextOfModel(WriteRow row,
                                                     const FormatConversion& conversion,
                                                     const WriteValue& value);

}  // namespace kestrion::fuzz
