#include <fmt/format.h>

#include <algorithm>
#include <vector>

#include "cli/commands.h"
#include "cli/utf8.h"

namespace kestrion::cli {
namespace {

struct Line {
    std::string name;
    std::string value;
};

// Headings with their lines, the values of all of them in one column.
class Report {
  public:
    void Section(const std::string& heading) { lines_.push_back({heading, {}}); }
    void Add(const std::string& name, const std::string& value) {
        lines_.push_back({"  " + name, value.empty() ? "none" : value});
    }

    [[nodiscard]] std::string Text() const {
        std::size_t width = 0;
        for (const Line& line : lines_) {
            width = std::max(width, line.value.empty() ? 0 : CountCharacters(line.name));
        }
        std::string text;
        for (const Line& line : lines_) {
            text += line.name;
            if (!line.value.empty()) {
                text += std::string(width + 2 - CountCharacters(line.name), ' ') + line.value;
            }
            text += '\n';
        }
        return text;
    }

  private:
    std::vector<Line> lines_;
};

std::string StoreText(const StoreDetails& store) {
    const std::string name = store.path.empty() ? "none" : store.path;
    return store.reason.empty() ? name : fmt::format("{} ({})", name, store.reason);
}

std::string VisaText(const ConnectionDetails& connection) {
    if (connection.visaLibrary.empty()) {
        return connection.simulated ? "none (simulated, no instrument attached)" : "unknown";
    }
    if (connection.visaLibraryReason.empty()) {
        return connection.visaLibrary;
    }
    return fmt::format("{} ({})", connection.visaLibrary, connection.visaLibraryReason);
}

}  // namespace

std::string RunInfo(const InfoArguments& arguments, const Environment& environment) {
    const std::unique_ptr<ScopeClient> client = Connect(arguments.connection, environment);
    const InstrumentIdentity instrument = client->Instrument();
    const DriverIdentity driver = client->Driver();
    const ConnectionDetails connection = client->Connection();

    Report report;
    report.Section("Instrument");
    report.Add("Manufacturer", instrument.manufacturer);
    report.Add("Model", instrument.model);
    report.Add("Serial number", instrument.serial);
    report.Add("Firmware", instrument.firmware);
    report.Add("Family", instrument.family.empty() ? "unknown to the driver" : instrument.family);
    report.Section("Driver");
    report.Add("Description", driver.description);
    report.Add("Identifier", driver.identifier);
    report.Add("Revision", driver.revision);
    report.Add("Vendor", driver.vendor);
    report.Add("Specification",
               fmt::format("IviScope {}.{}", driver.specificationMajor, driver.specificationMinor));
    report.Section("Connection");
    report.Add("Resource", connection.resource);
    report.Add("Logical name", connection.logicalName);
    report.Add("Configuration store", StoreText(client->Store()));
    report.Add("VISA library", VisaText(connection));
    report.Section("Options in force");
    for (const OptionFlag& option : connection.options) {
        report.Add(option.name, option.on ? "on" : "off");
    }
    report.Add("Driver setup", connection.driverSetup);
    return report.Text();
}

}  // namespace kestrion::cli
