// The typed values that a node keeps, one for each simulated attribute.
#pragma once

#include <memory>
#include <string>

#include "kestrion/platform/bstr.h"
#include "kestrion/platform/types.h"

namespace kestrion {

// A value that is valid or not. One caller at a time: the node's lock covers it.
class CCacheEntryBase {
  public:
    CCacheEntryBase() = default;
    CCacheEntryBase(const CCacheEntryBase&) = delete;
    CCacheEntryBase& operator=(const CCacheEntryBase&) = delete;
    virtual ~CCacheEntryBase() = default;

    virtual void Invalidate() { valid_ = false; }
    virtual void Validate() { valid_ = true; }
    [[nodiscard]] virtual bool IsValid() const { return valid_; }

  private:
    bool valid_ = false;
};

// Numbers, Booleans and enumeration values.
template <typename T>
class CCacheEntry final : public CCacheEntryBase {
  public:
    void Store(T value) { value_ = value; }
    // Copies a valid value out; false, and nothing copied, without one.
    [[nodiscard]] bool Read(T* value) const {
        if (!IsValid()) {
            return false;
        }
        *value = value_;
        return true;
    }

  private:
    T value_{};
};

// A text, which the entry owns and copies in and out.
template <>
class CCacheEntry<BSTR> final : public CCacheEntryBase {
  public:
    void Invalidate() override {
        value_ = BstrPtr();
        CCacheEntryBase::Invalidate();
    }
    void Store(BSTR value) { value_ = BstrPtr(View(value)); }
    [[nodiscard]] bool Read(BSTR* value) const {
        if (!IsValid()) {
            return false;
        }
        *value = MakeBstr(value_.View());
        return true;
    }

  private:
    BstrPtr value_;
};

}  // namespace kestrion
