#include "runtime/output/line_pieces.h"

namespace tvut {

namespace {

constexpr std::size_t longestMessage = 510; // characters

} // namespace

std::u16string_view UtilpTakePiece(std::u16string_view& left, std::size_t longest) noexcept {
    const std::u16string_view piece = left.substr(0, longest);
    left.remove_prefix(piece.size());
    return piece;
}

std::u16string_view UtilpTakeMessage(std::u16string_view& left) noexcept {
    const std::u16string_view message = left.substr(0, longestMessage);
    const std::size_t end = message.find_first_of(u"\r\n");
    if (end == message.npos)
        return UtilpTakePiece(left, longestMessage);
    left.remove_prefix(end + 1);
    return message.substr(0, end);
}

} // namespace tvut
