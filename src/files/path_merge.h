// The path that is meant by another one for somebody who stands in a folder.
#pragma once

#include "runtime/result.h"
#include "text/bounded_text.h"

#include <string_view>

namespace tvut {

// Joins and normalises: separators become single backslashes, "." and ".." go as far as they can. A result
// that begins with \\?\ is joined only. An empty base or path leaves the other one; badArgument when both
// are, and for a path on another drive than its base. tooLarge beyond longestPath. The text counts only when
// the result is ok. Throws std::bad_alloc.
UtilResult UtilpMergePaths(std::u16string_view base, std::u16string_view path, clsBoundedText& result);

// The join for paths from strangers: badArgument unless the base is absolute and names a folder, unsafe
// unless the result is the base or lies below it and each component of the path is a bare file name.
UtilResult UtilpMergeInside(std::u16string_view base, std::u16string_view path, clsBoundedText& result);

} // namespace tvut
