// A line as 8-bit text in the process code page, for sinks that take no UTF-16.
#pragma once

#include "runtime/diagnostics.h"

namespace tvut {

class clsNarrowLine {
  private:
    static constexpr std::size_t longestCharacter = 6; // bytes
    static constexpr std::size_t longestLineEnd = 2;

  public:
    static constexpr std::size_t longest =
        clsDiagnosticLine::longest * longestCharacter + longestLineEnd; // bytes

    // Converts a text of at most clsDiagnosticLine::longest characters, and appends a line end. False, and no
    // text, when it cannot be converted.
    bool Set(std::u16string_view text, std::string_view lineEnd) noexcept;

    std::string_view View() const noexcept { return {bytes_.data(), length_}; }

  private:
    std::array<char, longest> bytes_;
    std::size_t length_ = 0;
};

} // namespace tvut
