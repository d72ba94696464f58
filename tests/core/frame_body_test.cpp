// The call frame around bodies of every kind: those that throw, warn, nest, or can't be formatted.
#include <gmock/gmock.h>

#include <array>
#include <new>
#include <string_view>
#include <vector>

#include "core/frame.h"
#include "core/status_error.h"
#include "hosting/objects.h"
#include "tests/support/scope_fixture.h"

namespace kestrion {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr IID kThing = {0x11111111, 0x2222, 0x3333, {4, 4, 4, 4, 5, 5, 5, 5}};

constexpr MethodDescriptor Member(std::string_view memberName, std::string_view command = {},
                                  std::string_view response = {}) {
    return {.iid = kThing,
            .interfaceName = "IThing",
            .memberName = memberName,
            .fullName = "IThing.Size",
            .command = command,
            .response = response,
            .refusedFamilies = {}};
}

class FrameBodyTest : public ScopeTest {
  protected:
    // The root as the frame sees it.
    CDriver& Root() { return static_cast<Kestrion&>(*root_); }

    void SetUp() override {
        // Every driver object is its own identity.
        root_ = static_cast<CDriver*>(Query<IUnknown>(scope.Get()).Get());
    }

    HRESULT Run(const MethodDescriptor& method, MemberBody body) {
        return RunMember(Root(), method, {}, body);
    }

    CDriver* root_ = nullptr;
};

TEST_F(FrameBodyTest, AnExceptionOfABodyBecomesTheStatusThatItCarries) {
    Connect();
    constexpr auto kMember = Member("DoIt");
    EXPECT_EQ(Run(kMember, [](MemberCall&) -> HRESULT { throw std::bad_alloc(); }), E_OUTOFMEMORY);
    EXPECT_EQ(Run(kMember, [](MemberCall&) -> HRESULT { throw StatusError(DISP_E_EXCEPTION); }),
              DISP_E_EXCEPTION);
    EXPECT_EQ(Run(kMember, [](MemberCall&) -> HRESULT { throw 7; }), E_UNEXPECTED);
    // The context was popped each time.
    EXPECT_EQ(Root().GetCurrentMethod(), nullptr);
}

TEST_F(FrameBodyTest, AnExceptionOfANestedBodyEndsThere) {
    Connect();
    constexpr auto kOuter = Member("Outer", "OUTER");
    constexpr auto kInner = Member("Inner", "INNER");
    HRESULT inner = S_OK;
    EXPECT_EQ(Run(kOuter,
                  [&](MemberCall& call) {
                      return call.RunCommand({}, [&] {
                          inner = Run(kInner, [](MemberCall& nested) {
                              return nested.RunCommand(
                                  {}, []() -> HRESULT { throw StatusError(E_FAIL); });
                          });
                          // The command of the outer one is on top again.
                          EXPECT_EQ(call.Node().TopCommand()->command, "OUTER");
                          EXPECT_EQ(Root().GetCurrentMethod(), &kOuter);
                          return S_OK;
                      });
                  }),
              S_OK);
    EXPECT_EQ(inner, E_FAIL);
    EXPECT_EQ(Root().TopCommand(), nullptr);
}

TEST_F(FrameBodyTest, AWarningPassesUnchangedAndIsNoFailure) {
    Connect();
    constexpr auto kMember = Member("DoIt");
    const HRESULT status =
        Run(kMember, [](MemberCall& call) { return call.Errors().ReportSelfTestNotSupported(); });
    EXPECT_EQ(status, 0x00047067);
    EXPECT_TRUE(Succeeded(status));
    EXPECT_EQ(ErrorText(), "Kestrion: Self test is not supported by this instrument.");
}

TEST_F(FrameBodyTest, AMemberThatCallsItselfIsTheInnermostTwice) {
    Connect();
    constexpr auto kMember = Member("Again");
    std::vector<const MethodDescriptor*> seen;
    EXPECT_EQ(Run(kMember,
                  [&](MemberCall&) {
                      seen.push_back(Root().GetCurrentMethod());
                      const HRESULT status = Run(kMember, [&](MemberCall& inner) {
                          seen.push_back(Root().GetCurrentMethod());
                          return inner.Errors().ReportMethodNotSupported();
                      });
                      seen.push_back(Root().GetCurrentMethod());
                      return status;
                  }),
              MakeStatus(0x80047011));
    EXPECT_THAT(seen, ElementsAre(&kMember, &kMember, &kMember));
    EXPECT_EQ(ErrorText(),
              "Kestrion: Does not support this class-compliant feature: method Again.");
    EXPECT_EQ(Root().GetCurrentMethod(), nullptr);
}

TEST_F(FrameBodyTest, ANestedMemberIsTheContextOfItsErrors) {
    Connect();
    constexpr auto kOuter = Member("Outer");
    constexpr auto kInner = Member("Inner");
    EXPECT_EQ(Run(kOuter,
                  [&](MemberCall& call) {
                      (void)Run(kInner, [](MemberCall&) { return S_OK; });
                      return call.Errors().ReportNullPointer("x", {});
                  }),
              MakeStatus(0x80047058));
    EXPECT_EQ(ErrorText(), "Kestrion: Null pointer passed for method Outer, parameter x.");
}

TEST_F(FrameBodyTest, ACommandThatCannotBeFormattedLeavesNothingOnTheStack) {
    Connect();
    MethodDescriptor method = Member("put_Size", "SIZE %{KestrionAcquisitionModeEnum}s");
    method.fullName = "IKestrionAcquisition.Mode";  // has tokens for the enumeration
    bool handled = false;
    EXPECT_EQ(Run(method,
                  [&](MemberCall& call) {
                      const auto arguments = Arguments(77);
                      const HRESULT status = call.RunCommand(arguments, [&] {
                          handled = true;
                          return S_OK;
                      });
                      EXPECT_EQ(call.Node().TopCommand(), nullptr);
                      return status;
                  }),
              MakeStatus(0x80047010));
    EXPECT_FALSE(handled);
    EXPECT_EQ(ErrorText(), "Kestrion: Invalid value (77) for method put_Size, parameter nVal.");
}

TEST_F(FrameBodyTest, AnEnumerationThatNobodyKnowsIsNamed) {
    Connect();
    constexpr auto kMember = Member("put_Size", "SIZE %{KestrionNothingEnum}s");
    EXPECT_EQ(Run(kMember,
                  [&](MemberCall& call) {
                      const auto arguments = Arguments(1);
                      return call.RunCommand(arguments, [] { return S_OK; });
                  }),
              MakeStatus(0x80047000));
    EXPECT_EQ(ErrorText(),
              "Kestrion: Unrecoverable failure.\r\n"
              "Unrecognized enum name 'KestrionNothingEnum'.");
}

TEST_F(FrameBodyTest, ACommandAndItsReplyFormatAreOnTheStackWhileTheHandlerRuns) {
    Connect();
    constexpr auto kMember = Member("get_Size", "SIZE%d?", "%d");
    EXPECT_EQ(Run(kMember,
                  [&](MemberCall& call) {
                      const auto arguments = Arguments(3);
                      return call.RunCommand(arguments, [&] {
                          EXPECT_EQ(call.Node().TopCommand()->command, "SIZE3?");
                          EXPECT_EQ(call.Node().TopCommand()->response, "%d");
                          return S_OK;
                      });
                  }),
              S_OK);
    EXPECT_EQ(Root().TopCommand(), nullptr);
}

TEST_F(FrameBodyTest, AFamilyThatRefusesTheMemberIsToldSoAndNothingIsSent) {
    Connect("HR5104");
    static constexpr std::array<std::string_view, 2> kRefused = {"HeronB Series", "Heron Series"};
    MethodDescriptor method = Member("get_Paired", "PAIRED?");
    method.refusedFamilies = kRefused;
    bool run = false;
    const auto body = [&](MemberCall&) {
        run = true;
        return S_OK;
    };
    EXPECT_EQ(Run(method, body), MakeStatus(0x80044216));
    EXPECT_EQ(ErrorText(), "Kestrion: Instrument model does not support this feature: get_Paired.");
    EXPECT_FALSE(run);
    // Families are flat: the next of kin isn't refused.
    method.refusedFamilies = std::span(kRefused).first(1);
    EXPECT_EQ(Run(method, body), S_OK);
    EXPECT_TRUE(run);
}

TEST_F(FrameBodyTest, AnUnknownModelIsRefusedNothing) {
    Connect("XX9999");
    static constexpr std::array<std::string_view, 2> kRefused = {"HeronB Series", "Heron Series"};
    MethodDescriptor method = Member("get_Paired");
    method.refusedFamilies = kRefused;
    EXPECT_EQ(Run(method, [](MemberCall&) { return S_OK; }), S_OK);
    EXPECT_FALSE(Root().IsKnownModel());
}

TEST_F(FrameBodyTest, TheModelTestComesBeforeSimulation) {
    Simulate("Model=HR5104");
    static constexpr std::array<std::string_view, 1> kRefused = {"Heron Series"};
    MethodDescriptor method = Member("get_Size");
    method.refusedFamilies = kRefused;
    method.simulated = true;
    bool simulated = false;
    const auto fromMemory = [&](CNode&) { simulated = true; };
    const SimulatedBody memory(fromMemory);
    const auto body = [](MemberCall&) { return E_UNEXPECTED; };
    EXPECT_EQ(RunMember(Root(), method, {}, body, &memory), MakeStatus(0x80044216));
    EXPECT_FALSE(simulated);
    method.refusedFamilies = {};
    EXPECT_EQ(RunMember(Root(), method, {}, body, &memory), S_OK);
    EXPECT_TRUE(simulated);
}

TEST_F(FrameBodyTest, AMemberWithoutASimulatedFormRunsItsBodyInSimulation) {
    Simulate();
    bool run = false;
    EXPECT_EQ(Run(Member("DoIt"),
                  [&](MemberCall& call) {
                      run = true;
                      EXPECT_TRUE(call.IsSimulating());
                      return S_OK;
                  }),
              S_OK);
    EXPECT_TRUE(run);
}

TEST_F(FrameBodyTest, ConnectionIsTestedBeforeTheErrorObjectIsCleared) {
    ASSERT_EQ(Root().Reporter().RaiseWithStatus(E_FAIL, "From before"), E_FAIL);
    ComPtr<IErrorInfo> before;
    ASSERT_EQ(GetErrorInfo(0, before.Out()), S_OK);
    ASSERT_EQ(SetErrorInfo(0, before.Get()), S_OK);
    EXPECT_EQ(Run(Member("DoIt"), [](MemberCall&) { return S_OK; }), MakeStatus(0x8004701D));
    EXPECT_EQ(ErrorText(), "Kestrion: A connection to the instrument has not been established.");
}

TEST_F(FrameBodyTest, EveryOutParameterIsZeroedBeforeTheBodyAndANullOneEndsTheCall) {
    Connect();
    LONG number = 5;
    double real = 2.5;
    BSTR text = reinterpret_cast<BSTR>(&number);
    std::vector<std::string_view> ran;
    const auto body = [&](MemberCall&) {
        ran.emplace_back("body");
        EXPECT_EQ(number, 0);
        EXPECT_EQ(real, 0.0);
        EXPECT_EQ(text, nullptr);
        return S_OK;
    };
    auto parameters = Parameters(Out("a", &number), Out("b", &real), Out("c", &text));
    EXPECT_EQ(RunMember(Root(), Member("Fetch"), parameters, body), S_OK);
    EXPECT_THAT(ran, ElementsAre("body"));
    auto missing = Parameters(Out("a", &number), Out("b", static_cast<double*>(nullptr)));
    EXPECT_EQ(RunMember(Root(), Member("Fetch"), missing, body), MakeStatus(0x80047058));
    EXPECT_EQ(ErrorText(), "Kestrion: Null pointer passed for method Fetch, parameter b.");
    EXPECT_THAT(ran, ElementsAre("body"));
}

TEST_F(FrameBodyTest, TheLockIsFreeAgainAfterAnException) {
    Connect();
    EXPECT_EQ(Run(Member("DoIt"), [](MemberCall&) -> HRESULT { throw std::bad_alloc(); }),
              E_OUTOFMEMORY);
    std::thread other([&] {
        EXPECT_TRUE(Root().Mutex().try_lock());
        Root().Mutex().unlock();
    });
    other.join();
}

}  // namespace
}  // namespace kestrion
