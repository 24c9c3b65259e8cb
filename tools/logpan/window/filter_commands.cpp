// What chooses and colours the lines: the boxes, the focused line's own values, saved filters, rules.
#include "main_window.h"

#include "resource.h"
#include "text_dialog.h"
#include "text_io.h"

namespace tool::logpan {

namespace {

constexpr const wchar_t* filtersTitle = L"Saved filters";
constexpr const wchar_t* filtersHint =
    L"One filter a line, after its name and a colon:\n"
    L"    printing: tray severity=warning,error module=KXPRINT,!KX32UTIL process=kontor\n"
    L"Terms: text=, regex=, severity=, module=, thread=, process=. \"!\" before a value hides.";
constexpr const wchar_t* highlightsTitle = L"Highlight rules";
constexpr const wchar_t* highlightsHint =
    L"One rule a line, the first one that fits counts. A colour, a colon and a filter:\n"
    L"    yellow: \"tray 3\"        blue: module=Archive severity=none\n"
    L"Colours: red, orange, yellow, green, cyan, blue, violet, grey.";

} // namespace

void clsMainWindow::ApplyFilter() {
    try {
        lines_.SetFilter(bar_->Filter());
        Say();
    } catch (const scBadPattern& bad) { // the filter before stays until this one is whole
        status_->Say(ToWide(bad.reason));
        return;
    }
    search_.Cancel();
    list_->Reset();
    ShowDetail();
    Update();
}

void clsMainWindow::ClearFilter() {
    scFilterText none;
    none.kind = bar_->IsChecked(ID_REGULAR) ? PatternKind::regularExpression : PatternKind::substring;
    bar_->SetFilter(none);
    SetFocus(list_->Handle());
}

void clsMainWindow::ToggleCriterion(std::wstring_view property, bool hide) {
    const std::optional<std::size_t> row = list_->FocusedRow();
    if (!row)
        return;
    const LinePtr line = lines_[*row];
    try {
        scFilterText filter = bar_->FilterText();
        filter.criteria.Toggle(property, *line, hide);
        bar_->SetFilter(filter);
    } catch (const scBadPattern& bad) {
        status_->Say(ToWide(bad.reason));
    }
}

void clsMainWindow::ToggleProblems() {
    try {
        scFilterText filter = bar_->FilterText();
        filter.criteria.Toggle(L"severity", {L"warning", L"error"});
        bar_->SetFilter(filter);
    } catch (const scBadPattern& bad) {
        status_->Say(ToWide(bad.reason));
    }
}

void clsMainWindow::UseSaved(std::size_t number) {
    const std::vector<scNamedFilter>& filters = settings_.settings.filters;
    if (number < filters.size())
        bar_->SetFilter(ParseFilter(filters[number].text));
}

void clsMainWindow::SaveFilter() {
    try {
        const std::wstring text = TextOf(bar_->FilterText());
        EditFilters(L"New filter: " + (text.empty() ? L"severity=warning,error" : text));
    } catch (const scBadPattern& bad) {
        status_->Say(ToWide(bad.reason));
    }
}

void clsMainWindow::EditFilters(const std::wstring& more) {
    std::vector<scNamedFilter>& filters = settings_.settings.filters;
    const auto text = AskForText(window_, {filtersTitle, filtersHint, TextOf(filters) + more,
                                           [](const std::wstring& typed) { ParseNamedFilters(typed); }});
    if (!text)
        return;
    filters = ParseNamedFilters(*text);
    settings_.Save();
}

void clsMainWindow::EditHighlights() {
    std::vector<scNamedFilter>& rules = settings_.settings.highlights;
    const auto text =
        AskForText(window_, {highlightsTitle, highlightsHint, TextOf(rules),
                             [](const std::wstring& typed) { clsHighlights{ParseNamedFilters(typed)}; }});
    if (!text)
        return;
    rules = ParseNamedFilters(*text);
    marks_.highlights = clsHighlights{rules};
    InvalidateRect(list_->Handle(), nullptr, TRUE);
    settings_.Save();
}

} // namespace tool::logpan
