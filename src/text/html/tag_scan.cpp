// One walk that may work in place, since no tag is shorter than what stands for it. Text between tags is
// copied in blocks of eight units that hold neither a tag nor white space to be folded. The form of the
// brackets is a template argument, which makes the units that are looked for constants.
#include "text/html/tag_scan.h"

#include "text/find.h"
#include "text/html/tags.h"

#include <algorithm>

namespace tvut {

namespace {

constexpr char16_t noBreakSpace = 0xA0;

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

// Compiled for either form: the units it looks for are constants then.
template <const scBrackets& brackets>
class clsTagScan {
  public:
    clsTagScan(std::u16string_view html, char16_t* result)
        : next_(html.data()), end_(html.data() + html.size()), out_(result) {}

    char16_t* Run() {
        while (next_ != end_) {
            if (skipDepth_ != 0)
                GoTo(brackets.open);
            else
                PutText();
            if (next_ != end_)
                TakeTag();
        }
        return out_;
    }

  private:
    // Text up to the next tag; there is some.
    void PutText() {
        if (*next_ == brackets.open) // tags follow each other more often than not
            return;
        for (;;) {
            PutPlainBlocks();
            for (int units = 0; units < 8; ++units) {
                if (next_ == end_ || *next_ == brackets.open)
                    return;
                PutUnit(*next_++);
            }
        }
    }

    void PutUnit(char16_t unit) {
        const bool blank = IsBlank(unit);
        if (!blank || !afterBlank_)
            *out_++ = BecomesSpace(unit) ? u' ' : unit;
        afterBlank_ = blank;
    }

    // Blocks of eight units without a tag, without two blanks in a row and without one to be converted.
    void PutPlainBlocks() {
        for (; end_ - next_ >= 8; next_ += 8, out_ += 8) {
            const __m128i block = UtilpLoadEight(next_);
            const unsigned blanks = clsFewUnits{u' ', noBreakSpace}.Marks(block);
            const unsigned others = clsFewUnits{brackets.open, u'\r', u'\n', u'\t'}.Marks(block);
            const unsigned afterBlanks = blanks << 2 | (afterBlank_ ? 3u : 0u);
            if ((others | (blanks & afterBlanks)) != 0)
                return;
            _mm_storeu_si128(reinterpret_cast<__m128i*>(out_), block);
            afterBlank_ = blanks >> 15 != 0;
        }
    }

    void TakeTag() {
        ++next_;
        Skip(brackets.afterOpen);
        const char16_t* const name = next_;
        next_ = NameEnd();
        const std::u16string_view tag(name, static_cast<std::size_t>(next_ - name));
        GoTo(brackets.close);
        if (next_ == end_)
            return; // never closed: it takes all that is left
        ++next_;
        Skip(brackets.afterClose);
        PutTag(UtilpFindTag(tag, end_));
    }

    // Most tags have no attributes and follow each other: the bracket is the next unit then.
    void GoTo(char16_t bracket) {
        if (next_ == end_ || *next_ != bracket)
            next_ = UtilpFindAny(next_, end_, {bracket});
    }

    // The end of the name that begins here. One that is too long means nothing, whatever its rest is.
    const char16_t* NameEnd() const {
        const char16_t* at = next_;
        const char16_t* const limit = next_ + std::min<std::ptrdiff_t>(end_ - next_, longestTagName + 1);
        while (at != limit && *at != brackets.close && !IsBlank(*at))
            ++at;
        return at;
    }

    void Skip(std::u16string_view text) {
        if (std::u16string_view(next_, static_cast<std::size_t>(end_ - next_)).starts_with(text))
            next_ += text.size();
    }

    void PutTag(const scTag& tag) {
        if (tag.skips > 0)
            ++skipDepth_;
        else if (tag.skips < 0 && skipDepth_ != 0)
            --skipDepth_;
        else if (skipDepth_ == 0) { // a tag has three units at least
            std::memcpy(out_, tag.replacement.data(), sizeof tag.replacement);
            out_ += tag.length;
        }
    }

    const char16_t* next_;
    const char16_t* end_;
    char16_t* out_;
    std::size_t skipDepth_ = 0;
    bool afterBlank_ = false;
};

} // namespace

std::size_t UtilpRenderTags(std::u16string_view html, HtmlForm form, char16_t* result) {
    const char16_t* const end = form == HtmlForm::markers ? clsTagScan<markerBrackets>(html, result).Run()
                                                          : clsTagScan<tagBrackets>(html, result).Run();
    return static_cast<std::size_t>(end - result);
}

} // namespace tvut
