// What stands before the text of a line: its time, thread and processor, the last digit of its number, and its
// indentation.
#pragma once

#include "runtime/diagnostics.h"

namespace tvut {

struct scLineStamp {
    bool sinceStart = false; // minutes to milliseconds count from a start; no hours
    std::uint32_t hour = 0, minute = 0, second = 0, millisecond = 0;
    std::uint32_t thread = 0;
    std::uint32_t processor = 0;
    std::uint32_t lineNumber = 0; // its last digit is shown
    std::size_t level = 0;        // blanks, as UtilpShownLevel returns them
};

constexpr std::size_t deepestShownLevel = 50;

// A level counts as far as it goes, but is shown between 0 and 50.
std::size_t UtilpShownLevel(std::int32_t level) noexcept;

inline char16_t UtilpSequenceCharacter(std::uint32_t lineNumber) noexcept {
    return static_cast<char16_t>(u'0' + lineNumber % 10);
}

// "TAG     : 12:34:56.789 00000abc/01 7  ": the tag, when there is one, and the stamp.
void UtilpPutStamp(clsDiagnosticLine& line, std::u16string_view tag, const scLineStamp& stamp) noexcept;

} // namespace tvut
