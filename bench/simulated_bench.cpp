// Members in simulation, which no instrument slows down: a class attribute beside a plain virtual
// call, and the start and the end of a session.
#include <benchmark/benchmark.h>

#include "bench/cores.h"
#include "bench/driver_client.h"
#include "bench/plain_object.h"
#include "bench/rounds.h"
#include "tests/platform/allocation_count.h"

namespace bench {
namespace {

constexpr const char* kResource = "GPIB0::1::INSTR";
constexpr const char* kSimulate = "simulate=true,DriverSetup=Model=PL7254C";

// Runs `call` as often as asked for, and counts what it allocates each time.
template <typename Call>
void Repeat(benchmark::State& state, const Call& call) {
    const std::size_t before = kestrion::test::AllocationCount();
    for (auto _ : state) {
        call();
    }
    const std::size_t allocated = kestrion::test::AllocationCount() - before;
    state.counters["allocations"] =
        static_cast<double>(allocated) / static_cast<double>(state.iterations());
}

template <typename Object>
void Get(benchmark::State& state, Object& object) {
    LONG value = 0;
    Check(object.get_NumberOfAverages(&value));
    Repeat(state, [&] {
        Check(object.get_NumberOfAverages(&value));
        benchmark::DoNotOptimize(value);
    });
}

template <typename Object>
void Put(benchmark::State& state, Object& object) {
    Check(object.put_NumberOfAverages(7));
    Repeat(state, [&] { Check(object.put_NumberOfAverages(7)); });
}

void GetByDriver(benchmark::State& state) {
    DriverClient client(kResource, kSimulate);
    Get(state, *client.As<IIviScopeAcquisition>());
}
void GetOfPlainObject(benchmark::State& state) {
    Get(state, PlainObject());
}
void PutByDriver(benchmark::State& state) {
    DriverClient client(kResource, kSimulate);
    Put(state, *client.As<IIviScopeAcquisition>());
}
void PutToPlainObject(benchmark::State& state) {
    Put(state, PlainObject());
}
BENCHMARK(GetByDriver)->Name("simulated/get/driver");
BENCHMARK(GetOfPlainObject)->Name("simulated/get/floor");
BENCHMARK(PutByDriver)->Name("simulated/put/driver");
BENCHMARK(PutToPlainObject)->Name("simulated/put/floor");

void StartAndEnd(benchmark::State& state) {
    Repeat(state, [] { const DriverClient client(kResource, kSimulate); });
}
// What of it is making and dropping the object.
void CreateAndRelease(benchmark::State& state) {
    Repeat(state, [] {
        kestrion::ComPtr<IKestrion> scope;
        Check(kestrion::CreateKestrion(scope.Out()));
    });
}
BENCHMARK(StartAndEnd)->Name("start/initialize_and_close/driver")->Unit(benchmark::kMicrosecond);
BENCHMARK(CreateAndRelease)->Name("start/create_and_release/driver")->Unit(benchmark::kMicrosecond);

int Main(int argc, char** argv) {
    PinThisThread(kClientCore);
    return RunInRounds(argc, argv);
}

}  // namespace
}  // namespace bench

int main(int argc, char** argv) {
    return bench::RunProgram(bench::Main, argc, argv);
}
