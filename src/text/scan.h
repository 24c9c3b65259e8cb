// Scanning and copying UTF-16 text eight characters at a time, where the processor allows it.
//
// The scalar forms are the definition; the vector forms (SSE2, which every supported processor has)
// give the same answers.
#pragma once

#include "text/units.h"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace tvut {

// Control pictures and the stand-ins for "=", "[" and "]" all lie between these.
constexpr char16_t firstMark = u'\u2338';
constexpr char16_t lastMark = u'\u301B';

struct scLine {
    const char16_t* end;    // the first CR or LF
    const char16_t* equals; // the first "=" before it, or end
    bool marked;            // some character lies between firstMark and lastMark
    bool zero;              // some character is NUL
};

// Scans from a character to the end of its line. A CR or LF must follow somewhere, with seven more
// readable units behind it.
inline scLine UtilpScanLine(const char16_t* text) {
    scLine line{nullptr, nullptr, false, false};
    const __m128i carriageReturn = _mm_set1_epi16(u'\r');
    const __m128i lineFeed = _mm_set1_epi16(u'\n');
    const __m128i equals = _mm_set1_epi16(u'=');
    const __m128i belowMarks = _mm_set1_epi16(static_cast<short>(firstMark));
    const __m128i markRange = _mm_set1_epi16(static_cast<short>(lastMark - firstMark));
    const __m128i zero = _mm_setzero_si128();
    for (;; text += 8) {
        const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text));
        const __m128i ends =
            _mm_or_si128(_mm_cmpeq_epi16(block, carriageReturn), _mm_cmpeq_epi16(block, lineFeed));
        const __m128i marks =
            _mm_cmpeq_epi16(_mm_subs_epu16(_mm_sub_epi16(block, belowMarks), markRange), zero);
        auto endMask = static_cast<unsigned>(_mm_movemask_epi8(ends));
        auto equalsMask = static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi16(block, equals)));
        auto markMask = static_cast<unsigned>(_mm_movemask_epi8(marks));
        auto zeroMask = static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi16(block, zero)));
        if (endMask != 0) {
            const unsigned before = (endMask & (0u - endMask)) - 1;
            equalsMask &= before;
            markMask &= before;
            zeroMask &= before;
            line.end = text + std::countr_zero(endMask) / 2;
        }
        if (equalsMask != 0 && !line.equals)
            line.equals = text + std::countr_zero(equalsMask) / 2;
        line.marked |= markMask != 0;
        line.zero |= zeroMask != 0;
        if (line.end)
            break;
    }
    if (!line.equals)
        line.equals = line.end;
    return line;
}

// Four characters, in the lower half.
inline __m128i UtilpLoadFour(const char16_t* text) {
    return _mm_loadl_epi64(reinterpret_cast<const __m128i*>(text));
}

// Sixteen characters as bytes: those beyond ASCII become 0x7F or 0x80.
inline __m128i UtilpPackAscii(__m128i low, __m128i high) {
    return _mm_packs_epi16(low, high);
}
inline __m128i UtilpEqualBytes(__m128i bytes, char c) {
    return _mm_cmpeq_epi8(bytes, _mm_set1_epi8(c));
}

// What UtilpScanMarkupLine finds in a line of markup, sixteen characters at a time: fifteen readable units
// must follow its end.
struct scMarkupLine {
    const char16_t* end;
    const char16_t* quote; // the first double quote that is not among the first characters, or end
    const char16_t* less;  // the first "<" that is not the first character, or end
    bool marked;           // some character is "&" or NUL
};

// (Not a result: the processor would wait for it to be in memory before it could be copied as a whole.)
template <unsigned firstCharacters>
void UtilpScanMarkupLine(const char16_t* text, scMarkupLine& result) {
    scMarkupLine line{nullptr, nullptr, nullptr, false};
    unsigned quotable = 0xFFFFu << firstCharacters;
    unsigned lessable = 0xFFFEu;
    for (; !line.end; text += 16, quotable = lessable = 0xFFFF) {
        const __m128i block = UtilpPackAscii(UtilpLoadEight(text), UtilpLoadEight(text + 8));
        const auto equal = [block](char c) { return UtilpEqualBytes(block, c); };
        const auto mask = [](__m128i found) { return static_cast<unsigned>(_mm_movemask_epi8(found)); };
        const auto first = [text](unsigned found) { return text + std::countr_zero(found); };
        const unsigned ends = mask(_mm_or_si128(equal('\r'), equal('\n')));
        const unsigned inside = ends == 0 ? 0xFFFF : (ends & (0u - ends)) - 1;
        const unsigned quotes = mask(equal('"')) & quotable & inside;
        const unsigned less = mask(equal('<')) & lessable & inside;
        line.marked |= (mask(_mm_or_si128(equal('&'), equal('\0'))) & inside) != 0;
        if (quotes != 0 && !line.quote)
            line.quote = first(quotes);
        if (less != 0 && !line.less)
            line.less = first(less);
        if (ends != 0)
            line.end = first(ends);
    }
    result.end = line.end;
    result.quote = line.quote ? line.quote : line.end;
    result.less = line.less ? line.less : line.end;
    result.marked = line.marked;
}

// Copies text while replacing the characters that the text form cannot hold: controls and, in names,
// "=", "[" and "]". Those are few, so whole blocks are copied first and looked at then.
template <bool isName>
class clsReplacingCopy {
  public:
    template <class Replace>
    static void Copy(char16_t* out, const char16_t* text, std::size_t length, Replace replace) {
        if (length >= 8) {
            for (std::size_t at = 0; at + 8 <= length; at += 8)
                CopyBlock<8>(out + at, text + at, replace);
            if (length % 8 != 0) // the last block overlaps the one before
                CopyBlock<8>(out + length - 8, text + length - 8, replace);
            return;
        }
        if (length >= 4) {
            CopyBlock<4>(out, text, replace);
            CopyBlock<4>(out + length - 4, text + length - 4, replace);
            return;
        }
        for (std::size_t at = 0; at < length; ++at)
            out[at] = replace(text[at]);
    }

  private:
    template <int units, class Replace>
    static void CopyBlock(char16_t* out, const char16_t* text, Replace replace) {
        const auto* const from = reinterpret_cast<const __m128i*>(text);
        auto* const to = reinterpret_cast<__m128i*>(out);
        const __m128i block = units == 8 ? _mm_loadu_si128(from) : _mm_loadl_epi64(from);
        if constexpr (units == 8)
            _mm_storeu_si128(to, block);
        else
            _mm_storel_epi64(to, block);
        const int mask = _mm_movemask_epi8(Special(block)) & (units == 8 ? 0xFFFF : 0xFF);
        if (mask != 0) {
            for (int i = 0; i < units; ++i)
                out[i] = replace(text[i]);
        }
    }

    static __m128i Special(__m128i block) {
        __m128i special = _mm_cmpeq_epi16(_mm_subs_epu16(block, _mm_set1_epi16(0x1F)), _mm_setzero_si128());
        if constexpr (isName) {
            special = _mm_or_si128(special, _mm_cmpeq_epi16(block, _mm_set1_epi16(u'=')));
            special = _mm_or_si128(special, _mm_cmpeq_epi16(block, _mm_set1_epi16(u'[')));
            special = _mm_or_si128(special, _mm_cmpeq_epi16(block, _mm_set1_epi16(u']')));
        }
        return special;
    }
};

// What cannot stand in XML text as it is.
struct scXmlSpecial {
    static constexpr bool Is(char16_t c) {
        return c < 0x20 || c == u'<' || c == u'>' || c == u'&' || c == u'\'' || c == u'"';
    }
    // A byte for each of sixteen characters, all its bits set where one is special.
    static __m128i Find(__m128i low, __m128i high) {
        const __m128i block = UtilpPackAscii(low, high);
        const __m128i control = UtilpEqualBytes(_mm_subs_epu8(block, _mm_set1_epi8(0x1F)), 0);
        const __m128i angle = UtilpEqualBytes(_mm_or_si128(block, _mm_set1_epi8(2)), '>');  // 3C and 3E
        const __m128i quote = UtilpEqualBytes(_mm_or_si128(block, _mm_set1_epi8(1)), '\''); // 26 and 27
        return _mm_or_si128(_mm_or_si128(control, angle), _mm_or_si128(quote, UtilpEqualBytes(block, '"')));
    }
};

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

// The four places in a text of 4 to 15 characters from which four characters each cover it. That they may
// overlap lets every such length take the same way: texts are short, and the processor cannot guess which
// length comes next.
class clsQuarters {
  public:
    explicit clsQuarters(std::size_t length)
        : second_(length / 8 * 4), third_(length - 4 - second_), fourth_(length - 4) {}
    template <class Load> // a function of the place
    __m128i LowerHalf(Load load) const {
        return _mm_unpacklo_epi64(load(0), load(second_));
    }
    template <class Load>
    __m128i UpperHalf(Load load) const {
        return _mm_unpacklo_epi64(load(third_), load(fourth_));
    }

  private:
    std::size_t second_, third_, fourth_;
};

// How many characters stand before the first special one, or all of them.
template <class Special>
std::size_t UtilpLengthBefore(std::u16string_view text) {
    const std::size_t length = text.size();
    std::size_t at = 0;
    const char16_t* const begin = text.data();
    for (; length - at >= 16; at += 16) {
        const __m128i found = Special::Find(UtilpLoadEight(begin + at), UtilpLoadEight(begin + at + 8));
        if (const int mask = _mm_movemask_epi8(found))
            return at + static_cast<std::size_t>(std::countr_zero(static_cast<unsigned>(mask)));
    }
    if (length - at >= 4) {
        const auto load = [=](std::size_t place) { return UtilpLoadFour(begin + at + place); };
        const clsQuarters quarters(length - at);
        if (_mm_movemask_epi8(Special::Find(quarters.LowerHalf(load), quarters.UpperHalf(load))) == 0)
            return length;
    }
    while (at < length && !Special::Is(text[at]))
        ++at;
    return at;
}

// Copies text and tells whether it holds something special.
template <class Special>
bool UtilpCopyFinding(char16_t* out, std::u16string_view text) {
    const std::size_t length = text.size();
    std::size_t at = 0;
    bool special = false;
    const char16_t* const begin = text.data();
    const auto copy = [&](std::size_t place) {
        const __m128i block = UtilpLoadEight(begin + place);
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out + place), block);
        return block;
    };
    __m128i found = _mm_setzero_si128();
    for (; length - at >= 16; at += 16)
        found = _mm_or_si128(found, Special::Find(copy(at), copy(at + 8)));
    if (length - at >= 4) {
        const auto copyFour = [&](std::size_t place) {
            const __m128i block = UtilpLoadFour(begin + at + place);
            _mm_storel_epi64(reinterpret_cast<__m128i*>(out + at + place), block);
            return block;
        };
        const clsQuarters quarters(length - at);
        found =
            _mm_or_si128(found, Special::Find(quarters.LowerHalf(copyFour), quarters.UpperHalf(copyFour)));
        at = length;
    }
    special = _mm_movemask_epi8(found) != 0;
    for (; at < length; ++at) {
        out[at] = text[at];
        special |= Special::Is(text[at]);
    }
    return special;
}

// Copies characters as bytes, which is right if all are ASCII: tells whether they are.
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

} // namespace tvut
