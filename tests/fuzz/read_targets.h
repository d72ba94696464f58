// Targets for any format that reads.
#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <vector>

#include "io/args.h"
#include "io/format_spec.h"
#include "kestrion/platform/bstr.h"
#include "kestrion/platform/safe_array.h"

namespace kestrion::fuzz {

// The packed arguments of a format, with the memory that they point to: exactly as much as the
// format may fill, so that a sanitizer sees a byte too many.
class ReadTargets {
  public:
    // `longest` is the length of the response, which is the most that a text without a width takes.
    // `counts` are what `#` stands for, in turn and over again.
    ReadTargets(std::size_t longest, std::vector<std::int32_t> counts)
        : longest_(longest), counts_(std::move(counts)) {}
    ReadTargets(const ReadTargets&) = delete;
    ReadTargets& operator=(const ReadTargets&) = delete;
    ~ReadTargets();

    // Adds the arguments of one conversion of the row. False if the format asks for memory that is
    // too large to be worth making.
    [[nodiscard]] bool Add(ReadRow row, FormatConversion conversion);

    [[nodiscard]] const std::vector<ArgSlot>& Slots() const { return slots_; }
    // All that was stored, in words that are the same if it is.
    [[nodiscard]] std::string Describe() const;
    // Whether every `#` got back a count that its memory has room for.
    [[nodiscard]] bool CountsFit() const;

  private:
    struct Memory {
        std::size_t size = 0;
        std::unique_ptr<BYTE[]> bytes;
    };
    struct Count {
        std::int32_t value = 0;
        std::int32_t room = 0;  // 0 where any count may come back
    };

    void AddCount(SpecNumber& number, bool isRoom);
    void AddMemory(std::size_t size);
    void AddText(const FormatConversion& conversion, std::size_t size);
    void AddTexts(const FormatConversion& conversion, std::size_t count);
    [[nodiscard]] bool AddElements(const FormatConversion& conversion, FormatElement kind,
                                   std::int64_t count);
    // Null, or an array that is there already: both have to do.
    void AddVariant(FormatElement kind);
    [[nodiscard]] BYTE* NewMemory(std::size_t size);

    std::size_t longest_;
    std::vector<std::int32_t> counts_;
    std::size_t nextCount_ = 0;
    std::vector<ArgSlot> slots_;
    std::deque<Count> given_;
    std::deque<Memory> memory_;
    std::deque<std::unique_ptr<BYTE[]>> places_;  // plain arrays of pointers
    std::deque<std::string> texts_;
    std::deque<std::vector<std::string>> textArrays_;
    std::deque<BSTR> wideTexts_;
    std::deque<std::vector<BSTR>> wideArrays_;
    std::deque<SAFEARRAY*> arrays_;
};

}  // namespace kestrion::fuzz
