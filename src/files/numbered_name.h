// Names that are taken get a number: "a.txt" becomes "a (2).txt".
#pragma once

#include "files/path_split.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace tvut {

// A file's name with a number before its extension. Throws std::bad_alloc.
inline std::u16string UtilpNumberedName(std::u16string_view name, std::uint32_t number) {
    const std::size_t extensionAt = UtilpExtensionStart(name);
    std::u16string numbered(name.substr(0, extensionAt));
    numbered += u" (";
    const std::size_t digitsAt = numbered.size();
    for (; number != 0; number /= 10)
        numbered.insert(digitsAt, 1, static_cast<char16_t>(u'0' + number % 10));
    numbered += u')';
    return numbered += name.substr(extensionAt);
}

} // namespace tvut
