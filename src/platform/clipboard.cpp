// The clipboard is one for all programs of a desktop, and is opened by one at a time: who finds it taken
// tries again for a fifth of a second. Memory that was put there belongs to the system from then on.
#include "platform/clipboard.h"

#include <atomic>

namespace tvut {

namespace {

constexpr int openAttempts = 20;
constexpr DWORD openInterval = 10; // milliseconds

std::atomic<UINT> profileFormat = 0;

// Clipboard viewers and remote desktops open the clipboard for moments whenever it changes.
bool Open(HWND owner) {
    for (int attempt = 1; !OpenClipboard(owner); ++attempt) {
        if (attempt == openAttempts)
            return false;
        Sleep(openInterval);
    }
    return true;
}

} // namespace

// A process may have no windows, or no window station, when the library is loaded, and be given one later.
UINT PlatformProfileFormat() noexcept {
    if (profileFormat == 0)
        profileFormat = RegisterClipboardFormatW(L"QmzProfCBFormat");
    return profileFormat;
}

clsClipboard::clsClipboard(HWND owner) : open_(Open(owner)) {}

clsClipboard::~clsClipboard() {
    if (!open_)
        return;
    const clsLastErrorKept lastError;
    CloseClipboard();
}

clsGlobalMemory PlatformClipboardMemory(clsByteSource& source, std::size_t bytes) {
    clsGlobalMemory block(GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT | GMEM_SHARE, bytes));
    if (!block)
        return block;
    const clsLockedMemory locked(block.Get());
    auto* const data = static_cast<char*>(locked.Data());
    for (std::size_t filled = 0, read = 1; read != 0 && filled < bytes; filled += read)
        read = source.Read(data + filled, bytes - filled);
    return block;
}

bool PlatformGiveToClipboard(UINT format, clsGlobalMemory block) {
    if (!SetClipboardData(format, block.Get()))
        return false;
    block.Take();
    return true;
}

bool PlatformReadClipboard(UINT format, clsByteSink& sink) {
    SetLastError(ERROR_NOT_FOUND);
    const HGLOBAL block = IsClipboardFormatAvailable(format) ? GetClipboardData(format) : nullptr;
    if (!block)
        return false;
    const clsLockedMemory locked(block);
    if (!locked.Data())
        return false;
    sink.Extend(clsByteSink::unknownLength);
    sink.Write(locked.Data(), locked.Size());
    sink.Finish();
    return true;
}

} // namespace tvut
