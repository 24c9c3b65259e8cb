// Bytes become units one by one, whatever characters they are, so that what does not change goes back as it
// came. Only what is new is converted.
#include "ini_encoding.h"

#include "head_text.h"

#include <tvut22/prof.h>

#include <limits>
#include <new>

namespace tool::prof {

namespace {

constexpr std::size_t lookAhead = 64 * 1024;

bool IsUtf8(std::string_view bytes) {
    return bytes.empty() || MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, bytes.data(),
                                                static_cast<int>(bytes.size()), nullptr, 0) > 0;
}

char16_t Swapped(char16_t unit) {
    return static_cast<char16_t>(unit << 8 | unit >> 8);
}

// Empty when it has not all of the characters.
std::string ToCodePage(std::wstring_view text, UINT codePage) {
    const bool isUtf8 = codePage == CP_UTF8; // has all, and none of these options
    BOOL isReplaced = FALSE;
    std::string bytes(text.size() * 4, '\0');
    const int length = WideCharToMultiByte(
        codePage, isUtf8 ? 0 : WC_NO_BEST_FIT_CHARS, text.data(), static_cast<int>(text.size()), bytes.data(),
        static_cast<int>(bytes.size()), nullptr, isUtf8 ? nullptr : &isReplaced);
    bytes.resize(isReplaced ? 0 : static_cast<std::size_t>(length));
    return bytes;
}

std::u16string Widened(std::string_view bytes) {
    std::u16string units;
    units.reserve(bytes.size());
    for (const char byte : bytes)
        units += static_cast<unsigned char>(byte);
    return units;
}

} // namespace

clsIniEncoding::clsIniEncoding(std::string_view bytes) : form_(Form::codePage), mark_(0) {
    if (bytes.size() > static_cast<std::size_t>(std::numeric_limits<int>::max()))
        throw std::bad_alloc{};
    if (bytes.starts_with("\xff\xfe") || bytes.starts_with("\xfe\xff")) {
        form_ = bytes.front() == '\xff' ? Form::utf16 : Form::swappedUtf16;
        mark_ = 2;
    } else if (bytes.starts_with("\xef\xbb\xbf")) {
        form_ = Form::utf8;
        mark_ = 3;
    } else if (LooksLikeUtf16(bytes.substr(0, lookAhead))) {
        form_ = Form::utf16;
    } else if (IsUtf8(bytes)) {
        form_ = Form::utf8;
    }
}

std::u16string clsIniEncoding::Units(std::string_view bytes) const {
    bytes.remove_prefix(mark_);
    if (!IsWide())
        return Widened(bytes);
    std::u16string units(bytes.size() / sizeof(char16_t), u'\0');
    bytes.copy(reinterpret_cast<char*>(units.data()), units.size() * sizeof(char16_t));
    if (form_ == Form::swappedUtf16)
        for (char16_t& unit : units)
            unit = Swapped(unit);
    return units;
}

std::string clsIniEncoding::Bytes(std::u16string_view units, std::string_view bytes) const {
    std::string result{bytes.substr(0, mark_)};
    for (const char16_t unit : units) {
        const char16_t ordered = form_ == Form::swappedUtf16 ? Swapped(unit) : unit;
        result += static_cast<char>(ordered);
        if (IsWide())
            result += static_cast<char>(ordered >> 8);
    }
    const bool endsInHalf = IsWide() && bytes.size() % sizeof(char16_t) != 0;
    return endsInHalf ? result + bytes.back() : result;
}

std::optional<std::u16string> clsIniEncoding::Encoded(std::wstring_view text) const {
    if (IsWide())
        return std::u16string{text.begin(), text.end()};
    if (text.empty())
        return std::u16string{};
    const std::string bytes =
        ToCodePage(text, form_ == Form::utf8 ? CP_UTF8 : ProfGetOption(PROF_OPTION_CODE_PAGE));
    return bytes.empty() ? std::nullopt : std::optional{Widened(bytes)};
}

} // namespace tool::prof
