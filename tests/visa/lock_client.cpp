// A session in a process of its own, for tests of locks between processes: does what the lines of
// its standard input say and answers each with a status in hexadecimal.
//
//     lock_client <resource>
//     exclusive <ms> | shared <key> <ms> | unlock | write | state
#include <cstdio>
#include <iostream>
#include <sstream>
#include <string>

#include "visa/functions.h"

namespace {

using namespace visa_provider;

ViStatus Execute(ViSession session, const std::string& line) {
    std::istringstream words(line);
    std::string command;
    std::string key;
    ViUInt32 timeout = 0;
    words >> command;
    if (command == "exclusive") {
        words >> timeout;
        return viLock(session, VI_EXCLUSIVE_LOCK, timeout, nullptr, nullptr);
    }
    if (command == "shared") {
        words >> key >> timeout;
        return viLock(session, VI_SHARED_LOCK, timeout, key.c_str(), nullptr);
    }
    if (command == "unlock") {
        return viUnlock(session);
    }
    if (command == "write") {
        return viWrite(session, reinterpret_cast<const ViByte*>("NOTHING\n"), 8, nullptr);
    }
    ViAccessMode state = 99;
    const ViStatus status = viGetAttribute(session, VI_ATTR_RSRC_LOCK_STATE, &state);
    return status < 0 ? status : static_cast<ViStatus>(state);
}

}  // namespace

int main(int count, char** arguments) {
    ViSession manager = VI_NULL;
    ViSession session = VI_NULL;
    if (count != 2 || viOpenDefaultRM(&manager) < 0 ||
        viOpen(manager, arguments[1], VI_NO_LOCK, 5000, &session) < 0) {
        return 1;
    }
    std::cout << "open" << std::endl;
    for (std::string line; std::getline(std::cin, line);) {
        std::cout << std::hex << static_cast<std::uint32_t>(Execute(session, line)) << std::endl;
    }
    return viClose(manager) == VI_SUCCESS ? 0 : 1;
}
