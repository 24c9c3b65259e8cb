// The system's conversions count in int and fail by returning 0, which is also the length of what comes
// from no bytes; only the last error tells the two apart. A code page that the machine does not have is
// replaced by the process's own.
#include "platform/code_page.h"

#include "platform/exception.h"
#include "platform/wide.h"

#include <limits>
#include <windows.h>

namespace tvut {

namespace {

// Asked once, when the library is loaded.
const unsigned processCodePage = GetACP();

unsigned Usable(unsigned codePage) {
    return IsValidCodePage(codePage) ? codePage : processCodePage;
}

int Length(std::size_t length) {
    if (length > static_cast<std::size_t>(std::numeric_limits<int>::max()))
        throw clsException("text too long for the system's conversion");
    return static_cast<int>(length);
}

bool IsUtf8Trail(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

} // namespace

unsigned PlatformProcessCodePage() noexcept {
    return processCodePage;
}

unsigned PlatformOemCodePage() noexcept {
    return GetOEMCP();
}

std::size_t PlatformDecode(unsigned codePage, std::string_view bytes, char16_t* characters) {
    if (bytes.empty())
        return 0;
    const int length = Length(bytes.size());
    SetLastError(ERROR_SUCCESS);
    const int converted =
        MultiByteToWideChar(Usable(codePage), 0, bytes.data(), length, ToWide(characters), length);
    if (converted == 0 && GetLastError() != ERROR_SUCCESS) // some bytes alone are no character
        throw clsException("text cannot be converted from its code page");
    return static_cast<std::size_t>(converted);
}

std::size_t PlatformEncodedSize(unsigned codePage, std::u16string_view text) {
    return PlatformEncode(codePage, text, nullptr, 0);
}

std::size_t PlatformEncode(unsigned codePage, std::u16string_view text, char* bytes, std::size_t size) {
    if (text.empty())
        return 0;
    const int converted = WideCharToMultiByte(Usable(codePage), 0, ToWide(text.data()), Length(text.size()),
                                              bytes, Length(size), nullptr, nullptr);
    if (converted == 0)
        throw clsException("text cannot be converted to its code page");
    return static_cast<std::size_t>(converted);
}

std::size_t PlatformWholeCharacters(unsigned codePage, std::string_view text, std::size_t bytes) {
    if (text.size() <= bytes)
        return text.size();
    codePage = Usable(codePage);
    if (codePage == codePageUtf8) {
        while (bytes > 0 && IsUtf8Trail(text[bytes]))
            --bytes;
        return bytes;
    }
    std::size_t whole = 0;
    while (whole < bytes) {
        const std::size_t next = whole + (IsDBCSLeadByteEx(codePage, static_cast<BYTE>(text[whole])) ? 2 : 1);
        if (next > bytes)
            break;
        whole = next;
    }
    return whole;
}

} // namespace tvut
