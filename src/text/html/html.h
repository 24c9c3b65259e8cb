// HTML and plain text: character references, paragraphs, and pages rendered as plain text.
//
// Every function measures or bounds its result first, and the caller brings the room for it: none grows
// anything while it writes. Costs are proportional to the length of the text, whatever is in it.
// docs/html.md says what becomes what.
#pragma once

#include <cstddef>
#include <span>
#include <string_view>

namespace tvut {

// How tags are written: <p> and </p>, or [_[p]_] and [_[/p]_].
enum class HtmlForm : bool { tags, markers };

// Characters that HTML cannot hold as they are become references.
std::size_t UtilpMaskedLength(std::u16string_view text);
void UtilpMask(std::u16string_view text, std::span<char16_t> result); // of the measured length

// The other way. The result needs room for as much as the text and may take its place; returns its length.
std::size_t UtilpDemask(std::u16string_view text, char16_t* result);

// Plain text as paragraphs.
std::size_t UtilpHtmlLength(std::u16string_view text, HtmlForm form);
void UtilpTextToHtml(std::u16string_view text, HtmlForm form, std::span<char16_t> result);

// A page as plain text. The result needs room for as much as the page, in another place; returns its length.
// Where links cross, or a comment stands in one, it needs memory of its own meanwhile and throws
// std::bad_alloc when there is none.
std::size_t UtilpHtmlToPlainText(std::u16string_view html, HtmlForm form, char16_t* result);

} // namespace tvut
