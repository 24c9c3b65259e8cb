// The system's own words for an error.
#pragma once

#include <array>
#include <string_view>

namespace tvut {

// A text of fixed size: it is needed where allocating would be wrong.
class clsSystemErrorText {
  public:
    explicit clsSystemErrorText(unsigned long error) noexcept;
    std::u16string_view View() const noexcept { return {text_.data(), length_}; }

  private:
    std::array<char16_t, 256> text_;
    std::size_t length_;
};

} // namespace tvut
