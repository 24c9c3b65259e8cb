// Finds files in a folder.
#pragma once

#include <string>
#include <vector>

namespace tvut {

// The names of the files, not folders, that the system finds for a path whose last component may hold
// wildcards; in no order, and none when there is nothing or it may not be looked at. Throws
// std::bad_alloc.
std::vector<std::u16string> PlatformFindFiles(const std::u16string& path);

} // namespace tvut
