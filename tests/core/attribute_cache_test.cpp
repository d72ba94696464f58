// The values that simulation answers from.
#include <gmock/gmock.h>

#include "core/cache_entry.h"
#include "core/driver.h"
#include "tests/support/scope_fixture.h"

namespace kestrion {
namespace {

using testing::IsEmpty;

class AttributeCacheTest : public ScopeTest {
  protected:
    CDriver& Root() { return *static_cast<CDriver*>(Query<IUnknown>(scope.Get()).Get()); }
    ComPtr<IIviScopeAcquisition> Acquisition() { return As<IIviScopeAcquisition>(); }
    LONG Averages() {
        LONG value = -1;
        EXPECT_EQ(Acquisition()->get_NumberOfAverages(&value), S_OK);
        return value;
    }
};

TEST_F(AttributeCacheTest, AGetBeforeAnyPutGivesZeroAndMakesTheEntry) {
    Simulate();
    EXPECT_EQ(Averages(), 0);
    EXPECT_FALSE(Root().GetCacheEntry<LONG>("IIviScopeAcquisition.NumberOfAverages").IsValid());
    EXPECT_THAT(fake.Calls(), IsEmpty());
}

TEST_F(AttributeCacheTest, WhatWasPutComesBackUntilAReset) {
    Simulate();
    EXPECT_EQ(Acquisition()->put_NumberOfAverages(7), S_OK);
    EXPECT_EQ(Averages(), 7);
    EXPECT_EQ(As<IIviDriverUtility>()->Reset(), S_OK);
    EXPECT_EQ(Averages(), 0);
    EXPECT_EQ(Acquisition()->put_NumberOfAverages(8), S_OK);
    EXPECT_EQ(As<IIviDriverUtility>()->ResetWithDefaults(), S_OK);
    EXPECT_EQ(Averages(), 0);
}

TEST_F(AttributeCacheTest, InvalidatingForgetsTheValuesAndKeepsTheEntries) {
    Simulate();
    EXPECT_EQ(Acquisition()->put_NumberOfAverages(7), S_OK);
    auto& entry = Root().GetCacheEntry<LONG>("IIviScopeAcquisition.NumberOfAverages");
    EXPECT_TRUE(entry.IsValid());
    EXPECT_EQ(As<IIviDriverOperation>()->InvalidateAllAttributes(), S_OK);
    EXPECT_FALSE(entry.IsValid());
    EXPECT_EQ(Averages(), 0);
    EXPECT_EQ(&Root().GetCacheEntry<LONG>("IIviScopeAcquisition.NumberOfAverages"), &entry);
}

TEST_F(AttributeCacheTest, ASetterTouchesItsOwnEntryOnly) {
    Simulate();
    EXPECT_EQ(Acquisition()->put_NumberOfAverages(7), S_OK);
    EXPECT_EQ(Acquisition()->put_NumberOfEnvelopes(3), S_OK);
    EXPECT_EQ(Acquisition()->put_Type(IviScopeAcquisitionTypeAverage), S_OK);
    EXPECT_EQ(Averages(), 7);
    LONG envelopes = 0;
    EXPECT_EQ(Acquisition()->get_NumberOfEnvelopes(&envelopes), S_OK);
    EXPECT_EQ(envelopes, 3);
}

TEST_F(AttributeCacheTest, NoValueIsCheckedInSimulation) {
    Simulate();
    EXPECT_EQ(Acquisition()->put_NumberOfAverages(-5), S_OK);
    EXPECT_EQ(Averages(), -5);
}

TEST_F(AttributeCacheTest, EachInstanceHasItsOwnValues) {
    Simulate();
    const std::vector<CRepCap*> channels = Root().Instances("KestrionChannel");
    ASSERT_EQ(channels.size(), 4U);
    auto& first = channels[0]->GetCacheEntry<double>("IIviScopeChannel.Range");
    first.Store(2.5);
    first.Validate();
    double value = 9.0;
    EXPECT_FALSE(channels[1]->GetCacheEntry<double>("IIviScopeChannel.Range").Read(&value));
    EXPECT_EQ(value, 9.0);
    // The walk over the tree reaches the instances.
    EXPECT_EQ(As<IIviDriverUtility>()->Reset(), S_OK);
    EXPECT_FALSE(first.IsValid());
}

TEST_F(AttributeCacheTest, TheCacheOptionChangesNothing) {
    ASSERT_EQ(Initialize("GPIB0::1::INSTR", "simulate=true,cache=false"), S_OK);
    VARIANT_BOOL cache = VARIANT_TRUE;
    EXPECT_EQ(As<IIviDriverOperation>()->get_Cache(&cache), S_OK);
    EXPECT_EQ(cache, VARIANT_FALSE);
    EXPECT_EQ(Averages(), 0);
    EXPECT_EQ(Acquisition()->put_NumberOfAverages(7), S_OK);
    EXPECT_EQ(Averages(), 7);
    EXPECT_EQ(As<IIviDriverUtility>()->Reset(), S_OK);
    EXPECT_EQ(Averages(), 0);
}

TEST_F(AttributeCacheTest, OutsideOfSimulationNothingIsAnsweredFromMemory) {
    Connect();
    for (int i = 0; i < 2; ++i) {
        fake.Expect("ACQUIRE:NUMAVG?\n").Reply("64\n");
        EXPECT_EQ(Averages(), 64);
    }
}

TEST(CacheEntry, ATextBelongsToTheEntryAndIsCopiedInAndOut) {
    CCacheEntry<BSTR> entry;
    BSTR read = nullptr;
    EXPECT_FALSE(entry.Read(&read));
    EXPECT_EQ(read, nullptr);
    BstrPtr given(std::string_view("first"));
    entry.Store(given.Get());
    entry.Validate();
    given = BstrPtr();
    BstrPtr out;
    EXPECT_TRUE(entry.Read(out.Out()));
    EXPECT_EQ(out.Utf8(), "first");
    // The earlier text is freed: the address sanitizer's build would tell of one that is left.
    entry.Store(BstrPtr(std::string_view("second")).Get());
    EXPECT_EQ(out.Utf8(), "first");
    EXPECT_TRUE(entry.Read(out.Out()));
    EXPECT_EQ(out.Utf8(), "second");
    entry.Invalidate();
    EXPECT_FALSE(entry.Read(&read));
    EXPECT_EQ(read, nullptr);
}

TEST(CacheEntry, IsValidOnceItWasValidated) {
    CCacheEntry<double> entry;
    EXPECT_FALSE(entry.IsValid());
    entry.Store(0.5);
    EXPECT_FALSE(entry.IsValid());
    entry.Validate();
    EXPECT_TRUE(entry.IsValid());
    double value = 0.0;
    EXPECT_TRUE(entry.Read(&value));
    EXPECT_EQ(value, 0.5);
    entry.Invalidate();
    EXPECT_FALSE(entry.IsValid());
}

}  // namespace
}  // namespace kestrion
