// Addresses of code in words: module and offset, and the function where the debug-help service knows it.
#pragma once

#include "runtime/diagnostics.h"

namespace tvut {

// From now on there are call stacks to be reported: the service is worth its while.
void UtilpWantStackNames() noexcept;

// Makes the debug-help service ready while diagnostic output is on and somebody wants it, and has it look for
// new modules, at most once a second. Loads libraries and asks the loader, so it is called before a lock is
// taken that a caller within the loader may wait for.
void UtilpPrepareStackNames() noexcept;

// "  module.dll+0x1234 Function+0x12", as much of it as is known. Under the global lock; asks the loader
// nothing.
clsDiagnosticLine UtilpFrameLine(const void* address) noexcept;

} // namespace tvut
