// The process-wide interface table: lends an interface from one thread to another by a number.
#pragma once

#include "kestrion/platform/unknown.h"

namespace kestrion {

// Objects are free of apartments here, so the table only counts and finds. Any thread may call.

// Adds a count on `object` and gives its number, which is never 0. E_INVALIDARG for null.
KESTRION_API [[nodiscard]] HRESULT RegisterInterface(IUnknown* object, REFIID iid, DWORD* cookie);
// A counted pointer to the interface asked for; E_INVALIDARG for an unknown number.
KESTRION_API [[nodiscard]] HRESULT GetInterface(DWORD cookie, REFIID iid, void** object);
// Drops the table's count; E_INVALIDARG for an unknown number.
KESTRION_API [[nodiscard]] HRESULT RevokeInterface(DWORD cookie);

}  // namespace kestrion
