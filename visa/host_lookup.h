// Names of hosts to addresses, within a time.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "visa/time_limit.h"
#include "visa/visa.h"

namespace visa_provider {

// The bytes of a socket address, as the system has them.
using SocketAddress = std::vector<unsigned char>;

// What a search for a host came to: VI_SUCCESS and at least one address, VI_ERROR_RSRC_NFOUND when
// there is no such host, VI_ERROR_ALLOC when the system is out of something.
struct HostSearchResult {
    ViStatus status = VI_ERROR_RSRC_NFOUND;
    std::vector<SocketAddress> addresses;  // the preferred one first
};

// Asks the system, for as long as that takes.
[[nodiscard]] HostSearchResult SearchHost(const std::string& host, ViUInt16 port);

// Runs `search` in a thread of its own and waits for it until the deadline: VI_ERROR_TMO when it
// isn't over by then. It can't be called off, so it goes on behind the caller's back, and has to
// own whatever it uses.
[[nodiscard]] HostSearchResult SearchWithin(std::function<HostSearchResult()> search,
                                            const Deadline& deadline);

// The addresses of `host` for TCP connections to `port`. An address in numbers is not searched
// for; a name is, until the deadline.
[[nodiscard]] HostSearchResult LookUpHost(const std::string& host, ViUInt16 port,
                                          const Deadline& deadline);

}  // namespace visa_provider
