// One property of one object, put and got with a look at the instrument's error queue.
#pragma once

#include <string>

#include "tests/system/property.h"
#include "tests/system/scope_client.h"

namespace kestrion {

// Reals may differ in their last digits, since some are computed.
[[nodiscard]] bool AreEqual(const PropertyValue& a, const PropertyValue& b);

class PropertySubject {
  public:
    PropertySubject(ScopeClient& client, IUnknown& object, const Property& property, LONG index)
        : client_(client), object_(object), property_(property), index_(index) {}

    // The value is taken without a word from the instrument, and is what is read.
    void RoundTrip(const PropertyValue& value);
    // The value isn't taken, and what was there stays.
    void Refuse(const PropertyValue& value, HRESULT status, LONG instrumentError);

    // One direction. `instrumentError` is all that stands in the instrument's queue then.
    void PutWith(const PropertyValue& value, HRESULT expected, LONG instrumentError);
    PropertyValue Read();
    void ExpectToRead(const PropertyValue& expected);

    [[nodiscard]] const Property& GetProperty() const { return property_; }

  private:
    void ExpectInstrumentError(LONG expected, const std::string& what);
    LONG TakeInstrumentError(BstrPtr& text);

    ScopeClient& client_;
    IUnknown& object_;
    const Property& property_;
    LONG index_;
};

}  // namespace kestrion
