// The script of the scripted library: what is expected, what is answered and what goes wrong.
#include "tests/io/fake_visa.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <limits>
#include <utility>

#include "tests/io/fake_visa_functions.h"

namespace kestrion {

using namespace visa;  // the types of the table
using namespace fake_visa;

std::string fake_visa::Quote(std::string_view bytes) {
    std::string text = "\"";
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '\n') {
            text += "\\n";
        } else if (c == '"' || c == '\\') {
            text += '\\';
            text += c;
        } else if (byte < 0x20 || byte > 0x7E) {
            char code[8];
            (void)std::snprintf(code, sizeof(code), "\\x%02X", byte);
            text += code;
        } else {
            text += c;
        }
    }
    return text + '"';
}

FakeVisa::Exchange& FakeVisa::Exchange::Reply(std::string_view bytes) {
    responses_.push_back({std::string(bytes), true});
    return *this;
}

FakeVisa::Exchange& FakeVisa::Exchange::ReplyWithoutEnd(std::string_view bytes) {
    responses_.push_back({std::string(bytes), false});
    return *this;
}

FakeVisa::Exchange& FakeVisa::Exchange::RequestService() {
    ++serviceRequests_;
    return *this;
}

FakeVisa::Exchange& FakeVisa::Exchange::StatusByte(std::uint8_t value) {
    statusByte_ = value;
    return *this;
}

FakeVisa::FakeVisa() {
    attributes_ = {
        {kSendEnd, {1, 2}},        {kTermChar, {10, 1}},       {0x3FFF001A, {2000, 4}},
        {0x3FFF001C, {1, 2}},      {kTermCharEnabled, {0, 2}}, {kInterfaceType, {6, 2}},
        {0x3FFF0175, {0x0FFF, 2}}, {0x3FFF0176, {0, 2}},       {0x3FFF0005, {50, 4}},
    };
    texts_ = {{kResourceClass, "INSTR"},
              {0xBFFF00E9, "TCPIP0 (scripted)"},
              {0xBFFF0174, "Scripted maker"}};
}

FakeVisa::~FakeVisa() {
    Forget(this, open_);
}

const FunctionTable& FakeVisa::Table() {
    OpenNext(this);
    return fake_visa::Table();
}

FakeVisa::Exchange& FakeVisa::Expect(std::string_view command) {
    const std::scoped_lock lock(mutex_);
    scripted_ = true;
    script_.emplace_back();
    script_.back().command_ = command;
    return script_.back();
}

void FakeVisa::AnswerWith(std::function<std::string(std::string_view message)> answer) {
    const std::scoped_lock lock(mutex_);
    answer_ = std::move(answer);
}

void FakeVisa::Respond(std::string_view bytes, bool end) {
    const std::scoped_lock lock(mutex_);
    responses_.push_back({std::string(bytes), end});
}

void FakeVisa::SetInterfaceType(std::uint16_t type) {
    SetAttributeValue(kInterfaceType, type, 2);
}

void FakeVisa::SetResourceName(std::string name) {
    const std::scoped_lock lock(mutex_);
    texts_[kResourceName] = std::move(name);
}

void FakeVisa::SetResourceClass(std::string name) {
    const std::scoped_lock lock(mutex_);
    texts_[kResourceClass] = std::move(name);
}

void FakeVisa::SetAttributeValue(ViAttr attribute, std::uint64_t value, std::size_t bytes) {
    const std::scoped_lock lock(mutex_);
    attributes_[attribute] = {value, bytes};
}

std::uint64_t FakeVisa::AttributeValue(ViAttr attribute) const {
    const std::scoped_lock lock(mutex_);
    return attributes_.at(attribute).value;
}

void FakeVisa::SetStatusByte(std::uint8_t value) {
    const std::scoped_lock lock(mutex_);
    statusByte_ = value;
}

void FakeVisa::RequestService() {
    const std::scoped_lock lock(mutex_);
    ++pendingEvents_;
}

void FakeVisa::FailCall(int number, ViStatus status) {
    const std::scoped_lock lock(mutex_);
    failingCalls_[number] = status;
}

void FakeVisa::FailFunction(std::string function, ViStatus status) {
    const std::scoped_lock lock(mutex_);
    if (status == kOk) {
        failingFunctions_.erase(function);
    } else {
        failingFunctions_[std::move(function)] = status;
    }
}

void FakeVisa::FailAttribute(ViAttr attribute, ViStatus status) {
    const std::scoped_lock lock(mutex_);
    if (status == kOk) {
        failingAttributes_.erase(attribute);
    } else {
        failingAttributes_[attribute] = status;
    }
}

void FakeVisa::LimitReads(std::size_t bytes, bool timeout) {
    const std::scoped_lock lock(mutex_);
    readLimit_ = bytes;
    readLimitTimeout_ = timeout;
}

void FakeVisa::LimitWrites(std::size_t bytes) {
    const std::scoped_lock lock(mutex_);
    writeLimit_ = bytes;
}

void FakeVisa::ShortenCall(int number, std::size_t bytes) {
    const std::scoped_lock lock(mutex_);
    limitedCalls_[number] = {bytes, false};
}

void FakeVisa::DelayCall(int number, std::size_t bytes) {
    const std::scoped_lock lock(mutex_);
    limitedCalls_[number] = {bytes, true};
}

void FakeVisa::CutLink(int number) {
    const std::scoped_lock lock(mutex_);
    cutAt_ = number;
}

FakeVisa::Limit FakeVisa::LimitOf(bool read) const {
    constexpr std::size_t kAll = std::numeric_limits<std::size_t>::max();
    if (const auto found = limitedCalls_.find(callCount_); found != limitedCalls_.end()) {
        return found->second;
    }
    if (read) {
        return {readLimit_ > 0 ? readLimit_ : kAll, readLimitTimeout_};
    }
    return {writeLimit_ > 0 ? writeLimit_ : kAll, false};
}

void FakeVisa::SetDescription(ViStatus status, std::string text) {
    const std::scoped_lock lock(mutex_);
    descriptions_[status] = std::move(text);
}

void FakeVisa::OnTransfer(std::function<void()> callback) {
    const std::scoped_lock lock(mutex_);
    onTransfer_ = std::move(callback);
}

std::vector<std::string> FakeVisa::Calls() const {
    const std::scoped_lock lock(mutex_);
    return calls_;
}

std::vector<std::string> FakeVisa::CallsOf(std::string_view prefix) const {
    std::vector<std::string> found = Calls();
    std::erase_if(found, [prefix](const std::string& call) { return !call.starts_with(prefix); });
    return found;
}

void FakeVisa::ForgetCalls() {
    const std::scoped_lock lock(mutex_);
    calls_.clear();
    callCount_ = 0;
}

int FakeVisa::CallCount() const {
    const std::scoped_lock lock(mutex_);
    return callCount_;
}

std::string FakeVisa::Written() const {
    const std::scoped_lock lock(mutex_);
    return written_;
}

bool FakeVisa::Finished() const {
    const std::scoped_lock lock(mutex_);
    return script_.empty() && mismatches_.empty() && message_.empty();
}

std::vector<std::string> FakeVisa::Mismatches() const {
    const std::scoped_lock lock(mutex_);
    return mismatches_;
}

int FakeVisa::OpenObjects() const {
    const std::scoped_lock lock(mutex_);
    return static_cast<int>(open_.size());
}

bool FakeVisa::Locked() const {
    const std::scoped_lock lock(mutex_);
    return locks_ > 0;
}

ViStatus FakeVisa::Begin(std::string call, std::string_view function) {
    const std::scoped_lock lock(mutex_);
    calls_.push_back(std::move(call));
    ++callCount_;
    if (const auto failing = failingCalls_.find(callCount_); failing != failingCalls_.end()) {
        return failing->second;
    }
    constexpr std::array<std::string_view, 6> kOfTheInstrument{
        "viRead", "viWrite", "viReadSTB", "viClear", "viAssertTrigger", "viWaitOnEvent"};
    if (cutAt_ > 0 && callCount_ >= cutAt_ &&
        std::ranges::find(kOfTheInstrument, function) != kOfTheInstrument.end()) {
        return kConnectionLost;
    }
    const auto failing = failingFunctions_.find(function);
    return failing == failingFunctions_.end() ? kOk : failing->second;
}

// The message that END has completed is held against the script. The caller holds the lock.
void FakeVisa::TakeMessage() {
    const std::string message = std::exchange(message_, {});
    if (answer_ && (script_.empty() || script_.front().command_ != message)) {
        if (std::string response = answer_(message); !response.empty()) {
            responses_.push_back({std::move(response), true});
        }
        return;
    }
    if (!scripted_) {
        return;
    }
    if (script_.empty() || script_.front().command_ != message) {
        mismatches_.push_back(Quote(message) + " came in place of " +
                              (script_.empty() ? "nothing" : Quote(script_.front().command_)));
        return;
    }
    const Exchange exchange = std::move(script_.front());
    script_.pop_front();
    responses_.insert(responses_.end(), exchange.responses_.begin(), exchange.responses_.end());
    pendingEvents_ += exchange.serviceRequests_;
    if (exchange.statusByte_ >= 0) {
        statusByte_ = static_cast<std::uint8_t>(exchange.statusByte_);
    }
}

}  // namespace kestrion
