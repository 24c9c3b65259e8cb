// One walk over the picture makes the parts, a second one notes what each piece of text parts: that depends
// on the field after it. Text beside text becomes one piece, letters with symbols, blanks with blanks.
// Separators stand one by one, since reading takes one for another.
#include "locale/picture.h"

#include "locale/folded_text.h"

#include <algorithm>
#include <array>

namespace tvut {

namespace {

struct scLetter {
    char16_t letter;
    PictureLetters letters; // the pictures in which it means something, besides those in which all do
    std::uint8_t longest;
    PictureField field;
    PictureField longField; // from three letters on
};
constexpr scLetter knownLetters[] = {
    {u'd', PictureLetters::date, 4, PictureField::day, PictureField::weekday},
    {u'M', PictureLetters::date, 4, PictureField::month, PictureField::month},
    {u'y', PictureLetters::date, 4, PictureField::year, PictureField::year},
    {u'g', PictureLetters::date, 1, PictureField::era, PictureField::era},
    {u'h', PictureLetters::time, 2, PictureField::hour12, PictureField::hour12},
    {u'H', PictureLetters::time, 2, PictureField::hour24, PictureField::hour24},
    {u'm', PictureLetters::time, 2, PictureField::minute, PictureField::minute},
    {u's', PictureLetters::time, 2, PictureField::second, PictureField::second},
    {u't', PictureLetters::time, 2, PictureField::mark, PictureField::mark},
    {u'f', PictureLetters::all, 3, PictureField::fraction, PictureField::fraction},
};

const scLetter* FieldOf(char16_t letter, PictureLetters letters) {
    for (const scLetter& known : knownLetters)
        if (known.letter == letter && (letters == PictureLetters::all || letters == known.letters))
            return &known;
    return nullptr;
}

PictureText KindOf(char16_t unit) {
    if (UtilpIsBlank(unit))
        return PictureText::blank;
    if (UtilpIsDirectionMark(unit))
        return PictureText::direction;
    if (UtilpIsDateSeparator(unit) || UtilpIsTimeSeparator(unit))
        return PictureText::separator;
    return UtilpIsLetter(unit) ? PictureText::word : PictureText::symbol;
}

// Collects parts; text comes unit by unit.
class clsParts {
  public:
    clsParts(std::span<scPicturePart> parts, std::span<char16_t> texts)
        : parts_(parts.data()), texts_(texts.data()) {}

    void Add(const scLetter& letter, std::size_t run) {
        const auto width = static_cast<std::uint8_t>(std::min<std::size_t>(run, letter.longest));
        parts_[count_++] = {.field = width > 2 ? letter.longField : letter.field, .width = width};
    }

    void Add(char16_t unit) {
        PictureText kind = KindOf(unit);
        scPicturePart* last = count_ != 0 ? &parts_[count_ - 1] : nullptr;
        const bool afterText = last && last->field == PictureField::text;
        const bool afterWord = afterText && last->kind == PictureText::word;
        if (unit == u'.' && afterWord) // of an abbreviation
            kind = PictureText::word;
        texts_[length_] = unit;
        if (afterText && Merges(last->kind, kind)) {
            last->text = {last->text.data(), last->text.size() + 1};
            last->kind = std::min(last->kind, kind); // a letter makes it a word
        } else {
            parts_[count_++] = {.kind = kind, .text = {texts_ + length_, 1}};
        }
        ++length_;
    }

    std::span<scPicturePart> Done() const { return {parts_, count_}; }

  private:
    static bool Merges(PictureText before, PictureText kind) {
        return kind == before ? kind != PictureText::separator
                              : before <= PictureText::symbol && kind <= PictureText::symbol;
    }

    scPicturePart* parts_;
    char16_t* texts_;
    std::size_t count_ = 0;
    std::size_t length_ = 0;
};

// Adds what is in quotes. Returns where to go on.
std::size_t AddQuoted(std::u16string_view picture, std::size_t at, clsParts& parts) {
    for (; at < picture.size(); ++at) {
        if (picture[at] == u'\'') {
            if (at + 1 == picture.size() || picture[at + 1] != u'\'')
                return at + 1;
            ++at;
        }
        parts.Add(picture[at]);
    }
    return at;
}

PictureGap GapBetween(const scPicturePart* before, const scPicturePart* after) {
    if (before && after && UtilpIsDateField(before->field) && UtilpIsDateField(after->field))
        return PictureGap::dates;
    if (before && after && UtilpIsTimeField(before->field) && UtilpIsTimeField(after->field))
        return PictureGap::times;
    return PictureGap::other;
}

void NoteGaps(std::span<scPicturePart> parts) {
    const scPicturePart* before = nullptr;
    for (auto gap = parts.begin(); gap != parts.end();) {
        const auto next = std::find_if(
            gap, parts.end(), [](const scPicturePart& part) { return part.field != PictureField::text; });
        const PictureGap between = GapBetween(before, next != parts.end() ? &*next : nullptr);
        std::for_each(gap, next, [&](scPicturePart& part) { part.gap = between; });
        if (next == parts.end())
            return;
        before = &*next;
        gap = next + 1;
    }
}

} // namespace

scPicture UtilpReadPicture(std::u16string_view picture, PictureLetters letters,
                           std::span<scPicturePart> parts, std::span<char16_t> texts) noexcept {
    clsParts found(parts, texts);
    std::uint16_t fields = 0;
    for (std::size_t at = 0; at < picture.size();) {
        const char16_t unit = picture[at];
        if (unit == u'\'') {
            // Two of them outside of text are nothing.
            at = picture.substr(at + 1).starts_with(u'\'') ? at + 2 : AddQuoted(picture, at + 1, found);
        } else if (const scLetter* letter = FieldOf(unit, letters)) {
            const std::size_t end = std::min(picture.find_first_not_of(unit, at), picture.size());
            found.Add(*letter, end - at);
            fields |= static_cast<std::uint16_t>(1u << static_cast<unsigned>(found.Done().back().field));
            at = end;
        } else {
            found.Add(unit);
            ++at;
        }
    }
    NoteGaps(found.Done());
    return {found.Done(), fields};
}

} // namespace tvut
