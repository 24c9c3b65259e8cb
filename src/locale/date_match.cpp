// A state is a place in the picture, one in the text, and what was said on the way. Nearly always one state
// leads to the end: a number takes all its digits, a name is the longest that fits. Where a state can go on
// in several ways, the others wait on a small stack of choices:
//   - touching numbers may end after each digit: all ways are followed, since a text with two readings has
//   none;
//   - fields and words that may be missing: tried when what was there to be seen has led nowhere.
// Steps and choices are counted, so that no picture makes a text expensive.
#include "locale/date_match.h"

#include "locale/picture_parts.h"
#include "locale/said_values.h"
#include "locale/unmade_array.h"

#include <algorithm>
#include <array>

namespace tvut {

namespace {

using Value = clsSaidValues::Value;

constexpr std::size_t mostChoices = 96;
constexpr std::uint16_t nowhere = clsPictureParts::nowhere;

struct scState {
    std::uint16_t part = 0;
    std::uint16_t at = 0;
    // A field that is missing, with the separators that go with it: from one part the way leads to another.
    std::uint16_t jumpFrom = nowhere;
    std::uint16_t jumpTo = nowhere;
    // Since the last field:
    bool isParted = false; // something that parts numbers was there
    bool isOwed = false;   // a blank of the picture was not there
    bool hasGap = false;   // the picture has something in between
    bool afterField = false;
    bool afterMark = false;
    clsSaidValues said;
};

bool IsDigit(char16_t unit) {
    return unit >= u'0' && unit <= u'9';
}

class clsMatcher {
  public:
    clsMatcher(const scMatchJob& job, IclsReadings& readings)
        : job_(job), readings_(readings), parts_(job.parts), markPlace_(parts_.PlaceOfMark()),
          budget_(64 * (job.parts.size() + job.text.size()) + 256) {}

    // False when it was cut off.
    bool Run() {
        EnterGap();
        while (FollowState())
            ;
        return budget_ != 0;
    }

  private:
    enum class Way : std::uint8_t { number, missing };
    struct scChoice {
        scState state;
        Way way;
    };

    // ---- Ways ---------------------------------------------------------------------------------

    // Follows the state to its end, then takes up the next choice. False when there is none, or when it has
    // cost enough.
    bool FollowState() {
        while (budget_ != 0 && Step())
            budget_ -= budget_ != 0 ? 1 : 0;
        if (budget_ == 0)
            return false;
        while (choiceCount_ != 0) {
            const scChoice& choice = choices_.Room()[--choiceCount_];
            if (choice.way == Way::missing && found_)
                continue;
            state_ = choice.state;
            return true;
        }
        return false;
    }

    void Push(const scState& state, Way way) {
        if (choiceCount_ < mostChoices)
            choices_.Room()[choiceCount_++] = {state, way};
        else
            budget_ = 0;
    }

    // One part. False at the end of the way.
    bool Step() {
        if (state_.part == state_.jumpFrom)
            return Jump();
        if (state_.part == parts_.Count()) {
            Finish();
            return false;
        }
        const scPicturePart& part = parts_[state_.part];
        return part.field == PictureField::text ? TakeText(part) : Begin(part) && TakeField(part);
    }

    bool Jump() {
        state_.part = state_.jumpTo;
        state_.jumpFrom = nowhere;
        state_.hasGap = true;
        EnterGap();
        return true;
    }

    void Finish() {
        if (state_.at != job_.text.size())
            return;
        if (const std::optional<scReading> reading = state_.said.Reading(job_)) {
            found_ = true;
            readings_.Found(*reading);
        }
    }

    // ---- Fields that may be missing -----------------------------------------------------------

    static bool MayBeMissing(PictureField field) {
        return field == PictureField::weekday || field == PictureField::era ||
               field == PictureField::second || field == PictureField::mark;
    }

    // At the first part after a field: if the next field may be missing, the ways without it.
    void EnterGap() {
        const std::uint16_t field = parts_.FieldFrom(state_.part);
        if (field < parts_.Count() && MayBeMissing(parts_[field].field))
            PushWithout(field);
        if (state_.part == markPlace_)
            PushWithMark();
    }

    // The separators beside a missing field go with it: at the ends of the picture those between it and the
    // rest, else those on one side, or on both where a word remains in between.
    void PushWithout(std::uint16_t field) {
        std::uint16_t after = field + 1;
        if (parts_[field].field == PictureField::second)
            after = parts_.AfterFractions(after);
        const std::uint16_t next = parts_.FieldFrom(after);
        std::uint16_t leftWord = field; // the first part after the last word on the left
        while (leftWord > state_.part && !parts_.IsWord(leftWord - 1u))
            --leftWord;
        std::uint16_t rightWord = after; // the first word on the right
        while (rightWord < next && !parts_.IsWord(rightWord))
            ++rightWord;

        const bool isAtEnd = !state_.afterField || next == parts_.Count();
        const bool hasWord = rightWord != next || (leftWord != state_.part && parts_.IsWord(leftWord - 1u));
        if (!isAtEnd) {
            PushJump(leftWord, after, true);
            if (parts_[field].field != PictureField::second)
                PushJump(field, rightWord, true);
        }
        if (isAtEnd || hasWord)
            PushJump(leftWord, rightWord, !isAtEnd);
    }

    void PushJump(std::uint16_t from, std::uint16_t to, bool isOwed) {
        scState state = state_;
        state.jumpFrom = from;
        state.jumpTo = to;
        state.isOwed |= isOwed;
        Push(state, Way::missing);
    }

    // A picture without a mark: one is taken all the same.
    void PushWithMark() {
        scState state = state_;
        if (At() == u' ')
            ++state.at;
        for (std::size_t mark = 0; mark < 2; ++mark) {
            const std::u16string_view text = job_.names.marks[mark].folded;
            if (text.empty() || !job_.text.substr(state.at).starts_with(text))
                continue;
            scState with = state;
            with.at += static_cast<std::uint16_t>(text.size());
            with.isParted = true;
            with.said.Say(Value::mark, static_cast<std::int32_t>(mark));
            Push(with, Way::missing);
        }
    }

    // ---- Text between fields ------------------------------------------------------------------

    char16_t At() const { return state_.at < job_.text.size() ? job_.text[state_.at] : u'\0'; }

    void SkipBlank() {
        if (At() == u' ') {
            ++state_.at;
            state_.isParted = true;
        }
    }

    bool TakeText(const scPicturePart& part) {
        ++state_.part;
        state_.hasGap |= part.kind != PictureText::direction;
        switch (part.kind) {
        case PictureText::direction:
            return true;
        case PictureText::blank:
            TakeBlank(part);
            return true;
        case PictureText::separator:
            SkipBlank();
            return TakeSeparator(part);
        default:
            SkipBlank();
            return TakeWord(part);
        }
    }

    // A blank may be missing beside a text; the next field knows whether it was missed. Between two fields of
    // a date a separator stands for it.
    void TakeBlank(const scPicturePart& part) {
        SkipBlank();
        if (part.gap == PictureGap::dates && UtilpIsDateSeparator(At()) &&
            !parts_.HasSeparatorAround(state_.part)) {
            ++state_.at;
            state_.isParted = true;
        }
        state_.isOwed |= !state_.isParted;
    }

    bool TakeSeparator(const scPicturePart& part) {
        const char16_t separator = part.text[0];
        const bool isOfDates = part.gap == PictureGap::dates && UtilpIsDateSeparator(separator);
        const bool isOfTimes = part.gap == PictureGap::times && UtilpIsTimeSeparator(separator);
        const char16_t unit = At();
        if (unit == separator || (isOfDates && UtilpIsDateSeparator(unit)) ||
            (isOfTimes && UtilpIsTimeSeparator(unit))) {
            ++state_.at;
            state_.isParted = true;
            return true;
        }
        return isOfDates && state_.isParted; // a blank stands for it, or the separator before
    }

    bool TakeWord(const scPicturePart& part) {
        if (!job_.text.substr(state_.at).starts_with(part.folded))
            return part.kind == PictureText::word;
        if (part.kind == PictureText::word)
            Push(state_, Way::missing); // what looks like it may belong to what follows
        state_.at += static_cast<std::uint16_t>(part.folded.size());
        state_.isParted = true;
        return true;
    }

    // ---- Fields -------------------------------------------------------------------------------

    // Whether a field may begin here, by what lies between it and the one before.
    bool Begin(const scPicturePart& part) {
        const bool besideMark = state_.afterMark || part.field == PictureField::mark;
        if (state_.hasGap || besideMark)
            SkipBlank();
        if (!state_.hasGap || state_.isParted || !state_.afterField)
            return true;
        if (state_.isOwed && !besideMark)
            return false;
        return !(IsDigit(At()) && IsDigit(job_.text[state_.at - 1u]));
    }

    void EndField(PictureField field, std::size_t units) {
        state_.at += static_cast<std::uint16_t>(units);
        ++state_.part;
        state_.isParted = state_.isOwed = state_.hasGap = false;
        state_.afterField = true;
        state_.afterMark = field == PictureField::mark;
        EnterGap();
    }

    bool TakeField(const scPicturePart& part) {
        switch (part.field) {
        case PictureField::weekday:
            return TakeName(part, part.width == 3 ? job_.names.shortWeekdays : job_.names.weekdays,
                            Value::weekday);
        case PictureField::era:
            return TakeName(part, job_.names.eras, Value::era);
        case PictureField::mark:
            return TakeMark(part);
        case PictureField::month:
            if (part.width > 2 || !IsDigit(At()))
                return TakeMonthName();
            break;
        default:
            break;
        }
        return TakeNumber(part);
    }

    std::size_t DigitsHere(std::size_t most) const {
        std::size_t count = 0;
        while (count < most && state_.at + count < job_.text.size() && IsDigit(job_.text[state_.at + count]))
            ++count;
        return count;
    }

    bool TakeNumber(const scPicturePart& part) {
        const bool isYear = part.field == PictureField::year;
        const bool isFraction = part.field == PictureField::fraction;
        const std::size_t most = isYear ? 5 : isFraction ? part.width : 2;
        const std::size_t least = isYear ? job_.leastYearDigits : isFraction ? part.width : 1;
        const std::size_t digits = DigitsHere(most + 1);
        const bool mayTouch = parts_.MayTouch(state_.part);
        if (digits < least || (digits > most && !mayTouch))
            return false;
        const std::size_t longest = std::min(digits, most);
        if (mayTouch)
            for (std::size_t fewer = least; fewer < longest; ++fewer)
                PushOther(Way::number, [&] { return SayNumber(part, fewer); });
        // The system's names of months may begin with digits: "1\u6708".
        if (part.field == PictureField::month && job_.names.hasDigitMonths)
            PushOther(Way::missing, [&] { return SayMonth(LongestMonth(std::u16string_view::npos)); });
        return SayNumber(part, longest);
    }

    // A way on which a field is taken otherwise.
    template <class Take>
    void PushOther(Way way, Take take) {
        const scState before = state_;
        if (take())
            Push(state_, way);
        state_ = before;
    }

    bool SayNumber(const scPicturePart& part, std::size_t digits) {
        std::int32_t number = 0;
        for (std::size_t digit = 0; digit < digits; ++digit)
            number = number * 10 + (job_.text[state_.at + digit] - u'0');
        if (!Say(part, number, static_cast<unsigned>(digits)))
            return false;
        EndField(part.field, digits);
        return true;
    }

    bool Say(const scPicturePart& part, std::int32_t number, unsigned digits) {
        switch (part.field) {
        case PictureField::day:
            return state_.said.Say(Value::day, number);
        case PictureField::month:
            return state_.said.Say(Value::month, number);
        case PictureField::year:
            return state_.said.SayYear(number, digits, job_);
        case PictureField::hour12:
            return state_.said.Say(Value::hour12, number);
        case PictureField::hour24:
            return state_.said.Say(Value::hour24, number);
        case PictureField::minute:
            return state_.said.Say(Value::minute, number);
        case PictureField::second:
            return state_.said.Say(Value::second, number);
        default:
            return state_.said.Say(part.width == 1   ? Value::tenths
                                   : part.width == 2 ? Value::hundredths
                                                     : Value::thousandths,
                                   number);
        }
    }

    // ---- Names --------------------------------------------------------------------------------

    bool Fits(const scName& name) const {
        return !name.folded.empty() && job_.text.substr(state_.at).starts_with(name.folded);
    }

    bool TakeName(const scPicturePart& part, std::span<const scName> names, Value value) {
        const scName* longest = nullptr;
        for (const scName& name : names)
            if (Fits(name) && (!longest || name.folded.size() > longest->folded.size()))
                longest = &name;
        if (!longest || !state_.said.Say(value, static_cast<std::int32_t>(longest - names.data())))
            return false;
        EndField(part.field, longest->folded.size());
        return true;
    }

    struct scMonthName {
        std::int32_t month = 0;
        std::size_t length = 0;
    };

    // The longest name of a month that fits, and shorter than a length.
    scMonthName LongestMonth(std::size_t shorterThan) const {
        scMonthName longest;
        const char16_t unit = At();
        for (const auto& form : job_.names.months) {
            for (std::size_t month = 0; month < form.size(); ++month) {
                const std::u16string_view name = form[month].folded;
                if (name.size() > longest.length && name.size() < shorterThan && name[0] == unit &&
                    Fits(form[month]))
                    longest = {static_cast<std::int32_t>(month + 1), name.size()};
            }
        }
        return longest;
    }

    bool SayMonth(const scMonthName& name) {
        if (name.length == 0 || !state_.said.Say(Value::month, name.month))
            return false;
        EndField(PictureField::month, name.length);
        return true;
    }

    // Shorter names, where digits of the text may be the name's or the next field's.
    bool TakeMonthName() {
        const scMonthName longest = LongestMonth(std::u16string_view::npos);
        if (longest.length != 0 && IsDigit(job_.text[state_.at + longest.length - 1]) &&
            parts_.MayTouch(state_.part))
            for (scMonthName name = LongestMonth(longest.length); name.length != 0;
                 name = LongestMonth(name.length))
                PushOther(Way::number, [&] { return SayMonth(name); });
        return SayMonth(longest);
    }

    // One letter may be that of both marks; then the text has two readings.
    bool TakeMark(const scPicturePart& part) {
        std::array<std::size_t, 2> lengths{};
        for (std::size_t mark = 0; mark < 2; ++mark) {
            const std::u16string_view text = job_.names.marks[mark].folded;
            const std::u16string_view sought = part.width == 1 ? UtilpFirstCharacter(text) : text;
            if (job_.text.substr(state_.at).starts_with(sought))
                lengths[mark] = sought.size();
        }
        const std::size_t mark = lengths[1] > lengths[0] ? 1 : 0;
        if (lengths[mark] == 0)
            return false;
        if (lengths[0] == lengths[1])
            PushOther(Way::number, [&] { return SayMark(1, lengths[1]); });
        return SayMark(mark, lengths[mark]);
    }

    bool SayMark(std::size_t mark, std::size_t length) {
        if (!state_.said.Say(Value::mark, static_cast<std::int32_t>(mark)))
            return false;
        EndField(PictureField::mark, length);
        return true;
    }

    const scMatchJob& job_;
    IclsReadings& readings_;
    const clsPictureParts parts_;
    const std::uint16_t markPlace_;
    std::size_t budget_;
    bool found_ = false;
    scState state_;
    std::size_t choiceCount_ = 0;
    clsUnmadeArray<scChoice, mostChoices> choices_;
};

} // namespace

bool UtilpMatch(const scMatchJob& job, IclsReadings& readings) noexcept {
    return clsMatcher(job, readings).Run();
}

} // namespace tvut
