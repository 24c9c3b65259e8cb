#include "files/path_split.h"

#include "files/path_root.h"

namespace tvut {

std::size_t UtilpExtensionStart(std::u16string_view name) noexcept {
    const std::size_t dot = name.rfind(u'.');
    const bool none = dot == std::u16string_view::npos || dot == 0 || name == u"..";
    return none ? name.size() : dot;
}

scPathParts UtilpSplitPath(std::u16string_view path) noexcept {
    const scPathRoot root = UtilpRootOf(path);
    std::size_t nameAt = path.size();
    while (nameAt > root.length && !root.Separates(path[nameAt - 1]))
        --nameAt;
    const std::u16string_view last = path.substr(nameAt);
    const std::size_t extensionAt = UtilpExtensionStart(last);
    return {path.substr(0, root.length), path.substr(root.length, nameAt - root.length),
            last.substr(0, extensionAt), last.substr(extensionAt)};
}

} // namespace tvut
