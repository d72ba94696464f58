// FetchWaveform beside its floors, in time.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <iterator>
#include <string>

#include "bench/cores.h"
#include "bench/fetch_driver.h"
#include "bench/fetch_floor.h"
#include "bench/rounds.h"
#include "bench/server.h"

namespace bench {
namespace {

struct Size {
    std::size_t points;
    int iterations;  // of one round
};
constexpr Size kSizes[] = {{10'000, 200}, {1'000'000, 30}, {10'000'000, 4}, {100'000'000, 1}};

struct Subjects {
    std::uint16_t port;
    std::string resource;
    std::vector<Exchange> messages;
};

// The driver and the floor have to give the same volts, or there is nothing to compare.
bool SameVolts(FetchDriver& driver, FetchFloor& floor) {
    floor.Fetch(FloorMemory::kReused);
    const auto array = driver.Fetch();
    const auto volts = array.Elements<double>();
    return std::equal(volts.begin(), volts.end(), floor.Volts().begin(), floor.Volts().end());
}

void MeasureDriver(benchmark::State& state, const Subjects& subjects, std::size_t points) {
    FetchDriver driver(subjects.resource, points);
    {
        FetchFloor floor(subjects.port, subjects.messages, points);
        if (!SameVolts(driver, floor)) {
            state.SkipWithError("the driver and the floor give different volts");
            return;
        }
    }
    for (auto _ : state) {
        benchmark::DoNotOptimize(driver.Fetch());
    }
}

void MeasureFloor(benchmark::State& state, const Subjects& subjects, std::size_t points,
                  FloorMemory memory) {
    FetchFloor floor(subjects.port, subjects.messages, points);
    floor.Fetch(memory);
    for (auto _ : state) {
        floor.Fetch(memory);
    }
}

void MeasureFloorCurve(benchmark::State& state, const Subjects& subjects, std::size_t points) {
    FetchFloor floor(subjects.port, subjects.messages, points);
    floor.FetchCurve();
    for (auto _ : state) {
        floor.FetchCurve();
    }
}

void MeasureMessages(benchmark::State& state, const Subjects& subjects, std::size_t points) {
    FetchFloor floor(subjects.port, subjects.messages, points);
    for (auto _ : state) {
        floor.ExchangeMessages();
    }
}

template <typename... T>
void Register(const Size& size, const std::string& name, T... measure) {
    benchmark::RegisterBenchmark(("fetch/" + std::to_string(size.points) + "/" + name).c_str(),
                                 measure...)
        ->Unit(benchmark::kMicrosecond)
        ->UseRealTime()
        ->Iterations(size.iterations);
}

void RegisterSize(const Size& size, const Subjects& subjects) {
    const std::size_t points = size.points;
    Register(size, "driver", [&subjects, points](benchmark::State& state) {
        MeasureDriver(state, subjects, points);
    });
    const std::pair<const char*, FloorMemory> floors[] = {
        {"plain", FloorMemory::kPlain},
        {"huge", FloorMemory::kHuge},
        {"reused", FloorMemory::kReused},
    };
    for (const auto& [name, memory] : floors) {
        Register(size, name, [&subjects, points, memory = memory](benchmark::State& state) {
            MeasureFloor(state, subjects, points, memory);
        });
    }
    Register(size, "curve", [&subjects, points](benchmark::State& state) {
        MeasureFloorCurve(state, subjects, points);
    });
    Register(size, "messages", [&subjects, points](benchmark::State& state) {
        MeasureMessages(state, subjects, points);
    });
}

int Main(int argc, char** argv) {
    const ServerProcess server(kOtherCore, kSizes[std::size(kSizes) - 1].points);
    const Subjects subjects{server.Port(), server.ResourceName(), WithNewlines(RecordFetch())};
    PinThisThread(kClientCore);
    for (const Size& size : kSizes) {
        RegisterSize(size, subjects);
    }
    return RunInRounds(argc, argv);
}

}  // namespace
}  // namespace bench

int main(int argc, char** argv) {
    return bench::RunProgram(bench::Main, argc, argv);
}
