// A library that is loaded while the program runs.
#pragma once

namespace bench {

class SharedLibrary {
  public:
    // With every symbol bound at once. Throws std::runtime_error with what the system says.
    explicit SharedLibrary(const char* file);
    SharedLibrary(const SharedLibrary&) = delete;
    SharedLibrary& operator=(const SharedLibrary&) = delete;
    ~SharedLibrary();

  private:
    void* handle_;
};

}  // namespace bench
