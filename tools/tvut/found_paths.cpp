#include "found_paths.h"

#include "text_io.h"

#include <windows.h>

#include <algorithm>

namespace tool::tvut {

std::optional<std::vector<std::string>> FoundPaths(const std::string& path) {
    const std::size_t last = path.find_last_of("\\/:") + 1; // nothing found: npos + 1 is 0
    if (path.find_first_of("*?", last) == path.npos)
        return {};
    std::vector<std::string> found;
    WIN32_FIND_DATAW file;
    const HANDLE search = FindFirstFileW(ToWide(path).c_str(), &file);
    if (search == INVALID_HANDLE_VALUE)
        return found;
    do {
        if ((file.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0)
            found.push_back(path.substr(0, last) + ToUtf8(file.cFileName));
    } while (FindNextFileW(search, &file));
    FindClose(search);
    std::ranges::sort(found);
    return found;
}

} // namespace tool::tvut
