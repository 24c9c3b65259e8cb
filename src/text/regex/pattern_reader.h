// Reads a pattern character by character, and the escapes that classes and sequences share.
#pragma once

#include "text/regex/char_set.h"

#include <optional>
#include <string_view>

namespace tvut {

// The sets that \d, \w, \s and their like name.
clsCharSet UtilpDigits();
clsCharSet UtilpWordUnits();
clsCharSet UtilpBlanks();

class clsPatternReader {
  public:
    explicit clsPatternReader(std::u16string_view pattern) : pattern_(pattern) {}

    bool AtEnd() const { return at_ == pattern_.size(); }
    std::size_t Offset() const { return at_; }
    char16_t Peek() const { return AtEnd() ? u'\0' : pattern_[at_]; }
    char16_t Next() { return pattern_[at_++]; }
    bool Take(char16_t unit);
    bool Take(std::u16string_view text);
    void GoTo(std::size_t offset) { at_ = offset; }

    // Digits of a base, at most a number of them; nothing, and nothing read, when there are none. Numbers
    // that no pattern can mean are all read as the same large one.
    std::optional<unsigned> TakeNumber(unsigned base, std::size_t mostDigits = std::u16string_view::npos);

    // After a backslash: a class such as \d, or a single character such as \n, \x41 or \*. Nothing, and
    // nothing read, for a letter or digit that means something else.
    std::optional<clsCharSet> TakeSetEscape();
    std::optional<char16_t> TakeUnitEscape();

    // After the opening bracket: all of [...].
    clsCharSet TakeClass(bool ignoreCase);

    [[noreturn]] void Fail(const char* reason) const { Fail(at_, reason); }
    [[noreturn]] static void Fail(std::size_t offset, const char* reason);

  private:
    char16_t TakeHexadecimal();
    bool IsNamedClass() const;
    std::optional<char16_t> TakeClassUnit(clsCharSet& set);
    void TakeRange(clsCharSet& set);

    std::u16string_view pattern_;
    std::size_t at_ = 0;
};

} // namespace tvut
