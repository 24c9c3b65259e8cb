// Where the frame of the function that asks is, and where its thread's stack ends.
#pragma once

#include "platform/inline.h"
#include "platform/this_thread.h"

#ifdef _MSC_VER
#include <intrin.h>
#endif

namespace tvut {

// Two words: the caller's frame, and the address that the function returns to. Functions of this library
// have one always.
TVUT_ALWAYS_INLINE const void* PlatformOwnFrame() noexcept {
#ifdef _MSC_VER
    return static_cast<void**>(_AddressOfReturnAddress()) - 1;
#else
    return __builtin_frame_address(0);
#endif
}

inline const void* PlatformStackEnd() noexcept {
    return static_cast<const NT_TIB*>(PlatformThisThread())->StackBase;
}

} // namespace tvut
