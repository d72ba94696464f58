// An instrument on a clock that stands still until a test moves it.
#pragma once

#include <chrono>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "virtual/instrument.h"

namespace virtual_scope {

class Bench {
  public:
    explicit Bench(std::string_view model = "PL7254C")
        : instrument_(Instrument::Make(model, [this] { return now_; })),
          link_(instrument_->Connect()) {}

    DeviceLink& link() { return *link_; }
    Instrument& instrument() { return *instrument_; }

    void Advance(std::chrono::nanoseconds time) {
        now_ += time;
        link_->Poll();
    }

    void Write(std::string_view message) { WriteTo(*link_, message); }
    // One response without its line feed, or "(nothing)".
    std::string Read() { return ReadFrom(*link_); }
    std::string Query(std::string_view message) {
        Write(message);
        return Read();
    }

    static void WriteTo(DeviceLink& link, std::string_view message) {
        link.Write(std::as_bytes(std::span(message)), true);
    }
    static std::string ReadFrom(DeviceLink& link, std::size_t size = 4096) {
        std::string response;
        std::string buffer(size, '\0');
        while (link.HasOutput()) {
            const ReadPiece piece = link.Read(std::as_writable_bytes(std::span(buffer)));
            response.append(buffer, 0, piece.count);
            if (piece.end) {
                const bool fed = response.ends_with('\n');
                return fed ? response.substr(0, response.size() - 1) : response + "(no line feed)";
            }
        }
        return response.empty() ? "(nothing)" : response + "(no end)";
    }

    // The oldest error in the queue, in short answers whatever the form was before.
    std::string Error() { return Query("HEADER OFF;:SYSTEM:ERROR?"); }

  private:
    TimePoint now_{std::chrono::seconds(1000)};
    std::shared_ptr<Instrument> instrument_;
    std::unique_ptr<DeviceLink> link_;
};

// As `Bench`, with short answers from the beginning.
class BareBench : public Bench {
  public:
    explicit BareBench(std::string_view model = "PL7254C") : Bench(model) {
        Write("HEADER OFF;*CLS");
    }
};

inline constexpr std::string_view kNoError = "0,\"No error\"";

}  // namespace virtual_scope
