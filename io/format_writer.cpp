#include "io/format_writer.h"

#include <algorithm>
#include <array>
#include <limits>

#include "io/format_plan.h"
#include "io/format_write_pieces.h"

namespace kestrion {
namespace {

bool IsArrayRow(WriteRow row) {
    switch (row) {
        case WriteRow::kIntegerArray:
        case WriteRow::kRealArray:
        case WriteRow::kDefiniteBlock:
        case WriteRow::kIndefiniteBlock:
        case WriteRow::kRawArray:
        case WriteRow::kStringArray:
        case WriteRow::kEnumArray:
            return true;
        default:
            return false;
    }
}

HRESULT WriteConversion(IIoBuffer& buffer, const FormatPiece& piece, ArgCursor& args,
                        IEnumFormatter* formatter) {
    if (Failed(piece.status)) {
        return piece.status;
    }
    FormatConversion conversion = piece.conversion;
    ResolveWriteArguments(conversion, args);
    switch (WriteRow{piece.row}) {
        case WriteRow::kInteger:
            return WriteInteger(buffer, conversion, args);
        case WriteRow::kIntegerArray:
            return WriteIntegerArray(buffer, conversion, args);
        case WriteRow::kReal:
            return WriteReal(buffer, conversion, args);
        case WriteRow::kRealArray:
            return WriteRealArray(buffer, conversion, args);
        case WriteRow::kDefiniteBlock:
            return WriteDefiniteBlock(buffer, conversion, args);
        case WriteRow::kIndefiniteBlock:
            return WriteIndefiniteBlock(buffer, conversion, args);
        case WriteRow::kRawArray:
            return WriteRawArray(buffer, conversion, args);
        case WriteRow::kCharacter:
            return WriteCharacter(buffer, conversion, args);
        case WriteRow::kString:
            return WriteString(buffer, conversion, args);
        case WriteRow::kStringArray:
            return WriteStringArray(buffer, conversion, args);
        case WriteRow::kEnum:
            return WriteEnum(buffer, conversion, args, formatter);
        case WriteRow::kEnumArray:
            return WriteEnumArray(buffer, conversion, args, formatter);
        case WriteRow::kLiteral:
            break;
    }
    return E_INVALIDARG;
}

// Gathers a field's parts into texts of moderate size, so that a usual field is one write.
class FieldWriter {
  public:
    explicit FieldWriter(IIoBuffer& buffer) : buffer_(buffer) {}

    void Fill(std::uint64_t count, char c) {
        while (count > 0 && Succeeded(status_)) {
            const std::size_t part =
                static_cast<std::size_t>(std::min<std::uint64_t>(count, chunk_.size() - used_));
            std::fill_n(chunk_.data() + used_, part, c);
            Advance(part);
            count -= part;
        }
    }
    void Put(std::string_view text) {
        while (!text.empty() && Succeeded(status_)) {
            const std::size_t part = std::min(text.size(), chunk_.size() - used_);
            std::copy_n(text.data(), part, chunk_.data() + used_);
            Advance(part);
            text.remove_prefix(part);
        }
    }
    HRESULT Finish() {
        Send();
        return status_;
    }

  private:
    void Advance(std::size_t part) {
        used_ += part;
        if (used_ == chunk_.size()) {
            Send();
        }
    }
    void Send() {
        if (used_ > 0 && Succeeded(status_)) {
            status_ = WriteAll(buffer_, {chunk_.data(), used_});
        }
        used_ = 0;
    }

    IIoBuffer& buffer_;
    std::array<char, 512> chunk_;
    std::size_t used_ = 0;
    HRESULT status_ = S_OK;
};

}  // namespace

HRESULT WriteAll(IIoBuffer& buffer, std::string_view text) {
    while (!text.empty()) {
        const std::string_view part = text.substr(0, std::numeric_limits<std::int32_t>::max());
        std::uint32_t actual = 0;
        const HRESULT status = buffer.WriteText(part, &actual, false);
        if (Failed(status)) {
            return status;
        }
        if (actual != part.size()) {
            return E_UNEXPECTED;
        }
        text.remove_prefix(part.size());
    }
    return S_OK;
}

HRESULT WriteField(IIoBuffer& buffer, const TextField& field) {
    if (field.Size() == field.body.size()) {
        return WriteAll(buffer, field.body);
    }
    FieldWriter writer(buffer);
    writer.Fill(field.blanksBefore, ' ');
    writer.Put(field.prefix);
    writer.Fill(field.zeros, '0');
    writer.Put(field.body);
    writer.Fill(field.zerosBehind, '0');
    writer.Put(field.tail);
    writer.Fill(field.blanksBehind, ' ');
    return writer.Finish();
}

HRESULT WriteSeparatorBefore(IIoBuffer& buffer, const FormatConversion& conversion, std::size_t i) {
    if (i == 0) {
        return S_OK;
    }
    return buffer.WriteChar(static_cast<BYTE>(SeparatorByte(conversion.separators.front())), false);
}

FieldFormat ToFieldFormat(const FormatConversion& conversion) {
    FieldFormat format;
    format.letter = conversion.letter;
    format.leftAlign = conversion.leftAlign;
    format.plusSign = conversion.plusSign;
    format.blankSign = conversion.blankSign;
    format.zeroFill = conversion.zeroFill;
    format.width = conversion.width.value;
    format.precision = conversion.precision.value;
    return format;
}

HRESULT FormatWrite(IIoBuffer& buffer, std::string_view format, ArgCursor& args,
                    IEnumFormatter* formatter, bool skipArrays) {
    const BorrowedPlan plan(format, FormatDirection::kWrite);
    if (Failed(plan->Status())) {
        return plan->Status();
    }
    for (const FormatPiece& piece : plan->Pieces()) {
        const WriteRow row{piece.row};
        if (skipArrays && IsArrayRow(row)) {
            continue;
        }
        const HRESULT status = row == WriteRow::kLiteral
                                   ? buffer.WriteLiteral(piece.text)
                                   : WriteConversion(buffer, piece, args, formatter);
        if (Failed(status)) {
            return status;
        }
    }
    return S_OK;
}

}  // namespace kestrion
