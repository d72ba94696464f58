// The questions after the connected model, which every object of the tree answers, and the members
// that a family doesn't have.
#include <gtest/gtest.h>

#include <array>
#include <string_view>

#include "core/frame.h"
#include "tables/model_families.h"
#include "tests/support/scope_fixture.h"

namespace kestrion {
namespace {

constexpr std::string_view kFamilies[] = {
    "Merlin Series", "Swift Series", "Plover Series", "Crake Series",  "LarkB Series",
    "Lark Series",   "IbisB Series", "Ibis Series",   "HeronB Series", "Heron Series"};

class InstrumentModelTest : public ScopeTest {
  protected:
    void SetUp() override { root_ = static_cast<CDriver*>(Query<IUnknown>(scope.Get()).Get()); }

    CDriver& Root() { return *root_; }
    CNode& Instance() { return *Root().Instances("KestrionMath").front(); }

    // How a member without a body of its own ends that these families don't have.
    HRESULT RunRefused(std::span<const std::string_view> families) {
        const MethodDescriptor method = {.iid = {},
                                         .interfaceName = "IThing",
                                         .memberName = "get_Thing",
                                         .fullName = "IThing.Thing",
                                         .command = {},
                                         .response = {},
                                         .refusedFamilies = families};
        return RunMember(Root(), method, {}, [](MemberCall&) { return S_OK; });
    }

  private:
    CDriver* root_ = nullptr;
};

TEST_F(InstrumentModelTest, EveryObjectOfTheTreeAnswers) {
    Simulate("Model=LK7254B");
    for (const CNode* node : {static_cast<CNode*>(&Root()), &Instance()}) {
        EXPECT_TRUE(node->IsKnownModel());
        EXPECT_TRUE(node->InstrumentInFamily("LarkB Series"));
        EXPECT_FALSE(node->InstrumentInFamily("Lark Series"));
        EXPECT_TRUE(node->InstrumentIsModel("LK7254B"));
        EXPECT_FALSE(node->InstrumentIsModel("lk7254b"));
        EXPECT_FALSE(node->InstrumentIsModel("LK7254"));
        EXPECT_TRUE(node->IsModelInFamily("HR5104", "Heron Series"));
    }
}

TEST_F(InstrumentModelTest, BeforeInitializationOnlyWhatIsAskedInFullIsAnswered) {
    EXPECT_FALSE(Root().IsKnownModel());
    EXPECT_FALSE(Root().InstrumentInFamily("LarkB Series"));
    EXPECT_FALSE(Root().InstrumentIsModel("LK7254B"));
    EXPECT_FALSE(Root().InstrumentIsModel(""));
    EXPECT_TRUE(Root().IsModelInFamily("LK7254B", "LarkB Series"));
    EXPECT_FALSE(Root().IsModelInFamily("LK7254B", "Lark Series"));
}

TEST_F(InstrumentModelTest, AfterCloseTheModelIsForgotten) {
    Simulate("Model=LK7254B");
    EXPECT_EQ(scope->Close(), S_OK);
    EXPECT_FALSE(Root().IsKnownModel());
    EXPECT_FALSE(Root().InstrumentInFamily("LarkB Series"));
    EXPECT_FALSE(Root().InstrumentIsModel("LK7254B"));
}

TEST_F(InstrumentModelTest, AModelThatIsNotInTheTableIsInNoFamilyAndRunsEverything) {
    Simulate("Model=FREE1234");
    EXPECT_FALSE(Root().IsKnownModel());
    EXPECT_TRUE(Root().InstrumentIsModel("FREE1234"));
    for (const std::string_view family : kFamilies) {
        EXPECT_FALSE(Root().InstrumentInFamily(family)) << family;
    }
    EXPECT_EQ(RunRefused(kFamilies), S_OK);
}

TEST_F(InstrumentModelTest, FamilyNamesCompareExactly) {
    Simulate("Model=LK7054");
    EXPECT_TRUE(Root().InstrumentInFamily("Lark Series"));
    for (const char* family :
         {"lark series", "LARK SERIES", "Lark", "Lark Series ", "LK7054", ""}) {
        EXPECT_FALSE(Root().InstrumentInFamily(family)) << family;
    }
}

TEST_F(InstrumentModelTest, NoModelIsOfTheFamilyThatHasNone) {
    for (const std::string_view family : kFamilies) {
        for (const std::string_view model : ModelFamilyTable::Instance().ModelsOf(family)) {
            EXPECT_FALSE(Root().IsModelInFamily(model, "IbisC Series")) << model;
        }
    }
    Simulate("Model=IB6124C");
    EXPECT_TRUE(Root().InstrumentInFamily("Ibis Series"));
    EXPECT_FALSE(Root().InstrumentInFamily("IbisC Series"));
}

TEST_F(InstrumentModelTest, AMemberThatTheLarkSeriesLacksRunsOnTheLarkBSeries) {
    constexpr std::array<std::string_view, 1> kLark = {"Lark Series"};
    Simulate("Model=LK7254B");
    EXPECT_EQ(RunRefused(kLark), S_OK);
    EXPECT_EQ(scope->Close(), S_OK);
    Simulate("Model=LK7054");
    EXPECT_EQ(RunRefused(kLark), MakeStatus(0x80044216));
    EXPECT_EQ(ErrorText(), "Kestrion: Instrument model does not support this feature: get_Thing.");
}

TEST_F(InstrumentModelTest, EachFamilyOfAListIsRefusedAndNoOther) {
    constexpr std::array<std::string_view, 3> kRefused = {"Heron Series", "HeronB Series",
                                                          "Lark Series"};
    const std::pair<const char*, bool> models[] = {
        {"HR5104", true},   {"HR5054B", true},  {"LK7054", true},   {"LK7254B", false},
        {"IB6404", false},  {"IB6804B", false}, {"CR7404B", false}, {"PL7254C", false},
        {"MR5104B", false}, {"SW72004C", false}};
    for (const auto& [model, refused] : models) {
        Simulate(std::string("Model=") + model);
        EXPECT_EQ(RunRefused(kRefused), refused ? MakeStatus(0x80044216) : S_OK) << model;
        EXPECT_EQ(scope->Close(), S_OK);
    }
}

TEST_F(InstrumentModelTest, WithoutAConnectionThatIsReportedAndNotTheModel) {
    constexpr std::array<std::string_view, 1> kLark = {"Lark Series"};
    EXPECT_EQ(RunRefused(kLark), MakeStatus(0x8004701D));
}

}  // namespace
}  // namespace kestrion
