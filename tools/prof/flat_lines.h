// Flat lines: a profile as one full path a line, and back. "/A/B=value" is an item; "/A/" is a list that the
// items alone would not tell: an empty one, or another one of its name.
#pragma once

#include "escapes.h"
#include "profile.h"
#include "tree_walk.h"

#include <string_view>

namespace tool::prof {

// The path that is read as these names again.
std::wstring PathOf(const Names& names);

// Print one line.
void PrintFlatItem(const Names& names, std::wstring_view value);
void PrintFlatList(const Names& names);

// Prints what a walk meets that begins in the list of these names.
void ShowFlat(clsTreeWalk& walk, const Names& start);

// The profile of lines in UTF-8, or UTF-16 with a byte-order mark; blank lines and those that begin with #
// count for nothing. Throws Failure with malformed; name is for messages.
clsProfile ProfileOfFlatLines(std::string_view lines, const std::string& name);

} // namespace tool::prof
