#include "io/instr_buffer.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <utility>

#include "io/variant_array.h"
#include "platform/text.h"

namespace kestrion {
namespace {

// What one step of throwing a response away asks the instrument for.
constexpr std::uint32_t kDiscardChunk = 1000;

const BYTE* Bytes(std::string_view text) {
    return reinterpret_cast<const BYTE*>(text.data());
}

HRESULT FirstFailure(HRESULT first, HRESULT second) {
    return Failed(first) || !Failed(second) ? first : second;
}

bool EndsWith(const BYTE* bytes, std::size_t count, std::string_view end) {
    return count >= end.size() &&
           std::equal(end.begin(), end.end(), bytes + (count - end.size()),
                      [](char a, BYTE b) { return static_cast<BYTE>(a) == b; });
}

// A setting of the transport that is off for a while, if it was on; it comes back in whatever way
// the while ends, also when there's no memory for a report.
class SwitchedOff {
  public:
    using Getter = HRESULT (ILowLevelIo::*)(bool*);
    using Setter = HRESULT (ILowLevelIo::*)(bool);

    SwitchedOff(ILowLevelIo& io, Getter get, Setter set) : io_(io), set_(set) {
        status_ = (io_.*get)(&wasOn_);
        wasOn_ = wasOn_ && !Failed(status_);
        if (wasOn_) {
            status_ = (io_.*set_)(false);
        }
    }
    ~SwitchedOff() { (void)Restore(); }
    SwitchedOff(const SwitchedOff&) = delete;
    SwitchedOff& operator=(const SwitchedOff&) = delete;

    [[nodiscard]] HRESULT Status() const { return status_; }
    // Once; nothing comes back a second time.
    HRESULT Restore() { return std::exchange(wasOn_, false) ? (io_.*set_)(true) : S_OK; }

  private:
    ILowLevelIo& io_;
    const Setter set_;
    bool wasOn_ = false;
    HRESULT status_ = S_OK;
};

}  // namespace

BufferMemory AllocateBufferMemory(std::size_t size) {
    return BufferMemory(new (std::nothrow) BYTE[size]());
}

std::unique_ptr<CInstrBuffer> CInstrBuffer::Create(ILowLevelIo& io, IIoErrorReporter& reporter,
                                                   std::string_view readTerminator,
                                                   std::string_view writeTerminator,
                                                   BufferAllocator allocate) {
    std::unique_ptr<CInstrBuffer> buffer(
        new CInstrBuffer(io, reporter, readTerminator, writeTerminator, allocate));
    if (buffer->readBuffer_ == nullptr || buffer->writeBuffer_ == nullptr) {
        return nullptr;
    }
    return buffer;
}

CInstrBuffer::CInstrBuffer(ILowLevelIo& io, IIoErrorReporter& reporter,
                           std::string_view readTerminator, std::string_view writeTerminator,
                           BufferAllocator allocate)
    : io_(io),
      reporter_(reporter),
      allocate_(allocate),
      readBuffer_(allocate(kDefaultCapacity)),
      writeBuffer_(allocate(kDefaultCapacity + writeTerminator.size())),
      writeTerminator_(writeTerminator),
      readTerminator_(readTerminator) {}

// Reading -----------------------------------------------------------------------------------------

HRESULT CInstrBuffer::Fill() {
    std::uint32_t count = 0;
    const HRESULT status =
        io_.LowLevelReadNoPoll(readBuffer_.get(), readCapacity_, &count, kKeepTimeout);
    readUsed_ = std::max(readUsed_, Failed(status) ? readCapacity_ : count);
    if (Failed(status)) {
        return status;
    }
    readCount_ = count;
    readPosition_ = 0;
    SetEnded(status);
    readPayload_ = count;
    if (responseEnded_ && !readTerminator_.empty() &&
        EndsWith(readBuffer_.get(), count, readTerminator_)) {
        readPayload_ -= static_cast<std::uint32_t>(readTerminator_.size());
    }
    return status;
}

void CInstrBuffer::SetEnded(HRESULT readStatus) {
    responseEnded_ = readStatus != IoStatusMoreData;
    deviceDrained_ = responseEnded_;
}

bool CInstrBuffer::RestIsTerminator() const {
    return !readTerminator_.empty() && readCount_ == readTerminator_.size() &&
           EndsWith(readBuffer_.get() + readPosition_, readCount_, readTerminator_);
}

void CInstrBuffer::CopyOut(BYTE* target, std::uint32_t count, bool strip) {
    if (count > (strip ? readPayload_ : readCount_)) {
        return;
    }
    std::copy_n(readBuffer_.get() + readPosition_, count, target);
    readCount_ -= count;
    readPayload_ -= std::min(count, readPayload_);
    readPosition_ += count;
    if (strip && responseEnded_ && RestIsTerminator()) {
        readPosition_ += readCount_;
        readCount_ = 0;
    }
}

HRESULT CInstrBuffer::ReadStatus() const {
    return readPayload_ > 0 || !responseEnded_ ? IoStatusMoreData : S_OK;
}

HRESULT CInstrBuffer::ReadBytes(BYTE* target, std::uint32_t count, std::uint32_t* actual,
                                bool flush) {
    if (target == nullptr) {
        return ReportNullPointer("pBuf");
    }
    HRESULT status = S_OK;
    if (count > 0 && readPayload_ == 0) {
        status = Fill();
    }
    std::uint32_t got = 0;
    while (!Failed(status) && got < count && readPayload_ > 0) {
        const std::uint32_t piece = std::min(count - got, readPayload_);
        CopyOut(target + got, piece, true);
        got += piece;
        if (got < count && !responseEnded_) {
            status = Fill();
        }
    }
    if (actual != nullptr) {
        *actual = got;
    }
    if (Failed(status)) {
        return status;
    }
    return flush ? FlushRead() : ReadStatus();
}

HRESULT CInstrBuffer::Read(BYTE* target, std::uint32_t count, std::uint32_t* actual, bool flush) {
    return ReadBytes(target, count, actual, flush);
}

HRESULT CInstrBuffer::GetByte(BYTE* value) {
    // Most bytes of a response are far from its end, where the terminator would matter.
    if (value != nullptr && readPayload_ > 1 && readCount_ > readTerminator_.size() + 1) {
        *value = readBuffer_[readPosition_++];
        --readCount_;
        --readPayload_;
        return IoStatusMoreData;
    }
    std::uint32_t actual = 0;
    const HRESULT status = ReadBytes(value, 1, &actual, false);
    if (Failed(status) || actual == 1) {
        return status;
    }
    // A response whose last fill held nothing but the terminator has no byte to give.
    *value = 0;
    return status == IoStatusMoreData ? E_UNEXPECTED : S_FALSE;
}

HRESULT CInstrBuffer::UngetByte() {
    if (readPosition_ == 0) {
        return reporter_.ReportOutOfMemory(
            "Can't push character back into read buffer.  Buffer has not been read from.");
    }
    if (readPayload_ == 0) {
        responseEnded_ = deviceDrained_;
    }
    --readPosition_;
    ++readCount_;
    ++readPayload_;
    return S_OK;
}

HRESULT CInstrBuffer::ReadDirect(BYTE* target, std::uint32_t count, std::uint32_t* actual,
                                 bool flush) {
    if (target == nullptr) {
        return ReportNullPointer("pBuf");
    }
    // A binary payload may hold the termination character.
    SwitchedOff termination(io_, &ILowLevelIo::GetTerminationCharacterEnabled,
                            &ILowLevelIo::SetTerminationCharacterEnabled);
    const HRESULT status = Failed(termination.Status())
                               ? termination.Status()
                               : ReadUnbuffered(target, count, actual, flush);
    return FirstFailure(status, termination.Restore());
}

HRESULT CInstrBuffer::ReadUnbuffered(BYTE* target, std::uint32_t count, std::uint32_t* actual,
                                     bool flush) {
    const std::uint32_t buffered = std::min(count, readCount_);
    CopyOut(target, buffered, false);
    std::uint32_t direct = 0;
    HRESULT status = S_OK;
    if (count > buffered) {
        status = io_.LowLevelReadNoPoll(target + buffered, count - buffered, &direct, kKeepTimeout);
        if (!Failed(status)) {
            SetEnded(status);
        }
    }
    if (actual != nullptr) {
        *actual = buffered + direct;
    }
    if (Failed(status)) {
        return status;
    }
    return flush ? FlushRead() : ReadStatus();
}

HRESULT CInstrBuffer::ReadToString(BSTR* text, std::uint32_t count, bool flush) {
    if (text == nullptr) {
        return ReportNullPointer("pbstrBuf");
    }
    *text = nullptr;
    const BufferMemory work = allocate_(count);
    if (work == nullptr) {
        return reporter_.ReportOutOfMemory("Could not allocate BSTR memory for Read.");
    }
    std::uint32_t actual = 0;
    const HRESULT status = ReadBytes(work.get(), count, &actual, flush);
    if (Failed(status)) {
        return status;
    }
    *text = SysAllocStringByteLen(reinterpret_cast<const char*>(work.get()), actual);
    if (*text == nullptr) {
        return reporter_.ReportOutOfMemory("Could not allocate BSTR memory for Read.");
    }
    return status;
}

HRESULT CInstrBuffer::ReadToArray(SAFEARRAY** array, std::uint32_t count, bool flush) {
    if (array == nullptr) {
        return ReportNullPointer("ppsaBuf");
    }
    *array = nullptr;
    SafeArrayPtr result;
    HRESULT status = MakeReadArray(VT_UI1, count, reporter_, result);
    if (Failed(status)) {
        return status;
    }
    std::uint32_t actual = 0;
    status = ReadBytes(ArrayBytes(result.Get()), count, &actual, flush);
    if (Failed(status)) {
        return status;
    }
    if (actual < count) {
        const HRESULT resized = ResizeReadArray(result, actual, reporter_);
        if (Failed(resized)) {
            return resized;
        }
    }
    *array = result.Detach();
    return status;
}

HRESULT CInstrBuffer::FlushRead() {
    HRESULT status = deviceDrained_ ? S_OK : IoStatusMoreData;
    while (status == IoStatusMoreData) {
        std::string dropped;
        status = io_.LowLevelReadStringNoPoll(&dropped, kDiscardChunk, kKeepTimeout);
    }
    EndResponse();
    return Failed(status) ? status : S_OK;
}

void CInstrBuffer::EndResponse() {
    std::fill_n(readBuffer_.get(), readUsed_, BYTE{0});
    readUsed_ = 0;
    readCount_ = 0;
    readPayload_ = 0;
    readPosition_ = 0;
    responseEnded_ = true;
    deviceDrained_ = true;
}

void CInstrBuffer::Discard() {
    EndResponse();
    ForgetWritten();
}

// Writing -----------------------------------------------------------------------------------------

HRESULT CInstrBuffer::WriteBytes(const BYTE* bytes, std::uint32_t count, std::uint32_t* actual,
                                 bool flush) {
    if (bytes == nullptr) {
        return ReportNullPointer("pBuf");
    }
    if (count > 0 && writeCapacity_ == 0) {
        return E_UNEXPECTED;
    }
    std::uint32_t done = 0;
    while (done < count) {
        const std::uint32_t piece = std::min(count - done, writeCapacity_ - writeCount_);
        std::copy_n(bytes + done, piece, writeBuffer_.get() + writeCount_);
        done += piece;
        writeCount_ += piece;
        if (writeCount_ == writeCapacity_) {
            const HRESULT status = FlushWrite(false);
            if (Failed(status)) {
                return status;
            }
        }
    }
    if (flush) {
        const HRESULT status = FlushWrite(true);
        if (Failed(status)) {
            return status;
        }
    }
    if (actual != nullptr) {
        *actual = done;
    }
    return S_OK;
}

HRESULT CInstrBuffer::WriteChar(BYTE value, bool flush) {
    return WriteBytes(&value, 1, nullptr, flush);
}

HRESULT CInstrBuffer::WriteText(std::string_view text, std::uint32_t* actual, bool flush) {
    // An empty view may have no address; its end of a literal has one.
    return WriteBytes(Bytes(text.data() == nullptr ? std::string_view("") : text),
                      static_cast<std::uint32_t>(text.size()), actual, flush);
}

HRESULT CInstrBuffer::WriteWideString(BSTR text, std::uint32_t* actual, bool flush) {
    if (text == nullptr) {
        return ReportNullPointer("pbstrBuf");
    }
    return WriteText(NarrowToBytes(View(text)), actual, flush);
}

HRESULT CInstrBuffer::WriteArray(SAFEARRAY* bytes, std::uint32_t count, std::uint32_t* actual,
                                 bool flush) {
    if (bytes == nullptr) {
        return ReportNullPointer("ppsaBuf");
    }
    const HRESULT status = CheckVariantArray(bytes, VT_UI1, reporter_);
    if (Failed(status)) {
        return status;
    }
    const std::uint32_t held = VectorLength(bytes);
    return WriteBytes(held == 0 ? Bytes("") : ArrayBytes(bytes), std::min(count, held), actual,
                      flush);
}

HRESULT CInstrBuffer::FlushWrite(bool sendEnd) {
    if (writeCount_ == 0) {
        return S_OK;
    }
    return sendEnd ? SendBuffer(true) : SendWithoutEnd();
}

HRESULT CInstrBuffer::SendWithoutEnd() {
    SwitchedOff sendEnd(io_, &ILowLevelIo::GetSendEndEnabled, &ILowLevelIo::SetSendEndEnabled);
    const HRESULT status = Failed(sendEnd.Status()) ? sendEnd.Status() : SendBuffer(false);
    return FirstFailure(status, sendEnd.Restore());
}

HRESULT CInstrBuffer::SendBuffer(bool withTerminator) {
    std::uint32_t toSend = writeCount_;
    if (withTerminator && !EndsWith(writeBuffer_.get(), writeCount_, writeTerminator_)) {
        std::copy_n(Bytes(writeTerminator_), writeTerminator_.size(),
                    writeBuffer_.get() + writeCount_);
        toSend += static_cast<std::uint32_t>(writeTerminator_.size());
    }
    std::uint32_t sent = 0;
    HRESULT status = io_.LowLevelWriteNoPoll(writeBuffer_.get(), toSend, &sent, kKeepTimeout);
    if (Failed(status)) {
        return status;
    }
    if (sent < toSend) {
        status = reporter_.ReportIoError(
            "Flush of formatted I/O write buffer only successfully sent " + std::to_string(sent) +
            " of " + std::to_string(toSend) + " bytes to the device.");
    }
    ForgetWritten();
    return Failed(status) ? status : S_OK;
}

void CInstrBuffer::ForgetWritten() {
    std::fill_n(writeBuffer_.get(), writeCount_ + writeTerminator_.size(), BYTE{0});
    writeCount_ = 0;
}

// Sizes and terminators ---------------------------------------------------------------------------

HRESULT CInstrBuffer::SetBufferSize(IoBufferKind which, std::uint32_t size) {
    if (which == IoBufferKind::kRead || which == IoBufferKind::kBoth) {
        HRESULT status = FlushRead();
        if (!Failed(status)) {
            status = ResizeRead(size);
        }
        if (Failed(status)) {
            return status;
        }
    }
    if (which == IoBufferKind::kWrite || which == IoBufferKind::kBoth) {
        const HRESULT status = FlushWrite(true);
        return Failed(status) ? status : ResizeWrite(size);
    }
    return S_OK;
}

HRESULT CInstrBuffer::ResizeRead(std::uint32_t size) {
    BufferMemory memory = allocate_(size);
    if (memory == nullptr) {
        return reporter_.ReportOutOfMemory(
            "Couldn't allocate formatted I/O read buffer with a capacity of " +
            std::to_string(size) + " bytes.");
    }
    readBuffer_ = std::move(memory);
    readCapacity_ = size;
    readUsed_ = 0;
    EndResponse();
    return S_OK;
}

HRESULT CInstrBuffer::ResizeWrite(std::uint32_t size) {
    BufferMemory memory = allocate_(size + writeTerminator_.size());
    if (memory == nullptr) {
        return ReportNoWriteMemory(size);
    }
    writeBuffer_ = std::move(memory);
    writeCapacity_ = size;
    writeCount_ = 0;
    return S_OK;
}

HRESULT CInstrBuffer::GetReadBufferSize(std::uint32_t* size) {
    if (size == nullptr) {
        return ReportNullPointer("pulSize");
    }
    *size = readCapacity_;
    return S_OK;
}

HRESULT CInstrBuffer::GetWriteBufferSize(std::uint32_t* size) {
    if (size == nullptr) {
        return ReportNullPointer("pulSize");
    }
    *size = writeCapacity_;
    return S_OK;
}

void CInstrBuffer::SetReadTerminator(std::string_view terminator) {
    readTerminator_ = terminator;
}

HRESULT CInstrBuffer::SetWriteTerminator(std::string_view terminator) {
    BufferMemory memory = allocate_(writeCapacity_ + terminator.size());
    if (memory == nullptr) {
        return ReportNoWriteMemory(writeCapacity_);
    }
    std::copy_n(writeBuffer_.get(), writeCount_, memory.get());
    writeBuffer_ = std::move(memory);
    writeTerminator_ = terminator;
    return S_OK;
}

HRESULT CInstrBuffer::ReportNullPointer(std::string_view parameter) {
    return reporter_.ReportNullPointer(parameter, "");
}

HRESULT CInstrBuffer::ReportNoWriteMemory(std::uint32_t size) {
    return reporter_.ReportOutOfMemory(
        "Couldn't allocate formatted I/O write buffer with a capacity of " + std::to_string(size) +
        " bytes.");
}

}  // namespace kestrion
