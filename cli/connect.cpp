#include <fmt/format.h>

#include <algorithm>

#include "cli/ascii.h"
#include "cli/commands.h"
#include "cli/failure.h"
#include "cli/suggest.h"

namespace kestrion::cli {
namespace {

constexpr std::string_view kVirtual = "VIRTUAL";

// The models that the driver supports; none if even a simulated session doesn't start.
std::vector<std::string> ModelsForHint(const Environment& environment) {
    try {
        const std::unique_ptr<ScopeClient> client = environment.makeClient();
        client->Open(ConnectionArguments{}.resource, "simulate=true");
        return client->SupportedModels();
    } catch (const Failure&) {
        return {};
    }
}

std::string VirtualHint(const std::vector<std::string_view>& parts,
                        const Environment& environment) {
    constexpr std::string_view kForm =
        "The virtual instrument's resource is VIRTUAL::MODEL::INSTR, with a model of those that "
        "'kestrion models' lists";
    if (parts.size() < 2) {
        return fmt::format("{}.", kForm);
    }
    const std::string model(parts[1]);
    const std::vector<std::string> models = ModelsForHint(environment);
    if (std::find(models.begin(), models.end(), model) != models.end()) {
        return {};
    }
    const std::vector<std::string> near = Nearest(model, models, 3);
    if (near.empty()) {
        return fmt::format("'{}' is no model. {}.", model, kForm);
    }
    return fmt::format("'{}' is no model. {}, such as {}.", model, kForm, fmt::join(near, ", "));
}

// "TCPIP::host::port::SOCKET" is split at the double colons.
std::vector<std::string_view> ResourceParts(std::string_view resource) {
    std::vector<std::string_view> parts;
    for (;;) {
        const std::size_t end = resource.find("::");
        parts.push_back(resource.substr(0, end));
        if (end == std::string_view::npos) {
            return parts;
        }
        resource.remove_prefix(end + 2);
    }
}

// The driver found a store and nothing of its own in it, whatever the resource was.
bool IsStoreWithoutDriver(std::string_view text) {
    return text.find("Software module could not be loaded") != std::string_view::npos;
}

std::string StoreHint(const StoreDetails& store) {
    return fmt::format(
        "The configuration store {} ({}) has no software module 'Kestrion', which drivers need "
        "in every store.",
        store.path, store.reason);
}

// Why a name without the parts of a resource leads nowhere.
std::string LogicalNameHint(const std::string& resource, const StoreDetails& store) {
    const std::string found =
        store.path.empty() ? "No store is in use" : "The store is " + store.path;
    return fmt::format(
        "'{}' is neither a logical name of the configuration store nor a VISA resource such as "
        "TCPIP::192.168.0.20::INSTR. {}: {}.",
        resource, found, store.reason);
}

std::string OpenHint(const std::string& resource, const StoreDetails& store,
                     const Environment& environment) {
    const std::vector<std::string_view> parts = ResourceParts(resource);
    const std::string link = ToUpper(parts.front());
    if (link.starts_with(kVirtual)) {
        return VirtualHint(parts, environment);
    }
    if (link.starts_with("TCPIP") && parts.size() == 4 && ToUpper(parts[3]) == "SOCKET") {
        return fmt::format(
            "Is anything listening at {} port {}? 'kestrion-scope' serves a virtual "
            "instrument over TCP.",
            parts[1], parts[2]);
    }
    if (link.starts_with("TCPIP") && parts.size() >= 2) {
        return fmt::format("Is the instrument at {} switched on and reachable?", parts[1]);
    }
    if (parts.size() == 1) {
        return LogicalNameHint(resource, store);
    }
    return "Is the instrument switched on and connected?";
}

// A flag with a value that isn't one: the driver names the value and this the legal ones.
bool IsOptionValueError(std::string_view text) {
    return text.find("value in the option string") != std::string_view::npos;
}

// The driver's text, with the resource where it doesn't say which one failed.
std::string Naming(const std::string& resource, const std::string& text) {
    return text.find(resource) != std::string::npos
               ? text
               : fmt::format("{}\nResource = {}", text, resource);
}

}  // namespace

std::unique_ptr<ScopeClient> Connect(const ConnectionArguments& arguments,
                                     const Environment& environment) {
    std::unique_ptr<ScopeClient> client = environment.makeClient();
    try {
        client->Open(arguments.resource, arguments.options);
    } catch (const Failure& failure) {
        const std::string text = failure.what();
        if (IsOptionValueError(text)) {
            throw Failure(text, "Legal values are true and false, 1 and 0.", failure.ExitCode());
        }
        if (IsStoreWithoutDriver(text)) {
            throw Failure(text, StoreHint(client->Store()), failure.ExitCode());
        }
        throw Failure(Naming(arguments.resource, text),
                      OpenHint(arguments.resource, client->Store(), environment),
                      failure.ExitCode());
    }
    if (arguments.timeoutMilliseconds) {
        client->SetTimeout(*arguments.timeoutMilliseconds);
    }
    return client;
}

}  // namespace kestrion::cli
