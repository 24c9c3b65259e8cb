// All is collected in a block with room for the longest texts there may be, and then moved to blocks of the
// right size, and every view with it: a locale is kept long.
#include "locale/locale_names.h"

#include <algorithm>

namespace tvut {

namespace {

constexpr std::int32_t usualLastYear = 2049; // where the system does not say

constexpr std::size_t mostTexts = 4 + 48 + 14 + 2 + 5;
constexpr std::size_t mostUnits = 2 * mostTexts * longestLocaleText;

char32_t Pair(std::u16string_view units) {
    return 0x10000 + ((units[0] & 0x3FFu) << 10) + (units[1] & 0x3FFu);
}

// Asks for texts of a locale and keeps them one after the other.
class clsCollected {
  public:
    explicit clsCollected(const scLocaleChoice& locale)
        : locale_(locale), texts_(std::make_unique_for_overwrite<char16_t[]>(mostUnits)),
          parts_(std::make_unique<scPicturePart[]>(4 * longestPicture)) {}

    scNativeDigits Digits() {
        const std::u16string_view native = Ask(LocaleText::digits);
        const bool arePairs = native.size() == 2 * digits_.size();
        for (std::size_t digit = 0; digit < digits_.size(); ++digit) {
            if (arePairs)
                digits_[digit] = Pair(native.substr(2 * digit, 2));
            else
                digits_[digit] =
                    native.size() == digits_.size() ? native[digit] : static_cast<char32_t>(U'0' + digit);
        }
        return digits_;
    }

    scName Name(std::u16string_view text) {
        const std::u16string_view stored = Store(text);
        const std::size_t length = UtilpFold(stored, digits_, Free());
        const std::u16string_view folded(Free(), length);
        if (folded == stored)
            return {stored, stored};
        units_ += length;
        return {stored, folded};
    }
    scName Name(LocaleText text, unsigned number = 0) { return Name(Ask(text, number)); }

    // A name of one form, which is that of another where it has none of its own.
    scName Name(LocaleText text, unsigned number, const scName& otherwise) {
        const std::u16string_view name = Ask(text, number);
        return name.empty() || name == otherwise.text ? otherwise : Name(name);
    }

    scPicture Picture(LocaleText text, PictureLetters letters) {
        const std::u16string_view picture = Ask(text).substr(0, longestPicture);
        const std::span<scPicturePart> room(parts_.get() + partCount_, longestPicture);
        const scPicture read = UtilpReadPicture(picture, letters, room, {Free(), picture.size()});
        units_ += picture.size();
        UtilpFoldPicture(room.first(read.parts.size()), digits_, Free());
        units_ += picture.size();
        partCount_ += read.parts.size();
        return read;
    }

    std::u16string_view Texts() const { return {texts_.get(), units_}; }
    std::span<const scPicturePart> Parts() const { return {parts_.get(), partCount_}; }

  private:
    std::u16string_view Ask(LocaleText text, unsigned number = 0) {
        return {buffer_.data(), PlatformLocaleText(locale_, text, number, buffer_)};
    }
    char16_t* Free() const { return texts_.get() + units_; }
    std::u16string_view Store(std::u16string_view text) {
        std::ranges::copy(text, Free());
        units_ += text.size();
        return {Free() - text.size(), text.size()};
    }

    scLocaleChoice locale_;
    scNativeDigits digits_{};
    std::array<char16_t, longestLocaleText> buffer_{};
    std::unique_ptr<char16_t[]> texts_;
    std::unique_ptr<scPicturePart[]> parts_;
    std::size_t units_ = 0;
    std::size_t partCount_ = 0;
};

void CollectMonths(clsCollected& all, scLocaleNames& names) {
    auto& [full, fullGenitive, abbreviated, abbreviatedGenitive] = names.months;
    for (unsigned month = 0; month < 12; ++month) {
        full[month] = all.Name(LocaleText::month, month);
        fullGenitive[month] = all.Name(LocaleText::monthGenitive, month, full[month]);
        abbreviated[month] = all.Name(LocaleText::shortMonth, month, full[month]);
        abbreviatedGenitive[month] = all.Name(LocaleText::shortMonthGenitive, month, abbreviated[month]);
    }
    const auto beginsWithDigit = [](const scName& name) {
        return !name.folded.empty() && name.folded[0] >= u'0' && name.folded[0] <= u'9';
    };
    for (const auto& form : names.months)
        names.hasDigitMonths |= std::ranges::any_of(form, beginsWithDigit);
}

void CollectWeekdays(clsCollected& all, scLocaleNames& names) {
    for (unsigned weekday = 0; weekday < 7; ++weekday) {
        const unsigned fromMonday = (weekday + 6) % 7;
        names.weekdays[weekday] = all.Name(LocaleText::weekday, fromMonday);
        names.shortWeekdays[weekday] = all.Name(LocaleText::shortWeekday, fromMonday);
    }
}

void CollectEras(clsCollected& all, scLocaleNames& names) {
    if (names.calendar != Calendar::japanese) {
        names.eras[0] = all.Name(LocaleText::era, static_cast<unsigned>(names.calendar));
        return;
    }
    for (int era = firstJapaneseEra; era <= lastJapaneseEra; ++era)
        names.eras[static_cast<std::size_t>(era)] = all.Name(UtilpJapaneseEra(era));
}

// The last year of the hundred; none of them may lie before the calendar's count, nor outside ours: a system
// that has one figure for all calendars means the Gregorian one.
std::int32_t LastTwoDigitYear(const scLocaleChoice& locale, Calendar calendar) {
    // Years of Japanese eras are no such years; without an era they are Gregorian.
    const Calendar counting = calendar == Calendar::japanese ? Calendar::gregorian : calendar;
    const auto asked =
        static_cast<std::int32_t>(PlatformLastTwoDigitYear(locale, static_cast<unsigned>(counting)));
    const std::int32_t year = asked > 0 && asked < 20000 ? asked : usualLastYear;
    const std::int32_t ahead = UtilpGregorianYear(counting, 0, 0);
    const bool isFarBack = ahead < 0 && year + ahead < 1900;
    return isFarBack ? usualLastYear - ahead : year;
}

// A view into one block, of the same place in another.
void Move(std::u16string_view& view, const char16_t* from, const char16_t* to) {
    if (!view.empty())
        view = {to + (view.data() - from), view.size()};
}

void Move(scName& name, const char16_t* from, const char16_t* to) {
    Move(name.text, from, to);
    Move(name.folded, from, to);
}

} // namespace

clsLocaleNames::clsLocaleNames(const scLocaleChoice& locale) {
    clsCollected all(locale);
    names_.digits = all.Digits();
    names_.calendar = UtilpCalendar(PlatformLocaleCalendar(locale));
    names_.lastTwoDigitYear = LastTwoDigitYear(locale, names_.calendar);
    names_.pictures = {all.Picture(LocaleText::shortDate, PictureLetters::date),
                       all.Picture(LocaleText::longDate, PictureLetters::date),
                       all.Picture(LocaleText::time, PictureLetters::time),
                       all.Picture(LocaleText::shortTime, PictureLetters::time)};
    CollectMonths(all, names_);
    CollectWeekdays(all, names_);
    CollectEras(all, names_);
    names_.marks = {all.Name(LocaleText::beforeNoon), all.Name(LocaleText::afterNoon)};

    textUnits_ = all.Texts().size();
    texts_ = std::make_unique_for_overwrite<char16_t[]>(textUnits_);
    std::ranges::copy(all.Texts(), texts_.get());
    partCount_ = all.Parts().size();
    parts_ = std::make_unique_for_overwrite<scPicturePart[]>(partCount_);
    std::ranges::copy(all.Parts(), parts_.get());
    MoveViews(all.Texts().data(), all.Parts().data());
}

void clsLocaleNames::MoveViews(const char16_t* texts, const scPicturePart* parts) noexcept {
    const auto move = [&](auto& names) {
        for (scName& name : names)
            Move(name, texts, texts_.get());
    };
    for (scPicture& picture : names_.pictures)
        picture.parts = {parts_.get() + (picture.parts.data() - parts), picture.parts.size()};
    for (scPicturePart& part : std::span(parts_.get(), partCount_)) {
        Move(part.text, texts, texts_.get());
        Move(part.folded, texts, texts_.get());
    }
    for (auto& form : names_.months)
        move(form);
    move(names_.weekdays);
    move(names_.shortWeekdays);
    move(names_.marks);
    move(names_.eras);
}

std::size_t clsLocaleNames::Bytes() const noexcept {
    return sizeof *this + textUnits_ * sizeof(char16_t) + partCount_ * sizeof(scPicturePart);
}

void UtilpFoldPicture(std::span<scPicturePart> parts, const scNativeDigits& digits,
                      char16_t* folded) noexcept {
    for (scPicturePart& part : parts) {
        if (part.field != PictureField::text)
            continue;
        part.folded = {folded, UtilpFold(part.text, digits, folded)};
        folded += part.folded.size();
    }
}

} // namespace tvut
