#include "text/encoding/charset_names.h"

#include <algorithm>

namespace tvut {

namespace {

struct scCharset {
    std::string_view name; // in lower case
    unsigned codePage;
};

// US-ASCII is read as its superset, which is what mail in it really is. ISO 8859-1 is read as 1252, as
// browsers and mail programs do.
constexpr scCharset charsets[] = {
    {"utf-8", 65001},
    {"us-ascii", 1252},
    {"iso-8859-1", 1252},
    {"iso-8859-15", 28605},
    {"windows-1252", 1252},
    {"utf8", 65001},
    {"ascii", 1252},
    {"latin1", 1252},
    {"cp1252", 1252},
    {"windows-1250", 1250},
    {"windows-1251", 1251},
    {"windows-1253", 1253},
    {"windows-1254", 1254},
    {"windows-1255", 1255},
    {"windows-1256", 1256},
    {"windows-1257", 1257},
    {"windows-1258", 1258},
    {"windows-874", 874},
    {"iso-8859-2", 28592},
    {"iso-8859-3", 28593},
    {"iso-8859-4", 28594},
    {"iso-8859-5", 28595},
    {"iso-8859-6", 28596},
    {"iso-8859-7", 28597},
    {"iso-8859-8", 28598},
    {"iso-8859-8-i", 28598},
    {"iso-8859-9", 28599},
    {"iso-8859-13", 28603},
    {"koi8-r", 20866},
    {"koi8-u", 21866},
    {"shift_jis", 932},
    {"iso-2022-jp", 50220},
    {"euc-jp", 51932},
    {"gb2312", 936},
    {"gbk", 936},
    {"gb18030", 54936},
    {"big5", 950},
    {"euc-kr", 949},
    {"ks_c_5601-1987", 949},
    {"tis-620", 874},
};

constexpr char Lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
}

} // namespace

std::optional<unsigned> UtilpCodePageOfCharset(std::string_view name) noexcept {
    const auto charset = std::ranges::find_if(charsets, [&](const scCharset& row) {
        return std::ranges::equal(name, row.name, [](char a, char b) { return Lower(a) == b; });
    });
    return charset != std::end(charsets) ? std::optional(charset->codePage) : std::nullopt;
}

} // namespace tvut
