// The waveform sources that a capture can name.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kestrion::cli {

enum class SourceKind { kChannel, kMath, kReference };

// A channel, math or reference waveform; `number` is 1 to 4.
struct Source {
    SourceKind kind = SourceKind::kChannel;
    int number = 1;

    friend bool operator==(const Source& a, const Source& b) = default;
};

// "CH1", "MATH2", "REF3".
[[nodiscard]] std::string SourceName(Source source);

// Parses "CH1,ch2,Math1": names split at commas, their letter case and blanks around them ignored.
// Throws bad usage for an unknown or empty name, which says what is legal, and for a name given
// twice.
[[nodiscard]] std::vector<Source> ParseSources(std::string_view list);

}  // namespace kestrion::cli
