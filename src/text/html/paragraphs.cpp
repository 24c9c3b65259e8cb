// Plain text as a sequence of paragraphs.
#include "text/find.h"
#include "text/html/html.h"
#include "text/html/mask_run.h"

#include <algorithm>

namespace tvut {

namespace {

constexpr char16_t openQuote = 0xAB, closeQuote = 0xBB;

struct scMarkup {
    std::u16string_view open;
    std::u16string_view close;
    std::u16string_view empty; // what an empty paragraph holds, so that it keeps its height
};
constexpr scMarkup tagMarkup{u"<p>", u"</p>", u"<br>"};
constexpr scMarkup markerMarkup{u"[_[p]_]", u"[_[/p]_]", u""};

// Where the result goes: counts, or writes.
class clsCount {
  public:
    void Put(std::u16string_view text) { count_ += text.size(); }
    void Mask(const char16_t* text, const char16_t* end) { count_ += UtilpMaskedRunLength(text, end); }
    std::size_t Count() const { return count_; }

  private:
    std::size_t count_ = 0;
};

class clsWriter {
  public:
    explicit clsWriter(std::span<char16_t> result)
        : next_(result.data()), end_(result.data() + result.size()) {}
    void Put(std::u16string_view text) { next_ = std::copy(text.begin(), text.end(), next_); }
    void Mask(const char16_t* text, const char16_t* end) { next_ = UtilpMaskRun(text, end, next_, end_); }

  private:
    char16_t* next_;
    char16_t* end_;
};

template <class Out>
void PutParagraphs(std::u16string_view text, const scMarkup& markup, Out& out) {
    const char16_t* next = text.data();
    const char16_t* const end = next + text.size();
    for (bool empty = true;; ++next) {
        if (empty)
            out.Put(markup.open);
        const char16_t* const special = UtilpFindAny(next, end, {u'\r', openQuote, closeQuote});
        out.Mask(next, special);
        empty = empty && special == next;
        next = special;
        if (next == end || *next == u'\r') {
            out.Put(empty ? markup.empty : u"");
            out.Put(markup.close);
            if (next == end)
                return;
            if (end - next > 1 && next[1] == u'\n')
                ++next;
            empty = true;
        } else { // these are brackets to those who read the result, unless they are doubled
            out.Put(*next == openQuote ? u"&laquo;&laquo;" : u"&raquo;&raquo;");
            empty = false;
        }
    }
}

const scMarkup& MarkupOf(HtmlForm form) {
    return form == HtmlForm::markers ? markerMarkup : tagMarkup;
}

} // namespace

std::size_t UtilpHtmlLength(std::u16string_view text, HtmlForm form) {
    clsCount count;
    PutParagraphs(text, MarkupOf(form), count);
    return count.Count();
}

void UtilpTextToHtml(std::u16string_view text, HtmlForm form, std::span<char16_t> result) {
    clsWriter writer(result);
    PutParagraphs(text, MarkupOf(form), writer);
}

} // namespace tvut
