// Where the instruments behind VIRTUAL resources come from.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "virtual/device_link.h"

namespace visa_provider {

struct InstrumentCatalog {
    // The names of the models that `make` knows.
    std::function<std::vector<std::string>()> models;
    // A new instrument; null for a name that isn't known.
    std::function<std::unique_ptr<virtual_scope::DeviceLink>(std::string_view model)> make;
};

// The catalogue in use: that of the virtual instrument, until another one is set. Thread-safe.
[[nodiscard]] InstrumentCatalog CurrentInstrumentCatalog();

// Sets the catalogue for sessions that are opened from now on and returns the former one, for
// tests that put an instrument of their own behind a session.
InstrumentCatalog SetInstrumentCatalog(InstrumentCatalog catalog);

// The name of the catalogue that equals `model` but for capitals; empty when there is none.
[[nodiscard]] std::string FindModel(const InstrumentCatalog& catalog, std::string_view model);

}  // namespace visa_provider
