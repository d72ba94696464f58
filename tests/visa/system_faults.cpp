#include "tests/visa/system_faults.h"

#include <sys/eventfd.h>
#include <sys/shm.h>
#include <sys/socket.h>

#include <atomic>
#include <cerrno>
#include <cstddef>
#include <ctime>

namespace visa_provider::testing {

SystemFaults& Faults() {
    static SystemFaults faults;
    return faults;
}

std::vector<int>*& ReceiveFlags() {
    thread_local std::vector<int>* flags = nullptr;
    return flags;
}

namespace {

std::atomic<int> failedCalls = 0;

int FailWith(int error) {
    ++failedCalls;
    errno = error;
    return -1;
}

}  // namespace

int FailedCalls() {
    return failedCalls;
}

}  // namespace visa_provider::testing

using visa_provider::testing::FailWith;
using visa_provider::testing::Faults;
using visa_provider::testing::ReceiveFlags;

extern "C" {
int __real_shmget(key_t key, std::size_t size, int flags);
int __wrap_shmget(key_t key, std::size_t size, int flags);
void* __real_shmat(int handle, const void* address, int flags);
void* __wrap_shmat(int handle, const void* address, int flags);
int __real_setsockopt(int handle, int level, int option, const void* value, socklen_t size);
int __wrap_setsockopt(int handle, int level, int option, const void* value, socklen_t size);
int __real_nanosleep(const timespec* time, timespec* left);
int __wrap_nanosleep(const timespec* time, timespec* left);
int __real_eventfd(unsigned int count, int flags);
int __wrap_eventfd(unsigned int count, int flags);
ssize_t __real_recv(int handle, void* buffer, std::size_t size, int flags);
ssize_t __wrap_recv(int handle, void* buffer, std::size_t size, int flags);

int __wrap_shmget(key_t key, std::size_t size, int flags) {
    return Faults().shmget ? Faults().shmget(key, size, flags) : __real_shmget(key, size, flags);
}

void* __wrap_shmat(int handle, const void* address, int flags) {
    if (Faults().shmatFails) {
        errno = EACCES;
        return reinterpret_cast<void*>(-1);
    }
    return __real_shmat(handle, address, flags);
}

int __wrap_setsockopt(int handle, int level, int option, const void* value, socklen_t size) {
    if (Faults().receiveTimeFails && level == SOL_SOCKET && option == SO_RCVTIMEO) {
        return FailWith(ENOPROTOOPT);
    }
    return __real_setsockopt(handle, level, option, value, size);
}

int __wrap_eventfd(unsigned int count, int flags) {
    return Faults().eventfdFails ? FailWith(EMFILE) : __real_eventfd(count, flags);
}

int __wrap_nanosleep(const timespec* time, timespec* left) {
    if (!Faults().sleep) {
        return __real_nanosleep(time, left);
    }
    Faults().sleep();
    return 0;
}

ssize_t __wrap_recv(int handle, void* buffer, std::size_t size, int flags) {
    if (ReceiveFlags() != nullptr) {
        ReceiveFlags()->push_back(flags);
    }
    return __real_recv(handle, buffer, size, flags);
}
}
