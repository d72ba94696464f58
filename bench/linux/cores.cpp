#include "bench/cores.h"

#include <sched.h>

#include <cerrno>
#include <system_error>

namespace bench {

void PinThisThread(int core) {
    cpu_set_t cores;
    CPU_ZERO(&cores);
    CPU_SET(static_cast<unsigned>(core), &cores);
    if (sched_setaffinity(0, sizeof(cores), &cores) != 0) {
        throw std::system_error(errno, std::generic_category(), "sched_setaffinity");
    }
}

}  // namespace bench
