// Results that are delivered as strings of the OLE allocator.
#pragma once

#include <cstddef>
#include <string_view>

#include <windows.h>

#include <oleauto.h>

namespace tvut {

// Gives a string a new length, at its address where that can be, or makes one. Its text is undefined
// afterwards. False when there is no memory; the string is as it was then.
bool PlatformResize(BSTR& string, std::size_t length) noexcept;

// Makes a string shorter and keeps its text. When there is no memory even for that, it is freed and null.
void PlatformShorten(BSTR& string, std::size_t length) noexcept;

// Frees a string; it is null then.
void PlatformDiscard(BSTR& string) noexcept;

// Gives a string a text, which may not be part of it; leaves it as it was when there is no memory.
void PlatformAssign(BSTR& string, std::u16string_view text) noexcept;

// Whether a text begins within a string.
bool PlatformIsPartOf(const wchar_t* text, BSTR string) noexcept;

} // namespace tvut
