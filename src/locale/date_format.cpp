// Nothing is allocated. A text that has become too long for its place is not put any more but still counted,
// so measuring and writing are one way.
#include "locale/date_format.h"

#include <algorithm>
#include <cstring>

namespace tvut {

namespace {

// Text in a place of its own, cut off at the place's end.
class clsBoundedOutput {
  public:
    explicit clsBoundedOutput(std::span<char16_t> place) : next_(place.data()), left_(place.size()) {}

    std::size_t Length() const { return length_; }

    void Add(std::u16string_view text) {
        const std::size_t fits = std::min(text.size(), left_);
        if (fits == 1) // as most texts are
            *next_ = text[0];
        else if (fits != 0)
            std::memcpy(next_, text.data(), fits * sizeof(char16_t));
        next_ += fits;
        left_ -= fits;
        length_ += text.size();
    }

    void AddNumber(unsigned number, unsigned leastDigits) {
        char16_t digits[10];
        char16_t* const end = digits + std::size(digits);
        char16_t* first = end;
        for (; number != 0 || leastDigits != 0; number /= 10) {
            *--first = static_cast<char16_t>(u'0' + number % 10);
            leastDigits -= leastDigits != 0 ? 1 : 0;
        }
        Add({first, static_cast<std::size_t>(end - first)});
    }

  private:
    char16_t* next_;
    std::size_t left_;
    std::size_t length_ = 0;
};

class clsMomentWriter {
  public:
    clsMomentWriter(const scDateTime& moment, const scPicture& picture, const scLocaleNames& names,
                    std::span<char16_t> text)
        : moment_(moment), picture_(picture), names_(names), output_(text) {}

    std::size_t Write() {
        if (picture_.Has(PictureField::year) || picture_.Has(PictureField::era))
            year_ = UtilpCountYear(names_.CountsBy(picture_), moment_);
        for (const scPicturePart& part : picture_.parts)
            Write(part);
        return output_.Length();
    }

  private:
    void Write(const scPicturePart& part) {
        const unsigned width = part.width;
        switch (part.field) {
        case PictureField::text:
            return output_.Add(part.text);
        case PictureField::day:
            return output_.AddNumber(moment_.day, width);
        case PictureField::weekday:
            return output_.Add((width == 3 ? names_.shortWeekdays : names_.weekdays)[moment_.dayOfWeek].text);
        case PictureField::month:
            return WriteMonth(width);
        case PictureField::year:
            return width <= 2 ? output_.AddNumber(year_.year % 100, width) : output_.AddNumber(year_.year, 4);
        case PictureField::era:
            return WriteEra();
        case PictureField::hour12:
            return output_.AddNumber((moment_.hour + 11u) % 12 + 1, width);
        case PictureField::hour24:
            return output_.AddNumber(moment_.hour, width);
        case PictureField::minute:
            return output_.AddNumber(moment_.minute, width);
        case PictureField::second:
            return output_.AddNumber(moment_.second, width);
        case PictureField::fraction:
            return output_.AddNumber(moment_.milliseconds / (width == 1   ? 100u
                                                             : width == 2 ? 10u
                                                                          : 1u),
                                     width);
        case PictureField::mark:
            return WriteMark(width);
        }
    }

    void WriteMonth(unsigned width) {
        if (width <= 2)
            return output_.AddNumber(moment_.month, width);
        const bool isGenitive = picture_.Has(PictureField::day);
        const MonthForm form = width == 3
                                   ? (isGenitive ? MonthForm::abbreviatedGenitive : MonthForm::abbreviated)
                                   : (isGenitive ? MonthForm::fullGenitive : MonthForm::full);
        output_.Add(names_.Months(form)[moment_.month - 1u].text);
    }

    void WriteMark(unsigned width) {
        const std::u16string_view mark = names_.marks[moment_.hour / 12u].text;
        output_.Add(width == 1 ? UtilpFirstCharacter(mark) : mark);
    }

    void WriteEra() {
        if (year_.era != noEra)
            output_.Add(names_.eras[static_cast<std::size_t>(year_.era)].text);
    }

    const scDateTime& moment_;
    const scPicture& picture_;
    const scLocaleNames& names_;
    clsBoundedOutput output_;
    scCountedYear year_{};
};

} // namespace

std::size_t UtilpFormatMoment(const scDateTime& moment, const scPicture& picture, const scLocaleNames& names,
                              std::span<char16_t> text) noexcept {
    return clsMomentWriter(moment, picture, names, text).Write();
}

} // namespace tvut
