// The handles of subclasses, and which of them came off by themselves.
//
// Their owners may say so later, or never: nothing is kept for them but one word beside each slot of the
// table, which the next one of that slot takes over.
#pragma once

#include "platform/held_library.h"

#include <tvut22/window.h>

#include <cstdint>
#include <memory>

namespace tvut {

class clsSubclassedWindow;

// A subclass. The window's thread alone looks at more than its thread.
struct scSubclass {
    scSubclass(DWORD itsThread, clsSubclassedWindow& itsWindow, UtilWindowProc itsProc,
               UINT_PTR itsUser) noexcept
        : thread(itsThread), window(itsWindow), proc(itsProc), user(itsUser) {}

    DWORD thread;
    clsSubclassedWindow& window;
    UtilWindowProc proc;
    UINT_PTR user;
    std::uint32_t handle = 0;
    bool isRemoved = false; // it only passes on what comes
    clsHeldLibrary library{};
};

// Gives a subclass its handle. False: there are too many. Throws std::bad_alloc.
bool UtilpGiveHandle(const std::shared_ptr<scSubclass>& subclass);

// The subclass of a handle; null when there is none.
std::shared_ptr<scSubclass> UtilpFindSubclass(std::uint32_t handle) noexcept;

// False: somebody has closed it before.
bool UtilpCloseSubclass(std::uint32_t handle) noexcept;

// The subclass came off by itself; and whether it did, which is true once.
void UtilpCloseGoneSubclass(std::uint32_t handle) noexcept;
bool UtilpForgetGoneSubclass(std::uint32_t handle) noexcept;

} // namespace tvut
