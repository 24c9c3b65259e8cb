// Values of the registry.
#pragma once

#include "platform/owned.h"

#include <optional>
#include <string>

namespace tvut {

// A DWORD value; none when the key or the value is not there or is of another type.
std::optional<DWORD> PlatformReadDword(HKEY root, const wchar_t* key, const wchar_t* name) noexcept;

// A string value, environment variables in it expanded; empty when it is not there.
std::wstring PlatformReadText(HKEY root, const wchar_t* key, const wchar_t* name);

} // namespace tvut
