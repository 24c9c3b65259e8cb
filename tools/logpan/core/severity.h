// Warnings and errors, by how their text begins.
#ifndef LOGPAN_SEVERITY_H
#define LOGPAN_SEVERITY_H

#include <string_view>

namespace tool::logpan {

enum class Severity { none, warning, error };

constexpr Severity severityOf(std::wstring_view text) {
    struct Beginning {
        std::wstring_view text;
        Severity severity;
    };
    constexpr Beginning beginnings[] = {
        {L"WRN:", Severity::warning},
        {L"Warning:", Severity::warning},
        {L"ERR:", Severity::error},
        {L"Error:", Severity::error},
    };
    for (const Beginning& beginning : beginnings)
        if (text.starts_with(beginning.text))
            return beginning.severity;
    return Severity::none;
}

} // namespace tool::logpan

#endif
