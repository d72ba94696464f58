// Reads a response by a format.
#pragma once

#include <string_view>

#include "io/args.h"
#include "io/io_buffer.h"
#include "io/partners.h"
#include "kestrion/platform/types.h"

namespace kestrion {

// Runs the pieces of `format` in order over the response in `buffer`, storing through the pointers
// that `args` holds. Nothing is read if the format isn't of the language. `formatter` gives the
// tokens of enumerations and may be null if the format names none.
//
// The walk ends with the response: later pieces don't run, their arguments stay as they are, and
// that is no failure. What the format doesn't read stays in the buffer.
//
// Targets: integers and real numbers of the size that the length letter says (32 bits and single
// precision without one); char* with room for the width, or without limit if there is no width and
// no `#`; std::string* for `$C`; BSTR* for `$B`, whose former text is freed; SAFEARRAY** for `$S`,
// whose former array is replaced if all went well; std::int32_t* for `#`: the size in, the count
// out. New texts and arrays belong to the caller.
//
// Returns IoStatusMoreData if more of the response follows, 0 if it has ended or the format is
// empty, E_UNEXPECTED for a bad format or a response that doesn't fit it, E_INVALIDARG for a null
// argument, or what the buffer or `formatter` failed with. Throws std::bad_alloc only.
[[nodiscard]] HRESULT FormatRead(IIoBuffer& buffer, std::string_view format, ArgCursor& args,
                                 IEnumFormatter* formatter);

}  // namespace kestrion
