// A table row for each kind of first byte holds what well-formed means, and decoding and checking both go by
// it. Overlong forms, surrogates and code points beyond the last are then ranges of the second byte, and need
// no arithmetic.
#include "text/encoding/utf8.h"

#include <array>
#include <cstdint>

namespace tvut {

namespace {

// One row for each kind of first byte: the sequence's length and the range of its second byte, as in
// the table of well-formed sequences of the Unicode standard (3-7).
struct scLead {
    unsigned char first, last;
    unsigned char length;
    unsigned char secondFirst, secondLast;
};
constexpr std::array<scLead, 9> leads{{{0x00, 0x7F, 1, 0, 0},
                                       {0xC2, 0xDF, 2, 0x80, 0xBF},
                                       {0xE0, 0xE0, 3, 0xA0, 0xBF},
                                       {0xE1, 0xEC, 3, 0x80, 0xBF},
                                       {0xED, 0xED, 3, 0x80, 0x9F},
                                       {0xEE, 0xEF, 3, 0x80, 0xBF},
                                       {0xF0, 0xF0, 4, 0x90, 0xBF},
                                       {0xF1, 0xF3, 4, 0x80, 0xBF},
                                       {0xF4, 0xF4, 4, 0x80, 0x8F}}};

constexpr unsigned char noRow = 0xFF;

constexpr std::array<unsigned char, 256> RowsOfBytes() {
    std::array<unsigned char, 256> rows{};
    rows.fill(noRow);
    for (std::size_t row = 0; row < leads.size(); ++row) {
        for (unsigned byte = leads[row].first; byte <= leads[row].last; ++byte)
            rows[byte] = static_cast<unsigned char>(row);
    }
    return rows;
}

constexpr std::array<unsigned char, 256> rowOfByte = RowsOfBytes();

unsigned ByteAt(std::string_view bytes, std::size_t at) {
    return static_cast<unsigned char>(bytes[at]);
}

// The length of the well-formed sequence that begins at a position, or 0.
std::size_t SequenceLength(std::string_view bytes, std::size_t at) {
    const unsigned row = rowOfByte[ByteAt(bytes, at)];
    if (row == noRow)
        return 0;
    const scLead& lead = leads[row];
    if (lead.length == 1)
        return 1;
    if (bytes.size() - at < lead.length)
        return 0;
    const unsigned second = ByteAt(bytes, at + 1);
    if (second < lead.secondFirst || second > lead.secondLast)
        return 0;
    for (std::size_t i = 2; i < lead.length; ++i) {
        if ((ByteAt(bytes, at + i) & 0xC0) != 0x80)
            return 0;
    }
    return lead.length;
}

std::uint32_t CodePoint(std::string_view bytes, std::size_t at, std::size_t length) {
    constexpr std::array<unsigned, 5> leadMask{0, 0x7F, 0x1F, 0x0F, 0x07};
    std::uint32_t code = ByteAt(bytes, at) & leadMask[length];
    for (std::size_t i = 1; i < length; ++i)
        code = code << 6 | (ByteAt(bytes, at + i) & 0x3F);
    return code;
}

char16_t* Put(char16_t* out, std::uint32_t code) {
    if (code < 0x10000) {
        *out++ = static_cast<char16_t>(code);
        return out;
    }
    *out++ = static_cast<char16_t>(0xD7C0 + (code >> 10));
    *out++ = static_cast<char16_t>(0xDC00 + (code & 0x3FF));
    return out;
}

constexpr std::uint32_t replacement = 0xFFFD;

// Takes the first character off a text that is not empty.
std::uint32_t TakeCodePoint(std::u16string_view& text) {
    const char16_t first = text.front(); // cppcheck-suppress containerOutOfBounds
    text.remove_prefix(1);
    if (first < 0xD800 || first > 0xDFFF)
        return first;
    if (!UtilpIsHighSurrogate(first) || text.empty() || text.front() < 0xDC00 || text.front() > 0xDFFF)
        return replacement;
    const std::uint32_t code = 0x10000u + ((first - 0xD800u) << 10) + (text.front() - 0xDC00u);
    text.remove_prefix(1);
    return code;
}

std::size_t LengthOf(std::uint32_t code) {
    if (code < 0x80)
        return 1;
    if (code < 0x800)
        return 2;
    return code < 0x10000 ? 3 : 4;
}

char* PutEncoded(char* out, std::uint32_t code) {
    constexpr std::array<unsigned, 5> leadBits{0, 0, 0xC0, 0xE0, 0xF0};
    const std::size_t length = LengthOf(code);
    for (std::size_t i = length; i-- > 1; code >>= 6)
        out[i] = static_cast<char>(0x80 | (code & 0x3F));
    out[0] = static_cast<char>(leadBits[length] | code);
    return out + length;
}

} // namespace

bool UtilpIsUtf8(std::string_view bytes) noexcept {
    for (std::size_t at = 0; at < bytes.size();) {
        const std::size_t length = SequenceLength(bytes, at);
        if (length == 0)
            return false;
        at += length;
    }
    return true;
}

std::size_t UtilpDecodeUtf8(std::string_view bytes, char16_t* characters) noexcept {
    char16_t* out = characters;
    for (std::size_t at = 0; at < bytes.size();) {
        const std::size_t length = SequenceLength(bytes, at);
        out = Put(out, length == 0 ? 0xFFFD : CodePoint(bytes, at, length));
        at += length == 0 ? 1 : length;
    }
    return static_cast<std::size_t>(out - characters);
}

bool UtilpIsUtf16(std::u16string_view text) noexcept {
    while (!text.empty()) {
        const char16_t first = text.front();
        if (TakeCodePoint(text) == replacement && first != replacement)
            return false;
    }
    return true;
}

std::size_t detail::LengthInUtf8(std::u16string_view text) noexcept {
    std::size_t length = 0;
    while (!text.empty())
        length += LengthOf(TakeCodePoint(text));
    return length;
}

std::size_t detail::EncodeUtf8(std::u16string_view text, char* bytes) noexcept {
    char* out = bytes;
    while (!text.empty())
        out = PutEncoded(out, TakeCodePoint(text));
    return static_cast<std::size_t>(out - bytes);
}

} // namespace tvut
