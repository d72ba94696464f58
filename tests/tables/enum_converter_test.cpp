#include "tables/enum_converter.h"

#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tables/model_families.h"
#include "tests/platform/allocation_count.h"

namespace kestrion {
namespace {

enum Coupling : std::int32_t { kAc = 0, kDc = 1, kGround = 2 };

// A row that keeps its own tokens, for tables written in a test.
struct Row {
    std::int32_t value;
    std::vector<std::string_view> tokens;
};

std::vector<CEnumCommandItem> Items(const std::vector<Row>& rows) {
    std::vector<CEnumCommandItem> items;
    for (const Row& row : rows) {
        items.push_back({row.value, row.tokens});
    }
    return items;
}

template <typename T = Coupling>
std::unique_ptr<CEnumCommand<T>> Table(std::string_view model, const std::vector<Row>& rows) {
    return std::make_unique<CEnumCommand<T>>(model, Items(rows));
}

template <typename T = Coupling, typename... Tables>
CEnumCommandConverter<T> Converter(Tables... tables) {
    std::vector<std::unique_ptr<CEnumCommand<T>>> list;
    (list.push_back(std::move(tables)), ...);
    return CEnumCommandConverter<T>(std::move(list));
}

// "-" where there is no token.
std::string TokenOf(const IEnumConverter& converter, std::int32_t value,
                    std::string_view model = "") {
    std::string token;
    return converter.ToToken(model, value, token) ? token : "-";
}

constexpr std::int32_t kNoValue = 999;
std::int32_t ValueOf(const IEnumConverter& converter, std::string_view response,
                     std::string_view model = "") {
    std::int32_t value = 0;
    return converter.FromToken(model, response, value) ? value : kNoValue;
}

TEST(EnumCommandTest, WritesTheFirstTokenOfARowAndReadsAllOfThem) {
    const auto longFirst = Converter(Table("", {{7, {"HISTOGRAM", "HIS"}}}));
    EXPECT_EQ(TokenOf(longFirst, 7), "HISTOGRAM");
    EXPECT_EQ(ValueOf(longFirst, "HISTOGRAM"), 7);
    EXPECT_EQ(ValueOf(longFirst, "HIS"), 7);
    const auto shortFirst = Converter(Table("", {{3, {"BIN", "BINARY"}}}));
    EXPECT_EQ(TokenOf(shortFirst, 3), "BIN");
    EXPECT_EQ(ValueOf(shortFirst, "BINARY"), 3);
}

TEST(EnumCommandTest, ARowWithoutTokensWritesAnEmptyText) {
    const auto converter = Converter(Table("", {{1, {}}}));
    std::string token = "before";
    EXPECT_TRUE(converter.ToToken("", 1, token));
    EXPECT_EQ(token, "");
    EXPECT_EQ(ValueOf(converter, ""), kNoValue);
}

TEST(EnumCommandTest, OfTwoRowsWithOneTokenTheLaterIsReadAndBothWriteIt) {
    const auto converter = Converter(Table("", {{1, {"SAME"}}, {2, {"SAME"}}}));
    EXPECT_EQ(ValueOf(converter, "SAME"), 2);
    EXPECT_EQ(TokenOf(converter, 1), "SAME");
    EXPECT_EQ(TokenOf(converter, 2), "SAME");
}

TEST(EnumCommandTest, OfTwoRowsWithOneValueTheLaterIsWrittenAndBothAreRead) {
    const auto converter = Converter(Table("", {{1, {"OLD"}}, {1, {"NEW"}}}));
    EXPECT_EQ(TokenOf(converter, 1), "NEW");
    EXPECT_EQ(ValueOf(converter, "OLD"), 1);
    EXPECT_EQ(ValueOf(converter, "NEW"), 1);
}

TEST(EnumCommandTest, ReadingTheTrueTokenGivesMinusOneNeverOne) {
    const auto converter =
        Converter<std::int16_t>(Table<std::int16_t>("", {{1, {"1"}}, {-1, {"1"}}, {0, {"0"}}}));
    EXPECT_EQ(ValueOf(converter, "1"), -1);
    EXPECT_EQ(ValueOf(converter, "0"), 0);
}

TEST(EnumCommandTest, WritingOneAndMinusOneGivesTheSameToken) {
    const auto converter =
        Converter<std::int16_t>(Table<std::int16_t>("", {{1, {"ON"}}, {-1, {"ON"}}, {0, {"OFF"}}}));
    EXPECT_EQ(TokenOf(converter, 1), "ON");
    EXPECT_EQ(TokenOf(converter, -1), "ON");
    EXPECT_EQ(TokenOf(converter, 0), "OFF");
    EXPECT_EQ(TokenOf(converter, 2), "-");
}

TEST(EnumCommandTest, ASixteenBitValueMayComeWithoutItsSignWidened) {
    const auto converter = Converter<std::int16_t>(Table<std::int16_t>("", {{-1, {"ON"}}}));
    EXPECT_EQ(TokenOf(converter, 0xFFFF), "ON");
    const auto wide = Converter(Table("", {{-1, {"ON"}}}));
    EXPECT_EQ(TokenOf(wide, 0xFFFF), "-");
}

TEST(EnumConverterTest, TakesAllWhiteSpaceOffBothEndsOfAResponse) {
    const auto converter = Converter(Table("", {{kAc, {"AC"}}, {kDc, {"DC"}}}));
    for (const char* response : {"DC", " DC", "DC ", "\tDC\t", "DC\r\n", "\n \r\t\v\fDC\f\v \n"}) {
        EXPECT_EQ(ValueOf(converter, response), kDc) << response;
    }
}

TEST(EnumConverterTest, DoesNotFoldCase) {
    const auto converter = Converter(Table("", {{kDc, {"DC"}}}));
    EXPECT_EQ(ValueOf(converter, "dc"), kNoValue);
    EXPECT_EQ(ValueOf(converter, "Dc"), kNoValue);
}

TEST(EnumConverterTest, WhiteSpaceInsideOfAResponseStays) {
    const auto converter = Converter(Table("", {{kDc, {"D C"}}}));
    EXPECT_EQ(ValueOf(converter, " D C "), kDc);
    EXPECT_EQ(ValueOf(converter, "DC"), kNoValue);
}

TEST(EnumConverterTest, ATokenThatBeginsWithABlankIsWrittenAndNeverRead) {
    const auto first = Converter(Table("", {{0, {" OFF", "0"}}}));
    EXPECT_EQ(TokenOf(first, 0), " OFF");
    EXPECT_EQ(ValueOf(first, " OFF"), kNoValue);
    EXPECT_EQ(ValueOf(first, "OFF"), kNoValue);
    EXPECT_EQ(ValueOf(first, "0"), 0);
    EXPECT_EQ(ValueOf(Converter(Table("", {{0, {"OFF "}}})), "OFF "), kNoValue);
}

TEST(EnumConverterTest, ATokenWithACommaIsOneToken) {
    const auto converter = Converter(Table("", {{0, {"0, OFF"}}, {1, {"1, ON"}}}));
    EXPECT_EQ(TokenOf(converter, 0), "0, OFF");
    EXPECT_EQ(ValueOf(converter, "0, OFF"), 0);
    EXPECT_EQ(ValueOf(converter, "0"), kNoValue);
    EXPECT_EQ(ValueOf(converter, "OFF"), kNoValue);
}

TEST(EnumConverterTest, LeavesTheOutParameterAloneWhenThereIsNoRow) {
    const auto converter = Converter(Table("", {{kDc, {"DC"}}}));
    std::string token = "before";
    EXPECT_FALSE(converter.ToToken("", 5, token));
    EXPECT_EQ(token, "before");
    std::int32_t value = 77;
    EXPECT_FALSE(converter.FromToken("", "GND", value));
    EXPECT_EQ(value, 77);
}

TEST(EnumConverterTest, AModelWithoutATableFallsToTheOneForAll) {
    const auto converter =
        Converter(Table("", {{kDc, {"ANY"}}}), Table("LK7054", {{kDc, {"OWN"}}}));
    EXPECT_EQ(TokenOf(converter, kDc, "LK7054"), "OWN");
    EXPECT_EQ(TokenOf(converter, kDc, "LK7104"), "ANY");
    EXPECT_EQ(TokenOf(converter, kDc, "FREE1"), "ANY");
    EXPECT_EQ(TokenOf(converter, kDc, ""), "ANY");
    EXPECT_EQ(ValueOf(converter, "OWN", "LK7054"), kDc);
    EXPECT_EQ(ValueOf(converter, "OWN", "LK7104"), kNoValue);
}

TEST(EnumConverterTest, WithoutATableForAllBothDirectionsFailForAnotherModel) {
    const auto converter = Converter(Table("LK7054", {{kDc, {"DC"}}}));
    EXPECT_EQ(TokenOf(converter, kDc, "LK7104"), "-");
    EXPECT_EQ(ValueOf(converter, "DC", "LK7104"), kNoValue);
    EXPECT_EQ(TokenOf(converter, kDc, ""), "-");
}

TEST(EnumConverterTest, ATableOfItsOwnHidesTheOneForAllEvenWhereItLacksARow) {
    const auto converter =
        Converter(Table("", {{kGround, {"GND"}}}), Table("LK7054", {{kDc, {"DC"}}}));
    EXPECT_EQ(TokenOf(converter, kGround, "LK7054"), "-");
}

TEST(EnumConverterTest, AFamilyKeyStandsForTheModelsOfTheFamily) {
    const auto converter = Converter(Table("Lark Series", {{kDc, {"LARK"}}}));
    EXPECT_EQ(TokenOf(converter, kDc, "LK7054"), "LARK");
    EXPECT_EQ(TokenOf(converter, kDc, "LK7104"), "LARK");
    EXPECT_EQ(TokenOf(converter, kDc, "LK7254B"), "-");
    EXPECT_EQ(TokenOf(converter, kDc, "Lark Series"), "-");
}

TEST(EnumConverterTest, TheFirstTableToClaimAModelThroughAFamilyKeepsIt) {
    const auto converter = Converter(Table("Lark Series", {{kDc, {"FIRST"}}}),
                                     Table("Lark Series", {{kDc, {"SECOND"}}}));
    EXPECT_EQ(TokenOf(converter, kDc, "LK7054"), "FIRST");
}

TEST(EnumConverterTest, ATableThatNamesTheModelWinsOverAFamilyInEitherOrder) {
    const auto familyFirst =
        Converter(Table("Lark Series", {{kDc, {"FAMILY"}}}), Table("LK7054", {{kDc, {"MODEL"}}}));
    EXPECT_EQ(TokenOf(familyFirst, kDc, "LK7054"), "MODEL");
    EXPECT_EQ(TokenOf(familyFirst, kDc, "LK7104"), "FAMILY");
    const auto modelFirst =
        Converter(Table("LK7054", {{kDc, {"MODEL"}}}), Table("Lark Series", {{kDc, {"FAMILY"}}}));
    EXPECT_EQ(TokenOf(modelFirst, kDc, "LK7054"), "MODEL");
    EXPECT_EQ(TokenOf(modelFirst, kDc, "LK7104"), "FAMILY");
}

TEST(EnumConverterTest, OfTwoTablesThatNameTheModelTheLaterWins) {
    const auto converter =
        Converter(Table("LK7054", {{kDc, {"FIRST"}}}), Table("LK7054", {{kDc, {"SECOND"}}}));
    EXPECT_EQ(TokenOf(converter, kDc, "LK7054"), "SECOND");
}

TEST(EnumConverterTest, OfTwoTablesForAllTheLaterWins) {
    const auto converter = Converter(Table("", {{kDc, {"FIRST"}}}), Table("", {{kDc, {"SECOND"}}}));
    EXPECT_EQ(TokenOf(converter, kDc), "SECOND");
}

TEST(EnumConverterTest, ATableThatDoesNotKeepTheExistingOneReplacesIt) {
    class Greedy : public CEnumCommand<Coupling> {
      public:
        using CEnumCommand::CEnumCommand;
        bool KeepsExisting(const CModelBasedType& other) const override {
            EXPECT_EQ(other.Model(), "Lark Series");
            return false;
        }
    };
    const std::vector<Row> rows = {{kDc, {"GREEDY"}}};
    const auto converter = Converter(Table("Lark Series", {{kDc, {"FIRST"}}}),
                                     std::unique_ptr<CEnumCommand<Coupling>>(
                                         std::make_unique<Greedy>("Lark Series", Items(rows))));
    EXPECT_EQ(TokenOf(converter, kDc, "LK7104"), "GREEDY");
}

TEST(EnumConverterTest, EachTableGoesAwayOnceWhateverItStandsFor) {
    class Counted : public CEnumCommand<Coupling> {
      public:
        Counted(std::string_view model, int& gone) : CEnumCommand(model, {}), gone_(gone) {}
        ~Counted() override { ++gone_; }

      private:
        int& gone_;
    };
    std::array<int, 6> gone{};
    {
        std::vector<std::unique_ptr<CEnumCommand<Coupling>>> tables;
        // For all, for all again, for several models, for one of them, for none left, and dropped.
        constexpr std::string_view kKeys[] = {
            "", "", "Lark Series", "LK7054", "Lark Series", "Larch Series"};
        for (std::size_t i = 0; i < gone.size(); ++i) {
            tables.push_back(std::make_unique<Counted>(kKeys[i], gone[i]));
        }
        const CEnumCommandConverter<Coupling> converter(std::move(tables));
        EXPECT_EQ(gone, (std::array<int, 6>{0, 0, 0, 0, 0, 1}));
    }
    EXPECT_EQ(gone, (std::array<int, 6>{1, 1, 1, 1, 1, 1}));
}

TEST(EnumConverterTest, ATableWithAnUnknownKeyIsDroppedWithoutAnError) {
    const auto converter = Converter(
        Table("", {{kDc, {"DC"}}}), Table("Larch Series", {{kDc, {"MISSPELT"}}}),
        Table("lark series", {{kDc, {"CASE"}}}), Table("IbisC Series", {{kDc, {"NONE"}}}));
    for (const char* model : {"LK7054", "Larch Series", "lark series", "IbisC Series", ""}) {
        EXPECT_EQ(TokenOf(converter, kDc, model), "DC") << model;
    }
}

TEST(EnumConverterTest, TheLongestTokenCountsDroppedTablesToo) {
    EXPECT_EQ(Converter(Table("", {{0, {"AC", "ALTERN"}}, {1, {"DC"}}})).MaxTokenLength(), 6);
    EXPECT_EQ(Converter(Table("", {{0, {"AC"}}}), Table("Larch Series", {{0, {"LONGEST"}}}))
                  .MaxTokenLength(),
              7);
}

TEST(EnumConverterTest, WithoutTokensTheLongestHasNoLength) {
    EXPECT_EQ(Converter(Table("", {{0, {}}})).MaxTokenLength(), 0);
    EXPECT_EQ(Converter().MaxTokenLength(), 0);
}

TEST(EnumConverterTest, WithoutTablesConvertsNothing) {
    const auto converter = Converter();
    EXPECT_EQ(TokenOf(converter, 0), "-");
    EXPECT_EQ(ValueOf(converter, ""), kNoValue);
}

TEST(EnumConverterTest, ReadsAResponseWithoutAllocating) {
    const auto converter = Converter(Table("", {{4, {"CH1:HORIZONTAL:POSITION"}}}));
    std::int32_t value = 0;
    EXPECT_EQ(test::CountAllocations([&] {
                  EXPECT_TRUE(converter.FromToken("", " CH1:HORIZONTAL:POSITION\n", value));
              }),
              0U);
    EXPECT_EQ(value, 4);
}

TEST(EnumConverterTest, ATableThatMemoryWasTooShortForFails) {
    const std::vector<Row> rows = {{1, {"A TOKEN THAT IS KEPT ON THE HEAP", "SHORT"}},
                                   {2, {"TWO"}}};
    const std::vector<CEnumCommandItem> items = Items(rows);
    (void)ModelFamilyTable::Instance();  // made once in a process
    const std::size_t needed =
        test::CountAllocations([&] { const CEnumCommandConverter<Coupling> converter(items); });
    ASSERT_GT(needed, 3U);
    for (std::size_t i = 0; i < needed; ++i) {
        bool failed = false;
        const test::FailingAllocation failing(i);
        try {
            const CEnumCommandConverter<Coupling> converter(items);
        } catch (const std::bad_alloc&) {
            failed = true;
        }
        EXPECT_TRUE(failed) << i;
    }
}

enum TriggerType : std::int32_t { kEdge = 1, kWidth = 2 };
constexpr std::pair<std::string_view, TriggerType> kTriggerTypes[] = {
    {"IviScopeTriggerEdge", kEdge}, {"IviScopeTriggerWidth", kWidth}};

TEST(EnumNameConverterTest, ConvertsBothWays) {
    const CEnumNameConverter<TriggerType> converter(kTriggerTypes);
    std::string name;
    EXPECT_TRUE(converter.ToName(kWidth, name));
    EXPECT_EQ(name, "IviScopeTriggerWidth");
    TriggerType value{};
    EXPECT_TRUE(converter.FromName("IviScopeTriggerEdge", value));
    EXPECT_EQ(value, kEdge);
}

TEST(EnumNameConverterTest, LeavesTheOutParameterAloneForWhatIsNotListed) {
    const CEnumNameConverter<TriggerType> converter(kTriggerTypes);
    std::string name = "before";
    EXPECT_FALSE(converter.ToName(static_cast<TriggerType>(9), name));
    EXPECT_EQ(name, "before");
    TriggerType value = kWidth;
    EXPECT_FALSE(converter.FromName("iviscopetriggeredge", value));
    EXPECT_FALSE(converter.FromName(" IviScopeTriggerEdge", value));
    EXPECT_EQ(value, kWidth);
}

TEST(EnumNameConverterTest, OfTwoPairsTheLaterCounts) {
    constexpr std::pair<std::string_view, TriggerType> kPairs[] = {
        {"A", kEdge}, {"B", kEdge}, {"A", kWidth}};
    const CEnumNameConverter<TriggerType> converter(kPairs);
    std::string name;
    EXPECT_TRUE(converter.ToName(kEdge, name));
    EXPECT_EQ(name, "B");
    TriggerType value{};
    EXPECT_TRUE(converter.FromName("A", value));
    EXPECT_EQ(value, kWidth);
}

}  // namespace
}  // namespace kestrion
