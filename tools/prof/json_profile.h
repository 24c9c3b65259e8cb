// Profiles as JSON: docs/prof.md says how one is the other.
#pragma once

#include "profile.h"
#include "snapshot.h"

#include <string>
#include <string_view>

namespace tool::prof {

enum class JsonValues { typed, texts }; // texts: no value becomes a number or true or false

// Appends a value: a number or true or false where it is exactly that, else a text.
void AppendJsonValue(std::wstring& json, std::wstring_view value, JsonValues values);

// A list and all that is in it, or only its items; a document of several lines. UTF-8.
std::string JsonOf(const clsSnapshot& list, JsonValues values);
std::string JsonOfItems(const clsSnapshot& list, JsonValues values);

// The profile that a JSON document is: UTF-8, or UTF-16 with a byte-order mark. Throws Failure with
// malformed.
JobPtr ProfileOfJson(std::string_view bytes, const std::string& subject);

} // namespace tool::prof
