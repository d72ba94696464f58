// The instrument behind all of its links: settings, status, acquisition, and the running of single
// commands.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "virtual/acquisition.h"
#include "virtual/command_row.h"
#include "virtual/command_tree.h"
#include "virtual/device_link.h"
#include "virtual/models.h"
#include "virtual/program_message.h"
#include "virtual/record.h"
#include "virtual/settings.h"
#include "virtual/status.h"

namespace virtual_scope {

// Where a header without a leading colon begins: what stood before the last colon of the header
// before it (IEEE 488.2, appendix A, compound headers). Common commands leave it alone.
using HeaderPath = std::vector<std::string>;

// Not for several threads at once.
class Oscilloscope {
  public:
    Oscilloscope(const Model& model, std::function<TimePoint()> clock);

    // Runs one unit of a program message. Errors go to the status, and are in the outcome as well.
    Outcome Execute(const ProgramUnit& unit, HeaderPath& path, bool messageAvailable);

    // Ends the acquisitions whose time is over.
    void CatchUp();
    // When `CatchUp` will find something to do; nothing when it won't.
    [[nodiscard]] std::optional<TimePoint> NextEvent() const { return acquisition_.SequenceEnd(); }

    // *RST: all settings but those of the status and of the form of the answers, and the
    // acquisition runs anew.
    void Reset();
    // *CLS
    void ClearStatus();

    // A single sequence is on its way.
    [[nodiscard]] bool IsOperationPending() const { return acquisition_.IsSequenceRunning(); }
    // Sets the operation complete bit when no operation is pending any more.
    void AnnounceCompletion();

    void StartAcquisition();
    void StopAcquisition();
    // Begins a running acquisition anew after a change of what is acquired.
    void RestartAcquisition();
    // Triggers an acquisition that waits.
    void ForceTrigger();
    [[nodiscard]] std::uint64_t CompletedAcquisitions() const;
    // Acquisitions since the statistics of the measurements began.
    [[nodiscard]] std::uint64_t StatisticsCount() const;
    void ResetStatistics();

    // What a transfer delivers now: while acquiring continuously, the newest acquisition with the
    // settings of this moment, otherwise the record of the last acquisition that was completed.
    [[nodiscard]] Record CurrentRecord() const;

    // The definition of a math waveform and the contents of a reference memory, counted from 0.
    void SetMath(int index, MathPointer definition);
    void SetReference(int index, StoredPointer waveform);

    [[nodiscard]] const Model& model() const { return model_; }
    [[nodiscard]] const Acquisition& acquisition() const { return acquisition_; }
    [[nodiscard]] Settings& settings() { return settings_; }
    [[nodiscard]] const Settings& settings() const { return settings_; }
    [[nodiscard]] Status& status() { return status_; }
    [[nodiscard]] const Status& status() const { return status_; }

  private:
    [[nodiscard]] HeaderMatch Find(const ProgramUnit& unit, HeaderPath& path) const;
    [[nodiscard]] ScpiError CheckForm(const ProgramUnit& unit, const HeaderMatch& match) const;
    Outcome Run(const ProgramUnit& unit, const HeaderMatch& match, bool messageAvailable);
    Outcome Ask(const HeaderMatch& match, int instance);
    Outcome Store(const ProgramUnit& unit, const HeaderMatch& match, int instance);
    void AddHeader(const HeaderMatch& match, Reply& reply) const;

    void SetInitialMath();
    // How many a record is made of.
    [[nodiscard]] std::int64_t AcquisitionsOf(AcquisitionMode mode) const;
    [[nodiscard]] AcquisitionTiming Timing() const;
    [[nodiscard]] std::uint64_t AcquisitionNumber() const {
        return earlier_ + CompletedAcquisitions();
    }
    // A record of the settings of this moment.
    [[nodiscard]] Record MakeRecord(std::uint64_t acquisition) const;

    const Model& model_;
    std::function<TimePoint()> clock_;
    Settings settings_;
    Status status_;
    Acquisition acquisition_;
    std::array<MathPointer, kMaxChannels> math_;
    std::array<StoredPointer, kMaxChannels> references_;
    Record completedRecord_;     // of the last acquisition that ended
    std::uint64_t earlier_ = 0;  // acquisitions before the last start, so that each has a number
    std::uint64_t statisticsStart_ = 0;
    bool announceCompletion_ = false;
};

}  // namespace virtual_scope
