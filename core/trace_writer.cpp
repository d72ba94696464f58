#include "core/trace_writer.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <utility>

#include "core/shared_folder.h"
#include "platform/text.h"

namespace kestrion {
namespace {

constexpr std::string_view kRoot = "TraceRecords";
constexpr std::string_view kLineEnd = "\r\n";
constexpr std::string_view kExtension = ".xml";
constexpr std::string_view kTransformExtension = ".xslt";
constexpr std::string_view kDefaultTransform = "trace.xslt";
constexpr char16_t kReplacement = u'\uFFFD';

class SystemHost final : public TraceHost {
  public:
    WallTime Now() const override { return CurrentWallTime(); }
    std::uint64_t Counter() const override {
        const auto now = std::chrono::steady_clock::now().time_since_epoch();
        return static_cast<std::uint64_t>(now.count());
    }
    std::uint64_t CounterFrequency() const override {
        using Period = std::chrono::steady_clock::period;
        return static_cast<std::uint64_t>(Period::den / Period::num);
    }
    std::string CurrentDirectory() const override { return kestrion::CurrentDirectory(); }
    std::string SharedFolder() const override { return kestrion::SharedFolder(kDefaultTransform); }
    bool FileExists(const std::string& path) const override { return kestrion::FileExists(path); }
    HRESULT CreateOutputFile(const std::string& path,
                             std::unique_ptr<OutputFile>& file) const override {
        return kestrion::CreateOutputFile(path, file);
    }
};

// A text as the value of an attribute. White space other than the blank is written as a reference,
// since a reader takes it for a blank otherwise.
std::string Escape(std::u16string_view text) {
    std::u16string escaped;
    escaped.reserve(text.size());
    for (const char16_t c : text) {
        switch (c) {
            case u'&':
                escaped += u"&amp;";
                break;
            case u'<':
                escaped += u"&lt;";
                break;
            case u'>':
                escaped += u"&gt;";
                break;
            case u'"':
                escaped += u"&quot;";
                break;
            case u'\t':
                escaped += u"&#9;";
                break;
            case u'\n':
                escaped += u"&#10;";
                break;
            case u'\r':
                escaped += u"&#13;";
                break;
            default:
                escaped += c < u' ' || c >= 0xFFFE ? kReplacement : c;
        }
    }
    return Utf16ToUtf8(escaped);
}

std::string WithExtension(std::string_view name, std::string_view extension) {
    std::string result(name);
    if (!EqualsIgnoreCase(ExtensionOf(name), extension)) {
        result += extension;
    }
    return result;
}

}  // namespace

const TraceHost& SystemTraceHost() {
    static const SystemHost host;
    return host;
}

TraceWriter::TraceWriter(const TraceHost& host)
    : host_(host), processId_(CurrentProcessNumber()), frequency_(host.CounterFrequency()) {}

TraceWriter::~TraceWriter() {
    (void)Stop();
}

HRESULT TraceWriter::SetEnabled(bool value) {
    if (enabled && !value) {
        if (RunState() == TraceRunState::kStopped) {
            return E_UNEXPECTED;
        }
        TraceRunState running = TraceRunState::kRunning;
        runState_.compare_exchange_strong(running, TraceRunState::kStopped);
    }
    enabled = value;
    return S_OK;
}

HRESULT TraceWriter::Start() {
    const std::unique_lock guard = Lock();
    if (RunState() != TraceRunState::kStopped) {
        closing = true;
        return E_UNEXPECTED;
    }
    // A file may be left of a trace that an option has switched off.
    (void)EndDocument();
    const WallTime now = host_.Now();
    const std::string fileName = FileName(now);
    if (const HRESULT status = host_.CreateOutputFile(fileName, file_); Failed(status)) {
        return status;
    }
    if (const HRESULT status = BeginDocument(fileName); Failed(status)) {
        file_.reset();
        return status;
    }
    startTime_ = now.secondsSinceEpoch;
    ++runNumber_;
    runState_.store(TraceRunState::kRunning, std::memory_order_release);
    return S_OK;
}

HRESULT TraceWriter::Stop() {
    const std::unique_lock guard = Lock();
    const HRESULT status = EndDocument();
    closing = false;
    runState_.store(TraceRunState::kStopped, std::memory_order_release);
    return status;
}

HRESULT TraceWriter::CheckSave() {
    const std::unique_lock guard = Lock();
    if (file_ == nullptr) {
        return S_OK;
    }
    const std::int64_t now = host_.Now().secondsSinceEpoch;
    const std::int64_t elapsed = now - lastSaveTime_;
    // The minutes within the hour only: an interval of an hour or more is never reached.
    const std::int64_t minutes = elapsed / 60 - elapsed / 3600 * 60;
    if (minutes < saveInterval) {
        return S_OK;
    }
    lastSaveTime_ = now;
    if (const HRESULT status = file_->Flush(); Failed(status)) {
        return status;
    }
    std::uint64_t size = 0;
    if (const HRESULT status = file_->Size(size); Failed(status)) {
        return status;
    }
    const std::int32_t limit = sizeMax;
    if (limit >= 0 && size <= static_cast<std::uint64_t>(limit)) {
        return S_OK;
    }
    if (!enabled || RunState() == TraceRunState::kStopped) {
        return E_UNEXPECTED;
    }
    runState_ = TraceRunState::kSizeLimit;
    return S_OK;
}

double TraceWriter::SecondsBetween(std::uint64_t from, std::uint64_t to) const {
    return static_cast<double>(to - from) / static_cast<double>(frequency_);
}

std::string TraceWriter::FileName(const WallTime& now) const {
    const std::string folder = host_.CurrentDirectory();
    if (!traceName.empty()) {
        return ResolvePath(folder, WithExtension(traceName, kExtension));
    }
    std::array<char, 80> time{};
    std::snprintf(time.data(), time.size(), "_%04d-%02d-%02d_%02d-%02d-%02d", now.year, now.month,
                  now.day, now.hour, now.minute, now.second);
    return ResolvePath(folder, std::string(identifier).append(time.data()).append(kExtension));
}

// Empty if there is none.
std::string TraceWriter::FindTransform(const std::string& fileName) const {
    const std::string name = WithExtension(
        transformName.empty() ? kDefaultTransform : transformName, kTransformExtension);
    const std::string path = IsBareName(name) ? ResolvePath(FolderOf(fileName), name) : name;
    if (host_.FileExists(path)) {
        return path;
    }
    const std::string folder = host_.SharedFolder();
    if (folder.empty()) {
        return {};
    }
    const std::string shared = ResolvePath(folder, kDefaultTransform);
    return host_.FileExists(shared) ? shared : std::string();
}

HRESULT TraceWriter::BeginDocument(const std::string& fileName) {
    openElements_.clear();
    tagOpen_ = false;
    pending_.assign("<?xml version=\"1.0\"?>").append(kLineEnd);
    if (const std::string transform = FindTransform(fileName); !transform.empty()) {
        pending_.append("<?xml-stylesheet type=\"text/xsl\" href=\"file:\\\\")
            .append(Escape(Utf8ToUtf16(transform)))
            .append("\"?>")
            .append(kLineEnd);
    }
    pending_.append("<").append(kRoot).append(">").append(kLineEnd);
    const HRESULT status = Commit();
    eventText_.clear();
    return status;
}

HRESULT TraceWriter::EndDocument() {
    if (file_ == nullptr) {
        return S_OK;
    }
    while (!openElements_.empty()) {
        CloseElement();
    }
    pending_.append("</").append(kRoot).append(">").append(kLineEnd);
    const HRESULT status = Commit();
    file_.reset();
    return status;
}

void TraceWriter::CloseStartTag() {
    if (std::exchange(tagOpen_, false)) {
        pending_.append(">").append(kLineEnd);
    }
}

void TraceWriter::OpenElement(std::string_view name) {
    if (file_ == nullptr) {
        return;
    }
    CloseStartTag();
    const std::size_t depth = openElements_.size();
    openElements_.push_back({std::string(name), depth});
    pending_.append(depth, '\t').append("<").append(name);
    tagOpen_ = true;
}

void TraceWriter::WriteAttribute(std::string_view name, std::string_view utf8) {
    WriteAttribute(name, Utf8ToUtf16(utf8));
}

void TraceWriter::WriteAttribute(std::string_view name, std::u16string_view text) {
    if (tagOpen_ && file_ != nullptr) {
        pending_.append(" ").append(name).append("=\"").append(Escape(text)).append("\"");
    }
}

void TraceWriter::CloseElement() {
    if (file_ == nullptr || openElements_.empty()) {
        return;
    }
    const OpenedElement element = std::move(openElements_.back());
    openElements_.pop_back();
    if (std::exchange(tagOpen_, false)) {
        pending_.append("/>").append(kLineEnd);
        return;
    }
    pending_.append(element.depth, '\t')
        .append("</")
        .append(element.name)
        .append(">")
        .append(kLineEnd);
}

HRESULT TraceWriter::Commit() {
    if (file_ == nullptr) {
        return S_OK;
    }
    const HRESULT status = file_->Write(pending_);
    if (hasListeners_) {
        eventText_ += pending_;
    }
    pending_.clear();
    return status;
}

// A record ends with its last ">"; the end of that line begins the next one.
std::string TraceWriter::TakeEvent() {
    const auto end = eventText_.rfind('>');
    if (end == std::string::npos) {
        return {};
    }
    std::string record = eventText_.substr(0, end + 1);
    eventText_.erase(0, end + 1);
    return record;
}

std::int32_t TraceWriter::AddListener(Listener listener) {
    const std::lock_guard guard(listenerLock_);
    listeners_.push_back({nextListener_, std::move(listener)});
    hasListeners_ = true;
    return nextListener_++;
}

void TraceWriter::RemoveListener(std::int32_t number) {
    const std::lock_guard guard(listenerLock_);
    std::erase_if(listeners_,
                  [number](const NumberedListener& each) { return each.number == number; });
    hasListeners_ = !listeners_.empty();
}

void TraceWriter::SendEvent(std::string_view record) {
    std::vector<NumberedListener> listeners;
    {
        const std::lock_guard guard(listenerLock_);
        listeners = listeners_;
    }
    for (const NumberedListener& each : listeners) {
        try {
            each.listener(processId_, record);
        } catch (...) {
            // It is the listener's own affair; the others still get the record.
            continue;
        }
    }
}

}  // namespace kestrion
