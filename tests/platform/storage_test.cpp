#include "platform/storage.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <limits>

namespace kestrion {
namespace {

constexpr std::size_t kMebibyte = std::size_t{1} << 20;
// Doubles of large storage, and of storage just below.
constexpr ULONG kLargeVector = 4 * kMebibyte;
constexpr ULONG kSmallVector = kLargeVector - 1;

bool AllZero(std::span<const double> values) {
    return std::ranges::all_of(values, [](double value) { return value == 0.0; });
}

TEST(Storage, OwnsAsManyBytesAsItIsMadeWith) {
    Storage storage(3);
    ASSERT_TRUE(storage);
    EXPECT_EQ(storage.Size(), 3U);
    std::fill_n(storage.Data(), 3, std::uint8_t{7});
    const Storage moved(std::move(storage));
    EXPECT_EQ(moved.Data()[2], 7);
    EXPECT_FALSE(storage);
    EXPECT_EQ(storage.Size(), 0U);
}

TEST(Storage, NoBytesAreNotNoMemory) {
    EXPECT_TRUE(Storage(0));
    EXPECT_FALSE(Storage());
}

TEST(Storage, LargeStorageBeginsOnALargePage) {
    const Storage storage(kLargeStorage);
    ASSERT_TRUE(storage);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(storage.Data()) % (2 * kMebibyte), 0U);
    storage.Data()[kLargeStorage - 1] = 1;
}

TEST(Storage, MoreThanThereIsGivesNone) {
    EXPECT_FALSE(Storage(std::numeric_limits<std::size_t>::max()));
    EXPECT_FALSE(Storage(std::numeric_limits<std::size_t>::max() / 2));
}

TEST(Storage, ZeroedStorageIsZeroHoweverLarge) {
    for (const std::size_t size : {std::size_t{100}, kLargeStorage - 1, kLargeStorage + 1}) {
        auto* bytes = static_cast<std::uint8_t*>(AllocateStorage(size, Content::kZero));
        ASSERT_NE(bytes, nullptr);
        EXPECT_TRUE(std::all_of(bytes, bytes + size, [](std::uint8_t b) { return b == 0; }));
        std::fill_n(bytes, size, std::uint8_t{1});
        FreeStorage(bytes, size);
    }
}

TEST(Storage, NothingIsFreedOfNothing) {
    FreeStorage(nullptr, 1);
    FreeStorage(nullptr, kLargeStorage);
}

TEST(VectorToFill, IsAVectorFromZero) {
    const SafeArrayPtr array(CreateVectorToFill(VT_R8, 5));
    ASSERT_TRUE(array);
    LONG lower = 7;
    EXPECT_EQ(SafeArrayGetLBound(array.Get(), 1, &lower), S_OK);
    EXPECT_EQ(lower, 0);
    ASSERT_EQ(array.Elements<double>().size(), 5U);
    std::ranges::fill(array.Elements<double>(), 1.5);
    EXPECT_EQ(array.Elements<double>()[4], 1.5);
}

TEST(VectorToFill, HoldsNumbersOnly) {
    for (const VARTYPE type : {VT_BSTR, VT_VARIANT, VT_UNKNOWN, VT_DISPATCH, VT_EMPTY}) {
        EXPECT_EQ(CreateVectorToFill(type, 1), nullptr) << type;
    }
}

TEST(VectorToFill, LargeOneIsGivenBackByTheArraysOwnFunction) {
    SAFEARRAY* array = CreateVectorToFill(VT_R8, kLargeVector);
    ASSERT_NE(array, nullptr);
    static_cast<double*>(array->pvData)[kLargeVector - 1] = 1.0;
    EXPECT_EQ(SafeArrayDestroy(array), S_OK);
}

TEST(LargeArray, IsZeroWhenCreated) {
    const SafeArrayPtr array(SafeArrayCreateVector(VT_R8, 0, kLargeVector));
    ASSERT_TRUE(array);
    EXPECT_TRUE(AllZero(array.Elements<double>()));
}

TEST(LargeArray, GrowsFromASmallOneAndShrinksToOne) {
    const SafeArrayPtr array(SafeArrayCreateVector(VT_R8, 0, kSmallVector));
    ASSERT_TRUE(array);
    array.Elements<double>()[kSmallVector - 1] = 2.0;
    const SAFEARRAYBOUND grown{kLargeVector + 10, 0};
    ASSERT_EQ(SafeArrayRedim(array.Get(), &grown), S_OK);
    EXPECT_EQ(array.Elements<double>()[kSmallVector - 1], 2.0);
    EXPECT_TRUE(AllZero(array.Elements<double>().subspan(kSmallVector)));
    const SAFEARRAYBOUND shrunk{10, 0};
    ASSERT_EQ(SafeArrayRedim(array.Get(), &shrunk), S_OK);
    EXPECT_EQ(array.Elements<double>().size(), 10U);
    EXPECT_TRUE(AllZero(array.Elements<double>()));
}

TEST(LargeArray, MoreThanCanBeCountedGivesNone) {
    const SAFEARRAYBOUND bounds[] = {{std::numeric_limits<ULONG>::max(), 0},
                                     {std::numeric_limits<ULONG>::max(), 0}};
    EXPECT_EQ(SafeArrayCreate(VT_R8, 2, bounds), nullptr);
}

}  // namespace
}  // namespace kestrion
