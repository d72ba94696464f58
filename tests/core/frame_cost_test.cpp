// What a member call costs in memory, look-ups and instrument traffic, in exact counts.
#include <gmock/gmock.h>

#include <functional>
#include <memory>

#include "core/driver.h"
#include "hosting/create.h"
#include "hosting/objects.h"
#include "kestrion/kestrion.h"
#include "tests/core/lookup_count.h"
#include "tests/core/quiet_visa.h"
#include "tests/platform/allocation_count.h"

namespace kestrion {
namespace {

using test::QuietVisa;
using testing::ElementsAre;

struct Cost {
    std::size_t allocations = 0;
    std::size_t lookups = 0;
    bool operator==(const Cost&) const = default;
};

void PrintTo(const Cost& cost, std::ostream* stream) {
    *stream << cost.allocations << " allocations, " << cost.lookups << " look-ups";
}

class FrameCostTest : public testing::Test {
  protected:
    FrameCostTest() {
        DriverEnvironment environment;
        environment.makeRepCap = MakeRepCap;
        environment.clock = &SystemClock();
        environment.chooseVisa = [this](std::string_view) {
            return VisaSelection{
                std::make_shared<const VisaLibrary>(visa_.Table(), "quiet", "for a test", nullptr),
                {}};
        };
        EXPECT_EQ(CreateKestrion(std::move(environment), scope_.Out()), S_OK);
    }

    void Initialize(std::string_view options) {
        visa_.AnswerWith("KESTRION,PL7254C,1,1\n");
        const BstrPtr resource(std::string_view("GPIB0::1::INSTR"));
        const BstrPtr text(options);
        ASSERT_EQ(scope_->Initialize(resource.Get(), VARIANT_FALSE, VARIANT_FALSE, text.Get()),
                  S_OK);
    }
    void Simulate() { Initialize("simulate=true,DriverSetup=Model=PL7254C"); }

    template <typename Interface>
    Interface& As() {
        return *Query<Interface>(scope_.Get()).Get();
    }

    // What a call costs once everything that is made on first use is there.
    static Cost CostOf(const std::function<HRESULT()>& call) {
        EXPECT_EQ(call(), S_OK);
        const std::size_t allocations = test::AllocationCount();
        const std::size_t lookups = test::LookupCount();
        const HRESULT status = call();
        const Cost cost = {test::AllocationCount() - allocations, test::LookupCount() - lookups};
        EXPECT_EQ(status, S_OK);
        return cost;
    }

    QuietVisa visa_;
    ComPtr<IKestrion> scope_;
};

TEST_F(FrameCostTest, TheCountersCount) {
    HashMap<std::string, int> map;
    map["one"] = 1;
    const std::size_t before = test::LookupCount();
    EXPECT_TRUE(map.Contains("one"));
    EXPECT_EQ(test::LookupCount() - before, 1U);
    std::string text;
    EXPECT_EQ(test::CountAllocations([&] { text.assign(1000, 'x'); }), 1U);
}

TEST_F(FrameCostTest, ASimulatedNumberTakesOneLookUpAndNoMemory) {
    Simulate();
    auto& acquisition = As<IIviScopeAcquisition>();
    LONG number = 0;
    EXPECT_EQ(CostOf([&] { return acquisition.put_NumberOfAverages(7); }), (Cost{0, 1}));
    EXPECT_EQ(CostOf([&] { return acquisition.get_NumberOfAverages(&number); }), (Cost{0, 1}));
    EXPECT_EQ(number, 7);
    auto type = IviScopeAcquisitionTypeNormal;
    EXPECT_EQ(CostOf([&] { return acquisition.put_Type(IviScopeAcquisitionTypeAverage); }),
              (Cost{0, 1}));
    EXPECT_EQ(CostOf([&] { return acquisition.get_Type(&type); }), (Cost{0, 1}));
    EXPECT_EQ(type, IviScopeAcquisitionTypeAverage);
    EXPECT_THAT(visa_.Calls(), ElementsAre(0, 0, 0));
}

TEST_F(FrameCostTest, AnOptionTakesNoLookUpAndNoMemory) {
    Initialize("");
    auto& operation = As<IIviDriverOperation>();
    VARIANT_BOOL flag = VARIANT_FALSE;
    visa_.ForgetCalls();
    EXPECT_EQ(CostOf([&] { return operation.get_RangeCheck(&flag); }), (Cost{0, 0}));
    EXPECT_EQ(CostOf([&] { return operation.put_RangeCheck(VARIANT_TRUE); }), (Cost{0, 0}));
    EXPECT_THAT(visa_.Calls(), ElementsAre(0, 0, 0));
}

TEST_F(FrameCostTest, ACommandIsOneWriteAndNoMemory) {
    Initialize("");
    auto& acquisition = As<IKestrionAcquisition>();
    visa_.ForgetCalls();
    EXPECT_EQ(CostOf([&] { return acquisition.put_NumberAverages(16); }), (Cost{0, 0}));
    EXPECT_THAT(visa_.Calls(), ElementsAre(2, 0, 0));
}

TEST_F(FrameCostTest, AQueryOfANumberIsOneWriteAndOneReadAndNoMemory) {
    Initialize("");
    auto& acquisition = As<IKestrionAcquisition>();
    visa_.AnswerWith("16\n");
    visa_.ForgetCalls();
    LONG number = 0;
    EXPECT_EQ(CostOf([&] { return acquisition.get_NumberAverages(&number); }), (Cost{0, 0}));
    EXPECT_EQ(number, 16);
    EXPECT_THAT(visa_.Calls(), ElementsAre(2, 2, 0));
}

// The name of the enumeration is looked up ignoring case, which isn't among the counted ones.
TEST_F(FrameCostTest, AnEnumerationIsOneWriteAndOneReadAndNoMemory) {
    Initialize("");
    auto& acquisition = As<IKestrionAcquisition>();
    visa_.AnswerWith("AVERAGE\n");
    visa_.ForgetCalls();
    auto mode = KestrionAcquisitionModeSample;
    EXPECT_EQ(CostOf([&] { return acquisition.get_Mode(&mode); }).allocations, 0U);
    EXPECT_EQ(mode, KestrionAcquisitionModeAverage);
    EXPECT_THAT(visa_.Calls(), ElementsAre(2, 2, 0));
    visa_.ForgetCalls();
    EXPECT_EQ(
        CostOf([&] { return acquisition.put_Mode(KestrionAcquisitionModeSample); }).allocations,
        0U);
    EXPECT_THAT(visa_.Calls(), ElementsAre(2, 0, 0));
}

}  // namespace
}  // namespace kestrion
