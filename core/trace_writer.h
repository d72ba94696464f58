// The trace file: an XML document of the calls of one driver object, for a stylesheet to show.
//
// The writer owns the file and turns elements and attributes into a well-formed document, whatever
// their text; CMethodTrace writes the records.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "kestrion/platform/types.h"
#include "platform/files.h"
#include "platform/system_time.h"

namespace kestrion {

// What the trace asks of the system: a seam for tests. Members may be called from any thread.
class TraceHost {
  public:
    virtual ~TraceHost() = default;
    [[nodiscard]] virtual WallTime Now() const = 0;
    // A counter for time differences, and its steps per second.
    [[nodiscard]] virtual std::uint64_t Counter() const = 0;
    [[nodiscard]] virtual std::uint64_t CounterFrequency() const = 0;
    [[nodiscard]] virtual std::string CurrentDirectory() const = 0;
    // Where the stylesheet lies that the driver brings along; empty if nowhere.
    [[nodiscard]] virtual std::string SharedFolder() const = 0;
    [[nodiscard]] virtual bool FileExists(const std::string& path) const = 0;
    [[nodiscard]] virtual HRESULT CreateOutputFile(const std::string& path,
                                                   std::unique_ptr<OutputFile>& file) const = 0;
};

// The system itself; lives as long as the process.
[[nodiscard]] const TraceHost& SystemTraceHost();

enum class TraceRunState : std::int32_t {
    kRunning = 0,
    kStopped = 1,
    kSizeLimit = 2,  // stopped because the file is too large
};

class TraceWriter {
  public:
    // Receives the id of the process and the text of one record.
    using Listener = std::function<void(std::uint32_t processId, std::string_view record)>;

    // `host` has to outlive the writer.
    explicit TraceWriter(const TraceHost& host = SystemTraceHost());
    TraceWriter(const TraceWriter&) = delete;
    TraceWriter& operator=(const TraceWriter&) = delete;
    // Finishes an open file.
    ~TraceWriter();

    // Settings, which the options give before Start(). Texts are UTF-8.
    std::string traceName;      // the file; a name with the time in it when empty
    std::string identifier;     // the driver's, for that name
    std::string transformName;  // the stylesheet; "trace.xslt" when empty
    std::atomic<bool> enabled{false};
    std::atomic<std::int32_t> sizeMax{1000000};  // bytes
    std::atomic<bool> traceArrays{false};        // whether elements of arrays are written,
    std::atomic<std::int32_t> arraySizeMax{10};  // and how many
    std::atomic<std::int32_t> saveInterval{1};   // minutes
    // The record that ends next is the last one of the file; set while the driver closes.
    std::atomic<bool> closing{false};

    // The option for `enabled`. Switching off what is on stops a running trace; E_UNEXPECTED when
    // it has stopped before.
    [[nodiscard]] HRESULT SetEnabled(bool value);

    [[nodiscard]] TraceRunState RunState() const {
        return runState_.load(std::memory_order_acquire);
    }
    // The seconds since the epoch of the start and of the last save; 0 before the first.
    [[nodiscard]] std::int64_t StartTime() const { return startTime_; }
    [[nodiscard]] std::int64_t LastSaveTime() const { return lastSaveTime_; }

    // Opens the file and begins the document. The system's status when the file can't be opened or
    // begun. E_UNEXPECTED unless stopped: the file is then one that a failed start-up has left, and
    // the record that ends next is its last one, so that the start after this one succeeds.
    [[nodiscard]] HRESULT Start();
    // Ends the document and closes the file, if there is one; the writer is stopped then.
    HRESULT Stop();
    // Flushes the file and tests its size, if the time has come: when the minutes of the hour since
    // the last save are at least `saveInterval`. The system's status when that fails.
    [[nodiscard]] HRESULT CheckSave();

    // Returns a number to remove it by. Any thread.
    std::int32_t AddListener(Listener listener);
    void RemoveListener(std::int32_t number);

    // A number for each Start(), so that a record isn't ended in another file than it began in.
    [[nodiscard]] std::uint32_t RunNumber() const { return runNumber_; }
    [[nodiscard]] std::uint64_t Counter() const { return host_.Counter(); }
    // The time between two values of the counter.
    [[nodiscard]] double SecondsBetween(std::uint64_t from, std::uint64_t to) const;
    [[nodiscard]] WallTime Now() const { return host_.Now(); }

    // Elements are gathered by the thread that holds the lock, and written by Commit(). Without an
    // open file all of this does nothing.
    [[nodiscard]] std::unique_lock<std::mutex> Lock() { return std::unique_lock(lock_); }
    [[nodiscard]] bool IsOpen() const { return file_ != nullptr; }
    void OpenElement(std::string_view name);
    // Only directly behind OpenElement() or another attribute; ignored elsewhere. What XML can't
    // hold becomes U+FFFD.
    void WriteAttribute(std::string_view name, std::string_view utf8);
    void WriteAttribute(std::string_view name, std::u16string_view text);
    void CloseElement();
    [[nodiscard]] HRESULT Commit();
    // The text since the last call that a listener gets; empty without listeners.
    [[nodiscard]] std::string TakeEvent();

    // Hands a record to the listeners; not under the lock, since they may call the driver. What a
    // listener throws is dropped.
    void SendEvent(std::string_view record);

  private:
    struct OpenedElement {
        std::string name;
        std::size_t depth;
    };
    struct NumberedListener {
        std::int32_t number;
        Listener listener;
    };

    [[nodiscard]] std::string FileName(const WallTime& now) const;
    [[nodiscard]] std::string FindTransform(const std::string& fileName) const;
    HRESULT BeginDocument(const std::string& fileName);
    HRESULT EndDocument();
    void CloseStartTag();

    const TraceHost& host_;
    std::mutex lock_;
    std::int64_t startTime_ = 0;
    std::atomic<std::int64_t> lastSaveTime_{0};
    std::uint32_t processId_;
    std::uint64_t frequency_;
    std::atomic<TraceRunState> runState_{TraceRunState::kStopped};
    std::atomic<std::uint32_t> runNumber_{0};
    bool tagOpen_ = false;
    std::unique_ptr<OutputFile> file_;
    std::string pending_;
    std::string eventText_;
    // Below the root element; their number is the depth.
    std::vector<OpenedElement> openElements_;

    std::mutex listenerLock_;
    std::vector<NumberedListener> listeners_;
    std::atomic<bool> hasListeners_{false};
    std::int32_t nextListener_ = 1;
};

}  // namespace kestrion
