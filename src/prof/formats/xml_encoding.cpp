// The declaration is in ASCII in every 8-bit encoding that is known here, so it is looked at in the bytes,
// before anything is decoded. UTF-16 does not begin with these bytes, and a text with a byte-order mark does
// not either: both need no declaration.
#include "prof/formats/xml_encoding.h"

#include "platform/code_page.h"
#include "text/encoding/charset_names.h"

#include <algorithm>

namespace tvut {

namespace {

std::string_view WithoutBlanks(std::string_view text) {
    return text.substr(std::min(text.find_first_not_of(" \t\r\n"), text.size()));
}

} // namespace

unsigned ProfpDeclaredCodePage(std::string_view bytes) {
    constexpr std::string_view begin = "<?xml", key = "encoding";
    bytes = WithoutBlanks(bytes);
    if (!bytes.starts_with(begin))
        return 0;
    const std::string_view declaration = bytes.substr(0, bytes.find('>'));
    const std::size_t at = declaration.find(key);
    if (at == declaration.npos)
        return 0;
    std::string_view name = WithoutBlanks(declaration.substr(at + key.size()));
    if (!name.starts_with('='))
        return 0;
    name = WithoutBlanks(name.substr(1));
    if (!name.starts_with('"') && !name.starts_with('\''))
        return 0;
    const char quote = name.front();
    name.remove_prefix(1);
    const unsigned codePage = UtilpCodePageOfCharset(name.substr(0, name.find(quote))).value_or(0);
    return codePage == codePageUtf8 ? 0 : codePage;
}

} // namespace tvut
