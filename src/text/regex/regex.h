// clsRegEx: Perl-style regular expressions over UTF-16 units. docs/html.md lists the syntax.
//
// A match needs no recursion: its way back is an explicit stack of a bounded size, and the work of a
// call is bounded, too, so that a pattern that would take for ever is reported instead.
#pragma once

#include "text/regex/errors.h"

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace tvut {

struct scRegExProgram;

// What a group matched.
struct scRegExMatch {
    static constexpr std::size_t none = static_cast<std::size_t>(-1);

    std::size_t start = none; // none: the group took no part
    std::size_t length = 0;
};

// A match: the whole of it is number 0, the groups are numbered from 1 by their opening parentheses.
class clsRegExMatchList {
  public:
    std::size_t Count() const { return matches_.size(); }
    const scRegExMatch& operator[](std::size_t number) const { return matches_[number]; }
    bool Has(std::size_t number) const { return matches_[number].start != scRegExMatch::none; }
    // Of a group that took no part: empty.
    std::u16string_view Text(std::size_t number) const {
        return Has(number) ? text_.substr(matches_[number].start, matches_[number].length)
                           : std::u16string_view();
    }

  private:
    friend class clsRegEx;
    std::u16string_view text_;
    std::vector<scRegExMatch> matches_;
};

// Makes what is put in the place of each match.
class IclsRegExGSubCB {
  public:
    // Appends the replacement to the result so far.
    virtual void Replace(const clsRegExMatchList& match, std::u16string& result) = 0;

  protected:
    ~IclsRegExGSubCB() = default;
};

class clsRegEx {
  public:
    // Throws clsRegExError, after the diagnostic line "Error in RegEx offset %d: '%ws'" with the pattern.
    explicit clsRegEx(std::u16string_view pattern);
    ~clsRegEx();
    clsRegEx(const clsRegEx&) = delete;
    clsRegEx& operator=(const clsRegEx&) = delete;

    std::size_t Groups() const noexcept;

    // Whether it matches anywhere. Any number of threads may ask the same object. This and the calls
    // below throw clsRegExTooComplex.
    bool Matches(std::u16string_view text) const;

    // The first match that begins at a position or after it.
    bool Match(std::u16string_view text, clsRegExMatchList& match, std::size_t from = 0) const;

    // Replaces all matches, from left to right, and returns how many there were. The result is appended to.
    std::size_t GSub(std::u16string_view text, IclsRegExGSubCB& replacement, std::u16string& result) const;

  private:
    std::unique_ptr<const scRegExProgram> program_;
};

} // namespace tvut
