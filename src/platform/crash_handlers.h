// Being called when something ends the process: the system's filter for exceptions that nobody handles, and
// the handlers of the C runtimes, of which each module of a process may have one of its own.
#pragma once

#include "platform/owned.h"

#include <cstddef>
#include <cstdint>
#include <windows.h>

namespace tvut {

enum class CrashKind : std::uint8_t { exception, abort, pureCall, invalidParameter };

// Called on the thread that has crashed, in whatever state the process is. When it returns, what was there
// before the handlers is called, and then the system goes on as it would have without them.
using CrashTaker = void (*)(CrashKind kind, EXCEPTION_POINTERS* exception);

// The code of an abort and its kin, whose record is made here.
constexpr DWORD runtimeAbortCode = 0x40000015;

enum class RuntimesAsked : std::uint8_t { all, withHandlers }; // those that have ours

// The C runtimes that are loaded, which stay so as long as the object is there. Asks the loader, so the
// object is made before a lock is taken that a caller within the loader may wait for, and goes after that.
class clsLoadedRuntimes {
  public:
    explicit clsLoadedRuntimes(RuntimesAsked asked) noexcept;

    struct scRuntime {
        clsLibrary library; // none: not loaded
        FARPROC signal = nullptr;
        FARPROC setPureCall = nullptr;
        FARPROC getInvalidParameter =
            nullptr; // null, too, where an invalid parameter does not end the process
        FARPROC setInvalidParameter = nullptr;
    };
    static constexpr std::size_t most = 22;
    const scRuntime& operator[](std::size_t i) const noexcept { return runtimes_[i]; }

  private:
    void TakeFrom(const void* base) noexcept;

    scRuntime runtimes_[most];
};

// One caller at a time. A second installation adds the runtimes that were loaded since, and takes the filter
// again from whoever has set another one; that is called after ours.
void PlatformInstallCrashHandlers(const clsLoadedRuntimes& runtimes, CrashTaker taker) noexcept;

// Puts back what was there before, wherever it is still ours.
void PlatformRemoveCrashHandlers(const clsLoadedRuntimes& runtimes) noexcept;

} // namespace tvut
