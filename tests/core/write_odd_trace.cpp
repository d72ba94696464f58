// Writes a trace with texts of every kind, for a test of the page that is made of it:
//
//     write_odd_trace TRACE STYLESHEET
#include <cstdio>
#include <stdexcept>
#include <string>
#include <string_view>

#include "core/method_trace.h"
#include "core/parameter.h"
#include "core/trace_writer.h"
#include "kestrion/platform/bstr.h"
#include "kestrion/platform/error_info.h"
#include "kestrion/platform/safe_array.h"

namespace {

using namespace kestrion;

void Check(HRESULT status) {
    if (Failed(status)) {
        throw std::runtime_error("a step of the trace failed");
    }
}

void SetError(const char16_t* description) {
    ComPtr<ICreateErrorInfo> created;
    Check(CreateErrorInfo(created.Out()));
    Check(created->SetDescription(description));
    Check(SetErrorInfo(0, Query<IErrorInfo>(created.Get()).Get()));
}

void PutText(TraceWriter& writer, std::u16string_view text) {
    const BstrPtr value(text);
    const HRESULT status = S_OK;
    const auto records = Parameters(In("val", value.Get()));
    const CMethodTrace trace(&writer, "IKestrionChannel", "put_LabelName", &status, records);
}

void PutTexts(TraceWriter& writer) {
    constexpr char16_t kUnpaired[] = {u'a', 0xD800, u'b', 0xDC00, u'c', 0xD83D, 0xDE00};
    PutText(writer, std::u16string_view(u"\0\x01\x1F\x7F", 4));
    PutText(writer, u"\"double\" and 'single'");
    PutText(writer, u"a ]]> b <![CDATA[ c --> d <!-- e ?> f");
    PutText(writer, u"<script>alert(1)</script> &amp; &#65;");
    PutText(writer, std::u16string_view(kUnpaired, 7));
    PutText(writer, u"\u00C4\u03A9\u4E2D \u00B5V");
    PutText(writer, u"\uFFFE\uFFFF");
    PutText(writer, u"  two\tblanks\r\nand a line  ");
    PutText(writer, u"");
}

void FailWithin(TraceWriter& writer) {
    SetError(u"Unexpected value '<\u03A9>' for \"Mode\".\r\nSecond line ]]>");
    const HRESULT status = static_cast<HRESULT>(0x80047059U);
    double value = 0;
    SafeArrayPtr samples(SafeArrayCreateVector(VT_R8, 0, 4));
    samples.Elements<double>()[1] = 0.5;
    samples.Elements<double>()[2] = -2.5e-9;
    const auto records = Parameters(In("samples", samples.Get()), Out("val", &value));
    const CMethodTrace outer(&writer, "IIviScopeAcquisition", "get_Type", &status, records);
    const CMethodTrace inner(&writer, "IKestrionAcquisition", "get_Mode", &status, Parameters());
}

void Write(const char* file, const char* stylesheet) {
    TraceWriter writer;
    writer.enabled = true;
    writer.traceName = file;
    writer.transformName = stylesheet;
    writer.traceArrays = true;
    writer.arraySizeMax = 3;
    Check(writer.Start());
    PutTexts(writer);
    FailWithin(writer);
    writer.closing = true;
    const HRESULT status = S_OK;
    const CMethodTrace trace(&writer, "IIviDriver", "Close", &status, Parameters());
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fputs("usage: write_odd_trace TRACE STYLESHEET\n", stderr);
        return 2;
    }
    try {
        Write(argv[1], argv[2]);
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "write_odd_trace: %s\n", error.what());
        return 1;
    }
}
