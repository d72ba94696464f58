#include "tables/enum_lookup.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <new>
#include <string>
#include <thread>
#include <vector>

#include "tables/model_families.h"
#include "tests/platform/allocation_count.h"

namespace kestrion {
namespace {

constexpr std::string_view kCouplingKey = "IKestrionChannel.Coupling";

std::string TokenOf(const IEnumConverter* converter, std::int32_t value) {
    std::string token;
    if (converter == nullptr) {
        return "null";
    }
    return converter->ToToken("", value, token) ? token : "-";
}

constexpr std::int32_t kNoValue = 999;
std::int32_t ValueOf(const IEnumConverter* converter, std::string_view response) {
    std::int32_t value = 0;
    return converter != nullptr && converter->FromToken("", response, value) ? value : kNoValue;
}

TEST(EnumLookupTest, AnEnumerationAnswersToItsFourNames) {
    const IEnumConverter* found = GetEnumConverter("ChannelCoupling", kCouplingKey);
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(GetEnumConverter("KestrionChannelCouplingEnum", kCouplingKey), found);
    EXPECT_EQ(GetEnumConverter("KestrionChannelCoupling", kCouplingKey), found);
    EXPECT_EQ(GetEnumConverter("ChannelCouplingEnum", kCouplingKey), found);
}

TEST(EnumLookupTest, AClassEnumerationAnswersToItsFourNames) {
    const IEnumConverter* found = GetEnumConverter("VerticalCoupling", kCouplingKey);
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(GetEnumConverter("IviScopeVerticalCouplingEnum", kCouplingKey), found);
    EXPECT_EQ(GetEnumConverter("IviScopeVerticalCoupling", kCouplingKey), found);
    EXPECT_EQ(GetEnumConverter("VerticalCouplingEnum", kCouplingKey), found);
}

TEST(EnumLookupTest, NamesIgnoreCase) {
    const IEnumConverter* found = GetEnumConverter("ChannelCoupling", kCouplingKey);
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(GetEnumConverter("channelcoupling", kCouplingKey), found);
    EXPECT_EQ(GetEnumConverter("CHANNELCOUPLINGENUM", kCouplingKey), found);
    EXPECT_EQ(GetEnumConverter("KESTRIONCHANNELCOUPLING", kCouplingKey), found);
    EXPECT_EQ(GetEnumConverter("variant_bool", ""), GetEnumConverter("VARIANT_BOOL", ""));
}

TEST(EnumLookupTest, CaseIsThatOfAToZOnly) {
    // '[' is '{' with the bit of case changed, and so is '@' for a grave accent.
    constexpr std::string_view kKeys[] = {"I.Member"};
    const EnumTable tables[] = {{kKeys, {}}};
    const EnumData enums[] = {{"A[Enum", "[", tables}, {"\xC4Type", "\xC4", tables}};
    const EnumLookup lookup(enums);
    EXPECT_NE(lookup.Find("a[", "I.Member"), nullptr);
    EXPECT_EQ(lookup.Find("a{", "I.Member"), nullptr);
    EXPECT_NE(lookup.Find("\xC4", "I.Member"), nullptr);
    EXPECT_EQ(lookup.Find("\xE4", "I.Member"), nullptr);
}

TEST(EnumLookupTest, OtherFormsOfANameAreUnknown) {
    for (const char* name : {"", "Coupling", "KestrionChannelCouplingEnumEnum", "ChannelCoupling ",
                             "IviScopeChannelCoupling", "Enum", "Kestrion"}) {
        EXPECT_EQ(GetEnumConverter(name, kCouplingKey), nullptr) << name;
        EXPECT_EQ(GetEnumConverter(name, ""), nullptr) << name;
    }
}

TEST(EnumLookupTest, OfTwoEnumerationsWithOneShortNameTheFirstWins) {
    EXPECT_EQ(TokenOf(GetEnumConverter("TriggerType", ""), 0), "DRIVER");
    EXPECT_EQ(TokenOf(GetEnumConverter("TriggerTypeEnum", ""), 0), "DRIVER");
    EXPECT_EQ(TokenOf(GetEnumConverter("IviScopeTriggerType", ""), 0), "CLASS");
    // The member belongs to the second one, but the name has already chosen.
    EXPECT_EQ(GetEnumConverter("TriggerType", "IIviScopeTrigger.Type"), nullptr);
}

TEST(EnumLookupTest, EachMemberHasItsOwnTable) {
    EXPECT_EQ(TokenOf(GetEnumConverter("ChannelCoupling", "IKestrionChannel.Coupling"), 2), "-");
    EXPECT_EQ(TokenOf(GetEnumConverter("ChannelCoupling", "IKestrionChannel.Configure"), 2),
              "DCREJECT");
    EXPECT_EQ(GetEnumConverter("ChannelCoupling", "IKestrionChannel.Configure"),
              GetEnumConverter("ChannelCoupling", "IKestrionChannel.Read"));
}

TEST(EnumLookupTest, MemberKeysIgnoreCase) {
    const IEnumConverter* found = GetEnumConverter("ChannelCoupling", "IKestrionChannel.Read");
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(GetEnumConverter("ChannelCoupling", "ikestrionchannel.READ"), found);
}

TEST(EnumLookupTest, AnEmptyMemberKeyMeansTheFirstTable) {
    EXPECT_EQ(GetEnumConverter("ChannelCoupling", ""),
              GetEnumConverter("ChannelCoupling", "IKestrionChannel.Coupling"));
}

TEST(EnumLookupTest, AMemberThatIsNotListedHasNoConverter) {
    EXPECT_EQ(GetEnumConverter("ChannelCoupling", "IKestrionChannel.Offset"), nullptr);
    EXPECT_EQ(GetEnumConverter("CursorLinestyle", "IKestrionChannel.Coupling"), nullptr);
    EXPECT_EQ(GetEnumConverter("CursorLinestyle", "IKestrionCursor.get_Linestyle"), nullptr);
}

TEST(EnumLookupTest, AnEnumerationWithoutTablesHasNoConverter) {
    EXPECT_EQ(GetEnumConverter("TimeOut", ""), nullptr);
    EXPECT_EQ(GetEnumConverter("KestrionTimeOutEnum", "IKestrionChannel.Coupling"), nullptr);
}

TEST(EnumLookupTest, AnEnumerationWithoutTablesStillTakesItsName) {
    constexpr std::string_view kKeys[] = {"I.Member"};
    const EnumTable tables[] = {{kKeys, {}}};
    const EnumData enums[] = {{"KestrionTimeOutEnum", "TimeOut", {}},
                              {"IviScopeTimeOutEnum", "TimeOut", tables}};
    const EnumLookup lookup(enums);
    EXPECT_EQ(lookup.Find("TimeOut", "I.Member"), nullptr);
    EXPECT_NE(lookup.Find("IviScopeTimeOut", "I.Member"), nullptr);
}

TEST(EnumLookupTest, AMemberInTwoTablesUsesTheFirst) {
    constexpr std::string_view kKeys[] = {"I.Member"};
    constexpr std::string_view kFirst[] = {"FIRST"};
    constexpr std::string_view kSecond[] = {"SECOND"};
    const EnumRow firstRows[] = {{0, kFirst}};
    const EnumRow secondRows[] = {{0, kSecond}};
    const EnumTable tables[] = {{kKeys, firstRows}, {kKeys, secondRows}};
    const EnumData enums[] = {{"KestrionThingEnum", "Thing", tables}};
    const EnumLookup lookup(enums);
    EXPECT_EQ(TokenOf(lookup.Find("Thing", "I.Member"), 0), "FIRST");
}

TEST(EnumLookupTest, TheBooleanHasOneNameAlone) {
    EXPECT_NE(GetEnumConverter("VARIANT_BOOL", "IKestrionCursor.Paired"), nullptr);
    EXPECT_EQ(GetEnumConverter("VARIANT_BOOLEnum", "IKestrionCursor.Paired"), nullptr);
    EXPECT_EQ(GetEnumConverter("BOOL", "IKestrionCursor.Paired"), nullptr);
}

TEST(EnumLookupTest, TheBooleanHasSixteenBits) {
    const IEnumConverter* digits = GetEnumConverter("VARIANT_BOOL", "IKestrionCursor.Paired");
    EXPECT_EQ(TokenOf(digits, -1), "1");
    EXPECT_EQ(TokenOf(digits, 1), "1");
    EXPECT_EQ(TokenOf(digits, 0xFFFF), "1");
    EXPECT_EQ(TokenOf(digits, 0), "0");
    EXPECT_EQ(ValueOf(digits, "1\n"), -1);
    EXPECT_EQ(ValueOf(digits, "0\n"), 0);
}

TEST(EnumLookupTest, BooleanAlternativesThatBeginWithABlankNeverMatch) {
    const IEnumConverter* blanks = GetEnumConverter("VARIANT_BOOL", "IKestrionBus.State");
    EXPECT_EQ(TokenOf(blanks, -1), "1");
    EXPECT_EQ(ValueOf(blanks, "1"), -1);
    EXPECT_EQ(ValueOf(blanks, " ON"), kNoValue);
    EXPECT_EQ(ValueOf(blanks, "ON"), kNoValue);
    EXPECT_EQ(blanks->MaxTokenLength(), 4);
}

TEST(EnumLookupTest, ABooleanTokenWithACommaIsWrittenWhole) {
    const IEnumConverter* comma = GetEnumConverter("VARIANT_BOOL", "IIviScopeChannel.Configure");
    EXPECT_EQ(TokenOf(comma, -1), "1, ON");
    EXPECT_EQ(TokenOf(comma, 0), "0, OFF");
    EXPECT_EQ(ValueOf(comma, "1"), kNoValue);
}

TEST(EnumLookupTest, AllocatesNothingAfterTheFirstUse) {
    const EnumLookup lookup(AllEnums());
    constexpr std::string_view kKey = "IKestrionChannel.Configure";
    const IEnumConverter* first = nullptr;
    EXPECT_GT(
        test::CountAllocations([&] { first = lookup.Find("KestrionChannelCouplingEnum", kKey); }),
        0U);
    const IEnumConverter* second = nullptr;
    EXPECT_EQ(
        test::CountAllocations([&] { second = lookup.Find("KESTRIONCHANNELCOUPLINGENUM", kKey); }),
        0U);
    EXPECT_NE(first, nullptr);
    EXPECT_EQ(first, second);
    EXPECT_EQ(test::CountAllocations([&] {
                  EXPECT_EQ(lookup.Find("ChannelCoupling", "IKestrionChannel.Offset"), nullptr);
              }),
              0U);
}

TEST(EnumLookupTest, AConverterThatMemoryWasTooShortForIsMadeByTheNextQuestion) {
    constexpr std::string_view kKey = "IKestrionChannel.Configure";
    (void)ModelFamilyTable::Instance();  // made once in a process
    std::size_t needed = 0;
    {
        const EnumLookup lookup(AllEnums());
        needed = test::CountAllocations([&] { (void)lookup.Find("ChannelCoupling", kKey); });
    }
    ASSERT_GT(needed, 1U);
    for (std::size_t i = 0; i < needed; ++i) {
        const EnumLookup lookup(AllEnums());
        bool failed = false;
        {
            const test::FailingAllocation failing(i);
            try {
                (void)lookup.Find("ChannelCoupling", kKey);
            } catch (const std::bad_alloc&) {
                failed = true;
            }
        }
        EXPECT_TRUE(failed) << i;
        const IEnumConverter* found = lookup.Find("ChannelCoupling", kKey);
        EXPECT_EQ(TokenOf(found, 2), "DCREJECT") << i;
        EXPECT_EQ(ValueOf(found, "DCREJ"), 2) << i;
        EXPECT_EQ(lookup.Find("ChannelCoupling", kKey), found) << i;
    }
}

TEST(EnumLookupTest, AnIndexThatMemoryWasTooShortForFails) {
    const std::size_t needed = test::CountAllocations([] { const EnumLookup lookup(AllEnums()); });
    for (std::size_t i = 0; i < needed; ++i) {
        bool failed = false;
        const test::FailingAllocation failing(i);
        try {
            const EnumLookup lookup(AllEnums());
        } catch (const std::bad_alloc&) {
            failed = true;
        }
        EXPECT_TRUE(failed) << i;
    }
}

TEST(EnumLookupTest, EightThreadsThatAskFirstGetTheSameConverters) {
    constexpr std::size_t kThreads = 8;
    constexpr int kRounds = 10;
    for (int round = 0; round < kRounds; ++round) {
        const EnumLookup lookup(AllEnums());
        std::array<std::vector<const IEnumConverter*>, kThreads> found;
        std::atomic<std::size_t> waiting{0};
        std::vector<std::thread> threads;
        for (std::size_t i = 0; i < kThreads; ++i) {
            threads.emplace_back([&, i] {
                ++waiting;
                while (waiting < kThreads) {
                    std::this_thread::yield();
                }
                for (const EnumData& data : AllEnums()) {
                    for (const EnumTable& table : data.tables) {
                        for (const std::string_view key : table.memberKeys) {
                            found[i].push_back(lookup.Find(data.typeName, key));
                        }
                    }
                }
            });
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
        ASSERT_EQ(found[0].size(), 13U);
        for (std::size_t i = 0; i < kThreads; ++i) {
            EXPECT_EQ(found[i], found[0]);
            for (const IEnumConverter* converter : found[i]) {
                EXPECT_NE(converter, nullptr);
            }
        }
    }
}

TEST(EnumLookupTest, EightThreadsShareTheLookupOfTheProcess) {
    std::vector<std::thread> threads;
    std::atomic<int> right{0};
    for (int i = 0; i < 8; ++i) {
        threads.emplace_back([&right] {
            right += TokenOf(GetEnumConverter("CursorLinestyle", ""), 0) == "SOLID" ? 1 : 0;
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(right, 8);
}

}  // namespace
}  // namespace kestrion
