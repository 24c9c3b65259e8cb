// A fuzzer's bytes as the contents of a file that begins as a form does: in UTF-16, which is read a window
// at a time, when their number is odd.
#pragma once

#include "unit/native_platform.h"

#include <cstdint>

namespace tvut {

inline std::string WithFirstLine(std::string_view firstLine, const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    if (size % 2 == 0)
        return std::string(firstLine).append(bytes);
    const std::u16string wide(firstLine.begin(), firstLine.end());
    return ("\xFF\xFE" + Utf16Bytes(wide)).append(bytes);
}

} // namespace tvut
