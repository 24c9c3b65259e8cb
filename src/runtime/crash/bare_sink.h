// Where reports and dumps go: a file that is written by bare system calls, or memory in a test.
#pragma once

#include <cstddef>

namespace tvut {

class IclsBareSink {
  public:
    // Writes all of the bytes after those before; false when it could not, and everything later fails, too.
    // Throws nothing, uses no heap and no lock.
    virtual bool Write(const void* bytes, std::size_t count) noexcept = 0;

  protected:
    ~IclsBareSink() = default;
};

} // namespace tvut
