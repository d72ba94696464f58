#include "io/format_text_writer.h"

#include "io/format_writer.h"
#include "platform/text.h"

namespace kestrion {
namespace {

void SetActual(std::uint32_t* actual, std::size_t count) {
    if (actual != nullptr) {
        *actual = static_cast<std::uint32_t>(count);
    }
}

}  // namespace

HRESULT CCStringWriter::WriteChar(BYTE value, bool) {
    target_ += static_cast<char>(value);
    return S_OK;
}

HRESULT CCStringWriter::WriteLiteral(std::string_view text) {
    target_ += text;
    return S_OK;
}

HRESULT CCStringWriter::WriteWideString(BSTR text, std::uint32_t* actual, bool) {
    return WriteText(NarrowToBytes(View(text)), actual, false);
}

HRESULT CCStringWriter::WriteArray(SAFEARRAY* bytes, std::uint32_t count, std::uint32_t* actual,
                                   bool) {
    void* data = nullptr;
    LONG upper = -1;
    if (bytes == nullptr || Failed(SafeArrayGetUBound(bytes, 1, &upper)) ||
        std::int64_t{upper} + 1 < std::int64_t{count} || SafeArrayGetDim(bytes) != 1 ||
        bytes->cbElements != 1 || Failed(SafeArrayAccessData(bytes, &data))) {
        return E_INVALIDARG;
    }
    const HRESULT status = WriteBytes(static_cast<const BYTE*>(data), count, actual, false);
    const HRESULT unlocked = SafeArrayUnaccessData(bytes);
    return Failed(status) ? status : unlocked;
}

HRESULT CCStringWriter::WriteText(std::string_view text, std::uint32_t* actual, bool) {
    target_ += text;
    SetActual(actual, text.size());
    return S_OK;
}

HRESULT CCStringWriter::WriteBytes(const BYTE* bytes, std::uint32_t count, std::uint32_t* actual,
                                   bool) {
    if (bytes == nullptr && count > 0) {
        return E_INVALIDARG;
    }
    if (count > 0) {
        target_.append(reinterpret_cast<const char*>(bytes), count);
    }
    SetActual(actual, count);
    return S_OK;
}

HRESULT CCStringWriter::GetByte(BYTE*) {
    return S_OK;
}

HRESULT CCStringWriter::ReadToString(BSTR*, std::uint32_t, bool) {
    return S_OK;
}

HRESULT CCStringWriter::ReadToArray(SAFEARRAY**, std::uint32_t, bool) {
    return S_OK;
}

HRESULT CCStringWriter::Read(BYTE*, std::uint32_t, std::uint32_t* actual, bool) {
    SetActual(actual, 0);
    return S_OK;
}

HRESULT CCStringWriter::ReadBytes(BYTE*, std::uint32_t, std::uint32_t* actual, bool) {
    SetActual(actual, 0);
    return S_OK;
}

HRESULT CCStringWriter::UngetByte() {
    return S_OK;
}

HRESULT CCStringWriter::ReadDirect(BYTE*, std::uint32_t, std::uint32_t* actual, bool) {
    SetActual(actual, 0);
    return S_OK;
}

HRESULT CCStringWriter::FlushRead() {
    return S_OK;
}

HRESULT CCStringWriter::FlushWrite(bool) {
    return S_OK;
}

HRESULT CCStringWriter::SetBufferSize(IoBufferKind, std::uint32_t) {
    return S_OK;
}

HRESULT CCStringWriter::GetReadBufferSize(std::uint32_t*) {
    return S_OK;
}

HRESULT CCStringWriter::GetWriteBufferSize(std::uint32_t*) {
    return S_OK;
}

HRESULT FormatToText(std::string& target, IEnumFormatter* formatter, std::string_view format,
                     ArgCursor& args) {
    CCStringWriter writer(target);
    return FormatWrite(writer, format, args, formatter);
}

}  // namespace kestrion
