// What one fetch adds to the process's peak of memory: bench_fetch_memory SUBJECT POINTS
//
// SUBJECT is driver, or the memory of the floor: plain or huge. A small fetch has gone before, so
// that what is there once isn't counted. Prints {"kib": NUMBER}.
#include <cstdio>
#include <stdexcept>
#include <string>
#include <string_view>

#include "bench/fetch_driver.h"
#include "bench/fetch_floor.h"
#include "bench/peak_memory.h"
#include "bench/rounds.h"
#include "bench/server.h"

namespace bench {
namespace {

constexpr std::size_t kSmall = 1000;

long PeakOfDriver(const ServerProcess& server, std::size_t points) {
    (void)FetchDriver(server.ResourceName(), kSmall).Fetch();
    FetchDriver driver(server.ResourceName(), points);
    const long before = PeakResidentKib();
    (void)driver.Fetch();
    return PeakResidentKib() - before;
}

long PeakOfFloor(const ServerProcess& server, std::size_t points, FloorMemory memory) {
    const auto messages = WithNewlines(RecordFetch());
    FetchFloor(server.Port(), messages, kSmall).Fetch(memory);
    FetchFloor floor(server.Port(), messages, points);
    const long before = PeakResidentKib();
    floor.Fetch(memory);
    return PeakResidentKib() - before;
}

long Peak(std::string_view subject, const ServerProcess& server, std::size_t points) {
    if (subject == "driver") {
        return PeakOfDriver(server, points);
    }
    if (subject == "plain") {
        return PeakOfFloor(server, points, FloorMemory::kPlainWithBuffer);
    }
    if (subject == "huge") {
        return PeakOfFloor(server, points, FloorMemory::kHugeWithBuffer);
    }
    throw std::runtime_error("name one of driver, plain and huge");
}

int Main(int argc, char** argv) {
    if (argc != 3) {
        throw std::runtime_error("name a subject and a number of points");
    }
    const std::size_t points = std::stoul(argv[2]);
    const ServerProcess server(std::nullopt, points);
    std::printf("{\"kib\": %ld}\n", Peak(argv[1], server, points));
    return 0;
}

}  // namespace
}  // namespace bench

int main(int argc, char** argv) {
    return bench::RunProgram(bench::Main, argc, argv);
}
