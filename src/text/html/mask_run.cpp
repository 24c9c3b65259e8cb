// Sixteen ASCII characters are measured at once by adding up how much each grows. They are written eight at a
// time while none of them grows, and else one by one, each as eight units of which the first ones count.
#include "text/html/mask_run.h"

#include "text/html/entities.h"
#include "text/units.h"

#include <algorithm>

namespace tvut {

namespace {

constexpr unsigned firstNumbered = 0x100;

std::size_t LengthOf(char16_t unit) {
    return unit < firstNumbered ? maskedUnits[unit].length : longestReference;
}

// A unit as &#x20ac;. Made in a register: a block that is read after it was written unit by unit would have
// to wait until all of them have left the processor.
__m128i Number(char16_t unit) {
    const __m128i places = _mm_setr_epi16(0, 0, 0, 1, 1 << 4, 1 << 8, 1 << 12, 0);
    const __m128i form = _mm_setr_epi16('&', '#', 'x', '0', '0', '0', '0', ';');
    const __m128i units = _mm_set1_epi16(static_cast<short>(unit));
    const __m128i digits = _mm_srli_epi16(_mm_mullo_epi16(units, places), 12);
    const __m128i letters = _mm_cmpgt_epi16(digits, _mm_set1_epi16(9));
    const __m128i toLetters = _mm_and_si128(letters, _mm_set1_epi16('a' - '0' - 10));
    return _mm_add_epi16(_mm_add_epi16(digits, form), toLetters);
}

// Writes eight units, of which the first ones count.
char16_t* PutFast(char16_t unit, char16_t* result) {
    if (unit < firstNumbered) {
        const scMasked& masked = maskedUnits[unit];
        std::memcpy(result, masked.text.data(), sizeof masked.text);
        return result + masked.length;
    }
    _mm_storeu_si128(reinterpret_cast<__m128i*>(result), Number(unit));
    return result + longestReference;
}

char16_t* PutExact(char16_t unit, char16_t* result) {
    std::array<char16_t, longestReference> masked;
    const auto length = static_cast<std::size_t>(PutFast(unit, masked.data()) - masked.data());
    return std::copy_n(masked.begin(), length, result);
}

bool IsAscii(__m128i units) {
    return _mm_movemask_epi8(_mm_cmpeq_epi16(_mm_srli_epi16(units, 7), _mm_setzero_si128())) == 0xFFFF;
}

// How many units each of sixteen ASCII characters gets more than it has: 4 for TAB and &, 5 for ", 3 for <
// and
// >, which differ in one bit.
__m128i Growth(__m128i characters) {
    const auto where = [](__m128i bytes, char c, char growth) {
        return _mm_and_si128(_mm_cmpeq_epi8(bytes, _mm_set1_epi8(c)), _mm_set1_epi8(growth));
    };
    return _mm_or_si128(
        _mm_or_si128(where(characters, '\t', 4), where(characters, '&', 4)),
        _mm_or_si128(where(characters, '"', 5), where(_mm_or_si128(characters, _mm_set1_epi8(2)), '>', 3)));
}

// By how much the result of sixteen ASCII units is longer.
std::size_t GrowthOf(__m128i first, __m128i second) {
    const __m128i sums = _mm_sad_epu8(Growth(_mm_packus_epi16(first, second)), _mm_setzero_si128());
    return static_cast<std::size_t>(_mm_cvtsi128_si32(_mm_add_epi32(sums, _mm_srli_si128(sums, 8))));
}

// Whether all eight units stay as they are.
bool IsPlain(__m128i block) {
    const __m128i growth = Growth(_mm_packus_epi16(block, block));
    return IsAscii(block) && _mm_movemask_epi8(_mm_cmpeq_epi8(growth, _mm_setzero_si128())) == 0xFFFF;
}

} // namespace

std::size_t UtilpMaskedRunLength(const char16_t* text, const char16_t* end) {
    auto length = static_cast<std::size_t>(end - text);
    for (; end - text >= 16; text += 16) {
        const __m128i first = UtilpLoadEight(text), second = UtilpLoadEight(text + 8);
        if (IsAscii(_mm_or_si128(first, second))) {
            length += GrowthOf(first, second);
            continue;
        }
        for (int i = 0; i < 16; ++i)
            length += LengthOf(text[i]) - 1;
    }
    for (; text != end; ++text)
        length += LengthOf(*text) - 1;
    return length;
}

char16_t* UtilpMaskRun(const char16_t* text, const char16_t* end, char16_t* result, char16_t* resultEnd) {
    constexpr std::ptrdiff_t mostOfBlock = 8 * longestReference;
    for (; end - text >= 8 && resultEnd - result >= mostOfBlock; text += 8) {
        const __m128i block = UtilpLoadEight(text);
        if (IsPlain(block)) {
            _mm_storeu_si128(reinterpret_cast<__m128i*>(result), block);
            result += 8;
            continue;
        }
        for (int i = 0; i < 8; ++i)
            result = PutFast(text[i], result);
    }
    while (text != end && static_cast<std::size_t>(resultEnd - result) >= longestReference)
        result = PutFast(*text++, result);
    while (text != end)
        result = PutExact(*text++, result);
    return result;
}

} // namespace tvut
