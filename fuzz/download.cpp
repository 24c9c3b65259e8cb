// Any address and any server: each line of the input is the address, then one thing that happens. What is let
// through is never more than the limit, never from a place that was not allowed, and never half.
#include "files/download_rules.h"
#include "require.h"

#include <algorithm>
#include <string>

using namespace tvut;

namespace {

constexpr std::uint64_t limit = 1000;

// Bytes, with 0x80 to 0xFF as units far beyond the letters, surrogates among them.
std::u16string Units(std::string_view bytes) {
    std::u16string units;
    for (const char byte : bytes) {
        const auto value = static_cast<unsigned char>(byte);
        units += static_cast<char16_t>(value < 0x80 ? value : value * 0x101 + 0x2020);
    }
    return units;
}

void CheckAddress(const std::u16string& url) {
    clsDiagnosticLine line;
    UtilpPutUrl(line, url);
    Require(line.View().find_first_of(u"#\r\n@") == std::u16string_view::npos);
    const UrlScheme scheme = UtilpUrlScheme(url);
    if (scheme == UrlScheme::none)
        return;
    Require(url.size() <= longestUrl && url.find_first_of(u"\r\n\t ") == url.npos);
    const std::size_t host = url.find(u"://") + 3;
    const std::size_t end = std::min(url.find_first_of(u"/?#\\", host), url.size());
    Require(end > host && url.find(u'@', host) >= end);
    Require(UtilpUrlScheme(url.substr(0, host) + u"u@" + url.substr(host)) == UrlScheme::none);
    Require(UtilpUrlScheme(url.substr(0, end)) == scheme); // the host alone tells
}

// Lets a line happen, whose first character says what it is.
void Happen(clsDownloadRules& rules, std::u16string_view line, bool& isHttps) {
    const bool wasFine = !rules.Fault();
    const std::uint64_t before = rules.Done();
    const char16_t kind = line.empty() ? u'.' : line.front();
    const std::u16string text(line.substr(line.empty() ? 0 : 1));
    bool goesOn = false;
    if (kind == u'>') {
        goesOn = rules.Redirected(text, 302);
        const UrlScheme scheme = UtilpUrlScheme(text);
        Require(!goesOn || scheme == UrlScheme::https || (scheme == UrlScheme::http && !isHttps));
        isHttps = scheme == UrlScheme::https;
    } else if (kind == u'+') {
        goesOn = rules.Received(text.size() * 100);
        Require(!goesOn || rules.Done() == before + text.size() * 100);
    } else if (kind == u'.') {
        goesOn = rules.Completed();
        Require(!goesOn || (rules.Status() >= 200 && rules.Status() <= 299));
        Require(!goesOn || rules.Total() == 0 || rules.Total() == rules.Done());
    } else if (kind == u'!') {
        rules.Failed(0x800C0000u + static_cast<std::uint32_t>(text.size()));
    } else {
        goesOn = rules.Answered(kind == u'=' ? 200 : kind, text);
    }
    Require(wasFine || !goesOn);
    Require(goesOn == !rules.Fault());
    Require(rules.Done() <= limit && (!goesOn || rules.Total() <= limit));
    Require((UtilpResultOf(rules.Fault()) == UtilResult::ok) == !rules.Fault());
    clsDiagnosticLine reason;
    UtilpPutReason(reason, rules.Fault());
    Require(reason.View().find_first_of(u"\r\n") == std::u16string_view::npos);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    std::size_t end = std::min(input.find('\n'), size);
    const std::u16string url = Units(input.substr(0, end));
    CheckAddress(url);
    clsDownloadRules rules(url, size % 2 == 1, limit);
    bool isHttps = UtilpUrlScheme(url) == UrlScheme::https;
    while (end < size) {
        const std::size_t at = end + 1;
        end = std::min(input.find('\n', at), size);
        std::u16string line = Units(input.substr(at, end - at));
        CheckAddress(line);
        for (char16_t& unit : line) // heads have lines of their own
            unit = unit == u'|' ? u'\n' : unit;
        Happen(rules, line, isHttps);
    }
    return 0;
}
