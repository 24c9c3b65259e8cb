// A path in four parts that put together are the path again, to the character.
#pragma once

#include <string_view>

namespace tvut {

struct scPathParts {
    std::u16string_view root;
    std::u16string_view folder;    // from the root to the last separator, that one with it
    std::u16string_view name;      // the last component without its extension
    std::u16string_view extension; // from its last dot on; none when that is its first character
};

scPathParts UtilpSplitPath(std::u16string_view path) noexcept;

// Where the extension of a file's name begins; its length when it has none.
std::size_t UtilpExtensionStart(std::u16string_view name) noexcept;

} // namespace tvut
