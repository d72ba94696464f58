// What every function of the C interface does around its work.
#pragma once

#include <memory>
#include <new>
#include <utility>

#include "visa/object_table.h"
#include "visa/session.h"
#include "visa/visa.h"

namespace visa_provider {

// Runs `work` and turns an exception into a status: none may pass a C interface.
template <typename Work>
[[nodiscard]] ViStatus Guarded(Work&& work) noexcept {
    try {
        return std::forward<Work>(work)();
    } catch (const std::bad_alloc&) {
        return VI_ERROR_ALLOC;
    } catch (...) {
        return VI_ERROR_SYSTEM_ERROR;
    }
}

// Runs `work`, which is the function of the name `operation`, on the object of that handle, which
// it keeps alive meanwhile. VI_ERROR_INV_OBJECT when the handle stands for nothing,
// VI_ERROR_NSUP_OPER when it stands for something else. The object is told of a failure.
template <typename Kind, typename Work>
[[nodiscard]] ViStatus WithObject(const char* operation, ViObject handle, Work&& work) noexcept {
    return Guarded([&] {
        const std::shared_ptr<Object> object = ObjectTable::Instance().Find(handle);
        if (!object) {
            return VI_ERROR_INV_OBJECT;
        }
        Kind* const found = As<Kind>(*object);
        const ViStatus status =
            found ? Guarded([&] { return std::forward<Work>(work)(*found); }) : VI_ERROR_NSUP_OPER;
        if (status < 0) {
            object->TellFailure(status, operation);
        }
        return status;
    });
}

template <typename Work>
[[nodiscard]] ViStatus WithSession(const char* operation, ViSession handle, Work&& work) noexcept {
    return WithObject<Session>(operation, handle, std::forward<Work>(work));
}

}  // namespace visa_provider
