// Masking and demasking: characters to references and back.
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
    const __m128i digits = _mm_setr_epi16(0, 0, 0, -1, -1, -1, -1, 0);
    const __m128i places = _mm_setr_epi16(0, 0, 0, 1 << 12, 1 << 8, 1 << 4, 1, 0);
    const auto upTo = [](__m128i numbers, short most) {
        return _mm_cmpeq_epi16(_mm_subs_epu16(numbers, _mm_set1_epi16(most)), _mm_setzero_si128());
    };
    const __m128i units = UtilpLoadEight(reference);
    const __m128i decimal = _mm_sub_epi16(units, _mm_set1_epi16('0'));
    const __m128i letter = _mm_sub_epi16(_mm_or_si128(units, _mm_set1_epi16(0x20)), _mm_set1_epi16('a'));
    const __m128i isDecimal = upTo(decimal, 9);
    const __m128i isDigit = _mm_or_si128(isDecimal, upTo(letter, 5));
    const __m128i isForm = _mm_cmpeq_epi16(units, form);
    const __m128i fits = _mm_or_si128(_mm_and_si128(digits, isDigit), _mm_andnot_si128(digits, isForm));
    if (_mm_movemask_epi8(fits) != 0xFFFF)
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

constexpr unsigned windowUnits = 32;

// A bit for each unit of a window that is a certain one.
std::uint32_t Marks(__m128i first, __m128i second, char character) {
    const __m128i wanted = _mm_set1_epi8(character);
    const auto low = static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(first, wanted)));
    const auto high = static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(second, wanted)));
    return low | high << 16;
}

// The ampersands and semicolons of a window.
class clsWindow {
  public:
    explicit clsWindow(const char16_t* window) {
        const __m128i first = _mm_packus_epi16(UtilpLoadEight(window), UtilpLoadEight(window + 8));
        const __m128i second = _mm_packus_epi16(UtilpLoadEight(window + 16), UtilpLoadEight(window + 24));
        ampersands_ = Marks(first, second, '&');
        semicolons_ = Marks(first, second, ';');
    }

    // windowUnits when there is none.
    unsigned NextAmpersand() const {
        return ampersands_ != 0 ? static_cast<unsigned>(std::countr_zero(ampersands_)) : windowUnits;
    }
    // Both counted; more than the window has when there is none.
    unsigned LengthToSemicolon(unsigned ampersand) const {
        const std::uint32_t after = semicolons_ >> ampersand;
        return (after != 0 ? static_cast<unsigned>(std::countr_zero(after)) : windowUnits) + 1;
    }
    // A reference has no ampersand but its first unit, so the place after it need not be known: what is to
    // be found next does not wait for its length.
    void PassAmpersand() { ampersands_ &= ampersands_ - 1; }

  private:
    std::uint32_t ampersands_, semicolons_;
};

// Writes two blocks, or four.
void CopyInWindow(const char16_t* from, char16_t* to, unsigned count) {
    const auto copy = [&](unsigned at) {
        const __m128i first = UtilpLoadEight(from + at), second = UtilpLoadEight(from + at + 8);
        Store(to + at, first);
        Store(to + at + 8, second);
    };
    copy(0);
    if (count > 16)
        copy(16);
}

// Writes a text into another place or further to the front of the same.
class clsDemasker {
  public:
    clsDemasker(std::u16string_view text, char16_t* result)
        : next_(text.data()), end_(text.data() + text.size()), out_(result), apart_(text.data() != result) {}

    char16_t* Run() {
        for (;;) {
            TakeNearOnes();
            CopyTo(UtilpFindAny(next_, end_, {u'&'}));
            if (next_ == end_)
                return out_;
            if (const std::size_t length = ReferenceLength())
                Take({next_, length});
            else
                CopyFarFromSemicolon();
        }
    }

  private:
    // Copies windows and finds ampersands and semicolons with one look at each, up to a reference that is
    // none. What is written is rounded up to blocks, so it must not leave the result or hit text that is
    // still to be read: out is never in front of next. These two are kept out of memory, or the way through
    // it would be most of the cost.
    void TakeNearOnes() {
        const char16_t* next = next_;
        char16_t* out = out_;
        bool near = true;
        while (near && static_cast<std::size_t>(end_ - next) >= 2 * windowUnits &&
               (apart_ || static_cast<std::size_t>(next - out) >= windowUnits)) {
            clsWindow window(next);
            unsigned at = 0; // in the window
            for (;;) {
                const unsigned ampersand = window.NextAmpersand();
                CopyInWindow(next + at, out, ampersand - at);
                out += ampersand - at;
                at = ampersand;
                if (ampersand > windowUnits - longestReference)
                    break; // from there on, so that a reference is in one window
                if (next[at + 2] == u'x') {
                    const std::size_t count = ResolveRow(next + at, end_, out);
                    if (count != 0) {
                        next += at + count * longestReference;
                        out += count;
                        at = 0;
                        break;
                    }
                }
                const unsigned length = window.LengthToSemicolon(ampersand);
                const char16_t unit =
                    length <= longestReference ? UtilpReferencedUnit({next + at, length}, end_) : u'\0';
                near = unit != 0;
                if (!near)
                    break;
                *out++ = unit;
                at += length;
                window.PassAmpersand();
            }
            next += at;
        }
        next_ = next;
        out_ = out;
    }

    // From the ampersand here to the next semicolon, both counted; 0 when that is too far.
    std::size_t ReferenceLength() const {
        const char16_t* const limit = next_ + std::min<std::ptrdiff_t>(end_ - next_, longestReference);
        const char16_t* const semicolon = UtilpFindAny(next_, limit, {u';'});
        return semicolon != limit ? static_cast<std::size_t>(semicolon - next_) + 1 : 0;
    }

    // No ampersand is part of a reference before the next semicolon comes near. No place is searched twice
    // for one, or a million ampersands would be slow.
    void CopyFarFromSemicolon() {
        const char16_t* const semicolon = UtilpFindAny(next_, end_, {u';'});
        CopyTo(semicolon != end_ ? semicolon - (longestReference - 1) : end_);
    }

    void CopyTo(const char16_t* stop) {
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
    void Take(std::u16string_view reference) {
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
