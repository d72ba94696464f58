// The clipboard of the desktop session that the process runs in.
#pragma once

#include <string>
#include <string_view>

#include "kestrion/platform/types.h"

namespace kestrion {

// There is no desktop session, or nothing in it that takes a text.
inline constexpr HRESULT kNoClipboard = MakeStatus(0x80070032U);

class Clipboard {
  public:
    virtual ~Clipboard() = default;
    // Replaces what the clipboard holds by a plain text in UTF-8. kNoClipboard, or E_FAIL where the
    // clipboard didn't take it; `reason` says which, as in "xclip ended with 1". Waits for a few
    // seconds at most. Any thread.
    [[nodiscard]] virtual HRESULT SetText(std::string_view text, std::string& reason) = 0;
};

// The system's, which lives as long as the process.
[[nodiscard]] Clipboard& SystemClipboard();

}  // namespace kestrion
