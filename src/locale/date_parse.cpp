// Whether a text is exactly what formatting gives is asked of formatting: a reading is exact when its text is
// the one that was read. That also decides where a lenient reading has several ways.
#include "locale/date_parse.h"

#include "locale/date_format.h"
#include "locale/date_match.h"

#include <algorithm>
#include <array>

namespace tvut {

namespace {

constexpr unsigned shortYear = 1; // digits that a year has at least
constexpr unsigned unmistakable = 3;

constexpr scPicturePart oneBlank{PictureField::text, 0, PictureText::blank, PictureGap::other, u" ", u" "};

// One or two pictures, the date's before the time's with a blank between.
class clsPictures {
  public:
    explicit clsPictures(const scPicture& only) : first_(&only) { Append(only); }
    clsPictures(const scPicture& date, const scPicture& time) : first_(&date), second_(&time) {
        Append(date);
        parts_[count_++] = &oneBlank;
        Append(time);
    }

    std::span<const scPicturePart* const> Parts() const { return {parts_.data(), count_}; }
    const scPicture& First() const { return *first_; }

    bool Formats(const scDateTime& moment, const scLocaleNames& names, std::u16string_view text) const {
        std::array<char16_t, longestMomentText + 1> formatted;
        const std::span<char16_t> room(formatted);
        std::size_t length = UtilpFormatMoment(moment, *first_, names, room);
        if (second_ && length < text.size()) {
            formatted[length++] = u' ';
            length += UtilpFormatMoment(moment, *second_, names, room.subspan(length));
        }
        return text == std::u16string_view(formatted.data(), std::min(length, formatted.size()));
    }

  private:
    void Append(const scPicture& picture) {
        for (const scPicturePart& part : picture.parts)
            parts_[count_++] = &part;
    }

    const scPicture* first_;
    const scPicture* second_ = nullptr;
    std::size_t count_ = 0;
    std::array<const scPicturePart*, 2 * longestPicture + 1> parts_;
};

bool IsSame(const scReading& a, const scReading& b) {
    return a.moment == b.moment;
}

// The one reading of a text.
class clsOneReading final : public IclsReadings {
  public:
    clsOneReading(const clsPictures& pictures, const scLocaleNames& names, std::u16string_view text,
                  bool isExact)
        : pictures_(pictures), names_(names), text_(text), isExact_(isExact) {}

    void Found(const scReading& reading) override {
        if (!isExact_) {
            if (!any_)
                any_ = reading;
            if (IsSame(*any_, reading))
                return;
            if (!hasSeveral_)
                LookAt(*any_);
            hasSeveral_ = true;
        }
        LookAt(reading);
    }

    bool Any() const { return any_ || exact_; }

    std::optional<scReading> Result() const {
        if (!isExact_ && !hasSeveral_)
            return any_;
        return hasSeveralExact_ ? std::nullopt : exact_;
    }

  private:
    void LookAt(const scReading& reading) {
        if (!pictures_.Formats(reading.moment, names_, text_))
            return;
        hasSeveralExact_ |= exact_ && !IsSame(*exact_, reading);
        exact_ = reading;
    }

    const clsPictures& pictures_;
    const scLocaleNames& names_;
    const std::u16string_view text_;
    const bool isExact_;
    bool hasSeveral_ = false;
    bool hasSeveralExact_ = false;
    std::optional<scReading> any_, exact_;
};

// ---- The form that all know -------------------------------------------------------------------------

// A cursor over folded text; what it does not find leaves it at the end of all finding.
class clsFixedForm {
  public:
    explicit clsFixedForm(std::u16string_view text) : left_(text) {}

    std::uint16_t Digits(std::size_t count) {
        unsigned number = 0;
        for (std::size_t digit = 0; digit < count; ++digit) {
            const char16_t unit = digit < left_.size() ? left_[digit] : u'\0';
            isGood_ &= unit >= u'0' && unit <= u'9';
            number = number * 10 + (unit - u'0');
        }
        left_.remove_prefix(std::min(count, left_.size()));
        return static_cast<std::uint16_t>(number);
    }
    std::uint16_t DigitsAfter(char16_t unit, std::size_t count) {
        isGood_ &= Take(unit);
        return Digits(count);
    }
    bool Take(char16_t unit) {
        const bool isThere = left_.starts_with(unit);
        left_.remove_prefix(isThere ? 1 : 0);
        return isThere;
    }
    std::size_t Left() const { return left_.size(); }
    bool IsGood() const { return isGood_; }

  private:
    std::u16string_view left_;
    bool isGood_ = true;
};

// yyyy-MM-dd, with THH:mm, :ss and .f to .fff; a blank does for the T.
std::optional<scReading> ReadIso(std::u16string_view folded) {
    clsFixedForm form(folded);
    scReading reading{};
    scDateTime& moment = reading.moment;
    moment.year = form.Digits(4);
    moment.month = form.DigitsAfter(u'-', 2);
    moment.day = form.DigitsAfter(u'-', 2);
    if (form.IsGood() && (form.Take(u'T') || form.Take(u' '))) {
        moment.hour = form.Digits(2);
        moment.minute = form.DigitsAfter(u':', 2);
        if (form.Left() != 0)
            moment.second = form.DigitsAfter(u':', 2);
        if (const std::size_t digits = form.Left() - 1; digits >= 1 && digits <= 3) {
            moment.milliseconds = form.DigitsAfter(u'.', digits);
            for (std::size_t missing = digits; missing < 3; ++missing)
                moment.milliseconds = static_cast<std::uint16_t>(moment.milliseconds * 10);
        }
        reading.hasTime = true;
    }
    if (!form.IsGood() || form.Left() != 0 || !UtilpIsDate(moment) || !UtilpIsTime(moment))
        return {};
    reading.hasDate = true;
    moment.dayOfWeek = UtilpDateOf(UtilpDayOf(moment)).dayOfWeek;
    return reading;
}

// ---- The locale's pictures --------------------------------------------------------------------------

class clsLocaleReader {
  public:
    clsLocaleReader(std::u16string_view text, std::u16string_view folded, const scMomentWish& wish,
                    const scLocaleNames& names)
        : text_(text), folded_(folded), wish_(wish), names_(names) {}

    std::optional<scReading> Read() {
        if (wish_.isExact) {
            TryAsked(true);
            return found_;
        }
        if (const auto iso = wish_.date ? ReadIso(folded_) : std::nullopt) {
            // A locale may have such a picture with other numbers in it. What formatting gave comes back.
            TryAsked(true);
            if (!found_ && (wish_.time || !iso->hasTime))
                found_ = iso;
            return found_;
        }
        TryAll();
        return found_;
    }

  private:
    const scPicture& Picture(LocalePicture picture) const { return names_.Picture(picture); }

    // False when there is no more to try: the text has a reading, or too many.
    bool Try(const clsPictures& pictures, unsigned leastYearDigits, bool isExact) {
        clsOneReading one(pictures, names_, text_, isExact);
        const bool isAll = UtilpMatch(
            {folded_, pictures.Parts(), names_, names_.CountsBy(pictures.First()), leastYearDigits}, one);
        found_ = isAll ? one.Result() : std::nullopt;
        return isAll && !one.Any();
    }

    bool Try(const scPicture& date, const scPicture* time, unsigned leastYearDigits, bool isExact) {
        if (!date.SaysDate() || (time && !time->SaysTime()))
            return true;
        return time ? Try(clsPictures(date, *time), leastYearDigits, isExact)
                    : Try(clsPictures(date), leastYearDigits, isExact);
    }

    void TryAsked(bool isExact) {
        const scPicture& time = Picture(wish_.TimePicture());
        if (wish_.date)
            Try(Picture(wish_.DatePicture()), wish_.time ? &time : nullptr, shortYear, isExact);
        else if (time.SaysTime())
            Try(clsPictures(time), shortYear, isExact);
    }

    void TryAll() {
        const scPicture* const times[] = {
            &Picture(wish_.TimePicture()),
            &Picture(wish_.noSeconds ? LocalePicture::time : LocalePicture::shortTime)};
        if (!wish_.date) {
            for (const scPicture* time : times)
                if (time->SaysTime() && !Try(clsPictures(*time), shortYear, false))
                    return;
            return;
        }
        const auto tryTimes = [&](const scPicture& date, unsigned leastYearDigits) {
            if (wish_.time)
                for (const scPicture* time : times)
                    if (!Try(date, time, leastYearDigits, false))
                        return false;
            return Try(date, nullptr, leastYearDigits, false);
        };
        const bool goOn = tryTimes(Picture(wish_.DatePicture()), shortYear);
        if (goOn)
            tryTimes(Picture(wish_.isLong ? LocalePicture::shortDate : LocalePicture::longDate),
                     unmistakable);
    }

    const std::u16string_view text_, folded_;
    const scMomentWish& wish_;
    const scLocaleNames& names_;
    std::optional<scReading> found_;
};

// The parts that are wished.
scDateTime Wished(scDateTime moment, const scMomentWish& wish, bool hasTime) {
    if (!wish.date)
        moment.year = moment.month = moment.day = moment.dayOfWeek = 0;
    if (!wish.time || !hasTime)
        moment.hour = moment.minute = moment.second = moment.milliseconds = 0;
    return moment;
}

} // namespace

std::optional<scDateTime> UtilpParseMoment(std::u16string_view text, const scMomentWish& wish,
                                           const scLocaleNames& names) noexcept {
    std::array<char16_t, longestMomentText> folded;
    const std::size_t length = UtilpFold(text, names.digits, folded.data());
    const auto reading = clsLocaleReader(text, {folded.data(), length}, wish, names).Read();
    if (!reading)
        return {};
    return Wished(reading->moment, wish, reading->hasTime);
}

std::optional<scDateTime> UtilpParseMoment(std::u16string_view text, const scMomentWish& wish,
                                           const scPicture& picture, const scLocaleNames& names) noexcept {
    std::array<char16_t, longestMomentText> folded;
    const std::size_t length = UtilpFold(text, names.digits, folded.data());
    const clsPictures pictures(picture);
    clsOneReading one(pictures, names, text, wish.isExact);
    const bool isAll = UtilpMatch(
        {{folded.data(), length}, pictures.Parts(), names, names.CountsBy(picture), shortYear}, one);
    const auto reading = isAll ? one.Result() : std::nullopt;
    if (!reading)
        return {};
    return Wished(reading->moment, wish, reading->hasTime);
}

} // namespace tvut
