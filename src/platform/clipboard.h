// The clipboard and the private format that profiles travel in.
#pragma once

#include "platform/bytes.h"
#include "platform/global_memory.h"

#include <cstddef>

namespace tvut {

// The number of the format of profiles, which the first call registers; 0 when it could not be registered.
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

// A movable block, as the clipboard takes it, with what a source has from its start and zeros after that.
// None when there is no memory for it. Throws what the source throws.
clsGlobalMemory PlatformClipboardMemory(clsByteSource& source, std::size_t bytes);

// Hands a block to the open clipboard. False when it does not take it; the block is freed then.
bool PlatformGiveToClipboard(UINT format, clsGlobalMemory block);

// The whole block that the open clipboard holds under a format, which lives as long as the clipboard is
// open, into a sink. False when there is none; the thread's last error tells why.
bool PlatformReadClipboard(UINT format, clsByteSink& sink);

} // namespace tvut
