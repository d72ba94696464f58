#include "visa/host_lookup.h"

#include <dlfcn.h>
#include <netdb.h>
#include <sys/socket.h>

#include <condition_variable>
#include <memory>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

namespace visa_provider {

namespace {

HostSearchResult Ask(const std::string& host, ViUInt16 port, int flags) {
    addrinfo hints{};
    hints.ai_family = AF_UNSPEC;
    hints.ai_socktype = SOCK_STREAM;
    hints.ai_flags = AI_NUMERICSERV | flags;
    addrinfo* found = nullptr;
    const int error = getaddrinfo(host.c_str(), std::to_string(port).c_str(), &hints, &found);
    if (error != 0) {
        return {error == EAI_MEMORY ? VI_ERROR_ALLOC : VI_ERROR_RSRC_NFOUND, {}};
    }
    const std::unique_ptr<addrinfo, decltype(&freeaddrinfo)> owned(found, freeaddrinfo);
    HostSearchResult result;
    for (const auto* entry = found; entry; entry = entry->ai_next) {
        const auto* bytes = reinterpret_cast<const unsigned char*>(entry->ai_addr);
        result.addresses.emplace_back(bytes, bytes + entry->ai_addrlen);
    }
    result.status = result.addresses.empty() ? VI_ERROR_RSRC_NFOUND : VI_SUCCESS;
    return result;
}

// A thread that nobody waits for returns into this library: it must not be unloaded before.
void KeepLibraryLoaded() {
    Dl_info info{};
    if (dladdr(reinterpret_cast<const void*>(&KeepLibraryLoaded), &info) != 0 && info.dli_fname) {
        dlopen(info.dli_fname, RTLD_NOW | RTLD_NOLOAD | RTLD_NODELETE);
    }
}

// What the searching thread and the waiting one have in common; the last of them drops it.
struct Shared {
    std::mutex mutex;
    std::condition_variable over;
    bool isOver = false;
    HostSearchResult result;
};

void Run(Shared& shared, const std::function<HostSearchResult()>& search) {
    HostSearchResult result;
    try {
        result = search();
    } catch (...) {
        result = {VI_ERROR_ALLOC, {}};
    }
    const std::lock_guard guard(shared.mutex);
    shared.result = std::move(result);
    shared.isOver = true;
    shared.over.notify_all();
}

bool WaitUntilOver(Shared& shared, const Deadline& deadline) {
    std::unique_lock guard(shared.mutex);
    const auto isOver = [&shared] { return shared.isOver; };
    if (deadline) {
        return shared.over.wait_until(guard, *deadline, isOver);
    }
    shared.over.wait(guard, isOver);
    return true;
}

}  // namespace

HostSearchResult SearchHost(const std::string& host, ViUInt16 port) {
    return Ask(host, port, 0);
}

HostSearchResult SearchWithin(std::function<HostSearchResult()> search, const Deadline& deadline) {
    const auto shared = std::make_shared<Shared>();
    std::thread thread;
    try {
        thread = std::thread([shared, search = std::move(search)] { Run(*shared, search); });
    } catch (const std::system_error&) {
        return {VI_ERROR_ALLOC, {}};  // the system has no thread left
    }
    if (!WaitUntilOver(*shared, deadline)) {
        KeepLibraryLoaded();
        thread.detach();
        return {VI_ERROR_TMO, {}};
    }
    thread.join();
    return std::move(shared->result);
}

HostSearchResult LookUpHost(const std::string& host, ViUInt16 port, const Deadline& deadline) {
    auto numbers = Ask(host, port, AI_NUMERICHOST);
    if (numbers.status == VI_SUCCESS) {
        return numbers;
    }
    return SearchWithin([host, port] { return SearchHost(host, port); }, deadline);
}

}  // namespace visa_provider
