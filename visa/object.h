// What a VISA handle stands for.
#pragma once

#include <optional>
#include <type_traits>
#include <typeinfo>

#include "visa/attribute_value.h"
#include "visa/visa.h"

namespace visa_provider {

// A resource manager, a session, an event or a find list. All members may be called from any
// thread. An object lives until its handle is closed and the last call that uses it returned.
class Object {
  public:
    Object() = default;
    virtual ~Object() = default;
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;

    // The value of an attribute; none if the object doesn't have it.
    [[nodiscard]] virtual std::optional<AttributeValue> Attribute(ViAttr attribute) const = 0;

    // Without an override an attribute is read-only (VI_ERROR_ATTR_READONLY) or isn't there
    // (VI_ERROR_NSUP_ATTR).
    [[nodiscard]] virtual ViStatus SetAttribute(ViAttr attribute, ViAttrState state);

    // Called once, when the handle is gone: ends what waits on the object.
    virtual void Close() {}

    // Called when the function of that name, a literal, was called on the object and fails.
    virtual void TellFailure(ViStatus /*status*/, const char* /*operation*/) {}

    // The object's handle, 0 until it has one.
    [[nodiscard]] ViObject Handle() const { return handle_; }

  private:
    friend class ObjectTable;
    ViObject handle_ = 0;  // set before any other thread can see the object
};

// The object as what it is, or null if it is of another kind. No class is derived from a final one,
// so that its name alone tells. Every operation on a session begins here, and searching the bases
// as well is work of its own: 134 instructions of the 3585 of a setting.
template <typename Kind>
[[nodiscard]] Kind* As(Object& object) {
    if constexpr (std::is_final_v<Kind>) {
        return typeid(object) == typeid(Kind) ? static_cast<Kind*>(&object) : nullptr;
    } else {
        return dynamic_cast<Kind*>(&object);
    }
}

}  // namespace visa_provider
