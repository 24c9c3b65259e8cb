// Where bytes come from and where they go: files, callers' streams and memory, seen alike.
#pragma once

#include <cstddef>
#include <cstdint>

namespace tvut {

class clsByteSource {
  public:
    virtual ~clsByteSource() = default;
    // The number of bytes to expect, 0 when unknown. Only a hint: reading tells.
    virtual std::uint64_t SizeHint() = 0;
    // Reads up to a number of bytes; 0 only at the end. Throws clsException when the source fails.
    virtual std::size_t Read(void* buffer, std::size_t bytes) = 0;
};

class clsByteSink {
  public:
    virtual ~clsByteSink() = default;
    // Tells how many bytes will come, so that a lack of room shows before anything is written.
    virtual void Extend(std::uint64_t bytes) = 0;
    // Writes all bytes or throws clsException.
    virtual void Write(const void* data, std::size_t bytes) = 0;
    // Everything is written: ends the target where writing stands. Throws clsException.
    virtual void Finish() = 0;
};

} // namespace tvut
