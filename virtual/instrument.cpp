#include "virtual/instrument.h"

#include <algorithm>
#include <utility>

namespace virtual_scope {

class InstrumentLink final : public DeviceLink {
  public:
    InstrumentLink(std::shared_ptr<Instrument> instrument, ExchangeRule rule);
    ~InstrumentLink() override;

    void Write(std::span<const std::byte> bytes, bool end) override;
    ReadPiece Read(std::span<std::byte> target) override;
    bool HasOutput() override;
    std::uint8_t SerialPoll() override;
    void Clear() override;
    void Trigger() override;
    void SetServiceRequestHandler(std::function<void()> handler) override;
    void Poll() override;
    std::optional<TimePoint> NextEvent() override;

  private:
    friend class Instrument;

    std::shared_ptr<Instrument> instrument_;
    MessageExchange exchange_;
    std::function<void()> handler_;
};

std::shared_ptr<Instrument> Instrument::Make(std::string_view model, Clock clock) {
    const Model* known = FindModel(model);
    if (known == nullptr) {
        return nullptr;
    }
    return std::shared_ptr<Instrument>(new Instrument(*known, std::move(clock)));
}

Instrument::Instrument(const Model& model, Clock clock) : scope_(model, std::move(clock)) {}

Instrument::~Instrument() = default;

std::unique_ptr<DeviceLink> Instrument::Connect(ExchangeRule rule) {
    return std::make_unique<InstrumentLink>(shared_from_this(), rule);
}

template <typename Work>
auto Instrument::Locked(Work work) {
    Handlers handlers;
    const auto result = [&] {
        const std::lock_guard guard(mutex_);
        Settle(handlers);
        auto value = work();
        Settle(handlers);
        return value;
    }();
    for (const auto& handler : handlers) {
        handler();
    }
    return result;
}

void Instrument::Settle(Handlers& handlers) {
    scope_.CatchUp();
    for (InstrumentLink* link : links_) {
        link->exchange_.Continue();
    }
    for (InstrumentLink* link : links_) {
        if (link->exchange_.UpdateServiceRequest() && link->handler_) {
            handlers.push_back(link->handler_);
        }
    }
}

InstrumentLink::InstrumentLink(std::shared_ptr<Instrument> instrument, ExchangeRule rule)
    : instrument_(std::move(instrument)), exchange_(instrument_->scope_, rule) {
    const std::lock_guard guard(instrument_->mutex_);
    instrument_->links_.push_back(this);
}

InstrumentLink::~InstrumentLink() {
    const std::lock_guard guard(instrument_->mutex_);
    std::erase(instrument_->links_, this);
}

void InstrumentLink::Write(std::span<const std::byte> bytes, bool end) {
    instrument_->Locked([&] {
        exchange_.Write(bytes, end);
        return true;
    });
}

ReadPiece InstrumentLink::Read(std::span<std::byte> target) {
    return instrument_->Locked([&] { return exchange_.Read(target); });
}

bool InstrumentLink::HasOutput() {
    return instrument_->Locked([&] { return exchange_.HasOutput(); });
}

std::uint8_t InstrumentLink::SerialPoll() {
    return instrument_->Locked([&] { return exchange_.SerialPoll(); });
}

void InstrumentLink::Clear() {
    instrument_->Locked([&] {
        exchange_.Clear();
        return true;
    });
}

void InstrumentLink::Trigger() {
    instrument_->Locked([&] {
        instrument_->scope_.StartAcquisition();
        return true;
    });
}

void InstrumentLink::SetServiceRequestHandler(std::function<void()> handler) {
    const std::lock_guard guard(instrument_->mutex_);
    handler_ = std::move(handler);
}

void InstrumentLink::Poll() {
    instrument_->Locked([] { return true; });
}

std::optional<TimePoint> InstrumentLink::NextEvent() {
    const std::lock_guard guard(instrument_->mutex_);
    return instrument_->scope_.NextEvent();
}

std::vector<std::string> ModelNames() {
    std::vector<std::string> names;
    std::ranges::transform(AllModels(), std::back_inserter(names),
                           [](const Model& model) { return std::string(model.name); });
    return names;
}

std::unique_ptr<DeviceLink> MakeInstrument(std::string_view model) {
    const auto instrument = Instrument::Make(model);
    return instrument ? instrument->Connect() : nullptr;
}

std::unique_ptr<DeviceLink> MakeInstrument(std::string_view model, Clock clock) {
    const auto instrument = Instrument::Make(model, std::move(clock));
    return instrument ? instrument->Connect() : nullptr;
}

}  // namespace virtual_scope
