// Three steps in one walk, which may work in place, since none makes the text longer: tags go, with what
// stands for them put in, and white space is folded; then references are resolved, which tags may have
// parted; then clsPlainWriter takes what is left. Blocks of eight units that mean nothing to any of the steps
// are copied whole, and so is the part of a block before the first unit that means something. A reference
// that stands in the text as a whole is resolved there. Only one that a tag or folded white space may part
// is looked at after the first step has been taken for some units.
//
// The form of the brackets is a template argument of what is frequent, which makes the units that are looked
// for constants there.
#include "text/html/render.h"

#include "text/find.h"
#include "text/html/entities.h"
#include "text/html/plain_writer.h"
#include "text/html/references.h"
#include "text/html/tags.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>

namespace tvut {

namespace {

bool BecomesSpace(char16_t unit) {
    return unit == u'\r' || unit == u'\n' || unit == u'\t';
}
bool IsBlank(char16_t unit) {
    return unit == u' ' || unit == noBreakSpace || BecomesSpace(unit);
}

struct scBrackets {
    char16_t open, close;
    std::u16string_view afterOpen, afterClose; // part of the bracket where it follows
};
constexpr scBrackets tagBrackets{u'<', u'>', u"", u""};
constexpr scBrackets markerBrackets{u'[', u']', u"_[", u"_]"};

constexpr scTag noTag{};

// A bit for each of sixteen bytes that is a certain one.
unsigned Places(__m128i bytes, char16_t unit) {
    return static_cast<unsigned>(
        _mm_movemask_epi8(_mm_cmpeq_epi8(bytes, _mm_set1_epi8(static_cast<char>(unit)))));
}
// A bit for each that is white space.
unsigned BlankPlaces(__m128i bytes) {
    const auto equal = [=](char16_t unit) {
        return _mm_cmpeq_epi8(bytes, _mm_set1_epi8(static_cast<char>(unit)));
    };
    const __m128i stay = _mm_or_si128(equal(u' '), equal(noBreakSpace));
    const __m128i become = _mm_or_si128(_mm_or_si128(equal(u'\r'), equal(u'\n')), equal(u'\t'));
    return static_cast<unsigned>(_mm_movemask_epi8(_mm_or_si128(stay, become)));
}

std::size_t FirstPlace(unsigned places) {
    return static_cast<std::size_t>(std::countr_zero(places));
}

// Whether a place with room for as much as the text is part of its memory.
bool Overlap(std::u16string_view text, const char16_t* place) {
    const auto first = reinterpret_cast<std::uintptr_t>(text.data());
    const auto other = reinterpret_cast<std::uintptr_t>(place);
    const std::uintptr_t size = text.size() * sizeof(char16_t);
    return first < other + size && other < first + size;
}

class clsRenderer {
  public:
    clsRenderer(std::u16string_view html, HtmlForm form, char16_t* result)
        : brackets_(form == HtmlForm::markers ? markerBrackets : tagBrackets), next_(html.data()),
          end_(html.data() + html.size()), writer_(result), isApart_(!Overlap(html, result)) {}

    char16_t* Run() {
        while (next_ != end_) {
            if (skipDepth_ != 0)
                GoTo(brackets_.open);
            else if (&brackets_ == &tagBrackets)
                TakeFrequent<tagBrackets>();
            else
                TakeFrequent<markerBrackets>();
            if (next_ != end_)
                TakeAny();
        }
        return writer_.Finish();
    }

  private:
    static constexpr std::ptrdiff_t blockUnits = 8;

    // Two bits a unit of a block that the first step does something about.
    static unsigned MarksOfFirstStep(__m128i block, char16_t open, unsigned blanks, bool afterBlank = false) {
        const unsigned afterBlanks = blanks << 2 | (afterBlank ? 3u : 0u);
        return clsFewUnits{open, u'\r', u'\n', u'\t'}.Marks(block) | (blanks & afterBlanks);
    }
    static unsigned Blanks(__m128i block) { return clsFewUnits{u' ', noBreakSpace}.Marks(block); }

    // Goes on as long as there is nothing but text, white space and tags that hide nothing, with what changes
    // in registers; the way through memory would be most of the cost.
    template <const scBrackets& brackets>
    void TakeFrequent() {
        constexpr std::ptrdiff_t most = blockUnits + tagWindow;
        const bool isApart = isApart_;
        const char16_t* next = next_;
        clsPlainWriter writer = writer_;
        bool afterBlank = afterBlank_;
        while (end_ - next >= most) {
            const bool hasMargin = isApart || next - writer.End() >= clsPlainWriter::margin;
            if (*next == brackets.open) {
                const char16_t* const name = After(next + 1, brackets.afterOpen);
                const __m128i window = UtilpLoadTag(name);
                const unsigned closes = Places(window, brackets.close);
                const scTag* const tag = FindTag(window, closes);
                if (closes == 0)
                    break;
                if (tag) {
                    if (tag->skips != 0 || !hasMargin)
                        break;
                    writer.PutTag(*tag);
                }
                next = After(name + FirstPlace(closes) + 1, brackets.afterClose);
                continue;
            }
            const __m128i block = UtilpLoadEight(next);
            const unsigned blanks = Blanks(block);
            const unsigned stops = MarksOfFirstStep(block, brackets.open, blanks) |
                                   clsFewUnits{u'&', openQuote, closeQuote}.Marks(block);
            if ((blanks & 1) != 0 && (afterBlank || writer.IsAfterBlank())) {
                ++next;
                afterBlank = true;
            } else if (stops == 0) {
                afterBlank = blanks >> 15 != 0;
                writer.PutPlain(block, afterBlank);
                next += blockUnits;
            } else {
                const std::size_t before = UtilpFirstUnit(stops);
                if (!hasMargin)
                    break;
                if (before == 0) {
                    if (!BecomesSpace(*next))
                        break;
                    ++next;
                    if (!afterBlank && !writer.IsAfterBlank())
                        writer.PutPlainStart(_mm_set1_epi16(u' '), 1, true);
                    afterBlank = true;
                    continue;
                }
                afterBlank = (blanks >> (2 * before - 1) & 1) != 0;
                writer.PutPlainStart(block, before, afterBlank);
                next += before;
            }
        }
        next_ = next;
        writer_ = writer;
        afterBlank_ = afterBlank;
    }

    static const char16_t* After(const char16_t* text, std::u16string_view part) {
        return part.empty() || std::u16string_view(text, part.size()) != part ? text : text + part.size();
    }

    void PutPlain(__m128i block, unsigned blanks) {
        afterBlank_ = blanks >> 15 != 0;
        writer_.PutPlain(block, afterBlank_);
        next_ += blockUnits;
    }

    // A tag or a unit of text; more where there is a reference.
    void TakeAny() {
        if (*next_ == brackets_.open)
            PutTag(TakeTag());
        else
            TakeUnit();
    }

    void TakeUnit() {
        const char16_t unit = *next_;
        if (unit == u'&')
            return TakeAmpersands();
        if (unit == openQuote || unit == closeQuote)
            return TakeQuotes(unit);
        ++next_;
        if (!Folds(unit))
            writer_.Take(BecomesSpace(unit) ? u' ' : unit);
    }

    // Whether the first step drops a unit of text.
    bool Folds(char16_t unit) {
        const bool wasBlank = afterBlank_;
        afterBlank_ = IsBlank(unit);
        return wasBlank && afterBlank_;
    }

    void TakeQuotes(char16_t quote) {
        const char16_t* const start = next_;
        while (next_ != end_ && *next_ == quote)
            ++next_;
        afterBlank_ = false;
        writer_.TakeQuotes(quote, next_ - start);
    }

    // ---- References ----

    // One reference after the other, which is how they stand in examples of markup.
    void TakeAmpersands() {
        do {
            if (end_ - next_ < blockUnits || !TakeWhole())
                return TakeParted();
        } while (next_ != end_ && *next_ == u'&');
    }

    // False where the first step does something between the ampersand and the semicolon that may end it.
    bool TakeWhole() {
        const __m128i block = UtilpLoadEight(next_);
        const unsigned blanks = Blanks(block);
        const unsigned semicolons = clsFewUnits{u';'}.Marks(block);
        const unsigned upToSemicolon = semicolons ^ (semicolons - 1);
        if ((MarksOfFirstStep(block, brackets_.open, blanks) & upToSemicolon) != 0)
            return false;
        afterBlank_ = false;
        if (semicolons == 0)
            PutAmpersands(block, blanks);
        else
            next_ += PutReference({next_, UtilpFirstUnit(semicolons) + 1}, end_);
        return true;
    }

    // From an ampersand on, a block that has no semicolon. It is text as a whole if the next has none either.
    void PutAmpersands(__m128i block, unsigned blanks) {
        const char16_t* const first = next_;
        bool isPlain = clsFewUnits{openQuote, closeQuote}.Marks(block) == 0;
        while (isPlain && end_ - next_ >= 2 * blockUnits) {
            const __m128i next = UtilpLoadEight(next_ + blockUnits);
            const unsigned nextBlanks = Blanks(next);
            const unsigned marks = MarksOfFirstStep(next, brackets_.open, nextBlanks, blanks >> 15 != 0) |
                                   clsFewUnits{u';', openQuote, closeQuote}.Marks(next);
            isPlain = marks == 0;
            if (isPlain)
                PutPlain(block, blanks);
            block = next;
            blanks = nextBlanks;
        }
        if (next_ == first)
            writer_.Take(*next_++);
    }

    // Returns how many units of it that takes. A number that is none loses its ampersand, and what follows
    // that is text; an unknown name stays.
    std::size_t PutReference(std::u16string_view reference, const char16_t* end) {
        if (const char16_t unit = UtilpReferencedUnit(reference, end); unit != 0)
            writer_.Take(unit);
        else if (UtilpIsNumber(reference))
            return 1;
        else
            PutAll(reference);
        return reference.size();
    }

    void PutAll(std::u16string_view text) {
        for (const char16_t unit : text)
            writer_.Take(unit);
    }

    // Takes the first step for some units ahead, until it is known what each ampersand among them begins.
    void TakeParted() {
        std::array<char16_t, longestReference + scTag::most> row{};
        std::size_t size = 0;
        do {
            while (next_ != end_ && size < longestReference)
                size += TakeFirstStep(row.data() + size);
            const std::u16string_view first(row.data(), std::min(size, longestReference));
            const std::size_t ampersand = std::min(first.find(u'&'), first.size());
            std::size_t taken = ampersand;
            PutAll(first.substr(0, ampersand));
            if (ampersand == 0) {
                const std::size_t semicolon = first.find(u';');
                taken = semicolon != first.npos
                            ? PutReference(first.substr(0, semicolon + 1), row.data() + row.size())
                            : (PutAll(u"&"), 1);
            }
            std::copy(row.begin() + taken, row.begin() + size, row.begin());
            size -= taken;
        } while (size != 0);
    }

    // Puts what the next unit of text or the next tag becomes; returns the number of units.
    std::size_t TakeFirstStep(char16_t* units) {
        if (skipDepth_ != 0)
            GoTo(brackets_.open);
        if (next_ == end_)
            return 0;
        if (*next_ == brackets_.open) {
            const scTag& tag = TakeTag();
            *units = u'\r';
            std::copy_n(tag.replacement.begin(), tag.length, units);
            return tag.length + tag.lineEnds;
        }
        const char16_t unit = *next_++;
        *units = BecomesSpace(unit) ? u' ' : unit;
        return Folds(unit) ? 0 : 1;
    }

    // ---- Tags ----

    void PutTag(const scTag& tag) {
        PutAll({tag.replacement.data(), tag.length});
        if (tag.lineEnds != 0)
            writer_.Take(u'\r');
    }

    // What is shown in place of the tag that begins here.
    const scTag& TakeTag() {
        ++next_;
        Skip(brackets_.afterOpen);
        const scTag* const found = FindTag();
        const scTag& tag = found ? *found : noTag;
        GoTo(brackets_.close);
        if (next_ == end_)
            return noTag; // never closed: it takes all that is left
        ++next_;
        Skip(brackets_.afterClose);
        if (tag.skips == 0 && skipDepth_ == 0)
            return tag;
        if (tag.skips > 0)
            ++skipDepth_;
        else if (tag.skips < 0 && skipDepth_ != 0)
            --skipDepth_;
        return noTag;
    }

    // By the name that begins here; goes on to its end, or to the bracket where that is near.
    const scTag* FindTag() {
        std::array<char16_t, tagWindow> units{};
        const char16_t* window = next_;
        const auto left = static_cast<std::size_t>(end_ - next_);
        if (left < tagWindow) {
            std::copy(next_, end_, units.begin());
            window = units.data();
        }
        const __m128i bytes = UtilpLoadTag(window);
        const unsigned closes = Places(bytes, brackets_.close);
        next_ += std::min(left, FirstPlace(closes | 1u << longestTagName));
        return FindTag(bytes, closes);
    }
    static const scTag* FindTag(__m128i window, unsigned closes) {
        const unsigned ends = closes | BlankPlaces(window);
        return UtilpFindTag(window, FirstPlace(ends | 1u << tagWindow));
    }

    // Most tags have no attributes and follow each other: the bracket is the next unit then.
    void GoTo(char16_t bracket) {
        if (next_ == end_ || *next_ != bracket)
            next_ = UtilpFindAny(next_, end_, {bracket});
    }

    void Skip(std::u16string_view text) {
        if (std::u16string_view(next_, static_cast<std::size_t>(end_ - next_)).starts_with(text))
            next_ += text.size();
    }

    const scBrackets& brackets_;
    const char16_t* next_;
    const char16_t* end_;
    clsPlainWriter writer_;
    std::size_t skipDepth_ = 0;
    bool isApart_; // the result is in another place than the page
    bool afterBlank_ = false;
};

} // namespace

std::size_t UtilpRenderPage(std::u16string_view html, HtmlForm form, char16_t* result) {
    return static_cast<std::size_t>(clsRenderer(html, form, result).Run() - result);
}

} // namespace tvut
