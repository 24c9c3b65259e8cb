// The exceptions of the library. They never leave it: the guard of the exports ends them.
#pragma once

#include <exception>

namespace tvut {

// Why something failed, as the system numbers its errors: what GetLastError returns after the call. These
// are the ones that the library finds itself.
namespace reason {
constexpr unsigned long accessDenied = 5;
constexpr unsigned long noMemory = 8;
constexpr unsigned long invalidData = 13;
constexpr unsigned long writeFault = 29;
constexpr unsigned long readFault = 30;
constexpr unsigned long invalidArgument = 87;
constexpr unsigned long invalidName = 123;
constexpr unsigned long tooLarge = 223;
} // namespace reason

// An operation that could not be carried out. The text is for whoever debugs the library.
class clsException : public std::exception {
  public:
    explicit clsException(const char* what, unsigned long why = reason::invalidData) noexcept
        : what_(what), reason_(why) {}
    const char* what() const noexcept override { return what_; }
    unsigned long Reason() const noexcept { return reason_; }

  private:
    const char* what_; // a literal
    unsigned long reason_;
};

} // namespace tvut
