// Readers of addresses differ in what they forgive: a backslash, a user's name, a blank, "%" in a host. What
// is forgiven in two ways leads to two hosts. So nothing is repaired here: an address is taken apart at its
// first marks, and any character that some reader may take for a mark makes it none.
#include "files/url.h"

#include <algorithm>

namespace tvut {

namespace {

constexpr std::u16string_view authorityMark = u"://";

bool IsDigit(char16_t unit) {
    return unit >= u'0' && unit <= u'9';
}

bool IsHexadecimal(char16_t unit) {
    return IsDigit(unit) || ((unit | 0x20) >= u'a' && (unit | 0x20) <= u'f');
}

bool IsControl(char16_t unit) {
    return unit < 0x20 || (unit >= 0x7F && unit < 0xA0) || unit == 0x2028 || unit == 0x2029;
}

bool IsBlank(char16_t unit) {
    return unit == u' ' || unit == 0xA0 || (unit >= 0x2000 && unit <= 0x200B) || unit == 0x202F ||
           unit == 0x205F || unit == 0x3000 || unit == 0xFEFF;
}

bool IsHigh(char16_t unit) {
    return (unit & 0xFC00) == 0xD800;
}

bool IsLow(char16_t unit) {
    return (unit & 0xFC00) == 0xDC00;
}

// What no part of an address may hold.
bool HasForbidden(std::u16string_view url) {
    for (std::size_t at = 0; at < url.size(); ++at) {
        if (IsControl(url[at]) || IsBlank(url[at]) || IsLow(url[at]))
            return true;
        if (IsHigh(url[at]) && (++at == url.size() || !IsLow(url[at])))
            return true;
    }
    return false;
}

// In lower case, a letter at a time: the longest that matters is "https".
bool HasScheme(std::u16string_view url, std::u16string_view scheme) {
    return url.size() > scheme.size() + authorityMark.size() &&
           std::ranges::equal(url.substr(0, scheme.size()), scheme, {},
                              [](char16_t unit) { return static_cast<char16_t>(unit | 0x20); }) &&
           url.substr(scheme.size()).starts_with(authorityMark);
}

UrlScheme SchemeOf(std::u16string_view url) {
    if (HasScheme(url, u"https"))
        return UrlScheme::https;
    return HasScheme(url, u"http") ? UrlScheme::http : UrlScheme::none;
}

bool IsPort(std::u16string_view port) {
    unsigned number = 0;
    for (const char16_t digit : port) {
        number = number * 10 + (digit - u'0');
        if (!IsDigit(digit) || number > 65535)
            return false;
    }
    return true;
}

// An address of IPv6, whose numbers are the service's to read.
bool IsBracketed(std::u16string_view host) {
    return host.size() > 3 && host.front() == u'[' && host.back() == u']' &&
           std::ranges::all_of(host.substr(1, host.size() - 2), [](char16_t unit) {
               return IsHexadecimal(unit) || unit == u':' || unit == u'.';
           });
}

// Without %, which others may read as the character that it stands for.
bool IsName(std::u16string_view host) {
    return !host.empty() && host.find_first_of(u"%@:[]<>\"^`{|}") == host.npos;
}

bool IsAuthority(std::u16string_view authority) {
    const std::size_t bracket = authority.rfind(u']');
    const std::size_t colon = authority.find(u':', bracket == authority.npos ? 0 : bracket);
    const std::u16string_view host = authority.substr(0, colon);
    const std::u16string_view port =
        colon == authority.npos ? std::u16string_view() : authority.substr(colon + 1);
    return (IsName(host) || IsBracketed(host)) && IsPort(port);
}

// Without what would end the line.
void PutVisible(clsDiagnosticLine& line, std::u16string_view text) {
    for (const char16_t& unit : text)
        line.Put(IsControl(unit) ? std::u16string_view(u"?") : std::u16string_view(&unit, 1));
}

} // namespace

UrlScheme UtilpUrlScheme(std::u16string_view url) noexcept {
    const UrlScheme scheme = url.size() <= longestUrl ? SchemeOf(url) : UrlScheme::none;
    if (scheme == UrlScheme::none || HasForbidden(url) ||
        url.substr(0, url.find_first_of(u"?#")).find(u'\\') != url.npos)
        return UrlScheme::none;
    const std::u16string_view rest = url.substr(url.find(authorityMark) + authorityMark.size());
    return IsAuthority(rest.substr(0, rest.find_first_of(u"/?#"))) ? scheme : UrlScheme::none;
}

void UtilpPutUrl(clsDiagnosticLine& line, std::u16string_view url) noexcept {
    const std::u16string_view shown = url.substr(0, url.find_first_of(u"?#"));
    // A password may hold a slash that should not stand there: all before the last @ goes.
    const std::size_t user = shown.rfind(u'@');
    const std::size_t mark = shown.find(authorityMark);
    if (user == shown.npos)
        return PutVisible(line, shown);
    if (mark < shown.find(u'@'))
        PutVisible(line, shown.substr(0, mark + authorityMark.size()));
    PutVisible(line, shown.substr(user + 1));
}

} // namespace tvut
