// The members that are running on one driver, innermost last.
#pragma once

#include <mutex>
#include <thread>

#include "core/method_descriptor.h"

namespace kestrion {

// Tells which member of the driver is running.
struct ICallContextProvider {
    // The innermost member that runs on the calling thread; null outside of every member.
    [[nodiscard]] virtual const MethodDescriptor* GetCurrentMethod() = 0;

  protected:
    ~ICallContextProvider() = default;
};

// Entries live on the stacks of the calls themselves, so that pushing allocates nothing. Calls of
// several threads may interleave: each thread finds its own.
class CallStack {
  public:
    // Pushes a member for the life time of the entry.
    class Entry {
      public:
        Entry(CallStack& stack, const MethodDescriptor& method)
            : stack_(stack), method_(method), thread_(std::this_thread::get_id()) {
            const std::lock_guard guard(stack_.lock_);
            below_ = stack_.top_;
            if (below_ != nullptr) {
                below_->above_ = this;
            }
            stack_.top_ = this;
        }
        Entry(const Entry&) = delete;
        Entry& operator=(const Entry&) = delete;
        ~Entry() {
            const std::lock_guard guard(stack_.lock_);
            if (below_ != nullptr) {
                below_->above_ = above_;
            }
            (above_ != nullptr ? above_->below_ : stack_.top_) = below_;
        }

      private:
        friend class CallStack;
        CallStack& stack_;
        const MethodDescriptor& method_;
        std::thread::id thread_;
        Entry* below_ = nullptr;
        Entry* above_ = nullptr;
    };

    [[nodiscard]] const MethodDescriptor* Current() const {
        const std::lock_guard guard(lock_);
        const auto self = std::this_thread::get_id();
        for (const Entry* entry = top_; entry != nullptr; entry = entry->below_) {
            if (entry->thread_ == self) {
                return &entry->method_;
            }
        }
        return nullptr;
    }

  private:
    // Held for the few steps above and never over I/O.
    mutable std::mutex lock_;
    Entry* top_ = nullptr;
};

}  // namespace kestrion
