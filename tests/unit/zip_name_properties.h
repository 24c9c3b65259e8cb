// What holds for every name of an entry, checked without the code that makes it so.
#pragma once

#include "files/file_name.h"
#include "zip/zip_names.h"

#include <algorithm>

namespace tvut {

// What is wrong with how a name is taken; null for nothing.
inline const char* FaultOfZipName(std::string_view bytes, ZipNameForm form) {
    std::u16string name, path, again;
    const ZipNameKind kind = UtilpReadZipName(bytes, form, name);
    if (UtilpIsPlainZipName(bytes) &&
        (kind != ZipNameKind::fine || name != std::u16string(bytes.begin(), bytes.end())))
        return "a plain name does not stay as it stands";
    if (kind != ZipNameKind::fine)
        return nullptr;
    if (name.find(u'\\') != name.npos || name.find(u'\0') != name.npos ||
        (name.starts_with(u'/') && name != u"/"))
        return "the name is not as it is shown";
    UtilpMakePossiblePath(name, path);
    if (path.empty())
        return name == u"/" ? nullptr : "nothing is left of the path";
    for (std::size_t start = 0; start <= path.size();) {
        const std::size_t end = std::min(path.find(u'\\', start), path.size());
        if (!UtilpIsBareFileName(std::u16string_view(path).substr(start, end - start)))
            return "a component could be something else than a file's name";
        start = end + 1;
    }
    std::u16string slashed = path;
    std::ranges::replace(slashed, u'\\', u'/');
    UtilpMakePossiblePath(slashed, again);
    return again == path ? nullptr : "a path made of the path is another one";
}

} // namespace tvut
