// What the driver has to say of values that it changed on their way to the instrument.
#pragma once

#include <cstddef>
#include <deque>
#include <mutex>
#include <string>
#include <utility>

namespace kestrion {

// Records in the order in which they came. A full queue throws the oldest away for a new one
// (IVI-3.2, 5.25). Any thread.
class CoercionQueue {
  public:
    explicit CoercionQueue(std::size_t capacity) : capacity_(capacity) {}

    void Add(std::string record) {
        const std::lock_guard guard(lock_);
        records_.push_back(std::move(record));
        if (records_.size() > capacity_) {
            records_.pop_front();
        }
    }
    // Takes the oldest record; empty when there is none.
    [[nodiscard]] std::string Take() {
        const std::lock_guard guard(lock_);
        if (records_.empty()) {
            return {};
        }
        std::string oldest = std::move(records_.front());
        records_.pop_front();
        return oldest;
    }

  private:
    const std::size_t capacity_;
    std::mutex lock_;
    std::deque<std::string> records_;
};

}  // namespace kestrion
