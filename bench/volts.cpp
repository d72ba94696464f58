#include "bench/volts.h"

namespace bench {

#if defined(__x86_64__)
[[gnu::target_clones("avx2", "default")]]
#endif
void ConvertToVolts(std::span<const char> points, double mult, double zero, double offset,
                    double* volts) {
    const auto* bytes = reinterpret_cast<const signed char*>(points.data());
    for (std::size_t i = 0; i < points.size(); ++i) {
        volts[i] = (static_cast<double>(bytes[i]) - offset) * mult + zero;
    }
}

}  // namespace bench
