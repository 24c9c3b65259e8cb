// What can be wrong with a regular expression.
#pragma once

#include "platform/exception.h"

#include <cstddef>

namespace tvut {

// A pattern that cannot be understood.
class clsRegExError : public clsException {
  public:
    clsRegExError(std::size_t offset, const char* reason) noexcept : clsException(reason), offset_(offset) {}
    std::size_t Offset() const noexcept { return offset_; } // in the pattern

  private:
    std::size_t offset_;
};

// A match that was given up because it took too many steps or too much memory.
class clsRegExTooComplex : public clsException {
  public:
    using clsException::clsException;
};

} // namespace tvut
