// Many instruments at once, each with a thread of its own in one process, beside one, and beside
// bare clients in their place.
#include <benchmark/benchmark.h>

#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "bench/bare_client.h"
#include "bench/driver_client.h"
#include "bench/rounds.h"
#include "bench/server.h"

namespace bench {
namespace {

// Of each instrument in one go, so that making the threads counts for nothing.
constexpr int kQueries = 500;

struct Driver {
    explicit Driver(const ServerProcess& server)
        : client(server.ResourceName()), acquisition(client.As<IKestrionAcquisition>()) {}
    void Query() {
        auto mode = KestrionAcquisitionModeSample;
        Check(acquisition->get_Mode(&mode));
    }

    DriverClient client;
    kestrion::ComPtr<IKestrionAcquisition> acquisition;
};

struct Floor {
    explicit Floor(const ServerProcess& server) : client(server.Port()) {}
    void Query() {
        client.Send("ACQUIRE:MODE?\n");
        benchmark::DoNotOptimize(client.ReceiveLine());
    }

    BareClient client;
};

template <typename Client>
void Measure(benchmark::State& state, const ServerProcess& server, int instruments) {
    std::vector<std::unique_ptr<Client>> clients;
    clients.reserve(static_cast<std::size_t>(instruments));
    for (int i = 0; i < instruments; ++i) {
        clients.push_back(std::make_unique<Client>(server));
    }
    for (auto _ : state) {
        std::vector<std::jthread> threads;
        threads.reserve(clients.size());
        for (const auto& client : clients) {
            threads.emplace_back([&client] {
                for (int i = 0; i < kQueries; ++i) {
                    client->Query();
                }
            });
        }
    }
    state.SetItemsProcessed(state.iterations() * instruments * kQueries);
}

int Main(int argc, char** argv) {
    const ServerProcess server(std::nullopt, 0);
    for (const int instruments : {1, 16}) {
        const std::string name = "parallel/" + std::to_string(instruments) + "/";
        const auto add = [&name](const char* subject, auto measure) {
            benchmark::RegisterBenchmark((name + subject).c_str(), measure)
                ->Unit(benchmark::kMillisecond)
                ->UseRealTime();
        };
        add("driver", [&server, instruments](benchmark::State& state) {
            Measure<Driver>(state, server, instruments);
        });
        add("floor", [&server, instruments](benchmark::State& state) {
            Measure<Floor>(state, server, instruments);
        });
    }
    return RunInRounds(argc, argv);
}

}  // namespace
}  // namespace bench

int main(int argc, char** argv) {
    return bench::RunProgram(bench::Main, argc, argv);
}
