#include "platform/account_text.h"

#include <algorithm>
#include <limits>

namespace tvut {

namespace {

constexpr std::u16string_view sidStart = u"S-1-";
constexpr std::u16string_view digits = u"0123456789abcdef";
constexpr std::uint64_t mostAuthority = (std::uint64_t{1} << 48) - 1;

char16_t Lower(char16_t unit) {
    return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit | 0x20) : unit;
}

// The number that a text consists of; none for any other text, and beyond the most.
std::optional<std::uint64_t> Number(std::u16string_view text, unsigned base, std::uint64_t most) {
    if (text.empty())
        return {};
    std::uint64_t number = 0;
    for (const char16_t unit : text) {
        const std::size_t digit = digits.substr(0, base).find(Lower(unit));
        if (digit == digits.npos)
            return {};
        number = number * base + digit;
        if (number > most)
            return {};
    }
    return number;
}

std::optional<std::uint64_t> Authority(std::u16string_view text) {
    const bool isHexadecimal = text.size() > 2 && text[0] == u'0' && Lower(text[1]) == u'x';
    return isHexadecimal ? Number(text.substr(2), 16, mostAuthority) : Number(text, 10, mostAuthority);
}

// Takes what stands before the next "-" off a text, and the "-".
std::u16string_view TakePart(std::u16string_view& text) {
    const std::size_t end = std::min(text.find(u'-'), text.size());
    const std::u16string_view part = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    return part;
}

} // namespace

bool PlatformIsSidText(std::u16string_view text) noexcept {
    return text.size() >= sidStart.size() &&
           std::equal(sidStart.begin(), sidStart.end(), text.begin(),
                      [](char16_t a, char16_t b) { return Lower(a) == Lower(b); });
}

std::optional<scSid> PlatformParseSid(std::u16string_view text) noexcept {
    if (!PlatformIsSidText(text) || text.ends_with(u'-'))
        return {};
    text.remove_prefix(sidStart.size());
    const std::optional<std::uint64_t> authority = Authority(TakePart(text));
    if (!authority || text.empty())
        return {};
    scSid sid;
    for (std::size_t at = 0; at < sid.authority.size(); ++at)
        sid.authority[at] = static_cast<std::uint8_t>(*authority >> (40 - 8 * at));
    while (!text.empty()) {
        const std::optional<std::uint64_t> part =
            Number(TakePart(text), 10, std::numeric_limits<std::uint32_t>::max());
        if (!part || sid.partCount == scSid::mostParts)
            return {};
        sid.parts[sid.partCount++] = static_cast<std::uint32_t>(*part);
    }
    return sid;
}

clsSidText::clsSidText(const scSid& sid) noexcept {
    Put(sidStart);
    if (sid.authority[0] != 0 || sid.authority[1] != 0) {
        Put(u"0x");
        for (const std::uint8_t byte : sid.authority)
            for (const int digit : {byte >> 4, byte & 0xF})
                Put(digits.substr(static_cast<std::size_t>(digit), 1));
    } else {
        std::uint32_t authority = 0;
        for (const std::uint8_t byte : sid.authority)
            authority = authority << 8 | byte;
        Put(authority);
    }
    for (std::size_t at = 0; at < sid.partCount && at < scSid::mostParts; ++at) {
        Put(u"-");
        Put(sid.parts[at]);
    }
}

void clsSidText::Put(std::u16string_view text) noexcept {
    std::copy(text.begin(), text.end(), text_.begin() + static_cast<std::ptrdiff_t>(length_));
    length_ += text.size();
}

void clsSidText::Put(std::uint32_t number) noexcept {
    std::array<char16_t, 10> reversed;
    std::size_t count = 0;
    do {
        reversed[count++] = digits[number % 10];
        number /= 10;
    } while (number != 0);
    while (count > 0)
        text_[length_++] = reversed[--count];
}

std::optional<scAccountName> PlatformSplitAccount(std::u16string_view account) noexcept {
    if (account.empty() || account.size() > longestAccount)
        return {};
    const std::size_t separator = account.find(u'\\');
    if (separator == account.npos)
        return scAccountName{{}, account};
    const scAccountName split{account.substr(0, separator), account.substr(separator + 1)};
    if (split.domain.empty() || split.name.empty() || split.name.find(u'\\') != split.name.npos)
        return {};
    return split;
}

} // namespace tvut
