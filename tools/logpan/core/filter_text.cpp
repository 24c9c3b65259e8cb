// The terms for the text are taken out, the rest are criteria.
#include "filter_text.h"

namespace tool::logpan {

namespace {

constexpr std::wstring_view nameText = L"text";
constexpr std::wstring_view nameRegular = L"regex";

void Set(std::wstring& value, const std::vector<std::wstring>& values) {
    if (values.empty())
        return;
    if (!value.empty() || values.size() > 1)
        throw scBadPattern{"one text can be asked for and one excluded; use regex=\"one|other\" for more"};
    value = values.front();
}

} // namespace

scFilterText ParseFilter(std::wstring_view text) {
    scFilterText filter;
    std::vector<scTerm> criteria;
    for (scTerm& term : TermsOf(text)) {
        const bool regular = term.name == nameRegular;
        if (!regular && !term.name.empty() && term.name != nameText) {
            criteria.push_back(std::move(term));
            continue;
        }
        Set(filter.include, term.shown);
        Set(filter.exclude, term.hidden);
        if (regular)
            filter.kind = PatternKind::regularExpression;
    }
    filter.criteria = clsCriteria{criteria};
    return filter;
}

std::wstring TextOf(const scFilterText& filter) {
    scTerm term{std::wstring{filter.kind == PatternKind::substring ? nameText : nameRegular}, {}, {}};
    if (!filter.include.empty())
        term.shown.push_back(filter.include);
    if (!filter.exclude.empty())
        term.hidden.push_back(filter.exclude);
    const std::wstring pattern = term.shown.empty() && term.hidden.empty() ? L"" : TextOf(term);
    const std::wstring criteria = filter.criteria.Text();
    return pattern + (pattern.empty() || criteria.empty() ? L"" : L" ") + criteria;
}

scFilter MakeFilter(const scFilterText& text) {
    return {{text.include, text.kind}, {text.exclude, text.kind}, text.criteria};
}

} // namespace tool::logpan
