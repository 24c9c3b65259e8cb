// Dates and times as text, by a picture.
#pragma once

#include "locale/locale_names.h"

#include <span>

namespace tvut {

// The longest text that formatting in one place makes; longer ones are measured first.
constexpr std::size_t usualMomentText = 512;

// Writes a moment by a picture. Of the fields that the picture has the moment's must be right, its day of the
// week included. Returns the text's length, also where there is room for its beginning only.
std::size_t UtilpFormatMoment(const scDateTime& moment, const scPicture& picture, const scLocaleNames& names,
                              std::span<char16_t> text) noexcept;

} // namespace tvut
