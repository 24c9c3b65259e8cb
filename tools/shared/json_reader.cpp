// After a value come ends, and a comma or the end of all; after a comma a value, in an object with its name.
#include "json_reader.h"

#include "hex_digit.h"
#include "json_text.h"

#include <algorithm>

namespace tool {

namespace {

constexpr std::wstring_view blanks = L" \t\r\n";
constexpr std::wstring_view endsPlain = L" \t\r\n,:]}\"[{";

} // namespace

void clsJsonReader::Read(IclsJsonEvents& events) {
    do {
        if (isValueNext_)
            TakeValue(events);
        else
            TakeEnds(events);
    } while (isValueNext_ || !open_.empty());
    if (Next() != L'\0' || at_ < json_.size())
        Fail("something follows the end");
}

void clsJsonReader::TakeValue(IclsJsonEvents& events) {
    const wchar_t first = Next();
    isValueNext_ = false;
    if (first == L'"') {
        events.Text(TakeText());
    } else if (first != L'{' && first != L'[') {
        TakePlain(events);
    } else {
        if (open_.size() == mostLevels)
            Fail("nested too deeply");
        ++at_;
        open_ += first;
        events.Begin(first);
        if (Next() == (first == L'{' ? L'}' : L']'))
            return;
        isValueNext_ = true;
        if (first == L'{')
            TakeName(events);
    }
}

void clsJsonReader::TakeEnds(IclsJsonEvents& events) {
    const bool isObject = open_.back() == L'{';
    const wchar_t next = Next();
    if (next == (isObject ? L'}' : L']')) {
        ++at_;
        open_.pop_back();
        return events.End();
    }
    Expect(L',', isObject ? "',' or '}' is missing" : "',' or ']' is missing");
    isValueNext_ = true;
    if (isObject)
        TakeName(events);
}

void clsJsonReader::TakeName(IclsJsonEvents& events) {
    if (Next() != L'"')
        Fail("a name in quotes is missing");
    events.Name(TakeText());
    Expect(L':', "':' is missing");
}

void clsJsonReader::TakePlain(IclsJsonEvents& events) {
    const std::size_t end = std::min(json_.find_first_of(endsPlain, at_), json_.size());
    const std::wstring_view text = json_.substr(at_, end - at_);
    if (text != L"true" && text != L"false" && text != L"null" && !IsJsonNumber(text))
        Fail(text.empty() ? "a value is missing"
                          : "neither a text in quotes nor a number, true, false or null");
    at_ = end;
    events.Plain(text);
}

std::wstring_view clsJsonReader::TakeText() {
    const std::size_t begin = ++at_;
    text_.clear();
    for (std::size_t plain = begin;;) {
        at_ = std::min(json_.find_first_of(L"\"\\", plain), json_.size());
        const std::wstring_view run = json_.substr(plain, at_ - plain);
        const auto control = std::find_if(run.begin(), run.end(), [](wchar_t unit) { return unit < L' '; });
        if (control != run.end()) {
            at_ = plain + static_cast<std::size_t>(control - run.begin());
            Fail("a line end or control character in a text");
        }
        if (at_ == json_.size())
            Fail("a text does not end");
        const bool isEnd = json_[at_++] == L'"';
        if (isEnd && plain == begin)
            return run;
        text_ += run;
        if (isEnd)
            return text_;
        TakeEscape();
        plain = at_;
    }
}

void clsJsonReader::TakeEscape() {
    constexpr std::wstring_view letters = L"\"\\/bfnrt", meanings = L"\"\\/\b\f\n\r\t";
    const wchar_t letter = at_ < json_.size() ? json_[at_] : L'\0';
    if (letter == L'u') {
        ++at_;
        text_ += TakeUnit();
        return;
    }
    const std::size_t known = letters.find(letter);
    if (known == letters.npos)
        Fail("an unknown escape");
    ++at_;
    text_ += meanings[known];
}

wchar_t clsJsonReader::TakeUnit() {
    unsigned unit = 0;
    for (const std::size_t end = at_ + 4; at_ != end; ++at_) {
        if (at_ == json_.size() || HexDigit(json_[at_]) == 16)
            Fail("an unknown escape");
        unit = unit * 16 + HexDigit(json_[at_]);
    }
    return static_cast<wchar_t>(unit);
}

// The next unit that is no blank; zero at the end.
wchar_t clsJsonReader::Next() {
    at_ = std::min(json_.find_first_not_of(blanks, at_), json_.size());
    return at_ < json_.size() ? json_[at_] : L'\0';
}

void clsJsonReader::Expect(wchar_t unit, const char* otherwise) {
    if (Next() != unit)
        Fail(otherwise);
    ++at_;
}

std::size_t clsJsonReader::Line() const {
    return static_cast<std::size_t>(
               std::count(json_.begin(), json_.begin() + static_cast<std::ptrdiff_t>(at_), L'\n')) +
           1;
}

void clsJsonReader::Fail(const char* reason) const {
    throw scJsonError{Line(), reason};
}

} // namespace tool
