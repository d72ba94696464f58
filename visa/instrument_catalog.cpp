#include "visa/instrument_catalog.h"

#include <mutex>
#include <utility>

#include "visa/resource_name.h"

namespace visa_provider {

namespace {

struct Holder {
    std::mutex mutex;
    InstrumentCatalog catalog{virtual_scope::ModelNames, virtual_scope::MakeInstrument};
};

Holder& TheHolder() {
    static auto& holder = *new Holder;  // as long-lived as the sessions
    return holder;
}

}  // namespace

InstrumentCatalog CurrentInstrumentCatalog() {
    auto& holder = TheHolder();
    const std::lock_guard guard(holder.mutex);
    return holder.catalog;
}

InstrumentCatalog SetInstrumentCatalog(InstrumentCatalog catalog) {
    auto& holder = TheHolder();
    const std::lock_guard guard(holder.mutex);
    return std::exchange(holder.catalog, std::move(catalog));
}

std::string FindModel(const InstrumentCatalog& catalog, std::string_view model) {
    for (auto& known : catalog.models()) {
        if (SameIgnoringCase(known, model)) {
            return known;
        }
    }
    return {};
}

}  // namespace visa_provider
