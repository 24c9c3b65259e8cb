// Dates as documents write them, and as callers see them: ISO 8601, with a zone only where the document
// states one.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tvut {

// A day that the calendar has, perhaps with a time.
struct scDocDate {
    enum class Zone : std::uint8_t { unknown, utc, offset };

    unsigned year = 0, month = 1, day = 1;
    bool hasTime = false;
    unsigned hour = 0, minute = 0, second = 0;
    Zone zone = Zone::unknown; // of the time
    int offset = 0;            // minutes east of UTC
};

// Each reads one form; nothing when the text is no date: month 13, 30 February, other text. White space
// around it is passed over, and so is what no form counts as part of a date: fractions of seconds, the day's
// name, comments of mail.
std::optional<scDocDate> UtilpReadIsoDate(std::u16string_view text) noexcept;  // ISO 8601, W3CDTF
std::optional<scDocDate> UtilpReadPdfDate(std::u16string_view text) noexcept;  // D:YYYYMMDDhhmmss+hh'mm'
std::optional<scDocDate> UtilpReadMailDate(std::u16string_view text) noexcept; // RFC 5322
std::optional<scDocDate> UtilpReadTiffDate(std::u16string_view text) noexcept; // YYYY:MM:DD hh:mm:ss
std::optional<scDocDate> UtilpReadAnyDate(std::u16string_view text) noexcept;  // any of these

// 100 ns since 1601, UTC; 0 and numbers with all bits set are none.
std::optional<scDocDate> UtilpDateOfFileTime(std::uint64_t time) noexcept;

// A date by its parts, as RTF has it; hour is -1 where there is no time.
std::optional<scDocDate> UtilpDateOfParts(unsigned year, unsigned month, unsigned day, int hour,
                                          unsigned minute, unsigned second) noexcept;

// YYYY-MM-DD or YYYY-MM-DDThh:mm:ss, then Z or +hh:mm. Throws std::bad_alloc.
std::u16string UtilpDateText(const scDocDate& date);

} // namespace tvut
