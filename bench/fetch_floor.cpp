#include "bench/fetch_floor.h"

#include <memory>
#include <stdexcept>
#include <string>

namespace bench {
namespace {

const std::string kCurveMessage = std::string(kCurveQuery) + '\n';

}  // namespace

FetchFloor::FetchFloor(std::uint16_t port, std::vector<Exchange> messages, std::size_t points)
    : client_(port),
      messages_(std::move(messages)),
      points_(points),
      headerSize_(2 + std::to_string(points).size()),
      blockSize_(headerSize_ + points + 1) {
    while (curve_ < messages_.size() && messages_[curve_].message != kCurveMessage) {
        ++curve_;
    }
    if (curve_ == messages_.size()) {
        throw std::runtime_error("these messages are no fetch");
    }
    client_.Send("HORIZONTAL:RECORDLENGTH " + std::to_string(points) + "\n");
}

char* FetchFloor::KeptBlock() {
    block_.resize(blockSize_);
    return block_.data();
}

// Header, points and newline in one go.
void FetchFloor::ReceiveBlock(std::span<char> buffer) {
    client_.ReceiveAll(buffer);
    if (buffer.front() != '#' || buffer.back() != '\n') {
        throw std::runtime_error("this is no block");
    }
}

void FetchFloor::ReceiveAndConvert(char* buffer, double* volts) {
    const std::span all(messages_);
    client_.Exchange(all.first(curve_ + 1));
    ReceiveBlock({buffer, blockSize_});
    client_.Exchange(all.subspan(curve_ + 1));
    ConvertToVolts({buffer + headerSize_, points_}, 4e-3, 0.0, 0.0, volts);
}

void FetchFloor::Fetch(FloorMemory memory) {
    switch (memory) {
        case FloorMemory::kReused:
            volts_.resize(points_);
            return ReceiveAndConvert(KeptBlock(), volts_.data());
        case FloorMemory::kPlain: {
            const std::unique_ptr<double[]> volts(new double[points_]);
            return ReceiveAndConvert(KeptBlock(), volts.get());
        }
        case FloorMemory::kHuge: {
            const HugeMemory volts(points_ * sizeof(double));
            return ReceiveAndConvert(KeptBlock(), static_cast<double*>(volts.Get()));
        }
        case FloorMemory::kPlainWithBuffer: {
            const std::unique_ptr<char[]> block(new char[blockSize_]);
            const std::unique_ptr<double[]> volts(new double[points_]);
            return ReceiveAndConvert(block.get(), volts.get());
        }
        case FloorMemory::kHugeWithBuffer: {
            const HugeMemory block(blockSize_);
            const HugeMemory volts(points_ * sizeof(double));
            return ReceiveAndConvert(static_cast<char*>(block.Get()),
                                     static_cast<double*>(volts.Get()));
        }
    }
}

void FetchFloor::FetchCurve() {
    volts_.resize(points_);
    client_.Send(kCurveMessage);
    ReceiveBlock({KeptBlock(), blockSize_});
    ConvertToVolts({block_.data() + headerSize_, points_}, 4e-3, 0.0, 0.0, volts_.data());
}

void FetchFloor::ExchangeMessages() {
    const std::span all(messages_);
    client_.Exchange(all.first(curve_));
    client_.Exchange(all.subspan(curve_ + 1));
}

}  // namespace bench
