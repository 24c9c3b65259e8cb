// Text to the clipboard.
#pragma once

#include <windows.h>

#include <string_view>

namespace tool::logpan {

// False when another program holds the clipboard, or there is not enough memory.
bool CopyToClipboard(HWND owner, std::wstring_view text);

} // namespace tool::logpan
