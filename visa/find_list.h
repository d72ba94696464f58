// What a search for resources found.
#pragma once

#include <mutex>
#include <string>
#include <vector>

#include "visa/object.h"

namespace visa_provider {

// The names that are left of a search. Thread-safe.
class FindList final : public Object {
  public:
    explicit FindList(std::vector<std::string> names) : names_(std::move(names)) {}

    // A find list has no attributes.
    [[nodiscard]] std::optional<AttributeValue> Attribute(ViAttr /*attribute*/) const override {
        return std::nullopt;
    }

    // The next name; none after the last one.
    [[nodiscard]] std::optional<std::string> Next() {
        const std::lock_guard guard(mutex_);
        if (next_ == names_.size()) {
            return std::nullopt;
        }
        return names_[next_++];
    }

  private:
    const std::vector<std::string> names_;
    std::mutex mutex_;
    std::size_t next_ = 0;
};

}  // namespace visa_provider
