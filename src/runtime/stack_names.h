// Addresses of code in words: module and offset, function and line.
//
// Names come from the module's own symbols or those of its debug file, else from the system's debug-help
// service.
#pragma once

#include "runtime/diagnostics.h"
#include "runtime/frame_kinds.h"
#include "runtime/module_symbols.h"

namespace tvut {

// From now on there are call stacks to be reported: the service is worth its while.
void UtilpWantStackNames() noexcept;

// Makes the service ready while diagnostic output is on and somebody wants it, and has it look for new
// modules, at most once a second. Loads libraries and asks the loader, so it is called before a lock is taken
// that a caller within the loader may wait for.
void UtilpPrepareStackNames() noexcept;

// The same whoever listens: a caller has asked for names.
void UtilpPrepareStackNamesAsked() noexcept;

enum class FrameAddress : std::uint8_t {
    exact,     // of the instruction that runs
    afterCall, // where a call returns to: what is meant is the call before it
};

struct scNamedFrame {
    FrameKind kind = FrameKind::caller;
    std::u16string_view text; // "module.dll+0x1234 function+0x12 (file.cpp:41)", as much of it as is known
};

// Names frames. Under the global lock; asks the loader nothing. The files of modules stay open while an
// object lives, the outermost one where there are several: make one for all of a report.
class clsStackNames {
  public:
    clsStackNames() noexcept;
    ~clsStackNames();
    clsStackNames(const clsStackNames&) = delete;
    clsStackNames& operator=(const clsStackNames&) = delete;

    // The text stays until the next call.
    scNamedFrame Name(const void* address, FrameAddress meaning) noexcept;

  private:
    clsModuleSymbols ownSymbols_;
    clsModuleSymbols* symbols_;
    scImageStamp lastModule_; // most frames follow others of their module
};

} // namespace tvut
