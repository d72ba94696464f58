#include "tests/visa/scripted_device.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "tests/visa/loopback_server.h"

namespace visa_provider::testing {

namespace {

// Takes the word off the front of the text if it is there.
bool TakeWord(std::string_view& text, std::string_view word) {
    if (!text.starts_with(word)) {
        return false;
    }
    text.remove_prefix(word.size());
    return true;
}

int TakeNumber(std::string_view& text) {
    const auto end = std::min(text.find(' '), text.size());
    const int number = std::atoi(std::string(text.substr(0, end)).c_str());
    text.remove_prefix(std::min(end + 1, text.size()));
    return number;
}

}  // namespace

std::string Letters(std::size_t count) {
    std::string text(count, ' ');
    for (std::size_t i = 0; i < count; ++i) {
        text[i] = static_cast<char>('A' + i % 26);
    }
    return text;
}

std::string ResponseTo(std::string_view message) {
    if (message == "*IDN?") {
        return "KESTRION,TEST\n";
    }
    if (TakeWord(message, "ECHO ")) {
        return std::string(message) + "\n";
    }
    if (TakeWord(message, "BLOCK ")) {
        return Letters(static_cast<std::size_t>(TakeNumber(message))) + "\n";
    }
    return {};
}

void AnswerAll(Peer& peer) {
    while (const auto line = peer.ReceiveLine()) {
        if (!peer.Send(ResponseTo(*line))) {
            return;
        }
    }
}

ScriptedDevice::ScriptedDevice(std::shared_ptr<Record> record) : record_(std::move(record)) {}

ScriptedDevice::~ScriptedDevice() {
    const std::lock_guard guard(record_->mutex);
    record_->isAlive = false;
}

void ScriptedDevice::Respond(std::string response) {
    if (!response.empty()) {
        responses_.push_back(std::move(response));
    }
}

void ScriptedDevice::Execute(std::string_view message) {
    const auto after = [](int milliseconds) {
        return std::chrono::steady_clock::now() + std::chrono::milliseconds(milliseconds);
    };
    if (message == "SRQ") {
        requestDue_ = true;
    } else if (TakeWord(message, "SRQLATER ")) {
        later_.emplace(after(TakeNumber(message)), std::string());
    } else if (TakeWord(message, "LATER ")) {
        const auto moment = after(TakeNumber(message));
        later_.emplace(moment, std::string(message) + "\n");
    } else if (TakeWord(message, "STB ")) {
        statusByte_ = static_cast<std::uint8_t>(TakeNumber(message));
    } else {
        Respond(ResponseTo(message));
    }
}

void ScriptedDevice::Write(std::span<const std::byte> bytes, bool end) {
    const std::string text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    {
        const std::lock_guard guard(record_->mutex);
        record_->writes.push_back(text + (end ? "<END>" : ""));
    }
    std::function<void()> handler;
    {
        const std::lock_guard guard(mutex_);
        input_ += text;
        if (end && !input_.ends_with('\n')) {
            input_ += '\n';
        }
        for (auto stop = input_.find('\n'); stop != std::string::npos; stop = input_.find('\n')) {
            Execute(input_.substr(0, stop));
            input_.erase(0, stop + 1);
        }
        if (std::exchange(requestDue_, false)) {
            requestsService_ = true;
            handler = handler_;
        }
    }
    if (handler) {
        handler();
    }
}

virtual_scope::ReadPiece ScriptedDevice::Read(std::span<std::byte> target) {
    const std::lock_guard guard(mutex_);
    if (responses_.empty()) {
        return {};
    }
    // One response message at a time: END comes with its line feed.
    const auto rest = std::string_view(responses_.front()).substr(taken_);
    const std::size_t count = std::min(rest.size(), target.size());
    std::memcpy(target.data(), rest.data(), count);
    const bool end = count == rest.size();
    taken_ += count;
    if (end) {
        DropFirstResponse();
    }
    return {count, end};
}

void ScriptedDevice::DropFirstResponse() {
    responses_.pop_front();
    taken_ = 0;
}

bool ScriptedDevice::HasOutput() {
    const std::lock_guard guard(mutex_);
    return !responses_.empty();
}

std::uint8_t ScriptedDevice::SerialPoll() {
    const std::lock_guard guard(mutex_);
    const bool requested = std::exchange(requestsService_, false);
    return static_cast<std::uint8_t>(statusByte_ | (requested ? 0x40 : 0));
}

void ScriptedDevice::Clear() {
    {
        const std::lock_guard guard(mutex_);
        input_.clear();
        responses_.clear();
        taken_ = 0;
    }
    const std::lock_guard guard(record_->mutex);
    ++record_->clears;
}

void ScriptedDevice::Trigger() {
    const std::lock_guard guard(record_->mutex);
    ++record_->triggers;
}

void ScriptedDevice::SetServiceRequestHandler(std::function<void()> handler) {
    const std::lock_guard guard(mutex_);
    handler_ = std::move(handler);
}

void ScriptedDevice::RequestService() {
    std::function<void()> handler;
    {
        const std::lock_guard guard(mutex_);
        requestsService_ = true;
        handler = handler_;
    }
    if (handler) {
        handler();
    }
}

void ScriptedDevice::Poll() {
    {
        const std::lock_guard guard(record_->mutex);
        ++record_->polls;
    }
    bool requests = false;
    {
        const std::lock_guard guard(mutex_);
        const auto now = std::chrono::steady_clock::now();
        while (!later_.empty() && later_.begin()->first <= now) {
            if (later_.begin()->second.empty()) {
                requests = true;
            }
            Respond(later_.begin()->second);
            later_.erase(later_.begin());
        }
    }
    if (requests) {
        RequestService();
    }
}

std::optional<virtual_scope::TimePoint> ScriptedDevice::NextEvent() {
    const std::lock_guard guard(mutex_);
    if (later_.empty()) {
        return std::nullopt;
    }
    return later_.begin()->first;
}

}  // namespace visa_provider::testing
