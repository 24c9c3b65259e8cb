// A string that is there is reallocated rather than replaced: callers keep theirs for the next call, and the
// OLE allocator keeps a block that is large enough.
#include "platform/ole_string.h"

#include "platform/wide.h"

#include <limits>

namespace tvut {

namespace {

constexpr std::size_t longest = std::numeric_limits<INT>::max() / sizeof(wchar_t);

bool Set(BSTR& string, const wchar_t* text, std::size_t length) noexcept {
    if (length > longest)
        return false;
    const auto count = static_cast<UINT>(length);
    if (string)
        return SysReAllocStringLen(&string, text, count) != FALSE;
    string = SysAllocStringLen(text, count);
    return string != nullptr;
}

} // namespace

bool PlatformResize(BSTR& string, std::size_t length) noexcept {
    return Set(string, nullptr, length);
}

void PlatformShorten(BSTR& string, std::size_t length) noexcept {
    if (SysStringLen(string) != length && !Set(string, nullptr, length)) // null keeps the characters
        PlatformDiscard(string);
}

void PlatformDiscard(BSTR& string) noexcept {
    SysFreeString(string);
    string = nullptr;
}

void PlatformAssign(BSTR& string, std::u16string_view text) noexcept {
    Set(string, text.empty() ? L"" : ToWide(text.data()), text.size());
}

bool PlatformIsPartOf(const wchar_t* text, BSTR string) noexcept {
    return string && text >= string && text <= string + SysStringLen(string);
}

} // namespace tvut
