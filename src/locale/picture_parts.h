// What the parts of a picture say of each other, before any text is looked at: where the next field is, and
// what may lie between two of them.
#pragma once

#include "locale/picture.h"

namespace tvut {

class clsPictureParts {
  public:
    static constexpr std::uint16_t nowhere = 0xFFFF;

    // At most as many parts as fit before nowhere.
    explicit clsPictureParts(std::span<const scPicturePart* const> parts) noexcept : parts_(parts) {}

    std::uint16_t Count() const noexcept { return static_cast<std::uint16_t>(parts_.size()); }
    const scPicturePart& operator[](std::size_t part) const noexcept { return *parts_[part]; }

    bool IsField(std::size_t part) const noexcept { return parts_[part]->field != PictureField::text; }
    bool IsWord(std::size_t part) const noexcept {
        return !IsField(part) && parts_[part]->kind == PictureText::word;
    }

    // The first field from a part on; the count when there is none.
    std::uint16_t FieldFrom(std::uint16_t part) const noexcept {
        while (part < Count() && !IsField(part))
            ++part;
        return part;
    }

    // The part after the fractions of a second that follow; the same one when none do.
    std::uint16_t AfterFractions(std::uint16_t after) const noexcept {
        for (std::uint16_t part = after; part < Count(); ++part) {
            if (parts_[part]->field == PictureField::fraction)
                after = part + 1;
            else if (IsField(part))
                break;
        }
        return after;
    }

    // Whether there is a separator between the two fields that a part lies between.
    bool HasSeparatorAround(std::size_t part) const noexcept {
        while (part != 0 && !IsField(part - 1))
            --part;
        for (; part < Count() && !IsField(part); ++part)
            if (parts_[part]->kind == PictureText::separator)
                return true;
        return false;
    }

    // Whether digits may follow those of a part at once.
    bool MayTouch(std::size_t part) const noexcept {
        std::size_t next = part + 1;
        while (next < Count() && !IsField(next) && parts_[next]->kind == PictureText::direction)
            ++next;
        if (next >= Count())
            return false;
        const std::u16string_view text = parts_[next]->folded;
        return IsField(next) || (!text.empty() && text[0] >= u'0' && text[0] <= u'9');
    }

    // Where the mark of a half of the day may be although the picture has none: after the last time field.
    std::uint16_t PlaceOfMark() const noexcept {
        std::uint16_t place = nowhere;
        for (std::uint16_t part = 0; part < Count(); ++part) {
            const PictureField field = parts_[part]->field;
            if (field == PictureField::mark)
                return nowhere;
            if (UtilpIsTimeField(field))
                place = part + 1;
        }
        return place;
    }

  private:
    std::span<const scPicturePart* const> parts_;
};

} // namespace tvut
