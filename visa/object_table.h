// The handles of the process.
#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <vector>

#include "visa/object.h"

namespace visa_provider {

// Maps handles to objects. Handles count up and come round only after four thousand million, so
// that a stale one doesn't meet a new object. Thread-safe.
class ObjectTable {
  public:
    // The table of the process. It is never destroyed: a thread may still be in a call while the
    // process ends.
    static ObjectTable& Instance();

    // Gives `object` a handle. `owner` is the resource manager that takes it along when it is
    // closed, 0 for a resource manager itself. Returns 0 if the owner is gone.
    [[nodiscard]] ViObject Insert(const std::shared_ptr<Object>& object, ViObject owner);

    // Null for a handle that stands for nothing.
    [[nodiscard]] std::shared_ptr<Object> Find(ViObject handle) const;

    // Takes `handle` and what it owns out, owned ones first; empty if it stands for nothing.
    [[nodiscard]] std::vector<std::shared_ptr<Object>> Remove(ViObject handle);

  private:
    struct Entry {
        std::shared_ptr<Object> object;
        ViObject owner = 0;
    };

    [[nodiscard]] ViObject NextHandle();

    mutable std::mutex mutex_;
    std::map<ViObject, Entry> entries_;
    ViObject last_ = 0;
};

}  // namespace visa_provider
