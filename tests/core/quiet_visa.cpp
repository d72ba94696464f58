#include "tests/core/quiet_visa.h"

#include <algorithm>
#include <cstring>

namespace kestrion::test {
namespace {

constexpr visa::ViStatus kNotSupported = static_cast<visa::ViStatus>(0xBFFF0067);

std::string_view answer;
QuietVisa::Counts counts;

void Count(QuietVisa::Function function) {
    ++counts[function];
}

visa::ViStatus Open(visa::ViSession* session) {
    *session = 1;
    return 0;
}

visa::ViStatus Read(visa::ViSession, visa::ViUInt8* buffer, visa::ViUInt32 count,
                    visa::ViUInt32* actual) {
    Count(QuietVisa::kRead);
    const std::size_t given = std::min<std::size_t>(count, answer.size());
    std::memcpy(buffer, answer.data(), given);
    *actual = static_cast<visa::ViUInt32>(given);
    return 0;
}

visa::ViStatus Write(visa::ViSession, const visa::ViUInt8*, visa::ViUInt32 count,
                     visa::ViUInt32* actual) {
    Count(QuietVisa::kWrite);
    *actual = count;
    return 0;
}

visa::FunctionTable MakeTable() {
    using namespace visa;
    FunctionTable table{};
    table.viOpenDefaultRM = Open;
    table.viOpen = [](ViSession, const char*, ViAccessMode, ViUInt32, ViSession* session) {
        return Open(session);
    };
    table.viClose = [](ViObject) { return ViStatus{0}; };
    table.viGetAttribute = [](ViObject, ViAttr attribute, void* value) -> ViStatus {
        Count(QuietVisa::kOther);
        // VI_ATTR_INTF_TYPE and VI_ATTR_TERMCHAR have 16 and 8 bits, the rest of what a driver
        // asks for has 16 or 32; all of it may be 0 here.
        constexpr ViAttr kTimeout = 0x3FFF001A;
        if (attribute == kTimeout) {
            std::memset(value, 0, sizeof(ViUInt32));
        } else {
            std::memset(value, 0, sizeof(ViUInt16));
        }
        return 0;
    };
    table.viSetAttribute = [](ViObject, ViAttr, ViAttrState) {
        Count(QuietVisa::kOther);
        return ViStatus{0};
    };
    table.viStatusDesc = [](ViObject, ViStatus, char* description) {
        *description = '\0';
        return ViStatus{0};
    };
    table.viRead = Read;
    table.viWrite = Write;
    table.viReadSTB = [](ViSession, ViUInt16*) {
        Count(QuietVisa::kOther);
        return kNotSupported;
    };
    table.viClear = [](ViSession) {
        Count(QuietVisa::kOther);
        return kNotSupported;
    };
    return table;
}

}  // namespace

QuietVisa::QuietVisa() {
    answer = "\n";
    counts = {};
}

QuietVisa::~QuietVisa() = default;

const visa::FunctionTable& QuietVisa::Table() const {
    static const visa::FunctionTable table = MakeTable();
    return table;
}

void QuietVisa::AnswerWith(std::string_view response) {
    answer = response;
}

QuietVisa::Counts QuietVisa::Calls() const {
    return counts;
}

void QuietVisa::ForgetCalls() {
    counts = {};
}

}  // namespace kestrion::test
