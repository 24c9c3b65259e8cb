// The clipboard and the private format that profiles travel in.
#pragma once

#include "platform/bytes.h"
#include "platform/owned.h"

#include <cstddef>

namespace tvut {

// Registers the format of profiles; called once, when the library is loaded.
void PlatformRegisterProfileFormat() noexcept;

// The number of the format, 0 when it could not be registered.
UINT PlatformProfileFormat() noexcept;

// The clipboard, open while the object lives; what others keep open is waited for a moment.
class clsClipboard {
  public:
    explicit clsClipboard(HWND owner);
    clsClipboard(const clsClipboard&) = delete;
    clsClipboard& operator=(const clsClipboard&) = delete;
    ~clsClipboard();

    explicit operator bool() const { return open_; }

  private:
    bool open_;
};

struct scGlobalMemoryPolicy {
    using Value = HGLOBAL;
    static Value None() noexcept { return nullptr; }
    static void Close(Value value) noexcept { GlobalFree(value); }
};

// A movable block, as the clipboard takes it; zero at first, none when there is no memory for it.
class clsGlobalMemory {
  public:
    explicit clsGlobalMemory(std::size_t bytes);
    explicit operator bool() const { return static_cast<bool>(block_); }

    // Fills the block from its start.
    void Fill(clsByteSource& source);
    void Fill(const void* data, std::size_t bytes);

    // Hands the block to the open clipboard. False when it does not take it.
    bool Give(UINT format);

  private:
    clsOwned<scGlobalMemoryPolicy> block_;
    std::size_t size_;
};

// The whole block that the open clipboard holds under a format, which lives as long as the clipboard is
// open, into a sink. False when there is none; the thread's last error tells why.
bool PlatformReadClipboard(UINT format, clsByteSink& sink);

} // namespace tvut
