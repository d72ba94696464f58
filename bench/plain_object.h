// An object whose members do nothing but what their names say: the floor of a member call.
#pragma once

#include "kestrion/kestrion.h"

namespace bench {

struct IPlainObject {
    virtual HRESULT get_NumberOfAverages(LONG* val) = 0;
    virtual HRESULT put_NumberOfAverages(LONG val) = 0;

  protected:
    ~IPlainObject() = default;
};

// Made out of the compiler's sight, so that calls stay virtual.
[[nodiscard]] IPlainObject& PlainObject();

}  // namespace bench
