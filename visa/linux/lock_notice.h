// A hint, in memory that all processes of this computer share, that some resource may be locked.
#pragma once

#include <atomic>
#include <cstdint>

namespace visa_provider {

// Asking the system whether others hold a part of a lock file takes about as long as a third of a
// whole message; looking at a number in memory takes nothing. The number counts the parts that are
// held of all resources that share it, by whoever can reach the memory. It never replaces the file:
// a process that ends without giving back leaves it too high, which costs the shortcut alone, and
// whoever trusts it asks the file again every now and then.
//
// The memory is a System V segment: unlike a file, nobody can make it shorter under those who read
// it. It is 4 KiB for the whole computer and stays until the next start.
class LockNotice {
  public:
    // `hash` of the resource's name. Resources may share a number.
    explicit LockNotice(std::uint64_t hash);

    // False where the system gives no such memory: then nothing can be told from it.
    [[nodiscard]] bool Exists() const { return count_ != nullptr; }
    // The parts that are held or just being taken.
    [[nodiscard]] std::uint32_t Count() const { return count_->load(); }
    // Before a part is taken, and after it was given back. Nothing where there's no memory.
    void Raise();
    void Lower();

  private:
    std::atomic<std::uint32_t>* count_;
};

}  // namespace visa_provider
