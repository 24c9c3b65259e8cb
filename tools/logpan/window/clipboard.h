// Text to the clipboard.
#ifndef LOGPAN_CLIPBOARD_H
#define LOGPAN_CLIPBOARD_H

#include <windows.h>

#include <string_view>

namespace tool::logpan {

// False when another program holds the clipboard, or there is no memory for so much.
bool copyToClipboard(HWND owner, std::wstring_view text);

} // namespace tool::logpan

#endif
