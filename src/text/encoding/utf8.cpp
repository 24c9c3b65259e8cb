#include "text/encoding/utf8.h"

#include "runtime/code_point.h"

#include <cstdint>

namespace tvut {

bool UtilpIsUtf8(std::string_view bytes) noexcept {
    for (std::size_t at = 0; at < bytes.size();) {
        const std::size_t length = UtilpUtf8SequenceLength(bytes, at);
        if (length == 0)
            return false;
        at += length;
    }
    return true;
}

std::size_t UtilpDecodeUtf8(std::string_view bytes, char16_t* characters) noexcept {
    char16_t* out = characters;
    for (std::size_t at = 0; at < bytes.size();) {
        const std::size_t length = UtilpUtf8SequenceLength(bytes, at);
        out = UtilpPutUtf16(out, length == 0 ? replacementCharacter : UtilpUtf8CodePoint(bytes, at, length));
        at += length == 0 ? 1 : length;
    }
    return static_cast<std::size_t>(out - characters);
}

bool UtilpIsUtf16(std::u16string_view text) noexcept {
    while (!text.empty()) {
        const char16_t first = text.front();
        if (UtilpTakeUtf16(text) == replacementCharacter && first != replacementCharacter)
            return false;
    }
    return true;
}

std::size_t detail::LengthInUtf8(std::u16string_view text) noexcept {
    std::size_t length = 0;
    while (!text.empty())
        length += UtilpUtf8LengthOf(UtilpTakeUtf16(text));
    return length;
}

std::size_t detail::EncodeUtf8(std::u16string_view text, char* bytes) noexcept {
    char* out = bytes;
    while (!text.empty())
        out = UtilpPutUtf8(out, UtilpTakeUtf16(text));
    return static_cast<std::size_t>(out - bytes);
}

} // namespace tvut
