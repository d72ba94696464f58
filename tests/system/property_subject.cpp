#include "tests/system/property_subject.h"

#include <cmath>
#include <sstream>

namespace kestrion {
namespace {

std::string ToText(const PropertyValue& value) {
    if (const auto* text = std::get_if<std::string>(&value)) {
        return '\'' + *text + '\'';
    }
    return std::visit(
        [](const auto& plain) {
            std::ostringstream text;
            text.precision(17);
            text << plain;
            return text.str();
        },
        value);
}

}  // namespace

bool AreEqual(const PropertyValue& a, const PropertyValue& b) {
    const auto* first = std::get_if<double>(&a);
    const auto* second = std::get_if<double>(&b);
    if (first == nullptr || second == nullptr) {
        return a == b;
    }
    return std::abs(*first - *second) <= 1e-14 * std::abs(*second);
}

void PropertySubject::RoundTrip(const PropertyValue& value) {
    PutWith(value, S_OK, 0);
    ExpectToRead(value);
}

void PropertySubject::Refuse(const PropertyValue& value, HRESULT status, LONG instrumentError) {
    const PropertyValue before = Read();
    PutWith(value, status, instrumentError);
    ExpectToRead(before);
}

void PropertySubject::PutWith(const PropertyValue& value, HRESULT expected, LONG instrumentError) {
    const HRESULT status = property_.put(object_, index_, value);
    const std::string error = TakeErrorText();
    EXPECT_EQ(status, expected) << "put " << ToText(value) << ": " << error;
    ExpectInstrumentError(instrumentError, "put " + ToText(value));
}

PropertyValue PropertySubject::Read() {
    PropertyValue value;
    const HRESULT status = property_.get(object_, index_, value);
    const std::string error = TakeErrorText();
    EXPECT_EQ(status, S_OK) << "get: " << error;
    ExpectInstrumentError(0, "get");
    return value;
}

void PropertySubject::ExpectToRead(const PropertyValue& expected) {
    const PropertyValue value = Read();
    EXPECT_TRUE(AreEqual(value, expected))
        << "expected " << ToText(expected) << ", got " << ToText(value);
}

void PropertySubject::ExpectInstrumentError(LONG expected, const std::string& what) {
    BstrPtr text;
    const LONG code = TakeInstrumentError(text);
    EXPECT_EQ(code, expected) << what << ": " << text.Utf8();
    if (code != 0) {
        EXPECT_EQ(TakeInstrumentError(text), 0) << what << ": " << text.Utf8();
    }
}

LONG PropertySubject::TakeInstrumentError(BstrPtr& text) {
    LONG code = -1;
    EXPECT_EQ(client_.As<IIviDriverUtility>()->ErrorQuery(&code, text.Out()), S_OK)
        << TakeErrorText();
    return code;
}

}  // namespace kestrion
