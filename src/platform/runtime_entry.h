// The entry point of DLLs in the compiler's runtime: it makes and destroys static objects around DllMain.
#pragma once

#include <windows.h>

#ifdef _MSC_VER
extern "C" BOOL WINAPI _DllMainCRTStartup(HINSTANCE, DWORD, void*);
#else
extern "C" BOOL WINAPI DllMainCRTStartup(HINSTANCE, DWORD, void*);
#endif

namespace tvut {

inline BOOL PlatformRuntimeEntry(HINSTANCE module, DWORD reason, void* processEnds) noexcept {
#ifdef _MSC_VER
    return _DllMainCRTStartup(module, reason, processEnds);
#else
    return DllMainCRTStartup(module, reason, processEnds);
#endif
}

} // namespace tvut
