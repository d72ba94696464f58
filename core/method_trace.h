// The record of one member call in the trace file: who was called on which thread at what time, the
// arguments in and out, the status and how long it took.
#pragma once

#include <algorithm>
#include <cstdint>
#include <span>
#include <string_view>

#include "core/parameter.h"
#include "core/trace_writer.h"
#include "kestrion/platform/types.h"

namespace kestrion {

// A guard of the call frame: writes the entry when it is made and the exit when it goes. Does
// nothing, and allocates nothing, unless the trace runs. Never throws, and never changes what the
// call returns; the thread's error object is left as it is.
class CMethodTrace {
  public:
    // `writer` may be null. Of the records, the first kMaxParameters are written. What the others
    // refer to has to outlive the guard; `status` and the out arguments are read when it goes.
    CMethodTrace(TraceWriter* writer, std::string_view interfaceName, std::string_view memberName,
                 const HRESULT* status, std::span<const ParameterRecord> parameters)
        : writer_(writer),
          interfaceName_(interfaceName),
          memberName_(memberName),
          status_(status),
          parameters_(parameters.first(std::min(parameters.size(), kMaxParameters))) {
        if (writer_ != nullptr && writer_->RunState() == TraceRunState::kRunning) {
            Begin();
        }
    }
    CMethodTrace(const CMethodTrace&) = delete;
    CMethodTrace& operator=(const CMethodTrace&) = delete;
    // The last record of a trace that is closing ends the file.
    ~CMethodTrace() {
        if (writer_ != nullptr && (active_ || writer_->closing)) {
            End();
        }
    }

  private:
    void Begin() noexcept;
    void End() noexcept;
    // Both are made under the writer's lock.
    [[nodiscard]] HRESULT WriteEntry();
    [[nodiscard]] HRESULT WriteExit();
    // One whole record has been written.
    void Complete();

    TraceWriter* writer_;
    std::string_view interfaceName_;
    std::string_view memberName_;
    const HRESULT* status_;
    std::span<const ParameterRecord> parameters_;
    bool active_ = false;
    bool entryFailed_ = false;
    std::uint32_t runNumber_ = 0;
    std::uint64_t entryCounter_ = 0;
};

}  // namespace kestrion
