// A source of waveforms while a member works on it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "core/member_call.h"
#include "scope/step_sequence.h"

namespace kestrion {

enum class SourceKind : std::uint8_t { kChannel, kMath, kReference };

// What a member does about a source that a two-channel model lacks.
enum class AbsentSource : std::uint8_t {
    kGoesOn,    // asks the instrument all the same
    kReported,  // reports it
    kSilent,    // returns kSilentlyRefused
};

// The status of a member that refuses without a word.
inline constexpr HRESULT kSilentlyRefused = 1;

// Headers off, and the tests that stand before any transfer. The tests give false where the member
// ends; Steps().Status() is its result then.
class WaveformAccess {
  public:
    // `source` is a value of the enumeration with this name. One that the member has no token for
    // is reported, and no step runs.
    WaveformAccess(MemberCall& call, std::string_view enumName, LONG source);

    // Keeps the header state and turns headers off.
    [[nodiscard]] bool HideHeader();
    [[nodiscard]] bool RefuseAbsent(AbsentSource how);
    // The source has to be on.
    [[nodiscard]] bool CheckSelected();
    void RestoreHeader();

    // Puts the header back and ends with a status, or with a report that comes behind that.
    bool End(HRESULT status);
    template <typename Report>
    bool EndWithReport(const Report& report) {
        RestoreHeader();
        steps_.SetStatus(report());
        return false;
    }

    [[nodiscard]] MemberCall& Call() { return call_; }
    [[nodiscard]] StepSequence& Steps() { return steps_; }
    // The instrument's name of the source.
    [[nodiscard]] const std::string& Name() const { return name_; }
    [[nodiscard]] SourceKind Kind() const;

  private:
    MemberCall& call_;
    LONG source_;
    std::string name_;
    std::string header_;
    StepSequence steps_;
};

}  // namespace kestrion
