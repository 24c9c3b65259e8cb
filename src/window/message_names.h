// Window messages in words.
#pragma once

#include "window/message_name_table.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace tvut {

// Whose messages a window gets, by the name of its class. Frameworks build their classes' names from the
// system's, as WindowsForms10.EDIT.app.0.2bf8098: one part between dots is enough.
MessageOwner UtilpMessageOwner(std::u16string_view className) noexcept;

// The numbers that programs register by a text.
constexpr std::uint32_t firstRegistered = 0xC000, lastRegistered = 0xFFFF;

// A text without memory of its own on the heap.
class clsMessageText {
  public:
    static constexpr std::size_t longest = 63; // characters; names have fewer

    // The text of any number, as an owner and the system name it; those of registered ones are the system's
    // to tell.
    clsMessageText(std::uint32_t message, MessageOwner owner) noexcept;

    std::u16string_view View() const noexcept { return {text_.data(), length_}; }

  private:
    void Put(std::string_view ascii) noexcept;
    void PutHex(std::uint32_t number, unsigned digits) noexcept; // at least so many

    std::array<char16_t, longest> text_;
    std::size_t length_ = 0;
};

} // namespace tvut
