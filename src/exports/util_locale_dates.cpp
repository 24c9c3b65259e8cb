// Exports of the locale family: dates and times as text, and OLE dates.
#include "exports/result_call.h"
#include "exports/wide_text.h"
#include "locale/date_format.h"
#include "locale/date_parse.h"
#include "locale/kept_locales.h"
#include "locale/unmade_array.h"

#include <tvut22/locale.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cwchar>
#include <memory>

using namespace tvut;

namespace {

constexpr UINT knownFlags = UTIL_DATETIME_DATE | UTIL_DATETIME_TIME | UTIL_DATETIME_LONG |
                            UTIL_DATETIME_NO_SECONDS | UTIL_DATETIME_NO_USER | UTIL_DATETIME_EXACT;

using LocalePointer = std::shared_ptr<const clsLocaleNames>;

LocalePointer FindLocale(const wchar_t* locale, UINT flags) {
    return UtilpLocale({locale ? FromWide(locale) : nullptr, (flags & UTIL_DATETIME_NO_USER) == 0});
}

// Both parts where neither is named.
scMomentWish WishOf(UINT flags) {
    const UINT parts = flags & (UTIL_DATETIME_DATE | UTIL_DATETIME_TIME);
    return {parts != UTIL_DATETIME_TIME, parts != UTIL_DATETIME_DATE, (flags & UTIL_DATETIME_LONG) != 0,
            (flags & UTIL_DATETIME_NO_SECONDS) != 0, (flags & UTIL_DATETIME_EXACT) != 0};
}

// A caller's picture, read.
class clsCallersPicture {
  public:
    explicit clsCallersPicture(const wchar_t* picture) {
        const std::size_t length = picture ? wcsnlen(picture, longestPicture + 1) : 0;
        isWhole_ = length <= longestPicture;
        if (isWhole_ && picture)
            picture_ =
                UtilpReadPicture({FromWide(picture), length}, PictureLetters::all, parts_.Room(), texts_);
    }

    bool IsWhole() const { return isWhole_; }
    const scPicture& Get() const { return picture_; }

    void Fold(const scLocaleNames& names) {
        UtilpFoldPicture(parts_.Room().first(picture_.parts.size()), names.digits, folded_.data());
    }

  private:
    bool isWhole_;
    scPicture picture_;
    clsUnmadeArray<scPicturePart, longestPicture> parts_;
    std::array<char16_t, longestPicture> texts_, folded_;
};

// ---- To text ------------------------------------------------------------------------------------------

bool IsRight(const scDateTime& moment, bool needsDate, bool needsTime) {
    return (!needsDate || UtilpIsDate(moment)) && (!needsTime || UtilpIsTime(moment));
}

// Writes the text where there is room; result: the length that it has.
std::size_t Format(const scDateTime& moment, const scMomentWish& wish, const scPicture* picture,
                   const scLocaleNames& names, std::span<char16_t> text) {
    if (picture)
        return UtilpFormatMoment(moment, *picture, names, text);
    std::size_t length = 0;
    if (wish.date)
        length = UtilpFormatMoment(moment, names.Picture(wish.DatePicture()), names, text);
    if (wish.date && wish.time && length++ < text.size())
        text[length - 1] = u' ';
    if (wish.time)
        length += UtilpFormatMoment(moment, names.Picture(wish.TimePicture()), names,
                                    text.subspan(std::min(length, text.size())));
    return length;
}

UtilResult Give(std::u16string_view text, BSTR* result) {
    if (!result)
        return UtilResult::ok;
    const auto length = static_cast<UINT>(text.size());
    const wchar_t* const units = text.empty() ? L"" : ToWide(text.data());
    if (*result)
        return SysReAllocStringLen(result, units, length) ? UtilResult::ok : UtilResult::failed;
    *result = SysAllocStringLen(units, length);
    return *result ? UtilResult::ok : UtilResult::failed;
}

UtilResult ToText(scDateTime moment, const wchar_t* locale, UINT flags, const wchar_t* picture,
                  BSTR* result) {
    if (!UtilpOnly(flags, knownFlags))
        return UtilResult::badArgument;
    const scMomentWish wish = WishOf(flags);
    const clsCallersPicture callers(picture);
    const scPicture* const given = picture ? &callers.Get() : nullptr;
    const bool needsDate = given ? given->HasDate() : wish.date;
    if (!callers.IsWhole() || !IsRight(moment, needsDate, given ? given->HasTime() : wish.time))
        return UtilResult::badArgument;
    const LocalePointer names = FindLocale(locale, flags);
    if (!names)
        return UtilResult::notFound;
    if (needsDate)
        moment.dayOfWeek = UtilpDateOf(UtilpDayOf(moment)).dayOfWeek;

    std::array<char16_t, usualMomentText> usual;
    const std::size_t length = Format(moment, wish, given, names->Names(), usual);
    if (length <= usual.size())
        return Give({usual.data(), length}, result);
    const auto text = std::make_unique_for_overwrite<char16_t[]>(length);
    Format(moment, wish, given, names->Names(), {text.get(), length});
    return Give({text.get(), length}, result);
}

// ---- From text ----------------------------------------------------------------------------------------

// A caller's picture says what there is where the flags do not. False when something is asked for that it has
// not, or it has nothing.
bool Narrow(scMomentWish& wish, UINT flags, const scPicture& picture) {
    if ((flags & (UTIL_DATETIME_DATE | UTIL_DATETIME_TIME)) == 0) {
        wish.date = picture.HasDate();
        wish.time = picture.HasTime();
    }
    return (wish.date || wish.time) && (!wish.date || picture.SaysDate()) &&
           (!wish.time || picture.SaysTime());
}

// Calls a function with the moment that a text says.
template <class Take>
UtilResult FromText(const wchar_t* text, const wchar_t* locale, UINT flags, const wchar_t* picture,
                    Take take) {
    const std::size_t length = text ? wcsnlen(text, longestMomentText + 1) : 0;
    if (!text || length > longestMomentText || !UtilpOnly(flags, knownFlags))
        return UtilResult::badArgument;
    scMomentWish wish = WishOf(flags);
    clsCallersPicture callers(picture);
    if (!callers.IsWhole() || (picture && !Narrow(wish, flags, callers.Get())))
        return UtilResult::badArgument;
    const LocalePointer names = FindLocale(locale, flags);
    if (!names)
        return UtilResult::notFound;
    if (picture)
        callers.Fold(names->Names());
    const std::u16string_view view(FromWide(text), length);
    const auto moment = picture ? UtilpParseMoment(view, wish, callers.Get(), names->Names())
                                : UtilpParseMoment(view, wish, names->Names());
    if (!moment)
        return UtilResult::notParsed;
    take(*moment);
    return UtilResult::ok;
}

} // namespace

INT TVUT22_CALL UtilLocLocaleStringFromSystemTime(const SYSTEMTIME* time, const wchar_t* locale, UINT flags,
                                                  const wchar_t* picture, BSTR* result) {
    return UtilpResultOf([&] {
        return time ? ToText(std::bit_cast<scDateTime>(*time), locale, flags, picture, result)
                    : UtilResult::badArgument;
    });
}

INT TVUT22_CALL UtilLocSystemTimeFromLocaleString(const wchar_t* text, const wchar_t* locale, UINT flags,
                                                  const wchar_t* picture, SYSTEMTIME* time) {
    return UtilpResultOf([&] {
        return time ? FromText(text, locale, flags, picture,
                               [&](const scDateTime& found) { *time = std::bit_cast<SYSTEMTIME>(found); })
                    : UtilResult::badArgument;
    });
}

INT TVUT22_CALL UtilDateTimeToLocaleString(double dateTime, const wchar_t* locale, UINT flags,
                                           const wchar_t* picture, BSTR* result) {
    return UtilpResultOf([&] {
        const auto moment = UtilpFromOleDate(dateTime);
        return moment ? ToText(*moment, locale, flags, picture, result) : UtilResult::badArgument;
    });
}

INT TVUT22_CALL UtilDateTimeFromLocaleString(const wchar_t* text, const wchar_t* locale, UINT flags,
                                             const wchar_t* picture, double* dateTime) {
    return UtilpResultOf([&] {
        return dateTime ? FromText(text, locale, flags, picture,
                                   [&](const scDateTime& found) { *dateTime = UtilpToOleDate(found); })
                        : UtilResult::badArgument;
    });
}

INT TVUT22_CALL UtilLocDateTimeToSYSTEMTIME(double dateTime, SYSTEMTIME* time) {
    return UtilpResultOf([&] {
        const auto moment = UtilpFromOleDate(dateTime);
        if (!time || !moment)
            return UtilResult::badArgument;
        *time = std::bit_cast<SYSTEMTIME>(*moment);
        return UtilResult::ok;
    });
}
