// The entry point of DLLs in the compiler's runtime: it makes and destroys static objects around DllMain.
#pragma once

#include <windows.h>

extern "C" BOOL WINAPI DllMainCRTStartup(HINSTANCE, DWORD, void*);

namespace tvut {

inline BOOL PlatformRuntimeEntry(HINSTANCE module, DWORD reason, void* processEnds) noexcept {
    return DllMainCRTStartup(module, reason, processEnds);
}

} // namespace tvut
