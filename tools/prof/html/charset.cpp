// What a page says of its character set is in ASCII whatever it is written in. So the page's beginning is
// read as if each byte were a character, by the tokenizer that reads the whole page afterwards.
#include "charset.h"

#include "attributes.h"
#include "characters.h"
#include "tokenizer.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string>

namespace tool::html {

namespace {

constexpr unsigned utf8 = 65001;
constexpr unsigned windows1252 = 1252;
constexpr std::size_t headLength = 8192; // bytes in which a page says what it is written in

struct scLabel {
    std::u16string_view name;
    unsigned codePage;
};

// As browsers read them (https://encoding.spec.whatwg.org): some names mean what encloses them. A page that
// has said "UTF-16" so that it could be read is UTF-8.
constexpr scLabel labels[] = {
    {u"utf-8", utf8},
    {u"utf8", utf8},
    {u"utf-16", utf8},
    {u"utf-16le", utf8},
    {u"utf-16be", utf8},
    {u"ascii", windows1252},
    {u"us-ascii", windows1252},
    {u"iso-8859-1", windows1252},
    {u"iso8859-1", windows1252},
    {u"iso_8859-1", windows1252},
    {u"latin1", windows1252},
    {u"l1", windows1252},
    {u"cp1252", windows1252},
    {u"windows-1252", windows1252},
    {u"windows-1250", 1250},
    {u"cp1250", 1250},
    {u"windows-1251", 1251},
    {u"cp1251", 1251},
    {u"windows-1253", 1253},
    {u"windows-1254", 1254},
    {u"iso-8859-9", 1254},
    {u"latin5", 1254},
    {u"windows-1255", 1255},
    {u"windows-1256", 1256},
    {u"windows-1257", 1257},
    {u"windows-1258", 1258},
    {u"windows-874", 874},
    {u"iso-8859-11", 874},
    {u"tis-620", 874},
    {u"iso-8859-2", 28592},
    {u"iso8859-2", 28592},
    {u"latin2", 28592},
    {u"iso-8859-3", 28593},
    {u"iso-8859-4", 28594},
    {u"iso-8859-5", 28595},
    {u"iso-8859-6", 28596},
    {u"iso-8859-7", 28597},
    {u"iso-8859-8", 28598},
    {u"iso-8859-8-i", 28598},
    {u"iso-8859-13", 28603},
    {u"iso-8859-15", 28605},
    {u"latin9", 28605},
    {u"koi8-r", 20866},
    {u"koi8", 20866},
    {u"koi8-u", 21866},
    {u"ibm866", 866},
    {u"cp866", 866},
    {u"macintosh", 10000},
    {u"x-mac-cyrillic", 10007},
    {u"gb2312", 936},
    {u"gbk", 936},
    {u"gb18030", 54936},
    {u"big5", 950},
    {u"big5-hkscs", 950},
    {u"shift_jis", 932},
    {u"shift-jis", 932},
    {u"sjis", 932},
    {u"x-sjis", 932},
    {u"euc-jp", 20932},
    {u"x-euc-jp", 20932},
    {u"iso-2022-jp", 50220},
    {u"euc-kr", 949},
    {u"ks_c_5601-1987", 949},
};

std::optional<unsigned> CodePageOf(std::u16string_view label) {
    label = Trimmed(label);
    const auto row =
        std::ranges::find_if(labels, [&](const scLabel& known) { return IsSame(label, known.name); });
    return row != std::end(labels) ? std::optional(row->codePage) : std::nullopt;
}

// What stands after a name and = in a text, in quotation marks or not; empty when there is none.
std::u16string_view ValueIn(std::u16string_view text, std::u16string_view name) {
    const auto found = std::search(text.begin(), text.end(), name.begin(), name.end(),
                                   [](char16_t a, char16_t b) { return Lower(a) == b; });
    text.remove_prefix(static_cast<std::size_t>(found - text.begin()));
    text = Trimmed(text.substr(std::min(name.size(), text.size())));
    if (!text.starts_with(u'='))
        return {};
    text = Trimmed(text.substr(1));
    if (text.starts_with(u'"') || text.starts_with(u'\''))
        return text.substr(1, text.find(text[0], 1) - 1);
    return text.substr(0, text.find_first_of(u" \t\n\f\r;"));
}

std::optional<unsigned> SaidByMeta(std::u16string_view attributes) {
    if (const auto charset = AttributeOf(attributes, u"charset"))
        return CodePageOf(*charset);
    if (!IsSame(AttributeOf(attributes, u"http-equiv").value_or(u""), u"content-type"))
        return {};
    return CodePageOf(ValueIn(AttributeOf(attributes, u"content").value_or(u""), u"charset"));
}

std::optional<unsigned> SaidByPage(std::string_view page) {
    const std::string_view bytes = page.substr(0, headLength);
    std::u16string head;
    for (const char byte : bytes)
        head += static_cast<unsigned char>(byte);
    std::optional<unsigned> said;
    if (head.starts_with(u"<?xml"))
        said = CodePageOf(ValueIn(std::u16string_view(head).substr(0, head.find(u'>')), u"encoding"));
    for (clsTokenizer tokens{head}; !said && tokens.Next();) {
        if (tokens.Kind() == Token::start && IsSame(tokens.Text(), u"meta"))
            said = SaidByMeta(tokens.Attributes());
    }
    return said;
}

// How many bytes follow the first one of a character, and the least and greatest of the next.
struct scLead {
    std::size_t rest;
    unsigned char least = 0x80;
    unsigned char greatest = 0xBF;
};

std::optional<scLead> LeadOf(unsigned char byte) {
    if (byte < 0x80)
        return scLead{0};
    if (byte < 0xC2 || byte > 0xF4)
        return {};
    if (byte < 0xE0)
        return scLead{1};
    if (byte < 0xF0)
        return scLead{2, static_cast<unsigned char>(byte == 0xE0 ? 0xA0 : 0x80),
                      static_cast<unsigned char>(byte == 0xED ? 0x9F : 0xBF)};
    return scLead{3, static_cast<unsigned char>(byte == 0xF0 ? 0x90 : 0x80),
                  static_cast<unsigned char>(byte == 0xF4 ? 0x8F : 0xBF)};
}

bool IsUtf8(std::string_view bytes) {
    for (std::size_t at = 0; at < bytes.size();) {
        const std::optional<scLead> lead = LeadOf(static_cast<unsigned char>(bytes[at++]));
        if (!lead || bytes.size() - at < lead->rest)
            return false;
        for (std::size_t count = 0; count < lead->rest; ++count) {
            const auto byte = static_cast<unsigned char>(bytes[at++]);
            if (count == 0 ? byte < lead->least || byte > lead->greatest : (byte & 0xC0) != 0x80)
                return false;
        }
    }
    return true;
}

} // namespace

scCharset CharsetOf(std::string_view page) {
    if (page.starts_with("\xEF\xBB\xBF"))
        return {utf8, 3};
    if (page.starts_with("\xFF\xFE"))
        return {1200, 2};
    if (page.starts_with("\xFE\xFF"))
        return {1201, 2};
    if (const std::optional<unsigned> said = SaidByPage(page))
        return {*said, 0};
    return {IsUtf8(page) ? utf8 : windows1252, 0};
}

} // namespace tool::html
