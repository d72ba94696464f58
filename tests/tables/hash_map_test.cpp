#include "tables/hash_map.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tests/platform/allocation_count.h"

namespace kestrion {
namespace {

using testing::ElementsAre;
using testing::Pointee;

// The value of a key; -1 where there is none.
template <typename Key, typename View>
int ValueAt(const HashMap<Key, int>& map, View key) {
    const int* found = map.Find(key);
    return found == nullptr ? -1 : *found;
}

// Texts of one letter hash to the letter's code, so that their place is easy to tell.
std::vector<std::string> Keys(const HashMap<std::string, int>& map) {
    std::vector<std::string> keys;
    for (const auto& [key, value] : map) {
        keys.push_back(key);
    }
    return keys;
}

TEST(HashTest, FoldsTextByThirtyThree) {
    EXPECT_EQ(HashTraits<std::string>::Hash(""), 0U);
    EXPECT_EQ(HashTraits<std::string>::Hash("A"), 65U);
    EXPECT_EQ(HashTraits<std::string>::Hash("AB"), 65U * 33 + 66);
    EXPECT_EQ(HashTraits<std::string>::Hash("CH1"), (67U * 33 + 72) * 33 + 49);
    EXPECT_EQ(HashTraits<std::string>::Hash("CH1:"), ((67U * 33 + 72) * 33 + 49) * 33 + 58);
    EXPECT_EQ(HashTraits<std::string>::Hash("CH1:S"),
              (((67U * 33 + 72) * 33 + 49) * 33 + 58) * 33 + 83);
}

TEST(HashTest, CountsAnInstrumentByteAsItsUnsignedValue) {
    EXPECT_EQ(HashTraits<std::string>::Hash("\xA0"), 0xA0U);
}

TEST(HashTest, WrapsAtThirtyTwoBits) {
    // 33^7 * 97 and so on, taken modulo 2^32 by hand: eight times 'a'.
    std::uint64_t expected = 0;
    for (int i = 0; i < 8; ++i) {
        expected = (expected * 33 + 97) % 4294967296U;
    }
    EXPECT_EQ(HashTraits<std::string>::Hash("aaaaaaaa"), expected);
}

TEST(HashTest, TakesAnIntegerAsItIs) {
    EXPECT_EQ(HashTraits<std::int32_t>::Hash(5), 5U);
    EXPECT_EQ(HashTraits<std::int32_t>::Hash(-1), 0xFFFFFFFFU);
    EXPECT_EQ(HashTraits<std::int16_t>::Hash(-1), 0xFFFFFFFFU);
}

TEST(HashMapTest, IsEmptyAtFirst) {
    HashMap<std::string, int> map;
    EXPECT_TRUE(map.IsEmpty());
    EXPECT_EQ(map.Size(), 0U);
    EXPECT_EQ(map.Find("a"), nullptr);
    EXPECT_FALSE(map.Remove("a"));
    EXPECT_TRUE(map.begin() == map.end());
}

TEST(HashMapTest, HasSeventeenBucketsWithTheFirstEntry) {
    HashMap<std::string, int> map;
    map.Set("a", 1);
    EXPECT_EQ(map.BucketCount(), 17U);
}

TEST(HashMapTest, FindsWhatWasSetAndNothingElse) {
    HashMap<std::string, int> map;
    map.Set("DC", 1);
    map["AC"] = 2;
    EXPECT_EQ(ValueAt(map, "DC"), 1);
    EXPECT_EQ(ValueAt(map, "AC"), 2);
    EXPECT_EQ(map.Find("dc"), nullptr);
    EXPECT_EQ(map.Find("D"), nullptr);
    EXPECT_EQ(map.Size(), 2U);
}

TEST(HashMapTest, SetReplacesAndTryAddKeeps) {
    HashMap<std::string, int> map;
    map.Set("a", 1);
    map.Set("a", 2);
    EXPECT_EQ(ValueAt(map, "a"), 2);
    EXPECT_FALSE(map.TryAdd("a", 3));
    EXPECT_EQ(ValueAt(map, "a"), 2);
    EXPECT_TRUE(map.TryAdd("b", 3));
    EXPECT_EQ(ValueAt(map, "b"), 3);
    EXPECT_EQ(map.Size(), 2U);
}

TEST(HashMapTest, AnEmptyTextIsAKeyLikeAnyOther) {
    HashMap<std::string, int> map;
    map.Set("", 7);
    EXPECT_EQ(ValueAt(map, ""), 7);
}

TEST(HashMapTest, KeepsKeysThatHashAlikeApart) {
    HashMap<std::string, int> map;
    // 'A' * 33 + 'b' and 'B' * 33 + 'A' are the same number.
    ASSERT_EQ(HashTraits<std::string>::Hash("Ab"), HashTraits<std::string>::Hash("BA"));
    map.Set("Ab", 1);
    map.Set("BA", 2);
    EXPECT_EQ(ValueAt(map, "Ab"), 1);
    EXPECT_EQ(ValueAt(map, "BA"), 2);
    EXPECT_TRUE(map.Remove("Ab"));
    EXPECT_EQ(map.Find("Ab"), nullptr);
    EXPECT_EQ(ValueAt(map, "BA"), 2);
}

TEST(HashMapTest, VisitsInTheOrderOfTheBuckets) {
    HashMap<std::string, int> map;
    // Buckets of 17: a = 97 is in 12, d = 100 in 15, f = 102 in 0, h = 104 in 2.
    for (const char* key : {"a", "d", "f", "h"}) {
        map.Set(key, 0);
    }
    EXPECT_THAT(Keys(map), ElementsAre("f", "h", "a", "d"));
}

TEST(HashMapTest, VisitsTheLatestOfABucketFirst) {
    HashMap<std::string, int> map;
    // D = 68 and U = 85 are both in bucket 0.
    map.Set("D", 0);
    map.Set("U", 0);
    EXPECT_THAT(Keys(map), ElementsAre("U", "D"));
}

TEST(HashMapTest, RebuildsWhenTheLoadExceedsTheHighThreshold) {
    HashMap<std::int32_t, int> map;
    // 2.25 * 17 is 38.25.
    for (int i = 0; i < 38; ++i) {
        map.Set(i, i);
    }
    EXPECT_EQ(map.BucketCount(), 17U);
    map.Set(38, 38);
    // 39 / 0.75 is 52, and 53 is prime.
    EXPECT_EQ(map.BucketCount(), 53U);
    for (int i = 0; i <= 38; ++i) {
        EXPECT_EQ(ValueAt(map, i), i);
    }
}

TEST(HashMapTest, RebuildsWhenTheLoadFallsBelowTheLowThreshold) {
    HashMap<std::int32_t, int> map;
    for (int i = 0; i < 39; ++i) {
        map.Set(i, i);
    }
    ASSERT_EQ(map.BucketCount(), 53U);
    // 0.25 * 53 is 13.25.
    for (int i = 38; i >= 14; --i) {
        EXPECT_TRUE(map.Remove(i));
    }
    EXPECT_EQ(map.Size(), 14U);
    EXPECT_EQ(map.BucketCount(), 53U);
    EXPECT_TRUE(map.Remove(13));
    EXPECT_EQ(map.BucketCount(), 17U);
    for (int i = 0; i < 13; ++i) {
        EXPECT_EQ(ValueAt(map, i), i);
    }
}

TEST(HashMapTest, NeverHasFewerBucketsThanAtFirst) {
    HashMap<std::int32_t, int> map;
    map.Set(1, 1);
    map.Set(2, 2);
    EXPECT_TRUE(map.Remove(1));
    EXPECT_TRUE(map.Remove(2));
    EXPECT_EQ(map.BucketCount(), 17U);
    EXPECT_TRUE(map.IsEmpty());
}

TEST(HashMapTest, FindsByAViewWithoutAllocating) {
    HashMap<std::string, int> map;
    const std::string key = "IKestrionAcquisition.Mode, too long for a text's own room";
    map.Set(key, 1);
    int found = 0;
    EXPECT_EQ(test::CountAllocations([&] { found = ValueAt(map, std::string_view(key)); }), 0U);
    EXPECT_EQ(found, 1);
}

TEST(HashMapTest, HoldsValuesThatOnlyMove) {
    HashMap<std::string, std::unique_ptr<int>> map;
    map["a"] = std::make_unique<int>(1);
    map.Set("b", std::make_unique<int>(2));
    EXPECT_THAT(map["a"], Pointee(1));
    EXPECT_THAT(map["b"], Pointee(2));
    map["a"] = nullptr;
    EXPECT_EQ(map["a"], nullptr);
    EXPECT_EQ(map.Size(), 2U);
}

TEST(HashMapTest, KeepsTheAddressOfAValueOverARebuild) {
    HashMap<std::int32_t, int> map;
    map.Set(0, 5);
    const int* before = map.Find(0);
    for (int i = 1; i < 200; ++i) {
        map.Set(i, i);
    }
    EXPECT_EQ(map.Find(0), before);
    EXPECT_EQ(ValueAt(map, 0), 5);
}

TEST(HashMapTest, MovesItsEntriesAndLeavesAnEmptyMap) {
    HashMap<std::string, int> map;
    map.Set("a", 1);
    HashMap<std::string, int> taken = std::move(map);
    EXPECT_EQ(ValueAt(taken, "a"), 1);
    EXPECT_TRUE(map.IsEmpty());  // NOLINT(bugprone-use-after-move): that is what is tested
    map.Set("b", 2);
    EXPECT_EQ(ValueAt(map, "b"), 2);
    taken = std::move(map);
    EXPECT_EQ(taken.Find("a"), nullptr);
    EXPECT_EQ(ValueAt(taken, "b"), 2);
}

TEST(HashMapTest, ClearsAndFillsAgain) {
    HashMap<std::string, int> map;
    map.Set("a", 1);
    map.Clear();
    EXPECT_TRUE(map.IsEmpty());
    EXPECT_EQ(map.Find("a"), nullptr);
    map.Set("a", 2);
    EXPECT_EQ(ValueAt(map, "a"), 2);
}

TEST(HashMapTest, LetsAValueBeChangedWhileVisited) {
    HashMap<std::string, int> map;
    map.Set("a", 1);
    map.Set("b", 2);
    for (auto& [key, value] : map) {
        value *= 10;
    }
    EXPECT_EQ(ValueAt(map, "a"), 10);
    EXPECT_EQ(ValueAt(map, "b"), 20);
}

}  // namespace
}  // namespace kestrion
