#include "virtual/models.h"

#include <algorithm>
#include <array>

namespace virtual_scope {
namespace {

constexpr auto kModels = std::to_array<Model>({
    {"MR5104B", Family::kMerlin, 4, 1e9},
    {"MR71254C", Family::kMerlin, 4, 12.5e9},
    {"MR72304DX", Family::kMerlin, 4, 23e9},
    {"SW72004C", Family::kSwift, 4, 20e9},
    {"SW73304D", Family::kSwift, 4, 33e9},
    {"PL5034", Family::kPlover, 4, 350e6},
    {"PL7254C", Family::kPlover, 4, 2.5e9},
    {"PL72304DX", Family::kPlover, 4, 23e9},
    {"PL77002SX", Family::kPlover, 2, 70e9},
    {"CR7404B", Family::kCrake, 4, 4e9},
    {"LK7254B", Family::kLarkB, 4, 2.5e9},
    {"LK7054", Family::kLark, 4, 500e6},
    {"IB6804B", Family::kIbisB, 4, 8e9},
    {"IB6404", Family::kIbis, 4, 4e9},
    {"IB6124C", Family::kIbis, 4, 12e9},
    {"HR5054B", Family::kHeronB, 4, 500e6},
    {"HR5052BE", Family::kHeronB, 2, 500e6},
    {"HR5104", Family::kHeron, 4, 1e9},
});

}  // namespace

std::span<const Model> AllModels() {
    return kModels;
}

const Model* FindModel(std::string_view name) {
    const auto found = std::ranges::find(kModels, name, &Model::name);
    return found == kModels.end() ? nullptr : &*found;
}

}  // namespace virtual_scope
