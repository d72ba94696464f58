// One query of a property, and ten settings with a query behind them, beside bare sends and
// receives of the same bytes.
#include <benchmark/benchmark.h>

#include <chrono>
#include <string>

#include "bench/bare_client.h"
#include "bench/cores.h"
#include "bench/driver_client.h"
#include "bench/rounds.h"
#include "bench/server.h"

namespace bench {
namespace {

constexpr int kSettings = 10;
constexpr LONG kAverages = 16;

// The same work three ways: by the driver, by the bare client, and as the list of its messages.
void QueryMode(IKestrionAcquisition& acquisition) {
    auto mode = KestrionAcquisitionModeSample;
    Check(acquisition.get_Mode(&mode));
    benchmark::DoNotOptimize(mode);
}

void SetAndQuery(IKestrionAcquisition& acquisition) {
    for (int i = 0; i < kSettings; ++i) {
        Check(acquisition.put_NumberAverages(kAverages));
    }
    QueryMode(acquisition);
}

using Work = void (*)(IKestrionAcquisition& acquisition);

std::vector<Exchange> RecordWork(Work work) {
    return WithNewlines(RecordExchanges(
        [work](const std::string& resource) {
            DriverClient client(resource);
            const auto acquisition = client.As<IKestrionAcquisition>();
            Check(acquisition->put_NumberEnvelopes(1));
            work(*acquisition);
        },
        "ACQUIRE:NUMENV 1"));
}

void MeasureDriver(benchmark::State& state, const std::string& resource, Work work) {
    DriverClient client(resource);
    const auto acquisition = client.As<IKestrionAcquisition>();
    for (auto _ : state) {
        work(*acquisition);
    }
}

void MeasureFloor(benchmark::State& state, std::uint16_t port,
                  const std::vector<Exchange>& messages) {
    BareClient client(port);
    for (auto _ : state) {
        client.Exchange(messages);
    }
}

// What a program takes that works for a microsecond between its messages: on a shared core the
// system lets the server run in between more often than it does for one that only sends.
constexpr std::chrono::microseconds kPause{1};

void MeasurePaused(benchmark::State& state, std::uint16_t port,
                   const std::vector<Exchange>& messages) {
    BareClient client(port);
    for (auto _ : state) {
        for (const Exchange& message : messages) {
            client.Exchange({&message, 1});
            const auto until = std::chrono::steady_clock::now() + kPause;
            while (std::chrono::steady_clock::now() < until) {
            }
        }
    }
}

void Register(const std::string& name, const ServerProcess& server, Work work,
              const std::vector<Exchange>& messages) {
    const auto add = [&name](const char* subject, auto measure) {
        benchmark::RegisterBenchmark((name + "/" + subject).c_str(), measure)
            ->Unit(benchmark::kMicrosecond)
            ->UseRealTime();
    };
    add("driver", [resource = server.ResourceName(), work](benchmark::State& state) {
        MeasureDriver(state, resource, work);
    });
    add("floor", [port = server.Port(), messages](benchmark::State& state) {
        MeasureFloor(state, port, messages);
    });
    add("paused", [port = server.Port(), messages](benchmark::State& state) {
        MeasurePaused(state, port, messages);
    });
}

int Main(int argc, char** argv) {
    const ServerProcess same(kClientCore, 0);
    const ServerProcess other(kOtherCore, 0);
    const auto query = RecordWork(QueryMode);
    const auto settings = RecordWork(SetAndQuery);
    PinThisThread(kClientCore);
    Register("query/same_core", same, QueryMode, query);
    Register("query/two_cores", other, QueryMode, query);
    Register("settings/same_core", same, SetAndQuery, settings);
    Register("settings/two_cores", other, SetAndQuery, settings);
    return RunInRounds(argc, argv);
}

}  // namespace
}  // namespace bench

int main(int argc, char** argv) {
    return bench::RunProgram(bench::Main, argc, argv);
}
