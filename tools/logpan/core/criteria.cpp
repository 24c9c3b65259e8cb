// A table has a row for each property: how a value is checked, compared with a line's, and taken from a line.
#include "criteria.h"

#include "columns.h"
#include "fold.h"
#include "pattern.h"
#include "severity.h"

#include <algorithm>

namespace tool::logpan {

namespace {

bool IsDigits(std::wstring_view text, std::wstring_view digits, std::size_t most) {
    return !text.empty() && text.size() <= most && text.find_first_not_of(digits) == std::wstring_view::npos;
}

// Of digits.
std::uint64_t Number(std::wstring_view text, unsigned base) {
    std::uint64_t number = 0;
    for (const wchar_t unit : text)
        number =
            number * base + static_cast<unsigned>(unit <= L'9' ? unit - L'0' : (unit | 0x20) - L'a' + 10);
    return number;
}

bool IsAny(std::wstring_view) {
    return true;
}

bool IsSeverity(std::wstring_view text) {
    return text == L"none" || text == L"warning" || text == L"error";
}
std::wstring SeverityOfLine(const scLine& line) {
    const std::wstring_view name = SeverityName(SeverityOf(line.text));
    return std::wstring{name.empty() ? L"none" : name};
}
bool HasSeverity(const scLine& line, std::wstring_view value) {
    return SeverityOfLine(line) == value;
}

std::wstring ModuleOf(const scLine& line) {
    return line.module;
}
bool HasModule(const scLine& line, std::wstring_view value) {
    return EqualFolded(line.module, value);
}

bool IsThread(std::wstring_view text) {
    return IsDigits(text, L"0123456789abcdefABCDEF", 8);
}
std::wstring ThreadOf(const scLine& line) {
    const std::wstring text = ThreadText(line);
    return text.substr(std::min(text.find_first_not_of(L'0'), text.size() - 1));
}
bool HasThread(const scLine& line, std::wstring_view value) {
    return line.thread == Number(value, 16);
}

std::wstring ProcessOf(const scLine& line) {
    return line.process == nullptr      ? std::wstring{}
           : line.process->name.empty() ? std::to_wstring(line.process->id)
                                        : line.process->name;
}
bool HasProcess(const scLine& line, std::wstring_view value) {
    if (line.process == nullptr || value.empty())
        return line.process == nullptr && value.empty();
    if (IsDigits(value, L"0123456789", 10))
        return line.process->id == Number(value, 10);
    constexpr std::wstring_view ending = L".exe";
    const std::wstring_view name = line.process->name;
    return EqualFolded(name, value) ||
           (name.size() == value.size() + ending.size() && EqualFolded(name.substr(0, value.size()), value) &&
            EqualFolded(name.substr(value.size()), ending));
}

constexpr scProperty properties[] = {
    {L"severity", "severity= takes error, warning and none", IsSeverity, HasSeverity, SeverityOfLine},
    {L"module", nullptr, IsAny, HasModule, ModuleOf},
    {L"thread", "thread= takes at most eight hexadecimal digits", IsThread, HasThread, ThreadOf},
    {L"process", nullptr, IsAny, HasProcess, ProcessOf},
};

void CheckValues(const scProperty& property, const std::vector<std::wstring>& values) {
    for (const std::wstring& value : values)
        if (!property.isValue(value))
            throw scBadPattern{property.reason};
}

void Merge(std::vector<std::wstring>& values, const std::vector<std::wstring>& more) {
    values.insert(values.end(), more.begin(), more.end());
}

} // namespace

const scProperty* PropertyOf(std::wstring_view name) {
    for (const scProperty& property : properties)
        if (property.name == name)
            return &property;
    return nullptr;
}

clsCriteria::clsCriteria(const std::vector<scTerm>& terms) {
    for (const scTerm& term : terms) {
        const scProperty* property = PropertyOf(term.name);
        if (property == nullptr)
            throw scBadPattern{"what can be asked for is severity=, module=, thread= and process="};
        CheckValues(*property, term.shown);
        CheckValues(*property, term.hidden);
        scCriterion& criterion = Of(*property);
        Merge(criterion.shown, term.shown);
        Merge(criterion.hidden, term.hidden);
    }
}

bool clsCriteria::Meets(const scLine& line) const {
    return std::all_of(criteria_.begin(), criteria_.end(), [&](const scCriterion& criterion) {
        const auto has = [&](const std::wstring& value) { return criterion.property->has(line, value); };
        return (criterion.shown.empty() ||
                std::any_of(criterion.shown.begin(), criterion.shown.end(), has)) &&
               std::none_of(criterion.hidden.begin(), criterion.hidden.end(), has);
    });
}

void clsCriteria::Toggle(std::wstring_view property, const scLine& line, bool hide) {
    Toggle(property, std::vector{PropertyOf(property)->of(line)}, hide);
}

void clsCriteria::Toggle(std::wstring_view property, const std::vector<std::wstring>& toggled, bool hide) {
    scCriterion& criterion = Of(*PropertyOf(property));
    std::vector<std::wstring>& values = hide ? criterion.hidden : criterion.shown;
    std::size_t found = 0;
    for (const std::wstring& value : toggled) {
        found += std::erase(values, value);
        std::erase(hide ? criterion.shown : criterion.hidden, value);
    }
    if (found < toggled.size())
        Merge(values, toggled);
    std::erase_if(criteria_, [](const scCriterion& at) { return at.shown.empty() && at.hidden.empty(); });
}

std::wstring clsCriteria::Text() const {
    std::wstring text;
    for (const scCriterion& criterion : criteria_) {
        text += text.empty() ? L"" : L" ";
        text += TextOf({std::wstring{criterion.property->name}, criterion.shown, criterion.hidden});
    }
    return text;
}

clsCriteria::scCriterion& clsCriteria::Of(const scProperty& property) {
    for (scCriterion& criterion : criteria_)
        if (criterion.property == &property)
            return criterion;
    return criteria_.emplace_back(scCriterion{&property, {}, {}});
}

} // namespace tool::logpan
