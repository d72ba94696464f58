#include "bench/canned_instrument.h"

#include <algorithm>
#include <charconv>
#include <stdexcept>
#include <utility>

namespace bench {
namespace {

constexpr std::string_view kSetRecordLength = "HORIZONTAL:RECORDLENGTH ";

// Queries and what is answered. kLength stands for the record's length.
constexpr std::string_view kLength = "#";
constexpr std::pair<std::string_view, std::string_view> kAnswers[] = {
    {"ACQUIRE:MODE?", "AVERAGE"},
    {"ACQUIRE:NUMAVG?", "16"},
    {"ACQUIRE:STATE?", "0"},
    {"DATA:SOURCE?", "CH1"},
    {"DATA:START?", "1"},
    {"DATA:STOP?", kLength},
    {"HEADER?", "0"},
    {"HORIZONTAL:RECORDLENGTH?", kLength},
    {"SELECT:CH1?", "1"},
    {"WFMOUTPRE:BN_FMT?", "RI"},
    {"WFMOUTPRE:BYT_NR 1;BYT_NR?", "1"},
    {"WFMOUTPRE:BYT_NR?", "1"},
    {"WFMOUTPRE:BYT_OR?", "MSB"},
    {"WFMOUTPRE:ENCD?", "BIN"},
    {"WFMOUTPRE:PT_OFF?", "500"},
    {"WFMOUTPRE:XINCR?", "4.0000E-9"},
    {"WFMOUTPRE:XZERO?", "0.0E+0"},
    {"WFMOUTPRE:YMULT?", "4.0000E-3"},
    {"WFMOUTPRE:YOFF?", "0.0E+0"},
    {"WFMOUTPRE:YZERO?", "0.0E+0"},
    {"*ESR?", "0"},
    {"*IDN?", "KESTRION,PL7254C,V000001,1.0.0"},
    {"*OPC?", "1"},
    {"*STB?", "0"},
};

}  // namespace

std::string_view CannedInstrument::Find(std::string_view message) const {
    if (!message.ends_with('?') || message == kCurveQuery) {
        return {};
    }
    const auto* found =
        std::find_if(std::begin(kAnswers), std::end(kAnswers),
                     [message](const auto& answer) { return answer.first == message; });
    if (found == std::end(kAnswers)) {
        throw std::runtime_error("there is no answer to " + std::string(message));
    }
    return found->second;
}

std::string_view CannedInstrument::Respond(std::string_view message) {
    if (message.starts_with(kSetRecordLength)) {
        const std::string_view number = message.substr(kSetRecordLength.size());
        (void)std::from_chars(number.data(), number.data() + number.size(), recordLength_);
    }
    answer_ = Find(message);
    if (answer_ == kLength) {
        answer_ = std::to_string(recordLength_);
    }
    if (keepsLog_) {
        log_.push_back({std::string(message), answer_});
    }
    if (!answer_.empty()) {
        answer_ += '\n';
    }
    return answer_;
}

}  // namespace bench
