// Paths: how a caller's text leads from a list to a list or an item.
//
// Segments are separated by "/", a leading "/" starts at the root list, and there is no escaping. A
// segment that is followed by another counts with its first 255 characters only; the last one is
// taken whole. Nothing here allocates but the deletions, which may have to follow many branches.
#pragma once

#include "prof/tree.h"

#include <string_view>

namespace tvut {

// The list that a path names, the first of each name; null when a segment is missing.
clsItemList* ProfpFindList(clsItemList& start, std::u16string_view path);

// The first item that a path names, or null.
const clsItem* ProfpFindItem(clsItemList& start, std::u16string_view path);

// The list that a path names, emptied; what is missing on the way is appended.
clsItemList* ProfpCreateList(clsItemList& start, std::u16string_view path);

// A new list for every segment, whatever is there.
clsItemList* ProfpAppendList(clsItemList& start, std::u16string_view path);

// Add an item or set the first one of its name; missing lists on the way are appended.
void ProfpAppendItem(clsItemList& start, std::u16string_view path, std::u16string_view value);
void ProfpAppendItem(clsItemList& start, std::u16string_view path, const IclsValueWriter& value);
void ProfpSetItem(clsItemList& start, std::u16string_view path, std::u16string_view value);

// Remove every entry of a kind that the path reaches through every list of each segment's name.
void ProfpRemove(clsItemList& start, EntryKind kind, std::u16string_view path);

// Removes the entry that holds a list; the root list, which no entry holds, stays.
void ProfpRemoveList(clsItemList& list);

} // namespace tvut
