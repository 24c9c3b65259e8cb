#include "platform/file_finder.h"

#include "platform/long_path.h"
#include "platform/owned.h"
#include "platform/wide.h"

namespace tvut {

std::vector<std::u16string> PlatformFindFiles(const std::u16string& path) {
    std::vector<std::u16string> names;
    WIN32_FIND_DATAW data;
    const clsFindHandle search(FindFirstFileW(PlatformLongPath(ToWide(path.c_str())).c_str(), &data));
    if (!search)
        return names;
    do {
        if (!(data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY))
            names.emplace_back(FromWide(std::wstring_view(data.cFileName)));
    } while (FindNextFileW(search.Get(), &data));
    return names;
}

} // namespace tvut
