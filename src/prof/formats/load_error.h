// A profile's contents that cannot be parsed: where and why.
#pragma once

#include "platform/exception.h"

#include <cstdint>
#include <string_view>

namespace tvut {

class clsLoadException : public clsException {
  public:
    // message is a literal. Writes a diagnostic line; the loader adds one that names the input.
    clsLoadException(std::uint32_t line, std::u16string_view message);

    std::uint32_t Line() const { return line_; }
    std::u16string_view Message() const { return message_; }

  private:
    std::uint32_t line_;
    std::u16string_view message_;
};

} // namespace tvut
