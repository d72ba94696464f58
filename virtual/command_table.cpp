#include "virtual/command_table.h"

#include <iterator>
#include <utility>

namespace virtual_scope {
namespace {

std::vector<CommandRow> AllRows() {
    std::vector<CommandRow> all;
    for (auto part : {&CommonCommands, &AcquisitionCommands, &HorizontalCommands, &VerticalCommands,
                      &TriggerCommands, &MathCommands, &MeasurementCommands, &TransferCommands,
                      &DisplayCommands}) {
        std::vector<CommandRow> rows = part();
        std::move(rows.begin(), rows.end(), std::back_inserter(all));
    }
    return all;
}

CommandTable MakeTable() {
    std::vector<CommandRow> rows = AllRows();
    CommandTree tree(rows);
    return {std::move(rows), std::move(tree)};  // the rows keep their place in memory
}

}  // namespace

const CommandTable& TheCommandTable() {
    static const CommandTable table = MakeTable();
    return table;
}

}  // namespace virtual_scope
