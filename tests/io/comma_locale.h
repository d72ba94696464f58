// A locale whose numbers have a decimal comma, in force for the life of an object.
#pragma once

#include <locale>
#include <string>

namespace kestrion {

// Sets the comma for the C++ library and, where the machine has such a locale or could make one,
// for the C library. One at a time; no other thread may use locales meanwhile.
class CommaLocale {
  public:
    CommaLocale();
    ~CommaLocale();
    CommaLocale(const CommaLocale&) = delete;
    CommaLocale& operator=(const CommaLocale&) = delete;

    // What both libraries make of 1234.5 and one and a half: proof that the locale is in force.
    [[nodiscard]] static std::string CppText();  // "1.234,5"
    [[nodiscard]] static std::string CText();    // "1,5"; "1.5" without a locale of the C library
    // The name of the C library's locale; empty if there's none.
    [[nodiscard]] const std::string& CName() const { return name_; }

  private:
    std::locale formerCpp_;
    std::string formerC_;
    std::string name_;
};

}  // namespace kestrion
