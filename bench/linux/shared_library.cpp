#include "bench/shared_library.h"

#include <dlfcn.h>

#include <stdexcept>

namespace bench {

SharedLibrary::SharedLibrary(const char* file) : handle_(dlopen(file, RTLD_NOW | RTLD_LOCAL)) {
    if (handle_ == nullptr) {
        throw std::runtime_error(dlerror());
    }
}

SharedLibrary::~SharedLibrary() {
    dlclose(handle_);
}

}  // namespace bench
