// The exceptions of the library. They never leave it: the guard of the exports ends them.
#pragma once

#include <exception>

namespace tvut {

// An operation that could not be carried out. The text is for whoever debugs the library.
class clsException : public std::exception {
  public:
    explicit clsException(const char* what) noexcept : what_(what) {}
    const char* what() const noexcept override { return what_; }

  private:
    const char* what_; // a literal
};

} // namespace tvut
