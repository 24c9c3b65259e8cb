// Hooks of threads: CBT, and Ctrl+Break.
#pragma once

#include "runtime/result.h"

#include <tvut22/window.h>

#include <cstdint>

namespace tvut {

// Both throw clsException, std::bad_alloc.
std::uint32_t UtilpHookCBT(UtilCBTProc proc, UINT_PTR user);
std::uint32_t UtilpHookCtrlBreak(UtilBreakProc proc, UINT_PTR user);

// How often; or the result that says why not.
INT UtilpBreakSeen(std::uint32_t hook) noexcept;
UtilResult UtilpCloseHook(std::uint32_t hook) noexcept;

// The calling thread ends: its hooks go.
void UtilpEndHooksOfThread() noexcept;

// The library is unloaded; there is no hook.
void UtilpForgetHookThreads() noexcept;

} // namespace tvut
