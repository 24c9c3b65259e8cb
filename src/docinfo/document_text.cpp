#include "docinfo/document_text.h"

#include "platform/code_page.h"
#include "runtime/default_code_page.h"
#include "text/encoding/utf8.h"

namespace tvut {

namespace {

template <class Decode>
std::u16string Decoded(std::string_view bytes, Decode decode) {
    std::u16string text(bytes.size(), u'\0');
    text.resize(decode(text.data()));
    return text;
}

} // namespace

std::u16string UtilpDecodeText(unsigned codePage, std::string_view bytes) {
    if (codePage == 1200 || codePage == 1201)
        return UtilpDecodeUtf16(bytes, codePage == 1201);
    if (codePage == codePageUtf8)
        return Decoded(bytes, [&](char16_t* text) { return UtilpDecodeUtf8(bytes, text); });
    return Decoded(bytes, [&](char16_t* text) { return PlatformDecode(codePage, bytes, text); });
}

std::u16string UtilpDecodeUtf16(std::string_view bytes, bool isBigEndian) {
    std::u16string text(bytes.size() / 2, u'\0');
    for (std::size_t at = 0; at < text.size(); ++at) {
        const auto first = static_cast<unsigned char>(bytes[at * 2]);
        const auto second = static_cast<unsigned char>(bytes[at * 2 + 1]);
        text[at] = static_cast<char16_t>(isBigEndian ? first << 8 | second : second << 8 | first);
    }
    return text;
}

unsigned UtilpLooseCodePage(std::string_view bytes) noexcept {
    return UtilpIsUtf8(bytes) ? codePageUtf8 : UtilpCodePage();
}

std::u16string UtilpDecodeLooseText(std::string_view bytes) {
    return UtilpDecodeText(UtilpLooseCodePage(bytes), bytes);
}

std::u16string UtilpWidenLatin(std::string_view bytes) {
    return Decoded(bytes, [&](char16_t* text) {
        for (std::size_t at = 0; at < bytes.size(); ++at)
            text[at] = static_cast<unsigned char>(bytes[at]);
        return bytes.size();
    });
}

} // namespace tvut
