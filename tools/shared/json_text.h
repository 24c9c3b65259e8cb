// Texts and numbers of JSON (RFC 8259).
#pragma once

#include <string>
#include <string_view>

namespace tool {

// A surrogate without its other half is no character: as an escape it comes back all the same.
enum class LoneSurrogates { replaced, escaped };

// Appends a text in quotes. Control characters are escaped.
void AppendJsonText(std::wstring& json, std::wstring_view text,
                    LoneSurrogates surrogates = LoneSurrogates::escaped);

// Whether a text is a number as JSON writes it.
bool IsJsonNumber(std::wstring_view text);

} // namespace tool
