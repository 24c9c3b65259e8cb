// Pictures of dates and times: "dd.MM.yyyy" as parts, fields and the texts between them.
//
// A run of one letter is a field, '...' is text, '' in it an apostrophe; a quote left open runs to the end.
// All other characters are text as they stand. Text is kept in pieces, since reading takes each kind
// otherwise.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace tvut {

enum class PictureField : std::uint8_t {
    text,
    day,
    weekday,
    month,
    year,
    era,
    hour12,
    hour24,
    minute,
    second,
    fraction,
    mark,
};

constexpr bool UtilpIsDateField(PictureField field) noexcept {
    return field >= PictureField::day && field <= PictureField::era;
}
constexpr bool UtilpIsTimeField(PictureField field) noexcept {
    return field >= PictureField::hour12;
}
constexpr bool UtilpIsNumber(PictureField field, unsigned width) noexcept {
    return field != PictureField::text && field != PictureField::weekday && field != PictureField::era &&
           field != PictureField::mark && (field != PictureField::month || width <= 2);
}

enum class PictureText : std::uint8_t {
    word,      // has letters
    symbol,    // has none: a bracket, a comma of another script
    separator, // one of . / - , : and the Arabic comma
    blank,
    direction, // a mark of the writing direction
};

// What a piece of text parts.
enum class PictureGap : std::uint8_t { other, dates, times };

struct scPicturePart {
    PictureField field = PictureField::text;
    std::uint8_t width = 0; // letters of the run, at most as many as make a difference
    PictureText kind = PictureText::symbol;
    PictureGap gap = PictureGap::other;
    std::u16string_view text{};   // as formatting writes it
    std::u16string_view folded{}; // as reading compares it; set by who reads
};

// The letters that mean something.
enum class PictureLetters : std::uint8_t { date, time, all };

struct scPicture {
    std::span<const scPicturePart> parts;
    std::uint16_t fields = 0; // a bit each

    bool Has(PictureField field) const noexcept { return (fields >> static_cast<unsigned>(field) & 1) != 0; }
    bool HasDate() const noexcept { return (fields & 0x3Eu) != 0; }
    bool HasTime() const noexcept { return (fields & 0xFC0u) != 0; }
    // Whether a text of it says a date, a time.
    bool SaysDate() const noexcept { return Has(PictureField::year) && Has(PictureField::month); }
    bool SaysTime() const noexcept { return Has(PictureField::hour12) || Has(PictureField::hour24); }
};

constexpr std::size_t longestPicture = 255;

// Reads a picture into parts, and its text into a place of its own: of both at most as many as the picture
// has units. What the parts refer to must stay.
scPicture UtilpReadPicture(std::u16string_view picture, PictureLetters letters,
                           std::span<scPicturePart> parts, std::span<char16_t> texts) noexcept;

} // namespace tvut
