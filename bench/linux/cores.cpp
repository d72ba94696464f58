#include "bench/cores.h"

#include <sched.h>

#include <cerrno>
#include <system_error>

namespace bench {
namespace {

void SetCores(const cpu_set_t& cores) {
    if (sched_setaffinity(0, sizeof(cores), &cores) != 0) {
        throw std::system_error(errno, std::generic_category(), "sched_setaffinity");
    }
}

}  // namespace

void PinThisThread(int core) {
    cpu_set_t cores;
    CPU_ZERO(&cores);
    CPU_SET(static_cast<unsigned>(core), &cores);
    SetCores(cores);
}

void UnpinThisThread() {
    cpu_set_t cores;
    CPU_ZERO(&cores);
    for (unsigned core = 0; core < CPU_SETSIZE; ++core) {
        CPU_SET(core, &cores);
    }
    SetCores(cores);
}

}  // namespace bench
