// What the two halves of FakeVisa share: the functions of its table, and the script that they play.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "io/visa_api.h"

namespace kestrion {

class FakeVisa;

namespace fake_visa {

// Numbers as the VISA standard publishes them, typed here so that the fake shares no table with
// the code under test.
constexpr visa::ViStatus Code(std::uint32_t bits) {
    return static_cast<visa::ViStatus>(bits);
}
inline constexpr visa::ViStatus kOk = 0;
inline constexpr visa::ViStatus kTermCharRead = Code(0x3FFF0005);
inline constexpr visa::ViStatus kMaxCountRead = Code(0x3FFF0006);
inline constexpr visa::ViStatus kInvalidObject = Code(0xBFFF000E);
inline constexpr visa::ViStatus kTimedOut = Code(0xBFFF0015);
inline constexpr visa::ViStatus kUnsupportedAttribute = Code(0xBFFF001D);
inline constexpr visa::ViStatus kEventsNotEnabled = Code(0xBFFF002F);
inline constexpr visa::ViStatus kIoError = Code(0xBFFF003E);
inline constexpr visa::ViStatus kConnectionLost = Code(0xBFFF00A6);
inline constexpr visa::ViStatus kNotLocked = Code(0xBFFF009C);
inline constexpr visa::ViAttr kSendEnd = 0x3FFF0016;
inline constexpr visa::ViAttr kTermChar = 0x3FFF0018;
inline constexpr visa::ViAttr kTermCharEnabled = 0x3FFF0038;
inline constexpr visa::ViAttr kResourceClass = 0xBFFF0001;
inline constexpr visa::ViAttr kResourceName = 0xBFFF0002;
inline constexpr visa::ViAttr kInterfaceType = 0x3FFF0171;
inline constexpr visa::ViEventType kServiceRequest = 0x3FFF200B;
inline constexpr visa::ViEventType kAllEvents = 0x3FFF7FFF;

// Bytes as a test reads them: in quotes, with those beyond printing as \xNN.
[[nodiscard]] std::string Quote(std::string_view bytes);

// The functions. viOpenDefaultRM opens the fake that `OpenNext` named last on the calling thread.
[[nodiscard]] const visa::FunctionTable& Table();
void OpenNext(FakeVisa* fake);
// Forgets the numbers of a fake that is gone, and the fake if it was to be opened next.
void Forget(FakeVisa* fake, const std::vector<visa::ViObject>& objects);

}  // namespace fake_visa
}  // namespace kestrion
