// Where the volts of a floor go, and how they are made.
#pragma once

#include <cstddef>
#include <span>

namespace bench {

// One vectorised pass: (byte - offset) * mult + zero for each point.
void ConvertToVolts(std::span<const char> points, double mult, double zero, double offset,
                    double* volts);

// A fresh mapping of whole huge pages, if the system gives any.
class HugeMemory {
  public:
    // Throws std::bad_alloc.
    explicit HugeMemory(std::size_t bytes);
    HugeMemory(const HugeMemory&) = delete;
    HugeMemory& operator=(const HugeMemory&) = delete;
    ~HugeMemory();

    [[nodiscard]] void* Get() const { return start_; }

  private:
    void* mapping_;
    std::size_t size_;
    void* start_;
};

}  // namespace bench
