// Links of a page as text: <a href="address">label</a> becomes label [address].
//
// What counts as a link is what the pattern
//     ^(.*)<a\s+(.*)href="(.*)"(.*)>(.*)</a>(.*)$
// finds, in which the dot takes line ends, too. Its groups are greedy, and it is applied to the whole text
// again until it no longer matches, so every round rewrites the link that ends last: its </a> is the last of
// the text, the > before the label is the last one before that, and so on to the left, through the
// quotation mark after the address and href=" to <a. What lies between these but the address and
// the label is dropped.
//
// Everything right of that </a> is final at once. So are, where all links are whole, label and
// address, and the next round goes on left of <a: one walk from the end of the text to its start. Only
// where an address holds another </a>, because an anchor without href=" or with missing quotation marks
// follows, can the next round meet what this one has put in; clsCrossedLinks takes over then.
#pragma once

#include "text/html/backward_text.h"

#include <string_view>

namespace tvut {

// The parts of the last link of a text.
struct scLink {
    const char16_t* start;      // of <a
    const char16_t* address;    // after href="
    const char16_t* addressEnd; // at the quotation mark
    const char16_t* label;      // after >
    const char16_t* labelEnd;   // at </a>

    std::u16string_view Address() const { return {address, static_cast<std::size_t>(addressEnd - address)}; }
    std::u16string_view Label() const { return {label, static_cast<std::size_t>(labelEnd - label)}; }
};

// Whether there is a link; fills in its parts.
bool UtilpFindLastLink(std::u16string_view text, scLink& link);

// The same, with a text that ends at the </a>, which is not part of it.
bool UtilpFindLinkBefore(std::u16string_view text, scLink& link);

// Writes the whole text with its links resolved, given the last of them. The text may end where the result
// does, or before it in the same memory. Throws std::bad_alloc.
void UtilpResolveLinks(std::u16string_view text, scLink link, clsBackwardText& result);

} // namespace tvut
