// Reads whose arrays and texts find no memory: each allocation fails in turn, the status and the
// report tell so, nothing is handed out, and the session goes on. This program's calloc is the one
// below (see CMakeLists.txt): arrays and counted texts come from it.
#include <sys/mman.h>

#include <cstdlib>
#include <functional>
#include <string>
#include <vector>

#include "tests/io/session_fixture.h"

namespace {

int allocationThatFails = 0;  // counted from 1; 0 for none

bool FailsNow() {
    return allocationThatFails > 0 && --allocationThatFails == 0;
}

}  // namespace

extern "C" {
void* __real_calloc(std::size_t count, std::size_t size);
void* __wrap_calloc(std::size_t count, std::size_t size);

void* __wrap_calloc(std::size_t count, std::size_t size) {
    return FailsNow() ? nullptr : __real_calloc(count, size);
}

void* __real_mmap(void* address, std::size_t length, int protection, int flags, int file,
                  off_t offset);
void* __wrap_mmap(void* address, std::size_t length, int protection, int flags, int file,
                  off_t offset);

void* __wrap_mmap(void* address, std::size_t length, int protection, int flags, int file,
                  off_t offset) {
    return FailsNow() ? MAP_FAILED : __real_mmap(address, length, protection, flags, file, offset);
}
}

namespace kestrion {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct Failure {
    HRESULT status;
    std::string report;  // empty where the status stands for itself
};

const Failure kArray{kOutOfMemoryStatus,
                     "ReportOutOfMemory(Could not allocate SAFEARRAY memory for Read.)"};
const Failure kPlain{E_OUTOFMEMORY, ""};

struct Reading {
    std::string name;
    std::vector<std::string> responses;
    std::function<HRESULT(CVisaCSession&, SAFEARRAY** array, BSTR* text)> run;
    std::vector<Failure> failures;  // of the first allocation, the second ...
};

const Failure kLowLevel{kOutOfMemoryStatus,
                        "ReportOutOfMemory(LowLevelReadNoPoll could not allocate SAFEARRAY.)"};

std::vector<Reading> Readings() {
    const std::string list = [] {
        std::string text = "1";
        for (int i = 1; i < 1030; ++i) {
            text += ",1";
        }
        return text + "\n";
    }();
    return {
        {"Block",
         {"#18ABCDEFGH\n"},
         [](CVisaCSession& session, SAFEARRAY** array, BSTR*) {
             return session.ReadBlock(array, ElementKind::kShort, false, true);
         },
         {kArray}},
        {"ShortBlock",
         {"#18", "ABCD"},
         [](CVisaCSession& session, SAFEARRAY** array, BSTR*) {
             return session.ReadBlock(array, ElementKind::kByte, false, false);
         },
         {kArray, kArray}},
        {"HugeBlock",
         {"#9999999999"},
         [](CVisaCSession& session, SAFEARRAY** array, BSTR*) {
             return session.ReadBlock(array, ElementKind::kDouble, false, false);
         },
         {kArray}},
        {"ListOfNumbersInTwoChunks",
         {list},
         [](CVisaCSession& session, SAFEARRAY** array, BSTR*) {
             return session.ReadList(array, ElementKind::kLong, ",");
         },
         {kArray, kArray, kArray}},
        {"ListOfTexts",
         {"A,B\n"},
         [](CVisaCSession& session, SAFEARRAY** array, BSTR*) {
             return session.ReadList(array, ElementKind::kText, ",");
         },
         {kArray, kPlain, kPlain, kArray}},
        {"Bytes",
         {"AB\n"},
         [](CVisaCSession& session, SAFEARRAY** array, BSTR*) {
             return session.ReadBytes(array, 10, true);
         },
         {kArray, kArray}},
        {"LowLevelBytes",
         {"AB\n"},
         [](CVisaCSession& session, SAFEARRAY** array, BSTR*) {
             return session.LowLevelRead(array, 10, kKeepTimeout);
         },
         {kLowLevel, kLowLevel}},
        {"LowLevelText",
         {"AB\n"},
         [](CVisaCSession& session, SAFEARRAY**, BSTR* text) {
             return session.LowLevelReadString(text, 10, kKeepTimeout);
         },
         {kPlain}},
        {"Text",
         {"AB\n"},
         [](CVisaCSession& session, SAFEARRAY**, BSTR* text) { return session.ReadString(text); },
         {kPlain}},
        {"FormattedText",
         {"AB\n"},
         [](CVisaCSession& session, SAFEARRAY**, BSTR* text) {
             return session.Scanf("%$Bt", text);
         },
         {kPlain}},
        {"FormattedBlock",
         {"#18ABCDEFGH\n"},
         [](CVisaCSession& session, SAFEARRAY** array, BSTR*) {
             return session.Scanf("%$Shb", array);
         },
         {kPlain, kPlain}},
        {"FormattedNumbers",
         {"1,2\n"},
         [](CVisaCSession& session, SAFEARRAY** array, BSTR*) {
             return session.Scanf("%,$Sd", array);
         },
         {kPlain}},
        {"FormattedTexts",
         {"A,B\n"},
         [](CVisaCSession& session, SAFEARRAY** array, BSTR*) {
             return session.Scanf("%,$S$Bs", array);
         },
         {kPlain, kPlain, kPlain}},
    };
}

class ArrayMemoryTest : public OpenSessionFixture, public testing::WithParamInterface<Reading> {
  protected:
    ~ArrayMemoryTest() override { allocationThatFails = 0; }

    void Respond() {
        for (const std::string& response : GetParam().responses) {
            fake.Respond(response);
        }
    }
};

TEST_P(ArrayMemoryTest, EachAllocationMayFail) {
    const Reading& reading = GetParam();
    for (std::size_t n = 1; n <= reading.failures.size(); ++n) {
        SCOPED_TRACE("allocation " + std::to_string(n));
        const Failure& expected = reading.failures[n - 1];
        reporter.reports.clear();
        poller.polls = 0;
        Respond();
        SAFEARRAY* array = nullptr;
        BSTR text = nullptr;
        allocationThatFails = static_cast<int>(n);
        const HRESULT status = reading.run(session, &array, &text);
        EXPECT_EQ(allocationThatFails, 0) << "There are fewer allocations.";
        allocationThatFails = 0;
        EXPECT_EQ(status, expected.status);
        if (expected.report.empty()) {
            EXPECT_THAT(reporter.reports, IsEmpty());
        } else {
            EXPECT_THAT(reporter.reports, ElementsAre(expected.report));
        }
        EXPECT_EQ(array, nullptr);
        EXPECT_EQ(text, nullptr);
        EXPECT_EQ(poller.polls, 0);
        EXPECT_EQ(session.Clear(), S_OK);
        fake.Expect("X?\n").Reply("7\n");
        std::int32_t value = 0;
        EXPECT_EQ(session.Queryf("X?", "%d", &value), S_OK);
        EXPECT_EQ(value, 7);
    }
}

TEST_P(ArrayMemoryTest, NoOtherAllocationIsMade) {
    const Reading& reading = GetParam();
    if (reading.name == "HugeBlock") {
        return;  // a gigabyte is not for a test
    }
    Respond();
    SafeArrayPtr array;
    BstrPtr text;
    allocationThatFails = static_cast<int>(reading.failures.size()) + 1;
    EXPECT_GE(reading.run(session, array.Out(), text.Out()), 0);
    EXPECT_EQ(allocationThatFails, 1);
}

INSTANTIATE_TEST_SUITE_P(All, ArrayMemoryTest, testing::ValuesIn(Readings()),
                         [](const testing::TestParamInfo<Reading>& parameter) {
                             return parameter.param.name;
                         });

}  // namespace
}  // namespace kestrion
