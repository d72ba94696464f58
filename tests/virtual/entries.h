// What is known of each line of the command table: typed from the command set.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace virtual_scope {

struct Entry {
    std::string notation;
    std::string header;   // to ask and to set with
    const char* initial;  // the answer after power-on; null for what can't be asked
    const char* value;    // another legal value; null for what can't be set
    const char* answer;   // the answer after setting it; null for what can't be asked
    const char* model = "PL7254C";
};

[[nodiscard]] std::vector<Entry> TriggerEntries();
[[nodiscard]] std::vector<Entry> MeasurementEntries();

// The entries with stems before their notations and headers.
[[nodiscard]] inline std::vector<Entry> Stemmed(std::vector<Entry> entries,
                                                const std::string& notation,
                                                const std::string& header) {
    for (Entry& entry : entries) {
        entry.notation.insert(0, notation);
        entry.header.insert(0, header);
    }
    return entries;
}

}  // namespace virtual_scope
