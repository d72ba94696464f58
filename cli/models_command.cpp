#include <fmt/format.h>

#include <algorithm>
#include <vector>

#include "cli/commands.h"

namespace kestrion::cli {
namespace {

// Models that begin with the same letters, in the driver's order.
struct Group {
    std::string letters;
    std::vector<std::string> models;
};

bool IsLetter(char c) {
    return c >= 'A' && c <= 'Z';
}

std::vector<Group> GroupByLetters(const std::vector<std::string>& models) {
    std::vector<Group> groups;
    for (const std::string& model : models) {
        const auto end = std::find_if_not(model.begin(), model.end(), IsLetter);
        const std::string letters(model.begin(), end);
        auto group = std::find_if(groups.begin(), groups.end(), [&](const Group& candidate) {
            return candidate.letters == letters;
        });
        if (group == groups.end()) {
            group = groups.insert(groups.end(), {letters, {}});
        }
        group->models.push_back(model);
    }
    return groups;
}

// The names in as many columns as the width has room for, filled line by line.
std::string InColumns(const std::vector<std::string>& names, std::size_t width) {
    constexpr std::size_t kIndent = 2;
    std::size_t longest = 0;
    for (const std::string& name : names) {
        longest = std::max(longest, name.size());
    }
    const std::size_t cell = longest + 2;
    const std::size_t columns = std::max<std::size_t>(1, (width - kIndent) / cell);
    std::string text;
    for (std::size_t i = 0; i < names.size(); ++i) {
        const bool last = i + 1 == names.size() || (i + 1) % columns == 0;
        text += i % columns == 0 ? std::string(kIndent, ' ') : "";
        text += last ? names[i] + "\n" : fmt::format("{:<{}}", names[i], cell);
    }
    return text;
}

}  // namespace

std::string RunModels(const ModelsArguments& arguments, const Environment& environment) {
    ConnectionArguments connection;
    connection.options = "simulate=true";
    const std::vector<std::string> models = Connect(connection, environment)->SupportedModels();

    std::string text;
    if (arguments.plain) {
        for (const std::string& model : models) {
            text += model + "\n";
        }
        return text;
    }
    for (const Group& group : GroupByLetters(models)) {
        text += fmt::format("{} ({})\n", group.letters, group.models.size());
        text += InColumns(group.models, std::max<std::size_t>(environment.columns, 20)) + "\n";
    }
    return text + fmt::format("{} models\n", models.size());
}

}  // namespace kestrion::cli
