#include "virtual/message_exchange.h"

#include <utility>

namespace virtual_scope {

void MessageExchange::Write(std::span<const std::byte> bytes, bool end) {
    const bool began = framer_.InMessage();
    framer_.Feed(bytes, end);
    while (framer_.TakeOverrun()) {
        scope_.status().Report(ScpiError::kInputBufferOverrun);
    }
    const bool begins = !began && (framer_.InMessage() || framer_.HasMessage());
    if (begins) {
        unterminatedReported_ = false;
        // While a message is executed the next one waits, and is told when its turn comes.
        if (rule_ == ExchangeRule::kInterrupt && !executing_ && HasOutput()) {
            DropResponse(ScpiError::kQueryInterrupted);
        }
    }
    Continue();
}

ReadPiece MessageExchange::Read(std::span<std::byte> target) {
    if (HasOutput()) {
        const ReadPiece piece = output_.Read(target);
        Continue();
        return piece;
    }
    if (!IsBusy() && !std::exchange(unterminatedReported_, true)) {
        scope_.status().Report(ScpiError::kQueryUnterminated);
    }
    return {};
}

void MessageExchange::Clear() {
    framer_.Clear();
    output_.Clear();
    units_.clear();
    executing_ = false;
    deadlocked_ = false;
    unterminatedReported_ = false;
}

void MessageExchange::Continue() {
    if (executing_) {
        ExecuteUnits();
    }
    while (!executing_ && framer_.HasMessage()) {
        if (HasOutput()) {
            if (rule_ == ExchangeRule::kStream) {
                return;
            }
            DropResponse(ScpiError::kQueryInterrupted);
        }
        BeginMessage();
        ExecuteUnits();
    }
}

void MessageExchange::BeginMessage() {
    units_ = ParseMessage(framer_.TakeMessage());
    nextUnit_ = 0;
    path_.clear();
    deadlocked_ = false;
    executing_ = true;
}

void MessageExchange::ExecuteUnits() {
    while (nextUnit_ < units_.size()) {
        Outcome outcome = scope_.Execute(units_[nextUnit_], path_, HasOutput());
        if (outcome.waiting) {
            return;
        }
        ++nextUnit_;
        if (outcome.reply && !deadlocked_) {
            Respond(*std::move(outcome.reply));
        }
    }
    executing_ = false;
    units_.clear();
    output_.EndMessage();
}

void MessageExchange::Respond(Reply reply) {
    if (!output_.Add(std::move(reply))) {
        deadlocked_ = true;
        DropResponse(ScpiError::kQueryDeadlocked);
    }
}

void MessageExchange::DropResponse(ScpiError reason) {
    output_.Clear();
    scope_.status().Report(reason);
}

bool MessageExchange::UpdateServiceRequest() {
    const Status& status = scope_.status();
    const auto reasons =
        static_cast<std::uint8_t>(status.Summary(HasOutput()) & status.serviceEnable());
    const bool isNew = (reasons & ~reasons_) != 0;
    reasons_ = reasons;
    const bool wasRequesting = requesting_;
    // A request is withdrawn with the last of its reasons.
    requesting_ = reasons != 0 && (requesting_ || isNew);
    return requesting_ && !wasRequesting;
}

std::uint8_t MessageExchange::SerialPoll() {
    unsigned byte = scope_.status().Summary(HasOutput());
    if (std::exchange(requesting_, false)) {
        byte |= kRequestService;
    }
    return static_cast<std::uint8_t>(byte);
}

}  // namespace virtual_scope
