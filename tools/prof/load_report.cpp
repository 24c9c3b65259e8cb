// Finds the library's two kinds of lines about a load in its log.
#include "load_report.h"

#include <string_view>

namespace tool::prof {

namespace {

constexpr std::string_view marker = "PROF load error line ";
constexpr std::string_view warningMarker = " WRN: ";

// The rest of the first line that has a mark; nothing when none has.
std::string_view AfterMark(std::string_view lines, std::string_view mark) {
    const std::size_t found = lines.find(mark);
    if (found == std::string_view::npos)
        return {};
    const std::string_view rest = lines.substr(found + mark.size());
    return rest.substr(0, rest.find('\r'));
}

} // namespace

std::string clsLoadReport::Reason() const {
    const std::string lines = log_.Text();
    const std::string_view error = AfterMark(lines, marker);
    const std::size_t colon = error.find(": '");
    const std::size_t quote = error.rfind('\'');
    if (colon == std::string_view::npos || quote < colon + 3)
        return {};
    const std::string message{error.substr(colon + 3, quote - (colon + 3))};
    const std::string_view line = error.substr(0, colon);
    return line == "0" ? message : "line " + std::string{line} + ": " + message; // 0: before any line
}

std::string clsLoadReport::Warning() const {
    const std::string lines = log_.Text();
    std::string_view warning = AfterMark(lines, warningMarker);
    const std::size_t end = warning.find("': ");
    if (warning.starts_with('\'') &&
        end != std::string_view::npos) // the input's name, which the caller reports
        warning.remove_prefix(end + 3);
    return std::string{warning};
}

} // namespace tool::prof
