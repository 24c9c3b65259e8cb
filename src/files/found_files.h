// The files that a pattern means.
#pragma once

#include "files/file_pattern.h"

#include <string>
#include <vector>

namespace tvut {

// The order in which names are taken, whatever the file system's own is: without regard to case, and by code
// unit where that makes no difference.
bool UtilpComesBefore(std::u16string_view a, std::u16string_view b) noexcept;

// The names of the files, not folders, that a pattern finds, in that order; a name without wildcards finds
// itself. None when there is nothing. Throws std::bad_alloc.
std::vector<std::u16string> UtilpFilesOf(const scFilePattern& pattern);

} // namespace tvut
