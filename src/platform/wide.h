// Where wchar_t, which Windows and its callers use, and char16_t, which this library uses, meet.
//
// On Windows both are UTF-16 units of 16 bits. No text is accessed as both types within one
// translation unit, so the compiler cannot be misled about aliasing.
#pragma once

#include <string_view>

namespace tvut {

static_assert(sizeof(wchar_t) == sizeof(char16_t));

inline const char16_t* FromWide(const wchar_t* text) noexcept {
    return reinterpret_cast<const char16_t*>(text);
}
inline char16_t* FromWide(wchar_t* text) noexcept {
    return reinterpret_cast<char16_t*>(text);
}
inline const wchar_t* ToWide(const char16_t* text) noexcept {
    return reinterpret_cast<const wchar_t*>(text);
}
inline wchar_t* ToWide(char16_t* text) noexcept {
    return reinterpret_cast<wchar_t*>(text);
}

inline std::u16string_view FromWide(std::wstring_view text) noexcept {
    return {FromWide(text.data()), text.size()};
}

} // namespace tvut
