// The concrete objects: nodes of the tree with the interfaces that they show.
#pragma once

#include <memory>
#include <string_view>

#include "core/driver.h"
#include "core/node.h"
#include "generated/objects/KestrionChannelFaces.h"
#include "generated/objects/KestrionDigitalChannelFaces.h"
#include "generated/objects/KestrionMeasurementSlotFaces.h"
#include "generated/objects/RootFaces.h"
#include "kestrion/interfaces/IKestrion.h"
#include "kestrion/interfaces/IKestrionChannel.h"
#include "kestrion/interfaces/IKestrionDigitalChannel.h"
#include "kestrion/interfaces/IKestrionMeasurement.h"

namespace kestrion {

// The root: all that isn't repeated is a face of this one object.
class Kestrion final : public CDriver {
  public:
    explicit Kestrion(DriverEnvironment environment)
        : CDriver(std::move(environment)), faces_(*this) {}

    [[nodiscard]] void* FindFace(REFIID iid) override { return faces_.Find(iid); }

  private:
    [[nodiscard]] IID MainInterface() const override { return kInterfaceId<IKestrion>; }

    RootFaces faces_;
};

// An instance of a repeated capability whose interfaces are those of `Faces`.
template <typename Faces, typename Main>
class RepCapObject final : public CRepCap {
  public:
    RepCapObject(CDriver& root, std::string_view className, std::int32_t index,
                 std::string_view physicalName)
        : CRepCap(root, className, index, physicalName), faces_(*this) {}

    [[nodiscard]] void* FindFace(REFIID iid) override { return faces_.Find(iid); }

  private:
    [[nodiscard]] IID MainInterface() const override { return kInterfaceId<Main>; }

    Faces faces_;
};

using KestrionChannel = RepCapObject<KestrionChannelFaces, IKestrionChannel>;
using KestrionDigitalChannel = RepCapObject<KestrionDigitalChannelFaces, IKestrionDigitalChannel>;
using KestrionMeasurementSlot = RepCapObject<KestrionMeasurementSlotFaces, IKestrionMeasurement>;

// Makes an instance of the class; one without interfaces for a class that has none yet.
[[nodiscard]] std::unique_ptr<CRepCap> MakeRepCap(CDriver& root, std::string_view className,
                                                  std::int32_t index, std::string_view name);

}  // namespace kestrion
