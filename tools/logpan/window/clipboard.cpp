// Hands a movable block over; it is ours only until the clipboard has it.
#include "clipboard.h"

#include <cstring>

namespace tool::logpan {

namespace {

HGLOBAL blockOf(std::wstring_view text) {
    const HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, (text.size() + 1) * sizeof(wchar_t));
    if (block == nullptr)
        return nullptr;
    std::memcpy(GlobalLock(block), text.data(), text.size() * sizeof(wchar_t));
    GlobalUnlock(block);
    return block;
}

} // namespace

bool copyToClipboard(HWND owner, std::wstring_view text) {
    const HGLOBAL block = blockOf(text);
    if (block == nullptr)
        return false;
    bool taken = false;
    if (OpenClipboard(owner)) {
        taken = EmptyClipboard() && SetClipboardData(CF_UNICODETEXT, block) != nullptr;
        CloseClipboard();
    }
    if (!taken)
        GlobalFree(block);
    return taken;
}

} // namespace tool::logpan
