// Escapes that name a set and those that name a unit are two tables; only numbers, \c and classes are decoded
// by hand. A letter or figure after a backslash that no table has is left to the caller, who knows more of
// them or reports it: Perl keeps those for itself, while any other character stands for itself.
#include "text/regex/pattern_reader.h"

#include "text/digits.h"
#include "text/regex/errors.h"

#include <algorithm>

namespace tvut {

namespace {

constexpr unsigned largestNumber = 1'000'000; // and what larger ones are read as

bool IsLetterOrDigit(char16_t unit) {
    const auto lower = static_cast<char16_t>(unit | 0x20);
    return (unit >= u'0' && unit <= u'9') || (lower >= u'a' && lower <= u'z' && unit < 0x80);
}

clsCharSet HorizontalBlanks() {
    clsCharSet set;
    set.Add(u'\t');
    for (const char16_t blank : {u' ', u'\u00A0', u'\u1680', u'\u202F', u'\u205F', u'\u3000'})
        set.Add(blank);
    set.Add(0x2000, 0x200A);
    return set;
}

clsCharSet LineEnds() {
    clsCharSet set;
    set.Add(u'\n', u'\r');
    set.Add(0x85);
    set.Add(0x2028, 0x2029);
    return set;
}

clsCharSet AllButLineFeed() {
    clsCharSet set;
    set.Add(u'\n');
    set.Invert();
    return set;
}

struct scSetEscape {
    char16_t letter;
    clsCharSet (*make)();
    bool inverted;
};
constexpr scSetEscape setEscapes[] = {
    {u'd', UtilpDigits, false},      {u'D', UtilpDigits, true},      {u'w', UtilpWordUnits, false},
    {u'W', UtilpWordUnits, true},    {u's', UtilpBlanks, false},     {u'S', UtilpBlanks, true},
    {u'h', HorizontalBlanks, false}, {u'H', HorizontalBlanks, true}, {u'v', LineEnds, false},
    {u'V', LineEnds, true},          {u'N', AllButLineFeed, false},
};

struct scUnitEscape {
    char16_t letter;
    char16_t unit;
};
constexpr scUnitEscape unitEscapes[] = {{u't', u'\t'}, {u'n', u'\n'}, {u'r', u'\r'},
                                        {u'f', u'\f'}, {u'a', u'\a'}, {u'e', 0x1B}};

} // namespace

clsCharSet UtilpDigits() {
    clsCharSet set;
    set.Add(u'0', u'9');
    return set;
}

clsCharSet UtilpWordUnits() {
    clsCharSet set = UtilpDigits();
    set.Add(u'A', u'Z');
    set.Add(u'a', u'z');
    set.Add(u'_');
    return set;
}

clsCharSet UtilpBlanks() {
    clsCharSet set;
    set.Add(u'\t', u'\r');
    set.Add(u' ');
    return set;
}

void clsPatternReader::Fail(std::size_t offset, const char* reason) {
    throw clsRegExError(offset, reason);
}

bool clsPatternReader::Take(char16_t unit) {
    if (AtEnd() || Peek() != unit)
        return false;
    ++at_;
    return true;
}

bool clsPatternReader::Take(std::u16string_view text) {
    if (!pattern_.substr(at_).starts_with(text))
        return false;
    at_ += text.size();
    return true;
}

std::optional<unsigned> clsPatternReader::TakeNumber(unsigned base, std::size_t mostDigits) {
    unsigned number = 0;
    std::size_t digits = 0;
    for (; digits < mostDigits && !AtEnd() && UtilpDigitOf(Peek()) < base; ++digits)
        number = std::min(number * base + UtilpDigitOf(Next()), largestNumber);
    return digits != 0 ? std::optional(number) : std::nullopt;
}

std::optional<clsCharSet> clsPatternReader::TakeSetEscape() {
    for (const scSetEscape& escape : setEscapes) {
        if (!Take(escape.letter))
            continue;
        clsCharSet set = escape.make();
        if (escape.inverted)
            set.Invert();
        return set;
    }
    return std::nullopt;
}

std::optional<char16_t> clsPatternReader::TakeUnitEscape() {
    if (AtEnd())
        Fail("a backslash at the end");
    for (const scUnitEscape& escape : unitEscapes) {
        if (Take(escape.letter))
            return escape.unit;
    }
    if (Take(u'x'))
        return TakeHexadecimal();
    if (Take(u'0'))
        return static_cast<char16_t>(TakeNumber(8, 2).value_or(0));
    if (Take(u'c')) {
        if (AtEnd() || Peek() < u'?' || Peek() > u'z')
            Fail("no control character after \\c");
        const char16_t letter = Next();
        return static_cast<char16_t>((letter >= u'a' ? letter - 0x20 : letter) ^ 0x40);
    }
    if (IsLetterOrDigit(Peek()))
        return std::nullopt;
    return Next();
}

// \x41, \xE (as far as there are digits) or \x{20AC}.
char16_t clsPatternReader::TakeHexadecimal() {
    if (!Take(u'{'))
        return static_cast<char16_t>(TakeNumber(16, 2).value_or(0));
    const std::optional<unsigned> number = TakeNumber(16, 4);
    if (!number || !Take(u'}'))
        Fail("\\x{ needs one to four hexadecimal digits and }");
    return static_cast<char16_t>(*number);
}

// One end of a range; a class such as \d goes straight into the set.
std::optional<char16_t> clsPatternReader::TakeClassUnit(clsCharSet& set) {
    if (!Take(u'\\'))
        return Next();
    if (const std::optional<clsCharSet> named = TakeSetEscape()) {
        set.Add(*named);
        return std::nullopt;
    }
    if (Take(u'b'))
        return u'\b';
    const std::optional<char16_t> unit = TakeUnitEscape();
    if (!unit)
        Fail("an escape that a class does not know");
    return unit;
}

void clsPatternReader::TakeRange(clsCharSet& set) {
    const std::size_t start = Offset();
    const std::optional<char16_t> first = TakeClassUnit(set);
    if (!first)
        return;
    const std::size_t after = Offset();
    if (!Take(u'-') || AtEnd() || Peek() == u']') {
        GoTo(after); // the hyphen stands for itself
        set.Add(*first);
        return;
    }
    const std::optional<char16_t> last = TakeClassUnit(set);
    if (!last) { // [a-\d] is no range either
        set.Add(*first);
        set.Add(u'-');
        return;
    }
    if (*last < *first)
        Fail(start, "a range that ends before it begins");
    set.Add(*first, *last);
}

// [:alpha:] and its like, which stand inside the brackets of a class.
bool clsPatternReader::IsNamedClass() const {
    const std::u16string_view rest = pattern_.substr(at_);
    if (!rest.starts_with(u"[:"))
        return false;
    const std::size_t end = rest.find_first_not_of(u"^abcdefghijklmnopqrstuvwxyz", 2);
    return end != std::u16string_view::npos && rest.substr(end).starts_with(u":]");
}

clsCharSet clsPatternReader::TakeClass(bool ignoreCase) {
    const std::size_t start = Offset() - 1;
    const bool inverted = Take(u'^');
    clsCharSet set;
    bool first = true;
    for (; first || !Take(u']'); first = false) { // a bracket in the first place stands for itself
        if (AtEnd())
            Fail(start, "a class without its closing bracket");
        if (IsNamedClass())
            Fail(Offset(), "named classes such as [:alpha:] are not supported");
        TakeRange(set);
    }
    if (ignoreCase)
        set.AddOtherCases();
    if (inverted)
        set.Invert();
    return set;
}

} // namespace tvut
