// One set of tests for every kind of link, written against the published functions alone: so they
// hold for any provider that has an instrument behind it which answers as ResponseTo says.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "tests/visa/loopback_server.h"
#include "tests/visa/published_visa.h"
#include "tests/visa/scripted_device.h"

namespace published {

using visa_provider::testing::Letters;

// What is tested: a link, and the functions as they are linked into a program or as a program
// finds them in the library's file.
enum class Subject { kSocket, kVirtual, kSocketOfTheFile };

// Over each of them.
inline auto Subjects() {
    return ::testing::Values(Subject::kSocket, Subject::kVirtual, Subject::kSocketOfTheFile);
}
std::string NameOf(const ::testing::TestParamInfo<Subject>& info);

// A read as the caller sees it.
struct ReadResult {
    ViStatus status = VI_SUCCESS;
    std::string bytes;
};

// One open session to an instrument of that link. On the socket the termination character is
// enabled, since it has no END.
class ConformanceTest : public ::testing::TestWithParam<Subject> {
  protected:
    ConformanceTest();
    ~ConformanceTest() override;
    void SetUp() override;
    void TearDown() override;

    [[nodiscard]] static bool IsSocket() { return GetParam() != Subject::kVirtual; }
    // The status of a read that has the whole response.
    [[nodiscard]] static ViStatus EndStatus() {
        return IsSocket() ? VI_SUCCESS_TERM_CHAR : VI_SUCCESS;
    }
    [[nodiscard]] std::string Resource() const;
    // A session that has to open, as it is after opening.
    ViSession Open(const std::string& resource);
    // A further session to the same kind of instrument, prepared as the first one is.
    ViSession OpenAnother();

    ViStatus Write(ViSession session, std::string_view text);
    ReadResult Read(ViSession session, std::size_t count);
    // A write without a count and a buffer, which brings about a completion.
    void Complete(int times = 1);
    template <typename Value>
    Value Get(ViObject object, ViAttr attribute) {
        Value value{};
        EXPECT_EQ(visa.viGetAttribute(object, attribute, &value), VI_SUCCESS) << attribute;
        return value;
    }
    std::string GetText(ViObject object, ViAttr attribute);
    void Set(ViObject object, ViAttr attribute, ViAttrState state);
    // What the virtual instrument was written, "<END>" behind what END came with.
    [[nodiscard]] std::vector<std::string> WrittenToInstrument() const;

    const Functions& visa;
    ViSession manager_ = VI_NULL;
    ViSession session_ = VI_NULL;

  private:
    class Instruments;
    std::unique_ptr<Instruments> instruments_;
};

}  // namespace published
