// Sixteen characters are measured at once by adding up how much each grows, after those windows that stay as
// they are. They are written eight at a time while none of them grows, and else one by one, each as eight
// units of which the first ones count.
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

// A unit, given eight times, as &#x20ac;. Made in a register: a block that is read after it was written unit
// by unit would have to wait until all of them have left the processor.
__m128i Number(__m128i unit) {
    const __m128i places = _mm_setr_epi16(0, 0, 0, 1, 1 << 4, 1 << 8, 1 << 12, 0);
    const __m128i form = _mm_setr_epi16('&', '#', 'x', '0', '0', '0', '0', ';');
    const __m128i digits = _mm_srli_epi16(_mm_mullo_epi16(unit, places), 12);
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
    _mm_storeu_si128(reinterpret_cast<__m128i*>(result), Number(_mm_set1_epi16(static_cast<short>(unit))));
    return result + longestReference;
}

// Without a loop, whose end the processor would not always guess.
char16_t* PutNumbers(__m128i units, char16_t* result) {
    const auto put = [&](__m128i unit) {
        _mm_storeu_si128(reinterpret_cast<__m128i*>(result), Number(unit));
        result += longestReference;
    };
    const __m128i first = _mm_unpacklo_epi16(units, units), second = _mm_unpackhi_epi16(units, units);
    put(_mm_shuffle_epi32(first, 0x00));
    put(_mm_shuffle_epi32(first, 0x55));
    put(_mm_shuffle_epi32(first, 0xAA));
    put(_mm_shuffle_epi32(first, 0xFF));
    put(_mm_shuffle_epi32(second, 0x00));
    put(_mm_shuffle_epi32(second, 0x55));
    put(_mm_shuffle_epi32(second, 0xAA));
    put(_mm_shuffle_epi32(second, 0xFF));
    return result;
}

char16_t* PutExact(char16_t unit, char16_t* result) {
    std::array<char16_t, longestReference> masked;
    const auto length = static_cast<std::size_t>(PutFast(unit, masked.data()) - masked.data());
    return std::copy_n(masked.begin(), length, result);
}

// Whether all eight units are written as numbers.
bool AreNumbered(__m128i units) {
    static_assert(firstNumbered == 1 << 8);
    return _mm_movemask_epi8(_mm_cmpeq_epi16(_mm_srli_epi16(units, 8), _mm_setzero_si128())) == 0;
}

bool IsAscii(__m128i units) {
    return _mm_movemask_epi8(_mm_cmpeq_epi16(_mm_srli_epi16(units, 7), _mm_setzero_si128())) == 0xFFFF;
}

// How many units each of sixteen ASCII characters gets more than it has: 4 for TAB and &, 5 for ", 3 for <
// and >, which differ in one bit.
__m128i Growth(__m128i characters) {
    const auto where = [](__m128i bytes, char c, char growth) {
        return _mm_and_si128(_mm_cmpeq_epi8(bytes, _mm_set1_epi8(c)), _mm_set1_epi8(growth));
    };
    return _mm_or_si128(
        _mm_or_si128(where(characters, '\t', 4), where(characters, '&', 4)),
        _mm_or_si128(where(characters, '"', 5), where(_mm_or_si128(characters, _mm_set1_epi8(2)), '>', 3)));
}

constexpr std::ptrdiff_t windowUnits = 32;

// Which of sixteen ASCII characters grow: TAB, " and &, < and >, which differ in one bit each.
__m128i Growing(__m128i characters) {
    const auto equal = [](__m128i bytes, char c) { return _mm_cmpeq_epi8(bytes, _mm_set1_epi8(c)); };
    return _mm_or_si128(
        _mm_or_si128(equal(characters, '\t'), equal(_mm_or_si128(characters, _mm_set1_epi8(4)), '&')),
        equal(_mm_or_si128(characters, _mm_set1_epi8(2)), '>'));
}

// Whether all eight ASCII units stay as they are.
bool IsPlain(__m128i block) {
    return _mm_movemask_epi8(Growing(_mm_packus_epi16(block, block))) == 0;
}

// Whether all units of a window stay as they are.
bool IsPlainWindow(const char16_t* window) {
    const __m128i first = UtilpLoadEight(window), second = UtilpLoadEight(window + 8);
    const __m128i third = UtilpLoadEight(window + 16), fourth = UtilpLoadEight(window + 24);
    const __m128i any = _mm_or_si128(_mm_or_si128(first, second), _mm_or_si128(third, fourth));
    const __m128i beyondAscii = _mm_adds_epu16(any, _mm_set1_epi16(0x7F80)); // in the topmost bits
    const __m128i growing =
        _mm_or_si128(Growing(_mm_packus_epi16(first, second)), Growing(_mm_packus_epi16(third, fourth)));
    return (_mm_movemask_epi8(growing) | (_mm_movemask_epi8(beyondAscii) & 0xAAAA)) == 0;
}

// By how much the result of some text is longer.
class clsGrowth {
  public:
    // The second eight units may be zero.
    void Add(const char16_t* text, __m128i first, __m128i second) {
        const __m128i zero = _mm_setzero_si128();
        const __m128i bytes = _mm_packus_epi16(first, second); // a number's is no ASCII character
        sums_ = _mm_add_epi32(sums_, _mm_sad_epu8(Growth(bytes), zero));
        if (IsAscii(_mm_or_si128(first, second)))
            return;
        const auto named = [=](__m128i units) { return _mm_cmpeq_epi16(_mm_srli_epi16(units, 8), zero); };
        const __m128i areNamed = _mm_packs_epi16(named(first), named(second));
        const __m128i numbered = _mm_andnot_si128(areNamed, _mm_set1_epi8(longestReference - 1));
        sums_ = _mm_add_epi32(sums_, _mm_sad_epu8(numbered, zero));
        auto beyondAscii = static_cast<unsigned>(_mm_movemask_epi8(_mm_and_si128(areNamed, bytes)));
        for (; beyondAscii != 0; beyondAscii &= beyondAscii - 1)
            Add(text[std::countr_zero(beyondAscii)]);
    }
    void Add(char16_t unit) { more_ += LengthOf(unit) - 1; }

    std::size_t Sum() const {
        return more_ +
               static_cast<std::size_t>(_mm_cvtsi128_si32(_mm_add_epi32(sums_, _mm_srli_si128(sums_, 8))));
    }

  private:
    __m128i sums_ = _mm_setzero_si128();
    std::size_t more_ = 0;
};

std::size_t GrowthOf(const char16_t* text, const char16_t* end) {
    clsGrowth growth;
    for (; end - text >= 16; text += 16)
        growth.Add(text, UtilpLoadEight(text), UtilpLoadEight(text + 8));
    if (end - text >= 8) {
        growth.Add(text, UtilpLoadEight(text), _mm_setzero_si128());
        text += 8;
    }
    for (; text != end; ++text)
        growth.Add(*text);
    return growth.Sum();
}

} // namespace

// Windows that stay as they are are passed over. Where one does not, those after it will not either.
std::size_t UtilpMaskedRunLength(const char16_t* text, const char16_t* end) {
    auto length = static_cast<std::size_t>(end - text);
    while (text != end) {
        if (end - text >= windowUnits && IsPlainWindow(text)) {
            text += windowUnits;
        } else {
            const char16_t* const stop = text + std::min<std::ptrdiff_t>(end - text, 8 * windowUnits);
            length += GrowthOf(text, stop);
            text = stop;
        }
    }
    return length;
}

char16_t* UtilpMaskRun(const char16_t* text, const char16_t* end, char16_t* result, char16_t* resultEnd) {
    constexpr std::ptrdiff_t mostOfBlock = 8 * longestReference;
    for (; end - text >= 8 && resultEnd - result >= mostOfBlock; text += 8) {
        const __m128i block = UtilpLoadEight(text);
        if (!IsAscii(block) && AreNumbered(block)) {
            result = PutNumbers(block, result);
            continue;
        }
        if (IsAscii(block) && IsPlain(block)) {
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
