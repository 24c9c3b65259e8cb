// Text as a date and a time: by a caller's picture, or by those of the locale and the form that all know.
#pragma once

#include "locale/locale_names.h"

#include <optional>

namespace tvut {

constexpr std::size_t longestMomentText = 1024;

// What is asked for.
struct scMomentWish {
    bool date;
    bool time;
    bool isLong;
    bool noSeconds;
    bool isExact;

    LocalePicture DatePicture() const noexcept {
        return isLong ? LocalePicture::longDate : LocalePicture::shortDate;
    }
    LocalePicture TimePicture() const noexcept {
        return noSeconds ? LocalePicture::shortTime : LocalePicture::time;
    }
};

// The moment that a text of at most the longest length says, with nothing in the parts that are not wished;
// none when it says none, or several. Nothing is allocated.
std::optional<scDateTime> UtilpParseMoment(std::u16string_view text, const scMomentWish& wish,
                                           const scLocaleNames& names) noexcept;

// The same by one picture, which is folded and says what is wished.
std::optional<scDateTime> UtilpParseMoment(std::u16string_view text, const scMomentWish& wish,
                                           const scPicture& picture, const scLocaleNames& names) noexcept;

} // namespace tvut
