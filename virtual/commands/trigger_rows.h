// What the lines of all triggers have in common.
#pragma once

#include <string_view>
#include <vector>

#include "virtual/command_row.h"

namespace virtual_scope {

inline constexpr std::string_view kTriggerChannelWords = "CH1|CH2|CH3|CH4";
inline constexpr std::string_view kEdgeSourceWords =
    "CH1|CH2|CH3|CH4|AUXiliary|LINE|D0|D1|D2|D3|D4|D5|D6|D7|D8|D9|D10|D11|D12|D13|D14|D15";
inline constexpr std::string_view kSlopeWords = "FALL|RISe|EITher";
inline constexpr std::string_view kPolarityWords = "POSITIVe|NEGAtive|EITher";
inline constexpr std::string_view kTriggerTypeWords =
    "EDGE|LOGIc|PULse|VIDeo|COMMunication|SERial|BUS|I2C|CAN|SPI|RS232";

// In the order of the words of TRIGger:A:TYPe.
enum class TriggerType : std::uint8_t { kEdge, kLogic, kPulse, kVideo, kCommunication, kSerial };

// The words are for the logic families.
inline constexpr Real kTriggerLevels = {-100, 100, 0, "ECL=-1.3|TTL=1.4"};
inline constexpr Real kTriggerTime = {100e-12, 1e6, 5e-9};

// Beneath TRIGger:{A|B}:PULse: and TRIGger:{A|B}:LOGIc:
[[nodiscard]] std::vector<CommandRow> PulseTriggerRows();
[[nodiscard]] std::vector<CommandRow> LogicTriggerRows();
// Beneath TRIGger:A: the communication, serial and video triggers.
[[nodiscard]] std::vector<CommandRow> SerialTriggerRows();

}  // namespace virtual_scope
