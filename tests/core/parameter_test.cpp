#include "core/parameter.h"

#include <gtest/gtest.h>

#include <cstring>
#include <span>

#include "kestrion/platform/bstr.h"
#include "kestrion/platform/unknown.h"

namespace kestrion {
namespace {

struct IThing;
enum Mode : LONG { kFirst = 0, kSecond = 1 };

template <typename T>
T ValueOf(const ParameterRecord& record) {
    T value;
    EXPECT_EQ(record.size, sizeof(T));
    std::memcpy(&value, record.Value(), sizeof(T));
    return value;
}

TEST(ParameterTest, AnInRecordKeepsACopyOfItsValue) {
    LONG argument = 5;
    const ParameterRecord record = In("val", argument);
    argument = 6;
    EXPECT_EQ(record.name, "val");
    EXPECT_EQ(record.direction, Direction::kIn);
    EXPECT_FALSE(record.isOut());
    EXPECT_FALSE(record.isByReference());
    EXPECT_EQ(record.target, nullptr);
    EXPECT_EQ(ValueOf<LONG>(record), 5);
}

TEST(ParameterTest, ACopyOfAnInRecordHasTheValueToo) {
    const auto records = Parameters(In("a", 1.5), In("b", LONG{2}));
    const auto copies = records;
    EXPECT_EQ(ValueOf<double>(copies[0]), 1.5);
    EXPECT_EQ(ValueOf<LONG>(copies[1]), 2);
}

TEST(ParameterTest, AnOutRecordReadsTheVariableAsItIsNow) {
    double variable = 1;
    const ParameterRecord record = Out("val", &variable);
    EXPECT_TRUE(record.isOut());
    EXPECT_TRUE(record.isByReference());
    EXPECT_EQ(record.target, &variable);
    variable = 2.5;
    EXPECT_EQ(ValueOf<double>(record), 2.5);
}

TEST(ParameterTest, AnInOutRecordIsNotAPureOutRecord) {
    LONG variable = 3;
    const ParameterRecord record = InOut("val", &variable);
    EXPECT_EQ(record.direction, Direction::kInOut);
    EXPECT_FALSE(record.isOut());
    EXPECT_TRUE(record.isByReference());
    EXPECT_EQ(ValueOf<LONG>(record), 3);
}

TEST(ParameterTest, ANullTargetHasNoValueAndIsNotZeroed) {
    const ParameterRecord record = Out("val", static_cast<LONG*>(nullptr));
    EXPECT_EQ(record.target, nullptr);
    EXPECT_EQ(record.Value(), nullptr);
    record.ZeroTarget();
}

TEST(ParameterTest, ZeroesATargetOfAnyKind) {
    double number = 1;
    BSTR text = MakeBstr(u"x");
    const BSTR kept = text;
    SAFEARRAY* array = SafeArrayCreateVector(VT_R8, 0, 1);
    SAFEARRAY* const keptArray = array;
    VARIANT_BOOL flag = VARIANT_TRUE;
    for (const ParameterRecord& record :
         Parameters(Out("a", &number), Out("b", &text), Out("c", &array), Out("d", &flag))) {
        record.ZeroTarget();
    }
    EXPECT_EQ(number, 0);
    EXPECT_EQ(text, nullptr);
    EXPECT_EQ(array, nullptr);
    EXPECT_EQ(flag, VARIANT_FALSE);
    SysFreeString(kept);
    EXPECT_EQ(SafeArrayDestroy(keptArray), S_OK);
}

TEST(ParameterTest, KnowsTheKindAndSizeOfEachType) {
    LONG number = 0;
    double real = 0;
    VARIANT_BOOL flag = 0;
    BSTR text = nullptr;
    Mode mode = kFirst;
    SAFEARRAY* array = nullptr;
    IThing* thing = nullptr;
    const auto expect = [](const ParameterRecord& record, VARTYPE kind, std::size_t size) {
        EXPECT_EQ(record.kind, kind);
        EXPECT_EQ(record.size, size);
    };
    expect(In("", number), VT_I4, 4);
    expect(Out("", &number), VT_I4, 4);
    expect(In("", real), VT_R8, 8);
    expect(Out("", &real), VT_R8, 8);
    expect(In("", flag), VT_BOOL, 2);
    expect(Out("", &flag), VT_BOOL, 2);
    expect(In("", text), VT_BSTR, 8);
    expect(Out("", &text), VT_BSTR, 8);
    expect(In("", mode), VT_I4, 4);
    expect(Out("", &mode), VT_I4, 4);
    expect(In("", array), VT_ARRAY, 8);
    expect(InOut("", &array), VT_ARRAY, 8);
    expect(In("", thing), VT_UNKNOWN, 8);
    expect(Out("", &thing), VT_UNKNOWN, 8);
    expect(In("", LONGLONG{1}), VT_I8, 8);
    expect(In("", 1.0F), VT_R4, 4);
    expect(In("", BYTE{1}), VT_UI1, 1);
}

TEST(ParameterTest, AnArrayMayTellTheKindOfItsElements) {
    SAFEARRAY* array = nullptr;
    EXPECT_EQ(InArray("", array, VT_R8).kind, VT_ARRAY | VT_R8);
    EXPECT_EQ(OutArray("", &array, VT_I4).kind, VT_ARRAY | VT_I4);
    EXPECT_EQ(OutArray("", &array, VT_I4).direction, Direction::kOut);
    EXPECT_EQ(InOutArray("", &array, VT_BSTR).kind, VT_ARRAY | VT_BSTR);
    EXPECT_EQ(InOutArray("", &array, VT_BSTR).direction, Direction::kInOut);
}

TEST(ParameterTest, TheRecordsOfACallKeepTheirOrder) {
    LONG out = 0;
    const auto records = Parameters(In("first", 1.0), Out("second", &out));
    const std::span<const ParameterRecord> view = records;
    ASSERT_EQ(view.size(), 2U);
    EXPECT_EQ(view[0].name, "first");
    EXPECT_EQ(view[1].name, "second");
    EXPECT_TRUE(std::span<const ParameterRecord>(Parameters()).empty());
}

}  // namespace
}  // namespace kestrion
