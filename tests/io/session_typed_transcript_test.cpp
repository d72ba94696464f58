// The operations on numbers, lists and blocks, for each of the five element types: what goes over
// the wire, call by call, and whether the instrument's status is polled behind it.
#include <string>
#include <type_traits>
#include <vector>

#include "tests/io/session_fixture.h"

namespace kestrion {
namespace {

using testing::ElementsAre;
using namespace std::string_literals;

// The elements 1 and 2 as the wire has them.
template <typename T>
struct Wire;
template <>
struct Wire<BYTE> {
    static constexpr const char* kOne = "1";
    static constexpr const char* kTwo = "2";
    static constexpr const char* kHeader = "#12";
    static constexpr const char* kBlock = "\\x01\\x02";
    static inline const std::string kBytes = "\1\2"s;
};
template <>
struct Wire<SHORT> {
    static constexpr const char* kOne = "1";
    static constexpr const char* kTwo = "2";
    static constexpr const char* kHeader = "#14";
    static constexpr const char* kBlock = "\\x00\\x01\\x00\\x02";
    static inline const std::string kBytes = "\0\1\0\2"s;
};
template <>
struct Wire<LONG> {
    static constexpr const char* kOne = "1";
    static constexpr const char* kTwo = "2";
    static constexpr const char* kHeader = "#18";
    static constexpr const char* kBlock = "\\x00\\x00\\x00\\x01\\x00\\x00\\x00\\x02";
    static inline const std::string kBytes = "\0\0\0\1\0\0\0\2"s;
};
template <>
struct Wire<FLOAT> {
    static constexpr const char* kOne = "1.000000";
    static constexpr const char* kTwo = "2.000000";
    static constexpr const char* kHeader = "#18";
    static constexpr const char* kBlock = "?\\x80\\x00\\x00@\\x00\\x00\\x00";
    static inline const std::string kBytes = "\x3F\x80\0\0\x40\0\0\0"s;
};
template <>
struct Wire<DOUBLE> {
    static constexpr const char* kOne = "1.000000";
    static constexpr const char* kTwo = "2.000000";
    static constexpr const char* kHeader = "#216";
    static constexpr const char* kBlock =
        "?\\xF0\\x00\\x00\\x00\\x00\\x00\\x00@\\x00\\x00\\x00\\x00\\x00\\x00\\x00";
    static inline const std::string kBytes = "\x3F\xF0\0\0\0\0\0\0\x40\0\0\0\0\0\0\0"s;
};

template <typename T>
class SessionTypedTranscript : public OpenSessionFixture {
  protected:
    static std::string Sent(const std::string& text) { return "viWrite(\"" + text + "\\n\")"; }

    // What came over the wire since the last look, and the polls.
    void Expect(const std::vector<std::string>& calls, int polls) {
        EXPECT_EQ(fake.Calls(), calls);
        EXPECT_EQ(poller.polls, polls);
        fake.ForgetCalls();
        poller.polls = 0;
    }

    const std::string one_ = Wire<T>::kOne;
    const std::string two_ = Wire<T>::kTwo;
    const std::string list_ = one_ + ";" + two_;
    const std::string block_ = std::string(Wire<T>::kHeader) + Wire<T>::kBlock;
    const std::string blockResponse_ = Wire<T>::kHeader + Wire<T>::kBytes + "\n";
    const T values_[2] = {T{1}, T{2}};
    T read_[2] = {};
    std::int32_t actual_ = 0;
};

struct TypeNames {
    template <typename T>
    static std::string GetName(int) {
        return std::is_same_v<T, BYTE>    ? "Byte"
               : std::is_same_v<T, SHORT> ? "Short"
               : std::is_same_v<T, LONG>  ? "Long"
               : std::is_same_v<T, FLOAT> ? "Float"
                                          : "Double";
    }
};
using ElementTypes = testing::Types<BYTE, SHORT, LONG, FLOAT, DOUBLE>;
TYPED_TEST_SUITE(SessionTypedTranscript, ElementTypes, TypeNames);

TYPED_TEST(SessionTypedTranscript, WritesOfANumber) {
    auto& io = this->session;
    const TypeParam one{1};
    EXPECT_EQ(io.WriteNumber(one, true), S_OK);
    this->Expect({this->Sent(this->one_)}, 1);
    EXPECT_EQ(io.WriteNumberNoPoll(one, true), S_OK);
    this->Expect({this->Sent(this->one_)}, 0);
    EXPECT_EQ(io.CommandWriteNumber("C ", one, true), S_OK);
    this->Expect({this->Sent("C " + this->one_)}, 1);
    EXPECT_EQ(io.WriteNumber(one, false), S_OK);
    this->Expect({}, 0);
    EXPECT_EQ(io.FlushWrite(true), S_OK);
    this->Expect({this->Sent(this->one_)}, 0);
}

TYPED_TEST(SessionTypedTranscript, ReadsOfANumber) {
    auto& io = this->session;
    TypeParam& value = this->read_[0];
    this->fake.Expect("Q?\n").Reply("1\n");
    EXPECT_EQ(io.QueryNumber("Q?", &value, true), S_OK);
    EXPECT_EQ(value, TypeParam{1});
    this->Expect({this->Sent("Q?"), "viRead(4096)"}, 1);
    this->fake.Expect("Q?\n").Reply("2\n");
    EXPECT_EQ(io.QueryNumberNoPoll("Q?", &value, true), S_OK);
    EXPECT_EQ(value, TypeParam{2});
    this->Expect({this->Sent("Q?"), "viRead(4096)"}, 0);
    this->fake.Respond("1;2\n");
    EXPECT_EQ(io.ReadNumberNoPoll(&value, false), IoStatusMoreData);
    EXPECT_EQ(value, TypeParam{1});
    this->Expect({"viRead(4096)"}, 0);
    BYTE separator = 0;
    EXPECT_EQ(io.ReadChar(&separator, false), IoStatusMoreData);
    EXPECT_EQ(io.ReadNumber(&value, true), S_OK);
    EXPECT_EQ(value, TypeParam{2});
    this->Expect({}, 1);
}

TYPED_TEST(SessionTypedTranscript, WritesOfAList) {
    auto& io = this->session;
    EXPECT_EQ(io.WriteList(this->values_, 2, ";", true), S_OK);
    this->Expect({this->Sent(this->list_)}, 1);
    EXPECT_EQ(io.WriteListNoPoll(this->values_, 2, ";", true), S_OK);
    this->Expect({this->Sent(this->list_)}, 0);
    EXPECT_EQ(io.CommandWriteList("C ", this->values_, 2, ";", true), S_OK);
    this->Expect({this->Sent("C " + this->list_)}, 1);
}

TYPED_TEST(SessionTypedTranscript, ReadsOfAList) {
    auto& io = this->session;
    for (const bool polled : {true, false}) {
        this->fake.Respond("1;2\n");
        EXPECT_EQ(polled ? io.ReadList(this->read_, 2, &this->actual_, ";")
                         : io.ReadListNoPoll(this->read_, 2, &this->actual_, ";"),
                  S_OK);
        EXPECT_EQ(this->actual_, 2);
        EXPECT_THAT(this->read_, ElementsAre(TypeParam{1}, TypeParam{2}));
        this->Expect({"viRead(4096)"}, polled ? 1 : 0);
        this->fake.Respond("2;1\n");
        EXPECT_EQ(polled ? io.QueryList("Q?", this->read_, 2, &this->actual_, ";")
                         : io.QueryListNoPoll("Q?", this->read_, 2, &this->actual_, ";"),
                  S_OK);
        EXPECT_EQ(this->actual_, 2);
        EXPECT_THAT(this->read_, ElementsAre(TypeParam{2}, TypeParam{1}));
        this->Expect({this->Sent("Q?"), "viRead(4096)"}, polled ? 1 : 0);
    }
}

TYPED_TEST(SessionTypedTranscript, WritesOfABlock) {
    auto& io = this->session;
    EXPECT_EQ(io.WriteBlock(this->values_, 2, true), S_OK);
    this->Expect({this->Sent(this->block_)}, 1);
    EXPECT_EQ(io.WriteBlockNoPoll(this->values_, 2, true), S_OK);
    this->Expect({this->Sent(this->block_)}, 0);
    EXPECT_EQ(io.CommandWriteBlock("C ", this->values_, 2, true), S_OK);
    this->Expect({this->Sent("C " + this->block_)}, 1);
}

TYPED_TEST(SessionTypedTranscript, ReadsOfABlock) {
    auto& io = this->session;
    const std::vector<std::string> calls{"viRead(4096)", "viGetAttribute(TERMCHAR_EN)",
                                         "viGetAttribute(TERMCHAR_EN)",
                                         "viGetAttribute(TERMCHAR_EN)"};
    for (const bool polled : {true, false}) {
        this->fake.Respond(this->blockResponse_);
        EXPECT_EQ(polled ? io.ReadBlock(this->read_, 2, &this->actual_, false, true)
                         : io.ReadBlockNoPoll(this->read_, 2, &this->actual_, false, true),
                  S_OK);
        EXPECT_EQ(this->actual_, 2);
        EXPECT_THAT(this->read_, ElementsAre(TypeParam{1}, TypeParam{2}));
        this->Expect(calls, polled ? 1 : 0);
    }
}

TYPED_TEST(SessionTypedTranscript, VariantArrays) {
    auto& io = this->session;
    constexpr ElementKind kKind = kElementKind<TypeParam>;
    const SafeArrayPtr array = MakeArray(std::vector<TypeParam>{TypeParam{1}, TypeParam{2}});
    EXPECT_EQ(io.WriteList(array.Get(), ";", true), S_OK);
    this->Expect({this->Sent(this->list_)}, 1);
    EXPECT_EQ(io.WriteListNoPoll(array.Get(), ";", true), S_OK);
    this->Expect({this->Sent(this->list_)}, 0);
    EXPECT_EQ(io.CommandWriteList("C ", array.Get(), ";", true), S_OK);
    this->Expect({this->Sent("C " + this->list_)}, 1);
    EXPECT_EQ(io.WriteBlock(array.Get(), true), S_OK);
    this->Expect({this->Sent(this->block_)}, 1);
    EXPECT_EQ(io.WriteBlockNoPoll(array.Get(), true), S_OK);
    this->Expect({this->Sent(this->block_)}, 0);
    EXPECT_EQ(io.CommandWriteBlock("C ", array.Get(), true), S_OK);
    this->Expect({this->Sent("C " + this->block_)}, 1);

    SafeArrayPtr read;
    const auto expectRead = [&](HRESULT status, int polls) {
        EXPECT_EQ(status, S_OK);
        ASSERT_TRUE(read);
        EXPECT_THAT(read.template Elements<TypeParam>(), ElementsAre(TypeParam{1}, TypeParam{2}));
        EXPECT_EQ(this->poller.polls, polls);
        this->poller.polls = 0;
    };
    this->fake.Respond("1;2\n");
    expectRead(io.ReadList(read.Out(), kKind, ";"), 1);
    this->fake.Respond("1;2\n");
    expectRead(io.ReadListNoPoll(read.Out(), kKind, ";"), 0);
    this->fake.Respond("1;2\n");
    expectRead(io.QueryList("Q?", read.Out(), kKind, ";"), 1);
    this->fake.Respond("1;2\n");
    expectRead(io.QueryListNoPoll("Q?", read.Out(), kKind, ";"), 0);
    this->fake.Respond(this->blockResponse_);
    expectRead(io.ReadBlock(read.Out(), kKind, false, true), 1);
    this->fake.Respond(this->blockResponse_);
    expectRead(io.ReadBlockNoPoll(read.Out(), kKind, false, true), 0);
}

}  // namespace
}  // namespace kestrion
