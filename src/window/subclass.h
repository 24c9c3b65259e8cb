// Subclasses of windows that come off by themselves, in any order, and refuse other threads.
#pragma once

#include "runtime/result.h"

#include <tvut22/window.h>

#include <cstdint>

namespace tvut {

// Throws clsException, std::bad_alloc.
std::uint32_t UtilpSubclass(HWND window, UtilWindowProc proc, UINT_PTR user);

LRESULT UtilpCallNext(std::uint32_t subclass, HWND window, UINT message, WPARAM w, LPARAM l) noexcept;
UtilResult UtilpUnsubclass(std::uint32_t subclass) noexcept;

// The calling thread ends: its subclasses come off.
void UtilpEndSubclassesOfThread() noexcept;

// The library is unloaded; there is no subclass.
void UtilpForgetSubclassThreads() noexcept;

} // namespace tvut
