// What is read by a picture, and what it says.
#pragma once

#include "locale/locale_names.h"

#include <span>

namespace tvut {

// What a text says. Fields of the moment that it does not say hold anything.
struct scReading {
    scDateTime moment;
    bool hasDate; // year and month
    bool hasTime; // the hour
};

struct scMatchJob {
    std::u16string_view text;                    // folded
    std::span<const scPicturePart* const> parts; // folded, of a date's picture, a time's, or both
    const scLocaleNames& names;
    Calendar calendar;        // that the picture counts its years by
    unsigned leastYearDigits; // 1, or more where a short year would be a guess
};

} // namespace tvut
