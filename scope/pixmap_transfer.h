// Intensity maps: what densely overlaid acquisitions give in place of a record.
#pragma once

#include <string>

#include "kestrion/enums/KestrionSourceEnum.h"
#include "kestrion/platform/safe_array.h"
#include "scope/curve_block.h"
#include "scope/waveform_access.h"

namespace kestrion {

struct PixmapSize {
    ULONG columns;
    ULONG rows;
};

// How a map is handed over.
enum class PixmapForm : std::uint8_t {
    kTable,   // two dimensions, rows and columns
    kVector,  // one dimension, a column at a time
};

// One transfer of a map, in one member, under the object's lock. It keeps less of the instrument's
// state than the transfer of a record, and stops the acquisition for its time.
class PixmapTransfer {
  public:
    PixmapTransfer(MemberCall& call, KestrionSourceEnum source, PixmapForm form);

    // The array is the caller's; what `map` held is overwritten. It always has the model's full
    // size: what the block doesn't hold is zero, and what it holds beyond is left out. Without
    // memory nothing is handed over and nothing is reported.
    HRESULT Run(SAFEARRAY** map);

    [[nodiscard]] PixmapSize Size() const { return size_; }

  private:
    [[nodiscard]] StepSequence& Steps() { return access_.Steps(); }
    [[nodiscard]] bool FindMap();
    void SetUp();
    void ReadMap(SAFEARRAY** map);
    [[nodiscard]] SafeArrayPtr MakeArray() const;
    void Fill(SAFEARRAY* array) const;
    void Restore();

    PixmapForm form_;
    WaveformAccess access_;
    CurveBlock curve_;
    PixmapSize size_;
    std::string source_, byteOrder_, encoding_;
    LONG running_ = 0;
};

}  // namespace kestrion
