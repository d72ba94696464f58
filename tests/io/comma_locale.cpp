#include "tests/io/comma_locale.h"

#include <array>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <sstream>

namespace kestrion {
namespace {

class CommaPunctuation : public std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

// Where the C library looks for locales before its own place.
constexpr const char* kLocalePath = "LOCPATH";

std::string SetCLocale() {
    if (const std::string made = KESTRION_COMMA_LOCALES; !made.empty()) {
        (void)setenv(kLocalePath, made.c_str(), 1);
        const bool isSet = std::setlocale(LC_NUMERIC, "comma") != nullptr;
        (void)unsetenv(kLocalePath);
        if (isSet) {
            return "comma";
        }
    }
    for (const char* name : {"de_DE.UTF-8", "de_DE", "fr_FR.UTF-8", "fr_FR", "de", "fr"}) {
        if (std::setlocale(LC_NUMERIC, name) != nullptr) {
            return name;
        }
    }
    return "";
}

}  // namespace

CommaLocale::CommaLocale()
    : formerCpp_(std::locale::global({std::locale::classic(), new CommaPunctuation})),
      formerC_(std::setlocale(LC_NUMERIC, nullptr)),
      name_(SetCLocale()) {}

CommaLocale::~CommaLocale() {
    (void)std::setlocale(LC_NUMERIC, formerC_.c_str());
    std::locale::global(formerCpp_);
}

std::string CommaLocale::CppText() {
    std::ostringstream text;
    text << 1234.5;
    return text.str();
}

std::string CommaLocale::CText() {
    std::array<char, 16> text{};
    (void)std::snprintf(text.data(), text.size(), "%.1f", 1.5);
    return text.data();
}

}  // namespace kestrion
