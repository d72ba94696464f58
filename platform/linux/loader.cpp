#include "platform/loader.h"

#include <dlfcn.h>

namespace kestrion {
namespace {

class DynamicLibrary final : public SharedLibrary {
  public:
    explicit DynamicLibrary(void* handle) : handle_(handle) {}
    DynamicLibrary(const DynamicLibrary&) = delete;
    DynamicLibrary& operator=(const DynamicLibrary&) = delete;
    ~DynamicLibrary() override { dlclose(handle_); }
    void* Symbol(const char* name) const override { return dlsym(handle_, name); }

  private:
    void* handle_;
};

}  // namespace

std::unique_ptr<SharedLibrary> SharedLibrary::Load(const std::string& name, std::string& reason) {
    void* handle = dlopen(name.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (handle == nullptr) {
        const char* error = dlerror();
        reason = error == nullptr ? "unknown reason" : error;
        return nullptr;
    }
    return std::make_unique<DynamicLibrary>(handle);
}

}  // namespace kestrion
