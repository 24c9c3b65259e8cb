// Warnings and errors, by how their text begins.
#pragma once

#include <string_view>

namespace tool::logpan {

enum class Severity { none, warning, error };

// Errors of the library that have none of the beginnings below.
constexpr bool IsLibraryError(std::wstring_view text) {
    return text.starts_with(L"PROF load error ") ||
           (text.starts_with(L"KX32UTIL['") && text.find(L"']: error in '") != std::wstring_view::npos);
}

constexpr std::wstring_view SeverityName(Severity severity) {
    constexpr std::wstring_view names[] = {L"", L"warning", L"error"};
    return names[static_cast<int>(severity)];
}

constexpr Severity SeverityOf(std::wstring_view text) {
    struct scBeginning {
        std::wstring_view text;
        Severity severity;
    };
    constexpr scBeginning beginnings[] = {
        {L"WRN:", Severity::warning},
        {L"Warning:", Severity::warning},
        {L"ERR:", Severity::error},
        {L"Error:", Severity::error},
    };
    while (text.starts_with(L'\r') || text.starts_with(L'\n'))
        text.remove_prefix(1);
    for (const scBeginning& beginning : beginnings)
        if (text.starts_with(beginning.text))
            return beginning.severity;
    return IsLibraryError(text) ? Severity::error : Severity::none;
}

} // namespace tool::logpan
