// The members that every collection of repeated capability instances has.
#pragma once

#include <span>
#include <string_view>

#include "core/member_call.h"

namespace kestrion {

// The number of instances of the class.
HRESULT CountInstances(MemberCall& call, std::string_view className, LONG* count);

// The instance of that name, asked for `iid`. White space around the name and the case of A to Z
// don't matter, a virtual name is translated first, and everything up to a "!!" is dropped. An
// unknown name, an empty one among several instances too, is reported. E_POINTER where `instance`
// is null, E_UNEXPECTED where there is no such class.
HRESULT FindInstance(MemberCall& call, std::string_view className, BSTR name, REFIID iid,
                     void** instance);

// The name of the instance at `index`, which counts from 1; others are reported as invalid.
// E_POINTER where `name` is null, E_UNEXPECTED where there is no such class.
HRESULT NameInstance(MemberCall& call, std::string_view className, LONG index, BSTR* name);

// The instance that `name` stands for, by the rules of FindInstance: an instance that is the only
// one needs no name. Null where there is none.
[[nodiscard]] CRepCap* ChooseInstance(std::span<CRepCap* const> instances, std::string_view name);

}  // namespace kestrion
