// A text as the target of a format.
#pragma once

#include <string>
#include <string_view>

#include "io/args.h"
#include "io/io_buffer.h"
#include "io/partners.h"

namespace kestrion {

// Appends what is written to a text that it doesn't own. Nothing can be read and nothing is
// buffered: the other operations do nothing and return 0.
class CCStringWriter final : public IIoBuffer {
  public:
    explicit CCStringWriter(std::string& target) : target_(target) {}

    HRESULT GetByte(BYTE* value) override;
    HRESULT ReadToString(BSTR* text, std::uint32_t count, bool flush) override;
    HRESULT ReadToArray(SAFEARRAY** array, std::uint32_t count, bool flush) override;
    HRESULT Read(BYTE* target, std::uint32_t count, std::uint32_t* actual, bool flush) override;
    HRESULT ReadBytes(BYTE* target, std::uint32_t count, std::uint32_t* actual,
                      bool flush) override;
    HRESULT UngetByte() override;
    HRESULT ReadDirect(BYTE* target, std::uint32_t count, std::uint32_t* actual,
                       bool flush) override;
    HRESULT WriteChar(BYTE value, bool flush) override;
    HRESULT WriteLiteral(std::string_view text) override;
    HRESULT WriteWideString(BSTR text, std::uint32_t* actual, bool flush) override;
    HRESULT WriteArray(SAFEARRAY* bytes, std::uint32_t count, std::uint32_t* actual,
                       bool flush) override;
    HRESULT WriteText(std::string_view text, std::uint32_t* actual, bool flush) override;
    // E_INVALIDARG for null with a count.
    HRESULT WriteBytes(const BYTE* bytes, std::uint32_t count, std::uint32_t* actual,
                       bool flush) override;
    HRESULT FlushRead() override;
    HRESULT FlushWrite(bool sendEnd) override;
    HRESULT SetBufferSize(IoBufferKind which, std::uint32_t size) override;
    HRESULT GetReadBufferSize(std::uint32_t* size) override;
    HRESULT GetWriteBufferSize(std::uint32_t* size) override;
    [[nodiscard]] bool GetByteSwap() override { return false; }
    void SetByteSwap(bool) override {}

  private:
    std::string& target_;
};

// Appends to `target` what FormatWrite makes of `format`, and returns its status. Nothing is sent.
// After a failure the target keeps what earlier pieces made.
[[nodiscard]] HRESULT FormatToText(std::string& target, IEnumFormatter* formatter,
                                   std::string_view format, ArgCursor& args);

}  // namespace kestrion
