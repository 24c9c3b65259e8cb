// The fast path of a page's way to plain text: text, white space, tags that hide nothing, and references that
// stand there as a whole. It stops at all else, and near the end of the page.
//
// An object of its own, so that what changes is in registers; the way through memory would be most of the
// cost. The brackets are template arguments, which makes the units that are looked for constants.
#pragma once

#include "text/find.h"
#include "text/html/page_marks.h"
#include "text/html/page_units.h"
#include "text/html/plain_writer.h"
#include "text/html/references.h"
#include "text/html/tags.h"

namespace tvut {

template <const scBrackets& brackets>
class clsFastPath {
  public:
    // Where the walk stands, and what it has put.
    struct scState {
        const char16_t* next;
        clsPlainWriter writer;
        bool afterBlank; // before the tags that were met last
    };

    // Whether it is apart: the result is in another place than the page.
    clsFastPath(const scState& state, const char16_t* end, bool isApart)
        : marks_(state.next), end_(end), writer_(state.writer), afterBlank_(state.afterBlank),
          hasMargin_(isApart || state.next - writer_.End() >= static_cast<std::ptrdiff_t>(Marks::units)) {}

    TVUT_ALWAYS_INLINE scState Run() {
        if (marks_.HasNext(end_)) {
            do {
                // A blank after one that a tag or a line end stood between, or stood for.
                if ((afterBlank_ | writer_.IsAfterBlank()) && UtilpIsStayingBlank(Here()[0])) {
                    afterBlank_ = true;
                    ++at_;
                }
            } while (PutText() && TakeMark());
        }
        return {Here(), writer_, afterBlank_};
    }

  private:
    using Marks = clsPageMarks<brackets.open, brackets.close>;

    const char16_t* Here() const { return marks_.Text() + at_; }

    // Up to the next mark; false where it cannot go on.
    TVUT_ALWAYS_INLINE bool PutText() {
        while (true) {
            if (at_ >= Marks::units) {
                if (!marks_.HasNext(end_))
                    return false;
                marks_.Advance();
                at_ -= Marks::units;
            }
            const std::uint32_t left = marks_.Decisions(at_);
            const std::size_t mark = left != 0 ? UtilpFirstPlace(left) : Marks::units;
            if (at_ < mark) {
                afterBlank_ = marks_.IsAfterBlank(mark);
                writer_.PutRun(Here(), mark - at_, afterBlank_, hasMargin_);
                at_ = mark;
            }
            if (left != 0)
                return true;
        }
    }

    TVUT_ALWAYS_INLINE bool TakeMark() {
        const char16_t unit = Here()[0];
        if (unit == brackets.open)
            return TakeTag();
        if (unit == u'&')
            return TakeReference();
        if (UtilpIsWhite(unit)) {
            TakeWhite(unit);
            return true;
        }
        if (unit == openQuote || unit == closeQuote) {
            if (Here()[1] == unit) // a row of them is taken at once
                return false;
            writer_.TakeQuote(unit);
        } else { // a unit between the line ends, which means nothing
            writer_.TakePlain(unit, false);
        }
        afterBlank_ = false;
        ++at_;
        return true;
    }

    // The first of a row stays, as a blank.
    void TakeWhite(char16_t unit) {
        if (!afterBlank_)
            writer_.TakePlain(UtilpBecomesSpace(unit) ? u' ' : unit, true);
        afterBlank_ = true;
        do
            ++at_;
        while (at_ < Marks::units && UtilpIsWhite(Here()[0]));
    }

    TVUT_ALWAYS_INLINE bool TakeReference() {
        std::size_t length = ReferenceLength();
        if (length == 0)
            return false;
        const std::u16string_view reference(Here(), length);
        char16_t unit = UtilpReferencedUnit(reference, end_);
        if (unit == u'\r' || unit == u'\n')
            return false;
        if (unit == 0) {
            length = 1;
            if (UtilpIsNumber(reference)) { // one that is none loses its ampersand
                afterBlank_ = false;
                ++at_;
                return true;
            }
            if (reference.rfind(u'&') != 0) // an unknown name stays, and what it holds
                return false;
            unit = u'&';
        }
        if (unit == openQuote || unit == closeQuote)
            writer_.TakeQuote(unit);
        else
            writer_.TakePlain(unit, UtilpIsStayingBlank(unit));
        afterBlank_ = false;
        at_ += length;
        return true;
    }

    TVUT_ALWAYS_INLINE bool TakeTag() {
        const char16_t* const name = After(Here() + 1, brackets.afterOpen);
        const std::uint32_t ends = marks_.NameEnds(static_cast<std::size_t>(name - marks_.Text()));
        const std::size_t length = UtilpFirstPlace(ends | 1u << 31);
        const bool isShort =
            length - 1 < longestShortTagName && (name[length] == brackets.close || name[length] == u' ');
        const scTag* const tag = isShort ? UtilpFindShortTag(name, length) : FindTag(name);
        if (tag && tag->skips != 0)
            return false;
        if (const std::uint32_t closes = marks_.Closes(at_); closes != 0)
            at_ = UtilpFirstPlace(closes) + 1;
        else if (!GoToFarClose())
            return false;
        if constexpr (!brackets.afterClose.empty())
            at_ = static_cast<std::size_t>(After(Here(), brackets.afterClose) - marks_.Text());
        if (tag)
            writer_.PutTag(*tag);
        return true;
    }

    static const scTag* FindTag(const char16_t* name) {
        const __m128i bytes = UtilpNarrowSixteen(name);
        return UtilpFindTag(name, bytes, UtilpPlaces(bytes, brackets.close));
    }

    static const char16_t* After(const char16_t* text, std::u16string_view part) {
        return part.empty() || std::u16string_view(text, part.size()) != part ? text : text + part.size();
    }

    bool GoToFarClose() {
        const char16_t* const close = UtilpFindAny(marks_.Text() + Marks::units, end_, {brackets.close});
        if (end_ - close < 8)
            return false;
        marks_ = Marks(close + 1);
        at_ = Marks::units;
        return true;
    }

    // Of the reference that begins here; 0 where the first step does something between its ampersand and its
    // semicolon, or where it is longer than eight units.
    std::size_t ReferenceLength() const {
        const __m128i block = UtilpLoadEight(Here());
        const unsigned semicolons = clsFewUnits{u';'}.Marks(block);
        const unsigned marks = UtilpFoldMarks(block, brackets.open, UtilpBlanks(block));
        const unsigned upToSemicolon = semicolons ^ (semicolons - 1);
        return semicolons != 0 && (marks & upToSemicolon) == 0 ? UtilpFirstUnit(semicolons) + 1 : 0;
    }

    Marks marks_;
    std::size_t at_ = Marks::units;
    const char16_t* end_;
    clsPlainWriter writer_;
    bool afterBlank_;
    bool hasMargin_;
};

} // namespace tvut
