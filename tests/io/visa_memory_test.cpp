// Memory access through a session: what its arguments have to be, and that nothing but the four
// attributes reaches VISA.
#include <string>

#include "io/variant_array.h"
#include "tests/io/session_fixture.h"

namespace kestrion {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr auto kA16 = VisaAddressSpace::kA16;
constexpr auto kNone = VisaAddressSpace{99};

class VisaMemoryTest : public OpenSessionFixture {
  protected:
    void ExpectReports(std::size_t count, const std::string& report) const {
        ASSERT_EQ(reporter.reports.size(), count);
        EXPECT_THAT(reporter.reports, Each(report));
    }
    IVisaCMemoryIo& memory = *session.GetMemoryIo();
};

TEST_F(VisaMemoryTest, InOfAddressSpaceZeroIsSuccessWithZero) {
    BYTE value8 = 1;
    SHORT value16 = 1;
    LONG value32 = 1;
    LONGLONG value64 = 1;
    EXPECT_EQ(memory.In8(kA16, 0, &value8), S_OK);
    EXPECT_EQ(memory.In16(kA16, 0x10, &value16), S_OK);
    EXPECT_EQ(memory.In32(kA16, 0xFFFFFFFF, &value32), S_OK);
    EXPECT_EQ(memory.In64(kA16, 0x100000000, &value64), S_OK);
    EXPECT_EQ(value8, 0);
    EXPECT_EQ(value16, 0);
    EXPECT_EQ(value32, 0);
    EXPECT_EQ(value64, 0);
    EXPECT_THAT(fake.Calls(), IsEmpty());
}

TEST_F(VisaMemoryTest, InOfAddressSpace99IsUnsupported) {
    BYTE value8 = 1;
    SHORT value16 = 1;
    LONG value32 = 1;
    LONGLONG value64 = 1;
    EXPECT_EQ(memory.In8(kNone, 0, &value8), kIoErrorStatus);
    EXPECT_EQ(memory.In16(kNone, 0, &value16), kIoErrorStatus);
    EXPECT_EQ(memory.In32(kNone, 0, &value32), kIoErrorStatus);
    EXPECT_EQ(memory.In64(kNone, 0, &value64), kIoErrorStatus);
    EXPECT_EQ(value8 + value16 + value32 + value64, 0);
    ExpectReports(4, "ReportIoError(Unsupported VISA address space.)");
}

TEST_F(VisaMemoryTest, EveryAddressSpaceOfTheTableIsTaken) {
    for (int space = 0; space <= 11; ++space) {
        EXPECT_EQ(memory.Out8(VisaAddressSpace{space}, 0, 1), S_OK) << space;
    }
    for (const int space : {-1, 12, 99}) {
        EXPECT_EQ(memory.Out8(VisaAddressSpace{space}, 0, 1), kIoErrorStatus) << space;
    }
}

TEST_F(VisaMemoryTest, NullValuesAreReportedByTheirNames) {
    EXPECT_EQ(memory.In8(kA16, 0, nullptr), kNullPointerStatus);
    EXPECT_EQ(memory.In16(kA16, 0, nullptr), kNullPointerStatus);
    EXPECT_EQ(memory.In32(kA16, 0, nullptr), kNullPointerStatus);
    EXPECT_EQ(memory.In64(kA16, 0, nullptr), kNullPointerStatus);
    EXPECT_EQ(memory.AllocateMemory(100, nullptr), kNullPointerStatus);
    EXPECT_THAT(
        reporter.reports,
        ElementsAre("ReportNullPointer(In8 | puVal | )", "ReportNullPointer(In16 | psVal | )",
                    "ReportNullPointer(In32 | plVal | )", "ReportNullPointer(In64 | pllVal | )",
                    "ReportNullPointer(AllocateMemory | pullOffset | )"));
}

TEST_F(VisaMemoryTest, OutGoesNowhere) {
    EXPECT_EQ(memory.Out8(kA16, 0, 255), S_OK);
    EXPECT_EQ(memory.Out16(kA16, 0, -1), S_OK);
    EXPECT_EQ(memory.Out32(kA16, 0, -1), S_OK);
    EXPECT_EQ(memory.Out64(kA16, 0, -1), S_OK);
    EXPECT_THAT(fake.Calls(), IsEmpty());
    EXPECT_EQ(memory.Out16(kNone, 0, 0), kIoErrorStatus);
    EXPECT_EQ(memory.Out32(kNone, 0, 0), kIoErrorStatus);
    EXPECT_EQ(memory.Out64(kNone, 0, 0), kIoErrorStatus);
    ExpectReports(3, "ReportIoError(Unsupported VISA address space.)");
}

TEST_F(VisaMemoryTest, MoveInMakesArraysOfZeros) {
    SafeArrayPtr array;
    EXPECT_EQ(memory.MoveIn8(kA16, 0, 2, array.Out()), S_OK);
    EXPECT_THAT(array.Elements<BYTE>(), ElementsAre(0, 0));
    EXPECT_EQ(memory.MoveIn16(kA16, 0, 3, array.Out()), S_OK);
    EXPECT_THAT(array.Elements<SHORT>(), ElementsAre(0, 0, 0));
    EXPECT_EQ(memory.MoveIn32(kA16, 0, 1, array.Out()), S_OK);
    EXPECT_THAT(array.Elements<LONG>(), ElementsAre(0));
    EXPECT_EQ(memory.MoveIn64(kA16, 0, 2, array.Out()), S_OK);
    VARTYPE type = VT_EMPTY;
    EXPECT_EQ(SafeArrayGetVartype(array.Get(), &type), S_OK);
    EXPECT_EQ(type, VT_I8);
    EXPECT_EQ(VectorLength(array.Get()), 2U);
}

TEST_F(VisaMemoryTest, MoveInPutsAnArrayIntoAVariant) {
    VariantPtr variant;
    EXPECT_EQ(memory.MoveIn8(kA16, 0, 2, variant.Out()), S_OK);
    EXPECT_EQ(variant->vt, VT_ARRAY | VT_UI1);
    EXPECT_EQ(VectorLength(variant->parray), 2U);
    EXPECT_EQ(memory.MoveIn16(kA16, 0, 2, variant.Out()), S_OK);
    EXPECT_EQ(variant->vt, VT_ARRAY | VT_I2);
    EXPECT_EQ(memory.MoveIn32(kA16, 0, 2, variant.Out()), S_OK);
    EXPECT_EQ(variant->vt, VT_ARRAY | VT_I4);
    EXPECT_EQ(memory.MoveIn64(kA16, 0, 2, variant.Out()), S_OK);
    EXPECT_EQ(variant->vt, VT_ARRAY | VT_I8);
}

TEST_F(VisaMemoryTest, MoveInClearsTheCallersMemory) {
    BYTE bytes[3] = {1, 2, 3};
    EXPECT_EQ(memory.MoveIn8(kA16, 0, 2, bytes), S_OK);
    EXPECT_THAT(bytes, ElementsAre(0, 0, 3));
    SHORT shorts[2] = {1, 2};
    EXPECT_EQ(memory.MoveIn16(kA16, 0, 1, shorts), S_OK);
    EXPECT_THAT(shorts, ElementsAre(0, 2));
    LONG longs[2] = {1, 2};
    EXPECT_EQ(memory.MoveIn32(kA16, 0, 1, longs), S_OK);
    EXPECT_THAT(longs, ElementsAre(0, 2));
    LONGLONG wides[2] = {1, 2};
    EXPECT_EQ(memory.MoveIn64(kA16, 0, 1, wides), S_OK);
    EXPECT_THAT(wides, ElementsAre(0, 2));
    EXPECT_EQ(memory.MoveIn8(kNone, 0, 1, bytes + 2), kIoErrorStatus);
    EXPECT_EQ(bytes[2], 3);
}

TEST_F(VisaMemoryTest, NullTargetsOfMoveInAreReportedByTheirNames) {
    EXPECT_EQ(memory.MoveIn8(kA16, 0, 1, static_cast<VARIANT*>(nullptr)), kNullPointerStatus);
    EXPECT_EQ(memory.MoveIn16(kA16, 0, 1, static_cast<SAFEARRAY**>(nullptr)), kNullPointerStatus);
    EXPECT_EQ(memory.MoveIn32(kA16, 0, 1, static_cast<LONG*>(nullptr)), kNullPointerStatus);
    EXPECT_EQ(memory.MoveIn64(kA16, 0, 1, static_cast<LONGLONG*>(nullptr)), kNullPointerStatus);
    EXPECT_THAT(reporter.reports, ElementsAre("ReportNullPointer(MoveIn8 | psaBuf | )",
                                              "ReportNullPointer(MoveIn16 | psaBuf | )",
                                              "ReportNullPointer(MoveIn32 | pBuf | )",
                                              "ReportNullPointer(MoveIn64 | pBuf | )"));
}

TEST_F(VisaMemoryTest, MoveInOfAnUnknownSpaceMakesNoArray) {
    SAFEARRAY* array = nullptr;
    EXPECT_EQ(memory.MoveIn8(kNone, 0, 1, &array), kIoErrorStatus);
    EXPECT_EQ(array, nullptr);
    VariantPtr variant;
    EXPECT_EQ(memory.MoveIn8(kNone, 0, 1, variant.Out()), kIoErrorStatus);
    EXPECT_EQ(variant->vt, VT_EMPTY);
    ExpectReports(2, "ReportIoError(Unsupported VISA address space.)");
}

TEST_F(VisaMemoryTest, MoveOutChecksItsSourceAndItsSpace) {
    const SafeArrayPtr array = MakeArray<BYTE>({1, 2});
    VARIANT variant;
    VariantInit(&variant);
    const BYTE bytes[2] = {};
    const SHORT shorts[2] = {};
    const LONG longs[2] = {};
    const LONGLONG wides[2] = {};
    EXPECT_EQ(memory.MoveOut8(kA16, 0, array.Get()), S_OK);
    EXPECT_EQ(memory.MoveOut8(kA16, 0, &variant), S_OK);
    EXPECT_EQ(memory.MoveOut8(kA16, 0, 2, bytes), S_OK);
    EXPECT_EQ(memory.MoveOut16(kA16, 0, 2, shorts), S_OK);
    EXPECT_EQ(memory.MoveOut32(kA16, 0, 2, longs), S_OK);
    EXPECT_EQ(memory.MoveOut64(kA16, 0, 2, wides), S_OK);
    EXPECT_THAT(fake.Calls(), IsEmpty());
    EXPECT_EQ(memory.MoveOut8(kNone, 0, 2, bytes), kIoErrorStatus);
    EXPECT_EQ(memory.MoveOut16(kA16, 0, static_cast<SAFEARRAY*>(nullptr)), kNullPointerStatus);
    EXPECT_EQ(memory.MoveOut32(kA16, 0, static_cast<const VARIANT*>(nullptr)), kNullPointerStatus);
    EXPECT_EQ(memory.MoveOut64(kA16, 0, 2, nullptr), kNullPointerStatus);
    EXPECT_THAT(reporter.reports, ElementsAre("ReportIoError(Unsupported VISA address space.)",
                                              "ReportNullPointer(MoveOut16 | psaBuf | )",
                                              "ReportNullPointer(MoveOut32 | psaBuf | )",
                                              "ReportNullPointer(MoveOut64 | pBuf | )"));
}

TEST_F(VisaMemoryTest, MoveChecksBothItsPlaces) {
    const VisaMemoryPlace good{VisaAddressSpace::kPxiAllocated, 8, VisaDataWidth::k64};
    const VisaMemoryPlace noSpace{kNone, 8, VisaDataWidth::k8};
    const VisaMemoryPlace noWidth{kA16, 8, VisaDataWidth{4}};
    visa::ViJobId job = 7;
    EXPECT_EQ(memory.Move(good, good, 10), S_OK);
    EXPECT_EQ(memory.Move(good, good, 10, &job), S_OK);
    EXPECT_EQ(job, 0U);
    EXPECT_EQ(memory.Move(good, good, 10, nullptr), S_OK);
    EXPECT_THAT(fake.Calls(), IsEmpty());
    EXPECT_EQ(memory.Move(noSpace, good, 10), kIoErrorStatus);
    EXPECT_EQ(memory.Move(good, noSpace, 10, &job), kIoErrorStatus);
    ExpectReports(2, "ReportIoError(Unsupported VISA address space.)");
    reporter.reports.clear();
    EXPECT_EQ(memory.Move(noWidth, good, 10), kIoErrorStatus);
    EXPECT_EQ(memory.Move(good, noWidth, 10), kIoErrorStatus);
    ExpectReports(2, "ReportIoError(Unsupported VISA data width.)");
}

TEST_F(VisaMemoryTest, AllocatedMemoryIsAtZero) {
    std::uint64_t offset = 7;
    EXPECT_EQ(memory.AllocateMemory(1000, &offset), S_OK);
    EXPECT_EQ(offset, 0U);
    EXPECT_EQ(memory.FreeMemory(offset), S_OK);
    EXPECT_THAT(fake.Calls(), IsEmpty());
}

// The four attributes -----------------------------------------------------------------------------

TEST_F(VisaMemoryTest, BigEndianIsStoredAsItsInverse) {
    fake.SetAttributeValue(0x3FFF003D, 1, 2);
    fake.SetAttributeValue(0x3FFF003A, 0, 2);
    bool bigEndian = true;
    EXPECT_EQ(memory.GetSourceBigEndian(&bigEndian), S_OK);
    EXPECT_FALSE(bigEndian);
    EXPECT_EQ(memory.GetDestinationBigEndian(&bigEndian), S_OK);
    EXPECT_TRUE(bigEndian);
    EXPECT_EQ(memory.SetSourceBigEndian(true), S_OK);
    EXPECT_EQ(fake.AttributeValue(0x3FFF003D), 0U);
    EXPECT_EQ(memory.SetDestinationBigEndian(false), S_OK);
    EXPECT_EQ(fake.AttributeValue(0x3FFF003A), 1U);
    EXPECT_THAT(fake.Calls(),
                ElementsAre("viGetAttribute(0x3FFF003D)", "viGetAttribute(0x3FFF003A)",
                            "viSetAttribute(0x3FFF003D, 0)", "viSetAttribute(0x3FFF003A, 1)"));
}

TEST_F(VisaMemoryTest, IncrementsPassAsTheyAre) {
    fake.SetAttributeValue(0x3FFF0040, 1, 4);
    fake.SetAttributeValue(0x3FFF0041, 0, 4);
    std::int32_t increment = 7;
    EXPECT_EQ(memory.GetSourceIncrement(&increment), S_OK);
    EXPECT_EQ(increment, 1);
    EXPECT_EQ(memory.GetDestinationIncrement(&increment), S_OK);
    EXPECT_EQ(increment, 0);
    EXPECT_EQ(memory.SetSourceIncrement(0), S_OK);
    EXPECT_EQ(memory.SetDestinationIncrement(1), S_OK);
    EXPECT_THAT(fake.CallsOf("viSetAttribute"),
                ElementsAre("viSetAttribute(0x3FFF0040, 0)", "viSetAttribute(0x3FFF0041, 1)"));
}

TEST_F(VisaMemoryTest, FailedOrNullAttributesAreReported) {
    bool bigEndian = true;
    std::int32_t increment = 7;
    EXPECT_EQ(memory.GetSourceBigEndian(&bigEndian), MakeStatus(0x8004001D));
    EXPECT_TRUE(bigEndian);
    EXPECT_EQ(memory.GetSourceIncrement(&increment), MakeStatus(0x8004001D));
    EXPECT_EQ(increment, 7);
    reporter.reports.clear();
    EXPECT_EQ(memory.GetDestinationBigEndian(nullptr), kNullPointerStatus);
    EXPECT_EQ(memory.GetDestinationIncrement(nullptr), kNullPointerStatus);
    EXPECT_THAT(reporter.reports,
                ElementsAre("ReportNullPointer(GetDestinationBigEndian | pbBigEndian | )",
                            "ReportNullPointer(GetDestinationIncrement | plIncrement | )"));
}

// The way there -----------------------------------------------------------------------------------

TEST_F(VisaMemoryTest, NavigationLeadsToTheFacetsOfTheSession) {
    IVisaCSession& navigation = session;
    EXPECT_EQ(navigation.GetLowLevelIo(), static_cast<IVisaCLowLevelIo*>(&session));
    EXPECT_EQ(navigation.GetSessionInfo(), static_cast<IVisaCSessionInfo*>(&session));
    EXPECT_EQ(navigation.GetMemoryIo(), static_cast<IVisaCMemoryIo*>(&session));
    EXPECT_EQ(navigation.GetDirectIo(), static_cast<IVisaCDirectIo*>(&session));
    EXPECT_EQ(navigation.GetEventManager(), static_cast<IVisaCEventManager*>(&session));
}

class ClosedVisaMemoryTest : public SessionFixture {};

TEST_F(ClosedVisaMemoryTest, EveryOperationIsRefusedAsNotInitialized) {
    session.SetClosedReporter(&reporter);
    IVisaCMemoryIo& memory = *session.GetMemoryIo();
    BYTE value = 7;
    SAFEARRAY* array = nullptr;
    VariantPtr variant;
    std::uint64_t offset = 7;
    bool flag = true;
    std::int32_t increment = 7;
    const HRESULT results[] = {memory.In8(kA16, 0, &value),
                               memory.Out8(kA16, 0, value),
                               memory.MoveIn8(kA16, 0, 1, variant.Out()),
                               memory.MoveIn8(kA16, 0, 1, &array),
                               memory.MoveIn8(kA16, 0, 1, &value),
                               memory.MoveOut8(kA16, 0, 1, &value),
                               memory.Move({}, {}, 1),
                               memory.AllocateMemory(1, &offset),
                               memory.FreeMemory(0),
                               memory.SetSourceBigEndian(true),
                               memory.GetSourceBigEndian(&flag),
                               memory.SetDestinationIncrement(1),
                               memory.GetDestinationIncrement(&increment)};
    for (const HRESULT result : results) {
        EXPECT_EQ(result, kNotInitializedStatus);
    }
    EXPECT_EQ(value, 7);
    EXPECT_EQ(offset, 7U);
    EXPECT_THAT(fake.Calls(), IsEmpty());
}

}  // namespace
}  // namespace kestrion
