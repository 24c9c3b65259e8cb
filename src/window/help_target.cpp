// Addresses are written as RFC 3986 has them: characters that may stand in a path or a fragment stay, all
// others become the bytes of their UTF-8 as %XX.
#include "window/help_target.h"

#include "text/encoding/utf8.h"

#include <algorithm>
#include <array>

namespace tvut {

namespace {

constexpr char16_t Lower(char16_t unit) {
    return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + 0x20) : unit;
}

bool EqualsInAnyCase(std::u16string_view text, std::u16string_view lower) {
    return std::equal(text.begin(), text.end(), lower.begin(), lower.end(),
                      [](char16_t one, char16_t other) { return Lower(one) == other; });
}

struct scEnding {
    std::u16string_view ending;
    HelpViewer viewer;
};
constexpr scEnding endings[] = {
    {u".chm", HelpViewer::compiled}, {u".htm", HelpViewer::browser}, {u".html", HelpViewer::browser},
    {u".pdf", HelpViewer::shell},    {u".txt", HelpViewer::shell},
};

void PutHexByte(std::u16string& out, unsigned byte) {
    constexpr std::u16string_view figures = u"0123456789ABCDEF";
    out += {u'%', figures[byte >> 4], figures[byte & 0xF]};
}

// RFC 3986, section 3.3: what a segment of a path may hold, and "/".
constexpr bool MayStandInPath(char16_t unit) {
    return (unit >= u'0' && unit <= u'9') || (Lower(unit) >= u'a' && Lower(unit) <= u'z') ||
           std::u16string_view(u"-._~!$&'()*+,;=:@/").find(unit) != std::u16string_view::npos;
}

// Section 3.5: the same, and "?".
constexpr bool MayStandInFragment(char16_t unit) {
    return MayStandInPath(unit) || unit == u'?';
}

constexpr bool IsLowSurrogate(char16_t unit) {
    return unit >= 0xDC00 && unit < 0xE000;
}

template <class MayStand>
void PutEncoded(std::u16string& out, std::u16string_view text, MayStand mayStand) {
    while (!text.empty()) {
        const std::size_t plain =
            static_cast<std::size_t>(std::find_if_not(text.begin(), text.end(), mayStand) - text.begin());
        out += text.substr(0, plain);
        text.remove_prefix(plain);
        if (text.empty())
            return;
        const bool isPair = text.size() > 1 && UtilpIsHighSurrogate(text[0]) && IsLowSurrogate(text[1]);
        const std::size_t units = isPair ? 2 : 1;
        std::array<char, 2 * longestUtf8> bytes;
        const std::size_t count = UtilpEncodeUtf8(text.substr(0, units), bytes.data());
        for (std::size_t i = 0; i < count; ++i)
            PutHexByte(out, static_cast<unsigned char>(bytes[i]));
        text.remove_prefix(units);
    }
}

// "C:\Help\a b.htm" as "file:///C:/Help/a%20b.htm", "\\server\share\a.htm" as "file://server/share/a.htm".
std::u16string FileAddress(std::u16string_view fullPath) {
    std::u16string slashes(fullPath);
    std::replace(slashes.begin(), slashes.end(), u'\\', u'/');
    std::u16string address(slashes.starts_with(u"//") ? u"file:" : u"file:///");
    PutEncoded(address, slashes, MayStandInPath);
    return address;
}

// What comes after "#" takes the place of what the address has there.
std::u16string BrowserAddress(std::u16string_view file, std::u16string_view part) {
    std::u16string address = UtilpIsWebAddress(file) ? std::u16string(file) : FileAddress(file);
    if (part.starts_with(u'#'))
        part.remove_prefix(1);
    if (part.empty())
        return address;
    address.resize(std::min(address.find(u'#'), address.size()));
    address += u'#';
    PutEncoded(address, part, MayStandInFragment);
    return address;
}

std::u16string Decimal(std::uint32_t number) {
    std::u16string text;
    do
        text.insert(text.begin(), static_cast<char16_t>(u'0' + number % 10));
    while ((number /= 10) != 0);
    return text;
}

scHelpTarget CompiledTarget(std::u16string_view file, const scHelpRequest& request) {
    std::u16string text(file);
    if (request.page == HelpPage::context)
        return {HelpCall::helpContext, std::move(text)};
    if (request.page == HelpPage::keyword)
        return {request.text.empty() ? HelpCall::displayIndex : HelpCall::keywordLookup, std::move(text)};
    if (!request.text.empty())
        text.append(u"::").append(request.text.starts_with(u'/') ? u"" : u"/").append(request.text);
    return {HelpCall::displayTopic, std::move(text)};
}

scHelpTarget BrowserTarget(std::u16string_view file, const scHelpRequest& request) {
    if (request.page == HelpPage::keyword)
        return {HelpCall::none, {}};
    return {HelpCall::openAddress, request.page == HelpPage::topic
                                       ? BrowserAddress(file, request.text)
                                       : BrowserAddress(file, Decimal(request.id))};
}

} // namespace

bool UtilpIsWebAddress(std::u16string_view file) noexcept {
    return EqualsInAnyCase(file.substr(0, 5), u"http:") || EqualsInAnyCase(file.substr(0, 6), u"https:");
}

HelpViewer UtilpHelpViewer(std::u16string_view file) noexcept {
    if (UtilpIsWebAddress(file))
        return HelpViewer::browser;
    const std::u16string_view ending = file.substr(std::min(file.rfind(u'.'), file.size()));
    const auto* const row = std::find_if(std::begin(endings), std::end(endings), [&](const scEnding& known) {
        return EqualsInAnyCase(ending, known.ending);
    });
    return row == std::end(endings) ? HelpViewer::none : row->viewer;
}

scHelpTarget UtilpHelpTarget(std::u16string_view file, const scHelpRequest& request) {
    switch (UtilpHelpViewer(file)) {
    case HelpViewer::compiled:
        return CompiledTarget(file, request);
    case HelpViewer::browser:
        return BrowserTarget(file, request);
    case HelpViewer::shell:
        return {HelpCall::openFile, std::u16string(file)};
    default:
        return {HelpCall::none, {}};
    }
}

// FNV-1a, 64 bits, over the units. A chance that two paths share a folder costs a copy more, nothing else.
std::u16string UtilpHelpCopyFolder(std::u16string_view fullPath) {
    std::uint64_t hash = 0xCBF29CE484222325;
    for (const char16_t unit : fullPath)
        hash = (hash ^ unit) * 0x100000001B3;
    std::u16string name(16, u'0');
    for (char16_t& figure : name) {
        figure = u"0123456789abcdef"[hash >> 60];
        hash <<= 4;
    }
    return name;
}

// "[ZoneTransfer]", "ZoneId=3" and other lines. Zone 3 is the internet, 4 its restricted sites.
bool UtilpIsFromOutside(std::string_view zoneIdentifier) noexcept {
    constexpr std::string_view key = "ZoneId=";
    for (std::size_t at = 0; (at = zoneIdentifier.find(key, at)) != std::string_view::npos;) {
        const bool beginsLine = at == 0 || zoneIdentifier[at - 1] == '\n' || zoneIdentifier[at - 1] == '\r';
        at += key.size();
        if (beginsLine && at < zoneIdentifier.size())
            return zoneIdentifier[at] == '3' || zoneIdentifier[at] == '4';
    }
    return false;
}

} // namespace tvut
