#include "cli/instrument_hint.h"

#include <fmt/format.h>

#include "cli/failure.h"

namespace kestrion::cli {

std::string ErrorText(const InstrumentError& error) {
    return fmt::format("{}, {}", error.code, error.text);
}

std::string HintFromInstrument(ScopeClient& client, const std::string& otherwise) {
    try {
        const InstrumentError error = client.NextError();
        if (error.code != 0) {
            return fmt::format("The instrument's error queue says: {}", ErrorText(error));
        }
    } catch (const Failure&) {
        // That it can't be asked either is no news.
    }
    return otherwise;
}

}  // namespace kestrion::cli
