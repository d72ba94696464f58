// What the tests of the triggers share: properties checked by path, both ways.
#pragma once

#include <gmock/gmock.h>

#include <string>
#include <utility>
#include <vector>

#include "tests/support/scope_fixture.h"

namespace kestrion {

class TriggerTest : public ScopeTest {
  protected:
    // Words of an instrument and the values that they stand for.
    using Words = std::vector<std::pair<std::string, int>>;

    // Writes 0.25 to a real and reads -1.5E-3.
    template <typename I>
    void CheckReal(const ComPtr<I>& object, HRESULT (I::*get)(double*), HRESULT (I::*put)(double),
                   const std::string& path) {
        SCOPED_TRACE(path);
        fake.Expect(path + " 0.25\n");
        EXPECT_EQ((object.Get()->*put)(0.25), S_OK);
        fake.Expect(path + "?\n").Reply("-1.5E-3\n");
        double value = 0.0;
        EXPECT_EQ((object.Get()->*get)(&value), S_OK);
        EXPECT_EQ(value, -1.5e-3);
    }

    // Writes and reads every word, and a value without one, which sends nothing.
    template <typename I, typename E>
    void CheckWords(const ComPtr<I>& object, HRESULT (I::*get)(E*), HRESULT (I::*put)(E),
                    const std::string& path, const Words& words) {
        CheckWrittenWords(object, put, path, words);
        SCOPED_TRACE(path);
        for (const auto& [word, number] : words) {
            fake.Expect(path + "?\n").Reply(word + "\n");
            auto value = static_cast<E>(99);
            EXPECT_EQ((object.Get()->*get)(&value), S_OK) << word;
            EXPECT_EQ(static_cast<int>(value), number) << word;
        }
    }

    template <typename I, typename E>
    void CheckWrittenWords(const ComPtr<I>& object, HRESULT (I::*put)(E), const std::string& path,
                           const Words& words) {
        SCOPED_TRACE(path);
        for (const auto& [word, number] : words) {
            fake.Expect(path + " " + word + "\n");
            EXPECT_EQ((object.Get()->*put)(static_cast<E>(number)), S_OK) << word;
        }
        EXPECT_EQ((object.Get()->*put)(static_cast<E>(99)), MakeStatus(0x80047010));
    }

    // The status of a refused value, and the words of the report.
    static void ExpectValueRefused(HRESULT status, const std::string& value,
                                   const std::string& parameter, const std::string& method) {
        EXPECT_EQ(status, MakeStatus(0x80047013));
        EXPECT_EQ(ErrorText(),
                  "Kestrion: Does not support this class-compliant feature: (enumeration) value " +
                      value + " passed as the value for parameter " + parameter + " in method " +
                      method + ".");
    }

    // The status and number of a refusal without words of its own.
    static void ExpectNumberRefused(HRESULT status, const std::string& number) {
        EXPECT_EQ(status, MakeStatus(0x80020009));
        EXPECT_THAT(ErrorText(), testing::HasSubstr("Resource ID = " + number));
    }

    inline static const Words kChannels = {{"CH1", 0}, {"CH2", 1}, {"CH3", 2}, {"CH4", 3}};
    inline static const Words kSlopes = {{"FALL", 0}, {"RISE", 1}, {"EITHER", 2}};
    inline static const Words kLogicFamilies = {{"ECL", 0}, {"TTL", 1}};

    // A model of two channels that is in no family.
    static constexpr const char* kTwoChannels = "ABCDEF2";
};

}  // namespace kestrion
