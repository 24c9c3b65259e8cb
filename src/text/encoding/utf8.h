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

// Copies characters as bytes, which is right if all are ASCII: returns whether they are. Pieces may overlap.
inline bool UtilpNarrowAscii(char* out, std::u16string_view text) {
    const std::size_t length = text.size();
    const char16_t* const from = text.data();
    const auto sixteen = [=](std::size_t at) {
        const __m128i low = UtilpLoadEight(from + at), high = UtilpLoadEight(from + at + 8);
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out + at), _mm_packus_epi16(low, high));
        return _mm_or_si128(low, high);
    };
    __m128i all;
    if (length >= 16) {
        all = sixteen(length - 16);
        for (std::size_t at = 0; at + 16 < length; at += 16)
            all = _mm_or_si128(all, sixteen(at));
    } else if (length >= 8) {
        const __m128i first = UtilpLoadEight(from), last = UtilpLoadEight(from + length - 8);
        const __m128i bytes = _mm_packus_epi16(first, last);
        _mm_storel_epi64(reinterpret_cast<__m128i*>(out), bytes);
        _mm_storel_epi64(reinterpret_cast<__m128i*>(out + length - 8), _mm_unpackhi_epi64(bytes, bytes));
        all = _mm_or_si128(first, last);
    } else if (length >= 4) {
        all = _mm_unpacklo_epi64(UtilpLoadFour(from), UtilpLoadFour(from + length - 4));
        const __m128i bytes = _mm_packus_epi16(all, all);
        const int first = _mm_cvtsi128_si32(bytes), last = _mm_cvtsi128_si32(_mm_srli_si128(bytes, 4));
        std::memcpy(out, &first, sizeof first);
        std::memcpy(out + length - 4, &last, sizeof last);
    } else {
        bool isAscii = true;
        for (std::size_t at = 0; at < length; ++at) {
            out[at] = static_cast<char>(text[at]);
            isAscii &= text[at] < 0x80;
        }
        return isAscii;
    }
    return _mm_movemask_epi8(_mm_cmpeq_epi16(_mm_srli_epi16(all, 7), _mm_setzero_si128())) == 0xFFFF;
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
