// Arguments for any format that writes, made from a line of values.
#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "io/args.h"
#include "io/format_spec.h"
#include "kestrion/platform/bstr.h"
#include "kestrion/platform/safe_array.h"

namespace kestrion::fuzz {

// The values of a line such as "7,-3,2.5e3,text", taken in turn and over again. Each can be had as
// whatever is needed: 0 stands for a text that is no number.
class Values {
  public:
    explicit Values(std::string_view line);

    [[nodiscard]] std::string_view NextText();
    [[nodiscard]] std::int64_t NextInteger();
    [[nodiscard]] double NextReal();

  private:
    std::vector<std::string_view> values_;
    std::size_t at_ = 0;
};

// One argument as the model of the writer takes it: elements of an array, or one.
struct WriteValue {
    std::vector<std::int64_t> integers;
    std::vector<double> reals;
    std::vector<std::string> texts;
    std::string bytes;  // of a block, in the host's order
};

// The packed arguments of a format, with the memory that they point to: exactly as much as the
// format may read, so that a sanitizer sees a byte too many.
class WriteArguments {
  public:
    // Adds the arguments of one conversion of the row. False if the format asks for an array that
    // is too large to be worth making.
    [[nodiscard]] bool Add(WriteRow row, FormatConversion conversion, Values& values);

    [[nodiscard]] const std::vector<ArgSlot>& Slots() const { return slots_; }
    // One for each conversion that was added, with what `*` stands for filled in.
    [[nodiscard]] const std::deque<FormatConversion>& Conversions() const { return conversions_; }
    [[nodiscard]] const std::deque<WriteValue>& Given() const { return given_; }

  private:
    void AddStar(SpecNumber& number, std::int64_t value);
    void AddScalar(WriteRow row, const FormatConversion& conversion, Values& values);
    [[nodiscard]] bool AddArray(WriteRow row, const FormatConversion& conversion, Values& values);
    void AddNumbers(FormatElement kind, bool variant, std::size_t count, Values& values);
    void AddTexts(const FormatConversion& conversion, std::size_t count, Values& values);
    [[nodiscard]] BYTE* NewMemory(std::size_t size);
    [[nodiscard]] BYTE* NewArray(FormatElement kind, bool variant, std::size_t count);

    std::vector<ArgSlot> slots_;
    std::deque<FormatConversion> conversions_;
    std::deque<WriteValue> given_;
    std::deque<std::unique_ptr<BYTE[]>> memory_;
    std::deque<std::string> texts_;
    std::deque<std::unique_ptr<std::string[]>> textArrays_;
    std::deque<BstrPtr> wideTexts_;
    std::deque<SafeArrayPtr> arrays_;
};

// Whether the row takes an array or a block.
[[nodiscard]] bool IsWriteArrayRow(WriteRow row);
[[nodiscard]] bool IsWriteBlockRow(WriteRow row);

}  // namespace kestrion::fuzz
