#include "cli/source.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

#include "cli/ascii.h"
#include "cli/failure.h"

namespace kestrion::cli {
namespace {

constexpr int kSourcesOfAKind = 4;

struct Prefix {
    SourceKind kind;
    std::string_view text;
};
constexpr std::array kPrefixes{Prefix{SourceKind::kChannel, "CH"},
                               Prefix{SourceKind::kMath, "MATH"},
                               Prefix{SourceKind::kReference, "REF"}};

Source ParseSource(std::string_view name) {
    const std::string upper = ToUpper(TrimBlanks(name));
    for (const Prefix& prefix : kPrefixes) {
        for (int number = 1; number <= kSourcesOfAKind; ++number) {
            if (upper == fmt::format("{}{}", prefix.text, number)) {
                return {prefix.kind, number};
            }
        }
    }
    throw BadUsage(fmt::format("Unknown source '{}'.", TrimBlanks(name)),
                   "Legal sources are CH1 to CH4, MATH1 to MATH4 and REF1 to REF4, "
                   "several of them split by commas.");
}

}  // namespace

std::string SourceName(Source source) {
    const auto* found = std::find_if(kPrefixes.begin(), kPrefixes.end(), [&](const Prefix& prefix) {
        return prefix.kind == source.kind;
    });
    return fmt::format("{}{}", found->text, source.number);
}

std::vector<Source> ParseSources(std::string_view list) {
    std::vector<Source> sources;
    for (std::string_view name : Split(list, ',')) {
        const Source source = ParseSource(name);
        if (std::find(sources.begin(), sources.end(), source) != sources.end()) {
            throw BadUsage(fmt::format("Source {} is named twice.", SourceName(source)));
        }
        sources.push_back(source);
    }
    return sources;
}

}  // namespace kestrion::cli
