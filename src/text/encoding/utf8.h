// UTF-8 (RFC 3629) to UTF-16 and back.
#pragma once

#include "text/scan.h"

#include <cstddef>
#include <string_view>

namespace tvut {

// True when every byte belongs to a well-formed sequence: no overlong forms, no surrogates, nothing
// beyond U+10FFFF, nothing cut off.
bool UtilpIsUtf8(std::string_view bytes) noexcept;

// Converts; each byte that belongs to no well-formed sequence becomes U+FFFD. The buffer has room for
// as many characters as there are bytes, which is always enough. Returns the number of characters.
std::size_t UtilpDecodeUtf8(std::string_view bytes, char16_t* characters) noexcept;

constexpr bool UtilpIsHighSurrogate(char16_t c) {
    return c >= 0xD800 && c < 0xDC00;
}

// Whether each surrogate has its other half.
bool UtilpIsUtf16(std::u16string_view text) noexcept;

// No character of UTF-16 takes more bytes.
constexpr std::size_t longestUtf8 = 3;

// What is not one byte in UTF-8.
struct scNotAscii {
    static constexpr bool Is(char16_t c) { return c >= 0x80; }
    static __m128i Find(__m128i low, __m128i high) {
        const auto isAscii = [](__m128i block) {
            return _mm_cmpeq_epi16(_mm_srli_epi16(block, 7), _mm_setzero_si128());
        };
        return UtilpEqualBytes(_mm_packs_epi16(isAscii(low), isAscii(high)), 0);
    }
};

// Copies characters as bytes, which is right if all are ASCII: returns whether they are.
inline bool UtilpNarrowAscii(char* out, std::u16string_view text) {
    const std::size_t length = text.size();
    std::size_t at = 0;
    char16_t seen = 0;
    const char16_t* const begin = text.data();
    __m128i all = _mm_setzero_si128();
    for (; length - at >= 16; at += 16) {
        const __m128i low = UtilpLoadEight(begin + at);
        const __m128i high = UtilpLoadEight(begin + at + 8);
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out + at), _mm_packus_epi16(low, high));
        all = _mm_or_si128(all, _mm_or_si128(low, high));
    }
    if (length - at >= 4) {
        const auto narrow = [&](std::size_t place) {
            const __m128i block = UtilpLoadFour(begin + at + place);
            const int bytes = _mm_cvtsi128_si32(_mm_packus_epi16(block, block));
            std::memcpy(out + at + place, &bytes, sizeof bytes);
            return block;
        };
        const clsQuarters quarters(length - at);
        all = _mm_or_si128(all, _mm_or_si128(quarters.LowerHalf(narrow), quarters.UpperHalf(narrow)));
        at = length;
    }
    if (_mm_movemask_epi8(_mm_cmpeq_epi16(_mm_srli_epi16(all, 7), _mm_setzero_si128())) != 0xFFFF)
        return false;
    for (; at < length; ++at) {
        out[at] = static_cast<char>(text[at]);
        seen |= text[at];
    }
    return seen < 0x80;
}

namespace detail {
std::size_t LengthInUtf8(std::u16string_view text) noexcept;
std::size_t EncodeUtf8(std::u16string_view text, char* bytes) noexcept;
} // namespace detail

// How many bytes UtilpEncodeUtf8 writes.
inline std::size_t UtilpUtf8Length(std::u16string_view text) noexcept {
    const std::size_t ascii = UtilpLengthBefore<scNotAscii>(text);
    return ascii == text.size() ? ascii : ascii + detail::LengthInUtf8(text.substr(ascii));
}

// Converts; a surrogate without its other half becomes U+FFFD. There is room for longestUtf8 bytes for
// each character. Returns the number of bytes.
inline std::size_t UtilpEncodeUtf8(std::u16string_view text, char* bytes) noexcept {
    return UtilpNarrowAscii(bytes, text) ? text.size() : detail::EncodeUtf8(text, bytes);
}

} // namespace tvut
