// Masking and demasking: characters to references and back.
//
// Demasking takes a text in stretches: it finds all ampersands of one, then it resolves the references and
// copies what is between them, both in blocks. What is next does not wait for how long a reference is, and
// the processor need not guess where the next ampersand stands. Where blocks would leave the text, at its
// end, it goes from one ampersand to the next.
#include "text/find.h"
#include "text/html/entities.h"
#include "text/html/html.h"
#include "text/html/mask_run.h"
#include "text/html/references.h"

#include <algorithm>

namespace tvut {

namespace {

// The unit of a reference as masking writes it, &#x20ac;, of which the first unit is here: four digits in
// either case. 0 when it is written in another way.
char16_t FourDigitUnit(const char16_t* reference) {
    const __m128i form = _mm_setr_epi16('&', '#', 'x', 0, 0, 0, 0, ';');
    constexpr unsigned digits = 0b0011'1111'1100'0000, others = 0xFFFF ^ digits; // two bits a unit
    const __m128i places = _mm_setr_epi16(0, 0, 0, 1 << 12, 1 << 8, 1 << 4, 1, 0);
    const auto upTo = [](__m128i numbers, short most) {
        return _mm_cmpeq_epi16(_mm_subs_epu16(numbers, _mm_set1_epi16(most)), _mm_setzero_si128());
    };
    const __m128i units = UtilpLoadEight(reference);
    const __m128i decimal = _mm_sub_epi16(units, _mm_set1_epi16('0'));
    const __m128i letter = _mm_sub_epi16(_mm_or_si128(units, _mm_set1_epi16(0x20)), _mm_set1_epi16('a'));
    const __m128i isDecimal = upTo(decimal, 9);
    const __m128i isDigit = _mm_or_si128(isDecimal, upTo(letter, 5));
    const auto isForm = static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi16(units, form)));
    if (((isForm | digits) & (static_cast<unsigned>(_mm_movemask_epi8(isDigit)) | others)) != 0xFFFF)
        return 0;
    const __m128i values =
        _mm_or_si128(_mm_and_si128(isDecimal, decimal),
                     _mm_andnot_si128(isDecimal, _mm_add_epi16(letter, _mm_set1_epi16(10))));
    const __m128i pairs = _mm_madd_epi16(values, places);
    const __m128i sums = _mm_add_epi32(pairs, _mm_srli_si128(pairs, 8));
    return static_cast<char16_t>(_mm_cvtsi128_si32(_mm_add_epi32(sums, _mm_srli_si128(sums, 4))));
}

// Resolves as many references of four digits as follow each other, which is what letters of other scripts
// become.
std::size_t ResolveRow(const char16_t* text, const char16_t* end, char16_t* result) {
    std::size_t count = 0;
    for (; end - text >= static_cast<std::ptrdiff_t>(longestReference); text += longestReference) {
        const char16_t unit = FourDigitUnit(text);
        if (unit == 0)
            break;
        result[count++] = unit;
    }
    return count;
}

void Store(char16_t* text, __m128i units) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(text), units);
}

constexpr std::size_t blockUnits = 16;
constexpr std::size_t stretchUnits = 32 * blockUnits;

unsigned Marks(__m128i bytes, char character) {
    return static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(bytes, _mm_set1_epi8(character))));
}

void CopyBlock(const char16_t* from, char16_t* to) {
    const __m128i first = UtilpLoadEight(from), second = UtilpLoadEight(from + 8);
    Store(to, first);
    Store(to + 8, second);
}

// The ampersands of a stretch, and after them its end.
class clsAmpersands {
  public:
    // Whether a block has one, two or three cannot be guessed, so three places are written of each, and the
    // next block's begin where those end that count. One that is so near to the end that its reference may
    // leave the stretch belongs to the next.
    clsAmpersands(const char16_t* stretch, const char16_t* end) {
        const char16_t** next = places_.data();
        for (; stretch != end; stretch += blockUnits) {
            const __m128i found = _mm_cmpeq_epi8(UtilpNarrowSixteen(stretch), _mm_set1_epi8('&'));
            unsigned marks = static_cast<unsigned>(_mm_movemask_epi8(found));
            if (marks == 0)
                continue;
            const auto place = [&] {
                const int at = std::countr_zero(marks | 1u << blockUnits);
                marks &= marks - 1;
                return stretch + at;
            };
            next[0] = place();
            next[1] = place();
            next[2] = place();
            for (const char16_t** more = next + 3; marks != 0; marks &= marks - 1)
                *more++ = stretch + std::countr_zero(marks);
            next += CountOf(found);
        }
        *next = end;
        while (next != places_.data() && end - next[-1] < static_cast<std::ptrdiff_t>(longestReference))
            --next;
        stop_ = *next;
    }

    const char16_t* const* First() const { return places_.data(); }
    const char16_t* Stop() const { return stop_; }

  private:
    static std::size_t CountOf(__m128i found) {
        const __m128i zero = _mm_setzero_si128();
        const __m128i sums = _mm_sad_epu8(_mm_sub_epi8(zero, found), zero);
        return static_cast<std::size_t>(_mm_cvtsi128_si32(_mm_add_epi32(sums, _mm_srli_si128(sums, 8))));
    }

    std::array<const char16_t*, stretchUnits + 3> places_;
    const char16_t* stop_;
};

// Writes a text into another place or further to the front of the same.
class clsDemasker {
  public:
    clsDemasker(std::u16string_view text, char16_t* result)
        : next_(text.data()), end_(text.data() + text.size()), out_(result), apart_(text.data() != result) {}

    char16_t* Run() {
        for (;;) {
            CopyWindows();
            if (StretchLength() != 0) {
                clsDemasker stretches(*this); // this one stays in registers
                stretches.TakeStretches();
                next_ = stretches.next_;
                out_ = stretches.out_;
                continue;
            }
            CopyTo(UtilpFindAny(next_, end_, {u'&'}));
            if (next_ == end_)
                return out_;
            TakeAmpersand();
        }
    }

  private:
    std::size_t Left() const { return static_cast<std::size_t>(end_ - next_); }

    // Stops in front of the first one that has an ampersand.
    void CopyWindows() {
        const auto equal = [](__m128i block) { return _mm_cmpeq_epi16(block, _mm_set1_epi16('&')); };
        for (; Left() >= 32; next_ += 32, out_ += 32) {
            const __m128i first = UtilpLoadEight(next_), second = UtilpLoadEight(next_ + 8);
            const __m128i third = UtilpLoadEight(next_ + 16), fourth = UtilpLoadEight(next_ + 24);
            const __m128i marks = _mm_or_si128(_mm_or_si128(equal(first), equal(second)),
                                               _mm_or_si128(equal(third), equal(fourth)));
            if (_mm_movemask_epi8(marks) != 0)
                return;
            Store(out_, first);
            Store(out_ + 8, second);
            Store(out_ + 16, third);
            Store(out_ + 24, fourth);
        }
    }

    // What is read and written is rounded up to blocks, so it must not leave the text and the result, or hit
    // text that is still to be read: out is never in front of next.
    std::size_t StretchLength() const {
        if (Left() < 2 * blockUnits || (!apart_ && static_cast<std::size_t>(next_ - out_) < 2 * blockUnits))
            return 0;
        return std::min((Left() - blockUnits) / blockUnits * blockUnits, stretchUnits);
    }

    // Until one has no ampersand.
    void TakeStretches() {
        bool any = true;
        while (any && StretchLength() != 0)
            any = TakeStretch();
    }

    // Says whether it had ampersands.
    bool TakeStretch() {
        const clsAmpersands ampersands(next_, next_ + StretchLength());
        const char16_t* const stop = ampersands.Stop();
        const char16_t* const* place = ampersands.First();
        for (;;) {
            place = TakeNamed(place, stop);
            if (next_ >= stop)
                return place != ampersands.First() + 1;
            if (!TakeRow())
                TakeAmpersand();
            if (next_ >= stop)
                return true;
            while (*place < next_)
                ++place;
        }
    }

    // Stops at the first ampersand that begins no name and no decimal number.
    const char16_t* const* TakeNamed(const char16_t* const* place, const char16_t* stop) {
        const char16_t* next = next_;
        char16_t* out = out_;
        for (;;) {
            const char16_t* const ampersand = *place++;
            const std::ptrdiff_t run = ampersand - next;
            CopyBlock(next, out);
            if (run > static_cast<std::ptrdiff_t>(blockUnits)) {
                for (std::ptrdiff_t at = blockUnits; at < run; at += blockUnits)
                    CopyBlock(next + at, out + at);
            }
            next = ampersand;
            out += run;
            if (next == stop)
                break;
            const __m128i bytes = UtilpNameBytes(next + 1);
            const auto length = static_cast<unsigned>(std::countr_zero(Marks(bytes, ';') | 1u << 7));
            char16_t unit = UtilpNamedUnit(bytes, length);
            if (unit == 0) {
                if (next[1] == u'#' && next[2] != u'x' && length < 7)
                    unit = UtilpReferencedUnit({next, length + 2}, end_);
                if (unit == 0)
                    break;
            }
            *out++ = unit;
            next += length + 2;
        }
        next_ = next;
        out_ = out;
        return place;
    }

    bool TakeRow() {
        const std::size_t count = next_[2] == u'x' ? ResolveRow(next_, end_, out_) : 0;
        next_ += count * longestReference;
        out_ += count;
        return count != 0;
    }

    TVUT_ALWAYS_INLINE void TakeAmpersand() {
        if (const std::size_t length = ReferenceLength())
            Take({next_, length});
        else
            CopyFarFromSemicolon();
    }

    // From the ampersand here to the next semicolon, both counted; 0 when that is too far.
    TVUT_ALWAYS_INLINE std::size_t ReferenceLength() const {
        const char16_t* const limit = next_ + std::min<std::ptrdiff_t>(end_ - next_, longestReference);
        const char16_t* const semicolon = UtilpFindAny(next_, limit, {u';'});
        return semicolon != limit ? static_cast<std::size_t>(semicolon - next_) + 1 : 0;
    }

    // No ampersand is part of a reference before the next semicolon comes near. No place is searched twice
    // for one, or a million ampersands would be slow.
    TVUT_ALWAYS_INLINE void CopyFarFromSemicolon() {
        const char16_t* const semicolon = UtilpFindAny(next_, end_, {u';'});
        CopyTo(semicolon != end_ ? semicolon - (longestReference - 1) : end_);
    }

    TVUT_ALWAYS_INLINE void CopyTo(const char16_t* stop) {
        const std::ptrdiff_t count = stop - next_;
        std::ptrdiff_t at = 0;
        for (; at < count - 7; at += 8)
            Store(out_ + at, UtilpLoadEight(next_ + at));
        for (; at < count; ++at)
            out_[at] = next_[at];
        next_ = stop;
        out_ += count;
    }

    // A number that is none loses its ampersand, and what follows that is text; an unknown name stays.
    TVUT_ALWAYS_INLINE void Take(std::u16string_view reference) {
        if (const char16_t unit = UtilpReferencedUnit(reference, end_); unit != 0) {
            *out_++ = unit;
            next_ += reference.size();
        } else if (UtilpIsNumber(reference)) {
            ++next_;
        } else {
            CopyTo(next_ + reference.size());
        }
    }

    const char16_t* next_;
    const char16_t* end_;
    char16_t* out_;
    bool apart_; // the result is in another place than the text
};

} // namespace

std::size_t UtilpMaskedLength(std::u16string_view text) {
    return UtilpMaskedRunLength(text.data(), text.data() + text.size());
}

void UtilpMask(std::u16string_view text, std::span<char16_t> result) {
    if (result.size() == text.size()) // each reference is longer than its character, so there are none
        std::copy(text.begin(), text.end(), result.begin());
    else
        UtilpMaskRun(text.data(), text.data() + text.size(), result.data(), result.data() + result.size());
}

std::size_t UtilpDemask(std::u16string_view text, char16_t* result) {
    return static_cast<std::size_t>(clsDemasker(text, result).Run() - result);
}

} // namespace tvut
