#include "files/found_files.h"

#include "files/file_name.h"
#include "platform/file_finder.h"
#include "platform/letter_case.h"

#include <algorithm>

namespace tvut {

bool UtilpComesBefore(std::u16string_view a, std::u16string_view b) noexcept {
    const int order = PlatformCompareIgnoringCase(a, b);
    return order != 0 ? order < 0 : a < b;
}

// A name is looked up itself. For a pattern the whole folder is, and the names are matched here: the
// system would match short names that nobody sees as well.
std::vector<std::u16string> UtilpFilesOf(const scFilePattern& pattern) {
    const std::u16string folder(pattern.folder);
    if (!pattern.HasWildcards()) {
        if (!UtilpIsBareFileName(pattern.name))
            return {};
        return PlatformFindFiles(folder + std::u16string(pattern.name));
    }
    std::vector<std::u16string> names = PlatformFindFiles(folder + u"*");
    std::erase_if(names,
                  [&](const std::u16string& name) { return !UtilpMatchesPattern(name, pattern.name); });
    std::sort(names.begin(), names.end(), UtilpComesBefore);
    return names;
}

} // namespace tvut
