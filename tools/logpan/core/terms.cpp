// Reads from left to right; what is written back is read as the same.
#include "terms.h"

#include "pattern.h"

namespace tool::logpan {

namespace {

constexpr std::wstring_view special = L" \t,=!\"";

class clsTermReader {
  public:
    explicit clsTermReader(std::wstring_view text) : rest_(text) { SkipBlanks(); }

    bool AtEnd() const { return rest_.empty(); }

    scTerm Term() {
        scTerm term;
        if (const std::size_t end = rest_.find_first_of(special);
            end != std::wstring_view::npos && end > 0 && rest_[end] == L'=') {
            term.name = rest_.substr(0, end);
            rest_.remove_prefix(end + 1);
        }
        do {
            auto& values = Take(L'!') ? term.hidden : term.shown;
            values.push_back(Value());
        } while (Take(L','));
        if (!rest_.empty() && !IsBlank(rest_.front()))
            throw scBadPattern{"a blank is missing after a value"};
        SkipBlanks();
        return term;
    }

  private:
    static bool IsBlank(wchar_t unit) { return unit == L' ' || unit == L'\t'; }

    void SkipBlanks() {
        while (!rest_.empty() && IsBlank(rest_.front()))
            rest_.remove_prefix(1);
    }

    bool Take(wchar_t expected) {
        const bool there = rest_.starts_with(expected);
        rest_.remove_prefix(there ? 1 : 0);
        return there;
    }

    std::wstring Value() {
        if (Take(L'"'))
            return Quoted();
        const std::size_t length = std::min(rest_.find_first_of(L" \t,\""), rest_.size());
        if (length == 0)
            throw scBadPattern{"a value is missing"};
        const std::wstring_view value = rest_.substr(0, length);
        rest_.remove_prefix(length);
        return std::wstring{value};
    }

    std::wstring Quoted() {
        std::wstring value;
        for (;;) {
            const std::size_t mark = rest_.find(L'"');
            if (mark == std::wstring_view::npos)
                throw scBadPattern{"a quotation mark is not closed"};
            value += rest_.substr(0, mark);
            rest_.remove_prefix(mark + 1);
            if (!Take(L'"'))
                return value;
            value += L'"';
        }
    }

    std::wstring_view rest_;
};

void AppendValues(std::wstring& text, const std::vector<std::wstring>& values, std::wstring_view mark) {
    for (const std::wstring& value : values) {
        if (!text.empty() && text.back() != L'=')
            text += L',';
        text += mark;
        if (!value.empty() && value.find_first_of(special) == std::wstring::npos) {
            text += value;
            continue;
        }
        text += L'"';
        for (const wchar_t unit : value)
            text.append(unit == L'"' ? 2 : 1, unit);
        text += L'"';
    }
}

} // namespace

std::vector<scTerm> TermsOf(std::wstring_view text) {
    std::vector<scTerm> terms;
    for (clsTermReader reader{text}; !reader.AtEnd();)
        terms.push_back(reader.Term());
    return terms;
}

std::wstring TextOf(const scTerm& term) {
    std::wstring text = term.name.empty() ? L"" : term.name + L"=";
    AppendValues(text, term.shown, L"");
    AppendValues(text, term.hidden, L"!");
    return text;
}

} // namespace tool::logpan
