// What people write to choose lines: terms between blanks, each with values between commas.
//
//     printer  text=heap,!"two words"  thread=1b0
//
// A value with a blank, a comma or the like stands in quotation marks; a mark in it is doubled.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tool::logpan {

struct scTerm {
    std::wstring name; // empty for a value that stands alone
    std::vector<std::wstring> shown;
    std::vector<std::wstring> hidden; // those with an exclamation mark
};

// Throws BadPattern for a quotation mark that is not closed, and for a term without a value.
std::vector<scTerm> TermsOf(std::wstring_view text);

std::wstring TextOf(const scTerm& term);

} // namespace tool::logpan
