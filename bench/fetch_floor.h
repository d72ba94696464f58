// The floor of a fetch: the messages that the driver exchanges, one receive into a buffer and one
// pass into an array of doubles.
#pragma once

#include <span>
#include <vector>

#include "bench/bare_client.h"
#include "bench/volts.h"

namespace bench {

// Where a floor takes its memory from.
enum class FloorMemory {
    kPlain,   // a fresh array from the allocator for each fetch
    kHuge,    // a fresh array of huge pages for each fetch
    kReused,  // one array for all fetches
    // As kPlain and kHuge, with the buffer of the block just as fresh, for measurements of memory;
    // the others keep the buffer.
    kPlainWithBuffer,
    kHugeWithBuffer,
};

class FetchFloor {
  public:
    // `messages` are those of a fetch, each with its newline, a curve query among them.
    FetchFloor(std::uint16_t port, std::vector<Exchange> messages, std::size_t points);

    void Fetch(FloorMemory memory);
    // The curve query alone, into kept memory.
    void FetchCurve();
    // Everything but the curve query.
    void ExchangeMessages();
    // The volts of the last fetch into kept memory.
    [[nodiscard]] std::span<const double> Volts() const { return volts_; }

  private:
    // Made with the first fetch that keeps it.
    [[nodiscard]] char* KeptBlock();
    void ReceiveBlock(std::span<char> buffer);
    void ReceiveAndConvert(char* buffer, double* volts);

    BareClient client_;
    std::vector<Exchange> messages_;
    std::size_t curve_ = 0;
    std::size_t points_;
    std::size_t headerSize_;
    std::size_t blockSize_;
    std::vector<char> block_;
    std::vector<double> volts_;
};

}  // namespace bench
