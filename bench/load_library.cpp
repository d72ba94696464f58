// How long the system takes to load a library into this process: bench_load driver|floor
//
// The floor is a library without anything in it. Prints {"us": NUMBER}. A process can do it only
// once: a library that has thread-local objects stays.
#include <chrono>
#include <cstdio>
#include <stdexcept>
#include <string_view>

#include "bench/cores.h"
#include "bench/rounds.h"
#include "bench/shared_library.h"

namespace bench {
namespace {

int Main(int argc, char** argv) {
    const std::string_view subject = argc == 2 ? argv[1] : "";
    if (subject != "driver" && subject != "floor") {
        throw std::runtime_error("name one of driver and floor");
    }
    const char* file = subject == "driver" ? KESTRION_LIBRARY_FILE : KESTRION_EMPTY_LIBRARY_FILE;
    PinThisThread(kClientCore);
    const auto before = std::chrono::steady_clock::now();
    const SharedLibrary library(file);
    const std::chrono::duration<double, std::micro> time =
        std::chrono::steady_clock::now() - before;
    std::printf("{\"us\": %.1f}\n", time.count());
    return 0;
}

}  // namespace
}  // namespace bench

int main(int argc, char** argv) {
    return bench::RunProgram(bench::Main, argc, argv);
}
