#include "hosting/objects.h"

namespace kestrion {

std::unique_ptr<CRepCap> MakeRepCap(CDriver& root, std::string_view className, std::int32_t index,
                                    std::string_view name) {
    if (className == "KestrionChannel") {
        return std::make_unique<KestrionChannel>(root, className, index, name);
    }
    if (className == "KestrionDigitalChannel") {
        return std::make_unique<KestrionDigitalChannel>(root, className, index, name);
    }
    if (className == "KestrionMeasurementSlot") {
        return std::make_unique<KestrionMeasurementSlot>(root, className, index, name);
    }
    return std::make_unique<CRepCap>(root, className, index, name);
}

}  // namespace kestrion
