// Base64 between bytes and UTF-16 text: the alphabet of RFC 4648 with "+" and "/", no line breaks.
//
// What decoding takes: groups of four characters of the alphabet; blanks, tabs, CR and LF anywhere
// between them; a last group of two or three characters with the "=" that make it four, or with none.
// Unused bits of the last character are not looked at. Everything else is bad format: other characters,
// a single character at the end, padding that is too short, too long or not at the end.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace tvut {

// How many characters a number of bytes becomes. Throws std::bad_alloc when no text can be so long.
std::size_t UtilpBase64Length(std::size_t bytes);

// Writes exactly UtilpBase64Length characters. Bytes that come in pieces may be encoded piece by piece
// as long as all but the last are multiples of 3.
void UtilpBase64Encode(std::span<const std::uint8_t> bytes, char16_t* text);

// Decodes a text, which must stay, piece by piece.
class clsBase64Decoder {
  public:
    // Whether padding stands for no byte, or a group for three bytes in any case, missing ones being 0.
    enum class Padding { isNothing, isZero };

    explicit clsBase64Decoder(std::u16string_view text, Padding padding = Padding::isNothing);

    // Fills a room of a multiple of 3 bytes; less only at the end. Returns how many bytes, or nothing when
    // the text is in bad format.
    std::optional<std::size_t> Decode(std::span<std::uint8_t> room);

  private:
    struct scGroup;
    scGroup NextGroup();
    std::optional<std::size_t> DecodeGroup(std::uint8_t* bytes);

    std::u16string_view text_;
    Padding padding_;
};

} // namespace tvut
