// Pictures of any contents: what they give is measured right, and read as a moment that gives the same. Texts
// of any contents by the pictures of a locale: what is taken exactly is taken leniently, and for the same.
#include "choices.h"
#include "require.h"

#include "unit/date_calls.h"

#include <algorithm>
#include <cstring>
#include <string>

using namespace tvut;

namespace {

const scLocaleNames& Names(unsigned choice) {
    static const clsLocaleNames all[] = {
        clsLocaleNames({u"en-US", true}),      clsLocaleNames({u"eu-ES", true}),
        clsLocaleNames({u"ja-eras", true}),    clsLocaleNames({u"th-TH", true}),
        clsLocaleNames({u"ar-SA", true}),      clsLocaleNames({u"fr-CA", true}),
        clsLocaleNames({u"ff-Adlm-GN", true}), clsLocaleNames({u"hu-HU", true})};
    return all[choice % std::size(all)].Names();
}

scDateTime Moment(clsChoices& choices) {
    const auto below = [&](unsigned bound) { return static_cast<std::uint16_t>(choices.Below(bound)); };
    const auto day = static_cast<std::int32_t>(choices.Below(65536) * 55u);
    scDateTime moment = UtilpDateOf(std::min(firstDay + day, lastDay));
    moment.hour = below(24);
    moment.minute = below(60);
    moment.second = below(60);
    moment.milliseconds = below(1000);
    return moment;
}

// Bytes as the units that pictures and texts are made of, mostly.
std::u16string Units(clsChoices& choices, std::size_t most) {
    constexpr std::u16string_view usual =
        u"ddddMMMMyyyyggHHhhmmssttfff'' .,/-:()T0123456789\u202F\u200F\u5E74";
    std::u16string units;
    while (!choices.AtEnd() && units.size() < most) {
        const unsigned choice = choices.Below(256);
        units += choice < usual.size() ? usual[choice] : static_cast<char16_t>(choice * 37);
    }
    return units;
}

// Whether two digits stand for a year that is none of the hundred that they may stand for.
bool IsBeyondShortYears(const scPicture& picture, const scDateTime& moment, const scLocaleNames& names) {
    const Calendar calendar = names.CountsBy(picture);
    const auto year = static_cast<std::int32_t>(UtilpCountYear(calendar, moment).year);
    const std::int32_t last = calendar == Calendar::japanese ? 99 : names.lastTwoDigitYear;
    return std::ranges::any_of(picture.parts, [&](const scPicturePart& part) {
        return part.field == PictureField::year && part.width <= 2 && (year > last || year <= last - 100);
    });
}

void CheckPicture(std::u16string_view text, const scDateTime& moment, const scLocaleNames& names) {
    const scOwnPicture own(text, names);
    const std::u16string written = FormatBy(own.picture, moment, names);
    std::array<char16_t, 7> cut{};
    Require(UtilpFormatMoment(moment, own.picture, names, cut) == written.size());
    Require(written.starts_with(std::u16string_view(cut.data(), std::min(cut.size(), written.size()))));
    // A weekday alone does not say which day it is of.
    const bool hasLostDay = own.picture.Has(PictureField::weekday) && !own.picture.Has(PictureField::day);
    if (hasLostDay || written.size() > longestMomentText || own.picture.HasDate() != own.picture.SaysDate() ||
        own.picture.HasTime() != own.picture.SaysTime() || IsBeyondShortYears(own.picture, moment, names) ||
        UtilpCountYear(names.calendar, moment).era ==
            noEra) // years before the count may look like some of it
        return;
    for (const bool isExact : {true, false})
        if (const auto read = ParseBy(text, written, names, isExact))
            Require(FormatBy(own.picture, *read, names) == written ? nullptr : "reads something else");
}

void CheckText(std::u16string_view text, unsigned flags, const scLocaleNames& names) {
    scMomentWish wish{(flags & 1) != 0, (flags & 2) != 0 || (flags & 1) == 0, (flags & 4) != 0,
                      (flags & 8) != 0, true};
    const auto exact = UtilpParseMoment(text, wish, names);
    wish.isExact = false;
    const auto lenient = UtilpParseMoment(text, wish, names);
    Require(!exact || lenient == exact);
    Require(!lenient || (UtilpIsTime(*lenient) && (!wish.date || UtilpIsDate(*lenient))));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    clsChoices choices(data, size);
    const scLocaleNames& names = Names(choices.Below(256));
    const unsigned flags = choices.Below(256);
    const scDateTime moment = Moment(choices);
    if ((flags & 16) == 0)
        CheckPicture(Units(choices, longestPicture), moment, names);
    else
        CheckText(Units(choices, longestMomentText), flags, names);
    return 0;
}
