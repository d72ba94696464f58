// The command set: every command in one line of one of these tables.
#pragma once

#include <vector>

#include "virtual/command_row.h"
#include "virtual/command_tree.h"

namespace virtual_scope {

// The parts of the table, each in a file of its own in commands/.
[[nodiscard]] std::vector<CommandRow> CommonCommands();
[[nodiscard]] std::vector<CommandRow> AcquisitionCommands();
[[nodiscard]] std::vector<CommandRow> HorizontalCommands();
[[nodiscard]] std::vector<CommandRow> VerticalCommands();
[[nodiscard]] std::vector<CommandRow> TriggerCommands();
[[nodiscard]] std::vector<CommandRow> MathCommands();
[[nodiscard]] std::vector<CommandRow> MeasurementCommands();
[[nodiscard]] std::vector<CommandRow> TransferCommands();
[[nodiscard]] std::vector<CommandRow> DisplayCommands();

struct CommandTable {
    std::vector<CommandRow> rows;
    CommandTree tree;
};

// All of it, made at the first call.
[[nodiscard]] const CommandTable& TheCommandTable();

}  // namespace virtual_scope
