// The rounds of links.h run from the end, since a link may reach back over the ends of others. None does
// where each </a> finds all parts of its link after the </a> before it: the last ones in the text are then
// the last ones there, and each link can be resolved when its end is met. They are looked for in the page,
// and only where a comment stood between them in what was put.
#include "text/html/whole_links.h"

#include "text/find.h"
#include "text/html/comments.h"
#include "text/html/link_marks.h"
#include "text/html/links.h"
#include "text/units.h"

#include <bit>
#include <cstring>
#include <string>

namespace tvut {

namespace {

std::u16string_view Between(const char16_t* start, const char16_t* end) {
    return {start, static_cast<std::size_t>(end - start)};
}

class clsWholeLinks {
  public:
    clsWholeLinks(std::u16string_view html, char16_t* buffer)
        : html_(html), next_(html.data()), end_(html.data() + html.size()), buffer_(buffer), out_(buffer),
          afterLink_(buffer) {}

    std::optional<std::u16string_view> Run() {
        const char16_t* mark = FindMark(next_);
        while (mark != end_) {
            const char16_t* after = mark + 1;
            if (Begins(mark, linkEnd)) {
                if (!TakeLink(mark))
                    return {};
                after = next_ = mark + linkEnd.size();
            } else if (!isRestOpen_ && Begins(mark, commentStart)) {
                if (const char16_t* const afterComment = TakeComment(mark))
                    after = next_ = afterComment;
                if (IsSeam())
                    return {};
            }
            mark = FindMark(after);
        }
        if (next_ == html_.data())
            return html_;
        Put(Between(next_, end_));
        return Between(buffer_, out_);
    }

  private:
    // The next place where a comment may begin or a link end, by two units that stand there.
    const char16_t* FindMark(const char16_t* text) const {
        // The last two of sixteen wait for the next ones.
        const auto marks = [third = isRestOpen_ ? linkEnd[2] : commentStart[2]](const char16_t* place) {
            const __m128i bytes = UtilpNarrowSixteen(place);
            const auto equal = [=](char16_t unit) {
                return _mm_cmpeq_epi8(bytes, _mm_set1_epi8(static_cast<char>(unit)));
            };
            const auto bits = [](__m128i some) { return static_cast<unsigned>(_mm_movemask_epi8(some)); };
            return bits(equal(u'<')) & bits(_mm_or_si128(equal(linkEnd[2]), equal(third))) >> 2;
        };
        constexpr std::ptrdiff_t step = 14;
        for (; end_ - text >= 2 * step + 2; text += 2 * step) {
            if (const unsigned found = marks(text) | marks(text + step) << step; found != 0)
                return text + std::countr_zero(found);
        }
        while (text != end_ && *text != u'<')
            ++text;
        return text;
    }

    // Whether one of the two, both of which have four units, begins at a place.
    bool Begins(const char16_t* place, std::u16string_view mark) const {
        static_assert(linkEnd.size() == 4 && commentStart.size() == 4);
        return end_ - place >= 4 && std::memcmp(place, mark.data(), 4 * sizeof(char16_t)) == 0;
    }

    // Returns its end; null when it has none, as then no other has.
    const char16_t* TakeComment(const char16_t* comment) {
        const char16_t* const close = UtilpFindFirst(comment + commentStart.size(), end_, commentEnd);
        isRestOpen_ = !close;
        if (!close)
            return nullptr;
        Put(Between(next_, comment));
        return close + commentEnd.size();
    }

    // Whether what a comment stood in may be the end of a link without it. That is left to the way that takes
    // all comments out first.
    bool IsSeam() const {
        const std::u16string_view before = Between(buffer_, out_);
        const char16_t last = before.empty() ? u' ' : before.back();
        if (last != u'<' && last != u'/' && last != u'a')
            return false; // as nearly always
        return before.ends_with(u"<") || before.ends_with(u"</") || before.ends_with(u"</a");
    }

    // What has to be looked for in what was put moves within it.
    bool TakeLink(const char16_t* labelEnd) {
        scLink link;
        if (UtilpFindLinkBefore(Between(next_, labelEnd), link)) {
            Put(Between(next_, link.start));
            PutLink(link.Label(), link.Address());
            return true;
        }
        if (out_ == afterLink_)
            return false;
        Put(Between(next_, labelEnd));
        if (!UtilpFindLinkBefore(Between(afterLink_, out_), link))
            return false;
        const std::u16string label(link.Label()), address(link.Address());
        out_ = afterLink_ + (link.start - afterLink_);
        PutLink(label, address);
        return true;
    }

    void PutLink(std::u16string_view label, std::u16string_view address) {
        PutWith(label, beforeAddress);
        PutWith(address, afterAddress);
        afterLink_ = out_;
    }
    void PutWith(std::u16string_view text, std::u16string_view few) {
        Put(text);
        for (const char16_t unit : few)
            *out_++ = unit;
    }
    void Put(std::u16string_view text) {
        UtilpCopy(out_, text.data(), text.size()); // cppcheck-suppress invalidLifetime
        out_ += text.size();
    }

    std::u16string_view html_;
    const char16_t* next_; // what is before has been put
    const char16_t* end_;
    char16_t* buffer_;
    char16_t* out_;
    char16_t* afterLink_;     // what was put after the last link
    bool isRestOpen_ = false; // a comment that begins is not closed any more
};

} // namespace

std::optional<std::u16string_view> UtilpResolveWholeLinks(std::u16string_view html, char16_t* buffer) {
    return clsWholeLinks(html, buffer).Run();
}

} // namespace tvut
