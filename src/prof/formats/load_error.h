// A profile's contents that cannot be parsed: where and why.
#pragma once

#include "platform/exception.h"

#include <cstdint>
#include <string_view>

namespace tvut {

class clsLoadException : public clsException {
  public:
    // message is a literal, and so is what may say more, in ASCII.
    clsLoadException(std::uint32_t line, std::u16string_view message, std::string_view more = {})
        : clsException("profile contents cannot be parsed"), line_(line), message_(message), more_(more) {}

    std::uint32_t Line() const { return line_; }

    // Passes the message on to anything with Put(text), in pieces.
    template <class Output>
    void PutMessage(Output& output) const {
        output.Put(message_);
        for (const char c : more_) {
            const char16_t unit = static_cast<unsigned char>(c);
            output.Put(std::u16string_view(&unit, 1));
        }
    }

  private:
    std::uint32_t line_;
    std::u16string_view message_;
    std::string_view more_;
};

} // namespace tvut
