// Tokens for the system's folders: "<Documents>\letter.txt", so that a stored path holds for another user.
#pragma once

#include "platform/known_folders.h"
#include "runtime/result.h"

#include <string>
#include <string_view>

namespace tvut {

// Replaces the token at a path's beginning, letters without regard to case. A path that begins with no "<"
// is the result as it is. notFound for no token, tooLarge beyond longestPath. Throws std::bad_alloc.
UtilResult UtilpExpandPath(std::u16string_view path, IclsFolders& folders, std::u16string& result);

// Replaces the longest of the folders that a path begins with by its token; the first in the table's order
// where several are the same. A path in none of them is the result as it is.
UtilResult UtilpCollapsePath(std::u16string_view path, IclsFolders& folders, std::u16string& result);

} // namespace tvut
