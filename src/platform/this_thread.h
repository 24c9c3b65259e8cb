// The calling thread as a pointer that no other has: its block, which is found without a call.
#pragma once

#include <windows.h>

namespace tvut {

inline const void* PlatformThisThread() noexcept {
#ifdef _MSC_VER
    return NtCurrentTeb();
#else // whose NtCurrentTeb the compiler warns of
    const void* block;
    __asm__("movl %%fs:0x18, %0" : "=r"(block));
    return block;
#endif
}

} // namespace tvut
