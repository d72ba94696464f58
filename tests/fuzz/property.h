// What every fuzz target is made of.
//
// A target runs the code under test on any bytes and states what has to hold for all of them. It is
// driven by libFuzzer in the preset `fuzz`, and over its corpus by replay_main.cpp in every other.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

// Each target defines it. Always returns 0.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace kestrion::fuzz {

// Ends the program with a message if the property doesn't hold, so that the input is kept by
// whoever runs the target. `detail` is shown with it.
void Require(bool holds, std::string_view property, std::string_view detail = {});

[[nodiscard]] inline std::string_view AsText(const std::uint8_t* data, std::size_t size) {
    return size == 0 ? std::string_view()
                     : std::string_view(reinterpret_cast<const char*>(data), size);
}

// Cuts the first line off `rest`, without its line feed; all of it where there is none. Inputs of
// several parts have them on lines, so that a corpus can be written and read as text.
[[nodiscard]] inline std::string_view TakeLine(std::string_view& rest) {
    const std::size_t end = rest.find('\n');
    const std::string_view line = rest.substr(0, end);
    rest = end == std::string_view::npos ? std::string_view() : rest.substr(end + 1);
    return line;
}

}  // namespace kestrion::fuzz
