// Hands a movable block over; it is ours only until the clipboard has it.
#include "clipboard.h"

#include <cstring>
#include <memory>

namespace tool::logpan {

namespace {

struct scFreeBlock {
    void operator()(HGLOBAL block) const { GlobalFree(block); }
};
using Block = std::unique_ptr<void, scFreeBlock>;

Block BlockOf(std::wstring_view text) {
    Block block{GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, (text.size() + 1) * sizeof(wchar_t))};
    if (block) {
        std::memcpy(GlobalLock(block.get()), text.data(), text.size() * sizeof(wchar_t));
        GlobalUnlock(block.get());
    }
    return block;
}

} // namespace

bool CopyToClipboard(HWND owner, std::wstring_view text) {
    Block block = BlockOf(text);
    if (!block || !OpenClipboard(owner))
        return false;
    const bool taken = EmptyClipboard() && SetClipboardData(CF_UNICODETEXT, block.get()) != nullptr;
    CloseClipboard();
    if (taken)
        (void)block.release(); // the clipboard's now
    return taken;
}

} // namespace tool::logpan
