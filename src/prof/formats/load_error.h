// A profile's contents that cannot be parsed: where and why.
#pragma once

#include "platform/exception.h"

#include <cstdint>
#include <string_view>

namespace tvut {

class clsLoadException : public clsException {
  public:
    // message is a literal.
    clsLoadException(std::uint32_t line, std::u16string_view message)
        : clsException("profile contents cannot be parsed"), line_(line), message_(message) {}

    std::uint32_t Line() const { return line_; }
    std::u16string_view Message() const { return message_; }

  private:
    std::uint32_t line_;
    std::u16string_view message_;
};

} // namespace tvut
