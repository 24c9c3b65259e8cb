// UTF-8 (RFC 3629) and UTF-16, a character at a time; for texts there is text/encoding/utf8.h.
//
// A table row for each kind of first byte holds what well-formed means, and decoding and checking both go by
// it. Overlong forms, surrogates and code points beyond the last are then ranges of the second byte, and need
// no arithmetic.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace tvut {

constexpr std::uint32_t replacementCharacter = 0xFFFD;

namespace detail {

// One row for each kind of first byte: the sequence's length and the range of its second byte, as in
// the table of well-formed sequences of the Unicode standard (3-7).
struct scUtf8Lead {
    unsigned char first, last;
    unsigned char length;
    unsigned char secondFirst, secondLast;
};
inline constexpr std::array<scUtf8Lead, 9> utf8Leads{{{0x00, 0x7F, 1, 0, 0},
                                                      {0xC2, 0xDF, 2, 0x80, 0xBF},
                                                      {0xE0, 0xE0, 3, 0xA0, 0xBF},
                                                      {0xE1, 0xEC, 3, 0x80, 0xBF},
                                                      {0xED, 0xED, 3, 0x80, 0x9F},
                                                      {0xEE, 0xEF, 3, 0x80, 0xBF},
                                                      {0xF0, 0xF0, 4, 0x90, 0xBF},
                                                      {0xF1, 0xF3, 4, 0x80, 0xBF},
                                                      {0xF4, 0xF4, 4, 0x80, 0x8F}}};

constexpr unsigned char noRow = 0xFF;

constexpr std::array<unsigned char, 256> Utf8Rows() {
    std::array<unsigned char, 256> rows{};
    rows.fill(noRow);
    for (std::size_t row = 0; row < utf8Leads.size(); ++row) {
        for (unsigned byte = utf8Leads[row].first; byte <= utf8Leads[row].last; ++byte)
            rows[byte] = static_cast<unsigned char>(row);
    }
    return rows;
}
inline constexpr std::array<unsigned char, 256> utf8RowOfByte = Utf8Rows();

constexpr unsigned ByteAt(std::string_view bytes, std::size_t at) {
    return static_cast<unsigned char>(bytes[at]);
}

} // namespace detail

// The length of the well-formed sequence that begins at a position, or 0.
constexpr std::size_t UtilpUtf8SequenceLength(std::string_view bytes, std::size_t at) {
    const unsigned row = detail::utf8RowOfByte[detail::ByteAt(bytes, at)];
    if (row == detail::noRow)
        return 0;
    const detail::scUtf8Lead& lead = detail::utf8Leads[row];
    if (lead.length == 1)
        return 1;
    if (bytes.size() - at < lead.length)
        return 0;
    const unsigned second = detail::ByteAt(bytes, at + 1);
    if (second < lead.secondFirst || second > lead.secondLast)
        return 0;
    for (std::size_t i = 2; i < lead.length; ++i) {
        if ((detail::ByteAt(bytes, at + i) & 0xC0) != 0x80)
            return 0;
    }
    return lead.length;
}

// Of a well-formed sequence.
constexpr std::uint32_t UtilpUtf8CodePoint(std::string_view bytes, std::size_t at, std::size_t length) {
    constexpr std::array<unsigned, 5> leadMask{0, 0x7F, 0x1F, 0x0F, 0x07};
    std::uint32_t code = detail::ByteAt(bytes, at) & leadMask[length];
    for (std::size_t i = 1; i < length; ++i)
        code = code << 6 | (detail::ByteAt(bytes, at + i) & 0x3F);
    return code;
}

// Takes the first character off UTF-8 that is not empty; a byte of no well-formed sequence is U+FFFD.
constexpr std::uint32_t UtilpTakeUtf8(std::string_view& bytes) {
    const std::size_t length = UtilpUtf8SequenceLength(bytes, 0);
    const std::uint32_t code = length == 0 ? replacementCharacter : UtilpUtf8CodePoint(bytes, 0, length);
    bytes.remove_prefix(length == 0 ? 1 : length);
    return code;
}

// Writes one unit or two, and returns where the next goes.
constexpr char16_t* UtilpPutUtf16(char16_t* out, std::uint32_t code) {
    if (code < 0x10000) {
        *out++ = static_cast<char16_t>(code);
        return out;
    }
    *out++ = static_cast<char16_t>(0xD7C0 + (code >> 10));
    *out++ = static_cast<char16_t>(0xDC00 + (code & 0x3FF));
    return out;
}

// Takes the first character off UTF-16 that is not empty; half a surrogate pair is U+FFFD.
constexpr std::uint32_t UtilpTakeUtf16(std::u16string_view& text) {
    const char16_t first = text.front(); // cppcheck-suppress containerOutOfBounds
    text.remove_prefix(1);
    if (first < 0xD800 || first > 0xDFFF)
        return first;
    if (first >= 0xDC00 || text.empty() || text.front() < 0xDC00 || text.front() > 0xDFFF)
        return replacementCharacter;
    const std::uint32_t code = 0x10000u + ((first - 0xD800u) << 10) + (text.front() - 0xDC00u);
    text.remove_prefix(1);
    return code;
}

constexpr std::size_t UtilpUtf8LengthOf(std::uint32_t code) {
    if (code < 0x80)
        return 1;
    if (code < 0x800)
        return 2;
    return code < 0x10000 ? 3 : 4;
}

// Writes up to 4 bytes, and returns where the next goes.
constexpr char* UtilpPutUtf8(char* out, std::uint32_t code) {
    constexpr std::array<unsigned, 5> leadBits{0, 0, 0xC0, 0xE0, 0xF0};
    const std::size_t length = UtilpUtf8LengthOf(code);
    for (std::size_t i = length; i-- > 1; code >>= 6)
        out[i] = static_cast<char>(0x80 | (code & 0x3F));
    out[0] = static_cast<char>(leadBits[length] | code);
    return out + length;
}

} // namespace tvut
