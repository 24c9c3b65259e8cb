// What formatting and reading need of a locale: its pictures, read once, and its names, as they are and
// folded.
#pragma once

#include "locale/calendar.h"
#include "locale/folded_text.h"
#include "locale/picture.h"
#include "platform/locale_data.h"

#include <array>
#include <memory>
#include <string_view>

namespace tvut {

struct scName {
    std::u16string_view text;
    std::u16string_view folded;
};

// One of the four pictures that a locale has.
enum class LocalePicture : std::uint8_t { shortDate, longDate, time, shortTime };

// The forms in which a month has a name; a locale without genitives has the plain ones there.
enum class MonthForm : std::uint8_t { full, fullGenitive, abbreviated, abbreviatedGenitive };
constexpr std::size_t monthForms = 4;

struct scLocaleNames {
    std::array<scPicture, 4> pictures;
    std::array<std::array<scName, 12>, monthForms> months;
    std::array<scName, 7> weekdays, shortWeekdays; // from Sunday on
    std::array<scName, 2> marks;                   // before noon, after it
    std::array<scName, 5> eras;                    // one, the Japanese calendar's all
    scNativeDigits digits{};
    Calendar calendar = Calendar::gregorian;
    bool hasDigitMonths = false;       // some names of months begin with a digit
    std::int32_t lastTwoDigitYear = 0; // the last of the hundred that two digits stand for, as counted

    const scPicture& Picture(LocalePicture picture) const noexcept {
        return pictures[static_cast<std::size_t>(picture)];
    }
    const std::array<scName, 12>& Months(MonthForm form) const noexcept {
        return months[static_cast<std::size_t>(form)];
    }
    // The calendar that a picture counts its years by: the Japanese one counts by eras, or not at all.
    Calendar CountsBy(const scPicture& picture) const noexcept {
        return calendar == Calendar::japanese && !picture.Has(PictureField::era) ? Calendar::gregorian
                                                                                 : calendar;
    }
};

// The same with what it refers to, as the system has it. Asks the system some eighty times.
class clsLocaleNames {
  public:
    explicit clsLocaleNames(const scLocaleChoice& locale);
    clsLocaleNames(const clsLocaleNames&) = delete;
    clsLocaleNames& operator=(const clsLocaleNames&) = delete;

    const scLocaleNames& Names() const noexcept { return names_; }
    std::size_t Bytes() const noexcept; // of memory

  private:
    void MoveViews(const char16_t* texts, const scPicturePart* parts) noexcept;

    scLocaleNames names_;
    std::unique_ptr<char16_t[]> texts_;
    std::unique_ptr<scPicturePart[]> parts_;
    std::size_t textUnits_ = 0;
    std::size_t partCount_ = 0;
};

// The first character of a text: one unit, or a pair.
constexpr std::u16string_view UtilpFirstCharacter(std::u16string_view text) noexcept {
    return text.substr(0, !text.empty() && (text[0] & 0xFC00) == 0xD800 ? 2 : 1);
}

// Folds a picture's pieces of text into a place with as much room as they have.
void UtilpFoldPicture(std::span<scPicturePart> parts, const scNativeDigits& digits,
                      char16_t* folded) noexcept;

} // namespace tvut
