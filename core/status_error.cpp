#include "core/status_error.h"

#include <new>

namespace kestrion {

HRESULT CurrentExceptionStatus() noexcept {
    try {
        throw;
    } catch (const StatusError& error) {
        return error.Status();
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    } catch (...) {
        return E_UNEXPECTED;
    }
}

}  // namespace kestrion
