// The clipboard is one for all programs of a desktop, and is opened by one at a time: who finds it taken
// tries again for a fifth of a second. Memory that was put there belongs to the system from then on.
#include "platform/clipboard.h"

#include "platform/exception.h"

#include <atomic>
#include <cstring>

namespace tvut {

namespace {

constexpr int openAttempts = 20;
constexpr DWORD openInterval = 10; // milliseconds

std::atomic<UINT> profileFormat = 0;

struct scLockPolicy {
    using Value = HGLOBAL;
    static Value None() noexcept { return nullptr; }
    static void Close(Value value) noexcept { GlobalUnlock(value); }
};

// The memory of a movable block while the object lives.
class clsLockedBlock {
  public:
    explicit clsLockedBlock(HGLOBAL block)
        : data_(static_cast<char*>(GlobalLock(block))), lock_(data_ ? block : nullptr) {}
    char* Data() const { return data_; } // none for a block that is no memory

  private:
    char* data_;
    clsOwned<scLockPolicy> lock_;
};

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

void PlatformRegisterProfileFormat() noexcept {
    profileFormat = RegisterClipboardFormatW(L"QmzProfCBFormat");
}

// A process may be loaded without a window station and be given one later.
UINT PlatformProfileFormat() noexcept {
    if (profileFormat == 0)
        PlatformRegisterProfileFormat();
    return profileFormat;
}

clsClipboard::clsClipboard(HWND owner) : open_(Open(owner)) {}

clsClipboard::~clsClipboard() {
    if (!open_)
        return;
    const clsLastErrorKept lastError;
    CloseClipboard();
}

clsGlobalMemory::clsGlobalMemory(std::size_t bytes)
    : block_(GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT | GMEM_SHARE, bytes)), size_(bytes) {}

void clsGlobalMemory::Fill(clsByteSource& source) {
    const clsLockedBlock locked(block_.Get());
    for (std::size_t filled = 0, read = 1; read != 0 && filled < size_; filled += read)
        read = source.Read(locked.Data() + filled, size_ - filled);
}

void clsGlobalMemory::Fill(const void* data, std::size_t bytes) {
    const clsLockedBlock locked(block_.Get());
    std::memcpy(locked.Data(), data, bytes);
}

bool clsGlobalMemory::Give(UINT format) {
    if (!SetClipboardData(format, block_.Get()))
        return false;
    block_.Release();
    return true;
}

bool PlatformReadClipboard(UINT format, clsByteSink& sink) {
    SetLastError(ERROR_NOT_FOUND);
    const HGLOBAL block = IsClipboardFormatAvailable(format) ? GetClipboardData(format) : nullptr;
    if (!block)
        return false;
    const clsLockedBlock locked(block);
    if (!locked.Data())
        return false;
    sink.Write(locked.Data(), GlobalSize(block));
    sink.Finish();
    return true;
}

} // namespace tvut
