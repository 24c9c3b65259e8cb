// Masking and demasking: characters to references and back.
#include "text/find.h"
#include "text/html.h"
#include "text/html/entities.h"
#include "text/html/mask_run.h"

#include <algorithm>
#include <cwchar>
#include <optional>

namespace tvut {

namespace {

unsigned DigitOf(char16_t unit) {
    if (unit >= u'0' && unit <= u'9')
        return unit - u'0';
    const auto lower = static_cast<char16_t>(unit | 0x20);
    return lower >= u'a' && lower <= u'f' ? lower - u'a' + 10u : 0xFFu;
}

// What the C runtime makes of other things than plain digits: blanks, signs, a second 0x, digits of other
// scripts. Nothing when the number does not end where the text does.
std::optional<long> RuntimeNumber(std::u16string_view digits, int base) {
    std::array<wchar_t, longestReference> text{};
    std::copy(digits.begin(), digits.end(), text.begin());
    wchar_t* end = nullptr;
    const long number = std::wcstol(text.data(), &end, base);
    return end == text.data() + digits.size() ? std::optional(number) : std::nullopt;
}

// The unit of &#65; or &#x41;, given what is between # and ;. 0 when there is none.
char16_t NumberedUnit(std::u16string_view digits) {
    unsigned base = 10;
    if (digits.starts_with(u'x')) {
        base = 16;
        digits.remove_prefix(1);
    }
    unsigned number = 0;
    bool plain = true;
    for (const char16_t digit : digits) {
        plain = plain && DigitOf(digit) < base;
        number = number * base + DigitOf(digit);
    }
    if (!plain)
        number = static_cast<unsigned>(RuntimeNumber(digits, static_cast<int>(base)).value_or(0));
    return static_cast<char16_t>(number);
}

#ifdef TVUT_HAS_SSE2

__m128i Load(const char16_t* text) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(text));
}
void Store(char16_t* text, __m128i units) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(text), units);
}

// A bit for each of sixteen bytes that is a certain one.
unsigned Marks(__m128i bytes, char byte) {
    return static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(bytes, _mm_set1_epi8(byte))));
}

std::uint32_t FirstBytes(std::size_t count) {
    return count < 4 ? (1u << 8 * count) - 1 : 0xFFFFFFFF;
}

#endif

// The name between & and ; as its key. What follows it in the text may be read, too, up to the end.
scEntityKey KeyOf(std::u16string_view name, [[maybe_unused]] const char16_t* end) {
    scEntityKey key{.length = static_cast<std::uint32_t>(name.size())};
#ifdef TVUT_HAS_SSE2
    if (end - name.data() >= 8) { // units of no name give bytes of none: 0, or 0x80 and more
        const __m128i units = Load(name.data());
        const __m128i bytes = _mm_packus_epi16(units, units);
        key.low = static_cast<std::uint32_t>(_mm_cvtsi128_si32(bytes)) & FirstBytes(name.size());
        key.high = static_cast<std::uint32_t>(_mm_cvtsi128_si32(_mm_srli_si128(bytes, 4))) &
                   FirstBytes(name.size() > 4 ? name.size() - 4 : 0);
        return key;
    }
#endif
    for (std::size_t at = 0; at < name.size(); ++at) {
        const std::uint32_t byte = name[at] < 0x80 ? name[at] : 0xFFu;
        (at < 4 ? key.low : key.high) |= byte << at % 4 * 8;
    }
    return key;
}

bool IsNumber(std::u16string_view reference) {
    return reference[1] == u'#';
}

// What a reference from & to ; stands for; 0 when it is none.
char16_t UnitOf(std::u16string_view reference, const char16_t* end) {
    return IsNumber(reference) ? NumberedUnit(reference.substr(2, reference.size() - 3))
                               : UtilpNamedUnit(KeyOf(reference.substr(1, reference.size() - 2), end));
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
    // Copies blocks and finds ampersand and semicolon with one look at each, up to a reference that is none.
    // A block is written whole, so it must not leave the result or hit text that is still to be read: out is
    // never in front of next. These two are kept out of memory, or the way through it would be most of the
    // cost.
    void TakeNearOnes() {
#ifdef TVUT_HAS_SSE2
        const char16_t* next = next_;
        char16_t* out = out_;
        while (end_ - next >= 16 && (apart_ || next - out >= 16)) {
            const __m128i first = Load(next), second = Load(next + 8);
            const __m128i bytes = _mm_packus_epi16(first, second);
            Store(out, first);
            Store(out + 8, second);
            const unsigned ampersands = Marks(bytes, '&');
            const int count = ampersands != 0 ? std::countr_zero(ampersands) : 16;
            next += count;
            out += count;
            if (count > 8)
                continue; // from there on, so that a reference is in one block
            const unsigned semicolons = Marks(bytes, ';') >> count & 0xFF;
            const auto length = static_cast<std::size_t>(std::countr_zero(semicolons)) + 1;
            const char16_t unit = semicolons != 0 ? UnitOf({next, length}, end_) : u'\0';
            if (unit == 0)
                break;
            *out++ = unit;
            next += length;
        }
        next_ = next;
        out_ = out;
#endif
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
#ifdef TVUT_HAS_SSE2
        for (; at < count - 7; at += 8)
            Store(out_ + at, Load(next_ + at));
#endif
        for (; at < count; ++at)
            out_[at] = next_[at];
        next_ = stop;
        out_ += count;
    }

    // A number that is none loses its ampersand, and what is behind that is text; an unknown name stays.
    void Take(std::u16string_view reference) {
        if (const char16_t unit = UnitOf(reference, end_); unit != 0) {
            *out_++ = unit;
            next_ += reference.size();
        } else if (IsNumber(reference)) {
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
