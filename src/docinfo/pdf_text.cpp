#include "docinfo/pdf_text.h"

#include "docinfo/document_text.h"
#include "platform/code_page.h"

namespace tvut {

namespace {

// Where PDFDocEncoding (ISO 32000-1, annex D.2) is not Latin-1.
constexpr std::u16string_view from18 = u"\u02D8\u02C7\u02C6\u02D9\u02DD\u02DB\u02DA\u02DC";
constexpr std::u16string_view from80 =
    u"\u2022\u2020\u2021\u2026\u2014\u2013\u0192\u2044\u2039\u203A\u2212\u2030\u201E\u201C\u201D\u2018"
    u"\u2019\u201A\u2122\uFB01\uFB02\u0141\u0152\u0160\u0178\u017D\u0131\u0142\u0153\u0161\u017E\uFFFD\u20AC";

constexpr char16_t CharacterOf(char16_t unit) {
    if (unit >= 0x18 && unit < 0x18 + from18.size())
        return from18[unit - 0x18u];
    return unit >= 0x80 && unit < 0x80 + from80.size() ? from80[unit - 0x80u] : unit;
}

// A language may stand between two escapes.
void RemoveLanguages(std::u16string& text) {
    constexpr char16_t escape = 0x1B;
    std::size_t to = 0;
    bool isLanguage = false;
    for (const char16_t unit : text) {
        if (unit == escape)
            isLanguage = !isLanguage;
        else if (!isLanguage)
            text[to++] = unit;
    }
    text.resize(to);
}

} // namespace

std::u16string UtilpDecodePdfText(std::string_view bytes) {
    std::u16string text;
    if (bytes.starts_with("\xFE\xFF") || bytes.starts_with("\xFF\xFE")) {
        text = UtilpDecodeUtf16(bytes.substr(2), bytes.front() == '\xFE');
        RemoveLanguages(text);
    } else if (bytes.starts_with("\xEF\xBB\xBF")) {
        text = UtilpDecodeText(codePageUtf8, bytes.substr(3));
        RemoveLanguages(text);
    } else {
        text = UtilpWidenLatin(bytes);
        for (char16_t& unit : text)
            unit = CharacterOf(unit);
    }
    return text;
}

} // namespace tvut
