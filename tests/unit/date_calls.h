// Pictures and texts in one call, for tests and fuzzers.
#pragma once

#include "locale/date_format.h"
#include "locale/date_parse.h"

#include <array>
#include <map>
#include <string>

namespace tvut {

// A caller's picture with all that belongs to it.
struct scOwnPicture {
    scOwnPicture(std::u16string_view text, const scLocaleNames& names)
        : picture(UtilpReadPicture(text, PictureLetters::all, parts, texts)) {
        UtilpFoldPicture(std::span(parts).first(picture.parts.size()), names.digits, folded.data());
    }
    scOwnPicture(const scOwnPicture&) = delete;

    std::array<scPicturePart, longestPicture> parts{};
    std::array<char16_t, longestPicture> texts{}, folded{};
    scPicture picture;
};

inline std::u16string FormatBy(const scPicture& picture, const scDateTime& moment,
                               const scLocaleNames& names) {
    std::u16string text(UtilpFormatMoment(moment, picture, names, {}), u'\0');
    UtilpFormatMoment(moment, picture, names, text);
    return text;
}

inline std::u16string FormatBy(std::u16string_view picture, const scDateTime& moment,
                               const scLocaleNames& names) {
    return FormatBy(scOwnPicture(picture, names).picture, moment, names);
}

inline std::optional<scDateTime> ParseBy(std::u16string_view picture, std::u16string_view text,
                                         const scLocaleNames& names, bool isExact) {
    const scOwnPicture own(picture, names);
    return UtilpParseMoment(text, {own.picture.SaysDate(), own.picture.SaysTime(), false, false, isExact},
                            own.picture, names);
}

} // namespace tvut
