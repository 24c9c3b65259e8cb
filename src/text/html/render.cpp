// Three steps in one walk, which may work in place, since none makes the text longer: tags go, with what
// stands for them put in, and white space is folded; then references are resolved, which tags may have
// parted; then clsPlainWriter takes what is left. The fast path takes what needs no more than is there: text,
// tags that hide nothing, a reference that stands in the text as a whole. Only a reference that a tag or
// folded white space may part is looked at after the first step has been taken for some units.
#include "text/html/render.h"

#include "text/find.h"
#include "text/html/entities.h"
#include "text/html/fast_path.h"
#include "text/html/plain_writer.h"
#include "text/html/references.h"
#include "text/html/tags.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>

namespace tvut {

namespace {

constexpr scTag noTag{};

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

    template <const scBrackets& brackets>
    void TakeFrequent() {
        const auto state = clsFastPath<brackets>({next_, writer_, afterBlank_}, end_, isApart_).Run();
        next_ = state.next;
        writer_ = state.writer;
        afterBlank_ = state.afterBlank;
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
            writer_.Take(UtilpBecomesSpace(unit) ? u' ' : unit);
    }

    // Whether the first step drops a unit of text.
    bool Folds(char16_t unit) {
        const bool wasBlank = afterBlank_;
        afterBlank_ = UtilpIsWhite(unit);
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
        const unsigned blanks = UtilpBlanks(block);
        const unsigned semicolons = clsFewUnits{u';'}.Marks(block);
        const unsigned upToSemicolon = semicolons ^ (semicolons - 1);
        if ((UtilpFoldMarks(block, brackets_.open, blanks) & upToSemicolon) != 0)
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
            const unsigned nextBlanks = UtilpBlanks(next);
            const unsigned marks = UtilpFoldMarks(next, brackets_.open, nextBlanks, blanks >> 15 != 0) |
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
    // What of them has been taken moves out of the row now and then.
    void TakeParted() {
        std::array<char16_t, 4 * longestReference + scTag::most> row{};
        std::size_t size = TakeFirstStep(row.data());
        std::size_t looked = 0; // there is no semicolon before
        for (std::size_t at = 0; at != size;) {
            if (row[at] != u'&') {
                writer_.Take(row[at++]);
                continue;
            }
            if (at > 3 * longestReference) {
                std::copy(row.begin() + at, row.begin() + size, row.begin());
                size -= at;
                looked = looked > at ? looked - at : 0;
                at = 0;
            }
            while (next_ != end_ && size - at < longestReference)
                size += TakeFirstStep(row.data() + size);
            const std::size_t last = std::min(size, at + longestReference);
            looked = std::max(looked, at);
            while (looked != last && row[looked] != u';')
                ++looked;
            if (looked != last)
                at += PutReference({row.data() + at, looked + 1 - at}, row.data() + row.size());
            else
                writer_.Take(row[at++]);
        }
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
        *units = UtilpBecomesSpace(unit) ? u' ' : unit;
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
        const __m128i bytes = UtilpNarrowSixteen(window);
        const unsigned closes = UtilpPlaces(bytes, brackets_.close);
        next_ += std::min(left, UtilpFirstPlace(closes | 1u << longestTagName));
        return UtilpFindTag(window, bytes, closes);
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
