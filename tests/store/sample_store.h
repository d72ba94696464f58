// The store of the tests: a complete one in the published form, and changes to it.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

namespace kestrion {

// The file, found from this one's place in the tree.
inline std::string SampleStorePath() {
    return (std::filesystem::path(__FILE__).parent_path() / "sample_store.xml").string();
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
