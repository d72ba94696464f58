// Measurements and their reference levels.
#include "tests/system/property_pairs.h"

namespace kestrion {
namespace {

class PairsOfMeasurements : public PropertyPairs {
  protected:
    ComPtr<IKestrionMeasurement> Slot(std::string_view name) {
        const BstrPtr text(name);
        ComPtr<IKestrionMeasurement> slot;
        EXPECT_EQ(client_.As<IKestrionMeasurements>()->get_Item(text.Get(), slot.Out()), S_OK);
        return slot;
    }
    template <typename Measurement>
    void Configure(Measurement& object) {
        EXPECT_EQ(object.ConfigureDelay(KestrionSourceMath1, KestrionSourceRef4,
                                        KestrionMeasurementDelayDirectionBackwards,
                                        KestrionMeasurementEdgeFall, KestrionMeasurementEdgeRise),
                  S_OK)
            << TakeErrorText();
        ExpectRead(object, &Measurement::Read, KestrionSourceMath1, KestrionSourceRef4,
                   KestrionMeasurementTypeDelay, KestrionMeasurementDelayDirectionBackwards,
                   KestrionMeasurementEdgeFall, KestrionMeasurementEdgeRise);
        EXPECT_EQ(object.ConfigureDelay(KestrionSourceCh2, KestrionSourceCh1,
                                        KestrionMeasurementDelayDirectionForwards,
                                        KestrionMeasurementEdgeRise, KestrionMeasurementEdgeFall),
                  S_OK)
            << TakeErrorText();
        ExpectRead(object, &Measurement::Read, KestrionSourceCh2, KestrionSourceCh1,
                   KestrionMeasurementTypeDelay, KestrionMeasurementDelayDirectionForwards,
                   KestrionMeasurementEdgeRise, KestrionMeasurementEdgeFall);
        EXPECT_EQ(object.ConfigurePhase(KestrionSourceCh3, KestrionSourceCh4), S_OK)
            << TakeErrorText();
        ExpectRead(object, &Measurement::Read, KestrionSourceCh3, KestrionSourceCh4,
                   KestrionMeasurementTypePhase, KestrionMeasurementDelayDirectionForwards,
                   KestrionMeasurementEdgeRise, KestrionMeasurementEdgeFall);
        EXPECT_EQ(object.Configure(KestrionSourceHistogram, KestrionMeasurementTypeSigma3), S_OK)
            << TakeErrorText();
        ExpectRead(object, &Measurement::Read, KestrionSourceHistogram, KestrionSourceCh4,
                   KestrionMeasurementTypeSigma3, KestrionMeasurementDelayDirectionForwards,
                   KestrionMeasurementEdgeRise, KestrionMeasurementEdgeFall);
        ExpectInstrumentError(0);
    }
    template <typename Levels>
    void ConfigureLevels(Levels& object, auto put, auto read) {
        PutAndRead(object, put, read, KestrionMeasurementMethodHistogram,
                   KestrionMeasurementUnitPercent, 100.0, 0.0, 50.0, 25.0);
        PutAndRead(object, put, read, KestrionMeasurementMethodMinMax,
                   KestrionMeasurementUnitAbsolute, 3.3, -0.5, 1.65, -1e6);
        PutAndRead(object, put, read, KestrionMeasurementMethodMean, KestrionMeasurementUnitPercent,
                   80.0, 20.0, 40.0, 60.0);
    }
};

TEST_P(PairsOfMeasurements, SourcesTypeAndEdges) {
    Open();
    Configure(*client_.As<IKestrionMeasurementImmediate>());
    Configure(*Slot("MeasurementSlot1"));
    Configure(*Slot("MeasurementSlot8"));
}

TEST_P(PairsOfMeasurements, ReferenceLevels) {
    Open();
    ConfigureLevels(*client_.As<IKestrionMeasurementImmediate>(),
                    &IKestrionMeasurementImmediate::ConfigureReferenceLevel,
                    &IKestrionMeasurementImmediate::ReadReferenceLevel);
    for (const char* name : {"MeasurementSlot1", "MeasurementSlot8"}) {
        const auto levels = Query<IKestrionReferenceLevel>(Slot(name).Get());
        ConfigureLevels(*levels, &IKestrionReferenceLevel::Configure,
                        &IKestrionReferenceLevel::Read);
    }
    // Those of the immediate measurement are its own.
    ExpectRead(*client_.As<IKestrionMeasurementImmediate>(),
               &IKestrionMeasurementImmediate::ReadReferenceLevel, KestrionMeasurementMethodMean,
               KestrionMeasurementUnitPercent, 80.0, 20.0, 40.0, 60.0);
}

TEST_P(PairsOfMeasurements, ReferenceLevelsOfTheClass) {
    Open();
    const auto levels = client_.As<IIviScopeReferenceLevel>();
    for (const double step : {0.5, -2.0}) {
        EXPECT_EQ(levels->Configure(step, 2 * step, 3 * step), S_OK) << TakeErrorText();
        ExpectInstrumentError(0);
        ExpectGet(*levels, &IIviScopeReferenceLevel::get_Low, step);
        ExpectGet(*levels, &IIviScopeReferenceLevel::get_Mid, 2 * step);
        ExpectGet(*levels, &IIviScopeReferenceLevel::get_High, 3 * step);
    }
}

TEST_P(PairsOfMeasurements, SignalTypesOfTheSources) {
    Open();
    const auto measurements = client_.As<IKestrionMeasurements>();
    for (const auto source : {KestrionMeasurementSource1, KestrionMeasurementSource2}) {
        for (const auto type :
             {KestrionMeasurementSignalTypeEye, KestrionMeasurementSignalTypePulse}) {
            EXPECT_EQ(measurements->SetSourceSignalType(source, type), S_OK) << TakeErrorText();
            ExpectInstrumentError(0);
            auto got = static_cast<KestrionMeasurementSignalTypeEnum>(99);
            EXPECT_EQ(measurements->GetSourceSignalType(source, &got), S_OK) << TakeErrorText();
            EXPECT_EQ(got, type);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Links, PairsOfMeasurements, testing::Bool(), LinkName);

}  // namespace
}  // namespace kestrion
