// The store of the tests: a complete one in the published form, and changes to it.
#pragma once

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

namespace kestrion {

// The file; the build tells where it is.
inline std::string SampleStorePath() {
    return KESTRION_SAMPLE_STORE;
}

inline std::string SampleStore() {
    std::ifstream file(SampleStorePath(), std::ios::binary);
    EXPECT_TRUE(file);
    return {std::istreambuf_iterator<char>(file), {}};
}

// The sample with the first `from` in it replaced; `from` has to be there.
inline std::string SampleWith(std::string_view from, std::string_view to) {
    std::string text = SampleStore();
    const std::size_t at = text.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    return at == std::string::npos ? text : text.replace(at, from.size(), to);
}

}  // namespace kestrion
