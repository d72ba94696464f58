// One call of a member over a canned VISA library, for counting its instructions, or the time of
// such calls one behind the other: bench_instructions get|set|query [time]
//
// The call that counts runs in a function of its own, MeasuredCall, which the counter is told to
// watch; the same call has run before, so that what is made on first use is there.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string_view>

#include "bench/rounds.h"
#include "core/driver.h"
#include "hosting/create.h"
#include "hosting/objects.h"
#include "kestrion/kestrion.h"
#include "tests/core/quiet_visa.h"

namespace bench {
namespace {

using Member = std::function<HRESULT()>;

}  // namespace

[[gnu::noinline]] HRESULT MeasuredCall(const Member& member) {
    const HRESULT status = member();
    // Something behind the call, so that it isn't left by a jump.
    asm volatile("" ::: "memory");
    return status;
}

namespace {

void Require(HRESULT status) {
    if (status != S_OK) {
        throw std::runtime_error("a call failed");
    }
}

kestrion::ComPtr<IKestrion> Open(kestrion::test::QuietVisa& visa, std::string_view options) {
    kestrion::DriverEnvironment environment;
    environment.makeRepCap = kestrion::MakeRepCap;
    environment.clock = &kestrion::SystemClock();
    environment.chooseVisa = [&visa](std::string_view) {
        return kestrion::VisaSelection{std::make_shared<const kestrion::VisaLibrary>(
                                           visa.Table(), "canned", "to be counted", nullptr),
                                       {}};
    };
    kestrion::ComPtr<IKestrion> scope;
    Require(kestrion::CreateKestrion(std::move(environment), scope.Out()));
    visa.AnswerWith("KESTRION,PL7254C,1,1\n");
    const kestrion::BstrPtr resource(std::string_view("GPIB0::1::INSTR"));
    const kestrion::BstrPtr text(options);
    Require(scope->Initialize(resource.Get(), VARIANT_FALSE, VARIANT_FALSE, text.Get()));
    return scope;
}

// What is done with a member.
using Measurement = void (*)(const Member& member);

void CallOnce(const Member& member) {
    Require(member());
    Require(member());
    Require(MeasuredCall(member));
}

// Prints the nanoseconds of a call, by the best of some rounds: what else runs only adds.
void Time(const Member& member) {
    constexpr int kRounds = 20;
    constexpr int kCalls = 10000;
    auto best = std::chrono::duration<double, std::nano>::max();
    for (int round = 0; round < kRounds; ++round) {
        const auto before = std::chrono::steady_clock::now();
        for (int i = 0; i < kCalls; ++i) {
            Require(member());
        }
        best = std::min<decltype(best)>(best, std::chrono::steady_clock::now() - before);
    }
    std::printf("{\"ns\": %.1f}\n", best.count() / kCalls);
}

void MeasureSimulatedGet(Measurement measure) {
    kestrion::test::QuietVisa visa;
    const auto scope = Open(visa, "simulate=true,DriverSetup=Model=PL7254C");
    const auto acquisition = kestrion::Query<IIviScopeAcquisition>(scope.Get());
    Require(acquisition->put_NumberOfAverages(7));
    LONG value = 0;
    measure([&] { return acquisition->get_NumberOfAverages(&value); });
}

void MeasureSet(Measurement measure) {
    kestrion::test::QuietVisa visa;
    const auto scope = Open(visa, "");
    const auto acquisition = kestrion::Query<IKestrionAcquisition>(scope.Get());
    measure([&] { return acquisition->put_NumberAverages(16); });
}

void MeasureQuery(Measurement measure) {
    kestrion::test::QuietVisa visa;
    const auto scope = Open(visa, "");
    const auto acquisition = kestrion::Query<IKestrionAcquisition>(scope.Get());
    visa.AnswerWith("AVERAGE\n");
    auto mode = KestrionAcquisitionModeSample;
    measure([&] { return acquisition->get_Mode(&mode); });
}

int Main(int argc, char** argv) {
    const std::string_view what = argc > 1 ? argv[1] : "";
    const std::string_view how = argc > 2 ? argv[2] : "";
    const Measurement measure = how == "time" ? Time : CallOnce;
    if (how != "time" && !how.empty()) {
        std::fprintf(stderr, "behind the member only time may stand\n");
        return 2;
    }
    if (what == "get") {
        MeasureSimulatedGet(measure);
    } else if (what == "set") {
        MeasureSet(measure);
    } else if (what == "query") {
        MeasureQuery(measure);
    } else {
        std::fprintf(stderr, "name one of get, set and query, and time to take the time\n");
        return 2;
    }
    return 0;
}

}  // namespace
}  // namespace bench

int main(int argc, char** argv) {
    return bench::RunProgram(bench::Main, argc, argv);
}
