// The oscilloscope driver: everything that a program includes.
//
//     IKestrion* created = nullptr;
//     HRESULT status = kestrion::CreateKestrion(&created);
//     kestrion::ComPtr<IKestrion> scope = kestrion::ComPtr<IKestrion>::Attach(created);
//     kestrion::BstrPtr resource(std::u16string_view(u"TCPIP0::192.0.2.1::4000::SOCKET"));
//     status = scope->Initialize(resource.Get(), VARIANT_FALSE, VARIANT_FALSE, nullptr);
//
// Every member returns a status: negative is failure, and the calling thread's error object then
// holds the text (GetErrorInfo). Out pointers that come back are counted or allocated for the
// caller, who releases or frees them. Any thread may call; calls on one object wait for each other.
#pragma once

#include "kestrion/enums.h"
#include "kestrion/interfaces.h"
#include "kestrion/platform/component.h"

namespace kestrion {

// Makes a driver object that isn't connected yet, with one count for the caller.
// E_POINTER for a null `created`, E_OUTOFMEMORY without memory.
[[nodiscard]] KESTRION_API HRESULT CreateKestrion(IKestrion** created);

// The version of the library, such as "3.9.0". The text lives as long as the library.
[[nodiscard]] KESTRION_API const char* Version();

}  // namespace kestrion
