#include "tables/model_families.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kestrion {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const ModelFamilyTable& Table() {
    return ModelFamilyTable::Instance();
}

TEST(ModelFamiliesTest, KnowsTheModelsOfTheTable) {
    EXPECT_TRUE(Table().IsKnownModel("LK7054"));
    EXPECT_TRUE(Table().IsKnownModel("HR5052BE"));
    EXPECT_FALSE(Table().IsKnownModel("lk7054"));
    EXPECT_FALSE(Table().IsKnownModel("LK705"));
    EXPECT_FALSE(Table().IsKnownModel(""));
}

TEST(ModelFamiliesTest, TellsTheFamilyOfAModel) {
    EXPECT_EQ(Table().FamilyOf("LK7254B"), "LarkB Series");
    EXPECT_EQ(Table().FamilyOf("IB6124C"), "Ibis Series");
    EXPECT_EQ(Table().FamilyOf("XX1"), "");
}

TEST(ModelFamiliesTest, AModelThatIsNotInTheTableIsInNoFamily) {
    for (const char* family :
         {"LarkB Series", "Lark Series", "Ibis Series", "HeronB Series", "IbisC Series"}) {
        EXPECT_FALSE(Table().IsModelInFamily("FREE1234", family)) << family;
        EXPECT_FALSE(Table().IsModelInFamily("", family)) << family;
    }
}

TEST(ModelFamiliesTest, FamiliesOfLikeNamesAreDisjoint) {
    EXPECT_TRUE(Table().IsModelInFamily("LK7254B", "LarkB Series"));
    EXPECT_FALSE(Table().IsModelInFamily("LK7254B", "Lark Series"));
    EXPECT_TRUE(Table().IsModelInFamily("LK7054", "Lark Series"));
    EXPECT_FALSE(Table().IsModelInFamily("LK7054", "LarkB Series"));
}

TEST(ModelFamiliesTest, AnEndingDoesNotDecideTheFamily) {
    EXPECT_TRUE(Table().IsModelInFamily("IB6124C", "Ibis Series"));
}

TEST(ModelFamiliesTest, AFamilyWithoutModelsIsFalseForEveryModel) {
    for (const FamilyData& family : AllFamilies()) {
        for (const std::string_view model : family.models) {
            EXPECT_FALSE(Table().IsModelInFamily(model, "IbisC Series")) << model;
        }
    }
    EXPECT_THAT(Table().ModelsOf("IbisC Series"), IsEmpty());
}

TEST(ModelFamiliesTest, FamilyNamesCompareExactly) {
    EXPECT_FALSE(Table().IsModelInFamily("LK7054", "lark series"));
    EXPECT_FALSE(Table().IsModelInFamily("LK7054", "Lark Series "));
    EXPECT_FALSE(Table().IsModelInFamily("LK7054", ""));
}

TEST(ModelFamiliesTest, ListsTheModelsOfAFamilyInTheirOrder) {
    EXPECT_THAT(Table().ModelsOf("HeronB Series"), ElementsAre("HR5054B", "HR5052BE"));
}

TEST(ModelFamiliesTest, AModelWithoutAFamilyIsKnownAndInNone) {
    constexpr std::string_view kModels[] = {"LONE1"};
    const FamilyData families[] = {{"", kModels}};
    const ModelFamilyTable table(families);
    EXPECT_TRUE(table.IsKnownModel("LONE1"));
    EXPECT_EQ(table.FamilyOf("LONE1"), "");
    EXPECT_FALSE(table.IsModelInFamily("LONE1", ""));
}

TEST(ModelFamiliesTest, TheLastFamilyThatListsAModelIsItsFamily) {
    constexpr std::string_view kModels[] = {"TWICE1"};
    const FamilyData families[] = {{"First Series", kModels}, {"Second Series", kModels}};
    const ModelFamilyTable table(families);
    EXPECT_EQ(table.FamilyOf("TWICE1"), "Second Series");
    EXPECT_TRUE(table.IsModelInFamily("TWICE1", "First Series"));
    EXPECT_TRUE(table.IsModelInFamily("TWICE1", "Second Series"));
}

TEST(TwoChannelModelTest, LooksAtTheSeventhCharacterOfLongNames) {
    EXPECT_TRUE(IsTwoChannelModel("ABCDEF2"));
    EXPECT_TRUE(IsTwoChannelModel("ABCDEF2B"));
    EXPECT_FALSE(IsTwoChannelModel("ABCDEF4"));
    EXPECT_FALSE(IsTwoChannelModel("ABCDE2"));
    EXPECT_FALSE(IsTwoChannelModel("222222"));
    EXPECT_FALSE(IsTwoChannelModel(""));
}

}  // namespace
}  // namespace kestrion
