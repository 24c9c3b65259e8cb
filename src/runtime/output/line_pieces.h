// A line in the pieces in which it is sent to a viewer.
#pragma once

#include <cstddef>
#include <string_view>

namespace tvut {

// Takes the next piece, of at most `longest` characters, off a line. An empty line is a piece as well.
std::u16string_view UtilpTakePiece(std::u16string_view& left, std::size_t longest) noexcept;

// Takes the next message for the mailslot off a line: up to a line end, which is dropped, or 510 characters.
// May be empty: then there is nothing to be sent.
std::u16string_view UtilpTakeMessage(std::u16string_view& left) noexcept;

} // namespace tvut
