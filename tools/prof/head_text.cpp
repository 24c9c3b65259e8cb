// UTF-16 without a byte-order mark is known by the marks that every profile has: line ends, "=" and brackets.
// In UTF-16 a zero byte follows each of them at an even place; more than half of those found must be so.
// Bytes beyond ASCII become one character, so that callers look for words without knowing the encoding.
#include "head_text.h"

namespace tool::prof {

namespace {

constexpr char notAscii = '\x80';

char Narrowed(unsigned unit) {
    return unit < 0x80 ? static_cast<char>(unit) : notAscii;
}

std::string FromUtf16(std::string_view bytes, std::size_t low) {
    std::string text;
    text.reserve(bytes.size() / 2);
    for (std::size_t at = 0; at + 1 < bytes.size(); at += 2)
        text +=
            bytes[at + 1 - low] == '\0' ? Narrowed(static_cast<unsigned char>(bytes[at + low])) : notAscii;
    return text;
}

} // namespace

bool LooksLikeUtf16(std::string_view bytes) {
    std::size_t found = 0;
    std::size_t wide = 0;
    for (std::size_t at = 0; at < bytes.size(); ++at)
        if (std::string_view{"\r\n=[]"}.find(bytes[at]) != std::string_view::npos) {
            ++found;
            wide += at % 2 == 0 && at + 1 < bytes.size() && bytes[at + 1] == '\0';
        }
    return 2 * wide > found;
}

std::string HeadText(std::string_view bytes) {
    if (bytes.starts_with("\xff\xfe"))
        return FromUtf16(bytes.substr(2), 0);
    if (bytes.starts_with("\xfe\xff"))
        return FromUtf16(bytes.substr(2), 1);
    const bool markedUtf8 = bytes.starts_with("\xef\xbb\xbf");
    if (!markedUtf8 && LooksLikeUtf16(bytes))
        return FromUtf16(bytes, 0);
    std::string text{bytes.substr(markedUtf8 ? 3 : 0)};
    for (char& unit : text)
        unit = Narrowed(static_cast<unsigned char>(unit));
    return text;
}

} // namespace tool::prof
